#pragma once

#include "core/Object.h"

#include <cstdint>
#include <memory>

namespace kordel {
class Dictionary;
}

namespace kordel::hostapi {
class Application;
class NamedValues;
class ReportContext;
} // namespace kordel::hostapi

namespace kordel::addin {

// The object that layout scripts see as "Extensions": their door to the
// run. One is made per run and shared by the main layout and all its sub
// pages, so it is also how the scripts of different pages talk to each
// other: context properties, free custom properties, a shared dictionary, a
// time stamp frozen at its first use, prompts to the user and one layout
// helper. Everything it holds dies with the run.
//
// Late-bound, in this order: Application, Dictionary, FormatGrid(section),
// GetCustomProperty(name, [default]), Property(name, [default]),
// SetCustomProperty(name, value), SetProperty(name, value),
// ShowMessageBox(prompt, buttons, title), ShowInputBox(prompt, title,
// default), ShowOptionBox(prompt, options, default, title),
// ShowSetBox(prompt, options, title), Timestamp(format).
class Extensions : public Object {
public:
  QString typeName() const override { return QStringLiteral("Extensions"); }

  // The host context of the run. Set by the run that made the object;
  // scripts cannot reach it.
  void SetContext(std::shared_ptr<hostapi::ReportContext> context);

  // The host application; nullptr when the add-in is not connected.
  std::shared_ptr<hostapi::Application> Application() const;
  // Made on the first read; the same object for the rest of the run.
  std::shared_ptr<kordel::Dictionary> Dictionary();
  // Stretches the table lines of a section that has grown: vertical lines
  // (X1 exactly equal to X2) reach down to the section's height, rectangles
  // (Shape 0) to its bottom. A failure is reported and ends the loop.
  void FormatGrid(const ObjectRef &section);
  // The custom property, else the dictionary's item of that name, else the
  // default. A custom property hides a dictionary key of the same name.
  Variant GetCustomProperty(const QString &name, const Variant &defaultValue = {}) const;
  // The context's property, or the default when it has none. Raises 91
  // before the run has set the context.
  Variant Property(const QString &name, const Variant &defaultValue = {}) const;
  // Stores a custom property; Empty deletes it. The store is made by the
  // first value that is not Empty.
  void SetCustomProperty(const QString &name, const Variant &value);
  void SetProperty(const QString &name, const Variant &value);
  // A plain message box; the answer of the button pressed.
  std::int32_t ShowMessageBox(const QString &prompt, std::int32_t buttons, const QString &title);
  // A plain input box; "" when the user cancels.
  QString ShowInputBox(const QString &prompt, const QString &title, const QString &defaultText);
  // One value picked from options (an array or a single value); "" when the
  // user cancels.
  QString ShowOptionBox(const QString &prompt, const Variant &options, const QString &defaultValue,
                        const QString &title);
  // The values picked from options as an array from 0, or Empty when the
  // user cancels or picks none.
  Variant ShowSetBox(const QString &prompt, const Variant &options, const QString &title);
  // The moment of the first call, formatted with format (Sunday first,
  // the week of 1 January the first week) or as a general date when format
  // is empty. Every later call shows the same moment.
  QString Timestamp(const QString &format);

protected:
  const MemberTable &memberTable() const override;

private:
  hostapi::ReportContext &RunContext(const QString &procedure) const;

  std::shared_ptr<hostapi::ReportContext> context_;
  std::shared_ptr<kordel::Dictionary> dictionary_;
  std::shared_ptr<hostapi::NamedValues> customProperties_;
  QString timestamp_;
};

} // namespace kordel::addin
