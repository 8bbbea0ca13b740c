#include "nuvo/Catalog.h"

#include "hostapi/FieldTypes.h"

#include "core/Error.h"

namespace kordel::nuvo {

namespace FT = hostapi::FieldType;

namespace {

const QString kSource = QStringLiteral("Nuvo.Catalog");

[[noreturn]] void raiseBadMetadata(const QString &text) { raiseError(ErrorNumber::InvalidCall, kSource, text); }

std::vector<ClassDef::DescriptionPart> parseDescription(const ClassDef &cls) {
  std::vector<ClassDef::DescriptionPart> parts;
  const QString &text = cls.descriptionTemplate;
  QString literal;
  qsizetype at = 0;
  while (at < text.size()) {
    const qsizetype open = text.indexOf(u'[', at);
    if (open < 0) {
      literal += text.mid(at);
      break;
    }
    const qsizetype close = text.indexOf(u']', open);
    if (close < 0)
      raiseBadMetadata(QStringLiteral("The description of class '%1' has an unclosed '['").arg(cls.name));
    literal += text.mid(at, open - at);
    const QString name = text.mid(open + 1, close - open - 1);
    const FieldDef *field = cls.field(name);
    if (!field || hostapi::isRelationType(field->type))
      raiseBadMetadata(
          QStringLiteral("The description of class '%1' names '%2', which is no plain field").arg(cls.name, name));
    parts.push_back({literal, field});
    literal.clear();
    at = close + 1;
  }
  if (!literal.isEmpty())
    parts.push_back({literal, nullptr});
  return parts;
}

} // namespace

QString LocalTexts::get(const QString &language) const {
  const auto it = texts_.constFind(language);
  if (it != texts_.constEnd())
    return *it;
  const auto english = texts_.constFind(QStringLiteral("en"));
  if (english != texts_.constEnd())
    return *english;
  return texts_.isEmpty() ? QString() : texts_.constBegin().value();
}

bool FieldDef::hasColumn() const { return type != FT::RelationToMany && type != FT::Formula; }

const OptionDef *FieldDef::optionByKey(int key) const {
  for (const OptionDef &option : options)
    if (option.key == key)
      return &option;
  return nullptr;
}

const OptionDef *FieldDef::optionByName(const QString &name) const {
  for (const OptionDef &option : options) {
    if (option.name.compare(name, Qt::CaseInsensitive) == 0)
      return &option;
    for (const QString &text : option.texts.all())
      if (text.compare(name, Qt::CaseInsensitive) == 0)
        return &option;
  }
  return nullptr;
}

const FieldDef *ClassDef::field(const QString &name) const {
  const auto it = byName_.constFind(name.toCaseFolded());
  return it == byName_.constEnd() ? nullptr : fields[std::size_t(*it)].get();
}

const FieldDef *ClassDef::fieldByLocalName(const QString &localName, const QString &language) const {
  for (const auto &field : fields)
    if (field->localNames.get(language).compare(localName, Qt::CaseInsensitive) == 0)
      return field.get();
  return nullptr;
}

const FilterDef *ClassDef::filter(const QString &name) const {
  for (const FilterDef &filter : filters)
    if (filter.name.compare(name, Qt::CaseInsensitive) == 0)
      return &filter;
  return nullptr;
}

ClassDef &Catalog::addClass(std::unique_ptr<ClassDef> cls) {
  const QString key = cls->name.toCaseFolded();
  if (byName_.contains(key))
    raiseBadMetadata(QStringLiteral("The class '%1' is defined twice").arg(cls->name));
  byName_.insert(key, int(classes_.size()));
  classes_.push_back(std::move(cls));
  return *classes_.back();
}

void Catalog::complete() {
  for (auto &cls : classes_) {
    cls->byName_.clear();
    for (std::size_t i = 0; i < cls->fields.size(); ++i) {
      FieldDef &field = *cls->fields[i];
      field.owner = cls.get();
      if (cls->byName_.contains(field.name.toCaseFolded()))
        raiseBadMetadata(QStringLiteral("The field '%1.%2' is defined twice").arg(cls->name, field.name));
      cls->byName_.insert(field.name.toCaseFolded(), int(i));
    }
    const FieldDef *id = cls->field(cls->idFieldName());
    if (!id || id->type != FT::Counter)
      raiseBadMetadata(QStringLiteral("The class '%1' has no counter field '%2'").arg(cls->name, cls->idFieldName()));
  }
  for (auto &cls : classes_) {
    for (auto &field : cls->fields) {
      if (!hostapi::isRelationType(field->type))
        continue;
      const ClassDef *other = find(field->relatedClassName);
      const FieldDef *back = other ? other->field(field->relatedFieldName) : nullptr;
      const int expected = field->type == FT::RelationToOne ? FT::RelationToMany : FT::RelationToOne;
      if (!back || back->type != expected || back->relatedClassName.compare(cls->name, Qt::CaseInsensitive) != 0 ||
          back->relatedFieldName.compare(field->name, Qt::CaseInsensitive) != 0)
        raiseBadMetadata(QStringLiteral("The relation '%1.%2' has no matching other side '%3.%4'")
                             .arg(cls->name, field->name, field->relatedClassName, field->relatedFieldName));
      field->relatedClass = other;
      field->relatedField = back;
    }
    if (cls->descriptionTemplate.isEmpty())
      cls->descriptionTemplate = u'[' + cls->idFieldName() + u']';
    cls->descriptionParts_ = parseDescription(*cls);
  }
}

const ClassDef *Catalog::find(const QString &name) const {
  const auto it = byName_.constFind(name.toCaseFolded());
  return it == byName_.constEnd() ? nullptr : classes_[std::size_t(*it)].get();
}

const ClassDef *Catalog::findByLocalName(const QString &localName, const QString &language) const {
  for (const auto &cls : classes_)
    if (cls->localNames.get(language).compare(localName, Qt::CaseInsensitive) == 0)
      return cls.get();
  return nullptr;
}

} // namespace kordel::nuvo
