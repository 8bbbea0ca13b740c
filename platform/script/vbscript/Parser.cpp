#include "script/vbscript/Parser.h"

#include "script/vbscript/Lexer.h"
#include "script/vbscript/VbErrors.h"

#include <functional>
#include <utility>

namespace kordel::script::vb {

namespace {

// Deeper nesting than this (parentheses, blocks) is refused rather than
// risking the parser's own stack.
constexpr int kMaxNesting = 200;

class Parser {
public:
  explicit Parser(const QString &text) : tokens_(tokenize(text)) {}

  std::unique_ptr<Program> program() {
    auto result = std::make_unique<Program>();
    program_ = result.get();
    skipSeparators();
    if (at(Tok::KwOption)) {
      optionExplicit();
      program_->optionExplicit = true;
    }
    while (true) {
      skipSeparators();
      if (at(Tok::End))
        break;
      topLevelItem();
    }
    return result;
  }

  ExprPtr singleExpression() {
    skipNewlines();
    ExprPtr result = expression();
    skipNewlines();
    if (!at(Tok::End))
      fail(VbError::ExpectedEndOfStatement);
    return result;
  }

private:
  // ---- token access ----

  const Token &peek(std::size_t ahead = 0) const {
    const std::size_t i = pos_ + ahead;
    return i < tokens_.size() ? tokens_[i] : tokens_.back();
  }
  bool at(Tok kind) const { return peek().kind == kind; }
  bool atWord(const char *word, std::size_t ahead = 0) const {
    const Token &t = peek(ahead);
    return t.kind == Tok::Identifier && t.text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
  }
  const Token &take() { return tokens_[pos_ < tokens_.size() - 1 ? pos_++ : pos_]; }
  bool accept(Tok kind) {
    if (!at(kind))
      return false;
    take();
    return true;
  }
  const Token &expect(Tok kind, int errorNumber) {
    if (!at(kind))
      fail(errorNumber);
    return take();
  }
  void expectWord(const char *word, int errorNumber) {
    if (!atWord(word))
      fail(errorNumber);
    take();
  }
  [[noreturn]] void fail(int number) { raiseCompileError(number, peek().line, peek().column); }
  [[noreturn]] void failAt(int number, const Token &token) { raiseCompileError(number, token.line, token.column); }

  bool atSeparator() const { return at(Tok::Newline) || at(Tok::Colon); }
  void skipSeparators() {
    while (atSeparator())
      take();
  }
  void skipNewlines() {
    while (at(Tok::Newline))
      take();
  }
  // Besides a line end or a colon, a statement ends before the Else or End If
  // of a one-line If, and before the End Sub or End Function of its
  // procedure: "x = 1 End Sub" is a line natively.
  bool atEndOfStatement() const {
    return atSeparator() || at(Tok::End) || (singleLineIf_ > 0 && (at(Tok::KwElse) || atEnd(Tok::KwIf))) ||
           (procedure_ && (atEnd(Tok::KwSub) || atEnd(Tok::KwFunction)));
  }
  void endOfStatement() {
    if (!atEndOfStatement())
      fail(VbError::ExpectedEndOfStatement);
  }

  QString identifier() {
    const Token &t = expect(Tok::Identifier, VbError::ExpectedIdentifier);
    return t.text;
  }

  struct NestingGuard {
    explicit NestingGuard(Parser &p) : parser(p) {
      if (++parser.nesting_ > kMaxNesting)
        parser.fail(VbError::ExpressionTooComplex);
    }
    ~NestingGuard() { --parser.nesting_; }
    Parser &parser;
  };

  // ---- top level ----

  void optionExplicit() {
    take();
    expectWord("explicit", VbError::ExpectedStatement);
    endOfStatement();
  }

  void topLevelItem() {
    const Token &first = peek();
    if (first.kind == Tok::KwClass) {
      classDefinition();
      return;
    }
    if (first.kind == Tok::KwPublic || first.kind == Tok::KwPrivate) {
      const bool isPublic = first.kind == Tok::KwPublic;
      take();
      if (startsProcedure()) {
        procedure(isPublic, nullptr);
        return;
      }
      if (at(Tok::KwConst)) {
        take();
        constants(program_->consts);
        return;
      }
      variables(program_->variables, isPublic);
      return;
    }
    if (startsProcedure()) {
      procedure(true, nullptr);
      return;
    }
    statement(program_->statements);
  }

  bool startsProcedure() const {
    return at(Tok::KwSub) || at(Tok::KwFunction) || atWord("property") ||
           (atWord("default") &&
            (peek(1).kind == Tok::KwSub || peek(1).kind == Tok::KwFunction || atWord("property", 1)));
  }

