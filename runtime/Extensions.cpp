#include "runtime/Extensions.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "core/Dictionary.h"
#include "core/Error.h"
#include "core/Format.h"
#include "core/VbDate.h"
#include "hostapi/Application.h"
#include "hostapi/HostFile.h"
#include "hostapi/ReportContext.h"
#include "hostapi/Ui.h"
#include "runtime/ExtOption.h"
#include "runtime/ExtSet.h"

#include <QDateTime>

namespace kordel::addin {

namespace {

const QString kGeneralDate = QStringLiteral("General Date");
constexpr int kSunday = 1;
constexpr int kFirstWeekOfJanuary1 = 1;

ObjectRef objectOf(const Variant &value) { return value.isObject() ? value.rawObject() : nullptr; }

} // namespace

void Extensions::SetContext(std::shared_ptr<hostapi::ReportContext> context) { context_ = std::move(context); }

hostapi::ReportContext &Extensions::RunContext(const QString &procedure) const {
  if (!context_)
    raiseError(ErrorNumber::ObjectNotSet, procedure, QStringLiteral("The run has given the extensions no context"));
  return *context_;
}

std::shared_ptr<hostapi::Application> Extensions::Application() const { return CurrentApplication(); }

std::shared_ptr<kordel::Dictionary> Extensions::Dictionary() {
  if (!dictionary_)
    dictionary_ = std::make_shared<kordel::Dictionary>();
  return dictionary_;
}

void Extensions::FormatGrid(const ObjectRef &section) {
  try {
    if (!section)
      raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Extensions.FormatGrid"),
                 QStringLiteral("No section was given"));
    const ObjectRef controls = objectOf(section->get(QStringLiteral("Controls")));
    if (!controls)
      raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Extensions.FormatGrid"),
                 QStringLiteral("The section has no controls"));
    const auto each = controls->enumerate();
    Variant item;
    while (each->next(item)) {
      const ObjectRef control = objectOf(item);
      if (!control)
        continue;
      const QString kind = control->typeName();
      if (kind == QLatin1String("Line")) {
        if (control->get(QStringLiteral("X1")).toDouble() == control->get(QStringLiteral("X2")).toDouble())
          control->set(QStringLiteral("Y2"), Variant(section->get(QStringLiteral("Height")).toSingle()));
      } else if (kind == QLatin1String("Shape")) {
        if (control->get(QStringLiteral("Shape")).toLong() == 0) {
          const double bottom = section->get(QStringLiteral("Height")).toDouble();
          control->set(QStringLiteral("Height"), Variant(bottom - control->get(QStringLiteral("Top")).toDouble()));
        }
      }
    }
  } catch (...) {
    ErrorMessage(QStringLiteral("Extensions.FormatGrid"));
  }
}

Variant Extensions::GetCustomProperty(const QString &name, const Variant &defaultValue) const {
  Variant value;
  if (customProperties_ && customProperties_->exists(name))
    value = customProperties_->item(name);
  if (value.isEmpty() && dictionary_ && dictionary_->exists(Variant(name)))
    value = dictionary_->value(Variant(name));
  if (value.isEmpty())
    value = defaultValue;
  return value;
}

Variant Extensions::Property(const QString &name, const Variant &defaultValue) const {
  const hostapi::ReportContext &context = RunContext(QStringLiteral("Extensions.Property"));
  // The property is read twice: once without the default, which the script
  // side needs to tell an object from a value, and once with it. A context
  // whose reads have effects sees both.
  context.getProperty(name);
  return context.getProperty(name, defaultValue);
}

void Extensions::SetCustomProperty(const QString &name, const Variant &value) {
  if (value.isEmpty()) {
    if (customProperties_)
      customProperties_->remove(name);
    return;
  }
  if (!customProperties_) {
    customProperties_ =
        std::dynamic_pointer_cast<hostapi::NamedValues>(CreateObject(QString::fromLatin1(hostapi::kPropertiesProgId)));
    if (!customProperties_)
      raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("Extensions.SetCustomProperty"),
                 QStringLiteral("The host gave no property store"));
  }
  customProperties_->setItem(name, value);
}

