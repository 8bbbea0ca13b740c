#pragma once

#include <QWidget>

#include <cstdint>

class QLineEdit;
class QToolButton;

namespace kordel::addin {

// A length entered in centimetres and handed out in twips. The text is the
// value: it shows a number, a blank and the unit, and Value reads it back
// at a resolution of one millimetre, so a value may change on its way
// through the box. The arrows and the up and down keys step by one mm; a
// text that is no number reads as 0.
class MarginBox : public QWidget {
  Q_OBJECT

public:
  explicit MarginBox(QWidget *parent = nullptr);

  // Twips. Setting the value from code raises no Change.
  std::int32_t Value() const { return GetValue(); }
  void SetValue(std::int32_t twips);
  // True for a number above 0; the box itself accepts any text.
  bool Validate() const;

  // The text box, for a label that leads to the control.
  QLineEdit *TextBox() const { return TbValue; }

  void TbValue_LostFocus();
  void udScroll_DownClick() { Step(false); }
  void udScroll_UpClick() { Step(true); }

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

signals:
  // The value in twips after the user changed it: on leaving the text and
  // on each step.
  void Change(std::int32_t value);

protected:
  bool eventFilter(QObject *watched, QEvent *event) override;
  void resizeEvent(QResizeEvent *event) override;

private:
  std::int32_t GetValue() const;
  void Step(bool up);
  int spinWidth() const;

  QWidget *PicBox;
  QLineEdit *TbValue;
  QWidget *udScroll;
  QToolButton *up_;
  QToolButton *down_;
};

} // namespace kordel::addin
