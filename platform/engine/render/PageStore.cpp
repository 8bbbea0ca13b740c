#include "engine/render/PageStore.h"

#include "core/Error.h"

#include <QDir>
#include <QTemporaryFile>

namespace kordel::engine {

namespace {

const QString kSource = QStringLiteral("PageStore");

[[noreturn]] void failFile(const QTemporaryFile *file, const QString &what) {
  raiseError(ErrorNumber::OutOfMemory, kSource,
             QStringLiteral("Finished pages could not be %1 a temporary file: %2")
                 .arg(what, file ? file->errorString() : QStringLiteral("no file")));
}

} // namespace

PageStore::PageStore(std::size_t memoryBudget) : memoryBudget_(memoryBudget) {}

PageStore::~PageStore() = default;
PageStore::PageStore(PageStore &&) noexcept = default;
PageStore &PageStore::operator=(PageStore &&) noexcept = default;

void PageStore::append(Page page) {
  page.squeeze();
  const std::size_t bytes = page.approximateBytes();
  if (spilled_.empty() && memoryBytes_ + bytes <= memoryBudget_) {
    inMemory_.push_back(std::move(page));
    memoryBytes_ += bytes;
    return;
  }
  if (!file_) {
    auto file = std::make_unique<QTemporaryFile>(QDir::tempPath() + QStringLiteral("/kordel-pages-XXXXXX"));
    if (!file->open())
      failFile(file.get(), QStringLiteral("kept in"));
    file_ = std::move(file);
  }
  bytes_.resize(0);
  page.appendBytes(bytes_);
  // Pages are only ever added at the end; a write that fails leaves the
  // pages before it as they were.
  if (!file_->seek(fileSize_) || file_->write(bytes_) != bytes_.size())
    failFile(file_.get(), QStringLiteral("written to"));
  spilled_.push_back(Spilled{fileSize_, bytes_.size()});
  fileSize_ += bytes_.size();
}

Page PageStore::page(int index) const {
  if (std::size_t(index) < inMemory_.size())
    return inMemory_[std::size_t(index)];
  const Spilled &spilled = spilled_[std::size_t(index) - inMemory_.size()];
  bytes_.resize(qsizetype(spilled.size));
  if (!file_->seek(spilled.offset) || file_->read(bytes_.data(), spilled.size) != spilled.size)
    failFile(file_.get(), QStringLiteral("read from"));
  return Page::fromBytes(bytes_.constData(), bytes_.size());
}

void PageStore::clear() {
  inMemory_.clear();
  inMemory_.shrink_to_fit();
  spilled_.clear();
  spilled_.shrink_to_fit();
  file_.reset();
  fileSize_ = 0;
  memoryBytes_ = 0;
}

} // namespace kordel::engine
