#include "engine/export/RtfFonts.h"

#include "engine/export/RtfText.h"

#include <algorithm>
#include <optional>

namespace kordel::engine {

namespace {

constexpr int kJapanese = 128;
constexpr int kKorean = 129;
constexpr int kChinese = 134;
constexpr int kHebrew = 177;
constexpr int kArabic = 178;

bool isEastAsian(char32_t c) {
  switch (QChar::script(c)) {
  case QChar::Script_Han:
  case QChar::Script_Hiragana:
  case QChar::Script_Katakana:
  case QChar::Script_Hangul:
  case QChar::Script_Bopomofo: return true;
  default: break;
  }
  // Punctuation and symbols of East Asian text, and full-width forms.
  return (c >= 0x3000 && c <= 0x303f) || (c >= 0x3200 && c <= 0x33ff) || (c >= 0xff00 && c <= 0xffef);
}

// The character set of a right-to-left character's script; none for
// other characters.
std::optional<int> rightToLeftCharset(char32_t c) {
  switch (QChar::script(c)) {
  case QChar::Script_Hebrew: return kHebrew;
  case QChar::Script_Arabic:
  case QChar::Script_Syriac:
  case QChar::Script_Thaana:
  case QChar::Script_Nko: return kArabic;
  default: return std::nullopt;
  }
}

// The first East Asian and the first right-to-left character of a text,
// with the character sets they call for.
struct Scripts {
  std::optional<char32_t> eastAsian;
  int eastAsianCharset = kChinese;
  std::optional<char32_t> rightToLeft;
  int rightToLeftCharset = kArabic;
};

Scripts scriptsOf(const QString &text) {
  Scripts scripts;
  for (const char32_t c : text.toUcs4()) {
    if (isEastAsian(c)) {
      if (!scripts.eastAsian)
        scripts.eastAsian = c;
      const QChar::Script script = QChar::script(c);
      if (script == QChar::Script_Hiragana || script == QChar::Script_Katakana)
        scripts.eastAsianCharset = kJapanese;
      else if (script == QChar::Script_Hangul && scripts.eastAsianCharset != kJapanese)
        scripts.eastAsianCharset = kKorean;
    } else if (const auto charset = rightToLeftCharset(c); charset && !scripts.rightToLeft) {
      scripts.rightToLeft = c;
      scripts.rightToLeftCharset = *charset;
    }
  }
  return scripts;
}

QByteArray number(int value) { return QByteArray::number(value); }

void appendEntry(QByteArray &out, int index, int charset, const QString &family) {
  out += "{\\f" + number(index) + "\\fnil\\fcharset" + number(charset) + ' ';
  appendRtfText(out, family);
  out += ";}";
}

} // namespace

RtfFonts::RtfFonts(const PageDocument &document) : document_(document), coverage_(document) {}

int RtfFonts::entryFor(const QString &family, int charset) {
  const auto key = std::make_pair(family, charset);
  if (const auto found = entryIndex_.find(key); found != entryIndex_.end())
    return found->second;
  const int index = std::max(document_.fontCount(), 1) + int(extraEntries_.size());
  extraEntries_.push_back(key);
  entryIndex_.emplace(key, index);
  return index;
}

QByteArray RtfFonts::fontsOf(int font, const QString &text) {
  const QByteArray own = number(font);
  const Scripts scripts = scriptsOf(text);
  if (!scripts.eastAsian && !scripts.rightToLeft)
    return "\\f" + own;

  const PageFont &pageFont = document_.font(font);
  // The family that shows the character here; the run's own when none does.
  const auto entry = [&](char32_t c, int charset) {
    const QString family = coverage_.familyFor(font, c);
    return number(entryFor(family.isEmpty() ? pageFont.family : family, charset));
  };
  const QByteArray rightToLeft = scripts.rightToLeft ? entry(*scripts.rightToLeft, scripts.rightToLeftCharset) : own;
  const QByteArray eastAsian = scripts.eastAsian ? entry(*scripts.eastAsian, scripts.eastAsianCharset) : own;
  QByteArray words = "\\rtlch\\af" + rightToLeft + "\\afs" + number(qRound(pageFont.pointSize * 2));
  if (pageFont.bold)
    words += "\\ab";
  if (pageFont.italic)
    words += "\\ai";
  return words + "\\ltrch\\f" + own + "\\hich\\af" + own + "\\dbch\\af" + eastAsian + "\\loch\\f" + own;
}

QByteArray RtfFonts::table() const {
  QByteArray out = "{\\fonttbl";
  if (document_.fontCount() == 0)
    appendEntry(out, 0, 0, PageFont{}.family);
  for (int index = 0; index < document_.fontCount(); ++index)
    appendEntry(out, index, 0, document_.font(index).family);
  for (const auto &[family, charset] : extraEntries_)
    appendEntry(out, entryIndex_.at({family, charset}), charset, family);
  return out + "}\n";
}

} // namespace kordel::engine
