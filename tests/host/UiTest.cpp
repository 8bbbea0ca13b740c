#include "support/ErrorCapture.h"
#include "host/BatchUi.h"
#include "host/FileDialogFilter.h"
#include "host/QtUi.h"

#include "core/Error.h"
#include "support/TempDir.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QFileDialog>
#include <QInputDialog>
#include <QKeyEvent>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>

using kordel::Error;
using kordel::host::BatchUi;
using kordel::host::QtUi;
using kordel::hostapi::FileDialogRequest;
using kordel::test::errorNumber;
namespace MsgBox = kordel::hostapi::MsgBox;

namespace {

// Runs an action on the next modal window once it is open.
void whenModalOpens(std::function<void(QWidget &)> action) {
  auto *timer = new QTimer;
  timer->setInterval(5);
  QObject::connect(timer, &QTimer::timeout, [timer, action] {
    QWidget *modal = QApplication::activeModalWidget();
    if (!modal)
      return;
    timer->stop();
    timer->deleteLater();
    action(*modal);
  });
  timer->start();
}

void pressKey(QWidget &widget, int key) {
  QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier);
  QApplication::sendEvent(&widget, &press);
}

} // namespace

TEST(FileDialogFilter, TurnsPipeSeparatedFiltersIntoQtNameFilters) {
  EXPECT_EQ(kordel::host::qtNameFilters(QStringLiteral("Reports|*.xml;*.rpx|All files|*.*")),
            (QStringList{QStringLiteral("Reports (*.xml *.rpx)"), QStringLiteral("All files (*.*)")}));
  EXPECT_EQ(kordel::host::qtNameFilters(QStringLiteral("PDF files (*.pdf)|*.pdf|Text (plain)|*.txt")),
            (QStringList{QStringLiteral("PDF files (*.pdf)"), QStringLiteral("Text (plain) (*.txt)")}));
  EXPECT_TRUE(kordel::host::qtNameFilters(QString()).isEmpty());
  EXPECT_EQ(errorNumber([] { kordel::host::qtNameFilters(QStringLiteral("Reports|*.xml|All files")); }), 5);

  EXPECT_EQ(kordel::host::dialogFolder(QStringLiteral("C:\\Users\\me\\Documents\\")),
            QStringLiteral("C:/Users/me/Documents/"));
  EXPECT_EQ(kordel::host::dialogFolder(QStringLiteral("/home/me") + QChar(u'\0') + QStringLiteral("garbage")),
            QStringLiteral("/home/me"));
}

TEST(BatchUi, AnswersWithoutWindows) {
  std::FILE *stream = std::tmpfile();
  ASSERT_NE(stream, nullptr);
  BatchUi ui(stream);
  EXPECT_EQ(ui.messageBox(QStringLiteral("Saved."), MsgBox::Information, QStringLiteral("Reports")), MsgBox::Ok);
  EXPECT_EQ(ui.messageBox(QStringLiteral("Save?"), MsgBox::YesNoCancel | MsgBox::DefaultButton3, QStringLiteral("R")),
            MsgBox::Cancel);
  EXPECT_EQ(ui.messageBox(QStringLiteral("Retry?"), MsgBox::RetryCancel | MsgBox::DefaultButton2, QStringLiteral("R")),
            MsgBox::Cancel);
  EXPECT_EQ(ui.messageBox(QStringLiteral("Go on?"), MsgBox::YesNo | MsgBox::Question, QStringLiteral("R")),
            MsgBox::Yes);
  EXPECT_EQ(ui.messageBox(QString::fromUtf8("Två%0rader"), MsgBox::AbortRetryIgnore | MsgBox::DefaultButton2,
                          QStringLiteral("R")),
            MsgBox::Retry);

  std::rewind(stream);
  char buffer[512] = {};
  const std::size_t size = std::fread(buffer, 1, sizeof buffer - 1, stream);
  std::fclose(stream);
  EXPECT_EQ(QString::fromUtf8(buffer, qsizetype(size)),
            QString::fromUtf8("Reports: Saved.\nR: Save?\nR: Retry?\nR: Go on?\nR: Två%0rader\n"));

  EXPECT_FALSE(ui.inputBox(QStringLiteral("Name?"), QStringLiteral("R"), QStringLiteral("x")).has_value());
  EXPECT_EQ(errorNumber([&] { ui.openFile(FileDialogRequest{}); }), 32755);
  EXPECT_EQ(errorNumber([&] { ui.saveFile(FileDialogRequest{}); }), 32755);
  EXPECT_EQ(errorNumber([&] { ui.chooseFont(QFont(), QStringLiteral("Font")); }), 32755);
  QWidget window;
  EXPECT_EQ(errorNumber([&] { ui.showModal(window); }), 5);
}

