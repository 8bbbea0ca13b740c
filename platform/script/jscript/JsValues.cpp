// Values crossing between the host and scripts.
//
//   Variant                       script value
//   Empty                    <->  undefined
//   Null                     <->  null (Nothing also becomes null)
//   Boolean                  <->  boolean
//   Integer, Long, Byte       ->  number  -> Long when whole and in range,
//   Single, Double, Currency  ->  number     else Double
//   Date                     <->  Date (local time, to the millisecond)
//   String                   <->  string
//   Array of one dimension   <->  Array (from index 0)
//   Array of more dimensions <->  VBArray (see BridgeScript.cpp)
//   ByteArray                <->  ArrayBuffer
//   Object                   <->  the object's proxy; a script object
//                                 (function, plain object) becomes a JsObject

#include "script/jscript/JsContext.h"

#include "core/VbDate.h"
#include "script/jscript/JsObject.h"
#include "script/jscript/ObjectBridge.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace kordel::script::js {

namespace {

// Arrays inside arrays deeper than this are refused rather than followed,
// which also ends a script array that contains itself.
constexpr int kMaxNesting = 64;
// VB's own limit on the dimensions of an array.
constexpr quint32 kMaxDimensions = 60;
constexpr qint64 kMillisecondsPerDay = 86400000;

QDateTime dateToQt(Date date) {
  const double whole = std::trunc(date.serial);
  qint64 milliseconds = std::llround(std::fabs(date.serial - whole) * double(kMillisecondsPerDay));
  QDate day = QDate(1899, 12, 30).addDays(qint64(whole));
  if (milliseconds >= kMillisecondsPerDay) {
    day = day.addDays(1);
    milliseconds -= kMillisecondsPerDay;
  }
  return QDateTime(day, QTime::fromMSecsSinceStartOfDay(int(milliseconds)));
}

Date dateFromScript(const QDateTime &moment) {
  if (!moment.isValid())
    raiseError(ErrorNumber::TypeMismatch, QStringLiteral("JScript"), QStringLiteral("The date is not valid"));
  const Date day = dateFromQt(moment.date());
  const Date time{double(moment.time().msecsSinceStartOfDay()) / double(kMillisecondsPerDay)};
  const Date date = combineDateTime(day, time);
  checkDateRange(date.serial);
  return date;
}

Variant numberToVariant(double number) {
  if (std::trunc(number) == number && number >= std::numeric_limits<std::int32_t>::min() &&
      number <= std::numeric_limits<std::int32_t>::max())
    return Variant(int(number));
  return Variant(number);
}

} // namespace

QJSValue JsContext::toJs(const Variant &value) {
  switch (value.type()) {
  case Variant::Type::Empty: return QJSValue();
  case Variant::Type::Null: return QJSValue(QJSValue::NullValue);
  case Variant::Type::Boolean: return QJSValue(value.rawBool());
  case Variant::Type::Integer: return QJSValue(int(value.rawInteger()));
  case Variant::Type::Long: return QJSValue(int(value.rawLong()));
  case Variant::Type::Byte: return QJSValue(int(value.rawByte()));
  case Variant::Type::Single: return QJSValue(double(value.rawSingle()));
  case Variant::Type::Double: return QJSValue(value.rawDouble());
  case Variant::Type::Currency: return QJSValue(value.rawCurrency().toDouble());
  case Variant::Type::Date: return qjs_->toScriptValue(dateToQt(value.rawDate()));
  case Variant::Type::String: return QJSValue(value.rawString());
  case Variant::Type::ByteArray: return qjs_->toScriptValue(value.rawBytes());
  case Variant::Type::Object: {
    const ObjectRef &object = value.rawObject();
    if (!object)
      return QJSValue(QJSValue::NullValue);
    if (const auto script = std::dynamic_pointer_cast<JsObject>(object); script && script->belongsTo(*this))
      return script->value();
    return proxyOf(object);
  }
  case Variant::Type::Array: {
    const VariantArray &array = value.array();
    QJSValue items = qjs_->newArray(quint32(array.size()));
    for (std::size_t i = 0; i < array.size(); ++i)
      items.setProperty(quint32(i), toJs(array.elements()[i]));
    if (array.dimensions() <= 1)
      return items;
    QJSValue bounds = qjs_->newArray(quint32(array.dimensions()));
    for (int d = 0; d < array.dimensions(); ++d) {
      QJSValue pair = qjs_->newArray(2);
      pair.setProperty(0, array.bounds()[std::size_t(d)].lower);
      pair.setProperty(1, array.bounds()[std::size_t(d)].upper);
      bounds.setProperty(quint32(d), pair);
    }
    return helpers_.makeVBArray.call({items, bounds});
  }
  }
  return QJSValue();
}

