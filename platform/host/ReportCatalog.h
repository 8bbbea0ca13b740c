#pragma once

#include <QList>
#include <QString>

#include <memory>

namespace kordel::hostapi {
class IReport;
class IReportFactory;
} // namespace kordel::hostapi

namespace kordel::nuvo {
class Engine;
}

namespace kordel::host {

class HostApplication;

// A report as the host lists it.
struct ReportEntry {
  QString guid;
  QString name;
  QString category;
  QString reportClass; // the internal name of its class
};

// The reports of the open database. The host keeps each report twice, as
// the add-in's report object left them: as a host file (name, category,
// class, policy and the document) and as the stored record of the report
// object. Report objects come from the add-in's factory.
class ReportCatalog {
public:
  // Raises 91 when the application has no database of the data engine open.
  ReportCatalog(HostApplication &application, std::shared_ptr<hostapi::IReportFactory> factory);

  // The reports the user may read, by name.
  QList<ReportEntry> list() const;
  // The report of a name, compared without regard to case. Raises 53 when
  // there is none and 5 when several share the name.
  ReportEntry find(const QString &name) const;
  // The report object of an entry: read from its stored record, or bound
  // to its host file when the host has no record of it.
  std::shared_ptr<hostapi::IReport> open(const ReportEntry &entry) const;

  // Writes the document of the report to a file, replacing the file at once
  // or not at all; returns the report written. Raises when the report has
  // no document that loads.
  ReportEntry exportDocument(const QString &name, const QString &path) const;
  // Stores a document file as a new report under the name, or, when the
  // name is empty, under the document's own name or else the file's base
  // name. Raises for a file that is not a report document, for a class the
  // database lacks and for a name that is taken.
  ReportEntry importDocument(const QString &path, const QString &name);

  // Keeps a report object: its stored record, then its host file.
  void store(hostapi::IReport &report);
  // Gives a report another name; raises 5 for an empty name and 58 when
  // another report has it.
  ReportEntry rename(const ReportEntry &entry, const QString &name);
  // Deletes a report, its host file and its record; raises 70 when the
  // user may not change it.
  void remove(const ReportEntry &entry);

private:
  HostApplication &application_;
  std::shared_ptr<nuvo::Engine> engine_;
  std::shared_ptr<hostapi::IReportFactory> factory_;
};

} // namespace kordel::host
