#include "document/Pages.h"

#include "common/Globals.h"
#include "core/Error.h"
#include "document/Page.h"
#include "document/StringCollection.h"

namespace kordel::addin {

namespace {

std::shared_ptr<Page> asPage(const Variant &item) {
  auto page = objectAs<Page>(item);
  if (!page)
    raiseError(ErrorNumber::ObjectRequired, QStringLiteral("Pages"));
  return page;
}

} // namespace

void Pages::Add(const std::shared_ptr<addin::Page> &page) {
  const QString guid = page->Guid();
  if (guid.isEmpty())
    raiseError(ErrorNumber::PageWithoutGuid, QStringLiteral("Pages.Add"), GetMessage(QStringLiteral("Pages.NoGuid")));
  pages_.add(guid, page);
}

std::shared_ptr<Page> Pages::Item(int index) const { return asPage(itemAtPosition(pages_, index)); }

std::shared_ptr<Page> Pages::Page(const QString &guid) const { return asPage(pages_.value(guid)); }

std::shared_ptr<Page> Pages::Lookup(const QString &guid) const {
  if (pages_.exists(guid))
    return asPage(pages_.value(guid));
  for (int i = 1; i <= Count(); ++i) {
    if (auto found = Item(i)->Pages()->Lookup(guid))
      return found;
  }
  return nullptr;
}

} // namespace kordel::addin
