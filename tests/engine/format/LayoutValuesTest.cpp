// The text forms of numbers, booleans and colours in layout files: the
// shortest text that reads back as the same value, and strict reading.

#include "engine/format/LayoutValues.h"

#include <gtest/gtest.h>

#include <limits>

using namespace kordel::engine::layoutformat;

namespace {

TEST(LayoutValueText, TwipsAreTheShortestTextThatReadsBackAsTheSameFloat) {
  EXPECT_EQ(numberText(1440.0f), "1440");
  EXPECT_EQ(numberText(0.1f), "0.1");
  EXPECT_EQ(numberText(0.0f), "0");
  EXPECT_EQ(numberText(-7.25f), "-7.25");
  EXPECT_EQ(numberText(11906.0f), "11906");
  for (const float value : {0.1f, 1.0f / 3.0f, 1440.0f, 123456.79f, -0.0001f, 1e-7f, 16838.5f, 3.4e38f,
                            std::numeric_limits<float>::denorm_min()}) {
    const QString text = numberText(value);
    const auto back = parseFloat(text);
    ASSERT_TRUE(back) << text.toStdString();
    EXPECT_EQ(*back, value) << text.toStdString();
  }
  const double points = 10.3;
  EXPECT_EQ(numberText(points), "10.3");
  EXPECT_EQ(parseDouble(numberText(points)), points);
}

TEST(LayoutValueText, NumbersAreReadStrictly) {
  EXPECT_EQ(parseFloat("1e3"), 1000.0f);
  EXPECT_EQ(parseFloat("-12.5"), -12.5f);
  for (const char *bad : {"", " 1", "1 ", "1,5", "12px", "abc", "inf", "nan", "1e39", "0x10", "１"})
    EXPECT_FALSE(parseFloat(QString::fromUtf8(bad))) << bad;
  EXPECT_EQ(parseInteger("-3"), -3);
  for (const char *bad : {"", "1.5", "2e1", "+1", "99999999999", "one"})
    EXPECT_FALSE(parseInteger(QString::fromUtf8(bad))) << bad;
}

TEST(LayoutValueText, BooleansAreOneAndZero) {
  EXPECT_EQ(booleanText(true), "1");
  EXPECT_EQ(booleanText(false), "0");
  EXPECT_EQ(parseBoolean("1"), true);
  EXPECT_EQ(parseBoolean("0"), false);
  for (const char *bad : {"", "true", "True", "-1", "yes", "01"})
    EXPECT_FALSE(parseBoolean(QString::fromUtf8(bad))) << bad;
}

TEST(LayoutValueText, ColoursAreHashAndSixHexDigits) {
  EXPECT_EQ(colorText(QColor(0x12, 0xab, 0xef)), "#12abef");
  EXPECT_EQ(parseColor("#12ABef"), QColor(0x12, 0xab, 0xef));
  EXPECT_EQ(parseColor("#000000"), QColor(Qt::black));
  for (const char *bad : {"", "red", "#fff", "#12abeg", "12abef0", "#12abef00", "#-12345"})
    EXPECT_FALSE(parseColor(QString::fromUtf8(bad))) << bad;
}

} // namespace
