#include "HostedFixture.h"

#include "common/ApplicationManager.h"
#include "common/Settings.h"
#include "core/Error.h"
#include "hostapi/Database.h"

using namespace kordel;
using namespace kordel::addin;
using kordel::test::HostedTest;

namespace {

// The identity of an open database: the two name strings the report
// settings are kept under.
class NamedDatabase : public hostapi::Database {
public:
  NamedDatabase(QString location, QString name) : location_(std::move(location)), name_(std::move(name)) {}
  QString location() const override { return location_; }
  QString name() const override { return name_; }

private:
  QString location_;
  QString name_;
};

} // namespace

using SettingsTest = HostedTest;

TEST_F(SettingsTest, ValuesComeBackExactlyAsWritten) {
  const QString key = kSettingsRoot + "\\Designer";
  const QStringList values = {"",
                              "plain",
                              "a,b;c=d",
                              "100%",
                              R"(C:\Users\ann\Documents\)",
                              "\"quoted\" 'single'",
                              "two\r\nlines\nand\rmore",
                              "  padded  ",
                              QString::fromUtf8("Åsa Öberg, Žluťoučký kůň")};
  for (int i = 0; i < values.size(); ++i)
    WriteSetting(key, QString("Value%1").arg(i), values[i]);

  // A second store on the same file reads what the first one wrote.
  auto other = std::make_shared<host::HostApplication>(std::make_shared<host::SettingsStore>(dir.file("registry.ini")),
                                                       std::make_shared<host::FileLog>(dir.file("orvex.log")), "en");
  Disconnect();
  Connect(other);
  for (int i = 0; i < values.size(); ++i)
    EXPECT_EQ(ReadSetting(key, QString("Value%1").arg(i), Variant()).toString(), values[i]) << i;
}

TEST_F(SettingsTest, DefaultsApplyOnlyToAbsentValues) {
  const QString key = kSettingsRoot;
  EXPECT_TRUE(ReadSetting(key, "PrintProgress", Variant()).isEmpty());
  EXPECT_EQ(ReadSetting(key, "PrintProgress", 0).toLong(), 0);
  WriteSetting(key, "PrintProgress", "42");
  EXPECT_EQ(ReadSetting(key, "PrintProgress", 0).toLong(), 42);
  WriteSetting(key, "ExportDir", "");
  EXPECT_EQ(ReadSetting(key, "ExportDir", Variant()).toString(), "");
}

TEST_F(SettingsTest, FontsRoundTripAndABadValueGivesTheDefaultFont) {
  const QString key = kSettingsRoot + "\\Designer\\FieldFont";
  QFont font(QStringLiteral("DejaVu Serif"), 11);
  font.setBold(true);
  font.setStrikeOut(true);
  WriteFont(key, font);
  const QFont back = ReadFont(key);
  EXPECT_EQ(back.family(), "DejaVu Serif");
  EXPECT_EQ(back.pointSize(), 11);
  EXPECT_TRUE(back.bold());
  EXPECT_FALSE(back.italic());
  EXPECT_FALSE(back.underline());
  EXPECT_TRUE(back.strikeOut());

  WriteSetting(key, "Size", "large");
  const QFont fallback = ReadFont(key);
  EXPECT_EQ(fallback.family(), NewFont().family());
  EXPECT_EQ(fallback.pointSize(), NewFont().pointSize());
  EXPECT_FALSE(fallback.bold());
  EXPECT_TRUE(ui->boxes.empty());

  // Fractions of a point are lost, as the size is kept whole.
  WriteFont(key, QFont(QStringLiteral("DejaVu Sans"), 9));
  WriteSetting(key, "Size", "9.5");
  EXPECT_EQ(ReadFont(key).pointSize(), 10);
}

TEST_F(SettingsTest, ReportSettingsAreKeptPerDatabase) {
  app->setDatabase(std::make_shared<NamedDatabase>("/data/crm.db", "crm"));
  WriteReportSetting("Customers", "PageSetup", "DeviceName", "Office");
  WriteReportSetting("a\\b", "PageSetup", "Copies", 3);

  app->setDatabase(std::make_shared<NamedDatabase>("/data/other.db", "crm"));
  EXPECT_TRUE(ReadReportSetting("Customers", "PageSetup", "DeviceName", Variant()).isEmpty());
  WriteReportSetting("Customers", "PageSetup", "DeviceName", "Warehouse");

  app->setDatabase(std::make_shared<NamedDatabase>("/data/crm.db", "crm"));
  EXPECT_EQ(ReadReportSetting("Customers", "PageSetup", "DeviceName", "").toString(), "Office");
  EXPECT_EQ(ReadReportSetting("a\\b", "PageSetup", "Copies", 1).toString(), "3");

  // The backslash of the report name cannot open a subkey of its own.
  const QString file = QString::fromUtf8(kordel::test::readFile(dir.file("registry.ini")));
  EXPECT_TRUE(file.contains("StandardReports\\Reports\\/data/crm.db.crm.a-b\\PageSetup")) << file.toStdString();
  EXPECT_EQ(ReportKey("x"), "/data/crm.db.crm.x");
}

TEST_F(SettingsTest, ReportSettingsNeedAnOpenDatabase) {
  EXPECT_THROW(ReadReportSetting("Customers", "PageSetup", "DeviceName", ""), Error);
}
