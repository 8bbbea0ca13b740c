#include "cli/RunRequest.h"

#include "cli/Options.h"

#include "core/Error.h"

#include <QSet>

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

class Parser {
public:
  Parser(RunMode mode, const QStringList &args) : args_(args) { request_.mode = mode; }

  RunRequest parse() {
    for (at_ = 0; at_ < args_.size(); ++at_)
      take(args_[at_]);
    if (request_.report.isEmpty())
      refuse(QStringLiteral("Name the report with --report; usage: %1").arg(RunRequest::usage(request_.mode)));
    if (request_.mode == RunMode::Export && request_.outFile.isEmpty())
      refuse(QStringLiteral("Name the file to write with --out; usage: %1").arg(RunRequest::usage(request_.mode)));
    if (request_.range.kind == RangeRequest::None)
      refuse(QStringLiteral("Give the records to print: %1").arg(kRangeWords));
    if (selectWord_ && request_.range.kind != RangeRequest::Explorer)
      refuse(QStringLiteral("--select chooses records of a list window: give it with --explorer CLASS"));
    return request_;
  }

private:
  void take(const QString &word) {
    const bool exporting = request_.mode == RunMode::Export;
    const bool printing = request_.mode == RunMode::Print;
    if (word == QLatin1String("--report"))
      once(word, request_.report);
    else if (word == QLatin1String("--out") && exporting)
      once(word, request_.outFile);
    else if (word == QLatin1String("--printer") && printing)
      once(word, request_.printer);
    else if (word == QLatin1String("--copies") && printing)
      copies(word);
    else if (word == QLatin1String("--lang"))
      once(word, request_.language);
    else if (word == QLatin1String("--db"))
      once(word, request_.database);
    else if (word == QLatin1String("--subfilter"))
      request_.subFilters.append(subFilter(optionValue(args_, at_)));
    else if (word == QLatin1String("--filter"))
      range(word, RangeRequest::Filter).name = optionValue(args_, at_);
    else if (word == QLatin1String("--ids"))
      range(word, RangeRequest::Ids).ids = idList(optionValue(args_, at_), word);
    else if (word == QLatin1String("--all"))
      range(word, RangeRequest::All);
    else if (word == QLatin1String("--explorer"))
      range(word, RangeRequest::Explorer).name = optionValue(args_, at_);
    else if (word == QLatin1String("--select"))
      select(word);
    else
      refuse(QStringLiteral("usage: %1 ('%2' is unknown)").arg(RunRequest::usage(request_.mode), word));
  }

  // An option that takes a value and may be given once.
  void once(const QString &option, QString &value) {
    if (given_.contains(option))
      refuse(QStringLiteral("%1 is given twice").arg(option));
    given_.insert(option);
    value = optionValue(args_, at_);
    if (value.isEmpty())
      refuse(QStringLiteral("%1 needs a value").arg(option));
  }

  RangeRequest &range(const QString &option, RangeRequest::Kind kind) {
    if (request_.range.kind != RangeRequest::None)
      refuse(QStringLiteral("Give one range, not both %1 and %2").arg(rangeWord_, option));
    rangeWord_ = option;
    request_.range.kind = kind;
    return request_.range;
  }

  void select(const QString &option) {
    if (selectWord_)
      refuse(QStringLiteral("%1 is given twice").arg(option));
    selectWord_ = true;
    request_.range.ids = idList(optionValue(args_, at_), option);
    request_.range.selected = true;
  }

  void copies(const QString &option) {
    QString text;
    once(option, text);
    request_.copies = wholeNumber(text, option);
    if (request_.copies < 1)
      refuse(QStringLiteral("%1 takes a number from 1, not %2").arg(option, text));
  }

  const QStringList &args_;
  qsizetype at_ = 0;
  RunRequest request_;
  QSet<QString> given_;
  QString rangeWord_;
  bool selectWord_ = false;
};

} // namespace

RunRequest RunRequest::parse(RunMode mode, const QStringList &args) { return Parser(mode, args).parse(); }

QString RunRequest::usage(RunMode mode) {
  const QString range = QStringLiteral("(--filter NAME | --ids 1,2,3 | --all | --explorer CLASS [--select 1,2])");
  const QString common = QStringLiteral("[--subfilter PAGE=FILTER]... [--lang LANG] [--db DATABASE]");
  switch (mode) {
  case RunMode::Export: return QStringLiteral("orvex export --report NAME --out FILE %1 %2").arg(range, common);
  case RunMode::Print:
    return QStringLiteral("orvex print --report NAME %1 [--printer NAME] [--copies N] %2").arg(range, common);
  default: return QStringLiteral("orvex preview --report NAME %1 %2").arg(range, common);
  }
}

} // namespace kordel::host::cli
