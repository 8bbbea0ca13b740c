#pragma once

#include "hostapi/HostFile.h"

#include <QHash>

#include <utility>
#include <vector>

namespace kordel::nuvo {

// Nuvo.Properties and Nuvo.FileOpenAttributes: named values in the order
// they were first set, names compared without regard to case.
class NamedValuesObject : public hostapi::NamedValues {
public:
  explicit NamedValuesObject(QString typeName) : typeName_(std::move(typeName)) {}

  QString typeName() const override { return typeName_; }

  Variant item(const QString &name) const override;
  void setItem(const QString &name, const Variant &value) override;
  bool exists(const QString &name) const override { return index_.contains(name.toCaseFolded()); }
  void remove(const QString &name) override;
  int count() const override { return int(entries_.size()); }
  QStringList names() const override;

  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  void reindex();

  QString typeName_;
  std::vector<std::pair<QString, Variant>> entries_;
  QHash<QString, int> index_; // folded name -> entry
};

} // namespace kordel::nuvo
