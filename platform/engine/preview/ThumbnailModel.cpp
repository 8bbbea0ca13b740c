#include "engine/preview/ThumbnailModel.h"

#include "engine/render/PageDocument.h"
#include "engine/render/PagePainter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace kordel::engine {

ThumbnailModel::ThumbnailModel(std::shared_ptr<const PageDocument> document, int width, QObject *parent)
    : QAbstractListModel(parent), document_(std::move(document)), width_(width),
      pictures_(std::size_t(document_->pageCount())) {}

int ThumbnailModel::rowCount(const QModelIndex &parent) const { return parent.isValid() ? 0 : int(pictures_.size()); }

void ThumbnailModel::update(bool repainted) {
  const int rows = rowCount();
  const int pages = document_->pageCount();
  if (pages < rows) {
    beginResetModel();
    pictures_.assign(std::size_t(pages), QPixmap());
    endResetModel();
    return;
  }
  if (repainted && rows > 0) {
    std::fill(pictures_.begin(), pictures_.end(), QPixmap());
    emit dataChanged(index(0), index(rows - 1), {Qt::DecorationRole});
  }
  if (pages > rows) {
    beginInsertRows({}, rows, pages - 1);
    pictures_.resize(std::size_t(pages));
    endInsertRows();
  }
}

QSize ThumbnailModel::thumbnailSize() const {
  if (document_->pageCount() == 0)
    return QSize(width_, width_);
  const Page first = document_->page(0);
  const qreal scale = qreal(width_) / std::max(1, first.width());
  return QSize(width_, std::max(1, int(std::lround(first.height() * scale))));
}

QPixmap ThumbnailModel::paintPage(int index) const {
  const Page page = document_->page(index);
  const qreal scale = qreal(width_) / std::max(1, page.width());
  QPixmap picture(width_, std::max(1, int(std::lround(page.height() * scale))));
  picture.fill(Qt::white);
  QPainter painter(&picture);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setRenderHint(QPainter::SmoothPixmapTransform);
  painter.scale(scale, scale);
  // A page that cannot be painted keeps what was painted of it.
  try {
    PagePainter(*document_).paint(painter, index);
  } catch (...) {
  }
  painter.resetTransform();
  painter.setPen(Qt::gray);
  painter.drawRect(picture.rect().adjusted(0, 0, -1, -1));
  return picture;
}

QVariant ThumbnailModel::data(const QModelIndex &index, int role) const {
  if (!index.isValid() || index.row() >= rowCount())
    return {};
  if (role == Qt::DisplayRole)
    return QString::number(index.row() + 1);
  if (role == Qt::DecorationRole) {
    QPixmap &picture = pictures_[std::size_t(index.row())];
    if (picture.isNull())
      picture = paintPage(index.row());
    return picture;
  }
  if (role == Qt::TextAlignmentRole)
    return int(Qt::AlignHCenter | Qt::AlignBottom);
  return {};
}

} // namespace kordel::engine
