// The layout engine's texts in the host's language: the translator reads
// the [engine] section of the translation files, a Swedish host shows the
// band designer in Swedish and an English one in English, and every text
// of the designer's sources has its Swedish translation, so that a new
// text without one fails here. KORDEL_SCREENSHOT_DIR=FOLDER keeps a picture
// of the designer in each language, designer-sv.png and designer-en.png.

#include "host/EngineTranslator.h"
#include "host/FileLog.h"
#include "host/HostApplication.h"
#include "host/IniFile.h"
#include "host/SettingsStore.h"

#include "engine/designer/DesignerActions.h"
#include "engine/designer/DesignerControl.h"
#include "engine/designer/DesignerMessages.h"
#include "engine/designer/DesignerWindow.h"
#include "engine/designer/FindBar.h"
#include "engine/designer/PropertyList.h"
#include "engine/designer/ScriptEditor.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "cli/DemoLayouts.h"
#include "support/ScriptedUi.h"
#include "support/TempDir.h"

#include <QAction>
#include <QDir>
#include <QDockWidget>
#include <QLabel>
#include <QMenuBar>
#include <QRegularExpression>
#include <QSet>
#include <QToolBar>

#include <gtest/gtest.h>

using namespace kordel;
using kordel::host::EngineTranslator;
using kordel::test::TempDir;

