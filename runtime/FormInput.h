#pragma once

#include "runtime/PromptWindow.h"

class QLabel;
class QLineEdit;
class QPushButton;

namespace kordel::addin {

// The window that asks the user for one line of text. Unlike the other
// script windows it shows the prompt it is given, and it translates only
// its two buttons.
class FormInput : public PromptWindow {
  Q_OBJECT

public:
  FormInput();

  // Shows prompt and the starting text modally, captioned with title or,
  // when that is empty, with the application's title. Returns the text
  // entered, or "" when the user cancels.
  QString QueryInput(const QString &prompt, const QString &title, const QString &text);

  void Form_Load();
  // Focus goes to the text box with its whole text selected, so that
  // typing replaces it.
  void Form_Activate();
  void CmdOK_Click() override;
  void CmdCancel_Click() override;

protected:
  bool event(QEvent *event) override;

private:
  QLineEdit *TbInput;

  bool confirmed_ = false;
};

} // namespace kordel::addin
