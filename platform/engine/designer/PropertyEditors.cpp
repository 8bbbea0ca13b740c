#include "engine/designer/PropertyEditors.h"

#include "engine/designer/DesignProperties.h"
#include "engine/designer/DesignerText.h"
#include "engine/model/Font.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QPlainTextEdit>
#include <QToolButton>

namespace kordel::engine {

namespace {

const QString kRefusedStyle = QStringLiteral("QLineEdit, QPlainTextEdit, QComboBox { background: #fde4e4; }");

QHBoxLayout *tightLayout(QWidget *widget) {
  auto *layout = new QHBoxLayout(widget);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  return layout;
}

QIcon swatch(const QColor &color) {
  QPixmap pixmap(14, 14);
  pixmap.fill(Qt::transparent);
  if (color.isValid()) {
    QPainter painter(&pixmap);
    painter.setPen(QColor(90, 90, 90));
    painter.setBrush(color);
    painter.drawRect(0, 0, 13, 13);
  }
  return QIcon(pixmap);
}

// One line of text, with a button for the property's dialog (colours,
// fonts, pictures) and a swatch for colours.
class LineEditor : public PropertyEditor {
public:
  LineEditor(const DesignProperty &property, QWidget *parent) : PropertyEditor(property, parent) {
    QHBoxLayout *layout = tightLayout(this);
    edit_ = new QLineEdit(this);
    edit_->setReadOnly(property.readOnly);
    layout->addWidget(edit_);
    if (hasDialog(property)) {
      auto *button = new QToolButton(this);
      button->setObjectName(QStringLiteral("Cmd%1Choose").arg(property.name));
      button->setText(QStringLiteral("…"));
      button->setToolTip(designerText("Choose (F4)"));
      // Tab goes from row to row; F4 opens the dialog from the keyboard.
      button->setFocusPolicy(Qt::NoFocus);
      connect(button, &QToolButton::clicked, this, [this] {
        if (choose)
          choose();
      });
      layout->addWidget(button);
    }
    if (property.type == PropertyType::Color)
      swatch_ = edit_->addAction(QIcon(), QLineEdit::LeadingPosition);
    connect(edit_, &QLineEdit::editingFinished, this, [this] {
      if (edit_->isModified())
        give(edit_->text());
    });
    watch(edit_);
  }

  QString text() const override { return edit_->text(); }
  bool isEditing() const override { return edit_->isModified(); }

protected:
  void display(const std::optional<QString> &text, const Variant &value) override {
    edit_->setText(text.value_or(QString()));
    edit_->setCursorPosition(0);
    if (swatch_)
      swatch_->setIcon(swatch(text ? colorFromVb(value.toLong()) : QColor()));
  }

private:
  QLineEdit *edit_;
  QAction *swatch_ = nullptr;
};

// Text of several lines: Enter gives it, Shift+Enter starts a new line.
class TextBlockEditor : public PropertyEditor {
public:
  TextBlockEditor(const DesignProperty &property, QWidget *parent) : PropertyEditor(property, parent) {
    edit_ = new QPlainTextEdit(this);
    edit_->setTabChangesFocus(true);
    edit_->setToolTip(designerText("Enter sets the text; Shift+Enter starts a new line"));
    const int lines = 2;
    edit_->setFixedHeight(edit_->fontMetrics().lineSpacing() * lines + 2 * (edit_->frameWidth() + 4));
    tightLayout(this)->addWidget(edit_);
    watch(edit_);
  }

  QString text() const override { return edit_->toPlainText(); }
  bool isEditing() const override { return edit_->document()->isModified(); }

protected:
  void display(const std::optional<QString> &text, const Variant &) override {
    edit_->setPlainText(text.value_or(QString()));
    edit_->document()->setModified(false);
  }
  bool commitsOnEnter() const override { return true; }

private:
  QPlainTextEdit *edit_;
};

// True or False; partly checked while the values differ.
class CheckEditor : public PropertyEditor {
public:
  CheckEditor(const DesignProperty &property, QWidget *parent) : PropertyEditor(property, parent) {
    box_ = new QCheckBox(this);
    tightLayout(this)->addWidget(box_);
    connect(box_, &QCheckBox::clicked, this, [this] {
      // A click on a partly checked box checks it.
      box_->setTristate(false);
      give(text());
    });
    watch(box_);
  }

