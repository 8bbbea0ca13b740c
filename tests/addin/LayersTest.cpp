// The add-in's folders depend one way: each includes only from the folders
// below it, and none but addin/ itself from addin/, where the entry lives.

#include <QDirIterator>
#include <QFile>
#include <QMap>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace {

// Each folder with the folders it may include from, itself among them.
const QMap<QString, QStringList> kMayInclude{
    {QStringLiteral("common"), {QStringLiteral("common")}},
    {QStringLiteral("document"), {QStringLiteral("common"), QStringLiteral("document")}},
    {QStringLiteral("data"), {QStringLiteral("common"), QStringLiteral("document"), QStringLiteral("data")}},
    {QStringLiteral("dialogs"),
     {QStringLiteral("common"), QStringLiteral("document"), QStringLiteral("data"), QStringLiteral("dialogs")}},
    {QStringLiteral("design"),
     {QStringLiteral("common"), QStringLiteral("document"), QStringLiteral("data"), QStringLiteral("dialogs"),
      QStringLiteral("scriptio"), QStringLiteral("design")}},
    {QStringLiteral("scriptio"), {QStringLiteral("common"), QStringLiteral("document"), QStringLiteral("scriptio")}},
    {QStringLiteral("runtime"),
     {QStringLiteral("common"), QStringLiteral("document"), QStringLiteral("data"), QStringLiteral("runtime")}},
};

TEST(AddinLayersTest, EachFolderIncludesOnlyFromTheFoldersBelowIt) {
  const QStringList layers = QStringList(kMayInclude.keys()) << QStringLiteral("addin");
  const QRegularExpression include(QStringLiteral(R"(^\s*#\s*include\s+"(\w+)/)"), QRegularExpression::MultilineOption);
  int files = 0;
  for (auto folder = kMayInclude.cbegin(); folder != kMayInclude.cend(); ++folder) {
    QDirIterator it(QStringLiteral(KORDEL_SOURCE_DIR "/") + folder.key(),
                    {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
      QFile file(it.next());
      ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
      ++files;
      const QString text = QString::fromUtf8(file.readAll());
      for (auto match = include.globalMatch(text); match.hasNext();) {
        const QString target = match.next().captured(1);
        EXPECT_TRUE(!layers.contains(target) || folder.value().contains(target))
            << file.fileName().toStdString() << " includes from " << target.toStdString() << "/";
      }
    }
  }
  EXPECT_GT(files, 20) << "the folders were found";
}

} // namespace
