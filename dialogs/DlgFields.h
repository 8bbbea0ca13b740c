#pragma once

#include "core/Object.h"
#include "hostapi/Classes.h"

#include <QDialog>
#include <QStringList>

#include <memory>

class QPushButton;

namespace kordel::addin {

class FieldsPage;
class IFormFieldsPage;
class ScriptFieldsPage;
class StringCollection;

// The window in which the designer's user chooses what to insert into a
// section: database fields (mode 0) or free expressions (any other mode),
// each on a face of its own, of which one is shown. The window hands its
// settings to that face and reads the answer from it.
class DlgFields : public QDialog {
  Q_OBJECT

public:
  explicit DlgFields(QWidget *parent = nullptr);

  void SetActivePage(IFormFieldsPage *page) { activePage_ = page; }
  void SetActiveReport(ObjectRef report) { activeReport_ = std::move(report); }
  void SetActiveSectionName(const QString &name) { activeSectionName_ = name; }
  void SetMode(int mode) { mode_ = mode; }
  void SetNuvoFields(std::shared_ptr<hostapi::Fields> fields) { nuvoFields_ = std::move(fields); }
  void SetSectionNames(std::shared_ptr<StringCollection> names) { sectionNames_ = std::move(names); }
  // The answer, read from the active face; empty before the window loads.
  QString FieldSection() const;
  QString LabelSection() const;
  QStringList NewFieldNames() const;
  // True after a confirmed close.
  bool Status() const { return status_; }

  void Form_Load();
  void CmdOK_Click();
  void CmdCancel_Click();

  // Escape, and closing the window, cancel.
  void reject() override;

private:
  FieldsPage *CtlFields;
  ScriptFieldsPage *CtlScriptFields;
  QPushButton *CmdOK;
  QPushButton *CmdCancel;

  IFormFieldsPage *activePage_ = nullptr;
  ObjectRef activeReport_;
  QString activeSectionName_;
  int mode_ = 0;
  std::shared_ptr<hostapi::Fields> nuvoFields_;
  std::shared_ptr<StringCollection> sectionNames_;
  bool status_ = false;
};

} // namespace kordel::addin
