#include "WidgetTools.h"

#include <QTreeWidget>

namespace kordel::test {

QTreeWidgetItem *nodeAt(QTreeWidget &tree, const QString &path) {
  QTreeWidgetItem *node = nullptr;
  for (const QString &step : path.split(u'.')) {
    if (node)
      node->setExpanded(true);
    const int count = node ? node->childCount() : tree.topLevelItemCount();
    QTreeWidgetItem *next = nullptr;
    for (int i = 0; i < count && !next; ++i) {
      QTreeWidgetItem *candidate = node ? node->child(i) : tree.topLevelItem(i);
      if (candidate->text(0) == step)
        next = candidate;
    }
    if (!next)
      throw std::runtime_error("no node " + path.toStdString());
    node = next;
  }
  return node;
}

QTreeWidgetItem *select(QTreeWidget &tree, const QString &path) {
  QTreeWidgetItem *node = nodeAt(tree, path);
  tree.setCurrentItem(node);
  tree.scrollToItem(node);
  return node;
}

} // namespace kordel::test
