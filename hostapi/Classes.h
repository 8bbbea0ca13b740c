#pragma once

#include "core/Object.h"

#include <memory>

namespace kordel::hostapi {

class Class;
class Field;
class Filters;

// How Classes.Lookup and Fields.Lookup read a name or a field path. A path
// is names joined by "."; every step but the last is a relation.
namespace LookupMode {
constexpr int Internal = 0;   // the database's own names only
constexpr int Local = 1;      // the names in the user's language only
constexpr int LocalFirst = 2; // each step by its local name, else by its own name
constexpr int Either = 4;     // each step by its own name, else by its local name
} // namespace LookupMode

// Fields.TranslatePath: which form to give.
namespace PathDirection {
constexpr int ToInternal = 0;
constexpr int ToLocal = 1;
} // namespace PathDirection

// A field of a class, or the last field of a path. For a path of several
// steps Name and LocalName are the whole path in that form, so that what a
// lookup gives can be handed back to Record.Value and Record.Text.
// Late-bound: Name, LocalName, Type, Size, DataType, Class, RelatedField,
// Hidden.
class Field : public Object {
public:
  virtual QString name() const = 0;
  virtual QString localName() const = 0;
  // A code of FieldType.
  virtual int type() const = 0;
  // The most characters a text field holds; 0 for other kinds.
  virtual int size() const = 0;
  // A code of DataType.
  virtual int dataType() const = 0;
  virtual bool hidden() const = 0;
  // The class the (last) field belongs to.
  virtual std::shared_ptr<Class> fieldClass() const = 0;
  // The other side of a relation; nullptr for a field that is none.
  virtual std::shared_ptr<Field> relatedField() const = 0;
};

// The fields of a class, in their defined order. Late-bound: Count,
// Item(name or 1-based index) (default), Exists, Lookup, TranslatePath,
// Class, and For Each.
class Fields : public Object {
public:
  virtual int count() const = 0;
  // A field by its own name, without regard to case; raises 9 when the
  // class has no such field.
  virtual std::shared_ptr<Field> item(const QString &name) const = 0;
  virtual bool exists(const QString &name) const = 0;
  // The field a path leads to, read as the LookupMode says; nullptr when
  // it leads nowhere.
  virtual std::shared_ptr<Field> lookup(const QString &path, int mode) const = 0;
  // The path in the other form (PathDirection). Each step may be given in
  // either form. Raises 5 when the path leads nowhere.
  virtual QString translatePath(const QString &path, int direction) const = 0;
  virtual std::shared_ptr<Class> fieldsClass() const = 0;
};

// A class of the database. Late-bound: Name, LocalName, Fields, Filters.
class Class : public Object {
public:
  virtual QString name() const = 0;
  // The name in the user's language; the own name when none is given.
  virtual QString localName() const = 0;
  virtual std::shared_ptr<Fields> fields() const = 0;
  // The saved filters of the class.
  virtual std::shared_ptr<Filters> filters() const = 0;
};

// The classes of the database. Late-bound: Count, Item(name or 1-based
// index) (default), Exists, Lookup, and For Each.
class Classes : public Object {
public:
  virtual int count() const = 0;
  // Raises 9 for a class that does not exist.
  virtual std::shared_ptr<Class> item(const QString &name) const = 0;
  virtual bool exists(const QString &name) const = 0;
  // A class by name as the LookupMode says; nullptr when there is none.
  virtual std::shared_ptr<Class> lookup(const QString &name, int mode) const = 0;
};

} // namespace kordel::hostapi
