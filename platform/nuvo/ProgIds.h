#pragma once

#include "core/Object.h"

#include <functional>
#include <memory>

namespace kordel::hostapi {
class Database;
}

namespace kordel::nuvo {

using ProgIdFactory = std::function<ObjectRef()>;
// Registers one ProgID with the host.
using RegisterProgId = std::function<void(const QString &progId, ProgIdFactory factory)>;
// The database the host has open when an object is made; nullptr when none.
using CurrentDatabase = std::function<std::shared_ptr<hostapi::Database>()>;

// Registers the ProgIDs of the data engine: Nuvo.Pool, Nuvo.Filter,
// Nuvo.View, Nuvo.Records, Nuvo.RecordQuery, Nuvo.ReportContext, Nuvo.File,
// Nuvo.FileOpenAttributes, Nuvo.Document, Nuvo.Properties, Nuvo.Script.
// Objects that read the database take the one open when they are made.
void registerProgIds(const RegisterProgId &registerProgId, CurrentDatabase currentDatabase);

} // namespace kordel::nuvo
