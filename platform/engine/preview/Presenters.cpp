#include "engine/preview/Presenters.h"

#include <QEvent>
#include <QEventLoop>
#include <QMessageBox>
#include <QPointer>
#include <QWidget>

namespace kordel::engine {

namespace {

// Quits a loop when the window it watches is hidden; closing hides it.
class HideWatcher : public QObject {
public:
  explicit HideWatcher(QEventLoop &loop) : loop_(loop) {}
  bool eventFilter(QObject *, QEvent *event) override {
    if (event->type() == QEvent::Hide)
      loop_.quit();
    return false;
  }

private:
  QEventLoop &loop_;
};

void warningBox(const QString &title, const QString &text) { QMessageBox::warning(nullptr, title, text); }

ModalPresenter &modalPresenter() {
  static ModalPresenter presenter = runWindowLoop;
  return presenter;
}

MessagePresenter &messagePresenter() {
  static MessagePresenter presenter = warningBox;
  return presenter;
}

} // namespace

void setModalPresenter(ModalPresenter presenter) {
  modalPresenter() = presenter ? std::move(presenter) : ModalPresenter(runWindowLoop);
}

void setMessagePresenter(MessagePresenter presenter) {
  messagePresenter() = presenter ? std::move(presenter) : MessagePresenter(warningBox);
}

void presentModal(QWidget &window) {
  // A copy, so that a presenter that installs another one while it runs
  // does not pull itself from under its own feet.
  const ModalPresenter presenter = modalPresenter();
  presenter(window);
}

void presentMessage(const QString &title, const QString &text) {
  const MessagePresenter presenter = messagePresenter();
  presenter(title, text);
}

void runWindowLoop(QWidget &window) {
  QEventLoop loop;
  HideWatcher watcher(loop);
  QPointer<QWidget> guarded(&window);
  QObject::connect(&window, &QObject::destroyed, &loop, &QEventLoop::quit);
  window.installEventFilter(&watcher);
  window.setWindowModality(Qt::ApplicationModal);
  window.show();
  if (window.isVisible())
    loop.exec();
  if (guarded)
    guarded->removeEventFilter(&watcher);
}

} // namespace kordel::engine
