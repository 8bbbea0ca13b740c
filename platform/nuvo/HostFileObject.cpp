#include "nuvo/HostFileObject.h"

#include "nuvo/DatabaseObject.h"
#include "nuvo/Engine.h"

#include "hostapi/Database.h"

#include "core/Error.h"

#include <QDateTime>
#include <QSqlQuery>

namespace kordel::nuvo {

namespace {

const QString kSource = QStringLiteral("Nuvo.File");

// An empty text, never SQL's NULL.
QString notNull(const QString &text) { return text.isNull() ? QStringLiteral("") : text; }

} // namespace

void HostFileObject::requireOpen() const {
  if (!engine_)
    raiseError(ErrorNumber::ObjectNotSet, kSource, QStringLiteral("The file is not open"));
}

bool HostFileObject::read() {
  QSqlQuery row =
      engine_->sql().select(QStringLiteral("SELECT kind, name, policy, contents FROM nv_file WHERE guid = ?"), {guid_});
  properties_.clear();
  if (!row.next()) {
    stored_ = false;
    name_.clear();
    policy_ = storedPolicy_ = 0;
    contents_ = Variant();
    return false;
  }
  if (row.value(0).toInt() != kind_)
    raiseError(ErrorNumber::InvalidCall, kSource,
               QStringLiteral("The file %1 is of kind %2, not %3").arg(guid_).arg(row.value(0).toInt()).arg(kind_));
  const int policy = row.value(2).toInt();
  if (!(engine_->accessMask(policy) & hostapi::Access::Read))
    raiseError(ErrorNumber::PermissionDenied, kSource, QStringLiteral("You may not read the file '%1'").arg(guid_));
  stored_ = true;
  name_ = row.value(1).toString();
  policy_ = storedPolicy_ = policy;
  const QVariant bytes = row.value(3);
  contents_ = bytes.isNull() ? Variant() : Variant(bytes.toByteArray());
  QSqlQuery props =
      engine_->sql().select(QStringLiteral("SELECT name, value FROM nv_fileproperty WHERE guid = ?"), {guid_});
  while (props.next())
    properties_.insert(props.value(0).toString(), props.value(1).toString());
  return true;
}

void HostFileObject::open(const ObjectRef &database, int kind, int mode,
                          const std::shared_ptr<hostapi::NamedValues> &attributes) {
  auto engine = engineOf(database);
  const QString guid = attributes ? attributes->item(QStringLiteral("guid")).toText() : QString();
  if (guid.isEmpty())
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("The attributes name no file (no \"guid\")"));
  engine_ = std::move(engine);
  guid_ = guid;
  kind_ = kind;
  writable_ = mode & hostapi::FileOpenMode::Create;
  const bool found = read();
  if (!found && !writable_)
    raiseError(ErrorNumber::FileNotFound, kSource, QStringLiteral("There is no file %1").arg(guid_));
  if (found && !(mode & hostapi::FileOpenMode::Existing))
    raiseError(ErrorNumber::FileAlreadyExists, kSource, QStringLiteral("The file %1 exists already").arg(guid_));
}

