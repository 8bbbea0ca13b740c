#pragma once

#include "core/Variant.h"

#include "runtime/PromptWindow.h"
#include <QStringList>

class QComboBox;
class QLabel;
class QPushButton;

namespace kordel::addin {

// The texts of the options a script passes to a choice window: each
// element of an array from its lower to its upper bound, or a single value
// as one text. Raises what the conversion of an element raises (94 for
// Null, 9 for an array of more than one dimension).
QStringList OptionTexts(const Variant &options);

// The window in which a script lets the user pick one value out of several
// (Extensions.ShowOptionBox). The caller sets Default, Options, Prompt and
// Title, calls Show and reads Result. The prompt is kept but not shown: the
// label keeps its translated caption, as it always has.
class ExtOption : public PromptWindow {
  Q_OBJECT

public:
  ExtOption();

  void SetDefault(const QString &value) { default_ = value; }
  void SetOptions(const Variant &options) { options_ = options; }
  void SetPrompt(const QString &prompt) { prompt_ = prompt; }
  // The chosen text; "" until OK is pressed.
  QString Result() const { return result_; }
  void SetTitle(const QString &title) { title_ = title; }

  // Loads the window and shows it modally through the user interface;
  // returns when it has closed.
  void Show();

  // Fills the box. A default the box does not hold is passed over and
  // leaves nothing chosen; no default chooses the first item.
  void Form_Load();
  void CmdOK_Click() override;
  void CmdCancel_Click() override;

private:
  QComboBox *CboOptions;

  QString default_;
  Variant options_;
  QString prompt_;
  QString result_;
  QString title_;
};

} // namespace kordel::addin
