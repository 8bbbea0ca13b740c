#pragma once

#include "core/Variant.h"
#include "dialogs/IFormFieldsPage.h"

#include <QWidget>

class QComboBox;
class QListWidget;

namespace kordel::addin {

// The field types not offered for insertion: relations to many, the
// system's own fields, and 27, which the data engine keeps for itself.
Variant TypesNotToInsert();

// What both faces of the field insertion window keep alike: what the
// window hands them, the answer, and the way a face makes itself the
// active one. The faces are made at their window's size.
class FieldsPageBase : public QWidget, public IFormFieldsPage {
  Q_OBJECT

public:
  void SetActiveSectionName(const QString &name) override { activeSectionName_ = name; }
  QString FieldSection() const override { return fieldSection_; }
  void SetNuvoFields(std::shared_ptr<hostapi::Fields> fields) override { nuvoFields_ = std::move(fields); }
  QStringList NewFieldNames() const override { return newFieldNames_; }
  void SetSectionNames(std::shared_ptr<StringCollection> names) override { sectionNames_ = std::move(names); }
  // Tells the window this face belongs to that it is the active one.
  void Activate() override;

protected:
  // typeName is the kind of face, the section of its captions; the
  // window names each face it holds after its place.
  FieldsPageBase(const QString &typeName, QWidget *parent);

  // The captions of the face's controls, from the section of its kind.
  void TranslateCaptions();

  // Adds every section name to a box, which is left without a choice.
  void AddSectionNames(QComboBox &box) const;
  // The entries of a list, emptied into the answer with the section chosen
  // in a box. An empty list shows the message of noEntriesKey and gives
  // false.
  bool TakeAnswer(const QListWidget &list, const QComboBox &sections, const QString &noEntriesKey);

  QString activeSectionName_;
  std::shared_ptr<hostapi::Fields> nuvoFields_;
  std::shared_ptr<StringCollection> sectionNames_;

private:
  QString typeName_;
  QStringList newFieldNames_;
  QString fieldSection_;
};

} // namespace kordel::addin
