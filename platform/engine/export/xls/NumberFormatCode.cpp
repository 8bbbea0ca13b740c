#include "engine/export/xls/NumberFormatCode.h"

#include "core/Regional.h"

#include <QRegularExpression>

#include <optional>

namespace kordel::engine::xls {

namespace {

bool isNamed(const QString &format, const char *name) {
  return format.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
}

QString quoted(const QString &text) {
  QString escaped = text;
  escaped.replace(QLatin1Char('"'), QLatin1String("\\\""));
  return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QString currencyCode() {
  const RegionalSettings &reg = regional();
  QString digits = QStringLiteral("#,##0");
  if (reg.currencyDigits > 0)
    digits += QLatin1Char('.') + QString(reg.currencyDigits, QLatin1Char('0'));
  const QString symbol = quoted(reg.currencySymbol);
  const QString space = reg.currencySpace ? QStringLiteral(" ") : QString();
  return reg.currencySymbolFirst ? symbol + space + digits : digits + space + symbol;
}

// Copies a quoted literal or an escaped character at i; false when there
// is none.
bool copyLiteral(const QString &format, qsizetype &i, QString &out) {
  if (format[i] == QLatin1Char('"')) {
    const qsizetype end = format.indexOf(QLatin1Char('"'), i + 1);
    const qsizetype stop = end < 0 ? format.size() : end + 1;
    out += format.mid(i, stop - i);
    if (end < 0)
      out += QLatin1Char('"');
    i = stop;
    return true;
  }
  if (format[i] == QLatin1Char('\\') && i + 1 < format.size()) {
    out += format.mid(i, 2);
    i += 2;
    return true;
  }
  return false;
}

// A custom number pattern with everything but placeholders, separators
// and signs quoted; nothing for a text pattern.
std::optional<QString> numberCode(const QString &format) {
  static const QString kept = QStringLiteral("0#.,%Ee+-()$ :/;");
  QString out;
  QString literal;
  const auto flush = [&] {
    if (!literal.isEmpty())
      out += quoted(literal);
    literal.clear();
  };
  int sections = 1;
  for (qsizetype i = 0; i < format.size();) {
    const QChar c = format[i];
    if (c == QLatin1Char('@') || c == QLatin1Char('&') || c == QLatin1Char('<') || c == QLatin1Char('>') ||
        c == QLatin1Char('!'))
      return std::nullopt;
    if (c == QLatin1Char(';') && ++sections > 3)
      break; // the fourth section is the one for Null, which a cell never shows
    if (c == QLatin1Char('"') || c == QLatin1Char('\\')) {
      flush();
      copyLiteral(format, i, out);
      continue;
    }
    if (kept.contains(c)) {
      flush();
      out += c;
    } else {
      literal += c;
    }
    ++i;
  }
  flush();
  return out;
}

QString dateCode(const QString &format, int depth = 0);

// Copies an AM/PM marker at i; false when there is none.
bool copyAmPm(const QString &format, qsizetype &i, QString &out) {
  for (const char *ampm : {"AM/PM", "A/P", "AMPM"}) {
    const QLatin1String marker(ampm);
    if (format.mid(i, marker.size()).compare(marker, Qt::CaseInsensitive) != 0)
      continue;
    out += marker == QLatin1String("AMPM") ? QStringLiteral("AM/PM") : format.mid(i, marker.size());
    i += marker.size();
    return true;
  }
  return false;
}

// A date pattern's token (a run of one letter) in the spreadsheet's
// terms; nothing for one it lacks.
std::optional<QString> dateToken(QChar letter, qsizetype count, int depth) {
  switch (letter.toLower().unicode()) {
  case 'd':
    if (count <= 4)
      return QString(count, QLatin1Char('d'));
    if (depth > 0)
      return std::nullopt;
    return dateCode(count == 5 ? regional().shortDate : regional().longDate, depth + 1);
  case 'm': return QString(std::min<qsizetype>(count, 5), QLatin1Char('m'));
  case 'n': return QString(std::min<qsizetype>(count, 2), QLatin1Char('m'));
  case 'y':
    if (count == 2 || count == 4)
      return QString(count, QLatin1Char('y'));
    return std::nullopt; // a day of the year
  case 'h': return QString(std::min<qsizetype>(count, 2), QLatin1Char('h'));
  case 's': return QString(std::min<qsizetype>(count, 2), QLatin1Char('s'));
  case 't':
    if (count == 5 && depth == 0)
      return dateCode(regional().longTime, depth + 1);
    return std::nullopt;
  case 'c':
    if (count == 1 && depth == 0)
      return dateCode(regional().shortDate, depth + 1) + QLatin1Char(' ') + dateCode(regional().longTime, depth + 1);
    return std::nullopt;
  default: return std::nullopt; // w, q and letters that are no token
  }
}

// Empty when the pattern uses a token the spreadsheet lacks.
QString dateCode(const QString &format, int depth) {
  QString out;
  for (qsizetype i = 0; i < format.size();) {
    if (copyLiteral(format, i, out) || copyAmPm(format, i, out))
      continue;
    const QChar c = format[i];
    if (c.isLetter()) {
      qsizetype count = 1;
      while (i + count < format.size() && format[i + count].toLower() == c.toLower())
        ++count;
      const std::optional<QString> token = dateToken(c, count, depth);
      if (!token || token->isEmpty())
        return {};
      out += *token;
      i += count;
    } else {
      if (c == QLatin1Char('/') || c == QLatin1Char(':') || c == QLatin1Char(' ') || c == QLatin1Char('-') ||
          c == QLatin1Char('.') || c == QLatin1Char(','))
        out += c;
      else
        out += quoted(QString(c));
      ++i;
    }
  }
  return out;
}

std::optional<QString> namedDateCode(const QString &format) {
  const RegionalSettings &reg = regional();
  if (isNamed(format, "General Date"))
    return dateCode(QStringLiteral("c"));
  if (isNamed(format, "Long Date"))
    return dateCode(reg.longDate);
  if (isNamed(format, "Medium Date"))
    return QStringLiteral("dd-mmm-yy");
  if (isNamed(format, "Short Date"))
    return dateCode(reg.shortDate);
  if (isNamed(format, "Long Time"))
    return dateCode(reg.longTime);
  if (isNamed(format, "Medium Time"))
    return QStringLiteral("hh:mm AM/PM");
  if (isNamed(format, "Short Time"))
    return QStringLiteral("hh:mm");
  return std::nullopt;
}

std::optional<QString> namedNumberCode(const QString &format) {
  if (isNamed(format, "General Number"))
    return QString();
  if (isNamed(format, "Currency"))
    return currencyCode();
  if (isNamed(format, "Fixed"))
    return QStringLiteral("0.00");
  if (isNamed(format, "Standard"))
    return QStringLiteral("#,##0.00");
  if (isNamed(format, "Percent"))
    return QStringLiteral("0.00%");
  if (isNamed(format, "Scientific"))
    return QStringLiteral("0.00E+00");
  return std::nullopt;
}

bool wordsOnly(const QString &format) {
  return isNamed(format, "Yes/No") || isNamed(format, "True/False") || isNamed(format, "On/Off");
}

} // namespace

CellFormatChoice cellFormatFor(ValueKind kind, const QString &outputFormat) {
  const QString format = outputFormat.trimmed();
  switch (kind) {
  case ValueKind::Text: return {true, {}};
  case ValueKind::Boolean: return {!format.isEmpty(), {}};
  case ValueKind::Date: {
    if (format.isEmpty())
      return {false, {}};
    if (wordsOnly(format))
      return {true, {}};
    if (const auto named = namedDateCode(format))
      return {false, *named};
    if (const auto named = namedNumberCode(format))
      return {false, named->isEmpty() ? QStringLiteral("0.########") : *named}; // its day count
    if (!format.contains(QRegularExpression(QStringLiteral("[dmnyhsctwqDMNYHSCTWQ]")))) {
      const std::optional<QString> code = numberCode(format);
      return code ? CellFormatChoice{false, *code} : CellFormatChoice{true, {}};
    }
    return {false, dateCode(format)};
  }
  case ValueKind::Number:
  case ValueKind::Currency: {
    const QString fallback = kind == ValueKind::Currency ? currencyCode() : QString();
    if (format.isEmpty())
      return {false, fallback};
    if (wordsOnly(format))
      return {true, {}};
    if (const auto named = namedNumberCode(format))
      return {false, *named};
    if (namedDateCode(format))
      return {true, {}}; // a number shown as a date: the printed date is what the user reads
    const std::optional<QString> code = numberCode(format);
    if (!code)
      return {true, {}};
    return {false, *code};
  }
  }
  return {true, {}};
}

} // namespace kordel::engine::xls
