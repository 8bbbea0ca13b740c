#include "engine/designer/LayoutClipboard.h"

#include "engine/format/LayoutFormat.h"
#include "engine/model/Controls.h"
#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"

#include <QMimeData>
#include <QSet>

namespace kordel::engine {

namespace {

const QString kClipSection = QStringLiteral("Clipboard");

// What a control shows as text.
QString textOf(const Control &control) {
  if (const auto *label = dynamic_cast<const Label *>(&control))
    return label->caption;
  if (const auto *field = dynamic_cast<const Field *>(&control))
    return field->text;
  return QString();
}

} // namespace

QMimeData *controlsToMime(const LayoutReport &report, const std::vector<std::shared_ptr<Control>> &controls) {
  // The layout goes through its saved form, so that the copies carry every
  // property the format knows, and only the chosen controls stay, in one
  // section.
  QSet<QString> chosen;
  QStringList texts;
  for (const auto &control : controls) {
    chosen.insert(control->name.toLower());
    const QString text = textOf(*control);
    if (!text.isEmpty())
      texts << text;
  }
  const auto copy = LayoutReport::create();
  loadLayout(*copy, saveLayout(report));
  std::vector<std::shared_ptr<Control>> kept;
  for (const auto &section : copy->sections()->all())
    for (const auto &control : section->controls()->all())
      if (chosen.contains(control->name.toLower()))
        kept.push_back(control);
  while (copy->sections()->count() > 0)
    copy->sections()->remove(copy->sections()->count() - 1);
  const auto holder = copy->sections()->add(kClipSection, 0, SectionType::Detail, 0);
  for (const auto &control : kept)
    holder->controls()->append(control);

  auto *mime = new QMimeData;
  mime->setData(QString::fromLatin1(kControlsMimeType), saveLayout(*copy));
  mime->setText(texts.join(u'\n'));
  return mime;
}

bool mimeHasControls(const QMimeData *mime) { return mime && mime->hasFormat(QString::fromLatin1(kControlsMimeType)); }

std::vector<std::shared_ptr<Control>> controlsFromMime(const QMimeData *mime) {
  if (!mimeHasControls(mime))
    return {};
  const auto copy = LayoutReport::create();
  try {
    loadLayout(*copy, mime->data(QString::fromLatin1(kControlsMimeType)));
  } catch (...) {
    return {}; // not a layout we read: nothing to paste
  }
  std::vector<std::shared_ptr<Control>> controls;
  for (const auto &section : copy->sections()->all())
    for (const auto &control : section->controls()->all()) {
      control->setSection(nullptr);
      controls.push_back(control);
    }
  return controls;
}

} // namespace kordel::engine
