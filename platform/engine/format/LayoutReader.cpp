// Reading a layout: the whole file into new objects, checked as it goes,
// and only then into the report, so that a refused file changes nothing.

#include "engine/format/LayoutFormat.h"

#include "engine/format/LayoutAttributes.h"
#include "engine/format/LayoutElement.h"
#include "engine/format/LayoutImage.h"
#include "engine/format/LayoutValues.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include "core/Error.h"
#include "xml/XmlDocument.h"

#include <QSet>

namespace kordel::engine {

namespace {

using namespace layoutformat;

// What a layout file holds: the report's settings in a report of their own,
// and the sections, made but not yet in any report.
struct ReadLayout {
  std::shared_ptr<LayoutReport> settings = LayoutReport::create();
  std::vector<std::shared_ptr<Section>> sections;
};

std::shared_ptr<Control> makeControl(const QString &element) {
  if (element == u"Label")
    return std::make_shared<Label>();
  if (element == u"Field")
    return std::make_shared<Field>();
  if (element == u"SubReport")
    return std::make_shared<SubReport>();
  if (element == u"Line")
    return std::make_shared<Line>();
  if (element == u"Shape")
    return std::make_shared<Shape>();
  if (element == u"Picture")
    return std::make_shared<Picture>();
  return nullptr;
}

// Takes each name once, without regard to case, as the model finds names.
class NameSet {
public:
  explicit NameSet(const char *what) : what_(QLatin1String(what)) {}
  void take(const LayoutElement &element, const QString &name) {
    if (!names_.contains(name.toCaseFolded())) {
      names_.insert(name.toCaseFolded());
      return;
    }
    element.refuse(QStringLiteral("the layout has a %1 named \"%2\" already").arg(what_, name));
  }

private:
  QString what_;
  QSet<QString> names_;
};

class LayoutReader {
public:
  ReadLayout read(const QByteArray &bytes);

private:
  void readVersion(const LayoutElement &root);
  void readReport(const LayoutElement &element);
  void readSection(const LayoutElement &element);
  void readControl(const LayoutElement &element, Section &section);
  // Refuses a second child of the same name where one is allowed.
  static void once(const LayoutElement &child, bool &seen);

