#include "nuvo/ValueCodec.h"

#include "nuvo/RowValues.h"

#include "hostapi/FieldTypes.h"

#include "core/Error.h"
#include "core/VbDate.h"

namespace kordel::nuvo {

namespace FT = hostapi::FieldType;
namespace DT = hostapi::DataType;

namespace {

const QString kSource = QStringLiteral("Nuvo.Record");

// Reads a run of digits at a position; -1 when one is missing.
int digits(const QString &text, qsizetype at, int count) {
  if (at + count > text.size())
    return -1;
  int value = 0;
  for (int i = 0; i < count; ++i) {
    const char16_t c = text[at + i].unicode();
    if (c < u'0' || c > u'9')
      return -1;
    value = value * 10 + int(c - u'0');
  }
  return value;
}

Variant parseStoredDate(const QString &text) {
  const int year = digits(text, 0, 4), month = digits(text, 5, 2), day = digits(text, 8, 2);
  if (year < 0 || month < 0 || day < 0)
    return Variant::null();
  const Date date = dateFromParts(year, month, day);
  if (text.size() < 19)
    return date;
  const int hour = digits(text, 11, 2), minute = digits(text, 14, 2), second = digits(text, 17, 2);
  if (hour < 0 || minute < 0 || second < 0)
    return date;
  return combineDateTime(date, timeFromParts(hour, minute, second));
}

Variant parseStoredTime(const QString &text) {
  const int hour = digits(text, 0, 2), minute = digits(text, 3, 2), second = digits(text, 6, 2);
  if (hour < 0 || minute < 0 || second < 0)
    return Variant::null();
  return timeFromParts(hour, minute, second);
}

QString twoDigits(int value) { return QString::number(value).rightJustified(2, u'0'); }

QString storedDate(Date value) {
  const QDate day = calendarDate(value);
  return QString::number(day.year()).rightJustified(4, u'0') + u'-' + twoDigits(day.month()) + u'-' +
         twoDigits(day.day());
}

QString storedTime(Date value) {
  const QTime time = timeOfDay(value);
  return twoDigits(time.hour()) + u':' + twoDigits(time.minute()) + u':' + twoDigits(time.second());
}

int optionKey(const FieldDef &field, const Variant &value) {
  if (value.isNumber() || (value.isString() && value.isNumeric())) {
    const int key = value.toLong();
    if (field.optionByKey(key))
      return key;
  } else if (value.isString()) {
    if (const OptionDef *option = field.optionByName(value.rawString()))
      return option->key;
  }
  raiseError(ErrorNumber::InvalidCall, kSource,
             QStringLiteral("The field '%1' has no option '%2'").arg(field.name, value.toText()));
}

} // namespace

Storage storageOf(const FieldDef &field) {
  switch (field.type) {
  case FT::Counter:
  case FT::Integer:
  case FT::RelationToOne:
  case FT::Choice: return Storage::Integer;
  case FT::YesNo: return Storage::Boolean;
  case FT::Decimal:
  case FT::Percent: return Storage::Real;
  case FT::Currency: return Storage::Scaled;
  case FT::Date: return Storage::Date;
  case FT::DateTime:
  case FT::CreatedTime:
  case FT::UpdatedTime: return Storage::DateTime;
  case FT::Time: return Storage::Time;
  case FT::Formula:
    switch (field.dataType) {
    case DT::Long: return Storage::Integer;
    case DT::Boolean: return Storage::Boolean;
    case DT::Double:
    case DT::Currency: return Storage::Real;
    case DT::Date: return Storage::DateTime;
    default: return Storage::Text;
    }
  default: return Storage::Text;
  }
}

void appendDecoded(RowValues &row, Storage storage, const QVariant &stored) {
  if (stored.isNull()) {
    row.appendNull();
    return;
  }
  switch (storage) {
  case Storage::Integer: row.appendLong(std::int32_t(stored.toLongLong())); return;
  case Storage::Boolean: row.appendBoolean(stored.toLongLong() != 0); return;
  case Storage::Real: row.appendDouble(stored.toDouble()); return;
  case Storage::Scaled: row.appendCurrency(Currency{stored.toLongLong()}); return;
  case Storage::Text:
    if (stored.userType() == QMetaType::QString)
      row.appendText(*static_cast<const QString *>(stored.constData()));
    else
      row.appendText(stored.toString());
    return;
  case Storage::Date:
  case Storage::DateTime: row.append(parseStoredDate(stored.toString())); return;
  case Storage::Time: row.append(parseStoredTime(stored.toString())); return;
  }
  row.appendNull();
}

QVariant encodeValue(const FieldDef &field, const Variant &value) {
  if (value.isEmpty() || value.isNull())
    return QVariant();
  if (field.type == FT::Choice)
    return optionKey(field, value);
  switch (storageOf(field)) {
  case Storage::Integer: return value.toLong();
  case Storage::Boolean: return value.toBool() ? 1 : 0;
  case Storage::Real: return value.toDouble();
  case Storage::Scaled: return qlonglong(value.toCurrency().scaled);
  case Storage::Date: return storedDate(value.toDate());
  case Storage::DateTime: {
    const Date date = value.toDate();
    return storedDate(date) + u' ' + storedTime(date);
  }
  case Storage::Time: return storedTime(value.toDate());
  case Storage::Text: {
    const QString text = value.toString();
    if (field.size > 0 && text.size() > field.size)
      raiseError(ErrorNumber::InvalidCall, kSource,
                 QStringLiteral("The field '%1' holds at most %2 characters").arg(field.name).arg(field.size));
    return text;
  }
  }
  return QVariant();
}

} // namespace kordel::nuvo
