#include "common/Units.h"

#include "core/Error.h"
#include "core/VbNumber.h"

#include <QString>

#include <cmath>
#include <limits>

namespace kordel::addin {

namespace {

constexpr double kTwipsPerInch = 1440.0;
constexpr float kTwipsPerInchSingle = 1440.0f;
constexpr double kMmPerInch = 25.4;
constexpr float kMmPerCentimetre = 10.0f;

// CLng: to the nearest integer, ties to even; 6 beyond the 32-bit range or
// for a value that is no number.
std::int32_t ToLong(double value, const char *procedure) {
  const double rounded = roundHalfEven(value);
  if (!std::isfinite(rounded) || rounded < double(std::numeric_limits<std::int32_t>::min()) ||
      rounded > double(std::numeric_limits<std::int32_t>::max()))
    raiseError(ErrorNumber::Overflow, QStringLiteral("ARTools.") + QString::fromLatin1(procedure));
  return std::int32_t(rounded);
}

} // namespace

std::int32_t MmToTwips(std::int32_t value) { return ToLong(double(value) / kMmPerInch * kTwipsPerInch, "MmToTwips"); }

std::int32_t CentimetersToTwips(float value) {
  return MmToTwips(ToLong(double(value * kMmPerCentimetre), "CentimetersToTwips"));
}

std::int32_t InchesToTwips(float value) { return ToLong(double(value * kTwipsPerInchSingle), "InchesToTwips"); }

float TwipsToMm(std::int32_t value) { return float(double(value) / kTwipsPerInch * kMmPerInch); }

float TwipsToCentimeters(std::int32_t value) { return float(double(TwipsToMm(value)) / double(kMmPerCentimetre)); }

} // namespace kordel::addin