  // ---- declarations ----

  void variables(std::vector<VarDecl> &into, bool isPublic) {
    do {
      VarDecl decl;
      decl.line = peek().line;
      decl.column = peek().column;
      decl.name = identifier();
      decl.isPublic = isPublic;
      if (accept(Tok::LParen)) {
        if (accept(Tok::RParen)) {
          decl.dynamicArray = true;
        } else {
          do {
            const Token &bound = expect(Tok::Number, VbError::ExpectedIntegerConstant);
            if (bound.value.type() != Variant::Type::Integer && bound.value.type() != Variant::Type::Long)
              failAt(VbError::ExpectedIntegerConstant, bound);
            decl.bounds.push_back(bound.value.toLong());
          } while (accept(Tok::Comma));
          expect(Tok::RParen, VbError::ExpectedRParen);
        }
      }
      into.push_back(std::move(decl));
    } while (accept(Tok::Comma));
    endOfStatement();
  }

  void constants(std::vector<ConstDecl> &into) {
    do {
      ConstDecl decl;
      decl.line = peek().line;
      decl.column = peek().column;
      decl.name = identifier();
      expect(Tok::Equal, VbError::ExpectedEqual);
      decl.value = literalConstant();
      into.push_back(std::move(decl));
    } while (accept(Tok::Comma));
    endOfStatement();
  }

  Variant literalConstant() {
    bool negate = false;
    while (at(Tok::Minus) || at(Tok::Plus)) {
      negate = negate != (take().kind == Tok::Minus);
    }
    const Token &t = peek();
    Variant value;
    switch (t.kind) {
    case Tok::Number:
    case Tok::String:
    case Tok::DateValue: value = t.value; break;
    case Tok::KwTrue: value = Variant(true); break;
    case Tok::KwFalse: value = Variant(false); break;
    case Tok::KwNull: value = Variant::null(); break;
    case Tok::KwEmpty: value = Variant(); break;
    case Tok::KwNothing: value = Variant::nothing(); break;
    default: fail(VbError::ExpectedLiteralConstant);
    }
    take();
    if (!negate)
      return value;
    switch (value.type()) {
    case Variant::Type::Integer:
      return value.rawInteger() == -32768 ? Variant(32768) : Variant(std::int16_t(-value.rawInteger()));
    case Variant::Type::Long:
      return value.rawLong() == INT32_MIN ? Variant(2147483648.0) : Variant(int(-value.rawLong()));
    case Variant::Type::Double: return Variant(-value.rawDouble());
    default: failAt(VbError::ExpectedLiteralConstant, t);
    }
  }

  // ---- procedures and classes ----

  void procedure(bool isPublic, ClassDef *owner) {
    auto proc = std::make_shared<Procedure>();
    proc->isPublic = isPublic;
    if (atWord("default")) {
      const Token &word = take();
      if (!isPublic)
        failAt(VbError::DefaultNotOnProperty, word);
      proc->isDefault = true;
    }
    const Token &start = peek();
    proc->line = start.line;
    proc->column = start.column;
    if (accept(Tok::KwSub)) {
      proc->kind = ProcKind::Sub;
    } else if (accept(Tok::KwFunction)) {
      proc->kind = ProcKind::Function;
    } else {
      take(); // Property
      if (!owner)
        failAt(VbError::MustBeInsideClass, start);
      if (atWord("get"))
        proc->kind = ProcKind::PropertyGet;
      else if (atWord("let"))
        proc->kind = ProcKind::PropertyLet;
      else if (at(Tok::KwSet))
        proc->kind = ProcKind::PropertySet;
      else
        fail(VbError::ExpectedLetSetGet);
      take();
    }
    if (proc->isDefault && (proc->kind == ProcKind::PropertyLet || proc->kind == ProcKind::PropertySet))
      failAt(VbError::DefaultNotOnProperty, start);
    proc->name = identifier();
    if (accept(Tok::LParen)) {
      if (!at(Tok::RParen)) {
        do {
          Param param;
          if (accept(Tok::KwByVal))
            param.byRef = false;
          else
            accept(Tok::KwByRef);
          param.line = peek().line;
          param.column = peek().column;
          param.name = identifier();
          if (accept(Tok::LParen))
            expect(Tok::RParen, VbError::ExpectedRParen);
          proc->params.push_back(std::move(param));
        } while (accept(Tok::Comma));
      }
      expect(Tok::RParen, VbError::ExpectedRParen);
    }
    if ((proc->kind == ProcKind::PropertyLet || proc->kind == ProcKind::PropertySet) && proc->params.empty())
      failAt(VbError::PropertyLetWithoutArgument, start);
    endOfStatement();

    Procedure *outer = procedure_;
    procedure_ = proc.get();
    // A procedure inside a loop of global code is not in that loop.
    const int outerDo = std::exchange(doDepth_, 0), outerFor = std::exchange(forDepth_, 0);
    const int closing = proc->kind == ProcKind::Sub        ? VbError::ExpectedSub
                        : proc->kind == ProcKind::Function ? VbError::ExpectedFunction
                                                           : VbError::ExpectedProperty;
    block(proc->body, VbError::ExpectedEnd, closing, [&] {
      if (!at(Tok::KwEnd))
        return false;
      const Token &what = peek(1);
      return what.kind == Tok::KwSub || what.kind == Tok::KwFunction ||
             (what.kind == Tok::Identifier && what.text.compare(QLatin1String("property"), Qt::CaseInsensitive) == 0);
    });
    take(); // End
    const bool matches = proc->kind == ProcKind::Sub        ? at(Tok::KwSub)
                         : proc->kind == ProcKind::Function ? at(Tok::KwFunction)
                                                            : atWord("property");
    if (!matches)
      fail(closing);
    take();
    endOfStatement();
    procedure_ = outer;
    doDepth_ = outerDo;
    forDepth_ = outerFor;

    if (owner)
      owner->procedures.push_back(std::move(proc));
    else
      program_->procedures.push_back(std::move(proc));
  }

