#include "common/Globals.h"

#include "common/ApplicationManager.h"
#include "common/ResourceManager.h"
#include "hostapi/ApplicationLog.h"
#include "hostapi/Printers.h"
#include "hostapi/Ui.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QStandardPaths>
#include <QWidget>

#include <exception>

namespace kordel::addin {

namespace {

const QString kLogModule = QStringLiteral("Standard Report");

// Sets the caption of a control that has one; false for controls without.
bool setCaption(QObject &control, const QString &text) {
  if (auto *button = qobject_cast<QAbstractButton *>(&control))
    button->setText(text);
  else if (auto *label = qobject_cast<QLabel *>(&control))
    label->setText(text);
  else if (auto *group = qobject_cast<QGroupBox *>(&control))
    group->setTitle(text);
  else if (auto *menu = qobject_cast<QMenu *>(&control))
    menu->setTitle(text);
  else if (auto *action = qobject_cast<QAction *>(&control))
    action->setText(text);
  else
    return false;
  return true;
}

void writeLog(int level, const QString &source, const QString &code, const QString &text) {
  const auto application = CurrentApplication();
  if (!application)
    return;
  if (const auto log = application->applicationLog())
    log->writeLogEntry(level, kLogModule, source, code, text);
}

} // namespace

// ---- Messages ----

QString GetMessage(const QString &key, const QString &arg1, const QString &arg2, const QString &arg3,
                   const QString &arg4) {
  QString text;
  try {
    const QStringList pieces = key.split(u'.');
    if (pieces.size() >= 2)
      text = TranslateText(pieces[1], pieces[0]);
  } catch (...) {
    // A failed lookup leaves the text empty; the replacements still run.
  }
  text.replace(QStringLiteral("%0"), QStringLiteral("\r\n"));
  text.replace(QStringLiteral("%1"), arg1);
  text.replace(QStringLiteral("%2"), arg2);
  text.replace(QStringLiteral("%3"), arg3);
  text.replace(QStringLiteral("%4"), arg4);
  return text;
}

int ShowMessage(const QString &text, int flags) {
  const int pointer = MousePointer();
  ResetCursor();
  const int answer = hostapi::ui().messageBox(text, flags, GetMessage(QStringLiteral("Addin.Name")));
  SetMousePointer(pointer);
  return answer;
}

void ErrorMessage(const QString &source) {
  if (!std::current_exception())
    return;
  ErrorMessage(source, pendingError());
}

void ErrorMessage(const QString &source, const Error &error) {
  // The reporter is the end of every failure: nothing in it may raise, so
  // each step that talks to the host guards itself.
  const int number = error.number();
  const QString &description = error.description();
  try {
    ResetCursor();
  } catch (...) {
    // No host to reset the cursor on: nothing is busy then.
  }
  if (number == ErrorNumber::SilentCancel || number == ErrorNumber::DialogCancelled)
    return;
  if (number == ErrorNumber::UserMessage) {
    try {
      ShowMessage(description, hostapi::MsgBox::Information);
    } catch (...) {
      // Without a host or a user interface the log below still keeps the message.
    }
    try {
      writeLog(hostapi::LogLevel::UserMessage, source, QString(), description);
    } catch (...) {
      // A log that cannot be written must not hide the failure being reported.
    }
    return;
  }
  const QString code = QString::number(number);
  try {
    ShowMessage(GetMessage(QStringLiteral("Globals.ErrorMessage"), description, code, source),
                hostapi::MsgBox::Exclamation);
  } catch (...) {
    // As above: the log entry still records the failure.
  }
  try {
    writeLog(hostapi::LogLevel::Error, source, code, description);
  } catch (...) {
    // As above.
  }
}

void TranslateForm(QWidget &form) {
  const QString name = form.objectName();
  form.setWindowTitle(GetMessage(name + QStringLiteral(".Caption")));
  TranslateControls(name, form.findChildren<QObject *>());
}

void TranslateControls(const QString &section, const QList<QObject *> &controls) {
  for (QObject *control : controls) {
    const QString name = control ? control->objectName() : QString();
    if (name.isEmpty() || name.startsWith(QStringLiteral("qt_")))
      continue;
    setCaption(*control, GetMessage(section + u'.' + name));
  }
}

void SetBusyCursor() { SetMousePointer(hostapi::MousePointer::Hourglass); }

void ResetCursor() { SetMousePointer(hostapi::MousePointer::Default); }

// ---- Common routines ----

QString GetToken(const QString &text, const QString &separator, bool first) {
  if (separator.isEmpty())
    return text; // nothing to split at: the whole text is the one piece
  const QStringList pieces = text.split(separator);
  if (first)
    return pieces.value(0);
  for (const QString &piece : pieces) {
    if (!piece.isEmpty())
      return piece;
  }
  return QString();
}

QString NormaliseName(const QString &input) {
  QString text = input;
  text.replace(u'å', u'a')
      .replace(u'Å', u'A')
      .replace(u'ä', u'a')
      .replace(u'Ä', u'A')
      .replace(u'ö', u'o')
      .replace(u'Ö', u'O');
  // The alphabet has no "w" and no digits on purpose: they count as foreign.
  static const QString alphabet = QStringLiteral("-abcdefghijklmnopqrstuvxyz");
  const qsizetype length = text.size();
  for (qsizetype i = 0; i < length; ++i) {
    const QChar c = text[i];
    if (!alphabet.contains(c.toLower()))
      text.replace(c, u'-');
  }
  text.remove(u'-');
  return text;
}

QString CleanFileName(const QString &input) {
  QString text = input;
  if (text.isEmpty())
    return text;
  for (QChar c : {u'\\', u'/', u':', u'|', u'*', u'?', u'<', u'>'})
    text.remove(c);
  return text;
}

QString RemovePrefixOnce(const QString &text, const QString &prefix) {
  if (prefix.isEmpty())
    return text;
  const qsizetype at = text.indexOf(prefix, 0, Qt::CaseInsensitive);
  if (at < 0)
    return text;
  return text.left(at) + text.mid(at + prefix.size());
}

QString TempFilePath(const QString &name, const QString &extension) {
  const QString base = name.isEmpty() ? HostTools()->newGuid() : name;
  QString ext = extension;
  ext.remove(u'.');
  return QDir::tempPath() + u'/' + base + u'.' + ext;
}

void DeleteFile(const QString &path) {
  QFile::remove(path); // a file that cannot be removed is left, as callers expect
}

QString MyDocumentsFolder() {
  // The platform call fills a 512-character buffer and reports success with
  // 1; the routine only trims the buffer when the call returns -1, so the
  // folder comes back padded with NULs and without a closing separator.
  // File dialogs take the text up to the first NUL.
  constexpr qsizetype kBufferSize = 512;
  const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  if (folder.isEmpty())
    return QString();
  QString buffer = folder.left(kBufferSize - 1);
  buffer += QString(kBufferSize - buffer.size(), QChar(0));
  return buffer;
}

namespace {

bool runFileDialog(bool save, const QString &title, const QString &folder, const QString &filter, std::int16_t flags,
                   QString &fileName, const QString &source) {
  try {
    hostapi::FileDialogRequest request;
    request.title = title;
    request.folder = folder;
    request.filter = filter;
    request.flags = flags;
    if (save) {
      request.filterIndex = 2;
      request.fileName = fileName;
    }
    const int pointer = MousePointer();
    ResetCursor();
    const QString chosen = save ? hostapi::ui().saveFile(request) : hostapi::ui().openFile(request);
    SetMousePointer(pointer);
    fileName = chosen;
    return true;
  } catch (...) {
    ErrorMessage(source);
    return false;
  }
}

} // namespace

bool DisplayFileOpen(const QString &title, const QString &folder, const QString &filter, std::int16_t flags,
                     QString &fileName) {
  return runFileDialog(false, title, folder, filter, flags, fileName, QStringLiteral("Globals.DisplayFileOpen"));
}

bool DisplayFileSave(const QString &title, const QString &folder, const QString &filter, std::int16_t flags,
                     QString &fileName) {
  return runFileDialog(true, title, folder, filter, flags, fileName, QStringLiteral("Globals.DisplayFileSave"));
}

void SelectComboItem(QComboBox &combo, const QString &text, int index) {
  if (combo.count() == 0)
    return;
  const int match = text.isEmpty() ? -1 : combo.findText(text, Qt::MatchFixedString);
  if (match >= 0) {
    combo.setCurrentIndex(match);
  } else {
    combo.setCurrentIndex(-1);
    if (combo.isEditable())
      combo.setEditText(text);
  }
  if (combo.currentIndex() == -1 && index >= 0 && index < combo.count())
    combo.setCurrentIndex(index);
}

void CenterForm(QWidget &form) {
  const QScreen *screen = form.screen();
  if (!screen)
    return;
  const QRect area = screen->geometry();
  const int left = (area.width() - form.width()) / 2;
  const int top = (area.height() - form.height()) / 3;
  form.move(area.left() + left, area.top() + top);
}

ObjectRef EnumeratePrinters() { return CreateObject(QString::fromLatin1(hostapi::kPrintersProgId)); }

} // namespace kordel::addin
