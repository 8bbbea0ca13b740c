#pragma once

#include <QHash>
#include <QString>
#include <QVariantList>

#include <memory>

namespace kordel::hostapi {
class Pool;
}

namespace kordel::nuvo {

class SqlConnection;

// Pools as SQL sees them. A small pool is a list of bound ids; a large one
// is copied into a temporary table once, and the copy serves every query
// until the pool changes. Tables of pools that are gone are dropped.
class PoolTables {
public:
  // Pools of at most this many ids are written inline.
  static constexpr int kInlineLimit = 100;

  explicit PoolTables(SqlConnection &sql) : sql_(sql) {}

  // SQL that tests an expression for membership in the pool, adding the
  // ids it binds to params: "x IN (?, ?)", "x IN (SELECT id FROM ...)" or,
  // for an empty pool, "1 = 0".
  QString membership(const QString &expression, const std::shared_ptr<hostapi::Pool> &pool, QVariantList &params);

private:
  struct Table {
    std::weak_ptr<hostapi::Pool> pool;
    quint64 revision = 0;
    QString name;
  };

  QString tableFor(const std::shared_ptr<hostapi::Pool> &pool);
  void fill(const QString &table, const hostapi::Pool &pool);
  void dropTablesOfGonePools();

  SqlConnection &sql_;
  QHash<const hostapi::Pool *, Table> tables_;
  int nextTable_ = 1;
};

} // namespace kordel::nuvo
