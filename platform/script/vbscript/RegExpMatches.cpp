#include "script/vbscript/RegExpMatches.h"

#include "core/Error.h"
#include "script/vbscript/VbErrors.h"

namespace kordel::script::vb {

namespace {

// The element at a 0-based index; 5 for an index outside the list.
const Variant &element(const std::vector<Variant> &list, const Variant &index) {
  const std::int32_t at = plainValue(index).toLong();
  if (at < 0 || std::size_t(at) >= list.size())
    raiseError(ErrorNumber::InvalidCall, runtimeErrorSource());
  return list[std::size_t(at)];
}

} // namespace

Variant SubMatches::item(const Variant &index) const { return element(groups_, index); }

std::unique_ptr<Enumerator> SubMatches::enumerate() { return std::make_unique<ListEnumerator>(groups_); }

const MemberTable &SubMatches::memberTable() const {
  static const MemberTable table{{
                                     property<SubMatches>("Count", [](SubMatches &s) { return s.count(); }),
                                     indexedProperty<SubMatches>("Item",
                                                                 [](SubMatches &s, Args &a) {
                                                                   expectArgs(a, 1, 1);
                                                                   return s.item(a[0]);
                                                                 }),
                                 },
                                 nullptr,
                                 QStringLiteral("Item")};
  return table;
}

RegExpMatch::RegExpMatch(int firstIndex, QString value, std::vector<Variant> groups)
    : firstIndex_(firstIndex), value_(std::move(value)), subMatches_(std::make_shared<SubMatches>(std::move(groups))) {}

const MemberTable &RegExpMatch::memberTable() const {
  static const MemberTable table{
      {
          property<RegExpMatch>("Value", [](RegExpMatch &m) { return m.value(); }),
          property<RegExpMatch>("FirstIndex", [](RegExpMatch &m) { return m.firstIndex(); }),
          property<RegExpMatch>("Length", [](RegExpMatch &m) { return int(m.value().size()); }),
          property<RegExpMatch>("SubMatches", [](RegExpMatch &m) { return Variant(m.subMatches()); }),
      },
      nullptr,
      QStringLiteral("Value")};
  return table;
}

Variant MatchCollection::item(const Variant &index) const { return element(matches_, index); }

std::unique_ptr<Enumerator> MatchCollection::enumerate() { return std::make_unique<ListEnumerator>(matches_); }

const MemberTable &MatchCollection::memberTable() const {
  static const MemberTable table{{
                                     property<MatchCollection>("Count", [](MatchCollection &m) { return m.count(); }),
                                     indexedProperty<MatchCollection>("Item",
                                                                      [](MatchCollection &m, Args &a) {
                                                                        expectArgs(a, 1, 1);
                                                                        return m.item(a[0]);
                                                                      }),
                                 },
                                 nullptr,
                                 QStringLiteral("Item")};
  return table;
}

} // namespace kordel::script::vb
