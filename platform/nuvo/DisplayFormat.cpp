#include "nuvo/DisplayFormat.h"

#include "hostapi/FieldTypes.h"

#include "core/VbDate.h"

#include <cmath>

namespace kordel::nuvo {

namespace FT = hostapi::FieldType;

namespace {

struct LanguageWords {
  const char *language;
  const char *yes;
  const char *no;
  const char *percent;
};

// The engine's own words; a language not listed reads as English.
constexpr LanguageWords kWords[] = {
    {"en", "Yes", "No", "%1%"},
    {"sv", "Ja", "Nej", "%1\u00a0%"},
    {"de", "Ja", "Nein", "%1\u00a0%"},
    {"cs", "Ano", "Ne", "%1\u00a0%"},
};

const LanguageWords &wordsOf(const QString &language) {
  for (const LanguageWords &words : kWords)
    if (language == QLatin1String(words.language))
      return words;
  return kWords[0];
}

// The locale's short date with a four-digit year.
QString shortDatePattern(const QLocale &locale) {
  QString pattern = locale.dateFormat(QLocale::ShortFormat);
  if (!pattern.contains(QLatin1String("yyyy")))
    pattern.replace(QLatin1String("yy"), QLatin1String("yyyy"));
  return pattern;
}

} // namespace

DisplayFormat::DisplayFormat(const QString &language)
    : language_(language), locale_(language.isEmpty() ? QStringLiteral("en") : language),
      datePattern_(shortDatePattern(locale_)), timePattern_(locale_.timeFormat(QLocale::ShortFormat)) {
  const LanguageWords &words = wordsOf(language);
  yes_ = QString::fromUtf8(words.yes);
  no_ = QString::fromUtf8(words.no);
  percentPattern_ = QString::fromUtf8(words.percent);
}

QString DisplayFormat::integer(qint64 value, bool grouped) const {
  return grouped ? locale_.toString(value) : QString::number(value);
}

QString DisplayFormat::decimal(double value, int decimals) const { return locale_.toString(value, 'f', decimals); }

QString DisplayFormat::percent(double fraction) const {
  const double hundred = fraction * 100.0;
  // Whole percents show no decimals, others at most two.
  const double rounded = std::round(hundred * 100.0) / 100.0;
  QString number = locale_.toString(rounded, 'f', rounded == std::round(rounded) ? 0 : 2);
  return percentPattern_.arg(number);
}

QString DisplayFormat::date(Date value) const { return locale_.toString(calendarDate(value), datePattern_); }

QString DisplayFormat::time(Date value) const { return locale_.toString(timeOfDay(value), timePattern_); }

QString DisplayFormat::dateTime(Date value) const { return date(value) + u' ' + time(value); }

QString DisplayFormat::yesNo(bool value) const { return value ? yes_ : no_; }

QString DisplayFormat::valueText(const Variant &value) const {
  using VT = Variant::Type;
  switch (value.type()) {
  case VT::Empty:
  case VT::Null: return {};
  case VT::Integer:
  case VT::Long:
  case VT::Byte: return integer(value.toLong(), true);
  case VT::Single:
  case VT::Double: return decimal(value.toDouble(), 2);
  case VT::Currency: return decimal(value.rawCurrency().toDouble(), 2);
  case VT::Date: {
    const Date date = value.rawDate();
    return date.serial == std::floor(date.serial) ? this->date(date) : dateTime(date);
  }
  case VT::Boolean: return yesNo(value.rawBool());
  default: return value.toText();
  }
}

QString DisplayFormat::text(const FieldDef &field, const Variant &value) const {
  if (value.isNull() || value.isEmpty())
    return {};
  switch (field.type) {
  case FT::Counter: return integer(value.toLong(), false);
  case FT::Integer: return integer(value.toLong(), true);
  case FT::Decimal: return decimal(value.toDouble(), 2);
  case FT::Currency: return decimal(value.toCurrency().toDouble(), 2);
  case FT::Percent: return percent(value.toDouble());
  case FT::Date: return date(value.toDate());
  case FT::DateTime:
  case FT::CreatedTime:
  case FT::UpdatedTime: return dateTime(value.toDate());
  case FT::Time: return time(value.toDate());
  case FT::YesNo: return yesNo(value.toBool());
  case FT::Choice: {
    const OptionDef *option = field.optionByKey(value.toLong());
    return option ? option->texts.get(language_) : value.toText();
  }
  case FT::Formula: return valueText(value);
  default: return value.toText();
  }
}

} // namespace kordel::nuvo
