#include "nuvo/SchemaStore.h"

#include "nuvo/Catalog.h"
#include "nuvo/SqlConnection.h"

#include "hostapi/FieldTypes.h"

#include "core/Error.h"

#include <QJsonDocument>
#include <QSqlQuery>

namespace kordel::nuvo {

namespace FT = hostapi::FieldType;

namespace {

const QString kSource = QStringLiteral("Nuvo.Database");

QStringList metadataTables(const SqlConnection &sql) {
  return {
      QStringLiteral("CREATE TABLE nv_setting (name TEXT PRIMARY KEY, value TEXT)"),
      QStringLiteral("CREATE TABLE nv_class (name TEXT PRIMARY KEY, position INTEGER NOT NULL, description TEXT)"),
      QStringLiteral("CREATE TABLE nv_field (class TEXT NOT NULL, name TEXT NOT NULL, position INTEGER NOT NULL, "
                     "type INTEGER NOT NULL, size INTEGER NOT NULL, datatype INTEGER NOT NULL, hidden INTEGER NOT "
                     "NULL, relclass TEXT, relfield TEXT, formula TEXT, PRIMARY KEY (class, name))"),
      QStringLiteral("CREATE TABLE nv_option (class TEXT NOT NULL, field TEXT NOT NULL, optkey INTEGER NOT NULL, "
                     "position INTEGER NOT NULL, name TEXT NOT NULL, PRIMARY KEY (class, field, optkey))"),
      QStringLiteral("CREATE TABLE nv_filter (class TEXT NOT NULL, name TEXT NOT NULL, position INTEGER NOT NULL, "
                     "items TEXT NOT NULL, PRIMARY KEY (class, name))"),
      QStringLiteral("CREATE TABLE nv_text (owner TEXT NOT NULL, language TEXT NOT NULL, text TEXT NOT NULL, "
                     "PRIMARY KEY (owner, language))"),
      QStringLiteral("CREATE TABLE nv_user (login TEXT PRIMARY KEY, name TEXT NOT NULL, coworker INTEGER)"),
      QStringLiteral("CREATE TABLE nv_policy (id INTEGER PRIMARY KEY, name TEXT NOT NULL)"),
      QStringLiteral("CREATE TABLE nv_access (policy INTEGER NOT NULL, login TEXT NOT NULL, mask INTEGER NOT NULL, "
                     "PRIMARY KEY (policy, login))"),
      QStringLiteral("CREATE TABLE nv_file (guid TEXT PRIMARY KEY, kind INTEGER NOT NULL, name TEXT NOT NULL, "
                     "policy INTEGER NOT NULL, contents %1, changed TEXT NOT NULL)")
          .arg(sql.blobType()),
      QStringLiteral("CREATE TABLE nv_fileproperty (guid TEXT NOT NULL, name TEXT NOT NULL, value TEXT NOT NULL, "
                     "PRIMARY KEY (guid, name))"),
  };
}

QString columnType(const FieldDef &field) {
  switch (field.type) {
  case FT::Counter:
  case FT::Integer:
  case FT::YesNo:
  case FT::RelationToOne:
  case FT::Choice: return QStringLiteral("INTEGER");
  case FT::Currency: return QStringLiteral("BIGINT");
  case FT::Decimal:
  case FT::Percent: return QStringLiteral("DOUBLE PRECISION");
  default: return QStringLiteral("TEXT");
  }
}

QString fieldOwner(const ClassDef &cls, const FieldDef &field) { return cls.name + u'.' + field.name; }

void writeTexts(SqlConnection &sql, const QString &owner, const LocalTexts &texts) {
  for (auto it = texts.all().constBegin(); it != texts.all().constEnd(); ++it)
    sql.exec(QStringLiteral("INSERT INTO nv_text (owner, language, text) VALUES (?, ?, ?)"),
             {owner, it.key(), it.value()});
}

void createClassTable(SqlConnection &sql, const ClassDef &cls) {
  QStringList columns;
  for (const auto &field : cls.fields) {
    if (!field->hasColumn())
      continue;
    QString column = SqlConnection::quote(field->name) + u' ' + columnType(*field);
    if (field->type == FT::Counter)
      column += QStringLiteral(" PRIMARY KEY");
    else if (field->type == FT::RelationToOne && sql.dialect() == Dialect::SQLite)
      column += QStringLiteral(" REFERENCES %1 (%2)")
                    .arg(SqlConnection::quote(field->relatedClassName),
                         SqlConnection::quote(QStringLiteral("id") + field->relatedClassName));
    columns << column;
  }
  sql.exec(
      QStringLiteral("CREATE TABLE %1 (%2)").arg(SqlConnection::quote(cls.name), columns.join(QStringLiteral(", "))));
  for (const auto &field : cls.fields) {
    if (field->type != FT::RelationToOne)
      continue;
    sql.exec(QStringLiteral("CREATE INDEX %1 ON %2 (%3)")
                 .arg(SqlConnection::quote(QStringLiteral("ix_") + cls.name + u'_' + field->name),
                      SqlConnection::quote(cls.name), SqlConnection::quote(field->name)));
  }
}

// PostgreSQL checks references, so they come once every table is there,
// and are checked at commit, so that rows may come in any order within a
// transaction.
void addForeignKeys(SqlConnection &sql, const ClassDef &cls) {
  for (const auto &field : cls.fields) {
    if (field->type != FT::RelationToOne)
      continue;
    sql.exec(QStringLiteral("ALTER TABLE %1 ADD FOREIGN KEY (%2) REFERENCES %3 (%4) DEFERRABLE INITIALLY DEFERRED")
                 .arg(SqlConnection::quote(cls.name), SqlConnection::quote(field->name),
                      SqlConnection::quote(field->relatedClassName),
                      SqlConnection::quote(QStringLiteral("id") + field->relatedClassName)));
  }
}

void writeClass(SqlConnection &sql, const ClassDef &cls, int position) {
  sql.exec(QStringLiteral("INSERT INTO nv_class (name, position, description) VALUES (?, ?, ?)"),
           {cls.name, position, cls.descriptionTemplate});
  writeTexts(sql, QStringLiteral("class:") + cls.name, cls.localNames);
  int fieldPosition = 0;
  for (const auto &field : cls.fields) {
    sql.exec(QStringLiteral("INSERT INTO nv_field (class, name, position, type, size, datatype, hidden, relclass, "
                            "relfield, formula) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?)"),
             {cls.name, field->name, fieldPosition++, field->type, field->size, field->dataType, field->hidden ? 1 : 0,
              field->relatedClassName, field->relatedFieldName, field->formula});
    writeTexts(sql, QStringLiteral("field:") + fieldOwner(cls, *field), field->localNames);
    int optionPosition = 0;
    for (const OptionDef &option : field->options) {
      sql.exec(QStringLiteral("INSERT INTO nv_option (class, field, optkey, position, name) VALUES (?, ?, ?, ?, ?)"),
               {cls.name, field->name, option.key, optionPosition++, option.name});
      writeTexts(sql, QStringLiteral("option:%1.%2").arg(fieldOwner(cls, *field)).arg(option.key), option.texts);
    }
  }
  int filterPosition = 0;
  for (const FilterDef &filter : cls.filters) {
    sql.exec(QStringLiteral("INSERT INTO nv_filter (class, name, position, items) VALUES (?, ?, ?, ?)"),
             {cls.name, filter.name, filterPosition++,
              QString::fromUtf8(QJsonDocument(filter.items).toJson(QJsonDocument::Compact))});
    writeTexts(sql, QStringLiteral("filter:") + cls.name + u'.' + filter.name, filter.localNames);
  }
}

// All rows of nv_text, by owner.
QHash<QString, LocalTexts> readTexts(SqlConnection &sql) {
  QHash<QString, LocalTexts> texts;
  QSqlQuery query = sql.select(QStringLiteral("SELECT owner, language, text FROM nv_text"));
  while (query.next())
    texts[query.value(0).toString()].set(query.value(1).toString(), query.value(2).toString());
  return texts;
}

} // namespace

namespace SchemaStore {

bool hasSchema(SqlConnection &sql) {
  return sql.database().tables().contains(QStringLiteral("nv_setting"), Qt::CaseInsensitive);
}

void create(SqlConnection &sql, const Catalog &catalog, const QString &databaseName) {
  if (hasSchema(sql))
    raiseError(ErrorNumber::FileAlreadyExists, kSource,
               QStringLiteral("The database %1 already holds data").arg(sql.address().location()));
  Transaction transaction(sql);
  for (const QString &statement : metadataTables(sql))
    sql.exec(statement);
  sql.exec(QStringLiteral("INSERT INTO nv_setting (name, value) VALUES ('schema', ?)"),
           {QString::number(kSchemaVersion)});
  sql.exec(QStringLiteral("INSERT INTO nv_setting (name, value) VALUES ('name', ?)"), {databaseName});
  int position = 0;
  for (const auto &cls : catalog.classes()) {
    writeClass(sql, *cls, position++);
    createClassTable(sql, *cls);
  }
  if (sql.dialect() == Dialect::PostgreSQL)
    for (const auto &cls : catalog.classes())
      addForeignKeys(sql, *cls);
  transaction.commit();
}

std::unique_ptr<Catalog> load(SqlConnection &sql) {
  if (!hasSchema(sql))
    raiseError(ErrorNumber::InvalidFileFormat, kSource,
               QStringLiteral("%1 is no database of this system").arg(sql.address().location()));
  const QString version = sql.scalar(QStringLiteral("SELECT value FROM nv_setting WHERE name = 'schema'")).toString();
  if (version != QString::number(kSchemaVersion))
    raiseError(ErrorNumber::InvalidFileFormat, kSource,
               QStringLiteral("The database %1 has schema version %2; this program reads version %3")
                   .arg(sql.address().location(), version)
                   .arg(kSchemaVersion));

  const QHash<QString, LocalTexts> texts = readTexts(sql);
  auto catalog = std::make_unique<Catalog>();
  QHash<QString, ClassDef *> classes;
  QSqlQuery classRows = sql.select(QStringLiteral("SELECT name, description FROM nv_class ORDER BY position"));
  while (classRows.next()) {
    auto cls = std::make_unique<ClassDef>();
    cls->name = classRows.value(0).toString();
    cls->descriptionTemplate = classRows.value(1).toString();
    cls->localNames = texts.value(QStringLiteral("class:") + cls->name);
    const QString name = cls->name;
    classes.insert(name, &catalog->addClass(std::move(cls)));
  }
  QSqlQuery fieldRows = sql.select(QStringLiteral("SELECT class, name, type, size, datatype, hidden, relclass, "
                                                  "relfield, formula FROM nv_field ORDER BY class, position"));
  QHash<QString, FieldDef *> fields;
  while (fieldRows.next()) {
    ClassDef *cls = classes.value(fieldRows.value(0).toString());
    if (!cls)
      continue;
    auto field = std::make_unique<FieldDef>();
    field->name = fieldRows.value(1).toString();
    field->type = fieldRows.value(2).toInt();
    field->size = fieldRows.value(3).toInt();
    field->dataType = fieldRows.value(4).toInt();
    field->hidden = fieldRows.value(5).toInt() != 0;
    field->relatedClassName = fieldRows.value(6).toString();
    field->relatedFieldName = fieldRows.value(7).toString();
    field->formula = fieldRows.value(8).toString();
    field->localNames = texts.value(QStringLiteral("field:") + fieldOwner(*cls, *field));
    fields.insert(fieldOwner(*cls, *field), field.get());
    cls->fields.push_back(std::move(field));
  }
  QSqlQuery optionRows =
      sql.select(QStringLiteral("SELECT class, field, optkey, name FROM nv_option ORDER BY class, field, position"));
  while (optionRows.next()) {
    const QString owner = optionRows.value(0).toString() + u'.' + optionRows.value(1).toString();
    FieldDef *field = fields.value(owner);
    if (!field)
      continue;
    OptionDef option;
    option.key = optionRows.value(2).toInt();
    option.name = optionRows.value(3).toString();
    option.texts = texts.value(QStringLiteral("option:%1.%2").arg(owner).arg(option.key));
    field->options.push_back(std::move(option));
  }
  QSqlQuery filterRows =
      sql.select(QStringLiteral("SELECT class, name, items FROM nv_filter ORDER BY class, position"));
  while (filterRows.next()) {
    ClassDef *cls = classes.value(filterRows.value(0).toString());
    if (!cls)
      continue;
    FilterDef filter;
    filter.name = filterRows.value(1).toString();
    filter.items = QJsonDocument::fromJson(filterRows.value(2).toString().toUtf8()).array();
    filter.localNames = texts.value(QStringLiteral("filter:") + cls->name + u'.' + filter.name);
    cls->filters.push_back(std::move(filter));
  }
  catalog->complete();
  return catalog;
}

} // namespace SchemaStore

} // namespace kordel::nuvo
