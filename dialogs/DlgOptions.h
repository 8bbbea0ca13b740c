#pragma once

#include <QDialog>
#include <QFont>

#include <cstdint>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTabBar;

namespace kordel::addin {

// The designer's options: the grid and the ruler, whose values the
// designer copies in and out, and the fonts of new fields and labels,
// which the dialog keeps in the user settings itself.
class DlgOptions : public QDialog {
  Q_OBJECT

public:
  explicit DlgOptions(QWidget *parent = nullptr);

  bool AlignToGrid() const { return alignToGrid_; }
  void SetAlignToGrid(bool align) { alignToGrid_ = align; }
  std::int16_t GridX() const { return gridX_; }
  void SetGridX(std::int16_t x) { gridX_ = x; }
  std::int16_t GridY() const { return gridY_; }
  void SetGridY(std::int16_t y) { gridY_ = y; }
  std::int16_t RulerUnits() const { return rulerUnits_; }
  void SetRulerUnits(std::int16_t units) { rulerUnits_ = units; }
  bool ShowGrid() const { return showGrid_; }
  void SetShowGrid(bool show) { showGrid_ = show; }
  // True after OK has saved the options.
  bool Status() const { return status_; }

  void Form_Load();
  void CmdOK_Click();
  void CmdCancel_Click();
  void CmdFieldFont_Click() { SelectFont(fieldFont_, *TbFieldFont); }
  void CmdLabelFont_Click() { SelectFont(labelFont_, *TbLabelFont); }
  // Lets the user change font in the font dialog and shows it in textBox;
  // a cancelled dialog leaves both as they were.
  void SelectFont(QFont &font, QLineEdit &textBox);
  // Writes the font's name, size and styles to textBox.
  void DescribeFont(QLineEdit &textBox, const QFont &font);
  // A grid size that is no 16-bit whole number becomes 16.
  void TxtWidth_LostFocus();
  void TxtHeight_LostFocus();
  void TabOptions_Click();
  // keyCode 9 is Tab; shift holds 1 for Shift, 2 for Control, 4 for Alt.
  void Form_KeyDown(int keyCode, int shift);

  // Escape, and closing the window, cancel.
  void reject() override;

protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

private:
  void InitializeCtrls();
  bool SaveOptions();
  void buildGeneralTab();
  void buildFontsTab();

  QTabBar *TabOptions;
  QWidget *PicTabGeneral;
  QGroupBox *FmeRuler;
  QLabel *LblRulerUnits;
  QComboBox *CboUnits;
  QGroupBox *FmeGrid;
  QCheckBox *ChkShowGrid;
  QCheckBox *ChkAlignControlsToGrid;
  QLabel *LblWidth;
  QLineEdit *TxtWidth;
  QLabel *LblHeight;
  QLineEdit *TxtHeight;
  QLabel *LblGridUnits;
  QLabel *LblGridUnitsInfo;
  QWidget *PicTabFonts;
  QGroupBox *FmeFieldFont;
  QLineEdit *TbFieldFont;
  QPushButton *CmdFieldFont;
  QGroupBox *FmeLabelFont;
  QLineEdit *TbLabelFont;
  QPushButton *CmdLabelFont;
  QPushButton *CmdOK;
  QPushButton *CmdCancel;

  bool alignToGrid_ = false;
  std::int16_t gridX_ = 0;
  std::int16_t gridY_ = 0;
  std::int16_t rulerUnits_ = 0;
  bool showGrid_ = false;
  bool status_ = false;
  QFont fieldFont_;
  QFont labelFont_;
};

} // namespace kordel::addin
