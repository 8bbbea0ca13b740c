#pragma once

#include "nuvo/Catalog.h"

#include <QString>

#include <optional>
#include <vector>

namespace kordel::nuvo {

// A resolved field path: the fields from the start class outward; every
// step but the last is a relation.
struct FieldPath {
  const ClassDef *start = nullptr;
  std::vector<const FieldDef *> steps;

  const FieldDef &last() const { return *steps.back(); }
  // The path by the fields' own names, joined by ".".
  QString internal() const;
  // The path by local names in a language.
  QString local(const QString &language) const;
  // Whether a step before the last is a relation to many, so that the
  // path has no single value per record.
  bool crossesToMany() const;
  // The path without its last step; empty for a one-step path.
  FieldPath prefix() const;
  // This path followed by a field of the class it ends in (a relation's
  // other class).
  FieldPath extended(const FieldDef &field) const;
};

// Resolves a path from a class, each step read as the LookupMode says;
// nothing when it leads nowhere.
std::optional<FieldPath> resolvePath(const ClassDef &start, const QString &path, int mode, const QString &language);

} // namespace kordel::nuvo
