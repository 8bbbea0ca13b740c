#include "LayoutSketch.h"

#include "engine/format/LayoutFormat.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "hostapi/Layout.h"

namespace kordel::test {

LayoutSketch::LayoutSketch() : report_(engine::LayoutReport::create()) {}

LayoutSketch &LayoutSketch::section(const QString &name, engine::SectionType type, float height) {
  current_ = report_->sections()->add(name, report_->sections()->count(), type, height);
  return *this;
}

std::shared_ptr<engine::Control> LayoutSketch::add(const char *progId, float left, float width, float top) {
  const auto control = current_->controls()->add(QString::fromLatin1(progId));
  control->set(QStringLiteral("Left"), double(left));
  control->set(QStringLiteral("Top"), double(top));
  control->set(QStringLiteral("Width"), double(width));
  control->set(QStringLiteral("Height"), 270.0);
  return control;
}

LayoutSketch &LayoutSketch::label(const QString &caption, float left, float width) {
  add(hostapi::kLabelProgId, left, width)->set(QStringLiteral("Caption"), caption);
  return *this;
}

LayoutSketch &LayoutSketch::field(const QString &dataField, float left, float width) {
  add(hostapi::kFieldProgId, left, width)->set(QStringLiteral("DataField"), dataField);
  return *this;
}

LayoutSketch &LayoutSketch::subReport(const QString &pageGuid, float left, float width, float top) {
  add(hostapi::kSubReportProgId, left, width, top)->set(QStringLiteral("Tag"), pageGuid);
  return *this;
}

LayoutSketch &LayoutSketch::sectionScript(const QString &script) {
  current_->script = script;
  return *this;
}

LayoutSketch &LayoutSketch::backColor(int vbColor) {
  current_->set(QStringLiteral("BackColor"), vbColor);
  return *this;
}

LayoutSketch &LayoutSketch::reportScript(const QString &script, const QString &language) {
  report_->script = script;
  report_->scriptLanguage = language;
  return *this;
}

std::shared_ptr<engine::Control> addControl(const std::shared_ptr<engine::Section> &section, const char *progId,
                                            double left, double top, double width, double height) {
  const auto control = section->controls()->add(QString::fromLatin1(progId));
  control->set(QStringLiteral("Left"), left);
  control->set(QStringLiteral("Top"), top);
  control->set(QStringLiteral("Width"), width);
  control->set(QStringLiteral("Height"), height);
  return control;
}

QByteArray LayoutSketch::bytes() const { return engine::saveLayout(*report_); }

} // namespace kordel::test
