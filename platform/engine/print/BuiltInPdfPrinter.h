#pragma once

#include <QString>

namespace kordel::engine {

class PageDocument;

// The printer every machine has: it writes each job as a PDF file into the
// user's documents folder, under the job's name.

// Whether a device name is the built-in PDF printer's.
bool isBuiltInPdfPrinter(const QString &deviceName);
QString builtInPdfPrinterName();

// The folder the built-in printer writes into: the user's documents folder.
QString builtInPdfFolder();

// The file name a job gets before any number is added: the job's name
// without the characters a file name cannot hold, ending in ".pdf";
// "Report.pdf" for a name with nothing left.
QString pdfFileNameForJob(const QString &jobName);

// Writes the pages from firstPage to lastPage (from 0, both included) as a
// new PDF file in the documents folder, creating the folder when it is
// missing, and returns the file's path. A name that is taken gets " (2)",
// " (3)" … before its extension; no file is ever replaced.
//
// Errors: 76 when the folder cannot be made, 70 when the file cannot be
// written, 9 for a page range outside the document, 5 for a document
// without pages.
QString printToBuiltInPdfPrinter(const PageDocument &document, int firstPage, int lastPage, const QString &jobName);

} // namespace kordel::engine
