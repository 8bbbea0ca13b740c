#pragma once

#include <QStringView>

namespace kordel {

// Whether every character of the text has a Latin-1 code (below U+0100),
// so that it can be kept in a byte a character.
inline bool fitsLatin1(QStringView text) {
  for (const QChar c : text)
    if (c.unicode() > 0xff)
      return false;
  return true;
}

// Writes a text that fits Latin-1 a byte a character.
inline void writeLatin1(QStringView text, char *into) {
  for (qsizetype i = 0; i < text.size(); ++i)
    into[i] = char(text[i].unicode());
}

} // namespace kordel
