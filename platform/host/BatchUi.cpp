#include "host/BatchUi.h"

#include "core/Error.h"

#include <QWidget>

namespace kordel::host {

namespace {

[[noreturn]] void raiseNoDialog(const QString &source) {
  raiseError(ErrorNumber::DialogCancelled, source,
             QStringLiteral("There is no dialog on the command line; it counts as cancelled"));
}

} // namespace

int BatchUi::messageBox(const QString &text, int flags, const QString &title) {
  const QByteArray line = (title + QStringLiteral(": ") + text + u'\n').toUtf8();
  std::fwrite(line.constData(), 1, std::size_t(line.size()), messages_);
  std::fflush(messages_);
  return hostapi::MsgBox::defaultAnswer(flags);
}

std::optional<QString> BatchUi::inputBox(const QString &, const QString &, const QString &) { return std::nullopt; }

QString BatchUi::openFile(const hostapi::FileDialogRequest &) { raiseNoDialog(QStringLiteral("FileDialog")); }

QString BatchUi::saveFile(const hostapi::FileDialogRequest &) { raiseNoDialog(QStringLiteral("FileDialog")); }

QFont BatchUi::chooseFont(const QFont &, const QString &) { raiseNoDialog(QStringLiteral("FontDialog")); }

void BatchUi::showModal(QWidget &window) {
  raiseError(ErrorNumber::InvalidCall, QStringLiteral("Ui"),
             QStringLiteral("This needs a window; start the desktop client (%1)").arg(window.objectName()));
}

} // namespace kordel::host
