#pragma once

#include "core/Variant.h"

#include <QHash>
#include <QString>

#include <functional>
#include <initializer_list>
#include <memory>
#include <vector>

namespace kordel {

class Object;

// One member that scripts and late-bound callers can reach. A property has
// a getter and may have a setter; a method has only the getter, which
// receives the call's arguments (by reference, so ByRef arguments come back).
struct Member {
  using Getter = std::function<Variant(Object &self, Args &args)>;
  using Setter = std::function<void(Object &self, Args &args, const Variant &value)>;

  QString name;
  Getter get;
  Setter set;
  bool isMethod = false;
  // Members that reach beyond the report (files, printing, settings, the
  // log, the running report itself) refuse layout scripts: a call or read
  // with callNeedsFullRights, a write with setNeedsFullRights
  // (core/ScriptRights.h).
  bool callNeedsFullRights = false;
  bool setNeedsFullRights = false;
};

// The member, refused to layout scripts as a whole.
Member fullRightsOnly(Member member);
// The member, readable by layout scripts but not writable by them.
Member fullRightsToSet(Member member);

// The members of a class, declared once beside the class. Names are found
// without regard to case. A table may extend the table of a base class; the
// default member is the one that "obj(args)" and "obj" as a value reach.
class MemberTable {
public:
  MemberTable(std::vector<Member> members, const MemberTable *base = nullptr, QString defaultMember = {});

  const Member *find(const QString &name) const;
  const QString &defaultMember() const { return defaultMember_; }

private:
  std::vector<Member> members_;
  QHash<QString, std::size_t> index_; // declared and lower-cased name -> member
  const MemberTable *base_;
  QString defaultMember_;
};

// The value of a property read with arguments it does not take: the
// arguments go to the value's default member (an array takes them as
// subscripts). Without arguments the value itself.
Variant applyArguments(const Variant &value, Args &args);
// The assignment obj.Prop(args) = value for a property without parameters:
// the value's default member is assigned with the arguments.
void assignThroughDefault(const Variant &target, Args &args, const Variant &value);

// Typed helpers to declare members with lambdas on the class itself:
//
//   const MemberTable &Dictionary::memberTable() const {
//     static const MemberTable table{{
//         property<Dictionary>("Count", [](Dictionary &d) { return Variant(d.count()); }),
//         method<Dictionary>("Add", [](Dictionary &d, Args &a) { d.add(arg(a, 0), arg(a, 1)); return Variant(); }),
//     }};
//     return table;
//   }
//
// Arguments given to a property that takes none go to the default member of
// its value, as in VB: obj.Items(1) is obj.Items.Item(1), and
// obj.Items(1) = v assigns obj.Items.Item(1).
template <class T, class Get> Member property(const char *name, Get get) {
  return Member{QString::fromLatin1(name),
                [get](Object &self, Args &args) { return applyArguments(Variant(get(static_cast<T &>(self))), args); },
                nullptr, false};
}

template <class T, class Get, class Set> Member property(const char *name, Get get, Set set) {
  return Member{QString::fromLatin1(name),
                [get](Object &self, Args &args) { return applyArguments(Variant(get(static_cast<T &>(self))), args); },
                [get, set](Object &self, Args &args, const Variant &value) {
                  if (args.empty())
                    set(static_cast<T &>(self), value);
                  else
                    assignThroughDefault(Variant(get(static_cast<T &>(self))), args, value);
                },
                false};
}

// A property with arguments, such as Item(key), read and optionally written.
template <class T, class Get> Member indexedProperty(const char *name, Get get) {
  return Member{QString::fromLatin1(name),
                [get](Object &self, Args &args) { return Variant(get(static_cast<T &>(self), args)); }, nullptr, false};
}

template <class T, class Get, class Set> Member indexedProperty(const char *name, Get get, Set set) {
  return Member{
      QString::fromLatin1(name), [get](Object &self, Args &args) { return Variant(get(static_cast<T &>(self), args)); },
      [set](Object &self, Args &args, const Variant &value) { set(static_cast<T &>(self), args, value); }, false};
}

template <class T, class Call> Member method(const char *name, Call call) {
  return Member{QString::fromLatin1(name),
                [call](Object &self, Args &args) { return Variant(call(static_cast<T &>(self), args)); }, nullptr,
                true};
}

// The argument at a position, Empty when the caller passed fewer.
const Variant &arg(const Args &args, std::size_t index);
// Raises 450 unless the call passed between min and max arguments.
void expectArgs(const Args &args, std::size_t min, std::size_t max);

// Walks a collection for For Each.
class Enumerator {
public:
  virtual ~Enumerator() = default;
  // The next element into value; false at the end.
  virtual bool next(Variant &value) = 0;
};

// An Enumerator over a list of values taken at the start.
class ListEnumerator : public Enumerator {
public:
  explicit ListEnumerator(std::vector<Variant> values) : values_(std::move(values)) {}
  bool next(Variant &value) override;

private:
  std::vector<Variant> values_;
  std::size_t position_ = 0;
};

// The base of everything that a script or a late-bound caller can reach.
// Classes declare their members in a MemberTable; classes whose members are
// not known in advance (script classes, records with field names) override
// the dispatch functions instead.
class Object : public std::enable_shared_from_this<Object> {
public:
  Object() = default;
  Object(const Object &) = delete;
  Object &operator=(const Object &) = delete;
  virtual ~Object();

  // The class name that TypeName reports.
  virtual QString typeName() const;

  // A property read or a method call; an empty name is the default member.
  // Raises 438 for an unknown member.
  virtual Variant call(const QString &name, Args &args);
  Variant get(const QString &name);
  // Calls with arguments given by value, for C++ callers.
  Variant invoke(const QString &name, Args args = {});

  // A property write, with the property's arguments (Item(key) = value).
  virtual void set(const QString &name, Args &args, const Variant &value);
  void set(const QString &name, const Variant &value);

  // Whether the object has a member of that name.
  virtual bool hasMember(const QString &name) const;
  // Whether that member is a method rather than a property. Languages that
  // tell "obj.Name" from "obj.Name()" read a property at once and hand out
  // a method as a function. False for unknown members.
  virtual bool isMethod(const QString &name) const;

  // For Each over the object; raises 438 for objects that are no collection.
  virtual std::unique_ptr<Enumerator> enumerate();

protected:
  virtual const MemberTable &memberTable() const;

private:
  const Member &findMember(const QString &name) const;
};

// The value a Variant stands for in an operator or a conversion: an
// object's default member, followed while it gives another object; any
// other value unchanged. Raises 91 for Nothing and 13 for a chain of
// default members that does not end in a plain value.
Variant plainValue(const Variant &value);

// Casts a Variant holding an object to an interface; nullptr when it holds
// something else or an object of another kind.
template <class T> std::shared_ptr<T> objectAs(const Variant &value) {
  if (!value.isObject())
    return nullptr;
  return std::dynamic_pointer_cast<T>(value.rawObject());
}

} // namespace kordel
