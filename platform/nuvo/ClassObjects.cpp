#include "nuvo/ClassObjects.h"

#include "nuvo/Engine.h"
#include "nuvo/SavedFilters.h"

#include "core/Error.h"

namespace kordel::nuvo {

namespace LM = hostapi::LookupMode;

namespace {

const QString kSource = QStringLiteral("Nuvo.Classes");

// Item(key) of a collection: a number is a position from 1, anything else
// a name.
bool isPosition(const Variant &key) { return key.isNumber() && !key.isEmpty(); }

template <class Collection> Variant itemOf(Collection &collection, const Args &args) {
  expectArgs(args, 1, 1);
  if (isPosition(args[0]))
    return Variant(collection.at(args[0].toLong() - 1));
  return Variant(collection.item(args[0].toString()));
}

} // namespace

FieldObject::FieldObject(std::shared_ptr<Engine> engine, FieldPath path, int dataType)
    : engine_(std::move(engine)), path_(std::move(path)), dataType_(dataType) {}

QString FieldObject::localName() const { return path_.local(engine_->language()); }

std::shared_ptr<hostapi::Class> FieldObject::fieldClass() const {
  return std::make_shared<ClassObject>(engine_, *path_.last().owner);
}

std::shared_ptr<hostapi::Field> FieldObject::relatedField() const {
  const FieldDef *related = path_.last().relatedField;
  if (!related)
    return nullptr;
  return std::make_shared<FieldObject>(engine_, FieldPath{related->owner, {related}});
}

const MemberTable &FieldObject::memberTable() const {
  static const MemberTable table{
      {
          property<FieldObject>("Name", [](FieldObject &f) { return f.name(); }),
          property<FieldObject>("LocalName", [](FieldObject &f) { return f.localName(); }),
          property<FieldObject>("Type", [](FieldObject &f) { return f.type(); }),
          property<FieldObject>("Size", [](FieldObject &f) { return f.size(); }),
          property<FieldObject>("DataType", [](FieldObject &f) { return f.dataType(); }),
          property<FieldObject>("Hidden", [](FieldObject &f) { return f.hidden(); }),
          property<FieldObject>("Class", [](FieldObject &f) { return Variant(f.fieldClass()); }),
          property<FieldObject>("RelatedField", [](FieldObject &f) { return Variant(ObjectRef(f.relatedField())); }),
      },
      nullptr,
      QStringLiteral("Name")};
  return table;
}

std::shared_ptr<hostapi::Field> FieldsObject::item(const QString &name) const {
  const FieldDef *field = class_.field(name);
  if (!field)
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource,
               QStringLiteral("The class '%1' has no field '%2'").arg(class_.name, name));
  return std::make_shared<FieldObject>(engine_, FieldPath{&class_, {field}});
}

std::shared_ptr<hostapi::Field> FieldsObject::at(int index) const {
  if (index < 0 || index >= count())
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource);
  return std::make_shared<FieldObject>(engine_, FieldPath{&class_, {class_.fields[std::size_t(index)].get()}});
}

std::shared_ptr<hostapi::Field> FieldsObject::lookup(const QString &path, int mode) const {
  auto resolved = engine_->resolved(class_, path, mode);
  if (!resolved)
    return nullptr;
  return std::make_shared<FieldObject>(engine_, std::move(*resolved));
}

QString FieldsObject::translatePath(const QString &path, int direction) const {
  const auto resolved = resolvePath(class_, path, LM::Either, engine_->language());
  if (!resolved)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The class '%1' has no field path '%2'").arg(class_.name, path));
  return direction == hostapi::PathDirection::ToLocal ? resolved->local(engine_->language()) : resolved->internal();
}

std::shared_ptr<hostapi::Class> FieldsObject::fieldsClass() const {
  return std::make_shared<ClassObject>(engine_, class_);
}

std::unique_ptr<Enumerator> FieldsObject::enumerate() {
  std::vector<Variant> fields;
  for (int i = 0; i < count(); ++i)
    fields.emplace_back(at(i));
  return std::make_unique<ListEnumerator>(std::move(fields));
}

