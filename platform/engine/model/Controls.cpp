#include "engine/model/Controls.h"

#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "core/Error.h"

namespace kordel::engine {

namespace {

const QString kPrefix = QStringLiteral("DDActiveReports2.");

struct KindInfo {
  ControlKind kind;
  const char *name;
};

constexpr KindInfo kKinds[] = {
    {ControlKind::Label, "Label"}, {ControlKind::Field, "Field"}, {ControlKind::SubReport, "SubReport"},
    {ControlKind::Line, "Line"},   {ControlKind::Shape, "Shape"}, {ControlKind::Picture, "Picture"},
};

QString kindName(ControlKind kind) {
  for (const KindInfo &info : kKinds)
    if (info.kind == kind)
      return QString::fromLatin1(info.name);
  return QString();
}

float twips(const Variant &value) { return float(value.toDouble()); }

QColor color(const Variant &value) { return colorFromVb(value.toLong()); }

} // namespace

Control::~Control() = default;

QString Control::progId() const { return kPrefix + kindName(kind_); }

std::shared_ptr<Control> createControl(const QString &progId) {
  const QString kind = progId.startsWith(kPrefix, Qt::CaseInsensitive) ? progId.mid(kPrefix.size()) : QString();
  if (kind.compare(QLatin1String("Label"), Qt::CaseInsensitive) == 0)
    return std::make_shared<Label>();
  if (kind.compare(QLatin1String("Field"), Qt::CaseInsensitive) == 0)
    return std::make_shared<Field>();
  if (kind.compare(QLatin1String("SubReport"), Qt::CaseInsensitive) == 0)
    return std::make_shared<SubReport>();
  if (kind.compare(QLatin1String("Line"), Qt::CaseInsensitive) == 0)
    return std::make_shared<Line>();
  if (kind.compare(QLatin1String("Shape"), Qt::CaseInsensitive) == 0)
    return std::make_shared<Shape>();
  if (kind.compare(QLatin1String("Picture"), Qt::CaseInsensitive) == 0)
    return std::make_shared<Picture>();
  raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("Controls.Add"),
             QStringLiteral("The layout engine has no control '%1'").arg(progId));
}

// ---- Members ----

const MemberTable &Control::memberTable() const {
  using C = Control;
  static const MemberTable table{{
      property<C>(
          "Name", [](C &c) { return c.name; }, [](C &c, const Variant &v) { c.name = v.toString(); }),
      property<C>(
          "Left", [](C &c) { return double(c.left); }, [](C &c, const Variant &v) { c.left = twips(v); }),
      property<C>(
          "Top", [](C &c) { return double(c.top); }, [](C &c, const Variant &v) { c.top = twips(v); }),
      property<C>(
          "Width", [](C &c) { return double(c.width); }, [](C &c, const Variant &v) { c.width = twips(v); }),
      property<C>(
          "Height", [](C &c) { return double(c.height); }, [](C &c, const Variant &v) { c.height = twips(v); }),
      property<C>(
          "Visible", [](C &c) { return c.visible; }, [](C &c, const Variant &v) { c.visible = v.toBool(); }),
      property<C>(
          "Tag", [](C &c) { return c.tag; }, [](C &c, const Variant &v) { c.tag = v.toString(); }),
      property<C>(
          "Font", [](C &c) { return Variant(ObjectRef(c.font)); },
          [](C &c, const Variant &v) {
            const auto given = objectAs<FontObject>(v);
            if (!given)
              raiseError(ErrorNumber::TypeMismatch, QStringLiteral("Control.Font"), QStringLiteral("A font is needed"));
            c.font->setFont(given->font());
          }),
      property<C>(
          "ForeColor", [](C &c) { return colorToVb(c.foreColor); },
          [](C &c, const Variant &v) { c.foreColor = color(v); }),
      property<C>(
          "BackColor", [](C &c) { return colorToVb(c.backColor); },
          [](C &c, const Variant &v) { c.backColor = color(v); }),
      property<C>(
          "BackStyle", [](C &c) { return c.backStyle; }, [](C &c, const Variant &v) { c.backStyle = v.toLong(); }),
      property<C>(
          "Alignment", [](C &c) { return int(c.alignment); },
          [](C &c, const Variant &v) {
            const int value = v.toLong();
            if (value < 0 || value > 2)
              raiseError(ErrorNumber::InvalidCall, QStringLiteral("Control.Alignment"),
                         QStringLiteral("Alignment is 0 left, 1 right or 2 center, not %1").arg(value));
            c.alignment = Alignment(value);
          }),
      property<C>(
          "BorderStyle", [](C &c) { return c.borderStyle; },
          [](C &c, const Variant &v) { c.borderStyle = v.toLong(); }),
      property<C>(
          "BorderColor", [](C &c) { return colorToVb(c.borderColor); },
          [](C &c, const Variant &v) { c.borderColor = color(v); }),
  }};
  return table;
}

