#pragma once

#include "hostapi/Ui.h"

#include <memory>

namespace kordel::host::cli {

// The Ui of one report run on the command line. Message boxes go to the
// messages Ui (the command line's, which writes them to standard error),
// each on one line; windows, dialogs and the wait cursor go to the windows
// Ui. It counts the boxes that report a failure: the add-in reports every
// failure of a run as an information box (a message for the user) or a
// warning, and never raises it to the caller, so these boxes are how the
// command learns that a run did not do its work.
class ReportingUi : public hostapi::Ui {
public:
  ReportingUi(std::shared_ptr<hostapi::Ui> messages, std::shared_ptr<hostapi::Ui> windows);

  int failures() const { return failures_; }

  int messageBox(const QString &text, int flags, const QString &title) override;
  std::optional<QString> inputBox(const QString &prompt, const QString &title, const QString &defaultText) override;
  QString openFile(const hostapi::FileDialogRequest &request) override;
  QString saveFile(const hostapi::FileDialogRequest &request) override;
  QFont chooseFont(const QFont &initial, const QString &title) override;
  std::optional<QColor> chooseColor(const QColor &initial, const QString &title) override;
  void showModal(QWidget &window) override;
  void setWaitCursor(bool busy) override;

private:
  std::shared_ptr<hostapi::Ui> messages_;
  std::shared_ptr<hostapi::Ui> windows_;
  int failures_ = 0;
};

} // namespace kordel::host::cli
