#include "common/Settings.h"

#include "common/ApplicationManager.h"
#include "core/Error.h"
#include "hostapi/Database.h"
#include "hostapi/RegistryKey.h"

namespace kordel::addin {

const QString kSettingsRoot = QStringLiteral("HKEY_CURRENT_USER\\Software\\Skarnholt\\Orvex\\Modules\\StandardReports");

namespace {

std::shared_ptr<hostapi::RegistryKey> openKey(const QString &key) {
  auto registry =
      std::dynamic_pointer_cast<hostapi::RegistryKey>(CreateObject(QString::fromLatin1(hostapi::kRegistryProgId)));
  if (!registry)
    raiseError(ErrorNumber::CannotCreateObject, QStringLiteral("Settings"),
               QStringLiteral("The host gave no registry"));
  registry->setKey(key);
  return registry;
}

QString reportSettingsPath(const QString &report, const QString &section) {
  return RegistryPath(kSettingsRoot + QStringLiteral("\\Reports"), {Variant(ReportKey(report)), Variant(section)});
}

} // namespace

Variant ReadSetting(const QString &key, const QString &name, const Variant &defaultValue) {
  Variant result = openKey(key)->read(name, defaultValue);
  if (!defaultValue.isEmpty() && result.isEmpty())
    result = defaultValue;
  return result;
}

void WriteSetting(const QString &key, const QString &name, const QString &value) { openKey(key)->write(name, value); }

Variant ReadReportSetting(const QString &report, const QString &section, const QString &name,
                          const Variant &defaultValue) {
  return ReadSetting(reportSettingsPath(report, section), name, defaultValue);
}

void WriteReportSetting(const QString &report, const QString &section, const QString &name, const Variant &value) {
  WriteSetting(reportSettingsPath(report, section), name, value.toString());
}

QFont NewFont() { return QFont(QStringLiteral("DejaVu Sans"), 8); }

QFont ReadFont(const QString &key) {
  try {
    QFont font = NewFont();
    font.setFamily(ReadSetting(key, QStringLiteral("Name"), font.family()).toString());
    font.setPointSize(Variant(ReadSetting(key, QStringLiteral("Size"), font.pointSize())).toInteger());
    font.setBold(ReadSetting(key, QStringLiteral("Bold"), QStringLiteral("0")).toBool());
    font.setItalic(ReadSetting(key, QStringLiteral("Italic"), QStringLiteral("0")).toBool());
    font.setUnderline(ReadSetting(key, QStringLiteral("Underline"), QStringLiteral("0")).toBool());
    font.setStrikeOut(ReadSetting(key, QStringLiteral("StrikeThru"), QStringLiteral("0")).toBool());
    return font;
  } catch (...) {
    // A value that cannot be read gives the default font, not a half-set one.
    return NewFont();
  }
}

void WriteFont(const QString &key, const QFont &font) {
  const auto flag = [](bool on) { return on ? QStringLiteral("1") : QStringLiteral("0"); };
  WriteSetting(key, QStringLiteral("Name"), font.family());
  WriteSetting(key, QStringLiteral("Size"), QString::number(Variant(font.pointSizeF()).toInteger()));
  WriteSetting(key, QStringLiteral("Bold"), flag(font.bold()));
  WriteSetting(key, QStringLiteral("Italic"), flag(font.italic()));
  WriteSetting(key, QStringLiteral("Underline"), flag(font.underline()));
  WriteSetting(key, QStringLiteral("StrikeThru"), flag(font.strikeOut()));
}

QString RegistryPath(const QString &root, const std::vector<Variant> &elements) {
  QString path = root;
  for (const Variant &element : elements) {
    QString text = element.toString();
    if (text.isEmpty())
      continue;
    text.replace(u'\\', u'-');
    path += u'\\';
    path += text;
  }
  return path;
}

QString ReportKey(const QString &report) {
  const auto application = CurrentApplication();
  const auto database = application ? application->database() : nullptr;
  if (!database)
    raiseError(ErrorNumber::ObjectNotSet, QStringLiteral("Settings.ReportKey"), QStringLiteral("No database is open"));
  return database->location() + u'.' + database->name() + u'.' + report;
}

} // namespace kordel::addin
