#pragma once

#include <QDialog>

class QPlainTextEdit;
class QPushButton;

namespace kordel::host {
class HostApplication;
}

namespace kordel::host::desktop {

// Help > About: the program's name and version, Qt's version, the open
// database and the folders of settings, log, data and add-in, with a
// button that copies all of it for a bug report.
class AboutDialog : public QDialog {
  Q_OBJECT

public:
  AboutDialog(HostApplication &application, const QString &databaseLocation, QWidget *parent = nullptr);

  QString Facts() const;
  void CmdCopy_Click();

private:
  QPlainTextEdit *TxtFacts;
  QPushButton *CmdCopy;
  QPushButton *CmdClose;
};

} // namespace kordel::host::desktop
