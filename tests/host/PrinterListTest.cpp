#include "support/PrivateCupsd.h"

#include "host/HostToolsObject.h"
#include "host/PrinterList.h"

#include "core/Error.h"
#include "hostapi/Printers.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <cups/cups.h>

using kordel::Error;
using kordel::Variant;
using kordel::host::PrinterInfo;
using kordel::host::PrinterList;
using kordel::test::TempDir;

namespace {

// Points the print client of this process at a server for one test.
class ScopedCupsServer {
public:
  explicit ScopedCupsServer(const QString &server)
      : had_(qEnvironmentVariableIsSet("CUPS_SERVER")), old_(qgetenv("CUPS_SERVER")) {
    qputenv("CUPS_SERVER", server.toUtf8());
    cupsSetServer(nullptr); // forget the server read before
  }
  ~ScopedCupsServer() {
    if (had_)
      qputenv("CUPS_SERVER", old_);
    else
      qunsetenv("CUPS_SERVER");
    cupsSetServer(nullptr);
  }

private:
  bool had_;
  QByteArray old_;
};

QStringList namesByForEach(PrinterList &list) {
  QStringList names;
  auto walk = list.enumerate();
  Variant printer;
  while (walk->next(printer))
    names << printer.toObject()->get(QStringLiteral("Name")).toString();
  return names;
}

} // namespace

const QString kBuiltIn = QString::fromUtf8(kordel::hostapi::kBuiltInPdfPrinterName);

TEST(PrinterList, WithoutAPrintServerTheBuiltInPdfPrinterIsTheOneAndDefault) {
  TempDir dir;
  ScopedCupsServer server(dir.file(QStringLiteral("nobody-listens.sock")));
  const auto list = PrinterList::fromSystem();
  EXPECT_EQ(list->get(QStringLiteral("Count")).toLong(), 1);
  EXPECT_EQ(namesByForEach(*list), QStringList{kBuiltIn});
  EXPECT_TRUE(list->item(Variant(1))->isDefault());
  EXPECT_EQ(list->defaultPrinterName(), kBuiltIn);
  EXPECT_EQ(kordel::host::HostToolsObject().defaultPrinterName(), kBuiltIn);
  EXPECT_THROW(list->invoke(QStringLiteral("Item"), {2}), Error);
}

TEST(PrinterList, ListsTheQueuesOfThePrintServer) {
  TempDir dir;
  kordel::test::PrivateCupsd cupsd(dir.path());
  if (!cupsd.running())
    GTEST_SKIP() << "no print server for the test: " << cupsd.failure().toStdString();
  QString error;
  ASSERT_TRUE(cupsd.addQueue(QStringLiteral("kordeltest"), error)) << error.toStdString();
  ASSERT_TRUE(cupsd.addQueue(QStringLiteral("kordel_second"), error)) << error.toStdString();
  ASSERT_TRUE(cupsd.setDefault(QStringLiteral("kordel_second"), error)) << error.toStdString();

  ScopedCupsServer server(cupsd.socket());
  const auto list = PrinterList::fromSystem();
  const QStringList names = namesByForEach(*list);
  EXPECT_TRUE(names.contains(QStringLiteral("kordeltest"))) << names.join(u',').toStdString();
  EXPECT_TRUE(names.contains(QStringLiteral("kordel_second")));
  EXPECT_EQ(list->count(), names.size());
  EXPECT_EQ(names.last(), kBuiltIn) << "the built-in printer comes last";
  EXPECT_FALSE(list->item(Variant(kBuiltIn))->isDefault()) << "a queue is the default";

  const auto byName =
      kordel::objectAs<PrinterInfo>(list->invoke(QStringLiteral("Item"), {QStringLiteral("KORDELTEST")}));
  ASSERT_TRUE(byName);
  EXPECT_EQ(byName->name(), QStringLiteral("kordeltest"));
  EXPECT_FALSE(byName->get(QStringLiteral("IsDefault")).toBool());
  EXPECT_EQ(kordel::objectAs<PrinterInfo>(list->invoke(QStringLiteral("Item"), {1}))->name(), names.front());
  EXPECT_THROW(list->item(Variant(list->count() + 1)), Error);

  EXPECT_EQ(list->defaultPrinterName(), QStringLiteral("kordel_second"));
  EXPECT_EQ(kordel::host::HostToolsObject().defaultPrinterName(), QStringLiteral("kordel_second"));
}
