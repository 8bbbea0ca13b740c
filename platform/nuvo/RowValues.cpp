#include "nuvo/RowValues.h"

#include "core/Error.h"
#include "core/Latin1Text.h"

#include <QDir>
#include <QTemporaryFile>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>

#include <unistd.h>

namespace kordel::nuvo {

namespace {

const QString kSource = QStringLiteral("Nuvo.Records");

// Rows read in order are read from the file this much at a time.
constexpr std::int64_t kReadWindow = 64 * 1024;
// Spilled rows are written to the file this much at a time.
constexpr std::size_t kWriteChunk = 64 * 1024;

enum Tag : std::uint8_t { Null, Long, False, True, Double, CurrencyValue, DateValue, Latin1, Utf16 };

[[noreturn]] void failFile(const QTemporaryFile *file, const QString &what) {
  raiseError(ErrorNumber::OutOfMemory, kSource,
             QStringLiteral("The rows of a query could not be %1 a temporary file: %2")
                 .arg(what, file ? file->errorString() : QStringLiteral("no file")));
}

template <class T> T readRaw(const char *&at) {
  T value;
  std::memcpy(&value, at, sizeof value);
  at += sizeof value;
  return value;
}

std::uint32_t readLength(const char *&at) {
  std::uint32_t length = 0;
  for (int shift = 0;; shift += 7) {
    const auto byte = std::uint8_t(*at++);
    length |= std::uint32_t(byte & 0x7f) << shift;
    if (!(byte & 0x80))
      return length;
  }
}

// The bytes a value takes after its tag.
std::size_t payloadSize(std::uint8_t tag, const char *&at) {
  switch (tag) {
  case Long: return 4;
  case Double:
  case CurrencyValue:
  case DateValue: return 8;
  case Latin1: return readLength(at);
  case Utf16: return std::size_t(readLength(at)) * 2;
  default: return 0;
  }
}

} // namespace

RowValues::RowValues(int columns, std::size_t memoryBudget) : columns_(columns), memoryBudget_(memoryBudget) {}

RowValues::~RowValues() = default;

void RowValues::put(const void *bytes, std::size_t size) {
  if (rowsInMemory_ < 0 && memory_.size() + size > memoryBudget_)
    spill(memory_.size() - std::size_t(rowStart_));
  auto &into = rowsInMemory_ < 0 ? memory_ : writeBuffer_;
  const auto *from = static_cast<const char *>(bytes);
  into.insert(into.end(), from, from + size);
  size_ += std::int64_t(size);
}

// From the row being built on, rows go to the file.
void RowValues::spill(std::size_t rowBytes) {
  auto file = std::make_unique<QTemporaryFile>(QDir::tempPath() + QStringLiteral("/kordel-rows-XXXXXX"));
  if (!file->open())
    failFile(file.get(), QStringLiteral("kept in"));
  file_ = std::move(file);
  rowsInMemory_ = rows_;
  fileBase_ = rowStart_;
  writeBuffer_.assign(memory_.end() - std::ptrdiff_t(rowBytes), memory_.end());
  memory_.resize(memory_.size() - rowBytes);
  memory_.shrink_to_fit();
}

void RowValues::flush() {
  if (writeBuffer_.empty())
    return;
  // Rows are only ever added at the end; a failed write leaves the rows
  // before it readable.
  const auto size = qint64(writeBuffer_.size());
  if (file_->write(writeBuffer_.data(), size) != size || !file_->flush())
    failFile(file_.get(), QStringLiteral("written to"));
  writeBuffer_.clear();
}

void RowValues::putLength(std::uint32_t length) {
  std::uint8_t bytes[5];
  int count = 0;
  do {
    bytes[count] = std::uint8_t(length & 0x7f);
    length >>= 7;
    if (length)
      bytes[count] |= 0x80;
    ++count;
  } while (length);
  put(bytes, std::size_t(count));
}

void RowValues::appendNull() { putByte(Null); }

void RowValues::appendLong(std::int32_t value) {
  putByte(Long);
  put(&value, sizeof value);
}

void RowValues::appendBoolean(bool value) { putByte(value ? True : False); }

void RowValues::appendDouble(double value) {
  putByte(Double);
  put(&value, sizeof value);
}

void RowValues::appendCurrency(Currency value) {
  putByte(CurrencyValue);
  put(&value.scaled, sizeof value.scaled);
}

void RowValues::appendDate(Date value) {
  putByte(DateValue);
  put(&value.serial, sizeof value.serial);
}

void RowValues::appendText(QStringView text) {
  const auto length = std::uint32_t(text.size());
  if (fitsLatin1(text)) {
    putByte(Latin1);
    putLength(length);
    char latin1[256];
    for (qsizetype at = 0; at < text.size(); at += qsizetype(sizeof latin1)) {
      const qsizetype part = std::min(text.size() - at, qsizetype(sizeof latin1));
      writeLatin1(text.mid(at, part), latin1);
      put(latin1, std::size_t(part));
    }
  } else {
    putByte(Utf16);
    putLength(length);
    put(text.data(), std::size_t(length) * 2);
  }
}

void RowValues::append(const Variant &value) {
  switch (value.type()) {
  case Variant::Type::Long: appendLong(value.rawLong()); break;
  case Variant::Type::Boolean: appendBoolean(value.rawBool()); break;
  case Variant::Type::Double: appendDouble(value.rawDouble()); break;
  case Variant::Type::Currency: appendCurrency(value.rawCurrency()); break;
  case Variant::Type::Date: appendDate(value.rawDate()); break;
  case Variant::Type::String: appendText(value.rawString()); break;
  default: appendNull(); break;
  }
}

void RowValues::endRow() {
  if (rows_ % kRowsPerGroup == 0)
    groupBases_.push_back(rowStart_);
  const std::int64_t relative = rowStart_ - groupBases_.back();
  if (relative > std::numeric_limits<std::uint32_t>::max())
    raiseError(ErrorNumber::OutOfMemory, kSource, QStringLiteral("The rows of a query are too large to be kept"));
  rowOffsets_.push_back(std::uint32_t(relative));
  ++rows_;
  rowStart_ = size_;
  loadedRow_ = -1;
  // Only whole rows go to the file, so a row lies either in the file or
  // in the buffer.
  if (writeBuffer_.size() >= kWriteChunk)
    flush();
}

std::int64_t RowValues::offsetOf(int row) const {
  return groupBases_[std::size_t(row / kRowsPerGroup)] + rowOffsets_[std::size_t(row)];
}

std::int64_t RowValues::endOf(int row) const { return row + 1 < rows_ ? offsetOf(row + 1) : rowStart_; }

void RowValues::load(int row) const {
  const std::int64_t start = offsetOf(row);
  if (rowsInMemory_ < 0 || row < rowsInMemory_) {
    rowBytes_ = memory_.data() + start;
  } else {
    const std::int64_t end = endOf(row);
    const std::int64_t written = size_ - std::int64_t(writeBuffer_.size()) - fileBase_;
    const std::int64_t inFile = start - fileBase_;
    if (inFile >= written) {
      rowBytes_ = writeBuffer_.data() + (inFile - written);
    } else if (windowStart_ >= 0 && inFile >= windowStart_ &&
               end - fileBase_ <= windowStart_ + std::int64_t(window_.size())) {
      rowBytes_ = window_.data() + (inFile - windowStart_);
    } else {
      // Rows read in order bring the rows after them along.
      const bool inOrder = row == loadedRow_ + 1;
      const std::int64_t wanted = std::min(std::max(end - start, inOrder ? kReadWindow : 0), written - inFile);
      window_.resize(std::size_t(wanted));
      std::int64_t done = 0;
      while (done < wanted) {
        const ssize_t got =
            ::pread(file_->handle(), window_.data() + done, std::size_t(wanted - done), off_t(inFile + done));
        if (got < 0 && errno == EINTR)
          continue;
        if (got <= 0) {
          windowStart_ = -1;
          failFile(file_.get(), QStringLiteral("read from"));
        }
        done += got;
      }
      windowStart_ = inFile;
      rowBytes_ = window_.data();
    }
  }
  loadedRow_ = row;
  valueStarts_.resize(std::size_t(columns_));
  const char *at = rowBytes_;
  for (int column = 0; column < columns_; ++column) {
    valueStarts_[std::size_t(column)] = std::uint32_t(at - rowBytes_);
    const auto tag = std::uint8_t(*at++);
    at += payloadSize(tag, at);
  }
  decoded_.assign(std::size_t(columns_), Variant());
  isDecoded_.assign(std::size_t(columns_), false);
}

Variant RowValues::value(int row, int column) const {
  if (row != loadedRow_)
    load(row);
  if (isDecoded_[std::size_t(column)])
    return decoded_[std::size_t(column)];
  const char *at = rowBytes_ + valueStarts_[std::size_t(column)];
  const auto tag = std::uint8_t(*at++);
  Variant value;
  switch (tag) {
  case Long: value = Variant(readRaw<std::int32_t>(at)); break;
  case False: value = Variant(false); break;
  case True: value = Variant(true); break;
  case Double: value = Variant(readRaw<double>(at)); break;
  case CurrencyValue: value = Variant(Currency{readRaw<std::int64_t>(at)}); break;
  case DateValue: value = Variant(Date{readRaw<double>(at)}); break;
  case Latin1: {
    const std::uint32_t length = readLength(at);
    value = Variant(QString::fromLatin1(at, qsizetype(length)));
    break;
  }
  case Utf16: {
    const std::uint32_t length = readLength(at);
    QString text(qsizetype(length), Qt::Uninitialized);
    std::memcpy(text.data(), at, std::size_t(length) * 2);
    value = Variant(std::move(text));
    break;
  }
  default: value = Variant::null(); break;
  }
  decoded_[std::size_t(column)] = value;
  isDecoded_[std::size_t(column)] = true;
  return value;
}

} // namespace kordel::nuvo
