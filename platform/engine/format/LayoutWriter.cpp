// Writing a layout: the model as an XML tree in the canonical form, with
// the indentation made of whitespace text nodes, serialised by the XML
// service.

#include "engine/format/LayoutFormat.h"

#include "engine/format/LayoutAttributes.h"
#include "engine/format/LayoutElement.h"
#include "engine/format/LayoutImage.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "core/Error.h"
#include "xml/XmlDocument.h"

#include <functional>

namespace kordel::engine {

namespace {

using namespace layoutformat;

class LayoutWriter {
public:
  QByteArray write(const LayoutReport &report);

private:
  // A new element as the last child of parent, on its own line at depth.
  std::shared_ptr<XmlNode> addElement(XmlNode &parent, const QString &name, int depth);
  // Puts the end tag of an element with child elements on its own line.
  void closeElement(XmlNode &element, int depth);
  void addScript(XmlNode &parent, const QString &script, int depth);
  void addSection(XmlNode &root, const Section &section);
  void addControl(XmlNode &sectionElement, const Control &control);

  std::shared_ptr<XmlDocument> document_ = XmlDocument::create();
};

// Errors of the XML service say what could not be stored; this says where.
void writing(const QString &where, const std::function<void()> &write) {
  try {
    write();
  } catch (const Error &error) {
    raiseError(error.number(), QStringLiteral("SaveLayout"),
               QStringLiteral("%1 cannot be saved: %2").arg(where, error.description()));
  }
}

QByteArray LayoutWriter::write(const LayoutReport &report) {
  auto root = document_->createElement(QStringLiteral("Layout"));
  document_->appendChild(root);
  root->setAttribute(QStringLiteral("Version"), QString::number(kLayoutFormatVersion));

  writing(QStringLiteral("<Report>"), [&] {
    auto element = addElement(*root, QStringLiteral("Report"), 1);
    writeReportAttributes(*element, report);
    writePageSettings(*addElement(*element, QStringLiteral("PageSettings"), 2), *report.pageSettings());
    addScript(*element, report.script, 2);
    closeElement(*element, 1);
  });
  for (const auto &section : report.sections()->all())
    addSection(*root, *section);
  closeElement(*root, 0);
  return document_->xml().toUtf8();
}

std::shared_ptr<XmlNode> LayoutWriter::addElement(XmlNode &parent, const QString &name, int depth) {
  parent.appendChild(document_->createTextNode(QLatin1Char('\n') + QString(depth * 2, QLatin1Char(' '))));
  return parent.appendChild(document_->createElement(name));
}

void LayoutWriter::closeElement(XmlNode &element, int depth) {
  if (element.hasChildNodes())
    element.appendChild(document_->createTextNode(QLatin1Char('\n') + QString(depth * 2, QLatin1Char(' '))));
}

// A script is one node, so that whoever reads the first child of <Script>
// reads all of it: a CDATA section, which keeps the script legible, unless
// the script holds what CDATA cannot carry ("]]>", or a carriage return,
// which would read back as a line feed); then text, which the serialiser
// escapes.
void LayoutWriter::addScript(XmlNode &parent, const QString &script, int depth) {
  if (script.isEmpty())
    return;
  auto element = addElement(parent, QStringLiteral("Script"), depth);
  const bool fitsCData = !script.contains(u'\r') && !script.contains(QLatin1String("]]>"));
  element->appendChild(fitsCData ? document_->createCDATASection(script) : document_->createTextNode(script));
}

void LayoutWriter::addSection(XmlNode &root, const Section &section) {
  const QString where = describeElement(QStringLiteral("Section"), section.name);
  std::shared_ptr<XmlNode> element;
  writing(where, [&] {
    element = addElement(root, QStringLiteral("Section"), 1);
    writeSectionAttributes(*element, section);
    addScript(*element, section.script, 2);
  });
  for (const auto &control : section.controls()->all())
    writing(describeElement(control->typeName(), control->name) + QStringLiteral(" in ") + where,
            [&] { addControl(*element, *control); });
  closeElement(*element, 1);
}

void LayoutWriter::addControl(XmlNode &sectionElement, const Control &control) {
  auto element = addElement(sectionElement, control.typeName(), 2);
  writeControlAttributes(*element, control);
  writeFont(*addElement(*element, QStringLiteral("Font"), 3), *control.font);
  if (control.kind() == ControlKind::Picture) {
    const QImage &image = static_cast<const Picture &>(control).image;
    if (!image.isNull())
      addElement(*element, QStringLiteral("Image"), 3)->appendChild(document_->createTextNode(pngBase64(image)));
  }
  closeElement(*element, 2);
}

} // namespace

QByteArray saveLayout(const LayoutReport &report) { return LayoutWriter().write(report); }

} // namespace kordel::engine
