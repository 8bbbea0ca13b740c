#pragma once

#include "core/Variant.h"

#include <QHash>
#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

// The syntax tree of a script. The parser builds it; the resolver fills
// the "resolved" parts once (bindings of names, slot numbers); the
// interpreter walks it. Names that could not be bound at compile time are
// bound at their first execution and the binding is kept in the node.

namespace kordel::script::vb {

struct BuiltinDef;
struct ClassDef;
struct Procedure;

// ---- expressions ----

enum class ExprKind : std::uint8_t { Literal, Name, Member, Call, Unary, Binary, New, Me, Paren };

struct Expr {
  Expr(ExprKind kind, int line, int column) : kind(kind), line(line), column(column) {}
  virtual ~Expr() = default;
  ExprKind kind;
  int line;
  int column;
};
using ExprPtr = std::unique_ptr<Expr>;

struct LiteralExpr : Expr {
  LiteralExpr(Variant value, int line, int column) : Expr(ExprKind::Literal, line, column), value(std::move(value)) {}
  Variant value;
};

// What a name refers to once resolved.
enum class Binding : std::uint8_t {
  Unresolved,  // bound at first execution
  Local,       // a slot of the frame
  Global,      // an entry of the global table: variable, constant, procedure, class or named item
  Field,       // a field of Me
  ClassMember, // a method or property of Me
  ItemMember,  // a member of a named item whose members are global
  Builtin,     // a function of the library
  Constant,    // a constant whose value the node holds
};

struct NameExpr : Expr {
  NameExpr(QString name, int line, int column)
      : Expr(ExprKind::Name, line, column), name(std::move(name)), folded(this->name.toLower()) {}
  QString name;
  QString folded; // lower case, the key of every table
  // resolved
  Binding binding = Binding::Unresolved;
  int index = -1;              // slot, global entry, field, member or named item
  int implicitSlot = -1;       // for an unresolved name in a procedure: its slot if no global turns up
  bool optionExplicit = false; // an unresolved name that finds nothing raises 500
  bool undeclared = false;     // bound to a local variable that nothing declares
  const BuiltinDef *builtin = nullptr;
  Variant constant;
};

struct MemberExpr : Expr {
  MemberExpr(ExprPtr object, QString name, int line, int column)
      : Expr(ExprKind::Member, line, column), object(std::move(object)), name(std::move(name)) {}
  ExprPtr object; // null for ".name" inside With
  QString name;
  // resolved: the slot that holds the With object when object is null
  int withSlot = -1;
  // a cache of the last script class met here and the member it had
  const ClassDef *cachedClass = nullptr;
  int cachedMember = -1;
};

// f(args), a(subscripts), obj.m(args) and obj(args): what it is depends on
// the callee at run time. A null argument is one left out: f(1, , 3).
struct CallExpr : Expr {
  CallExpr(ExprPtr callee, std::vector<ExprPtr> args, int line, int column)
      : Expr(ExprKind::Call, line, column), callee(std::move(callee)), args(std::move(args)) {}
  ExprPtr callee;
  std::vector<ExprPtr> args;
};

enum class UnaryOp : std::uint8_t { Negate, Plus, Not };

struct UnaryExpr : Expr {
  UnaryExpr(UnaryOp op, ExprPtr operand, int line, int column)
      : Expr(ExprKind::Unary, line, column), op(op), operand(std::move(operand)) {}
  UnaryOp op;
  ExprPtr operand;
};

enum class BinaryOp : std::uint8_t {
  Add,
  Subtract,
  Multiply,
  Divide,
  IntDivide,
  Mod,
  Power,
  Concat,
  Equal,
  NotEqual,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
  Is,
  And,
  Or,
  Xor,
  Eqv,
  Imp,
};

struct BinaryExpr : Expr {
  BinaryExpr(BinaryOp op, ExprPtr left, ExprPtr right, int line, int column)
      : Expr(ExprKind::Binary, line, column), op(op), left(std::move(left)), right(std::move(right)) {}
  BinaryOp op;
  ExprPtr left;
  ExprPtr right;
};

struct NewExpr : Expr {
  NewExpr(QString className, int line, int column)
      : Expr(ExprKind::New, line, column), className(std::move(className)), folded(this->className.toLower()) {}
  QString className;
  QString folded;
};

// An expression in parentheses: an argument written so goes by value.
struct ParenExpr : Expr {
  ParenExpr(ExprPtr inner, int line, int column) : Expr(ExprKind::Paren, line, column), inner(std::move(inner)) {}
  ExprPtr inner;
};

// ---- statements ----

enum class StmtKind : std::uint8_t { Assign, Call, ReDim, Erase, If, Select, For, ForEach, Do, Exit, With, OnError };

struct Stmt {
  Stmt(StmtKind kind, int line, int column) : kind(kind), line(line), column(column) {}
  virtual ~Stmt() = default;
  StmtKind kind;
  int line;
  int column;
};
using StmtPtr = std::unique_ptr<Stmt>;
using Block = std::vector<StmtPtr>;

struct AssignStmt : Stmt {
  AssignStmt(ExprPtr target, ExprPtr value, bool isSet, int line, int column)
      : Stmt(StmtKind::Assign, line, column), target(std::move(target)), value(std::move(value)), isSet(isSet) {}
  ExprPtr target;
  ExprPtr value;
  bool isSet;
};

// A procedure or method call as a statement; call is a Name, Member or
// Call expression. Its value, if any, is dropped.
struct CallStmt : Stmt {
  CallStmt(ExprPtr call, int line, int column) : Stmt(StmtKind::Call, line, column), call(std::move(call)) {}
  ExprPtr call;
};

struct ReDimStmt : Stmt {
  struct Item {
    std::unique_ptr<NameExpr> target;
    std::vector<ExprPtr> bounds; // upper bounds, one per dimension
  };
  ReDimStmt(bool preserve, int line, int column) : Stmt(StmtKind::ReDim, line, column), preserve(preserve) {}
  bool preserve;
  std::vector<Item> items;
};

struct EraseStmt : Stmt {
  EraseStmt(std::unique_ptr<NameExpr> target, int line, int column)
      : Stmt(StmtKind::Erase, line, column), target(std::move(target)) {}
  std::unique_ptr<NameExpr> target;
};

struct IfStmt : Stmt {
  struct Branch {
    ExprPtr condition;
    Block body;
  };
  IfStmt(int line, int column) : Stmt(StmtKind::If, line, column) {}
  std::vector<Branch> branches;
  Block elseBody;
};

struct SelectStmt : Stmt {
  struct Case {
    std::vector<ExprPtr> values;
    Block body;
  };
  SelectStmt(ExprPtr subject, int line, int column)
      : Stmt(StmtKind::Select, line, column), subject(std::move(subject)) {}
  ExprPtr subject;
  std::vector<Case> cases;
  bool hasElse = false;
  Block elseBody;
};

struct ForStmt : Stmt {
  ForStmt(int line, int column) : Stmt(StmtKind::For, line, column) {}
  std::unique_ptr<NameExpr> counter;
  ExprPtr start;
  ExprPtr end;
  ExprPtr step; // null for 1
  Block body;
};

struct ForEachStmt : Stmt {
  ForEachStmt(int line, int column) : Stmt(StmtKind::ForEach, line, column) {}
  std::unique_ptr<NameExpr> element;
  ExprPtr collection;
  Block body;
};

struct DoStmt : Stmt {
  enum class Test : std::uint8_t { None, WhileBefore, UntilBefore, WhileAfter, UntilAfter };
  DoStmt(int line, int column) : Stmt(StmtKind::Do, line, column) {}
  Test test = Test::None;
  ExprPtr condition;
  Block body;
};

enum class ExitKind : std::uint8_t { Do, For, Procedure };

struct ExitStmt : Stmt {
  ExitStmt(ExitKind what, int line, int column) : Stmt(StmtKind::Exit, line, column), what(what) {}
  ExitKind what;
};

struct WithStmt : Stmt {
  WithStmt(ExprPtr object, int line, int column) : Stmt(StmtKind::With, line, column), object(std::move(object)) {}
  ExprPtr object;
  Block body;
  int slot = -1; // resolved: the hidden slot holding the object
};

struct OnErrorStmt : Stmt {
  OnErrorStmt(bool resumeNext, int line, int column) : Stmt(StmtKind::OnError, line, column), resumeNext(resumeNext) {}
  bool resumeNext;
};

// ---- declarations ----

// A variable of Dim, Public or Private: a scalar, a fixed array with its
// upper bounds, or a dynamic array "x()".
struct VarDecl {
  QString name;
  std::vector<std::int32_t> bounds;
  bool dynamicArray = false;
  bool isPublic = true;
  int line = 0;
  int column = 0;
  bool isFixedArray() const { return !bounds.empty(); }
};

struct ConstDecl {
  QString name;
  Variant value;
  int line = 0;
  int column = 0;
};

struct Param {
  QString name;
  bool byRef = true;
  int line = 0;
  int column = 0;
};

enum class ProcKind : std::uint8_t { Sub, Function, PropertyGet, PropertyLet, PropertySet };

struct Procedure {
  QString name;
  ProcKind kind = ProcKind::Sub;
  bool isPublic = true;
  bool isDefault = false;
  std::vector<Param> params;
  std::vector<VarDecl> locals;
  std::vector<ConstDecl> consts;
  Block body;
  int line = 0;
  int column = 0;

