#pragma once

#include <QPlainTextEdit>

namespace kordel::engine {

// A plain text editor for code: line numbers in a gutter, the current line
// lit, a monospace font, no wrapping, Tab indenting with spaces (Shift+Tab
// taking them back, both over every line of a selection), Return keeping
// the indent, and a line marked as the place of an error until the text
// changes. Ctrl+Tab and Ctrl+Shift+Tab move the focus on, since Tab
// indents; Escape clears the selection and goes no further.
class CodeEditor final : public QPlainTextEdit {
  Q_OBJECT
public:
  static constexpr int indentWidth = 4;

  explicit CodeEditor(QWidget *parent = nullptr);

  // Lines and columns count from 1.
  int currentLine() const { return textCursor().blockNumber() + 1; }
  // Puts the cursor at a column of a line, both clamped to the text.
  void goTo(int line, int column = 1);
  // Marks a line as the place of an error; 0 takes the mark away.
  void markErrorLine(int line);
  int errorLine() const { return errorLine_; }

  int gutterWidth() const;

protected:
  void keyPressEvent(QKeyEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

private:
  class Gutter;

  void paintGutter(QPaintEvent *event);
  void scrollGutter(const QRect &rect, int dy);
  void updateMarks();
  void textEdited();
  void indentSelection(bool outdent);
  void insertIndent();
  void newLineKeepingIndent();

  Gutter *gutter_;
  int errorLine_ = 0;
  int markedRevision_ = 0; // the text's revision when the error was marked
};

} // namespace kordel::engine
