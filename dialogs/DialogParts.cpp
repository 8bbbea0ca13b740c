#include "dialogs/DialogParts.h"

#include <QHBoxLayout>
#include <QPushButton>

namespace kordel::addin {

QPushButton *NamedButton(const char *name, QWidget *parent) {
  auto *button = new QPushButton(parent);
  button->setObjectName(QString::fromLatin1(name));
  button->setAutoDefault(false);
  return button;
}

QHBoxLayout *OkCancelRow(QPushButton *ok, QPushButton *cancel) {
  ok->setDefault(true);
  auto *row = new QHBoxLayout;
  row->addStretch();
  row->addWidget(ok);
  row->addWidget(cancel);
  return row;
}

} // namespace kordel::addin
