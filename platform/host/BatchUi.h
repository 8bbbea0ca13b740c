#pragma once

#include "hostapi/Ui.h"

#include <cstdio>

namespace kordel::host {

// The command line's Ui, without windows. A message box writes
// "title: text" to its stream and answers with the box's default button;
// an input box and the colour dialog are cancelled; file and font dialogs
// raise 32755; showing a
// window modally raises 5; the wait cursor does nothing.
class BatchUi : public hostapi::Ui {
public:
  explicit BatchUi(std::FILE *messages = stderr) : messages_(messages) {}

  int messageBox(const QString &text, int flags, const QString &title) override;
  std::optional<QString> inputBox(const QString &prompt, const QString &title, const QString &defaultText) override;
  QString openFile(const hostapi::FileDialogRequest &request) override;
  QString saveFile(const hostapi::FileDialogRequest &request) override;
  QFont chooseFont(const QFont &initial, const QString &title) override;
  std::optional<QColor> chooseColor(const QColor &, const QString &) override { return std::nullopt; }
  void showModal(QWidget &window) override;
  void setWaitCursor(bool) override {}

private:
  std::FILE *messages_;
};

} // namespace kordel::host
