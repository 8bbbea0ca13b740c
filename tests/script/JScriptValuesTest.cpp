// Values crossing between the host's Variant and JScript, both ways.

#include "script/JScriptTestModel.h"

#include "core/VbDate.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace kordel::test {
namespace {

class JScriptValuesTest : public ::testing::Test, public JScriptFixture {
protected:
  // How a host value looks to a script: "typeof:String(value)".
  QString seen(const Variant &value) {
    report->kept = value;
    return text(QStringLiteral("var v = rpt.Give(); (v === null ? 'null' : typeof v) + ':' + String(v)"));
  }
  // What a script value becomes for the host.
  Variant received(const QString &expression) {
    engine->addCode(QStringLiteral("rpt.Keep(") + expression + QStringLiteral(");"));
    return report->kept;
  }
};

TEST_F(JScriptValuesTest, HostScalarsBecomeScriptValues) {
  EXPECT_EQ(seen(Variant()), QStringLiteral("undefined:undefined"));
  EXPECT_EQ(seen(Variant::null()), QStringLiteral("null:null"));
  EXPECT_EQ(seen(Variant::nothing()), QStringLiteral("null:null"));
  EXPECT_EQ(seen(Variant(true)), QStringLiteral("boolean:true"));
  EXPECT_EQ(seen(Variant(std::int16_t(-7))), QStringLiteral("number:-7"));
  EXPECT_EQ(seen(Variant(123456789)), QStringLiteral("number:123456789"));
  EXPECT_EQ(seen(Variant(std::uint8_t(255))), QStringLiteral("number:255"));
  EXPECT_EQ(seen(Variant(2.5)), QStringLiteral("number:2.5"));
  EXPECT_EQ(seen(Variant(Currency::fromDouble(12.3456))), QStringLiteral("number:12.3456"));
  EXPECT_EQ(seen(Variant(QStringLiteral("text"))), QStringLiteral("string:text"));
}

TEST_F(JScriptValuesTest, ScriptScalarsBecomeHostValues) {
  EXPECT_TRUE(received(QStringLiteral("undefined")).isEmpty());
  EXPECT_TRUE(received(QStringLiteral("null")).isNull());
  EXPECT_EQ(received(QStringLiteral("false")), Variant(false));
  // Whole numbers in range become Long, all others Double.
  EXPECT_EQ(received(QStringLiteral("42")), Variant(42));
  EXPECT_EQ(received(QStringLiteral("-2147483648")), Variant(std::numeric_limits<std::int32_t>::min()));
  EXPECT_EQ(received(QStringLiteral("2147483648")), Variant(2147483648.0));
  EXPECT_EQ(received(QStringLiteral("0.5")), Variant(0.5));
  EXPECT_TRUE(std::isnan(received(QStringLiteral("NaN")).rawDouble()));
  EXPECT_EQ(received(QStringLiteral("'s'")), Variant(QStringLiteral("s")));
  EXPECT_EQ(received(QStringLiteral("new String('boxed')")), Variant(QStringLiteral("boxed")));
  EXPECT_EQ(received(QStringLiteral("new Number(3)")), Variant(3));
}

TEST_F(JScriptValuesTest, DatesCrossInLocalTimeBothWays) {
  const Date afternoon = combineDateTime(dateFromParts(2024, 1, 31), timeFromParts(13, 45, 30));
  report->kept = Variant(afternoon);
  EXPECT_EQ(text(QStringLiteral("var d = rpt.Give(); [d instanceof Date, d.getFullYear(), d.getMonth() + 1,"
                                " d.getDate(), d.getHours(), d.getMinutes(), d.getSeconds()].join(' ')")),
            QStringLiteral("true 2024 1 31 13 45 30"));
  EXPECT_EQ(received(QStringLiteral("new Date(2024, 0, 31, 13, 45, 30)")), Variant(afternoon));
  // Before day zero the time still counts forward from midnight.
  report->kept = Variant(Date{-1.25});
  EXPECT_EQ(text(QStringLiteral("var d = rpt.Give(); [d.getFullYear(), d.getMonth() + 1, d.getDate(), d.getHours()]"
                                ".join(' ')")),
            QStringLiteral("1899 12 29 6"));
  EXPECT_EQ(received(QStringLiteral("rpt.Give()")), Variant(Date{-1.25}));
  // Milliseconds survive the round trip.
  EXPECT_EQ(received(QStringLiteral("new Date(2000, 5, 1, 0, 0, 0, 500)")).rawDate().serial,
            dateFromParts(2000, 6, 1).serial + 0.5 / 86400.0);
  EXPECT_EQ(errorOf(QStringLiteral("rpt.Keep(new Date(NaN))")).number(), ErrorNumber::TypeMismatch);
}

TEST_F(JScriptValuesTest, ArraysOfOneDimensionAreScriptArrays) {
  report->kept = Variant(VariantArray::fromValues({Variant(1), Variant(QStringLiteral("b")), Variant::null()}));
  EXPECT_EQ(text(QStringLiteral("var a = rpt.Give(); Array.isArray(a) + ' ' + a.length + ' ' + a[1] + ' ' + a[2]")),
            QStringLiteral("true 3 b null"));
  const Variant back = received(QStringLiteral("[1, 'two', [3, 4], undefined]"));
  ASSERT_TRUE(back.isArray());
  const VariantArray &array = back.array();
  EXPECT_EQ(array.lowerBound(), 0);
  EXPECT_EQ(array.upperBound(), 3);
  EXPECT_EQ(array.at(1), Variant(QStringLiteral("two")));
  EXPECT_EQ(array.at(2).array().at(1), Variant(4));
  EXPECT_TRUE(array.at(3).isEmpty());
  // A script array that contains itself is refused, not followed forever.
  EXPECT_EQ(errorOf(QStringLiteral("var loop = []; loop.push(loop); rpt.Keep(loop);")).number(),
            ErrorNumber::InvalidCall);
}

TEST_F(JScriptValuesTest, ArraysOfMoreDimensionsAreVBArraysAndKeepTheirBounds) {
  VariantArray grid({{1, 2}, {0, 2}});
  for (int i = 1; i <= 2; ++i)
    for (int j = 0; j <= 2; ++j)
      grid.at(std::vector<std::int32_t>{i, j}) = Variant(i * 10 + j);
  report->kept = Variant(grid);
  EXPECT_EQ(text(QStringLiteral("var g = rpt.Give(); [g.dimensions(), g.lbound(1), g.ubound(1), g.lbound(2),"
                                " g.ubound(2), g.getItem(2, 1), g.toArray().join(',')].join(' ')")),
            QStringLiteral("2 1 2 0 2 21 10,20,11,21,12,22"));
  EXPECT_EQ(errorOf(QStringLiteral("rpt.Give().getItem(3, 0)")).number(), ErrorNumber::SubscriptOutOfRange);
  const Variant back = received(QStringLiteral("rpt.Give()"));
  ASSERT_TRUE(back.isArray());
  EXPECT_EQ(back.array().bounds().size(), 2u);
  EXPECT_EQ(back.array().lowerBound(1), 1);
  EXPECT_EQ(back.array().upperBound(2), 2);
  EXPECT_EQ(back.array().at(std::vector<std::int32_t>{2, 1}), Variant(21));
  // JScript's idiom for an array from the host works on plain arrays too.
  EXPECT_EQ(text(QStringLiteral("new VBArray([5, 6]).toArray().join('-') + ' ' + new VBArray([5, 6]).ubound()")),
            QStringLiteral("5-6 1"));
}

TEST_F(JScriptValuesTest, ByteArraysAreArrayBuffers) {
  report->kept = Variant(QByteArray("\x01\x02\xff", 3));
  EXPECT_EQ(text(QStringLiteral("var b = new Uint8Array(rpt.Give()); b.length + ':' + b[0] + ',' + b[2]")),
            QStringLiteral("3:1,255"));
  EXPECT_EQ(received(QStringLiteral("new Uint8Array([7, 8]).buffer")), Variant(QByteArray("\x07\x08", 2)));
}

TEST_F(JScriptValuesTest, ObjectsCrossAsProxiesAndComeBackAsThemselves) {
  report->kept = Variant(ObjectRef(detail));
  EXPECT_EQ(text(QStringLiteral("rpt.Give().Name")), QStringLiteral("Detail"));
  EXPECT_EQ(received(QStringLiteral("rpt.Give()")).toObject(), ObjectRef(detail));
}

TEST_F(JScriptValuesTest, ProcedureResultsAndArgumentsConvert) {
  engine->addCode(QStringLiteral("function describe(a, b, c) { return typeof a + ' ' + typeof b + ' ' + (c === null); }"
                                 "function make() { return [1, 2.5, 'x']; }"));
  Args args{Variant(), Variant(Date{1.0}), Variant::null()};
  EXPECT_EQ(engine->call(QStringLiteral("describe"), args), Variant(QStringLiteral("undefined object true")));
  Args none;
  const Variant made = engine->call(QStringLiteral("make"), none);
  ASSERT_TRUE(made.isArray());
  EXPECT_EQ(made.array().at(1), Variant(2.5));
}

} // namespace
} // namespace kordel::test
