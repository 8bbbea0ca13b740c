#include "host/QtUi.h"

#include "engine/preview/Presenters.h"
#include "host/FileDialogFilter.h"

#include "core/Error.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace kordel::host {

namespace {

namespace MsgBox = hostapi::MsgBox;

// The common dialog flag that asks before a save replaces a file.
constexpr int kOverwritePrompt = 2;

QMessageBox::StandardButton standardButton(int answer) {
  switch (answer) {
  case MsgBox::Ok: return QMessageBox::Ok;
  case MsgBox::Cancel: return QMessageBox::Cancel;
  case MsgBox::Abort: return QMessageBox::Abort;
  case MsgBox::Retry: return QMessageBox::Retry;
  case MsgBox::Ignore: return QMessageBox::Ignore;
  case MsgBox::Yes: return QMessageBox::Yes;
  default: return QMessageBox::No;
  }
}

QMessageBox::Icon icon(int flags) {
  switch (flags & 0x70) {
  case MsgBox::Critical: return QMessageBox::Critical;
  case MsgBox::Question: return QMessageBox::Question;
  case MsgBox::Exclamation: return QMessageBox::Warning;
  case MsgBox::Information: return QMessageBox::Information;
  default: return QMessageBox::NoIcon;
  }
}

// What Escape answers: Cancel where there is one, the only button of a
// one-button box, else nothing (Yes/No and Abort/Retry/Ignore must be
// answered).
int escapeAnswer(const std::vector<int> &answers) {
  for (int answer : answers) {
    if (answer == MsgBox::Cancel)
      return answer;
  }
  return answers.size() == 1 ? answers.front() : 0;
}

[[noreturn]] void raiseCancelled(const QString &source) { raiseError(ErrorNumber::DialogCancelled, source); }

QString runFileDialog(const hostapi::FileDialogRequest &request, QFileDialog::AcceptMode mode) {
  QFileDialog dialog(QApplication::activeWindow(), request.title, dialogFolder(request.folder));
  dialog.setAcceptMode(mode);
  dialog.setFileMode(mode == QFileDialog::AcceptOpen ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
  if (mode == QFileDialog::AcceptSave && !(request.flags & kOverwritePrompt))
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
  const QStringList filters = qtNameFilters(request.filter);
  if (!filters.isEmpty()) {
    dialog.setNameFilters(filters);
    const int index = request.filterIndex >= 1 && request.filterIndex <= filters.size() ? request.filterIndex : 1;
    dialog.selectNameFilter(filters[index - 1]);
  }
  if (!request.fileName.isEmpty())
    dialog.selectFile(request.fileName);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
    raiseCancelled(QStringLiteral("FileDialog"));
  return dialog.selectedFiles().front();
}

} // namespace

QtUi::~QtUi() {
  if (waitCursor_)
    QApplication::restoreOverrideCursor();
}

int QtUi::messageBox(const QString &text, int flags, const QString &title) {
  QMessageBox box(icon(flags), title, text, QMessageBox::NoButton, QApplication::activeWindow());
  const std::vector<int> answers = MsgBox::buttons(flags);
  for (int answer : answers)
    box.addButton(standardButton(answer));
  box.setDefaultButton(standardButton(MsgBox::defaultAnswer(flags)));
  const int onEscape = escapeAnswer(answers);
  if (onEscape)
    box.setEscapeButton(standardButton(onEscape));
  box.exec();
  const QAbstractButton *clicked = box.clickedButton();
  for (int answer : answers) {
    if (clicked && clicked == box.button(standardButton(answer)))
      return answer;
  }
  // Closed without a button, which only a box with an escape answer allows.
  return onEscape ? onEscape : MsgBox::defaultAnswer(flags);
}

std::optional<QString> QtUi::inputBox(const QString &prompt, const QString &title, const QString &defaultText) {
  QInputDialog dialog(QApplication::activeWindow());
  dialog.setWindowTitle(title);
  dialog.setLabelText(prompt);
  dialog.setTextValue(defaultText);
  if (dialog.exec() != QDialog::Accepted)
    return std::nullopt;
  return dialog.textValue();
}

QString QtUi::openFile(const hostapi::FileDialogRequest &request) {
  return runFileDialog(request, QFileDialog::AcceptOpen);
}

QString QtUi::saveFile(const hostapi::FileDialogRequest &request) {
  return runFileDialog(request, QFileDialog::AcceptSave);
}

QFont QtUi::chooseFont(const QFont &initial, const QString &title) {
  bool chosen = false;
  const QFont font = QFontDialog::getFont(&chosen, initial, QApplication::activeWindow(), title);
  if (!chosen)
    raiseCancelled(QStringLiteral("FontDialog"));
  return font;
}

std::optional<QColor> QtUi::chooseColor(const QColor &initial, const QString &title) {
  const QColor color = QColorDialog::getColor(initial, QApplication::activeWindow(), title);
  return color.isValid() ? std::optional<QColor>(color) : std::nullopt;
}

void QtUi::showModal(QWidget &window) {
  if (auto *dialog = qobject_cast<QDialog *>(&window)) {
    dialog->exec();
    return;
  }
  engine::runWindowLoop(window);
}

void QtUi::setWaitCursor(bool busy) {
  if (busy == waitCursor_)
    return;
  if (busy)
    QApplication::setOverrideCursor(Qt::WaitCursor);
  else
    QApplication::restoreOverrideCursor();
  waitCursor_ = busy;
}

} // namespace kordel::host
