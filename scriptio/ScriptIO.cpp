#include "scriptio/ScriptIO.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "common/Settings.h"
#include "document/Page.h"
#include "document/Report.h"
#include "hostapi/Application.h"
#include "hostapi/Database.h"
#include "hostapi/Layout.h"
#include "scriptio/ScriptTextFile.h"
#include "xml/XPathLiteral.h"
#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include <QDir>
#include <QStandardPaths>

namespace kordel::addin {

namespace {

// The name of the block that holds the layout's own script.
const QString kReportBlock = QStringLiteral("ActiveReport Document");
// The setting that asks for a copy of every parsed file (see the header).
const QString kDumpSetting = QStringLiteral("DumpImportedScripts");
// Layouts are kept in the engine's XML layout format.
constexpr int kXmlLayout = 2;

bool isJScript(const QString &language) { return language.toLower() == QStringLiteral("jscript"); }

// Trims blanks only, as the file's readers always have: tabs stay.
QString trimBlanks(const QString &text) {
  qsizetype first = 0;
  qsizetype last = text.size();
  while (first < last && text.at(first) == u' ')
    ++first;
  while (last > first && text.at(last - 1) == u' ')
    --last;
  return text.mid(first, last - first);
}

// The value of one word="value" piece of a tag line.
QString attributeValue(QString piece, const QString &word) {
  return trimBlanks(piece.remove(word, Qt::CaseInsensitive).remove(u'"'));
}

QString pageNodePath(const QString &guid) {
  return QStringLiteral("/report/page[attribute::guid=") + xpathLiteral(guid) + QStringLiteral("]");
}

// The failure in flight, reported with the line of the file it was met on.
void reportAtLine(const QString &source, const ScriptTextFile &stream) {
  const Error error = pendingError();
  ErrorMessage(source, Error(error.number(), error.source(),
                             GetMessage(QStringLiteral("ScriptIO.AtLine"), error.description(),
                                        QString::number(stream.Line()), QDir::toNativeSeparators(stream.FileName()))));
}

// A step of a walk whose failures are ignored: the walk goes on with the
// next step.
template <class Step> void ignoringFailure(Step step) {
  try {
    step();
  } catch (...) {
    // Ignored by design: one unreadable script or section must not stop
    // the others.
  }
}

} // namespace

QString ScriptIO::filter() const {
  return GetMessage(QStringLiteral("ScriptIO.") +
                    (isJScript(language_) ? QStringLiteral("JsFilter") : QStringLiteral("VbFilter")));
}

// ---- Export ----

void ScriptIO::Export() {
  language_ = report_->ScriptLanguage();
  QString fileName = CleanFileName(reportName_);
  const QString folder = ReadSetting(kSettingsRoot, QStringLiteral("ExportDir"), MyDocumentsFolder()).toString();
  if (DisplayFileSave(GetMessage(QStringLiteral("ScriptIO.ExportTitle")), folder, filter(), 1, fileName))
    ExportReportScript(fileName);
}

bool ScriptIO::ExportReportScript(const QString &path) {
  try {
    marker_ = isJScript(language_) ? QStringLiteral("/// ") : QStringLiteral("'/// ");
    ScriptTextFile stream(path, ScriptTextFile::Mode::Create);
    const auto database = CurrentApplication()->database();
    if (!database)
      raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("ScriptIO.ExportReportScript"),
                 QStringLiteral("No database is open"));
    stream.WriteLine(marker_ + QStringLiteral("<report name=\"") + reportName_ + QStringLiteral("\" database=\"") +
                     database->name() + QStringLiteral("\" language=\"") + language_ + QStringLiteral("\">"));
    bool result = true;
    for (int index = 1; result && index <= report_->PageCount(); ++index)
      result = ExportPageScript(report_->GetPageByIndex(index), stream);
    stream.WriteLine(marker_ + QStringLiteral("</report>"));
    return true;
  } catch (...) {
    ErrorMessage(QStringLiteral("ScriptIO.ExportReportScript"));
    return false;
  }
}

