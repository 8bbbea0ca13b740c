#pragma once

#include "core/Error.h"
#include "core/Object.h"

#include <QList>
#include <QString>

class QComboBox;
class QObject;
class QWidget;

namespace kordel::addin {

// ---- Messages ----

// The text of a "Section.Item" key with %0 as a line break and %1 to %4 as
// the arguments, replaced one after the other. Never fails.
QString GetMessage(const QString &key, const QString &arg1 = {}, const QString &arg2 = {}, const QString &arg3 = {},
                   const QString &arg4 = {});

// A message box titled with the add-in's name; returns the button's answer.
// The busy cursor survives the box.
int ShowMessage(const QString &text, int flags);

// The reporter at the end of every failure. Called inside a catch block, it
// takes the error in flight: -9999 is shown as information and logged,
// -9998 and 32755 pass silently, anything else is shown as a warning and
// logged as an error. It never raises.
void ErrorMessage(const QString &source);
void ErrorMessage(const QString &source, const Error &error);

// The window's caption from "<name>.Caption" and every named control's
// caption from "<name>.<control>".
void TranslateForm(QWidget &form);
void TranslateControls(const QString &section, const QList<QObject *> &controls);

void SetBusyCursor();
void ResetCursor();

// ---- Common routines ----

// The first piece of text split at separator, or with first false the first
// piece that is not empty.
QString GetToken(const QString &text, const QString &separator, bool first);
// A name fit for a layout section: only the letters a-v, x-z in either case.
QString NormaliseName(const QString &text);
// The text without \ / : | * ? < >.
QString CleanFileName(const QString &text);
// The text with the first occurrence of prefix, anywhere and in any case, removed.
QString RemovePrefixOnce(const QString &text, const QString &prefix);
// A path in the temporary folder; an empty name takes a new guid.
QString TempFilePath(const QString &name, const QString &extension);
// Deletes a file; failures are ignored.
void DeleteFile(const QString &path);
// The user's documents folder, as the platform call leaves it in its buffer.
QString MyDocumentsFolder();

// File dialogs; false when the user cancels.
bool DisplayFileOpen(const QString &title, const QString &folder, const QString &filter, std::int16_t flags,
                     QString &fileName);
bool DisplayFileSave(const QString &title, const QString &folder, const QString &filter, std::int16_t flags,
                     QString &fileName);

void SelectComboItem(QComboBox &combo, const QString &text, int index);
// Puts a window in the middle of the screen across and a third down.
void CenterForm(QWidget &form);
// The printers of the platform; For Each gives objects with a "Name".
ObjectRef EnumeratePrinters();

} // namespace kordel::addin
