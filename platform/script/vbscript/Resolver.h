#pragma once

#include "script/vbscript/Ast.h"
#include "script/vbscript/GlobalTable.h"

namespace kordel::script::vb {

// Binds the names of a parsed block once, before it runs: locals and
// parameters to frame slots, class members to field and member indexes,
// globals to entries of the table, library functions and constants to
// their definitions. Names that nothing declares yet are left for the first
// execution. Declarations of the block (variables, constants, procedures,
// classes) enter the global table only when the whole block resolved, so
// a compile error adds nothing.
class Resolver {
public:
  explicit Resolver(GlobalTable &globals) : globals_(globals) {}

  // A block given to addCode or ExecuteGlobal. For Execute inside a
  // procedure, enclosing is that procedure: the block sees its locals and
  // its hidden slots follow the procedure's own.
  void resolveProgram(Program &program, const Procedure *enclosing = nullptr);
  // Resolves a block as addCode would, raising what resolving raises, and
  // then forgets its declarations: the global table stays as it was.
  void checkProgram(Program &program);

  // A single expression (evaluate, Eval) in the global scope or in the
  // scope of the enclosing procedure.
  void resolveExpression(Expr &expression, const Procedure *enclosing = nullptr);

private:
  struct Scope;
  struct Pending {
    int index;
    QString name;
    GlobalEntry::Kind kind;
    Variant value;
    std::shared_ptr<Procedure> procedure;
    std::shared_ptr<ClassDef> classDef;
    bool undeclared = false;
  };

  int declareGlobal(const QString &name, GlobalEntry::Kind kind, int line, int column);
  int implicitGlobal(const QString &name);
  int lookupGlobal(const QString &folded) const;
  void commit();
  void resolveBlockOfCode(Program &program, const Procedure *enclosing);

  void declareClassMembers(ClassDef &classDef);
  void resolveProcedure(Procedure &procedure, ClassDef *owner, bool optionExplicit);

  void block(Block &statements, Scope &scope);
  void statement(Stmt &statement, Scope &scope);
  void expression(Expr &expression, Scope &scope, bool asCallee = false);
  void bindName(NameExpr &name, Scope &scope, bool asCallee, bool declaresArray = false);

  GlobalTable &globals_;
  std::vector<Pending> pending_;
  QHash<QString, int> pendingIndex_; // folded name -> pending_
  int newEntries_ = 0;
};

} // namespace kordel::script::vb
