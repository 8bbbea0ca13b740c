// Units of the layout and printers by name: the conversions with their
// exact rounding, and printers, paper bins and a report's last printer
// against the platform's printers (the built-in PDF printer, and a queue
// with paper bins on a print server of the test's own).

#include "DemoFixture.h"

#include "common/Settings.h"
#include "core/Error.h"
#include "common/ARTools.h"
#include "hostapi/Printers.h"
#include "support/CupsTestQueues.h"
#include "support/ErrorCapture.h"

#include <gtest/gtest.h>

#include <limits>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::DemoHostedTest;

namespace {

TEST(ARToolsUnits, ConvertWithTheirOwnRounding) {
  EXPECT_EQ(MmToTwips(210), 11906);
  EXPECT_EQ(MmToTwips(297), 16838);
  EXPECT_EQ(MmToTwips(-10), -567);
  EXPECT_EQ(InchesToTwips(8.5f), 12240);
  EXPECT_EQ(InchesToTwips(0.0003472222f), 0) << "half a twip and less goes to the even neighbour";
  EXPECT_FLOAT_EQ(TwipsToCentimeters(1440), 2.54f);
  EXPECT_FLOAT_EQ(TwipsToMm(567), float(567.0 / 1440.0 * 25.4));
  // Centimetres lose all but one decimal first: 2.54 cm is 25 mm.
  EXPECT_EQ(CentimetersToTwips(2.54f), 1417);
  EXPECT_EQ(CentimetersToTwips(2.55f), 1474) << "25.5 mm rounds to 26 mm, ties to even";
  EXPECT_EQ(CentimetersToTwips(2.45f), 1361) << "24.5 mm rounds to 24 mm, ties to even";
  EXPECT_EQ(test::errorNumber([] { InchesToTwips(std::numeric_limits<float>::max()); }), ErrorNumber::Overflow);
  EXPECT_EQ(test::errorNumber([] { CentimetersToTwips(std::numeric_limits<float>::infinity()); }),
            ErrorNumber::Overflow);
}

// Report settings are kept per database, so these run on one.
class ARToolsPrinters : public DemoHostedTest {};

TEST_F(ARToolsPrinters, TheBuiltInPrinterIsFoundByItsExactName) {
  const QString name = QString::fromLatin1(hostapi::kBuiltInPdfPrinterName);
  const ObjectRef printer = FindPrinter(name);
  ASSERT_TRUE(printer);
  EXPECT_EQ(printer->get(QStringLiteral("DeviceName")).toString(), name);
  EXPECT_FALSE(FindPrinter(name.toLower())) << "names are compared exactly";
  EXPECT_FALSE(FindPrinter(QString()));
  EXPECT_FALSE(HasPaperBins(name, QString()));
  EXPECT_EQ(FindPaperBin(printer, QStringLiteral("top")), -1) << "a printer without bins";
  EXPECT_EQ(FindPaperBin(nullptr, QStringLiteral("top")), -1);
  EXPECT_FALSE(HasPaperBins(QStringLiteral("No such printer"), QString()));
}

TEST_F(ARToolsPrinters, AReportsLastPrinterComesBackWhileItExists) {
  const QString report = QStringLiteral("Invoices");
  EXPECT_FALSE(LoadReportPrinter(report)) << "nothing chosen yet";

  WriteReportSetting(report, QStringLiteral("PageSetup"), QStringLiteral("DeviceName"),
                     QString::fromLatin1(hostapi::kBuiltInPdfPrinterName));
  WriteReportSetting(report, QStringLiteral("PageSetup"), QStringLiteral("PaperBinName"), QStringLiteral("bottom"));
  const ObjectRef printer = LoadReportPrinter(report);
  ASSERT_TRUE(printer);
  EXPECT_EQ(printer->get(QStringLiteral("PaperBin")).toLong(), -1) << "a bin the printer lacks keeps its own";

  WriteReportSetting(report, QStringLiteral("PageSetup"), QStringLiteral("DeviceName"), QStringLiteral("Uninstalled"));
  EXPECT_FALSE(LoadReportPrinter(report));
  EXPECT_TRUE(ui->boxes.empty()) << "a printer that has gone is no message";
}

TEST_F(ARToolsPrinters, PaperBinsOfAQueueAreFoundByName) {
  test::TestPrintServer server(dir);
  if (!server.running())
    GTEST_SKIP() << "no print server for the test: " << server.failure().toStdString();
  const QString why = server.addQueueWithBins(QStringLiteral("kordel_trays"));
  if (!why.isEmpty())
    GTEST_SKIP() << why.toStdString();

  const ObjectRef printer = FindPrinter(QStringLiteral("kordel_trays"));
  ASSERT_TRUE(printer);
  EXPECT_TRUE(HasPaperBins(QStringLiteral("kordel_trays"), QString()));
  // The bins as the print system names them, in the driver's order.
  QStringList names;
  const Variant binNames = printer->get(QStringLiteral("PaperBinNames"));
  for (const Variant &name : binNames.array().elements())
    names << name.toString();
  ASSERT_EQ(names.size(), 3);
  const Variant bins = printer->get(QStringLiteral("PaperBins"));
  const std::vector<Variant> numbers = bins.array().elements();
  ASSERT_EQ(numbers.size(), 3u);
  const std::int16_t lower = FindPaperBin(printer, names[1]);
  EXPECT_EQ(lower, numbers[1].toInteger());
  EXPECT_EQ(FindPaperBin(printer, names[0]), numbers[0].toInteger());
  EXPECT_EQ(FindPaperBin(printer, names[1].toUpper()), -1) << "bin names are compared exactly";
  EXPECT_EQ(FindPaperBin(printer, QString()), -1);

  WriteReportSetting(QStringLiteral("Labels"), QStringLiteral("PageSetup"), QStringLiteral("DeviceName"),
                     QStringLiteral("kordel_trays"));
  WriteReportSetting(QStringLiteral("Labels"), QStringLiteral("PageSetup"), QStringLiteral("PaperBinName"), names[1]);
  const ObjectRef last = LoadReportPrinter(QStringLiteral("Labels"));
  ASSERT_TRUE(last);
  EXPECT_EQ(last->get(QStringLiteral("PaperBin")).toLong(), lower);
}

} // namespace
