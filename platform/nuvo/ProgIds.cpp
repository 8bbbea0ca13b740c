#include "nuvo/ProgIds.h"

#include "nuvo/DatabaseObject.h"
#include "nuvo/DocumentObject.h"
#include "nuvo/FilterObject.h"
#include "nuvo/HostFileObject.h"
#include "nuvo/NamedValuesObject.h"
#include "nuvo/PoolObject.h"
#include "nuvo/RecordQueryObject.h"
#include "nuvo/RecordsObject.h"
#include "nuvo/ReportContextObject.h"
#include "nuvo/ScriptPolicyObject.h"
#include "nuvo/ViewObject.h"

#include "hostapi/Filters.h"
#include "hostapi/HostFile.h"
#include "hostapi/Pool.h"
#include "hostapi/Records.h"
#include "hostapi/ReportContext.h"
#include "hostapi/ScriptPolicy.h"

namespace kordel::nuvo {

void registerProgIds(const RegisterProgId &registerProgId, CurrentDatabase currentDatabase) {
  auto engine = [currentDatabase]() -> std::shared_ptr<Engine> {
    const auto database = std::dynamic_pointer_cast<DatabaseObject>(currentDatabase());
    return database ? database->engine() : nullptr;
  };
  const auto id = [](const char *progId) { return QString::fromLatin1(progId); };
  registerProgId(id(hostapi::kPoolProgId), [] { return std::make_shared<PoolObject>(); });
  registerProgId(id(hostapi::kFilterProgId), [] { return std::make_shared<FilterObject>(); });
  registerProgId(id(hostapi::kViewProgId), [] { return std::make_shared<ViewObject>(); });
  registerProgId(id(hostapi::kRecordsProgId), [engine] { return std::make_shared<RecordsObject>(engine()); });
  registerProgId(id(hostapi::kRecordQueryProgId), [engine] { return std::make_shared<RecordQueryObject>(engine()); });
  registerProgId(id(hostapi::kReportContextProgId), [] { return std::make_shared<ReportContextObject>(); });
  registerProgId(id(hostapi::kHostFileProgId), [] { return std::make_shared<HostFileObject>(); });
  registerProgId(id(hostapi::kFileOpenAttributesProgId),
                 [] { return std::make_shared<NamedValuesObject>(QStringLiteral("FileOpenAttributes")); });
  registerProgId(id(hostapi::kDocumentProgId), [] { return std::make_shared<DocumentObject>(); });
  registerProgId(id(hostapi::kPropertiesProgId),
                 [] { return std::make_shared<NamedValuesObject>(QStringLiteral("Properties")); });
  registerProgId(id(hostapi::kScriptPolicyProgId), [] { return std::make_shared<ScriptPolicyObject>(); });
}

} // namespace kordel::nuvo