const MemberTable &Label::memberTable() const {
  static const MemberTable table{{
                                     property<Label>(
                                         "Caption", [](Label &l) { return l.caption; },
                                         [](Label &l, const Variant &v) { l.caption = v.toString(); }),
                                 },
                                 &Control::memberTable()};
  return table;
}

const MemberTable &Field::memberTable() const {
  using F = Field;
  static const MemberTable table{
      {
          property<F>(
              "Text", [](F &f) { return f.text; }, [](F &f, const Variant &v) { f.text = v.toString(); }),
          property<F>(
              "DataField", [](F &f) { return f.dataField; },
              [](F &f, const Variant &v) { f.dataField = v.toString(); }),
          property<F>(
              "OutputFormat", [](F &f) { return f.outputFormat; },
              [](F &f, const Variant &v) { f.outputFormat = v.toString(); }),
          property<F>(
              "CanGrow", [](F &f) { return f.canGrow; }, [](F &f, const Variant &v) { f.canGrow = v.toBool(); }),
          property<F>(
              "CanShrink", [](F &f) { return f.canShrink; }, [](F &f, const Variant &v) { f.canShrink = v.toBool(); }),
          property<F>(
              "CountKind", [](F &f) { return f.countKind; }, [](F &f, const Variant &v) { f.countKind = v.toLong(); }),
          property<F>(
              "RunningKind", [](F &f) { return f.runningKind; },
              [](F &f, const Variant &v) { f.runningKind = v.toLong(); }),
          property<F>(
              "FieldMode", [](F &f) { return f.fieldMode; }, [](F &f, const Variant &v) { f.fieldMode = v.toLong(); }),
          property<F>(
              "SummaryGroup", [](F &f) { return f.summaryGroup; },
              [](F &f, const Variant &v) { f.summaryGroup = v.toString(); }),
      },
      &Control::memberTable()};
  return table;
}

const MemberTable &SubReport::memberTable() const {
  using S = SubReport;
  static const MemberTable table{
      {
          property<S>(
              "ReportName", [](S &s) { return s.reportName; },
              [](S &s, const Variant &v) { s.reportName = v.toString(); }),
          // Plugging a report in changes the running report: the run-time
          // object does it, never a layout script.
          fullRightsToSet(property<S>(
              "Report", [](S &s) { return Variant(s.report); },
              [](S &s, const Variant &v) { s.report = v.toObject(); })),
          // The object that answers the plugged-in report's
          // events, or the report itself.
          property<S>("Object",
                      [](S &s) {
                        const auto layout = std::dynamic_pointer_cast<LayoutReport>(s.report);
                        return Variant(layout && layout->eventSink() ? layout->eventSink() : s.report);
                      }),
      },
      &Control::memberTable()};
  return table;
}

const MemberTable &Line::memberTable() const {
  using L = Line;
  static const MemberTable table{
      {
          property<L>(
              "X1", [](L &l) { return double(l.x1); }, [](L &l, const Variant &v) { l.x1 = twips(v); }),
          property<L>(
              "Y1", [](L &l) { return double(l.y1); }, [](L &l, const Variant &v) { l.y1 = twips(v); }),
          property<L>(
              "X2", [](L &l) { return double(l.x2); }, [](L &l, const Variant &v) { l.x2 = twips(v); }),
          property<L>(
              "Y2", [](L &l) { return double(l.y2); }, [](L &l, const Variant &v) { l.y2 = twips(v); }),
          property<L>(
              "LineWeight", [](L &l) { return double(l.lineWeight); },
              [](L &l, const Variant &v) { l.lineWeight = twips(v); }),
          property<L>(
              "LineStyle", [](L &l) { return l.lineStyle; }, [](L &l, const Variant &v) { l.lineStyle = v.toLong(); }),
          property<L>(
              "LineColor", [](L &l) { return colorToVb(l.lineColor); },
              [](L &l, const Variant &v) { l.lineColor = color(v); }),
      },
      &Control::memberTable()};
  return table;
}

