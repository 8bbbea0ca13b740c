#pragma once

#include "hostapi/HostFile.h"

namespace kordel::nuvo {

// Nuvo.Document: a document's bytes, moved between the database and files.
class DocumentObject : public hostapi::Document {
public:
  QString typeName() const override { return QStringLiteral("Document"); }

  Variant contents() const override { return contents_; }
  void setContents(const Variant &contents) override;
  void loadFromFile(const QString &path) override;
  void saveToFile(const QString &path) const override;

protected:
  const MemberTable &memberTable() const override;

private:
  Variant contents_;
};

} // namespace kordel::nuvo
