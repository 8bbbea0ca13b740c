#include "host/HostToolsObject.h"

#include "host/PrinterList.h"

#include <QUuid>

namespace kordel::host {

namespace {

// The position of the last separator of either kind, -1 when none.
qsizetype lastSeparator(const QString &path) { return std::max(path.lastIndexOf(u'/'), path.lastIndexOf(u'\\')); }

} // namespace

QString HostToolsObject::newGuid() { return QUuid::createUuid().toString(QUuid::WithBraces).toUpper(); }

QString HostToolsObject::fileExtension(const QString &path) {
  const QString name = fileName(path);
  const qsizetype dot = name.lastIndexOf(u'.');
  return dot < 0 ? QString() : name.mid(dot + 1);
}

QString HostToolsObject::filePath(const QString &path) { return path.left(lastSeparator(path) + 1); }

QString HostToolsObject::fileName(const QString &path) { return path.mid(lastSeparator(path) + 1); }

QString HostToolsObject::defaultPrinterName() { return PrinterList::fromSystem()->defaultPrinterName(); }

const MemberTable &HostToolsObject::memberTable() const {
  static const MemberTable table{{
      method<HostToolsObject>("NewGuid", [](HostToolsObject &t, Args &) { return t.newGuid(); }),
      method<HostToolsObject>("FileExtension",
                              [](HostToolsObject &t, Args &a) {
                                expectArgs(a, 1, 1);
                                return t.fileExtension(a[0].toString());
                              }),
      method<HostToolsObject>("FilePath",
                              [](HostToolsObject &t, Args &a) {
                                expectArgs(a, 1, 1);
                                return t.filePath(a[0].toString());
                              }),
      method<HostToolsObject>("FileName",
                              [](HostToolsObject &t, Args &a) {
                                expectArgs(a, 1, 1);
                                return t.fileName(a[0].toString());
                              }),
      property<HostToolsObject>("DefaultPrinterName", [](HostToolsObject &t) { return t.defaultPrinterName(); }),
  }};
  return table;
}

} // namespace kordel::host
