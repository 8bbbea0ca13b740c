#pragma once

#include <QDialog>

#include <memory>

class QComboBox;
class QLabel;
class QPushButton;

namespace kordel::addin {

class StringCollection;

// Asks for one of the sections of a layout.
class DlgSelSection : public QDialog {
  Q_OBJECT

public:
  explicit DlgSelSection(QWidget *parent = nullptr);

  QString SectionName() const { return sectionName_; }
  void SetSectionNames(std::shared_ptr<StringCollection> names) { sectionNames_ = std::move(names); }
  // True after OK with a section chosen.
  bool Status() const { return status_; }

  void Form_Load();
  // Does nothing while no section is chosen.
  void CmdOK_Click();
  void CmdCancel_Click();

  // Escape, and closing the window, cancel.
  void reject() override;

private:
  QLabel *LblSection;
  QComboBox *CboSection;
  QPushButton *CmdOK;
  QPushButton *CmdCancel;

  QString sectionName_;
  std::shared_ptr<StringCollection> sectionNames_;
  bool status_ = false;
};

} // namespace kordel::addin
