#pragma once

#include "hostapi/Ui.h"

namespace kordel::host {

// The desktop's Ui: real Qt windows, parented to the active window.
class QtUi : public hostapi::Ui {
public:
  ~QtUi() override;

  int messageBox(const QString &text, int flags, const QString &title) override;
  std::optional<QString> inputBox(const QString &prompt, const QString &title, const QString &defaultText) override;
  QString openFile(const hostapi::FileDialogRequest &request) override;
  QString saveFile(const hostapi::FileDialogRequest &request) override;
  QFont chooseFont(const QFont &initial, const QString &title) override;
  std::optional<QColor> chooseColor(const QColor &initial, const QString &title) override;
  // A QDialog runs its own exec(); any other window is shown application
  // modal and an event loop runs until it is hidden, closed or deleted.
  void showModal(QWidget &window) override;
  // Switching on twice and off once leaves no cursor behind: the override
  // cursor is set at most once.
  void setWaitCursor(bool busy) override;

private:
  bool waitCursor_ = false;
};

} // namespace kordel::host
