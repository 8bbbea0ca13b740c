#pragma once

#include "core/Object.h"
#include "hostapi/Classes.h"

#include <QByteArray>
#include <QSet>
#include <QStringList>

#include <memory>

namespace kordel::addin {

class Pages;
class PropertyStorage;
class Report;
class ReportFields;
class SortFields;

// How deep pages may nest: the top page is the first level.
inline constexpr int kMaxPageDepth = 32;

// One page of a report: a class of the database bound to a layout. Its
// settings live in the report's store under "pages\<guid>"; its fields,
// sort fields and sub pages are kept in memory between Load and Save; its
// layout is the store's resource named by the guid, and every read of the
// layout passes the host's script check.
class Page : public Object {
public:
  QString typeName() const override { return QStringLiteral("Page"); }

  static QByteArray Utf8BytesFromString(const QString &text);
  static QString Utf8BytesToString(const QByteArray &bytes);

  // The class of the page's records; nullptr when it cannot be found.
  std::shared_ptr<hostapi::Class> Class() const;
  bool Edited() const;
  void SetEdited(bool edited);
  std::shared_ptr<addin::ReportFields> Fields();
  const QString &Guid() const { return guid_; }
  bool HideEmptyPage() const;
  void SetHideEmptyPage(bool hide);
  // True while the page has no layout.
  bool IsNew() const;
  bool IsTopPage() const { return parentGuid_.isEmpty(); }
  // The layout bytes after the script check, or Empty for no layout.
  Variant LayoutTemplate() const;
  void SetLayoutTemplate(const Variant &layout);
  bool Modified() const { return modified_; }
  void SetModified(bool modified) { modified_ = modified; }
  QString Name() const;
  void SetName(const QString &name);
  std::shared_ptr<addin::Pages> Pages();
  std::shared_ptr<addin::Page> Parent() const;
  std::shared_ptr<addin::Report> Report() const { return report_.lock(); }
  std::shared_ptr<addin::SortFields> SortFields();
  bool StripeDetail() const;
  void SetStripeDetail(bool stripe);
  bool StripeFirst() const;
  void SetStripeFirst(bool first);
  QString Source() const;
  std::int32_t Width() const;
  void SetWidth(std::int32_t width);

  bool Create(const std::shared_ptr<addin::Report> &report, const std::shared_ptr<PropertyStorage> &storage,
              const QString &guid, const QString &name, const QString &source, const QString &parentGuid,
              const Variant &layoutTemplate);
  void Delete();
  void Load(const std::shared_ptr<addin::Report> &report, const std::shared_ptr<PropertyStorage> &storage,
            const QString &guid, const QString &parentGuid);
  bool Save();
  void Validate();

private:
  // What Load does, for a page below the pages of path (their guids from
  // the top page down to its parent); loaded holds every page read so far.
  // A document whose subpages lists lead in a circle, list a page twice or
  // nest beyond kMaxPageDepth is refused with 321, naming the page.
  void LoadTree(const std::shared_ptr<addin::Report> &report, const std::shared_ptr<PropertyStorage> &storage,
                const QString &guid, const QString &parentGuid, QStringList &path, QSet<QString> &loaded);
  void CheckSubPage(const QString &subGuid, const QStringList &path, const QSet<QString> &loaded) const;
  static QString BlockUnsafeScript(const QString &xml, const QString &oldText, const QString &newText);
  void SetSource(const QString &source);
  void Reset();
  void BuildSectionPaths();
  PropertyStorage &storage() const;
  QString setting(const QString &key, const QString &defaultValue) const;
  void putSetting(const QString &key, const QString &value);

  std::shared_ptr<addin::ReportFields> fields_;
  QString fieldsPrefix_;
  QString fieldsSection_;
  QString guid_;
  bool modified_ = false;
  std::shared_ptr<addin::Pages> pages_;
  QString pageSection_;
  QString parentGuid_;
  std::shared_ptr<PropertyStorage> storage_;
  std::weak_ptr<addin::Report> report_;
  std::shared_ptr<addin::SortFields> sortFields_;
  QString sortingSection_;
  QString subPagesSection_;
};

} // namespace kordel::addin
