#include "script/vbscript/Resolver.h"

#include "script/vbscript/Builtins.h"
#include "script/vbscript/VbErrors.h"

namespace kordel::script::vb {

// Where the names of the code being resolved are looked up.
struct Resolver::Scope {
  Procedure *procedure = nullptr;       // the procedure whose body this is: it may gain nextSlot
  const Procedure *enclosing = nullptr; // code run from a string inside this procedure
  ClassDef *classDef = nullptr;
  bool optionExplicit = false;
  bool globalCode = false; // unknown names become global variables
  int *slotCount = nullptr;
  std::vector<int> withSlots;
  QHash<QString, int> implicitLocals; // undeclared names of a procedure and their nextSlot
};

namespace {

QString fold(const QString &name) { return name.toLower(); }

} // namespace

// ---- global declarations ----

int Resolver::lookupGlobal(const QString &folded) const {
  const auto it = pendingIndex_.constFind(folded);
  if (it != pendingIndex_.constEnd())
    return pending_[std::size_t(*it)].index;
  return globals_.find(folded);
}

int Resolver::declareGlobal(const QString &name, GlobalEntry::Kind kind, int line, int column) {
  const QString folded = fold(name);
  if (pendingIndex_.contains(folded))
    raiseCompileError(VbError::NameRedefined, line, column);
  int index = globals_.find(folded);
  if (index >= 0 && globals_.at(index).kind == GlobalEntry::Kind::NamedItem)
    raiseCompileError(VbError::NameRedefined, line, column);
  if (index < 0)
    index = globals_.size() + newEntries_++;
  pendingIndex_.insert(folded, int(pending_.size()));
  pending_.push_back(Pending{index, name, kind, {}, nullptr, nullptr});
  return int(pending_.size()) - 1;
}

int Resolver::implicitGlobal(const QString &name) {
  const QString folded = fold(name);
  const int known = lookupGlobal(folded);
  if (known >= 0)
    return known;
  Pending &made = pending_[std::size_t(declareGlobal(name, GlobalEntry::Kind::Variable, 0, 0))];
  made.undeclared = true;
  return made.index;
}

void Resolver::commit() {
  for (Pending &p : pending_) {
    const int index = globals_.add(p.name, p.kind);
    Q_ASSERT(index == p.index);
    GlobalEntry &entry = globals_.at(index);
    const bool keepsValue = entry.kind == GlobalEntry::Kind::Variable && p.kind == GlobalEntry::Kind::Variable;
    entry.kind = p.kind;
    entry.undeclared = p.undeclared;
    if (entry.procedure)
      globals_.retire(std::move(entry.procedure));
    if (entry.classDef)
      globals_.retire(std::move(entry.classDef));
    entry.procedure = std::move(p.procedure);
    entry.classDef = std::move(p.classDef);
    if (!keepsValue)
      entry.value = std::move(p.value);
  }
  pending_.clear();
  pendingIndex_.clear();
  newEntries_ = 0;
}

// ---- programs ----

void Resolver::resolveProgram(Program &program, const Procedure *enclosing) {
  resolveBlockOfCode(program, enclosing);
  commit();
}

void Resolver::checkProgram(Program &program) {
  resolveBlockOfCode(program, nullptr);
  pending_.clear();
  pendingIndex_.clear();
  newEntries_ = 0;
}

void Resolver::resolveBlockOfCode(Program &program, const Procedure *enclosing) {
  for (const auto &classDef : program.classes) {
    const int p = declareGlobal(classDef->name, GlobalEntry::Kind::Class, classDef->line, classDef->column);
    pending_[std::size_t(p)].classDef = classDef;
  }
  for (const auto &procedure : program.procedures) {
    // Of two procedures of one name the last one counts, as natively.
    const auto earlier = pendingIndex_.constFind(fold(procedure->name));
    if (earlier != pendingIndex_.constEnd() && pending_[std::size_t(*earlier)].kind == GlobalEntry::Kind::Procedure) {
      pending_[std::size_t(*earlier)].procedure = procedure;
      continue;
    }
    const int p = declareGlobal(procedure->name, GlobalEntry::Kind::Procedure, procedure->line, procedure->column);
    pending_[std::size_t(p)].procedure = procedure;
  }
  for (const VarDecl &decl : program.variables) {
    const int p = declareGlobal(decl.name, GlobalEntry::Kind::Variable, decl.line, decl.column);
    // Dim a() makes an array without dimensions yet: no bounds.
    if (decl.isFixedArray() || decl.dynamicArray)
      program.fixedArrays.push_back({pending_[std::size_t(p)].index, decl.bounds});
  }
  for (const ConstDecl &decl : program.consts) {
    const int p = declareGlobal(decl.name, GlobalEntry::Kind::Constant, decl.line, decl.column);
    pending_[std::size_t(p)].value = decl.value;
  }

  Scope scope;
  scope.enclosing = enclosing;
  scope.classDef = enclosing ? enclosing->owner : nullptr;
  scope.optionExplicit = program.optionExplicit;
  scope.globalCode = enclosing == nullptr;
  program.slotCount = enclosing ? enclosing->slotCount : 0;
  scope.slotCount = &program.slotCount;
  block(program.statements, scope);

  for (const auto &classDef : program.classes)
    declareClassMembers(*classDef);
  for (const auto &classDef : program.classes) {
    for (const auto &method : classDef->procedures)
      resolveProcedure(*method, classDef.get(), program.optionExplicit);
  }
  for (const auto &procedure : program.procedures)
    resolveProcedure(*procedure, nullptr, program.optionExplicit);
}

void Resolver::resolveExpression(Expr &expr, const Procedure *enclosing) {
  Scope scope;
  scope.enclosing = enclosing;
  scope.classDef = enclosing ? enclosing->owner : nullptr;
  int nextSlot = enclosing ? enclosing->slotCount : 0;
  scope.slotCount = &nextSlot;
  expression(expr, scope);
  commit();
}

// ---- classes and procedures ----

void Resolver::declareClassMembers(ClassDef &classDef) {
  using Kind = ClassDef::MemberKind;
  auto addMember = [&](const QString &name, Kind kind, int line, int column) -> ClassDef::Member & {
    const QString folded = fold(name);
    if (classDef.memberIndex.contains(folded)) {
      ClassDef::Member &existing = classDef.members[std::size_t(classDef.memberIndex.value(folded))];
      if (kind == Kind::Property && existing.kind == Kind::Property)
        return existing;
      raiseCompileError(VbError::NameRedefined, line, column);
    }
    classDef.memberIndex.insert(folded, int(classDef.members.size()));
    classDef.members.push_back(ClassDef::Member{name, kind, true});
    return classDef.members.back();
  };

  for (std::size_t i = 0; i < classDef.fields.size(); ++i) {
    const VarDecl &decl = classDef.fields[i];
    ClassDef::Member &member = addMember(decl.name, Kind::Field, decl.line, decl.column);
    member.field = int(i);
    member.isPublic = decl.isPublic;
  }
  for (const auto &procedure : classDef.procedures) {
    Procedure &p = *procedure;
    p.owner = &classDef;
    const QString folded = fold(p.name);
    if (folded == QLatin1String("class_initialize") || folded == QLatin1String("class_terminate")) {
      if (p.kind != ProcKind::Sub || !p.params.empty())
        raiseCompileError(VbError::InitializeWithArguments, p.line, p.column);
      (folded == QLatin1String("class_initialize") ? classDef.initialize : classDef.terminate) = &p;
    }
    int memberIndex;
    if (p.kind == ProcKind::Sub || p.kind == ProcKind::Function) {
      ClassDef::Member &member = addMember(p.name, Kind::Method, p.line, p.column);
      member.method = &p;
      member.isPublic = p.isPublic;
      memberIndex = classDef.findMember(folded);
    } else {
      ClassDef::Member &member = addMember(p.name, Kind::Property, p.line, p.column);
      Procedure *&slot = p.kind == ProcKind::PropertyGet   ? member.get
                         : p.kind == ProcKind::PropertyLet ? member.let
                                                           : member.set;
      if (slot)
        raiseCompileError(VbError::NameRedefined, p.line, p.column);
      slot = &p;
      // The value of Let and Set comes as one argument more than Get takes.
      const Procedure *get = member.get;
      const Procedure *put = member.let ? member.let : member.set;
      if (get && put && get->params.size() + 1 != put->params.size())
        raiseCompileError(VbError::InconsistentPropertyArguments, p.line, p.column);
      member.isPublic = (member.get && member.get->isPublic) || (member.let && member.let->isPublic) ||
                        (member.set && member.set->isPublic);
      memberIndex = classDef.findMember(folded);
    }
    if (p.isDefault) {
      if (classDef.defaultMember >= 0 && classDef.defaultMember != memberIndex)
        raiseCompileError(VbError::MultipleDefaults, p.line, p.column);
      classDef.defaultMember = memberIndex;
    }
  }
}

void Resolver::resolveProcedure(Procedure &p, ClassDef *owner, bool optionExplicit) {
  p.owner = owner;
  p.slotNames.clear();
  p.constValues.clear();
  p.fixedArrays.clear();
  int nextSlot = 0;
  auto declare = [&](const QString &name, int line, int column) {
    const QString folded = fold(name);
    if (p.slotNames.contains(folded) || p.constValues.contains(folded))
      raiseCompileError(VbError::NameRedefined, line, column);
    p.slotNames.insert(folded, nextSlot);
    return nextSlot++;
  };
  for (const Param &param : p.params)
    declare(param.name, param.line, param.column);
  p.returnSlot = p.returnsValue() ? nextSlot++ : -1;
  for (const VarDecl &decl : p.locals) {
    const int slot = declare(decl.name, decl.line, decl.column);
    if (decl.isFixedArray() || decl.dynamicArray)
      p.fixedArrays.push_back({slot, decl.bounds});
  }
  for (const ConstDecl &decl : p.consts) {
    const QString folded = fold(decl.name);
    if (p.slotNames.contains(folded) || p.constValues.contains(folded))
      raiseCompileError(VbError::NameRedefined, decl.line, decl.column);
    p.constValues.insert(folded, decl.value);
  }

  Scope scope;
  scope.procedure = &p;
  scope.classDef = owner;
  scope.optionExplicit = optionExplicit;
  scope.slotCount = &nextSlot;
  block(p.body, scope);
  // Code run from a string inside the procedure shares its undeclared
  // variables too.
  for (auto it = scope.implicitLocals.constBegin(); it != scope.implicitLocals.constEnd(); ++it)
    p.slotNames.insert(it.key(), it.value());
  p.slotCount = nextSlot;
}

// ---- statements ----

void Resolver::block(Block &statements, Scope &scope) {
  for (auto &s : statements)
    statement(*s, scope);
}

void Resolver::statement(Stmt &s, Scope &scope) {
  switch (s.kind) {
  case StmtKind::Assign: {
    auto &assign = static_cast<AssignStmt &>(s);
    expression(*assign.value, scope);
    expression(*assign.target, scope);
    return;
  }
  case StmtKind::Call: expression(*static_cast<CallStmt &>(s).call, scope, true); return;
  case StmtKind::ReDim:
    for (auto &item : static_cast<ReDimStmt &>(s).items) {
      for (auto &bound : item.bounds)
        expression(*bound, scope);
      bindName(*item.target, scope, false, true);
    }
    return;
  case StmtKind::Erase: bindName(*static_cast<EraseStmt &>(s).target, scope, false); return;
  case StmtKind::If: {
    auto &stmt = static_cast<IfStmt &>(s);
    for (auto &branch : stmt.branches) {
      expression(*branch.condition, scope);
      block(branch.body, scope);
    }
    block(stmt.elseBody, scope);
    return;
  }
  case StmtKind::Select: {
    auto &stmt = static_cast<SelectStmt &>(s);
    expression(*stmt.subject, scope);
    for (auto &item : stmt.cases) {
      for (auto &value : item.values)
        expression(*value, scope);
      block(item.body, scope);
    }
    block(stmt.elseBody, scope);
    return;
  }
  case StmtKind::For: {
    auto &stmt = static_cast<ForStmt &>(s);
    bindName(*stmt.counter, scope, false);
    expression(*stmt.start, scope);
    expression(*stmt.end, scope);
    if (stmt.step)
      expression(*stmt.step, scope);
    block(stmt.body, scope);
    return;
  }
  case StmtKind::ForEach: {
    auto &stmt = static_cast<ForEachStmt &>(s);
    bindName(*stmt.element, scope, false);
    expression(*stmt.collection, scope);
    block(stmt.body, scope);
    return;
  }
  case StmtKind::Do: {
    auto &stmt = static_cast<DoStmt &>(s);
    if (stmt.condition)
      expression(*stmt.condition, scope);
    block(stmt.body, scope);
    return;
  }
  case StmtKind::With: {
    auto &stmt = static_cast<WithStmt &>(s);
    expression(*stmt.object, scope);
    stmt.slot = (*scope.slotCount)++;
    scope.withSlots.push_back(stmt.slot);
    block(stmt.body, scope);
    scope.withSlots.pop_back();
    return;
  }
  case StmtKind::Exit:
  case StmtKind::OnError: return;
  }
}

// ---- expressions ----

void Resolver::expression(Expr &e, Scope &scope, bool asCallee) {
  switch (e.kind) {
  case ExprKind::Literal:
  case ExprKind::New: return;
  case ExprKind::Name: bindName(static_cast<NameExpr &>(e), scope, asCallee); return;
  case ExprKind::Member: {
    auto &member = static_cast<MemberExpr &>(e);
    if (member.object) {
      expression(*member.object, scope);
    } else {
      // Outside a With block the reference fails when it runs, as natively.
      member.withSlot = scope.withSlots.empty() ? -1 : scope.withSlots.back();
    }
    return;
  }
  case ExprKind::Call: {
    auto &call = static_cast<CallExpr &>(e);
    expression(*call.callee, scope, true);
    for (auto &arg : call.args) {
      if (arg)
        expression(*arg, scope);
    }
    return;
  }
  case ExprKind::Unary: expression(*static_cast<UnaryExpr &>(e).operand, scope); return;
  case ExprKind::Binary: {
    auto &binary = static_cast<BinaryExpr &>(e);
    expression(*binary.left, scope);
    expression(*binary.right, scope);
    return;
  }
  case ExprKind::Me:
    if (!scope.classDef)
      raiseCompileError(VbError::InvalidUseOfMe, e.line, e.column);
    return;
  case ExprKind::Paren: expression(*static_cast<ParenExpr &>(e).inner, scope); return;
  }
}

void Resolver::bindName(NameExpr &n, Scope &scope, bool asCallee, bool declaresArray) {
  const QString &folded = n.folded;
  const Procedure *procedure = scope.procedure ? scope.procedure : scope.enclosing;

  if (procedure) {
    // Inside a Function or Property Get its own name, unless called,
    // is the variable of its result.
    if (procedure->returnsValue() && !asCallee && folded == fold(procedure->name)) {
      n.binding = Binding::Local;
      n.index = procedure->returnSlot;
      return;
    }
    const auto slot = procedure->slotNames.constFind(folded);
    if (slot != procedure->slotNames.constEnd()) {
      n.binding = Binding::Local;
      n.index = *slot;
      return;
    }
    const auto constant = procedure->constValues.constFind(folded);
    if (constant != procedure->constValues.constEnd()) {
      n.binding = Binding::Constant;
      n.constant = *constant;
      return;
    }
  }
  if (scope.classDef) {
    const int member = scope.classDef->findMember(folded);
    if (member >= 0) {
      const ClassDef::Member &m = scope.classDef->members[std::size_t(member)];
      n.binding = m.kind == ClassDef::MemberKind::Field ? Binding::Field : Binding::ClassMember;
      n.index = m.kind == ClassDef::MemberKind::Field ? m.field : member;
      return;
    }
  }
  const int global = lookupGlobal(folded);
  if (global >= 0) {
    const auto pending = pendingIndex_.constFind(folded);
    if (pending != pendingIndex_.constEnd() && pending_[std::size_t(*pending)].kind == GlobalEntry::Kind::Constant) {
      n.binding = Binding::Constant;
      n.constant = pending_[std::size_t(*pending)].value;
      return;
    }
    n.binding = Binding::Global;
    n.index = global;
    return;
  }
  for (int item : globals_.globalMemberItems()) {
    const Variant &object = globals_.at(item).value;
    if (object.isObject() && object.rawObject() && object.rawObject()->hasMember(n.name)) {
      n.binding = Binding::ItemMember;
      n.index = item;
      return;
    }
  }
  if (const Variant *constant = findBuiltinConstant(folded)) {
    n.binding = Binding::Constant;
    n.constant = *constant;
    return;
  }
  if (const BuiltinDef *builtin = findBuiltin(folded)) {
    n.binding = Binding::Builtin;
    n.builtin = builtin;
    return;
  }

  // Nothing declares the name (yet).
  if (scope.procedure) {
    if (declaresArray) { // ReDim declares the variable it sizes
      const int slot = (*scope.slotCount)++;
      scope.procedure->slotNames.insert(folded, slot);
      n.binding = Binding::Local;
      n.index = slot;
      return;
    }
    auto implicit = scope.implicitLocals.constFind(folded);
    if (implicit == scope.implicitLocals.constEnd())
      implicit = scope.implicitLocals.insert(folded, (*scope.slotCount)++);
    n.binding = Binding::Unresolved;
    n.implicitSlot = *implicit;
    n.optionExplicit = scope.optionExplicit;
    return;
  }
  if (scope.globalCode && (!scope.optionExplicit || declaresArray)) {
    n.binding = Binding::Global;
    n.index = implicitGlobal(n.name);
    return;
  }
  n.binding = Binding::Unresolved;
  n.optionExplicit = scope.optionExplicit;
}

} // namespace kordel::script::vb
