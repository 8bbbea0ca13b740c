// The layout designer's field dialogs on the demo database: the lazy field
// tree and its two path forms, the field insertion window in both modes
// (with the host's field dialog driven through the scripted user
// interface), the sub page dialog and the section dialog. The windows are
// shown offscreen and driven with mouse and key events where the user's
// road matters. KORDEL_SCREENSHOT_DIR=FOLDER keeps a picture of each
// dialog for a look.

#include "DemoFixture.h"
#include "WidgetTools.h"

#include "common/Globals.h"
#include "common/ResourceManager.h"
#include "dialogs/DlgFieldSelector.h"
#include "dialogs/DlgFields.h"
#include "dialogs/DlgSelSection.h"
#include "dialogs/DlgSelectSubPage.h"
#include "dialogs/FieldSelector.h"
#include "dialogs/ScriptFieldsPage.h"
#include "document/StringCollection.h"
#include "host/HostDialogObject.h"
#include "hostapi/Database.h"
#include "hostapi/FieldTypes.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"
#include "support/TempDir.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>

using namespace kordel;
using kordel::test::child;
using kordel::test::nodeAt;
using kordel::test::select;
using namespace kordel::addin;
namespace FT = kordel::hostapi::FieldType;

namespace {

QTreeWidget &treeOf(QWidget &window) { return child<QTreeWidget>(window, "TvwFields"); }

// The texts of a level: the children of a node, or the top level.
QStringList texts(QTreeWidget &tree, QTreeWidgetItem *parent = nullptr) {
  QStringList result;
  const int count = parent ? parent->childCount() : tree.topLevelItemCount();
  for (int i = 0; i < count; ++i)
    result << (parent ? parent->child(i) : tree.topLevelItem(i))->text(0);
  return result;
}

QPoint centreOf(QTreeWidget &tree, const QString &path) { return tree.visualItemRect(nodeAt(tree, path)).center(); }

// A double click as the window system delivers it: a click, then the
// second press as a double click, then its release.
void doubleClick(QTreeWidget &tree, const QString &path) {
  const QPoint point = centreOf(tree, path);
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, point);
  QTest::mouseDClick(tree.viewport(), Qt::LeftButton, {}, point);
  QTest::mouseRelease(tree.viewport(), Qt::LeftButton, {}, point);
}

std::shared_ptr<StringCollection> strings(const QStringList &values) {
  auto collection = std::make_shared<StringCollection>();
  for (const QString &value : values)
    collection->Add(value);
  return collection;
}

Variant types(std::vector<Variant> codes) { return VariantArray::fromValues(std::move(codes)); }

// The controls Tab goes to from a control on, up to count of them.
QStringList tabOrder(QWidget &from, int count) {
  QStringList names;
  for (QWidget *next = from.nextInFocusChain(); next != &from && names.size() < count;
       next = next->nextInFocusChain()) {
    if ((next->focusPolicy() & Qt::TabFocus) && next->isVisible() && next->isEnabled())
      names << next->objectName();
  }
  return names;
}

void showNow(QWidget &window) {
  window.show();
  QApplication::processEvents();
}

} // namespace

class FieldDialogsTest : public test::DemoHostedTest {
protected:
  std::shared_ptr<hostapi::Fields> fieldsOf(const QString &className) {
    return app->classes()->item(className)->fields();
  }

  // Opens the demo database again for another language or user.
  void reopen(const QString &language, const QString &login = QStringLiteral("anna")) {
    nuvo::DatabaseAddress address;
    address.file = databaseFile();
    app->setDatabase(std::make_shared<nuvo::DatabaseObject>(nuvo::Engine::open(address, language, login)));
  }

  // A selector on a class's fields, shown, with its settings made by set.
  std::unique_ptr<FieldSelector> selector(const QString &className,
                                          const std::function<void(FieldSelector &)> &set = {}) {
    auto made = std::make_unique<FieldSelector>();
    made->SetFields(fieldsOf(className));
    if (set)
      set(*made);
    made->ShowFields();
    made->resize(320, 640);
    showNow(*made);
    return made;
  }

  // Loads each dialog on the company's fields and hands it to look, the
  // host's field dialog too, while it is shown.
  void eachDialog(const std::function<void(QWidget &, const QString &)> &look) {
    const auto sections = strings({"PageHeader", "Detail", "PageFooter"});
    DlgFieldSelector selectorDialog;
    selectorDialog.SetFields(fieldsOf("company"));
    selectorDialog.Form_Load();
    look(selectorDialog, "field-selector");
    for (int mode : {0, 1}) {
      DlgFields fields;
      fields.SetMode(mode);
      fields.SetNuvoFields(fieldsOf("company"));
      fields.SetSectionNames(sections);
      fields.SetActiveSectionName("Detail");
      fields.Form_Load();
      look(fields, mode == 0 ? "fields" : "script-fields");
    }
    DlgSelectSubPage subPage;
    subPage.SetFields(fieldsOf("company"));
    subPage.SetSectionNames(sections);
    subPage.Form_Load();
    look(subPage, "sub-page");
    DlgSelSection section;
    section.SetSectionNames(sections);
    section.Form_Load();
    look(section, "section");
    const ObjectRef hostDialog = app->createObject("Orvex.Dialog");
    hostDialog->set("Fields", Variant(ObjectRef(fieldsOf("company"))));
    ui->modalHandler = [&look](QWidget &window) {
      look(window, "host-field-dialog");
      child<QPushButton>(window, "CmdCancel").click();
    };
    hostDialog->invoke("Show", {12});
  }