  // resolved
  ClassDef *owner = nullptr;
  int slotCount = 0;
  int returnSlot = -1; // Function and Property Get: the slot of the result
  std::vector<std::pair<int, std::vector<std::int32_t>>> fixedArrays; // slot and upper bounds
  QHash<QString, int> slotNames;                                      // folded name -> slot, for code run from strings
  QHash<QString, Variant> constValues;                                // folded name -> value

  bool returnsValue() const { return kind == ProcKind::Function || kind == ProcKind::PropertyGet; }
};

struct ClassDef {
  enum class MemberKind : std::uint8_t { Field, Method, Property };
  struct Member {
    QString name;
    MemberKind kind = MemberKind::Field;
    bool isPublic = true;
    int field = -1;
    Procedure *method = nullptr;
    Procedure *get = nullptr;
    Procedure *let = nullptr;
    Procedure *set = nullptr;
  };

  QString name;
  int line = 0;
  int column = 0;
  std::vector<VarDecl> fields;
  std::vector<std::shared_ptr<Procedure>> procedures;

  // resolved
  std::vector<Member> members;
  QHash<QString, int> memberIndex; // folded name -> member
  int defaultMember = -1;
  Procedure *initialize = nullptr;
  Procedure *terminate = nullptr;

  int findMember(const QString &folded) const { return memberIndex.value(folded, -1); }
};

// One block of code as given to addCode, ExecuteGlobal or Execute.
struct Program {
  bool optionExplicit = false;
  Block statements;
  std::vector<VarDecl> variables;
  std::vector<ConstDecl> consts;
  std::vector<std::shared_ptr<Procedure>> procedures;
  std::vector<std::shared_ptr<ClassDef>> classes;

  // resolved: slots of the frame the global statements run in
  int slotCount = 0;
  std::vector<std::pair<int, std::vector<std::int32_t>>> fixedArrays; // global entry and upper bounds
};

} // namespace kordel::script::vb
