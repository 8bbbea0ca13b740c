#include "engine/print/CupsDestination.h"

#include "core/Error.h"

namespace kordel::engine {

namespace {

constexpr const char *kMediaSource = "media-source";

} // namespace

QString lastCupsError() {
  const char *text = cupsLastErrorString();
  return text && *text ? QString::fromUtf8(text) : QStringLiteral("no reason given");
}

CupsDestination::CupsDestination(const QString &queue, const QString &source) {
  const qsizetype slash = queue.indexOf(u'/');
  const QByteArray name = (slash < 0 ? queue : queue.left(slash)).toUtf8();
  const QByteArray instance = slash < 0 ? QByteArray() : queue.mid(slash + 1).toUtf8();
  dest_ = cupsGetNamedDest(CUPS_HTTP_DEFAULT, name.isEmpty() ? nullptr : name.constData(),
                           instance.isEmpty() ? nullptr : instance.constData());
  if (!dest_) {
    if (queue.isEmpty())
      raiseError(ErrorNumber::InvalidCall, source,
                 QStringLiteral("There is no default printer to print to: %1").arg(lastCupsError()));
    raiseError(ErrorNumber::InvalidCall, source,
               QStringLiteral("The printer \"%1\" is not known to the print system: %2").arg(queue, lastCupsError()));
  }
}

CupsDestination::~CupsDestination() {
  if (info_)
    cupsFreeDestInfo(info_);
  cupsFreeDests(1, dest_);
}

cups_dinfo_t *CupsDestination::info() const {
  if (!info_)
    info_ = cupsCopyDestInfo(CUPS_HTTP_DEFAULT, dest_);
  return info_;
}

QStringList CupsDestination::mediaSources() const {
  QStringList sources;
  if (!info())
    return sources;
  ipp_attribute_t *supported = cupsFindDestSupported(CUPS_HTTP_DEFAULT, dest_, info_, kMediaSource);
  for (int i = 0; i < ippGetCount(supported); ++i) {
    if (const char *keyword = ippGetString(supported, i, nullptr))
      sources << QString::fromUtf8(keyword);
  }
  return sources;
}

QString CupsDestination::mediaSourceName(const QString &keyword) const {
  if (!info())
    return keyword;
  // Without a translation the keyword itself comes back, so it must live
  // until the name is copied.
  const QByteArray value = keyword.toUtf8();
  const char *name = cupsLocalizeDestValue(CUPS_HTTP_DEFAULT, dest_, info_, kMediaSource, value.constData());
  return name && *name ? QString::fromUtf8(name) : keyword;
}

} // namespace kordel::engine
