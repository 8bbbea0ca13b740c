#pragma once

#include "support/ErrorCapture.h"
#include "core/Error.h"

#include <QByteArray>
#include <QStringList>

#include <functional>

namespace kordel::test {

// While it lives, everything written to the process's stderr (file
// descriptor 2, so also what C libraries print) goes to a temporary file;
// text() gives what was written so far.
class StderrCapture {
public:
  StderrCapture();
  ~StderrCapture();
  StderrCapture(const StderrCapture &) = delete;
  StderrCapture &operator=(const StderrCapture &) = delete;

  QByteArray text() const;

private:
  int savedFd_;
  int captureFd_;
};

// Values that tend to break XML writers and readers: line breaks of every
// kind, tabs, quotes, markup characters, non-ASCII letters, emoji, blanks
// and the empty string.
QStringList hostileValues();

} // namespace kordel::test
