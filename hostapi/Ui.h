#pragma once

#include <QColor>
#include <QFont>
#include <QString>

#include <memory>
#include <optional>
#include <vector>

class QWidget;

namespace kordel::hostapi {

// Message box flags and answers, as VB's MsgBox numbers them.
namespace MsgBox {
constexpr int OkOnly = 0;
constexpr int OkCancel = 1;
constexpr int AbortRetryIgnore = 2;
constexpr int YesNoCancel = 3;
constexpr int YesNo = 4;
constexpr int RetryCancel = 5;
constexpr int Critical = 16;
constexpr int Question = 32;
constexpr int Exclamation = 48;
constexpr int Information = 64;
constexpr int DefaultButton2 = 256;
constexpr int DefaultButton3 = 512;

constexpr int Ok = 1;
constexpr int Cancel = 2;
constexpr int Abort = 3;
constexpr int Retry = 4;
constexpr int Ignore = 5;
constexpr int Yes = 6;
constexpr int No = 7;

// The buttons of a flags value, in order, as answer numbers.
std::vector<int> buttons(int flags);
// The answer of the default button of a flags value.
int defaultAnswer(int flags);
} // namespace MsgBox

// What a file dialog is asked to show. The filter is written as pairs of
// description and pattern joined by "|": "Reports|*.xml|All files|*.*".
struct FileDialogRequest {
  QString title;
  QString folder;
  QString filter;
  int filterIndex = 1;
  QString fileName;
  int flags = 0;
};

// Every modal interaction of the system passes through this seam: the
// desktop shows real windows, the command line answers without windows, and
// tests script the answers.
class Ui {
public:
  virtual ~Ui();

  // A message box; returns the answer of the button pressed.
  virtual int messageBox(const QString &text, int flags, const QString &title) = 0;
  // An input box; nothing when the user cancels.
  virtual std::optional<QString> inputBox(const QString &prompt, const QString &title, const QString &defaultText) = 0;
  // File dialogs; the chosen path. A cancel raises 32755.
  virtual QString openFile(const FileDialogRequest &request) = 0;
  virtual QString saveFile(const FileDialogRequest &request) = 0;
  // The font dialog; the chosen font. A cancel raises 32755.
  virtual QFont chooseFont(const QFont &initial, const QString &title) = 0;
  // The colour dialog; the chosen colour, nothing when the user cancels.
  virtual std::optional<QColor> chooseColor(const QColor &initial, const QString &title) = 0;
  // Shows a window modally and returns when it has been closed.
  virtual void showModal(QWidget &window) = 0;
  // The wait cursor on or off.
  virtual void setWaitCursor(bool busy) = 0;
};

// The Ui in force. Raises 5 when the host has installed none.
Ui &ui();
// Installs the Ui of the process; the previous one is dropped.
void installUi(std::shared_ptr<Ui> ui);
bool hasUi();

} // namespace kordel::hostapi
