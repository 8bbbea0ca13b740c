#pragma once

// The pieces the demo reports' layouts are made of: sections, captions,
// fields bound to page fields, the built-in print date and page counters,
// and sub report controls. Controls are named as the add-in's designer
// names them ("fld_" and the field path without dots, "pField_pagenumber",
// the sub page's source without dots, each with its number), so that the
// designer treats them as its own when a user opens a demo report.
// Every length is in twips.

#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include <QString>

#include <memory>
#include <vector>

namespace kordel::host::cli {

// The margins of the demo documents on every side.
inline constexpr float kDemoMargin = 1134;
// The band of a top page: A4 portrait (11906 twips wide) less both margins,
// rounded down, so that the band fits without the run narrowing it.
inline constexpr float kDemoPrintWidth = 9600;
// The height of one row of text.
inline constexpr float kRowHeight = 270;

// A column of a list: the page field it shows, its caption, its place and
// width, its alignment and the output format of its values.
struct Column {
  QString path;
  QString caption;
  float left;
  float width;
  engine::Alignment alignment = engine::Alignment::Left;
  QString outputFormat = {};
};

// A new layout with the band's width, on A4 portrait with the demo margins.
std::shared_ptr<engine::LayoutReport> newLayout(float printWidth);

// Adds a section after the last one.
engine::Section &addSection(engine::LayoutReport &layout, engine::SectionType type, const QString &name, float height);

// A label, one row high.
engine::Label &addLabel(engine::Section &section, const QString &caption, float left, float top, float width);

// A field bound to the page field of the path: its DataField is the path
// and its text, shown where the page gives no value, is the path in angle
// brackets, as the designer writes it.
engine::Field &addDataField(engine::Section &section, const QString &path, float left, float top, float width);

// The captions of the columns at the top, in a smaller bold font.
void addCaptions(engine::Section &section, const std::vector<Column> &columns, float top);
// A field for each column at the top.
void addColumnFields(engine::Section &section, const std::vector<Column> &columns, float top);

// A horizontal line from left to right.
void addRule(engine::Section &section, float left, float top, float right);

// The date the report is printed, right-aligned so that it ends at the
// right edge: the designer's built-in date field, whose value the add-in's
// run gives.
void addPrintDate(engine::Section &section, float top, float right);

// "Page X of Y", ending at the right edge, with the engine's page number
// and page count.
void addPageXOfY(engine::Section &section, float top, float right);

// A sub report control for the sub page with the guid, name and source
// (the link field path from the report's class). Its width is the sub
// page's width, so the sub page's layout must have that band.
engine::SubReport &addSubPage(engine::Section &section, const QString &guid, const QString &name, const QString &source,
                              float left, float top, float width);

// Changes a control's font size in points and its weight.
void setFont(engine::Control &control, double points, bool bold);

} // namespace kordel::host::cli
