#include "engine/designer/FormatBar.h"

#include "engine/designer/DesignDialogs.h"
#include "engine/designer/DesignProperties.h"
#include "engine/designer/DesignerDocument.h"
#include "engine/designer/DesignerText.h"
#include "engine/designer/FormatIcons.h"
#include "engine/model/Font.h"

#include "core/Error.h"

#include <QComboBox>
#include <QFontComboBox>
#include <QLineEdit>
#include <QRegularExpression>
#include <QToolTip>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("FormatBar");
constexpr double kMaxFontSize = 2048;

// The property of that name that controls have.
const DesignProperty &controlProperty(const char *name) {
  for (const DesignProperty &property : designProperties())
    if (property.name == QLatin1String(name) && (property.appliesTo & DesignKind::AnyControl))
      return property;
  raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("Controls have no property %1").arg(name));
}

QFont fontOf(const Variant &value) {
  const auto font = objectAs<FontObject>(value);
  return font ? font->font() : FontObject::defaultFont();
}

// The values of the property the targets that have it hold.
std::vector<Variant> valuesOf(const std::vector<ObjectRef> &targets, const DesignProperty &property) {
  std::vector<Variant> values;
  for (const ObjectRef &target : targets)
    if (property.appliesToObject(*target))
      values.push_back(property.read(*target));
  return values;
}

// The value all share; nothing when they differ or there are none.
template <class T, class Of> std::optional<T> sharedValue(const std::vector<Variant> &values, Of of) {
  std::optional<T> shared;
  for (const Variant &value : values) {
    const T each = of(value);
    if (shared && *shared != each)
      return std::nullopt;
    shared = each;
  }
  return shared;
}

} // namespace

FormatBar::FormatBar(DesignerDocument &document, QWidget *parent)
    : QToolBar(designerText("Format"), parent), applier_(document) {
  setObjectName(QStringLiteral("ddTBFormat"));

  fontName_ = new QFontComboBox(this);
  fontName_->setObjectName(QStringLiteral("CboFontName"));
  fontName_->setToolTip(designerText("Font"));
  fontName_->setMaximumWidth(190);
  addWidget(fontName_);
  connect(fontName_, &QComboBox::textActivated, this, [this](const QString &family) { setFontName(family); });

  fontSize_ = new QComboBox(this);
  fontSize_->setObjectName(QStringLiteral("CboFontSize"));
  fontSize_->setToolTip(designerText("Font size in points"));
  fontSize_->setEditable(true);
  fontSize_->setInsertPolicy(QComboBox::NoInsert);
  for (int size : {6, 7, 8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 28, 32, 36, 48, 72})
    fontSize_->addItem(QString::number(size));
  fontSize_->setMinimumContentsLength(4);
  addWidget(fontSize_);
  connect(fontSize_, &QComboBox::textActivated, this, [this](const QString &size) { setFontSize(size); });
  connect(fontSize_->lineEdit(), &QLineEdit::returnPressed, this,
          [this] { setFontSize(fontSize_->lineEdit()->text()); });

  addSeparator();
  bold_ = addToggle("CmdBold", designerText("Bold"), letterIcon(u'B', true, false),
                    [this](bool on) { return setBold(on); });
  italic_ = addToggle("CmdItalic", designerText("Italic"), letterIcon(u'I', false, true),
                      [this](bool on) { return setItalic(on); });
  addSeparator();
  // In the order of the bar; the index is the controls' Alignment.
  alignments_[0] =
      addToggle("CmdAlignLeft", designerText("Align Left"), alignmentIcon(0), [this](bool) { return setAlignment(0); });
  alignments_[2] = addToggle("CmdAlignCenter", designerText("Align Center"), alignmentIcon(2),
                             [this](bool) { return setAlignment(2); });
  alignments_[1] = addToggle("CmdAlignRight", designerText("Align Right"), alignmentIcon(1),
                             [this](bool) { return setAlignment(1); });
  addSeparator();
  foreColor_ = addAction(foreColorIcon(QColor()), designerText("Fore Color"));
  foreColor_->setObjectName(QStringLiteral("CmdForeColor"));
  connect(foreColor_, &QAction::triggered, this, [this] { chooseForeColor(); });
  backColor_ = addAction(backColorIcon(QColor()), designerText("Back Color"));
  backColor_->setObjectName(QStringLiteral("CmdBackColor"));
  connect(backColor_, &QAction::triggered, this, [this] { chooseBackColor(); });

  connect(&document, &DesignerDocument::selectionChanged, this, [this] { refresh(); });
  connect(&document, &DesignerDocument::layoutChanged, this, [this] { refresh(); });
  refresh();
}

