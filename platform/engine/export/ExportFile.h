#pragma once

#include <QByteArray>
#include <QString>

namespace kordel::engine {

class PageDocument;

// Checks that an export can write the file at path. Raises 76 for an empty
// path or a folder that does not exist and 70 when path is a folder. The
// source names the exporter in the error.
void checkExportTarget(const QString &path, const QString &source);

// Writes a finished export file: beside the target under another name, then
// renamed to the target, so a failure leaves any earlier file as it was and
// no partial one. Raises as checkExportTarget does, and 70 when the file
// cannot be written.
void writeExportFile(const QString &path, const QByteArray &bytes, const QString &source);

// Raises 70 for a file that could not be written, with the reason.
[[noreturn]] void raiseExportWriteError(const QString &path, const QString &reason, const QString &source);

// Checks that first to last (from 0, both included) are pages of the
// document: 5 for a document without pages, 9 for another range.
void checkPageRange(const PageDocument &document, int firstPage, int lastPage, const QString &source);

} // namespace kordel::engine
