#include "engine/model/Section.h"

#include "engine/model/Controls.h"
#include "engine/model/Font.h"
#include "engine/model/LayoutReport.h"

#include "core/Error.h"

namespace kordel::engine {

std::shared_ptr<Section> Section::create(SectionType type, const QString &name) {
  std::shared_ptr<Section> section(new Section(type));
  section->name = name;
  section->controls_ = std::make_shared<engine::Controls>(section);
  return section;
}

const MemberTable &Section::memberTable() const {
  using S = Section;
  static const MemberTable table{{
      property<S>(
          "Name", [](S &s) { return s.name; }, [](S &s, const Variant &v) { s.name = v.toString(); }),
      property<S>("Type", [](S &s) { return int(s.type()); }),
      property<S>(
          "Height", [](S &s) { return double(s.height); },
          [](S &s, const Variant &v) {
            const double height = v.toDouble();
            if (height < 0)
              raiseError(ErrorNumber::InvalidCall, QStringLiteral("Section.Height"),
                         QStringLiteral("A section's height cannot be negative"));
            s.height = float(height);
          }),
      property<S>(
          "Visible", [](S &s) { return s.visible; }, [](S &s, const Variant &v) { s.visible = v.toBool(); }),
      property<S>(
          "BackStyle", [](S &s) { return s.backStyle; }, [](S &s, const Variant &v) { s.backStyle = v.toLong(); }),
      property<S>(
          "BackColor", [](S &s) { return colorToVb(s.backColor); },
          [](S &s, const Variant &v) { s.backColor = colorFromVb(v.toLong()); }),
      property<S>("Controls", [](S &s) { return Variant(ObjectRef(s.controls())); }),
      property<S>(
          "DataField", [](S &s) { return s.dataField; }, [](S &s, const Variant &v) { s.dataField = v.toString(); }),
      property<S>(
          "Script", [](S &s) { return s.script; }, [](S &s, const Variant &v) { s.script = v.toString(); }),
      property<S>(
          "CanGrow", [](S &s) { return s.canGrow; }, [](S &s, const Variant &v) { s.canGrow = v.toBool(); }),
      property<S>(
          "CanShrink", [](S &s) { return s.canShrink; }, [](S &s, const Variant &v) { s.canShrink = v.toBool(); }),
      property<S>(
          "KeepTogether", [](S &s) { return s.keepTogether; },
          [](S &s, const Variant &v) { s.keepTogether = v.toBool(); }),
      property<S>(
          "RepeatStyle", [](S &s) { return std::int16_t(s.repeatStyle); },
          [](S &s, const Variant &v) {
            const int style = v.toInteger();
            if (style < 0 || style > 1)
              raiseError(ErrorNumber::InvalidCall, QStringLiteral("Section.RepeatStyle"),
                         QStringLiteral("RepeatStyle is 0 (none) or 1 (on each page), not %1").arg(style));
            s.repeatStyle = RepeatStyle(style);
          }),
      property<S>(
          "NewPage", [](S &s) { return int(s.newPage); },
          [](S &s, const Variant &v) {
            const int value = v.toLong();
            if (value < 0 || value > 3)
              raiseError(ErrorNumber::InvalidCall, QStringLiteral("Section.NewPage"),
                         QStringLiteral("NewPage is 0 to 3, not %1").arg(value));
            s.newPage = NewPage(value);
          }),
  }};
  return table;
}

std::shared_ptr<Section> Sections::at(int index) const {
  if (index < 0 || index >= count())
    raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Sections"),
               QStringLiteral("There is no section %1; the layout has %2").arg(index).arg(count()));
  return sections_[std::size_t(index)];
}

std::shared_ptr<Section> Sections::find(const QString &name) const {
  for (const auto &section : sections_)
    if (section->name.compare(name, Qt::CaseInsensitive) == 0)
      return section;
  return nullptr;
}

std::shared_ptr<Section> Sections::item(const Variant &indexOrName) const {
  if (indexOrName.isNumber())
    return at(indexOrName.toLong());
  const QString name = indexOrName.toString();
  if (auto section = find(name))
    return section;
  raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Sections"),
             QStringLiteral("The layout has no section \"%1\"").arg(name));
}

std::shared_ptr<Section> Sections::add(const QString &name, int index, SectionType type, float height) {
  auto section = Section::create(type, name);
  section->height = height;
  insert(section, index);
  return section;
}

void Sections::insert(const std::shared_ptr<Section> &section, int index) {
  if (const auto report = owner_.lock())
    report->refuseWhileHeld(QStringLiteral("Sections.Add"));
  if (find(section->name))
    raiseError(ErrorNumber::DuplicateKey, QStringLiteral("Sections.Add"),
               QStringLiteral("The layout has a section \"%1\" already").arg(section->name));
  if (index < 0 || index > count())
    raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Sections.Add"),
               QStringLiteral("A section can go at 0 to %1, not at %2").arg(count()).arg(index));
  section->setReport(owner_.lock());
  sections_.insert(sections_.begin() + index, section);
}

void Sections::remove(int index) {
  if (const auto report = owner_.lock())
    report->refuseWhileHeld(QStringLiteral("Sections.Remove"));
  at(index);
  sections_.erase(sections_.begin() + index);
}

std::unique_ptr<Enumerator> Sections::enumerate() {
  std::vector<Variant> values;
  for (const auto &section : sections_)
    values.emplace_back(ObjectRef(section));
  return std::make_unique<ListEnumerator>(std::move(values));
}

const MemberTable &Sections::memberTable() const {
  using S = Sections;
  static const MemberTable table{
      {
          property<S>("Count", [](S &s) { return s.count(); }),
          indexedProperty<S>("Item",
                             [](S &s, Args &a) {
                               expectArgs(a, 1, 1);
                               return Variant(ObjectRef(s.item(a[0])));
                             }),
          method<S>("Add",
                    [](S &s, Args &a) {
                      expectArgs(a, 4, 4);
                      const int type = a[2].toLong();
                      if (type < 0 || type > 6)
                        raiseError(ErrorNumber::InvalidCall, QStringLiteral("Sections.Add"),
                                   QStringLiteral("A section type is 0 to 6, not %1").arg(type));
                      return Variant(
                          ObjectRef(s.add(a[0].toString(), a[1].toLong(), SectionType(type), float(a[3].toDouble()))));
                    }),
          method<S>("Remove",
                    [](S &s, Args &a) {
                      expectArgs(a, 1, 1);
                      s.remove(a[0].toLong());
                      return Variant();
                    }),
      },
      nullptr,
      QStringLiteral("Item")};
  return table;
}

} // namespace kordel::engine