const MemberTable &FieldsObject::memberTable() const {
  static const MemberTable table{
      {
          property<FieldsObject>("Count", [](FieldsObject &f) { return f.count(); }),
          indexedProperty<FieldsObject>("Item", [](FieldsObject &f, Args &a) { return itemOf(f, a); }),
          method<FieldsObject>("Exists",
                               [](FieldsObject &f, Args &a) {
                                 expectArgs(a, 1, 1);
                                 return f.exists(a[0].toString());
                               }),
          method<FieldsObject>("Lookup",
                               [](FieldsObject &f, Args &a) {
                                 expectArgs(a, 1, 2);
                                 return Variant(ObjectRef(f.lookup(a[0].toText(), a.size() > 1 ? a[1].toLong() : 0)));
                               }),
          method<FieldsObject>("TranslatePath",
                               [](FieldsObject &f, Args &a) {
                                 expectArgs(a, 2, 2);
                                 return f.translatePath(a[0].toString(), a[1].toLong());
                               }),
          property<FieldsObject>("Class", [](FieldsObject &f) { return Variant(f.fieldsClass()); }),
      },
      nullptr,
      QStringLiteral("Item")};
  return table;
}

QString ClassObject::localName() const {
  const QString local = class_.localNames.get(engine_->language());
  return local.isEmpty() ? class_.name : local;
}

std::shared_ptr<hostapi::Fields> ClassObject::fields() const { return std::make_shared<FieldsObject>(engine_, class_); }

std::shared_ptr<hostapi::Filters> ClassObject::filters() const {
  return std::make_shared<SavedFilters>(engine_, class_);
}

const MemberTable &ClassObject::memberTable() const {
  static const MemberTable table{
      {
          property<ClassObject>("Name", [](ClassObject &c) { return c.name(); }),
          property<ClassObject>("LocalName", [](ClassObject &c) { return c.localName(); }),
          property<ClassObject>("Fields", [](ClassObject &c) { return Variant(c.fields()); }),
          property<ClassObject>("Filters", [](ClassObject &c) { return Variant(c.filters()); }),
      },
      nullptr,
      QStringLiteral("Name")};
  return table;
}

int ClassesObject::count() const { return int(engine_->catalog().classes().size()); }

std::shared_ptr<hostapi::Class> ClassesObject::item(const QString &name) const {
  const ClassDef *cls = engine_->catalog().find(name);
  if (!cls)
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource, QStringLiteral("The database has no class '%1'").arg(name));
  return std::make_shared<ClassObject>(engine_, *cls);
}

std::shared_ptr<hostapi::Class> ClassesObject::at(int index) const {
  if (index < 0 || index >= count())
    raiseError(ErrorNumber::SubscriptOutOfRange, kSource);
  return std::make_shared<ClassObject>(engine_, *engine_->catalog().classes()[std::size_t(index)]);
}

bool ClassesObject::exists(const QString &name) const { return engine_->catalog().find(name) != nullptr; }

std::shared_ptr<hostapi::Class> ClassesObject::lookup(const QString &name, int mode) const {
  const Catalog &catalog = engine_->catalog();
  const QString &language = engine_->language();
  const ClassDef *cls = nullptr;
  switch (mode) {
  case LM::Internal: cls = catalog.find(name); break;
  case LM::Local: cls = catalog.findByLocalName(name, language); break;
  case LM::LocalFirst:
    cls = catalog.findByLocalName(name, language);
    if (!cls)
      cls = catalog.find(name);
    break;
  default:
    cls = catalog.find(name);
    if (!cls)
      cls = catalog.findByLocalName(name, language);
  }
  return cls ? std::make_shared<ClassObject>(engine_, *cls) : nullptr;
}

std::unique_ptr<Enumerator> ClassesObject::enumerate() {
  std::vector<Variant> classes;
  for (int i = 0; i < count(); ++i)
    classes.emplace_back(at(i));
  return std::make_unique<ListEnumerator>(std::move(classes));
}

const MemberTable &ClassesObject::memberTable() const {
  static const MemberTable table{
      {
          property<ClassesObject>("Count", [](ClassesObject &c) { return c.count(); }),
          indexedProperty<ClassesObject>("Item", [](ClassesObject &c, Args &a) { return itemOf(c, a); }),
          method<ClassesObject>("Exists",
                                [](ClassesObject &c, Args &a) {
                                  expectArgs(a, 1, 1);
                                  return c.exists(a[0].toString());
                                }),
          method<ClassesObject>("Lookup",
                                [](ClassesObject &c, Args &a) {
                                  expectArgs(a, 1, 2);
                                  return Variant(ObjectRef(c.lookup(a[0].toText(), a.size() > 1 ? a[1].toLong() : 0)));
                                }),
      },
      nullptr,
      QStringLiteral("Item")};
  return table;
}

const ClassDef &classOfValue(const Engine &engine, const Variant &value) {
  if (value.isObject()) {
    const auto cls = objectAs<hostapi::Class>(value);
    if (!cls)
      raiseError(ErrorNumber::TypeMismatch, kSource, QStringLiteral("A class or a class name is needed"));
    return engine.classNamed(cls->name());
  }
  return engine.classNamed(value.toText());
}

} // namespace kordel::nuvo
