#include "common/ResourceManager.h"

#include "common/ApplicationManager.h"
#include "core/Error.h"
#include "hostapi/Translator.h"

#include <QFileInfo>

#include <dlfcn.h>

#include <cstdint>
#include <limits>

namespace kordel::addin {

namespace {

struct TranslationState {
  std::shared_ptr<hostapi::Translator> translator;
  std::int16_t starts = 0;
};

TranslationState &state() {
  static TranslationState s;
  return s;
}

} // namespace

QString AddinFolder() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void *>(&AddinFolder), &info) == 0 || !info.dli_fname)
    return QString();
  return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
}

void StartTranslation(const QString &language) {
  TranslationState &s = state();
  if (s.starts == 0) {
    ObjectRef created = CreateObject(QString::fromLatin1(hostapi::kTranslatorProgId));
    s.translator = std::dynamic_pointer_cast<hostapi::Translator>(created);
    if (!s.translator)
      raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("ResourceManager.StartTranslation"),
                 QStringLiteral("The host gave no translator"));
    s.translator->setTranslationFolder(AddinFolder() + QStringLiteral("/translation"));
    s.translator->loadSection(QStringLiteral("kordel"), language);
  }
  if (s.starts == std::numeric_limits<std::int16_t>::max())
    raiseError(ErrorNumber::Overflow, QStringLiteral("ResourceManager.StartTranslation"));
  ++s.starts;
}

void StopTranslation() {
  TranslationState &s = state();
  if (s.starts == std::numeric_limits<std::int16_t>::min())
    raiseError(ErrorNumber::Overflow, QStringLiteral("ResourceManager.StopTranslation"));
  --s.starts;
  if (s.translator && s.starts == 0)
    s.translator.reset();
}

QString TranslateText(const QString &item, const QString &section) {
  const auto &translator = state().translator;
  if (!translator)
    return item;
  return translator->translateKey(section + u'.' + item);
}

} // namespace kordel::addin
