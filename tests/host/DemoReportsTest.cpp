// The ready reports of "orvex demo", read back from the database the
// command made: each page of each report carries a layout that the engine
// loads, whose controls bind only to that page's fields and sub pages and
// fit A4 portrait within the report's margins; the documents are valid
// reports on the demo classes; and layouts are stored in a document as the
// add-in's pages keep them.

#include "cli/DemoLayouts.h"
#include "cli/PageLayouts.h"

#include "engine/format/LayoutFormat.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "hostapi/Classes.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "support/ErrorCapture.h"
#include "support/OrvexProcess.h"
#include "support/TempDir.h"
#include "xml/XPathLiteral.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include <QMap>

#include <gtest/gtest.h>

#include <map>
#include <memory>

using namespace kordel;
namespace cli = kordel::host::cli;
using engine::ControlKind;
using engine::LayoutReport;
using engine::SectionType;

namespace {

// A4 portrait, in twips.
constexpr int kPaperWidth = 11906;

// The settings that are the direct children of a section element.
QMap<QString, QString> settingsOf(const XmlNode &section) {
  QMap<QString, QString> settings;
  const auto properties = section.selectNodes(QStringLiteral("property"));
  for (int i = 0; i < properties->length(); ++i)
    settings[properties->item(i)->getAttribute("name").value_or(QString())] =
        properties->item(i)->getAttribute("value").value_or(QString());
  return settings;
}

// Sort fields by name with their order, 1 ascending, 2 descending.
using Sorting = std::vector<std::pair<QString, int>>;

// A page of a stored report document with its layout loaded.
struct StoredPage {
  QString guid;
  QMap<QString, QString> settings;
  QMap<QString, QString> fields; // name -> expression
  Sorting sorting;
  QStringList subPages;
  int layoutResources = 0;
  QByteArray layoutBytes;
  std::shared_ptr<LayoutReport> layout; // nullptr when it did not load
  QString layoutError;
};

struct StoredReport {
  QMap<QString, QString> system;
  QMap<QString, QString> settings;
  std::vector<StoredPage> pages;

