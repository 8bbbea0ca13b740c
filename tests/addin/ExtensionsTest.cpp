// The object that layout scripts see as "Extensions", against the real
// host: properties of a real run context, custom properties and the shared
// dictionary, the frozen time stamp, the grid helper on a real layout, the
// plain boxes, and calls from scripts of both languages.

#include "HostedFixture.h"

#include "core/Dictionary.h"
#include "core/Format.h"
#include "core/VbDate.h"
#include "hostapi/Layout.h"
#include "hostapi/ReportContext.h"
#include "nuvo/NamedValuesObject.h"
#include "nuvo/ReportContextObject.h"
#include "runtime/Extensions.h"
#include "script/ScriptEngine.h"
#include "support/ErrorCapture.h"

#include <QComboBox>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::errorNumber;
using kordel::test::HostedTest;

namespace {

// The data engine's context, remembering the default of every read.
class CountingContext : public nuvo::ReportContextObject {
public:
  Variant getProperty(const QString &name, const Variant &defaultValue = {}) const override {
    readDefaults.push_back(defaultValue);
    return nuvo::ReportContextObject::getProperty(name, defaultValue);
  }
  mutable std::vector<Variant> readDefaults;
};

// A section-like object for the grid helper, whose controls the test
// chooses, so that a failing control can stand between two good ones.
class ControlList : public Object {
public:
  explicit ControlList(std::vector<Variant> controls) : controls_(std::move(controls)) {}
  std::unique_ptr<Enumerator> enumerate() override { return std::make_unique<ListEnumerator>(controls_); }

private:
  std::vector<Variant> controls_;
};

class ListedSection : public Object {
public:
  ListedSection(double height, std::vector<Variant> controls)
      : height_(height), controls_(std::make_shared<ControlList>(std::move(controls))) {}
  QString typeName() const override { return QStringLiteral("Section"); }

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        property<ListedSection>("Height", [](ListedSection &s) { return s.height_; }),
        property<ListedSection>("Controls", [](ListedSection &s) { return Variant(ObjectRef(s.controls_)); }),
    }};
    return table;
  }

private:
  double height_;
  std::shared_ptr<ControlList> controls_;
};

// Calls itself a line but has no coordinates: reading X1 fails.
class BrokenLine : public Object {
public:
  QString typeName() const override { return QStringLiteral("Line"); }
};

class ExtensionsTest : public HostedTest {
protected:
  std::shared_ptr<hostapi::ReportContext> hostContext() {
    return std::dynamic_pointer_cast<hostapi::ReportContext>(app->createObject("Nuvo.ReportContext"));
  }

  // A control added to a section of a real layout, with its properties set
  // late-bound as a layout script sets them.
  static ObjectRef addControl(const ObjectRef &section, const char *progId,
                              std::initializer_list<std::pair<const char *, Variant>> properties) {
    const ObjectRef control =
        section->get("Controls").toObject()->invoke("Add", {QString::fromLatin1(progId)}).toObject();
    for (const auto &[name, value] : properties)
      control->set(QString::fromLatin1(name), value);
    return control;
  }

  static double number(const ObjectRef &object, const char *member) {
    return object->get(QString::fromLatin1(member)).toDouble();
  }

  std::shared_ptr<Extensions> extensions = std::make_shared<Extensions>();
};

TEST_F(ExtensionsTest, PropertiesGoToTheRunContext) {
  const auto context = hostContext();
  extensions->SetContext(context);
  extensions->SetProperty("FilterName", "Large customers");
  EXPECT_EQ(context->getProperty("FilterName"), Variant("Large customers"));
  EXPECT_EQ(extensions->Property("FilterName", "unused"), Variant("Large customers"));
  EXPECT_EQ(extensions->Property("Missing", 42), Variant(42));
  EXPECT_TRUE(extensions->Property("Missing").isEmpty());

  // An object comes back as itself, not as a value taken from it.
  const ObjectRef pool = app->createObject("Nuvo.Pool");
  extensions->SetProperty("Chosen", Variant(pool));
  EXPECT_EQ(extensions->Property("Chosen").rawObject(), pool);

  // Empty removes the property, so the default shows again.
  extensions->SetProperty("FilterName", Variant());
  EXPECT_EQ(extensions->Property("FilterName", "gone"), Variant("gone"));

  // Scripts reach the same through the member table.
  extensions->invoke("SetProperty", {"Shared", 7});
  EXPECT_EQ(extensions->invoke("Property", {"Shared"}), Variant(7));
  EXPECT_EQ(extensions->invoke("Property", {"Nothing here", "fallback"}), Variant("fallback"));
  EXPECT_EQ(errorNumber([&] { extensions->invoke("Property"); }), ErrorNumber::WrongArgumentCount);
}

