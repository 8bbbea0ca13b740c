#pragma once

#include <QColor>
#include <QFont>
#include <QString>

#include <functional>
#include <optional>

class QWidget;

namespace kordel::engine {

// The dialogs the property list and the format bar open, replaceable so
// that an owner routes them through its own user interface and tests
// answer them without a modal loop. Each gives nothing when the user
// cancels.
struct DesignDialogs {
  std::function<std::optional<QColor>(const QColor &initial, QWidget *parent)> chooseColor;
  std::function<std::optional<QFont>(const QFont &initial, QWidget *parent)> chooseFont;
  // The path of a picture file to read.
  std::function<std::optional<QString>(QWidget *parent)> choosePictureFile;

  // Qt's own colour, font and file dialogs.
  static DesignDialogs standard();
};

} // namespace kordel::engine
