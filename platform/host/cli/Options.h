#pragma once

#include <QStringList>

namespace kordel::host::cli {

// The value after the option at args[at], moving at onto it. Raises 5 when
// the option is the last word.
QString optionValue(const QStringList &args, qsizetype &at);

// A whole number given to an option; raises 5 for anything else.
int wholeNumber(const QString &text, const QString &option);

// Whether windows reach a screen: a display was there when the program
// started, or the user chose a window platform (QT_QPA_PLATFORM). Without
// one, windows render offscreen, where nobody can close them.
bool windowsReachTheUser();
void setWindowsReachTheUser(bool reach);

} // namespace kordel::host::cli
