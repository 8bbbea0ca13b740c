#include "XmlTestSupport.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include <gtest/gtest.h>

namespace kordel {
namespace {

std::shared_ptr<XmlDocument> load(const QString &text) {
  auto doc = XmlDocument::create();
  doc->loadXML(text);
  return doc;
}

QStringList attributeNames(const XmlNode &element) {
  QStringList names;
  auto attributes = element.attributes();
  for (int i = 0; i < attributes->length(); ++i)
    names << attributes->item(i)->nodeName();
  return names;
}

TEST(XmlTreeEdit, RemovedNodesStayUsableAndCanComeBack) {
  auto doc = load(QStringLiteral("<application><section name=\"a\"><property name=\"p\" value=\"v\"/></section>"
                                 "<section name=\"b\"/></application>"));
  auto root = doc->documentElement();
  auto section = root->firstChild();
  auto property = section->firstChild();

  EXPECT_TRUE(root->removeChild(section)->isSameNode(*section));
  EXPECT_FALSE(section->parentNode());
  EXPECT_EQ(root->childNodes()->length(), 1);
  EXPECT_EQ(section->xml(), QStringLiteral("<section name=\"a\"><property name=\"p\" value=\"v\"/></section>"));
  EXPECT_EQ(property->getAttribute(QStringLiteral("value")), QStringLiteral("v"));
  EXPECT_EQ(test::errorOf([&] { root->removeChild(section); }).number(), ErrorNumber::InvalidCall);

  // A child of the removed subtree moves back into the document alone.
  root->firstChild()->appendChild(property);
  EXPECT_EQ(doc->xml(), QStringLiteral("<?xml version=\"1.0\"?>\n<application><section name=\"b\"><property "
                                       "name=\"p\" value=\"v\"/></section></application>\n"));
  root->insertBefore(section, root->firstChild());
  EXPECT_EQ(root->firstChild()->getAttribute(QStringLiteral("name")), QStringLiteral("a"));
  EXPECT_FALSE(section->hasChildNodes());
}

TEST(XmlTreeEdit, NodesOutliveTheirDocumentAndItsReloads) {
  std::shared_ptr<XmlNode> removed;
  std::shared_ptr<XmlNode> attached;
  {
    auto doc = load(QStringLiteral("<application><a x=\"1\"/><b>text</b></application>"));
    removed = doc->documentElement()->removeChild(doc->documentElement()->firstChild());
    attached = doc->documentElement()->firstChild();
    auto created = doc->createElement(QStringLiteral("never_appended"));

    doc->loadXML(QStringLiteral("<other/>"));
    EXPECT_EQ(attached->text(), QStringLiteral("text"));
    Error error = test::errorOf([&] { doc->documentElement()->appendChild(removed); });
    EXPECT_TRUE(error.description().contains(QStringLiteral("another document")));
  }
  EXPECT_EQ(removed->xml(), QStringLiteral("<a x=\"1\"/>"));
  EXPECT_EQ(attached->parentNode()->nodeName(), QStringLiteral("application"));
}

TEST(XmlTreeEdit, AttributesKeepTheirOrderAndRemovedOnesStayReadable) {
  auto doc = load(QStringLiteral("<application/>"));
  auto root = doc->documentElement();
  root->setAttribute(QStringLiteral("name"), QStringLiteral("n"));
  root->setAttribute(QStringLiteral("value"), QStringLiteral("v"));
  root->setAttribute(QStringLiteral("extra"), QStringLiteral("e"));
  root->setAttribute(QStringLiteral("name"), QStringLiteral("changed"));
  EXPECT_EQ(attributeNames(*root), (QStringList{"name", "value", "extra"}));
  EXPECT_EQ(root->xml(), QStringLiteral("<application name=\"changed\" value=\"v\" extra=\"e\"/>"));

  auto value = root->getAttributeNode(QStringLiteral("value"));
  root->removeAttribute(QStringLiteral("value"));
  root->removeAttribute(QStringLiteral("missing"));
  EXPECT_EQ(attributeNames(*root), (QStringList{"name", "extra"}));
  EXPECT_EQ(root->getAttribute(QStringLiteral("value")), std::nullopt);
  EXPECT_EQ(value->nodeValue(), QStringLiteral("v"));
  value->setNodeValue(QStringLiteral("still writable"));
  EXPECT_EQ(value->xml(), QStringLiteral("value=\"still writable\""));
}

TEST(XmlTreeEdit, SettingTextReplacesChildrenWithoutFreeingThem) {
  auto doc = load(QStringLiteral("<application><a>one</a><b/></application>"));
  auto root = doc->documentElement();
  auto a = root->firstChild();
  auto oneText = a->firstChild();
  root->setText(QStringLiteral("plain"));

  EXPECT_EQ(root->xml(), QStringLiteral("<application>plain</application>"));
  EXPECT_EQ(a->text(), QStringLiteral("one"));
  EXPECT_EQ(oneText->nodeValue(), QStringLiteral("one"));
  root->setText(QString());
  EXPECT_FALSE(root->hasChildNodes());
}

TEST(XmlTreeEdit, AdjacentTextNodesStaySeparateNodes) {
  auto doc = load(QStringLiteral("<a/>"));
  auto first = doc->createTextNode(QStringLiteral("one "));
  auto second = doc->createTextNode(QStringLiteral("two"));
  doc->documentElement()->appendChild(first);
  doc->documentElement()->appendChild(second);
  EXPECT_EQ(doc->documentElement()->childNodes()->length(), 2);
  EXPECT_EQ(doc->documentElement()->text(), QStringLiteral("one two"));
  second->setNodeValue(QStringLiteral("2"));
  EXPECT_EQ(first->nextSibling()->nodeValue(), QStringLiteral("2"));
}

TEST(XmlTreeEdit, ImpossibleTreesAreRefused) {
  auto doc = load(QStringLiteral("<application><a><b/></a></application>"));
  auto root = doc->documentElement();
  auto a = root->firstChild();
  auto b = a->firstChild();

  EXPECT_EQ(test::errorOf([&] { b->appendChild(a); }).number(), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorOf([&] { a->appendChild(a); }).number(), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorOf([&] { doc->appendChild(doc->createElement(QStringLiteral("second"))); }).number(),
            ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorOf([&] { doc->appendChild(doc->createTextNode(QStringLiteral("x"))); }).number(),
            ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorOf([&] { root->appendChild(root->getAttributeNode(QStringLiteral("none"))); }).number(),
            ErrorNumber::ObjectRequired);
  EXPECT_EQ(test::errorOf([&] { doc->createElement(QStringLiteral("two words")); }).number(), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorOf([&] { doc->createElement(QStringLiteral("p:name")); }).number(), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorOf([&] { root->setAttribute(QStringLiteral("q:x"), QStringLiteral("1")); }).number(),
            ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorOf([&] { root->setAttribute(QStringLiteral("xmlns:q"), QStringLiteral("u")); }).number(),
            ErrorNumber::InvalidCall);
  EXPECT_EQ(doc->xml(), QStringLiteral("<?xml version=\"1.0\"?>\n<application><a><b/></a></application>\n"));
}

TEST(XmlTreeEdit, MovedNodesTakeTheirNamespaceAlong) {
  auto doc = load(QStringLiteral("<r><a xmlns:p=\"urn:p\"><p:b p:c=\"1\"/></a><d/></r>"));
  auto root = doc->documentElement();
  auto b = doc->selectSingleNode(QStringLiteral("/r/a/*"));
  root->lastChild()->appendChild(b);
  root->removeChild(root->firstChild());

  auto reloaded = load(doc->xml());
  auto moved = reloaded->selectSingleNode(QStringLiteral("/r/d/*"));
  ASSERT_TRUE(moved);
  EXPECT_EQ(moved->nodeName(), QStringLiteral("p:b"));
  EXPECT_EQ(moved->getAttribute(QStringLiteral("p:c")), QStringLiteral("1"));
}

TEST(XmlTreeEdit, NewDocumentsTakeADeclarationNodeWithoutWritingItTwice) {
  auto doc = XmlDocument::create();
  EXPECT_EQ(doc->xml(), QString());
  doc->appendChild(doc->createProcessingInstruction(QStringLiteral("xml"), QStringLiteral("version=\"1.0\"")));
  doc->appendChild(doc->createElement(QStringLiteral("report")));
  doc->documentElement()->appendChild(doc->createCDATASection(QStringLiteral("a ]]> b")));
  doc->appendChild(doc->createProcessingInstruction(QStringLiteral("note"), QStringLiteral("after")));
  EXPECT_EQ(doc->xml(), QStringLiteral("<?xml version=\"1.0\"?>\n<report><![CDATA[a ]]]]><![CDATA[> b]]></report>\n"
                                       "<?note after?>\n"));
  EXPECT_EQ(load(doc->xml())->documentElement()->text(), QStringLiteral("a ]]> b"));
  EXPECT_EQ(test::errorOf([&] {
              doc->documentElement()->appendChild(
                  doc->createProcessingInstruction(QStringLiteral("xml"), QStringLiteral("version=\"1.0\"")));
            }).number(),
            ErrorNumber::InvalidCall);
}

} // namespace
} // namespace kordel
