#pragma once

#include "core/Object.h"

#include <vector>

namespace kordel::script::vb {

// The groups of one match: Item(i) is the text of group i + 1, Empty for a
// group that took no part in the match.
class SubMatches final : public Object {
public:
  explicit SubMatches(std::vector<Variant> groups) : groups_(std::move(groups)) {}

  QString typeName() const override { return QStringLiteral("ISubMatches"); }
  int count() const { return int(groups_.size()); }
  Variant item(const Variant &index) const;
  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::vector<Variant> groups_;
};

// One match: where it starts (from 0), its text and its groups.
class RegExpMatch final : public Object {
public:
  RegExpMatch(int firstIndex, QString value, std::vector<Variant> groups);

  QString typeName() const override { return QStringLiteral("IMatch2"); }
  int firstIndex() const { return firstIndex_; }
  const QString &value() const { return value_; }
  const std::shared_ptr<SubMatches> &subMatches() const { return subMatches_; }

protected:
  const MemberTable &memberTable() const override;

private:
  int firstIndex_;
  QString value_;
  std::shared_ptr<SubMatches> subMatches_;
};

// The matches that Execute found, in the order of the text.
class MatchCollection final : public Object {
public:
  explicit MatchCollection(std::vector<Variant> matches) : matches_(std::move(matches)) {}

  QString typeName() const override { return QStringLiteral("IMatchCollection2"); }
  int count() const { return int(matches_.size()); }
  Variant item(const Variant &index) const;
  std::unique_ptr<Enumerator> enumerate() override;

protected:
  const MemberTable &memberTable() const override;

private:
  std::vector<Variant> matches_;
};

} // namespace kordel::script::vb
