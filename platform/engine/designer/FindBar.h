#pragma once

#include <QTextDocument>
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace kordel::engine {

// A bar below an editor to find text in it and replace it: the text to
// find, the replacement (shown only for replacing), match case and whole
// words. Finding goes on from the cursor and wraps around the end. Return
// finds the next (Shift+Return the previous) or, in the replacement,
// replaces; Escape closes the bar and gives the editor its focus back.
class FindBar final : public QWidget {
  Q_OBJECT
public:
  explicit FindBar(QPlainTextEdit &editor, QWidget *parent = nullptr);

  // Shows the bar with the editor's selection (within a line) as the text
  // to find, and puts the focus on it.
  void open(bool replacing);
  // Select the next or previous match; false when there is none.
  bool findNext();
  bool findPrevious();
  // Replaces the match selected in the editor, if any, and finds the next.
  bool replaceNext();
  // Replaces every match as one step of the editor's undo; the count.
  int replaceAll();

protected:
  void keyPressEvent(QKeyEvent *event) override;

private:
  bool find(bool backward);
  QTextDocument::FindFlags findFlags() const;
  void dismiss();
  bool selectionIsMatch() const;
  void showOutcome(const QString &text);

  QPlainTextEdit &editor_;
  QLineEdit *findText_;
  QLineEdit *replaceText_;
  QCheckBox *matchCase_;
  QCheckBox *wholeWords_;
  QLabel *replaceLabel_;
  QPushButton *replace_;
  QPushButton *replaceAll_;
  QLabel *outcome_;
};

} // namespace kordel::engine
