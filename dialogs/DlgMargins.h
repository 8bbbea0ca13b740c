#pragma once

#include <QDialog>

class QGroupBox;
class QLabel;
class QPushButton;

namespace kordel::addin {

class MarginBox;

// The four margins of one print job, in twips. The boxes hold copies; the
// margins change on OK, and only when every box holds a length above 0.
class DlgMargins : public QDialog {
  Q_OBJECT

public:
  explicit DlgMargins(QWidget *parent = nullptr);

  float MarginBottom() const { return marginBottom_; }
  void SetMarginBottom(float twips) { marginBottom_ = twips; }
  float MarginLeft() const { return marginLeft_; }
  void SetMarginLeft(float twips) { marginLeft_ = twips; }
  float MarginRight() const { return marginRight_; }
  void SetMarginRight(float twips) { marginRight_ = twips; }
  float MarginTop() const { return marginTop_; }
  void SetMarginTop(float twips) { marginTop_ = twips; }
  // True after OK has taken the margins.
  bool Status() const { return status_; }

  void Form_Load();
  void CmdOK_Click();
  void CmdCancel_Click();

  // Escape, and closing the window, cancel.
  void reject() override;

private:
  void InitializeCaptions();
  // Valid false, the focus on the first box in error and the user told.
  void ValidateMargins(bool &valid);

  QGroupBox *FmeMargins;
  QLabel *LblMarginTop;
  MarginBox *MbMarginTop;
  QLabel *LblMarginBottom;
  MarginBox *MbMarginBottom;
  QLabel *LblMarginLeft;
  MarginBox *MbMarginLeft;
  QLabel *LblMarginRight;
  MarginBox *MbMarginRight;
  QPushButton *CmdOK;
  QPushButton *CmdCancel;

  float marginBottom_ = 0;
  float marginLeft_ = 0;
  float marginRight_ = 0;
  float marginTop_ = 0;
  bool status_ = false;
};

} // namespace kordel::addin
