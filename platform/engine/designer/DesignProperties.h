#pragma once

#include "engine/designer/DesignerEvents.h"

#include "core/Object.h"

#include <QImage>
#include <QString>
#include <QStringList>

#include <functional>
#include <vector>

namespace kordel::engine {

class LayoutReport;

// What a property's value is, and so how the property list shows and edits
// it. Values travel as Variants in the model's own units.
enum class PropertyType {
  Text,          // one line
  MultiLineText, // Enter commits, Shift+Enter starts a new line
  Length,        // twips (a Double), shown and typed in the ruler's unit
  Points,        // twips (a Double), shown and typed in points: line weights
  Boolean,
  Color,        // a colour &HBBGGRR as a Long
  Enumeration,  // one of the property's choices
  Font,         // a FontObject of its own, never the control's
  Picture,      // an ImageValue
  OutputFormat, // text, with examples to pick from
};

// The kinds of object the designer edits, one bit each, so that a property
// says in one number what it applies to.
namespace DesignKind {
constexpr unsigned Report = 1u << 0;
// A section's bit is 1 << (1 + its SectionType).
constexpr unsigned ReportHeader = 1u << 1;
constexpr unsigned ReportFooter = 1u << 2;
constexpr unsigned PageHeader = 1u << 3;
constexpr unsigned PageFooter = 1u << 4;
constexpr unsigned GroupHeader = 1u << 5;
constexpr unsigned GroupFooter = 1u << 6;
constexpr unsigned Detail = 1u << 7;
constexpr unsigned Label = 1u << 8;
constexpr unsigned Field = 1u << 9;
constexpr unsigned SubReport = 1u << 10;
constexpr unsigned Line = 1u << 11;
constexpr unsigned Shape = 1u << 12;
constexpr unsigned Picture = 1u << 13;

constexpr unsigned AnySection =
    ReportHeader | ReportFooter | PageHeader | PageFooter | GroupHeader | GroupFooter | Detail;
constexpr unsigned AnyControl = Label | Field | SubReport | Line | Shape | Picture;
constexpr unsigned TextControls = Label | Field;
} // namespace DesignKind

// The kind bit of a report, section or control; 0 for anything else.
unsigned designKindOf(const Object &object);

// A picture's image as a property value.
class ImageValue : public Object {
public:
  explicit ImageValue(QImage image) : image(std::move(image)) {}
  QString typeName() const override { return QStringLiteral("Picture"); }
  QImage image;
};

struct PropertyChoice {
  Variant value;
  QString label;
};

// One property as the designer offers it.
struct DesignProperty {
  QString name;
  QString category;
  PropertyType type = PropertyType::Text;
  unsigned appliesTo = 0; // DesignKind bits
  QString description;
  bool readOnly = false;
  bool singleObject = false; // edited for one object at a time (Name)
  std::vector<PropertyChoice> choices;
  // Lengths and points: the range in twips.
  double minimum = 0;
  double maximum = 0;
  // The DesignChange an edit raises before it (-1: none) and after it.
  int changingKind = -1;
  int changedKind = DesignChange::PropertyChanged;

  std::function<Variant(Object &)> read;
  std::function<void(Object &, const Variant &)> write;
  // What is wrong with giving the object this value in its report; empty
  // when nothing is. Unset for properties that take any value of the type.
  std::function<QString(Object &, const Variant &, LayoutReport &)> check;
  // Texts to pick from beside typing one (formats, group names).
  std::function<QStringList(const LayoutReport &)> suggestions;

  bool appliesToObject(const Object &object) const { return (appliesTo & designKindOf(object)) != 0; }
};

// Colours, fonts and pictures are also chosen in a dialog.
bool hasDialog(const DesignProperty &property);

// Every property, grouped by category in the order the list shows them. A
// name may stand twice for kinds of object that differ (a label's Caption
// is its text, the report's the title of its preview).
const std::vector<DesignProperty> &designProperties();
// The property of that name (compared without case) for the object;
// nullptr when it has none.
const DesignProperty *findDesignProperty(const QString &name, const Object &object);
// The properties that apply to every one of the objects, in table order;
// none for no objects. Properties edited one object at a time only for one.
std::vector<const DesignProperty *> commonProperties(const std::vector<ObjectRef> &objects);

} // namespace kordel::engine
