#pragma once

class QWidget;

namespace kordel::engine {

// The state and place of a window as the report object keeps them: state
// 0 normal, 1 minimised, 2 maximised; place and size in twips of the
// screen. For a window that is not in its normal state the place is the
// one it comes back to.
struct WindowPlace {
  static constexpr int kNormal = 0;
  static constexpr int kMinimised = 1;
  static constexpr int kMaximised = 2;

  int state = kNormal;
  float left = 0;
  float top = 0;
  float width = 0;
  float height = 0;
};

// Sets a window that is not shown yet to the place: maximised or minimised
// by the state; in the normal state at the place when its width and height
// are above 0, else at its own size.
void applyWindowPlace(QWidget &window, const WindowPlace &place);
// The window's state and place now.
WindowPlace windowPlaceOf(const QWidget &window);

} // namespace kordel::engine