FormatBar::~FormatBar() = default;

QAction *FormatBar::addToggle(const char *name, const QString &text, const QIcon &icon,
                              std::function<bool(bool)> handler) {
  QAction *action = addAction(icon, text);
  action->setObjectName(QLatin1String(name));
  action->setCheckable(true);
  connect(action, &QAction::triggered, this, [handler = std::move(handler)](bool checked) { handler(checked); });
  return action;
}

// ---- Handlers ----

bool FormatBar::attempt(const std::function<bool()> &change) {
  bool changed = false;
  try {
    problem_.clear();
    changed = change();
  } catch (...) {
    problem_ = pendingError().description();
    QToolTip::showText(mapToGlobal(rect().bottomLeft()), problem_, this);
  }
  // Also after a change that changed nothing: the buttons go back to what
  // the controls have.
  refresh();
  return changed;
}

bool FormatBar::changeFont(const QString &label, const std::function<void(QFont &)> &change) {
  return attempt([&] {
    const auto value = [&](const Variant &now) {
      QFont font = fontOf(now);
      change(font);
      return Variant(ObjectRef(std::make_shared<FontObject>(font)));
    };
    return applier_.apply(label, {{&controlProperty("Font"), value}}) == PropertyApplier::Outcome::Changed;
  });
}

bool FormatBar::setFontName(const QString &family) {
  const QString name = family.trimmed();
  if (name.isEmpty())
    return attempt(
        []() -> bool { raiseError(ErrorNumber::InvalidCall, kSource, designerText("A font needs a name")); });
  return changeFont(designerText("Font"), [&](QFont &font) { font.setFamily(name); });
}

bool FormatBar::setFontSize(const QString &points) {
  static const QRegularExpression pattern(QStringLiteral(R"(^\s*(\d+(?:[.,]\d*)?|[.,]\d+)\s*(?:pt)?\s*$)"),
                                          QRegularExpression::CaseInsensitiveOption);
  const auto match = pattern.match(points);
  const double size = match.hasMatch() ? match.captured(1).replace(u',', u'.').toDouble() : 0;
  if (size <= 0 || size > kMaxFontSize)
    return attempt([&]() -> bool {
      raiseError(ErrorNumber::InvalidCall, kSource,
                 designerText("\"%1\" is no font size: type a number of points above 0 and at most %2")
                     .arg(points.trimmed())
                     .arg(kMaxFontSize));
    });
  return changeFont(designerText("Font Size"), [size](QFont &font) { font.setPointSizeF(size); });
}

bool FormatBar::setBold(bool bold) {
  return changeFont(bold ? designerText("Bold") : designerText("Not Bold"),
                    [bold](QFont &font) { font.setBold(bold); });
}

bool FormatBar::setItalic(bool italic) {
  return changeFont(italic ? designerText("Italic") : designerText("Not Italic"),
                    [italic](QFont &font) { font.setItalic(italic); });
}

bool FormatBar::setAlignment(int alignment) {
  return attempt([&] {
    if (alignment < 0 || alignment > 2)
      raiseError(ErrorNumber::InvalidCall, kSource,
                 designerText("Alignment is 0 left, 1 right or 2 center, not %1").arg(alignment));
    return applier_.apply(controlProperty("Alignment"), Variant(alignment)) == PropertyApplier::Outcome::Changed;
  });
}

bool FormatBar::setForeColor(const QColor &color) {
  return attempt([&] {
    return applier_.apply(controlProperty("ForeColor"), Variant(colorToVb(color))) == PropertyApplier::Outcome::Changed;
  });
}