namespace {

QString sourceDir() { return QStringLiteral(KORDEL_SOURCE_DIR); }

// ---- The texts of the designer's sources ----

// A C++ string literal's text: its escapes undone.
QString literalText(QStringView literal) {
  QString text;
  for (qsizetype i = 0; i < literal.size(); ++i) {
    if (literal[i] != u'\\' || i + 1 == literal.size()) {
      text += literal[i];
      continue;
    }
    const QChar next = literal[++i];
    text += next == u'n' ? QChar(u'\n') : next == u't' ? QChar(u'\t') : next;
  }
  return text;
}

// The text of a run of adjacent literals, "one " "two".
QString literalsText(const QString &run) {
  static const QRegularExpression literal(QStringLiteral(R"re("((?:[^"\\]|\\.)*)")re"));
  QString text;
  for (const QRegularExpressionMatch &match : literal.globalMatch(run))
    text += literalText(match.capturedView(1));
  return text;
}

struct SourceTexts {
  QStringList texts;  // each once, in the order met
  QStringList wrongs; // calls that skip the designer's context, with their file
};

// What a marker function (designerText("...")) and QT_TRANSLATE_NOOP with
// the context name in the sources of a folder; and tr() or another
// context, which a translator would look up elsewhere.
SourceTexts sourceTexts(const QString &subfolder, const QString &marker, const QString &context) {
  static const QString literals = QStringLiteral(R"re(((?:"(?:[^"\\]|\\.)*"\s*)+))re");
  const QRegularExpression marked(
      QStringLiteral(R"re((?:%1\(|QT_TRANSLATE_NOOP\(\s*"%2"\s*,)\s*)re").arg(marker, context) + literals);
  const QRegularExpression wrong(
      QStringLiteral(R"re(\btr\s*\(\s*"|QT_TRANSLATE_NOOP\(\s*"(?!%1")|::translate\(\s*"(?!%1"))re").arg(context));
  SourceTexts found;
  const QDir folder(sourceDir() + u'/' + subfolder);
  for (const QString &name : folder.entryList({QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files)) {
    QFile file(folder.filePath(name));
    if (!file.open(QIODevice::ReadOnly))
      continue;
    const QString source = QString::fromUtf8(file.readAll());
    for (const QRegularExpressionMatch &match : marked.globalMatch(source)) {
      const QString text = literalsText(match.captured(1));
      if (!found.texts.contains(text))
        found.texts << text;
    }
    for (const QRegularExpressionMatch &match : wrong.globalMatch(source))
      found.wrongs << name + QStringLiteral(": ") + source.mid(match.capturedStart(), 40).simplified();
  }
  return found;
}

// The places a text fills in: %1 ... %9 and %n.
QStringList placeholders(const QString &text) {
  static const QRegularExpression mark(QStringLiteral("%[1-9n]"));
  QStringList found;
  for (const QRegularExpressionMatch &match : mark.globalMatch(text))
    found << match.captured();
  found.sort();
  return found;
}

// Every text of the sources of a folder has its Swedish entry
// "<context>.<text>" in [engine], filling in the same places, and no entry
// of the context outlives its text.
void expectSwedishForEachText(const QString &subfolder, const QString &marker, const QString &context, int atLeast) {
  const SourceTexts sources = sourceTexts(subfolder, marker, context);
  ASSERT_GT(sources.texts.size(), atLeast) << "the sources of " << subfolder.toStdString() << " were found";
  EXPECT_TRUE(sources.wrongs.isEmpty()) << "texts go through " << marker.toStdString() << "(), in the context \""
                                        << context.toStdString() << "\":\n"
                                        << sources.wrongs.join(u'\n').toStdString();

  const QString folder = sourceDir() + QStringLiteral("/translation");
  const EngineTranslator swedish(folder, QStringLiteral("sv"));
  const QByteArray contextName = context.toUtf8();
  QStringList missing;
  QStringList misplaced;
  QSet<QString> used;
  for (const QString &text : sources.texts) {
    used.insert((context + u'.' + text).toCaseFolded());
    const QString translated = swedish.translate(contextName.constData(), text.toUtf8().constData());
    if (translated.isEmpty())
      missing << context + u'.' + text;
    else if (placeholders(translated) != placeholders(text))
      misplaced << text + QStringLiteral(" -> ") + translated;
  }
  EXPECT_TRUE(missing.isEmpty()) << "[engine] of translation/kordel.sv.ini lacks:\n"
                                 << missing.join(u'\n').toStdString();
  EXPECT_TRUE(misplaced.isEmpty()) << "translations that fill in other places than their text:\n"
                                   << misplaced.join(u'\n').toStdString();

  QStringList unused;
  const host::IniFile file = host::IniFile::load(folder + QStringLiteral("/kordel.sv.ini"));
  for (const QString &key : file.names(QStringLiteral("engine")))
    if (key.startsWith(context + u'.') && !used.contains(key.toCaseFolded()))
      unused << key;
  EXPECT_TRUE(unused.isEmpty()) << "entries no source text has:\n" << unused.join(u'\n').toStdString();
}

TEST(EngineTranslator, EveryTextOfTheDesignerHasItsSwedishTranslation) {
  expectSwedishForEachText(QStringLiteral("platform/engine/designer"), QStringLiteral("designerText"),
                           QStringLiteral("Designer"), 150);
}

TEST(EngineTranslator, EveryTextOfThePreviewHasItsSwedishTranslation) {
  expectSwedishForEachText(QStringLiteral("platform/engine/preview"), QStringLiteral("previewText"),
                           QStringLiteral("Preview"), 25);
}

TEST(EngineTranslator, EveryTextOfTheDesktopClientHasItsSwedishTranslation) {
  expectSwedishForEachText(QStringLiteral("platform/host/desktop"), QStringLiteral("desktopText"),
                           QStringLiteral("Desktop"), 50);
}

// ---- The reader ----

TEST(EngineTranslator, ReadsTheEngineSectionOfTheLanguagesFile) {
  TempDir dir;
  ASSERT_TRUE(test::writeFile(dir.file(QStringLiteral("kordel.sv.ini")),
                              "[kordel]\n"
                              "Designer.Undo=not the engine's\n"
                              "[engine]\n"
                              "Designer.Align lefts=Justera vänsterkanter\n"
                              "\"Designer.Fields say =expression\"=Fält säger =uttryck\n"
                              "Designer.\"%1\" is no name: a name begins with _=\"%1\" är inget namn: = _\n"
                              "Preview.Next page=Nästa sida\n"));
  const EngineTranslator swedish(dir.path(), QStringLiteral("sv_SE"));
  EXPECT_EQ(swedish.size(), 4);
  EXPECT_EQ(swedish.translate("Designer", "Align lefts"), QStringLiteral("Justera vänsterkanter"));
  EXPECT_EQ(swedish.translate("Designer", "Fields say =expression"), QStringLiteral("Fält säger =uttryck"));
  EXPECT_EQ(swedish.translate("Designer", "\"%1\" is no name: a name begins with _"),
            QStringLiteral("\"%1\" är inget namn: = _"));
  EXPECT_EQ(swedish.translate("Preview", "Next page"), QStringLiteral("Nästa sida"));
  // A text of another context, another section or none stays untranslated.
  EXPECT_TRUE(swedish.translate("Preview", "Align lefts").isNull());
  EXPECT_TRUE(swedish.translate("Designer", "Undo").isNull());
  EXPECT_TRUE(EngineTranslator(dir.path(), QStringLiteral("fi")).isEmpty());
}

// ---- The designer in the host's language ----

class DesignerLanguage : public ::testing::Test {
protected:
  std::shared_ptr<host::HostApplication> makeHost(const QString &language) {
    return std::make_shared<host::HostApplication>(
        std::make_shared<host::SettingsStore>(dir.file(QStringLiteral("registry.ini"))),
        std::make_shared<host::FileLog>(dir.file(QStringLiteral("orvex.log"))), language);
  }

  // What a new designer window shows: some captions, by where they stand.
  QStringList captions() {
    const auto designer = engine::DesignerControl::create();
    auto *window = static_cast<engine::DesignerWindow *>(designer->window());
    const auto detail = designer->document().report()->detail();
    auto label = detail->controls()->add(QStringLiteral("DDActiveReports2.Label"));
    designer->document().noteOutsideChange();
    designer->document().select({label});
    QStringList shown{
        window->action(engine::DesignAction::AlignLeft)->text(),
        window->menuBar()->actions().value(0)->text(),
        window->findChild<QToolBar *>(QStringLiteral("ddTBToolBox"))->actions().value(1)->text(),
        window->findChild<QDockWidget *>(QStringLiteral("ddTBPropertyToolbox"))->windowTitle(),
        window->findChild<QLabel *>(QStringLiteral("LblCategoryAppearance"))->text(),
        window->findChild<QLabel *>(QStringLiteral("LblPropertyTarget"))->text(),
        window->propertyList().shownText(QStringLiteral("Alignment")),
        engine::designMessageText(engine::DesignMessage::NothingToPaste),
    };
    return shown;
  }

  // A picture of the designer with a demo layout and every panel, to look at.
  static void keepPicture(const QString &language) {
    const QString folder = qEnvironmentVariable("KORDEL_SCREENSHOT_DIR");
    if (folder.isEmpty())
      return;
    const auto designer = engine::DesignerControl::create();
    designer->document().load(host::cli::demoReports().front().layouts.begin().value());
    designer->set(QStringLiteral("ToolbarsVisible"), 255);
    designer->document().select({designer->document().report()->detail()->controls()->at(0)});
    QWidget *window = designer->window();
    window->resize(1400, 860);
    window->show();
    window->grab().save(QDir(folder).filePath(QStringLiteral("designer-%1.png").arg(language)));
    engine::ScriptEditor editor(designer->document());
    editor.findBar().open(true);
    editor.show();
    editor.grab().save(QDir(folder).filePath(QStringLiteral("script-editor-%1.png").arg(language)));
    // The dialog of the group order, as the host's Ui shows it.
    const auto ui = std::make_shared<test::ScriptedUi>();
    ui->modalHandler = [&](QWidget &dialog) {
      dialog.show();
      dialog.grab().save(QDir(folder).filePath(QStringLiteral("group-order-%1.png").arg(language)));
    };
    hostapi::installUi(ui);
    designer->actions().askGroupOrder({QStringLiteral("GroupHeader1"), QStringLiteral("GroupHeader2")});
    hostapi::installUi(nullptr);
  }

  TempDir dir;
};

TEST_F(DesignerLanguage, ASwedishHostShowsTheDesignerInSwedishAndAnEnglishOneInEnglish) {
  {
    const auto swedish = makeHost(QStringLiteral("sv"));
    EXPECT_EQ(captions(),
              (QStringList{"Justera vänsterkanter", "&Redigera", "Etikett", "Egenskaper", "Utseende",
                           "Label1 (Etikett)", "Vänster", "Urklipp innehåller inga kontroller att klistra in."}));

    // Values typed in either language are taken; the list writes Swedish.
    const auto designer = engine::DesignerControl::create();
    auto *window = static_cast<engine::DesignerWindow *>(designer->window());
    auto label = std::static_pointer_cast<engine::Label>(
        designer->document().report()->detail()->controls()->add(QStringLiteral("DDActiveReports2.Label")));
    designer->document().noteOutsideChange();
    designer->document().select({label});
    engine::PropertyList &list = window->propertyList();
    EXPECT_TRUE(list.setValue(QStringLiteral("Alignment"), QStringLiteral("Centrerad")));
    EXPECT_EQ(label->alignment, engine::Alignment::Center);
    EXPECT_TRUE(list.setValue(QStringLiteral("Alignment"), QStringLiteral("Right")));
    EXPECT_EQ(list.shownText(QStringLiteral("Alignment")), QStringLiteral("Höger"));
    EXPECT_TRUE(list.setValue(QStringLiteral("Visible"), QStringLiteral("nej")));
    EXPECT_FALSE(label->visible);
    EXPECT_TRUE(list.setValue(QStringLiteral("Font"), QStringLiteral("DejaVu Sans, 12 pt, Fet")));
    EXPECT_TRUE(label->font->font().bold());
    EXPECT_EQ(list.shownText(QStringLiteral("Font")), QStringLiteral("DejaVu Sans, 12 pt, Fet"));
    EXPECT_FALSE(list.setValue(QStringLiteral("Width"), QStringLiteral("bred")));
    EXPECT_TRUE(list.message().contains(QStringLiteral("\"bred\" är ingen längd"))) << list.message().toStdString();
    keepPicture(QStringLiteral("sv"));
  }
  // The translator goes with its host.
  const auto english = makeHost(QStringLiteral("en"));
  EXPECT_EQ(captions(), (QStringList{"Align lefts", "&Edit", "Label", "Properties", "Appearance", "Label1 (Label)",
                                     "Left", "The clipboard holds no controls to paste."}));
  keepPicture(QStringLiteral("en"));
}

} // namespace
