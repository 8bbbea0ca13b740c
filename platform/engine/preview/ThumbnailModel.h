#pragma once

#include <QAbstractListModel>
#include <QPixmap>

#include <memory>
#include <vector>

namespace kordel::engine {

class PageDocument;

// The pages of a document as small pictures for a list view: one row per
// page, its number as the text and the page as the picture. A page is
// painted when the view first asks for it, so a long document costs
// nothing until its thumbnails are scrolled into view. The rows are the
// pages the model has taken in: all the document's when it is made, more
// with each update.
class ThumbnailModel : public QAbstractListModel {
  Q_OBJECT
public:
  ThumbnailModel(std::shared_ptr<const PageDocument> document, int width, QObject *parent = nullptr);

  int rowCount(const QModelIndex &parent = {}) const override;
  QVariant data(const QModelIndex &index, int role) const override;

  // The size of every picture: the given width and the first page's shape.
  QSize thumbnailSize() const;

  // Takes in the pages the document has gained (or lost) since the model
  // last looked, for a document that is still being made; repainted
  // drops the pictures painted so far, for pages whose page counts have
  // been filled in since.
  void update(bool repainted = false);

private:
  QPixmap paintPage(int index) const;

  std::shared_ptr<const PageDocument> document_;
  int width_;
  mutable std::vector<QPixmap> pictures_; // one per row
};

} // namespace kordel::engine
