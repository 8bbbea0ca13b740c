#pragma once

#include <QString>
#include <QStringList>
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

// The access keys (the letter after "&") that more than one visible control
// of the window answers to, each as "k: Text one, Text two"; empty when
// every key reaches one control. Buttons, labels and tabs are looked at.
QStringList mnemonicClashes(const QWidget &window);

} // namespace kordel::test
