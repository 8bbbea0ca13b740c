#include "WidgetTools.h"

#include <QAbstractButton>
#include <QLabel>
#include <QMap>
#include <QTabBar>
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

namespace {

// The access key of a caption, lower case; a null character for none.
QChar accessKey(const QString &text) {
  for (qsizetype i = 0; i + 1 < text.size(); ++i) {
    if (text[i] != u'&')
      continue;
    if (text[i + 1] != u'&')
      return text[i + 1].toLower();
    ++i; // "&&" is a plain ampersand
  }
  return {};
}

} // namespace

QStringList mnemonicClashes(const QWidget &window) {
  QMap<QChar, QStringList> owners;
  const auto note = [&](const QString &text) {
    if (const QChar key = accessKey(text); !key.isNull())
      owners[key] << QString(text).remove(u'&');
  };
  for (const QWidget *control : window.findChildren<QWidget *>()) {
    if (!control->isVisibleTo(&window))
      continue;
    if (const auto *button = qobject_cast<const QAbstractButton *>(control))
      note(button->text());
    else if (const auto *label = qobject_cast<const QLabel *>(control))
      note(label->text());
    else if (const auto *tabs = qobject_cast<const QTabBar *>(control))
      for (int i = 0; i < tabs->count(); ++i)
        note(tabs->tabText(i));
  }
  QStringList clashes;
  for (auto owner = owners.cbegin(); owner != owners.cend(); ++owner)
    if (owner.value().size() > 1)
      clashes << QStringLiteral("%1: %2").arg(owner.key(), owner.value().join(QStringLiteral(", ")));
  return clashes;
}

} // namespace kordel::test
