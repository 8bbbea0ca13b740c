#include "host/FieldDialogWindow.h"

#include "host/HostPaths.h"
#include "host/IniTranslator.h"

#include "hostapi/FieldTypes.h"

#include "core/Error.h"

#include <QCollator>
#include <QHBoxLayout>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace kordel::host {

namespace {

// Marks a relation that has not been opened yet: it gives the node its
// expand mark, and no field has an empty local name.
const QString kClosed;

bool isClosed(const QTreeWidgetItem *node) { return node->childCount() == 1 && node->child(0)->text(0) == kClosed; }

QString localPath(const QTreeWidgetItem *node) {
  QStringList steps;
  for (const QTreeWidgetItem *step = node; step; step = step->parent())
    steps.prepend(step->text(0));
  return steps.join(u'.');
}

// The dialog's texts from the section [host] of the translation files;
// the key itself where a text is missing, as the add-in's texts show gaps.
class HostTexts {
public:
  explicit HostTexts(const QString &language) {
    translator_.setTranslationFolder(HostPaths::addinFolder() + QStringLiteral("/translation"));
    try {
      translator_.loadSection(QStringLiteral("host"), language);
    } catch (const Error &) {
      // No translation files beside the add-in: the keys show.
    }
  }
  QString operator()(const char *key) const { return translator_.translateKey(QString::fromLatin1(key)); }

private:
  IniTranslator translator_;
};

} // namespace

FieldDialogWindow::FieldDialogWindow(std::shared_ptr<hostapi::Fields> fields, QSet<int> excludedTypes,
                                     const QString &language)
    : tree_(new QTreeWidget(this)), ok_(new QPushButton(this)), cancel_(new QPushButton(this)),
      fields_(std::move(fields)), excludedTypes_(std::move(excludedTypes)), language_(language) {
  setObjectName(QStringLiteral("FieldDialog"));
  setModal(true);
  tree_->setObjectName(QStringLiteral("TreeFields"));
  tree_->setHeaderHidden(true);
  tree_->setUniformRowHeights(true);
  ok_->setObjectName(QStringLiteral("CmdOK"));
  ok_->setDefault(true);
  cancel_->setObjectName(QStringLiteral("CmdCancel"));
  cancel_->setAutoDefault(false);

  const HostTexts text(language);
  setWindowTitle(text("FieldDialog.Caption"));
  ok_->setText(text("FieldDialog.CmdOK"));
  cancel_->setText(text("FieldDialog.CmdCancel"));

  auto *buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(ok_);
  buttons->addWidget(cancel_);
  auto *layout = new QVBoxLayout(this);
  layout->addWidget(tree_, 1);
  layout->addLayout(buttons);
  setMinimumSize(280, 320);
  resize(340, 440);

  addLevel(nullptr, *fields_);
  if (tree_->topLevelItemCount() > 0)
    tree_->setCurrentItem(tree_->topLevelItem(0));
  ok_->setEnabled(tree_->currentItem() != nullptr);

  connect(tree_, &QTreeWidget::itemExpanded, this, [this](QTreeWidgetItem *node) { open(node); });
  connect(tree_, &QTreeWidget::itemDoubleClicked, this, [this] { confirm(); });
  connect(tree_, &QTreeWidget::currentItemChanged, this,
          [this](QTreeWidgetItem *current) { ok_->setEnabled(current != nullptr); });
  connect(ok_, &QPushButton::clicked, this, [this] { confirm(); });
  connect(cancel_, &QPushButton::clicked, this, &QDialog::reject);
}

void FieldDialogWindow::addLevel(QTreeWidgetItem *parent, hostapi::Fields &level) {
  QStringList plain;
  QStringList relations;
  const auto fields = level.enumerate();
  Variant value;
  while (fields->next(value)) {
    const auto field = objectAs<hostapi::Field>(value);
    if (!field || field->hidden() || excludedTypes_.contains(field->type()))
      continue;
    (hostapi::isRelationType(field->type()) ? relations : plain) << field->localName();
  }
  QCollator collator{QLocale(language_)};
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  std::stable_sort(plain.begin(), plain.end(), collator);
  std::stable_sort(relations.begin(), relations.end(), collator);

  QList<QTreeWidgetItem *> nodes;
  for (const QString &name : std::as_const(plain))
    nodes << new QTreeWidgetItem(QStringList{name});
  for (const QString &name : std::as_const(relations)) {
    auto *node = new QTreeWidgetItem(QStringList{name});
    node->addChild(new QTreeWidgetItem(QStringList{kClosed}));
    nodes << node;
  }
  if (parent)
    parent->addChildren(nodes);
  else
    tree_->addTopLevelItems(nodes);
}

void FieldDialogWindow::open(QTreeWidgetItem *node) {
  if (!isClosed(node))
    return;
  delete node->takeChild(0);
  try {
    const auto field = fields_->lookup(localPath(node), hostapi::LookupMode::Either);
    const auto related = field ? field->relatedField() : nullptr;
    if (related)
      addLevel(node, *related->fieldClass()->fields());
  } catch (...) {
    // A relation whose other class cannot be read opens to nothing; the
    // tree is shown from the event loop, where no error may go.
  }
}

void FieldDialogWindow::confirm() {
  const QTreeWidgetItem *current = tree_->currentItem();
  if (!current)
    return;
  chosenPath_ = localPath(current);
  accept();
}

} // namespace kordel::host
