#include "data/RowBufferColumn.h"

#include "core/Error.h"
#include "core/VbNumber.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace kordel::addin {

namespace {

// CLng's rules, widened to 64 bits: whole types pass exactly, anything else
// goes through CDbl and rounds halves to even.
std::int64_t integerFrom(const Variant &value) {
  switch (value.type()) {
  case Variant::Type::Long:
  case Variant::Type::Integer:
  case Variant::Type::Byte:
  case Variant::Type::Boolean: return value.toLong();
  default: break;
  }
  const double rounded = roundHalfEven(value.toDouble());
  // 2^63: the first double above the range of a 64-bit integer.
  constexpr double kLimit = 9223372036854775808.0;
  if (!std::isfinite(rounded) || rounded >= kLimit || rounded < -kLimit)
    raiseError(ErrorNumber::Overflow, QStringLiteral("RowBuffer"));
  return std::int64_t(rounded);
}

// The text cut to the size, never between the two halves of a surrogate pair.
QStringView cutToSize(QStringView text, int size) {
  if (size <= 0 || text.size() <= size)
    return text;
  QStringView cut = text.left(size);
  if (cut.back().isHighSurrogate())
    cut.chop(1);
  return cut;
}

bool fitsLong(std::int64_t number) {
  return number >= std::numeric_limits<std::int32_t>::min() && number <= std::numeric_limits<std::int32_t>::max();
}

template <class Number> int compareNumbers(Number a, Number b) { return (a > b) - (a < b); }

QAnyStringView viewOf(const char *latin1, qsizetype size) { return QLatin1StringView(latin1, size); }
QAnyStringView viewOf(const char16_t *utf16, qsizetype size) { return QStringView(utf16, size); }

char16_t unitOf(char c) { return char16_t(static_cast<unsigned char>(c)); }
char16_t unitOf(char16_t c) { return c; }

// Comparison without regard to case, quicker over the ASCII part of the
// texts, where folding the case is lowering the letters. From the first
// other character on, Qt compares the rest, since characters outside ASCII
// can fold into it (the Kelvin sign is a "k").
template <class A, class B> int compareWithoutCase(const A *a, qsizetype aSize, const B *b, qsizetype bSize) {
  const qsizetype common = std::min(aSize, bSize);
  for (qsizetype i = 0; i < common; ++i) {
    char16_t x = unitOf(a[i]);
    char16_t y = unitOf(b[i]);
    if (x >= 0x80 || y >= 0x80)
      return QAnyStringView::compare(viewOf(a + i, aSize - i), viewOf(b + i, bSize - i), Qt::CaseInsensitive);
    if (x >= u'A' && x <= u'Z')
      x += u'a' - u'A';
    if (y >= u'A' && y <= u'Z')
      y += u'a' - u'A';
    if (x != y)
      return x < y ? -1 : 1;
  }
  return compareNumbers(aSize, bSize);
}

const char *unitsOf(QLatin1StringView text) { return text.latin1(); }
const char16_t *unitsOf(QStringView text) { return text.utf16(); }

template <class View>
constexpr bool kLatin1OrUtf16 =
    std::is_same_v<std::decay_t<View>, QLatin1StringView> || std::is_same_v<std::decay_t<View>, QStringView>;

// Texts of a column are Latin-1 or UTF-16; UTF-8, which a column never
// holds, is left to Qt.
template <class A, class B> int compareViews(A a, B b) {
  if constexpr (kLatin1OrUtf16<A> && kLatin1OrUtf16<B>)
    return compareWithoutCase(unitsOf(a), a.size(), unitsOf(b), b.size());
  else
    return QAnyStringView::compare(a, b, Qt::CaseInsensitive);
}

int compareWithoutCase(QAnyStringView a, QAnyStringView b) {
  return a.visit([b](auto x) { return b.visit([x](auto y) { return compareViews(x, y); }); });
}

} // namespace

RowBufferColumn::RowBufferColumn(QString name, ColumnType type, int definedSize)
    : name_(std::move(name)), type_(type), definedSize_(definedSize) {}

void RowBufferColumn::appendNull() {
  nulls_.push_back(1);
  switch (type_) {
  case ColumnType::VarChar: texts_.append(); break;
  case ColumnType::BigInt:
    if (wideIntegers_)
      integers_.push_back(0);
    else
      narrowIntegers_.push_back(0);
    break;
  case ColumnType::Double: doubles_.push_back(0.0); break;
  }
}

void RowBufferColumn::reserve(int rows) {
  const auto count = std::size_t(std::max(rows, 0));
  nulls_.reserve(count);
  switch (type_) {
  case ColumnType::VarChar: texts_.reserve(count); break;
  case ColumnType::BigInt:
    if (wideIntegers_)
      integers_.reserve(count);
    else
      narrowIntegers_.reserve(count);
    break;
  case ColumnType::Double: doubles_.reserve(count); break;
  }
}

Variant RowBufferColumn::value(int row) const {
  if (isNull(row))
    return Variant::null();
  switch (type_) {
  case ColumnType::VarChar: return textAt(row).toString();
  case ColumnType::BigInt: {
    const std::int64_t number = integerAt(row);
    if (fitsLong(number))
      return Variant(int(number));
    return Variant(double(number));
  }
  case ColumnType::Double: return doubles_[row];
  }
  return Variant::null();
}

void RowBufferColumn::setValue(int row, const Variant &value) {
  if (value.isNull()) {
    if (type_ == ColumnType::VarChar)
      texts_.set(row, {});
    nulls_[row] = 1;
    return;
  }
  // Convert first, so that a value that fails leaves the cell as it was.
  switch (type_) {
  case ColumnType::VarChar: {
    const QString text = value.toString();
    texts_.set(row, cutToSize(text, definedSize_));
    break;
  }
  case ColumnType::BigInt: setInteger(row, integerFrom(value)); break;
  case ColumnType::Double: doubles_[row] = value.toDouble(); break;
  }
  nulls_[row] = 0;
}

void RowBufferColumn::setInteger(int row, std::int64_t value) {
  if (!wideIntegers_) {
    if (fitsLong(value)) {
      narrowIntegers_[row] = std::int32_t(value);
      return;
    }
    integers_.assign(narrowIntegers_.begin(), narrowIntegers_.end());
    narrowIntegers_ = {};
    wideIntegers_ = true;
  }
  integers_[row] = value;
}

int RowBufferColumn::compareRows(int a, int b) const {
  const bool nullA = isNull(a);
  const bool nullB = isNull(b);
  if (nullA || nullB)
    return int(nullB) - int(nullA);
  switch (type_) {
  case ColumnType::VarChar: return compareWithoutCase(textAt(a), textAt(b));
  case ColumnType::BigInt: return compareNumbers(integerAt(a), integerAt(b));
  case ColumnType::Double: return compareNumbers(doubles_[a], doubles_[b]);
  }
  return 0;
}

} // namespace kordel::addin
