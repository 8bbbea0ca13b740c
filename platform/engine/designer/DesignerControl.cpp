#include "engine/designer/DesignerControl.h"

#include "engine/designer/DesignerMessages.h"
#include "engine/designer/DesignerWindow.h"
#include "engine/model/LayoutReport.h"

#include "core/Error.h"

#include <QObject>

namespace kordel::engine {

namespace {

constexpr double kTwipsPerInch = 1440;
constexpr double kTwipsPerCentimetre = 1440 / 2.54;

// The selection as the owner reads it: Count, and Item(i) from 0.
class SelectionObject : public Object {
public:
  explicit SelectionObject(std::vector<ObjectRef> objects) : objects_(std::move(objects)) {}
  QString typeName() const override { return QStringLiteral("Selection"); }

protected:
  const MemberTable &memberTable() const override {
    using S = SelectionObject;
    static const MemberTable table{{
                                       property<S>("Count", [](S &s) { return int(s.objects_.size()); }),
                                       indexedProperty<S>("Item",
                                                          [](S &s, Args &a) {
                                                            expectArgs(a, 1, 1);
                                                            const int index = a[0].toLong();
                                                            if (index < 0 || index >= int(s.objects_.size()))
                                                              raiseError(ErrorNumber::SubscriptOutOfRange,
                                                                         QStringLiteral("Selection"));
                                                            return Variant(s.objects_[std::size_t(index)]);
                                                          }),
                                   },
                                   nullptr,
                                   QStringLiteral("Item")};
    return table;
  }

private:
  std::vector<ObjectRef> objects_;
};

} // namespace

std::shared_ptr<DesignerControl> DesignerControl::create() {
  std::shared_ptr<DesignerControl> control(new DesignerControl());
  const std::weak_ptr<DesignerControl> weak = control;
  QObject::connect(control->document_.get(), &DesignerDocument::selectionChanged, [weak] {
    if (const auto self = weak.lock()) {
      try {
        Args none;
        self->raise(QStringLiteral("SelectionChanged"), none);
      } catch (...) {
        // The owner's handler failed; the selection stands as the user made it.
      }
    }
  });
  control->actions_.gridStep = [weak] {
    const auto self = weak.lock();
    return self ? self->gridStep() : QPointF(90, 90);
  };
  return control;
}

DesignerControl::DesignerControl() : document_(std::make_unique<DesignerDocument>()), actions_(*document_, *this) {}

DesignerControl::~DesignerControl() { delete window_.data(); }

QWidget *DesignerControl::window() {
  if (!window_)
    window_ = new DesignerWindow(*this);
  return window_;
}

DesignerWindow *DesignerControl::designerWindow() const { return window_.data(); }

void DesignerControl::settingsChanged() {
  if (window_)
    window_->applySettings();
}

QPointF DesignerControl::gridStep() const {
  const double unit = rulerUnits == 1 ? kTwipsPerCentimetre : kTwipsPerInch;
  return QPointF(unit / std::max(1, gridX), unit / std::max(1, gridY));
}

void DesignerControl::focusChanged(bool hasFocus) {
  Args none;
  raise(hasFocus ? QStringLiteral("GotFocus") : QStringLiteral("LostFocus"), none);
}

bool DesignerControl::raise(const QString &event, Args &args) {
  const ObjectRef sink = eventSink();
  if (!sink || !sink->hasMember(event))
    return false;
  sink->call(event, args);
  return true;
}

bool DesignerControl::validateChange(const ObjectRef &object, int kind) {
  Args args{Variant(object), Variant(kind), Variant(false)};
  raise(QStringLiteral("ValidateChange"), args);
  return !args[2].toBool();
}

void DesignerControl::layoutChanged(const ObjectRef &object, int kind) {
  Args args{Variant(object), Variant(kind)};
  raise(QStringLiteral("LayoutChanged"), args);
}

bool DesignerControl::contextMenuOpen(const ObjectRef &source, int menuType, QPoint) {
  Args args{Variant(source), Variant(menuType), Variant(false)};
  return raise(QStringLiteral("ContextMenuOpen"), args) && args[2].toBool();
}

int DesignerControl::message(int number, const QString &text, int flags) {
  Args args{Variant(number), Variant(text), Variant(flags), Variant(0)};
  if (raise(QStringLiteral("Message"), args))
    return args[3].toLong();
  return showDesignMessage(text, flags);
}

const MemberTable &DesignerControl::memberTable() const {
  using D = DesignerControl;
  const auto twoByte = [](const Variant &v) {
    const int value = v.toInteger();
    if (value < 1)
      raiseError(ErrorNumber::InvalidCall, QStringLiteral("ARDesigner"),
                 QStringLiteral("The grid has at least one division per unit, not %1").arg(value));
    return value;
  };
  static const MemberTable table{{
      property<D>("Report", [](D &d) { return Variant(ObjectRef(d.document_->report())); }),
      method<D>("NewReport",
                [](D &d, Args &a) {
                  expectArgs(a, 0, 0);
                  d.document_->newReport();
                  return Variant();
                }),
      property<D>(
          "IsDirty", [](D &d) { return d.document_->isDirty(); },
          [](D &d, const Variant &v) { d.document_->setDirty(v.toBool()); }),
      property<D>(
          "GridX", [](D &d) { return std::int16_t(d.gridX); },
          [twoByte](D &d, const Variant &v) {
            d.gridX = twoByte(v);
            d.settingsChanged();
          }),
      property<D>(
          "GridY", [](D &d) { return std::int16_t(d.gridY); },
          [twoByte](D &d, const Variant &v) {
            d.gridY = twoByte(v);
            d.settingsChanged();
          }),
      property<D>(
          "ShowGrid", [](D &d) { return d.showGrid; },
          [](D &d, const Variant &v) {
            d.showGrid = v.toBool();
            d.settingsChanged();
          }),
      property<D>(
          "AlignToGrid", [](D &d) { return d.alignToGrid; },
          [](D &d, const Variant &v) {
            d.alignToGrid = v.toBool();
            d.settingsChanged();
          }),
      property<D>(
          "RulerUnits", [](D &d) { return std::int32_t(d.rulerUnits); },
          [](D &d, const Variant &v) {
            const int units = v.toLong();
            if (units != 0 && units != 1)
              raiseError(ErrorNumber::InvalidCall, QStringLiteral("ARDesigner.RulerUnits"),
                         QStringLiteral("Ruler units are 0 (inches) or 1 (centimetres), not %1").arg(units));
            d.rulerUnits = units;
            d.settingsChanged();
          }),
      property<D>(
          "ToolbarsVisible", [](D &d) { return std::int32_t(d.toolbarsVisible); },
          [](D &d, const Variant &v) {
            d.toolbarsVisible = v.toLong();
            d.settingsChanged();
          }),
      property<D>(
          "ToolbarsAccessible", [](D &d) { return std::int32_t(d.toolbarsAccessible); },
          [](D &d, const Variant &v) {
            d.toolbarsAccessible = v.toLong();
            d.settingsChanged();
          }),
      method<D>("QueryAction",
                [](D &d, Args &a) {
                  expectArgs(a, 1, 1);
                  return std::int32_t(d.actions_.query(a[0].toLong()));
                }),
      method<D>("ExecuteAction",
                [](D &d, Args &a) {
                  expectArgs(a, 1, 1);
                  d.actions_.execute(a[0].toLong());
                  return Variant();
                }),
      property<D>("Selection",
                  [](D &d) { return Variant(ObjectRef(std::make_shared<SelectionObject>(d.document_->selection()))); }),
      // The object that answers the designer's events; held weakly.
      property<D>(
          "EventSink", [](D &d) { return Variant(d.eventSink()); },
          [](D &d, const Variant &v) { d.setEventSink(v.isObject() ? v.toObject() : ObjectRef()); }),
  }};
  return table;
}

} // namespace kordel::engine
