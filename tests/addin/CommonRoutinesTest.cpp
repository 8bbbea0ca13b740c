#include "support/QtPrinters.h"
#include "common/Globals.h"
#include "common/Settings.h"

#include <QComboBox>
#include <QDir>
#include <QScreen>
#include <QWidget>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;

TEST(GetToken, FirstOrFirstNonEmptyPiece) {
  EXPECT_EQ(GetToken("name]rest", "]", true), "name");
  EXPECT_EQ(GetToken("]]b]c", "]", true), "");
  EXPECT_EQ(GetToken("]]b]c", "]", false), "b");
  EXPECT_EQ(GetToken("]]]", "]", false), "");
  EXPECT_EQ(GetToken("", "]", true), "");
  EXPECT_EQ(GetToken("no separator", "]", true), "no separator");
}

TEST(NormaliseName, KeepsOnlyTheLettersOfItsAlphabet) {
  // The alphabet lacks "w" and the digits on purpose.
  EXPECT_EQ(NormaliseName(QString::fromUtf8("Wå 1")), "a");
  EXPECT_EQ(NormaliseName(QString::fromUtf8("Åsa Öberg-Ärlig")), "AsaObergArlig");
  EXPECT_EQ(NormaliseName("w1 2W#"), "");
  EXPECT_EQ(NormaliseName("Company name"), "Companyname");
  EXPECT_EQ(NormaliseName(QString::fromUtf8("Čeněk")), "enk");
  EXPECT_EQ(NormaliseName(""), "");
}

TEST(CleanFileName, RemovesReservedCharactersButNotQuotes) {
  EXPECT_EQ(CleanFileName("a:b/c"), "abc");
  EXPECT_EQ(CleanFileName(R"(x\y|z*?<>"q")"), "xyz\"q\"");
  EXPECT_EQ(CleanFileName(""), "");
}

TEST(RemovePrefixOnce, RemovesOneOccurrenceAnywhereIgnoringCase) {
  EXPECT_EQ(RemovePrefixOnce("vbscript:x", "VBSCRIPT:"), "x");
  EXPECT_EQ(RemovePrefixOnce("a vbscript:vbscript:b", "vbscript:"), "a vbscript:b");
  EXPECT_EQ(RemovePrefixOnce("plain", "vbscript:"), "plain");
}

TEST(RegistryPath, SkipsEmptyElementsAndEscapesBackslashes) {
  EXPECT_EQ(RegistryPath("Root", {Variant("a\\b"), Variant(""), Variant("Page Setup")}), "Root\\a-b\\Page Setup");
  EXPECT_EQ(RegistryPath("Root", {}), "Root");
  EXPECT_EQ(RegistryPath("Root", {Variant(7)}), "Root\\7");
}

TEST(GetMessageWithoutTranslator, GivesTheBareItemAndStillReplaces) {
  EXPECT_EQ(GetMessage("Report.NoPrinter"), "NoPrinter");
  EXPECT_EQ(GetMessage("Form.Control.Extra"), "Control");
  EXPECT_EQ(GetMessage("NoDotAtAll"), "");
  // With no translator the item itself is the text, so placeholders in
  // the item are replaced too, in order.
  EXPECT_EQ(GetMessage("X.%1-%2", "A%2", "B"), "AB-B");
  EXPECT_EQ(GetMessage("X.a%0b"), "a\r\nb");
}

TEST(SelectComboItem, SelectsTheTextOrFallsBackToTheIndex) {
  QComboBox combo;
  SelectComboItem(combo, "x", 0); // no entries: nothing happens
  EXPECT_EQ(combo.currentIndex(), -1);

  combo.addItems({"Alpha", "Beta", "Gamma"});
  SelectComboItem(combo, "beta", 2);
  EXPECT_EQ(combo.currentIndex(), 1);
  SelectComboItem(combo, "missing", 2);
  EXPECT_EQ(combo.currentIndex(), 2);
  SelectComboItem(combo, "", 0);
  EXPECT_EQ(combo.currentIndex(), 0);
  SelectComboItem(combo, "missing", 17); // an index out of range is ignored
  EXPECT_EQ(combo.currentIndex(), -1);
}

TEST(CenterForm, PutsTheWindowAThirdDown) {
  QWidget form;
  form.resize(300, 120);
  CenterForm(form);
  const QRect screen = form.screen()->geometry();
  EXPECT_EQ(form.x(), screen.left() + (screen.width() - 300) / 2);
  EXPECT_EQ(form.y(), screen.top() + (screen.height() - 120) / 3);
}

TEST(MyDocumentsFolder, KeepsTheUncutBuffer) {
  const QString folder = MyDocumentsFolder();
  ASSERT_EQ(folder.size(), 512);
  const QString path = folder.left(folder.indexOf(QChar(0)));
  EXPECT_FALSE(path.isEmpty());
  EXPECT_FALSE(path.endsWith(u'/'));
  EXPECT_TRUE(QDir::isAbsolutePath(path));
}
