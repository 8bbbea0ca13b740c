#include "design/DesignerAutoSave.h"

#include "common/ApplicationManager.h"

#include "hostapi/HostTools.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace kordel::addin {

namespace {

constexpr int kPauseMs = 3000;
constexpr int kPeriodMs = 2 * 60 * 1000;

} // namespace

DesignerAutoSave::DesignerAutoSave(QString reportGuid, std::function<QByteArray()> snapshot,
                                   std::function<bool()> unsaved)
    : path_(PathFor(reportGuid)), snapshot_(std::move(snapshot)), unsaved_(std::move(unsaved)) {
  pause_.setSingleShot(true);
  pause_.setInterval(kPauseMs);
  connect(&pause_, &QTimer::timeout, this, [this] { WriteNow(); });
  period_.setInterval(kPeriodMs);
  connect(&period_, &QTimer::timeout, this, [this] { WriteNow(); });
  period_.start();
}

QString DesignerAutoSave::PathFor(const QString &reportGuid) {
  QString name = reportGuid;
  name.remove(u'{').remove(u'}');
  return HostTools()->dataFolder() + QStringLiteral("/autosave/") + name + QStringLiteral(".xml");
}

std::optional<QByteArray> DesignerAutoSave::Pending(const QString &reportGuid) {
  QFile file(PathFor(reportGuid));
  if (!file.open(QIODevice::ReadOnly))
    return std::nullopt;
  return file.readAll();
}

void DesignerAutoSave::NoteChange() { pause_.start(); }

void DesignerAutoSave::WriteNow() {
  try {
    if (!unsaved_())
      return;
    const QByteArray contents = snapshot_();
    QDir().mkpath(QFileInfo(path_).absolutePath());
    QSaveFile file(path_);
    if (!file.open(QIODevice::WriteOnly) || file.write(contents) != contents.size() || !file.commit())
      LogEvent(QStringLiteral("The designer could not keep its autosave in %1: %2").arg(path_, file.errorString()));
  } catch (...) {
    LogEvent(QStringLiteral("The designer could not take its autosave for %1").arg(path_));
  }
}

void DesignerAutoSave::Remove() {
  pause_.stop();
  QFile::remove(path_);
}

} // namespace kordel::addin
