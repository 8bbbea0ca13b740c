#include "cli/PageCountingExporter.h"

#include "host/HostApplication.h"

namespace kordel::host::cli {

std::shared_ptr<const int> PageCountingExporter::countExportsOf(HostApplication &application, const QString &progId,
                                                                const QList<QPair<QString, Variant>> &settings) {
  auto pages = std::make_shared<int>(-1);
  const ObjectRef exporter = application.createObject(progId);
  for (const auto &[name, value] : settings)
    exporter->set(name, value);
  application.registerProgId(
      progId, [exporter, pages] { return ObjectRef(std::make_shared<PageCountingExporter>(exporter, pages)); });
  return pages;
}

Variant PageCountingExporter::call(const QString &name, Args &args) {
  Variant result = exporter_->call(name, args);
  if (name.compare(QLatin1String("Export"), Qt::CaseInsensitive) == 0 && !args.empty() && args[0].isObject())
    *pages_ = args[0].toObject()->get(QStringLiteral("Count")).toLong();
  return result;
}

} // namespace kordel::host::cli
