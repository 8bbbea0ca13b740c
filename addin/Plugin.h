#pragma once

#include "hostapi/Addin.h"

#include <QObject>

namespace kordel::addin {

// The plugin root the host finds when it loads this library: it makes the
// add-in's public classes by ProgID, as listed in Plugin.json.
class Plugin : public QObject, public hostapi::AddinPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID KORDEL_ADDIN_PLUGIN_IID FILE "Plugin.json")
  Q_INTERFACES(kordel::hostapi::AddinPlugin)

public:
  ObjectRef createObject(const QString &progId) override;
};

} // namespace kordel::addin
