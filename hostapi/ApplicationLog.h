#pragma once

#include "core/Object.h"

namespace kordel::hostapi {

// Severity of an application log entry.
namespace LogLevel {
constexpr int UserMessage = 0;
constexpr int Warning = 1;
constexpr int Error = 2;
} // namespace LogLevel

// The host's application log: one entry a call.
class ApplicationLog : public Object {
public:
  virtual void writeLogEntry(int level, const QString &module, const QString &source, const QString &code,
                             const QString &text) = 0;
};

} // namespace kordel::hostapi