  void classDefinition() {
    take();
    auto def = std::make_shared<ClassDef>();
    def->line = peek().line;
    def->column = peek().column;
    def->name = identifier();
    endOfStatement();
    while (true) {
      skipSeparators();
      if (at(Tok::KwEnd))
        break;
      if (at(Tok::End))
        fail(VbError::ExpectedEnd);
      classMember(*def);
    }
    take();
    expect(Tok::KwClass, VbError::ExpectedClass);
    endOfStatement();
    program_->classes.push_back(std::move(def));
  }

  void classMember(ClassDef &def) {
    bool isPublic = true;
    bool scoped = false;
    if (at(Tok::KwPublic) || at(Tok::KwPrivate)) {
      isPublic = take().kind == Tok::KwPublic;
      scoped = true;
    }
    if (startsProcedure()) {
      procedure(isPublic, &def);
      return;
    }
    if (at(Tok::KwDim) && !scoped) {
      take();
      variables(def.fields, true);
      return;
    }
    if (scoped && at(Tok::Identifier)) {
      variables(def.fields, isPublic);
      return;
    }
    fail(VbError::ExpectedStatement);
  }

  // ---- blocks and statements ----

  // Statements until isEnd() holds at the start of one. Reaching the end of
  // the text, or a closing word that belongs to no open block, raises
  // missingError ("Expected 'End'", "Expected 'Next'" ...); an "End" with
  // the wrong word after it raises wrongEndError at that word. A block of
  // an If that is never closed raises "Expected 'End'" at the If instead:
  // where the text ends or a procedure closes can be far from the If that
  // lacks its End If ("If x Then :" opens a block).
  void block(Block &into, int missingError, int wrongEndError, const std::function<bool()> &isEnd,
             const Token *openingIf = nullptr) {
    NestingGuard guard(*this);
    while (true) {
      skipSeparators();
      if (isEnd())
        return;
      const bool wrongEnd = at(Tok::KwEnd) && peek(1).kind != Tok::Newline && peek(1).kind != Tok::End;
      if (wrongEnd || at(Tok::End) || at(Tok::KwEnd) || at(Tok::KwNext) || at(Tok::KwLoop) || at(Tok::KwWend) ||
          at(Tok::KwCase) || at(Tok::KwElse) || at(Tok::KwElseIf)) {
        if (openingIf)
          failAt(VbError::ExpectedEnd, *openingIf);
        if (wrongEnd)
          failAt(wrongEndError, peek(1));
        fail(missingError);
      }
      statement(into);
    }
  }

  bool atEnd(Tok what) const { return at(Tok::KwEnd) && peek(1).kind == what; }

