#pragma once

#include "engine/model/Section.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace kordel::engine {
class Control;
class LayoutReport;
} // namespace kordel::engine

namespace kordel::test {

// A small layout built through the engine's model, for the run tests:
// sections one after the other, each taking the controls added after it.
// Controls bound to data have the field's name as DataField; sub report
// controls carry the sub page's guid as Tag.
class LayoutSketch {
public:
  LayoutSketch();

  LayoutSketch &section(const QString &name, engine::SectionType type, float height = 300);
  LayoutSketch &label(const QString &caption, float left = 0, float width = 3000);
  LayoutSketch &field(const QString &dataField, float left = 0, float width = 3000);
  // Below the controls of the section's first line.
  LayoutSketch &subReport(const QString &pageGuid, float left = 0, float width = 6000, float top = 300);
  // The current section's script (OnFormat, OnBeforePrint, OnAfterPrint
  // procedures with the section's controls by name).
  LayoutSketch &sectionScript(const QString &script);
  // A filled background of the current section, drawn when its BackStyle
  // is 1.
  LayoutSketch &backColor(int vbColor);
  LayoutSketch &reportScript(const QString &script, const QString &language = QStringLiteral("VBScript"));

  QByteArray bytes() const;

private:
  std::shared_ptr<engine::Control> add(const char *progId, float left, float width, float top = 0);

  std::shared_ptr<engine::LayoutReport> report_;
  std::shared_ptr<engine::Section> current_;
};

// A control of the ProgID added to a section at a place, in twips.
std::shared_ptr<engine::Control> addControl(const std::shared_ptr<engine::Section> &section, const char *progId,
                                            double left, double top, double width, double height = 270);

} // namespace kordel::test
