// Format on numbers: the named formats, user formats with their sections,
// placeholders, grouping, scaling, percent and exponents, and VB's
// rounding of halves away from zero on the decimal digits.

#include "CoreFixtures.h"

#include "core/Error.h"
#include "core/Format.h"

#include <limits>

namespace kordel {
namespace {

using test::errorNumber;

QString fmt(const Variant &value, const char *format) { return formatValue(value, QString::fromUtf8(format)); }

class FormatNumbers : public test::RegionalTest {};

TEST_F(FormatNumbers, TheReportFormats) {
  EXPECT_EQ(fmt(0, "#,0"), "0");
  EXPECT_EQ(fmt(12, "#,0"), "12");
  EXPECT_EQ(fmt(1234567, "#,0"), "1,234,567");
  EXPECT_EQ(fmt(999.5, "#,0"), "1,000");
  EXPECT_EQ(fmt(-1234.5, "#,0"), "-1,235");
  EXPECT_EQ(fmt(100000, "#,0"), "100,000");

  EXPECT_EQ(fmt(1234.5, "#,0.00"), "1,234.50");
  EXPECT_EQ(fmt(1234567.891, "#,0.00"), "1,234,567.89");
  EXPECT_EQ(fmt(0.005, "#,0.00"), "0.01");
  EXPECT_EQ(fmt(-0.5, "#,0.00"), "-0.50");
  EXPECT_EQ(fmt(0, "#,0.00"), "0.00");

  EXPECT_EQ(fmt(1234.56, "#,0.0"), "1,234.6");
  EXPECT_EQ(fmt(1.25, "#,0.0"), "1.3");
  EXPECT_EQ(fmt(0.05, "#,0.0"), "0.1");
  EXPECT_EQ(fmt(12.0f, "#,0.0"), "12.0");

  EXPECT_EQ(fmt(0.125, "0.00"), "0.13");
  EXPECT_EQ(fmt(2.675, "0.00"), "2.68");
  EXPECT_EQ(fmt(1.005, "0.00"), "1.01");
  EXPECT_EQ(fmt(-1.5, "0.00"), "-1.50");
  EXPECT_EQ(fmt(1000000, "0.00"), "1000000.00");
  EXPECT_EQ(fmt(334.9, "###0.00"), "334.90");
  EXPECT_EQ(fmt(5459.4, "##,##0.00"), "5,459.40");

  EXPECT_EQ(fmt(0.125, "0%"), "13%");
  EXPECT_EQ(fmt(0.5, "0%"), "50%");
  EXPECT_EQ(fmt(1, "0%"), "100%");
  EXPECT_EQ(fmt(-0.25, "0%"), "-25%");
  EXPECT_EQ(fmt(0.1234, "0.0%"), "12.3%");
  EXPECT_EQ(fmt(0.1235, "0.0%"), "12.4%");
  EXPECT_EQ(fmt(0.00049, "0.0%"), "0.0%");
  EXPECT_EQ(fmt(5, "0.00%"), "500.00%");
}

TEST_F(FormatNumbers, HalvesRoundAwayFromZero) {
  EXPECT_EQ(fmt(2.5, "0"), "3");
  EXPECT_EQ(fmt(3.5, "0"), "4");
  EXPECT_EQ(fmt(-2.5, "0"), "-3");
  EXPECT_EQ(fmt(0.5, "0"), "1");
  EXPECT_EQ(fmt(0.49, "0"), "0");
  EXPECT_EQ(fmt(9.995, "0.00"), "10.00");
  EXPECT_EQ(fmt(99999.5, "#,0"), "100,000");
  EXPECT_EQ(fmt(Variant(Currency{25000}), "0"), "3");
  EXPECT_EQ(fmt(Variant(Currency{-12345}), "0.000"), "-1.235");
  // A Single rounds on its own seven digits, not on the binary value.
  EXPECT_EQ(fmt(0.1f, "0.000000000"), "0.100000000");
  EXPECT_EQ(fmt(2.675f, "0.00"), "2.68");
  // Currency shows every digit exactly.
  EXPECT_EQ(fmt(Variant(Currency{std::numeric_limits<std::int64_t>::min()}), "#,0.0000"), "-922,337,203,685,477.5808");
  EXPECT_EQ(fmt(1e20, "#,0"), "100,000,000,000,000,000,000");
  // The sign comes from the value before rounding, as in VB.
  EXPECT_EQ(fmt(-0.001, "0.00"), "-0.00");
}

TEST_F(FormatNumbers, Placeholders) {
  EXPECT_EQ(fmt(5, "000"), "005");
  EXPECT_EQ(fmt(12345, "00"), "12345");
  EXPECT_EQ(fmt(0, "#"), "");
  EXPECT_EQ(fmt(0, "0"), "0");
  EXPECT_EQ(fmt(1234.5, "#"), "1235");
  EXPECT_EQ(fmt(0.5, "#.##"), ".5");
  EXPECT_EQ(fmt(1.5, "#.##"), "1.5");
  EXPECT_EQ(fmt(1, "0.##"), "1.");
  EXPECT_EQ(fmt(1.999, "0.##"), "2.");
  EXPECT_EQ(fmt(1.05, "0.0#"), "1.05");
  EXPECT_EQ(fmt(1.1, "0.0#"), "1.1");
  EXPECT_EQ(fmt(5, "0,000"), "0,005");
  EXPECT_EQ(fmt(1234, "00-00"), "12-34");
  EXPECT_EQ(fmt(123456, "00-00"), "1234-56");
  EXPECT_EQ(fmt(1.5, ".00"), "1.50");
}

TEST_F(FormatNumbers, Literals) {
  EXPECT_EQ(fmt(5, "$0.00"), "$5.00");
  EXPECT_EQ(fmt(-5, "$0.00"), "-$5.00");
  EXPECT_EQ(fmt(5, "(0)"), "(5)");
  EXPECT_EQ(fmt(5, "+0"), "+5");
  EXPECT_EQ(fmt(5, "0 - 0"), "0 - 5");
  EXPECT_EQ(fmt(5, "\"Total: \"0"), "Total: 5");
  EXPECT_EQ(fmt(5, "0\\k\\g"), "5kg");
  EXPECT_EQ(fmt(5, "0\" 0#%;\""), "5 0#%;");
  EXPECT_EQ(fmt(0.5, "0\\%"), "1%"); // an escaped % is text and does not scale
  EXPECT_EQ(fmt(5, "\\0#"), "05");
}

TEST_F(FormatNumbers, Sections) {
  EXPECT_EQ(fmt(5, "0;(0)"), "5");
  EXPECT_EQ(fmt(-5, "0;(0)"), "(5)");
  EXPECT_EQ(fmt(0, "0;(0)"), "0");
  EXPECT_EQ(fmt(0, "0;(0);\\z\\e\\r\\o"), "zero");
  EXPECT_EQ(fmt(5, "0;(0);\\z\\e\\r\\o"), "5");
  EXPECT_EQ(fmt(-5, "0;(0);\\z\\e\\r\\o"), "(5)");
  EXPECT_EQ(fmt(-5, "0;\\n\\e\\g"), "neg");
  // An empty section takes the positive one.
  EXPECT_EQ(fmt(-5, "0.0;;\\z\\e\\r\\o"), "-5.0");
  EXPECT_EQ(fmt(0, "0.0;(0.0);"), "0.0");
  EXPECT_EQ(fmt(0, "$#,##0;;\\Z\\e\\r\\o"), "Zero");
  EXPECT_EQ(fmt(-1234, "$#,##0;;\\Z\\e\\r\\o"), "-$1,234");
  EXPECT_EQ(fmt(-1234567.89, "#,0.00;(#,0.00);\"Zero\";\"NA\""), "(1,234,567.89)");
  EXPECT_EQ(fmt(0.0, "#,0.00;(#,0.00);;\"NA\""), "0.00");
  EXPECT_EQ(fmt(Variant::null(), "#,0.00;(#,0.00);\"Zero\";\"NA\""), "NA");
  // The fourth section serves Null; without it Null gives "".
  EXPECT_EQ(fmt(Variant::null(), "#,##0.00;;;Nil"), "Nil");
  EXPECT_EQ(fmt(Variant::null(), "0;(0);\\z;\\n\\u\\l\\l"), "null");
  EXPECT_EQ(fmt(Variant::null(), "0.00"), "");
  EXPECT_EQ(fmt(Variant::null(), "0;(0);\\z"), "");
  EXPECT_EQ(fmt(0.5, "#,##0.00;;;Nil"), "0.50");
  EXPECT_EQ(fmt(5, "$#,##0;($#,##0)"), "$5");
  EXPECT_EQ(fmt(-5, "$#,##0;($#,##0)"), "($5)");
  EXPECT_EQ(fmt(0.5, "$#,##0.00;($#,##0.00)"), "$0.50");
  EXPECT_EQ(fmt(5, "0\";\";\\n"), "5;"); // a quoted ; splits nothing
  EXPECT_EQ(fmt(-5, "0\";\";\\n"), "n");
}

TEST_F(FormatNumbers, ScalingCommas) {
  EXPECT_EQ(fmt(1234567, "#,##0,"), "1,235");
  EXPECT_EQ(fmt(1234567, "0,,"), "1");
  EXPECT_EQ(fmt(100000000, "##0,,"), "100");
  EXPECT_EQ(fmt(999999, "##0,,"), "1");
  EXPECT_EQ(fmt(499999, "##0,,"), "0");
  EXPECT_EQ(fmt(1234567, "0,,.00"), "1.23");
  EXPECT_EQ(fmt(1234567890, "#,##0,,"), "1,235");
  EXPECT_EQ(fmt(1500, "0,\\k"), "2k");
}

TEST_F(FormatNumbers, Scientific) {
  EXPECT_EQ(fmt(1234.5, "0.00E+00"), "1.23E+03");
  EXPECT_EQ(fmt(1234.5, "0.00E-00"), "1.23E03");
  EXPECT_EQ(fmt(0.00012345, "0.00E-00"), "1.23E-04");
  EXPECT_EQ(fmt(0.00012345, "0.00e+0"), "1.23e-4");
  EXPECT_EQ(fmt(0, "0.00E+00"), "0.00E+00");
  EXPECT_EQ(fmt(9.999, "0.00E+00"), "1.00E+01");
  EXPECT_EQ(fmt(-1234.5, "0.0E+0"), "-1.2E+3");
  EXPECT_EQ(fmt(5, "0.00E+00"), "5.00E+00");
  EXPECT_EQ(fmt(-5, "0.00E-00"), "-5.00E00");
  EXPECT_EQ(fmt(0.5, "0.00E-00"), "5.00E-01");
  EXPECT_EQ(fmt(1.5e100, "0.0E+000"), "1.5E+100");
}

TEST_F(FormatNumbers, NamedFormats) {
  EXPECT_EQ(fmt(1234.5, "General Number"), "1234.5");
  EXPECT_EQ(fmt(-0.25, "General Number"), "-0.25");
  EXPECT_EQ(fmt(1e20, "General Number"), "1E+20");
  EXPECT_EQ(fmt(1234.5, "Currency"), "$1,234.50");
  EXPECT_EQ(fmt(1234.567, "Fixed"), "1234.57");
  EXPECT_EQ(fmt(0.5, "Fixed"), "0.50");
  EXPECT_EQ(fmt(-1234.567, "Fixed"), "-1234.57");
  EXPECT_EQ(fmt(1234567.891, "Standard"), "1,234,567.89");
  EXPECT_EQ(fmt(-1234.5, "Standard"), "-1,234.50");
  EXPECT_EQ(fmt(0.1234, "Percent"), "12.34%");
  EXPECT_EQ(fmt(1234.5, "Scientific"), "1.23E+03");
  EXPECT_EQ(fmt(0.000123, "Scientific"), "1.23E-04");
  EXPECT_EQ(fmt(0, "Yes/No"), "No");
  EXPECT_EQ(fmt(-3, "Yes/No"), "Yes");
  EXPECT_EQ(fmt(true, "True/False"), "True");
  EXPECT_EQ(fmt(0.0, "True/False"), "False");
  EXPECT_EQ(fmt(0, "On/Off"), "Off");
  EXPECT_EQ(fmt(2, "on/off"), "On");
  EXPECT_EQ(fmt(1234.5, "standard"), "1,234.50");
  EXPECT_EQ(fmt(Variant::null(), "Standard"), "");
  EXPECT_EQ(fmt("abc", "Fixed"), "abc");
}

TEST_F(FormatNumbers, WhatFormatTakesAsANumber) {
  EXPECT_EQ(fmt("1234.5", "#,0.00"), "1,234.50");
  EXPECT_EQ(fmt(" 12 ", "000"), "012");
  EXPECT_EQ(fmt("abc", "0.00"), "abc"); // text that is no number comes back as it is
  EXPECT_EQ(fmt(true, "0"), "-1");
  EXPECT_EQ(fmt(Variant(Date{45000.5}), "0.00"), "45000.50");
  EXPECT_EQ(fmt(Variant(std::make_shared<test::ValueObject>(Variant(1234.5))), "#,0"), "1,235");
  EXPECT_EQ(errorNumber([] { fmt(Variant(VariantArray::fromValues({1})), "0"); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(errorNumber([] { fmt(Variant::nothing(), "0"); }), ErrorNumber::ObjectNotSet);
}

TEST_F(FormatNumbers, AnEmptyFormatGivesCStr) {
  EXPECT_EQ(fmt(1234.5, ""), "1234.5");
  EXPECT_EQ(fmt(1.0 / 3.0, ""), "0.333333333333333");
  EXPECT_EQ(fmt(Variant::null(), ""), "");
  EXPECT_EQ(fmt(Variant(), ""), "");
  EXPECT_EQ(fmt(true, ""), "True");
  EXPECT_EQ(fmt("abc", ""), "abc");
  EXPECT_EQ(fmt(Variant(Currency{1000}), ""), "0.1");
  EXPECT_EQ(formatValue(Variant(42)), "42");
}

TEST_F(FormatNumbers, SwedishSettings) {
  useLocale("sv_SE");
  const QString nbsp(QChar(0xA0));
  EXPECT_EQ(fmt(1234567.891, "#,0.00"), "1" + nbsp + "234" + nbsp + "567,89");
  EXPECT_EQ(fmt(1234567, "#,0"), "1" + nbsp + "234" + nbsp + "567");
  EXPECT_EQ(fmt(1234.56, "#,0.0"), "1" + nbsp + "234,6");
  EXPECT_EQ(fmt(0.125, "0.00"), "0,13");
  EXPECT_EQ(fmt(0.5, "0.0%"), "50,0%");
  EXPECT_EQ(fmt(1.5, "Fixed"), "1,50");
  EXPECT_EQ(fmt(1234.5, "Standard"), "1" + nbsp + "234,50");
  EXPECT_EQ(fmt(1234.5, "Currency"), "1" + nbsp + "234,50 kr");
  EXPECT_EQ(fmt(1234.5, "General Number"), "1234,5");
  EXPECT_EQ(fmt(1234.5, "Scientific"), "1,23E+03");
  EXPECT_EQ(fmt("1,5", "0.00"), "1,50");
  EXPECT_EQ(fmt(1.5, ""), "1,5");
}

TEST_F(FormatNumbers, TextReadsBackAsTheRoundedNumber) {
  for (const char *locale : {"C", "en_US", "de_DE", "sv_SE"}) {
    useLocale(locale);
    EXPECT_FLOAT_EQ(Variant(fmt(1234567.891, "#,0.00")).toSingle(), 1234567.89f) << locale;
    EXPECT_DOUBLE_EQ(Variant(fmt(-1234.5, "#,0.0")).toDouble(), -1234.5) << locale;
    EXPECT_DOUBLE_EQ(Variant(fmt(-1234.5, "Currency")).toDouble(), -1234.5) << locale;
    EXPECT_DOUBLE_EQ(Variant(fmt(0.125, "Standard")).toDouble(), 0.13) << locale;
  }
}

TEST_F(FormatNumbers, BadWeekArgumentsRaiseInvalidCall) {
  EXPECT_EQ(errorNumber([] { formatValue(5, "0", 8, 1); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(errorNumber([] { formatValue(5, "0", -1, 1); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(errorNumber([] { formatValue(5, "0", 1, 4); }), ErrorNumber::InvalidCall);
}

} // namespace
} // namespace kordel