  // Shows a window and checks that every named control shown lies wholly
  // inside it, with room for its text. KORDEL_SCREENSHOT_DIR keeps its
  // picture.
  void lookAt(QWidget &window, const QString &name) {
    showNow(window);
    const QRect inside = window.rect();
    for (QWidget *control : window.findChildren<QWidget *>()) {
      if (control->objectName().isEmpty() || control->objectName().startsWith("qt_") || !control->isVisible())
        continue;
      const std::string where = name.toStdString() + ": " + control->objectName().toStdString();
      const QRect place(control->mapTo(&window, QPoint(0, 0)), control->size());
      EXPECT_TRUE(inside.contains(place)) << where;
      EXPECT_GE(control->width(), control->minimumSizeHint().width()) << where;
    }
    const QString folder = qEnvironmentVariable("KORDEL_SCREENSHOT_DIR", screenshots.path());
    const QString path = folder + u'/' + name + QStringLiteral(".png");
    EXPECT_TRUE(window.grab().save(path)) << path.toStdString();
  }

  test::TempDir screenshots;

  QStringList boxTexts() const {
    QStringList result;
    for (const auto &box : ui->boxes)
      result << box.text;
    return result;
  }
};

// ---- the field tree

TEST_F(FieldDialogsTest, TheTreeOpensOneLevelAtATimeAndOnlyWhenAsked) {
  const auto tree = selector("company");
  QTreeWidget &view = treeOf(*tree);
  // Plain fields alphabetically, then the relations alphabetically.
  EXPECT_EQ(texts(view),
            QStringList({"Category", "City", "Country", "Created", "Created by", "E-mail", "Founded", "ID", "Name",
                         "Phone", "Turnover", "Updated", "Updated by", "Deals", "History", "Persons", "Responsible"}));
  EXPECT_EQ(view.currentItem(), view.topLevelItem(0));

  // Each relation holds only its placeholder: nothing of the classes
  // behind it is made, so the whole tree is the root and four placeholders.
  QTreeWidgetItem *responsible = nodeAt(view, "Responsible");
  EXPECT_EQ(texts(view, responsible), QStringList({FieldSelector::kPlaceholder}));
  EXPECT_EQ(nodeAt(view, "Name")->childCount(), 0);
  int nodes = 0;
  for (QTreeWidgetItemIterator it(&view); *it; ++it)
    ++nodes;
  EXPECT_EQ(nodes, 17 + 4);

  // The Right key opens the relation: the coworker's fields, hidden ones
  // left out, and its own relations closed again.
  view.setCurrentItem(responsible);
  view.setFocus();
  QTest::keyClick(&view, Qt::Key_Right);
  EXPECT_TRUE(responsible->isExpanded());
  EXPECT_EQ(texts(view, responsible), QStringList({"Created", "Created by", "E-mail", "ID", "Name", "Phone", "Updated",
                                                   "Updated by", "Companies", "Deals", "History"}));
  EXPECT_EQ(texts(view, nodeAt(view, "Responsible.Companies")), QStringList({FieldSelector::kPlaceholder}));

  // Round the circle back to the company and further, one level a click.
  EXPECT_EQ(nodeAt(view, "Responsible.Companies.Responsible.Name")->text(0), "Name");
  // An opened node keeps its children when it opens again.
  responsible->setExpanded(false);
  responsible->setExpanded(true);
  EXPECT_EQ(responsible->childCount(), 11);
  // "*" would open every level below, endlessly: the tree refuses it.
  QTreeWidgetItem *persons = nodeAt(view, "Persons");
  view.setCurrentItem(persons);
  QTest::keyClick(&view, Qt::Key_Asterisk);
  EXPECT_FALSE(persons->isExpanded());
  EXPECT_EQ(texts(view, persons), QStringList({FieldSelector::kPlaceholder}));
  EXPECT_TRUE(ui->boxes.empty());
}

TEST_F(FieldDialogsTest, PathsAreLocalForTheUserAndInternalForTheDocument) {
  {
    const auto tree = selector("company");
    EXPECT_EQ(tree->Field()->name(), "category") << "the first node is selected";
    select(treeOf(*tree), "Responsible.Name");
    EXPECT_EQ(tree->FullLocalPath(), "Responsible.Name");
    EXPECT_EQ(tree->FullPath(), "coworker.name");
    EXPECT_EQ(tree->Field()->name(), "coworker.name");
    EXPECT_EQ(tree->Field()->type(), FT::Text);
  }
  reopen("sv");
  const auto tree = selector("company");
  QTreeWidget &view = treeOf(*tree);
  EXPECT_EQ(texts(view).mid(13), QStringList({QString::fromUtf8("Affärer"), "Ansvarig", "Historik", "Personer"}));
  select(view, "Ansvarig.Namn");
  EXPECT_EQ(tree->FullLocalPath(), "Ansvarig.Namn");
  EXPECT_EQ(tree->FullPath(), "coworker.name") << "the stored form does not follow the language";
  select(view, QString::fromUtf8("Ansvarig.Företag.Omsättning"));
  EXPECT_EQ(tree->FullPath(), "coworker.company.turnover");
}

