#include "engine/render/PagesObject.h"

#include "core/Error.h"

namespace kordel::engine {

const PageDocument &PagesObject::documentOf(const Variant &pages, const QString &source) {
  if (!pages.isObject())
    raiseError(ErrorNumber::ObjectRequired, source, QStringLiteral("The pages to export must be a Pages object"));
  if (!pages.rawObject())
    raiseError(ErrorNumber::ObjectNotSet, source, QStringLiteral("No pages were given to export"));
  const auto object = objectAs<PagesObject>(pages);
  if (!object)
    raiseError(
        ErrorNumber::TypeMismatch, source,
        QStringLiteral("A %1 object was given where the pages of a report belong").arg(pages.rawObject()->typeName()));
  if (!object->document())
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("The report has not run, so it has no pages"));
  return *object->document();
}

const MemberTable &PagesObject::memberTable() const {
  static const MemberTable table{{
      property<PagesObject>("Count", [](PagesObject &p) { return p.count(); }),
  }};
  return table;
}

} // namespace kordel::engine