  QString text() const override {
    switch (box_->checkState()) {
    case Qt::Checked: return QStringLiteral("True");
    case Qt::Unchecked: return QStringLiteral("False");
    case Qt::PartiallyChecked: break;
    }
    return QString();
  }

protected:
  void display(const std::optional<QString> &text, const Variant &value) override {
    box_->setTristate(!text);
    box_->setCheckState(!text ? Qt::PartiallyChecked : value.toBool() ? Qt::Checked : Qt::Unchecked);
    box_->setText(text.value_or(QString()));
  }

private:
  QCheckBox *box_;
};

// One of the property's choices, by its label.
class ChoiceEditor : public PropertyEditor {
public:
  ChoiceEditor(const DesignProperty &property, QWidget *parent) : PropertyEditor(property, parent) {
    combo_ = new QComboBox(this);
    for (const PropertyChoice &choice : property.choices)
      combo_->addItem(designerText(choice.label));
    tightLayout(this)->addWidget(combo_);
    connect(combo_, &QComboBox::activated, this, [this](int index) { give(combo_->itemText(index)); });
    watch(combo_);
  }

  QString text() const override { return combo_->currentText(); }

protected:
  void display(const std::optional<QString> &text, const Variant &) override {
    combo_->setCurrentIndex(text ? combo_->findText(*text) : -1);
  }

private:
  QComboBox *combo_;
};

// Text typed or picked from suggestions (output formats, group names).
class SuggestEditor : public PropertyEditor {
public:
  SuggestEditor(const DesignProperty &property, QWidget *parent) : PropertyEditor(property, parent) {
    combo_ = new QComboBox(this);
    combo_->setEditable(true);
    combo_->setInsertPolicy(QComboBox::NoInsert);
    tightLayout(this)->addWidget(combo_);
    connect(combo_, &QComboBox::textActivated, this, [this](const QString &text) { give(text); });
    connect(combo_->lineEdit(), &QLineEdit::editingFinished, this, [this] {
      if (combo_->lineEdit()->isModified())
        give(combo_->currentText());
    });
    watch(combo_);
  }

  QString text() const override { return combo_->currentText(); }
  bool isEditing() const override { return combo_->lineEdit()->isModified(); }
  void setSuggestions(const QStringList &suggestions) override {
    QStringList now;
    for (int i = 0; i < combo_->count(); ++i)
      now << combo_->itemText(i);
    if (now == suggestions)
      return;
    const QString text = combo_->currentText();
    const QSignalBlocker blocker(combo_);
    combo_->clear();
    combo_->addItems(suggestions);
    combo_->setEditText(text);
  }

protected:
  void display(const std::optional<QString> &text, const Variant &) override {
    const QSignalBlocker blocker(combo_);
    combo_->setCurrentIndex(-1);
    combo_->setEditText(text.value_or(QString()));
    combo_->lineEdit()->setModified(false);
  }

private:
  QComboBox *combo_;
};

} // namespace

PropertyEditor::PropertyEditor(const DesignProperty &property, QWidget *parent) : QWidget(parent), property_(property) {
  setObjectName(QStringLiteral("Prop") + property.name);
}

PropertyEditor *PropertyEditor::create(const DesignProperty &property, QWidget *parent) {
  switch (property.type) {
  case PropertyType::MultiLineText: return new TextBlockEditor(property, parent);
  case PropertyType::Boolean: return new CheckEditor(property, parent);
  case PropertyType::Enumeration:
    if (!property.readOnly)
      return new ChoiceEditor(property, parent);
    break;
  case PropertyType::Text:
  case PropertyType::OutputFormat:
    if (property.suggestions)
      return new SuggestEditor(property, parent);
    break;
  case PropertyType::Length:
  case PropertyType::Points:
  case PropertyType::Color:
  case PropertyType::Font:
  case PropertyType::Picture: break;
  }
  return new LineEditor(property, parent);
}

void PropertyEditor::showValue(const std::optional<QString> &text, const Variant &value) {
  shownText_ = text;
  shownValue_ = value;
  display(text, value);
}

void PropertyEditor::setRefused(bool refused) { setStyleSheet(refused ? kRefusedStyle : QString()); }

void PropertyEditor::revert() {
  display(shownText_, shownValue_);
  if (reverted)
    reverted();
}

void PropertyEditor::watch(QWidget *input) {
  input->installEventFilter(this);
  setFocusProxy(input);
}

void PropertyEditor::give(const QString &text) {
  if (commit && !property_.readOnly)
    commit(text);
}

bool PropertyEditor::eventFilter(QObject *watched, QEvent *event) {
  if (event->type() == QEvent::KeyPress) {
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->key() == Qt::Key_Escape && key->modifiers() == Qt::NoModifier) {
      revert();
      return true;
    }
    if (key->key() == Qt::Key_F4 && choose) {
      choose();
      return true;
    }
    const bool enter = key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter;
    if (enter && commitsOnEnter() && !(key->modifiers() & Qt::ShiftModifier)) {
      if (isEditing())
        give(text());
      return true;
    }
  } else if (event->type() == QEvent::FocusOut && commitsOnEnter() && isEditing()) {
    give(text());
  }
  return QWidget::eventFilter(watched, event);
}

} // namespace kordel::engine
