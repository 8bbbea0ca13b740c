// VB's conversion functions on Variant: CBool, CInt, CLng, CSng, CDbl,
// CCur, CDate and CStr, with their rounding, limits and errors.

#include "CoreFixtures.h"

#include "core/Error.h"
#include "core/VbNumber.h"

#include <limits>

namespace kordel {
namespace {

using test::errorNumber;

class Conversions : public test::RegionalTest {};

TEST_F(Conversions, CIntAndCLngRoundHalvesToEven) {
  EXPECT_EQ(Variant(2.5).toInteger(), 2);
  EXPECT_EQ(Variant(3.5).toInteger(), 4);
  EXPECT_EQ(Variant(0.5).toInteger(), 0);
  EXPECT_EQ(Variant(1.5).toInteger(), 2);
  EXPECT_EQ(Variant(-2.5).toInteger(), -2);
  EXPECT_EQ(Variant(-3.5).toInteger(), -4);
  EXPECT_EQ(Variant(2.6).toInteger(), 3);
  EXPECT_EQ(Variant(-2.4).toInteger(), -2);
  EXPECT_EQ(Variant(-2.5).toLong(), -2);
  EXPECT_EQ(Variant(-3.5).toLong(), -4);
  EXPECT_EQ(Variant(4.5f).toLong(), 4);
  EXPECT_EQ(Variant("2.5").toInteger(), 2);
  EXPECT_EQ(Variant(Currency{25000}).toLong(), 2);
  EXPECT_EQ(Variant(Currency{35000}).toLong(), 4);
  EXPECT_EQ(Variant(Currency{-25000}).toLong(), -2);
  EXPECT_EQ(Variant(Currency{-35000}).toLong(), -4);
  EXPECT_EQ(Variant(Currency{-26000}).toLong(), -3);
  EXPECT_DOUBLE_EQ(roundHalfEven(2.675, 2), 2.68);
  EXPECT_DOUBLE_EQ(roundHalfEven(0.125, 2), 0.12);
}

TEST_F(Conversions, IntegerLimitsRaiseOverflow) {
  EXPECT_EQ(Variant(32767).toInteger(), 32767);
  EXPECT_EQ(Variant(-32768).toInteger(), -32768);
  EXPECT_EQ(Variant(32767.4).toInteger(), 32767);
  EXPECT_EQ(Variant(-32768.5).toInteger(), -32768);
  EXPECT_EQ(errorNumber([] { Variant(32768).toInteger(); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { Variant(32767.5).toInteger(); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { Variant(-32769).toInteger(); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { Variant("40000").toInteger(); }), ErrorNumber::Overflow);

  EXPECT_EQ(Variant(2147483647.0).toLong(), 2147483647);
  EXPECT_EQ(Variant(-2147483648.0).toLong(), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(errorNumber([] { Variant(2147483648.0).toLong(); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { Variant(2147483647.5).toLong(); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { Variant(-2147483649.0).toLong(); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { Variant(Currency{21474836480000}).toLong(); }), ErrorNumber::Overflow);

  EXPECT_EQ(Variant(255).toByte(), 255);
  EXPECT_EQ(errorNumber([] { Variant(256).toByte(); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { Variant(-1).toByte(); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { Variant(1e39).toSingle(); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { Variant(1e15).toCurrency(); }), ErrorNumber::Overflow);
  EXPECT_EQ(Variant(900000000000000.0).toCurrency().scaled, 9000000000000000000);
}

TEST_F(Conversions, NullEmptyAndTextThatIsNoNumber) {
  const Variant null = Variant::null();
  EXPECT_EQ(errorNumber([&] { null.toInteger(); }), ErrorNumber::InvalidUseOfNull);
  EXPECT_EQ(errorNumber([&] { null.toLong(); }), ErrorNumber::InvalidUseOfNull);
  EXPECT_EQ(errorNumber([&] { null.toDouble(); }), ErrorNumber::InvalidUseOfNull);
  EXPECT_EQ(errorNumber([&] { null.toBool(); }), ErrorNumber::InvalidUseOfNull);
  EXPECT_EQ(errorNumber([&] { null.toString(); }), ErrorNumber::InvalidUseOfNull);
  EXPECT_EQ(errorNumber([&] { null.toDate(); }), ErrorNumber::InvalidUseOfNull);
  EXPECT_EQ(errorNumber([&] { null.toCurrency(); }), ErrorNumber::InvalidUseOfNull);

  const Variant empty;
  EXPECT_EQ(empty.toInteger(), 0);
  EXPECT_EQ(empty.toLong(), 0);
  EXPECT_EQ(empty.toDouble(), 0.0);
  EXPECT_FALSE(empty.toBool());
  EXPECT_EQ(empty.toString(), QString(""));
  EXPECT_EQ(empty.toDate().serial, 0.0);

  for (const char *text : {"abc", "", "12abc", "&HXYZ", "1e", "--1"})
    EXPECT_EQ(errorNumber([&] { Variant(text).toDouble(); }), ErrorNumber::TypeMismatch) << text;
  EXPECT_EQ(errorNumber([] { Variant("abc").toInteger(); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(errorNumber([] { Variant("abc").toLong(); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(errorNumber([] { Variant("abc").toDate(); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(errorNumber([] { Variant(VariantArray::fromValues({1, 2})).toString(); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(Variant::null().toText(), QString());
}

TEST_F(Conversions, NumbersReadFromText) {
  EXPECT_DOUBLE_EQ(Variant("1,234,567").toDouble(), 1234567.0);
  EXPECT_DOUBLE_EQ(Variant("1,234.5").toDouble(), 1234.5);
  EXPECT_DOUBLE_EQ(Variant("  -12.25 ").toDouble(), -12.25);
  EXPECT_DOUBLE_EQ(Variant("+7").toDouble(), 7.0);
  EXPECT_DOUBLE_EQ(Variant(".5").toDouble(), 0.5);
  EXPECT_DOUBLE_EQ(Variant("1.5E3").toDouble(), 1500.0);
  EXPECT_DOUBLE_EQ(Variant("-1.5e-2").toDouble(), -0.015);
  EXPECT_DOUBLE_EQ(Variant("2D2").toDouble(), 200.0);
  EXPECT_DOUBLE_EQ(Variant("(12)").toDouble(), -12.0);
  EXPECT_DOUBLE_EQ(Variant("$12.50").toDouble(), 12.5);
  EXPECT_DOUBLE_EQ(Variant("-$1,234.50").toDouble(), -1234.5);
  EXPECT_DOUBLE_EQ(Variant("($1,234.50)").toDouble(), -1234.5);
  EXPECT_EQ(Variant("&HFF").toLong(), 255);
  EXPECT_EQ(Variant("&hff").toInteger(), 255);
  EXPECT_EQ(Variant("&HFFFF").toLong(), -1); // four digits are a 16-bit literal
  EXPECT_EQ(Variant("&H10000").toLong(), 65536);
  EXPECT_EQ(Variant("&HFFFFFFFF").toLong(), -1);
  EXPECT_EQ(Variant("&O17").toLong(), 15);
  EXPECT_EQ(Variant("1,234").toInteger(), 1234);
  EXPECT_EQ(errorNumber([] { Variant("1 234").toDouble(); }), ErrorNumber::TypeMismatch);
  EXPECT_FLOAT_EQ(Variant("1,5").toSingle(), 15.0f); // "," groups here
}

TEST_F(Conversions, CBool) {
  EXPECT_TRUE(Variant("True").toBool());
  EXPECT_TRUE(Variant(" true ").toBool());
  EXPECT_FALSE(Variant("FALSE").toBool());
  EXPECT_FALSE(Variant("0").toBool());
  EXPECT_TRUE(Variant("-1").toBool());
  EXPECT_TRUE(Variant("0.5").toBool());
  EXPECT_TRUE(Variant(0.1).toBool());
  EXPECT_FALSE(Variant(0).toBool());
  EXPECT_TRUE(Variant(Date{1}).toBool());
  EXPECT_EQ(errorNumber([] { Variant("yes").toBool(); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(errorNumber([] { Variant("").toBool(); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(Variant(true).toInteger(), -1);
  EXPECT_EQ(Variant(true).toDouble(), -1.0);
  EXPECT_EQ(Variant(false).toLong(), 0);
}

TEST_F(Conversions, CCurKeepsFourDecimals) {
  EXPECT_EQ(Variant(1.23456).toCurrency().scaled, 12346);
  EXPECT_EQ(Variant("12.34").toCurrency().scaled, 123400);
  EXPECT_EQ(Variant(-0.5).toCurrency().scaled, -5000);
  EXPECT_EQ(Variant(Currency{12345}).toCurrency().scaled, 12345);
  EXPECT_DOUBLE_EQ(Variant(Currency{12345}).toDouble(), 1.2345);
  // CStr shows the exact digits of a Currency, never binary noise.
  EXPECT_EQ(Variant(Variant(0.1).toCurrency()).toString(), QString("0.1"));
  EXPECT_EQ(Variant(Currency{-12345678}).toString(), QString("-1234.5678"));
  EXPECT_EQ(Variant(Currency{1000000}).toString(), QString("100"));
  EXPECT_EQ(Variant(Currency{std::numeric_limits<std::int64_t>::max()}).toString(), QString("922337203685477.5807"));
  EXPECT_EQ(Variant(Currency{std::numeric_limits<std::int64_t>::min()}).toString(), QString("-922337203685477.5808"));
}

TEST_F(Conversions, CStrOfNumbers) {
  EXPECT_EQ(Variant(std::int16_t(-5)).toString(), QString("-5"));
  EXPECT_EQ(Variant(123456).toString(), QString("123456"));
  EXPECT_EQ(Variant(true).toString(), QString("True"));
  EXPECT_EQ(Variant(false).toString(), QString("False"));
  EXPECT_EQ(Variant(1.5).toString(), QString("1.5"));
  EXPECT_EQ(Variant(-1.5).toString(), QString("-1.5"));
  EXPECT_EQ(Variant(0.1 + 0.2).toString(), QString("0.3"));
  EXPECT_EQ(Variant(1.0 / 3.0).toString(), QString("0.333333333333333"));
  EXPECT_EQ(Variant(2.0 / 3.0).toString(), QString("0.666666666666667"));
  EXPECT_EQ(Variant(100.0).toString(), QString("100"));
  EXPECT_EQ(Variant(123456789012345.0).toString(), QString("123456789012345"));
  EXPECT_EQ(Variant(1e15).toString(), QString("1E+15"));
  EXPECT_EQ(Variant(1.5e20).toString(), QString("1.5E+20"));
  EXPECT_EQ(Variant(0.0001).toString(), QString("0.0001"));
  EXPECT_EQ(Variant(0.00001).toString(), QString("0.00001"));
  EXPECT_EQ(Variant(1e-7).toString(), QString("1E-07"));
  EXPECT_EQ(Variant(-2.5e-10).toString(), QString("-2.5E-10"));
  EXPECT_EQ(Variant(1.0f / 3.0f).toString(), QString("0.3333333"));
  EXPECT_EQ(Variant(0.1f).toString(), QString("0.1"));
  EXPECT_EQ(Variant(-0.0).toString(), QString("0"));
}

TEST_F(Conversions, CDate) {
  EXPECT_EQ(Variant("2023-01-05").toDate().serial, 44931.0);
  EXPECT_EQ(Variant("2023-03-15 18:00").toDate().serial, 45000.75);
  EXPECT_EQ(Variant(36526.5).toDate().serial, 36526.5);
  EXPECT_EQ(Variant(true).toDate().serial, -1.0);
  EXPECT_EQ(errorNumber([] { Variant(3e6).toDate(); }), ErrorNumber::Overflow);
  EXPECT_EQ(errorNumber([] { Variant(-657435.0).toDate(); }), ErrorNumber::Overflow);
  EXPECT_EQ(Variant(-657434.0).toDate().serial, -657434.0);
  EXPECT_EQ(errorNumber([] { Variant("2023-02-30").toDate(); }), ErrorNumber::TypeMismatch);
  EXPECT_DOUBLE_EQ(Variant(Date{45000.25}).toDouble(), 45000.25);
}

TEST_F(Conversions, ObjectsConvertThroughTheirDefaultValue) {
  const Variant field(std::make_shared<test::ValueObject>(Variant("42")));
  EXPECT_EQ(field.toLong(), 42);
  EXPECT_EQ(field.toString(), QString("42"));
  EXPECT_EQ(field.typeName(), QString("ValueObject"));
  EXPECT_EQ(errorNumber([] { Variant::nothing().toLong(); }), ErrorNumber::ObjectNotSet);
  EXPECT_EQ(errorNumber([] { Variant(5).toObject(); }), ErrorNumber::ObjectRequired);
}

TEST_F(Conversions, SwedishSettingsReadAndWriteDecimalComma) {
  useLocale("sv_SE");
  EXPECT_EQ(regional().decimalSeparator, QChar(u','));
  EXPECT_DOUBLE_EQ(Variant("1,5").toDouble(), 1.5);
  EXPECT_DOUBLE_EQ(Variant("1 234,5").toDouble(), 1234.5);
  EXPECT_DOUBLE_EQ(Variant(QStringLiteral("1\u00a0234\u00a0567,25")).toDouble(), 1234567.25);
  EXPECT_DOUBLE_EQ(Variant("-2,5E2").toDouble(), -250.0);
  EXPECT_DOUBLE_EQ(Variant(QStringLiteral("-1\u00a0234,50 kr")).toDouble(), -1234.5);
  EXPECT_EQ(Variant("2,5").toInteger(), 2);
  EXPECT_EQ(Variant("3,5").toLong(), 4);
  EXPECT_EQ(Variant(1.5).toString(), QString("1,5"));
  EXPECT_EQ(Variant(-0.25f).toString(), QString("-0,25"));
  EXPECT_EQ(Variant(1.5e-7).toString(), QString("1,5E-07"));
  EXPECT_EQ(Variant(Currency{12500}).toString(), QString("1,25"));
  EXPECT_TRUE(Variant("0,5").isNumeric());
}

TEST_F(Conversions, IsNumericAndIsDate) {
  EXPECT_TRUE(Variant("12").isNumeric());
  EXPECT_TRUE(Variant(" -1.5e3 ").isNumeric());
  EXPECT_TRUE(Variant().isNumeric());
  EXPECT_TRUE(Variant(true).isNumeric());
  EXPECT_FALSE(Variant("abc").isNumeric());
  EXPECT_FALSE(Variant::null().isNumeric());
  EXPECT_FALSE(Variant(Date{1}).isNumeric());
  EXPECT_TRUE(Variant("2023-01-05").isDate());
  EXPECT_TRUE(Variant(Date{1}).isDate());
  EXPECT_FALSE(Variant("abc").isDate());
  EXPECT_FALSE(Variant(5).isDate());
}

} // namespace
} // namespace kordel
