#include "engine/designer/FindBar.h"

#include "engine/designer/DesignerText.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStyle>
#include <QTextCursor>
#include <QTextDocument>
#include <QToolButton>

namespace kordel::engine {

FindBar::FindBar(QPlainTextEdit &editor, QWidget *parent) : QWidget(parent), editor_(editor) {
  setObjectName(QStringLiteral("FindBar"));
  findText_ = new QLineEdit;
  findText_->setObjectName(QStringLiteral("TxtFind"));
  findText_->setClearButtonEnabled(true);
  replaceText_ = new QLineEdit;
  replaceText_->setObjectName(QStringLiteral("TxtReplace"));
  auto *findLabel = new QLabel(designerText("Fi&nd:"));
  findLabel->setBuddy(findText_);
  replaceLabel_ = new QLabel(designerText("Re&place with:"));
  replaceLabel_->setBuddy(replaceText_);
  auto *previous = new QPushButton(designerText("Pre&vious"));
  previous->setObjectName(QStringLiteral("CmdFindPrevious"));
  auto *next = new QPushButton(designerText("Ne&xt"));
  next->setObjectName(QStringLiteral("CmdFindNext"));
  replace_ = new QPushButton(designerText("&Replace"));
  replace_->setObjectName(QStringLiteral("CmdReplace"));
  replaceAll_ = new QPushButton(designerText("Replace &all"));
  replaceAll_->setObjectName(QStringLiteral("CmdReplaceAll"));
  for (QPushButton *button : {previous, next, replace_, replaceAll_})
    button->setAutoDefault(false);
  matchCase_ = new QCheckBox(designerText("&Match case"));
  matchCase_->setObjectName(QStringLiteral("ChkMatchCase"));
  wholeWords_ = new QCheckBox(designerText("&Whole words"));
  wholeWords_->setObjectName(QStringLiteral("ChkWholeWords"));
  outcome_ = new QLabel;
  outcome_->setObjectName(QStringLiteral("LblFind"));
  auto *close = new QToolButton;
  close->setObjectName(QStringLiteral("CmdCloseFind"));
  close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
  close->setToolTip(designerText("Close (Esc)"));
  close->setAutoRaise(true);

  auto *grid = new QGridLayout(this);
  grid->setContentsMargins(0, 4, 0, 0);
  grid->addWidget(findLabel, 0, 0);
  grid->addWidget(findText_, 0, 1);
  grid->addWidget(previous, 0, 2);
  grid->addWidget(next, 0, 3);
  grid->addWidget(matchCase_, 0, 4);
  grid->addWidget(wholeWords_, 0, 5);
  grid->addWidget(outcome_, 0, 6);
  grid->addWidget(close, 0, 7);
  grid->addWidget(replaceLabel_, 1, 0);
  grid->addWidget(replaceText_, 1, 1);
  grid->addWidget(replace_, 1, 2);
  grid->addWidget(replaceAll_, 1, 3);
  grid->setColumnStretch(1, 3);
  grid->setColumnStretch(6, 1);

  connect(previous, &QPushButton::clicked, this, &FindBar::findPrevious);
  connect(next, &QPushButton::clicked, this, &FindBar::findNext);
  connect(replace_, &QPushButton::clicked, this, &FindBar::replaceNext);
  connect(replaceAll_, &QPushButton::clicked, this, &FindBar::replaceAll);
  connect(close, &QToolButton::clicked, this, &FindBar::dismiss);
  connect(findText_, &QLineEdit::textEdited, this, [this] { showOutcome(QString()); });
  hide();
}

void FindBar::open(bool replacing) {
  const QString selected = editor_.textCursor().selectedText();
  if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator))
    findText_->setText(selected);
  for (QWidget *part : {static_cast<QWidget *>(replaceLabel_), static_cast<QWidget *>(replaceText_),
                        static_cast<QWidget *>(replace_), static_cast<QWidget *>(replaceAll_)})
    part->setVisible(replacing);
  showOutcome(QString());
  show();
  findText_->setFocus();
  findText_->selectAll();
}

bool FindBar::findNext() { return find(false); }

bool FindBar::findPrevious() { return find(true); }

bool FindBar::find(bool backward) {
  const QString text = findText_->text();
  if (text.isEmpty()) {
    open(replace_->isVisible());
    return false;
  }
  QTextDocument::FindFlags flags = findFlags();
  if (backward)
    flags |= QTextDocument::FindBackward;
  QTextDocument &document = *editor_.document();
  QTextCursor found = document.find(text, editor_.textCursor(), flags);
  if (found.isNull()) {
    // Round the end to the other side.
    QTextCursor from(&document);
    if (backward)
      from.movePosition(QTextCursor::End);
    found = document.find(text, from, flags);
  }
  if (found.isNull()) {
    showOutcome(designerText("Not found"));
    return false;
  }
  showOutcome(QString());
  editor_.setTextCursor(found);
  editor_.centerCursor();
  return true;
}

QTextDocument::FindFlags FindBar::findFlags() const {
  QTextDocument::FindFlags flags;
  if (matchCase_->isChecked())
    flags |= QTextDocument::FindCaseSensitively;
  if (wholeWords_->isChecked())
    flags |= QTextDocument::FindWholeWords;
  return flags;
}

void FindBar::dismiss() {
  hide();
  editor_.setFocus();
}

bool FindBar::selectionIsMatch() const {
  const QString selected = editor_.textCursor().selectedText();
  return !selected.isEmpty() &&
         selected.compare(findText_->text(), matchCase_->isChecked() ? Qt::CaseSensitive : Qt::CaseInsensitive) == 0;
}

bool FindBar::replaceNext() {
  const bool replaced = selectionIsMatch();
  if (replaced)
    editor_.textCursor().insertText(replaceText_->text());
  findNext();
  return replaced;
}

int FindBar::replaceAll() {
  const QString text = findText_->text();
  if (text.isEmpty())
    return 0;
  const QTextDocument::FindFlags flags = findFlags();
  QTextDocument &document = *editor_.document();
  QTextCursor step(&document);
  step.beginEditBlock();
  int count = 0;
  for (QTextCursor found = document.find(text, 0, flags); !found.isNull(); found = document.find(text, found, flags)) {
    found.insertText(replaceText_->text());
    ++count;
  }
  step.endEditBlock();
  showOutcome(count == 0 ? designerText("Not found") : designerText("%n replaced", count));
  return count;
}

void FindBar::showOutcome(const QString &text) { outcome_->setText(text); }

void FindBar::keyPressEvent(QKeyEvent *event) {
  const bool shift = event->modifiers() & Qt::ShiftModifier;
  switch (event->key()) {
  case Qt::Key_Escape: dismiss(); break;
  case Qt::Key_Return:
  case Qt::Key_Enter:
    if (replaceText_->hasFocus())
      replaceNext();
    else if (shift)
      findPrevious();
    else
      findNext();
    break;
  default: QWidget::keyPressEvent(event); return;
  }
  event->accept();
}

} // namespace kordel::engine
