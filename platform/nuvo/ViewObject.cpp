#include "nuvo/ViewObject.h"

#include "core/Error.h"

namespace kordel::nuvo {

void ViewObject::add(const QString &path, int, int, const QString &) {
  const QString key = path.toCaseFolded();
  if (seen_.contains(key))
    return;
  seen_.insert(key);
  paths_ << path;
}

const MemberTable &ViewObject::memberTable() const {
  static const MemberTable table{
      {
          method<ViewObject>("Add",
                             [](ViewObject &v, Args &a) {
                               expectArgs(a, 1, 4);
                               v.add(a[0].toText(), a.size() > 1 ? a[1].toLong() : 0, a.size() > 2 ? a[2].toLong() : -1,
                                     a.size() > 3 ? a[3].toText() : QString());
                               return Variant();
                             }),
          property<ViewObject>("Count", [](ViewObject &v) { return v.count(); }),
          indexedProperty<ViewObject>("Item",
                                      [](ViewObject &v, Args &a) {
                                        expectArgs(a, 1, 1);
                                        const int index = a[0].toLong() - 1;
                                        if (index < 0 || index >= v.count())
                                          raiseError(ErrorNumber::SubscriptOutOfRange, QStringLiteral("Nuvo.View"));
                                        return v.paths().at(index);
                                      }),
      },
      nullptr,
      QStringLiteral("Item")};
  return table;
}

} // namespace kordel::nuvo