TEST_F(FieldDialogsTest, LinkStyleDecidesWhatOpensAndLinkSelectWhatIsChosen) {
  {
    // Nothing opens: the relations are plain leaves among the fields.
    const auto tree = selector("company", [](FieldSelector &s) { s.SetLinkStyle(3); });
    QTreeWidget &view = treeOf(*tree);
    EXPECT_EQ(nodeAt(view, "Responsible")->childCount(), 0);
    EXPECT_EQ(nodeAt(view, "Persons")->childCount(), 0);
    EXPECT_EQ(texts(view).indexOf("Persons"), texts(view).indexOf("Phone") - 1);
  }
  {
    const auto tree = selector("company", [](FieldSelector &s) { s.SetLinkStyle(1); });
    EXPECT_EQ(nodeAt(treeOf(*tree), "Responsible")->childCount(), 1);
    EXPECT_EQ(nodeAt(treeOf(*tree), "Persons")->childCount(), 0);
  }
  {
    const auto tree = selector("company", [](FieldSelector &s) { s.SetLinkStyle(2); });
    EXPECT_EQ(nodeAt(treeOf(*tree), "Responsible")->childCount(), 0);
    EXPECT_EQ(nodeAt(treeOf(*tree), "Persons")->childCount(), 1);
  }

  // LinkSelect 3: a double click opens a relation but never chooses it;
  // a plain field is chosen.
  const auto tree = selector("company", [](FieldSelector &s) { s.SetLinkSelect(3); });
  QTreeWidget &view = treeOf(*tree);
  QSignalSpy selected(tree.get(), &FieldSelector::FieldSelected);
  QSignalSpy changed(tree.get(), &FieldSelector::FieldSelChange);
  doubleClick(view, "Responsible");
  EXPECT_EQ(selected.count(), 0);
  EXPECT_TRUE(nodeAt(view, "Responsible")->isExpanded());
  EXPECT_EQ(nodeAt(view, "Responsible")->child(0)->text(0), "Created");
  doubleClick(view, "Name");
  EXPECT_EQ(selected.count(), 1);
  // A single click only changes the selection, and beside the nodes it
  // chooses nothing even with single clicks on.
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, centreOf(view, "City"));
  EXPECT_EQ(selected.count(), 1);
  EXPECT_GE(changed.count(), 1);
  tree->SetSingleClick(true);
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, centreOf(view, "Country"));
  EXPECT_EQ(selected.count(), 2);
  EXPECT_EQ(tree->FullLocalPath(), "Country");
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, QPoint(10, view.viewport()->height() - 3));
  EXPECT_EQ(selected.count(), 2);

  // LinkSelect 1 by keyboard: Space and Enter choose a relation to one,
  // not a relation to many.
  tree->SetLinkSelect(1);
  view.setCurrentItem(nodeAt(view, "Persons"));
  QTest::keyClick(&view, Qt::Key_Space);
  QTest::keyClick(&view, Qt::Key_Return);
  EXPECT_EQ(selected.count(), 2);
  view.setCurrentItem(nodeAt(view, "Responsible"));
  QTest::keyClick(&view, Qt::Key_Space);
  QTest::keyClick(&view, Qt::Key_Enter, Qt::KeypadModifier);
  EXPECT_EQ(selected.count(), 4);
}

TEST_F(FieldDialogsTest, TypeFiltersReplaceEachOther) {
  {
    // Include, then Exclude: only the exclusion holds.
    const auto tree = selector("company", [](FieldSelector &s) {
      s.SetIncludeFieldTypes(types({FT::RelationToOne}));
      s.SetExcludeFieldTypes(types({FT::RelationToMany, FT::CreatedTime, FT::UpdatedTime}));
    });
    EXPECT_EQ(texts(treeOf(*tree)), QStringList({"Category", "City", "Country", "Created by", "E-mail", "Founded", "ID",
                                                 "Name", "Phone", "Turnover", "Updated by", "Responsible"}));
  }
  {
    // Exclude, then Include: only relations to one; the coworker has none,
    // so the relation opens to nothing and loses its expand mark.
    const auto tree = selector("company", [](FieldSelector &s) {
      s.SetExcludeFieldTypes(types({FT::Text}));
      s.SetIncludeFieldTypes(types({FT::RelationToOne, FT::RelationToOne}));
    });
    QTreeWidget &view = treeOf(*tree);
    EXPECT_EQ(texts(view), QStringList({"Responsible"}));
    QTreeWidgetItem *responsible = nodeAt(view, "Responsible");
    responsible->setExpanded(true);
    EXPECT_EQ(responsible->childCount(), 0);
    EXPECT_EQ(view.itemBelow(responsible), nullptr);
  }
  {
    // A value that is no array empties the other list and fills nothing.
    const auto tree = selector("company", [](FieldSelector &s) {
      s.SetExcludeFieldTypes(types({FT::Text}));
      s.SetIncludeFieldTypes(Variant("16"));
    });
    EXPECT_EQ(texts(treeOf(*tree)).size(), 17);
  }
  // A class with nothing to show: an empty tree and empty answers.
  const auto tree = selector("company", [](FieldSelector &s) { s.SetIncludeFieldTypes(types({99})); });
  EXPECT_EQ(treeOf(*tree).topLevelItemCount(), 0);
  EXPECT_EQ(tree->Field(), nullptr);
  EXPECT_EQ(tree->FullLocalPath(), "");
  EXPECT_EQ(tree->FullPath(), "");
  EXPECT_TRUE(ui->boxes.empty());
}

