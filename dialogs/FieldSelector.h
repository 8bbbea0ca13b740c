#pragma once

#include "core/Dictionary.h"
#include "hostapi/Classes.h"

#include <QHash>
#include <QStringList>
#include <QWidget>

#include <cstdint>
#include <memory>

class QTreeWidget;
class QTreeWidgetItem;

namespace kordel::addin {

// The tree in which the user picks a field of a class. The class's fields
// are the root level; a relation field opens to the fields of the class at
// its other end, and so on without end. Nothing is built ahead: a relation
// that can be opened holds one placeholder child until the user opens it,
// so a data model whose relations run in circles costs one level a click.
// Each level lists its plain fields alphabetically, then its relations.
//
// A node's text is the field's local name, so the path of a node is the
// local path; the internal path is translated from it on each read. The
// tree keeps no field objects.
class FieldSelector : public QWidget {
  Q_OBJECT

public:
  // The text of the child that gives a closed relation its expand mark.
  static const QString kPlaceholder;

  explicit FieldSelector(QWidget *parent = nullptr);

  // The fields of the root level.
  void SetFields(std::shared_ptr<hostapi::Fields> fields);
  // Arrays of field type codes: the only types to show, or the types not
  // to show. Setting one empties the other, even when the value is no
  // array.
  void SetExcludeFieldTypes(const Variant &array);
  void SetIncludeFieldTypes(const Variant &array);
  // Which relations may be chosen: 0 both kinds, 1 only to one, 2 only to
  // many, 3 none.
  void SetLinkSelect(std::int32_t value) { linkSelect_ = value; }
  // Which relations open: 0 both kinds, 1 only to one, 2 only to many, any
  // other value none; a relation that does not open is a plain entry.
  void SetLinkStyle(std::int32_t value) { linkStyle_ = value; }
  // Whether a single click chooses, as a double click always does.
  void SetSingleClick(bool value) { singleClick_ = value; }

  // The field of the selected node; nullptr when no node is selected.
  std::shared_ptr<hostapi::Field> Field() const;
  // The selected node's path by local names, "" when none is selected.
  QString FullLocalPath() const;
  // The selected node's path by the fields' own names, "" when none is
  // selected.
  QString FullPath() const;

  // Fills the root level. The tree is not emptied first: it is called once,
  // after the properties are set.
  void ShowFields();
  // Fills the children of a relation node from the class at its other end.
  void ListLinkedFields(QTreeWidgetItem *node);
  // Internal path to local path of the fields of a level: the children of
  // the selected node (a closed relation is listed first), or the selected
  // node's own level when it has no children. Relations only when
  // includeLinks. Never nullptr.
  std::shared_ptr<Dictionary> GetFieldsOnCurrentPath(bool includeLinks);

  // Handlers.
  void TvwFields_Expand(QTreeWidgetItem *node);
  // The pick at a point of the tree's viewport: a node there is tested and
  // chosen; no node there, nothing happens.
  void OnSelect(const QPoint &point);
  // Space and Enter choose the selected node; the keys that would fill the
  // whole tree ahead are refused. True when the key was used.
  bool TvwFields_KeyDown(int key);
  void TvwFields_NodeClick();

signals:
  // The user has chosen the field of the selected node.
  void FieldSelected();
  // A node of the tree was clicked.
  void FieldSelChange();

protected:
  bool eventFilter(QObject *watched, QEvent *event) override;

private:
  QTreeWidgetItem *SelectedNode() const;
  std::shared_ptr<hostapi::Field> FieldOfNode(const QTreeWidgetItem *node) const;
  bool IsShown(const hostapi::Field &field) const;
  bool Opens(const hostapi::Field &field) const;
  bool MayChoose(const hostapi::Field &field) const;
  void SortLevel(hostapi::Fields &level);
  void AddLevel(QTreeWidgetItem *parent);
  // Raises FieldSelected when the selected node may be chosen.
  void Choose();
  bool TestFieldBeforeEvent();
  static void CopyFieldTypes(const Variant &value, QHash<QString, int> &types);

  QTreeWidget *TvwFields;
  // The entries of the level being built, sorted: plain fields, and the
  // relations that open.
  QStringList LbFields;
  QStringList LbLinkFields;

  std::shared_ptr<hostapi::Fields> fields_;
  QHash<QString, int> excludeTypes_; // type code as text -> code
  QHash<QString, int> includeTypes_;
  std::int32_t linkSelect_ = 0;
  std::int32_t linkStyle_ = 0;
  bool singleClick_ = false;
  bool releaseEndsDoubleClick_ = false;
};

} // namespace kordel::addin
