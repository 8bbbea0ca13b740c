#include "cli/SubPageFilters.h"

#include "cli/RunRange.h"

#include "core/Error.h"
#include "hostapi/Classes.h"
#include "hostapi/Filters.h"

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("orvex");

[[noreturn]] void refuse(const QString &text) { raiseError(ErrorNumber::InvalidCall, kSource, text); }

QString bareGuid(const QString &guid) {
  QString bare = guid.trimmed();
  if (bare.startsWith(u'{') && bare.endsWith(u'}'))
    bare = bare.mid(1, bare.size() - 2);
  return bare.toLower();
}

QString subPageNames(const QList<ReportDocumentPage> &pages) {
  QStringList names;
  for (const ReportDocumentPage &page : pages)
    if (!page.top)
      names << QStringLiteral("\"%1\"").arg(page.name);
  return names.isEmpty() ? QStringLiteral("it has none")
                         : QStringLiteral("its sub pages are ") + names.join(QStringLiteral(", "));
}

const ReportDocumentPage &findPage(const QList<ReportDocumentPage> &pages, const QString &wanted) {
  QList<const ReportDocumentPage *> found;
  for (const ReportDocumentPage &page : pages)
    if (bareGuid(page.guid) == bareGuid(wanted))
      return page;
  for (const ReportDocumentPage &page : pages)
    if (page.name.compare(wanted, Qt::CaseInsensitive) == 0)
      found << &page;
  if (found.isEmpty())
    refuse(QStringLiteral("The report has no sub page \"%1\"; %2").arg(wanted, subPageNames(pages)));
  if (found.size() > 1) {
    QStringList guids;
    for (const ReportDocumentPage *page : found)
      guids << page->guid;
    refuse(QStringLiteral("%1 pages are named \"%2\"; name the one you mean by its guid: %3")
               .arg(found.size())
               .arg(wanted, guids.join(QStringLiteral(", "))));
  }
  return *found.front();
}

// The class whose records a sub page prints: the other side of the
// relation its source follows from the report's class.
std::shared_ptr<hostapi::Class> subPageClass(const hostapi::Class &reportClass, const ReportDocumentPage &page) {
  const auto link = reportClass.fields()->lookup(page.source, hostapi::LookupMode::Either);
  const auto related = link ? link->relatedField() : nullptr;
  const auto cls = related ? related->fieldClass() : nullptr;
  if (!cls)
    refuse(QStringLiteral("The sub page \"%1\" follows \"%2\", which %3 does not have")
               .arg(page.name, page.source, reportClass.localName()));
  return cls;
}

} // namespace

SubPageFilters resolveSubPageFilters(const hostapi::Class &reportClass, const QList<ReportDocumentPage> &pages,
                                     const QList<SubFilterRequest> &requests) {
  SubPageFilters filters;
  for (const SubFilterRequest &request : requests) {
    const ReportDocumentPage &page = findPage(pages, request.page);
    if (page.top)
      refuse(QStringLiteral("\"%1\" is the report's main page: choose its records with the range, not --subfilter")
                 .arg(request.page));
    for (const auto &[guid, filter] : filters)
      if (guid == page.guid)
        refuse(QStringLiteral("The sub page \"%1\" is given two filters").arg(page.name));
    filters.append({page.guid, savedFilter(*subPageClass(reportClass, page), request.filter)});
  }
  return filters;
}

} // namespace kordel::host::cli
