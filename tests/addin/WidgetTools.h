#pragma once

#include <QString>
#include <QWidget>

#include <stdexcept>
#include <string>

class QTreeWidget;
class QTreeWidgetItem;

namespace kordel::test {

// A control of a window by its name; throws when the window has none, so a
// renamed control fails the test that looks for it.
template <class T> T &child(QWidget &window, const char *name) {
  T *found = window.findChild<T *>(QString::fromLatin1(name));
  if (!found)
    throw std::runtime_error(std::string("no control ") + name);
  return *found;
}

// The node of a field tree's local path; the relations on the way are
// opened as a user opens them. Throws when there is no such node.
QTreeWidgetItem *nodeAt(QTreeWidget &tree, const QString &path);
// Makes the node of the path the tree's current one.
QTreeWidgetItem *select(QTreeWidget &tree, const QString &path);

} // namespace kordel::test
