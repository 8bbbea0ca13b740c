#include "support/QtPrinters.h"

#include "document/PropertyStorage.h"
#include "support/ErrorCapture.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::errorNumber;
using kordel::test::TempDir;

namespace {

QString savedText(PropertyStorage &store, const TempDir &dir) {
  const QString path = dir.file("store.xml");
  store.Save(path);
  return QString::fromUtf8(kordel::test::readFile(path));
}

QStringList items(const StringCollection &collection) {
  QStringList out;
  for (int i = 1; i <= collection.Count(); ++i)
    out << collection.Item(i);
  return out;
}

} // namespace

TEST(PropertyStorage, WritesNestedSectionsAndReadsThemBack) {
  TempDir dir;
  PropertyStorage store;
  EXPECT_FALSE(store.Modified());
  EXPECT_EQ(store.GetSetting("pages\\abc", "Name", "none"), "none");
  store.PutSetting("pages\\abc", "Name", "Customers");
  EXPECT_TRUE(store.Modified());
  EXPECT_EQ(savedText(store, dir), "<?xml version=\"1.0\"?>\n<application><section name=\"pages\"><section "
                                   "name=\"abc\"><property name=\"Name\" value=\"Customers\"/></section></section>"
                                   "</application>\n");
  EXPECT_FALSE(store.Modified());

  // Blank and empty levels address the same element.
  store.PutSetting(" pages \\\\ abc ", "Class", "company");
  EXPECT_EQ(store.GetSetting("pages\\abc", "Class"), "company");
  EXPECT_EQ(items(*store.GetSettingNames("pages\\abc")), QStringList({"Name", "Class"}));
  EXPECT_EQ(items(*store.GetSectionNames("pages")), QStringList({"abc"}));
  EXPECT_EQ(store.GetSectionNames("pages\\abc")->Count(), 0);

  // An empty path puts the setting straight under the root.
  store.PutSetting("", "Version", "2");
  EXPECT_TRUE(savedText(store, dir).contains("<property name=\"Version\" value=\"2\"/></application>"));
}

TEST(PropertyStorage, CarriageReturnsAreEncodedWithoutEscape) {
  TempDir dir;
  PropertyStorage store;
  store.PutSetting("a", "text", "one\r\ntwo\nthree");
  store.PutSetting("a", "marker", "literal \\C013\\ marker");
  const QString xml = savedText(store, dir);
  EXPECT_TRUE(xml.contains("one\\C013\\&#10;two&#10;three")) << xml.toStdString();

  PropertyStorage loaded;
  loaded.Load(dir.file("store.xml"));
  EXPECT_EQ(loaded.GetSetting("a", "text"), "one\r\ntwo\nthree");
  EXPECT_EQ(loaded.GetSetting("a", "marker"), "literal \r marker");
  EXPECT_EQ(errorNumber([&] { loaded.PutSetting("a\rb", "k", "v"); }), ErrorNumber::CarriageReturnInPath);
  EXPECT_EQ(errorNumber([&] { loaded.GetSetting("x\\a\rb", "k"); }), ErrorNumber::CarriageReturnInPath);
  EXPECT_FALSE(loaded.Exists("a\rb", "k")); // Exists does not check the path
}

TEST(PropertyStorage, HostileValuesSurviveSaveAndLoadByteForByte) {
  TempDir dir;
  const QStringList values = {"",
                              "tab\there",
                              "<b>&amp;</b> \"quoted\" 'single'",
                              QString::fromUtf8("Åsa Öberg, Straße, Žluťoučký kůň 🎉"),
                              "\n\n",
                              "  spaces  ",
                              "=%1%0;,\\"};
  PropertyStorage store;
  for (int i = 0; i < values.size(); ++i)
    store.PutSetting("values", QString("v%1").arg(i), values[i]);
  store.PutResource("layout", QByteArray("\x00\x01\xff layout bytes", 17));
  const QString first = savedText(store, dir);

  PropertyStorage loaded;
  loaded.Load(dir.file("store.xml"));
  for (int i = 0; i < values.size(); ++i)
    EXPECT_EQ(loaded.GetSetting("values", QString("v%1").arg(i)), values[i]) << i;
  EXPECT_EQ(loaded.GetResource("layout").toBytes(), QByteArray("\x00\x01\xff layout bytes", 17));
  const QString again = dir.file("again.xml");
  loaded.Save(again);
  EXPECT_EQ(kordel::test::readFile(again), kordel::test::readFile(dir.file("store.xml")));
  EXPECT_FALSE(first.isEmpty());
}

TEST(PropertyStorage, TheReadCacheFollowsThePathAsWritten) {
  PropertyStorage store;
  store.PutSetting("a\\b", "k", "1");
  EXPECT_EQ(store.GetSetting("a\\b", "k"), "1"); // now cached under "a\b"
  store.PutSetting(" a \\ b ", "k", "2");        // the same element, another cache key
  EXPECT_EQ(store.GetSetting("a\\b", "k"), "1"); // the cached entry is not refreshed
  EXPECT_EQ(store.GetSetting(" a \\ b ", "k"), "2");
  store.PutSetting("a\\b", "k", "3"); // a write refreshes its own cached entry
  EXPECT_EQ(store.GetSetting("a\\b", "k"), "3");

  // A default is not cached: the value written later is found.
  EXPECT_EQ(store.GetSetting("a", "missing", "dflt"), "dflt");
  store.PutSetting("a", "missing", "now");
  EXPECT_EQ(store.GetSetting("a", "missing", "dflt"), "now");
}

