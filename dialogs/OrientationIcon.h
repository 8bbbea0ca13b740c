#pragma once

#include <QWidget>

namespace kordel::addin {

// A sheet of paper drawn upright or lying on its side, with lines of text
// across it, to show the orientation a choice stands for.
class OrientationIcon : public QWidget {
public:
  OrientationIcon(bool landscape, QWidget *parent);

  QSize sizeHint() const override { return {40, 40}; }

protected:
  void paintEvent(QPaintEvent *event) override;

private:
  bool landscape_;
};

} // namespace kordel::addin
