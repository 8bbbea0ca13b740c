#include "XmlTestSupport.h"
#include "support/TempDir.h"
#include "xml/XmlDocument.h"
#include "xml/XmlParseError.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace kordel {
namespace {

std::shared_ptr<XmlDocument> smallDocument() {
  auto doc = XmlDocument::create();
  doc->loadXML(QStringLiteral("<application><section name=\"s\"/></application>"));
  return doc;
}

TEST(XmlFile, SavingIntoAMissingFolderFailsAndCreatesNothing) {
  test::TempDir dir;
  const QString folder = dir.file(QStringLiteral("missing"));
  Error error = test::errorOf([&] { smallDocument()->save(folder + QStringLiteral("/store.xml")); });
  EXPECT_EQ(error.number(), ErrorNumber::PathNotFound);
  EXPECT_EQ(error.source(), QStringLiteral("XmlDocument.save"));
  EXPECT_FALSE(QFileInfo::exists(folder));
  EXPECT_TRUE(QDir(dir.path()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST(XmlFile, SavingOntoAFolderFailsAndLeavesIt) {
  test::TempDir dir;
  ASSERT_TRUE(QDir(dir.path()).mkdir(QStringLiteral("store.xml")));
  EXPECT_EQ(test::errorOf([&] { smallDocument()->save(dir.file(QStringLiteral("store.xml"))); }).number(),
            ErrorNumber::PermissionDenied);
  EXPECT_TRUE(QFileInfo(dir.file(QStringLiteral("store.xml"))).isDir());
}

TEST(XmlFile, SaveReplacesTheFileAndLeavesNothingElse) {
  test::TempDir dir;
  const QString path = dir.file(QStringLiteral("store.xml"));
  ASSERT_TRUE(test::writeFile(path, QByteArray(5000, 'x')));
  auto doc = smallDocument();
  doc->save(path);

  EXPECT_EQ(test::readFile(path), doc->xml().toUtf8());
  EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
            QStringList{QStringLiteral("store.xml")});
}

TEST(XmlFile, ADocumentWithoutRootIsNotSaved) {
  test::TempDir dir;
  const QString path = dir.file(QStringLiteral("empty.xml"));
  EXPECT_EQ(test::errorOf([&] { XmlDocument::create()->save(path); }).number(), ErrorNumber::InvalidCall);
  EXPECT_FALSE(QFileInfo::exists(path));
}

TEST(XmlFile, LoadingWhatIsNotThereKeepsTheDocument) {
  test::TempDir dir;
  auto doc = smallDocument();
  const QString before = doc->xml();

  Error error = test::errorOf([&] { doc->load(dir.file(QStringLiteral("none.xml"))); });
  EXPECT_EQ(error.number(), ErrorNumber::FileNotFound);
  EXPECT_EQ(error.source(), QStringLiteral("XmlDocument.load"));
  EXPECT_EQ(doc->parseError()->errorCode(), ErrorNumber::FileNotFound);
  EXPECT_EQ(test::errorOf([&] { doc->load(dir.path()); }).number(), ErrorNumber::PermissionDenied);
  EXPECT_EQ(doc->xml(), before);
}

} // namespace
} // namespace kordel
