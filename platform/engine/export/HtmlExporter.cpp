#include "engine/export/HtmlExporter.h"

#include "engine/export/ExportFile.h"
#include "engine/export/HtmlMarkup.h"
#include "engine/render/GlyphCoverage.h"

#include "core/Error.h"

#include <QBuffer>
#include <QDir>
#include <QFontDatabase>
#include <QUrl>

#include <cmath>
#include <unordered_set>
#include <memory>
#include <set>
#include <vector>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("HtmlExporter");

// Space around and between the pages.
constexpr Twips kPageGap = 16 * kTwipsPerPoint;

const QLatin1String kStyleSheet(".page{position:relative;overflow:hidden;margin:0 auto;background:#ffffff;"
                                "box-shadow:0 0 4pt #808080}\n"
                                ".page>*{position:absolute;box-sizing:border-box;margin:0;padding:0;border:0}\n"
                                ".page>div.t{white-space:pre;line-height:normal;overflow:visible}\n"
                                ".page>div.w{white-space:pre-wrap;line-height:normal;overflow:visible}\n");

QString baseOf(const QString &baseName) {
  for (const QLatin1String ending : {QLatin1String(".html"), QLatin1String(".htm")})
    if (baseName.endsWith(ending, Qt::CaseInsensitive))
      return baseName.chopped(ending.size());
  return baseName;
}

QString boxStyle(const Box &box) {
  return QStringLiteral("left:%1;top:%2;width:%3;height:%4")
      .arg(cssPoints(box.x), cssPoints(box.y), cssPoints(box.width), cssPoints(box.height));
}

QString strokeStyle(const Stroke &stroke) {
  const QString width = stroke.width > 0 ? cssPoints(stroke.width) : QStringLiteral("1px");
  const char *style = stroke.style == LineStyle::Dash ? "dashed" : stroke.style == LineStyle::Dot ? "dotted" : "solid";
  return width + QLatin1Char(' ') + QLatin1String(style) + QLatin1Char(' ') + cssColor(stroke.color);
}

// The kind of family a reader takes when it has none of the named ones.
QLatin1String genericFamily(const QString &family) {
  if (QFontDatabase::isFixedPitch(family) || family.contains(QLatin1String("Mono"), Qt::CaseInsensitive))
    return QLatin1String("monospace");
  if (family.contains(QLatin1String("Serif"), Qt::CaseInsensitive) &&
      !family.contains(QLatin1String("Sans"), Qt::CaseInsensitive))
    return QLatin1String("serif");
  return QLatin1String("sans-serif");
}

// The font's family, then the families that showed what it lacks here,
// then the generic kind, so that a reader without them still shows the
// text in a font of the same kind that has its characters.
QString familyList(const PageFont &font, const QStringList &fallbacks) {
  QStringList families{cssString(font.family)};
  for (const QString &fallback : fallbacks)
    families += cssString(fallback);
  families += genericFamily(font.family);
  return families.join(QLatin1Char(','));
}

QString fontRule(int index, const PageFont &font, const QStringList &fallbacks) {
  QString decoration;
  if (font.underline)
    decoration += QLatin1String(" underline");
  if (font.strikeout)
    decoration += QLatin1String(" line-through");
  return QStringLiteral(".f%1{font-family:%2;font-size:%3pt;font-weight:%4;font-style:%5;text-decoration:%6}\n")
      .arg(index)
      .arg(familyList(font, fallbacks))
      .arg(double(font.pointSize))
      .arg(QLatin1String(font.bold ? "bold" : "normal"), QLatin1String(font.italic ? "italic" : "normal"),
           decoration.isEmpty() ? QStringLiteral("none") : decoration.trimmed());
}

const char *alignName(TextAlign align) {
  switch (align) {
  case TextAlign::Center: return "center";
  case TextAlign::Right: return "right";
  case TextAlign::Left: break;
  }
  return "left";
}

