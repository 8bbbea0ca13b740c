#include "XmlTestSupport.h"
#include "support/TempDir.h"
#include "xml/XmlDocument.h"
#include "xml/XmlParseError.h"

#include <gtest/gtest.h>

namespace kordel {
namespace {

const QString kBillionLaughs =
    QStringLiteral("<?xml version=\"1.0\"?>\n"
                   "<!DOCTYPE lolz [\n"
                   " <!ENTITY lol \"lol\">\n"
                   " <!ENTITY lol1 \"&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;&lol;\">\n"
                   " <!ENTITY lol2 \"&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;&lol1;\">\n"
                   " <!ENTITY lol3 \"&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;&lol2;\">\n"
                   " <!ENTITY lol4 \"&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;&lol3;\">\n"
                   " <!ENTITY lol5 \"&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;&lol4;\">\n"
                   " <!ENTITY lol6 \"&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;&lol5;\">\n"
                   " <!ENTITY lol7 \"&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;&lol6;\">\n"
                   " <!ENTITY lol8 \"&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;&lol7;\">\n"
                   " <!ENTITY lol9 \"&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;&lol8;\">\n"
                   "]>\n"
                   "<lolz a=\"&lol9;\">&lol9;</lolz>\n");

// The same entities, used only in content.
const QString kLaughsInContent =
    QString(kBillionLaughs).replace(QStringLiteral("<lolz a=\"&lol9;\">"), QStringLiteral("<lolz>"));

const QString kExternalEntity =
    QStringLiteral("<?xml version=\"1.0\"?>\n"
                   "<!DOCTYPE application [<!ENTITY secret SYSTEM \"file:///etc/passwd\">]>\n"
                   "<application value=\"x\">&secret;</application>");

const QString kExternalDtd = QStringLiteral("<!DOCTYPE application SYSTEM \"file:///etc/passwd\"><application/>");

// A document with content, so that a failed load has something to lose.
std::shared_ptr<XmlDocument> documentWithContent() {
  auto doc = XmlDocument::create();
  doc->loadXML(QStringLiteral("<application><section name=\"kept\"/></application>"));
  return doc;
}

TEST(XmlLoadSafety, EntityTricksAreRefusedAndTheDocumentIsKept) {
  test::TempDir dir;
  const QString path = dir.file(QStringLiteral("tricks.xml"));
  test::StderrCapture stderrText;

  // The attribute form comes last: were the refusal gone, an assertion ends
  // the test before that document starts to expand.
  for (const QString &text : {kExternalEntity, kExternalDtd, kLaughsInContent, kBillionLaughs}) {
    auto doc = documentWithContent();
    const QString before = doc->xml();
    Error error = test::errorOf([&] { doc->loadXML(text); });
    ASSERT_EQ(error.number(), ErrorNumber::InvalidCall);
    EXPECT_EQ(error.source(), QStringLiteral("XmlDocument.loadXML"));
    EXPECT_TRUE(error.description().contains(QStringLiteral("Document type declarations are not accepted")))
        << qPrintable(error.description());
    EXPECT_EQ(doc->xml(), before);

    ASSERT_TRUE(test::writeFile(path, text.toUtf8()));
    EXPECT_EQ(test::errorOf([&] { doc->load(path); }).number(), ErrorNumber::InvalidCall);
    EXPECT_EQ(doc->xml(), before);
  }
  EXPECT_TRUE(stderrText.text().isEmpty()) << stderrText.text().constData();
}

TEST(XmlLoadSafety, UndeclaredEntitiesAreRefused) {
  auto doc = documentWithContent();
  Error error = test::errorOf([&] { doc->loadXML(QStringLiteral("<application>&secret;</application>")); });
  EXPECT_TRUE(error.description().contains(QStringLiteral("secret"))) << qPrintable(error.description());
  // The predefined entities and character references are plain text.
  doc->loadXML(QStringLiteral("<a>&lt;&amp;&gt;&quot;&apos;&#x41;&#66;</a>"));
  EXPECT_EQ(doc->documentElement()->text(), QStringLiteral("<&>\"'AB"));
}

TEST(XmlLoadSafety, MalformedDocumentsNameTheFaultAndItsLine) {
  auto doc = documentWithContent();
  auto kept = doc->documentElement()->firstChild();
  test::StderrCapture stderrText;

  Error error =
      test::errorOf([&] { doc->loadXML(QStringLiteral("<application>\n  <section name=\"a\">\n</application>")); });
  EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(error.description().contains(QStringLiteral("Line 3"))) << qPrintable(error.description());
  EXPECT_TRUE(error.description().contains(QStringLiteral("mismatch"))) << qPrintable(error.description());
  EXPECT_EQ(doc->parseError()->line(), 3);
  EXPECT_EQ(doc->parseError()->errorCode(), ErrorNumber::InvalidCall);

  const QStringList malformed = {
      QString(),
      QStringLiteral("   "),
      QStringLiteral("just text"),
      QStringLiteral("<a b=\"1\" b=\"2\"/>"),
      QStringLiteral("<a><x:b/></a>"),
      QStringLiteral("<a/><b/>"),
      QStringLiteral("<a>\x01</a>"),
      QStringLiteral("<a attr=value/>"),
  };
  for (const QString &text : malformed)
    EXPECT_EQ(test::errorOf([&] { doc->loadXML(text); }).number(), ErrorNumber::InvalidCall) << qPrintable(text);

  EXPECT_EQ(doc->documentElement()->firstChild()->getAttribute(QStringLiteral("name")), QStringLiteral("kept"));
  EXPECT_TRUE(kept->isSameNode(*doc->documentElement()->firstChild()));
  EXPECT_TRUE(stderrText.text().isEmpty()) << stderrText.text().constData();

  doc->loadXML(QStringLiteral("<fine/>"));
  EXPECT_EQ(doc->parseError()->errorCode(), 0);
  EXPECT_TRUE(doc->parseError()->reason().isEmpty());
}

TEST(XmlLoadSafety, EncodingComesFromTheBytesForBytesAndIsIgnoredForText) {
  auto doc = XmlDocument::create();
  QByteArray utf16 = QByteArray("\xFF\xFE");
  const QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-16\"?><a>åäö 😀</a>");
  utf16.append(reinterpret_cast<const char *>(text.utf16()), text.size() * 2);
  doc->load(utf16);
  EXPECT_EQ(doc->documentElement()->text(), QStringLiteral("åäö 😀"));

  doc->load(QByteArray("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xE5\xE4\xF6</a>"));
  EXPECT_EQ(doc->documentElement()->text(), QStringLiteral("åäö"));

  doc->loadXML(QStringLiteral("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>åäö</a>"));
  EXPECT_EQ(doc->documentElement()->text(), QStringLiteral("åäö"));
}

} // namespace
} // namespace kordel
