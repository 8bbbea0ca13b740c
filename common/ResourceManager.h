#pragma once

#include <QString>

namespace kordel::addin {

// The translator of the add-in, shared by every connection: started by the
// first StartTranslation, dropped by the StopTranslation that brings the
// count back to zero.
void StartTranslation(const QString &language);
void StopTranslation();
// The text of "section.item", or the bare item when no translator runs.
QString TranslateText(const QString &item, const QString &section);

// The folder of the add-in's own library; the translation files lie in its
// "translation" subfolder.
QString AddinFolder();

} // namespace kordel::addin