  void statement(Block &into) {
    const Token &t = peek();
    switch (t.kind) {
    case Tok::KwDim:
      take();
      variables(procedure_ ? procedure_->locals : program_->variables, true);
      return;
    case Tok::KwConst:
      take();
      constants(procedure_ ? procedure_->consts : program_->consts);
      return;
    case Tok::KwReDim: into.push_back(reDim()); return;
    case Tok::KwErase: {
      take();
      auto name = std::make_unique<NameExpr>(identifier(), t.line, t.column);
      endOfStatement();
      into.push_back(std::make_unique<EraseStmt>(std::move(name), t.line, t.column));
      return;
    }
    case Tok::KwSet: {
      take();
      into.push_back(assignmentOrCall(t, true, false));
      return;
    }
    case Tok::KwCall: {
      take();
      into.push_back(assignmentOrCall(t, false, true));
      return;
    }
    case Tok::KwSub:
    case Tok::KwFunction:
      // A procedure inside a block of global code (If, a loop ...) is
      // declared with the others, as natively; it is no statement.
      if (procedure_ || singleLineIf_ > 0)
        fail(VbError::ExpectedStatement);
      procedure(true, nullptr);
      return;
    case Tok::KwIf: into.push_back(ifStatement()); return;
    case Tok::KwSelect: into.push_back(selectStatement()); return;
    case Tok::KwFor: into.push_back(forStatement()); return;
    case Tok::KwDo: into.push_back(doStatement()); return;
    case Tok::KwWhile: into.push_back(whileStatement()); return;
    case Tok::KwExit: into.push_back(exitStatement()); return;
    case Tok::KwWith: into.push_back(withStatement()); return;
    case Tok::KwOn: into.push_back(onError()); return;
    case Tok::KwStop:
      take();
      endOfStatement();
      return;
    case Tok::KwOption: fail(VbError::MustBeFirstStatement);
    case Tok::KwNext: fail(VbError::UnexpectedNext);
    case Tok::KwLoop: fail(VbError::LoopWithoutDo);
    case Tok::Identifier:
      if (atWord("let") && (peek(1).kind == Tok::Identifier || peek(1).kind == Tok::KwMe || peek(1).kind == Tok::Dot)) {
        take();
        into.push_back(assignmentOrCall(t, false, false, true));
        return;
      }
      into.push_back(assignmentOrCall(t, false, false));
      return;
    case Tok::KwMe:
    case Tok::Dot: into.push_back(assignmentOrCall(t, false, false)); return;
    default: fail(VbError::ExpectedStatement);
    }
  }

  // The target of an assignment or the callee of a call statement: a name,
  // Me or a With member, followed by member accesses and argument lists.
  // After Call the chain may also start with an expression in parentheses
  // whose member it calls: Call (New C).Run. lastParen receives the position
  // of the last "(" that ended the chain, or 0 when the chain ended otherwise.
  ExprPtr targetChain(std::size_t &lastParen, std::size_t stopAt = SIZE_MAX, bool afterCall = false) {
    ExprPtr target = primary();
    const bool parenthesised = afterCall && target->kind == ExprKind::Paren && at(Tok::Dot) && !peek().spaceBefore;
    if (target->kind != ExprKind::Name && target->kind != ExprKind::Me && target->kind != ExprKind::Member &&
        !parenthesised)
      failAt(VbError::ExpectedStatement, tokens_[pos_ - 1]);
    lastParen = 0;
    while (pos_ < stopAt) {
      if (at(Tok::Dot) && !peek().spaceBefore) {
        const Token &dot = take();
        target = std::make_unique<MemberExpr>(std::move(target), identifier(), dot.line, dot.column);
        lastParen = 0;
      } else if (at(Tok::LParen)) {
        const std::size_t parenAt = pos_;
        const Token &open = peek();
        auto args = argumentList();
        target = std::make_unique<CallExpr>(std::move(target), std::move(args), open.line, open.column);
        lastParen = parenAt;
      } else {
        break;
      }
    }
    return target;
  }

