#include "data/Context.h"

#include "core/Dictionary.h"
#include "core/Error.h"
#include "hostapi/Classes.h"
#include "hostapi/Filters.h"

namespace kordel::addin {

namespace {

const QString kExportFile = QStringLiteral("sysprop__exportfile");
const QString kPrinterName = QStringLiteral("sysprop__printername");

bool isFilter(const Variant &value) {
  return value.isObject() && std::dynamic_pointer_cast<hostapi::Filter>(value.rawObject()) != nullptr;
}

// A map handed to a setter; Nothing lets the context make a fresh one on
// the next read.
std::shared_ptr<Dictionary> dictionaryOf(const Variant &value) {
  const ObjectRef object = value.toObject();
  auto dictionary = std::dynamic_pointer_cast<Dictionary>(object);
  if (object && !dictionary)
    raiseError(ErrorNumber::TypeMismatch, QStringLiteral("Context"),
               QStringLiteral("A context's maps are dictionaries"));
  return dictionary;
}

} // namespace

std::shared_ptr<Dictionary> Context::ExtensionsProperties() const {
  if (!extensionsProperties_)
    extensionsProperties_ = std::make_shared<Dictionary>();
  return extensionsProperties_;
}

std::shared_ptr<Dictionary> Context::SubFilters() const {
  if (!subFilters_)
    subFilters_ = std::make_shared<Dictionary>();
  return subFilters_;
}

Variant Context::getProperty(const QString &name, const Variant &defaultValue) const {
  const Variant key(name);
  if (SubFilters()->exists(key))
    return SubFilters()->value(key);
  if (ExtensionsProperties()->exists(key))
    return ExtensionsProperties()->value(key);
  return defaultValue;
}

void Context::setProperty(const QString &name, const Variant &value) {
  const Variant key(name);
  if (value.isEmpty()) {
    if (SubFilters()->exists(key))
      SubFilters()->remove(key);
    else if (ExtensionsProperties()->exists(key))
      ExtensionsProperties()->remove(key);
    return;
  }
  if (isFilter(value)) {
    // An add, not a replace: AddSubFilter is the way to replace a filter.
    SubFilters()->add(key, value);
    return;
  }
  ExtensionsProperties()->setItem(key, value);
}

QString Context::fileName() const { return getProperty(kExportFile, QString()).toString(); }
void Context::setFileName(const QString &path) { setProperty(kExportFile, path); }
QString Context::printerName() const { return getProperty(kPrinterName, QString()).toString(); }
void Context::setPrinterName(const QString &name) { setProperty(kPrinterName, name); }

void Context::AddExtensionsProperty(const QString &name, const QString &value) {
  ExtensionsProperties()->setItem(name, value);
}

void Context::AddSubFilter(const QString &name, const std::shared_ptr<hostapi::Filter> &filter) {
  SubFilters()->setItem(name, Variant(ObjectRef(filter)));
}

const MemberTable &Context::memberTable() const {
  using C = Context;
  static const MemberTable table{{
      property<C>(
          "Name", [](C &c) { return c.name(); }, [](C &c, const Variant &v) { c.setName(v.toString()); }),
      property<C>(
          "Range", [](C &c) { return c.range(); }, [](C &c, const Variant &v) { c.setRange(v); }),
      property<C>(
          "Class", [](C &c) { return Variant(ObjectRef(c.contextClass())); },
          [](C &c, const Variant &v) {
            const ObjectRef object = v.toObject();
            auto cls = std::dynamic_pointer_cast<hostapi::Class>(object);
            if (object && !cls)
              raiseError(ErrorNumber::TypeMismatch, QStringLiteral("Context.Class"));
            c.setContextClass(cls);
          }),
      method<C>("GetProperty",
                [](C &c, Args &a) {
                  expectArgs(a, 1, 2);
                  return c.getProperty(a[0].toString(), arg(a, 1));
                }),
      method<C>("SetProperty",
                [](C &c, Args &a) {
                  expectArgs(a, 2, 2);
                  c.setProperty(a[0].toString(), a[1]);
                  return Variant();
                }),
      property<C>(
          "FileName", [](C &c) { return c.fileName(); }, [](C &c, const Variant &v) { c.setFileName(v.toString()); }),
      property<C>(
          "PrinterName", [](C &c) { return c.printerName(); },
          [](C &c, const Variant &v) { c.setPrinterName(v.toString()); }),
      property<C>(
          "ContextType", [](C &c) { return int(c.ContextType()); },
          [](C &c, const Variant &v) {
            const int type = v.toLong();
            if (type < kdContextTypeFilter || type > kdContextTypeContext)
              raiseError(ErrorNumber::InvalidCall, QStringLiteral("Context.ContextType"),
                         QStringLiteral("A context type is 0 to 3, not %1").arg(type));
            c.SetContextType(ContextTypeEnum(type));
          }),
      property<C>(
          "ExtensionsProperties", [](C &c) { return Variant(ObjectRef(c.ExtensionsProperties())); },
          [](C &c, const Variant &v) { c.SetExtensionsProperties(dictionaryOf(v)); }),
      property<C>(
          "SubFilters", [](C &c) { return Variant(ObjectRef(c.SubFilters())); },
          [](C &c, const Variant &v) { c.SetSubFilters(dictionaryOf(v)); }),
      method<C>("AddExtensionsProperty",
                [](C &c, Args &a) {
                  expectArgs(a, 2, 2);
                  c.AddExtensionsProperty(a[0].toString(), a[1].toString());
                  return Variant();
                }),
      method<C>("AddSubFilter",
                [](C &c, Args &a) {
                  expectArgs(a, 2, 2);
                  auto filter = std::dynamic_pointer_cast<hostapi::Filter>(a[1].toObject());
                  if (!filter)
                    raiseError(ErrorNumber::TypeMismatch, QStringLiteral("Context.AddSubFilter"),
                               QStringLiteral("A sub filter must be a Filter"));
                  c.AddSubFilter(a[0].toString(), filter);
                  return Variant();
                }),
  }};
  return table;
}

} // namespace kordel::addin
