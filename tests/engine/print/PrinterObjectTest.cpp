// The printer object and the built-in PDF printer: choosing devices by
// name (queues of a scheduler of the test's own, the built-in printer),
// what a device reports of its port, bins and paper, the paper a run lays
// out on, and the built-in printer's files in a documents folder of the
// test's own.

#include "support/CupsTestQueues.h"

#include "engine/model/LayoutReport.h"
#include "engine/model/Section.h"
#include "engine/print/BuiltInPdfPrinter.h"
#include "engine/print/LayoutPrinter.h"
#include "engine/print/PagePrinter.h"
#include "engine/print/PrintSystem.h"
#include "engine/module/EngineModule.h"
#include "engine/render/PageDocument.h"

#include "support/PdfTools.h"
#include "support/ErrorCapture.h"
#include "support/PrivateCupsd.h"
#include "support/TempDir.h"

#include "hostapi/Printers.h"

#include <QDir>
#include <QFileInfo>

#include <gtest/gtest.h>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::TempDir;

namespace {

const QString kBuiltIn = QString::fromUtf8(hostapi::kBuiltInPdfPrinterName);

PageDocument twoPages() {
  PageDocument document;
  const int font = document.internFont(PageFont{});
  Page first(11906, 16838);
  first.addText({1440, 1440, 8000, 300}, QStringLiteral("Invoices of March"), font);
  document.append(first);
  Page second(11906, 16838);
  second.addText({1440, 1440, 8000, 300}, QStringLiteral("Sum of the month"), font);
  document.append(second);
  return document;
}

QStringList names(const Variant &array) {
  QStringList list;
  for (const Variant &value : array.array().elements())
    list << value.toString();
  return list;
}

TEST(BuiltInPdfPrinter, JobNamesBecomeFileNamesAFolderCanHold) {
  EXPECT_EQ(pdfFileNameForJob(QStringLiteral("Invoices: March/April")), QStringLiteral("Invoices_ March_April.pdf"));
  EXPECT_EQ(pdfFileNameForJob(QStringLiteral("..hidden. ")), QStringLiteral("hidden.pdf"));
  EXPECT_EQ(pdfFileNameForJob(QStringLiteral("Quotes.PDF")), QStringLiteral("Quotes.pdf"));
  EXPECT_EQ(pdfFileNameForJob(QStringLiteral("Tab\there")), QStringLiteral("Tab_here.pdf"));
  EXPECT_EQ(pdfFileNameForJob(QStringLiteral(" / ")), QStringLiteral("_.pdf"));
  EXPECT_EQ(pdfFileNameForJob(QStringLiteral("  ")), QStringLiteral("Report.pdf"));
  EXPECT_LE(pdfFileNameForJob(QString(300, u'\u00e5')).toUtf8().size(), 204) << "below the file system's limit";
}

TEST(BuiltInPdfPrinter, WritesEachJobAsANewFileInTheDocumentsFolderAndNeverReplacesOne) {
  TempDir home;
  const test::ScopedHome scopedHome(home.path(), QStringLiteral("Papers"));
  const QDir documents(home.file(QStringLiteral("Papers")));
  ASSERT_EQ(builtInPdfFolder(), documents.path()) << "the desktop's documents folder";
  ASSERT_FALSE(documents.exists());

  PrintSettings settings;
  settings.queue = kBuiltIn;
  settings.jobName = QStringLiteral("Invoices: March");
  settings.copies = 3;
  EXPECT_GT(PagePrinter(settings).printDocument(twoPages()), 0);
  const QString first = documents.filePath(QStringLiteral("Invoices_ March.pdf"));
  ASSERT_TRUE(QFileInfo::exists(first)) << documents.entryList().join(u',').toStdString();
  EXPECT_EQ(documents.entryList(QDir::Files | QDir::Hidden).size(), 1) << "one file whatever the copies";

  // A file of someone else's under the next name is passed over and kept.
  ASSERT_TRUE(test::writeFile(documents.filePath(QStringLiteral("Invoices_ March (2).pdf")), "not ours"));
  const QByteArray firstBytes = test::readFile(first);
  PagePrinter(settings).printPages(twoPages(), 1, 1);
  const QString third = documents.filePath(QStringLiteral("Invoices_ March (3).pdf"));
  ASSERT_TRUE(QFileInfo::exists(third)) << documents.entryList().join(u',').toStdString();
  EXPECT_EQ(test::readFile(first), firstBytes);
  EXPECT_EQ(test::readFile(documents.filePath(QStringLiteral("Invoices_ March (2).pdf"))), "not ours");
  EXPECT_EQ(documents.entryList(QDir::Files | QDir::Hidden).size(), 3) << "no working files are left";

  if (test::pdfToolsAvailable()) {
    const QStringList firstPages = test::pdfPageTexts(first);
    ASSERT_EQ(firstPages.size(), 2);
    EXPECT_TRUE(firstPages[0].contains(QStringLiteral("Invoices of March")));
    EXPECT_TRUE(firstPages[1].contains(QStringLiteral("Sum of the month")));
    const QStringList thirdPages = test::pdfPageTexts(third);
    ASSERT_EQ(thirdPages.size(), 1) << "the pages asked for";
    EXPECT_TRUE(thirdPages[0].contains(QStringLiteral("Sum of the month")));
  }

  settings.paperBin = 1;
  EXPECT_EQ(test::errorNumber([&] { PagePrinter(settings).printDocument(twoPages()); }),
            ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(documents.entryList(QDir::Files | QDir::Hidden).size(), 3) << "a refused job writes nothing";
}

TEST(BuiltInPdfPrinter, ADocumentsFolderThatCannotBeMadeIsAClearError) {
  TempDir home;
  const test::ScopedHome scopedHome(home.path());
  ASSERT_TRUE(test::writeFile(home.file(QStringLiteral("Documents")), "a file where the folder should be"));
  PrintSettings settings;
  settings.queue = kBuiltIn;
  const Error error = test::errorOf([&] { PagePrinter(settings).printDocument(twoPages()); });
  EXPECT_EQ(error.number(), ErrorNumber::PathNotFound);
  EXPECT_TRUE(error.description().contains(home.file(QStringLiteral("Documents"))))
      << error.description().toStdString();
}

TEST(EngineModule, AModuleThatCannotBeLoadedIsAClearErrorAndOneLoadedIsKept) {
  const Error missing = test::errorOf([] {
    engineModuleEntry("libkordel_no_such_module.so", "entry", QStringLiteral("test writer"), QStringLiteral("Test"));
  });
  EXPECT_EQ(missing.number(), ErrorNumber::CannotCreateObject);
  EXPECT_TRUE(missing.description().startsWith(QStringLiteral("The test writer cannot be loaded: ")))
      << missing.description().toStdString();
  EXPECT_TRUE(missing.description().contains(QStringLiteral("libkordel_no_such_module.so")));

  void *entry =
      engineModuleEntry(kPrintSystemModule, kPrintSystemEntry, QStringLiteral("print system"), QStringLiteral("Test"));
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(
      engineModuleEntry(kPrintSystemModule, kPrintSystemEntry, QStringLiteral("print system"), QStringLiteral("Test")),
      entry);
  const Error noEntry = test::errorOf([] {
    engineModuleEntry(kPrintSystemModule, "no_such_entry", QStringLiteral("print system"), QStringLiteral("Test"));
  });
  EXPECT_EQ(noEntry.number(), ErrorNumber::CannotCreateObject);
  EXPECT_TRUE(noEntry.description().contains(QStringLiteral("no_such_entry"))) << noEntry.description().toStdString();
}

TEST(PrinterObject, WithoutAPrintServerItStandsForTheBuiltInPdfPrinter) {
  TempDir dir;
  const test::ScopedCupsServer server(dir.file(QStringLiteral("nobody-listens.sock")));
  const test::ScopedHome home(dir.path());
  auto printer = std::make_shared<LayoutPrinter>();
  EXPECT_EQ(printer->get("DeviceName").toString(), kBuiltIn);
  EXPECT_EQ(printer->get("Port").toString(), home.documentsFolder());
  EXPECT_TRUE(printer->get("PaperBins").array().elements().empty());
  EXPECT_TRUE(printer->get("PaperBinNames").array().elements().empty());
  EXPECT_EQ(printer->get("PaperBin").toLong(), -1);
  EXPECT_FLOAT_EQ(printer->get("PaperWidth").toSingle(), 11906);
  EXPECT_FLOAT_EQ(printer->get("PaperHeight").toSingle(), 16838);
  printer->set("Orientation", Variant(2));
  EXPECT_FLOAT_EQ(printer->get("PaperWidth").toSingle(), 16838) << "landscape turns the paper";
  EXPECT_FALSE(printer->hasChosenPaper());

  const Error unknown = test::errorOf([&] { printer->set("DeviceName", Variant("kordel_nowhere")); });
  EXPECT_EQ(unknown.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(unknown.description().contains(QStringLiteral("\"kordel_nowhere\"")))
      << unknown.description().toStdString();
  EXPECT_EQ(printer->deviceName(), kBuiltIn) << "a refused name changes nothing";

  EXPECT_EQ(test::errorNumber([&] { printer->set("PaperBin", Variant(1)); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(test::errorNumber([&] { printer->set("Orientation", Variant(3)); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(test::errorNumber([&] { printer->set("Copies", Variant(40000)); }), ErrorNumber::Overflow);
  EXPECT_EQ(test::errorNumber([&] { printer->set("PaperWidth", Variant(0)); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(printer->get("Orientation").toLong(), 2);

  printer->set("DeviceName", Variant(kBuiltIn));
  EXPECT_TRUE(printer->hasChosenPaper());
}

class PrinterObjectOnAServer : public ::testing::Test {
protected:
  void SetUp() override {
    server_ = std::make_unique<test::TestPrintServer>(dir_);
    if (!server_->running())
      GTEST_SKIP() << "no print server for the test: " << server_->failure().toStdString();
  }

  void TearDown() override { server_.reset(); }

  TempDir dir_;
  std::unique_ptr<test::TestPrintServer> server_;
};

TEST_F(PrinterObjectOnAServer, SelectsQueuesByTheirExactNameWithTheirPortBinsAndPaper) {
  QString why = server_->addQueueWithBins(QStringLiteral("kordel_letter"), QStringLiteral("Letter"));
  ASSERT_TRUE(why.isEmpty()) << why.toStdString();
  why = server_->addQueueWithBins(QStringLiteral("kordel_a4"));
  ASSERT_TRUE(why.isEmpty()) << why.toStdString();

  auto printer = std::make_shared<LayoutPrinter>();
  EXPECT_EQ(printer->deviceName(), kBuiltIn) << "no queue is marked default";
  printer->set("DeviceName", Variant("kordel_letter"));
  EXPECT_EQ(printer->get("DeviceName").toString(), QStringLiteral("kordel_letter"));
  EXPECT_EQ(printer->get("Port").toString(), QStringLiteral("file:///dev/null"));
  const Variant bins = printer->get("PaperBins");
  std::vector<int> numbers;
  for (const Variant &number : bins.array().elements())
    numbers.push_back(number.toLong());
  EXPECT_EQ(numbers, (std::vector<int>{1, 2, 3}));
  const QStringList binNames = names(printer->get("PaperBinNames"));
  ASSERT_EQ(binNames.size(), 3);
  EXPECT_TRUE(binNames[1] == QStringLiteral("Lower Tray") || binNames[1] == QStringLiteral("bottom"))
      << binNames[1].toStdString();
  EXPECT_FLOAT_EQ(printer->get("PaperWidth").toSingle(), 12240) << "the queue's own paper, US Letter";
  EXPECT_FLOAT_EQ(printer->get("PaperHeight").toSingle(), 15840);

  printer->set("PaperBin", Variant(2));
  EXPECT_EQ(printer->get("PaperBin").toLong(), 2);
  EXPECT_EQ(test::errorNumber([&] { printer->set("PaperBin", Variant(4)); }), ErrorNumber::SubscriptOutOfRange);
  EXPECT_EQ(printer->paperBin(), 2);

  // The print system would take the name in any case; a device name is
  // the queue's own.
  EXPECT_EQ(test::errorNumber([&] { printer->set("DeviceName", Variant("KORDEL_LETTER")); }), ErrorNumber::InvalidCall);
  EXPECT_EQ(printer->deviceName(), QStringLiteral("kordel_letter"));
  EXPECT_EQ(printer->paperBin(), 2);

  printer->set("DeviceName", Variant("kordel_a4"));
  EXPECT_EQ(printer->paperBin(), -1) << "another device starts at its own bin";
  EXPECT_FLOAT_EQ(printer->paperWidth(), 11906);

  QString error;
  ASSERT_TRUE(server_->cupsd().setDefault(QStringLiteral("kordel_letter"), error)) << error.toStdString();
  EXPECT_EQ(std::make_shared<LayoutPrinter>()->deviceName(), QStringLiteral("kordel_letter"));
}

TEST_F(PrinterObjectOnAServer, ARunLaysOutOnTheChosenPrintersPaperElseOnTheLayouts) {
  const QString why = server_->addQueueWithBins(QStringLiteral("kordel_letter"), QStringLiteral("Letter"));
  ASSERT_TRUE(why.isEmpty()) << why.toStdString();
  QString error;
  ASSERT_TRUE(server_->cupsd().setDefault(QStringLiteral("kordel_letter"), error)) << error.toStdString();

  auto report = LayoutReport::create();
  report->sections()->add("Detail", 0, SectionType::Detail, 300);
  report->run();
  EXPECT_EQ(report->pages()->page(0).width(), 11906) << "the layout's A4 until a printer is chosen";

  report->printer()->setDeviceName(QStringLiteral("kordel_letter"));
  report->run();
  EXPECT_EQ(report->pages()->page(0).width(), 12240);
  EXPECT_EQ(report->pages()->page(0).height(), 15840);
  report->printer()->setOrientation(LayoutPrinter::kLandscape);
  report->run();
  EXPECT_EQ(report->pages()->page(0).width(), 15840);
}

TEST_F(PrinterObjectOnAServer, ThePdfPrinterQueueOffersNoBinsAndA4) {
  if (const QString why = server_->addPdfPrinterQueue(QStringLiteral("kordel_pdf")); !why.isEmpty())
    GTEST_SKIP() << why.toStdString();
  auto printer = std::make_shared<LayoutPrinter>();
  printer->set("DeviceName", Variant("kordel_pdf"));
  EXPECT_EQ(printer->port(), QStringLiteral("cups-pdf:/"));
  EXPECT_TRUE(printer->get("PaperBins").array().elements().empty());
  EXPECT_TRUE(names(printer->get("PaperBinNames")).isEmpty());
  EXPECT_FLOAT_EQ(printer->paperWidth(), 11906);
  EXPECT_FLOAT_EQ(printer->paperHeight(), 16838);
}

} // namespace
