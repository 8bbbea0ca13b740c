#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace kordel::engine {

// How the engine's windows reach the user. The engine shows its preview
// modally and its messages through these two functions, so that a host
// routes them through its own user interface and tests drive them.

// Shows a window modally: returns when it has been closed.
using ModalPresenter = std::function<void(QWidget &window)>;
// Shows a message about a failure to the user.
using MessagePresenter = std::function<void(const QString &title, const QString &text)>;

// Installs the presenter of the process; an empty function brings back the
// default, which shows the window and runs an event loop until it is
// hidden or deleted.
void setModalPresenter(ModalPresenter presenter);
// Installs the message presenter; an empty function brings back the
// default, a warning box.
void setMessagePresenter(MessagePresenter presenter);

void presentModal(QWidget &window);
// Shows a window application-modal and runs an event loop until it is
// hidden or deleted: the default presenter, and the way for a host's user
// interface to show windows that are not dialogs.
void runWindowLoop(QWidget &window);
void presentMessage(const QString &title, const QString &text);

} // namespace kordel::engine
