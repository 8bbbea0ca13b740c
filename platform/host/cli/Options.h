#pragma once

#include <QList>
#include <QStringList>

#include <utility>
#include <vector>

namespace kordel::host::cli {

// One option of a command: "--report NAME" takes a value, "--all" is a
// switch.
struct OptionSyntax {
  QString name;      // with its dashes: "--report"
  QString valueName; // the value's name in the help ("NAME"); empty for a switch
  QString text;      // what the option does, for the command's help
  bool repeatable = false;
};

// What a command accepts, for the one parser every command shares and for
// the command's help.
struct CommandSyntax {
  QString name;    // "export"
  QString summary; // one line in the list of commands
  QString usage;   // the words after the command's name
  QString about;   // what the command does, a paragraph of its help
  std::vector<OptionSyntax> options;
  // The names of the positional words, in order ("NAME", "FILE").
  QStringList positional;
  // Whether the words after the last positional one belong to it unread,
  // options or not: a script's own arguments.
  bool restBelongsToLast = false;
};

// The words of a command, read by the conventions of command-line tools:
// "--name value" and "--name=value"; options and positional words in any
// order; "--" ends the options; "--help" or "-h" asks for the command's
// help.
class Arguments {
public:
  // Raises 5 naming the word for an option the command lacks, an option
  // without its value or with another option in its place, a value given
  // to a switch, an empty value, an option given twice that may be given
  // once, and a wrong number of positional words. Reading stops at a
  // request for help.
  static Arguments parse(const CommandSyntax &syntax, const QStringList &words);

  bool helpAsked() const { return helpAsked_; }
  bool has(const QString &option) const;
  // The value of an option; "" when it was not given.
  QString value(const QString &option) const;
  // The values of a repeatable option, in the order given.
  QStringList values(const QString &option) const;
  // The options as given, in order, each with its value ("" for a switch).
  const QList<std::pair<QString, QString>> &given() const { return given_; }
  const QStringList &positional() const { return positional_; }
  // The words after the last positional one, for a command whose rest
  // belongs to it.
  const QStringList &rest() const { return rest_; }

private:
  friend class ArgumentReader;

  bool helpAsked_ = false;
  QList<std::pair<QString, QString>> given_;
  QStringList positional_;
  QStringList rest_;
};

// The help of a command: its usage line, what it does and its options.
QString helpText(const CommandSyntax &syntax);

// A whole number given to an option; raises 5 for anything else.
int wholeNumber(const QString &text, const QString &option);

// Whether windows reach a screen: a display was there when the program
// started, or the user chose a window platform (QT_QPA_PLATFORM) that
// shows windows. Without one, windows render offscreen, where nobody can
// close them.
bool windowsReachTheUser();
void setWindowsReachTheUser(bool reach);

} // namespace kordel::host::cli
