#pragma once

#include <QDialog>

#include <cstdint>
#include <memory>

class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabBar;

namespace kordel::hostapi {
class Class;
}

namespace kordel::addin {

class MarginBox;
class OrientationIcon;
class Page;
class Report;

// What belongs to a report as a whole: its name, class, script language,
// paper and margins. For a new report OK creates it on the chosen class.
// The paper works both ways: a chosen size gives the width, and a typed
// width selects the size it matches, or the user-defined paper.
class DlgReportProperties : public QDialog {
  Q_OBJECT

public:
  explicit DlgReportProperties(QWidget *parent = nullptr);

  // The class a new report must be built on; nullptr lets the user choose.
  void SetContextClass(std::shared_ptr<hostapi::Class> contextClass) { contextClass_ = std::move(contextClass); }
  void SetReport(std::shared_ptr<addin::Report> report) { report_ = std::move(report); }
  // True after OK has applied the dialog to the report.
  bool Status() const { return status_; }

  // The paper size constant of a width in twips; orientation 1 portrait,
  // 2 landscape, -1 either. -1 when the width matches no size.
  std::int32_t GetPaperSizeConstant(std::int32_t width, int orientation) const;
  // The width in twips of a paper size; orientation 1 or -1 portrait, any
  // other landscape.
  std::int32_t GetPaperSizeWidth(std::int32_t paperSize, int orientation) const;
  // Empties the report script and every section's script of the page's
  // layout and those of its sub pages.
  void RemoveScripts(const std::shared_ptr<Page> &page);

  void Form_Load();
  void CmdOK_Click();
  void CmdCancel_Click();
  void CboPaperSize_Click();
  void CboScript_Click();
  void MbWidth_Change(std::int32_t value);
  void RbOrientationPortrait_Click() { ShowOrientation(0); }
  void RbOrientationLandscape_Click() { ShowOrientation(1); }
  void TabProperties_Click();

  // Escape, and closing the window, cancel.
  void reject() override;

protected:
  bool eventFilter(QObject *watched, QEvent *event) override;
  void showEvent(QShowEvent *event) override;

private:
  void InitializeCtrls();
  void InitializeCaptions();
  void SelectPaperSize(std::int32_t paperSize);
  void UpdatePaperSize();
  void UpdatePageWidths(const std::shared_ptr<Page> &page, std::int32_t width);
  // 1 portrait, 2 landscape, as the buttons say.
  int orientation() const;
  void ShowOrientation(int index);
  void buildGeneralTab();
  void buildPaperTab();
  void buildMarginsTab();

  QTabBar *TabProperties;
  QWidget *PicGeneral;
  QGroupBox *FmeName;
  QLineEdit *TbName;
  QGroupBox *FmeClass;
  QComboBox *CboClass;
  QGroupBox *FmeScript;
  QComboBox *CboScript;
  QWidget *PicPageSize;
  QLabel *LblPaperSize;
  QComboBox *CboPaperSize;
  QLabel *LblWidth;
  MarginBox *MbWidth;
  QGroupBox *FmeOrientation;
  QRadioButton *RbOrientationPortrait;
  QRadioButton *RbOrientationLandscape;
  OrientationIcon *ImgOrientationIcon[2];
  QWidget *PicMargins;
  QLabel *LblMarginTop;
  MarginBox *MbTop;
  QLabel *LblMarginBottom;
  MarginBox *MbBottom;
  QLabel *LblMarginLeft;
  MarginBox *MbLeft;
  QLabel *LblMarginRight;
  MarginBox *MbRight;
  QPushButton *CmdOK;
  QPushButton *CmdCancel;

  std::shared_ptr<hostapi::Class> contextClass_;
  std::shared_ptr<addin::Report> report_;
  bool status_ = false;
  // True while one paper control updates the others, whose events then
  // do nothing.
  bool updating_ = false;
  bool activated_ = false;
};

} // namespace kordel::addin
