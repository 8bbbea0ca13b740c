#include "dialogs/DlgPageSetup.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/Settings.h"
#include "core/Error.h"
#include "data/ContextManager.h"
#include "common/ARTools.h"
#include "dialogs/DialogParts.h"
#include "dialogs/DlgMargins.h"
#include "dialogs/OrientationIcon.h"
#include "dialogs/PrintSource.h"
#include "document/Report.h"
#include "hostapi/Application.h"
#include "hostapi/Classes.h"
#include "hostapi/Explorer.h"
#include "hostapi/Layout.h"
#include "hostapi/ReportContext.h"
#include "hostapi/Ui.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

#include <cmath>

namespace kordel::addin {

namespace {

constexpr int kPortrait = 1;
constexpr int kLandscape = 2;
constexpr int kModePrint = 0;
constexpr int kModePreview = 1;
constexpr int kModeExport = 2;
constexpr std::int32_t kWidthAllowance = 113;
constexpr int kYesNoQuestion = 68;
constexpr int kAnswerNo = 7;
constexpr std::int16_t kOverwritePrompt = 2;
constexpr int kMaxCopies = 999;
const QString kSection = QStringLiteral("PageSetup");

// The wait cursor for the length of a handler, reset however it ends.
class BusyCursor {
public:
  BusyCursor() { SetBusyCursor(); }
  ~BusyCursor() { ResetCursor(); }
  BusyCursor(const BusyCursor &) = delete;
  BusyCursor &operator=(const BusyCursor &) = delete;
};

} // namespace

DlgPageSetup::DlgPageSetup(QWidget *parent) : QDialog(parent) {
  setObjectName(QStringLiteral("DlgPageSetup"));
  setModal(true);
  buildControls();

  connect(CbPrinter, &QComboBox::currentIndexChanged, this, [this] { CbPrinter_Click(); });
  connect(RbOrientationPortrait, &QRadioButton::toggled, this, [this](bool on) {
    if (on)
      RbOrientationPortrait_Click();
  });
  connect(RbOrientationLandscape, &QRadioButton::toggled, this, [this](bool on) {
    if (on)
      RbOrientationLandscape_Click();
  });
  connect(CmdMargins, &QPushButton::clicked, this, [this] { CmdMargins_Click(); });
  connect(CmdPrint, &QPushButton::clicked, this, [this] { CmdPrint_Click(); });
  connect(CmdPreview, &QPushButton::clicked, this, [this] { CmdPreview_Click(); });
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
  TxtCopies->installEventFilter(this);
}

void DlgPageSetup::buildControls() {
  FmePrinter = named<QGroupBox>("FmePrinter", this);
  CbPrinter = named<QComboBox>("CbPrinter", FmePrinter);
  LblPrinter = NamedLabel("LblPrinter", CbPrinter, FmePrinter);
  CbPaper = named<QComboBox>("CbPaper", FmePrinter);
  LblPaper = NamedLabel("LblPaper", CbPaper, FmePrinter);
  TxtCopies = named<QLineEdit>("TxtCopies", FmePrinter);
  TxtCopies->setMaximumWidth(60);
  LblCopies = NamedLabel("LblCopies", TxtCopies, FmePrinter);
  ChkPrintToFile = named<QCheckBox>("ChkPrintToFile", FmePrinter);
  auto *printerGrid = new QGridLayout(FmePrinter);
  printerGrid->addWidget(LblPrinter, 0, 0);
  printerGrid->addWidget(CbPrinter, 0, 1, 1, 2);
  printerGrid->addWidget(LblPaper, 1, 0);
  printerGrid->addWidget(CbPaper, 1, 1, 1, 2);
  printerGrid->addWidget(LblCopies, 2, 0);
  printerGrid->addWidget(TxtCopies, 2, 1);
  printerGrid->addWidget(ChkPrintToFile, 2, 2, Qt::AlignRight);
  printerGrid->setColumnStretch(2, 1);

  FmePageSetup = named<QGroupBox>("FmePageSetup", this);
  RbOrientationPortrait = named<QRadioButton>("RbOrientationPortrait", FmePageSetup);
  RbOrientationLandscape = named<QRadioButton>("RbOrientationLandscape", FmePageSetup);
  auto *icons = new QGridLayout;
  for (int index = 0; index < 2; ++index) {
    ImgOrientationIcon[index] = new OrientationIcon(index == 1, FmePageSetup);
    ImgOrientationIcon[index]->setObjectName(QStringLiteral("ImgOrientationIcon"));
    ImgOrientationIcon[index]->setProperty("index", index);
    icons->addWidget(ImgOrientationIcon[index], 0, 0);
  }
  CmdMargins = NamedButton("CmdMargins", FmePageSetup);
  auto *buttons = new QVBoxLayout;
  buttons->addWidget(RbOrientationPortrait);
  buttons->addWidget(RbOrientationLandscape);
  auto *pageRow = new QHBoxLayout(FmePageSetup);
  pageRow->addLayout(icons);
  pageRow->addLayout(buttons);
  pageRow->addStretch(1);
  pageRow->addWidget(CmdMargins, 0, Qt::AlignBottom);

  CtlPrintSource = named<PrintSource>("CtlPrintSource", this);
  CtlPrintSource->setMinimumSize(420, 240);
  CmdPrint = NamedButton("CmdPrint", this);
  CmdPrint->setDefault(true);
  CmdPreview = NamedButton("CmdPreview", this);
  CmdCancel = NamedButton("CmdCancel", this);
  auto *commands = new QHBoxLayout;
  commands->addStretch(1);
  commands->addWidget(CmdPrint);
  commands->addWidget(CmdPreview);
  commands->addWidget(CmdCancel);

  auto *layout = new QVBoxLayout(this);
  layout->addWidget(FmePrinter);
  layout->addWidget(FmePageSetup);
  layout->addWidget(CtlPrintSource, 1);
  layout->addLayout(commands);

  setTabOrder(CbPrinter, CbPaper);
  setTabOrder(CbPaper, TxtCopies);
  setTabOrder(TxtCopies, ChkPrintToFile);
  setTabOrder(ChkPrintToFile, RbOrientationPortrait);
  setTabOrder(RbOrientationPortrait, RbOrientationLandscape);
  setTabOrder(RbOrientationLandscape, CmdMargins);
  setTabOrder(CmdMargins, CtlPrintSource);
}

void DlgPageSetup::Form_Load() {
  try {
    BusyCursor busy;
    TranslateForm(*this);
    CenterForm(*this);
    FillControls();
    CtlPrintSource->Activate(report_, contextManager_);
    if (!ExportAllowed())
      ChkPrintToFile->hide();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageSetup.Form_Load"));
  }
}

void DlgPageSetup::FillControls() {
  const ObjectRef printers = EnumeratePrinters();
  const auto walk = printers->enumerate();
  Variant entry;
  while (walk->next(entry))
    CbPrinter->addItem(entry.toObject()->get(QStringLiteral("Name")).toString());

  // From here on a failure leaves the rest of the controls as they are.
  try {
    if (report_->Orientation() == kPortrait)
      RbOrientationPortrait->setChecked(true);
    else
      RbOrientationLandscape->setChecked(true);
    const QString defaultPrinter =
        CreateObject(QString::fromLatin1(hostapi::kLayoutPrinterProgId))->get(QStringLiteral("DeviceName")).toString();
    SelectComboItem(
        *CbPrinter,
        ReadReportSetting(report_->Name(), kSection, QStringLiteral("DeviceName"), defaultPrinter).toString(), 0);
    SelectComboItem(*CbPaper,
                    ReadReportSetting(report_->Name(), kSection, QStringLiteral("PaperBinName"), QString()).toString(),
                    0);
    TxtCopies->setText(contextManager_->GetProperty(QStringLiteral("sysprop__copies"), 1).toString());
  } catch (...) {
  }
}

bool DlgPageSetup::ExportAllowed() const {
  // Any failure on the way allows it.
  try {
    hostapi::Application &app = *CurrentApplication();
    const QString className = contextManager_->Class()->name();
    const auto explorers = app.explorers();
    if (!explorers || !explorers->exists(className))
      return true;
    // A settings object the host does not have forbids nothing.
    const auto readSetting = [](const ObjectRef &settings, Args args) {
      return settings ? settings->invoke(QStringLiteral("Read"), std::move(args)).toLong() : 0;
    };
    if (readSetting(app.get(QStringLiteral("Settings")).toObject(),
                    {QStringLiteral("Application"), QStringLiteral("DisableExport"), Variant(0)}) != 0)
      return false;
    const auto own = readSetting(explorers->item(className)->get(QStringLiteral("Settings")).toObject(),
                                 {QStringLiteral("DisableExport"), Variant(0)});
    return own == 0;
  } catch (...) {
    return true;
  }
}

void DlgPageSetup::CbPrinter_Click() {
  try {
    const ObjectRef printer = FindPrinter(CbPrinter->currentText());
    CbPaper->clear();
    if (printer && HasPaperBins(printer->get(QStringLiteral("DeviceName")).toString(),
                                printer->get(QStringLiteral("Port")).toString())) {
      const Variant names = printer->get(QStringLiteral("PaperBinNames"));
      if (names.isArray())
        for (const Variant &name : names.array().elements())
          CbPaper->addItem(name.toString());
    }
    const bool any = CbPaper->count() > 0;
    CbPaper->setCurrentIndex(any ? 0 : -1);
    CbPaper->setEnabled(any);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageSetup.CbPrinter_Click"));
  }
}

void DlgPageSetup::ShowOrientation(int index) {
  ImgOrientationIcon[index]->show();
  ImgOrientationIcon[1 - index]->hide();
}

void DlgPageSetup::RbOrientationPortrait_Click() {
  try {
    ShowOrientation(0);
    report_->SetOrientation(kPortrait);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageSetup.RbOrientationPortrait_Click"));
  }
}

void DlgPageSetup::RbOrientationLandscape_Click() {
  try {
    ShowOrientation(1);
    report_->SetOrientation(kLandscape);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageSetup.RbOrientationLandscape_Click"));
  }
}

void DlgPageSetup::CmdMargins_Click() {
  try {
    DlgMargins margins(this);
    margins.SetMarginTop(float(report_->MarginTop()));
    margins.SetMarginBottom(float(report_->MarginBottom()));
    margins.SetMarginLeft(float(report_->MarginLeft()));
    margins.SetMarginRight(float(report_->MarginRight()));
    margins.Form_Load();
    hostapi::ui().showModal(margins);
    if (!margins.Status())
      return;
    report_->SetMarginTop(std::int32_t(std::lround(margins.MarginTop())));
    report_->SetMarginBottom(std::int32_t(std::lround(margins.MarginBottom())));
    report_->SetMarginLeft(std::int32_t(std::lround(margins.MarginLeft())));
    report_->SetMarginRight(std::int32_t(std::lround(margins.MarginRight())));
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageSetup.CmdMargins_Click"));
  }
}

std::int16_t DlgPageSetup::Copies() const {
  std::int16_t copies = 1;
  // Text that is no number, or too large a number, counts as one copy.
  try {
    const QString text = TxtCopies->text();
    if (!text.isEmpty() && Variant(text).isNumeric())
      copies = Variant(text).toInteger();
  } catch (...) {
  }
  if (copies < 1)
    return 1;
  return copies > kMaxCopies ? std::int16_t(kMaxCopies) : copies;
}

void DlgPageSetup::TxtCopies_LostFocus() {
  const QString copies = QString::number(Copies());
  if (TxtCopies->text() != copies)
    TxtCopies->setText(copies);
}

ObjectRef DlgPageSetup::SelectedPrinter() {
  WriteReportSetting(report_->Name(), kSection, QStringLiteral("DeviceName"), CbPrinter->currentText());
  WriteReportSetting(report_->Name(), kSection, QStringLiteral("PaperBinName"), CbPaper->currentText());
  return LoadReportPrinter(report_->Name());
}

void DlgPageSetup::CheckWidth() {
  const ObjectRef printer = FindPrinter(CbPrinter->currentText());
  if (!printer)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("DlgPageSetup.CheckWidth"));
  const std::int16_t bin = FindPaperBin(printer, CbPaper->currentText());
  if (bin != -1)
    printer->set(QStringLiteral("PaperBin"), bin);
  printer->set(QStringLiteral("Orientation"), report_->Orientation());
  const std::int32_t paper = printer->get(QStringLiteral("PaperWidth")).toLong();
  const std::int32_t needed = report_->PrintWidth() + report_->MarginLeft() + report_->MarginRight();
  if (paper + kWidthAllowance >= needed)
    return;
  if (ShowMessage(GetMessage(QStringLiteral("DlgPageSetup.ToWide")), kYesNoQuestion) == kAnswerNo)
    raiseError(ErrorNumber::SilentCancel, QStringLiteral("DlgPageSetup.CheckWidth"));
}

