#include "design/ControlPositioner.h"

#include "core/Error.h"

namespace kordel::addin {

namespace {

std::int32_t twips(const ObjectRef &control, const char *name) {
  return control->get(QString::fromLatin1(name)).toLong();
}

} // namespace

// ---- ControlPosition

void ControlPosition::Initialize(const ObjectRef &section, std::int32_t width, std::int32_t spacing) {
  section_ = section;
  width_ = width;
  spacing_ = spacing;

  const ObjectRef controls = section->get(QStringLiteral("Controls")).toObject();
  const int count = controls->get(QStringLiteral("Count")).toLong();
  for (int i = 0; i < count; ++i) {
    const ObjectRef control = controls->invoke(QStringLiteral("Item"), {i}).toObject();
    RECT rect;
    if (!GetVisibleRect(control, rect))
      continue;
    const Kind kind = KindOf(control);
    RECT &last = kind == Kind::Label ? label_ : kind == Kind::Field ? field_ : general_;
    if (rect.Top >= last.Top && rect.Left >= last.Left)
      last = rect;
  }

  if (IsEmpty(label_) && !TouchesSpacing(field_))
    label_ = field_;
  else if (!IsEmpty(label_) && IsEmpty(field_) && !TouchesSpacing(label_))
    field_ = label_;
  UpdateGeneralRect();
}

void ControlPosition::SetPosition(const ObjectRef &control, std::int32_t &mode, std::int32_t &offset, RECT &lastRect) {
  const Kind kind = KindOf(control);
  if (kind == Kind::Other) {
    try {
      control->set(QStringLiteral("Left"), spacing_);
      control->set(QStringLiteral("Top"), general_.Bottom + offset);
    } catch (const Error &) {
      // a control without a place stays where it is
    }
    GetRect(control, general_);
    lastRect = general_;
  } else {
    PlaceControl(control, kind, mode, offset, lastRect);
    RECT &own = kind == Kind::Label ? label_ : field_;
    GetRect(control, own);
    lastRect = own;
  }
  UpdateGeneralRect();

  try {
    const std::int32_t needed = general_.Bottom + spacing_;
    if (twips(section_, "Height") < needed)
      section_->set(QStringLiteral("Height"), needed);
  } catch (const Error &) {
    // the section keeps its height
  }
}

ControlPosition::Kind ControlPosition::KindOf(const ObjectRef &control) {
  const QString type = control->typeName();
  if (type == QLatin1String("Label"))
    return Kind::Label;
  if (type == QLatin1String("Field"))
    return Kind::Field;
  return Kind::Other;
}

bool ControlPosition::GetVisibleRect(const ObjectRef &control, RECT &rect) {
  try {
    if (!control->get(QStringLiteral("Visible")).toBool())
      return false;
    rect = ReadRect(control);
    return true;
  } catch (const Error &) {
    return false;
  }
}

void ControlPosition::GetRect(const ObjectRef &control, RECT &rect) {
  try {
    rect = ReadRect(control);
  } catch (const Error &) {
    // the rectangle stays as it was
  }
}

RECT ControlPosition::ReadRect(const ObjectRef &control) {
  RECT read;
  read.Left = twips(control, "Left");
  read.Top = twips(control, "Top");
  read.Right = read.Left + twips(control, "Width");
  read.Bottom = read.Top + twips(control, "Height");
  return read;
}

void ControlPosition::StartRow(const ObjectRef &control, std::int32_t gap) const {
  control->set(QStringLiteral("Left"), spacing_);
  control->set(QStringLiteral("Top"), (field_.Top <= label_.Top ? label_.Bottom : field_.Bottom) + gap);
}

void ControlPosition::PlaceControl(const ObjectRef &control, Kind kind, std::int32_t mode, std::int32_t offset,
                                   const RECT &lastRect) {
  try {
    switch (mode) {
    case 0: StartRow(control, offset); break;
    case 1: {
      const RECT &row = kind == Kind::Label ? label_ : field_;
      if (row.Right == row.Left) {
        control->set(QStringLiteral("Left"), spacing_);
        control->set(QStringLiteral("Top"), row.Top);
      } else if (width_ - (row.Right + offset + twips(control, "Width")) >= 0) {
        control->set(QStringLiteral("Left"), row.Right + offset);
        control->set(QStringLiteral("Top"), row.Top);
      } else {
        StartRow(control, spacing_); // a wrapped row keeps the spacing, whatever the offset
      }
      break;
    }
    case 2:
      control->set(QStringLiteral("Left"), lastRect.Left);
      control->set(QStringLiteral("Top"), lastRect.Bottom + offset);
      break;
    case 3:
      control->set(QStringLiteral("Left"), lastRect.Left);
      control->set(QStringLiteral("Top"), lastRect.Top);
      break;
    default: break;
    }
  } catch (const Error &) {
    // a control without a place stays where it is
  }
}

void ControlPosition::UpdateGeneralRect() {
  if (field_.Top > general_.Top || (field_.Top == general_.Top && field_.Left >= general_.Left))
    general_ = field_;
  else if (label_.Top >= general_.Top)
    general_ = label_;
}

// ---- ControlPositioner

void ControlPositioner::Initialize(const ObjectRef &activeReport, std::int32_t spacing) {
  try {
    const std::int32_t width = activeReport->get(QStringLiteral("PrintWidth")).toLong();
    const ObjectRef sections = activeReport->get(QStringLiteral("Sections")).toObject();
    const int count = sections->get(QStringLiteral("Count")).toLong();
    for (int i = 0; i < count; ++i) {
      const ObjectRef section = sections->invoke(QStringLiteral("Item"), {i}).toObject();
      ControlPosition position;
      position.Initialize(section, width, spacing);
      positions_.insert(section->get(QStringLiteral("Name")).toString(), position);
    }
  } catch (const Error &) {
    // the sections read so far are known; the others place nothing
  }
}

void ControlPositioner::SetPosition(const ObjectRef &control, const QString &sectionName, std::int32_t mode,
                                    std::int32_t offset) {
  const auto found = positions_.find(sectionName);
  if (found == positions_.end())
    return;
  try {
    found->SetPosition(control, mode, offset, lastRect_);
  } catch (const Error &) {
    // placing is a courtesy: a control that cannot be placed stays put
  }
}

} // namespace kordel::addin
