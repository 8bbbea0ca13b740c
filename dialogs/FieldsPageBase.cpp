#include "dialogs/FieldsPageBase.h"

#include "common/Globals.h"
#include "dialogs/DlgFields.h"
#include "document/StringCollection.h"
#include "hostapi/FieldTypes.h"
#include "hostapi/Ui.h"

#include <QComboBox>
#include <QListWidget>

namespace kordel::addin {

Variant TypesNotToInsert() {
  namespace FT = hostapi::FieldType;
  constexpr int kReservedType = 27;
  return VariantArray::fromValues(
      {FT::RelationToMany, kReservedType, FT::CreatedBy, FT::UpdatedBy, FT::CreatedTime, FT::UpdatedTime});
}

FieldsPageBase::FieldsPageBase(const QString &typeName, QWidget *parent) : QWidget(parent), typeName_(typeName) {
  setObjectName(typeName);
  // 7800 by 5000 twips, the size the window was drawn for.
  setMinimumSize(520, 333);
}

void FieldsPageBase::Activate() {
  for (QWidget *owner = parentWidget(); owner; owner = owner->parentWidget()) {
    if (auto *window = qobject_cast<DlgFields *>(owner)) {
      window->SetActivePage(this);
      return;
    }
  }
}

void FieldsPageBase::TranslateCaptions() { TranslateControls(typeName_, findChildren<QObject *>()); }

void FieldsPageBase::AddSectionNames(QComboBox &box) const {
  const int count = sectionNames_ ? sectionNames_->Count() : 0;
  for (int i = 1; i <= count; ++i)
    box.addItem(sectionNames_->Item(i));
  box.setCurrentIndex(-1);
}

bool FieldsPageBase::TakeAnswer(const QListWidget &list, const QComboBox &sections, const QString &noEntriesKey) {
  newFieldNames_.clear();
  if (list.count() == 0) {
    ShowMessage(GetMessage(noEntriesKey), hostapi::MsgBox::Information);
    return false;
  }
  fieldSection_ = sections.currentText();
  for (int i = 0; i < list.count(); ++i)
    newFieldNames_ << list.item(i)->text();
  return true;
}

} // namespace kordel::addin
