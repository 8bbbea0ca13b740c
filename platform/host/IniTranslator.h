#pragma once

#include "hostapi/Translator.h"

#include <QHash>

#include <vector>

namespace kordel::host {

// The host's translator ("Skarnholt.Translator"). LoadSection(section,
// language) reads one section of "<folder>/kordel.<language>.ini" and of the
// English file beside it. TranslateKey looks a "Section.Item" key up without
// regard to case: in the language's texts, then in the English ones, and
// gives the key itself when neither has it, so gaps in a translation show.
// Late-bound: TranslationFolder, LoadSection, TranslateKey.
class IniTranslator : public hostapi::Translator {
public:
  QString typeName() const override { return QStringLiteral("Translator"); }

  void setTranslationFolder(const QString &folder) override { folder_ = folder; }
  QString translationFolder() const override { return folder_; }
  // A language "sv-SE" or "sv_SE" falls back to "sv". Raises 53 when
  // neither the language's file nor the English file exists, and the
  // file's own error when one cannot be read. Loading a section again
  // replaces what it held.
  void loadSection(const QString &section, const QString &language) override;
  QString translateKey(const QString &key) const override;

protected:
  const MemberTable &memberTable() const override;

private:
  using Texts = QHash<QString, QString>; // folded key -> text

  struct LoadedSection {
    QString name;
    Texts texts;
    Texts english;
  };

  QString folder_;
  std::vector<LoadedSection> sections_;
};

} // namespace kordel::host
