#pragma once

// The engine's layout file: UTF-8 XML in one canonical form, described in
// LayoutFormat.md beside this file.

#include <QByteArray>
#include <QString>

namespace kordel::engine {

class LayoutReport;

// The version of the format this engine writes, and the highest it reads.
inline constexpr int kLayoutFormatVersion = 1;

// The layout part of the report as a layout file: the report's settings,
// its page settings and scripts, the sections and their controls. Unbound
// fields, named items and plugged-in sub reports are run-time state and are
// not saved. The same layout always gives the same bytes. Raises 5, naming
// the element, for a text that XML cannot store (control characters other
// than tab, line feed and carriage return) or a number that is not finite.
QByteArray saveLayout(const LayoutReport &report);

// Writes saveLayout's bytes through a temporary file beside the target that
// then replaces it, so a failed save leaves the old file. Raises 76 when the
// folder does not exist, 70 when the file cannot be written.
void saveLayoutFile(const LayoutReport &report, const QString &path);

// Reads a layout file into the report, replacing its sections, scripts,
// script language, print width, document name, caption and page settings;
// unbound fields and named items stay. The whole file is read before the
// report changes: a file that is not a layout this engine can read raises
// 321, naming the element at fault, and leaves the report as it was.
void loadLayout(LayoutReport &report, const QByteArray &bytes);

} // namespace kordel::engine
