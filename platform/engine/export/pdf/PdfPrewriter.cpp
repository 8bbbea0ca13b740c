#include "engine/export/pdf/PdfPrewriter.h"

#include "engine/export/ExportFile.h"
#include "engine/export/pdf/PdfDocumentWriter.h"
#include "engine/render/GlyphCoverage.h"

#include <QDir>

#include <vector>

namespace kordel::engine::pdf {

namespace {

const QString kSource = QStringLiteral("PdfExporter");

// The pages that may wait for the writing thread, and how many it takes
// at a time: waking a thread costs the time of writing a page, so the run
// wakes the writing thread once for a batch of pages, not for each.
constexpr std::size_t kWaitingPages = 32;
constexpr std::size_t kBatchPages = 8;

// The temporary file is made beside this name, which is never written.
QString aheadTarget() { return QDir::tempPath() + QStringLiteral("/kordel-pdf-ahead.pdf"); }

} // namespace

PdfPrewriter::PdfPrewriter() = default;

PdfPrewriter::~PdfPrewriter() {
  {
    const std::lock_guard lock(mutex_);
    // Pages still waiting are of no use to anyone now.
    waiting_.clear();
    ending_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable())
    thread_.join();
}

void PdfPrewriter::pageAdded(const PageDocument &document, const Page &page) {
  ++pagesHanded_;
  // After an export of the pages so far (a script that exports while its
  // run goes on), the rest of the run writes nothing ahead.
  if (failed_ || used_)
    return;
  if (!file_) {
    try {
      file_ = std::make_unique<ExportFile>(aheadTarget(), kSource);
      writer_ = std::make_unique<PdfDocumentWriter>(*file_, tables_);
      coverage_ = std::make_unique<GlyphCoverage>(tables_);
    } catch (...) {
      // Without a file to write ahead into, the export writes it all.
      failed_ = true;
      return;
    }
    thread_ = std::thread([this] { writeAhead(); });
  }
  Handover handover{page, {}, {}};
  for (; fontsHanded_ < document.fontCount(); ++fontsHanded_)
    handover.fonts.push_back(document.font(fontsHanded_));
  for (; imagesHanded_ < document.imageCount(); ++imagesHanded_)
    handover.images.push_back(document.image(imagesHanded_));
  std::unique_lock lock(mutex_);
  if (waiting_.size() >= kWaitingPages) {
    runWaits_ = true;
    changed_.wait(lock, [this] { return waiting_.size() < kWaitingPages || failed_ || ending_; });
    runWaits_ = false;
  }
  if (failed_ || ending_)
    return;
  waiting_.push_back(std::move(handover));
  const bool batchReady = waiting_.size() == kBatchPages;
  lock.unlock();
  if (batchReady)
    changed_.notify_all();
}

void PdfPrewriter::writeAhead() {
  try {
    std::deque<Handover> batch;
    for (;;) {
      std::unique_lock lock(mutex_);
      changed_.wait(lock, [this] { return waiting_.size() >= kBatchPages || ending_; });
      if (waiting_.empty())
        return;
      batch.swap(waiting_);
      const bool runWaits = runWaits_;
      lock.unlock();
      if (runWaits)
        changed_.notify_all();
      for (const Handover &handover : batch)
        take(handover);
      batch.clear();
    }
  } catch (...) {
    // The export writes the document itself and reports what went wrong.
    const std::lock_guard lock(mutex_);
    failed_ = true;
    waiting_.clear();
    changed_.notify_all();
  }
}

void PdfPrewriter::take(const Handover &handover) {
  for (const PageFont &font : handover.fonts)
    tables_.internFont(font);
  for (const QImage &image : handover.images)
    tables_.internImage(image);
  writer_->writePageAhead(handover.page);
  coverage_->scanPage(handover.page);
}

bool PdfPrewriter::exportTo(const PageDocument &document, ExportFile &target, const QString &title,
                            const QString &creator) {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  changed_.notify_all();
  if (thread_.joinable())
    thread_.join();
  // The pages written ahead make one export, or none when they are not
  // all the document's.
  const bool usable = !used_ && !failed_ && writer_ && pagesHanded_ == document.pageCount() &&
                      writer_->pagesAhead() == document.pageCount();
  used_ = true;
  if (!usable)
    return false;

  // The page counts may use fonts added after the last page.
  for (int font = tables_.fontCount(); font < document.fontCount(); ++font)
    tables_.internFont(document.font(font));
  for (int index = 0; index < document.pageCount(); ++index) {
    const std::vector<PageCountText> counts = document.resolvedPageCounts(index);
    if (!counts.empty()) {
      Page countsOnly;
      addPageCounts(countsOnly, counts);
      coverage_->scanPage(countsOnly);
    }
    writer_->completePage(index, counts);
  }
  writer_->finish(title, creator);
  warnOfMissingGlyphs(*coverage_, document.title());

  if (!file_->seek(0))
    target.fail(QStringLiteral("the PDF written ahead could not be read"));
  std::vector<char> part(256 * 1024);
  while (!file_->atEnd()) {
    const qint64 read = file_->read(part.data(), qint64(part.size()));
    if (read <= 0)
      target.fail(QStringLiteral("the PDF written ahead could not be read"));
    target.writeAll(QByteArray::fromRawData(part.data(), qsizetype(read)));
  }
  writer_.reset();
  file_.reset();
  return true;
}

} // namespace kordel::engine::pdf
