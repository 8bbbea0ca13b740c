#pragma once

#include <QString>

namespace kordel::host::cli {

// Refuses with 5, naming the languages there are, a language in which the
// add-in has no texts (a file "kordel.<language>.ini" in the translation
// folder beside it). An empty language, the default, passes.
void checkLanguage(const QString &language);

} // namespace kordel::host::cli
