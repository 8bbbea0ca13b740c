#pragma once

#include <QString>
#include <QStringList>

namespace kordel::host {

// Turns a file filter written as "Description|*.a;*.b|Other|*.c" into the
// name filters of a Qt file dialog: "Description (*.a *.b)", "Other (*.c)".
// A description that already ends in its patterns in parentheses keeps
// one copy of them. An empty filter gives no name filters; a description
// without a pattern raises 5.
QStringList qtNameFilters(const QString &filter);

// A start folder as callers hand it over: cut at the first NUL (a buffer
// from the system may carry one) and with "\" read as the separator.
QString dialogFolder(const QString &folder);

} // namespace kordel::host
