#pragma once

#include <QString>
#include <QStringList>

#include <vector>

namespace kordel::engine {

// The events a layout's script answers, by the object that raises them, and
// the procedures that answer them, named as a report run calls them
// (run/ReportRun.cpp): "ActiveReport_<Event>" for the report's,
// "<Section>_<Event>" for a section's.

enum class ScriptLanguage { VBScript, JScript };

// A layout's script language by its name, without regard to case; anything
// but JScript is VBScript, as the run reads it.
ScriptLanguage scriptLanguageNamed(const QString &name);

struct ScriptEvent {
  QString name;
  QStringList parameters;
};

// The name the report has in its procedures' names.
QString reportObjectName();
const std::vector<ScriptEvent> &reportEvents();
const std::vector<ScriptEvent> &sectionEvents();

QString procedureName(const QString &object, const QString &event);

// An empty procedure to add to a script, and the offset in text where its
// body begins (after the indent).
struct ProcedureStub {
  QString text;
  int bodyOffset = 0;
};
ProcedureStub procedureStub(ScriptLanguage language, const QString &name, const QStringList &parameters,
                            const QString &indent);

// Where the line declaring a procedure of the name begins in a script, -1
// when no line does. Names are compared without case, as the engines find
// the procedures they call; lines that only mention the name in a comment
// do not count.
qsizetype findProcedure(ScriptLanguage language, const QString &script, const QString &name);

} // namespace kordel::engine
