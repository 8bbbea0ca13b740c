#pragma once

#include "core/Object.h"

#include <QFont>

namespace kordel::engine {

// The font of a control, shared with scripts: changing ctl.Font.Bold
// changes the control's font. Late-bound: Name, Size, Bold, Italic,
// Underline, Strikethrough.
class FontObject : public Object {
public:
  // DejaVu Sans 10 pt unless given.
  FontObject();
  explicit FontObject(const QFont &font) : font_(font) {}

  QString typeName() const override { return QStringLiteral("Font"); }
  const QFont &font() const { return font_; }
  void setFont(const QFont &font) { font_ = font; }

  static QFont defaultFont();

protected:
  const MemberTable &memberTable() const override;

private:
  QFont font_;
};

// VB colours are numbers &HBBGGRR.
QColor colorFromVb(std::int32_t value);
std::int32_t colorToVb(const QColor &color);

} // namespace kordel::engine
