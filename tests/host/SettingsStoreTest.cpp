#include "support/ErrorCapture.h"
#include "Unprivileged.h"

#include "host/IniFile.h"
#include "host/RegistryKeyObject.h"
#include "host/SettingsStore.h"

#include "core/Error.h"
#include "support/TempDir.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using kordel::Error;
using kordel::Variant;
using kordel::host::RegistryKeyObject;
using kordel::host::SettingsStore;
using kordel::test::errorNumber;
using kordel::test::TempDir;

namespace {

const QString kRoot = QStringLiteral("HKEY_CURRENT_USER\\Software\\Skarnholt\\Orvex\\Modules\\StandardReports");

} // namespace

TEST(SettingsStore, TwoStoresOnOneFileSeeEachOthersWrites) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("orvex/registry.ini"));
  SettingsStore first(path);
  SettingsStore second(path);

  EXPECT_FALSE(first.read(kRoot, QStringLiteral("ExportDir")).has_value());
  first.write(kRoot, QStringLiteral("ExportDir"), QStringLiteral("/home/u/out"));
  EXPECT_EQ(second.read(kRoot, QStringLiteral("exportdir")), QStringLiteral("/home/u/out"));

  // The second store writes from a stale memory; the first's value stays.
  second.write(kRoot, QStringLiteral("ImportDir"), QStringLiteral("/home/u/in"));
  first.write(kRoot, QStringLiteral("PrintProgress"), QStringLiteral("3"));
  for (SettingsStore *store : {&first, &second}) {
    EXPECT_EQ(store->read(kRoot, QStringLiteral("ExportDir")), QStringLiteral("/home/u/out"));
    EXPECT_EQ(store->read(kRoot, QStringLiteral("ImportDir")), QStringLiteral("/home/u/in"));
    EXPECT_EQ(store->read(kRoot, QStringLiteral("PrintProgress")), QStringLiteral("3"));
  }
  EXPECT_EQ(QDir(dir.file(QStringLiteral("orvex"))).entryList(QDir::Files | QDir::Hidden),
            QStringList{QStringLiteral("registry.ini")})
      << "no lock or temporary file stays behind";
}

TEST(SettingsStore, SeesAnInPlaceEditOfTheSameSize) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("registry.ini"));
  ASSERT_TRUE(kordel::test::writeFile(path, "[K]\nA=1\n"));
  SettingsStore store(path);
  EXPECT_EQ(store.read(QStringLiteral("K"), QStringLiteral("A")), QStringLiteral("1"));
  // Rewritten in place: same file, same size, most likely the same clock tick.
  ASSERT_TRUE(kordel::test::writeFile(path, "[K]\nA=2\n"));
  EXPECT_EQ(store.read(QStringLiteral("K"), QStringLiteral("A")), QStringLiteral("2"));
}

TEST(SettingsStore, KeyPathsOfTheUserSettingsSurvive) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("registry.ini"));
  const QString fieldFont = kRoot + QStringLiteral("\\Designer\\FieldFont");
  const QString pageSetup = kRoot + QStringLiteral("\\Reports\\/data/demo.db.demo.Invoices a-b\\PageSetup");
  const QString subFilters = kRoot + QString::fromUtf8("\\Reports\\/data/demo.db.demo.Fakturor=ÅÄÖ\\SubFilters");
  {
    SettingsStore store(path);
    store.write(fieldFont, QStringLiteral("Name"), QStringLiteral("DejaVu Sans"));
    store.write(fieldFont, QStringLiteral("Size"), QStringLiteral("10"));
    store.write(pageSetup, QStringLiteral("DeviceName"), QStringLiteral("Office \"Laser\""));
    store.write(subFilters, QStringLiteral("{0A1B2C3D-0000-4000-8000-000000000001}"), QStringLiteral("Open, 50%"));
    store.write(kRoot + QStringLiteral("\\Designer"), QStringLiteral("ShowToolbars"), QStringLiteral("7"));
  }
  const QString text = QString::fromUtf8(kordel::test::readFile(path));
  EXPECT_TRUE(text.contains(u'[' + fieldFont + u']')) << "key paths stay readable in the file";

  SettingsStore reopened(path);
  EXPECT_EQ(reopened.read(fieldFont.toUpper(), QStringLiteral("name")), QStringLiteral("DejaVu Sans"));
  EXPECT_EQ(reopened.read(pageSetup, QStringLiteral("DeviceName")), QStringLiteral("Office \"Laser\""));
  EXPECT_EQ(reopened.read(subFilters, QStringLiteral("{0A1B2C3D-0000-4000-8000-000000000001}")),
            QStringLiteral("Open, 50%"));
  EXPECT_FALSE(reopened.read(kRoot + QStringLiteral("\\Designer"), QStringLiteral("Name")).has_value())
      << "a value of a sub key is not a value of its parent";
}

