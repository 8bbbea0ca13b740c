#pragma once

#include "hostapi/HostTools.h"

namespace kordel::host {

// The host's helper object ("Orvex.HostTools"). File names may use either
// "/" or "\" as separator. Late-bound: NewGuid, FileExtension, FilePath,
// FileName, DefaultPrinterName, LoadIconPicture.
class HostToolsObject : public hostapi::HostTools {
public:
  QString typeName() const override { return QStringLiteral("HostTools"); }

  QString newGuid() override;
  QString fileExtension(const QString &path) override;
  QString filePath(const QString &path) override;
  QString fileName(const QString &path) override;
  // The name of the system's default printer; "" when there is none.
  QString defaultPrinterName() override;
  QString dataFolder() override;
  std::shared_ptr<hostapi::Picture> loadIconPicture(const QString &instance, const QString &resource, int width,
                                                    int height) override;

protected:
  const MemberTable &memberTable() const override;
};

} // namespace kordel::host
