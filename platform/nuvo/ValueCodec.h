#pragma once

#include "nuvo/Catalog.h"

#include "core/Variant.h"

#include <QVariant>

namespace kordel::nuvo {

// How the values of a field lie in its column.
enum class Storage {
  Integer,  // whole numbers, ids, option keys
  Boolean,  // 0 or 1
  Real,     // doubles
  Scaled,   // currency as a count of ten-thousandths
  Text,     // strings
  Date,     // "yyyy-mm-dd"
  DateTime, // "yyyy-mm-dd hh:mm:ss"
  Time,     // "hh:mm:ss"
};

// The storage of a field's values; a formula's follows its data type.
Storage storageOf(const FieldDef &field);

class RowValues;

// A stored value appended to a row as the engine gives it: Long, Boolean,
// Double, Currency, String or Date; Null for SQL NULL.
void appendDecoded(RowValues &row, Storage storage, const QVariant &stored);

// A value in a field's stored form, for writes and comparisons. Empty and
// Null give NULL. Raises 13 for a value of the wrong kind and 5 for a text
// longer than the field's size or an option the field lacks.
QVariant encodeValue(const FieldDef &field, const Variant &value);

} // namespace kordel::nuvo
