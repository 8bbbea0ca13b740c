#pragma once

#include <QByteArray>
#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <optional>

namespace kordel::addin {

// Keeps the report being designed in a file of its own, so that a crash or
// a killed process loses at most a few seconds of work: the file is written
// a moment after each change and every two minutes while something is
// unsaved, always whole (written aside and renamed over the old one). A
// save or a clean close of the designer removes it; a file found when the
// designer opens the report again is work that was never saved.
class DesignerAutoSave : public QObject {
  Q_OBJECT

public:
  // snapshot gives the document as it stands in the designer; unsaved
  // tells whether there is anything to keep.
  DesignerAutoSave(QString reportGuid, std::function<QByteArray()> snapshot, std::function<bool()> unsaved);

  // The file of a report's autosave, in the host's data folder.
  static QString PathFor(const QString &reportGuid);
  // The document left by a designer that did not close, if any.
  static std::optional<QByteArray> Pending(const QString &reportGuid);

  // A change was made: the file follows shortly, once the user pauses.
  void NoteChange();
  // Writes the file now when there is something unsaved. Failures go to
  // the log only: the user is designing, and a message every two minutes
  // would help nobody.
  void WriteNow();
  void Remove();

private:
  QString path_;
  std::function<QByteArray()> snapshot_;
  std::function<bool()> unsaved_;
  QTimer pause_;
  QTimer period_;
};

} // namespace kordel::addin
