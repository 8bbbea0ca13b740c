// The value side of the cursor: which paths a page fetches, how a report
// field is read from the current row, and how cursors find each other.

#include "data/Records.h"

#include "common/ApplicationManager.h"
#include "core/Error.h"
#include "document/Page.h"
#include "document/ReportFields.h"
#include "document/StringCollection.h"
#include "hostapi/Classes.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"

namespace kordel::addin {

namespace {

const QString kScriptPrefix = QStringLiteral("vbscript:");
// Markers for the field references of a script text, each ending in a quote.
const QString kUserValueMarker = QStringLiteral("@A$U$V@(\"");
const QString kValueMarker = QStringLiteral("@L$V@(\"");
const QString kTextMarker = QStringLiteral("@T$V@(\"");

bool isScriptField(const ReportField &field) { return field.Name.startsWith(kScriptPrefix, Qt::CaseInsensitive); }

// Adds a path that names a field of the class, once.
void addIfField(StringCollection &result, const hostapi::Fields &fields, const QString &path) {
  try {
    if (!path.isEmpty() && fields.lookup(path, hostapi::LookupMode::Either) && !result.Exists(path).toBool())
      result.Add(path);
  } catch (...) {
    // A reference that cannot be looked up is no dependency; the field's
    // value falls to its default when it is printed.
  }
}

// The quoted paths that follow each marker (and the quoted text at the
// very start, which is searched the same way).
void addQuotedAfter(StringCollection &result, const hostapi::Fields &fields, const QString &text,
                    const QString &marker) {
  for (const QString &piece : text.split(marker)) {
    if (piece.isEmpty())
      continue;
    const qsizetype quote = piece.indexOf(u'"');
    if (quote < 0)
      continue; // no closing quote: nothing to take
    addIfField(result, fields, piece.left(quote));
  }
}

} // namespace

std::shared_ptr<StringCollection> Records::GetFieldDependencies(const ReportField &field) const {
  auto result = std::make_shared<StringCollection>();
  if (!isScriptField(field)) {
    result->Add(field.Expression);
    return result;
  }
  std::shared_ptr<hostapi::Fields> fields;
  try {
    fields = page_->Class()->fields();
  } catch (...) {
    return result; // a page without a class has no field to depend on
  }
  if (field.Expression.isEmpty() || !fields)
    return result;

  for (const QString &piece : field.Expression.split(u'[')) {
    const qsizetype close = piece.indexOf(u']');
    if (close >= 0)
      addIfField(*result, *fields, piece.left(close));
  }

  // The user's own record first, so that its Value(" is not taken for a
  // field of this page.
  QString marked = field.Expression;
  marked.replace(QStringLiteral("ActiveUser.Record.Value(\""), kUserValueMarker, Qt::CaseInsensitive);
  marked.replace(QStringLiteral("Value(\""), kValueMarker, Qt::CaseInsensitive);
  marked.replace(QStringLiteral("Text(\""), kTextMarker, Qt::CaseInsensitive);
  addQuotedAfter(*result, *fields, marked, kValueMarker);
  addQuotedAfter(*result, *fields, marked, kTextMarker);
  return result;
}

void Records::BuildView() {
  view_ = std::dynamic_pointer_cast<hostapi::View>(CreateObject(QString::fromLatin1(hostapi::kViewProgId)));
  if (!view_)
    raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("Records"), QString::fromLatin1(hostapi::kViewProgId));
  StringCollection seen;
  const auto add = [&](const QString &path) {
    if (seen.Exists(path).toBool())
      return;
    view_->add(path, 0, -1, QString());
    seen.Add(path);
  };
  const auto fields = page_->Fields();
  for (int i = 1; i <= fields->Count(); ++i) {
    const auto dependencies = GetFieldDependencies(*fields->Item(i));
    for (int j = 1; j <= dependencies->Count(); ++j)
      add(dependencies->Item(j));
  }
  add(idField_);
  if (!parentLinkField_.isEmpty())
    add(parentLinkField_);
}

Variant Records::Value(const ReportField &field) {
  try {
    const auto record = Record();
    Variant value;
    if (isScriptField(field)) {
      value = record->evaluate(field.Expression, 1).toString();
    } else {
      const auto resolved = record->fields()->lookup(field.Expression, hostapi::LookupMode::Internal);
      if (!resolved)
        return field.DefaultValue;
      const int dataType = resolved->dataType();
      const bool number = dataType == 3 || dataType == 5 || dataType == 6;
      const int type = resolved->type();
      // Only decimals, integers, currency and percent reach a layout as
      // numbers; everything else is the engine's display text.
      if (number && (type == 5 || type == 6 || type == 8 || type == 9))
        value = record->value(resolved->name());
      else
        value = record->text(resolved->name());
    }
    if (value.toText().isEmpty() && !field.DefaultValue.isEmpty())
      return field.DefaultValue;
    return value;
  } catch (...) {
    // A field that cannot be read prints its default.
    return field.DefaultValue;
  }
}

std::shared_ptr<Records> Records::LookupSubRecords(const QString &guid) {
  if (page_ && guid == page_->Guid())
    return shared_from_this();
  for (const auto &[pageGuid, sub] : subRecords_)
    if (pageGuid == guid)
      return sub;
  for (const auto &entry : subRecords_)
    if (auto found = entry.second->LookupSubRecords(guid))
      return found;
  return nullptr;
}

// ---- The view scripts get ----

Records &RecordsFacade::records() const {
  if (!records_)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Records"), QStringLiteral("No cursor is open"));
  return *records_;
}

const MemberTable &RecordsFacade::memberTable() const {
  using F = RecordsFacade;
  const auto move = [](void (Records::*step)()) {
    return [step](F &f, Args &a) {
      expectArgs(a, 0, 0);
      (f.records().*step)();
      return Variant();
    };
  };
  static const MemberTable table{{
      property<F>("BeginningOfFile", [](F &f) { return f.records().BeginningOfFile(); }),
      property<F>("EndOfFile", [](F &f) { return f.records().EndOfFile(); }),
      property<F>("Record", [](F &f) { return Variant(ObjectRef(f.records().Record())); }),
      property<F>("RecordIndex", [](F &f) { return f.records().RecordIndex(); }),
      property<F>("RecordCount", [](F &f) { return f.records().RecordCount(); }),
      method<F>("GetPool",
                [](F &f, Args &a) {
                  expectArgs(a, 0, 0);
                  return Variant(ObjectRef(f.records().GetPool()));
                }),
      method<F>("MoveFirst", move(&Records::MoveFirst)),
      method<F>("MoveLast", move(&Records::MoveLast)),
      method<F>("MoveNext", move(&Records::MoveNext)),
      method<F>("MovePrevious", move(&Records::MovePrevious)),
  }};
  return table;
}

} // namespace kordel::addin
