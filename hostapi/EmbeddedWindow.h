#pragma once

class QWidget;

namespace kordel::hostapi {

// An engine object with a window that its owner puts into a window of its
// own, as the add-in's designer window holds the band designer
// (kDesignerProgId). Found on the object by a cast to this interface.
class EmbeddedWindow {
public:
  virtual ~EmbeddedWindow() = default;
  // The window, made on the first call; its owner may give it a parent.
  virtual QWidget *window() = 0;
};

} // namespace kordel::hostapi
