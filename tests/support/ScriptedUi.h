#pragma once

#include "hostapi/Ui.h"

#include <QStringList>

#include <deque>
#include <functional>

namespace kordel::test {

// A Ui for tests: it records every box shown and answers from queues the
// test fills. An empty queue answers boxes with their default button,
// cancels input boxes and file, font and colour dialogs, and refuses modal
// windows unless a handler drives them.
class ScriptedUi : public hostapi::Ui {
public:
  struct Box {
    QString text;
    int flags;
    QString title;
  };

  // What was shown, in order.
  std::vector<Box> boxes;
  std::vector<hostapi::FileDialogRequest> fileDialogs;
  std::vector<QColor> colorsOffered; // the initial colour of each colour dialog
  QStringList inputPrompts;
  int waitCursorDepth = 0;

  // Answers, taken from the front.
  std::deque<int> boxAnswers;
  std::deque<std::optional<QString>> inputAnswers;
  std::deque<QString> fileAnswers; // an empty string cancels
  std::deque<QFont> fontAnswers;   // none left cancels
  std::deque<QColor> colorAnswers; // an invalid colour, or none left, cancels
  std::function<void(QWidget &)> modalHandler;

  int messageBox(const QString &text, int flags, const QString &title) override;
  std::optional<QString> inputBox(const QString &prompt, const QString &title, const QString &defaultText) override;
  QString openFile(const hostapi::FileDialogRequest &request) override;
  QString saveFile(const hostapi::FileDialogRequest &request) override;
  QFont chooseFont(const QFont &initial, const QString &title) override;
  std::optional<QColor> chooseColor(const QColor &initial, const QString &title) override;
  void showModal(QWidget &window) override;
  void setWaitCursor(bool busy) override;

private:
  QString answerFileDialog(const hostapi::FileDialogRequest &request);
};

} // namespace kordel::test
