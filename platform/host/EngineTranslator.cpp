#include "host/EngineTranslator.h"

#include "host/HostPaths.h"
#include "host/IniFile.h"

#include "core/Error.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <cstdio>

namespace kordel::host {

namespace {

const QString kSection = QStringLiteral("engine");

QString key(const QString &context, const QString &text) { return (context + u'.' + text).toCaseFolded(); }

// The file of a language, else of its first two letters; "" when neither
// exists.
QString languageFile(const QString &folder, const QString &language) {
  for (const QString &candidate : {language, language.left(2).toLower()}) {
    const QString path = folder + QStringLiteral("/kordel.") + candidate + QStringLiteral(".ini");
    if (!candidate.isEmpty() && QFileInfo::exists(path))
      return path;
  }
  return {};
}

} // namespace

EngineTranslator::EngineTranslator(const QString &folder, const QString &language) {
  const QString path = languageFile(folder, language);
  if (path.isEmpty())
    return;
  const IniFile file = IniFile::load(path);
  for (const QString &name : file.names(kSection))
    texts_.insert(name.toCaseFolded(), *file.value(kSection, name));
}

std::unique_ptr<EngineTranslator> EngineTranslator::install(const QString &language) {
  std::unique_ptr<EngineTranslator> translator;
  try {
    translator =
        std::make_unique<EngineTranslator>(HostPaths::addinFolder() + QStringLiteral("/translation"), language);
  } catch (...) {
    std::fprintf(stderr, "orvex: %s; the layout engine's texts stay in English\n",
                 qPrintable(pendingError().description()));
    return nullptr;
  }
  QCoreApplication::installTranslator(translator.get());
  return translator;
}

QString EngineTranslator::translate(const char *context, const char *sourceText, const char *, int) const {
  if (!context || !sourceText)
    return {};
  return texts_.value(key(QString::fromUtf8(context), QString::fromUtf8(sourceText)));
}

} // namespace kordel::host