TEST_F(FieldDialogsTest, FieldsOnTheCurrentPathListALevel) {
  const auto tree = selector("company");
  QTreeWidget &view = treeOf(*tree);
  // A closed relation is opened first; relations are left out.
  QTreeWidgetItem *responsible = select(view, "Responsible");
  const auto onPath = tree->GetFieldsOnCurrentPath(false);
  EXPECT_EQ(responsible->childCount(), 11);
  EXPECT_NE(responsible->child(0)->text(0), FieldSelector::kPlaceholder);
  QStringList keys, items;
  for (int i = 0; i < onPath->count(); ++i) {
    keys << onPath->keyAt(i).toString();
    items << onPath->itemAt(i).toString();
  }
  EXPECT_EQ(keys, QStringList({"coworker.createdtime", "coworker.createdby", "coworker.email", "coworker.idcoworker",
                               "coworker.name", "coworker.phone", "coworker.timestamp", "coworker.updatedby"}));
  EXPECT_EQ(items.value(4), "Responsible.Name");

  // A leaf lists its own level, with relations when asked.
  select(view, "Responsible.Phone");
  EXPECT_EQ(tree->GetFieldsOnCurrentPath(true)->count(), 11);
  select(view, "City");
  const auto root = tree->GetFieldsOnCurrentPath(true);
  EXPECT_EQ(root->count(), 17);
  EXPECT_EQ(root->value("coworker").toString(), "Responsible");

  // Without a selected node the reporter says where, and the map is empty.
  view.clearSelection();
  EXPECT_EQ(tree->GetFieldsOnCurrentPath(false)->count(), 0);
  ASSERT_EQ(ui->boxes.size(), 1u);
  EXPECT_TRUE(ui->boxes[0].text.contains("FieldSelector.GetFieldsOnCurrentPath"));

  FieldSelector empty;
  empty.ShowFields();
  ASSERT_EQ(ui->boxes.size(), 2u);
  EXPECT_TRUE(ui->boxes[1].text.contains("FieldSelector.ShowFields"));
}

TEST_F(FieldDialogsTest, TheFieldDialogHandsBackOneFieldByKeyboard) {
  // Enter on a relation to one chooses it and closes the dialog.
  DlgFieldSelector dialog;
  dialog.SetFields(fieldsOf("deal"));
  dialog.Form_Load();
  EXPECT_EQ(dialog.windowTitle(), "Choose a field");
  QStringList shown;
  ui->modalHandler = [&shown](QWidget &window) {
    showNow(window);
    QTreeWidget &tree = treeOf(window);
    shown = texts(tree);
    tree.setCurrentItem(nodeAt(tree, "Company"));
    QTest::keyClick(&tree, Qt::Key_Return);
  };
  hostapi::ui().showModal(dialog);
  EXPECT_FALSE(shown.contains("History")) << "relations to many are never offered";
  EXPECT_TRUE(dialog.Status());
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.FullLocalPath(), "Company");
  EXPECT_EQ(dialog.FullPath(), "company");
  EXPECT_EQ(dialog.Field()->type(), FT::RelationToOne);

  // Escape cancels; a double click on a field chooses it.
  DlgFieldSelector cancelled;
  cancelled.SetFields(fieldsOf("deal"));
  cancelled.Form_Load();
  ui->modalHandler = [](QWidget &window) {
    showNow(window);
    QTest::keyClick(&window, Qt::Key_Escape);
  };
  hostapi::ui().showModal(cancelled);
  EXPECT_FALSE(cancelled.Status());
  EXPECT_FALSE(cancelled.isVisible());
  EXPECT_EQ(cancelled.Field(), nullptr);

  DlgFieldSelector picked;
  picked.SetFields(fieldsOf("deal"));
  picked.Form_Load();
  ui->modalHandler = [](QWidget &window) {
    showNow(window);
    QTreeWidget &tree = treeOf(window);
    doubleClick(tree, "Contact.Last name");
  };
  hostapi::ui().showModal(picked);
  EXPECT_TRUE(picked.Status());
  EXPECT_EQ(picked.FullPath(), "person.lastname");
}

