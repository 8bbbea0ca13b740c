#include "engine/run/ReportRun.h"

#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/render/PageDocument.h"
#include "engine/run/Paginator.h"
#include "engine/run/SectionRenderer.h"

#include "engine/run/RunSettings.h"

#include "core/Error.h"
#include "core/ScriptRights.h"
#include "script/RunBudget.h"
#include "script/ScriptEngine.h"

#include <cmath>

namespace kordel::engine {

namespace {

// Counter kinds of a field: CountKind 1 sum, 2 count, 3 average of its
// DataField over its group (SummaryGroup) or the report; 4 pages, with
// RunningKind 2 the page number, else the page count.
constexpr int kSum = 1;
constexpr int kCount = 2;
constexpr int kAverage = 3;
constexpr int kPages = 4;
constexpr int kRunningAll = 2;
// FieldMode 1: a "=" DataField is evaluated when its row is fetched.
constexpr int kFieldModeAtFetch = 1;

bool isSummary(const Field &field) {
  return field.countKind == kSum || field.countKind == kCount || field.countKind == kAverage;
}

bool isExpression(const QString &dataField) { return dataField.startsWith(u'='); }

const QString kReportStart = QStringLiteral("ActiveReport_ReportStart");

QString placeOf(const Field &field) {
  const auto section = field.section();
  return section ? QStringLiteral("field %1 in section %2").arg(field.name, section->name)
                 : QStringLiteral("field %1").arg(field.name);
}

template <class F> void forEachField(const LayoutReport &report, F visit) {
  for (const auto &section : report.sections()->all())
    for (const auto &control : section->controls()->all())
      if (control->kind() == ControlKind::Field)
        visit(static_cast<const Field &>(*control));
}

} // namespace

ReportRun::ReportRun(LayoutReport &report, PageDocument &document, std::shared_ptr<script::RunBudget> budget)
    : report_(report), document_(document), budget_(std::move(budget)), problemsTo_(&report) {
  report_.holdForRun();
}

ReportRun::~ReportRun() {
  subRuns_.clear();
  sectionScripts_.clear();
  reportScript_.reset();
  report_.releaseFromRun();
}

// ---- Preparing ----

void ReportRun::prepare() {
  if (prepared_)
    return;
  prepared_ = true;
  std::vector<Section *> footers;
  for (const auto &section : report_.sections()->all()) {
    if (section->type() == SectionType::GroupHeader)
      groupHeaders_.push_back(section.get());
    else if (section->type() == SectionType::GroupFooter)
      footers.push_back(section.get());
  }
  // Footers stand innermost first; the outermost header pairs with the last.
  for (std::size_t i = 0; i < groupHeaders_.size(); ++i)
    groupFooters_.push_back(i < footers.size() ? footers[footers.size() - 1 - i] : nullptr);
  forEachField(report_, [this](const Field &field) {
    if (field.fieldMode == kFieldModeAtFetch && isExpression(field.dataField))
      fetchTimeFields_.push_back(&field);
    if (isSummary(field))
      summaries_[&field] = Summary{};
  });
  SectionRenderer::Hooks hooks;
  hooks.value = [this](const Field &field) { return fieldValue(field); };
  hooks.pageCounter = [](const Field &field) -> std::optional<int> {
    if (field.countKind != kPages)
      return std::nullopt;
    return int(field.runningKind == kRunningAll ? PageCounter::Kind::PageNumber : PageCounter::Kind::PageCount);
  };
  hooks.subReport = [this](SubReport &control, Twips width) { return subReportBands(control, width); };
  renderer_ = std::make_unique<SectionRenderer>(document_, std::move(hooks));
}

std::unique_ptr<script::ScriptEngine> ReportRun::layoutScriptEngine() {
  auto engine = script::createScriptEngine(report_.scriptLanguage);
  engine->setLayoutRights(budget_);
  engine->setObjectFactory([](const QString &progId) -> ObjectRef {
    if (!layoutScriptMayCreate(progId))
      requireFullRights(QStringLiteral("CreateObject(\"%1\")").arg(progId));
    const auto &hostFactory = runSettings().objectFactory;
    return hostFactory ? hostFactory(progId) : nullptr;
  });
  engine->addNamedItem(QStringLiteral("rpt"), report_.shared_from_this());
  for (const auto &[name, object] : report_.namedItems())
    engine->addNamedItem(name, object);
  return engine;
}

void ReportRun::compileScripts() {
  scriptsCompiled_ = true;
  report_.fixScriptLanguage();
  if (!budget_)
    budget_ = std::make_shared<script::RunBudget>(runSettings().scriptLimits);
  compileLayoutScripts();
  for (auto &[event, args] : std::exchange(heldForScripts_, {}))
    callScript(event, args);
}

void ReportRun::compileLayoutScripts() {
  try {
    reportScript_ = layoutScriptEngine();
  } catch (...) {
    recordError(QStringLiteral("the report's script language"));
    reportScript_.reset();
    return;
  }
  if (!report_.script.trimmed().isEmpty()) {
    try {
      reportScript_->addCode(report_.script);
    } catch (...) {
      recordError(QStringLiteral("the report's script"));
    }
  }
  for (const auto &section : report_.sections()->all()) {
    if (section->script.trimmed().isEmpty())
      continue;
    try {
      auto engine = layoutScriptEngine();
      // A section's script reaches its controls by their names.
      for (const auto &control : section->controls()->all())
        engine->addNamedItem(control->name, control);
      engine->addCode(section->script);
      sectionScripts_[section.get()] = std::move(engine);
    } catch (...) {
      recordError(QStringLiteral("the script of section %1").arg(section->name));
    }
  }
}

void ReportRun::recordError(const QString &where) {
  const Error error = pendingError();
  QString place;
  try {
    throw;
  } catch (const script::ScriptError &scriptError) {
    if (scriptError.line() > 0)
      place = QStringLiteral(" (line %1, column %2)").arg(scriptError.line()).arg(scriptError.column());
  } catch (...) {
  }
  const QString row = rowNumber_ > 0 ? QStringLiteral(", row %1").arg(rowNumber_) : QString();
  problemsTo_->addRunError(QStringLiteral("%1%2%3%4: %5 (%6)")
                               .arg(problemPrefix_, where, place, row, error.description())
                               .arg(error.number()));
  if (budget_ && budget_->spent()) {
    const Error stop = budget_->exhaustedError();
    throw Error(stop.number(), QStringLiteral("ActiveReport.Run"),
                QStringLiteral("%1. The run stopped in %2%3%4").arg(stop.description(), problemPrefix_, where, row));
  }
}

void ReportRun::reportProblems() const {
  const auto &report = runSettings().reportProblems;
  if (report && !report_.runErrors().isEmpty())
    report(report_.documentName.isEmpty() ? report_.caption : report_.documentName, report_.runErrors());
}

// ---- Events ----

void ReportRun::raise(const QString &event, Args &args) {
  if (const ObjectRef sink = report_.eventSink(); sink && sink->hasMember(event)) {
    try {
      sink->call(event, args);
    } catch (const script::ScriptStop &) {
      throw;
    } catch (...) {
      recordError(event);
    }
  }
  if (!scriptsCompiled_) {
    // The sink sets the script language at ReportStart.
    if (event.compare(kReportStart, Qt::CaseInsensitive) != 0) {
      heldForScripts_.emplace_back(event, args);
      return;
    }
    compileScripts();
  }
  callScript(event, args);
}

void ReportRun::callScript(const QString &event, Args &args) {
  if (!reportScript_ || !reportScript_->hasProcedure(event))
    return;
  try {
    reportScript_->call(event, args);
  } catch (const script::ScriptStop &) {
    throw;
  } catch (...) {
    recordError(event);
  }
}

void ReportRun::raiseEvent(const QString &event, Args &args) {
  prepare();
  if (!scriptsCompiled_)
    compileScripts();
  raise(event, args);
}

void ReportRun::raise(const QString &event) {
  Args none;
  raise(event, none);
}

void ReportRun::sectionEvent(Section &section, const QString &event) {
  raise(section.name + u'_' + event);
  const auto found = sectionScripts_.find(&section);
  if (found == sectionScripts_.end())
    return;
  const QString procedure = QStringLiteral("On") + event;
  if (!found->second->hasProcedure(procedure))
    return;
  try {
    Args none;
    found->second->call(procedure, none);
  } catch (const script::ScriptStop &) {
    throw;
  } catch (...) {
    recordError(QStringLiteral("%1 of section %2").arg(procedure, section.name));
  }
}

// ---- Rows ----

bool ReportRun::fetch(Row &row) {
  Args args{Variant(true)};
  rowNumber_ = fetched_ + 1;
  raise(QStringLiteral("ActiveReport_FetchData"), args);
  if (args[0].toNumberOr(1) != 0) {
    rowNumber_ = fetched_;
    return false;
  }
  row.number = ++fetched_;
  const auto &fields = report_.fields();
  row.fields.clear();
  for (int i = 0; i < fields->count(); ++i)
    row.fields.push_back(fields->item(Variant(i))->value);
  row.atFetch.clear();
  for (const Field *field : fetchTimeFields_)
    row.atFetch.push_back(evaluate(field->dataField.mid(1), placeOf(*field)));
  row.groupKeys.clear();
  for (const Section *header : groupHeaders_)
    row.groupKeys.push_back(groupKey(*header));
  return true;
}

void ReportRun::restore(const Row &row) {
  const auto &fields = report_.fields();
  for (int i = 0; i < fields->count() && i < int(row.fields.size()); ++i)
    fields->item(Variant(i))->value = row.fields[std::size_t(i)];
  currentRow_ = &row;
  rowNumber_ = row.number;
}

QString ReportRun::groupKey(const Section &header) {
  if (header.dataField.isEmpty())
    return QString();
  if (isExpression(header.dataField))
    return evaluate(header.dataField.mid(1), QStringLiteral("the grouping of section %1").arg(header.name)).toText();
  const auto field = boundField(header.dataField);
  return field ? field->value.toText() : QString();
}

Variant ReportRun::evaluate(const QString &expression, const QString &place) {
  if (!reportScript_)
    return Variant();
  try {
    return reportScript_->evaluate(expression);
  } catch (const script::ScriptStop &) {
    throw;
  } catch (...) {
    recordError(QStringLiteral("%1, expression =%2").arg(place, expression));
    return Variant();
  }
}

std::shared_ptr<UnboundField> ReportRun::boundField(const QString &dataField) {
  auto &known = boundFields_[dataField];
  if (!known)
    known = report_.fields()->find(dataField); // a field added later is found on a later row
  return known;
}

Variant ReportRun::fieldValue(const Field &field) {
  if (isSummary(field)) {
    const Summary &summary = summaries_[&field];
    if (field.countKind == kCount)
      return Variant(summary.count);
    if (field.countKind == kAverage)
      return summary.count ? Variant(summary.sum / summary.count) : Variant();
    return Variant(summary.sum);
  }
  if (isExpression(field.dataField)) {
    if (field.fieldMode == kFieldModeAtFetch && currentRow_) {
      for (std::size_t i = 0; i < fetchTimeFields_.size(); ++i)
        if (fetchTimeFields_[i] == &field && i < currentRow_->atFetch.size())
          return currentRow_->atFetch[i];
    }
    return evaluate(field.dataField.mid(1), placeOf(field));
  }
  if (!field.dataField.isEmpty())
    if (const auto bound = boundField(field.dataField))
      return bound->value;
  return Variant(field.text);
}

void ReportRun::accumulate() {
  for (auto &entry : summaries_) {
    const Field *field = entry.first;
    Summary &summary = entry.second;
    const Variant value = field->dataField.isEmpty()       ? Variant()
                          : isExpression(field->dataField) ? evaluate(field->dataField.mid(1), placeOf(*field))
                                                           : [&] {
                                                               const auto bound = boundField(field->dataField);
                                                               return bound ? bound->value : Variant();
                                                             }();
    if (value.isNull() || value.isEmpty())
      continue;
    summary.sum += value.toNumberOr(0);
    ++summary.count;
  }
}

void ReportRun::resetSummaries(const QString &groupName) {
  for (auto &[field, summary] : summaries_)
    if (field->summaryGroup.compare(groupName, Qt::CaseInsensitive) == 0 && field->runningKind != kRunningAll)
      summary = Summary{};
}

// ---- Sections ----

std::optional<Band> ReportRun::format(Section &section, bool opensItsPage, bool repeat) {
  sectionEvent(section, QStringLiteral("Format"));
  if (!section.visible)
    return std::nullopt;
  Band band = renderer_->render(section, repeat);
  band.abovePageHeader = section.type() == SectionType::ReportHeader;
  if (opensItsPage && paginator_ && !collected_)
    paginator_->makeRoomFor(band);
  sectionEvent(section, QStringLiteral("BeforePrint"));
  // The background shows as BeforePrint left it: stripes are set there.
  const std::optional<QRgb> background =
      section.backStyle == 1 ? std::optional<QRgb>(section.backColor.rgba()) : std::nullopt;
  for (BandPiece &piece : band.pieces)
    if (piece.owner == &section)
      piece.background = background;
  return band;
}

std::optional<Band> ReportRun::pageTop(Section *pageHeader) {
  std::optional<Band> top = pageHeader ? format(*pageHeader) : std::nullopt;
  for (std::size_t i = 0; i < groupHeaders_.size(); ++i) {
    if (!groupOpen_[i] || groupHeaders_[i]->repeatStyle != RepeatStyle::OnPage)
      continue;
    if (auto repeated = format(*groupHeaders_[i], false, true)) {
      if (!top)
        top = std::move(repeated);
      else
        top->pieces.insert(top->pieces.end(), repeated->pieces.begin(), repeated->pieces.end());
    }
  }
  return top;
}

void ReportRun::printSection(Section *section) {
  if (!section)
    return;
  auto band = format(*section, true);
  if (!band)
    return;
  if (collected_)
    collected_->push_back(*band);
  else
    paginator_->place(*band);
  sectionEvent(*section, QStringLiteral("AfterPrint"));
}

std::vector<Band> ReportRun::subReportBands(SubReport &control, Twips) {
  const auto child = std::dynamic_pointer_cast<LayoutReport>(control.report);
  if (!child)
    return {};
  // A sub report showing the report it stands in, or one around that,
  // would print itself without end: it is left out, said once.
  for (const ReportRun *run = this; run; run = run->parent_) {
    if (&run->report_ != child.get())
      continue;
    if (cyclicSubReports_.insert(&control).second)
      problemsTo_->addRunError(QStringLiteral("%1sub report %2: it shows a report it stands in, which would print "
                                              "itself without end; it is left out")
                                   .arg(problemPrefix_, control.name));
    return {};
  }
  SubRun &sub = subRuns_[&control];
  if (sub.report != child) {
    // A report plugged in anew gets a run of its own.
    sub.run.reset();
    sub.report = child;
    sub.run = std::make_unique<ReportRun>(*child, document_, budget_);
    sub.run->problemsTo_ = problemsTo_;
    sub.run->parent_ = this;
    sub.run->problemPrefix_ = QStringLiteral("%1sub report %2: ").arg(problemPrefix_, control.name);
  }
  return sub.run->runEmbedded();
}

// ---- The flow ----

void ReportRun::flow(bool paginated) {
  prepare();
  Section *reportHeader = nullptr;
  Section *reportFooter = nullptr;
  Section *pageHeader = nullptr;
  Section *pageFooter = nullptr;
  Section *detail = nullptr;
  for (const auto &section : report_.sections()->all()) {
    switch (section->type()) {
    case SectionType::ReportHeader: reportHeader = section.get(); break;
    case SectionType::ReportFooter: reportFooter = section.get(); break;
    case SectionType::PageHeader: pageHeader = section.get(); break;
    case SectionType::PageFooter: pageFooter = section.get(); break;
    case SectionType::Detail: detail = section.get(); break;
    default: break;
    }
  }

  raise(QStringLiteral("ActiveReport_Initialize"));
  if (paginated) {
    raise(QStringLiteral("ActiveReport_ReportStart"));
    raise(QStringLiteral("ActiveReport_DataInitialize"));
  } else {
    // A sub report learns its rows in DataInitialize, so that its
    // ReportStart can already tell whether it has any.
    raise(QStringLiteral("ActiveReport_DataInitialize"));
    raise(QStringLiteral("ActiveReport_ReportStart"));
  }
  for (auto &[field, summary] : summaries_)
    summary = Summary{};
  groupOpen_.assign(groupHeaders_.size(), false);

  if (paginated) {
    const LayoutPrinter &printer = *report_.printer();
    const engine::PageSettings &settings = *report_.pageSettings();
    Paginator::Paper paper;
    // The chosen printer's paper, else the layout's own, so that a layout
    // runs the same on every machine until a printer is chosen for it.
    const bool landscape = printer.orientation() == LayoutPrinter::kLandscape || settings.orientation == 2;
    const float width = printer.hasChosenPaper() ? printer.paperWidth() : settings.paperWidth;
    const float height = printer.hasChosenPaper() ? printer.paperHeight() : settings.paperHeight;
    paper.width = Twips(std::lround(landscape ? std::max(width, height) : std::min(width, height)));
    paper.height = Twips(std::lround(landscape ? std::min(width, height) : std::max(width, height)));
    paper.left = Twips(std::lround(settings.leftMargin));
    paper.top = Twips(std::lround(settings.topMargin));
    paper.right = Twips(std::lround(settings.rightMargin));
    paper.bottom = Twips(std::lround(settings.bottomMargin));
    Paginator::Hooks hooks;
    hooks.pageStart = [this] { raise(QStringLiteral("ActiveReport_PageStart")); };
    hooks.pageEnd = [this] { raise(QStringLiteral("ActiveReport_PageEnd")); };
    hooks.pageHeader = [this, pageHeader]() { return pageTop(pageHeader); };
    hooks.pageFooter = [this, pageFooter]() -> std::optional<Band> {
      return pageFooter ? format(*pageFooter) : std::nullopt;
    };
    const Twips reserve = pageFooter && pageFooter->visible ? Twips(std::lround(pageFooter->height)) : 0;
    paginator_ = std::make_unique<Paginator>(document_, paper, reserve, std::move(hooks));
  }

  Row rows[2];
  Row *current = &rows[0];
  Row *next = &rows[1];
  bool have = fetch(*current);
  if (have)
    restore(*current);
  printSection(reportHeader);
  bool haveNext = have && fetch(*next);
  const Row *previous = nullptr;
  Row last;
  while (have) {
    restore(*current);
    // The first group whose key changed starts anew, and every group inside it.
    std::size_t changedFrom = groupHeaders_.size();
    for (std::size_t i = 0; i < groupHeaders_.size(); ++i)
      if (!previous || previous->groupKeys[i] != current->groupKeys[i]) {
        changedFrom = i;
        break;
      }
    for (std::size_t i = changedFrom; i < groupHeaders_.size(); ++i) {
      resetSummaries(groupHeaders_[i]->name);
      groupOpen_[i] = false; // the header opens its group on the page it lands on
      printSection(groupHeaders_[i]);
      groupOpen_[i] = true;
    }
    accumulate();
    printSection(detail);
    std::size_t endingFrom = groupHeaders_.size();
    for (std::size_t i = 0; i < groupHeaders_.size(); ++i)
      if (!haveNext || next->groupKeys[i] != current->groupKeys[i]) {
        endingFrom = i;
        break;
      }
    for (std::size_t i = groupHeaders_.size(); i-- > endingFrom;) {
      printSection(groupFooters_[i]);
      groupOpen_[i] = false;
    }
    last = *current;
    previous = &last;
    std::swap(current, next);
    have = haveNext;
    haveNext = have && fetch(*next);
  }
  printSection(reportFooter);
  if (paginator_) {
    paginator_->finish();
    paginator_.reset();
  }
  raise(QStringLiteral("ActiveReport_ReportEnd"));
  if (terminateAtEnd_)
    raise(QStringLiteral("ActiveReport_Terminate"));
  currentRow_ = nullptr;
}

void ReportRun::run(bool terminateAtEnd) {
  terminateAtEnd_ = terminateAtEnd;
  try {
    flow(true);
  } catch (...) {
    reportProblems();
    throw;
  }
  reportProblems();
}

std::vector<Band> ReportRun::runEmbedded() {
  std::vector<Band> bands;
  collected_ = &bands;
  flow(false);
  collected_ = nullptr;
  return bands;
}

} // namespace kordel::engine