TEST_F(ExtensionsTest, PropertyReadsTheContextTwiceAndNeedsOne) {
  EXPECT_EQ(errorNumber([&] { extensions->Property("FilterName"); }), ErrorNumber::ObjectNotSet);
  EXPECT_EQ(errorNumber([&] { extensions->SetProperty("FilterName", "x"); }), ErrorNumber::ObjectNotSet);

  const auto context = std::make_shared<CountingContext>();
  extensions->SetContext(context);
  extensions->Property("Anything", "default");
  ASSERT_EQ(context->readDefaults.size(), 2u);
  EXPECT_TRUE(context->readDefaults[0].isEmpty()) << "the first read passes no default";
  EXPECT_EQ(context->readDefaults[1], Variant("default"));
}

TEST_F(ExtensionsTest, CustomPropertiesHideDictionaryKeys) {
  int storesMade = 0;
  app->registerProgId("Nuvo.Properties", [&storesMade] {
    ++storesMade;
    return std::make_shared<nuvo::NamedValuesObject>(QStringLiteral("Properties"));
  });

  // Neither store exists yet, and deleting makes none.
  EXPECT_TRUE(extensions->GetCustomProperty("x").isEmpty());
  extensions->SetCustomProperty("x", Variant());
  EXPECT_EQ(storesMade, 0);
  EXPECT_EQ(extensions->GetCustomProperty("x", "fallback"), Variant("fallback"));

  // What a script puts in the dictionary reads as a custom property ...
  extensions->Dictionary()->setItem(Variant("x"), "from the dictionary");
  EXPECT_EQ(extensions->GetCustomProperty("x"), Variant("from the dictionary"));
  // ... until a custom property of the same name hides it ...
  extensions->SetCustomProperty("x", "custom");
  EXPECT_EQ(storesMade, 1);
  EXPECT_EQ(extensions->GetCustomProperty("x", "fallback"), Variant("custom"));
  // ... and deleting that shows the dictionary's again.
  extensions->SetCustomProperty("x", Variant());
  EXPECT_EQ(extensions->GetCustomProperty("x"), Variant("from the dictionary"));
  // Deleting what is not there is an error for the script that asked.
  EXPECT_EQ(test::errorNumber([&] { extensions->SetCustomProperty("never set", Variant()); }),
            ErrorNumber::ElementNotFound);
  EXPECT_EQ(extensions->GetCustomProperty("x"), Variant("from the dictionary"));

  // Only Empty falls through to the default: Null, zero and "" are values.
  extensions->Dictionary()->setItem(Variant("empty"), Variant());
  EXPECT_EQ(extensions->GetCustomProperty("empty", "fallback"), Variant("fallback"));
  extensions->SetCustomProperty("null", Variant::null());
  EXPECT_TRUE(extensions->GetCustomProperty("null", "fallback").isNull());
  extensions->SetCustomProperty("zero", 0);
  EXPECT_EQ(extensions->GetCustomProperty("zero", "fallback"), Variant(0));
  extensions->SetCustomProperty("blank", "");
  EXPECT_EQ(extensions->GetCustomProperty("blank", "fallback"), Variant(""));
  EXPECT_EQ(storesMade, 1) << "one store for the whole run";

  const auto kept = std::make_shared<Dictionary>();
  extensions->invoke("SetCustomProperty", {"object", Variant(kept)});
  EXPECT_EQ(extensions->invoke("GetCustomProperty", {"object"}).rawObject(), ObjectRef(kept));
}