bool ScriptIO::ExportPageScript(const std::shared_ptr<Page> &page, ScriptTextFile &stream) {
  const ObjectRef layout = CreateObject(QString::fromLatin1(hostapi::kLayoutReportProgId));
  layout->invoke(QStringLiteral("LoadLayout"), {page->LayoutTemplate()});
  stream.WriteLine(marker_ + QStringLiteral("<page guid=\"") + page->Guid() + QStringLiteral("\" name=\"") +
                   page->Name() + QStringLiteral("\">"));
  // One script line call per script: line feeds become carriage return and
  // line feed pairs, so the whole script lands as it stands.
  const auto writeBlock = [&](const QString &name, const QString &script) {
    stream.WriteLine(marker_ + QStringLiteral("<section name=\"") + name + QStringLiteral("\">"));
    stream.WriteLine(QString(script).replace(u'\n', QStringLiteral("\r\n")));
    stream.WriteLine(marker_ + QStringLiteral("</section>"));
  };
  ignoringFailure([&] {
    const QString script = layout->get(QStringLiteral("Script")).toString();
    if (!script.isEmpty())
      writeBlock(kReportBlock, script);
  });
  ObjectRef sections;
  int count = 0;
  ignoringFailure([&] {
    sections = layout->get(QStringLiteral("Sections")).toObject();
    count = sections->get(QStringLiteral("Count")).toLong();
  });
  for (int i = 0; i < count; ++i)
    ignoringFailure([&] {
      const ObjectRef section = sections->invoke(QStringLiteral("Item"), {i}).toObject();
      const QString script = section->get(QStringLiteral("Script")).toString();
      if (!script.isEmpty())
        writeBlock(section->get(QStringLiteral("Name")).toString(), script);
    });
  stream.WriteLine(marker_ + QStringLiteral("</page>"));
  return true;
}

// ---- Import ----

bool ScriptIO::Import() {
  try {
    language_ = report_->ScriptLanguage();
    const QString folder = ReadSetting(kSettingsRoot, QStringLiteral("ImportDir"), MyDocumentsFolder()).toString();
    QString fileName;
    if (!DisplayFileOpen(GetMessage(QStringLiteral("ScriptIO.ImportTitle")), folder, filter(), 1, fileName))
      return false;
    SetBusyCursor();
    ScriptTextFile stream(fileName, ScriptTextFile::Mode::Read);
    if (Convert(stream))
      return ImportReportScript();
    return false;
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgImportScript.CmdBrowse_Click"));
    return false;
  }
}

bool ScriptIO::readTag(ScriptTextFile &stream, QString &line) const {
  line = trimBlanks(stream.ReadLine());
  if (!line.startsWith(marker_))
    return false;
  line = trimBlanks(line.remove(marker_));
  return true;
}

bool ScriptIO::Convert(ScriptTextFile &stream) {
  try {
    document_ = XmlDocument::create();
    document_->loadXML(QStringLiteral("<?xml version=\"1.0\" ?><report/>"));
    document_->setAsync(false);
    document_->setValidateOnParse(true);
    document_->setProperty(QStringLiteral("SelectionLanguage"), QStringLiteral("XPath"));
    const bool headerFound = ConvertReport(stream);
    bool result = headerFound;
    bool done = !result;
    while (!done && !stream.AtEndOfStream()) {
      QString tag;
      if (readTag(stream, tag)) {
        if (tag.startsWith(QStringLiteral("<page "), Qt::CaseInsensitive))
          result = ConvertPage(tag, stream);
        else if (tag.startsWith(QStringLiteral("</report>"), Qt::CaseInsensitive))
          done = true;
      }
      done = done || !result;
    }
    dumpDocument();
    if (!headerFound)
      raiseError(ErrorNumber::UserMessage, QStringLiteral("ScriptIO.Convert"),
                 GetMessage(QStringLiteral("ScriptIO.NoReportLine"), QDir::toNativeSeparators(stream.FileName())));
    return result;
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgImportScript.Convert"));
    return false;
  }
}

void ScriptIO::dumpDocument() const {
  if (ReadSetting(kSettingsRoot, kDumpSetting, QStringLiteral("0")).toString() != QStringLiteral("1"))
    return;
  const QString folder =
      QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) + QStringLiteral("/orvex");
  QDir().mkpath(folder);
  document_->save(folder + QStringLiteral("/dump-scripting.xml"));
}

bool ScriptIO::ConvertReport(ScriptTextFile &stream) {
  QString line;
  bool found = false;
  while (!found && !stream.AtEndOfStream()) {
    line = trimBlanks(stream.ReadLine());
    found = line.contains(QStringLiteral("<report "), Qt::CaseInsensitive);
  }
  if (!found)
    return false;
  // Both words land in one value, so the name the root gets is the
  // database's. The language is never taken from the line: the file is
  // read with the VBScript marker whatever language wrote it.
  QString name;
  for (const QString &piece : line.split(u' ')) {
    if (piece.contains(QStringLiteral("name=")))
      name = attributeValue(piece, QStringLiteral("name="));
    if (piece.contains(QStringLiteral("database=")))
      name = attributeValue(piece, QStringLiteral("database="));
  }
  const auto root = document_->documentElement();
  root->setAttribute(QStringLiteral("name"), name);
  root->setAttribute(QStringLiteral("database"), QString());
  root->setAttribute(QStringLiteral("language"), QString());
  marker_ = QStringLiteral("'///");
  return true;
}

