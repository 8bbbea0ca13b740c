#pragma once

#include "nuvo/FieldPath.h"

#include "hostapi/Classes.h"

#include <memory>

namespace kordel::nuvo {

class Engine;

// The objects below are light handles on the catalog of an open database;
// each read makes a new handle, so two handles on one class are equal by
// Name, not by identity.

class FieldObject : public hostapi::Field {
public:
  // dataType overrides the declared data type (a formula's value); 0 keeps it.
  FieldObject(std::shared_ptr<Engine> engine, FieldPath path, int dataType = 0);

  QString typeName() const override { return QStringLiteral("Field"); }
  QString name() const override { return path_.internal(); }
  QString localName() const override;
  int type() const override { return path_.last().type; }
  int size() const override { return path_.last().size; }
  int dataType() const override { return dataType_ ? dataType_ : path_.last().dataType; }
  bool hidden() const override { return path_.last().hidden; }
  std::shared_ptr<hostapi::Class> fieldClass() const override;
  std::shared_ptr<hostapi::Field> relatedField() const override;

  const FieldPath &path() const { return path_; }

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
  FieldPath path_;
  int dataType_;
};

class FieldsObject : public hostapi::Fields {
public:
  FieldsObject(std::shared_ptr<Engine> engine, const ClassDef &cls) : engine_(std::move(engine)), class_(cls) {}

  QString typeName() const override { return QStringLiteral("Fields"); }
  int count() const override { return int(class_.fields.size()); }
  std::shared_ptr<hostapi::Field> item(const QString &name) const override;
  std::shared_ptr<hostapi::Field> at(int index) const;
  bool exists(const QString &name) const override { return class_.field(name) != nullptr; }
  std::shared_ptr<hostapi::Field> lookup(const QString &path, int mode) const override;
  QString translatePath(const QString &path, int direction) const override;
  std::shared_ptr<hostapi::Class> fieldsClass() const override;

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
  const ClassDef &class_;
};

class ClassObject : public hostapi::Class {
public:
  ClassObject(std::shared_ptr<Engine> engine, const ClassDef &cls) : engine_(std::move(engine)), class_(cls) {}

  QString typeName() const override { return QStringLiteral("Class"); }
  QString name() const override { return class_.name; }
  QString localName() const override;
  std::shared_ptr<hostapi::Fields> fields() const override;
  std::shared_ptr<hostapi::Filters> filters() const override;

  const ClassDef &definition() const { return class_; }
  const std::shared_ptr<Engine> &engine() const { return engine_; }

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
  const ClassDef &class_;
};

class ClassesObject : public hostapi::Classes {
public:
  explicit ClassesObject(std::shared_ptr<Engine> engine) : engine_(std::move(engine)) {}

  QString typeName() const override { return QStringLiteral("Classes"); }
  int count() const override;
  std::shared_ptr<hostapi::Class> item(const QString &name) const override;
  std::shared_ptr<hostapi::Class> at(int index) const;
  bool exists(const QString &name) const override;
  std::shared_ptr<hostapi::Class> lookup(const QString &name, int mode) const override;

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<Engine> engine_;
};

// The class a value names: a Class, or a class name. Raises 5 when there
// is no such class, 13 for another kind of value.
const ClassDef &classOfValue(const Engine &engine, const Variant &value);

} // namespace kordel::nuvo
