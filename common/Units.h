#pragma once

#include <cstdint>

namespace kordel::addin {

// Units of the layout and the layout engine's printer objects.
//
// Conversions go to the nearest whole twip, ties to even, at the very end;
// a result beyond a 32-bit integer raises 6. Centimetres are first rounded
// to whole millimetres, so 2.54 cm is 25 mm and 1417 twips, not 1440.
std::int32_t CentimetersToTwips(float value);
std::int32_t InchesToTwips(float value);
std::int32_t MmToTwips(std::int32_t value);
float TwipsToCentimeters(std::int32_t value);
float TwipsToMm(std::int32_t value);

} // namespace kordel::addin
