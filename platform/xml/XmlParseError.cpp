#include "xml/XmlParseError.h"

namespace kordel {

const MemberTable &XmlParseError::memberTable() const {
  static const MemberTable table{{
      property<XmlParseError>("errorCode", [](XmlParseError &e) { return e.errorCode(); }),
      property<XmlParseError>("reason", [](XmlParseError &e) { return e.reason(); }),
      property<XmlParseError>("line", [](XmlParseError &e) { return e.line(); }),
      property<XmlParseError>("linepos", [](XmlParseError &e) { return e.linepos(); }),
  }};
  return table;
}

} // namespace kordel
