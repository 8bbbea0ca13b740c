#include "nuvo/FieldPath.h"

#include "hostapi/Classes.h"
#include "hostapi/FieldTypes.h"

namespace kordel::nuvo {

namespace FT = hostapi::FieldType;
namespace LM = hostapi::LookupMode;

namespace {

const FieldDef *findStep(const ClassDef &cls, const QString &name, int mode, const QString &language) {
  switch (mode) {
  case LM::Internal: return cls.field(name);
  case LM::Local: return cls.fieldByLocalName(name, language);
  case LM::LocalFirst: {
    const FieldDef *local = cls.fieldByLocalName(name, language);
    return local ? local : cls.field(name);
  }
  default: {
    const FieldDef *own = cls.field(name);
    return own ? own : cls.fieldByLocalName(name, language);
  }
  }
}

} // namespace

QString FieldPath::internal() const {
  QString text;
  for (const FieldDef *step : steps) {
    if (!text.isEmpty())
      text += u'.';
    text += step->name;
  }
  return text;
}

QString FieldPath::local(const QString &language) const {
  QString text;
  for (const FieldDef *step : steps) {
    if (!text.isEmpty())
      text += u'.';
    const QString name = step->localNames.get(language);
    text += name.isEmpty() ? step->name : name;
  }
  return text;
}

bool FieldPath::crossesToMany() const {
  for (std::size_t i = 0; i + 1 < steps.size(); ++i)
    if (steps[i]->type == FT::RelationToMany)
      return true;
  return false;
}

FieldPath FieldPath::prefix() const {
  FieldPath shorter{start, steps};
  if (!shorter.steps.empty())
    shorter.steps.pop_back();
  return shorter;
}

FieldPath FieldPath::extended(const FieldDef &field) const {
  FieldPath longer{start, steps};
  longer.steps.push_back(&field);
  return longer;
}

std::optional<FieldPath> resolvePath(const ClassDef &start, const QString &path, int mode, const QString &language) {
  if (path.isEmpty())
    return std::nullopt;
  FieldPath resolved{&start, {}};
  const ClassDef *cls = &start;
  const QStringList parts = path.split(u'.');
  for (qsizetype i = 0; i < parts.size(); ++i) {
    if (!cls)
      return std::nullopt;
    const FieldDef *field = findStep(*cls, parts[i], mode, language);
    if (!field)
      return std::nullopt;
    resolved.steps.push_back(field);
    cls = hostapi::isRelationType(field->type) ? field->relatedClass : nullptr;
  }
  return resolved;
}

} // namespace kordel::nuvo
