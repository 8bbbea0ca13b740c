#include "dialogs/MarginBox.h"

#include "common/Globals.h"
#include "common/Units.h"
#include "core/Format.h"
#include "dialogs/DialogParts.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyle>
#include <QTimer>
#include <QToolButton>

#include <optional>

namespace kordel::addin {

namespace {

constexpr float kStepCentimetres = 0.1f;

QString unitText() { return GetMessage(QStringLiteral("MarginBox.Cm")); }

// The number of a text as the box shows it, unit and blanks left out,
// read under the regional settings; nothing for a text that is none.
std::optional<float> readCentimetres(QString text) {
  text = text.trimmed();
  const QString unit = unitText();
  if (!unit.isEmpty())
    text.remove(unit);
  const Variant number(text.trimmed());
  if (text.trimmed().isEmpty() || !number.isNumeric())
    return std::nullopt;
  try {
    return number.toSingle();
  } catch (const Error &) {
    return std::nullopt; // beyond single precision: no number either
  }
}

QToolButton *arrowButton(Qt::ArrowType arrow, QWidget *parent) {
  auto *button = new QToolButton(parent);
  button->setArrowType(arrow);
  button->setAutoRepeat(true);
  // The keys step the value from the text box; the arrows are for the mouse.
  button->setFocusPolicy(Qt::NoFocus);
  return button;
}

} // namespace

MarginBox::MarginBox(QWidget *parent) : QWidget(parent) {
  PicBox = new QWidget(this);
  PicBox->setObjectName(QStringLiteral("PicBox"));
  TbValue = new QLineEdit(PicBox);
  TbValue->setObjectName(QStringLiteral("TbValue"));
  TbValue->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  udScroll = new QWidget(PicBox);
  udScroll->setObjectName(QStringLiteral("udScroll"));
  up_ = arrowButton(Qt::UpArrow, udScroll);
  down_ = arrowButton(Qt::DownArrow, udScroll);
  setFocusProxy(TbValue);
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  TbValue->installEventFilter(this);
  connect(up_, &QToolButton::clicked, this,
          Guarded(QStringLiteral("MarginBox.udScroll_UpClick"), [this] { udScroll_UpClick(); }));
  connect(down_, &QToolButton::clicked, this,
          Guarded(QStringLiteral("MarginBox.udScroll_DownClick"), [this] { udScroll_DownClick(); }));
}

void MarginBox::SetValue(std::int32_t twips) {
  // Two decimals first, then one, or none for whole centimetres.
  const float rounded = Variant(formatValue(Variant(TwipsToCentimeters(twips)), QStringLiteral("#,0.00"))).toSingle();
  const bool whole = float(Variant(rounded).toInteger()) == rounded;
  const QString number = formatValue(Variant(rounded), whole ? QStringLiteral("#,0") : QStringLiteral("#,0.0"));
  TbValue->setText(number + u' ' + unitText());
}

std::int32_t MarginBox::GetValue() const {
  const std::optional<float> centimetres = readCentimetres(TbValue->text());
  if (!centimetres)
    return 0;
  try {
    return CentimetersToTwips(*centimetres);
  } catch (const Error &) {
    return 0; // a length beyond any twips reads as no length
  }
}

bool MarginBox::Validate() const {
  const std::optional<float> centimetres = readCentimetres(TbValue->text());
  return centimetres && *centimetres > 0.0f;
}

void MarginBox::TbValue_LostFocus() {
  SetValue(GetValue());
  emit Change(GetValue());
}

void MarginBox::Step(bool up) {
  float centimetres = TwipsToCentimeters(GetValue());
  if (up)
    centimetres += kStepCentimetres;
  else if (centimetres != 0.0f)
    centimetres -= kStepCentimetres;
  SetValue(CentimetersToTwips(centimetres));
  emit Change(GetValue());
}

bool MarginBox::eventFilter(QObject *watched, QEvent *event) {
  if (watched != TbValue)
    return QWidget::eventFilter(watched, event);
  try {
    switch (event->type()) {
    case QEvent::KeyPress: {
      const int key = static_cast<QKeyEvent *>(event)->key();
      if (key == Qt::Key_Up || key == Qt::Key_Down) {
        Step(key == Qt::Key_Up);
        return true;
      }
      break;
    }
    case QEvent::FocusIn:
      // After the line edit's own handling, which a click would otherwise
      // end with a bare cursor.
      QTimer::singleShot(0, TbValue, &QLineEdit::selectAll);
      break;
    case QEvent::FocusOut:
      // Another window taking the focus leaves the text as it is.
      if (static_cast<QFocusEvent *>(event)->reason() != Qt::ActiveWindowFocusReason &&
          static_cast<QFocusEvent *>(event)->reason() != Qt::PopupFocusReason)
        TbValue_LostFocus();
      break;
    default: break;
    }
  } catch (...) {
    ErrorMessage(QStringLiteral("MarginBox.TbValue"));
  }
  return QWidget::eventFilter(watched, event);
}

int MarginBox::spinWidth() const { return style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this) + 2; }

QSize MarginBox::sizeHint() const {
  const QSize text = TbValue->sizeHint();
  return {text.width() + spinWidth(), text.height()};
}

QSize MarginBox::minimumSizeHint() const {
  const QSize text = TbValue->minimumSizeHint();
  return {text.width() + spinWidth(), text.height()};
}

void MarginBox::resizeEvent(QResizeEvent *event) {
  QWidget::resizeEvent(event);
  if (width() <= 0 || height() <= 0)
    return;
  PicBox->setGeometry(rect());
  const int spin = spinWidth();
  TbValue->setGeometry(0, 0, std::max(0, width() - spin), height());
  udScroll->setGeometry(width() - spin, 0, spin, height());
  const int half = height() / 2;
  up_->setGeometry(0, 0, spin, half);
  down_->setGeometry(0, half, spin, height() - half);
}

} // namespace kordel::addin
