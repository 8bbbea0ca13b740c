#include "script/ScriptTestSupport.h"

#include "core/Regional.h"
#include "script/ScriptRunner.h"

namespace kordel::test {

void useUnitedStatesRegion() {
  RegionalSettings settings;
  settings.locale = QLocale(QLocale::English, QLocale::UnitedStates);
  settings.decimalSeparator = u'.';
  settings.groupSeparator = u',';
  settings.shortDate = QStringLiteral("m/d/yyyy");
  settings.longDate = QStringLiteral("dddd, mmmm d, yyyy");
  settings.longTime = QStringLiteral("h:nn:ss AM/PM");
  settings.shortTime = QStringLiteral("h:nn AM/PM");
  settings.amDesignator = QStringLiteral("AM");
  settings.pmDesignator = QStringLiteral("PM");
  settings.currencySymbol = QStringLiteral("$");
  settings.currencySymbolFirst = true;
  settings.currencySpace = false;
  settings.currencyDigits = 2;
  setRegional(settings);
}

EchoEngine makeEchoEngine() {
  EchoEngine result;
  result.engine = script::createScriptEngine(QStringLiteral("VBScript"));
  auto output = result.output;
  result.engine->addNamedItem(QStringLiteral("WScript"),
                              std::make_shared<script::WScriptObject>(
                                  [output](const QString &line) { output->append(line); }, QStringLiteral("test")));
  return result;
}

} // namespace kordel::test
