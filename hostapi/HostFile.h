#pragma once

#include "core/Object.h"

#include <QStringList>

#include <memory>

namespace kordel::hostapi {

inline constexpr const char *kPropertiesProgId = "Nuvo.Properties";
inline constexpr const char *kFileOpenAttributesProgId = "Nuvo.FileOpenAttributes";
inline constexpr const char *kHostFileProgId = "Nuvo.File";
inline constexpr const char *kDocumentProgId = "Nuvo.Document";

// Kinds of host file.
namespace FileKind {
constexpr int Report = 114;
} // namespace FileKind

// HostFile.Open: bits of the mode.
namespace FileOpenMode {
constexpr int Existing = 1; // open the file when it exists
constexpr int Create = 2;   // make it when it does not; a file opened without this bit is read only
} // namespace FileOpenMode

// Named values in the order they were first set; names are compared
// without regard to case. Late-bound: Item(name) (default, read and
// write), SetItem(name, value), Exists(name), Remove(name), Count, Names.
class NamedValues : public Object {
public:
  // Empty when the name is not set.
  virtual Variant item(const QString &name) const = 0;
  virtual void setItem(const QString &name, const Variant &value) = 0;
  virtual bool exists(const QString &name) const = 0;
  // Removing a name that is not set raises 32811 (element not found), as a
  // dictionary's Remove does.
  virtual void remove(const QString &name) = 0;
  virtual int count() const = 0;
  virtual QStringList names() const = 0;
};

// A file of the host's database: a named, policy-governed record with
// string properties and opaque contents. Changes stay in the object until
// Save writes all of them at once. Late-bound: Open(database, kind, mode,
// attributes), Save, Reload, Name, GetProperty(key), SetProperty(key,
// value), Contents, Policy, Guid, Kind.
class HostFile : public Object {
public:
  // The attributes name the file by "guid". Raises 53 for a missing file
  // opened without FileOpenMode::Create and 70 when the user may not read
  // it.
  virtual void open(const ObjectRef &database, int kind, int mode, const std::shared_ptr<NamedValues> &attributes) = 0;
  // Writes name, policy, properties and contents in one transaction.
  // Raises 70 when the user may not change the file, and for a file
  // opened read only.
  virtual void save() = 0;
  // Drops unsaved changes and reads the file again.
  virtual void reload() = 0;
  virtual QString guid() const = 0;
  virtual int kind() const = 0;
  virtual QString name() const = 0;
  virtual void setName(const QString &name) = 0;
  // "" for a key that is not set.
  virtual QString getProperty(const QString &key) const = 0;
  virtual void setProperty(const QString &key, const QString &value) = 0;
  // A byte array, or Empty for a file without contents.
  virtual Variant contents() const = 0;
  virtual void setContents(const Variant &contents) = 0;
  virtual int policy() const = 0;
  virtual void setPolicy(int policy) = 0;
};

// An opaque document value and its file form. Late-bound: Contents (read
// and write), LoadFromFile(path), SaveToFile(path).
class Document : public Object {
public:
  // A byte array; Empty for a new document.
  virtual Variant contents() const = 0;
  // Takes a byte array or a string (kept as its UTF-8 bytes); raises 13 for
  // other values.
  virtual void setContents(const Variant &contents) = 0;
  // Raises 53 for a missing file.
  virtual void loadFromFile(const QString &path) = 0;
  // Replaces the file at once or not at all.
  virtual void saveToFile(const QString &path) const = 0;
};

} // namespace kordel::hostapi
