#include "engine/export/pdf/PdfFile.h"

#include "engine/export/ExportFile.h"

#include <cmath>

namespace kordel::engine::pdf {

namespace {

// The buffer goes to the file when it holds this much.
constexpr qsizetype kFlushBytes = 256 << 10;

// Report pages are mostly text that repeats; this level of deflate takes
// them to about an eighth in hardly more time than the fastest.
constexpr int kDeflateLevel = 3;

} // namespace

void appendInteger(QByteArray &out, std::int64_t value) {
  char digits[24];
  char *end = digits + sizeof digits;
  char *p = end;
  const bool negative = value < 0;
  std::uint64_t magnitude = negative ? std::uint64_t(0) - std::uint64_t(value) : std::uint64_t(value);
  do {
    *--p = char('0' + magnitude % 10);
    magnitude /= 10;
  } while (magnitude != 0);
  if (negative)
    *--p = '-';
  out.append(p, end - p);
}

void appendNumber(QByteArray &out, double value) {
  if (!std::isfinite(value))
    value = 0;
  const std::int64_t hundredths = std::llround(value * 100);
  if (hundredths % 100 == 0) {
    appendInteger(out, hundredths / 100);
    return;
  }
  if (hundredths < 0)
    out.append('-');
  const std::uint64_t magnitude = std::uint64_t(std::llabs(hundredths));
  appendInteger(out, std::int64_t(magnitude / 100));
  out.append('.');
  const int fraction = int(magnitude % 100);
  out.append(char('0' + fraction / 10));
  if (fraction % 10 != 0)
    out.append(char('0' + fraction % 10));
}

void appendHex16(QByteArray &out, unsigned value) {
  static const char kHex[] = "0123456789ABCDEF";
  out.append(kHex[(value >> 12) & 15])
      .append(kHex[(value >> 8) & 15])
      .append(kHex[(value >> 4) & 15])
      .append(kHex[value & 15]);
}

QByteArray textString(const QString &text) {
  QByteArray out("<FEFF");
  out.reserve(6 + text.size() * 4);
  for (const QChar c : text)
    appendHex16(out, c.unicode());
  out.append('>');
  return out;
}

QByteArray reference(int number) {
  QByteArray out;
  appendInteger(out, number);
  out.append(" 0 R");
  return out;
}

namespace {

void endDeflate(z_stream *stream) {
  deflateEnd(stream);
  delete stream;
}

} // namespace

PdfFile::PdfFile(ExportFile &file) : file_(file), deflater_(new z_stream{}, endDeflate) {
  if (deflateInit(deflater_.get(), kDeflateLevel) != Z_OK)
    throw std::bad_alloc(); // deflate fails only for want of memory
  buffer_.reserve(kFlushBytes + (64 << 10));
  // The comment of high bytes tells programs that look that the file is binary.
  append(QByteArrayLiteral("%PDF-1.7\n%\xE2\xE3\xCF\xD3\n"));
}

PdfFile::~PdfFile() = default;

int PdfFile::reserve() {
  offsets_.push_back(-1);
  return int(offsets_.size());
}

void PdfFile::append(const char *data, qsizetype length) {
  buffer_.append(data, length);
  if (buffer_.size() >= kFlushBytes)
    flush();
}

void PdfFile::flush() {
  if (buffer_.isEmpty())
    return;
  file_.writeAll(buffer_);
  written_ += buffer_.size();
  buffer_.resize(0);
}

const QByteArray &PdfFile::deflated(const QByteArray &data) {
  z_stream *stream = deflater_.get();
  deflateReset(stream);
  deflatedBytes_.resize(qsizetype(deflateBound(stream, uLong(data.size()))));
  stream->next_in = reinterpret_cast<Bytef *>(const_cast<char *>(data.constData()));
  stream->avail_in = uInt(data.size());
  stream->next_out = reinterpret_cast<Bytef *>(deflatedBytes_.data());
  stream->avail_out = uInt(deflatedBytes_.size());
  if (deflate(stream, Z_FINISH) != Z_STREAM_END)
    throw std::bad_alloc(); // the bound leaves room for all; deflate fails only for want of memory
  deflatedBytes_.resize(qsizetype(stream->total_out));
  return deflatedBytes_;
}

void PdfFile::beginObject(int number) {
  offsets_[std::size_t(number - 1)] = written_ + buffer_.size();
  QByteArray head;
  appendInteger(head, number);
  head.append(" 0 obj\n");
  append(head);
}

void PdfFile::writeObject(int number, const QByteArray &body) {
  beginObject(number);
  append(body);
  append("\nendobj\n", 8);
}

void PdfFile::writeStream(int number, const QByteArray &entries, const QByteArray &data, bool deflate) {
  const QByteArray &content = deflate ? deflated(data) : data;
  QByteArray head("<<");
  head.append(entries);
  if (deflate)
    head.append("/Filter/FlateDecode");
  head.append("/Length ");
  appendInteger(head, content.size());
  head.append(">>\nstream\n");
  beginObject(number);
  append(head);
  append(content);
  append("\nendstream\nendobj\n", 18);
}

void PdfFile::finish(int catalog, int info) {
  const std::int64_t table = written_ + buffer_.size();
  QByteArray out("xref\n0 ");
  appendInteger(out, std::int64_t(offsets_.size()) + 1);
  out.append("\n0000000000 65535 f \n");
  append(out);
  for (const std::int64_t offset : offsets_) {
    // A number reserved and never written stands as a free entry.
    if (offset < 0) {
      append("0000000000 65535 f \n", 20);
      continue;
    }
    QByteArray entry;
    appendInteger(entry, offset);
    entry.prepend(QByteArray(10 - entry.size(), '0')).append(" 00000 n \n");
    append(entry);
  }
  out = "trailer\n<</Size ";
  appendInteger(out, std::int64_t(offsets_.size()) + 1);
  out.append("/Root ").append(reference(catalog)).append("/Info ").append(reference(info));
  out.append(">>\nstartxref\n");
  appendInteger(out, table);
  out.append("\n%%EOF\n");
  append(out);
  flush();
}

} // namespace kordel::engine::pdf
