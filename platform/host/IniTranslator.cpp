#include "host/IniTranslator.h"

#include "host/IniFile.h"

#include "core/Error.h"

#include <QDir>
#include <QFileInfo>

namespace kordel::host {

namespace {

const QString kEnglish = QStringLiteral("en");

QString languageFilePath(const QString &folder, const QString &language) {
  return folder + QStringLiteral("/kordel.") + language + QStringLiteral(".ini");
}

// The file of a language, else of its first two letters; "" when neither exists.
QString findLanguageFile(const QString &folder, const QString &language) {
  const QStringList candidates{language, language.left(2).toLower()};
  for (const QString &candidate : candidates) {
    const QString path = languageFilePath(folder, candidate);
    if (!candidate.isEmpty() && QFileInfo::exists(path))
      return path;
  }
  return {};
}

// The texts of one section of a file by folded key; found is set when the
// file has the section.
QHash<QString, QString> readSection(const QString &path, const QString &section, bool &found) {
  QHash<QString, QString> texts;
  if (path.isEmpty())
    return texts;
  const IniFile file = IniFile::load(path);
  found = found || file.hasSection(section);
  for (const QString &name : file.names(section))
    texts.insert(name.toCaseFolded(), *file.value(section, name));
  return texts;
}

} // namespace

void IniTranslator::loadSection(const QString &section, const QString &language) {
  // The add-in names its folder with the separator of its first platform.
  const QString folder = QString(folder_).replace(u'\\', u'/');
  if (folder.isEmpty() || !QFileInfo(folder).isDir())
    raiseError(ErrorNumber::FileNotFound, typeName(),
               QStringLiteral("The translation folder \"%1\" does not exist").arg(folder_));

  const QString englishPath = languageFilePath(folder, kEnglish);
  const QString languagePath = findLanguageFile(folder, language);
  const bool haveEnglish = QFileInfo::exists(englishPath);
  if (languagePath.isEmpty() && !haveEnglish)
    raiseError(ErrorNumber::FileNotFound, typeName(),
               QStringLiteral("No translation file for the language \"%1\" and none for English in %2")
                   .arg(language, QDir::toNativeSeparators(folder)));

  bool found = false;
  LoadedSection loaded{section, readSection(languagePath, section, found), {}};
  if (haveEnglish && englishPath != languagePath)
    loaded.english = readSection(englishPath, section, found);
  if (!found)
    raiseError(ErrorNumber::InvalidCall, typeName(),
               QStringLiteral("The translation files in %1 have no section [%2]")
                   .arg(QDir::toNativeSeparators(folder), section));

  for (LoadedSection &existing : sections_) {
    if (existing.name.compare(section, Qt::CaseInsensitive) == 0) {
      existing = std::move(loaded);
      return;
    }
  }
  sections_.push_back(std::move(loaded));
}

QString IniTranslator::translateKey(const QString &key) const {
  const QString wanted = key.toCaseFolded();
  for (const LoadedSection &section : sections_) {
    const auto it = section.texts.constFind(wanted);
    if (it != section.texts.constEnd())
      return *it;
  }
  for (const LoadedSection &section : sections_) {
    const auto it = section.english.constFind(wanted);
    if (it != section.english.constEnd())
      return *it;
  }
  return key;
}

const MemberTable &IniTranslator::memberTable() const {
  static const MemberTable table{{
      property<IniTranslator>(
          "TranslationFolder", [](IniTranslator &t) { return t.translationFolder(); },
          [](IniTranslator &t, const Variant &v) { t.setTranslationFolder(v.toString()); }),
      method<IniTranslator>("LoadSection",
                            [](IniTranslator &t, Args &a) {
                              expectArgs(a, 2, 2);
                              t.loadSection(a[0].toString(), a[1].toString());
                              return Variant();
                            }),
      method<IniTranslator>("TranslateKey",
                            [](IniTranslator &t, Args &a) {
                              expectArgs(a, 1, 1);
                              return t.translateKey(a[0].toString());
                            }),
  }};
  return table;
}

} // namespace kordel::host
