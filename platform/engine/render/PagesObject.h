#pragma once

#include "engine/render/PageDocument.h"

#include "core/Object.h"

#include <memory>

namespace kordel::engine {

// The finished pages of a report run as scripts and late-bound callers see
// them: the report's Pages. Exporters take it in Export(pages). It shares
// the run's document, so it stays valid after the report runs again.
class PagesObject : public Object {
public:
  explicit PagesObject(std::shared_ptr<PageDocument> document) : document_(std::move(document)) {}
  QString typeName() const override { return QStringLiteral("Pages"); }

  // Null when the report has not run.
  const std::shared_ptr<PageDocument> &document() const { return document_; }
  int count() const { return document_ ? document_->pageCount() : 0; }

  // The document behind a Pages object that a late-bound caller passes.
  // Raises 91 for Nothing, 424 for a value that is no object, 13 for an
  // object of another kind and 5 for pages of a report that has not run;
  // the source names the caller.
  static const PageDocument &documentOf(const Variant &pages, const QString &source);

protected:
  const MemberTable &memberTable() const override;

private:
  std::shared_ptr<PageDocument> document_;
};

} // namespace kordel::engine
