#include "engine/designer/CodeEditor.h"

#include <QKeyEvent>
#include <QPainter>
#include <QTextBlock>

#include <algorithm>

namespace kordel::engine {

namespace {

const QColor kCurrentLine(0xfd, 0xf6, 0xd3);
const QColor kErrorLine(0xfb, 0xd5, 0xd5);
const QColor kErrorNumber(0xc6, 0x28, 0x28);
const QColor kGutter(0xf0, 0xf0, 0xf0);
const QColor kGutterEdge(0xd8, 0xd8, 0xd8);
const QColor kLineNumber(0x80, 0x80, 0x80);
constexpr int kGutterPadding = 6;

QString leadingSpace(const QString &line) {
  qsizetype n = 0;
  while (n < line.size() && (line.at(n) == u' ' || line.at(n) == u'\t'))
    ++n;
  return line.left(n);
}

} // namespace

class CodeEditor::Gutter final : public QWidget {
public:
  explicit Gutter(CodeEditor &editor) : QWidget(&editor), editor_(editor) {
    setObjectName(QStringLiteral("CodeGutter"));
  }
  QSize sizeHint() const override { return {editor_.gutterWidth(), 0}; }

protected:
  void paintEvent(QPaintEvent *event) override { editor_.paintGutter(event); }

private:
  CodeEditor &editor_;
};

CodeEditor::CodeEditor(QWidget *parent) : QPlainTextEdit(parent), gutter_(new Gutter(*this)) {
  QFont font(QStringLiteral("DejaVu Sans Mono"), 10);
  font.setStyleHint(QFont::Monospace);
  font.setFixedPitch(true);
  setFont(font);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setTabStopDistance(fontMetrics().horizontalAdvance(u' ') * indentWidth);
  // Code colours are chosen for a light page, whatever the desktop's theme.
  QPalette colours = palette();
  colours.setColor(QPalette::Base, Qt::white);
  colours.setColor(QPalette::Text, Qt::black);
  setPalette(colours);

  connect(this, &QPlainTextEdit::blockCountChanged, this, [this] { setViewportMargins(gutterWidth(), 0, 0, 0); });
  connect(this, &QPlainTextEdit::updateRequest, this, &CodeEditor::scrollGutter);
  connect(this, &QPlainTextEdit::cursorPositionChanged, this, &CodeEditor::updateMarks);
  connect(this, &QPlainTextEdit::textChanged, this, &CodeEditor::textEdited);
  setViewportMargins(gutterWidth(), 0, 0, 0);
  updateMarks();
}

int CodeEditor::gutterWidth() const {
  const int digits = QString::number(std::max(1, blockCount())).size();
  return 2 * kGutterPadding + fontMetrics().horizontalAdvance(u'9') * std::max(digits, 3);
}

void CodeEditor::goTo(int line, int column) {
  const QTextBlock block = document()->findBlockByNumber(std::clamp(line, 1, blockCount()) - 1);
  QTextCursor cursor(block);
  cursor.setPosition(block.position() + std::clamp(column, 1, block.length()) - 1);
  setTextCursor(cursor);
  centerCursor();
}

void CodeEditor::markErrorLine(int line) {
  errorLine_ = line;
  markedRevision_ = document()->revision();
  updateMarks();
  gutter_->update();
}

void CodeEditor::textEdited() {
  if (errorLine_ != 0 && document()->revision() != markedRevision_)
    markErrorLine(0);
}

void CodeEditor::updateMarks() {
  QList<QTextEdit::ExtraSelection> marks;
  const auto lineMark = [&](const QTextBlock &block, const QColor &colour) {
    QTextEdit::ExtraSelection mark;
    mark.format.setBackground(colour);
    mark.format.setProperty(QTextFormat::FullWidthSelection, true);
    mark.cursor = QTextCursor(block);
    marks.append(mark);
  };
  lineMark(textCursor().block(), kCurrentLine);
  if (const QTextBlock error = document()->findBlockByNumber(errorLine_ - 1); errorLine_ > 0 && error.isValid())
    lineMark(error, kErrorLine);
  setExtraSelections(marks);
}

void CodeEditor::resizeEvent(QResizeEvent *event) {
  QPlainTextEdit::resizeEvent(event);
  const QRect area = contentsRect();
  gutter_->setGeometry(area.left(), area.top(), gutterWidth(), area.height());
}

void CodeEditor::scrollGutter(const QRect &rect, int dy) {
  if (dy != 0)
    gutter_->scroll(0, dy);
  else
    gutter_->update(0, rect.y(), gutter_->width(), rect.height());
}

void CodeEditor::paintGutter(QPaintEvent *event) {
  QPainter painter(gutter_);
  painter.fillRect(event->rect(), kGutter);
  painter.setPen(kGutterEdge);
  painter.drawLine(gutter_->width() - 1, event->rect().top(), gutter_->width() - 1, event->rect().bottom());
  painter.setFont(font());
  const int right = gutter_->width() - kGutterPadding;
  QTextBlock block = firstVisibleBlock();
  int top = qRound(blockBoundingGeometry(block).translated(contentOffset()).top());
  while (block.isValid() && top <= event->rect().bottom()) {
    const int height = qRound(blockBoundingRect(block).height());
    if (block.isVisible() && top + height >= event->rect().top()) {
      const int line = block.blockNumber() + 1;
      const bool error = line == errorLine_;
      if (error)
        painter.fillRect(0, top, gutter_->width(), height, kErrorLine);
      QFont numberFont = font();
      numberFont.setBold(error || line == currentLine());
      painter.setFont(numberFont);
      painter.setPen(error ? kErrorNumber : kLineNumber);
      painter.drawText(0, top, right, height, Qt::AlignRight | Qt::AlignVCenter, QString::number(line));
    }
    top += height;
    block = block.next();
  }
}

void CodeEditor::keyPressEvent(QKeyEvent *event) {
  const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
  const bool ctrl = modifiers & Qt::ControlModifier;
  if ((event->key() == Qt::Key_Tab || event->key() == Qt::Key_Backtab) && ctrl) {
    // The text edit keeps the focus in its own focusNextPrevChild.
    QWidget::focusNextPrevChild(event->key() == Qt::Key_Tab && !(modifiers & Qt::ShiftModifier));
  } else if (event->key() == Qt::Key_Backtab && modifiers == Qt::ShiftModifier) {
    indentSelection(true);
  } else if (event->key() == Qt::Key_Tab && modifiers == Qt::NoModifier) {
    const QTextCursor cursor = textCursor();
    if (cursor.hasSelection() &&
        document()->findBlock(cursor.selectionStart()) != document()->findBlock(cursor.selectionEnd()))
      indentSelection(false);
    else
      insertIndent();
  } else if (event->key() == Qt::Key_Escape && modifiers == Qt::NoModifier) {
    // Escape while typing only lets go of the selection; it does not reach
    // the dialog, which would throw the edits away.
    QTextCursor cursor = textCursor();
    cursor.clearSelection();
    setTextCursor(cursor);
  } else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && modifiers == Qt::NoModifier) {
    newLineKeepingIndent();
  } else {
    QPlainTextEdit::keyPressEvent(event);
    return;
  }
  event->accept();
}