void Extensions::SetProperty(const QString &name, const Variant &value) {
  RunContext(QStringLiteral("Extensions.SetProperty")).setProperty(name, value);
}

std::int32_t Extensions::ShowMessageBox(const QString &prompt, std::int32_t buttons, const QString &title) {
  return hostapi::ui().messageBox(prompt, buttons, title);
}

QString Extensions::ShowInputBox(const QString &prompt, const QString &title, const QString &defaultText) {
  return hostapi::ui().inputBox(prompt, title, defaultText).value_or(QString());
}

QString Extensions::ShowOptionBox(const QString &prompt, const Variant &options, const QString &defaultValue,
                                  const QString &title) {
  ExtOption window;
  window.SetDefault(defaultValue);
  window.SetOptions(options);
  window.SetPrompt(prompt);
  window.SetTitle(title);
  window.Show();
  return window.Result();
}

Variant Extensions::ShowSetBox(const QString &prompt, const Variant &options, const QString &title) {
  ExtSet window;
  window.SetOptions(options);
  window.SetPrompt(prompt);
  window.SetTitle(title);
  window.Show();
  return window.Result();
}

QString Extensions::Timestamp(const QString &format) {
  if (timestamp_.isEmpty())
    timestamp_ = formatValue(Variant(dateFromQt(QDateTime::currentDateTime())), kGeneralDate);
  if (!format.isEmpty())
    return formatValue(Variant(timestamp_), format, kSunday, kFirstWeekOfJanuary1);
  return formatValue(Variant(timestamp_), kGeneralDate);
}

const MemberTable &Extensions::memberTable() const {
  using E = Extensions;
  static const MemberTable table{{
      property<E>("Application", [](E &e) { return Variant(ObjectRef(e.Application())); }),
      property<E>("Dictionary", [](E &e) { return Variant(ObjectRef(e.Dictionary())); }),
      method<E>("FormatGrid",
                [](E &e, Args &a) {
                  expectArgs(a, 1, 1);
                  e.FormatGrid(a[0].toObject());
                  return Variant();
                }),
      method<E>("GetCustomProperty",
                [](E &e, Args &a) {
                  expectArgs(a, 1, 2);
                  return e.GetCustomProperty(a[0].toString(), arg(a, 1));
                }),
      method<E>("Property",
                [](E &e, Args &a) {
                  expectArgs(a, 1, 2);
                  return e.Property(a[0].toString(), arg(a, 1));
                }),
      method<E>("SetCustomProperty",
                [](E &e, Args &a) {
                  expectArgs(a, 2, 2);
                  e.SetCustomProperty(a[0].toString(), a[1]);
                  return Variant();
                }),
      method<E>("SetProperty",
                [](E &e, Args &a) {
                  expectArgs(a, 2, 2);
                  e.SetProperty(a[0].toString(), a[1]);
                  return Variant();
                }),
      method<E>("ShowMessageBox",
                [](E &e, Args &a) {
                  expectArgs(a, 3, 3);
                  return e.ShowMessageBox(a[0].toString(), a[1].toLong(), a[2].toString());
                }),
      method<E>("ShowInputBox",
                [](E &e, Args &a) {
                  expectArgs(a, 3, 3);
                  return e.ShowInputBox(a[0].toString(), a[1].toString(), a[2].toString());
                }),
      method<E>("ShowOptionBox",
                [](E &e, Args &a) {
                  expectArgs(a, 4, 4);
                  return e.ShowOptionBox(a[0].toString(), a[1], a[2].toString(), a[3].toString());
                }),
      method<E>("ShowSetBox",
                [](E &e, Args &a) {
                  expectArgs(a, 3, 3);
                  return e.ShowSetBox(a[0].toString(), a[1], a[2].toString());
                }),
      method<E>("Timestamp",
                [](E &e, Args &a) {
                  expectArgs(a, 1, 1);
                  return e.Timestamp(a[0].toString());
                }),
  }};
  return table;
}

} // namespace kordel::addin