TEST_F(ExtensionsTest, TimestampIsFrozenAtTheFirstCall) {
  const QString first = extensions->Timestamp("");
  const auto moment = parseVbDate(first);
  ASSERT_TRUE(moment) << first.toStdString();
  EXPECT_EQ(formatValue(Variant(*moment), "General Date"), first);

  const QString iso = QStringLiteral("yyyy-mm-dd hh:nn:ss");
  EXPECT_EQ(extensions->Timestamp(iso), formatValue(Variant(*moment), iso));
  // Sunday is the first day of the week, the week of 1 January the first week.
  EXPECT_EQ(extensions->Timestamp("w"), QString::number(vbWeekday(*moment, 1)));
  EXPECT_EQ(extensions->Timestamp("ww"), QString::number(vbWeekOfYear(*moment, 1, 1)));
  EXPECT_EQ(extensions->Timestamp(""), first);
  EXPECT_EQ(extensions->invoke("Timestamp", {""}), Variant(first));
  EXPECT_EQ(errorNumber([&] { extensions->invoke("Timestamp"); }), ErrorNumber::WrongArgumentCount);
}

TEST_F(ExtensionsTest, FormatGridStretchesVerticalLinesAndRectanglesOfARealSection) {
  const ObjectRef layout = app->createObject(QString::fromLatin1(hostapi::kLayoutReportProgId));
  const ObjectRef section = layout->get("Sections").toObject()->invoke("Add", {"Detail", 0, 6, 400}).toObject();
  const ObjectRef vertical = addControl(section, hostapi::kLineProgId, {{"X1", 100}, {"X2", 100}, {"Y2", 400}});
  // Off by a hundredth of a twip: not vertical, as exact equality decides.
  const ObjectRef slanted =
      addControl(section, hostapi::kLineProgId, {{"X1", 200}, {"X2", 200.01}, {"Y1", 0}, {"Y2", 400}});
  const ObjectRef horizontal =
      addControl(section, hostapi::kLineProgId, {{"X1", 0}, {"X2", 3000}, {"Y1", 50}, {"Y2", 50}});
  const ObjectRef rectangle = addControl(section, hostapi::kShapeProgId, {{"Shape", 0}, {"Top", 60}, {"Height", 300}});
  const ObjectRef ellipse = addControl(section, hostapi::kShapeProgId, {{"Shape", 1}, {"Top", 60}, {"Height", 300}});
  const ObjectRef field = addControl(section, hostapi::kFieldProgId, {{"Top", 60}, {"Height", 300}});

  section->set("Height", 2000.25); // the section has grown
  extensions->FormatGrid(section);
  EXPECT_EQ(number(vertical, "Y2"), 2000.25);
  EXPECT_EQ(number(vertical, "Y1"), 0);
  EXPECT_EQ(number(slanted, "Y2"), 400);
  EXPECT_EQ(number(horizontal, "Y2"), 50);
  EXPECT_EQ(number(rectangle, "Height"), 1940.25);
  EXPECT_EQ(number(rectangle, "Top"), 60);
  EXPECT_EQ(number(ellipse, "Height"), 300);
  EXPECT_EQ(number(field, "Height"), 300);
  EXPECT_TRUE(ui->boxes.empty());

  // Late-bound, as a section's script calls it after the section shrank.
  section->set("Height", 1000);
  extensions->invoke("FormatGrid", {Variant(section)});
  EXPECT_EQ(number(vertical, "Y2"), 1000);
  EXPECT_EQ(number(rectangle, "Height"), 940);
}