  StmtPtr assignmentOrCall(const Token &start, bool isSet, bool isCall, bool isLet = false) {
    const std::size_t chainStart = pos_;
    std::size_t lastParen = 0;
    ExprPtr target = targetChain(lastParen, SIZE_MAX, isCall);
    if (isSet || isLet || (!isCall && at(Tok::Equal))) {
      expect(Tok::Equal, VbError::ExpectedEqual);
      if (target->kind == ExprKind::Me)
        failAt(VbError::InvalidUseOfMe, start);
      ExprPtr value = expression();
      endOfStatement();
      return std::make_unique<AssignStmt>(std::move(target), std::move(value), isSet, start.line, start.column);
    }
    if (isCall) {
      endOfStatement();
      return std::make_unique<CallStmt>(std::move(target), start.line, start.column);
    }
    if (atEndOfStatement()) {
      if (target->kind == ExprKind::Call && lastParen) {
        auto *call = static_cast<CallExpr *>(target.get());
        if (call->args.size() > 1)
          failAt(VbError::ParenthesesOnSubCall, tokens_[lastParen]);
        // "Sub (x)": the parentheses belong to the argument, which then
        // goes by value.
        if (call->args.size() == 1 && call->args[0]) {
          const int line = call->args[0]->line, column = call->args[0]->column;
          call->args[0] = std::make_unique<ParenExpr>(std::move(call->args[0]), line, column);
        }
      }
      return std::make_unique<CallStmt>(std::move(target), start.line, start.column);
    }
    // Arguments follow without parentheses. If the chain ended in "(...)",
    // that opened the first argument instead: read the chain again up to it.
    if (lastParen) {
      pos_ = chainStart;
      std::size_t ignored = 0;
      target = targetChain(ignored, lastParen);
    }
    const Token &argsStart = peek();
    std::vector<ExprPtr> args;
    do {
      if (at(Tok::Comma) || atEndOfStatement())
        args.push_back(nullptr);
      else
        args.push_back(expression());
    } while (accept(Tok::Comma));
    endOfStatement();
    auto call = std::make_unique<CallExpr>(std::move(target), std::move(args), argsStart.line, argsStart.column);
    return std::make_unique<CallStmt>(std::move(call), start.line, start.column);
  }

  StmtPtr reDim() {
    const Token &start = take();
    auto stmt = std::make_unique<ReDimStmt>(false, start.line, start.column);
    if (atWord("preserve")) {
      take();
      stmt->preserve = true;
    }
    do {
      ReDimStmt::Item item;
      const Token &name = peek();
      item.target = std::make_unique<NameExpr>(identifier(), name.line, name.column);
      expect(Tok::LParen, VbError::ExpectedLParen);
      do {
        item.bounds.push_back(expression());
      } while (accept(Tok::Comma));
      expect(Tok::RParen, VbError::ExpectedRParen);
      stmt->items.push_back(std::move(item));
    } while (accept(Tok::Comma));
    endOfStatement();
    return stmt;
  }

  StmtPtr ifStatement() {
    const Token &start = take();
    auto stmt = std::make_unique<IfStmt>(start.line, start.column);
    ExprPtr condition = expression();
    expect(Tok::KwThen, VbError::ExpectedThen);
    if (!at(Tok::Newline) && !at(Tok::Colon)) {
      singleLineIf(*stmt, std::move(condition));
      return stmt;
    }
    auto isBranchEnd = [&] { return at(Tok::KwElseIf) || at(Tok::KwElse) || atEnd(Tok::KwIf); };
    stmt->branches.push_back({std::move(condition), {}});
    block(stmt->branches.back().body, VbError::ExpectedEnd, VbError::ExpectedIf, isBranchEnd, &start);
    while (at(Tok::KwElseIf)) {
      take();
      ExprPtr next = expression();
      expect(Tok::KwThen, VbError::ExpectedThen);
      stmt->branches.push_back({std::move(next), {}});
      block(stmt->branches.back().body, VbError::ExpectedEnd, VbError::ExpectedIf, isBranchEnd, &start);
    }
    if (accept(Tok::KwElse))
      block(
          stmt->elseBody, VbError::ExpectedEnd, VbError::ExpectedIf, [&] { return atEnd(Tok::KwIf); }, &start);
    if (!atEnd(Tok::KwIf))
      fail(VbError::ExpectedEnd);
    take();
    take();
    endOfStatement();
    return stmt;
  }

  // If ... Then a : b [Else c : d] on one line.
  void singleLineIf(IfStmt &stmt, ExprPtr condition) {
    ++singleLineIf_;
    stmt.branches.push_back({std::move(condition), {}});
    lineStatements(stmt.branches.back().body);
    if (accept(Tok::KwElse))
      lineStatements(stmt.elseBody);
    --singleLineIf_;
    // An "End If" closing a one-line If is tolerated.
    if (atEnd(Tok::KwIf)) {
      take();
      take();
    }
    endOfStatement();
  }

  void lineStatements(Block &into) {
    while (true) {
      if (at(Tok::Newline) || at(Tok::End) || at(Tok::KwElse) || atEnd(Tok::KwIf))
        return;
      statement(into);
      if (!accept(Tok::Colon))
        return;
    }
  }

