#include "cli/Options.h"

#include "core/Error.h"

#include <algorithm>

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("orvex");

bool windowsReach = true;

[[noreturn]] void refuse(const QString &text) { raiseError(ErrorNumber::InvalidCall, kSource, text); }

bool isHelp(const QString &word) { return word == QLatin1String("--help") || word == QLatin1String("-h"); }

// A word that stands for an option rather than a value: "--" and a name.
bool looksLikeOption(const QString &word) { return word.size() > 2 && word.startsWith(QLatin1String("--")); }

QString usageLine(const CommandSyntax &syntax) {
  return QStringLiteral("usage: orvex %1 %2").arg(syntax.name, syntax.usage).trimmed();
}

const OptionSyntax *findOption(const CommandSyntax &syntax, const QString &name) {
  const auto found = std::find_if(syntax.options.begin(), syntax.options.end(),
                                  [&](const OptionSyntax &option) { return option.name == name; });
  return found == syntax.options.end() ? nullptr : &*found;
}

} // namespace

class ArgumentReader {
public:
  ArgumentReader(const CommandSyntax &syntax, const QStringList &words) : syntax_(syntax), words_(words) {}

  Arguments read() {
    bool optionsEnded = false;
    for (at_ = 0; at_ < words_.size(); ++at_) {
      const QString &word = words_[at_];
      if (restStarts()) {
        read_.rest_ = words_.mid(at_);
        break;
      }
      if (optionsEnded || word == QLatin1String("-") || !word.startsWith(u'-')) {
        read_.positional_ << word;
      } else if (word == QLatin1String("--")) {
        optionsEnded = true;
      } else if (isHelp(word)) {
        read_.helpAsked_ = true;
        return read_;
      } else {
        option(word);
      }
    }
    const QStringList &positional = read_.positional_;
    const qsizetype wanted = syntax_.positional.size();
    if (positional.size() > wanted)
      refuse(QStringLiteral("'%1' is one word more than orvex %2 takes; %3")
                 .arg(positional[wanted], syntax_.name, usageLine(syntax_)));
    if (positional.size() < wanted)
      refuse(QStringLiteral("orvex %1 needs %2; %3")
                 .arg(syntax_.name, syntax_.positional.mid(positional.size()).join(u' '), usageLine(syntax_)));
    return read_;
  }

private:
  // Whether the words from here on are the last positional word's own.
  bool restStarts() const {
    return syntax_.restBelongsToLast && !syntax_.positional.isEmpty() &&
           read_.positional_.size() == syntax_.positional.size();
  }

  void option(const QString &word) {
    const qsizetype equals = word.indexOf(u'=');
    const QString name = equals < 0 ? word : word.left(equals);
    const OptionSyntax *option = findOption(syntax_, name);
    if (!option)
      refuse(
          QStringLiteral("'%1' is unknown to orvex %2; `orvex %2 --help` lists its options").arg(name, syntax_.name));
    if (!option->repeatable && read_.has(name))
      refuse(QStringLiteral("%1 is given twice").arg(name));
    if (option->valueName.isEmpty()) {
      if (equals >= 0)
        refuse(QStringLiteral("%1 takes no value").arg(name));
      read_.given_.append({name, QString()});
      return;
    }
    QString value;
    if (equals >= 0) {
      value = word.mid(equals + 1);
    } else {
      if (at_ + 1 >= words_.size())
        refuse(QStringLiteral("%1 needs a value: %1 %2").arg(name, option->valueName));
      value = words_[++at_];
      if (looksLikeOption(value))
        refuse(QStringLiteral("%1 needs a value, not the option %2 (a value that begins with -- is given as %1=VALUE)")
                   .arg(name, value));
    }
    if (value.isEmpty())
      refuse(QStringLiteral("%1 needs a value: %1 %2").arg(name, option->valueName));
    read_.given_.append({name, value});
  }

  const CommandSyntax &syntax_;
  const QStringList &words_;
  qsizetype at_ = 0;
  Arguments read_;
};

Arguments Arguments::parse(const CommandSyntax &syntax, const QStringList &words) {
  return ArgumentReader(syntax, words).read();
}

bool Arguments::has(const QString &option) const {
  return std::any_of(given_.begin(), given_.end(), [&](const auto &given) { return given.first == option; });
}

QString Arguments::value(const QString &option) const {
  for (const auto &[name, value] : given_)
    if (name == option)
      return value;
  return {};
}

QStringList Arguments::values(const QString &option) const {
  QStringList found;
  for (const auto &[name, value] : given_)
    if (name == option)
      found << value;
  return found;
}

QString helpText(const CommandSyntax &syntax) {
  QString text = usageLine(syntax) + QStringLiteral("\n\n") + syntax.about + u'\n';
  if (syntax.options.empty())
    return text;
  text += QStringLiteral("\noptions:\n");
  for (const OptionSyntax &option : syntax.options) {
    const QString words = (option.name + u' ' + option.valueName).trimmed();
    text += QStringLiteral("  %1 %2\n").arg(words, -24).arg(option.text);
  }
  return text;
}

int wholeNumber(const QString &text, const QString &option) {
  bool ok = false;
  const int value = text.toInt(&ok);
  if (!ok)
    refuse(QStringLiteral("%1 takes a whole number, not '%2'").arg(option, text));
  return value;
}

bool windowsReachTheUser() { return windowsReach; }

void setWindowsReachTheUser(bool reach) { windowsReach = reach; }

} // namespace kordel::host::cli
