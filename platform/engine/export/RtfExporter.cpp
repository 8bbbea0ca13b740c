#include "engine/export/RtfExporter.h"

#include "engine/export/ExportFile.h"
#include "engine/export/RtfFonts.h"
#include "engine/export/RtfText.h"
#include "engine/export/TextLines.h"

#include "core/Error.h"

#include <QHash>

#include <algorithm>
#include <climits>
#include <map>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("RtfExporter");

// Margins when no page has text to measure them by: half an inch.
constexpr Twips kDefaultMargin = kTwipsPerInch / 2;

struct Margins {
  Twips left = kDefaultMargin;
  Twips top = kDefaultMargin;
  Twips right = kDefaultMargin;
  Twips bottom = kDefaultMargin;
};

// The narrowest space that the text leaves at each edge over all pages.
Margins marginsOf(const PageDocument &document) {
  Twips left = INT_MAX, top = INT_MAX, right = INT_MAX, bottom = INT_MAX;
  for (int index = 0; index < document.pageCount(); ++index) {
    const Page page = document.page(index);
    for (const PageItem &item : page.items()) {
      if (const auto *run = std::get_if<TextRun>(&item)) {
        left = std::min(left, run->box.x);
        top = std::min(top, run->box.y);
        right = std::min(right, page.width() - run->box.x - run->box.width);
        bottom = std::min(bottom, page.height() - run->box.y - run->box.height);
      }
    }
  }
  if (left == INT_MAX)
    return Margins{};
  // Half the space below keeps word processors, whose line heights differ
  // a little from ours, from pushing the last line onto a page of its own.
  return Margins{std::max(left, 0), std::max(top, 0), std::max(right, 0), std::max(bottom / 2, 0)};
}

QByteArray number(Twips value) { return QByteArray::number(value); }

class RtfWriter {
public:
  explicit RtfWriter(const PageDocument &document)
      : document_(document), margins_(marginsOf(document)), fonts_(document) {}

  QByteArray write() {
    collectColors();
    const Page first = document_.page(0);
    body_ += "\\paperw" + number(first.width()) + "\\paperh" + number(first.height()) + "\\margl" +
             number(margins_.left) + "\\margr" + number(margins_.right) + "\\margt" + number(margins_.top) + "\\margb" +
             number(margins_.bottom);
    if (first.width() > first.height())
      body_ += "\\landscape";
    body_ += '\n';
    Page previous;
    for (int index = 0; index < document_.pageCount(); ++index) {
      Page page = document_.page(index);
      if (index > 0)
        writeBreak(previous, page);
      writePage(page);
      previous = std::move(page);
    }
    // The font table last, once the pages have said which fonts they need.
    QByteArray out = "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\\deftab720\n" + fonts_.table();
    writeColorTable(out);
    writeInfo(out);
    return out + body_ + "}\n";
  }

private:
  void collectColors() {
    for (int index = 0; index < document_.pageCount(); ++index) {
      const Page page = document_.page(index);
      for (const PageItem &item : page.items())
        if (const auto *run = std::get_if<TextRun>(&item))
          colors_.emplace(run->color & RGB_MASK, 0);
    }
    int next = 1; // entry 0 is the reader's automatic colour
    for (auto &[color, index] : colors_)
      index = next++;
  }

  void writeColorTable(QByteArray &out) const {
    out += "{\\colortbl;";
    for (const auto &[color, index] : colors_)
      out += "\\red" + QByteArray::number(qRed(color)) + "\\green" + QByteArray::number(qGreen(color)) + "\\blue" +
             QByteArray::number(qBlue(color)) + ';';
    out += "}\n";
  }

  void writeInfo(QByteArray &out) const {
    if (document_.title().isEmpty())
      return;
    out += "{\\info{\\title ";
    appendRtfText(out, document_.title());
    out += "}}\n";
  }

