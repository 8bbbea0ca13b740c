#include "nuvo/RecordObject.h"

#include "nuvo/ClassObjects.h"
#include "nuvo/Engine.h"
#include "nuvo/QueryBuilder.h"
#include "nuvo/RecordEvaluator.h"

#include "hostapi/FieldTypes.h"

#include "core/Error.h"

namespace kordel::nuvo {

namespace FT = hostapi::FieldType;

namespace {
const QString kSource = QStringLiteral("Nuvo.Record");
} // namespace

RecordObject::RecordObject(std::shared_ptr<Engine> engine, std::shared_ptr<const RecordSet> set, int row, int state)
    : engine_(std::move(engine)), set_(std::move(set)), row_(row), state_(state) {}

std::shared_ptr<hostapi::Class> RecordObject::recordClass() const {
  return std::make_shared<ClassObject>(engine_, definition());
}

std::shared_ptr<hostapi::Fields> RecordObject::fields() const {
  return std::make_shared<FieldsObject>(engine_, definition());
}

void RecordObject::fetch(const std::vector<FieldPath> &paths) {
  QueryBuilder query(*engine_, definition());
  for (const FieldPath &path : paths)
    query.addPath(path);
  query.setRecordId(id());
  auto set = query.run();
  // A record that is gone, or not yet saved, reads as having no values.
  if (set->rowCount() == 0) {
    RowValues &values = set->appendRow(id());
    for (int c = 0; c < set->columnCount(); ++c)
      values.appendNull();
    values.endRow();
  }
  extras_.push_back(std::move(set));
}

RecordObject::Cell RecordObject::locate(const QString &path) {
  int column = set_->columnOf(path);
  if (column >= 0)
    return {set_.get(), row_, column};
  for (const auto &extra : extras_)
    if ((column = extra->columnOf(path)) >= 0)
      return {extra.get(), 0, column};

  const auto resolved = engine_->resolved(definition(), path, hostapi::LookupMode::Either);
  if (!resolved)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The class '%1' has no field path '%2'").arg(definition().name, path));
  const QString internal = resolved->internal();
  if ((column = set_->columnOf(internal)) >= 0) {
    set_->addSpelling(path, column);
    return {set_.get(), row_, column};
  }
  for (const auto &extra : extras_) {
    if ((column = extra->columnOf(internal)) >= 0) {
      extra->addSpelling(path, column);
      return {extra.get(), 0, column};
    }
  }
  fetch({*resolved});
  const RecordSet &extra = *extras_.back();
  column = extra.columnOf(internal);
  extra.addSpelling(path, column);
  return {&extra, 0, column};
}

QString RecordObject::textOf(const Cell &cell) const {
  const ResultColumn &column = cell.set->column(cell.column);
  const FieldDef &field = column.path.last();
  const Variant value = cell.value();
  if (field.type != FT::RelationToOne)
    return engine_->display().text(field, value);
  if (value.isNull())
    return {};
  QString text;
  const auto &parts = field.relatedClass->descriptionParts();
  for (std::size_t i = 0; i < parts.size(); ++i) {
    text += parts[i].literal;
    const int at = i < column.descriptionColumns.size() ? column.descriptionColumns[i] : -1;
    if (parts[i].field && at >= 0)
      text += engine_->display().text(*parts[i].field, cell.set->value(cell.row, at));
  }
  return text.trimmed();
}

Variant RecordObject::value(const QString &path) { return locate(path).value(); }

QString RecordObject::text(const QString &path) { return textOf(locate(path)); }

std::shared_ptr<hostapi::Field> RecordObject::field(const QString &path) {
  auto resolved = engine_->resolved(definition(), path, hostapi::LookupMode::Either);
  if (!resolved)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The class '%1' has no field path '%2'").arg(definition().name, path));
  int dataType = 0;
  if (resolved->last().type == FT::Formula) {
    const Variant current = value(path);
    if (!current.isNull() && !current.isEmpty())
      dataType = current.varType();
  }
  return std::make_shared<FieldObject>(engine_, std::move(*resolved), dataType);
}

QString RecordObject::description() {
  const auto &parts = definition().descriptionParts();
  std::vector<FieldPath> missing;
  for (const auto &part : parts) {
    if (!part.field)
      continue;
    bool known = set_->columnOf(part.field->name) >= 0;
    for (const auto &extra : extras_)
      known = known || extra->columnOf(part.field->name) >= 0;
    if (!known)
      missing.push_back(FieldPath{&definition(), {part.field}});
  }
  if (!missing.empty())
    fetch(missing);
  QString text;
  for (const auto &part : parts) {
    text += part.literal;
    if (part.field)
      text += textOf(locate(part.field->name));
  }
  return text.trimmed();
}

Variant RecordObject::evaluate(const QString &expression, int) {
  return engine_->evaluator().evaluate(std::static_pointer_cast<RecordObject>(shared_from_this()), expression);
}

const MemberTable &RecordObject::memberTable() const {
  static const MemberTable table{
      {
          property<RecordObject>("ID", [](RecordObject &r) { return r.id(); }),
          property<RecordObject>("Class", [](RecordObject &r) { return Variant(r.recordClass()); }),
          property<RecordObject>("Fields", [](RecordObject &r) { return Variant(r.fields()); }),
          method<RecordObject>("Field",
                               [](RecordObject &r, Args &a) {
                                 expectArgs(a, 1, 1);
                                 return Variant(r.field(a[0].toText()));
                               }),
          method<RecordObject>("Value",
                               [](RecordObject &r, Args &a) {
                                 expectArgs(a, 1, 1);
                                 return r.value(a[0].toText());
                               }),
          method<RecordObject>("Text",
                               [](RecordObject &r, Args &a) {
                                 expectArgs(a, 1, 1);
                                 return r.text(a[0].toText());
                               }),
          method<RecordObject>("Evaluate",
                               [](RecordObject &r, Args &a) {
                                 expectArgs(a, 1, 2);
                                 return r.evaluate(a[0].toText(), a.size() > 1 ? a[1].toLong() : 1);
                               }),
          property<RecordObject>("Description", [](RecordObject &r) { return r.description(); }),
          property<RecordObject>("State", [](RecordObject &r) { return r.state(); }),
      },
      nullptr,
      QStringLiteral("Value")};
  return table;
}

} // namespace kordel::nuvo
