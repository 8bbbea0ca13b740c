#pragma once

#include "common/Globals.h"

#include <QString>

#include <utility>

class QHBoxLayout;
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

// A push button named for the translation, which gives its caption. Only
// the default button reacts to Enter: the others take it from no one.
QPushButton *NamedButton(const char *name, QWidget *parent);

// OK and Cancel at the right-hand end of a row, OK the default button.
QHBoxLayout *OkCancelRow(QPushButton *ok, QPushButton *cancel);

} // namespace kordel::addin
