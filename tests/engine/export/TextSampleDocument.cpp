#include "TextSampleDocument.h"

#include <QPainter>

namespace kordel::test {

using namespace kordel::engine;

const QString kSwedish = QStringLiteral("Åsa Öberg, Göteborg");
const QString kCzech = QStringLiteral("Žluťoučký kůň úpěl");
const QString kMarkup = QStringLiteral("<b>Acme & Co</b>");
const QString kRtfLike = QStringLiteral("{\\rtf} C:\\temp \"quoted\" 'single'");
const QString kGreek = QStringLiteral("Ελληνικά κείμενα");
const QString kSecondPageEnd = QStringLiteral("Sida två");

QImage samplePicture() {
  QImage image(40, 20, QImage::Format_RGB32);
  image.fill(Qt::red);
  QPainter painter(&image);
  painter.fillRect(0, 0, 20, 20, Qt::blue);
  return image;
}

PageDocument textSampleDocument() {
  PageDocument document;
  const int body = document.internFont(PageFont{});
  PageFont boldFont;
  boldFont.bold = true;
  boldFont.pointSize = 12;
  const int bold = document.internFont(boldFont);
  const int picture = document.internImage(samplePicture());

  Page first(11906, 16838);
  first.addText({6000, 1440, 4466, 300}, kCzech, body);
  first.addText({1440, 1440, 4000, 300}, kSwedish, body);
  first.addText({1440, 2000, 8000, 360}, kMarkup, bold, 0xffcc0000);
  first.addText({1440, 2600, 8000, 300}, kRtfLike, body);
  first.addLine({1440, 3100, 10440, 3100, Stroke{}});
  first.addRect({{1440, 3300, 2880, 1440}, 0xffeeeeee, Stroke{0xff000080, 20, LineStyle::Dash}, 100});
  first.addEllipse({{4600, 3300, 1440, 1440}, std::nullopt, Stroke{}});
  first.addImage({6400, 3300, 1440, 720}, picture);
  document.append(first);

  Page second(16838, 11906);
  second.addText({1440, 1440, 13958, 400}, kGreek, body, kBlack, TextAlign::Center);
  second.addText({1440, 2200, 13958, 300}, kSecondPageEnd, body, kBlack, TextAlign::Right);
  document.append(second);
  return document;
}

} // namespace kordel::test
