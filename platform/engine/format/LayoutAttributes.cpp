#include "engine/format/LayoutAttributes.h"

#include "engine/format/LayoutElement.h"
#include "engine/format/LayoutValues.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"

#include "core/Error.h"
#include "xml/XmlNode.h"

#include <climits>
#include <cmath>
#include <functional>
#include <vector>

namespace kordel::engine::layoutformat {

namespace {

// One attribute of an element for objects of type T. A read of nullptr
// marks an attribute the caller reads itself.
template <class T> struct Attribute {
  const char *name;
  std::function<QString(const T &)> write;
  std::function<void(T &, const QString &, const LayoutElement &)> read;
};

template <class T> using Attributes = std::vector<Attribute<T>>;

[[noreturn]] void refuseValue(const LayoutElement &element, const char *name, const QString &text, const char *type) {
  element.refuse(QStringLiteral("%1 is \"%2\", not %3").arg(QLatin1String(name), text, QLatin1String(type)));
}

template <class Number> QString finiteNumberText(const char *name, Number value) {
  if (!std::isfinite(value))
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("SaveLayout"),
               QStringLiteral("%1 is not a finite number").arg(QLatin1String(name)));
  return numberText(value);
}

template <class T> Attribute<T> text(const char *name, QString T::*member) {
  return {name, [member](const T &o) { return o.*member; },
          [member](T &o, const QString &value, const LayoutElement &) { o.*member = value; }};
}

template <class T> Attribute<T> twips(const char *name, float T::*member) {
  return {name, [name, member](const T &o) { return finiteNumberText(name, o.*member); },
          [name, member](T &o, const QString &value, const LayoutElement &element) {
            const auto number = parseFloat(value);
            if (!number)
              refuseValue(element, name, value, "a number");
            o.*member = *number;
          }};
}

template <class T> Attribute<T> boolean(const char *name, bool T::*member) {
  return {name, [member](const T &o) { return booleanText(o.*member); },
          [name, member](T &o, const QString &value, const LayoutElement &element) {
            const auto flag = parseBoolean(value);
            if (!flag)
              refuseValue(element, name, value, "1 or 0");
            o.*member = *flag;
          }};
}

int integerValue(const LayoutElement &element, const char *name, const QString &value, int min, int max) {
  const auto number = parseInteger(value);
  if (!number)
    refuseValue(element, name, value, "a whole number");
  if (*number < min || *number > max)
    element.refuse(
        QStringLiteral("%1 is %2, outside %3 to %4").arg(QLatin1String(name)).arg(*number).arg(min).arg(max));
  return *number;
}

template <class T> Attribute<T> integer(const char *name, int T::*member) {
  return {name, [member](const T &o) { return QString::number(o.*member); },
          [name, member](T &o, const QString &value, const LayoutElement &element) {
            o.*member = integerValue(element, name, value, INT_MIN, INT_MAX);
          }};
}

// An enumeration stored as its number, read only within min to max.
template <class T, class E> Attribute<T> enumeration(const char *name, E T::*member, int min, int max) {
  return {name, [member](const T &o) { return QString::number(int(o.*member)); },
          [name, member, min, max](T &o, const QString &value, const LayoutElement &element) {
            o.*member = E(integerValue(element, name, value, min, max));
          }};
}

template <class T> Attribute<T> color(const char *name, QColor T::*member) {
  return {name, [member](const T &o) { return colorText(o.*member); },
          [name, member](T &o, const QString &value, const LayoutElement &element) {
            const auto parsed = parseColor(value);
            if (!parsed)
              refuseValue(element, name, value, "a colour #rrggbb");
            o.*member = *parsed;
          }};
}

template <class T> void writeAll(XmlNode &element, const T &object, const Attributes<T> &attributes) {
  for (const Attribute<T> &attribute : attributes)
    element.setAttribute(QLatin1String(attribute.name), attribute.write(object));
}

template <class T> void readAll(const LayoutElement &element, T &object, const Attributes<T> &attributes) {
  for (const Attribute<T> &attribute : attributes)
    if (attribute.read)
      if (const auto value = element.attribute(QLatin1String(attribute.name)))
        attribute.read(object, *value, element);
}

template <class T> QStringList namesOf(const Attributes<T> &attributes) {
  QStringList names;
  for (const Attribute<T> &attribute : attributes)
    names << QLatin1String(attribute.name);
  return names;
}

// ---- The tables, in the order the attributes are written ----

const Attributes<LayoutReport> &reportAttributes() {
  using R = LayoutReport;
  static const Attributes<R> attributes{
      text("ScriptLanguage", &R::scriptLanguage),
      twips("PrintWidth", &R::printWidth),
      text("DocumentName", &R::documentName),
      text("Caption", &R::caption),
  };
  return attributes;
}

const Attributes<PageSettings> &pageAttributes() {
  using P = PageSettings;
  static const Attributes<P> attributes{
      twips("LeftMargin", &P::leftMargin),     twips("TopMargin", &P::topMargin),
      twips("RightMargin", &P::rightMargin),   twips("BottomMargin", &P::bottomMargin),
      integer("Orientation", &P::orientation), twips("PaperWidth", &P::paperWidth),
      twips("PaperHeight", &P::paperHeight),
  };
  return attributes;
}

const Attributes<Section> &sectionAttributes() {
  using S = Section;
  static const Attributes<S> attributes{
      text("Name", &S::name),
      // Read by readSectionType, before the section is made.
      {"Type", [](const S &s) { return QString::number(int(s.type())); }, nullptr},
      twips("Height", &S::height),
      boolean("Visible", &S::visible),
      integer("BackStyle", &S::backStyle),
      color("BackColor", &S::backColor),
      text("DataField", &S::dataField),
      boolean("CanGrow", &S::canGrow),
      boolean("CanShrink", &S::canShrink),
      boolean("KeepTogether", &S::keepTogether),
      enumeration("NewPage", &S::newPage, 0, 3),
      enumeration("RepeatStyle", &S::repeatStyle, 0, 1),
  };
  return attributes;
}

const Attributes<Control> &controlAttributes() {
  using C = Control;
  static const Attributes<C> attributes{
      text("Name", &C::name),
      twips("Left", &C::left),
      twips("Top", &C::top),
      twips("Width", &C::width),
      twips("Height", &C::height),
      boolean("Visible", &C::visible),
      text("Tag", &C::tag),
      color("ForeColor", &C::foreColor),
      color("BackColor", &C::backColor),
      integer("BackStyle", &C::backStyle),
      enumeration("Alignment", &C::alignment, 0, 2),
      integer("BorderStyle", &C::borderStyle),
      color("BorderColor", &C::borderColor),
  };
  return attributes;
}

const Attributes<Label> &labelAttributes() {
  static const Attributes<Label> attributes{text("Caption", &Label::caption)};
  return attributes;
}

const Attributes<Field> &fieldAttributes() {
  using F = Field;
  static const Attributes<F> attributes{
      text("Text", &F::text),
      text("DataField", &F::dataField),
      text("OutputFormat", &F::outputFormat),
      boolean("CanGrow", &F::canGrow),
      boolean("CanShrink", &F::canShrink),
      integer("CountKind", &F::countKind),
      integer("RunningKind", &F::runningKind),
      integer("FieldMode", &F::fieldMode),
      text("SummaryGroup", &F::summaryGroup),
  };
  return attributes;
}

// The Report a sub report runs is plugged in at run time; only its name is
// part of the layout.
const Attributes<SubReport> &subReportAttributes() {
  static const Attributes<SubReport> attributes{text("ReportName", &SubReport::reportName)};
  return attributes;
}

const Attributes<Line> &lineAttributes() {
  using L = Line;
  static const Attributes<L> attributes{
      twips("X1", &L::x1),
      twips("Y1", &L::y1),
      twips("X2", &L::x2),
      twips("Y2", &L::y2),
      twips("LineWeight", &L::lineWeight),
      integer("LineStyle", &L::lineStyle),
      color("LineColor", &L::lineColor),
  };
  return attributes;
}

const Attributes<Shape> &shapeAttributes() {
  using S = Shape;
  static const Attributes<S> attributes{
      integer("Shape", &S::shape),
      twips("LineWeight", &S::lineWeight),
      color("LineColor", &S::lineColor),
  };
  return attributes;
}

// The image itself is the <Image> child.
const Attributes<Picture> &pictureAttributes() {
  static const Attributes<Picture> attributes{integer("SizeMode", &Picture::sizeMode)};
  return attributes;
}

// A font's attributes change one property of its QFont each.
Attribute<FontObject> fontFlag(const char *name, bool (QFont::*get)() const, void (QFont::*set)(bool)) {
  return {name, [get](const FontObject &f) { return booleanText((f.font().*get)()); },
          [name, set](FontObject &f, const QString &value, const LayoutElement &element) {
            const auto flag = parseBoolean(value);
            if (!flag)
              refuseValue(element, name, value, "1 or 0");
            QFont font = f.font();
            (font.*set)(*flag);
            f.setFont(font);
          }};
}

const Attributes<FontObject> &fontAttributes() {
  using F = FontObject;
  static const Attributes<F> attributes{
      {"Name", [](const F &f) { return f.font().family(); },
       [](F &f, const QString &value, const LayoutElement &) {
         QFont font = f.font();
         font.setFamily(value);
         f.setFont(font);
       }},
      {"Size", [](const F &f) { return finiteNumberText("Size", f.font().pointSizeF()); },
       [](F &f, const QString &value, const LayoutElement &element) {
         const auto size = parseDouble(value);
         if (!size)
           refuseValue(element, "Size", value, "a number");
         if (*size <= 0 || *size > 2048)
           element.refuse(QStringLiteral("Size is %1; a font is above 0 and at most 2048 points").arg(value));
         QFont font = f.font();
         font.setPointSizeF(*size);
         f.setFont(font);
       }},
      fontFlag("Bold", &QFont::bold, &QFont::setBold),
      fontFlag("Italic", &QFont::italic, &QFont::setItalic),
      fontFlag("Underline", &QFont::underline, &QFont::setUnderline),
      fontFlag("Strikethrough", &QFont::strikeOut, &QFont::setStrikeOut),
  };
  return attributes;
}

// The kind's own attributes of a control, written, read or named.
template <class Action> void withKindAttributes(ControlKind kind, Action &&action) {
  switch (kind) {
  case ControlKind::Label: action(labelAttributes()); break;
  case ControlKind::Field: action(fieldAttributes()); break;
  case ControlKind::SubReport: action(subReportAttributes()); break;
  case ControlKind::Line: action(lineAttributes()); break;
  case ControlKind::Shape: action(shapeAttributes()); break;
  case ControlKind::Picture: action(pictureAttributes()); break;
  }
}

template <class Kind> void writeKind(XmlNode &element, const Control &control, const Attributes<Kind> &attributes) {
  writeAll(element, static_cast<const Kind &>(control), attributes);
}

template <class Kind>
void readKind(const LayoutElement &element, Control &control, const Attributes<Kind> &attributes) {
  element.allowOnly(namesOf(controlAttributes()) + namesOf(attributes));
  readAll(element, static_cast<Kind &>(control), attributes);
}

} // namespace

