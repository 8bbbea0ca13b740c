#include "LargeModel.h"

#include "nuvo/Catalog.h"

#include "hostapi/FieldTypes.h"

namespace LargeModel {

namespace {

namespace FT = kordel::hostapi::FieldType;
namespace DT = kordel::hostapi::DataType;
using kordel::nuvo::ClassDef;
using kordel::nuvo::FieldDef;
using kordel::nuvo::LocalTexts;

LocalTexts texts(const QString &english, const QString &swedish) {
  LocalTexts local;
  local.set(QStringLiteral("en"), english);
  local.set(QStringLiteral("sv"), swedish);
  return local;
}

FieldDef &addField(ClassDef &cls, const QString &name, int type, int dataType, LocalTexts local) {
  auto field = std::make_unique<FieldDef>();
  field->name = name;
  field->type = type;
  field->dataType = dataType;
  field->localNames = std::move(local);
  cls.fields.push_back(std::move(field));
  return *cls.fields.back();
}

struct PlainKind {
  int type;
  int dataType;
  int size;
};

// The kinds of plain field, taken in turn.
constexpr PlainKind kPlainKinds[] = {
    {FT::Text, DT::String, 64}, {FT::Integer, DT::Long, 0},      {FT::Decimal, DT::Double, 0}, {FT::Date, DT::Date, 0},
    {FT::Memo, DT::String, 0},  {FT::Currency, DT::Currency, 0}, {FT::YesNo, DT::Boolean, 0}};

// The class a relation of a class leads to: the next class first, then
// classes further round in steps that share no factor with the count.
int relationTarget(int from, int relation) {
  static constexpr int kSteps[kRelationsToOne] = {1, 7, 13, 29, 41, 53, 67, 89, 101, 131};
  return (from + kSteps[relation]) % kClasses;
}

} // namespace

QString className(int index) { return QStringLiteral("c%1").arg(index); }

std::unique_ptr<kordel::nuvo::Catalog> catalog() {
  auto model = std::make_unique<kordel::nuvo::Catalog>();
  std::vector<ClassDef *> classes;
  for (int i = 0; i < kClasses; ++i) {
    auto cls = std::make_unique<ClassDef>();
    cls->name = className(i);
    cls->localNames = texts(QStringLiteral("Class %1").arg(i), QStringLiteral("Klass %1").arg(i));
    cls->descriptionTemplate = QStringLiteral("[f0]");
    classes.push_back(&model->addClass(std::move(cls)));
  }
  // The fields left for plain kinds once the counters, the system fields
  // and both sides of every relation are counted, spread evenly.
  const int fixedPerClass = 1 + 4 + 2 * kRelationsToOne;
  const int plainTotal = kFields - kClasses * fixedPerClass;
  for (int i = 0; i < kClasses; ++i) {
    ClassDef &cls = *classes[std::size_t(i)];
    addField(cls, cls.idFieldName(), FT::Counter, DT::Long, texts(QStringLiteral("ID"), QStringLiteral("ID")));
    const int plain = plainTotal / kClasses + (i < plainTotal % kClasses ? 1 : 0);
    for (int j = 0; j < plain; ++j) {
      const PlainKind &kind = kPlainKinds[j % std::size(kPlainKinds)];
      FieldDef &field = addField(cls, QStringLiteral("f%1").arg(j), kind.type, kind.dataType,
                                 texts(QStringLiteral("Field %1").arg(j), QString::fromUtf8("Fält %1").arg(j)));
      field.size = kind.size;
      field.hidden = j % 20 == 19;
    }
    addField(cls, QStringLiteral("createdtime"), FT::CreatedTime, DT::Date,
             texts(QStringLiteral("Created"), QStringLiteral("Skapad")));
    addField(cls, QStringLiteral("timestamp"), FT::UpdatedTime, DT::Date,
             texts(QStringLiteral("Updated"), QStringLiteral("Uppdaterad")));
    addField(cls, QStringLiteral("createdby"), FT::CreatedBy, DT::String,
             texts(QStringLiteral("Created by"), QStringLiteral("Skapad av")));
    addField(cls, QStringLiteral("updatedby"), FT::UpdatedBy, DT::String,
             texts(QStringLiteral("Updated by"), QStringLiteral("Uppdaterad av")));
  }
  for (int i = 0; i < kClasses; ++i) {
    ClassDef &from = *classes[std::size_t(i)];
    for (int k = 0; k < kRelationsToOne; ++k) {
      ClassDef &to = *classes[std::size_t(relationTarget(i, k))];
      const QString one = QStringLiteral("r%1").arg(k);
      const QString many = QStringLiteral("from%1r%2").arg(i).arg(k);
      FieldDef &toOne = addField(from, one, FT::RelationToOne, DT::Long,
                                 texts(QStringLiteral("Link %1 to class %2").arg(k).arg(relationTarget(i, k)),
                                       QStringLiteral("Länk %1 till klass %2").arg(k).arg(relationTarget(i, k))));
      toOne.relatedClassName = to.name;
      toOne.relatedFieldName = many;
      FieldDef &toMany = addField(to, many, FT::RelationToMany, DT::Long,
                                  texts(QStringLiteral("Link %1 from class %2").arg(k).arg(i),
                                        QStringLiteral("Länk %1 från klass %2").arg(k).arg(i)));
      toMany.relatedClassName = from.name;
      toMany.relatedFieldName = one;
    }
  }
  return model;
}

} // namespace LargeModel
