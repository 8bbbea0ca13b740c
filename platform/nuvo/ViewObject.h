#pragma once

#include "hostapi/Records.h"

#include <QSet>

namespace kordel::nuvo {

// Nuvo.View: the field paths a query fetches, each once. Paths are kept as
// given and resolved when a query opens; one that leads nowhere is not
// fetched, and reading it from a record fails then.
class ViewObject : public hostapi::View {
public:
  QString typeName() const override { return QStringLiteral("View"); }

  void add(const QString &path, int reserved1, int reserved2, const QString &reserved3) override;
  int count() const override { return int(paths_.size()); }
  QStringList paths() const override { return paths_; }

protected:
  const MemberTable &memberTable() const override;

private:
  QStringList paths_;
  QSet<QString> seen_;
};

} // namespace kordel::nuvo
