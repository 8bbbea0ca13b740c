#pragma once

#include "core/Variant.h"

#include <QFont>
#include <QString>

#include <vector>

namespace kordel::addin {

// The per-user settings of the add-in, kept by the host's registry object
// under one root key. Every value is stored as a string.
extern const QString kSettingsRoot;

// A value under a full key path; when default is not Empty an absent value
// reads as default.
Variant ReadSetting(const QString &key, const QString &name, const Variant &defaultValue);
void WriteSetting(const QString &key, const QString &name, const QString &value);

// Settings of one report, kept per database: below
// "<root>\Reports\<database names and report>\<section>".
Variant ReadReportSetting(const QString &report, const QString &section, const QString &name,
                          const Variant &defaultValue);
void WriteReportSetting(const QString &report, const QString &section, const QString &name, const Variant &value);

// A font under a key: Name, Size (whole points), Bold, Italic, Underline,
// StrikeThru. A value that cannot be read gives a new default font.
QFont ReadFont(const QString &key);
void WriteFont(const QString &key, const QFont &font);

// The font a new font object has.
QFont NewFont();

// root followed by "\" and each non-empty element, with any "\" inside an
// element replaced by "-" so that an element cannot open a subkey.
QString RegistryPath(const QString &root, const std::vector<Variant> &elements);

// The key element of a report: the database's two name strings and the
// report's name, joined with ".".
QString ReportKey(const QString &report);

} // namespace kordel::addin
