#pragma once

#include <QString>

#include <vector>

namespace kordel::addin {

// One key of a sort text.
struct SortKeyText {
  QString column;
  bool descending = false;
};

// The value of a filter: a number as written, or the text between the
// quotes with each doubled quote made single.
struct FilterValue {
  QString text;
  bool quoted = false;
};

// A filter: one column equal to one value.
struct FilterCondition {
  QString column;
  FilterValue value;
};

// Reads a sort text such as "[a] ASC, [b] DESC, c": a column name, in
// brackets when it holds blanks or commas, and an optional ASC or DESC per
// key. A blank text gives no keys. Raises 3001 for anything else.
std::vector<SortKeyText> parseSortText(const QString &text);

// Reads a filter text such as "[a.b] = 17" or "[name] = 'O''Brien'".
// Raises 3001 for anything else, a blank text included.
FilterCondition parseFilterText(const QString &text);

} // namespace kordel::addin
