// rowbuffer_bench: how fast the row buffer fills, sorts and picks the rows
// of each parent, the way the record cursor uses it.
//
//   rowbuffer_bench [--rows N] [--parents M]
//
// Fills N rows (default 1,000,000) of three columns: a 64-character text
// key, a parent id with M distinct values (default 200,000) and an id.
// Sorts on the key and the parent id, then sets a filter for every parent
// id in turn and reads the id of each row it picks. Prints rows per second
// of each step and the peak memory of the process. The walk should grow
// with N, not N squared: compare N = 200,000 with N = 400,000 at the same
// rows per parent.

#include "BenchTools.h"

#include "data/RowBuffer.h"

#include "core/Error.h"

#include <QElapsedTimer>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace kordel;
using namespace kordel::addin;

namespace {

// A small fixed generator, so that every run fills the same rows.
class Random {
public:
  std::uint32_t next() {
    state_ = state_ * 6364136223846793005ull + 1442695040888963407ull;
    return std::uint32_t(state_ >> 33);
  }

private:
  std::uint64_t state_ = 42;
};

void report(const char *step, long long rows, qint64 nanoseconds) {
  std::printf("%-6s %9lld rows in %8.3f s  %12.0f rows/s  peak %5ld MB\n", step, rows, double(nanoseconds) / 1e9,
              nanoseconds ? double(rows) * 1e9 / double(nanoseconds) : 0.0, peakMegabytes());
}

int readCount(int argc, char **argv, const char *option, int fallback) {
  for (int i = 1; i + 1 < argc; ++i) {
    if (std::strcmp(argv[i], option) == 0)
      return std::max(1, std::atoi(argv[i + 1]));
  }
  return fallback;
}

} // namespace

int main(int argc, char **argv) {
  const int rows = readCount(argc, argv, "--rows", 1000000);
  const int parents = readCount(argc, argv, "--parents", 200000);
  try {
    RowBuffer buffer;
    buffer.AppendField(QStringLiteral("company.name"), ColumnType::VarChar, 64);
    buffer.AppendField(QStringLiteral("company.idcompany"), ColumnType::BigInt, 0);
    buffer.AppendField(QStringLiteral("idperson"), ColumnType::BigInt, 0);
    buffer.Open();
    const int keyColumn = buffer.ColumnIndex(QStringLiteral("company.name"));
    const int parentColumn = buffer.ColumnIndex(QStringLiteral("company.idcompany"));
    const int idColumn = buffer.ColumnIndex(QStringLiteral("idperson"));

    Random random;
    QString key(64, u' ');
    QElapsedTimer timer;
    timer.start();
    for (int id = 1; id <= rows; ++id) {
      // Letters of both cases, the first few from a small set so that keys
      // share prefixes as names do.
      for (int i = 0; i < key.size(); ++i) {
        const std::uint32_t draw = random.next();
        key[i] = QChar((draw & 1 ? u'a' : u'A') + (draw >> 1) % (i < 3 ? 4 : 26));
      }
      buffer.AddNew();
      buffer.SetValue(keyColumn, key);
      buffer.SetValue(parentColumn, int(1 + random.next() % std::uint32_t(parents)));
      buffer.SetValue(idColumn, id);
      buffer.Update();
    }
    report("fill", rows, timer.nsecsElapsed());

    timer.restart();
    buffer.SetSort(QStringLiteral("[company.name] ASC, [company.idcompany] DESC"));
    report("sort", rows, timer.nsecsElapsed());

    timer.restart();
    long long walked = 0;
    long long checksum = 0;
    for (int parent = 1; parent <= parents; ++parent) {
      buffer.SetFilter(QStringLiteral("[company.idcompany] = %1").arg(parent));
      while (!buffer.EOF()) {
        checksum += buffer.Value(idColumn).rawLong();
        ++walked;
        buffer.MoveNext();
      }
    }
    buffer.SetFilter(QString());
    const qint64 walk = timer.nsecsElapsed();
    report("walk", walked, walk);
    std::printf("%d filters, %.0f filters/s (checksum %lld)\n", parents, parents * 1e9 / double(walk), checksum);
    return walked == rows ? 0 : 1;
  } catch (const Error &error) {
    std::fprintf(stderr, "rowbuffer_bench: %s (%d)\n", error.description().toUtf8().constData(), error.number());
    return 1;
  }
}
