#include "engine/print/CupsQueue.h"

#include "core/Error.h"

#include <cmath>
#include <type_traits>

namespace kordel::engine {

namespace {

constexpr const char *kMediaSource = "media-source";

// Paper sizes come in hundredths of millimetres.
int hundredthsOfMmToTwips(int value) { return int(std::lround(value * 1440.0 / 2540.0)); }

// The queue's saved options with the job's own on top. Owns the list.
class JobOptions {
public:
  explicit JobOptions(const cups_dest_t &dest) {
    for (int i = 0; i < dest.num_options; ++i)
      add(dest.options[i].name, dest.options[i].value);
  }
  ~JobOptions() { cupsFreeOptions(count_, options_); }
  JobOptions(const JobOptions &) = delete;
  JobOptions &operator=(const JobOptions &) = delete;

  void add(const char *name, const char *value) { count_ = cupsAddOption(name, value, count_, &options_); }
  int count() const { return count_; }
  cups_option_t *options() const { return options_; }

private:
  int count_ = 0;
  cups_option_t *options_ = nullptr;
};

class CupsPrintSystem : public PrintSystem {
public:
  std::vector<SystemPrinter> queues() const override {
    // Without a scheduler the connection fails at once (the local socket
    // or port refuses it) and the list is empty.
    cups_dest_t *dests = nullptr;
    const int found = cupsGetDests2(CUPS_HTTP_DEFAULT, &dests);
    std::vector<SystemPrinter> printers;
    for (int i = 0; i < found; ++i) {
      QString name = QString::fromUtf8(dests[i].name);
      if (dests[i].instance)
        name += u'/' + QString::fromUtf8(dests[i].instance);
      printers.push_back({name, dests[i].is_default != 0});
    }
    cupsFreeDests(found, dests);
    return printers;
  }

  std::unique_ptr<PrintQueue> queue(const QString &name, const QString &source) const override {
    return std::make_unique<CupsQueue>(name, source);
  }
};

} // namespace

QString lastCupsError() {
  const char *text = cupsLastErrorString();
  return text && *text ? QString::fromUtf8(text) : QStringLiteral("no reason given");
}

CupsQueue::CupsQueue(const QString &queue, const QString &source) {
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

CupsQueue::~CupsQueue() {
  if (info_)
    cupsFreeDestInfo(info_);
  cupsFreeDests(1, dest_);
}

cups_dinfo_t *CupsQueue::info() const {
  if (!info_)
    info_ = cupsCopyDestInfo(CUPS_HTTP_DEFAULT, dest_);
  return info_;
}

QStringList CupsQueue::mediaSources() const {
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

QString CupsQueue::mediaSourceName(const QString &keyword) const {
  if (!info())
    return keyword;
  // Without a translation the keyword itself comes back, so it must live
  // until the name is copied.
  const QByteArray value = keyword.toUtf8();
  const char *name = cupsLocalizeDestValue(CUPS_HTTP_DEFAULT, dest_, info_, kMediaSource, value.constData());
  return name && *name ? QString::fromUtf8(name) : keyword;
}

std::vector<std::pair<int, QString>> CupsQueue::paperBins() const {
  std::vector<std::pair<int, QString>> bins;
  for (const QString &keyword : mediaSources())
    bins.emplace_back(int(bins.size()) + 1, mediaSourceName(keyword));
  return bins;
}

QString CupsQueue::deviceUri() const {
  return QString::fromUtf8(cupsGetOption("device-uri", dest_->num_options, dest_->options));
}

int CupsQueue::printFile(const QString &file, const QString &jobName,
                         const std::vector<std::pair<QByteArray, QByteArray>> &options, const QString &shownName,
                         const QString &source) const {
  JobOptions jobOptions(*dest_);
  for (const auto &[name, value] : options)
    jobOptions.add(name.constData(), value.constData());
  const int job = cupsPrintFile2(CUPS_HTTP_DEFAULT, dest_->name, file.toUtf8().constData(),
                                 jobName.toUtf8().constData(), jobOptions.count(), jobOptions.options());
  if (job <= 0)
    raiseError(
        ErrorNumber::InvalidCall, source,
        QStringLiteral("The printer \"%1\" did not take the job \"%2\": %3").arg(shownName, jobName, lastCupsError()));
  return job;
}

std::optional<QSize> CupsQueue::defaultPaper() const {
  // The queue's saved choice of paper, else the printer's default by name,
  // else by size. Names give sizes exactly; a size from the printer comes
  // rounded through its driver's points and is taken as the standard paper
  // it is nearest to.
  QByteArray name = cupsGetOption("media", dest_->num_options, dest_->options);
  if (name.isEmpty() && info()) {
    if (ipp_attribute_t *media = cupsFindDestDefault(CUPS_HTTP_DEFAULT, dest_, info_, "media"))
      name = ippGetString(media, 0, nullptr);
  }
  pwg_media_t *paper = nullptr;
  if (!name.isEmpty()) {
    paper = pwgMediaForPWG(name.constData());
    if (!paper)
      paper = pwgMediaForLegacy(name.constData());
  }
  if (!paper && info()) {
    ipp_attribute_t *media = cupsFindDestDefault(CUPS_HTTP_DEFAULT, dest_, info_, "media-col");
    ipp_attribute_t *size =
        media ? ippFindAttribute(ippGetCollection(media, 0), "media-size", IPP_TAG_BEGIN_COLLECTION) : nullptr;
    if (size) {
      ipp_t *dimensions = ippGetCollection(size, 0);
      const int width = ippGetInteger(ippFindAttribute(dimensions, "x-dimension", IPP_TAG_INTEGER), 0);
      const int length = ippGetInteger(ippFindAttribute(dimensions, "y-dimension", IPP_TAG_INTEGER), 0);
      paper = pwgMediaForSize(width, length);
      if (!paper && width > 0 && length > 0)
        return QSize(hundredthsOfMmToTwips(width), hundredthsOfMmToTwips(length));
    }
  }
  if (!paper || paper->width <= 0 || paper->length <= 0)
    return std::nullopt;
  return QSize(hundredthsOfMmToTwips(paper->width), hundredthsOfMmToTwips(paper->length));
}

} // namespace kordel::engine

// The module's entry: the one print system of the process.
extern "C" __attribute__((visibility("default"))) const kordel::engine::PrintSystem *kordel_print_system() {
  static const kordel::engine::CupsPrintSystem system;
  return &system;
}
static_assert(std::is_same_v<decltype(&kordel_print_system), kordel::engine::PrintSystemEntry>);