// ---- the field insertion window

class FieldInsertionTest : public FieldDialogsTest {
protected:
  // A window of a mode, loaded for the company's fields.
  std::unique_ptr<DlgFields> load(int mode, const QString &activeSection) {
    auto dialog = std::make_unique<DlgFields>();
    dialog->SetMode(mode);
    dialog->SetNuvoFields(fieldsOf("company"));
    dialog->SetSectionNames(strings({"PageHeader", "Detail", "PageFooter"}));
    dialog->SetActiveSectionName(activeSection);
    dialog->Form_Load();
    showNow(*dialog);
    return dialog;
  }

  // Answers the host's field dialog with the node of a path, or cancels it
  // with an empty path; records the fields it offered.
  void answerHostDialog(const QString &path) {
    ui->modalHandler = [this, path](QWidget &window) {
      hostCaption = window.windowTitle();
      auto &tree = child<QTreeWidget>(window, "TreeFields");
      offered = texts(tree);
      if (path.isEmpty()) {
        child<QPushButton>(window, "CmdCancel").click();
        return;
      }
      tree.setCurrentItem(nodeAt(tree, path));
      child<QPushButton>(window, "CmdOK").click();
    };
  }

  QStringList offered;
  QString hostCaption;
};

TEST_F(FieldInsertionTest, LabelsFollowTheActiveSection) {
  {
    const auto dialog = load(0, "");
    QWidget &page = child<QWidget>(*dialog, "CtlFields");
    EXPECT_EQ(dialog->windowTitle(), "Insert fields");
    EXPECT_TRUE(page.isVisible());
    EXPECT_FALSE(child<QWidget>(*dialog, "CtlScriptFields").isVisible());
    auto &labels = child<QCheckBox>(page, "ChkInsertLabels");
    auto &labelSections = child<QComboBox>(page, "CboLabelSections");
    EXPECT_FALSE(labels.isChecked());
    EXPECT_FALSE(labelSections.isEnabled());
    EXPECT_EQ(child<QComboBox>(page, "CboFieldSections").currentText(), "PageHeader");
    EXPECT_EQ(labelSections.currentText(), "PageHeader");
    EXPECT_FALSE(child<QPushButton>(page, "CmdRemove").isEnabled());
    EXPECT_EQ(child<QPushButton>(page, "CmdInsert").text(), "&Add") << "the face's captions are its kind's";
    QTest::mouseClick(&labels, Qt::LeftButton, {}, QPoint(4, labels.height() / 2));
    EXPECT_TRUE(labels.isChecked());
    EXPECT_TRUE(labelSections.isEnabled());
  }
  const auto dialog = load(0, "Detail");
  QWidget &page = child<QWidget>(*dialog, "CtlFields");
  EXPECT_TRUE(child<QCheckBox>(page, "ChkInsertLabels").isChecked());
  EXPECT_TRUE(child<QComboBox>(page, "CboLabelSections").isEnabled());
  EXPECT_EQ(child<QComboBox>(page, "CboFieldSections").currentText(), "Detail");
  EXPECT_EQ(child<QComboBox>(page, "CboLabelSections").currentText(), "Detail");
  EXPECT_EQ(tabOrder(treeOf(page), 8), QStringList({"CmdInsert", "CmdInsertAll", "LbFields", "CboFieldSections",
                                                    "ChkInsertLabels", "CboLabelSections", "CmdOK", "CmdCancel"}));

  select(treeOf(page), "Name");
  child<QPushButton>(page, "CmdInsert").click();
  // A box ticked but disabled gives no label section.
  child<QCheckBox>(page, "ChkInsertLabels").setEnabled(false);
  dialog->CmdOK_Click();
  EXPECT_TRUE(dialog->Status());
  EXPECT_EQ(dialog->FieldSection(), "Detail");
  EXPECT_EQ(dialog->LabelSection(), "");
}