void writeReportAttributes(XmlNode &element, const LayoutReport &report) {
  writeAll(element, report, reportAttributes());
}

void readReportAttributes(const LayoutElement &element, LayoutReport &report) {
  element.allowOnly(namesOf(reportAttributes()));
  readAll(element, report, reportAttributes());
}

void writePageSettings(XmlNode &element, const PageSettings &settings) {
  writeAll(element, settings, pageAttributes());
}

void readPageSettings(const LayoutElement &element, PageSettings &settings) {
  element.allowOnly(namesOf(pageAttributes()));
  readAll(element, settings, pageAttributes());
}

void writeSectionAttributes(XmlNode &element, const Section &section) {
  writeAll(element, section, sectionAttributes());
}

SectionType readSectionType(const LayoutElement &element) {
  const auto type = element.attribute(QStringLiteral("Type"));
  if (!type)
    element.refuse(QStringLiteral("it has no Type"));
  return SectionType(integerValue(element, "Type", *type, 0, 6));
}

void readSectionAttributes(const LayoutElement &element, Section &section) {
  element.allowOnly(namesOf(sectionAttributes()));
  readAll(element, section, sectionAttributes());
}

void writeControlAttributes(XmlNode &element, const Control &control) {
  writeAll(element, control, controlAttributes());
  withKindAttributes(control.kind(), [&](const auto &attributes) { writeKind(element, control, attributes); });
}

void readControlAttributes(const LayoutElement &element, Control &control) {
  withKindAttributes(control.kind(), [&](const auto &attributes) { readKind(element, control, attributes); });
  readAll(element, control, controlAttributes());
}

void writeFont(XmlNode &element, const FontObject &font) { writeAll(element, font, fontAttributes()); }

void readFont(const LayoutElement &element, FontObject &font) {
  element.allowOnly(namesOf(fontAttributes()));
  readAll(element, font, fontAttributes());
}

} // namespace kordel::engine::layoutformat
