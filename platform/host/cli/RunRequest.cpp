#include "cli/RunRequest.h"

#include "cli/Options.h"

#include "core/Error.h"

namespace kordel::host::cli {

namespace {

const QString kSource = QStringLiteral("orvex");
const QString kRangeWords = QStringLiteral("--filter NAME, --ids 1,2,3, --all or --explorer CLASS [--select 1,2]");

[[noreturn]] void refuse(const QString &text) { raiseError(ErrorNumber::InvalidCall, kSource, text); }

// "1,2,3" as ids; raises for an empty list and anything but positive whole
// numbers.
std::vector<int> idList(const QString &text, const QString &option) {
  std::vector<int> ids;
  for (const QString &part : text.split(u',')) {
    bool ok = false;
    const int id = part.trimmed().toInt(&ok);
    if (!ok || id <= 0)
      refuse(QStringLiteral("%1 takes record ids separated by commas, not '%2'").arg(option, text));
    ids.push_back(id);
  }
  return ids;
}

SubFilterRequest subFilter(const QString &text) {
  const qsizetype equals = text.indexOf(u'=');
  SubFilterRequest request{text.left(equals).trimmed(), text.mid(equals + 1).trimmed()};
  if (equals < 0 || request.page.isEmpty() || request.filter.isEmpty())
    refuse(QStringLiteral("--subfilter takes PAGE=FILTER, not '%1'").arg(text));
  return request;
}

QString commandName(RunMode mode) {
  switch (mode) {
  case RunMode::Export: return QStringLiteral("export");
  case RunMode::Print: return QStringLiteral("print");
  default: return QStringLiteral("preview");
  }
}

// The range of the request from its range options; raises when there are
// several, and when there is none unless the print dialog will ask.
RangeRequest rangeOf(const Arguments &arguments, bool dialogAsks) {
  RangeRequest range;
  QString rangeWord;
  for (const auto &[option, value] : arguments.given()) {
    RangeRequest::Kind kind = RangeRequest::None;
    if (option == QLatin1String("--filter"))
      kind = RangeRequest::Filter;
    else if (option == QLatin1String("--ids"))
      kind = RangeRequest::Ids;
    else if (option == QLatin1String("--all"))
      kind = RangeRequest::All;
    else if (option == QLatin1String("--explorer"))
      kind = RangeRequest::Explorer;
    if (kind == RangeRequest::None)
      continue;
    if (range.kind != RangeRequest::None)
      refuse(QStringLiteral("Give one range, not both %1 and %2").arg(rangeWord, option));
    rangeWord = option;
    range.kind = kind;
    if (kind == RangeRequest::Ids)
      range.ids = idList(value, option);
    else
      range.name = value;
  }
  if (range.kind == RangeRequest::None && !dialogAsks)
    refuse(QStringLiteral("Give the records to print: %1").arg(kRangeWords));
  if (arguments.has(QStringLiteral("--select"))) {
    if (range.kind != RangeRequest::Explorer)
      refuse(QStringLiteral("--select chooses records of a list window: give it with --explorer CLASS"));
    range.ids = idList(arguments.value(QStringLiteral("--select")), QStringLiteral("--select"));
    range.selected = true;
  }
  return range;
}

} // namespace

RunRequest RunRequest::read(RunMode mode, const Arguments &arguments) {
  RunRequest request;
  request.mode = mode;
  const QString help = QStringLiteral("`orvex %1 --help` tells what it takes").arg(commandName(mode));
  request.report = arguments.value(QStringLiteral("--report"));
  if (request.report.isEmpty())
    refuse(QStringLiteral("Name the report with --report; %1").arg(help));
  request.outFile = arguments.value(QStringLiteral("--out"));
  if (mode == RunMode::Export && request.outFile.isEmpty())
    refuse(QStringLiteral("Name the file to write with --out; %1").arg(help));
  // A print with no range asks for it in the print dialog.
  request.dialog = mode == RunMode::Print && arguments.has(QStringLiteral("--dialog"));
  const bool ranged = arguments.has(QStringLiteral("--filter")) || arguments.has(QStringLiteral("--ids")) ||
                      arguments.has(QStringLiteral("--all")) || arguments.has(QStringLiteral("--explorer"));
  if (mode == RunMode::Print && !ranged)
    request.dialog = true;
  request.range = rangeOf(arguments, request.dialog);
  for (const QString &text : arguments.values(QStringLiteral("--subfilter")))
    request.subFilters.append(subFilter(text));
  request.language = arguments.value(QStringLiteral("--lang"));
  request.database = arguments.value(QStringLiteral("--db"));
  request.printer = arguments.value(QStringLiteral("--printer"));
  if (request.dialog && !request.printer.isEmpty())
    refuse(QStringLiteral("The printer is chosen in the print dialog: give --printer with a range and without "
                          "--dialog"));
  request.xlsLayout = arguments.value(QStringLiteral("--xls-layout")).toLower();
  if (arguments.has(QStringLiteral("--xls-layout")) && request.xlsLayout != QLatin1String("table") &&
      request.xlsLayout != QLatin1String("pages"))
    refuse(QStringLiteral("--xls-layout takes table or pages, not %1")
               .arg(arguments.value(QStringLiteral("--xls-layout"))));
  if (!request.xlsLayout.isEmpty() && !request.outFile.endsWith(QLatin1String(".xls"), Qt::CaseInsensitive) &&
      !request.outFile.endsWith(QLatin1String(".xlsx"), Qt::CaseInsensitive))
    refuse(QStringLiteral("--xls-layout is for a workbook: name an .xls or .xlsx file with --out"));
  if (arguments.has(QStringLiteral("--copies"))) {
    const QString copies = arguments.value(QStringLiteral("--copies"));
    request.copies = wholeNumber(copies, QStringLiteral("--copies"));
    if (request.copies < 1)
      refuse(QStringLiteral("--copies takes a number from 1, not %1").arg(copies));
  }
  return request;
}

} // namespace kordel::host::cli
