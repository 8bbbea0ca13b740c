#include "engine/export/pdf/PdfDocumentWriter.h"

#include <QDateTime>

namespace kordel::engine::pdf {

namespace {

// A date as PDF writes it: D:YYYYMMDDHHmmSSZ, in universal time.
QByteArray pdfDate(const QDateTime &time) {
  return "(D:" + time.toUTC().toString(QStringLiteral("yyyyMMddHHmmss")).toLatin1() + "Z)";
}

} // namespace

PdfDocumentWriter::PdfDocumentWriter(ExportFile &file, const PageDocument &document)
    : file_(file), catalog_(file_.reserve()), pageTree_(file_.reserve()), fonts_(QStringLiteral("PdfExporter")),
      resources_(file_, document), content_(document, fonts_, resources_), document_(document) {
  takeNewFonts();
}

// The document's fonts, with the same indexes: those it had when the
// writer was made, and those its run has added since.
void PdfDocumentWriter::takeNewFonts() {
  for (int font = fonts_.count(); font < document_.fontCount(); ++font)
    fonts_.add(document_.font(font));
}

void PdfDocumentWriter::writePage(const Page &page) {
  const int contentObject = file_.reserve();
  file_.writeStream(contentObject, QByteArray(), content_.content(page));
  writePageObject(page.width(), page.height(), reference(contentObject));
}

// Each of the two streams of a page written ahead keeps its graphics state
// to itself, as each begins with the page's own coordinates.
void PdfDocumentWriter::writePageAhead(const Page &page) {
  takeNewFonts();
  const int contentObject = file_.reserve();
  file_.writeStream(contentObject, QByteArray(), "q\n" + content_.content(page) + "Q\n");
  ahead_.push_back(PageAhead{contentObject, page.width(), page.height()});
}

void PdfDocumentWriter::completePage(int index, const std::vector<PageCountText> &counts) {
  const PageAhead &ahead = ahead_.at(std::size_t(index));
  if (counts.empty()) {
    writePageObject(ahead.width, ahead.height, reference(ahead.content));
    return;
  }
  takeNewFonts();
  Page countsOnly(ahead.width, ahead.height);
  addPageCounts(countsOnly, counts);
  const int countsObject = file_.reserve();
  file_.writeStream(countsObject, QByteArray(), "q\n" + content_.content(countsOnly) + "Q\n");
  writePageObject(ahead.width, ahead.height, '[' + reference(ahead.content) + ' ' + reference(countsObject) + ']');
}

void PdfDocumentWriter::writePageObject(Twips width, Twips height, const QByteArray &contents) {
  const int pageObject = file_.reserve();
  QByteArray dictionary("<</Type/Page/Parent ");
  dictionary.append(reference(pageTree_)).append("/MediaBox[0 0 ");
  appendNumber(dictionary, width / double(kTwipsPerPoint));
  dictionary.append(' ');
  appendNumber(dictionary, height / double(kTwipsPerPoint));
  dictionary.append("]/Resources ").append(reference(resources_.objectNumber()));
  dictionary.append("/Contents ").append(contents).append(">>");
  file_.writeObject(pageObject, dictionary);
  pages_.push_back(pageObject);
}

void PdfDocumentWriter::finish(const QString &title, const QString &creator) {
  resources_.finish();
  QByteArray tree("<</Type/Pages/Count ");
  appendInteger(tree, std::int64_t(pages_.size()));
  tree.append("/Kids[");
  for (const int page : pages_)
    tree.append(reference(page)).append(' ');
  tree.append("]>>");
  file_.writeObject(pageTree_, tree);
  file_.writeObject(catalog_, "<</Type/Catalog/Pages " + reference(pageTree_) + ">>");

  const int info = file_.reserve();
  QByteArray information("<</Title");
  information.append(textString(title)).append("/Creator").append(textString(creator));
  information.append("/Producer").append(textString(QStringLiteral("Kordel")));
  information.append("/CreationDate").append(pdfDate(QDateTime::currentDateTimeUtc())).append(">>");
  file_.writeObject(info, information);
  file_.finish(catalog_, info);
}

} // namespace kordel::engine::pdf
