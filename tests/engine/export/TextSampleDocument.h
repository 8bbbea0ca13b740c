#pragma once

#include "engine/render/PageDocument.h"

#include <QString>

namespace kordel::test {

// The texts of the sample document, in reading order.
extern const QString kSwedish;
extern const QString kCzech;
extern const QString kMarkup;
extern const QString kRtfLike;
extern const QString kGreek;
extern const QString kSecondPageEnd;

// A picture of the sample: 40 by 20 pixels, red with a blue left half.
QImage samplePicture();

// Two pages: an A4 portrait page with Swedish and Czech text on one line
// (the Czech run stored first), markup characters on the lines below in a
// bold red font, a line, a rectangle, an ellipse and the picture; then an
// A4 landscape page with centred Greek text and a right-aligned run.
engine::PageDocument textSampleDocument();

} // namespace kordel::test
