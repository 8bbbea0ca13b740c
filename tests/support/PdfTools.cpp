#include "support/PdfTools.h"

#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>

#include <gtest/gtest.h>

namespace kordel::test {

bool pdfToolsAvailable() {
  for (const char *program : {"pdftotext", "pdfinfo", "pdffonts"})
    if (QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty())
      return false;
  return true;
}

QString runPdfTool(const QString &program, const QStringList &arguments) {
  QProcess process;
  process.start(program, arguments);
  if (!process.waitForFinished(60000) || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0) {
    ADD_FAILURE() << program.toStdString() << " failed: " << process.readAllStandardError().toStdString();
    return {};
  }
  return QString::fromUtf8(process.readAllStandardOutput());
}

QStringList pdfPageTexts(const QString &path) {
  QStringList pages = runPdfTool(QStringLiteral("pdftotext"), {QStringLiteral("-layout"), QStringLiteral("-enc"),
                                                               QStringLiteral("UTF-8"), path, QStringLiteral("-")})
                          .split(QLatin1Char('\f'));
  if (!pages.isEmpty() && pages.back().trimmed().isEmpty())
    pages.removeLast(); // the form feed ends the last page too
  return pages;
}

std::vector<QSizeF> pdfPageSizes(const QString &path) {
  const QString info = runPdfTool(QStringLiteral("pdfinfo"), {QStringLiteral("-f"), QStringLiteral("1"),
                                                              QStringLiteral("-l"), QStringLiteral("9999"), path});
  static const QRegularExpression pageSize(QStringLiteral(R"(^Page\s+\d+ size:\s+([\d.]+) x ([\d.]+) pts)"),
                                           QRegularExpression::MultilineOption);
  std::vector<QSizeF> sizes;
  for (auto it = pageSize.globalMatch(info); it.hasNext();) {
    const auto match = it.next();
    sizes.emplace_back(match.captured(1).toDouble(), match.captured(2).toDouble());
  }
  return sizes;
}

QString pdfInfoValue(const QString &path, const QString &key) {
  const QString info = runPdfTool(QStringLiteral("pdfinfo"), {path});
  for (const QString &line : info.split(QLatin1Char('\n')))
    if (line.startsWith(key + QLatin1Char(':')))
      return line.mid(key.size() + 1).trimmed();
  return {};
}

std::vector<PdfFont> pdfFonts(const QString &path) {
  // The table's columns are as wide as the dashes under its heading; the
  // fourth column tells whether the font is embedded.
  const QStringList lines = runPdfTool(QStringLiteral("pdffonts"), {path}).split(QLatin1Char('\n'));
  if (lines.size() < 2)
    return {};
  std::vector<std::pair<qsizetype, qsizetype>> columns;
  static const QRegularExpression dashes(QStringLiteral("-+"));
  for (auto it = dashes.globalMatch(lines[1]); it.hasNext();) {
    const auto match = it.next();
    columns.emplace_back(match.capturedStart(), match.capturedLength());
  }
  if (columns.size() < 4)
    return {};
  std::vector<PdfFont> fonts;
  for (qsizetype i = 2; i < lines.size(); ++i) {
    if (lines[i].trimmed().isEmpty())
      continue;
    const QString name = lines[i].mid(columns[0].first, columns[0].second).trimmed();
    const QString embedded = lines[i].mid(columns[3].first, columns[3].second).trimmed();
    fonts.push_back(PdfFont{name, embedded == QStringLiteral("yes")});
  }
  return fonts;
}

void expectSoundPdfStructure(const QString &path) {
  const QString qpdf = QStandardPaths::findExecutable(QStringLiteral("qpdf"));
  if (qpdf.isEmpty())
    return;
  QProcess check;
  check.start(qpdf, {QStringLiteral("--check"), path});
  ASSERT_TRUE(check.waitForFinished(60000));
  EXPECT_EQ(check.exitCode(), 0) << check.readAllStandardOutput().toStdString()
                                 << check.readAllStandardError().toStdString();
}

QImage renderedPdfPage(const QString &path, int page, int dotsPerInch, const QString &folder) {
  const QString pdftoppm = QStandardPaths::findExecutable(QStringLiteral("pdftoppm"));
  if (pdftoppm.isEmpty())
    return {};
  const QString base = folder + QStringLiteral("/rendered-%1").arg(page);
  const QString number = QString::number(page);
  QProcess render;
  render.start(pdftoppm,
               {QStringLiteral("-r"), QString::number(dotsPerInch), QStringLiteral("-f"), number, QStringLiteral("-l"),
                number, QStringLiteral("-png"), QStringLiteral("-singlefile"), path, base});
  if (!render.waitForFinished(60000) || render.exitCode() != 0)
    return {};
  return QImage(base + QStringLiteral(".png")).convertToFormat(QImage::Format_RGB32);
}

} // namespace kordel::test
