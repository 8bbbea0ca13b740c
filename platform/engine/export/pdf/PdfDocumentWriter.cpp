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
      resources_(file_, document), content_(document, fonts_, resources_) {
  for (int font = 0; font < document.fontCount(); ++font)
    fonts_.add(document.font(font)); // the same indexes as the document's
}

void PdfDocumentWriter::writePage(const Page &page) {
  const QByteArray content = content_.content(page);
  const int contentObject = file_.reserve();
  file_.writeStream(contentObject, QByteArray(), content);
  const int pageObject = file_.reserve();
  QByteArray dictionary("<</Type/Page/Parent ");
  dictionary.append(reference(pageTree_)).append("/MediaBox[0 0 ");
  appendNumber(dictionary, page.width() / double(kTwipsPerPoint));
  dictionary.append(' ');
  appendNumber(dictionary, page.height() / double(kTwipsPerPoint));
  dictionary.append("]/Resources ").append(reference(resources_.objectNumber()));
  dictionary.append("/Contents ").append(reference(contentObject)).append(">>");
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
