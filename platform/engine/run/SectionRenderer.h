#pragma once

#include "engine/run/Band.h"

#include "core/Variant.h"

#include <QFont>
#include <QHash>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace kordel::engine {

class Control;
class Field;
class FontObject;
class PageDocument;
class Section;
class SubReport;
class TextCanvas;

// Turns one showing of a section into a band: each visible control drawn
// at its place, text wrapped and grown where a field may grow (moving the
// controls below it down), the section grown to hold it all or shrunk
// where it may, its back colour behind everything, and each sub report's
// bands placed where its control stands.
class SectionRenderer {
public:
  struct Hooks {
    // The value a field shows.
    std::function<Variant(const Field &)> value;
    // Whether a field is a page counter, and which.
    std::function<std::optional<int>(const Field &)> pageCounter;
    // The bands of a sub report run for this showing, in the given width.
    std::function<std::vector<Band>(SubReport &, Twips width)> subReport;
  };

  SectionRenderer(PageDocument &document, Hooks hooks);
  ~SectionRenderer();

  // A repeat is a showing that prints again what was printed before (a
  // group header at the top of each page), which the document marks.
  Band render(const Section &section, bool repeat = false);

  // Design mode: one control as a designer shows it, where the layout puts
  // it in its section (twips from the section's top left corner) and at
  // its designed size: nothing grows or shrinks, a field shows its Text as
  // it stands, and a sub report, whose own bands print in its place, is a
  // framed box with its ReportName. The caller clips the page to the
  // control's box.
  Page renderDesign(const Control &control);

private:
  struct Placed;
  // showing: the document's index of the band showing the piece is part of.
  BandPiece renderPiece(const Section &section, std::uint32_t showing,
                        const std::vector<std::shared_ptr<Control>> &controls, Twips top, Twips minimumHeight);
  // lines: the text as wrapped to the control's width; source: where the
  // value came from, which the page keeps with the text before wrapping
  // (whole); none for a control drawn in design mode.
  void drawControl(BandPiece &piece, const Control &control, Twips y, Twips height, const QStringList &lines,
                   const ValueSource *source = nullptr, const QString &whole = {});
  // The document's index of a control, looked up once per control.
  std::uint32_t controlIndex(const Control &control, const QString &format);
  // The measuring canvas and the document's font index of a control's
  // font, made once per font object and made again when it changes.
  struct FontUse {
    QFont font;
    std::shared_ptr<TextCanvas> canvas;
    int index = 0;
    int lineHeight = 0;
  };
  const FontUse &fontUse(const FontObject &font);

  PageDocument &document_;
  Hooks hooks_;
  QHash<const FontObject *, FontUse> fonts_;
  struct ControlUse {
    std::uint32_t index = 0;
    QString format;
  };
  QHash<const Control *, ControlUse> controls_;
};

// The text a value shows in a format; a plain text without one.
QString formatFieldText(const Variant &value, const QString &format);

} // namespace kordel::engine
