#include "desktop/DesktopFeedback.h"

#include "core/Error.h"
#include "hostapi/Ui.h"

#include <QApplication>

#include <exception>

namespace kordel::host::desktop {

WaitCursor::WaitCursor() { QApplication::setOverrideCursor(Qt::WaitCursor); }

WaitCursor::~WaitCursor() { QApplication::restoreOverrideCursor(); }

void tellFailure(const QString &what, const QString &title) {
  QString reason;
  try {
    throw;
  } catch (const Error &error) {
    reason = error.description();
  } catch (const std::exception &error) {
    reason = QString::fromLocal8Bit(error.what());
  } catch (...) {
  }
  hostapi::ui().messageBox(reason.isEmpty() ? what : QStringLiteral("%1\n\n%2").arg(what, reason),
                           hostapi::MsgBox::Exclamation, title);
}

} // namespace kordel::host::desktop