TEST_F(FieldInsertionTest, TheFieldListTakesFieldsOnceByInsertAllAndAnyNumberOfTimesOneByOne) {
  const auto dialog = load(0, "Detail");
  QWidget &page = child<QWidget>(*dialog, "CtlFields");
  QTreeWidget &tree = treeOf(page);
  auto &list = child<QListWidget>(page, "LbFields");
  const auto listed = [&list] {
    QStringList entries;
    for (int i = 0; i < list.count(); ++i)
      entries << list.item(i)->text();
    return entries;
  };

  // OK with nothing chosen says so and the window stays.
  child<QPushButton>(*dialog, "CmdOK").click();
  EXPECT_EQ(boxTexts(), QStringList({GetMessage("FieldsPage.NoFields")}));
  EXPECT_EQ(ui->boxes[0].flags, 64);
  EXPECT_TRUE(dialog->isVisible());
  EXPECT_FALSE(dialog->Status());

  // The relations of the system and to many are not offered.
  EXPECT_FALSE(texts(tree).contains("Persons"));
  EXPECT_FALSE(texts(tree).contains("Created"));
  // One field twice by the button and by Enter in the tree.
  select(tree, "Responsible.Name");
  child<QPushButton>(page, "CmdInsert").click();
  tree.setFocus();
  QTest::keyClick(&tree, Qt::Key_Return);
  EXPECT_EQ(listed(), QStringList({"Responsible.Name", "Responsible.Name"}));
  EXPECT_TRUE(dialog->isVisible()) << "Enter in the tree inserts and does not close the window";
  EXPECT_TRUE(child<QPushButton>(page, "CmdRemoveAll").isEnabled());

  // All fields of a level once, however often.
  select(tree, "City");
  child<QPushButton>(page, "CmdInsertAll").click();
  const QStringList once = listed();
  EXPECT_EQ(once.mid(2),
            QStringList({"Category", "City", "Country", "E-mail", "Founded", "ID", "Name", "Phone", "Turnover"}));
  child<QPushButton>(page, "CmdInsertAll").click();
  EXPECT_EQ(listed(), once);

  // Delete and Space remove the current entry, a double click too.
  list.setFocus();
  list.setCurrentRow(2);
  QTest::keyClick(&list, Qt::Key_Delete);
  list.setCurrentRow(2);
  QTest::keyClick(&list, Qt::Key_Space);
  EXPECT_EQ(listed().mid(0, 3), QStringList({"Responsible.Name", "Responsible.Name", "Country"}));

  dialog->CmdOK_Click();
  EXPECT_TRUE(dialog->Status());
  EXPECT_FALSE(dialog->isVisible());
  EXPECT_EQ(dialog->NewFieldNames(), listed());
  EXPECT_EQ(dialog->FieldSection(), "Detail");
  EXPECT_EQ(dialog->LabelSection(), "Detail");

  // Remove all empties the list and disables both buttons.
  child<QPushButton>(page, "CmdRemoveAll").click();
  EXPECT_EQ(list.count(), 0);
  EXPECT_FALSE(child<QPushButton>(page, "CmdRemove").isEnabled());
  EXPECT_FALSE(child<QPushButton>(page, "CmdRemoveAll").isEnabled());
}

TEST_F(FieldInsertionTest, ExpressionsTakeFieldsFromTheHostDialog) {
  const auto dialog = load(1, "Detail");
  EXPECT_EQ(dialog->windowTitle(), "Insert script fields");
  QWidget &page = child<QWidget>(*dialog, "CtlScriptFields");
  EXPECT_TRUE(page.isVisible());
  EXPECT_FALSE(child<QWidget>(*dialog, "CtlFields").isVisible());
  auto &editor = child<QPlainTextEdit>(page, "TbEditor");
  auto &use = child<QPushButton>(page, "CmdUse");
  EXPECT_FALSE(use.isEnabled());
  EXPECT_TRUE(child<QPushButton>(page, "CmdInsertCoworkerField").isEnabled());
  EXPECT_EQ(child<QComboBox>(page, "CboSections").currentText(), "Detail");

  // Inserting replaces the selection and leaves the cursor after the field.
  editor.setFocus();
  QTest::keyClicks(&editor, "abc def");
  EXPECT_TRUE(use.isEnabled());
  QTextCursor cursor = editor.textCursor();
  cursor.setPosition(4);
  cursor.setPosition(7, QTextCursor::KeepAnchor);
  editor.setTextCursor(cursor);
  answerHostDialog("Responsible.Name");
  child<QPushButton>(page, "CmdInsertField").click();
  EXPECT_EQ(editor.toPlainText(), "abc [Responsible.Name]");
  EXPECT_EQ(editor.textCursor().position(), 22);
  EXPECT_EQ(hostCaption, "Choose a field");
  EXPECT_FALSE(offered.contains("Persons")) << "the page's excluded types reach the host's dialog";
  EXPECT_FALSE(offered.contains("Created"));

  // Relations and choices are read as their display text.
  answerHostDialog("Category");
  child<QPushButton>(page, "CmdInsertField").click();
  answerHostDialog("Responsible");
  child<QPushButton>(page, "CmdInsertField").click();
  answerHostDialog("");
  child<QPushButton>(page, "CmdInsertField").click();
  answerHostDialog("Name");
  child<QPushButton>(page, "CmdInsertCoworkerField").click();
  EXPECT_EQ(editor.toPlainText(), "abc [Responsible.Name]Text(\"Category\")Text(\"Responsible\")"
                                  "ActiveUser.Record.Text(\"Name\")");
  EXPECT_TRUE(offered.contains("Phone")) << "the coworker's own fields";

  // Use moves the expression to the list; Space takes it back, Delete
  // removes it.
  use.click();
  EXPECT_EQ(editor.toPlainText(), "");
  EXPECT_FALSE(use.isEnabled());
  auto &list = child<QListWidget>(page, "LbScripts");
  ASSERT_EQ(list.count(), 1);
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Space);
  EXPECT_EQ(list.count(), 0);
  EXPECT_TRUE(editor.toPlainText().startsWith("abc"));
  EXPECT_FALSE(child<QPushButton>(page, "CmdEdit").isEnabled());
  use.click();
  editor.setPlainText("[City]");
  use.click();
  list.setCurrentRow(0);
  QTest::keyClick(&list, Qt::Key_Delete);

  // Text left in the editor does not count.
  editor.setPlainText("[Country]");
  dialog->CmdOK_Click();
  EXPECT_TRUE(dialog->Status());
  EXPECT_EQ(dialog->NewFieldNames(), QStringList({"[City]"}));
  EXPECT_EQ(dialog->FieldSection(), "Detail");
  EXPECT_EQ(dialog->LabelSection(), "");
  EXPECT_TRUE(ui->boxes.empty());
}