void CodeEditor::insertIndent() {
  QTextCursor cursor = textCursor();
  const int column = cursor.position() - cursor.block().position();
  cursor.insertText(QString(indentWidth - column % indentWidth, u' '));
  setTextCursor(cursor);
}

void CodeEditor::newLineKeepingIndent() {
  QTextCursor cursor = textCursor();
  const QString indent = leadingSpace(cursor.block().text());
  const int column = cursor.position() - cursor.block().position();
  cursor.insertText(u'\n' + indent.left(column));
  setTextCursor(cursor);
}

// Adds an indent to every line the selection (or the cursor) touches, or
// takes up to one indent of leading spaces (or one tab) away from each.
void CodeEditor::indentSelection(bool outdent) {
  QTextCursor cursor = textCursor();
  QTextBlock block = document()->findBlock(cursor.selectionStart());
  QTextBlock last = document()->findBlock(cursor.selectionEnd());
  // Whole lines selected end at the start of the next, which stays as it is.
  if (last != block && cursor.selectionEnd() == last.position())
    last = last.previous();
  cursor.beginEditBlock();
  for (;; block = block.next()) {
    QTextCursor line(block);
    if (!outdent) {
      line.insertText(QString(indentWidth, u' '));
    } else {
      const QString text = block.text();
      int remove = 0;
      while (remove < indentWidth && remove < text.size() && text.at(remove) == u' ')
        ++remove;
      if (remove == 0 && text.startsWith(u'\t'))
        remove = 1;
      line.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor, remove);
      line.removeSelectedText();
    }
    if (block == last)
      break;
  }
  cursor.endEditBlock();
}

} // namespace kordel::engine