TEST(QtUi, MessageBoxAnswersWithTheButtonPressed) {
  QtUi ui;
  whenModalOpens([](QWidget &window) {
    auto &box = dynamic_cast<QMessageBox &>(window);
    EXPECT_EQ(box.icon(), QMessageBox::Question);
    EXPECT_EQ(box.windowTitle(), QStringLiteral("Reports"));
    EXPECT_EQ(box.buttons().size(), 3);
    pressKey(box, Qt::Key_Return); // the default button
  });
  EXPECT_EQ(ui.messageBox(QStringLiteral("Save changes?"),
                          MsgBox::YesNoCancel | MsgBox::Question | MsgBox::DefaultButton2, QStringLiteral("Reports")),
            MsgBox::No);

  whenModalOpens([](QWidget &window) {
    auto &box = dynamic_cast<QMessageBox &>(window);
    EXPECT_EQ(box.icon(), QMessageBox::Critical);
    box.button(QMessageBox::Retry)->click();
  });
  EXPECT_EQ(ui.messageBox(QStringLiteral("Failed"), MsgBox::RetryCancel | MsgBox::Critical, QStringLiteral("R")),
            MsgBox::Retry);

  whenModalOpens([](QWidget &window) {
    EXPECT_EQ(dynamic_cast<QMessageBox &>(window).icon(), QMessageBox::Warning);
    pressKey(window, Qt::Key_Escape);
  });
  EXPECT_EQ(ui.messageBox(QStringLiteral("Careful"), MsgBox::OkCancel | MsgBox::Exclamation, QStringLiteral("R")),
            MsgBox::Cancel);
}

TEST(QtUi, InputBoxGivesTheTextOrNothing) {
  QtUi ui;
  whenModalOpens([](QWidget &window) {
    auto &dialog = dynamic_cast<QInputDialog &>(window);
    EXPECT_EQ(dialog.textValue(), QStringLiteral("proposed"));
    dialog.setTextValue(QStringLiteral("typed"));
    dialog.accept();
  });
  EXPECT_EQ(ui.inputBox(QStringLiteral("Name"), QStringLiteral("R"), QStringLiteral("proposed")),
            QStringLiteral("typed"));

  whenModalOpens([](QWidget &window) { dynamic_cast<QDialog &>(window).reject(); });
  EXPECT_FALSE(ui.inputBox(QStringLiteral("Name"), QStringLiteral("R"), QString()).has_value());
}

TEST(QtUi, FileDialogsShowTheFilterAndRaiseOnCancel) {
  kordel::test::TempDir dir;
  const QString existing = dir.file(QStringLiteral("layout.xml"));
  ASSERT_TRUE(kordel::test::writeFile(existing, "<x/>"));
  QtUi ui;
  FileDialogRequest request;
  request.title = QStringLiteral("Export");
  request.folder = dir.path();
  request.filter = QStringLiteral("PDF|*.pdf|Layouts|*.xml;*.rpx");
  request.filterIndex = 2;

  whenModalOpens([](QWidget &window) {
    auto &dialog = dynamic_cast<QFileDialog &>(window);
    EXPECT_EQ(dialog.windowTitle(), QStringLiteral("Export"));
    EXPECT_EQ(dialog.nameFilters(),
              (QStringList{QStringLiteral("PDF (*.pdf)"), QStringLiteral("Layouts (*.xml *.rpx)")}));
    EXPECT_EQ(dialog.selectedNameFilter(), QStringLiteral("Layouts (*.xml *.rpx)"));
    dialog.reject();
  });
  EXPECT_EQ(errorNumber([&] { ui.saveFile(request); }), 32755);

  whenModalOpens([existing](QWidget &window) {
    auto &dialog = dynamic_cast<QFileDialog &>(window);
    dialog.selectFile(existing);
    static_cast<QDialog &>(dialog).accept();
  });
  EXPECT_EQ(ui.openFile(request), existing);
}

TEST(QtUi, FontDialogCancelRaises) {
  QtUi ui;
  whenModalOpens([](QWidget &window) { dynamic_cast<QDialog &>(window).reject(); });
  EXPECT_EQ(errorNumber([&] { ui.chooseFont(QFont(), QStringLiteral("Font")); }), 32755);
}

TEST(QtUi, ShowModalReturnsWhenTheWindowCloses) {
  QtUi ui;
  QWidget window;
  whenModalOpens([](QWidget &modal) { modal.close(); });
  ui.showModal(window);
  EXPECT_FALSE(window.isVisible());

  auto *deleting = new QWidget;
  deleting->setAttribute(Qt::WA_DeleteOnClose);
  whenModalOpens([](QWidget &modal) { modal.close(); });
  ui.showModal(*deleting);

  QDialog dialog;
  whenModalOpens([](QWidget &modal) { dynamic_cast<QDialog &>(modal).accept(); });
  ui.showModal(dialog);
  EXPECT_EQ(dialog.result(), QDialog::Accepted);
}