bool ScriptIO::ConvertPage(const QString &line, ScriptTextFile &stream) {
  try {
    QString guid;
    QString name;
    const QString inner = QString(line).remove(QStringLiteral("<page ")).remove(u'>');
    for (const QString &piece : inner.split(u' ')) {
      if (piece.contains(QStringLiteral("guid="), Qt::CaseInsensitive))
        guid = attributeValue(piece, QStringLiteral("guid="));
      if (piece.contains(QStringLiteral("name="), Qt::CaseInsensitive))
        name = attributeValue(piece, QStringLiteral("name="));
    }
    const auto page = document_->createElement(QStringLiteral("page"));
    page->setAttribute(QStringLiteral("guid"), guid);
    page->setAttribute(QStringLiteral("name"), name);
    document_->selectSingleNode(QStringLiteral("/report"))->appendChild(page);
    bool done = false;
    while (!done && !stream.AtEndOfStream()) {
      QString tag;
      if (readTag(stream, tag)) {
        if (tag.startsWith(QStringLiteral("<section "), Qt::CaseInsensitive))
          ConvertSection(guid, tag, stream);
        else if (tag.startsWith(QStringLiteral("</page>"), Qt::CaseInsensitive))
          done = true;
      }
    }
    return true;
  } catch (...) {
    reportAtLine(QStringLiteral("DlgImportScript.ConvertPage"), stream);
    return false;
  }
}

bool ScriptIO::ConvertSection(const QString &guid, const QString &line, ScriptTextFile &stream) {
  try {
    QString name = line;
    for (const QString &word :
         {QStringLiteral("<section"), QStringLiteral(">"), QStringLiteral("name="), QStringLiteral("\"")})
      name.remove(word, Qt::CaseInsensitive);
    name = trimBlanks(name);
    QString text;
    bool done = false;
    while (!done && !stream.AtEndOfStream()) {
      QString read;
      if (readTag(stream, read))
        done = read.startsWith(QStringLiteral("</section>"), Qt::CaseInsensitive);
      else
        text += u'\n' + read;
    }
    const auto section = document_->createElement(QStringLiteral("section"));
    section->setAttribute(QStringLiteral("name"), name);
    section->setAttribute(QStringLiteral("script"), text.replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    const auto page = document_->selectSingleNode(pageNodePath(guid));
    if (!page)
      raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("ScriptIO.ConvertSection"),
                 QStringLiteral("No page %1 holds the section %2").arg(guid, name));
    page->appendChild(section);
    return true;
  } catch (...) {
    reportAtLine(QStringLiteral("DlgImportScript.ConvertSection"), stream);
    return false;
  }
}

bool ScriptIO::ImportReportScript() {
  try {
    report_->SetScriptLanguage(language_);
    bool result = true;
    for (int index = 1; result && index <= report_->PageCount(); ++index)
      result = ImportPageScript(report_->GetPageByIndex(index));
    return result;
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgImportScript.ImportReportScript"));
    return false;
  }
}

bool ScriptIO::ImportPageScript(const std::shared_ptr<Page> &page) {
  std::shared_ptr<XmlNode> pageNode;
  ObjectRef layout;
  try {
    pageNode = document_->selectSingleNode(pageNodePath(page->Guid()));
    if (!pageNode)
      return true;
    layout = CreateObject(QString::fromLatin1(hostapi::kLayoutReportProgId));
    layout->invoke(QStringLiteral("LoadLayout"), {page->LayoutTemplate()});
  } catch (...) {
    ErrorMessage(QStringLiteral("DlgImportScript.ImportPageScript"));
    return false;
  }
  // A name the layout lacks keeps the section found before, which then
  // takes this script too.
  ObjectRef section;
  const auto children = pageNode->childNodes();
  for (int i = 0; i < children->length(); ++i) {
    const auto child = children->item(i);
    const QString name = child->getAttribute(QStringLiteral("name")).value_or(QString());
    const QString script = child->getAttribute(QStringLiteral("script")).value_or(QString());
    if (name.toLower() == kReportBlock.toLower()) {
      ignoringFailure([&] { layout->set(QStringLiteral("Script"), script); });
      continue;
    }
    ignoringFailure([&] {
      const ObjectRef found =
          layout->get(QStringLiteral("Sections")).toObject()->invoke(QStringLiteral("Item"), {name}).toObject();
      if (found)
        section = found;
    });
    if (section)
      ignoringFailure([&] { section->set(QStringLiteral("Script"), script); });
  }
  ignoringFailure([&] {
    page->SetLayoutTemplate(layout->invoke(QStringLiteral("SaveLayout"), {QString(), kXmlLayout}));
  });
  return true;
}

} // namespace kordel::addin
