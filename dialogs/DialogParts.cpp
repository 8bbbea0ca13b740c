#include "dialogs/DialogParts.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>

namespace kordel::addin {

QLabel *NamedLabel(const char *name, QWidget *buddy, QWidget *parent) {
  auto *label = named<QLabel>(name, parent);
  label->setBuddy(buddy);
  return label;
}

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

void PreviewKeys(QWidget &form, QObject *filter) {
  for (QWidget *control : form.findChildren<QWidget *>())
    control->installEventFilter(filter);
}

int TabKeyShift(const QEvent &event) {
  if (event.type() != QEvent::KeyPress)
    return -1;
  const auto &key = static_cast<const QKeyEvent &>(event);
  if (key.key() != Qt::Key_Tab && key.key() != Qt::Key_Backtab)
    return -1;
  // The platform turns Shift+Tab into Backtab, with or without Shift.
  const Qt::KeyboardModifiers modifiers = key.modifiers();
  int shift = 0;
  if (modifiers & Qt::ShiftModifier || key.key() == Qt::Key_Backtab)
    shift |= 1;
  if (modifiers & Qt::ControlModifier)
    shift |= 2;
  if (modifiers & Qt::AltModifier)
    shift |= 4;
  return shift;
}

int CycledTab(int current, int count, bool back) {
  if (back)
    return current <= 0 ? count - 1 : current - 1;
  return current >= count - 1 ? 0 : current + 1;
}

} // namespace kordel::addin
