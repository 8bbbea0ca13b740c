#pragma once

#include "core/Object.h"
#include "hostapi/Classes.h"

#include <memory>

namespace kordel::addin {

class Page;
class Pages;
class PropertyStorage;
class StringCollection;

// The document of one report: a typed view over its PropertyStorage
// (sections "system", "settings", "pages" and "resources") and the root of
// its tree of pages. Getters read the store each time; defaults live here.
// LoadContents is the first call on every Report, also on a new one.
class Report : public Object {
public:
  QString typeName() const override { return QStringLiteral("Report"); }

  std::shared_ptr<hostapi::Class> Class() const;
  QString CreatedBy() const;
  QString CreatedTime() const;
  QString Guid() const;
  bool IsNew() const { return topPage_ == nullptr; }
  std::int32_t MarginBottom() const;
  void SetMarginBottom(std::int32_t twips);
  std::int32_t MarginLeft() const;
  void SetMarginLeft(std::int32_t twips);
  std::int32_t MarginRight() const;
  void SetMarginRight(std::int32_t twips);
  std::int32_t MarginTop() const;
  void SetMarginTop(std::int32_t twips);
  bool Modified() const;
  QString Name() const;
  void SetName(const QString &name);
  std::int16_t Orientation() const;
  void SetOrientation(std::int16_t orientation);
  std::shared_ptr<addin::Page> Page() const { return topPage_; }
  std::int16_t PageCount() const;
  std::shared_ptr<StringCollection> PageGuids() const;
  std::int32_t PaperSize() const;
  void SetPaperSize(std::int32_t paperSize);
  std::int32_t PrintWidth() const;
  void SetPrintWidth(std::int32_t twips);
  QString ScriptLanguage() const;
  void SetScriptLanguage(const QString &language);
  QString UpdatedBy() const;
  QString UpdatedTime() const;
  QString Version() const;

  bool AddPage(const QString &guid, const QString &name, const QString &source, const QString &parentGuid,
               const Variant &layoutTemplate);
  bool Create(const QString &source);
  // Always fails: the collection it reads is never filled.
  std::shared_ptr<addin::Page> GetPageByIndex(int index) const;
  bool IsValid() const;
  // Its result tells nothing: false on success and on failure alike.
  bool Load(const QString &path);
  void LoadContents(const Variant &contents);
  std::shared_ptr<addin::Page> LookupPage(const QString &guid) const;
  bool PageExists(const QString &guid) const;
  bool Save(const QString &path);
  Variant SaveContents();
  void Validate() const;

  // The store, for the pages and the designer.
  const std::shared_ptr<PropertyStorage> &Storage() const { return storage_; }

private:
  QString Source() const;
  void SetSource(const QString &source);
  void SetCreatedBy();
  void SetCreatedTime(const QString &time);
  void SetGuid(const QString &guid);
  void SetUpdatedBy();
  void SetUpdatedTime(const QString &time);
  void SetVersion(const QString &version);
  void stampChange();
  PropertyStorage &storage() const;
  QString setting(const QString &section, const QString &key, const QString &defaultValue) const;
  void putSetting(const QString &section, const QString &key, const QString &value);

  std::shared_ptr<addin::Page> topPage_;
  std::shared_ptr<addin::Pages> pages_;
  std::shared_ptr<PropertyStorage> storage_;
};

} // namespace kordel::addin
