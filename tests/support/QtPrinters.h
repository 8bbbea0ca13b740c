#pragma once

#include <QByteArray>
#include <QString>

#include <ostream>

// Lets GoogleTest print Qt strings in failure messages.
inline void PrintTo(const QString &text, std::ostream *out) { *out << '"' << text.toStdString() << '"'; }
inline void PrintTo(const QByteArray &bytes, std::ostream *out) { *out << '"' << bytes.toStdString() << '"'; }
