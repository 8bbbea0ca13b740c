#include "host/AddinHost.h"

#include "host/HostApplication.h"

#include "core/Error.h"
#include "hostapi/Addin.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonObject>
#include <QPluginLoader>

namespace kordel::host {

namespace {

const QString kSource = QStringLiteral("AddinHost");

// The host's side of a connected add-in: the add-in sets "Object" to the
// object through which the host reaches it.
class AddInInstance : public Object {
public:
  QString typeName() const override { return QStringLiteral("AddIn"); }
  const Variant &object() const { return object_; }

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        property<AddInInstance>(
            "Object", [](AddInInstance &i) { return i.object_; },
            [](AddInInstance &i, const Variant &value) { i.object_ = value; }),
    }};
    return table;
  }

private:
  Variant object_;
};

// The plugin root of a loaded library; the loader keeps it loaded for the
// rest of the process, as the add-in's objects live in it.
hostapi::AddinPlugin &pluginOf(const QString &path) {
  QPluginLoader loader(path);
  auto *plugin = qobject_cast<hostapi::AddinPlugin *>(loader.instance());
  if (!plugin)
    raiseError(ErrorNumber::CannotCreateObject, kSource,
               QStringLiteral("The add-in library %1 cannot be loaded: %2").arg(path, loader.errorString()));
  return *plugin;
}

} // namespace

AddinHost::AddinHost(HostApplication &application) : application_(application) {}

AddinHost::~AddinHost() {
  try {
    disconnectAll();
  } catch (...) {
    // The host is going away; an add-in that fails to let go cannot be helped.
  }
}

QStringList AddinHost::loadPlugins(const QString &folder) {
  QStringList found;
  const QDir dir(folder);
  for (const QString &file : dir.entryList({QStringLiteral("*.so")}, QDir::Files, QDir::Name)) {
    const QString path = dir.absoluteFilePath(file);
    // The metadata is read without loading the library.
    const QJsonObject meta = QPluginLoader(path).metaData();
    if (meta.value(QStringLiteral("IID")).toString() != QLatin1String(KORDEL_ADDIN_PLUGIN_IID))
      continue;
    const QJsonArray progIds =
        meta.value(QStringLiteral("MetaData")).toObject().value(QStringLiteral("ProgIds")).toArray();
    for (const auto &entry : progIds) {
      const QString progId = entry.toString();
      application_.registerProgId(progId, [path, progId] { return pluginOf(path).createObject(progId); });
      found << progId;
    }
  }
  return found;
}

std::shared_ptr<hostapi::IReportFactory> AddinHost::connectReportFactory(const QString &progId) {
  const ObjectRef made = application_.createObject(progId);
  auto addin = std::dynamic_pointer_cast<hostapi::IDTExtensibility2>(made);
  if (!addin)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("%1 is not an add-in").arg(progId));
  auto instance = std::make_shared<AddInInstance>();
  const auto self = std::static_pointer_cast<hostapi::Application>(application_.shared_from_this());
  addin->IDTExtensibility2_OnConnection(self, 0, instance, Variant());
  connections_.push_back({addin, instance});
  auto factory = std::dynamic_pointer_cast<hostapi::IReportFactory>(instance->object().toObject());
  if (!factory)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The add-in %1 offers no report factory").arg(progId));
  return factory;
}

void AddinHost::disconnectAll() {
  while (!connections_.empty()) {
    const Connection connection = connections_.back();
    connections_.pop_back();
    connection.addin->IDTExtensibility2_OnDisconnection(0, Variant());
  }
}

} // namespace kordel::host
