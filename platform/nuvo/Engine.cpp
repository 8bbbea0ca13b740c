#include "nuvo/Engine.h"

#include "nuvo/PoolTables.h"
#include "nuvo/QueryBuilder.h"
#include "nuvo/RecordEvaluator.h"
#include "nuvo/RecordsObject.h"
#include "nuvo/SchemaStore.h"

#include "hostapi/Database.h"

#include "core/Error.h"

#include <QSqlQuery>

namespace kordel::nuvo {

namespace {
const QString kSource = QStringLiteral("Nuvo.Database");
} // namespace

std::shared_ptr<Engine> Engine::open(const DatabaseAddress &address, const QString &language, const QString &login,
                                     OpenMode mode) {
  auto sql = std::make_unique<SqlConnection>(address, mode);
  auto catalog = SchemaStore::load(*sql);
  // Only once the file is known to be a database of ours.
  if (mode == OpenMode::ReadWrite)
    sql->useWriteAheadLog();
  auto engine = std::make_shared<Engine>(Token{}, std::move(sql), std::move(catalog), language);
  engine->loadUser(login);
  return engine;
}

std::shared_ptr<Engine> Engine::create(const DatabaseAddress &address, std::unique_ptr<Catalog> catalog,
                                       const QString &databaseName, const QString &language) {
  auto sql = std::make_unique<SqlConnection>(address, OpenMode::Create);
  catalog->complete();
  SchemaStore::create(*sql, *catalog, databaseName);
  sql->useWriteAheadLog();
  auto engine = std::make_shared<Engine>(Token{}, std::move(sql), std::move(catalog), language);
  engine->loadUser({});
  return engine;
}

Engine::Engine(Token, std::unique_ptr<SqlConnection> sql, std::unique_ptr<Catalog> catalog, QString language)
    : sql_(std::move(sql)), catalog_(std::move(catalog)), language_(std::move(language)), display_(language_),
      poolTables_(std::make_unique<PoolTables>(*sql_)) {
  databaseName_ = sql_->scalar(QStringLiteral("SELECT value FROM nv_setting WHERE name = 'name'")).toString();
}

Engine::~Engine() = default;

void Engine::loadUser(const QString &wanted) {
  QStringList candidates;
  if (!wanted.isEmpty()) {
    candidates << wanted;
  } else {
    candidates << qEnvironmentVariable("ORVEX_USER") << qEnvironmentVariable("USER");
  }
  user_ = {};
  userRecord_.reset();
  access_.clear();
  for (const QString &login : candidates) {
    if (login.isEmpty())
      continue;
    QSqlQuery query =
        sql_->select(QStringLiteral("SELECT login, name, coworker FROM nv_user WHERE login = ?"), {login});
    if (query.next()) {
      user_ = {query.value(0).toString(), query.value(1).toString(), query.value(2).toInt()};
      break;
    }
  }
  if (user_.login.isEmpty()) {
    if (!wanted.isEmpty())
      raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("'%1' is no user of this database").arg(wanted));
    QSqlQuery first = sql_->select(QStringLiteral("SELECT login, name, coworker FROM nv_user ORDER BY login"));
    if (first.next())
      user_ = {first.value(0).toString(), first.value(1).toString(), first.value(2).toInt()};
  }
  // A user's own row wins over the row for everyone ("*").
  QSqlQuery rights = sql_->select(
      QStringLiteral("SELECT policy, login, mask FROM nv_access WHERE login = ? OR login = '*' ORDER BY policy, login"),
      {user_.login});
  while (rights.next()) {
    const int policy = rights.value(0).toInt();
    const bool own = rights.value(1).toString() != QStringLiteral("*");
    if (own || !access_.contains(policy))
      access_.insert(policy, rights.value(2).toInt());
  }
}

void Engine::signIn(const QString &login) {
  if (login.isEmpty())
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("Signing in needs a login"));
  loadUser(login);
}

int Engine::accessMask(int policy) const {
  if (policy == 0)
    return hostapi::Access::All;
  return access_.value(policy, 0);
}

const ClassDef &Engine::classNamed(const QString &name) const {
  const ClassDef *cls = catalog_->find(name);
  if (!cls)
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The database has no class '%1'").arg(name));
  return *cls;
}

std::optional<FieldPath> Engine::resolved(const ClassDef &start, const QString &path, int mode) const {
  // Scripts may ask for any number of paths; the kept ones stay few.
  constexpr int kMostKept = 4096;
  const auto key = std::make_pair(&start, mode);
  const auto paths = resolved_.constFind(key);
  if (paths != resolved_.constEnd()) {
    const auto known = paths->constFind(path);
    if (known != paths->constEnd())
      return *known;
  }
  if (resolvedCount_ >= kMostKept) {
    resolved_.clear();
    resolvedCount_ = 0;
  }
  ++resolvedCount_;
  return *resolved_[key].insert(path, resolvePath(start, path, mode, language_));
}

std::shared_ptr<const RecordSet> Engine::userRecord() {
  if (user_.coworker == 0)
    return nullptr;
  if (!userRecord_) {
    const ClassDef &cls = classNamed(QStringLiteral("coworker"));
    QueryBuilder query(*this, cls);
    for (const FieldPath &path : plainPaths(cls))
      query.addPath(path);
    query.setRecordId(user_.coworker);
    auto set = query.run();
    if (set->rowCount() == 0)
      return nullptr;
    userRecord_ = std::move(set);
  }
  return userRecord_;
}

RecordEvaluator &Engine::evaluator() {
  if (!evaluator_)
    evaluator_ = std::make_unique<RecordEvaluator>(*this);
  return *evaluator_;
}

} // namespace kordel::nuvo
