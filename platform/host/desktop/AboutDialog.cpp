#include "desktop/AboutDialog.h"

#include "desktop/DesktopText.h"

#include "host/HostApplication.h"
#include "host/HostPaths.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSysInfo>
#include <QVBoxLayout>

namespace kordel::host::desktop {

AboutDialog::AboutDialog(HostApplication &application, const QString &databaseLocation, QWidget *parent)
    : QDialog(parent) {
  setObjectName(QStringLiteral("AboutDialog"));
  setWindowTitle(desktopText("About Orvex"));
  auto *title = new QLabel(QStringLiteral("<b>Orvex %1</b>").arg(QCoreApplication::applicationVersion()), this);
  TxtFacts = new QPlainTextEdit(this);
  TxtFacts->setObjectName(QStringLiteral("TxtFacts"));
  TxtFacts->setReadOnly(true);
  const QStringList facts{
      QStringLiteral("Orvex %1").arg(QCoreApplication::applicationVersion()),
      desktopText("Qt: %1 (built with %2)").arg(QString::fromLatin1(qVersion()), QStringLiteral(QT_VERSION_STR)),
      desktopText("System: %1").arg(QSysInfo::prettyProductName()),
      desktopText("Language: %1").arg(application.language()),
      desktopText("Database: %1").arg(databaseLocation),
      desktopText("Settings: %1").arg(HostPaths::registryFile()),
      desktopText("Log: %1").arg(HostPaths::logFile()),
      desktopText("Data folder: %1").arg(HostPaths::dataFolder()),
      desktopText("Add-ins: %1").arg(HostPaths::addinFolder()),
  };
  TxtFacts->setPlainText(facts.join(u'\n'));
  TxtFacts->setMinimumSize(560, 200);

  auto *buttons = new QDialogButtonBox(this);
  CmdCopy = buttons->addButton(desktopText("&Copy for a bug report"), QDialogButtonBox::ActionRole);
  CmdCopy->setObjectName(QStringLiteral("CmdCopy"));
  CmdClose = buttons->addButton(QDialogButtonBox::Close);
  CmdClose->setObjectName(QStringLiteral("CmdClose"));
  CmdClose->setText(desktopText("Close"));
  connect(CmdCopy, &QPushButton::clicked, this, [this] { CmdCopy_Click(); });
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

  auto *layout = new QVBoxLayout(this);
  layout->addWidget(title);
  layout->addWidget(TxtFacts, 1);
  layout->addWidget(buttons);
}

QString AboutDialog::Facts() const { return TxtFacts->toPlainText(); }

void AboutDialog::CmdCopy_Click() { QApplication::clipboard()->setText(Facts()); }

} // namespace kordel::host::desktop
