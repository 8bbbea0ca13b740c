#include "cli/DemoLayoutParts.h"

#include "hostapi/Layout.h"

namespace kordel::host::cli {

namespace {

// The built-in field types of the add-in's designer, kept in a field's Tag.
const QString kPrintDateTag = QStringLiteral("1");
const QString kPageNumberTag = QStringLiteral("4");
const QString kPageCountTag = QStringLiteral("5");

// The engine's counter of pages: CountKind 4, with RunningKind 2 the page
// number, without it the page count.
constexpr int kCountPages = 4;
constexpr int kRunningPageNumber = 2;

constexpr double kCaptionPoints = 8;

template <class Kind> Kind &addControl(engine::Section &section, const char *progId, const QString &nameStem) {
  auto control = std::static_pointer_cast<Kind>(section.controls()->add(QString::fromLatin1(progId)));
  control->name = section.report()->uniqueControlName(nameStem);
  return *control;
}

void place(engine::Control &control, float left, float top, float width, float height) {
  control.left = left;
  control.top = top;
  control.width = width;
  control.height = height;
}

engine::Field &addPageCounter(engine::Section &section, const QString &nameStem, const QString &tag,
                              const QString &text, int runningKind, float left, float top, float width) {
  auto &field = addControl<engine::Field>(section, hostapi::kFieldProgId, nameStem);
  place(field, left, top, width, kRowHeight);
  field.tag = tag;
  field.text = text;
  field.countKind = kCountPages;
  field.runningKind = runningKind;
  field.canGrow = false;
  return field;
}

} // namespace

std::shared_ptr<engine::LayoutReport> newLayout(float printWidth) {
  auto layout = engine::LayoutReport::create();
  layout->printWidth = printWidth;
  engine::PageSettings &page = *layout->pageSettings();
  page.leftMargin = page.rightMargin = page.topMargin = page.bottomMargin = kDemoMargin;
  page.orientation = 1;
  page.paperWidth = 11906;
  page.paperHeight = 16838;
  return layout;
}

engine::Section &addSection(engine::LayoutReport &layout, engine::SectionType type, const QString &name, float height) {
  engine::Sections &sections = *layout.sections();
  return *sections.add(name, sections.count(), type, height);
}

engine::Label &addLabel(engine::Section &section, const QString &caption, float left, float top, float width) {
  auto &label = addControl<engine::Label>(section, hostapi::kLabelProgId, QStringLiteral("lbl_header"));
  place(label, left, top, width, kRowHeight);
  label.caption = caption;
  return label;
}

engine::Field &addDataField(engine::Section &section, const QString &path, float left, float top, float width) {
  auto &field =
      addControl<engine::Field>(section, hostapi::kFieldProgId, QStringLiteral("fld_") + QString(path).remove(u'.'));
  place(field, left, top, width, kRowHeight);
  field.dataField = path;
  field.text = u'<' + path + u'>';
  field.canGrow = false;
  return field;
}

void addCaptions(engine::Section &section, const std::vector<Column> &columns, float top) {
  for (const Column &column : columns) {
    engine::Label &label = addLabel(section, column.caption, column.left, top, column.width);
    label.alignment = column.alignment;
    setFont(label, kCaptionPoints, true);
  }
}

void addColumnFields(engine::Section &section, const std::vector<Column> &columns, float top) {
  for (const Column &column : columns) {
    engine::Field &field = addDataField(section, column.path, column.left, top, column.width);
    field.alignment = column.alignment;
    field.outputFormat = column.outputFormat;
    // A value longer than its column wraps, and the row grows, rather than
    // losing its end.
    field.canGrow = true;
  }
}

void addRule(engine::Section &section, float left, float top, float right) {
  auto &line = addControl<engine::Line>(section, hostapi::kLineProgId, QStringLiteral("line"));
  place(line, left, top, right - left, 0);
  line.x1 = left;
  line.y1 = top;
  line.x2 = right;
  line.y2 = top;
}

void addPrintDate(engine::Section &section, float top, float right) {
  constexpr float width = 1600;
  auto &date = addControl<engine::Field>(section, hostapi::kFieldProgId, QStringLiteral("pField_date"));
  place(date, right - width, top, width, kRowHeight);
  date.tag = kPrintDateTag;
  date.text = QStringLiteral("Date");
  date.dataField = QStringLiteral("=Extensions.Timestamp(\"yyyy-mm-dd\")");
  date.alignment = engine::Alignment::Right;
  date.canGrow = false;
  setFont(date, kCaptionPoints, false);
}

void addPageXOfY(engine::Section &section, float top, float right) {
  // Page [number] of [count], the numbers wide enough for five digits.
  constexpr float word = 500, of = 260, number = 640;
  float left = right - (word + number + of + number);
  addLabel(section, QStringLiteral("Page"), left, top, word).alignment = engine::Alignment::Right;
  left += word;
  addPageCounter(section, QStringLiteral("pField_pagenumber"), kPageNumberTag, QStringLiteral("Page number"),
                 kRunningPageNumber, left, top, number)
      .alignment = engine::Alignment::Center;
  left += number;
  addLabel(section, QStringLiteral("of"), left, top, of).alignment = engine::Alignment::Center;
  left += of;
  addPageCounter(section, QStringLiteral("pField_pagetotal"), kPageCountTag, QStringLiteral("Page count"), 0, left, top,
                 number)
      .alignment = engine::Alignment::Center;
}

engine::SubReport &addSubPage(engine::Section &section, const QString &guid, const QString &name, const QString &source,
                              float left, float top, float width) {
  auto &subReport = addControl<engine::SubReport>(section, hostapi::kSubReportProgId, QString(source).remove(u'.'));
  place(subReport, left, top, width, kRowHeight);
  subReport.tag = guid;
  subReport.reportName = name;
  return subReport;
}

void setFont(engine::Control &control, double points, bool bold) {
  QFont font = control.font->font();
  font.setPointSizeF(points);
  font.setBold(bold);
  control.font->setFont(font);
}

} // namespace kordel::host::cli
