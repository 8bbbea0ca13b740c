// Scripting.Dictionary: order, keys by kind and compare mode, its errors,
// and the same members reached late-bound, as scripts reach them.

#include "CoreFixtures.h"

#include "core/Dictionary.h"
#include "core/Error.h"

namespace kordel {
namespace {

using test::errorNumber;

std::vector<Variant> keysOf(const Dictionary &d) { return d.keys(); }

TEST(DictionaryTest, KeepsInsertionOrder) {
  Dictionary d;
  d.add("b", 1);
  d.add("a", 2);
  d.add("c", 3);
  EXPECT_EQ(keysOf(d), (std::vector<Variant>{"b", "a", "c"}));
  EXPECT_EQ(d.items(), (std::vector<Variant>{1, 2, 3}));
  d.remove("a");
  d.add("a", 4);
  EXPECT_EQ(keysOf(d), (std::vector<Variant>{"b", "c", "a"}));
  // Lookups stay right after a removal shifted the entries.
  EXPECT_EQ(d.item("c"), Variant(3));
  EXPECT_EQ(d.item("a"), Variant(4));
  EXPECT_EQ(d.keyAt(2), Variant("a"));
  EXPECT_EQ(d.itemAt(0), Variant(1));

  auto walk = d.enumerate();
  std::vector<Variant> walked;
  Variant key;
  while (walk->next(key))
    walked.push_back(key);
  EXPECT_EQ(walked, keysOf(d));
}

TEST(DictionaryTest, KeysCompareByKind) {
  Dictionary d;
  d.add(1, "one");
  EXPECT_TRUE(d.exists(1.0));
  EXPECT_TRUE(d.exists(std::int16_t(1)));
  EXPECT_TRUE(d.exists(Variant(Currency{10000})));
  EXPECT_FALSE(d.exists("1"));
  d.add("1", "text one");
  EXPECT_EQ(d.count(), 2);
  EXPECT_EQ(errorNumber([&] { d.add(1.0, "again"); }), ErrorNumber::DuplicateKey);
  d.add(0.0, "zero");
  EXPECT_TRUE(d.exists(-0.0));
  EXPECT_TRUE(d.exists(Variant(Date{0.0}))); // a date is the number of its serial
  d.add(true, "true");
  EXPECT_TRUE(d.exists(-1)); // True is -1
  // Empty, Null and the empty string are three keys.
  d.add(Variant(), "empty");
  EXPECT_FALSE(d.exists(Variant::null()));
  EXPECT_FALSE(d.exists(""));
  d.add(Variant::null(), "null");
  d.add("", "empty string");
  EXPECT_EQ(d.item(Variant()), Variant("empty"));

  auto a = std::make_shared<test::ValueObject>(Variant(1));
  auto b = std::make_shared<test::ValueObject>(Variant(1));
  d.add(Variant(a), "object a");
  EXPECT_TRUE(d.exists(Variant(a)));
  EXPECT_FALSE(d.exists(Variant(b))); // objects by identity, not by default value
}

TEST(DictionaryTest, BinaryAndTextCompareMode) {
  Dictionary binary;
  binary.add("Key", 1);
  binary.add("key", 2);
  EXPECT_EQ(binary.count(), 2);
  EXPECT_FALSE(binary.exists("KEY"));

  Dictionary text;
  text.setCompareMode(CompareMode::Text);
  text.add("Key", 1);
  EXPECT_TRUE(text.exists("KEY"));
  EXPECT_EQ(text.item("kEY"), Variant(1));
  EXPECT_EQ(errorNumber([&] { text.add("KEY", 2); }), ErrorNumber::DuplicateKey);
  EXPECT_EQ(keysOf(text), (std::vector<Variant>{"Key"})); // the key keeps its first spelling
  text.add(QString::fromUtf8("Åsa"), 2);
  EXPECT_EQ(text.item(QString::fromUtf8("åSA")), Variant(2));
  // The mode is fixed once the dictionary holds something.
  EXPECT_EQ(errorNumber([&] { text.setCompareMode(CompareMode::Binary); }), ErrorNumber::InvalidCall);
  text.removeAll();
  text.setCompareMode(CompareMode::Binary);
  EXPECT_EQ(text.compareMode(), CompareMode::Binary);
}

TEST(DictionaryTest, MissingKeys) {
  Dictionary d;
  d.add("a", 1);
  EXPECT_EQ(errorNumber([&] { d.add("a", 2); }), ErrorNumber::DuplicateKey);
  EXPECT_EQ(d.item("a"), Variant(1)); // the failed Add changed nothing
  EXPECT_EQ(errorNumber([&] { d.remove("missing"); }), ErrorNumber::ElementNotFound);
  EXPECT_EQ(d.count(), 1);

  // Reading Item of a missing key adds it with Empty.
  EXPECT_TRUE(d.item("new").isEmpty());
  EXPECT_EQ(d.count(), 2);
  EXPECT_TRUE(d.exists("new"));
  // value() reads without that side effect.
  EXPECT_EQ(d.value("other", "fallback"), Variant("fallback"));
  EXPECT_FALSE(d.exists("other"));

  d.setItem("set", 5); // writing Item of a missing key adds it
  EXPECT_EQ(d.item("set"), Variant(5));
  d.setItem("set", 6);
  EXPECT_EQ(d.item("set"), Variant(6));
  EXPECT_EQ(d.count(), 3);
}

TEST(DictionaryTest, RenamingAKeyKeepsItsPlaceAndItem) {
  Dictionary d;
  d.add("a", 1);
  d.add("b", 2);
  d.add("c", 3);
  d.renameKey("b", "z");
  EXPECT_EQ(keysOf(d), (std::vector<Variant>{"a", "z", "c"}));
  EXPECT_EQ(d.item("z"), Variant(2));
  EXPECT_FALSE(d.exists("b"));
  EXPECT_EQ(errorNumber([&] { d.renameKey("a", "c"); }), ErrorNumber::DuplicateKey);
  EXPECT_EQ(errorNumber([&] { d.renameKey("missing", "q"); }), ErrorNumber::ElementNotFound);
  d.remove("a");
  EXPECT_EQ(d.item("z"), Variant(2));
  EXPECT_EQ(d.item("c"), Variant(3));
}

TEST(DictionaryTest, LateBoundMembersIgnoreCase) {
  auto d = std::make_shared<Dictionary>();
  Object &object = *d;
  object.invoke("ADD", {"k", 1});
  object.invoke("add", {"j", 2});
  EXPECT_EQ(object.get("Count"), Variant(2));
  EXPECT_EQ(object.get("COUNT"), Variant(2));
  EXPECT_EQ(object.invoke("Item", {"k"}), Variant(1));
  EXPECT_EQ(object.invoke("exists", {"j"}), Variant(true));
  EXPECT_EQ(object.invoke("Exists", {"x"}), Variant(false));

  // The default member is Item: d("k") and d("k") = value.
  EXPECT_EQ(object.invoke("", {"j"}), Variant(2));
  Args key{"k"};
  object.set("", key, "changed");
  EXPECT_EQ(d->item("k"), Variant("changed"));
  Args itemKey{"new"};
  object.set("item", itemKey, 9);
  EXPECT_EQ(d->item("new"), Variant(9));

  Args renamed{"new"};
  object.set("KEY", renamed, "renamed");
  EXPECT_TRUE(d->exists("renamed"));

  const Variant keys = object.invoke("Keys");
  ASSERT_TRUE(keys.isArray());
  EXPECT_EQ(keys.array().elements(), (std::vector<Variant>{"k", "j", "renamed"}));
  EXPECT_EQ(keys.array().lowerBound(), 0);
  EXPECT_EQ(object.invoke("items").array().at(2), Variant(9));

  object.invoke("Remove", {"k"});
  EXPECT_EQ(d->count(), 2);
  object.invoke("RemoveAll");
  EXPECT_EQ(d->count(), 0);
  object.set("CompareMode", 1);
  EXPECT_EQ(object.get("comparemode"), Variant(1));
  object.invoke("Add", {"Mixed", 1});
  EXPECT_EQ(object.invoke("Exists", {"MIXED"}), Variant(true));

  EXPECT_TRUE(object.hasMember("removeall"));
  EXPECT_FALSE(object.hasMember("Frobnicate"));
  EXPECT_EQ(object.typeName(), QString("Dictionary"));
  EXPECT_EQ(Variant(d).typeName(), QString("Dictionary"));
}

TEST(DictionaryTest, LateBoundErrors) {
  auto d = std::make_shared<Dictionary>();
  Object &object = *d;
  EXPECT_EQ(errorNumber([&] { object.invoke("Frobnicate"); }), ErrorNumber::NoSuchMember);
  EXPECT_EQ(errorNumber([&] { object.set("Frobnicate", 1); }), ErrorNumber::NoSuchMember);
  EXPECT_EQ(errorNumber([&] { object.set("Count", 1); }), ErrorNumber::NoSuchMember);
  EXPECT_EQ(errorNumber([&] { object.invoke("Add", {"only key"}); }), ErrorNumber::WrongArgumentCount);
  EXPECT_EQ(errorNumber([&] { object.invoke("Exists"); }), ErrorNumber::WrongArgumentCount);
  object.invoke("Add", {"a", 1});
  EXPECT_EQ(errorNumber([&] { object.invoke("Add", {"a", 2}); }), ErrorNumber::DuplicateKey);
  EXPECT_EQ(errorNumber([&] { object.invoke("Remove", {"b"}); }), ErrorNumber::ElementNotFound);
  EXPECT_EQ(errorNumber([&] { object.set("CompareMode", 1); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(errorNumber([&] {
              object.invoke("Add", {Variant(VariantArray::fromValues({1})), 1});
            }),
            ErrorNumber::InvalidCall);
  try {
    object.invoke("Frobnicate");
  } catch (const Error &error) {
    EXPECT_EQ(error.source(), QString("Dictionary"));
    EXPECT_TRUE(error.description().contains("Frobnicate"));
  }
}

} // namespace
} // namespace kordel
