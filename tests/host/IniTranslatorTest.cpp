#include "support/ErrorCapture.h"
#include "host/IniTranslator.h"

#include "core/Error.h"
#include "support/TempDir.h"

#include <QDir>

#include <gtest/gtest.h>

using kordel::Error;
using kordel::Variant;
using kordel::host::IniTranslator;
using kordel::test::errorNumber;
using kordel::test::TempDir;

namespace {

// A translation folder with an English and a Swedish file.
class TranslationFolder : public ::testing::Test {
protected:
  void SetUp() override {
    ASSERT_TRUE(kordel::test::writeFile(dir.file(QStringLiteral("kordel.en.ini")),
                                        "[kordel]\n"
                                        "Addin.Name = Standard reports\n"
                                        "Report.NoPrinter = No printer was found.\n"
                                        "Globals.ErrorMessage = %1%0Error %2 in %3\n"
                                        "[other]\n"
                                        "Addin.Name = Not this one\n"));
    ASSERT_TRUE(kordel::test::writeFile(dir.file(QStringLiteral("kordel.sv.ini")),
                                        "[kordel]\n"
                                        "Addin.Name = Standardrapporter\n"
                                        "Globals.ErrorMessage = %1%0Fel %2 i %3\n"));
  }

  std::shared_ptr<IniTranslator> loaded(const QString &language) {
    auto translator = std::make_shared<IniTranslator>();
    translator->set(QStringLiteral("TranslationFolder"), Variant(dir.path()));
    translator->invoke(QStringLiteral("LoadSection"), {QStringLiteral("kordel"), language});
    return translator;
  }

  QString translate(const std::shared_ptr<IniTranslator> &translator, const QString &key) {
    return translator->invoke(QStringLiteral("TranslateKey"), {key}).toString();
  }

  TempDir dir;
};

} // namespace

TEST_F(TranslationFolder, LooksKeysUpWithoutRegardToCase) {
  const auto swedish = loaded(QStringLiteral("sv"));
  EXPECT_EQ(translate(swedish, QStringLiteral("Addin.Name")), QStringLiteral("Standardrapporter"));
  EXPECT_EQ(translate(swedish, QStringLiteral("ADDIN.name")), QStringLiteral("Standardrapporter"));
  EXPECT_EQ(translate(swedish, QStringLiteral("Globals.ErrorMessage")), QStringLiteral("%1%0Fel %2 i %3"));
  EXPECT_EQ(swedish->get(QStringLiteral("TranslationFolder")).toString(), dir.path());
}

TEST_F(TranslationFolder, FallsBackToEnglishThenToTheKey) {
  const auto swedish = loaded(QStringLiteral("sv"));
  EXPECT_EQ(translate(swedish, QStringLiteral("Report.NoPrinter")), QStringLiteral("No printer was found."));
  EXPECT_EQ(translate(swedish, QStringLiteral("Report.Missing")), QStringLiteral("Report.Missing"));

  const auto german = loaded(QStringLiteral("de"));
  EXPECT_EQ(translate(german, QStringLiteral("Addin.Name")), QStringLiteral("Standard reports"));
}

TEST_F(TranslationFolder, RegionalLanguageCodesUseTheirLanguage) {
  for (const QString &code : {QStringLiteral("sv-SE"), QStringLiteral("sv_SE"), QStringLiteral("SV")})
    EXPECT_EQ(translate(loaded(code), QStringLiteral("Addin.Name")), QStringLiteral("Standardrapporter"))
        << code.toStdString();
}

TEST_F(TranslationFolder, OnlyTheLoadedSectionCounts) {
  const auto english = loaded(QStringLiteral("en"));
  EXPECT_EQ(translate(english, QStringLiteral("Addin.Name")), QStringLiteral("Standard reports"));
  english->loadSection(QStringLiteral("other"), QStringLiteral("en"));
  EXPECT_EQ(translate(english, QStringLiteral("Addin.Name")), QStringLiteral("Standard reports"))
      << "the section loaded first answers first";
  EXPECT_EQ(errorNumber([&] { english->loadSection(QStringLiteral("absent"), QStringLiteral("en")); }), 5);
}

TEST_F(TranslationFolder, AFolderWrittenWithBackslashesIsFound) {
  IniTranslator translator;
  translator.setTranslationFolder(QString(dir.path()).replace(u'/', u'\\'));
  translator.loadSection(QStringLiteral("kordel"), QStringLiteral("sv"));
  EXPECT_EQ(translator.translateKey(QStringLiteral("Addin.Name")), QStringLiteral("Standardrapporter"));
}

TEST(IniTranslator, MissingFolderOrFilesRaise53) {
  TempDir dir;
  IniTranslator translator;
  EXPECT_EQ(errorNumber([&] { translator.loadSection(QStringLiteral("kordel"), QStringLiteral("en")); }), 53);
  translator.setTranslationFolder(dir.file(QStringLiteral("translation")));
  EXPECT_EQ(errorNumber([&] { translator.loadSection(QStringLiteral("kordel"), QStringLiteral("en")); }), 53);
  translator.setTranslationFolder(dir.path());
  EXPECT_EQ(errorNumber([&] { translator.loadSection(QStringLiteral("kordel"), QStringLiteral("sv")); }), 53);
  EXPECT_EQ(translator.translateKey(QStringLiteral("Addin.Name")), QStringLiteral("Addin.Name"));
}

TEST(IniTranslator, ABrokenTranslationFileIsReported) {
  TempDir dir;
  ASSERT_TRUE(kordel::test::writeFile(dir.file(QStringLiteral("kordel.en.ini")), "[kordel]\nno equals sign\n"));
  IniTranslator translator;
  translator.setTranslationFolder(dir.path());
  EXPECT_EQ(errorNumber([&] { translator.loadSection(QStringLiteral("kordel"), QStringLiteral("en")); }), 321);
}
