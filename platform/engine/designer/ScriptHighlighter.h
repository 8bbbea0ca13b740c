#pragma once

#include "engine/designer/ScriptEvents.h"

#include <QSyntaxHighlighter>
#include <QTextCharFormat>

namespace kordel::engine {

// Colours a script by its language: keywords (without regard to case in
// VBScript), strings, comments and numbers. JScript's block comments and
// template strings run on over lines.
class ScriptHighlighter final : public QSyntaxHighlighter {
public:
  enum class Kind { Keyword, String, Comment, Number };

  ScriptHighlighter(ScriptLanguage language, QTextDocument *document);

  static QTextCharFormat format(Kind kind);

protected:
  void highlightBlock(const QString &text) override;

private:
  // The state a line leaves to the next.
  enum State { Normal = 0, InBlockComment = 1, InTemplate = 2 };

  void highlightVbLine(const QString &text);
  void highlightJsLine(const QString &text);
  qsizetype word(const QString &text, qsizetype at, bool caseSensitive, const QSet<QString> &keywords);
  qsizetype number(const QString &text, qsizetype at, bool hex);

  ScriptLanguage language_;
};

} // namespace kordel::engine
