#include "nuvo/ReportContextObject.h"

#include "hostapi/Classes.h"

#include "core/Error.h"

namespace kordel::nuvo {

namespace {
const QString kExportFile = QStringLiteral("sysprop__exportfile");
const QString kPrinterName = QStringLiteral("sysprop__printername");
} // namespace

Variant ReportContextObject::getProperty(const QString &name, const Variant &defaultValue) const {
  for (const auto &[key, value] : properties_)
    if (key == name)
      return value;
  return defaultValue;
}

void ReportContextObject::setProperty(const QString &name, const Variant &value) {
  for (auto it = properties_.begin(); it != properties_.end(); ++it) {
    if (it->first != name)
      continue;
    if (value.isEmpty())
      properties_.erase(it);
    else
      it->second = value;
    return;
  }
  if (!value.isEmpty())
    properties_.emplace_back(name, value);
}

QString ReportContextObject::fileName() const { return getProperty(kExportFile, QString()).toText(); }

void ReportContextObject::setFileName(const QString &path) { setProperty(kExportFile, path); }

QString ReportContextObject::printerName() const { return getProperty(kPrinterName, QString()).toText(); }

void ReportContextObject::setPrinterName(const QString &name) { setProperty(kPrinterName, name); }

QStringList ReportContextObject::propertyNames() const {
  QStringList names;
  for (const auto &entry : properties_)
    names << entry.first;
  return names;
}

const MemberTable &ReportContextObject::memberTable() const {
  static const MemberTable table{{
      property<ReportContextObject>(
          "Name", [](ReportContextObject &c) { return c.name(); },
          [](ReportContextObject &c, const Variant &v) { c.setName(v.toText()); }),
      property<ReportContextObject>(
          "Range", [](ReportContextObject &c) { return c.range(); },
          [](ReportContextObject &c, const Variant &v) { c.setRange(v); }),
      property<ReportContextObject>(
          "Class", [](ReportContextObject &c) { return Variant(ObjectRef(c.contextClass())); },
          [](ReportContextObject &c, const Variant &v) {
            if (v.isNothing() || v.isEmpty()) {
              c.setContextClass(nullptr);
              return;
            }
            auto cls = objectAs<hostapi::Class>(v);
            if (!cls)
              raiseError(ErrorNumber::TypeMismatch, QStringLiteral("Nuvo.ReportContext"),
                         QStringLiteral("Class takes a Class object"));
            c.setContextClass(cls);
          }),
      method<ReportContextObject>("GetProperty",
                                  [](ReportContextObject &c, Args &a) {
                                    expectArgs(a, 1, 2);
                                    return c.getProperty(a[0].toText(), arg(a, 1));
                                  }),
      method<ReportContextObject>("SetProperty",
                                  [](ReportContextObject &c, Args &a) {
                                    expectArgs(a, 2, 2);
                                    c.setProperty(a[0].toText(), a[1]);
                                    return Variant();
                                  }),
      property<ReportContextObject>(
          "FileName", [](ReportContextObject &c) { return c.fileName(); },
          [](ReportContextObject &c, const Variant &v) { c.setFileName(v.toText()); }),
      property<ReportContextObject>(
          "PrinterName", [](ReportContextObject &c) { return c.printerName(); },
          [](ReportContextObject &c, const Variant &v) { c.setPrinterName(v.toText()); }),
      property<ReportContextObject>("PropertyNames",
                                    [](ReportContextObject &c) {
                                      std::vector<Variant> names;
                                      for (const QString &name : c.propertyNames())
                                        names.emplace_back(name);
                                      return VariantArray::fromValues(std::move(names));
                                    }),
  }};
  return table;
}

} // namespace kordel::nuvo
