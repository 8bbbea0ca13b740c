#include "engine/export/RtfText.h"

#include <cstdint>

namespace kordel::engine {

void appendRtfText(QByteArray &out, const QString &text) {
  for (const QChar c : text) {
    const char16_t unit = c.unicode();
    if (unit == u'\\' || unit == u'{' || unit == u'}') {
      out += '\\';
      out += char(unit);
    } else if (unit == u'\t') {
      out += "\\tab ";
    } else if (unit < 0x20 || unit == 0x7f) {
      continue;
    } else if (unit < 0x80) {
      out += char(unit);
    } else {
      out += "\\u" + QByteArray::number(int(std::int16_t(unit))) + '?';
    }
  }
}

} // namespace kordel::engine
