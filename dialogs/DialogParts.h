#pragma once

#include "common/Globals.h"

#include <QString>

#include <utility>

class QEvent;
class QHBoxLayout;
class QLabel;
class QObject;
class QPushButton;
class QWidget;

namespace kordel::addin {

// A handler made fit for a signal connection: it takes none of the
// signal's arguments, and what it raises goes to the reporter under label
// and never reaches Qt's event loop.
template <class Handler> auto Guarded(QString label, Handler handler) {
  return [label = std::move(label), handler = std::move(handler)](auto &&...) {
    try {
      handler();
    } catch (...) {
      ErrorMessage(label);
    }
  };
}

// A control made with its name, by which the translation gives its caption
// and tests find it.
template <class Control> Control *named(const char *name, QWidget *parent) {
  auto *control = new Control(parent);
  control->setObjectName(QString::fromLatin1(name));
  return control;
}

// A named label whose access key moves the focus to buddy.
QLabel *NamedLabel(const char *name, QWidget *buddy, QWidget *parent);

// A push button named for the translation, which gives its caption. Only
// the default button reacts to Enter: the others take it from no one.
QPushButton *NamedButton(const char *name, QWidget *parent);

// OK and Cancel at the right-hand end of a row, OK the default button.
QHBoxLayout *OkCancelRow(QPushButton *ok, QPushButton *cancel);

// Key preview: filter sees the events of every control below form before
// the control does.
void PreviewKeys(QWidget &form, QObject *filter);

// For a press of Tab (Shift+Tab included) the state of the shift keys as a
// mask: 1 Shift, 2 Control, 4 Alt; -1 for any other event.
int TabKeyShift(const QEvent &event);

// The tab that Control+Tab (forwards) or Control+Shift+Tab (back) leads
// to among count tabs, round from the last to the first and back.
int CycledTab(int current, int count, bool back);

} // namespace kordel::addin
