#pragma once

#include <QString>
#include <QStringView>

namespace kordel::host::ini {

// Text between double quotes with backslash escapes (\\ \" \n \r \t), which
// reads back as exactly the text given.
QString quoted(const QString &text);

// Whether a section or value name must be written quoted to read back as it
// is: empty names, names with leading or trailing blanks, and names holding
// characters that mean something in the format or break the line.
bool needsQuotes(const QString &name);

// A name as written: raw when it can be, else quoted.
QString nameText(const QString &name);

// Reads a quoted text that starts at line[pos] with '"'. On success, value
// holds the unescaped text, pos stands after the closing quote and the
// result is true. An unterminated text or an unknown escape gives false and
// leaves pos and value alone.
bool readQuoted(QStringView line, qsizetype &pos, QString &value);

} // namespace kordel::host::ini
