#include "dialogs/DlgReportProperties.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/ResourceManager.h"
#include "common/Units.h"
#include "dialogs/DialogParts.h"
#include "dialogs/MarginBox.h"
#include "dialogs/OrientationIcon.h"
#include "document/Page.h"
#include "document/Pages.h"
#include "document/Report.h"
#include "hostapi/Application.h"
#include "hostapi/Classes.h"
#include "hostapi/Explorer.h"
#include "hostapi/Layout.h"
#include "hostapi/Picture.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QPushButton>
#include <QRadioButton>
#include <QTabBar>
#include <QTimer>
#include <QVBoxLayout>

#include <array>

namespace kordel::addin {

namespace {

constexpr std::int32_t kUserDefinedPaper = -1;
constexpr int kPortrait = 1;
constexpr int kLandscape = 2;
constexpr int kEitherOrientation = -1;
constexpr int kLayoutInMemory = 2;
constexpr int kYesNoExclamation = 52;
constexpr int kInformation = 64;
constexpr int kAnswerNo = 7;

struct PaperSize {
  std::int32_t constant;
  const char *captionKey;
  std::int32_t portraitWidth;
  std::int32_t landscapeWidth;
};

// The sizes offered, in the order of the combo; user-defined paper takes
// its width from the report.
constexpr std::array<PaperSize, 8> kPaperSizes{{
    {1, "DlgReportProperties.PaperSizeLetter", 12240, 15840},
    {5, "DlgReportProperties.PaperSizeLegal", 12240, 20160},
    {9, "DlgReportProperties.PaperSizeA4", 11906, 16838},
    {11, "DlgReportProperties.PaperSizeA5", 8391, 11906},
    {20, "DlgReportProperties.PaperSizeEnvelope10", 5940, 13680},
    {27, "DlgReportProperties.PaperSizeEnvelopeDL", 6236, 12472},
    {28, "DlgReportProperties.PaperSizeEnvelopeC5", 9184, 12983},
    {kUserDefinedPaper, "DlgReportProperties.PaperSizeCustom", 0, 0},
}};

// A paper size recognised from a width in centimetres strictly between
// from and to.
struct WidthRange {
  double from;
  double to;
  std::int32_t constant;
};

// Upright widths. The second row repeats the first, so a Legal width is
// taken for Letter: Legal is found only lying on its side.
constexpr std::array<WidthRange, 7> kPortraitRanges{{
    {21.5, 22.1, 1},
    {21.5, 22.1, 5},
    {20.5, 21.5, 9},
    {14.3, 15.3, 11},
    {10.0, 10.8, 20},
    {10.7, 11.5, 27},
    {15.7, 16.7, 28},
}};

constexpr std::array<WidthRange, 7> kLandscapeRanges{{
    {27.4, 28.4, 1},
    {35.1, 36.1, 5},
    {29.2, 30.2, 9},
    {20.5, 21.5, 11},
    {23.6, 24.6, 20},
    {21.5, 22.5, 27},
    {22.4, 23.4, 28},
}};

QWidget *newPictureBox(const char *name, QWidget *parent) {
  auto *box = named<QWidget>(name, parent);
  // The boxes share one place; a hidden one keeps its room so that the
  // window keeps its size from tab to tab.
  QSizePolicy policy = box->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  box->setSizePolicy(policy);
  return box;
}

MarginBox *newMarginBox(const char *name, QLabel *label, QWidget *parent) {
  auto *box = named<MarginBox>(name, parent);
  label->setBuddy(box->TextBox());
  return box;
}

// Sets the flag for the life of one paper update, also when it fails.
class UpdatingScope {
public:
  explicit UpdatingScope(bool &flag) : flag_(flag) { flag_ = true; }
  ~UpdatingScope() { flag_ = false; }
  UpdatingScope(const UpdatingScope &) = delete;
  UpdatingScope &operator=(const UpdatingScope &) = delete;

private:
  bool &flag_;
};

} // namespace

DlgReportProperties::DlgReportProperties(QWidget *parent) : QDialog(parent) {
  setObjectName(QStringLiteral("DlgReportProperties"));
  setModal(true);
  TabProperties = named<QTabBar>("TabProperties", this);
  for (int i = 0; i < 3; ++i)
    TabProperties->addTab(QString());
  TabProperties->setExpanding(false);
  auto *pages = new QGridLayout;
  PicGeneral = newPictureBox("PicGeneral", this);
  PicPageSize = newPictureBox("PicPageSize", this);
  PicMargins = newPictureBox("PicMargins", this);
  pages->addWidget(PicGeneral, 0, 0);
  pages->addWidget(PicPageSize, 0, 0);
  pages->addWidget(PicMargins, 0, 0);
  buildGeneralTab();
  buildPaperTab();
  buildMarginsTab();
  CmdOK = NamedButton("CmdOK", this);
  CmdCancel = NamedButton("CmdCancel", this);

  auto *layout = new QVBoxLayout(this);
  layout->addWidget(TabProperties);
  layout->addLayout(pages, 1);
  layout->addLayout(OkCancelRow(CmdOK, CmdCancel));
  resize(420, 330);

  connect(TabProperties, &QTabBar::currentChanged, this,
          Guarded(QStringLiteral("DlgReportProperties.TabProperties_Click"), [this] { TabProperties_Click(); }));
  connect(CboPaperSize, &QComboBox::currentIndexChanged, this,
          Guarded(QStringLiteral("DlgReportProperties.CboPaperSize_Click"), [this] { CboPaperSize_Click(); }));
  connect(CboScript, &QComboBox::currentIndexChanged, this, [this] { CboScript_Click(); });
  connect(MbWidth, &MarginBox::Change, this, [this](std::int32_t value) {
    try {
      MbWidth_Change(value);
    } catch (...) {
      ErrorMessage(QStringLiteral("DlgReportProperties.MbWidth_Change"));
    }
  });
  connect(RbOrientationPortrait, &QRadioButton::toggled, this, [this](bool on) {
    try {
      if (on)
        RbOrientationPortrait_Click();
    } catch (...) {
      ErrorMessage(QStringLiteral("DlgReportProperties.RbOrientationPortrait_Click"));
    }
  });
  connect(RbOrientationLandscape, &QRadioButton::toggled, this, [this](bool on) {
    try {
      if (on)
        RbOrientationLandscape_Click();
    } catch (...) {
      ErrorMessage(QStringLiteral("DlgReportProperties.RbOrientationLandscape_Click"));
    }
  });
  connect(CmdOK, &QPushButton::clicked, this, [this] { CmdOK_Click(); });
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
  PreviewKeys(*this, this);
}

void DlgReportProperties::buildGeneralTab() {
  FmeName = named<QGroupBox>("FmeName", PicGeneral);
  TbName = named<QLineEdit>("TbName", FmeName);
  (new QVBoxLayout(FmeName))->addWidget(TbName);
  FmeClass = named<QGroupBox>("FmeClass", PicGeneral);
  CboClass = named<QComboBox>("CboClass", FmeClass);
  (new QVBoxLayout(FmeClass))->addWidget(CboClass);
  FmeScript = named<QGroupBox>("FmeScript", PicGeneral);
  CboScript = named<QComboBox>("CboScript", FmeScript);
  (new QVBoxLayout(FmeScript))->addWidget(CboScript);
  auto *layout = new QVBoxLayout(PicGeneral);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(FmeName);
  layout->addWidget(FmeClass);
  layout->addWidget(FmeScript);
  layout->addStretch();
}

void DlgReportProperties::buildPaperTab() {
  LblPaperSize = named<QLabel>("LblPaperSize", PicPageSize);
  CboPaperSize = named<QComboBox>("CboPaperSize", PicPageSize);
  LblPaperSize->setBuddy(CboPaperSize);
  LblWidth = named<QLabel>("LblWidth", PicPageSize);
  MbWidth = newMarginBox("MbWidth", LblWidth, PicPageSize);
  FmeOrientation = named<QGroupBox>("FmeOrientation", PicPageSize);
  RbOrientationPortrait = named<QRadioButton>("RbOrientationPortrait", FmeOrientation);
  RbOrientationLandscape = named<QRadioButton>("RbOrientationLandscape", FmeOrientation);
  auto *icons = new QGridLayout;
  for (int index = 0; index < 2; ++index) {
    ImgOrientationIcon[index] = new OrientationIcon(index == 1, FmeOrientation);
    ImgOrientationIcon[index]->setObjectName(QStringLiteral("ImgOrientationIcon"));
    ImgOrientationIcon[index]->setProperty("index", index);
    icons->addWidget(ImgOrientationIcon[index], 0, 0);
  }
  auto *buttons = new QVBoxLayout;
  buttons->addWidget(RbOrientationPortrait);
  buttons->addWidget(RbOrientationLandscape);
  auto *orientation = new QHBoxLayout(FmeOrientation);
  orientation->addLayout(icons);
  orientation->addSpacing(8);
  orientation->addLayout(buttons, 1);

  auto *grid = new QGridLayout;
  grid->addWidget(LblPaperSize, 0, 0);
  grid->addWidget(CboPaperSize, 0, 1);
  grid->addWidget(LblWidth, 1, 0);
  grid->addWidget(MbWidth, 1, 1, Qt::AlignLeft);
  grid->setColumnStretch(1, 1);
  MbWidth->setMinimumWidth(110);
  auto *layout = new QVBoxLayout(PicPageSize);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addLayout(grid);
  layout->addWidget(FmeOrientation);
  layout->addStretch();
}

void DlgReportProperties::buildMarginsTab() {
  LblMarginTop = named<QLabel>("LblMarginTop", PicMargins);
  MbTop = newMarginBox("MbTop", LblMarginTop, PicMargins);
  LblMarginBottom = named<QLabel>("LblMarginBottom", PicMargins);
  MbBottom = newMarginBox("MbBottom", LblMarginBottom, PicMargins);
  LblMarginLeft = named<QLabel>("LblMarginLeft", PicMargins);
  MbLeft = newMarginBox("MbLeft", LblMarginLeft, PicMargins);
  LblMarginRight = named<QLabel>("LblMarginRight", PicMargins);
  MbRight = newMarginBox("MbRight", LblMarginRight, PicMargins);
  auto *grid = new QGridLayout(PicMargins);
  grid->setContentsMargins(0, 0, 0, 0);
  int row = 0;
  for (auto [label, box] : {std::pair<QLabel *, MarginBox *>{LblMarginTop, MbTop},
                            {LblMarginBottom, MbBottom},
                            {LblMarginLeft, MbLeft},
                            {LblMarginRight, MbRight}}) {
    grid->addWidget(label, row, 0);
    grid->addWidget(box, row, 1, Qt::AlignLeft);
    box->setMinimumWidth(110);
    ++row;
  }
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(row, 1);
}

// ---- loading

void DlgReportProperties::Form_Load() {
  try {
    SetBusyCursor();
    if (const auto icon = HostTools()->loadIconPicture(AddinFolder(), QStringLiteral("customIcon"), 16, 16))
      setWindowIcon(QPixmap::fromImage(icon->image()));
    status_ = false;
    if (!report_)
      raiseError(ErrorNumber::ObjectNotSet, objectName(), QStringLiteral("The dialog has no report"));
    TbName->setText(report_->Name());
    InitializeCtrls();
    InitializeCaptions();
    CenterForm(*this);
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportSettings.Form_Load"));
  }
}

void DlgReportProperties::InitializeCaptions() {
  TranslateForm(*this);
  TabProperties->setTabText(0, GetMessage(QStringLiteral("DlgReportProperties.TabGeneral")));
  TabProperties->setTabText(1, GetMessage(QStringLiteral("DlgReportProperties.TabPaperSize")));
  TabProperties->setTabText(2, GetMessage(QStringLiteral("DlgReportProperties.TabMargins")));
}

void DlgReportProperties::InitializeCtrls() {
  try {
    {
      // Filling a combo selects its first item; nothing is chosen yet.
      const QSignalBlocker blockScript(CboScript);
      CboScript->addItems({QStringLiteral("VBScript"), QStringLiteral("JScript")});
      CboScript->setCurrentIndex(-1);
      const QSignalBlocker blockPaper(CboPaperSize);
      for (const PaperSize &paper : kPaperSizes)
        CboPaperSize->addItem(GetMessage(QString::fromLatin1(paper.captionKey)), paper.constant);
      CboPaperSize->setCurrentIndex(-1);
    }

    if (!report_->IsNew()) {
      CboClass->addItem(report_->Class()->localName());
      CboClass->setCurrentIndex(0);
      CboClass->setEnabled(false);
    } else if (contextClass_) {
      CboClass->addItem(contextClass_->localName());
      CboClass->setCurrentIndex(0);
      CboClass->setEnabled(false);
    } else {
      const auto application = CurrentApplication();
      const auto walk = application->classes()->enumerate();
      Variant entry;
      while (walk->next(entry))
        CboClass->addItem(entry.toObject()->get(QStringLiteral("LocalName")).toString());
      const auto explorer = application->activeExplorer();
      const auto viewed = explorer ? explorer->explorerClass() : nullptr;
      SelectComboItem(*CboClass, viewed ? viewed->localName() : QString(), 0);
    }

    if (report_->Orientation() != kPortrait)
      RbOrientationLandscape->setChecked(true);
    else
      RbOrientationPortrait->setChecked(true);
    MbBottom->SetValue(report_->MarginBottom());
    MbLeft->SetValue(report_->MarginLeft());
    MbRight->SetValue(report_->MarginRight());
    MbTop->SetValue(report_->MarginTop());
    // A language the list lacks leaves it without a choice.
    const int language = CboScript->findText(report_->ScriptLanguage(), Qt::MatchFixedString);
    if (language >= 0)
      CboScript->setCurrentIndex(language);
    SelectPaperSize(report_->PaperSize());
    TabProperties->setCurrentIndex(0);
    TabProperties_Click();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportSettings.InitializeCtrls"));
  }
}

void DlgReportProperties::showEvent(QShowEvent *event) {
  QDialog::showEvent(event);
  if (activated_)
    return;
  activated_ = true;
  TbName->setFocus();
  TbName->selectAll();
}

// ---- paper

std::int32_t DlgReportProperties::GetPaperSizeConstant(std::int32_t width, int orientation) const {
  const double centimetres = TwipsToCentimeters(width);
  std::int32_t result = kUserDefinedPaper;
  const auto search = [&](const auto &ranges) {
    for (const WidthRange &range : ranges) {
      if (centimetres > range.from && centimetres < range.to) {
        result = range.constant;
        return;
      }
    }
  };
  if (orientation == kPortrait || orientation == kEitherOrientation)
    search(kPortraitRanges);
  if ((orientation == kLandscape || orientation == kEitherOrientation) && result == kUserDefinedPaper)
    search(kLandscapeRanges);
  return result;
}

std::int32_t DlgReportProperties::GetPaperSizeWidth(std::int32_t paperSize, int orientation) const {
  const bool portrait = orientation == kPortrait || orientation == kEitherOrientation;
  for (const PaperSize &paper : kPaperSizes) {
    if (paper.constant == paperSize && paper.constant != kUserDefinedPaper)
      return portrait ? paper.portraitWidth : paper.landscapeWidth;
  }
  // A size of no known width is A4, but lying on its side it is taken as
  // 297 cm, not mm.
  return portrait ? MmToTwips(210) : CentimetersToTwips(297.0f);
}

int DlgReportProperties::orientation() const { return RbOrientationPortrait->isChecked() ? kPortrait : kLandscape; }

void DlgReportProperties::SelectPaperSize(std::int32_t paperSize) {
  const int index = CboPaperSize->findData(paperSize);
  if (index >= 0)
    CboPaperSize->setCurrentIndex(index);
}

void DlgReportProperties::CboPaperSize_Click() {
  if (CboPaperSize->currentIndex() < 0 || updating_)
    return;
  const UpdatingScope scope(updating_);
  const std::int32_t constant = CboPaperSize->currentData().toInt();
  if (constant == kUserDefinedPaper)
    MbWidth->SetValue(report_->PrintWidth() + report_->MarginLeft() + report_->MarginRight());
  else
    MbWidth->SetValue(GetPaperSizeWidth(constant, orientation()));
}

void DlgReportProperties::MbWidth_Change(std::int32_t value) {
  if (CboPaperSize->currentIndex() < 0 || updating_)
    return;
  const UpdatingScope scope(updating_);
  const std::int32_t constant = GetPaperSizeConstant(value, orientation());
  if (constant != CboPaperSize->currentData().toInt())
    SelectPaperSize(constant);
}

void DlgReportProperties::ShowOrientation(int index) {
  ImgOrientationIcon[index]->show();
  ImgOrientationIcon[1 - index]->hide();
  UpdatePaperSize();
}

void DlgReportProperties::UpdatePaperSize() {
  if (CboPaperSize->currentIndex() < 0 || updating_)
    return;
  const UpdatingScope scope(updating_);
  const std::int32_t constant = CboPaperSize->currentData().toInt();
  if (constant == kUserDefinedPaper)
    SelectPaperSize(GetPaperSizeConstant(MbWidth->Value(), orientation()));
  else
    MbWidth->SetValue(GetPaperSizeWidth(constant, orientation()));
}

// ---- language

void DlgReportProperties::CboScript_Click() {
  try {
    if (!report_ || report_->IsNew())
      return;
    const QString language = report_->ScriptLanguage();
    if (CboScript->currentText().toLower() == language.toLower())
      return;
    const int answer =
        ShowMessage(GetMessage(QStringLiteral("DlgReportProperties.ChangeLanguageWarning")), kYesNoExclamation);
    if (answer == kAnswerNo) {
      const int index = CboScript->findText(language, Qt::MatchFixedString);
      if (index >= 0)
        CboScript->setCurrentIndex(index);
    }
  } catch (...) {
    // The warning is advice: without it the choice simply stands.
  }
}

void DlgReportProperties::RemoveScripts(const std::shared_ptr<Page> &page) {
  try {
    const Variant stored = page->LayoutTemplate();
    const QByteArray bytes = stored.isByteArray() ? stored.rawBytes() : stored.toString().toUtf8();
    // A page never designed has no layout and so no scripts.
    if (!bytes.isEmpty()) {
      const ObjectRef layout = CreateObject(QString::fromLatin1(hostapi::kLayoutReportProgId));
      layout->invoke(QStringLiteral("LoadLayout"), {Variant(bytes)});
      layout->set(QStringLiteral("Script"), QString());
      const ObjectRef sections = layout->get(QStringLiteral("Sections")).toObject();
      const int count = sections->get(QStringLiteral("Count")).toLong();
      for (int i = 0; i < count; ++i)
        sections->invoke(QStringLiteral("Item"), {i}).toObject()->set(QStringLiteral("Script"), QString());
      layout->invoke(QStringLiteral("RefreshLayout"));
      Args args{QString(), kLayoutInMemory, Variant()};
      layout->call(QStringLiteral("SaveLayout"), args);
      page->SetLayoutTemplate(args[2]);
    }
    const auto subPages = page->Pages();
    for (int i = 1; i <= subPages->Count(); ++i)
      RemoveScripts(subPages->Item(i));
  } catch (...) {
    ErrorMessage(QStringLiteral("ARTools.RemoveScripts"));
  }
}

// ---- OK and Cancel

void DlgReportProperties::UpdatePageWidths(const std::shared_ptr<Page> &page, std::int32_t width) {
  try {
    if (page->Width() > width)
      page->SetWidth(width);
    const auto subPages = page->Pages();
    for (int i = 1; i <= subPages->Count(); ++i)
      UpdatePageWidths(subPages->Item(i), width);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportProperties.UpdatePageWidths"));
  }
}

void DlgReportProperties::CmdOK_Click() {
  try {
    SetBusyCursor();
    if (TbName->text().isEmpty()) {
      ShowMessage(GetMessage(QStringLiteral("DlgReportProperties.NoName")), kInformation);
      TbName->setFocus();
      ResetCursor();
      return;
    }
    if (CboPaperSize->currentIndex() < 0)
      raiseError(ErrorNumber::InvalidCall, QStringLiteral("DlgReportProperties.CmdOK_Click"),
                 QStringLiteral("No paper size is selected"));
    const std::int32_t paperSize = CboPaperSize->currentData().toInt();
    const std::int32_t paperWidth =
        paperSize == kUserDefinedPaper ? MbWidth->Value() : GetPaperSizeWidth(paperSize, orientation());
    const std::int32_t printWidth = paperWidth - MbLeft->Value() - MbRight->Value();
    const QString language = CboScript->currentText();

    if (report_->IsNew()) {
      const auto chosen = CurrentApplication()->classes()->lookup(CboClass->currentText(), hostapi::LookupMode::Local);
      if (!chosen)
        raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("DlgReportProperties.CmdOK_Click"),
                   QStringLiteral("The database has no class '%1'").arg(CboClass->currentText()));
      // A failed creation has told the user; the dialog stays for another try.
      if (!report_->Create(chosen->name())) {
        ResetCursor();
        return;
      }
    } else {
      if (language.compare(report_->ScriptLanguage(), Qt::CaseInsensitive) != 0)
        RemoveScripts(report_->Page());
      if (report_->PrintWidth() != printWidth) {
        UpdatePageWidths(report_->Page(), printWidth);
        report_->Page()->SetWidth(printWidth);
      }
    }
    report_->SetName(TbName->text());
    report_->SetPrintWidth(printWidth);
    report_->SetMarginBottom(MbBottom->Value());
    report_->SetMarginLeft(MbLeft->Value());
    report_->SetMarginRight(MbRight->Value());
    report_->SetMarginTop(MbTop->Value());
    report_->SetPaperSize(paperSize);
    report_->SetOrientation(std::int16_t(orientation()));
    report_->SetScriptLanguage(language);
    status_ = true;
    QDialog::accept();
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgReportProperties.CmdOK_Click"));
    ResetCursor();
  }
}

void DlgReportProperties::CmdCancel_Click() { QDialog::reject(); }

void DlgReportProperties::reject() { CmdCancel_Click(); }

// ---- tabs and keys

void DlgReportProperties::TabProperties_Click() {
  PicGeneral->hide();
  PicPageSize->hide();
  PicMargins->hide();
  switch (TabProperties->currentIndex()) {
  case 0: PicGeneral->show(); break;
  case 1: PicPageSize->show(); break;
  case 2: PicMargins->show(); break;
  default: break;
  }
}

bool DlgReportProperties::eventFilter(QObject *watched, QEvent *event) {
  // Control+Tab and Control+Shift+Tab go round the tabs from any control.
  const int shift = TabKeyShift(*event);
  if (shift >= 0 && (shift & 2)) {
    TabProperties->setCurrentIndex(CycledTab(TabProperties->currentIndex(), TabProperties->count(), shift & 1));
    return true;
  }
  if (watched == TbName && event->type() == QEvent::FocusIn)
    QTimer::singleShot(0, TbName, &QLineEdit::selectAll);
  return QDialog::eventFilter(watched, event);
}

} // namespace kordel::addin