  // A page break, or a new section when the page changes its size. The
  // break is a property of the page's first paragraph: a break written on
  // its own makes word processors open an empty paragraph at the top of the
  // next page, which takes the space of the paragraph before it.
  void writeBreak(const Page &previous, const Page &page) {
    if (previous.width() == page.width() && previous.height() == page.height()) {
      breakBefore_ = true;
      return;
    }
    body_ += "\\sect\\sectd\\sbkpage\\pgwsxn" + number(page.width()) + "\\pghsxn" + number(page.height());
    if (page.width() > page.height())
      body_ += "\\lndscpsxn";
    body_ += '\n';
  }

  void writePage(const Page &page) {
    const std::vector<TextLine> lines = textLines(page);
    if (lines.empty()) {
      body_ += paragraphStart() + "\\par\n"; // a page without text still is a page
      return;
    }
    Twips bottom = margins_.top;
    for (const TextLine &line : lines) {
      writeLine(page, line, std::max(line.top - bottom, 0));
      bottom = line.bottom;
    }
  }

  QByteArray paragraphStart() {
    QByteArray start = "\\pard\\plain";
    if (breakBefore_)
      start += "\\pagebb";
    breakBefore_ = false;
    return start;
  }

  // Where a run stands on its line, from the left margin: the left edge,
  // the middle or the right edge, by its alignment.
  Twips anchorOf(const TextRun &run) const {
    const Twips left = run.box.x - margins_.left;
    switch (run.align) {
    case TextAlign::Center: return left + run.box.width / 2;
    case TextAlign::Right: return left + run.box.width;
    case TextAlign::Left: break;
    }
    return left;
  }

  static QByteArray tabStop(const TextRun &run, Twips position) {
    const char *kind = run.align == TextAlign::Center ? "\\tqc" : run.align == TextAlign::Right ? "\\tqr" : "";
    return kind + QByteArray("\\tx") + number(position);
  }

  // One paragraph: space above for the gap to the line before, the line's
  // own height, a tab stop for each run that does not start at the margin.
  void writeLine(const Page &page, const TextLine &line, Twips spaceBefore) {
    body_ += paragraphStart() + "\\sb" + number(spaceBefore) + "\\sl-" + number(std::max(line.bottom - line.top, 1)) +
             "\\slmult0";
    QByteArray runs;
    Twips lastStop = 0;
    for (const TextRun *run : line.runs) {
      const Twips anchor = anchorOf(*run);
      if (anchor > lastStop) {
        body_ += tabStop(*run, anchor);
        runs += "\\tab";
        lastStop = anchor;
      } else if (run != line.runs.front()) {
        runs += "\\tab"; // no room for a stop of its own: the next stop
      }
      const QString text = page.text(*run);
      runs += "{" + characterFormat(*run, text) + ' ';
      appendRtfText(runs, text);
      runs += '}';
    }
    body_ += ' ' + runs + "\\par\n";
  }

  QByteArray characterFormat(const TextRun &run, const QString &text) {
    const PageFont &font = document_.font(run.font);
    QByteArray format = fonts_.fontsOf(run.font, text) + "\\fs" + QByteArray::number(qRound(font.pointSize * 2)) +
                        "\\cf" + QByteArray::number(colors_.at(run.color & RGB_MASK));
    if (font.bold)
      format += "\\b";
    if (font.italic)
      format += "\\i";
    if (font.underline)
      format += "\\ul";
    if (font.strikeout)
      format += "\\strike";
    return format;
  }

  const PageDocument &document_;
  const Margins margins_;
  RtfFonts fonts_;
  std::map<QRgb, int> colors_; // colour -> its entry in the colour table
  bool breakBefore_ = false;   // the next paragraph starts a page
  QByteArray body_;
};

} // namespace

QByteArray RtfExporter::rtf(const PageDocument &document) const {
  if (document.pageCount() == 0)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The report has no pages to export"));
  return RtfWriter(document).write();
}

void RtfExporter::exportDocument(const PageDocument &document, const QString &path) const {
  const QByteArray bytes = rtf(document);
  writeExportFile(path, bytes, kSource);
}

} // namespace kordel::engine
