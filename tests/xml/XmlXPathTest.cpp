#include "XmlTestSupport.h"
#include "xml/XPathLiteral.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include <gtest/gtest.h>

namespace kordel {
namespace {

std::shared_ptr<XmlDocument> storeDocument() {
  auto doc = XmlDocument::create();
  doc->loadXML(QStringLiteral("<?xml version=\"1.0\" ?><application>"
                              "<property name=\"top\" value=\"1\"/>"
                              "<section name=\"pages\">"
                              "<property name=\"x\" value=\"first\"/>"
                              "<section name=\"abc\"><section name=\"fields\">"
                              "<property name=\"a\" value=\"A\"/><property name=\"b\" value=\"B\"/>"
                              "</section></section>"
                              "<property name=\"x\" value=\"second\"/>"
                              "</section>"
                              "</application>"));
  return doc;
}

TEST(XmlXPath, PathsOfTheStoreFindTheirNodes) {
  auto doc = storeDocument();
  auto x = doc->selectSingleNode(QStringLiteral("/application/section[@name='pages']/property[@name='x']"));
  ASSERT_TRUE(x);
  EXPECT_EQ(x->getAttribute(QStringLiteral("value")), QStringLiteral("first"));

  auto fields = doc->selectNodes(QStringLiteral("/application/section[attribute::name='pages']/section[attribute::"
                                                "name='abc']/section[attribute::name='fields']/property"));
  ASSERT_EQ(fields->length(), 2);
  EXPECT_EQ(fields->item(0)->getAttribute(QStringLiteral("name")), QStringLiteral("a"));
  EXPECT_EQ(fields->item(1)->getAttribute(QStringLiteral("name")), QStringLiteral("b"));
  EXPECT_FALSE(fields->item(2));

  EXPECT_FALSE(doc->selectSingleNode(QStringLiteral("/application/section[@name='missing']")));
  EXPECT_EQ(doc->selectNodes(QStringLiteral("/application/section[@name='missing']/property"))->length(), 0);
}

TEST(XmlXPath, AnyNodeIsAContext) {
  auto doc = storeDocument();
  auto pages = doc->selectSingleNode(QStringLiteral("/application/section"));
  ASSERT_TRUE(pages);
  EXPECT_EQ(pages->selectNodes(QStringLiteral("property"))->length(), 2);
  EXPECT_EQ(pages->selectNodes(QStringLiteral(".//property"))->length(), 4);
  EXPECT_EQ(pages->selectSingleNode(QStringLiteral("../property"))->getAttribute(QStringLiteral("name")),
            QStringLiteral("top"));

  auto value = pages->selectSingleNode(QStringLiteral("property/@value"));
  ASSERT_TRUE(value);
  EXPECT_EQ(value->nodeType(), XmlNodeType::Attribute);
  EXPECT_EQ(value->nodeValue(), QStringLiteral("first"));

  auto root = doc->selectSingleNode(QStringLiteral("/"));
  ASSERT_TRUE(root);
  EXPECT_EQ(root->nodeType(), XmlNodeType::Document);
}

TEST(XmlXPath, LiteralQuotesEitherWayAndWithConcatForBoth) {
  EXPECT_EQ(xpathLiteral(QStringLiteral("plain")), QStringLiteral("'plain'"));
  EXPECT_EQ(xpathLiteral(QString()), QStringLiteral("''"));
  EXPECT_EQ(xpathLiteral(QStringLiteral("it's")), QStringLiteral("\"it's\""));
  EXPECT_EQ(xpathLiteral(QStringLiteral("say \"hi\"")), QStringLiteral("'say \"hi\"'"));
  EXPECT_EQ(xpathLiteral(QStringLiteral("it's \"x\"")), QStringLiteral("concat('it', \"'\", 's \"x\"')"));
  EXPECT_EQ(xpathLiteral(QStringLiteral("'\"'")), QStringLiteral("concat('', \"'\", '\"', \"'\", '')"));
}

TEST(XmlXPath, LiteralFindsEveryHostileValue) {
  auto doc = XmlDocument::create();
  doc->loadXML(QStringLiteral("<application/>"));
  const QStringList values = test::hostileValues() << QStringLiteral("'\"'") << QStringLiteral("\"'\"");
  for (const QString &value : values) {
    auto property = doc->createElement(QStringLiteral("property"));
    doc->documentElement()->appendChild(property);
    property->setAttribute(QStringLiteral("name"), value);
  }
  for (const QString &value : values) {
    const QString path = QStringLiteral("/application/property[@name=") + xpathLiteral(value) + u']';
    auto found = doc->selectNodes(path);
    ASSERT_EQ(found->length(), 1) << qPrintable(path);
    EXPECT_EQ(found->item(0)->getAttribute(QStringLiteral("name")), value);
  }
}

TEST(XmlXPath, InvalidExpressionsRaiseWithTheirReasonAndPrintNothing) {
  auto doc = storeDocument();
  test::StderrCapture stderrText;

  const QString apostrophe = QStringLiteral("/application/section[@name='it's']");
  Error error = test::errorOf([&] { doc->selectSingleNode(apostrophe); });
  EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
  EXPECT_EQ(error.source(), QStringLiteral("XmlDocument.selectSingleNode"));
  EXPECT_TRUE(error.description().contains(apostrophe)) << qPrintable(error.description());

  error = test::errorOf([&] { doc->selectNodes(QStringLiteral("/application[@name='open")); });
  EXPECT_TRUE(error.description().contains(QStringLiteral("Unfinished literal"))) << qPrintable(error.description());

  const QStringList others = {QStringLiteral("/application["), QStringLiteral("nosuchfunction(1)"),
                              QStringLiteral("x:section"), QStringLiteral(""), QStringLiteral("count(//property)")};
  for (const QString &path : others) {
    error = test::errorOf([&] { doc->documentElement()->selectNodes(path); });
    EXPECT_EQ(error.number(), ErrorNumber::InvalidCall) << qPrintable(path);
    EXPECT_EQ(error.source(), QStringLiteral("XmlNode.selectNodes"));
  }

  EXPECT_TRUE(stderrText.text().isEmpty()) << stderrText.text().constData();
  // The document still answers.
  EXPECT_TRUE(doc->selectSingleNode(QStringLiteral("/application/section")));
}

} // namespace
} // namespace kordel
