#pragma once

#include <QString>

#include <memory>

namespace kordel::nuvo {
class Catalog;
}

// A data model far larger than the demo's, for the benchmarks of what
// walks a model: 300 classes with 20,000 fields between them. Every class
// has its counter and the four system fields, ten relations to one record
// of other classes and the ten relations to many that are their other
// sides, and plain fields of the common kinds for the rest; a few plain
// fields are hidden. The relations run from each class to the next one
// and to classes further round, so following them leads back where it
// began. Local names in English ("Class 7", "Field 12") and Swedish.
namespace LargeModel {

constexpr int kClasses = 300;
constexpr int kFields = 20000;
constexpr int kRelationsToOne = 10;

// The class of a number from 0: "c0", "c1" ...
QString className(int index);

// The model, not yet completed.
std::unique_ptr<kordel::nuvo::Catalog> catalog();

} // namespace LargeModel
