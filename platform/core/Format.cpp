#include "core/Format.h"

#include "core/Error.h"
#include "core/FormatParts.h"
#include "core/Object.h"
#include "core/VbDate.h"
#include "core/VbNumber.h"

#include <algorithm>

namespace kordel {

namespace formatting {

bool readLiteral(const QString &format, qsizetype &i, QString &out) {
  const QChar c = format[i];
  if (c == u'\\') {
    if (i + 1 < format.size())
      out += format[++i];
    return true;
  }
  if (c == u'"') {
    const qsizetype close = format.indexOf(u'"', i + 1);
    const qsizetype end = close < 0 ? format.size() : close;
    out += format.mid(i + 1, end - i - 1);
    i = close < 0 ? format.size() - 1 : close;
    return true;
  }
  return false;
}

} // namespace formatting

namespace {

using namespace formatting;

// The sections of a format, split at semicolons outside literals.
QStringList splitSections(const QString &format) {
  QStringList sections;
  qsizetype start = 0;
  for (qsizetype i = 0; i < format.size(); ++i) {
    QString ignored;
    if (readLiteral(format, i, ignored))
      continue;
    if (format[i] == u';') {
      sections << format.mid(start, i - start);
      start = i + 1;
    }
  }
  sections << format.mid(start);
  return sections;
}

bool isStringPattern(const QString &section) {
  for (qsizetype i = 0; i < section.size(); ++i) {
    QString ignored;
    if (readLiteral(section, i, ignored))
      continue;
    const QChar c = section[i];
    if (c == u'@' || c == u'&' || c == u'<' || c == u'>')
      return true;
  }
  return false;
}

enum class FormatKind { Number, String, Date };

// Digit placeholders make a number format, else @ & < > a string format,
// else date tokens a date format. A format of literals only is treated as
// a number format, so that its sections still follow the sign.
FormatKind kindOf(const QStringList &sections) {
  auto any = [&](bool (*test)(const QString &)) { return std::any_of(sections.begin(), sections.end(), test); };
  if (any(isNumberPattern))
    return FormatKind::Number;
  if (any(isStringPattern))
    return FormatKind::String;
  if (any(isDatePattern))
    return FormatKind::Date;
  return FormatKind::Number;
}

bool isNamedNumberFormat(const QString &name) {
  static const char *const names[] = {"General Number", "Currency", "Fixed",      "Standard", "Percent",
                                      "Scientific",     "Yes/No",   "True/False", "On/Off"};
  return std::any_of(std::begin(names), std::end(names),
                     [&](const char *named) { return name.compare(QLatin1String(named), Qt::CaseInsensitive) == 0; });
}

// The number a number format shows; nothing for a string that is no
// number, which Format returns as it is.
std::optional<Variant> numberOperand(const Variant &value) {
  using VT = Variant::Type;
  switch (value.type()) {
  case VT::Empty: return Variant(0);
  case VT::Boolean: return Variant(std::int16_t(value.rawBool() ? -1 : 0));
  case VT::Date: return Variant(value.rawDate().serial);
  case VT::String: {
    if (auto number = parseVbNumber(value.rawString()))
      return Variant(*number);
    return std::nullopt;
  }
  case VT::Integer:
  case VT::Long:
  case VT::Byte:
  case VT::Single:
  case VT::Double:
  case VT::Currency: return value;
  default: raiseError(ErrorNumber::TypeMismatch, QStringLiteral("Format"));
  }
}

// The date a date format shows; nothing for a string that is neither a
// date nor a number.
std::optional<Date> dateOperand(const Variant &value) {
  if (value.type() == Variant::Type::Date)
    return value.rawDate();
  if (value.isString()) {
    if (auto date = parseVbDate(value.rawString()))
      return date;
  }
  const auto number = numberOperand(value);
  if (!number)
    return std::nullopt;
  const double serial = number->toDouble();
  checkDateRange(serial);
  return Date{serial};
}

// @ shows a character or a blank, & a character or nothing; they fill from
// the right unless ! asks for the left. < and > change the case of all.
QString formatString(QString text, const QString &section) {
  struct Piece {
    QChar placeholder; // '@' or '&'; null for a literal
    QString literal;
  };
  std::vector<Piece> pieces;
  bool fromLeft = false;
  int placeholders = 0;
  for (qsizetype i = 0; i < section.size(); ++i) {
    QString literal;
    if (readLiteral(section, i, literal)) {
      pieces.push_back({QChar(), literal});
      continue;
    }
    const QChar c = section[i];
    if (c == u'@' || c == u'&') {
      pieces.push_back({c, {}});
      ++placeholders;
    } else if (c == u'<') {
      text = text.toLower();
    } else if (c == u'>') {
      text = text.toUpper();
    } else if (c == u'!') {
      fromLeft = true;
    } else {
      pieces.push_back({QChar(), QString(c)});
    }
  }
  if (placeholders == 0) {
    QString out;
    for (const Piece &p : pieces)
      out += p.literal;
    return out + text;
  }
  std::vector<QString> filled(pieces.size());
  if (fromLeft) {
    qsizetype next = 0;
    std::size_t lastPlaceholder = 0;
    for (std::size_t i = 0; i < pieces.size(); ++i) {
      if (pieces[i].placeholder.isNull())
        continue;
      lastPlaceholder = i;
      if (next < text.size())
        filled[i] = text[next++];
      else if (pieces[i].placeholder == u'@')
        filled[i] = QStringLiteral(" ");
    }
    filled[lastPlaceholder] += text.mid(next); // what does not fit follows the last placeholder
  } else {
    qsizetype next = text.size();
    std::size_t firstPlaceholder = 0;
    for (std::size_t i = pieces.size(); i-- > 0;) {
      if (pieces[i].placeholder.isNull())
        continue;
      firstPlaceholder = i;
      if (next > 0)
        filled[i] = text[--next];
      else if (pieces[i].placeholder == u'@')
        filled[i] = QStringLiteral(" ");
    }
    filled[firstPlaceholder].prepend(text.left(next)); // what does not fit precedes the first placeholder
  }
  QString out;
  for (std::size_t i = 0; i < pieces.size(); ++i)
    out += pieces[i].placeholder.isNull() ? pieces[i].literal : filled[i];
  return out;
}

} // namespace

std::optional<Date> textDateInFormat(const Variant &value, const QString &format) {
  if (!value.isString() || format.isEmpty())
    return std::nullopt;
  const bool dateFormat =
      namedDatePattern(format) || (!isNamedNumberFormat(format) && kindOf(splitSections(format)) == FormatKind::Date);
  return dateFormat ? parseVbDate(value.rawString()) : std::nullopt;
}

QString formatValue(const Variant &input, const QString &format, int firstDayOfWeek, int firstWeekOfYear) {
  if (firstDayOfWeek < 0 || firstDayOfWeek > 7 || firstWeekOfYear < 0 || firstWeekOfYear > 3)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("Format"));
  const Variant value = plainValue(input);
  if (format.isEmpty())
    return value.isNull() ? QString() : value.toString();