QString DlgPageSetup::AskExportFile() {
  ResetCursor();
  QString file = CleanFileName(report_->Name());
  const bool chosen = DisplayFileSave(GetMessage(QStringLiteral("DlgPageSetup.SaveDialogTitle")), MyDocumentsFolder(),
                                      GetMessage(QStringLiteral("DlgPageSetup.ExportFilter")), kOverwritePrompt, file);
  SetBusyCursor();
  if (!chosen)
    raiseError(ErrorNumber::DialogCancelled, QStringLiteral("DlgPageSetup.SaveDialog"));
  return file;
}

void DlgPageSetup::CmdPrint_Click() {
  try {
    BusyCursor busy;
    CheckWidth();
    const auto context = CtlPrintSource->GetContext();
    context->setProperty(QStringLiteral("sysprop__printerobject"), Variant(SelectedPrinter()));
    context->setProperty(QStringLiteral("sysprop__copies"), Copies());
    std::int32_t mode = kModePrint;
    if (!ChkPrintToFile->isHidden() && ChkPrintToFile->isChecked()) {
      context->setProperty(QStringLiteral("sysprop__exportfile"), AskExportFile());
      mode = kModeExport;
    }
    bool result = false;
    emit OnPrint(mode, report_, context, result);
    if (result)
      accept();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageSetup.CmdExport_Click"));
  }
}

void DlgPageSetup::CmdPreview_Click() {
  try {
    BusyCursor busy;
    const auto context = CtlPrintSource->GetContext();
    context->setProperty(QStringLiteral("sysprop__printerobject"), Variant(SelectedPrinter()));
    context->setProperty(QStringLiteral("sysprop__copies"), std::int16_t(1));
    bool result = false;
    emit OnPrint(kModePreview, report_, context, result);
    if (result)
      accept();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgPageSetup.Preview"));
  }
}

void DlgPageSetup::CmdCancel_Click() { reject(); }

bool DlgPageSetup::eventFilter(QObject *watched, QEvent *event) {
  if (watched == TxtCopies && event->type() == QEvent::FocusOut) {
    try {
      TxtCopies_LostFocus();
    } catch (...) {
      ErrorMessage(QStringLiteral("DlgPageSetup.TxtCopies_LostFocus"));
    }
  }
  return QDialog::eventFilter(watched, event);
}

} // namespace kordel::addin
