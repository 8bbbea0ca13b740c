#include "engine/designer/PropertyValues.h"

#include "engine/designer/DesignProperties.h"
#include "engine/designer/DesignerText.h"
#include "engine/model/Font.h"

#include "core/Error.h"

#include <QColor>
#include <QImageReader>
#include <QRegularExpression>

#include <cmath>

namespace kordel::engine {

namespace {

constexpr double kTwipsPerInch = 1440;
constexpr double kTwipsPerPoint = 20;
const QString kSource = QStringLiteral("PropertyList");
const char *const kNoPicture = QT_TRANSLATE_NOOP("Designer", "(none)");

// Whether a typed word is the English word or its translation, without
// regard to case: what the list writes reads back in either language.
bool isWord(const QString &given, const char *english) {
  return given.compare(QLatin1String(english), Qt::CaseInsensitive) == 0 ||
         given.compare(designerText(english), Qt::CaseInsensitive) == 0;
}

[[noreturn]] void refuse(const QString &message) { raiseError(ErrorNumber::TypeMismatch, kSource, message); }

// A number with up to so many decimals and no trailing zeros.
QString shortNumber(double value, int decimals) {
  QString text = QString::number(value, 'f', decimals);
  while (text.endsWith(u'0'))
    text.chop(1);
  if (text.endsWith(u'.'))
    text.chop(1);
  return text == QLatin1String("-0") ? QStringLiteral("0") : text;
}

// A unit lengths are typed in, and the decimals that show a length in it
// to about a twip.
struct Unit {
  const char *name;
  double twips;
  int decimals;
};

constexpr Unit kUnits[] = {
    {"cm", kTwipsPerInch / 2.54, 2},
    {"mm", kTwipsPerInch / 25.4, 1},
    {"in", kTwipsPerInch, 3},
    {"inch", kTwipsPerInch, 3},
    {"inches", kTwipsPerInch, 3},
    {"\"", kTwipsPerInch, 3},
    {"pt", kTwipsPerPoint, 2},
    {"twip", 1, 0},
    {"twips", 1, 0},
};

const Unit &unitNamed(const char *name) {
  for (const Unit &unit : kUnits)
    if (qstrcmp(unit.name, name) == 0)
      return unit;
  return kUnits[0];
}

const Unit &shownUnit(const DesignProperty &property, int rulerUnits) {
  if (property.type == PropertyType::Points)
    return unitNamed("pt");
  return unitNamed(rulerUnits == RulerUnits::Centimetres ? "cm" : "in");
}

QString lengthText(double twips, const Unit &unit) {
  return shortNumber(twips / unit.twips, unit.decimals) + u' ' + QLatin1String(unit.name);
}

double lengthFromText(const DesignProperty &property, const QString &text, int rulerUnits) {
  static const QRegularExpression pattern(QStringLiteral(R"(^\s*([+-]?(?:\d+(?:[.,]\d*)?|[.,]\d+))\s*(\S*)\s*$)"));
  const Unit &shown = shownUnit(property, rulerUnits);
  const auto match = pattern.match(text);
  const Unit *unit = match.hasMatch() && match.capturedView(2).isEmpty() ? &shown : nullptr;
  if (match.hasMatch() && !unit)
    for (const Unit &each : kUnits)
      if (match.capturedView(2).compare(QLatin1String(each.name), Qt::CaseInsensitive) == 0)
        unit = &each;
  if (!unit)
    refuse(designerText("\"%1\" is not a length: type a number, such as %2, or one with cm, mm, in or pt")
               .arg(text.trimmed(), lengthText(1.5 * shown.twips, shown)));
  const double number = match.captured(1).replace(u',', u'.').toDouble();
  const double twips = std::round(number * unit->twips);
  if (twips < property.minimum)
    raiseError(ErrorNumber::InvalidCall, kSource,
               designerText("%1 cannot be less than %2").arg(property.name, lengthText(property.minimum, shown)));
  if (twips > property.maximum)
    raiseError(ErrorNumber::InvalidCall, kSource,
               designerText("%1 cannot be more than %2").arg(property.name, lengthText(property.maximum, shown)));
  return twips;
}

QString colorText(const Variant &value) { return colorFromVb(value.toLong()).name(); }

Variant colorFromText(const QString &text) {
  const QString given = text.trimmed();
  static const QRegularExpression vbHex(QStringLiteral("^&H([0-9A-Fa-f]{1,6})&?$"));
  if (const auto match = vbHex.match(given); match.hasMatch())
    return Variant(int(match.captured(1).toUInt(nullptr, 16)));
  bool isNumber = false;
  const int number = given.toInt(&isNumber);
  if (isNumber && number >= 0 && number <= 0xffffff)
    return Variant(number);
  const QColor color = QColor::fromString(given);
  if (!isNumber && color.isValid())
    return Variant(colorToVb(color));
  refuse(designerText("\"%1\" is not a colour: type #rrggbb, &HBBGGRR or a colour's name such as red").arg(given));
}

// The styles of a font as the list writes them.
const char *const kBold = QT_TRANSLATE_NOOP("Designer", "Bold");
const char *const kItalic = QT_TRANSLATE_NOOP("Designer", "Italic");
const char *const kUnderline = QT_TRANSLATE_NOOP("Designer", "Underline");
const char *const kStrikethrough = QT_TRANSLATE_NOOP("Designer", "Strikethrough");
const char *const kRegular = QT_TRANSLATE_NOOP("Designer", "Regular");

QString fontText(const QFont &font) {
  QStringList parts{font.family(), shortNumber(font.pointSizeF(), 2) + QStringLiteral(" pt")};
  if (font.bold())
    parts << designerText(kBold);
  if (font.italic())
    parts << designerText(kItalic);
  if (font.underline())
    parts << designerText(kUnderline);
  if (font.strikeOut())
    parts << designerText(kStrikethrough);
  return parts.join(QStringLiteral(", "));
}

// Only what the layout keeps of a font: its name, size and four styles.
Variant fontFromText(const QString &text) {
  const QStringList parts = text.split(u',');
  QFont font = FontObject::defaultFont();
  font.setFamily(parts.first().trimmed());
  if (font.family().isEmpty())
    refuse(designerText("\"%1\" is not a font: type its name, size and style, such as DejaVu Sans, 10 pt, Bold")
               .arg(text.trimmed()));
  static const QRegularExpression size(QStringLiteral(R"(^(\d+(?:[.,]\d*)?)\s*(?:pt)?$)"),
                                       QRegularExpression::CaseInsensitiveOption);
  for (qsizetype i = 1; i < parts.size(); ++i) {
    const QString part = parts[i].trimmed();
    if (const auto match = size.match(part); match.hasMatch()) {
      const double points = match.captured(1).replace(u',', u'.').toDouble();
      if (points <= 0 || points > 2048)
        raiseError(ErrorNumber::InvalidCall, kSource,
                   designerText("A font size is above 0 and at most 2048 points, not %1").arg(part));
      font.setPointSizeF(points);
    } else if (isWord(part, kBold)) {
      font.setBold(true);
    } else if (isWord(part, kItalic)) {
      font.setItalic(true);
    } else if (isWord(part, kUnderline)) {
      font.setUnderline(true);
    } else if (isWord(part, kStrikethrough)) {
      font.setStrikeOut(true);
    } else if (!isWord(part, kRegular)) {
      refuse(designerText("\"%1\" is no size or style of a font: type a size in points, Bold, Italic, Underline "
                          "or Strikethrough")
                 .arg(part));
    }
  }
  return Variant(ObjectRef(std::make_shared<FontObject>(font)));
}

QFont fontOf(const Variant &value) {
  const auto font = objectAs<FontObject>(value);
  return font ? font->font() : FontObject::defaultFont();
}

QImage imageOf(const Variant &value) {
  const auto image = objectAs<ImageValue>(value);
  return image ? image->image : QImage();
}

Variant pictureFromText(const QString &text) {
  const QString path = text.trimmed();
  if (path.isEmpty() || isWord(path, kNoPicture))
    return Variant(ObjectRef(std::make_shared<ImageValue>(QImage())));
  QImageReader reader(path);
  QImage image = reader.read();
  if (image.isNull())
    refuse(designerText("\"%1\" cannot be read as a picture: %2").arg(path, reader.errorString()));
  return Variant(ObjectRef(std::make_shared<ImageValue>(std::move(image))));
}

// The choice a value is: strings compared without case, numbers as numbers.
const PropertyChoice *choiceOf(const DesignProperty &property, const Variant &value) {
  for (const PropertyChoice &choice : property.choices) {
    if (choice.value.isString() ? value.toText().compare(choice.value.toText(), Qt::CaseInsensitive) == 0
                                : value.isNumeric() && value.toNumberOr(-1) == choice.value.toNumberOr(-2))
      return &choice;
  }
  return nullptr;
}

// A choice by its label, in English or as the list shows it.
Variant choiceFromText(const DesignProperty &property, const QString &text) {
  const QString given = text.trimmed();
  QStringList labels;
  for (const PropertyChoice &choice : property.choices) {
    const QString shown = designerText(choice.label);
    if (given.compare(shown, Qt::CaseInsensitive) == 0 || given.compare(choice.label, Qt::CaseInsensitive) == 0)
      return choice.value;
    labels << shown;
  }
  if (const PropertyChoice *choice = choiceOf(property, Variant(given)))
    return choice->value;
  refuse(designerText("\"%1\" is not one of %2").arg(given, labels.join(QStringLiteral(", "))));
}

const char *const kTrue = QT_TRANSLATE_NOOP("Designer", "True");
const char *const kFalse = QT_TRANSLATE_NOOP("Designer", "False");

Variant booleanFromText(const QString &text) {
  const QString given = text.trimmed();
  for (const char *yes : {kTrue, "Yes", "1", "-1"})
    if (isWord(given, yes))
      return Variant(true);
  for (const char *no : {kFalse, "No", "0"})
    if (isWord(given, no))
      return Variant(false);
  refuse(designerText("\"%1\" is neither %2 nor %3").arg(given, designerText(kTrue), designerText(kFalse)));
}

} // namespace

QString valueText(const DesignProperty &property, const Variant &value, int rulerUnits) {
  switch (property.type) {
  case PropertyType::Text:
  case PropertyType::MultiLineText:
  case PropertyType::OutputFormat: return value.toText();
  case PropertyType::Length:
  case PropertyType::Points: return lengthText(value.toNumberOr(0), shownUnit(property, rulerUnits));
  case PropertyType::Boolean: return designerText(value.toBool() ? kTrue : kFalse);
  case PropertyType::Color: return colorText(value);
  case PropertyType::Enumeration: {
    const PropertyChoice *choice = choiceOf(property, value);
    return choice ? designerText(choice->label) : value.toText();
  }
  case PropertyType::Font: return fontText(fontOf(value));
  case PropertyType::Picture: {
    const QImage image = imageOf(value);
    return image.isNull() ? designerText(kNoPicture)
                          : designerText("%1 × %2 pixels").arg(image.width()).arg(image.height());
  }
  }
  return value.toText();
}

Variant valueFromText(const DesignProperty &property, const QString &text, int rulerUnits) {
  switch (property.type) {
  case PropertyType::Text:
  case PropertyType::MultiLineText:
  case PropertyType::OutputFormat: return Variant(text);
  case PropertyType::Length:
  case PropertyType::Points: return Variant(lengthFromText(property, text, rulerUnits));
  case PropertyType::Boolean: return booleanFromText(text);
  case PropertyType::Color: return colorFromText(text);
  case PropertyType::Enumeration: return choiceFromText(property, text);
  case PropertyType::Font: return fontFromText(text);
  case PropertyType::Picture: return pictureFromText(text);
  }
  return Variant(text);
}

bool sameValue(const DesignProperty &property, const Variant &a, const Variant &b) {
  switch (property.type) {
  case PropertyType::Text:
  case PropertyType::MultiLineText:
  case PropertyType::OutputFormat: return a.toText() == b.toText();
  case PropertyType::Length:
  case PropertyType::Points: return a.toNumberOr(0) == b.toNumberOr(0);
  case PropertyType::Boolean: return a.toBool() == b.toBool();
  case PropertyType::Color: return a.toLong() == b.toLong();
  case PropertyType::Enumeration: {
    const PropertyChoice *first = choiceOf(property, a);
    return first ? first == choiceOf(property, b) : a.toText() == b.toText();
  }
  case PropertyType::Font: return fontOf(a) == fontOf(b);
  case PropertyType::Picture: return imageOf(a) == imageOf(b);
  }
  return false;
}

} // namespace kordel::engine
