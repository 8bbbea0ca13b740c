#pragma once

#include <QLocale>
#include <QString>

namespace kordel {

// The user's regional settings as VB reads them: separators, date and time
// patterns in VB's own notation (d, m, y, h, n, s, AM/PM) and the names of
// months and days. Conversions, CStr and Format read them from here.
struct RegionalSettings {
  QLocale locale = QLocale::c();
  QChar decimalSeparator = u'.';
  QChar groupSeparator = u',';
  QString shortDate = QStringLiteral("yyyy-mm-dd");
  QString longDate = QStringLiteral("dddd, mmmm d, yyyy");
  QString longTime = QStringLiteral("hh:nn:ss");
  QString shortTime = QStringLiteral("hh:nn");
  QString amDesignator = QStringLiteral("AM");
  QString pmDesignator = QStringLiteral("PM");
  QString currencySymbol = QStringLiteral("$");
  bool currencySymbolFirst = true;
  bool currencySpace = false;
  int currencyDigits = 2;

  // The settings of a locale. The C locale gives the ISO-like defaults above.
  static RegionalSettings fromLocale(const QLocale &locale);
};

// The settings in force; the system locale until setRegional is called.
const RegionalSettings &regional();
void setRegional(const RegionalSettings &settings);

// Turns a Qt date/time pattern ("yyyy-MM-dd HH:mm") into VB's notation
// ("yyyy-mm-dd hh:nn").
QString vbPatternFromQt(const QString &qtPattern);

} // namespace kordel
