#include "engine/model/LayoutReport.h"

#include "engine/format/LayoutFormat.h"
#include "engine/model/Controls.h"
#include "engine/model/Section.h"
#include "engine/render/PageDocument.h"
#include "engine/render/PagesObject.h"
#include "engine/export/pdf/PdfPrewriter.h"
#include "engine/run/ReportRun.h"

#include "script/ScriptEngine.h"

#include "core/Error.h"
#include "core/ScriptRights.h"

namespace kordel::engine {

namespace {

float twips(const Variant &value) { return float(value.toDouble()); }

// SaveLayout's format 2 is the XML layout file, the only one the engine writes.
constexpr int kXmlLayoutFormat = 2;

} // namespace

// ---- Paper ----

const MemberTable &PageSettings::memberTable() const {
  using P = PageSettings;
  static const MemberTable table{{
      property<P>(
          "LeftMargin", [](P &p) { return double(p.leftMargin); },
          [](P &p, const Variant &v) { p.leftMargin = twips(v); }),
      property<P>(
          "TopMargin", [](P &p) { return double(p.topMargin); },
          [](P &p, const Variant &v) { p.topMargin = twips(v); }),
      property<P>(
          "RightMargin", [](P &p) { return double(p.rightMargin); },
          [](P &p, const Variant &v) { p.rightMargin = twips(v); }),
      property<P>(
          "BottomMargin", [](P &p) { return double(p.bottomMargin); },
          [](P &p, const Variant &v) { p.bottomMargin = twips(v); }),
      property<P>(
          "Orientation", [](P &p) { return p.orientation; },
          [](P &p, const Variant &v) { p.orientation = v.toLong(); }),
      property<P>(
          "PaperWidth", [](P &p) { return double(p.paperWidth); },
          [](P &p, const Variant &v) { p.paperWidth = twips(v); }),
      property<P>(
          "PaperHeight", [](P &p) { return double(p.paperHeight); },
          [](P &p, const Variant &v) { p.paperHeight = twips(v); }),
  }};
  return table;
}

// ---- Unbound fields ----

const MemberTable &UnboundField::memberTable() const {
  using F = UnboundField;
  static const MemberTable table{
      {
          property<F>("Name", [](F &f) { return f.name; }),
          property<F>(
              "Value", [](F &f) { return f.value; }, [](F &f, const Variant &v) { f.value = v; }),
      },
      nullptr,
      QStringLiteral("Value")};
  return table;
}

std::shared_ptr<UnboundField> UnboundFields::add(const QString &name) {
  if (auto field = find(name))
    return field;
  auto field = std::make_shared<UnboundField>(name);
  index_.insert(name.toCaseFolded(), int(fields_.size()));
  fields_.push_back(field);
  return field;
}

std::shared_ptr<UnboundField> UnboundFields::find(const QString &name) const {
  const auto found = index_.constFind(name.toCaseFolded());
  return found == index_.constEnd() ? nullptr : fields_[std::size_t(*found)];
}

std::shared_ptr<UnboundField> UnboundFields::item(const Variant &indexOrName) const {
  if (indexOrName.isNumber()) {
    const int index = indexOrName.toLong();
    if (index < 0 || index >= count())
      raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Fields"),
                 QStringLiteral("There is no field %1; the report has %2").arg(index).arg(count()));
    return fields_[std::size_t(index)];
  }
  const QString name = indexOrName.toString();
  if (auto field = find(name))
    return field;
  raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Fields"),
             QStringLiteral("The report has no field \"%1\"").arg(name));
}

std::unique_ptr<Enumerator> UnboundFields::enumerate() {
  std::vector<Variant> values;
  for (const auto &field : fields_)
    values.emplace_back(ObjectRef(field));
  return std::make_unique<ListEnumerator>(std::move(values));
}

