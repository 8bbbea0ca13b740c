#pragma once

#include "engine/export/xls/BiffStream.h"

#include <QHash>
#include <QString>

#include <cstdint>
#include <vector>

namespace kordel::engine::xls {

// The workbook's shared string table: every distinct cell text once, cells
// refer to it by index.
class SharedStrings {
public:
  // The most characters a cell text may have.
  static constexpr int kMaxLength = 32767;

  // The index of the text, adding it when new; counts one more cell that
  // uses it. Raises 5 for a text longer than a cell holds.
  std::uint32_t add(const QString &text);

  // The SST record with as many CONTINUE records as the strings need, then
  // the EXTSST record that indexes them.
  void write(BiffStream &stream) const;

private:
  std::vector<QString> strings_;
  QHash<QString, std::uint32_t> index_;
  std::uint32_t references_ = 0;
};

} // namespace kordel::engine::xls
