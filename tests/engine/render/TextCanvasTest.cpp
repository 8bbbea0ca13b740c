// Measuring and wrapping text in twips, from C++ and through the late-bound
// members that the layout scripts use.

#include "engine/render/TextCanvas.h"

#include "support/ErrorCapture.h"

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::errorNumber;

namespace {

QFont font(double points, bool bold = false, const QString &family = QStringLiteral("DejaVu Sans")) {
  QFont result(family);
  result.setPointSizeF(points);
  result.setBold(bold);
  return result;
}

// A font object as a layout's control hands it over.
class ControlFont : public Object {
public:
  QString name = QStringLiteral("DejaVu Sans");
  double size = 10;
  bool bold = false;

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        property<ControlFont>("Name", [](ControlFont &f) { return f.name; }),
        property<ControlFont>("Size", [](ControlFont &f) { return f.size; }),
        property<ControlFont>("Bold", [](ControlFont &f) { return f.bold; }),
    }};
    return table;
  }
};

TEST(TextMeasure, GrowsWithTheTextAndTheFontSize) {
  TextCanvas canvas;
  canvas.setFont(font(10));
  const QSizeF shortText = canvas.measure(QStringLiteral("Name"));
  const QSizeF longText = canvas.measure(QStringLiteral("Name of the customer"));
  EXPECT_GT(shortText.width(), 0);
  EXPECT_GT(longText.width(), shortText.width());
  EXPECT_DOUBLE_EQ(longText.height(), shortText.height());

  canvas.setFont(font(20));
  const QSizeF larger = canvas.measure(QStringLiteral("Name"));
  EXPECT_NEAR(larger.width(), 2 * shortText.width(), 0.05 * shortText.width());
  EXPECT_NEAR(larger.height(), 2 * shortText.height(), 0.05 * shortText.height());

  canvas.setFont(font(10, true));
  EXPECT_GT(canvas.measure(QStringLiteral("Name")).width(), shortText.width());
}

TEST(TextMeasure, IsInTwipsOnAFixedResolution) {
  // DejaVu Sans lines are about 1.16 em apart; at 10 points, an em is 200
  // twips. A screen's resolution must not show in the result.
  TextCanvas canvas;
  canvas.setFont(font(10));
  EXPECT_NEAR(canvas.lineHeight(), 233, 12);
  EXPECT_NEAR(canvas.ascent(), 186, 10);
  EXPECT_DOUBLE_EQ(canvas.measure(QStringLiteral("x")).height(), canvas.lineHeight());
}

TEST(TextMeasure, TakesTheWidestLineAndAllLines) {
  TextCanvas canvas;
  const qreal line = canvas.lineHeight();
  const qreal wide = canvas.lineWidth(QStringLiteral("a much wider line"));
  for (const char *separator : {"\r\n", "\n", "\r"}) {
    const QString text = QStringLiteral("short") + QString::fromLatin1(separator) +
                         QStringLiteral("a much wider line") + QString::fromLatin1(separator) + QStringLiteral("mid");
    const QSizeF size = canvas.measure(text);
    EXPECT_DOUBLE_EQ(size.width(), wide) << separator;
    EXPECT_DOUBLE_EQ(size.height(), 3 * line) << separator;
  }
  EXPECT_EQ(canvas.measure(QString()), QSizeF(0, line));
  EXPECT_DOUBLE_EQ(canvas.measure(QStringLiteral("x\n")).height(), 2 * line);
}

TEST(TextWrap, BreaksAtSpacesAndKeepsEveryLineInTheWidth) {
  TextCanvas canvas;
  const QString text = QStringLiteral("The quick brown fox jumps over the lazy dog and runs far away");
  const int width = int(std::ceil(canvas.lineWidth(QStringLiteral("The quick brown fox"))));
  const QStringList lines = canvas.wrap(text, width);
  ASSERT_GT(lines.size(), 2);
  EXPECT_EQ(lines.front(), QStringLiteral("The quick brown fox"));
  for (const QString &line : lines) {
    EXPECT_LE(canvas.lineWidth(line), width) << line.toStdString();
    EXPECT_FALSE(line.startsWith(QLatin1Char(' ')) || line.endsWith(QLatin1Char(' '))) << line.toStdString();
  }
  EXPECT_EQ(lines.join(QLatin1Char(' ')), text); // no word lost, cut or reordered
  // Each line is as full as it can be: the next line's first word did not fit.
  for (qsizetype i = 0; i + 1 < lines.size(); ++i) {
    const QString withNextWord = lines[i] + QLatin1Char(' ') + lines[i + 1].section(QLatin1Char(' '), 0, 0);
    EXPECT_GT(canvas.lineWidth(withNextWord), width) << withNextWord.toStdString();
  }
}