const MemberTable &UnboundFields::memberTable() const {
  using F = UnboundFields;
  static const MemberTable table{{
                                     property<F>("Count", [](F &f) { return f.count(); }),
                                     method<F>("Add",
                                               [](F &f, Args &a) {
                                                 expectArgs(a, 1, 1);
                                                 return Variant(ObjectRef(f.add(a[0].toString())));
                                               }),
                                     // Fields("name") = value sets the field's value.
                                     indexedProperty<F>(
                                         "Item",
                                         [](F &f, Args &a) {
                                           expectArgs(a, 1, 1);
                                           return Variant(ObjectRef(f.item(a[0])));
                                         },
                                         [](F &f, Args &a, const Variant &value) {
                                           expectArgs(a, 1, 1);
                                           f.item(a[0])->value = value;
                                         }),
                                 },
                                 nullptr,
                                 QStringLiteral("Item")};
  return table;
}

// ---- The report ----

std::shared_ptr<LayoutReport> LayoutReport::create() {
  std::shared_ptr<LayoutReport> report(new LayoutReport());
  report->sections_ = std::make_shared<engine::Sections>(report);
  return report;
}

std::shared_ptr<Section> LayoutReport::detail() const {
  for (const auto &section : sections_->all())
    if (section->type() == SectionType::Detail)
      return section;
  return nullptr;
}

void LayoutReport::addNamedItem(const QString &name, const ObjectRef &object) {
  for (auto &entry : namedItems_)
    if (entry.first.compare(name, Qt::CaseInsensitive) == 0) {
      entry.second = object;
      return;
    }
  namedItems_.emplace_back(name, object);
}

bool LayoutReport::hasControlNamed(const QString &name) const {
  for (const auto &section : sections_->all())
    if (section->controls()->find(name))
      return true;
  return false;
}

QString LayoutReport::uniqueControlName(const QString &stem) const {
  int number = 1;
  while (hasControlNamed(stem + QString::number(number)))
    ++number;
  return stem + QString::number(number);
}

void LayoutReport::run() {
  auto pages = std::make_shared<PageDocument>();
  if (exportAhead.compare(QLatin1String("PDF"), Qt::CaseInsensitive) == 0)
    pages->setPagesAhead(std::make_shared<pdf::PdfPrewriter>());
  runOnto(std::move(pages), true, true);
}

void LayoutReport::refuseWhileHeld(const QString &what) const {
  if (runHolds_ > 0)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("ActiveReport.") + what,
               QStringLiteral("The report is running: %1 cannot change it until the run has ended").arg(what));
}

