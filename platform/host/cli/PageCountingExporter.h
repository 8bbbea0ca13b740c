#pragma once

#include "core/Object.h"

#include <memory>

namespace kordel::host {
class HostApplication;
}

namespace kordel::host::cli {

// An exporter of the engine as the report object sees it, late-bound, that
// notes how many pages its Export wrote, so the command can say so. Every
// member is the wrapped exporter's.
class PageCountingExporter : public Object {
public:
  PageCountingExporter(ObjectRef exporter, std::shared_ptr<int> pages)
      : exporter_(std::move(exporter)), pages_(std::move(pages)) {}

  // Makes the application hand out a counting exporter for the ProgID from
  // now on, around one exporter made now: a run exports once. The result
  // holds the pages of the last export that succeeded, -1 until one has.
  // The settings are made on the exporter first, by member name.
  static std::shared_ptr<const int> countExportsOf(HostApplication &application, const QString &progId,
                                                   const QList<QPair<QString, Variant>> &settings = {});

  QString typeName() const override { return exporter_->typeName(); }
  Variant call(const QString &name, Args &args) override;
  using Object::set;
  void set(const QString &name, Args &args, const Variant &value) override { exporter_->set(name, args, value); }
  bool hasMember(const QString &name) const override { return exporter_->hasMember(name); }
  bool isMethod(const QString &name) const override { return exporter_->isMethod(name); }

private:
  ObjectRef exporter_;
  std::shared_ptr<int> pages_;
};

} // namespace kordel::host::cli
