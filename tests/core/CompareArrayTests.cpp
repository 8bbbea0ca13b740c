// VB's comparison of values, and arrays as values: bounds, subscripts,
// ReDim and copies.

#include "CoreFixtures.h"

#include "core/Compare.h"
#include "core/Error.h"

namespace kordel {
namespace {

using test::errorNumber;

class Comparisons : public test::RegionalTest {};

TEST_F(Comparisons, NumbersCompareAsNumbersAndAreLessThanStrings) {
  EXPECT_EQ(compareValues(1, 2), -1);
  EXPECT_EQ(compareValues(2.5, std::int16_t(2)), 1);
  EXPECT_EQ(compareValues(Variant(Currency{10000}), 1.0), 0);
  EXPECT_EQ(compareValues(Variant(Currency{10001}), Variant(Currency{10000})), 1);
  EXPECT_EQ(compareValues(Variant(Date{1}), 1), 0);
  EXPECT_EQ(compareValues(true, -1), 0);
  EXPECT_EQ(compareValues(false, 0), 0);
  // A number is less than any string, even one that reads as a smaller number.
  EXPECT_EQ(compareValues(100, "2"), -1);
  EXPECT_EQ(compareValues("2", 100), 1);
  EXPECT_EQ(compareValues(Variant(Date{45000}), "a"), -1);
  EXPECT_EQ(compareValues("10", "9"), -1); // strings compare as text
}

TEST_F(Comparisons, EmptyIsZeroOrEmptyString) {
  const Variant empty;
  EXPECT_EQ(compareValues(empty, ""), 0);
  EXPECT_EQ(compareValues("", empty), 0);
  EXPECT_EQ(compareValues(empty, 0), 0);
  EXPECT_EQ(compareValues(empty, 0.0), 0);
  EXPECT_EQ(compareValues(empty, empty), 0);
  EXPECT_EQ(compareValues(empty, "a"), -1);
  EXPECT_EQ(compareValues("a", empty), 1);
  EXPECT_EQ(compareValues(empty, -1), 1);
  EXPECT_EQ(compareValues(empty, false), 0);
}

TEST_F(Comparisons, NullGivesNoResult) {
  const Variant null = Variant::null();
  EXPECT_FALSE(compareValues(null, 1).has_value());
  EXPECT_FALSE(compareValues("a", null).has_value());
  EXPECT_FALSE(compareValues(null, null).has_value());
  EXPECT_FALSE(compareValues(null, Variant()).has_value());
}

TEST_F(Comparisons, TextAndBinaryCompare) {
  EXPECT_EQ(compareStrings("a", "B", CompareMode::Binary), 1);
  EXPECT_EQ(compareStrings("a", "B", CompareMode::Text), -1);
  EXPECT_EQ(compareStrings("abc", "ABC", CompareMode::Binary), 1);
  EXPECT_EQ(compareStrings("abc", "ABC", CompareMode::Text), 0);
  EXPECT_EQ(compareStrings("", "a", CompareMode::Text), -1);
  EXPECT_EQ(compareStrings("ab", "a", CompareMode::Binary), 1);
  EXPECT_EQ(
      compareStrings(QStringLiteral("\u00c5ngstr\u00f6m"), QStringLiteral("\u00e5NGSTR\u00d6M"), CompareMode::Text), 0);
  EXPECT_EQ(compareValues("Apple", "apple", CompareMode::Text), 0);
  EXPECT_EQ(compareValues("Apple", "apple"), -1);
}

TEST_F(Comparisons, ObjectsByDefaultValueArraysNot) {
  const Variant field(std::make_shared<test::ValueObject>(Variant(5)));
  EXPECT_EQ(compareValues(field, 5), 0);
  EXPECT_EQ(compareValues(4, field), -1);
  EXPECT_EQ(errorNumber([] { compareValues(Variant::nothing(), 1); }), ErrorNumber::ObjectNotSet);
  EXPECT_EQ(errorNumber([] { compareValues(Variant(VariantArray::fromValues({1})), 1); }), ErrorNumber::TypeMismatch);
}

// ---- arrays ----

using Bounds = VariantArray::Bounds;

TEST(Arrays, BoundsAndSubscripts) {
  VariantArray a({Bounds{1, 3}});
  EXPECT_EQ(a.dimensions(), 1);
  EXPECT_EQ(a.lowerBound(), 1);
  EXPECT_EQ(a.upperBound(), 3);
  EXPECT_EQ(a.size(), 3u);
  a.at(3) = "last";
  EXPECT_EQ(a.at(3), Variant("last"));
  EXPECT_TRUE(a.at(1).isEmpty());
  EXPECT_EQ(errorNumber([&] { a.at(0); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { a.at(4); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { a.lowerBound(2); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { a.upperBound(0); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { a.at({1, 1}); }), ErrorNumber::SubscriptOutOfRange);

  const VariantArray empty({Bounds{0, -1}});
  EXPECT_EQ(empty.size(), 0u);
  EXPECT_EQ(empty.upperBound(), -1);
  EXPECT_EQ(errorNumber([] { VariantArray({Bounds{0, -2}}); }), ErrorNumber::SubscriptOutOfRange);
}

TEST(Arrays, MultiDimensionalElementsLieFirstSubscriptFastest) {
  VariantArray grid({Bounds{0, 1}, Bounds{1, 3}});
  EXPECT_EQ(grid.dimensions(), 2);
  EXPECT_EQ(grid.size(), 6u);
  EXPECT_EQ(grid.lowerBound(2), 1);
  EXPECT_EQ(grid.upperBound(2), 3);
  for (int i = 0; i <= 1; ++i)
    for (int j = 1; j <= 3; ++j)
      grid.at({i, j}) = i * 10 + j;
  EXPECT_EQ(grid.at({1, 2}), Variant(12));
  std::vector<Variant> expected{1, 11, 2, 12, 3, 13};
  EXPECT_EQ(grid.elements(), expected);
  EXPECT_EQ(errorNumber([&] { grid.at({2, 1}); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { grid.at({0, 0}); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { grid.at(0); }), ErrorNumber::SubscriptOutOfRange);
}

TEST(Arrays, ReDimPreserveKeepsElements) {
  VariantArray list = VariantArray::fromValues({"a", "b", "c"});
  list.redim({Bounds{0, 4}}, true);
  EXPECT_EQ(list.size(), 5u);
  EXPECT_EQ(list.at(2), Variant("c"));
  EXPECT_TRUE(list.at(4).isEmpty());
  list.redim({Bounds{0, 1}}, true);
  EXPECT_EQ(list.elements(), (std::vector<Variant>{"a", "b"}));
  list.redim({Bounds{0, 2}}, false);
  EXPECT_EQ(list.elements(), (std::vector<Variant>{Variant(), Variant(), Variant()}));

  VariantArray grid({Bounds{0, 1}, Bounds{0, 1}});
  grid.at({1, 0}) = "x";
  grid.at({0, 1}) = "y";
  grid.redim({Bounds{0, 1}, Bounds{0, 3}}, true);
  EXPECT_EQ(grid.at({1, 0}), Variant("x"));
  EXPECT_EQ(grid.at({0, 1}), Variant("y"));
  EXPECT_TRUE(grid.at({1, 3}).isEmpty());
}

TEST(Arrays, ReDimPreserveRefusesAllButTheLastDimension) {
  VariantArray grid({Bounds{0, 1}, Bounds{0, 1}});
  grid.at({1, 1}) = 7;
  EXPECT_EQ(errorNumber([&] { grid.redim({Bounds{0, 2}, Bounds{0, 1}}, true); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { grid.redim({Bounds{0, 1}}, true); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(errorNumber([&] { grid.redim({Bounds{0, 1}, Bounds{1, 2}}, true); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(grid.at({1, 1}), Variant(7)); // a refused ReDim changes nothing
  EXPECT_EQ(grid.upperBound(1), 1);
  // Without Preserve every dimension may change.
  grid.redim({Bounds{1, 3}}, false);
  EXPECT_EQ(grid.dimensions(), 1);
  EXPECT_EQ(grid.size(), 3u);

  VariantArray fixedArray({Bounds{0, 2}});
  fixedArray.setFixed(true);
  EXPECT_EQ(errorNumber([&] { fixedArray.redim({Bounds{0, 5}}, true); }), ErrorNumber::ArrayFixedOrLocked);
}

TEST(Arrays, CopiesAreIndependentValues) {
  Variant original(VariantArray::fromValues({1, 2, 3}));
  Variant copy = original;
  copy.mutableArray().at(0) = 100;
  EXPECT_EQ(original.array().at(0), Variant(1));
  EXPECT_EQ(copy.array().at(0), Variant(100));

  original.mutableArray().redim({Bounds{0, 0}}, true);
  EXPECT_EQ(copy.array().size(), 3u);

  // Arrays inside arrays are values too.
  Variant outer(VariantArray::fromValues({Variant(VariantArray::fromValues({"in"}))}));
  Variant outerCopy = outer;
  outerCopy.mutableArray().at(0).mutableArray().at(0) = "changed";
  EXPECT_EQ(outer.array().at(0).array().at(0), Variant("in"));
  EXPECT_EQ(outerCopy.array().at(0).array().at(0), Variant("changed"));

  EXPECT_EQ(original.typeName(), QString("Variant()"));
  EXPECT_EQ(original.varType(), 8204);
  EXPECT_EQ(errorNumber([] { Variant(5).array(); }), ErrorNumber::TypeMismatch);
}

} // namespace
} // namespace kordel
