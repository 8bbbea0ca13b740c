#pragma once

#include "core/Object.h"

#include <QHash>

#include <cstdint>

namespace kordel::addin {

// A rectangle of a layout in whole twips.
struct RECT {
  std::int32_t Left = 0;
  std::int32_t Top = 0;
  std::int32_t Right = 0;
  std::int32_t Bottom = 0;
};

// Where the next control inserted into one section goes. It remembers the
// last label, the last field and the last control of any kind, and puts
// a new control beside or below them, wrapping at the print width and
// growing the section when the control reaches below it.
//
// Design note. The three rectangles start at zero and begin as the lowest,
// rightmost visible control of each kind. "Empty" means a rectangle whose
// Left and Right both equal the spacing: with rectangles starting at zero,
// that is rarely true, and the cross-filling of the label and field
// rectangles below follows that rule all the same, since layouts built
// over the years were placed by it. The modes of SetPosition:
//   0  a new row at the left, under the lower of last field and label;
//   1  next in the row of the same kind, wrapping at the print width;
//   2  under the control placed last (same Left);
//   3  on the control placed last (same Left and Top).
// Everything reads and writes the controls late-bound (Visible, Left, Top,
// Width, Height) and ignores failures: a control without such properties
// stays where it is.
class ControlPosition {
public:
  void Initialize(const ObjectRef &section, std::int32_t width, std::int32_t spacing);
  void SetPosition(const ObjectRef &control, std::int32_t &mode, std::int32_t &offset, RECT &lastRect);

private:
  enum class Kind { Label, Field, Other };
  static Kind KindOf(const ObjectRef &control);
  static bool GetVisibleRect(const ObjectRef &control, RECT &rect);
  static void GetRect(const ObjectRef &control, RECT &rect);
  // Raises what reading the control raises.
  static RECT ReadRect(const ObjectRef &control);
  void PlaceControl(const ObjectRef &control, Kind kind, std::int32_t mode, std::int32_t offset, const RECT &lastRect);
  // Left at the spacing, Top under the lower of last field and last label.
  void StartRow(const ObjectRef &control, std::int32_t gap) const;
  void UpdateGeneralRect();
  bool IsEmpty(const RECT &rect) const { return rect.Left == spacing_ && rect.Right == spacing_; }
  bool TouchesSpacing(const RECT &rect) const { return rect.Left == spacing_ || rect.Right == spacing_; }

  RECT general_;
  RECT field_;
  RECT label_;
  std::int32_t spacing_ = 0;
  ObjectRef section_;
  std::int32_t width_ = 0;
};

// The places of every section of one layout, by section name, and the
// rectangle of the control placed last, which all sections share.
class ControlPositioner {
public:
  void Initialize(const ObjectRef &activeReport, std::int32_t spacing);
  // A section name the layout does not have places nothing.
  void SetPosition(const ObjectRef &control, const QString &sectionName, std::int32_t mode, std::int32_t offset);

private:
  RECT lastRect_;
  QHash<QString, ControlPosition> positions_;
};

} // namespace kordel::addin
