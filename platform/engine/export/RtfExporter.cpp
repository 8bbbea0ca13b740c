#include "engine/export/RtfExporter.h"

#include "engine/export/ExportFile.h"
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

// Text as RTF: the control characters {, } and \ escaped, tabs as \tab,
// other control characters left out, and everything beyond ASCII as \uN
// with "?" for readers that lack Unicode. N is the signed 16-bit UTF-16
// unit, as RTF wants, so characters beyond the basic plane take two.
void appendText(QByteArray &out, const QString &text) {
  for (const QChar c : text) {
    const char16_t unit = c.unicode();
    if (unit == u'\\' || unit == u'{' || unit == u'}') {
      out += '\\';
      out += char(unit);
    } else if (unit == u'\t') {
      out += "\\tab ";
    } else if (unit < 0x20 || unit == 0x7f) {
      continue;
    } else if (unit < 0x80) {
      out += char(unit);
    } else {
      out += "\\u" + QByteArray::number(int(std::int16_t(unit))) + '?';
    }
  }
}

// The narrowest space that the text leaves at each edge over all pages.
Margins marginsOf(const PageDocument &document) {
  Twips left = INT_MAX, top = INT_MAX, right = INT_MAX, bottom = INT_MAX;
  for (int index = 0; index < document.pageCount(); ++index) {
    const Page &page = document.page(index);
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
  explicit RtfWriter(const PageDocument &document) : document_(document), margins_(marginsOf(document)) {}

  QByteArray write() {
    collectColors();
    out_ += "{\\rtf1\\ansi\\ansicpg1252\\deff0\\uc1\\deftab720\n";
    writeFontTable();
    writeColorTable();
    const Page &first = document_.page(0);
    out_ += "\\paperw" + number(first.width()) + "\\paperh" + number(first.height()) + "\\margl" +
            number(margins_.left) + "\\margr" + number(margins_.right) + "\\margt" + number(margins_.top) + "\\margb" +
            number(margins_.bottom);
    if (first.width() > first.height())
      out_ += "\\landscape";
    out_ += '\n';
    for (int index = 0; index < document_.pageCount(); ++index) {
      const Page &page = document_.page(index);
      if (index > 0)
        writeBreak(document_.page(index - 1), page);
      writePage(page);
    }
    out_ += "}\n";
    return out_;
  }

private:
  void collectColors() {
    for (int index = 0; index < document_.pageCount(); ++index)
      for (const PageItem &item : document_.page(index).items())
        if (const auto *run = std::get_if<TextRun>(&item))
          colors_.emplace(run->color & RGB_MASK, 0);
    int next = 1; // entry 0 is the reader's automatic colour
    for (auto &[color, index] : colors_)
      index = next++;
  }

  void writeFontTable() {
    out_ += "{\\fonttbl";
    if (document_.fontCount() == 0) {
      out_ += "{\\f0\\fnil\\fcharset0 ";
      appendText(out_, PageFont{}.family);
      out_ += ";}";
    }
    for (int index = 0; index < document_.fontCount(); ++index) {
      out_ += "{\\f" + QByteArray::number(index) + "\\fnil\\fcharset0 ";
      appendText(out_, document_.font(index).family);
      out_ += ";}";
    }
    out_ += "}\n";
  }

  void writeColorTable() {
    out_ += "{\\colortbl;";
    for (const auto &[color, index] : colors_)
      out_ += "\\red" + QByteArray::number(qRed(color)) + "\\green" + QByteArray::number(qGreen(color)) + "\\blue" +
              QByteArray::number(qBlue(color)) + ';';
    out_ += "}\n";
  }

  // A page break, or a new section when the page changes its size.
  void writeBreak(const Page &previous, const Page &page) {
    if (previous.width() == page.width() && previous.height() == page.height()) {
      out_ += "\\page\n";
      return;
    }
    out_ += "\\sect\\sectd\\sbkpage\\pgwsxn" + number(page.width()) + "\\pghsxn" + number(page.height());
    if (page.width() > page.height())
      out_ += "\\lndscpsxn";
    out_ += '\n';
  }

  void writePage(const Page &page) {
    Twips bottom = margins_.top;
    for (const TextLine &line : textLines(page)) {
      writeLine(page, line, std::max(line.top - bottom, 0));
      bottom = line.bottom;
    }
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
    out_ +=
        "\\pard\\plain\\sb" + number(spaceBefore) + "\\sl-" + number(std::max(line.bottom - line.top, 1)) + "\\slmult0";
    QByteArray runs;
    Twips lastStop = 0;
    for (const TextRun *run : line.runs) {
      const Twips anchor = anchorOf(*run);
      if (anchor > lastStop) {
        out_ += tabStop(*run, anchor);
        runs += "\\tab";
        lastStop = anchor;
      } else if (run != line.runs.front()) {
        runs += "\\tab"; // no room for a stop of its own: the next stop
      }
      runs += "{" + characterFormat(*run) + ' ';
      appendText(runs, page.text(*run));
      runs += '}';
    }
    out_ += ' ' + runs + "\\par\n";
  }

  QByteArray characterFormat(const TextRun &run) const {
    const PageFont &font = document_.font(run.font);
    QByteArray format = "\\f" + QByteArray::number(run.font) + "\\fs" + QByteArray::number(qRound(font.pointSize * 2)) +
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
  std::map<QRgb, int> colors_; // colour -> its entry in the colour table
  QByteArray out_;
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
