#pragma once

#include <QDialog>

#include <cstdint>

class QLabel;
class QListWidget;
class QPushButton;

namespace kordel::addin {

// Which of the designer's toolbars are shown. The answer is kept in the
// user settings as a mask of the toolbars' bits.
class DlgCustomize : public QDialog {
  Q_OBJECT

public:
  explicit DlgCustomize(QWidget *parent = nullptr);

  void SetToolBars(std::int16_t mask) { toolBars_ = mask; }
  // True after OK has saved the choice.
  bool Status() const { return status_; }

  void Form_Load();
  void CmdOK_Click();
  void CmdCancel_Click();

  // Escape, and closing the window, cancel.
  void reject() override;

private:
  void InitializeCtrls();
  // Writes the mask of the ticked toolbars to the settings.
  void SaveCustomizations();

  QLabel *LblToolBars;
  QListWidget *LbToolbars;
  QPushButton *CmdOK;
  QPushButton *CmdCancel;

  std::int16_t toolBars_ = 0;
  bool status_ = false;
};

} // namespace kordel::addin
