#pragma once

#include "engine/render/Page.h"

#include <QString>

#include <optional>

namespace kordel::engine {

class PageDocument;

// Where a search starts: a page, a text run on it and a character in the
// run's text, all counted from 0.
struct TextPosition {
  int page = 0;
  int item = 0;
  int offset = 0;
};

// A place where the text searched for stands.
struct TextHit {
  TextPosition position;
  int length = 0;
  // The characters found, on their page, in twips.
  Box box;
};

// The next place at or after start where a text run holds the text,
// without regard to case, going on over the following pages and round
// from the first page back to start; nothing when no run holds it or the
// text is empty. To find the hit after a hit, start one character after
// it.
std::optional<TextHit> findText(const PageDocument &document, const QString &text, const TextPosition &start);

} // namespace kordel::engine
