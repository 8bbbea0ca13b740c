#pragma once

#include <QImage>
#include <QSizeF>
#include <QString>
#include <QStringList>

#include <vector>

namespace kordel::test {

// Reading PDF files back with the command line tools pdftotext, pdfinfo and pdffonts.

// Whether pdftotext, pdfinfo and pdffonts can be run.
bool pdfToolsAvailable();
// The output of a tool run on the file; empty when it failed, with a
// test failure saying why.
QString runPdfTool(const QString &program, const QStringList &arguments);

// The text of the file's pages, laid out as on the page, one entry a page.
QStringList pdfPageTexts(const QString &path);
// The size of each page in points.
std::vector<QSizeF> pdfPageSizes(const QString &path);
// One value of pdfinfo's report, such as "Pages" or "Title".
QString pdfInfoValue(const QString &path, const QString &key);

struct PdfFont {
  QString name;
  bool embedded = false;
};
std::vector<PdfFont> pdfFonts(const QString &path);

// Whether qpdf finds the file's structure and streams sound, as a test
// expectation; no check where qpdf is not installed.
void expectSoundPdfStructure(const QString &path);
// A page of the file, counted from 1, rendered by pdftoppm at that many
// dots per inch into the folder; a null image when that failed or
// pdftoppm is not installed.
QImage renderedPdfPage(const QString &path, int page, int dotsPerInch, const QString &folder);

} // namespace kordel::test
