#include "engine/designer/ScriptEvents.h"

#include <QRegularExpression>

namespace kordel::engine {

ScriptLanguage scriptLanguageNamed(const QString &name) {
  return name.compare(QLatin1String("JScript"), Qt::CaseInsensitive) == 0 ? ScriptLanguage::JScript
                                                                          : ScriptLanguage::VBScript;
}

QString reportObjectName() { return QStringLiteral("ActiveReport"); }

const std::vector<ScriptEvent> &reportEvents() {
  static const std::vector<ScriptEvent> events{
      {QStringLiteral("ReportStart"), {}},
      {QStringLiteral("DataInitialize"), {}},
      {QStringLiteral("FetchData"), {QStringLiteral("eof")}},
      {QStringLiteral("PageStart"), {}},
      {QStringLiteral("PageEnd"), {}},
      {QStringLiteral("ReportEnd"), {}},
      {QStringLiteral("Terminate"), {}},
      {QStringLiteral("PrintProgress"), {QStringLiteral("page")}},
      {QStringLiteral("Initialize"), {}},
  };
  return events;
}

const std::vector<ScriptEvent> &sectionEvents() {
  static const std::vector<ScriptEvent> events{
      {QStringLiteral("Format"), {}},
      {QStringLiteral("BeforePrint"), {}},
      {QStringLiteral("AfterPrint"), {}},
  };
  return events;
}

QString procedureName(const QString &object, const QString &event) { return object + u'_' + event; }

ProcedureStub procedureStub(ScriptLanguage language, const QString &name, const QStringList &parameters,
                            const QString &indent) {
  const QString arguments = parameters.join(QStringLiteral(", "));
  const QString header = language == ScriptLanguage::JScript
                             ? QStringLiteral("function %1(%2) {\n").arg(name, arguments)
                             : QStringLiteral("Sub %1(%2)\n").arg(name, arguments);
  const QString footer = language == ScriptLanguage::JScript ? QStringLiteral("}\n") : QStringLiteral("End Sub\n");
  return {header + indent + u'\n' + footer, int(header.size() + indent.size())};
}

qsizetype findProcedure(ScriptLanguage language, const QString &script, const QString &name) {
  const QString pattern = language == ScriptLanguage::JScript
                              ? QStringLiteral(R"(^[ \t]*function[ \t]+%1[ \t]*\()")
                              : QStringLiteral(R"(^[ \t]*(?:(?:Public|Private)[ \t]+)?(?:Sub|Function)[ \t]+%1\b)");
  const QRegularExpression header(pattern.arg(QRegularExpression::escape(name)),
                                  QRegularExpression::CaseInsensitiveOption | QRegularExpression::MultilineOption);
  const QRegularExpressionMatch match = header.match(script);
  return match.hasMatch() ? match.capturedStart() : -1;
}

} // namespace kordel::engine
