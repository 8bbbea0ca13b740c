#include "host/ReportCatalog.h"

#include "host/HostApplication.h"
#include "host/ReportDocumentFile.h"
#include "host/StoredRecord.h"

#include "core/Error.h"
#include "hostapi/Addin.h"
#include "hostapi/Classes.h"
#include "hostapi/HostFile.h"
#include "hostapi/HostTools.h"
#include "hostapi/Report.h"
#include "nuvo/DatabaseObject.h"
#include "nuvo/StoredFiles.h"

#include <QFileInfo>

namespace kordel::host {

namespace {

const QString kSource = QStringLiteral("Reports");

hostapi::PersistPropertyBag &persistable(hostapi::IReport &report) {
  auto *persist = dynamic_cast<hostapi::PersistPropertyBag *>(&report);
  if (!persist)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The report object cannot be kept as a record"));
  return *persist;
}

ReportEntry entryOf(const nuvo::FileSummary &file) {
  return {file.guid, file.name, file.properties.value(QStringLiteral("A")), file.properties.value(QStringLiteral("C"))};
}

} // namespace

ReportCatalog::ReportCatalog(HostApplication &application, std::shared_ptr<hostapi::IReportFactory> factory)
    : application_(application), factory_(std::move(factory)) {
  engine_ = nuvo::engineOf(ObjectRef(application_.database()));
}

QList<ReportEntry> ReportCatalog::list() const {
  QList<ReportEntry> reports;
  for (const nuvo::FileSummary &file : nuvo::listFiles(*engine_, hostapi::FileKind::Report))
    reports.append(entryOf(file));
  return reports;
}

ReportEntry ReportCatalog::find(const QString &name) const {
  QList<ReportEntry> found;
  for (const ReportEntry &entry : list())
    if (entry.name.compare(name, Qt::CaseInsensitive) == 0)
      found.append(entry);
  if (found.isEmpty())
    raiseError(ErrorNumber::FileNotFound, kSource, QStringLiteral("There is no report \"%1\"").arg(name));
  if (found.size() > 1)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("%1 reports are named \"%2\"; rename all but one").arg(found.size()).arg(name));
  return found.front();
}

std::shared_ptr<hostapi::IReport> ReportCatalog::open(const ReportEntry &entry) const {
  auto report = factory_->IReportFactory_Create();
  report->IReport_SetDatabase(application_.database());
  if (const auto record = nuvo::StoredRecords(engine_).read(entry.guid)) {
    persistable(*report).Class_ReadProperties(StoredRecord::fromBytes(*record));
    // A designer's save writes the report's file at once and the record
    // only when the designer closes: after a crash in between, the file
    // holds the newer document, so the report is read from the file.
    if (report->IReport_GUID() == entry.guid)
      report->IReport_Refresh(false);
  } else {
    report->IReport_SetGUID(entry.guid);
    report->IReport_Refresh(false);
  }
  return report;
}

ReportEntry ReportCatalog::exportDocument(const QString &name, const QString &path) const {
  const ReportEntry entry = find(name);
  const auto report = open(entry);
  // Writing the record passes the contents through the add-in's document,
  // so what reaches the file is a document that loads.
  StoredRecord record;
  persistable(*report).Class_WriteProperties(record);
  const Variant contents = record.ReadProperty(QStringLiteral("contents"), Variant());
  if (!contents.isByteArray())
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The report \"%1\" has no document that can be written").arg(entry.name));
  auto document = std::dynamic_pointer_cast<hostapi::Document>(
      application_.createObject(QString::fromLatin1(hostapi::kDocumentProgId)));
  document->setContents(contents);
  document->saveToFile(path);
  return entry;
}

ReportEntry ReportCatalog::importDocument(const QString &path, const QString &name) {
  const ReportDocumentFile document = ReportDocumentFile::read(path);
  if (document.reportClass().isEmpty())
    raiseError(ErrorNumber::InvalidFileFormat, kSource,
               QStringLiteral("%1 names no class for the report to be built on").arg(path));
  if (!application_.classes()->exists(document.reportClass()))
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The report is built on the class \"%1\", which this database lacks")
                   .arg(document.reportClass()));
  QString reportName = name;
  if (reportName.isEmpty())
    reportName = document.name().isEmpty() ? QFileInfo(path).completeBaseName() : document.name();
  for (const ReportEntry &entry : list())
    if (entry.name.compare(reportName, Qt::CaseInsensitive) == 0)
      raiseError(ErrorNumber::FileAlreadyExists, kSource,
                 QStringLiteral("A report named \"%1\" exists already; give the new one another name").arg(reportName));

  auto tools = std::dynamic_pointer_cast<hostapi::HostTools>(
      application_.createObject(QString::fromLatin1(hostapi::kHostToolsProgId)));
  StoredRecord record;
  record.WriteProperty(QStringLiteral("guid"), tools->newGuid());
  record.WriteProperty(QStringLiteral("C"), document.reportClass());
  record.WriteProperty(QStringLiteral("name"), reportName);
  record.WriteProperty(QStringLiteral("category"), QString());
  record.WriteProperty(QStringLiteral("contents"), document.bytes());
  auto report = factory_->IReportFactory_Create();
  report->IReport_SetDatabase(application_.database());
  persistable(*report).Class_ReadProperties(record);
  store(*report);
  return {report->IReport_GUID(), report->IReport_Name(), report->IReport_Category(), document.reportClass()};
}

void ReportCatalog::store(hostapi::IReport &report) {
  hostapi::PersistPropertyBag &persist = persistable(report);
  StoredRecord record;
  persist.Class_WriteProperties(record);
  if (!record.contains(QStringLiteral("contents")))
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The report \"%1\" could not be written").arg(report.IReport_Name()));
  // The object takes back the contents as written, so that the host file
  // and the record hold the same document.
  persist.Class_ReadProperties(record);
  report.IReport_Update();
  if (report.IReport_Modified())
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The report \"%1\" could not be stored in its file").arg(report.IReport_Name()));
  nuvo::StoredRecords(engine_).write(report.IReport_GUID(), factory_->IReportFactory_Type(), record.toBytes());
}

ReportEntry ReportCatalog::rename(const ReportEntry &entry, const QString &name) {
  const QString wanted = name.trimmed();
  if (wanted.isEmpty())
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("A report needs a name"));
  for (const ReportEntry &other : list())
    if (other.guid != entry.guid && other.name.compare(wanted, Qt::CaseInsensitive) == 0)
      raiseError(ErrorNumber::FileAlreadyExists, kSource,
                 QStringLiteral("A report named \"%1\" exists already").arg(wanted));
  const auto report = open(entry);
  report->IReport_SetName(wanted);
  store(*report);
  return {entry.guid, report->IReport_Name(), entry.category, entry.reportClass};
}

void ReportCatalog::remove(const ReportEntry &entry) { nuvo::removeFile(*engine_, entry.guid); }

} // namespace kordel::host
