#pragma once

#include "core/Variant.h"

#include <QStringList>
#include <QWidget>

#include <functional>
#include <optional>

namespace kordel::engine {

struct DesignProperty;

// The editor of one property in the property list. It shows a value, or a
// blank when the edited objects' values differ, and hands back the text
// the user gives; the list turns that text into a value. Enter or leaving
// the editor gives the text typed, Esc brings back the value shown, F4
// opens the property's dialog where it has one.
class PropertyEditor : public QWidget {
public:
  // An editor of the kind the property's type needs, named "Prop" and
  // the property's name.
  static PropertyEditor *create(const DesignProperty &property, QWidget *parent);

  // text: the value as the list writes it; nothing when the values differ.
  void showValue(const std::optional<QString> &text, const Variant &value);
  // The text the editor shows now.
  virtual QString text() const = 0;
  // Whether the user has typed something not yet given.
  virtual bool isEditing() const { return false; }
  // Marks the editor as holding a value that was refused, or no longer.
  void setRefused(bool refused);
  // Texts to pick from, for the editors that offer them.
  virtual void setSuggestions(const QStringList &) {}
  // Back to the value shown, as Esc does.
  void revert();

  // Set by the list.
  std::function<void(const QString &text)> commit;
  std::function<void()> choose;
  std::function<void()> reverted;

protected:
  PropertyEditor(const DesignProperty &property, QWidget *parent);

  virtual void display(const std::optional<QString> &text, const Variant &value) = 0;
  // Watches the widget that takes the keys: Esc, F4, and focus leaving.
  void watch(QWidget *input);
  bool eventFilter(QObject *watched, QEvent *event) override;
  // Enter in a widget that does not end an edit by itself.
  virtual bool commitsOnEnter() const { return false; }
  void give(const QString &text);

  const DesignProperty &property_;

private:
  std::optional<QString> shownText_;
  Variant shownValue_;
};

} // namespace kordel::engine
