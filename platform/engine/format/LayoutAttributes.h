#pragma once

// The attributes of the layout's elements: for each element the names in
// the order they are written, how each value is written, and how it is read
// back, refusing text that is not a value of its type. Reading leaves
// attributes that are missing at what the object has.

#include "engine/model/Section.h"

namespace kordel {
class XmlNode;
}

namespace kordel::engine {
class Control;
class FontObject;
class LayoutReport;
class PageSettings;
} // namespace kordel::engine

namespace kordel::engine::layoutformat {

class LayoutElement;

// <Report>: ScriptLanguage, PrintWidth, DocumentName, Caption.
void writeReportAttributes(XmlNode &element, const LayoutReport &report);
void readReportAttributes(const LayoutElement &element, LayoutReport &report);

void writePageSettings(XmlNode &element, const PageSettings &settings);
void readPageSettings(const LayoutElement &element, PageSettings &settings);

// <Section>: all attributes, Type among them.
void writeSectionAttributes(XmlNode &element, const Section &section);
// The Type, which the section is made with: 0 to 6, and required, since no
// kind of section is the obvious one to take for a missing type.
SectionType readSectionType(const LayoutElement &element);
// The other attributes.
void readSectionAttributes(const LayoutElement &element, Section &section);

// A control's element: the attributes all controls have, then its kind's.
void writeControlAttributes(XmlNode &element, const Control &control);
void readControlAttributes(const LayoutElement &element, Control &control);

void writeFont(XmlNode &element, const FontObject &font);
void readFont(const LayoutElement &element, FontObject &font);

} // namespace kordel::engine::layoutformat
