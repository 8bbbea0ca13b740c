#include "engine/designer/DesignProperties.h"

#include "engine/designer/DesignerText.h"

#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include <QRegularExpression>

#include <algorithm>
#include <cmath>

namespace kordel::engine {

namespace {

namespace K = DesignKind;

// Lengths stop at 200 inches: no paper is larger, and a typing slip of a
// few digits more stays a number the layout can hold.
constexpr double kMaxLength = 200 * 1440;
constexpr double kMaxLineWeight = 100 * 20; // 100 points

const QString kDesign = QStringLiteral(QT_TRANSLATE_NOOP("Designer", "Design"));
const QString kData = QStringLiteral(QT_TRANSLATE_NOOP("Designer", "Data"));
const QString kAppearance = QStringLiteral(QT_TRANSLATE_NOOP("Designer", "Appearance"));
const QString kLayout = QStringLiteral(QT_TRANSLATE_NOOP("Designer", "Layout"));
const QString kPage = QStringLiteral(QT_TRANSLATE_NOOP("Designer", "Page"));
const QString kBehavior = QStringLiteral(QT_TRANSLATE_NOOP("Designer", "Behavior"));

// A property reached late-bound by a path of member names
// ("PageSettings.LeftMargin").
Object &ownerOf(Object &object, const QStringList &path) {
  Object *owner = &object;
  for (qsizetype i = 0; i + 1 < path.size(); ++i)
    owner = owner->get(path[i]).toObject().get();
  return *owner;
}

DesignProperty lateBound(const char *name, const QString &category, PropertyType type, unsigned kinds,
                         const char *description) {
  DesignProperty property;
  const QString path = QString::fromLatin1(name);
  const QStringList parts = path.split(u'.');
  property.name = parts.last();
  property.category = category;
  property.type = type;
  property.appliesTo = kinds;
  property.description = QString::fromUtf8(description);
  property.read = [parts](Object &object) { return ownerOf(object, parts).get(parts.last()); };
  property.write = [parts](Object &object, const Variant &value) { ownerOf(object, parts).set(parts.last(), value); };
  return property;
}

DesignProperty length(const char *name, const QString &category, unsigned kinds, const char *description,
                      int changedKind = DesignChange::PropertyChanged) {
  DesignProperty property = lateBound(name, category, PropertyType::Length, kinds, description);
  property.maximum = kMaxLength;
  property.changedKind = changedKind;
  return property;
}

DesignProperty choice(const char *name, const QString &category, unsigned kinds, const char *description,
                      std::vector<PropertyChoice> choices) {
  DesignProperty property = lateBound(name, category, PropertyType::Enumeration, kinds, description);
  property.choices = std::move(choices);
  return property;
}

std::vector<PropertyChoice> numbered(std::initializer_list<const char *> labels, int first = 0) {
  std::vector<PropertyChoice> choices;
  int value = first;
  for (const char *label : labels)
    choices.push_back({Variant(value++), QString::fromUtf8(label)});
  return choices;
}

// ---- Names ----

bool nameTaken(const LayoutReport &report, const Object &object, const QString &name) {
  for (const auto &section : report.sections()->all()) {
    if (section.get() != &object && section->name.compare(name, Qt::CaseInsensitive) == 0)
      return true;
    for (const auto &control : section->controls()->all())
      if (control.get() != &object && control->name.compare(name, Qt::CaseInsensitive) == 0)
        return true;
  }
  return false;
}

QString checkName(Object &object, const Variant &value, LayoutReport &report) {
  static const QRegularExpression identifier(QStringLiteral("^[A-Za-z][A-Za-z0-9_]*$"));
  const QString name = value.toString();
  if (name.isEmpty())
    return designerText("A name cannot be empty");
  if (!identifier.match(name).hasMatch())
    return designerText("\"%1\" is no name: a name begins with a letter and holds only letters, digits and _")
        .arg(name);
  if (nameTaken(report, object, name))
    return designerText("The name \"%1\" is taken: names are unique in the layout").arg(name);
  return QString();
}

// Summaries name the group header whose group they cover: they follow it
// when it is renamed.
void writeName(Object &object, const Variant &value) {
  auto *section = dynamic_cast<Section *>(&object);
  if (!section || section->type() != SectionType::GroupHeader) {
    object.set(QStringLiteral("Name"), value);
    return;
  }
  const QString old = section->name;
  section->name = value.toString();
  if (const auto report = section->report())
    for (const auto &each : report->sections()->all())
      for (const auto &control : each->controls()->all())
        if (auto *field = dynamic_cast<Field *>(control.get()))
          if (!old.isEmpty() && field->summaryGroup.compare(old, Qt::CaseInsensitive) == 0)
            field->summaryGroup = section->name;
}

QStringList groupNames(const LayoutReport &report) {
  QStringList names;
  for (const auto &section : report.sections()->all())
    if (section->type() == SectionType::GroupHeader)
      names << section->name;
  return names;
}

// ---- Paper ----

struct Paper {
  const char *name;
  float shortSide, longSide; // twips
};

constexpr Paper kPapers[] = {
    {"A4", 11906, 16838}, {"A3", 16838, 23811}, {"A5", 8391, 11906}, {"Letter", 12240, 15840}, {"Legal", 12240, 20160},
};

// PaperSize: 0 for a size no named paper has, else the paper's place in
// kPapers plus 1. Width and height may lie either way.
DesignProperty paperSize() {
  std::vector<PropertyChoice> choices{{Variant(0), QStringLiteral(QT_TRANSLATE_NOOP("Designer", "Custom"))}};
  int value = 1;
  for (const Paper &paper : kPapers)
    choices.push_back({Variant(value++), QString::fromLatin1(paper.name)});
  DesignProperty property =
      choice("PaperSize", kPage, K::Report,
             QT_TRANSLATE_NOOP("Designer", "The paper the report is laid out on; Custom for any other size."),
             std::move(choices));
  property.read = [](Object &object) {
    const auto &settings = *static_cast<LayoutReport &>(object).pageSettings();
    const float shortSide = std::min(settings.paperWidth, settings.paperHeight);
    const float longSide = std::max(settings.paperWidth, settings.paperHeight);
    for (std::size_t i = 0; i < std::size(kPapers); ++i)
      if (std::abs(shortSide - kPapers[i].shortSide) < 1 && std::abs(longSide - kPapers[i].longSide) < 1)
        return Variant(int(i) + 1);
    return Variant(0);
  };
  property.write = [](Object &object, const Variant &value) {
    const int index = value.toLong() - 1;
    if (index < 0 || index >= int(std::size(kPapers)))
      return; // Custom: the size stays as it is
    auto &settings = *static_cast<LayoutReport &>(object).pageSettings();
    settings.paperWidth = kPapers[index].shortSide;
    settings.paperHeight = kPapers[index].longSide;
  };
  return property;
}

// ---- Values the model holds in objects of their own ----

DesignProperty font() {
  DesignProperty property = lateBound("Font", kAppearance, PropertyType::Font, K::TextControls,
                                      QT_TRANSLATE_NOOP("Designer", "The font of the text: name, size and style."));
  // A copy, so that the value read stays what it was when the control's
  // font changes.
  property.read = [](Object &object) {
    return Variant(ObjectRef(std::make_shared<FontObject>(static_cast<Control &>(object).font->font())));
  };
  return property;
}

DesignProperty picture() {
  DesignProperty property = lateBound("Picture", kAppearance, PropertyType::Picture, K::Picture,
                                      QT_TRANSLATE_NOOP("Designer", "The image, read from a picture file."));
  property.read = [](Object &object) {
    return Variant(ObjectRef(std::make_shared<ImageValue>(static_cast<Picture &>(object).image)));
  };
  property.write = [](Object &object, const Variant &value) {
    const auto image = objectAs<ImageValue>(value);
    static_cast<Picture &>(object).image = image ? image->image : QImage();
  };
  return property;
}

// ---- The table ----

std::vector<DesignProperty> makeTable() {
  constexpr unsigned kPageBands = K::PageHeader | K::PageFooter;
  constexpr unsigned kFilled = K::TextControls | K::Shape | K::AnySection;
  using T = PropertyType;
  std::vector<DesignProperty> table;

  // Design
  DesignProperty name =
      lateBound("Name", kDesign, T::Text, K::AnySection | K::AnyControl,
                QT_TRANSLATE_NOOP("Designer", "The name the layout and its scripts know it by; unique in the layout."));
  name.singleObject = true;
  name.check = checkName;
  name.write = writeName;
  table.push_back(std::move(name));
  DesignProperty type =
      choice("Type", kDesign, K::AnySection,
             QT_TRANSLATE_NOOP("Designer", "The kind of section, fixed when the section is made."),
             numbered({QT_TRANSLATE_NOOP("Designer", "Report Header"), QT_TRANSLATE_NOOP("Designer", "Report Footer"),
                       QT_TRANSLATE_NOOP("Designer", "Page Header"), QT_TRANSLATE_NOOP("Designer", "Page Footer"),
                       QT_TRANSLATE_NOOP("Designer", "Group Header"), QT_TRANSLATE_NOOP("Designer", "Group Footer"),
                       QT_TRANSLATE_NOOP("Designer", "Detail")}));
  type.readOnly = true;
  table.push_back(std::move(type));
  table.push_back(lateBound("Tag", kDesign, T::Text, K::AnyControl,
                            QT_TRANSLATE_NOOP("Designer", "Free text for the report's own use.")));
  table.push_back(choice(
      "ScriptLanguage", kDesign, K::Report, QT_TRANSLATE_NOOP("Designer", "The language of the report's scripts."),
      {{Variant("VBScript"), QStringLiteral("VBScript")}, {Variant("JScript"), QStringLiteral("JScript")}}));
  table.push_back(lateBound("DocumentName", kDesign, T::Text, K::Report,
                            QT_TRANSLATE_NOOP("Designer", "The name the print queue shows for the printed report.")));
  table.push_back(lateBound("Caption", kDesign, T::Text, K::Report,
                            QT_TRANSLATE_NOOP("Designer", "The title of the report's preview window.")));

  // Data
  table.push_back(lateBound("Caption", kData, T::MultiLineText, K::Label,
                            QT_TRANSLATE_NOOP("Designer", "The text the label shows.")));
  table.push_back(lateBound(
      "DataField", kData, T::Text, K::Field | K::GroupHeader,
      QT_TRANSLATE_NOOP("Designer", "A field: the unbound field it shows, or =expression. A group header: the field or "
                                    "=expression whose change starts a new group.")));
  table.push_back(
      lateBound("Text", kData, T::MultiLineText, K::Field,
                QT_TRANSLATE_NOOP("Designer", "What the field shows when no data field gives it a value.")));
  DesignProperty format = lateBound(
      "OutputFormat", kData, T::OutputFormat, K::Field,
      QT_TRANSLATE_NOOP(
          "Designer", "How the value is written: #,##0.00, 0%, dd.mm.yyyy, Currency, Short Date ... Empty: as it is."));
  format.suggestions = [](const LayoutReport &) {
    return QStringList{QStringLiteral("#,##0.00"),   QStringLiteral("#,##0"),     QStringLiteral("0.00"),
                       QStringLiteral("0%"),         QStringLiteral("0.0%"),      QStringLiteral("dd.mm.yyyy"),
                       QStringLiteral("yyyy-mm-dd"), QStringLiteral("hh:nn"),     QStringLiteral("Currency"),
                       QStringLiteral("Fixed"),      QStringLiteral("Standard"),  QStringLiteral("Percent"),
                       QStringLiteral("Short Date"), QStringLiteral("Long Date"), QStringLiteral("Yes/No")};
  };
  table.push_back(std::move(format));
  table.push_back(
      choice("CountKind", kData, K::Field,
             QT_TRANSLATE_NOOP("Designer", "A summary of the data field over its group or the report, or the pages."),
             numbered({QT_TRANSLATE_NOOP("Designer", "None"), QT_TRANSLATE_NOOP("Designer", "Sum"),
                       QT_TRANSLATE_NOOP("Designer", "Count"), QT_TRANSLATE_NOOP("Designer", "Average"),
                       QT_TRANSLATE_NOOP("Designer", "Pages")})));
  table.push_back(
      choice("RunningKind", kData, K::Field,
             QT_TRANSLATE_NOOP("Designer",
                               "All: a summary runs on over the whole report instead of starting again with its group; "
                               "for pages, the page number instead of the page count."),
             numbered({QT_TRANSLATE_NOOP("Designer", "None"), QT_TRANSLATE_NOOP("Designer", "Group"),
                       QT_TRANSLATE_NOOP("Designer", "All")})));
  table.push_back(choice(
      "FieldMode", kData, K::Field,
      QT_TRANSLATE_NOOP("Designer",
                        "When an =expression is worked out: as the field is formatted, or as its row is fetched."),
      numbered({QT_TRANSLATE_NOOP("Designer", "When formatted"), QT_TRANSLATE_NOOP("Designer", "When fetched")})));
  DesignProperty group = lateBound(
      "SummaryGroup", kData, T::Text, K::Field,
      QT_TRANSLATE_NOOP("Designer", "The group header whose group a summary covers; empty: the whole report."));
  group.suggestions = groupNames;
  table.push_back(std::move(group));
  table.push_back(lateBound("ReportName", kData, T::Text, K::SubReport,
                            QT_TRANSLATE_NOOP("Designer", "The report the sub report runs.")));

  // Appearance
  table.push_back(font());
  table.push_back(lateBound("ForeColor", kAppearance, T::Color, K::TextControls,
                            QT_TRANSLATE_NOOP("Designer", "The colour of the text.")));
  table.push_back(
      choice("BackStyle", kAppearance, kFilled,
             QT_TRANSLATE_NOOP("Designer", "Filled: the back colour is painted; else see-through."),
             numbered({QT_TRANSLATE_NOOP("Designer", "Transparent"), QT_TRANSLATE_NOOP("Designer", "Filled")})));
  table.push_back(lateBound("BackColor", kAppearance, T::Color, kFilled,
                            QT_TRANSLATE_NOOP("Designer", "The colour painted behind, when filled.")));
  table.push_back(choice("Alignment", kAppearance, K::TextControls,
                         QT_TRANSLATE_NOOP("Designer", "Where the text lies in its box."),
                         numbered({QT_TRANSLATE_NOOP("Designer", "Left"), QT_TRANSLATE_NOOP("Designer", "Right"),
                                   QT_TRANSLATE_NOOP("Designer", "Center")})));
  table.push_back(choice("BorderStyle", kAppearance, K::TextControls,
                         QT_TRANSLATE_NOOP("Designer", "A line around the box, or none."),
                         numbered({QT_TRANSLATE_NOOP("Designer", "None"), QT_TRANSLATE_NOOP("Designer", "Solid")})));
  table.push_back(lateBound("BorderColor", kAppearance, T::Color, K::TextControls,
                            QT_TRANSLATE_NOOP("Designer", "The colour of the border.")));
  DesignProperty weight = lateBound(
      "LineWeight", kAppearance, T::Points, K::Line | K::Shape,
      QT_TRANSLATE_NOOP("Designer", "The thickness of the line, in points; 0 the thinnest the device draws."));
  weight.maximum = kMaxLineWeight;
  table.push_back(std::move(weight));
  table.push_back(choice("LineStyle", kAppearance, K::Line, QT_TRANSLATE_NOOP("Designer", "Whole, dashed or dotted."),
                         numbered({QT_TRANSLATE_NOOP("Designer", "Solid"), QT_TRANSLATE_NOOP("Designer", "Dash"),
                                   QT_TRANSLATE_NOOP("Designer", "Dot")})));
  table.push_back(lateBound("LineColor", kAppearance, T::Color, K::Line | K::Shape,
                            QT_TRANSLATE_NOOP("Designer", "The colour of the line.")));
  table.push_back(choice("Shape", kAppearance, K::Shape, QT_TRANSLATE_NOOP("Designer", "The figure drawn in the box."),
                         numbered({QT_TRANSLATE_NOOP("Designer", "Rectangle"), QT_TRANSLATE_NOOP("Designer", "Ellipse"),
                                   QT_TRANSLATE_NOOP("Designer", "Rounded Rectangle")})));
  table.push_back(picture());
  table.push_back(choice(
      "SizeMode", kAppearance, K::Picture,
      QT_TRANSLATE_NOOP("Designer",
                        "Clip: the image at its own size, cut to the box; Stretch: filling the box; Zoom: as large "
                        "as the box allows, keeping its proportions."),
      numbered({QT_TRANSLATE_NOOP("Designer", "Clip"), QT_TRANSLATE_NOOP("Designer", "Stretch"),
                QT_TRANSLATE_NOOP("Designer", "Zoom")})));

  // Layout
  table.push_back(length("Left", kLayout, K::AnyControl, QT_TRANSLATE_NOOP("Designer", "From the section's left edge."),
                         DesignChange::ControlMoved));
  table.push_back(length("Top", kLayout, K::AnyControl, QT_TRANSLATE_NOOP("Designer", "From the section's top edge."),
                         DesignChange::ControlMoved));
  table.push_back(length("Width", kLayout, K::AnyControl, QT_TRANSLATE_NOOP("Designer", "The width of the box."),
                         DesignChange::ControlResized));
  table.push_back(length("Height", kLayout, K::AnyControl, QT_TRANSLATE_NOOP("Designer", "The height of the box."),
                         DesignChange::ControlResized));
  table.push_back(length("Height", kLayout, K::AnySection,
                         QT_TRANSLATE_NOOP("Designer", "The height of the section as designed."),
                         DesignChange::SectionResized));
  table.push_back(length("X1", kLayout, K::Line,
                         QT_TRANSLATE_NOOP("Designer", "Where the line starts, from the section's left edge.")));
  table.push_back(length("Y1", kLayout, K::Line,
                         QT_TRANSLATE_NOOP("Designer", "Where the line starts, from the section's top edge.")));
  table.push_back(length("X2", kLayout, K::Line,
                         QT_TRANSLATE_NOOP("Designer", "Where the line ends, from the section's left edge.")));
  table.push_back(length("Y2", kLayout, K::Line,
                         QT_TRANSLATE_NOOP("Designer", "Where the line ends, from the section's top edge.")));
  DesignProperty printWidth =
      length("PrintWidth", kLayout, K::Report, QT_TRANSLATE_NOOP("Designer", "The width of the sections on the page."));
  printWidth.changingKind = DesignChange::PrintWidth;
  printWidth.changedKind = DesignChange::PrintWidth;
  table.push_back(std::move(printWidth));

  // Page
  table.push_back(paperSize());
  table.push_back(choice(
      "PageSettings.Orientation", kPage, K::Report, QT_TRANSLATE_NOOP("Designer", "Which way up the paper lies."),
      numbered({QT_TRANSLATE_NOOP("Designer", "Portrait"), QT_TRANSLATE_NOOP("Designer", "Landscape")}, 1)));
  table.push_back(
      length("PageSettings.PaperWidth", kPage, K::Report, QT_TRANSLATE_NOOP("Designer", "The paper's width.")));
  table.push_back(
      length("PageSettings.PaperHeight", kPage, K::Report, QT_TRANSLATE_NOOP("Designer", "The paper's height.")));
  table.push_back(length("PageSettings.LeftMargin", kPage, K::Report,
                         QT_TRANSLATE_NOOP("Designer", "Between the paper's left edge and the report.")));
  table.push_back(length("PageSettings.RightMargin", kPage, K::Report,
                         QT_TRANSLATE_NOOP("Designer", "Between the report and the paper's right edge.")));
  table.push_back(
      length("PageSettings.TopMargin", kPage, K::Report, QT_TRANSLATE_NOOP("Designer", "Above the page header.")));
  table.push_back(
      length("PageSettings.BottomMargin", kPage, K::Report, QT_TRANSLATE_NOOP("Designer", "Below the page footer.")));

  // Behavior
  table.push_back(lateBound("Visible", kBehavior, T::Boolean, K::AnySection | K::AnyControl,
                            QT_TRANSLATE_NOOP("Designer", "False: left out of the printed report.")));
  table.push_back(lateBound("CanGrow", kBehavior, T::Boolean, K::AnySection | K::Field,
                            QT_TRANSLATE_NOOP("Designer", "Grows to show all of its content.")));
  table.push_back(lateBound("CanShrink", kBehavior, T::Boolean, K::AnySection | K::Field,
                            QT_TRANSLATE_NOOP("Designer", "Shrinks when its content needs less room.")));
  table.push_back(lateBound("KeepTogether", kBehavior, T::Boolean, K::AnySection & ~kPageBands,
                            QT_TRANSLATE_NOOP("Designer", "Printed whole on one page when it fits on one.")));
  table.push_back(
      choice("NewPage", kBehavior, K::AnySection & ~kPageBands,
             QT_TRANSLATE_NOOP("Designer", "Starts a new page before or after it."),
             numbered({QT_TRANSLATE_NOOP("Designer", "None"), QT_TRANSLATE_NOOP("Designer", "Before"),
                       QT_TRANSLATE_NOOP("Designer", "After"), QT_TRANSLATE_NOOP("Designer", "Before and After")})));
  table.push_back(choice(
      "RepeatStyle", kBehavior, K::GroupHeader,
      QT_TRANSLATE_NOOP("Designer", "On Each Page: the header is printed again on each page its group goes on to."),
      numbered({QT_TRANSLATE_NOOP("Designer", "None"), QT_TRANSLATE_NOOP("Designer", "On Each Page")})));
  return table;
}

} // namespace

unsigned designKindOf(const Object &object) {
  if (dynamic_cast<const LayoutReport *>(&object))
    return K::Report;
  if (const auto *section = dynamic_cast<const Section *>(&object))
    return 1u << (1 + int(section->type()));
  if (const auto *control = dynamic_cast<const Control *>(&object)) {
    switch (control->kind()) {
    case ControlKind::Label: return K::Label;
    case ControlKind::Field: return K::Field;
    case ControlKind::SubReport: return K::SubReport;
    case ControlKind::Line: return K::Line;
    case ControlKind::Shape: return K::Shape;
    case ControlKind::Picture: return K::Picture;
    }
  }
  return 0;
}

bool hasDialog(const DesignProperty &property) {
  return property.type == PropertyType::Color || property.type == PropertyType::Font ||
         property.type == PropertyType::Picture;
}

const std::vector<DesignProperty> &designProperties() {
  static const std::vector<DesignProperty> table = makeTable();
  return table;
}

const DesignProperty *findDesignProperty(const QString &name, const Object &object) {
  for (const DesignProperty &property : designProperties())
    if (property.appliesToObject(object) && property.name.compare(name, Qt::CaseInsensitive) == 0)
      return &property;
  return nullptr;
}

std::vector<const DesignProperty *> commonProperties(const std::vector<ObjectRef> &objects) {
  std::vector<const DesignProperty *> common;
  if (objects.empty())
    return common;
  for (const DesignProperty &property : designProperties()) {
    if (property.singleObject && objects.size() > 1)
      continue;
    if (std::all_of(objects.begin(), objects.end(),
                    [&](const ObjectRef &object) { return object && property.appliesToObject(*object); }))
      common.push_back(&property);
  }
  return common;
}

} // namespace kordel::engine
