#pragma once

#include <QByteArray>
#include <QString>

#include <zlib.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace kordel::engine {
class ExportFile;
}

namespace kordel::engine::pdf {

// The syntax of a PDF file: numbered objects written one after another
// into an export file, each where the cross-reference table at the end
// says it is, and the trailer that names the document's catalog and its
// information. Objects can be numbered before they are written, so that
// an object may refer to one that is written later (a page to the page
// tree that lists all pages at the end). Bytes are gathered in a buffer
// and go to the file in large writes.
class PdfFile {
public:
  explicit PdfFile(ExportFile &file);
  ~PdfFile();
  PdfFile(const PdfFile &) = delete;
  PdfFile &operator=(const PdfFile &) = delete;

  // A new object number; the object is written later.
  int reserve();
  // Writes an object: its number and its body, a dictionary or any value.
  void writeObject(int number, const QByteArray &body);
  // Writes a stream object: the dictionary's entries (without << >> and
  // /Length) and the data, deflated unless told otherwise.
  void writeStream(int number, const QByteArray &entries, const QByteArray &data, bool deflate = true);
  // Writes the cross-reference table and the trailer, and the buffer into
  // the file. Raises 70 when the file refuses a write.
  void finish(int catalog, int info);

private:
  void append(const char *data, qsizetype length);
  void append(const QByteArray &bytes) { append(bytes.constData(), bytes.size()); }
  void beginObject(int number);
  void flush();
  // The data deflated for a /FlateDecode stream.
  const QByteArray &deflated(const QByteArray &data);

  ExportFile &file_;
  // One deflate stream, reset for each PDF stream: making one afresh costs
  // more than deflating a page.
  std::unique_ptr<z_stream, void (*)(z_stream *)> deflater_;
  QByteArray deflatedBytes_;
  QByteArray buffer_;
  std::int64_t written_ = 0;          // bytes handed to the file
  std::vector<std::int64_t> offsets_; // by object number - 1; -1 until written
};

// Appends a number as PDF writes it: at most two decimals, no exponent,
// no trailing zeros.
void appendNumber(QByteArray &out, double value);
void appendInteger(QByteArray &out, std::int64_t value);
// Four hexadecimal digits: a glyph code or a UTF-16 unit.
void appendHex16(QByteArray &out, unsigned value);
// A text string: UTF-16 with its byte order mark, in hexadecimal.
QByteArray textString(const QString &text);
// An object reference "n 0 R".
QByteArray reference(int number);

} // namespace kordel::engine::pdf