void HostFileObject::save() {
  requireOpen();
  if (!writable_)
    raiseError(ErrorNumber::PermissionDenied, kSource, QStringLiteral("The file %1 was opened to be read").arg(guid_));
  const int change = hostapi::Access::Change;
  if ((stored_ && !(engine_->accessMask(storedPolicy_) & change)) || !(engine_->accessMask(policy_) & change))
    raiseError(ErrorNumber::PermissionDenied, kSource, QStringLiteral("You may not change the file '%1'").arg(name_));
  SqlConnection &sql = engine_->sql();
  const QVariant bytes =
      contents_.isByteArray() ? QVariant(contents_.rawBytes()) : QVariant(QMetaType(QMetaType::QByteArray));
  const QString changed = QDateTime::currentDateTimeUtc().toString(Qt::ISODate);
  Transaction transaction(sql);
  sql.exec(QStringLiteral("DELETE FROM nv_fileproperty WHERE guid = ?"), {guid_});
  sql.exec(QStringLiteral("DELETE FROM nv_file WHERE guid = ?"), {guid_});
  sql.exec(
      QStringLiteral("INSERT INTO nv_file (guid, kind, name, policy, contents, changed) VALUES (?, ?, ?, ?, ?, ?)"),
      {guid_, kind_, notNull(name_), policy_, bytes, changed});
  for (auto it = properties_.constBegin(); it != properties_.constEnd(); ++it)
    sql.exec(QStringLiteral("INSERT INTO nv_fileproperty (guid, name, value) VALUES (?, ?, ?)"),
             {guid_, it.key(), notNull(it.value())});
  transaction.commit();
  stored_ = true;
  storedPolicy_ = policy_;
}

void HostFileObject::reload() {
  requireOpen();
  read();
}

void HostFileObject::setName(const QString &name) {
  requireOpen();
  name_ = name;
}

void HostFileObject::setProperty(const QString &key, const QString &value) {
  requireOpen();
  if (key.isEmpty())
    raiseError(ErrorNumber::InvalidCall, kSource, QStringLiteral("A file property needs a name"));
  properties_.insert(key, value);
}

void HostFileObject::setContents(const Variant &contents) {
  requireOpen();
  if (contents.isEmpty() || contents.isByteArray())
    contents_ = contents;
  else if (contents.isString())
    contents_ = contents.rawString().toUtf8();
  else
    raiseError(ErrorNumber::TypeMismatch, kSource, QStringLiteral("A file holds bytes or text"));
}

void HostFileObject::setPolicy(int policy) {
  requireOpen();
  policy_ = policy;
}

const MemberTable &HostFileObject::memberTable() const {
  static const MemberTable table{{
      method<HostFileObject>("Open",
                             [](HostFileObject &f, Args &a) {
                               expectArgs(a, 4, 4);
                               auto attributes = objectAs<hostapi::NamedValues>(a[3]);
                               if (!attributes)
                                 raiseError(ErrorNumber::TypeMismatch, kSource,
                                            QStringLiteral("Open needs a FileOpenAttributes object"));
                               f.open(a[0].toObject(), a[1].toLong(), a[2].toLong(), attributes);
                               return Variant();
                             }),
      fullRightsOnly(method<HostFileObject>("Save",
                                            [](HostFileObject &f, Args &) {
                                              f.save();
                                              return Variant();
                                            })),
      method<HostFileObject>("Reload",
                             [](HostFileObject &f, Args &) {
                               f.reload();
                               return Variant();
                             }),
      property<HostFileObject>("Guid", [](HostFileObject &f) { return f.guid(); }),
      property<HostFileObject>("Kind", [](HostFileObject &f) { return f.kind(); }),
      property<HostFileObject>(
          "Name", [](HostFileObject &f) { return f.name(); },
          [](HostFileObject &f, const Variant &v) { f.setName(v.toText()); }),
      method<HostFileObject>("GetProperty",
                             [](HostFileObject &f, Args &a) {
                               expectArgs(a, 1, 1);
                               return f.getProperty(a[0].toString());
                             }),
      method<HostFileObject>("SetProperty",
                             [](HostFileObject &f, Args &a) {
                               expectArgs(a, 2, 2);
                               f.setProperty(a[0].toString(), a[1].toText());
                               return Variant();
                             }),
      property<HostFileObject>(
          "Contents", [](HostFileObject &f) { return f.contents(); },
          [](HostFileObject &f, const Variant &v) { f.setContents(v); }),
      property<HostFileObject>(
          "Policy", [](HostFileObject &f) { return f.policy(); },
          [](HostFileObject &f, const Variant &v) { f.setPolicy(v.toLong()); }),
  }};
  return table;
}

} // namespace kordel::nuvo