TEST(PropertyStorage, CacheSurvivesLoadAndDeleteSectionIgnoresCase) {
  TempDir dir;
  PropertyStorage other;
  other.PutSetting("Pages\\P1", "Name", "from file");
  other.Save(dir.file("other.xml"));

  PropertyStorage store;
  store.PutSetting("Pages\\P1", "Name", "cached");
  EXPECT_EQ(store.GetSetting("Pages\\P1", "Name"), "cached");
  store.Load(dir.file("other.xml"));
  EXPECT_FALSE(store.Modified());
  EXPECT_EQ(store.GetSetting("Pages\\P1", "Name"), "cached"); // the cache shadows the new document

  // The XML lookup is case-sensitive and removes nothing, but the cache
  // entries of the stored path go.
  store.DeleteSection("PAGES");
  EXPECT_TRUE(store.Modified());
  EXPECT_EQ(store.GetSetting("Pages\\P1", "Name"), "from file");
  store.DeleteSection("Pages");
  EXPECT_EQ(store.GetSetting("Pages\\P1", "Name", "gone"), "gone");
}

TEST(PropertyStorage, ResourcesAreAddedNeverReplaced) {
  PropertyStorage store;
  EXPECT_TRUE(store.GetResource("layout").isEmpty());
  store.PutResource("layout", "first");
  store.PutResource("layout", "second");
  EXPECT_EQ(store.GetResource("layout").toBytes(), QByteArray("first"));
  EXPECT_TRUE(store.Exists("resources", "layout"));
  EXPECT_FALSE(store.Exists("", "layout"));
  EXPECT_FALSE(store.Exists("pages", "layout"));
  store.DeleteResource("layout");
  EXPECT_EQ(store.GetResource("layout").toBytes(), QByteArray("second"));
  // A resource has no value: reading it as a setting fails.
  EXPECT_EQ(errorNumber([&] { store.GetSetting("resources", "layout"); }), ErrorNumber::ObjectRequired);
}

TEST(PropertyStorage, ClearKeepsModifiedAndGivesAFreshDocument) {
  PropertyStorage store;
  store.PutSetting("a", "k", "v");
  store.Clear();
  EXPECT_TRUE(store.Modified());
  EXPECT_EQ(store.GetSetting("a", "k", "none"), "none");
}

TEST(PropertyStorage, AnUnreadableSourceLeavesADocumentWithoutRoot) {
  TempDir dir;
  kordel::test::writeFile(dir.file("broken.xml"), "<application><section name=\"a\">");
  PropertyStorage store;
  store.PutSetting("a", "k", "v");
  store.Load(dir.file("broken.xml"));
  EXPECT_FALSE(store.Modified());
  EXPECT_EQ(store.GetSetting("b", "k", "dflt"), "dflt");
  EXPECT_EQ(store.GetSectionNames("")->Count(), 0);
  EXPECT_NE(errorNumber([&] { store.PutSetting("b", "k", "v"); }), 0);
  EXPECT_NE(errorNumber([&] { store.PutResource("r", "x"); }), 0);
}

TEST(PropertyStorage, ApostrophesAndEqualValuesFail) {
  PropertyStorage store;
  EXPECT_NE(errorNumber([&] { store.PutSetting("it's", "k", "v"); }), 0);
  EXPECT_NE(errorNumber([&] { store.GetSetting("a", "o'clock"); }), 0);
  store.PutSetting("subs", "one", "same");
  store.PutSetting("subs", "two", "same");
  EXPECT_EQ(errorNumber([&] { store.GetSection("subs"); }), ErrorNumber::DuplicateKey);
  store.PutSetting("subs", "two", "different");
  EXPECT_EQ(items(*store.GetSection("subs")), QStringList({"same", "different"}));
}

// Lookups follow the document through its changes: of namesakes the first
// in document order counts until it is deleted, a deleted section takes
// everything below it along, and a section made again starts empty.
TEST(PropertyStorage, LookupsFollowNamesakesDeletionsAndNewSections) {
  PropertyStorage store;
  store.Load(QByteArray("<application><section name='pages'><section name='a'><property name='k' value='1'/>"
                        "</section><section name='a'><property name='k' value='2'/><property name='j' "
                        "value='3'/></section></section></application>"));
  EXPECT_EQ(store.GetSetting("pages\\a", "k"), "1");
  EXPECT_EQ(store.GetSetting("pages\\ a ", "j", "none"), "none") << "the first section a has no j";
  store.DeleteSection("pages\\a");
  EXPECT_EQ(store.GetSetting("pages\\a", "j"), "3") << "the second a counts now";
  store.DeleteSection("pages");
  EXPECT_FALSE(store.Exists("pages\\a", "k"));
  store.PutSetting("pages\\a", "k", "new");
  EXPECT_EQ(store.GetSetting("pages\\a", "k"), "new");
  EXPECT_EQ(items(*store.GetSettingNames("pages\\a")), QStringList{"k"});
  store.DeleteSetting("pages\\a", "k");
  store.PutSetting("pages\\a", "k", "again");
  EXPECT_EQ(store.GetSetting("pages\\a", "k", "none"), "again");
}
