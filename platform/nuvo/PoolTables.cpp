#include "nuvo/PoolTables.h"

#include "nuvo/SqlConnection.h"

#include "hostapi/Pool.h"

namespace kordel::nuvo {

namespace {
// Rows per INSERT when a pool is copied; well below the bound-value limits
// of both databases.
constexpr int kRowsPerInsert = 500;
} // namespace

QString PoolTables::membership(const QString &expression, const std::shared_ptr<hostapi::Pool> &pool,
                               QVariantList &params) {
  const std::vector<int> &ids = pool->ids();
  if (ids.empty())
    return QStringLiteral("1 = 0");
  if (int(ids.size()) <= kInlineLimit) {
    QString marks;
    for (int id : ids) {
      marks += marks.isEmpty() ? QStringLiteral("?") : QStringLiteral(", ?");
      params << id;
    }
    return expression + QStringLiteral(" IN (") + marks + u')';
  }
  return expression + QStringLiteral(" IN (SELECT id FROM ") + tableFor(pool) + u')';
}

QString PoolTables::tableFor(const std::shared_ptr<hostapi::Pool> &pool) {
  dropTablesOfGonePools();
  auto it = tables_.find(pool.get());
  if (it != tables_.end() && it->pool.lock() == pool) {
    if (it->revision != pool->revision()) {
      sql_.exec(QStringLiteral("DELETE FROM ") + it->name);
      fill(it->name, *pool);
      it->revision = pool->revision();
    }
    return it->name;
  }
  const QString name = QStringLiteral("nv_pool_%1").arg(nextTable_++);
  sql_.exec(QStringLiteral("CREATE TEMP TABLE %1 (id INTEGER PRIMARY KEY)").arg(name));
  fill(name, *pool);
  tables_.insert(pool.get(), Table{pool, pool->revision(), name});
  return name;
}

void PoolTables::fill(const QString &table, const hostapi::Pool &pool) {
  const std::vector<int> &ids = pool.ids();
  Transaction transaction(sql_);
  for (std::size_t start = 0; start < ids.size(); start += kRowsPerInsert) {
    const std::size_t end = std::min(ids.size(), start + kRowsPerInsert);
    QString sql = QStringLiteral("INSERT INTO %1 (id) VALUES ").arg(table);
    QVariantList params;
    params.reserve(qsizetype(end - start));
    for (std::size_t i = start; i < end; ++i) {
      sql += i == start ? QStringLiteral("(?)") : QStringLiteral(",(?)");
      params << ids[i];
    }
    sql_.exec(sql, params);
  }
  transaction.commit();
}

void PoolTables::dropTablesOfGonePools() {
  for (auto it = tables_.begin(); it != tables_.end();) {
    if (it->pool.expired()) {
      sql_.exec(QStringLiteral("DROP TABLE ") + it->name);
      it = tables_.erase(it);
    } else {
      ++it;
    }
  }
}

} // namespace kordel::nuvo
