#pragma once

#include "core/Object.h"
#include "script/vbscript/Ast.h"

#include <QHash>

#include <deque>
#include <memory>
#include <vector>

namespace kordel::script::vb {

// One name of the global scope. Variables live here by value; entries
// never move (a deque), so a reference to a global variable passed ByRef
// stays valid while code added later grows the table.
struct GlobalEntry {
  enum class Kind : std::uint8_t { Variable, Constant, Procedure, Class, NamedItem };

  QString name;
  Kind kind = Kind::Variable;
  Variant value;                        // variable, constant, or the named item's object
  std::shared_ptr<Procedure> procedure; // Sub or Function
  std::shared_ptr<ClassDef> classDef;
  bool globalMembers = false; // a named item whose members are reachable by their own names
  bool undeclared = false;    // a variable that its use made, with no Dim
};

// The global names of an engine: named items, variables, constants,
// procedures and classes of every block of code added, found without
// regard to case.
class GlobalTable {
public:
  // The entry's index, or -1.
  int find(const QString &folded) const { return index_.value(folded, -1); }
  GlobalEntry &at(int index) { return entries_[std::size_t(index)]; }
  const GlobalEntry &at(int index) const { return entries_[std::size_t(index)]; }
  int size() const { return int(entries_.size()); }

  // Adds an entry, or returns the index of the one of that name.
  int add(const QString &name, GlobalEntry::Kind kind);

  // The named items that lend their members to the global scope.
  const std::vector<int> &globalMemberItems() const { return globalMemberItems_; }
  void markGlobalMembers(int index);

  // Keeps a replaced procedure or class alive: code of it may still be
  // running when a later block redefines its name.
  void retire(std::shared_ptr<const void> definition) { retired_.push_back(std::move(definition)); }

  // Drops every value, in reverse order of creation, so that objects that
  // run code as they die still find the table in place.
  void clearValues();

private:
  std::deque<GlobalEntry> entries_;
  QHash<QString, int> index_;
  std::vector<int> globalMemberItems_;
  std::vector<std::shared_ptr<const void>> retired_;
};

} // namespace kordel::script::vb