  StmtPtr selectStatement() {
    const Token &start = take();
    expect(Tok::KwCase, VbError::ExpectedCase);
    auto stmt = std::make_unique<SelectStmt>(expression(), start.line, start.column);
    endOfStatement();
    skipSeparators();
    auto isCaseEnd = [&] { return at(Tok::KwCase) || atEnd(Tok::KwSelect); };
    while (at(Tok::KwCase)) {
      take();
      if (at(Tok::KwElse)) {
        take();
        stmt->hasElse = true;
        block(stmt->elseBody, VbError::ExpectedEnd, VbError::ExpectedSelect, [&] { return atEnd(Tok::KwSelect); });
        break;
      }
      SelectStmt::Case item;
      do {
        item.values.push_back(expression());
      } while (accept(Tok::Comma));
      block(item.body, VbError::ExpectedEnd, VbError::ExpectedSelect, isCaseEnd);
      stmt->cases.push_back(std::move(item));
    }
    if (!atEnd(Tok::KwSelect))
      fail(VbError::ExpectedEnd);
    take();
    take();
    endOfStatement();
    return stmt;
  }

  StmtPtr forStatement() {
    const Token &start = take();
    if (atWord("each")) {
      take();
      auto stmt = std::make_unique<ForEachStmt>(start.line, start.column);
      const Token &name = peek();
      stmt->element = std::make_unique<NameExpr>(identifier(), name.line, name.column);
      expectWord("in", VbError::ExpectedIn);
      stmt->collection = expression();
      endOfStatement();
      loopBody(stmt->body, forDepth_);
      nextStatement();
      return stmt;
    }
    auto stmt = std::make_unique<ForStmt>(start.line, start.column);
    const Token &name = peek();
    if (name.kind != Tok::Identifier)
      fail(VbError::InvalidForVariable);
    stmt->counter = std::make_unique<NameExpr>(identifier(), name.line, name.column);
    expect(Tok::Equal, VbError::ExpectedEqual);
    stmt->start = expression();
    expect(Tok::KwTo, VbError::ExpectedTo);
    stmt->end = expression();
    if (atWord("step")) {
      take();
      stmt->step = expression();
    }
    endOfStatement();
    loopBody(stmt->body, forDepth_);
    nextStatement();
    return stmt;
  }

  void loopBody(Block &body, int &depth) {
    ++depth;
    block(body, VbError::ExpectedNext, VbError::ExpectedNext, [&] { return at(Tok::KwNext); });
    --depth;
  }

  void nextStatement() {
    take(); // Next
    if (at(Tok::Identifier))
      take(); // "Next i" names the counter again
    endOfStatement();
  }

  StmtPtr doStatement() {
    const Token &start = take();
    auto stmt = std::make_unique<DoStmt>(start.line, start.column);
    if (at(Tok::KwWhile) || at(Tok::KwUntil)) {
      stmt->test = take().kind == Tok::KwWhile ? DoStmt::Test::WhileBefore : DoStmt::Test::UntilBefore;
      stmt->condition = expression();
    }
    endOfStatement();
    ++doDepth_;
    block(stmt->body, VbError::ExpectedLoop, VbError::ExpectedLoop, [&] { return at(Tok::KwLoop); });
    --doDepth_;
    take(); // Loop
    if (at(Tok::KwWhile) || at(Tok::KwUntil)) {
      if (stmt->test != DoStmt::Test::None)
        fail(VbError::ExpectedEndOfStatement);
      stmt->test = take().kind == Tok::KwWhile ? DoStmt::Test::WhileAfter : DoStmt::Test::UntilAfter;
      stmt->condition = expression();
    }
    endOfStatement();
    return stmt;
  }

  StmtPtr whileStatement() {
    const Token &start = take();
    auto stmt = std::make_unique<DoStmt>(start.line, start.column);
    stmt->test = DoStmt::Test::WhileBefore;
    stmt->condition = expression();
    endOfStatement();
    // Exit Do does not leave a While loop, so the depth is not raised.
    block(stmt->body, VbError::ExpectedWend, VbError::ExpectedWend, [&] { return at(Tok::KwWend); });
    take();
    endOfStatement();
    return stmt;
  }

  StmtPtr exitStatement() {
    const Token &start = take();
    ExitKind what;
    if (at(Tok::KwDo)) {
      if (doDepth_ == 0)
        fail(VbError::InvalidExit);
      what = ExitKind::Do;
    } else if (at(Tok::KwFor)) {
      if (forDepth_ == 0)
        fail(VbError::InvalidExit);
      what = ExitKind::For;
    } else if (at(Tok::KwSub) || at(Tok::KwFunction) || atWord("property")) {
      const bool matches =
          procedure_ &&
          ((at(Tok::KwSub) && procedure_->kind == ProcKind::Sub) ||
           (at(Tok::KwFunction) && procedure_->kind == ProcKind::Function) ||
           (atWord("property") && procedure_->kind != ProcKind::Sub && procedure_->kind != ProcKind::Function));
      if (!matches)
        fail(VbError::InvalidExit);
      what = ExitKind::Procedure;
    } else {
      fail(VbError::InvalidExit);
    }
    take();
    endOfStatement();
    return std::make_unique<ExitStmt>(what, start.line, start.column);
  }

