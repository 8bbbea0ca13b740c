#pragma once

#include <QDialog>

class QLabel;
class QPushButton;

namespace kordel::addin {

// The frame the script windows share: a prompt label over one input
// control, and OK and Cancel below on the right. The buttons call the
// window's handlers; what a handler raises goes to the reporter as
// "<window>.CmdOK_Click" or "<window>.CmdCancel_Click".
class PromptWindow : public QDialog {
  Q_OBJECT

public:
  virtual void CmdOK_Click() = 0;
  virtual void CmdCancel_Click() = 0;

protected:
  // name is the window's object name.
  explicit PromptWindow(const QString &name);
  // Puts the window's input control between prompt and buttons.
  void SetInput(QWidget *input);

  QLabel *LblPrompt;
  QPushButton *CmdOK;
  QPushButton *CmdCancel;
};

} // namespace kordel::addin
