#include "dialogs/DlgOptions.h"

#include "common/Globals.h"
#include "common/Settings.h"
#include "dialogs/DialogParts.h"
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
#include <QTabBar>
#include <QVBoxLayout>

namespace kordel::addin {

namespace {

const QString kFieldFontKey = QStringLiteral("\\Designer\\FieldFont");
const QString kLabelFontKey = QStringLiteral("\\Designer\\LabelFont");

// The text as a 16-bit whole number in decimal, or "16" when it is none.
void normaliseGridSize(QLineEdit &box) {
  try {
    box.setText(QString::number(Variant(box.text()).toInteger()));
  } catch (const Error &) {
    // Not a number, or too large: the designer's own grid size.
    box.setText(QStringLiteral("16"));
  }
}

} // namespace

DlgOptions::DlgOptions(QWidget *parent) : QDialog(parent) {
  setObjectName(QStringLiteral("DlgOptions"));
  setMinimumWidth(360);
  setModal(true);
  TabOptions = named<QTabBar>("TabOptions", this);
  TabOptions->addTab(QString());
  TabOptions->addTab(QString());
  TabOptions->setExpanding(false);
  PicTabGeneral = named<QWidget>("PicTabGeneral", this);
  PicTabFonts = named<QWidget>("PicTabFonts", this);
  for (QWidget *box : {PicTabGeneral, PicTabFonts}) {
    // The boxes share one place; a hidden one keeps its room so that the
    // window keeps its size from tab to tab.
    QSizePolicy policy = box->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    box->setSizePolicy(policy);
  }
  buildGeneralTab();
  buildFontsTab();
  CmdOK = NamedButton("CmdOK", this);
  CmdCancel = NamedButton("CmdCancel", this);

  auto *pages = new QGridLayout;
  pages->addWidget(PicTabGeneral, 0, 0);
  pages->addWidget(PicTabFonts, 0, 0);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(TabOptions);
  layout->addLayout(pages, 1);
  layout->addLayout(OkCancelRow(CmdOK, CmdCancel));

  connect(TabOptions, &QTabBar::currentChanged, this, [this] { TabOptions_Click(); });
  connect(CmdFieldFont, &QPushButton::clicked, this, [this] { CmdFieldFont_Click(); });
  connect(CmdLabelFont, &QPushButton::clicked, this, [this] { CmdLabelFont_Click(); });
  connect(CmdOK, &QPushButton::clicked, this, [this] { CmdOK_Click(); });
  connect(CmdCancel, &QPushButton::clicked, this, [this] { CmdCancel_Click(); });
  PreviewKeys(*this, this);
}

void DlgOptions::buildGeneralTab() {
  FmeRuler = named<QGroupBox>("FmeRuler", PicTabGeneral);
  CboUnits = named<QComboBox>("CboUnits", FmeRuler);
  CboUnits->setMinimumContentsLength(14);
  LblRulerUnits = NamedLabel("LblRulerUnits", CboUnits, FmeRuler);
  auto *ruler = new QHBoxLayout(FmeRuler);
  ruler->addWidget(LblRulerUnits);
  ruler->addWidget(CboUnits);
  ruler->addStretch();

  FmeGrid = named<QGroupBox>("FmeGrid", PicTabGeneral);
  ChkShowGrid = named<QCheckBox>("ChkShowGrid", FmeGrid);
  ChkAlignControlsToGrid = named<QCheckBox>("ChkAlignControlsToGrid", FmeGrid);
  TxtWidth = named<QLineEdit>("TxtWidth", FmeGrid);
  LblWidth = NamedLabel("LblWidth", TxtWidth, FmeGrid);
  TxtHeight = named<QLineEdit>("TxtHeight", FmeGrid);
  LblHeight = NamedLabel("LblHeight", TxtHeight, FmeGrid);
  LblGridUnits = named<QLabel>("LblGridUnits", FmeGrid);
  LblGridUnitsInfo = named<QLabel>("LblGridUnitsInfo", FmeGrid);
  LblGridUnitsInfo->setWordWrap(true);
  for (QLineEdit *box : {TxtWidth, TxtHeight})
    box->setMaximumWidth(80);
  auto *sizes = new QGridLayout;
  sizes->addWidget(LblWidth, 0, 0);
  sizes->addWidget(TxtWidth, 0, 1);
  sizes->addWidget(LblGridUnits, 0, 2);
  sizes->addWidget(LblHeight, 1, 0);
  sizes->addWidget(TxtHeight, 1, 1);
  sizes->setColumnStretch(3, 1);
  auto *grid = new QVBoxLayout(FmeGrid);
  grid->addWidget(ChkShowGrid);
  grid->addWidget(ChkAlignControlsToGrid);
  grid->addLayout(sizes);
  grid->addWidget(LblGridUnitsInfo);

  auto *layout = new QVBoxLayout(PicTabGeneral);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(FmeRuler);
  layout->addWidget(FmeGrid);
  layout->addStretch();
}

void DlgOptions::buildFontsTab() {
  const auto fontRow = [this](const char *frame, const char *box, const char *button, QGroupBox *&fme, QLineEdit *&tb,
                              QPushButton *&cmd) {
    fme = named<QGroupBox>(frame, PicTabFonts);
    tb = named<QLineEdit>(box, fme);
    tb->setReadOnly(true);
    tb->setFocusPolicy(Qt::NoFocus);
    cmd = NamedButton(button, fme);
    auto *row = new QHBoxLayout(fme);
    row->addWidget(tb, 1);
    row->addWidget(cmd);
  };
  fontRow("FmeFieldFont", "TbFieldFont", "CmdFieldFont", FmeFieldFont, TbFieldFont, CmdFieldFont);
  fontRow("FmeLabelFont", "TbLabelFont", "CmdLabelFont", FmeLabelFont, TbLabelFont, CmdLabelFont);
  auto *layout = new QVBoxLayout(PicTabFonts);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(FmeFieldFont);
  layout->addWidget(FmeLabelFont);
  layout->addStretch();
}

void DlgOptions::Form_Load() {
  try {
    SetBusyCursor();
    status_ = false;
    TranslateForm(*this);
    TabOptions->setTabText(0, GetMessage(QStringLiteral("DlgOptions.Tab0")));
    TabOptions->setTabText(1, GetMessage(QStringLiteral("DlgOptions.Tab1")));
    InitializeCtrls();
    TabOptions->setCurrentIndex(0);
    TabOptions_Click();
    CenterForm(*this);
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgCustomize.Form_Load"));
  }
}

void DlgOptions::InitializeCtrls() {
  try {
    ChkShowGrid->setChecked(showGrid_);
    ChkAlignControlsToGrid->setChecked(alignToGrid_);
    TxtHeight->setText(QString::number(gridY_));
    TxtWidth->setText(QString::number(gridX_));
    CboUnits->addItem(GetMessage(QStringLiteral("DlgOptions.0")), 0);
    CboUnits->addItem(GetMessage(QStringLiteral("DlgOptions.1")), 1);
    CboUnits->setCurrentIndex(
        CboUnits->findText(GetMessage(QStringLiteral("DlgOptions.") + QString::number(rulerUnits_)),
                           Qt::MatchExactly | Qt::MatchCaseSensitive));
    fieldFont_ = ReadFont(kSettingsRoot + kFieldFontKey);
    labelFont_ = ReadFont(kSettingsRoot + kLabelFontKey);
    DescribeFont(*TbFieldFont, fieldFont_);
    DescribeFont(*TbLabelFont, labelFont_);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgCustomize.InitializeCtrls"));
  }
}

void DlgOptions::DescribeFont(QLineEdit &textBox, const QFont &font) {
  QString text = font.family() + QStringLiteral(", ") + QString::number(Variant(font.pointSizeF()).toInteger());
  if (font.bold())
    text += QStringLiteral(", ") + GetMessage(QStringLiteral("DlgOptions.Bold"));
  if (font.italic())
    text += QStringLiteral(", ") + GetMessage(QStringLiteral("DlgOptions.Italic"));
  if (font.underline())
    text += QStringLiteral(", ") + GetMessage(QStringLiteral("DlgOptions.Underline"));
  textBox.setText(text);
}

void DlgOptions::SelectFont(QFont &font, QLineEdit &textBox) {
  try {
    // A cancel raises 32755, which the reporter lets pass without a word.
    const QFont chosen = hostapi::ui().chooseFont(font, QString());
    font.setFamily(chosen.family());
    font.setPointSizeF(chosen.pointSizeF());
    font.setBold(chosen.bold());
    font.setItalic(chosen.italic());
    font.setUnderline(chosen.underline());
    font.setStrikeOut(chosen.strikeOut());
    DescribeFont(textBox, font);
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgCustomize.SelectFont"));
  }
}

void DlgOptions::TxtWidth_LostFocus() { normaliseGridSize(*TxtWidth); }

void DlgOptions::TxtHeight_LostFocus() { normaliseGridSize(*TxtHeight); }

void DlgOptions::TabOptions_Click() {
  const bool general = TabOptions->currentIndex() == 0;
  PicTabGeneral->setVisible(general);
  PicTabFonts->setVisible(!general);
  if (isVisible())
    (general ? static_cast<QWidget *>(ChkShowGrid) : CmdLabelFont)->setFocus();
}

void DlgOptions::Form_KeyDown(int keyCode, int shift) {
  constexpr int kTabKey = 9;
  if (keyCode != kTabKey || !(shift & 2))
    return;
  TabOptions->setCurrentIndex(CycledTab(TabOptions->currentIndex(), TabOptions->count(), shift & 1));
}

bool DlgOptions::eventFilter(QObject *watched, QEvent *event) {
  const int shift = TabKeyShift(*event);
  if (shift >= 0 && (shift & 2)) {
    Form_KeyDown(9, shift);
    return true;
  }
  if (event->type() == QEvent::FocusOut) {
    if (watched == TxtWidth)
      TxtWidth_LostFocus();
    else if (watched == TxtHeight)
      TxtHeight_LostFocus();
  }
  return QDialog::eventFilter(watched, event);
}

bool DlgOptions::SaveOptions() {
  try {
    showGrid_ = ChkShowGrid->isChecked();
    alignToGrid_ = ChkAlignControlsToGrid->isChecked();
    gridX_ = Variant(TxtWidth->text()).toInteger();
    gridY_ = Variant(TxtHeight->text()).toInteger();
    if (CboUnits->currentIndex() < 0)
      raiseError(ErrorNumber::InvalidCall, objectName(), QStringLiteral("No ruler unit is chosen"));
    rulerUnits_ = std::int16_t(CboUnits->currentData().toInt());
    WriteFont(kSettingsRoot + kFieldFontKey, fieldFont_);
    WriteFont(kSettingsRoot + kLabelFontKey, labelFont_);
    return true;
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgCustomize.SaveCustomizations"));
    return false;
  }
}

void DlgOptions::CmdOK_Click() {
  try {
    SetBusyCursor();
    if (SaveOptions()) {
      status_ = true;
      QDialog::accept();
    }
    ResetCursor();
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgCustomize.SaveCustomizations"));
  }
}

void DlgOptions::CmdCancel_Click() { QDialog::reject(); }

void DlgOptions::reject() { CmdCancel_Click(); }

} // namespace kordel::addin
