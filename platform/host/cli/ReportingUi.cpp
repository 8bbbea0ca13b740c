#include "cli/ReportingUi.h"

#include <QRegularExpression>

namespace kordel::host::cli {

namespace {

// The icon part of message box flags.
constexpr int kIconMask = 0x70;

bool reportsFailure(int flags) {
  const int icon = flags & kIconMask;
  return icon == hostapi::MsgBox::Critical || icon == hostapi::MsgBox::Exclamation ||
         icon == hostapi::MsgBox::Information;
}

// The lines of a message joined into one, so that each message stays one
// line of the command's output.
QString oneLine(const QString &text) {
  static const QRegularExpression breaks(QStringLiteral("\\s*[\\r\\n]+\\s*"));
  return text.trimmed().split(breaks, Qt::SkipEmptyParts).join(QStringLiteral("; "));
}

} // namespace

ReportingUi::ReportingUi(std::shared_ptr<hostapi::Ui> messages, std::shared_ptr<hostapi::Ui> windows)
    : messages_(std::move(messages)), windows_(std::move(windows)) {}

int ReportingUi::messageBox(const QString &text, int flags, const QString &title) {
  if (reportsFailure(flags))
    ++failures_;
  return messages_->messageBox(oneLine(text), flags, title);
}

std::optional<QString> ReportingUi::inputBox(const QString &prompt, const QString &title, const QString &defaultText) {
  return windows_->inputBox(prompt, title, defaultText);
}

QString ReportingUi::openFile(const hostapi::FileDialogRequest &request) { return windows_->openFile(request); }

QString ReportingUi::saveFile(const hostapi::FileDialogRequest &request) { return windows_->saveFile(request); }

QFont ReportingUi::chooseFont(const QFont &initial, const QString &title) {
  return windows_->chooseFont(initial, title);
}

std::optional<QColor> ReportingUi::chooseColor(const QColor &initial, const QString &title) {
  return windows_->chooseColor(initial, title);
}

void ReportingUi::showModal(QWidget &window) { windows_->showModal(window); }

void ReportingUi::setWaitCursor(bool busy) { windows_->setWaitCursor(busy); }

} // namespace kordel::host::cli
