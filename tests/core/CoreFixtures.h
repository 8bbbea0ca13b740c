#pragma once

#include "support/ErrorCapture.h"
#include "core/Object.h"
#include "core/Regional.h"
#include "core/Variant.h"

#include <QString>

#include <gtest/gtest.h>

#include <functional>
#include <ostream>

// Readable QStrings in failure messages.
void PrintTo(const QString &text, std::ostream *os);

namespace kordel {
// Readable Variants in failure messages.
void PrintTo(const Variant &value, std::ostream *os);
} // namespace kordel

namespace kordel::test {

// Runs each test on the C regional settings (ISO dates, "." and ",") and
// restores the settings that were in force before.
class RegionalTest : public ::testing::Test {
protected:
  void SetUp() override;
  void TearDown() override;
  static void useLocale(const char *name);

private:
  RegionalSettings saved_;
};

// A date and time from its parts.
Date dateTime(int year, int month, int day, int hours = 0, int minutes = 0, int seconds = 0);

// An object whose default member "Value" holds a value, as a field or a
// text box is in scripts.
class ValueObject : public Object {
public:
  explicit ValueObject(Variant value) : value_(std::move(value)) {}
  QString typeName() const override { return QStringLiteral("ValueObject"); }

protected:
  const MemberTable &memberTable() const override;

private:
  Variant value_;
};

} // namespace kordel::test