TEST(SettingsStore, ProcessesWritingAtOnceLoseNothing) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("registry.ini"));
  constexpr int kWrites = 25;
  std::vector<pid_t> children;
  for (int child = 0; child < 2; ++child) {
    const pid_t pid = fork();
    ASSERT_GE(pid, 0);
    if (pid == 0) {
      int status = 0;
      try {
        SettingsStore store(path);
        for (int i = 0; i < kWrites; ++i)
          store.write(kRoot, QStringLiteral("p%1v%2").arg(child).arg(i), QString::number(i));
      } catch (...) {
        status = 1;
      }
      _exit(status);
    }
    children.push_back(pid);
  }
  for (pid_t pid : children) {
    int status = 0;
    ASSERT_EQ(waitpid(pid, &status, 0), pid);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
  }
  SettingsStore store(path);
  for (int child = 0; child < 2; ++child) {
    for (int i = 0; i < kWrites; ++i)
      EXPECT_EQ(store.read(kRoot, QStringLiteral("p%1v%2").arg(child).arg(i)), QString::number(i));
  }
}

TEST(SettingsStore, ACorruptFileIsReportedAndNotOverwritten) {
  TempDir dir;
  const QString path = dir.file(QStringLiteral("registry.ini"));
  const QByteArray corrupt = "[K]\nA=1\nthis line is broken\n";
  ASSERT_TRUE(kordel::test::writeFile(path, corrupt));
  SettingsStore store(path);
  EXPECT_EQ(errorNumber([&] { store.read(QStringLiteral("K"), QStringLiteral("A")); }), 321);
  EXPECT_EQ(errorNumber([&] { store.write(QStringLiteral("K"), QStringLiteral("B"), QStringLiteral("2")); }), 321);
  EXPECT_EQ(kordel::test::readFile(path), corrupt);
}

TEST(SettingsStore, AWriteThatCannotBeSavedKeepsFileAndMemory) {
  TempDir dir;
  const QString folder = dir.file(QStringLiteral("config"));
  const QString path = folder + QStringLiteral("/registry.ini");
  SettingsStore store(path);
  store.write(QStringLiteral("K"), QStringLiteral("A"), QStringLiteral("1"));
  const QByteArray before = kordel::test::readFile(path);

  ASSERT_EQ(chmod(QFile::encodeName(dir.path()).constData(), 0755), 0);
  ASSERT_EQ(chmod(QFile::encodeName(folder).constData(), 0555), 0);
  int number = 0;
  std::optional<QString> afterFailure;
  {
    kordel::test::Unprivileged user;
    if (!user.active())
      GTEST_SKIP() << "cannot drop root's rights to make a folder read-only";
    number = errorNumber([&] { store.write(QStringLiteral("K"), QStringLiteral("A"), QStringLiteral("2")); });
    afterFailure = store.read(QStringLiteral("K"), QStringLiteral("A"));
  }
  chmod(QFile::encodeName(folder).constData(), 0755);
  EXPECT_EQ(number, 70);
  EXPECT_EQ(afterFailure, QStringLiteral("1"));
  EXPECT_EQ(kordel::test::readFile(path), before);
}

TEST(RegistryKeyObject, ReadsDefaultsAndEmptyValuesAsTheSettingsExpect) {
  TempDir dir;
  auto store = std::make_shared<SettingsStore>(dir.file(QStringLiteral("registry.ini")));
  auto key = std::make_shared<RegistryKeyObject>(store);
  key->set(QStringLiteral("Key"), Variant(kRoot + QStringLiteral("\\ReportWindow")));
  EXPECT_EQ(key->get(QStringLiteral("KEY")).toString(), kRoot + QStringLiteral("\\ReportWindow"));

  EXPECT_TRUE(key->invoke(QStringLiteral("Read"), {QStringLiteral("Left")}).isEmpty());
  EXPECT_EQ(key->invoke(QStringLiteral("Read"), {QStringLiteral("WindowState"), 2}), Variant(2));

  key->invoke(QStringLiteral("Write"), {QStringLiteral("Caption"), QString()});
  key->invoke(QStringLiteral("Write"), {QStringLiteral("Width"), 1234});
  const Variant empty = key->invoke(QStringLiteral("Read"), {QStringLiteral("Caption"), QStringLiteral("default")});
  EXPECT_TRUE(empty.isString());
  EXPECT_EQ(empty.toString(), QString());
  EXPECT_EQ(key->invoke(QStringLiteral("Read"), {QStringLiteral("Width"), 0}), Variant(QStringLiteral("1234")));

  auto other = std::make_shared<RegistryKeyObject>(store);
  other->setKey(kRoot + QStringLiteral("\\REPORTWINDOW"));
  EXPECT_EQ(other->read(QStringLiteral("width"), {}).toString(), QStringLiteral("1234"));
}

TEST(RegistryKeyObject, WithoutAKeyItRefuses) {
  TempDir dir;
  RegistryKeyObject key(std::make_shared<SettingsStore>(dir.file(QStringLiteral("registry.ini"))));
  EXPECT_EQ(errorNumber([&] { key.read(QStringLiteral("x"), {}); }), 5);
  EXPECT_EQ(errorNumber([&] { key.write(QStringLiteral("x"), QStringLiteral("1")); }), 5);
  EXPECT_FALSE(QFile::exists(dir.file(QStringLiteral("registry.ini"))));
}