  StmtPtr withStatement() {
    const Token &start = take();
    auto stmt = std::make_unique<WithStmt>(expression(), start.line, start.column);
    endOfStatement();
    block(stmt->body, VbError::ExpectedEnd, VbError::ExpectedWith, [&] { return atEnd(Tok::KwWith); });
    take();
    take();
    endOfStatement();
    return stmt;
  }

  StmtPtr onError() {
    const Token &start = take();
    expectWord("error", VbError::SyntaxError);
    bool resumeNext = false;
    if (atWord("resume")) {
      take();
      expect(Tok::KwNext, VbError::SyntaxError);
      resumeNext = true;
    } else if (atWord("goto")) {
      take();
      const Token &zero = expect(Tok::Number, VbError::SyntaxError);
      if (zero.value.toDouble() != 0.0)
        failAt(VbError::SyntaxError, zero);
    } else {
      fail(VbError::SyntaxError);
    }
    endOfStatement();
    return std::make_unique<OnErrorStmt>(resumeNext, start.line, start.column);
  }

  // ---- expressions ----

  std::vector<ExprPtr> argumentList() {
    NestingGuard guard(*this);
    expect(Tok::LParen, VbError::ExpectedLParen);
    std::vector<ExprPtr> args;
    if (accept(Tok::RParen))
      return args;
    do {
      if (at(Tok::Comma) || at(Tok::RParen))
        args.push_back(nullptr);
      else
        args.push_back(expression());
    } while (accept(Tok::Comma));
    expect(Tok::RParen, VbError::ExpectedRParen);
    return args;
  }

  using Level = ExprPtr (Parser::*)();

  ExprPtr binaryLevel(Level next, std::initializer_list<std::pair<Tok, BinaryOp>> ops) {
    ExprPtr left = (this->*next)();
    while (true) {
      const Token &t = peek();
      const std::pair<Tok, BinaryOp> *match = nullptr;
      for (const auto &op : ops) {
        if (op.first == t.kind)
          match = &op;
      }
      if (!match)
        return left;
      take();
      ExprPtr right = (this->*next)();
      left = std::make_unique<BinaryExpr>(match->second, std::move(left), std::move(right), t.line, t.column);
    }
  }

  ExprPtr expression() {
    NestingGuard guard(*this);
    return binaryLevel(&Parser::eqvLevel, {{Tok::KwImp, BinaryOp::Imp}});
  }
  ExprPtr eqvLevel() { return binaryLevel(&Parser::xorLevel, {{Tok::KwEqv, BinaryOp::Eqv}}); }
  ExprPtr xorLevel() { return binaryLevel(&Parser::orLevel, {{Tok::KwXor, BinaryOp::Xor}}); }
  ExprPtr orLevel() { return binaryLevel(&Parser::andLevel, {{Tok::KwOr, BinaryOp::Or}}); }
  ExprPtr andLevel() { return binaryLevel(&Parser::notLevel, {{Tok::KwAnd, BinaryOp::And}}); }

  ExprPtr notLevel() {
    if (at(Tok::KwNot)) {
      NestingGuard guard(*this);
      const Token &t = take();
      return std::make_unique<UnaryExpr>(UnaryOp::Not, notLevel(), t.line, t.column);
    }
    return comparisonLevel();
  }

  ExprPtr comparisonLevel() {
    return binaryLevel(&Parser::concatLevel, {{Tok::Equal, BinaryOp::Equal},
                                              {Tok::NotEqual, BinaryOp::NotEqual},
                                              {Tok::Less, BinaryOp::Less},
                                              {Tok::Greater, BinaryOp::Greater},
                                              {Tok::LessEqual, BinaryOp::LessEqual},
                                              {Tok::GreaterEqual, BinaryOp::GreaterEqual},
                                              {Tok::KwIs, BinaryOp::Is}});
  }
  ExprPtr concatLevel() { return binaryLevel(&Parser::additiveLevel, {{Tok::Ampersand, BinaryOp::Concat}}); }
  ExprPtr additiveLevel() {
    return binaryLevel(&Parser::modLevel, {{Tok::Plus, BinaryOp::Add}, {Tok::Minus, BinaryOp::Subtract}});
  }
  ExprPtr modLevel() { return binaryLevel(&Parser::intDivLevel, {{Tok::KwMod, BinaryOp::Mod}}); }
  ExprPtr intDivLevel() { return binaryLevel(&Parser::multiplyLevel, {{Tok::Backslash, BinaryOp::IntDivide}}); }
  ExprPtr multiplyLevel() {
    return binaryLevel(&Parser::unaryLevel, {{Tok::Star, BinaryOp::Multiply}, {Tok::Slash, BinaryOp::Divide}});
  }