  const StoredPage &page(const QString &guid) const {
    for (const StoredPage &page : pages)
      if (page.guid == guid)
        return page;
    throw std::runtime_error("no page " + guid.toStdString());
  }
  const StoredPage &top() const { return page(settings.value("toppage")); }
};

StoredReport readReport(const QByteArray &bytes) {
  const auto xml = XmlDocument::create();
  xml->load(bytes);
  const auto root = xml->documentElement();
  StoredReport report;
  report.system = settingsOf(*root->selectSingleNode("section[@name='system']"));
  report.settings = settingsOf(*root->selectSingleNode("section[@name='settings']"));
  const auto pages = root->selectNodes("section[@name='pages']/section");
  for (int i = 0; i < pages->length(); ++i) {
    const auto node = pages->item(i);
    StoredPage page;
    page.guid = node->getAttribute("name").value_or(QString());
    page.settings = settingsOf(*node);
    const auto fields = node->selectNodes("section[@name='fields']/section");
    for (int f = 0; f < fields->length(); ++f)
      page.fields[fields->item(f)->getAttribute("name").value_or(QString())] =
          settingsOf(*fields->item(f)).value("expression");
    const auto sorting = node->selectNodes("section[@name='sorting']/property");
    for (int s = 0; s < sorting->length(); ++s)
      page.sorting.emplace_back(sorting->item(s)->getAttribute("name").value_or(QString()),
                                sorting->item(s)->getAttribute("value").value_or(QString()).toInt());
    const auto subPages = node->selectNodes("section[@name='subpages']/property");
    for (int s = 0; s < subPages->length(); ++s)
      page.subPages << subPages->item(s)->getAttribute("value").value_or(QString());
    const auto resources =
        root->selectNodes("section[@name='resources']/property[@name=" + xpathLiteral(page.guid) + "]");
    page.layoutResources = resources->length();
    if (page.layoutResources == 1) {
      page.layoutBytes = resources->item(0)->nodeTypedValue().toBytes();
      page.layoutError = test::errorOf([&] {
                           auto layout = LayoutReport::create();
                           engine::loadLayout(*layout, page.layoutBytes);
                           page.layout = layout;
                         }).description();
    }
    report.pages.push_back(std::move(page));
  }
  return report;
}

std::vector<std::shared_ptr<engine::Control>> controlsOf(const LayoutReport &layout) {
  std::vector<std::shared_ptr<engine::Control>> controls;
  for (const auto &section : layout.sections()->all())
    for (const auto &control : section->controls()->all())
      controls.push_back(control);
  return controls;
}

std::vector<const engine::SubReport *> subReportsOf(const LayoutReport &layout) {
  std::vector<const engine::SubReport *> subReports;
  for (const auto &control : controlsOf(layout))
    if (control->kind() == ControlKind::SubReport)
      subReports.push_back(static_cast<const engine::SubReport *>(control.get()));
  return subReports;
}

// The page fields a control or a group shows: data fields that are no
// expression.
QStringList boundDataFields(const LayoutReport &layout) {
  QStringList bound;
  for (const auto &section : layout.sections()->all())
    if (section->type() == SectionType::GroupHeader && !section->dataField.isEmpty())
      bound << section->dataField;
  for (const auto &control : controlsOf(layout))
    if (control->kind() == ControlKind::Field)
      if (const QString &path = static_cast<const engine::Field &>(*control).dataField;
          !path.isEmpty() && !path.startsWith(u'='))
        bound << path;
  return bound;
}

test::OrvexRun orvex(const test::TempDir &dir, const QStringList &arguments) {
  return test::runOrvex(dir, arguments, {{"ORVEX_LANGUAGE", "en"}, {"ORVEX_USER", "anna"}});
}

// One demo database for the whole suite, made by the command as a user
// makes it, and its reports exported to files.
class DemoReportsTest : public ::testing::Test {
protected:
  static void SetUpTestSuite() {
    dir = new test::TempDir;
    database = dir->file("crm.db");
    made = orvex(*dir, {"demo", "--db", database, "--companies", "8"});
    for (const QString name : {"Company list", "Deals by value", "Company history"}) {
      const QString file = dir->file(name + ".xml");
      if (orvex(*dir, {"report-export", name, file, "--db", database}).exitCode == 0)
        reports[name] = readReport(test::readFile(file));
    }
  }

  static void TearDownTestSuite() {
    reports.clear();
    delete dir;
    dir = nullptr;
  }

