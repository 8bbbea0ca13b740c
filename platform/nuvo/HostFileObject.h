#pragma once

#include "hostapi/HostFile.h"

#include <QMap>

#include <memory>

namespace kordel::nuvo {

class Engine;

// Nuvo.File: a file of the database's file table (report records are kind
// 114). The object holds a copy; Save writes the copy back in one
// transaction, under the rights of the file's policy.
class HostFileObject : public hostapi::HostFile {
public:
  QString typeName() const override { return QStringLiteral("File"); }

  void open(const ObjectRef &database, int kind, int mode,
            const std::shared_ptr<hostapi::NamedValues> &attributes) override;
  void save() override;
  void reload() override;
  QString guid() const override { return guid_; }
  int kind() const override { return kind_; }
  QString name() const override { return name_; }
  void setName(const QString &name) override;
  QString getProperty(const QString &key) const override { return properties_.value(key); }
  void setProperty(const QString &key, const QString &value) override;
  Variant contents() const override { return contents_; }
  void setContents(const Variant &contents) override;
  int policy() const override { return policy_; }
  void setPolicy(int policy) override;

protected:
  const MemberTable &memberTable() const override;

private:
  void requireOpen() const;
  // Reads the stored file; false when there is none.
  bool read();

  std::shared_ptr<Engine> engine_;
  QString guid_;
  int kind_ = 0;
  bool writable_ = false;
  bool stored_ = false;  // the file exists in the database
  int storedPolicy_ = 0; // the policy the database has for it
  QString name_;
  int policy_ = 0;
  QMap<QString, QString> properties_;
  Variant contents_;
};

} // namespace kordel::nuvo
