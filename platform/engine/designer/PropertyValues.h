#pragma once

#include "core/Variant.h"

#include <QString>

namespace kordel::engine {

struct DesignProperty;

// The ruler's units, which lengths are shown and typed in.
namespace RulerUnits {
constexpr int Inches = 0;
constexpr int Centimetres = 1;
} // namespace RulerUnits

// How the property list writes a value of the property: lengths in the
// ruler's unit ("2.54 cm", "1.5 in"), line weights in points, colours as
// #rrggbb, booleans True or False, enumerations by their label, fonts as
// "DejaVu Sans, 10 pt, Bold", pictures by their size.
QString valueText(const DesignProperty &property, const Variant &value, int rulerUnits);

// The value a typed text stands for; what valueText writes reads back as
// the same value. Lengths take cm, mm, in (or "), pt or twips after the
// number, else the ruler's unit, and are kept in whole twips; colours
// #rrggbb, &HBBGGRR or a colour's name; a picture is the path of its file,
// and no text is no picture. Raises 13 with a message for the user for
// text that is no value of the property, 5 for a value out of its range.
Variant valueFromText(const DesignProperty &property, const QString &text, int rulerUnits);

// Whether two values of the property are the same value.
bool sameValue(const DesignProperty &property, const Variant &a, const Variant &b);

} // namespace kordel::engine