TEST_F(FieldInsertionTest, WithoutACoworkerRecordThereIsNoCoworkerField) {
  const auto engine = nuvo::engineOf(app->database());
  engine->sql().exec(QStringLiteral("INSERT OR IGNORE INTO nv_user (login, name, coworker) VALUES (?, ?, NULL)"),
                     {QStringLiteral("guest"), QStringLiteral("Guest")});
  reopen("en", "guest");
  const auto dialog = load(1, "");
  QWidget &page = child<QWidget>(*dialog, "CtlScriptFields");
  EXPECT_FALSE(child<QPushButton>(page, "CmdInsertCoworkerField").isEnabled());
  EXPECT_EQ(child<QComboBox>(page, "CboSections").currentText(), "PageHeader");
  qobject_cast<ScriptFieldsPage *>(&page)->CmdInsertCoworkerField_Click();
  EXPECT_EQ(boxTexts(), QStringList({"No ActiveUser.Record"}));

  // OK with an empty list says so and the window stays.
  dialog->CmdOK_Click();
  EXPECT_EQ(boxTexts().value(1), GetMessage("ScriptFieldsPage.NoFields"));
  EXPECT_TRUE(dialog->isVisible());
}

TEST_F(FieldInsertionTest, TheHostDialogKnowsOneNumber) {
  const ObjectRef dialog = app->createObject("Orvex.Dialog");
  dialog->set("Fields", Variant(ObjectRef(fieldsOf("company"))));
  try {
    dialog->invoke("Show", {3});
    FAIL() << "dialog 3 was shown";
  } catch (const Error &error) {
    EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
    EXPECT_TRUE(error.description().contains("12"));
  }
  answerHostDialog("");
  EXPECT_EQ(dialog->invoke("Show", {12}), Variant(0));
  EXPECT_TRUE(dialog->get("Field").isNothing());
  answerHostDialog("Responsible.Companies.City");
  EXPECT_EQ(dialog->invoke("Show", {12}), Variant(1));
  EXPECT_EQ(dialog->get("Path"), Variant("Responsible.Companies.City"));
  EXPECT_EQ(dialog->get("Field").toObject()->get("Name"), Variant("coworker.company.city"));
}

// ---- sub pages and sections

TEST_F(FieldDialogsTest, ASubPageFollowsARelationToManyUnderAFreeName) {
  DlgSelectSubPage dialog;
  dialog.SetFields(fieldsOf("company"));
  dialog.SetSectionNames(strings({"PageHeader", "Detail", "PageFooter"}));
  dialog.SetSubPageNames(strings({"Deal", "Deals"}));
  dialog.SetActiveSectionName("Detail");
  dialog.Form_Load();
  showNow(dialog);
  QTreeWidget &tree = treeOf(dialog);
  auto &field = child<QLabel>(dialog, "LblField");
  auto &name = child<QLineEdit>(dialog, "TbName");
  EXPECT_EQ(field.text(), "");
  EXPECT_EQ(child<QComboBox>(dialog, "CboPageSection").currentText(), "Detail");
  // Only relations: to many are choices, to one open.
  EXPECT_EQ(texts(tree), QStringList({"Deals", "History", "Persons", "Responsible"}));
  EXPECT_EQ(tabOrder(tree, 5), QStringList({"TbName", "CboPageSection", "CmdOK", "CmdCancel"}));

  // OK without a relation says so and stays.
  dialog.CmdOK_Click();
  EXPECT_EQ(boxTexts(), QStringList({GetMessage("DlgSelectSubPage.NoField")}));
  EXPECT_TRUE(dialog.isVisible());
  EXPECT_FALSE(dialog.Status());

  // One click chooses; a relation to one is no choice.
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, centreOf(tree, "Responsible"));
  EXPECT_EQ(field.text(), "");
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, centreOf(tree, "Deals"));
  EXPECT_EQ(field.text(), "Deals");
  EXPECT_EQ(name.text(), "Deal 2") << "the related class's name, numbered past the names in use";
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, centreOf(tree, "Responsible.Companies"));
  EXPECT_EQ(field.text(), "Responsible.Companies");
  EXPECT_EQ(name.text(), "Company");

  // An empty name still ends with a proposal, from the field's own name.
  QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, centreOf(tree, "Deals"));
  name.clear();
  child<QPushButton>(dialog, "CmdOK").click();
  EXPECT_TRUE(dialog.Status());
  EXPECT_FALSE(dialog.isVisible());
  EXPECT_EQ(dialog.NewPageSource(), "deal");
  EXPECT_EQ(dialog.NewPageName(), "Deals 2");
  EXPECT_EQ(dialog.PageSectionName(), "Detail");

  dialog.SetSubPageNames(strings({"Orders", "Orders 2"}));
  EXPECT_EQ(dialog.GetUniquePageName("Orders"), "Orders 3");
  dialog.SetSubPageNames(strings({"Orders"}));
  EXPECT_EQ(dialog.GetUniquePageName("Orders"), "Orders 2");
  dialog.SetSubPageNames(strings({}));
  EXPECT_EQ(dialog.GetUniquePageName("Orders"), "Orders");
}

