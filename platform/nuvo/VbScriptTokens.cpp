// Reading a VBScript text into tokens the way the interpreter does: a line
// ends at CR, LF or CR LF, so nothing after a bare CR hides in a comment.

#include "nuvo/ScriptTokens.h"

namespace kordel::nuvo::scripttokens {

namespace {

bool isWordStart(QChar c) { return c.isLetter() || c == u'_' || c == u'$'; }
bool isWordPart(QChar c) { return c.isLetterOrNumber() || c == u'_' || c == u'$'; }

class VbLexer {
public:
  explicit VbLexer(const QString &text) : text_(text) {}

  Tokens run() {
    while (at_ < text_.size())
      step();
    return {std::move(tokens_), true};
  }

private:
  QChar peek(qsizetype offset = 0) const { return at_ + offset < text_.size() ? text_[at_ + offset] : QChar(); }

  // The length of the line end at the current place: 2 for CR LF, 1 for
  // CR or LF, 0 for none.
  int lineEndLength() const {
    const QChar c = peek();
    if (c == u'\r')
      return peek(1) == u'\n' ? 2 : 1;
    return c == u'\n' ? 1 : 0;
  }

  void skipToLineEnd() {
    while (at_ < text_.size() && lineEndLength() == 0)
      ++at_;
  }

  bool atStatementStart() const {
    if (tokens_.empty())
      return true;
    const Token &last = tokens_.back();
    return last.kind == Kind::LineEnd || (last.kind == Kind::Symbol && last.text == QLatin1String(":")) ||
           (last.kind == Kind::Word && (last.text == QLatin1String("then") || last.text == QLatin1String("else")));
  }

  void push(Kind kind, qsizetype start, QString text, QString name = {}) {
    tokens_.push_back({kind, start, at_, std::move(text), std::move(name)});
  }

  void string() {
    const qsizetype start = at_++;
    QString value;
    while (at_ < text_.size() && lineEndLength() == 0) {
      const QChar c = text_[at_++];
      if (c == u'"') {
        if (peek() != u'"')
          break;
        ++at_;
      }
      value += c;
    }
    push(Kind::String, start, value);
  }

  void lineEnd(int length) {
    // A line ending in " _" goes on.
    const bool continued =
        !tokens_.empty() && tokens_.back().kind == Kind::Word && tokens_.back().text == QLatin1String("_");
    const qsizetype start = at_;
    at_ += length;
    if (continued)
      tokens_.pop_back();
    else
      push(Kind::LineEnd, start, {});
  }

  void step() {
    if (const int length = lineEndLength()) {
      lineEnd(length);
      return;
    }
    const QChar c = text_[at_];
    const qsizetype start = at_;
    if (c.isSpace()) {
      ++at_;
      return;
    }
    if (c == u'\'') {
      skipToLineEnd();
      return;
    }
    if (c == u'"') {
      string();
      return;
    }
    if (c == u'[') {
      // A bracketed name ends at "]" or, unfinished, at the line end.
      ++at_;
      while (at_ < text_.size() && text_[at_] != u']' && lineEndLength() == 0)
        ++at_;
      const QString name = text_.mid(start + 1, at_ - start - 1);
      if (peek() == u']')
        ++at_;
      push(Kind::Word, start, name.toLower(), name);
      return;
    }
    if (isWordStart(c)) {
      while (at_ < text_.size() && isWordPart(text_[at_]))
        ++at_;
      const QString name = text_.mid(start, at_ - start);
      if (name.compare(QLatin1String("rem"), Qt::CaseInsensitive) == 0 && atStatementStart()) {
        skipToLineEnd();
        return;
      }
      push(Kind::Word, start, name.toLower(), name);
      return;
    }
    if (c.isDigit()) {
      while (at_ < text_.size() && (text_[at_].isLetterOrNumber() || text_[at_] == u'.'))
        ++at_;
      push(Kind::Number, start, text_.mid(start, at_ - start));
      return;
    }
    ++at_;
    push(Kind::Symbol, start, QString(c));
  }

  const QString &text_;
  qsizetype at_ = 0;
  std::vector<Token> tokens_;
};

} // namespace

Tokens vbScriptTokens(const QString &text) { return VbLexer(text).run(); }

} // namespace kordel::nuvo::scripttokens