  if (const auto pattern = namedDatePattern(format)) {
    if (value.isNull())
      return {};
    const auto date = dateOperand(value);
    return date ? formatDate(*date, *pattern, firstDayOfWeek, firstWeekOfYear) : value.toString();
  }
  if (isNamedNumberFormat(format)) {
    if (value.isNull())
      return {};
    const auto number = numberOperand(value);
    return number ? *formatNamedNumber(*number, format) : value.toString();
  }

  const QStringList sections = splitSections(format);
  switch (kindOf(sections)) {
  case FormatKind::String: {
    // A second section serves Null and the empty string; without it Null
    // shows nothing.
    const QString text = value.isNull() ? QString() : value.toString();
    if (text.isEmpty() && sections.size() > 1)
      return formatString(text, sections[1]);
    return value.isNull() ? QString() : formatString(text, sections[0]);
  }
  case FormatKind::Date: {
    if (value.isNull())
      return {};
    const auto date = dateOperand(value);
    return date ? formatDate(*date, sections[0], firstDayOfWeek, firstWeekOfYear) : value.toString();
  }
  case FormatKind::Number: break;
  }
  if (value.isNull())
    return formatNullNumber(sections);
  const auto number = numberOperand(value);
  return number ? formatNumber(*number, sections) : value.toString();
}

} // namespace kordel