TEST(TextWrap, KeepsHardBreaksAndTextThatFits) {
  TextCanvas canvas;
  const QString text = QStringLiteral("  indented  twice\r\n\nlast line ");
  EXPECT_EQ(canvas.wrap(text, 100000),
            (QStringList{QStringLiteral("  indented  twice"), QString(), QStringLiteral("last line ")}));
  EXPECT_EQ(canvas.wrap(QString(), 1000), QStringList{QString()});
  // Without a width there is nothing to wrap to.
  EXPECT_EQ(canvas.wrap(QStringLiteral("one two\nthree"), 0),
            (QStringList{QStringLiteral("one two"), QStringLiteral("three")}));
}

TEST(TextWrap, DropsTheSpacesAtABreak) {
  TextCanvas canvas;
  const int width = int(canvas.lineWidth(QStringLiteral("alpha"))) + 1;
  EXPECT_EQ(canvas.wrap(QStringLiteral("alpha     beta"), width),
            (QStringList{QStringLiteral("alpha"), QStringLiteral("beta")}));
}

TEST(TextWrap, BreaksAWordWiderThanTheWidthBetweenCharacters) {
  TextCanvas canvas;
  const QString word = QStringLiteral("Donaudampfschifffahrtsgesellschaft");
  const int width = int(std::ceil(canvas.lineWidth(QStringLiteral("Donaudampf"))));
  const QStringList lines = canvas.wrap(QStringLiteral("A ") + word + QStringLiteral(" ends"), width);
  ASSERT_GE(lines.size(), 4);
  EXPECT_EQ(lines.front(), QStringLiteral("A"));
  EXPECT_EQ(lines[1], QStringLiteral("Donaudampf"));
  EXPECT_EQ(lines.mid(1).join(QString()).remove(QLatin1Char(' ')), word + QStringLiteral("ends"));
  for (const QString &line : lines)
    EXPECT_LE(canvas.lineWidth(line), width) << line.toStdString();
  // The word's last piece shares its line with the next word when it fits.
  EXPECT_TRUE(lines.back().endsWith(QStringLiteral(" ends")) || lines.back() == QStringLiteral("ends"));
}

TEST(TextWrap, KeepsACharacterWithItsAccentAndGivesEachLineOneAtLeast) {
  TextCanvas canvas;
  const QString accented = QStringLiteral("e\u0301e\u0301e\u0301"); // e and a combining acute, three times
  const QStringList lines = canvas.wrap(accented, 1);
  EXPECT_EQ(lines, QStringList(3, QStringLiteral("e\u0301")));
  const QString emoji = QString::fromUcs4(U"\U0001F600\U0001F600");
  EXPECT_EQ(canvas.wrap(emoji, 1).size(), 2);
}

TEST(CanvasObject, MeasureTextWritesWidthAndHeightIntoItsArguments) {
  auto canvas = std::make_shared<TextCanvas>();
  Args args{Variant(QStringLiteral("<Customer name>000")), Variant(), Variant()};
  canvas->call(QStringLiteral("MeasureText"), args);
  const QSizeF expected = canvas->measure(QStringLiteral("<Customer name>000"));
  EXPECT_EQ(args[1], Variant(int(std::ceil(expected.width()))));
  EXPECT_EQ(args[2], Variant(int(std::ceil(expected.height()))));

  Args tooFew{Variant(QStringLiteral("x"))};
  EXPECT_EQ(errorNumber([&] { canvas->call(QStringLiteral("MeasureText"), tooFew); }), ErrorNumber::WrongArgumentCount);
}

TEST(CanvasObject, TakesAFontObjectOrAFamilyName) {
  auto canvas = std::make_shared<TextCanvas>();
  const auto width = [&] {
    Args args{Variant(QStringLiteral("Measured")), Variant(), Variant()};
    canvas->call(QStringLiteral("MeasureText"), args);
    return args[1].toLong();
  };
  const int plain = width();

  auto fontObject = std::make_shared<ControlFont>();
  fontObject->size = 20;
  fontObject->bold = true;
  canvas->set(QStringLiteral("Font"), Variant(fontObject));
  EXPECT_DOUBLE_EQ(canvas->font().pointSizeF(), 20);
  EXPECT_TRUE(canvas->font().bold());
  EXPECT_GT(width(), 2 * plain);

  canvas->set(QStringLiteral("font"), Variant(QStringLiteral("DejaVu Sans Mono")));
  EXPECT_EQ(canvas->font().family(), QStringLiteral("DejaVu Sans Mono"));
  EXPECT_DOUBLE_EQ(canvas->font().pointSizeF(), 20); // the rest of the font stays

  EXPECT_EQ(errorNumber([&] { canvas->set(QStringLiteral("Font"), Variant(12)); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(errorNumber([&] { canvas->set(QStringLiteral("Font"), Variant::nothing()); }), ErrorNumber::ObjectNotSet);
  fontObject->size = 0;
  EXPECT_EQ(errorNumber([&] { canvas->set(QStringLiteral("Font"), Variant(fontObject)); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(errorNumber([&] { canvas->get(QStringLiteral("Font")); }), ErrorNumber::NoSuchMember);
  EXPECT_EQ(canvas->font().family(), QStringLiteral("DejaVu Sans Mono")); // a refused font changes nothing
}

} // namespace
