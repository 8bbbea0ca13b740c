#include "XmlTestSupport.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include <gtest/gtest.h>

namespace kordel {
namespace {

// Calls as a script makes them: by name, with Variant arguments.
ObjectRef object(const Variant &value) {
  EXPECT_TRUE(value.isObject());
  return value.toObject();
}

TEST(XmlScriptAccess, LoadReportsSuccessAsBooleanAndTheReasonInParseError) {
  auto doc = XmlDocument::create();
  EXPECT_EQ(doc->invoke(QStringLiteral("loadXML"), {QStringLiteral("<a>\n<b></a>")}), Variant(false));
  ObjectRef parseError = object(doc->get(QStringLiteral("parseError")));
  EXPECT_EQ(parseError->get(QStringLiteral("line")), Variant(2));
  EXPECT_TRUE(parseError->get(QStringLiteral("reason")).toString().contains(QStringLiteral("Line 2")));
  EXPECT_TRUE(doc->get(QStringLiteral("documentElement")).isNothing());

  EXPECT_EQ(doc->invoke(QStringLiteral("load"), {QByteArray("<a x='1'/>")}), Variant(true));
  EXPECT_EQ(object(doc->get(QStringLiteral("parseError")))->get(QStringLiteral("errorCode")), Variant(0));
  EXPECT_EQ(doc->invoke(QStringLiteral("load"), {QStringLiteral("/nonexistent/file.xml")}), Variant(false));
  EXPECT_EQ(test::errorOf([&] { doc->invoke(QStringLiteral("load"), {Variant(3)}); }).number(),
            ErrorNumber::TypeMismatch);
}

TEST(XmlScriptAccess, TheStoreIsReachableByDomNames) {
  auto doc = XmlDocument::create();
  doc->set(QStringLiteral("async"), false);
  doc->set(QStringLiteral("validateOnParse"), true);
  doc->invoke(QStringLiteral("loadXML"), {QStringLiteral("<?xml version=\"1.0\" ?><application/>")});
  doc->invoke(QStringLiteral("setProperty"), {QStringLiteral("SelectionLanguage"), QStringLiteral("XPath")});

  ObjectRef root = object(doc->get(QStringLiteral("DOCUMENTELEMENT")));
  ObjectRef property = object(doc->invoke(QStringLiteral("createElement"), {QStringLiteral("property")}));
  root->invoke(QStringLiteral("appendChild"), {property});
  property->invoke(QStringLiteral("setAttribute"), {QStringLiteral("name"), QStringLiteral("k")});
  property->invoke(QStringLiteral("setAttribute"), {QStringLiteral("value"), 42});

  ObjectRef found = object(doc->invoke(QStringLiteral("selectSingleNode"), {QStringLiteral("//property[@name='k']")}));
  ObjectRef attributes = object(found->get(QStringLiteral("attributes")));
  ObjectRef value = object(attributes->invoke(QStringLiteral("getNamedItem"), {QStringLiteral("value")}));
  EXPECT_EQ(value->get(QStringLiteral("nodeValue")), Variant(QStringLiteral("42")));
  EXPECT_TRUE(found->invoke(QStringLiteral("getAttribute"), {QStringLiteral("missing")}).isNull());
  EXPECT_TRUE(object(found->get(QStringLiteral("parentNode")))->get(QStringLiteral("nodeName")) ==
              Variant(QStringLiteral("application")));
  EXPECT_TRUE(doc->invoke(QStringLiteral("selectSingleNode"), {QStringLiteral("/none")}).isNothing());
}

TEST(XmlScriptAccess, NodeListsIndexWalkAndEnumerate) {
  auto doc = XmlDocument::create();
  doc->loadXML(QStringLiteral("<a><Script>one</Script><Script><![CDATA[two]]></Script></a>"));
  ObjectRef list = object(doc->invoke(QStringLiteral("selectNodes"), {QStringLiteral("//Script")}));
  EXPECT_EQ(list->get(QStringLiteral("length")), Variant(2));
  EXPECT_EQ(object(list->invoke(QString(), {1}))->get(QStringLiteral("text")), Variant(QStringLiteral("two")));
  EXPECT_TRUE(list->invoke(QStringLiteral("item"), {2}).isNothing());

  QStringList walked;
  for (Variant node = list->invoke(QStringLiteral("nextNode")); !node.isNothing();
       node = list->invoke(QStringLiteral("nextNode")))
    walked << object(object(node)->get(QStringLiteral("firstChild")))->get(QStringLiteral("xml")).toString();
  EXPECT_EQ(walked, (QStringList{"one", "<![CDATA[two]]>"}));

  auto each = list->enumerate();
  Variant node;
  int count = 0;
  while (each->next(node))
    count += object(node)->get(QStringLiteral("nodeType")) == Variant(1) ? 1 : 0;
  EXPECT_EQ(count, 2);
}

TEST(XmlScriptAccess, TypedValuesAndDataType) {
  auto doc = XmlDocument::create();
  doc->loadXML(QStringLiteral("<application/>"));
  ObjectRef root = object(doc->get(QStringLiteral("documentElement")));
  EXPECT_TRUE(root->get(QStringLiteral("dataType")).isNull());
  EXPECT_EQ(root->get(QStringLiteral("nodeTypedValue")), Variant(QString()));

  root->set(QStringLiteral("dataType"), QStringLiteral("bin.base64"));
  root->set(QStringLiteral("nodeTypedValue"), QByteArray("\x00\x01\xFF", 3));
  EXPECT_EQ(root->get(QStringLiteral("dataType")), Variant(QStringLiteral("bin.base64")));
  EXPECT_EQ(root->get(QStringLiteral("text")), Variant(QStringLiteral("AAH/")));
  EXPECT_EQ(root->get(QStringLiteral("nodeTypedValue")), Variant(QByteArray("\x00\x01\xFF", 3)));
}

} // namespace
} // namespace kordel
