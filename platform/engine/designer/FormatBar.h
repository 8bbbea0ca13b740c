#pragma once

#include "engine/designer/PropertyApplier.h"

#include <QToolBar>

class QComboBox;
class QFontComboBox;

namespace kordel::engine {

class DesignerDocument;
class DesignerEvents;

// The designer's format bar: font name and size, bold, italic, alignment,
// fore and back colour of the selected controls. Each change is one step
// of the history, made the way the property list makes its changes, on
// every selected control that has the property. The bar shows what the
// selected controls share and is disabled where none has the property.
class FormatBar : public QToolBar {
  Q_OBJECT
public:
  explicit FormatBar(DesignerDocument &document, QWidget *parent = nullptr);
  ~FormatBar() override;

  void setEvents(DesignerEvents *events) { applier_.setEvents(events); }
  void setChanged(std::function<void()> changed) { applier_.setChanged(std::move(changed)); }

  // ---- handlers: true when the controls changed
  bool setFontName(const QString &family);
  // Points, as typed ("12", "10.5 pt"); other text is refused.
  bool setFontSize(const QString &points);
  bool setBold(bool bold);
  bool setItalic(bool italic);
  // 0 left, 1 right, 2 center, as the controls' Alignment.
  bool setAlignment(int alignment);
  bool setForeColor(const QColor &color);
  // Also makes the controls filled, so the colour shows.
  bool setBackColor(const QColor &color);
  bool chooseForeColor();
  bool chooseBackColor();
  // Shows what the selected controls share.
  void refresh();

  // The reason the last change was refused; empty after one was made.
  QString problem() const { return problem_; }

private:
  bool changeFont(const QString &label, const std::function<void(QFont &)> &change);
  // Runs a change, catching what it raises: the reason goes to the user.
  bool attempt(const std::function<bool()> &change);
  QAction *addToggle(const char *name, const QString &text, const QIcon &icon, std::function<bool(bool)> handler);

  PropertyApplier applier_;
  QFontComboBox *fontName_;
  QComboBox *fontSize_;
  QAction *bold_;
  QAction *italic_;
  QAction *alignments_[3];
  QAction *foreColor_;
  QAction *backColor_;
  QString problem_;
};

} // namespace kordel::engine
