#include "core/FoldedName.h"

namespace kordel {

const QString &foldedForLookup(const QString &name) {
  thread_local QString buffer;
  bool capitals = false;
  for (const QChar c : name) {
    if (c.unicode() >= 0x80) {
      buffer = name.toLower();
      return buffer;
    }
    capitals = capitals || (c >= u'A' && c <= u'Z');
  }
  if (!capitals)
    return name;
  buffer.resize(name.size());
  QChar *out = buffer.data();
  for (const QChar c : name)
    *out++ = c >= u'A' && c <= u'Z' ? QChar(c.unicode() + (u'a' - u'A')) : c;
  return buffer;
}

} // namespace kordel