TEST_F(ExtensionsTest, FormatGridReportsAFailureAndLeavesTheRestAlone) {
  const ObjectRef layout = app->createObject(QString::fromLatin1(hostapi::kLayoutReportProgId));
  const ObjectRef detail = layout->get("Sections").toObject()->invoke("Add", {"Detail", 0, 6, 400}).toObject();
  const ObjectRef before = addControl(detail, hostapi::kLineProgId, {{"X1", 10}, {"X2", 10}, {"Y2", 400}});
  const ObjectRef after = addControl(detail, hostapi::kLineProgId, {{"X1", 20}, {"X2", 20}, {"Y2", 400}});
  const auto section = std::make_shared<ListedSection>(
      900, std::vector<Variant>{Variant(before), Variant(std::make_shared<BrokenLine>()), Variant(after)});

  EXPECT_NO_THROW(extensions->FormatGrid(section));
  EXPECT_EQ(number(before, "Y2"), 900);
  EXPECT_EQ(number(after, "Y2"), 400) << "the loop ends at the failure";
  EXPECT_NO_THROW(extensions->FormatGrid(nullptr));

  ASSERT_EQ(ui->boxes.size(), 2u);
  EXPECT_EQ(ui->boxes[0].flags, 48);
  const QStringList lines = logLines();
  ASSERT_EQ(lines.size(), 2);
  const QStringList first = lines[0].split(u'\t');
  ASSERT_EQ(first.size(), 6);
  EXPECT_EQ(first[3], "Extensions.FormatGrid");
  EXPECT_EQ(first[4], QString::number(ErrorNumber::NoSuchMember));
  EXPECT_EQ(lines[1].split(u'\t').value(4), QString::number(ErrorNumber::ObjectNotSet));

  // A value that is no object is the calling script's mistake.
  EXPECT_EQ(errorNumber([&] { extensions->invoke("FormatGrid", {"Detail"}); }), ErrorNumber::ObjectRequired);
}

TEST_F(ExtensionsTest, MessageAndInputBoxesArePlain) {
  ui->boxAnswers.push_back(hostapi::MsgBox::No);
  EXPECT_EQ(extensions->ShowMessageBox("Go on?", 4 + 32, "Invoice run"), hostapi::MsgBox::No);
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_EQ(ui->boxes[0].text, "Go on?");
  EXPECT_EQ(ui->boxes[0].flags, 36);
  EXPECT_EQ(ui->boxes[0].title, "Invoice run");
  EXPECT_EQ(extensions->invoke("ShowMessageBox", {"Done", 0, ""}), Variant(hostapi::MsgBox::Ok));

  ui->inputAnswers.push_back(QStringLiteral("Malmö"));
  EXPECT_EQ(extensions->ShowInputBox("City?", "Filter", "Lund"), QString::fromUtf8("Malmö"));
  EXPECT_EQ(extensions->invoke("ShowInputBox", {"City again?", "Filter", "Lund"}), Variant("")) << "cancelled";
  EXPECT_EQ(ui->inputPrompts, QStringList({"City?", "City again?"}));
}

TEST_F(ExtensionsTest, ScriptsOfBothLanguagesShareOneObject) {
  const auto context = hostContext();
  extensions->SetContext(context);
  context->setProperty("FilterName", "Customers");
  ui->modalHandler = [](QWidget &window) {
    window.findChild<QComboBox *>("CboOptions")->setCurrentIndex(2);
    window.findChild<QPushButton *>("CmdOK")->click();
  };

  const auto vb = script::createScriptEngine("VBScript");
  vb->addNamedItem("Extensions", extensions);
  vb->addCode("Extensions.SetCustomProperty \"language\", \"vb\"\n"
              "Extensions.Dictionary.Add \"pages\", 1\n"
              "picked = Extensions.ShowOptionBox(\"Region\", Array(\"North\", \"South\", \"West\"), \"\", \"\")\n");
  EXPECT_EQ(vb->evaluate("picked"), Variant("West"));
  vb->addCode("On Error Resume Next\n"
              "Extensions.SetCustomProperty \"never set\", Empty\n"
              "removed = Err.Number\n");
  EXPECT_EQ(vb->evaluate("removed"), Variant(ErrorNumber::ElementNotFound));

  const auto js = script::createScriptEngine("JScript");
  js->addNamedItem("Extensions", extensions);
  EXPECT_EQ(js->evaluate("Extensions.GetCustomProperty('language') + ' ' + Extensions.Dictionary.Count + ' ' + "
                         "Extensions.Property('FilterName', 'none')")
                .toString(),
            "vb 1 Customers");
  js->addCode("Extensions.SetCustomProperty('language', 'js'); Extensions.SetProperty('Seen', true);");
  EXPECT_EQ(vb->evaluate("Extensions.GetCustomProperty(\"language\") & \" \" & Extensions.Property(\"Seen\")"),
            Variant("js True"));
  EXPECT_EQ(js->evaluate("Extensions.Timestamp('')").toString(), vb->evaluate("Extensions.Timestamp(\"\")").toString());
}

} // namespace