const MemberTable &Shape::memberTable() const {
  using S = Shape;
  static const MemberTable table{
      {
          property<S>(
              "Shape", [](S &s) { return s.shape; }, [](S &s, const Variant &v) { s.shape = v.toLong(); }),
          property<S>(
              "LineWeight", [](S &s) { return double(s.lineWeight); },
              [](S &s, const Variant &v) { s.lineWeight = twips(v); }),
          property<S>(
              "LineColor", [](S &s) { return colorToVb(s.lineColor); },
              [](S &s, const Variant &v) { s.lineColor = color(v); }),
      },
      &Control::memberTable()};
  return table;
}

const MemberTable &Picture::memberTable() const {
  using P = Picture;
  static const MemberTable table{
      {
          property<P>(
              "SizeMode", [](P &p) { return p.sizeMode; }, [](P &p, const Variant &v) { p.sizeMode = v.toLong(); }),
      },
      &Control::memberTable()};
  return table;
}

// ---- The collection ----

std::shared_ptr<Control> Controls::at(int index) const {
  if (index < 0 || index >= count())
    raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Controls"),
               QStringLiteral("There is no control %1; the section has %2").arg(index).arg(count()));
  return controls_[std::size_t(index)];
}

std::shared_ptr<Control> Controls::find(const QString &name) const {
  for (const auto &control : controls_)
    if (control->name.compare(name, Qt::CaseInsensitive) == 0)
      return control;
  return nullptr;
}

int Controls::indexOf(const Variant &indexOrName) const {
  if (indexOrName.isNumber()) {
    const int index = indexOrName.toLong();
    at(index);
    return index;
  }
  const QString name = indexOrName.toString();
  for (int i = 0; i < count(); ++i)
    if (controls_[std::size_t(i)]->name.compare(name, Qt::CaseInsensitive) == 0)
      return i;
  raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Controls"),
             QStringLiteral("The section has no control \"%1\"").arg(name));
}

std::shared_ptr<Control> Controls::item(const Variant &indexOrName) const { return at(indexOf(indexOrName)); }

std::shared_ptr<Control> Controls::add(const QString &progId) {
  const auto section = owner_.lock();
  const auto report = section ? section->report() : nullptr;
  if (report)
    report->refuseWhileHeld(QStringLiteral("Controls.Add"));
  auto control = createControl(progId);
  const QString stem = control->typeName();
  if (report) {
    control->name = report->uniqueControlName(stem);
  } else {
    int number = 1;
    while (find(stem + QString::number(number)))
      ++number;
    control->name = stem + QString::number(number);
  }
  append(control);
  return control;
}

void Controls::append(const std::shared_ptr<Control> &control) {
  control->setSection(owner_.lock());
  controls_.push_back(control);
}

void Controls::remove(const Variant &indexOrName) {
  if (const auto section = owner_.lock())
    if (const auto report = section->report())
      report->refuseWhileHeld(QStringLiteral("Controls.Remove"));
  const int index = indexOf(indexOrName);
  controls_[std::size_t(index)]->setSection(nullptr);
  controls_.erase(controls_.begin() + index);
}

std::unique_ptr<Enumerator> Controls::enumerate() {
  std::vector<Variant> values;
  for (const auto &control : controls_)
    values.emplace_back(ObjectRef(control));
  return std::make_unique<ListEnumerator>(std::move(values));
}

const MemberTable &Controls::memberTable() const {
  using C = Controls;
  static const MemberTable table{{
                                     property<C>("Count", [](C &c) { return c.count(); }),
                                     indexedProperty<C>("Item",
                                                        [](C &c, Args &a) {
                                                          expectArgs(a, 1, 1);
                                                          return Variant(ObjectRef(c.item(a[0])));
                                                        }),
                                     method<C>("Add",
                                               [](C &c, Args &a) {
                                                 expectArgs(a, 1, 1);
                                                 return Variant(ObjectRef(c.add(a[0].toString())));
                                               }),
                                     method<C>("Remove",
                                               [](C &c, Args &a) {
                                                 expectArgs(a, 1, 1);
                                                 c.remove(a[0]);
                                                 return Variant();
                                               }),
                                 },
                                 nullptr,
                                 QStringLiteral("Item")};
  return table;
}

} // namespace kordel::engine
