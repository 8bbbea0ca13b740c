#include "engine/designer/DesignerText.h"

#include "engine/model/Controls.h"

namespace kordel::engine {

QString kindText(const Control &control) {
  switch (control.kind()) {
  case ControlKind::Label: return designerText("Label");
  case ControlKind::Field: return designerText("Field");
  case ControlKind::SubReport: return designerText("Sub report");
  case ControlKind::Line: return designerText("Line");
  case ControlKind::Shape: return designerText("Shape");
  case ControlKind::Picture: return designerText("Picture");
  }
  return control.typeName();
}

} // namespace kordel::engine
