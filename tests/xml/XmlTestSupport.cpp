#include "XmlTestSupport.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace kordel::test {

StderrCapture::StderrCapture() {
  std::fflush(stderr);
  char path[] = "/tmp/kordel-stderr-XXXXXX";
  captureFd_ = mkstemp(path);
  unlink(path);
  savedFd_ = dup(STDERR_FILENO);
  dup2(captureFd_, STDERR_FILENO);
}

StderrCapture::~StderrCapture() {
  std::fflush(stderr);
  dup2(savedFd_, STDERR_FILENO);
  close(savedFd_);
  close(captureFd_);
}

QByteArray StderrCapture::text() const {
  std::fflush(stderr);
  QByteArray text;
  char buffer[4096];
  ssize_t count;
  off_t offset = 0;
  while ((count = pread(captureFd_, buffer, sizeof buffer, offset)) > 0) {
    text.append(buffer, count);
    offset += count;
  }
  return text;
}

QStringList hostileValues() {
  return {
      QString(),
      QStringLiteral("line one\nline two"),
      QStringLiteral("carriage\rreturn"),
      QStringLiteral("windows\r\nline\r\n"),
      QStringLiteral("\r\n\n\r"),
      QStringLiteral("\ttab\tand  two  blanks "),
      QStringLiteral(" leading and trailing "),
      QStringLiteral("double \" quote"),
      QStringLiteral("apostrophe ' here"),
      QStringLiteral("both ' and \" together"),
      QStringLiteral("<tag attr=\"x\">&amp; & < > ]]>"),
      QStringLiteral("Svenska: åäö ÅÄÖ é"),
      QStringLiteral("Čeština: ěščřžýáíé ůú ĚŠČŘŽ"),
      QStringLiteral("emoji 😀 👍🏽 and 𝄞"),
      QStringLiteral("\\C013\\ marker text"),
  };
}

} // namespace kordel::test
