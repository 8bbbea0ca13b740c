#include "engine/model/Font.h"

#include "core/Error.h"

#include <QColor>

namespace kordel::engine {

QFont FontObject::defaultFont() {
  QFont font(QStringLiteral("DejaVu Sans"));
  font.setPointSizeF(10);
  return font;
}

FontObject::FontObject() : font_(defaultFont()) {}

const MemberTable &FontObject::memberTable() const {
  using F = FontObject;
  static const MemberTable table{{
      property<F>(
          "Name", [](F &f) { return f.font_.family(); },
          [](F &f, const Variant &v) { f.font_.setFamily(v.toString()); }),
      property<F>(
          "Size", [](F &f) { return f.font_.pointSizeF(); },
          [](F &f, const Variant &v) {
            const double size = v.toDouble();
            if (size <= 0 || size > 2048)
              raiseError(ErrorNumber::InvalidCall, QStringLiteral("Font.Size"),
                         QStringLiteral("A font size is above 0 and at most 2048 points, not %1").arg(size));
            f.font_.setPointSizeF(size);
          }),
      property<F>(
          "Bold", [](F &f) { return f.font_.bold(); }, [](F &f, const Variant &v) { f.font_.setBold(v.toBool()); }),
      property<F>(
          "Italic", [](F &f) { return f.font_.italic(); },
          [](F &f, const Variant &v) { f.font_.setItalic(v.toBool()); }),
      property<F>(
          "Underline", [](F &f) { return f.font_.underline(); },
          [](F &f, const Variant &v) { f.font_.setUnderline(v.toBool()); }),
      property<F>(
          "Strikethrough", [](F &f) { return f.font_.strikeOut(); },
          [](F &f, const Variant &v) { f.font_.setStrikeOut(v.toBool()); }),
  }};
  return table;
}

QColor colorFromVb(std::int32_t value) {
  const auto bits = std::uint32_t(value);
  return QColor(int(bits & 0xff), int((bits >> 8) & 0xff), int((bits >> 16) & 0xff));
}

std::int32_t colorToVb(const QColor &color) {
  return std::int32_t(std::uint32_t(color.red()) | (std::uint32_t(color.green()) << 8) |
                      (std::uint32_t(color.blue()) << 16));
}

} // namespace kordel::engine