  ExprPtr unaryLevel() {
    if (at(Tok::KwNot))
      return notLevel();
    return powerLevel();
  }

  // A sign binds tighter than "^", as natively: -3^2 is 9.
  ExprPtr powerLevel() {
    ExprPtr left = powerOperand();
    while (at(Tok::Caret)) {
      const Token &t = take();
      left = std::make_unique<BinaryExpr>(BinaryOp::Power, std::move(left), powerOperand(), t.line, t.column);
    }
    return left;
  }

  ExprPtr powerOperand() {
    if (at(Tok::Minus) || at(Tok::Plus)) {
      NestingGuard guard(*this);
      const Token &t = take();
      return std::make_unique<UnaryExpr>(t.kind == Tok::Minus ? UnaryOp::Negate : UnaryOp::Plus, powerOperand(), t.line,
                                         t.column);
    }
    return postfix();
  }

  ExprPtr postfix() {
    ExprPtr value = primary();
    const bool callable = value->kind == ExprKind::Name || value->kind == ExprKind::Member ||
                          value->kind == ExprKind::Me || value->kind == ExprKind::Paren;
    if (!callable)
      return value;
    while (true) {
      if (at(Tok::Dot) && !peek().spaceBefore) {
        const Token &dot = take();
        value = std::make_unique<MemberExpr>(std::move(value), identifier(), dot.line, dot.column);
      } else if (at(Tok::LParen) && value->kind != ExprKind::Paren) {
        const Token &open = peek();
        auto args = argumentList();
        value = std::make_unique<CallExpr>(std::move(value), std::move(args), open.line, open.column);
      } else {
        return value;
      }
    }
  }

  ExprPtr primary() {
    const Token &t = peek();
    switch (t.kind) {
    case Tok::Number:
    case Tok::String:
    case Tok::DateValue: take(); return std::make_unique<LiteralExpr>(t.value, t.line, t.column);
    case Tok::KwTrue: take(); return std::make_unique<LiteralExpr>(Variant(true), t.line, t.column);
    case Tok::KwFalse: take(); return std::make_unique<LiteralExpr>(Variant(false), t.line, t.column);
    case Tok::KwNull: take(); return std::make_unique<LiteralExpr>(Variant::null(), t.line, t.column);
    case Tok::KwEmpty: take(); return std::make_unique<LiteralExpr>(Variant(), t.line, t.column);
    case Tok::KwNothing: take(); return std::make_unique<LiteralExpr>(Variant::nothing(), t.line, t.column);
    case Tok::Identifier: take(); return std::make_unique<NameExpr>(t.text, t.line, t.column);
    case Tok::KwMe: take(); return std::make_unique<Expr>(ExprKind::Me, t.line, t.column);
    case Tok::KwNew: {
      take();
      const Token &name = peek();
      return std::make_unique<NewExpr>(identifier(), name.line, name.column);
    }
    case Tok::Dot: {
      take();
      return std::make_unique<MemberExpr>(nullptr, identifier(), t.line, t.column);
    }
    case Tok::LParen: {
      NestingGuard guard(*this);
      take();
      ExprPtr inner = expression();
      expect(Tok::RParen, VbError::ExpectedRParen);
      return std::make_unique<ParenExpr>(std::move(inner), t.line, t.column);
    }
    default: fail(VbError::ExpectedExpression);
    }
  }

  std::vector<Token> tokens_;
  std::size_t pos_ = 0;
  Program *program_ = nullptr;
  Procedure *procedure_ = nullptr;
  int singleLineIf_ = 0;
  int doDepth_ = 0;
  int forDepth_ = 0;
  int nesting_ = 0;
};

} // namespace

std::unique_ptr<Program> parseProgram(const QString &text) { return Parser(text).program(); }

ExprPtr parseExpression(const QString &text) { return Parser(text).singleExpression(); }

} // namespace kordel::script::vb
