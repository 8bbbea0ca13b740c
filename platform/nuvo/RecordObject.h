#pragma once

#include "nuvo/RecordSet.h"

#include "hostapi/Records.h"

#include <QHash>

#include <memory>

namespace kordel::nuvo {

class Engine;

// A record of a query: one row of a shared RecordSet. A path the query did
// not fetch is read by a query of its own for this record, and kept.
class RecordObject : public hostapi::Record {
public:
  RecordObject(std::shared_ptr<Engine> engine, std::shared_ptr<const RecordSet> set, int row,
               int state = hostapi::RecordState::Saved);

  QString typeName() const override { return QStringLiteral("Record"); }

  int id() const override { return set_->id(row_); }
  std::shared_ptr<hostapi::Class> recordClass() const override;
  std::shared_ptr<hostapi::Fields> fields() const override;
  std::shared_ptr<hostapi::Field> field(const QString &path) override;
  Variant value(const QString &path) override;
  QString text(const QString &path) override;
  Variant evaluate(const QString &expression, int flags) override;
  QString description() override;
  int state() const override { return state_; }

  const ClassDef &definition() const { return set_->recordClass(); }
  const std::shared_ptr<Engine> &engine() const { return engine_; }

protected:
  const MemberTable &memberTable() const override;

private:
  // Where the value of a path lies.
  struct Cell {
    const RecordSet *set;
    int row;
    int column;
    Variant value() const { return set->value(row, column); }
  };

  Cell locate(const QString &path);
  // Fetches the paths that neither the query nor an earlier read fetched,
  // in one query.
  void fetch(const std::vector<FieldPath> &paths);
  QString textOf(const Cell &cell) const;

  std::shared_ptr<Engine> engine_;
  std::shared_ptr<const RecordSet> set_;
  int row_;
  int state_;
  std::vector<std::shared_ptr<const RecordSet>> extras_;
};

} // namespace kordel::nuvo