// The members of the layout; memberTable adds those of printing and the
// preview (LayoutReportOutput.cpp).
const MemberTable &LayoutReport::layoutMemberTable() {
  using R = LayoutReport;
  static const MemberTable table{{
      property<R>("Sections", [](R &r) { return Variant(ObjectRef(r.sections())); }),
      property<R>("Fields", [](R &r) { return Variant(ObjectRef(r.fields())); }),
      property<R>("Printer", [](R &r) { return Variant(ObjectRef(r.printer())); }),
      property<R>("PageSettings", [](R &r) { return Variant(ObjectRef(r.pageSettings())); }),
      property<R>(
          "ScriptLanguage", [](R &r) { return r.scriptLanguage; },
          [](R &r, const Variant &v) {
            const QString language = v.toString();
            // A sub report's run-time object sets the same language again
            // at each showing; only a change comes too late.
            if (r.languageFixed_ && language.compare(r.scriptLanguage, Qt::CaseInsensitive) != 0)
              r.refuseWhileHeld(QStringLiteral("ScriptLanguage"));
            if (language.compare(QLatin1String("VBScript"), Qt::CaseInsensitive) != 0 &&
                language.compare(QLatin1String("JScript"), Qt::CaseInsensitive) != 0)
              raiseError(ErrorNumber::InvalidCall, QStringLiteral("ActiveReport.ScriptLanguage"),
                         QStringLiteral("Scripts are VBScript or JScript, not \"%1\"").arg(language));
            r.scriptLanguage = language;
          }),
      // Setting the script runs code from a string: no layout script may.
      fullRightsToSet(property<R>(
          "Script", [](R &r) { return r.script; },
          [](R &r, const Variant &v) {
            r.refuseWhileHeld(QStringLiteral("Script"));
            r.script = v.toString();
          })),
      property<R>(
          "PrintWidth", [](R &r) { return double(r.printWidth); },
          [](R &r, const Variant &v) { r.printWidth = twips(v); }),
      property<R>("Detail", [](R &r) { return Variant(ObjectRef(r.detail())); }),
      property<R>(
          "documentName", [](R &r) { return r.documentName; },
          [](R &r, const Variant &v) { r.documentName = v.toString(); }),
      property<R>(
          "Caption", [](R &r) { return r.caption; }, [](R &r, const Variant &v) { r.caption = v.toString(); }),
      property<R>(
          "ExportAhead", [](R &r) { return r.exportAhead; },
          [](R &r, const Variant &v) { r.exportAhead = v.toString(); }),
      // The object that answers the run's events; held weakly, see eventSink.
      fullRightsToSet(property<R>(
          "EventSink", [](R &r) { return Variant(r.eventSink()); },
          [](R &r, const Variant &v) { r.setEventSink(v.isObject() ? v.toObject() : ObjectRef()); })),
      property<R>("Pages", [](R &r) { return Variant(ObjectRef(std::make_shared<PagesObject>(r.pages()))); }),
      fullRightsOnly(method<R>("Run",
                               [](R &r, Args &a) {
                                 expectArgs(a, 0, 1); // Run(async): a run always ends before the call returns
                                 r.refuseWhileHeld(QStringLiteral("Run"));
                                 r.run();
                                 return Variant();
                               })),
      fullRightsOnly(method<R>("AddNamedItem",
                               [](R &r, Args &a) {
                                 expectArgs(a, 2, 2);
                                 r.addNamedItem(a[0].toString(), a[1].toObject());
                                 return Variant();
                               })),
      // LoadLayout(bytes): a byte array, or a string taken as its UTF-8 bytes.
      fullRightsOnly(method<R>("LoadLayout",
                               [](R &r, Args &a) {
                                 expectArgs(a, 1, 1);
                                 loadLayout(r, a[0].isByteArray() ? a[0].rawBytes() : a[0].toString().toUtf8());
                                 r.tellChange(LayoutReport::OutsideChange::Replaced);
                                 return Variant();
                               })),
      // SaveLayout(path, format, out): to the file, or with an empty path
      // into the ByRef out and as the result.
      // CheckScript: "" when the report's script compiles in its language,
      // else where and why it does not ("Line 3, column 7: ... (1002)").
      method<R>("CheckScript",
                [](R &r, Args &a) {
                  expectArgs(a, 0, 0);
                  if (r.script.trimmed().isEmpty())
                    return Variant(QString());
                  try {
                    script::createScriptEngine(r.scriptLanguage)->checkSyntax(r.script);
                    return Variant(QString());
                  } catch (const script::ScriptError &error) {
                    const QString what = QStringLiteral("%1 (%2)").arg(error.description()).arg(error.number());
                    return Variant(
                        error.line() > 0
                            ? QStringLiteral("Line %1, column %2: %3").arg(error.line()).arg(error.column()).arg(what)
                            : what);
                  }
                }),
      method<R>("RefreshLayout",
                [](R &r, Args &a) {
                  expectArgs(a, 0, 0);
                  r.tellChange(LayoutReport::OutsideChange::Refreshed);
                  return Variant();
                }),
      method<R>("SaveLayout",
                [](R &r, Args &a) {
                  expectArgs(a, 2, 3);
                  const int format = a[1].toLong();
                  if (format != kXmlLayoutFormat)
                    raiseError(
                        ErrorNumber::InvalidCall, QStringLiteral("LayoutReport.SaveLayout"),
                        QStringLiteral("Layouts are saved in format %1, not %2").arg(kXmlLayoutFormat).arg(format));
                  const QString path = a[0].toString();
                  if (!path.isEmpty()) {
                    requireFullRights(QStringLiteral("ActiveReport.SaveLayout to a file"));
                    saveLayoutFile(r, path);
                    return Variant();
                  }
                  Variant bytes(saveLayout(r));
                  if (a.size() > 2)
                    a[2] = bytes;
                  return bytes;
                }),
  }};
  return table;
}

} // namespace kordel::engine