// The markup of one page's items, in painting order.
class PageMarkup {
public:
  PageMarkup(const Page &page, const QString &baseName, QString &out) : page_(page), baseName_(baseName), out_(out) {}

  void operator()(const TextRun &run) {
    const PrintedValue *whole = page_.partialValueOf(run);
    if (!whole) {
      out_ += QStringLiteral("<div class=\"t f%1\" style=\"%2;color:%3;text-align:%4\">%5</div>\n")
                  .arg(run.font)
                  .arg(boxStyle(run.box), cssColor(run.color), QLatin1String(alignName(run.align)),
                       escapeHtml(page_.text(run)));
      return;
    }
    // A value wrapped or cut on the page is written whole where its first
    // line stands, as wide as its box and as high as it needs, with its
    // own line breaks.
    if (!written_.insert(whole).second)
      return;
    QStringList lines;
    for (const QString &line : page_.text(*whole).split(QLatin1Char('\n')))
      lines << escapeHtml(line);
    const QString text = lines.join(QLatin1String("<br>"));
    out_ += QStringLiteral("<div class=\"w f%1\" style=\"left:%2;top:%3;width:%4;color:%5;text-align:%6\">%7</div>\n")
                .arg(run.font)
                .arg(cssPoints(run.box.x), cssPoints(run.box.y), cssPoints(run.box.width), cssColor(run.color),
                     QLatin1String(alignName(run.align)), text);
  }

  // A line is a block as long as the line and as high as its stroke,
  // turned about its start.
  void operator()(const LineItem &line) {
    const double dx = line.x2 - line.x1;
    const double dy = line.y2 - line.y1;
    const Twips length = Twips(std::lround(std::hypot(dx, dy)));
    const Twips half = line.stroke.width / 2;
    QString style =
        QStringLiteral("left:%1;top:%2;width:%3;height:0;border-top:%4")
            .arg(cssPoints(line.x1), cssPoints(line.y1 - half), cssPoints(length), strokeStyle(line.stroke));
    const double degrees = std::atan2(dy, dx) * 180.0 / M_PI;
    if (std::abs(degrees) > 0.01)
      style += QStringLiteral(";transform-origin:0 50%;transform:rotate(%1deg)").arg(degrees, 0, 'f', 2);
    out_ += QStringLiteral("<div class=\"l\" style=\"%1\"></div>\n").arg(style);
  }

  void operator()(const RectItem &rect) {
    QString style = boxStyle(rect.box) + shapeStyle(rect.fill, rect.border);
    if (rect.cornerRadius > 0)
      style += QLatin1String(";border-radius:") + cssPoints(rect.cornerRadius);
    out_ += QStringLiteral("<div class=\"r\" style=\"%1\"></div>\n").arg(style);
  }

  void operator()(const EllipseItem &ellipse) {
    out_ += QStringLiteral("<div class=\"e\" style=\"%1;border-radius:50%\"></div>\n")
                .arg(boxStyle(ellipse.box) + shapeStyle(ellipse.fill, ellipse.border));
  }

  void operator()(const ImageItem &image) {
    const QString source =
        QString::fromLatin1(QUrl::toPercentEncoding(HtmlExporter::imageFileName(baseName_, image.image)));
    out_ += QStringLiteral("<img src=\"%1\" alt=\"\" style=\"%2\"/>\n").arg(escapeHtml(source), boxStyle(image.box));
  }

private:
  static QString shapeStyle(const std::optional<QRgb> &fill, const std::optional<Stroke> &border) {
    QString style;
    if (fill)
      style += QLatin1String(";background:") + cssColor(*fill);
    if (border)
      style += QLatin1String(";border:") + strokeStyle(*border);
    return style;
  }

  const Page &page_;
  std::unordered_set<const PrintedValue *> written_;
  const QString &baseName_;
  QString &out_;
};