  static inline test::TempDir *dir = nullptr;
  static inline QString database;
  static inline test::OrvexRun made;
  static inline std::map<QString, StoredReport> reports;
};

TEST_F(DemoReportsTest, EveryPageHoldsOneLayoutInTheEnginesOwnForm) {
  ASSERT_EQ(reports.size(), 3u) << made.err.toStdString();
  for (const auto &[name, stored] : reports) {
    for (const StoredPage &page : stored.pages) {
      SCOPED_TRACE((name + " page " + page.settings.value("name")).toStdString());
      ASSERT_EQ(page.layoutResources, 1);
      ASSERT_TRUE(page.layout) << page.layoutError.toStdString();
      EXPECT_EQ(engine::saveLayout(*page.layout), page.layoutBytes) << "saving what was loaded gives the same bytes";
      ASSERT_NE(page.layout->detail(), nullptr);
      EXPECT_EQ(page.layout->detail()->name, "Detail") << "the run's row events go to Detail_Format";
      EXPECT_EQ(page.settings.value("edited"), "1")
          << "an unedited page would lose its page header and footer in the designer";
    }
  }
}

TEST_F(DemoReportsTest, ControlsBindOnlyToTheirOwnPagesFieldsAndSubPages) {
  ASSERT_EQ(reports.size(), 3u) << made.err.toStdString();
  for (const auto &[name, stored] : reports) {
    for (const StoredPage &page : stored.pages) {
      SCOPED_TRACE((name + " page " + page.settings.value("name")).toStdString());
      ASSERT_TRUE(page.layout);
      const QStringList bound = boundDataFields(*page.layout);
      for (const QString &dataField : bound)
        EXPECT_TRUE(page.fields.contains(dataField)) << dataField.toStdString() << " is no field of the page";
      // The designer keeps only what the layout shows: a field or sort field
      // that no control binds would be dropped at the next save.
      for (const QString &field : page.fields.keys())
        EXPECT_TRUE(bound.contains(field)) << field.toStdString() << " is shown by no control";
      for (const auto &[sortField, order] : page.sorting) {
        EXPECT_TRUE(bound.contains(sortField)) << sortField.toStdString();
        EXPECT_TRUE(order == 1 || order == 2);
      }

      QStringList tags;
      for (const engine::SubReport *control : subReportsOf(*page.layout)) {
        tags << control->tag;
        ASSERT_TRUE(page.subPages.contains(control->tag)) << control->tag.toStdString() << " is no sub page here";
        const StoredPage &sub = stored.page(control->tag);
        EXPECT_EQ(control->reportName, sub.settings.value("name"));
        EXPECT_EQ(int(control->width), sub.settings.value("width").toInt()) << "the control sets the sub page's width";
        ASSERT_TRUE(sub.layout);
        EXPECT_LE(sub.layout->printWidth, control->width) << "the sub page's band fits its control";
      }
      tags.sort();
      QStringList subPages = page.subPages;
      subPages.sort();
      EXPECT_EQ(tags, subPages) << "one control for each sub page";
    }
  }
}

TEST_F(DemoReportsTest, TheDocumentsAreValidReportsOnTheDemoClasses) {
  ASSERT_EQ(reports.size(), 3u) << made.err.toStdString();
  const auto engine = nuvo::Engine::open(nuvo::DatabaseAddress::parse(database), "en");
  const auto classes = nuvo::DatabaseObject(engine).classes();
  const std::map<QString, QStringList> expectedClasses = {
      {"Company list", {"company", "person"}},
      {"Deals by value", {"deal"}},
      {"Company history", {"company", "person", "history"}},
  };
  for (const auto &[name, stored] : reports) {
    SCOPED_TRACE(name.toStdString());
    EXPECT_EQ(stored.system.value("name"), name);
    const QString reportClass = stored.settings.value("source");
    ASSERT_TRUE(classes->exists(reportClass));
    QStringList pageClasses;
    for (const StoredPage &page : stored.pages) {
      SCOPED_TRACE(page.settings.value("name").toStdString());
      // A sub page's class is at the other end of its link field, a path
      // from the report's class, as the add-in finds it.
      std::shared_ptr<hostapi::Class> pageClass = classes->item(reportClass);
      if (page.guid != stored.settings.value("toppage")) {
        const auto link = pageClass->fields()->lookup(page.settings.value("source"), hostapi::LookupMode::Either);
        ASSERT_TRUE(link && link->relatedField()) << page.settings.value("source").toStdString();
        pageClass = link->relatedField()->fieldClass();
      } else {
        EXPECT_EQ(page.settings.value("source"), reportClass);
      }
      ASSERT_TRUE(pageClass);
      pageClasses << pageClass->name();
      for (auto field = page.fields.cbegin(); field != page.fields.cend(); ++field) {
        EXPECT_EQ(field.key(), field.value()) << "a page field is named by its path";
        EXPECT_TRUE(pageClass->fields()->lookup(field.value(), hostapi::LookupMode::Either))
            << field.value().toStdString() << " is no field path of " << pageClass->name().toStdString();
      }
    }
    EXPECT_EQ(pageClasses, expectedClasses.at(name));
  }
}

TEST_F(DemoReportsTest, TheLayoutsFitA4PortraitWithinTheMargins) {
  ASSERT_EQ(reports.size(), 3u) << made.err.toStdString();
  for (const auto &[name, stored] : reports) {
    SCOPED_TRACE(name.toStdString());
    const QMap<QString, QString> &settings = stored.settings;
    EXPECT_EQ(settings.value("papersize"), "9") << "A4, not paper of the user's own size";
    EXPECT_EQ(settings.value("orientation"), "1");
    const int width = settings.value("width").toInt();
    EXPECT_EQ(width, stored.top().settings.value("width").toInt());
    // The run narrows a band that reaches the paper's edge less margins.
    EXPECT_LT(settings.value("marginleft").toInt() + width + settings.value("marginright").toInt(), kPaperWidth);
    ASSERT_TRUE(stored.top().layout);
    EXPECT_EQ(stored.top().layout->printWidth, width);
    for (const StoredPage &page : stored.pages) {
      ASSERT_TRUE(page.layout);
      const float band = page.layout->printWidth;
      EXPECT_EQ(page.settings.value("width").toInt(), int(band)) << "the designer opens a page at its width";
      for (const auto &control : controlsOf(*page.layout)) {
        EXPECT_GE(control->left, 0) << control->name.toStdString();
        EXPECT_LE(control->left + control->width, band) << control->name.toStdString();
        if (control->kind() == ControlKind::Line) {
          const auto &line = static_cast<const engine::Line &>(*control);
          EXPECT_LE(std::max(line.x1, line.x2), band) << control->name.toStdString();
        }
      }
    }
  }
}

// ---- Storing layouts in a document ----

const QByteArray kTwoPages =
    "<?xml version=\"1.0\"?>\n<application><section name=\"pages\"><section name=\"{A}\"><property name=\"name\" "
    "value=\"Top\"/></section><section name=\"{B}\"><property name=\"name\" value=\"Sub\"/></section></section>"
    "<section name=\"resources\"><property xmlns:dt=\"urn:schemas-microsoft-com:datatypes\" dt:dt=\"bin.base64\" "
    "name=\"{A}\">b2xk</property></section></application>\n";

TEST(PageLayoutsTest, EachPageGetsOneTypedResourceAndTheOldOneGoes) {
  const QByteArray written = cli::withPageLayouts(kTwoPages, {{"{A}", "new A"}, {"{B}", QByteArray("\0B\xff", 3)}});
  const auto xml = XmlDocument::create();
  xml->load(written);
  const auto root = xml->documentElement();
  const auto resources = root->selectNodes("section[@name='resources']/property");
  ASSERT_EQ(resources->length(), 2) << written.toStdString();
  EXPECT_EQ(resources->item(0)->getAttribute("name").value_or(""), "{A}");
  EXPECT_EQ(resources->item(0)->nodeTypedValue().toBytes(), "new A") << "the old layout is replaced";
  EXPECT_EQ(resources->item(1)->getAttribute("name").value_or(""), "{B}");
  EXPECT_EQ(resources->item(1)->dataType(), "bin.base64");
  EXPECT_EQ(resources->item(1)->nodeTypedValue().toBytes(), QByteArray("\0B\xff", 3));
  EXPECT_EQ(root->selectNodes("section[@name='resources']")->length(), 1);
  EXPECT_EQ(root->selectSingleNode("section[@name='pages']")->xml(), [] {
    const auto original = XmlDocument::create();
    original->load(kTwoPages);
    return original->documentElement()->selectSingleNode("section[@name='pages']")->xml();
  }()) << "the pages stay as they were";

  // A document without resources gets the section at the end of the root.
  const QByteArray bare = "<application><section name=\"pages\"><section name=\"{A}\"/></section></application>";
  const auto added = XmlDocument::create();
  added->load(cli::withPageLayouts(bare, {{"{A}", "layout"}}));
  EXPECT_EQ(added->documentElement()->lastChild()->getAttribute("name").value_or(""), "resources");
}

TEST(PageLayoutsTest, AMismatchOfPagesAndLayoutsOrABrokenDocumentIsRefused) {
  const Error missing = test::errorOf([] { cli::withPageLayouts(kTwoPages, {{"{A}", "a"}}); });
  EXPECT_EQ(missing.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(missing.description().contains("{B}")) << missing.description().toStdString();

  const Error stray = test::errorOf([] {
    cli::withPageLayouts(kTwoPages, {{"{A}", "a"}, {"{B}", "b"}, {"{C}", "c"}});
  });
  EXPECT_EQ(stray.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(stray.description().contains("{C}")) << stray.description().toStdString();

  EXPECT_EQ(test::errorNumber([] { cli::withPageLayouts("<application><section", {}); }),
            ErrorNumber::InvalidFileFormat);
  EXPECT_EQ(test::errorNumber([] { cli::withPageLayouts("<report/>", {}); }), ErrorNumber::InvalidFileFormat);
}

} // namespace
