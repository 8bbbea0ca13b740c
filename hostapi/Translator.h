#pragma once

#include "core/Object.h"

namespace kordel::hostapi {

// ProgID under which the host makes its translator.
inline constexpr const char *kTranslatorProgId = "Skarnholt.Translator";

// The host's translator: message texts by "Section.Item" key, read from
// the translation files in a folder.
class Translator : public Object {
public:
  virtual void setTranslationFolder(const QString &folder) = 0;
  virtual QString translationFolder() const = 0;
  // Loads one section of the file for a language.
  virtual void loadSection(const QString &section, const QString &language) = 0;
  // The text of a "Section.Item" key.
  virtual QString translateKey(const QString &key) const = 0;
};

} // namespace kordel::hostapi
