#pragma once

#include <QColor>
#include <QFont>
#include <QString>

#include <optional>

namespace kordel::engine {

// The dialogs the property list and the format bar open, through the host's
// Ui, so that the desktop shows its own and tests answer them. Each gives
// nothing when the user cancels; without an installed Ui they raise 5.
std::optional<QColor> askColor(const QColor &initial, const QString &title);
std::optional<QFont> askFont(const QFont &initial, const QString &title);
// The path of a picture file to read.
std::optional<QString> askPictureFile();

} // namespace kordel::engine