TEST_F(FieldDialogsTest, TheSectionDialogNeedsASection) {
  {
    DlgSelSection dialog;
    dialog.SetSectionNames(strings({}));
    dialog.Form_Load();
    showNow(dialog);
    child<QPushButton>(dialog, "CmdOK").click();
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_FALSE(dialog.Status());
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
  }
  DlgSelSection dialog;
  dialog.SetSectionNames(strings({"GroupHeader1", "Detail"}));
  dialog.Form_Load();
  showNow(dialog);
  auto &sections = child<QComboBox>(dialog, "CboSection");
  EXPECT_EQ(sections.currentText(), "GroupHeader1");
  sections.setCurrentIndex(1);
  QTest::keyClick(&sections, Qt::Key_Return);
  EXPECT_TRUE(dialog.Status());
  EXPECT_EQ(dialog.SectionName(), "Detail");
}

// ---- languages and looks

TEST_F(FieldDialogsTest, TheDialogsSpeakSwedish) {
  StopTranslation();
  StartTranslation("sv");
  reopen("sv");
  DlgFieldSelector selectorDialog;
  selectorDialog.SetFields(fieldsOf("company"));
  selectorDialog.Form_Load();
  EXPECT_EQ(selectorDialog.windowTitle(), QString::fromUtf8("Välj ett fält"));
  EXPECT_EQ(child<QPushButton>(selectorDialog, "CmdCancel").text(), "Avbryt");

  DlgFields fields;
  fields.SetMode(1);
  fields.SetNuvoFields(fieldsOf("company"));
  fields.Form_Load();
  EXPECT_EQ(fields.windowTitle(), QString::fromUtf8("Infoga skriptfält"));
  EXPECT_EQ(child<QPushButton>(fields, "CmdUse").text(), QString::fromUtf8("&Använd"));

  DlgFields fieldsPage;
  fieldsPage.SetNuvoFields(fieldsOf("company"));
  fieldsPage.Form_Load();
  EXPECT_EQ(fieldsPage.windowTitle(), QString::fromUtf8("Infoga fält"));
  EXPECT_EQ(child<QPushButton>(fieldsPage, "CmdInsertAll").text(), QString::fromUtf8("Lägg till &alla"));

  DlgSelectSubPage subPage;
  subPage.SetFields(fieldsOf("company"));
  subPage.Form_Load();
  EXPECT_EQ(subPage.windowTitle(), "Ny underrapport");
  EXPECT_EQ(child<QGroupBox>(subPage, "FmePageSection").title(), "Placera underrapporten i &sektionen");
  EXPECT_EQ(texts(treeOf(subPage)).first(), QString::fromUtf8("Affärer"));

  DlgSelSection section;
  section.Form_Load();
  EXPECT_EQ(child<QLabel>(section, "LblSection").text(), "&Sektion:");

  // Swedish captions fit their controls.
  eachDialog([this](QWidget &window, const QString &name) { lookAt(window, name + QStringLiteral("-sv")); });

  // The host's own dialog reads the host's language.
  host::HostDialogObject hostDialog(QStringLiteral("sv"));
  hostDialog.setFields(fieldsOf("company"));
  QString caption;
  ui->modalHandler = [&caption](QWidget &window) {
    caption = window.windowTitle() + u'/' + child<QPushButton>(window, "CmdCancel").text();
    child<QPushButton>(window, "CmdCancel").click();
  };
  EXPECT_EQ(hostDialog.show(12), 0);
  EXPECT_EQ(caption, QString::fromUtf8("Välj ett fält/Avbryt"));
  EXPECT_TRUE(ui->boxes.empty());
}

TEST_F(FieldDialogsTest, EveryDialogIsLaidOutToBeSeen) {
  eachDialog([this](QWidget &window, const QString &name) { lookAt(window, name); });
  // The trees grow with their window.
  DlgSelectSubPage subPage;
  subPage.SetFields(fieldsOf("company"));
  subPage.Form_Load();
  showNow(subPage);
  const int before = treeOf(subPage).height();
  subPage.resize(subPage.width(), subPage.height() + 200);
  QApplication::processEvents();
  EXPECT_EQ(treeOf(subPage).height(), before + 200);
}