bool FormatBar::setBackColor(const QColor &color) {
  return attempt([&] {
    const Variant back(colorToVb(color));
    const Variant filled(1);
    return applier_.apply(designerText("Back Color"),
                          {{&controlProperty("BackColor"), [&](const Variant &) { return back; }},
                           {&controlProperty("BackStyle"), [&](const Variant &) { return filled; }}}) ==
           PropertyApplier::Outcome::Changed;
  });
}

bool FormatBar::chooseForeColor() {
  std::optional<QColor> chosen;
  attempt([&] {
    const auto shared = sharedValue<int>(valuesOf(applier_.targets(), controlProperty("ForeColor")),
                                         [](const Variant &v) { return int(v.toLong()); });
    chosen = askColor(colorFromVb(shared.value_or(0)), foreColor_->text());
    return false;
  });
  return chosen && setForeColor(*chosen);
}

bool FormatBar::chooseBackColor() {
  std::optional<QColor> chosen;
  attempt([&] {
    const auto shared = sharedValue<int>(valuesOf(applier_.targets(), controlProperty("BackColor")),
                                         [](const Variant &v) { return int(v.toLong()); });
    chosen = askColor(colorFromVb(shared.value_or(0xffffff)), backColor_->text());
    return false;
  });
  return chosen && setBackColor(*chosen);
}

// ---- What the bar shows ----

void FormatBar::refresh() {
  try {
    setEnabled(true);
    // Only controls: a selected section has a back colour, but the bar is
    // for what is written in the sections.
    const bool controls = designKindOf(*applier_.targets().front()) & DesignKind::AnyControl;
    const std::vector<ObjectRef> targets = controls ? applier_.targets() : std::vector<ObjectRef>();
    const std::vector<Variant> fonts = valuesOf(targets, controlProperty("Font"));
    const auto family = sharedValue<QString>(fonts, [](const Variant &v) { return fontOf(v).family(); });
    const auto size = sharedValue<double>(fonts, [](const Variant &v) { return fontOf(v).pointSizeF(); });
    const bool hasFont = !fonts.empty();
    for (QWidget *widget : {static_cast<QWidget *>(fontName_), static_cast<QWidget *>(fontSize_)})
      widget->setEnabled(hasFont);
    {
      const QSignalBlocker blockName(fontName_);
      const QSignalBlocker blockSize(fontSize_);
      fontName_->setCurrentIndex(family ? fontName_->findText(*family) : -1);
      fontName_->setEditText(family.value_or(QString()));
      fontSize_->setCurrentIndex(-1);
      fontSize_->setEditText(size ? QString::number(*size) : QString());
    }
    bold_->setEnabled(hasFont);
    bold_->setChecked(hasFont && sharedValue<bool>(fonts, [](const Variant &v) { return fontOf(v).bold(); }) == true);
    italic_->setEnabled(hasFont);
    italic_->setChecked(hasFont &&
                        sharedValue<bool>(fonts, [](const Variant &v) { return fontOf(v).italic(); }) == true);

    const std::vector<Variant> alignments = valuesOf(targets, controlProperty("Alignment"));
    const auto alignment = sharedValue<int>(alignments, [](const Variant &v) { return int(v.toLong()); });
    for (int i = 0; i < 3; ++i) {
      alignments_[i]->setEnabled(!alignments.empty());
      alignments_[i]->setChecked(alignment == i);
    }

    const auto colorOf = [](const Variant &v) { return int(v.toLong()); };
    const std::vector<Variant> fores = valuesOf(targets, controlProperty("ForeColor"));
    const auto fore = sharedValue<int>(fores, colorOf);
    foreColor_->setEnabled(!fores.empty());
    foreColor_->setIcon(foreColorIcon(fore ? colorFromVb(*fore) : QColor()));
    const std::vector<Variant> backs = valuesOf(targets, controlProperty("BackColor"));
    const auto back = sharedValue<int>(backs, colorOf);
    backColor_->setEnabled(!backs.empty());
    backColor_->setIcon(backColorIcon(back ? colorFromVb(*back) : QColor()));
  } catch (...) {
    problem_ = pendingError().description();
    setEnabled(false);
  }
}

} // namespace kordel::engine
