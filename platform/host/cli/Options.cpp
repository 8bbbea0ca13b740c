#include "cli/Options.h"

#include "core/Error.h"

namespace kordel::host::cli {

QString optionValue(const QStringList &args, qsizetype &at) {
  if (at + 1 >= args.size())
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("orvex"), QStringLiteral("%1 needs a value").arg(args[at]));
  return args[++at];
}

int wholeNumber(const QString &text, const QString &option) {
  bool ok = false;
  const int value = text.toInt(&ok);
  if (!ok)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("orvex"),
               QStringLiteral("%1 takes a whole number, not '%2'").arg(option, text));
  return value;
}

namespace {
bool windowsReach = true;
} // namespace

bool windowsReachTheUser() { return windowsReach; }

void setWindowsReachTheUser(bool reach) { windowsReach = reach; }

} // namespace kordel::host::cli