  ReadLayout layout_;
  NameSet sectionNames_{"section"};
  NameSet controlNames_{"control"};
};

ReadLayout LayoutReader::read(const QByteArray &bytes) {
  auto document = XmlDocument::create();
  try {
    document->load(bytes);
  } catch (const Error &error) {
    refuseLayout(error.description());
  }
  const LayoutElement root(document->documentElement(), nullptr);
  if (root.name() != u"Layout")
    refuseLayout(QStringLiteral("the root element is <%1>, not <Layout>").arg(root.name()));
  root.allowOnly({QStringLiteral("Version")});
  readVersion(root);

  bool seenReport = false;
  for (const LayoutElement &child : root.children()) {
    if (child.name() == u"Report") {
      once(child, seenReport);
      readReport(child);
    } else if (child.name() == u"Section") {
      readSection(child);
    } else {
      child.refuse(QStringLiteral("<Layout> holds <Report> and <Section> elements only"));
    }
  }
  if (!seenReport)
    root.refuse(QStringLiteral("it has no <Report> element"));
  return std::move(layout_);
}

void LayoutReader::readVersion(const LayoutElement &root) {
  const auto text = root.attribute(QStringLiteral("Version"));
  if (!text)
    root.refuse(QStringLiteral("it has no Version"));
  const auto version = parseInteger(*text);
  if (!version)
    root.refuse(QStringLiteral("Version is \"%1\", not a whole number").arg(*text));
  if (*version > kLayoutFormatVersion)
    root.refuse(QStringLiteral("this layout was written by a newer version of the layout engine (format version "
                               "%1); this engine reads format versions up to %2")
                    .arg(*version)
                    .arg(kLayoutFormatVersion));
  if (*version < 1)
    root.refuse(QStringLiteral("Version %1 is not a layout format version").arg(*version));
}

void LayoutReader::once(const LayoutElement &child, bool &seen) {
  if (seen)
    child.refuse(QStringLiteral("it appears twice"));
  seen = true;
}

void LayoutReader::readReport(const LayoutElement &element) {
  LayoutReport &settings = *layout_.settings;
  readReportAttributes(element, settings);
  bool seenPage = false, seenScript = false;
  for (const LayoutElement &child : element.children()) {
    if (child.name() == u"PageSettings") {
      once(child, seenPage);
      readPageSettings(child, *settings.pageSettings());
      if (!child.children().empty())
        child.refuse(QStringLiteral("it holds elements"));
    } else if (child.name() == u"Script") {
      once(child, seenScript);
      child.allowOnly({});
      settings.script = child.characterData();
    } else {
      child.refuse(QStringLiteral("<Report> holds <PageSettings> and <Script> only"));
    }
  }
}

void LayoutReader::readSection(const LayoutElement &element) {
  auto section = Section::create(readSectionType(element), QString());
  readSectionAttributes(element, *section);
  sectionNames_.take(element, section->name);
  bool seenScript = false;
  for (const LayoutElement &child : element.children()) {
    if (child.name() == u"Script") {
      once(child, seenScript);
      child.allowOnly({});
      section->script = child.characterData();
    } else {
      readControl(child, *section);
    }
  }
  layout_.sections.push_back(section);
}

void LayoutReader::readControl(const LayoutElement &element, Section &section) {
  auto control = makeControl(element.name());
  if (!control)
    element.refuse(QStringLiteral("a section holds <Script> and the controls <Label>, <Field>, <SubReport>, <Line>, "
                                  "<Shape> and <Picture>"));
  readControlAttributes(element, *control);
  controlNames_.take(element, control->name);
  bool seenFont = false, seenImage = false;
  for (const LayoutElement &child : element.children()) {
    if (child.name() == u"Font") {
      once(child, seenFont);
      readFont(child, *control->font);
      if (!child.children().empty())
        child.refuse(QStringLiteral("it holds elements"));
    } else if (child.name() == u"Image" && control->kind() == ControlKind::Picture) {
      once(child, seenImage);
      child.allowOnly({});
      const auto image = imageFromPngBase64(child.characterData());
      if (!image)
        child.refuse(QStringLiteral("its text is not a PNG image in base64"));
      static_cast<Picture &>(*control).image = *image;
    } else {
      child.refuse(control->kind() == ControlKind::Picture ? QStringLiteral("a picture holds <Font> and <Image> only")
                                                           : QStringLiteral("a control holds <Font> only"));
    }
  }
  section.controls()->append(control);
}

// The layout replaces the report's own, except a document name and a
// caption that the layout leaves empty: those the caller may have set
// before loading. Nothing here can fail: the names were checked while
// reading.
void takeInto(LayoutReport &report, const ReadLayout &layout) {
  const LayoutReport &settings = *layout.settings;
  report.scriptLanguage = settings.scriptLanguage;
  report.script = settings.script;
  report.printWidth = settings.printWidth;
  if (!settings.documentName.isEmpty())
    report.documentName = settings.documentName;
  if (!settings.caption.isEmpty())
    report.caption = settings.caption;

  const PageSettings &page = *settings.pageSettings();
  PageSettings &target = *report.pageSettings();
  target.leftMargin = page.leftMargin;
  target.topMargin = page.topMargin;
  target.rightMargin = page.rightMargin;
  target.bottomMargin = page.bottomMargin;
  target.orientation = page.orientation;
  target.paperWidth = page.paperWidth;
  target.paperHeight = page.paperHeight;

  Sections &sections = *report.sections();
  while (sections.count() > 0)
    sections.remove(sections.count() - 1);
  for (const auto &read : layout.sections) {
    auto section = sections.add(read->name, sections.count(), read->type(), read->height);
    section->visible = read->visible;
    section->backStyle = read->backStyle;
    section->backColor = read->backColor;
    section->dataField = read->dataField;
    section->script = read->script;
    section->canGrow = read->canGrow;
    section->canShrink = read->canShrink;
    section->keepTogether = read->keepTogether;
    section->newPage = read->newPage;
    section->repeatStyle = read->repeatStyle;
    for (const auto &control : read->controls()->all())
      section->controls()->append(control);
  }
}

} // namespace

void loadLayout(LayoutReport &report, const QByteArray &bytes) {
  report.refuseWhileHeld(QStringLiteral("LoadLayout"));
  takeInto(report, LayoutReader().read(bytes));
}

} // namespace kordel::engine
