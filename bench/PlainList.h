#pragma once

#include <QString>

#include <memory>

namespace kordel::engine {
class LayoutReport;
}

// The layout engine's plain list: N rows of six fields, grouped on one of
// them, with a page header and a page footer showing page X of Y, fed by
// the run's FetchData event. Shared by the engine's and the report run's
// benchmarks, so that both print the engine's own figure beside theirs.
struct PlainListRun {
  std::shared_ptr<kordel::engine::LayoutReport> report;
  int pages = 0;
  double runSeconds = 0;
  double exportSeconds = 0;
};

// Runs the list of that many rows and exports it to the PDF file.
PlainListRun runPlainList(int rows, const QString &pdf);
