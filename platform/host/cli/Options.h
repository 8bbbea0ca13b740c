#pragma once

#include <QStringList>

namespace kordel::host::cli {

// The value after the option at args[at], moving at onto it. Raises 5 when
// the option is the last word.
QString optionValue(const QStringList &args, qsizetype &at);

// A whole number given to an option; raises 5 for anything else.
int wholeNumber(const QString &text, const QString &option);

} // namespace kordel::host::cli
