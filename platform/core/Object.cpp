#include "core/Object.h"

#include "core/Error.h"
#include "core/FoldedName.h"
#include "core/ScriptRights.h"

namespace kordel {

MemberTable::MemberTable(std::vector<Member> members, const MemberTable *base, QString defaultMember)
    : members_(std::move(members)), base_(base), defaultMember_(std::move(defaultMember)) {
  if (defaultMember_.isEmpty() && base_)
    defaultMember_ = base_->defaultMember();
  // Each member is indexed as declared and in lower case: callers mostly
  // spell a name as declared, and then no lower-casing copy is made.
  for (std::size_t i = 0; i < members_.size(); ++i) {
    index_.insert(members_[i].name, i);
    index_.insert(members_[i].name.toLower(), i);
  }
}

const Member *MemberTable::find(const QString &name) const {
  if (const auto it = index_.constFind(name); it != index_.constEnd())
    return &members_[*it];
  // Every table indexes its members in lower case too.
  const QString &folded = foldedForLookup(name);
  for (const MemberTable *table = this; table; table = table->base_)
    if (const auto it = table->index_.constFind(folded); it != table->index_.constEnd())
      return &table->members_[*it];
  return nullptr;
}

Member fullRightsOnly(Member member) {
  member.callNeedsFullRights = true;
  member.setNeedsFullRights = true;
  return member;
}

Member fullRightsToSet(Member member) {
  member.setNeedsFullRights = true;
  return member;
}

Variant applyArguments(const Variant &value, Args &args) {
  if (args.empty())
    return value;
  if (value.isArray()) {
    std::vector<std::int32_t> subscripts;
    for (const Variant &a : args)
      subscripts.push_back(a.toLong());
    return value.array().at(subscripts);
  }
  if (!value.isObject())
    raiseError(ErrorNumber::WrongArgumentCount);
  if (!value.rawObject())
    raiseError(ErrorNumber::ObjectNotSet);
  return value.rawObject()->call(QString(), args);
}

void assignThroughDefault(const Variant &target, Args &args, const Variant &value) {
  if (!target.isObject())
    raiseError(ErrorNumber::WrongArgumentCount);
  if (!target.rawObject())
    raiseError(ErrorNumber::ObjectNotSet);
  target.rawObject()->set(QString(), args, value);
}

const Variant &arg(const Args &args, std::size_t index) {
  static const Variant empty;
  return index < args.size() ? args[index] : empty;
}

void expectArgs(const Args &args, std::size_t min, std::size_t max) {
  if (args.size() < min || args.size() > max)
    raiseError(ErrorNumber::WrongArgumentCount);
}

Variant plainValue(const Variant &value) {
  Variant current = value;
  for (int depth = 0; current.isObject(); ++depth) {
    if (!current.rawObject())
      raiseError(ErrorNumber::ObjectNotSet);
    if (depth == 16)
      raiseError(ErrorNumber::TypeMismatch);
    current = current.rawObject()->get(QString());
  }
  return current;
}

bool ListEnumerator::next(Variant &value) {
  if (position_ >= values_.size())
    return false;
  value = values_[position_++];
  return true;
}

Object::~Object() = default;

QString Object::typeName() const { return QStringLiteral("Object"); }

const MemberTable &Object::memberTable() const {
  static const MemberTable empty{{}};
  return empty;
}

const Member &Object::findMember(const QString &name) const {
  const MemberTable &table = memberTable();
  const QString &wanted = name.isEmpty() ? table.defaultMember() : name;
  const Member *member = wanted.isEmpty() ? nullptr : table.find(wanted);
  if (!member)
    raiseError(ErrorNumber::NoSuchMember, typeName(),
               QStringLiteral("Object doesn't support this property or method: '%1'").arg(name));
  return *member;
}

Variant Object::call(const QString &name, Args &args) {
  const Member &member = findMember(name);
  if (member.callNeedsFullRights)
    requireFullRights(typeName() + u'.' + member.name);
  return member.get(*this, args);
}

Variant Object::get(const QString &name) {
  Args none;
  return call(name, none);
}

Variant Object::invoke(const QString &name, Args args) { return call(name, args); }

void Object::set(const QString &name, Args &args, const Variant &value) {
  const Member &member = findMember(name);
  if (!member.set) {
    // obj.Items(k) = v on a read-only property: the property's value takes it.
    if (!args.empty() && !member.isMethod) {
      Args none;
      assignThroughDefault(member.get(*this, none), args, value);
      return;
    }
    raiseError(ErrorNumber::NoSuchMember, typeName(),
               QStringLiteral("Property '%1' cannot be assigned").arg(member.name));
  }
  if (member.setNeedsFullRights)
    requireFullRights(typeName() + u'.' + member.name);
  member.set(*this, args, value);
}

void Object::set(const QString &name, const Variant &value) {
  Args none;
  set(name, none, value);
}

bool Object::hasMember(const QString &name) const { return memberTable().find(name) != nullptr; }

bool Object::isMethod(const QString &name) const {
  const Member *member = memberTable().find(name);
  return member && member->isMethod;
}

std::unique_ptr<Enumerator> Object::enumerate() {
  raiseError(ErrorNumber::NoSuchMember, typeName(), QStringLiteral("Object doesn't support For Each"));
}

} // namespace kordel
