#pragma once

#include "core/Variant.h"

#include "runtime/PromptWindow.h"

class QLabel;
class QListWidget;
class QPushButton;

namespace kordel::addin {

// The window in which a script lets the user pick several values
// (Extensions.ShowSetBox). Every option starts chosen: the user takes away
// what is not wanted. The caller sets Options, Prompt and Title, calls Show
// and reads Result. The prompt is kept but not shown, as in ExtOption.
class ExtSet : public PromptWindow {
  Q_OBJECT

public:
  ExtSet();

  void SetOptions(const Variant &options) { options_ = options; }
  void SetPrompt(const QString &prompt) { prompt_ = prompt; }
  // The chosen texts in list order as an array from 0; Empty when the
  // window was cancelled or nothing was chosen.
  Variant Result() const { return result_; }
  void SetTitle(const QString &title) { title_ = title; }

  // Loads the window and shows it modally through the user interface;
  // returns when it has closed.
  void Show();

  void Form_Load();
  void CmdOK_Click() override;
  void CmdCancel_Click() override;

private:
  QListWidget *LbSet;

  Variant options_;
  QString prompt_;
  Variant result_;
  QString title_;
};

} // namespace kordel::addin
