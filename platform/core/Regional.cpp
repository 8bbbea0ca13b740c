#include "core/Regional.h"

#include <optional>

namespace kordel {

namespace {

std::optional<RegionalSettings> &current() {
  static std::optional<RegionalSettings> settings;
  return settings;
}

} // namespace

QString vbPatternFromQt(const QString &qtPattern) {
  QString out;
  bool inQuote = false;
  for (qsizetype i = 0; i < qtPattern.size(); ++i) {
    const QChar c = qtPattern[i];
    if (c == u'\'') {
      if (i + 1 < qtPattern.size() && qtPattern[i + 1] == u'\'') {
        out += QStringLiteral("\\'");
        ++i;
      } else {
        inQuote = !inQuote;
      }
      continue;
    }
    if (inQuote) {
      out += u'\\';
      out += c;
      continue;
    }
    switch (c.unicode()) {
    case u'M': out += u'm'; break;
    case u'm': out += u'n'; break;
    case u'H': out += u'h'; break;
    case u'z': break; // milliseconds have no VB form
    case u'A':
    case u'a':
      if (i + 1 < qtPattern.size() && (qtPattern[i + 1] == u'P' || qtPattern[i + 1] == u'p')) {
        out += QStringLiteral("AM/PM");
        ++i;
      }
      break;
    case u't': break; // time zones have no VB form
    default: out += c;
    }
  }
  return out.trimmed();
}

RegionalSettings RegionalSettings::fromLocale(const QLocale &locale) {
  RegionalSettings s;
  if (locale.language() == QLocale::C)
    return s;
  s.locale = locale;
  s.decimalSeparator = locale.decimalPoint().isEmpty() ? QChar(u'.') : locale.decimalPoint().front();
  s.groupSeparator = locale.groupSeparator().isEmpty() ? QChar(u',') : locale.groupSeparator().front();
  s.shortDate = vbPatternFromQt(locale.dateFormat(QLocale::ShortFormat));
  // Qt's short date often has a two-digit year; VB's CStr shows four.
  if (!s.shortDate.contains(QStringLiteral("yyyy")))
    s.shortDate.replace(QStringLiteral("yy"), QStringLiteral("yyyy"));
  s.longDate = vbPatternFromQt(locale.dateFormat(QLocale::LongFormat));
  s.longTime = vbPatternFromQt(locale.timeFormat(QLocale::LongFormat));
  s.shortTime = vbPatternFromQt(locale.timeFormat(QLocale::ShortFormat));
  if (!s.longTime.contains(u's'))
    s.longTime += QStringLiteral(":ss");
  if (!locale.amText().isEmpty())
    s.amDesignator = locale.amText();
  if (!locale.pmText().isEmpty())
    s.pmDesignator = locale.pmText();
  s.currencySymbol = locale.currencySymbol(QLocale::CurrencySymbol);
  const QString sample = locale.toCurrencyString(1.0);
  s.currencySymbolFirst = sample.startsWith(s.currencySymbol);
  s.currencySpace = s.currencySymbolFirst ? sample.mid(s.currencySymbol.size(), 1).trimmed().isEmpty()
                                          : sample.chopped(s.currencySymbol.size()).endsWith(u' ') ||
                                                sample.chopped(s.currencySymbol.size()).endsWith(QChar(0xA0));
  return s;
}

const RegionalSettings &regional() {
  auto &settings = current();
  if (!settings)
    settings = RegionalSettings::fromLocale(QLocale::system());
  return *settings;
}

void setRegional(const RegionalSettings &settings) { current() = settings; }

} // namespace kordel