QJSValueList JsContext::toJsList(const Args &args) {
  QJSValueList list;
  list.reserve(qsizetype(args.size()));
  for (const Variant &value : args)
    list.append(toJs(value));
  return list;
}

Variant JsContext::toVariant(const QJSValue &value) { return toVariant(value, 0); }

Args JsContext::toArgs(const QJSValue &array) {
  Args args;
  const quint32 length = array.property(QStringLiteral("length")).toUInt();
  args.reserve(length);
  for (quint32 i = 0; i < length; ++i)
    args.push_back(toVariant(array.property(i), 0));
  return args;
}

Variant JsContext::toVariant(const QJSValue &value, int depth) {
  if (value.isUndefined())
    return Variant();
  if (value.isNull())
    return Variant::null();
  if (value.isBool())
    return Variant(value.toBool());
  if (value.isNumber())
    return numberToVariant(value.toNumber());
  if (value.isString())
    return Variant(value.toString());
  if (value.isDate())
    return Variant(dateFromScript(value.toDateTime()));
  if (depth > kMaxNesting)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("JScript"),
               QStringLiteral("Arrays nest too deeply to hand to the host"));
  if (value.isArray())
    return arrayToVariant(value, depth);
  if (value.isObject())
    return objectToVariant(value, depth);
  raiseError(ErrorNumber::TypeMismatch, QStringLiteral("JScript"),
             QStringLiteral("A symbol cannot be handed to the host"));
}

Variant JsContext::arrayToVariant(const QJSValue &array, int depth) {
  const quint32 length = array.property(QStringLiteral("length")).toUInt();
  if (qsizetype(length) > budget_.maxArrayElements)
    raiseError(ErrorNumber::OutOfMemory, QStringLiteral("JScript"),
               QStringLiteral("The array is larger than the host takes (%1 elements)").arg(length));
  std::vector<Variant> values;
  values.reserve(length);
  for (quint32 i = 0; i < length; ++i)
    values.push_back(toVariant(array.property(i), depth + 1));
  return Variant(VariantArray::fromValues(std::move(values)));
}

Variant JsContext::objectToVariant(const QJSValue &value, int depth) {
  if (const auto *bridge = qobject_cast<ObjectBridge *>(helpers_.bridgeOf.call({value}).toQObject()))
    return Variant(bridge->object());
  switch (ValueKind(helpers_.describe.call({value}).toInt())) {
  case ValueKind::VBArray: return vbArrayToVariant(helpers_.vbArrayParts.call({value}), depth);
  case ValueKind::Bytes: return Variant(qjs_->fromScriptValue<QByteArray>(value));
  case ValueKind::BoxedPrimitive:
    return toVariant(value.property(QStringLiteral("valueOf")).callWithInstance(value), depth + 1);
  case ValueKind::Other: break;
  }
  return Variant(ObjectRef(std::make_shared<JsObject>(shared_from_this(), value)));
}

Variant JsContext::vbArrayToVariant(const QJSValue &parts, int depth) {
  // The parts come from script memory: check them before sizing an array.
  const QJSValue items = parts.property(QStringLiteral("items"));
  const QJSValue bounds = parts.property(QStringLiteral("bounds"));
  const quint32 count = bounds.property(QStringLiteral("length")).toUInt();
  if (count == 0 || count > kMaxDimensions)
    raiseError(ErrorNumber::TypeMismatch, QStringLiteral("JScript"), QStringLiteral("VBArray expected"));
  std::vector<VariantArray::Bounds> dimensions;
  qint64 elements = 1;
  for (quint32 d = 0; d < count; ++d) {
    const QJSValue pair = bounds.property(d);
    const VariantArray::Bounds dimension{pair.property(0).toInt(), pair.property(1).toInt()};
    elements *= std::max<qint64>(qint64(dimension.upper) - dimension.lower + 1, 0);
    if (elements > budget_.maxArrayElements)
      raiseError(ErrorNumber::OutOfMemory, QStringLiteral("JScript"),
                 QStringLiteral("The array is larger than the host takes"));
    dimensions.push_back(dimension);
  }
  VariantArray array(std::move(dimensions));
  const quint32 length = std::min<quint32>(items.property(QStringLiteral("length")).toUInt(), quint32(array.size()));
  for (quint32 i = 0; i < length; ++i)
    array.elements()[i] = toVariant(items.property(i), depth + 1);
  return Variant(std::move(array));
}

} // namespace kordel::script::js