std::set<int> imagesShown(const PageDocument &document) {
  std::set<int> images;
  for (int index = 0; index < document.pageCount(); ++index) {
    const Page page = document.page(index);
    for (const PageItem &item : page.items())
      if (const auto *image = std::get_if<ImageItem>(&item))
        images.insert(image->image);
  }
  return images;
}

QByteArray pngOf(const QImage &image, const QString &path) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  if (!image.save(&buffer, "PNG"))
    raiseError(ErrorNumber::PermissionDenied, kSource,
               QStringLiteral("Cannot write the image %1: it cannot be stored as PNG").arg(path));
  return bytes;
}

} // namespace

QString HtmlExporter::htmlFileName(const QString &baseName) {
  return baseOf(baseName) == baseName ? baseName + QLatin1String(".html") : baseName;
}

QString HtmlExporter::imageFileName(const QString &baseName, int image) {
  return QStringLiteral("%1_%2.png").arg(baseOf(baseName)).arg(image + 1);
}

QByteArray HtmlExporter::html(const PageDocument &document, const QString &baseName) const {
  QString out = QStringLiteral("<!DOCTYPE html>\n<html>\n<head>\n<meta charset=\"utf-8\"/>\n<title>%1</title>\n")
                    .arg(escapeHtml(!title_.isEmpty()             ? title_
                                    : !document.title().isEmpty() ? document.title()
                                                                  : baseOf(baseName)));
  out += QLatin1String("<style>\nbody{margin:0;padding:") + cssPoints(kPageGap) +
         QLatin1String(" 0;background:#e0e0e0}\n") + kStyleSheet +
         QStringLiteral(".page+.page{margin-top:%1}\n").arg(cssPoints(kPageGap));
  GlyphCoverage coverage(document);
  if (document.pageCount() > 0)
    coverage.scan(0, document.pageCount() - 1);
  for (int index = 0; index < document.fontCount(); ++index)
    out += fontRule(index, document.font(index), coverage.fallbackFamilies(index));
  out += QLatin1String("</style>\n</head>\n<body>\n");
  for (int index = 0; index < document.pageCount(); ++index) {
    const Page page = document.page(index);
    out += QStringLiteral("<div class=\"page\" id=\"page%1\" style=\"width:%2;height:%3\">\n")
               .arg(index + 1)
               .arg(cssPoints(page.width()), cssPoints(page.height()));
    PageMarkup markup(page, baseName, out);
    for (const PageItem &item : page.items())
      std::visit(markup, item);
    out += QLatin1String("</div>\n");
  }
  out += QLatin1String("</body>\n</html>\n");
  return out.toUtf8();
}

void HtmlExporter::exportDocument(const PageDocument &document, const QString &folder, const QString &baseName) const {
  if (document.pageCount() == 0)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The report has no pages to export"));
  if (folder.isEmpty())
    raiseError(ErrorNumber::PathNotFound, kSource, QStringLiteral("No output folder was given for the HTML file"));
  if (baseName.isEmpty())
    raiseError(ErrorNumber::PathNotFound, kSource, QStringLiteral("No file name was given for the HTML file"));
  const QDir dir(folder);
  if (!dir.exists())
    raiseError(ErrorNumber::PathNotFound, kSource,
               QStringLiteral("Cannot write the HTML file: the folder %1 does not exist").arg(folder));
  checkExportTarget(dir.filePath(htmlFileName(baseName)), kSource);

  std::vector<std::pair<QString, QByteArray>> files;
  for (const int image : imagesShown(document)) {
    const QString path = dir.filePath(imageFileName(baseName, image));
    files.emplace_back(path, pngOf(document.image(image), path));
  }
  files.emplace_back(dir.filePath(htmlFileName(baseName)), html(document, baseName)); // renamed last

  std::vector<std::unique_ptr<ExportFile>> written;
  for (const auto &[path, bytes] : files)
    written.emplace_back(std::make_unique<ExportFile>(path, kSource))->writeAll(bytes);
  for (const auto &file : written)
    file->commit();
}

} // namespace kordel::engine
