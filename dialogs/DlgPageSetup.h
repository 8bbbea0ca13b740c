#pragma once

#include "core/Object.h"

#include <QDialog>

#include <cstdint>
#include <memory>

class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;

namespace kordel::hostapi {
class ReportContext;
}

namespace kordel::addin {

class ContextManager;
class OrientationIcon;
class PrintSource;
class Report;

// The dialog of an interactive print: printer, paper bin, copies,
// orientation, margins and the rows to print. It runs nothing itself: it
// makes the context and raises OnPrint, and closes only when the run says
// it is done. Orientation and margins change the report at once.
class DlgPageSetup : public QDialog {
  Q_OBJECT

public:
  explicit DlgPageSetup(QWidget *parent = nullptr);

  // Both set before the dialog is loaded.
  void SetReport(std::shared_ptr<addin::Report> report) { report_ = std::move(report); }
  void SetContextManager(std::shared_ptr<addin::ContextManager> manager) { contextManager_ = std::move(manager); }

  // The number of copies the field stands for, 1 to 999.
  std::int16_t Copies() const;
  // False when a setting of the host or of the class's list window
  // forbids printing to a file.
  bool ExportAllowed() const;

  void Form_Load();
  void CbPrinter_Click();
  void RbOrientationPortrait_Click();
  void RbOrientationLandscape_Click();
  void CmdMargins_Click();
  void TxtCopies_LostFocus();
  void CmdPrint_Click();
  void CmdPreview_Click();
  void CmdCancel_Click();

signals:
  // mode 0 print, 1 preview, 2 export; the handler sets result true when
  // the run is done, which closes the dialog.
  void OnPrint(std::int32_t mode, std::shared_ptr<addin::Report> report,
               std::shared_ptr<hostapi::ReportContext> context, bool &result);

protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

private:
  void FillControls();
  // Stores the choice for the report and gives the printer it makes.
  ObjectRef SelectedPrinter();
  // Raises -9998 when the report is wider than the paper and the user
  // does not want it printed anyway.
  void CheckWidth();
  // Raises 32755 when the user cancels.
  QString AskExportFile();
  void ShowOrientation(int index);
  void buildControls();

  QGroupBox *FmePrinter;
  QLabel *LblPrinter;
  QComboBox *CbPrinter;
  QLabel *LblPaper;
  QComboBox *CbPaper;
  QLabel *LblCopies;
  QLineEdit *TxtCopies;
  QCheckBox *ChkPrintToFile;
  QGroupBox *FmePageSetup;
  QRadioButton *RbOrientationPortrait;
  QRadioButton *RbOrientationLandscape;
  OrientationIcon *ImgOrientationIcon[2];
  QPushButton *CmdMargins;
  PrintSource *CtlPrintSource;
  QPushButton *CmdPrint;
  QPushButton *CmdPreview;
  QPushButton *CmdCancel;

  std::shared_ptr<addin::Report> report_;
  std::shared_ptr<addin::ContextManager> contextManager_;
};

} // namespace kordel::addin
