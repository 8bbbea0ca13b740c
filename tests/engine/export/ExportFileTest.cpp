// What each of the six exporters does with the file it is to write: a
// read-only file and a folder that takes no files are refused before
// anything is written; a write that the system refuses half-way tells the
// system's reason; and any earlier file stays as it was, with nothing left
// beside it.

#include "TextSampleDocument.h"

#include "engine/export/HtmlExporter.h"
#include "engine/export/PdfExporter.h"
#include "engine/export/RtfExporter.h"
#include "engine/export/TextExporter.h"
#include "engine/export/TiffExporter.h"
#include "engine/export/XlsExporter.h"

#include "support/ErrorCapture.h"
#include "support/FileSizeLimit.h"
#include "support/TempDir.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <functional>

#include <sys/resource.h>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::FileSizeLimit;
using kordel::test::TempDir;

namespace {

struct Exporter {
  const char *name;
  const char *extension;
  std::function<void(const PageDocument &, const QString &)> write;
};

const Exporter kExporters[] = {
    {"PDF", "pdf", [](const PageDocument &d, const QString &path) { PdfExporter().exportDocument(d, path); }},
    {"XLS", "xls", [](const PageDocument &d, const QString &path) { XlsExporter().exportDocument(d, path); }},
    {"HTML", "html",
     [](const PageDocument &d, const QString &path) {
       const QFileInfo file(path);
       HtmlExporter().exportDocument(d, file.path(), file.fileName());
     }},
    {"RTF", "rtf", [](const PageDocument &d, const QString &path) { RtfExporter().exportDocument(d, path); }},
    {"text", "txt", [](const PageDocument &d, const QString &path) { TextExporter().exportDocument(d, path); }},
    {"TIFF", "tif", [](const PageDocument &d, const QString &path) { TiffExporter().exportDocument(d, path); }},
};

QStringList entriesOf(const QString &folder) {
  return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

class ExportTargets : public ::testing::Test {
protected:
  TempDir dir_;
  const PageDocument document_ = test::textSampleDocument();
};

TEST_F(ExportTargets, AReadOnlyFileIsRefusedByEveryExporterAndKept) {
  for (const Exporter &exporter : kExporters) {
    SCOPED_TRACE(exporter.name);
    const QString path = dir_.file(QStringLiteral("kept.") + QLatin1String(exporter.extension));
    ASSERT_TRUE(test::writeFile(path, "the earlier export"));
    ASSERT_TRUE(QFile::setPermissions(path, QFile::ReadOwner | QFile::ReadGroup | QFile::ReadOther));

    const Error error = test::errorOf([&] { exporter.write(document_, path); });
    EXPECT_EQ(error.number(), ErrorNumber::PermissionDenied);
    EXPECT_TRUE(error.description().contains(path)) << error.what();
    EXPECT_TRUE(error.description().contains(QLatin1String("read-only"))) << error.what();
    EXPECT_EQ(test::readFile(path), QByteArray("the earlier export"));
    EXPECT_EQ(entriesOf(dir_.path()), QStringList{QFileInfo(path).fileName()});
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
    QFile::remove(path);
  }
}

TEST_F(ExportTargets, AFolderThatTakesNoFilesIsRefusedByEveryExporter) {
  const QString folder = dir_.file(QStringLiteral("locked"));
  ASSERT_TRUE(QDir().mkdir(folder));
  ASSERT_TRUE(QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner | QFile::ReadGroup | QFile::ExeGroup |
                                                QFile::ReadOther | QFile::ExeOther));
  for (const Exporter &exporter : kExporters) {
    SCOPED_TRACE(exporter.name);
    const QString path = folder + QStringLiteral("/report.") + QLatin1String(exporter.extension);
    const Error error = test::errorOf([&] { exporter.write(document_, path); });
    EXPECT_EQ(error.number(), ErrorNumber::PermissionDenied);
    EXPECT_TRUE(error.description().contains(folder)) << error.what();
    EXPECT_TRUE(error.description().contains(QLatin1String("read-only"))) << error.what();
  }
  EXPECT_TRUE(entriesOf(folder).isEmpty());
  QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

TEST_F(ExportTargets, AWriteTheSystemRefusesTellsTheSystemsReasonInEveryExporter) {
  const QString reason = QString::fromLocal8Bit(std::strerror(EFBIG));
  for (const Exporter &exporter : kExporters) {
    SCOPED_TRACE(exporter.name);
    const QString path = dir_.file(QStringLiteral("report.") + QLatin1String(exporter.extension));
    ASSERT_TRUE(test::writeFile(path, "the earlier export"));
    Error error(0);
    {
      const FileSizeLimit limit(64);
      ASSERT_TRUE(limit.active());
      error = test::errorOf([&] { exporter.write(document_, path); });
    }
    EXPECT_EQ(error.number(), ErrorNumber::PermissionDenied);
    EXPECT_TRUE(error.description().contains(reason)) << error.what();
    EXPECT_TRUE(error.description().contains(dir_.path())) << error.what();
    EXPECT_EQ(test::readFile(path), QByteArray("the earlier export"));
    EXPECT_EQ(entriesOf(dir_.path()), QStringList{QFileInfo(path).fileName()});
    QFile::remove(path);
  }
}

} // namespace
