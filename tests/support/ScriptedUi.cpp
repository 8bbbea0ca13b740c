#include "support/ScriptedUi.h"

#include "core/Error.h"
#include "engine/preview/PreviewWindow.h"

namespace kordel::test {

int ScriptedUi::messageBox(const QString &text, int flags, const QString &title) {
  boxes.push_back({text, flags, title});
  if (boxAnswers.empty())
    return hostapi::MsgBox::defaultAnswer(flags);
  const int answer = boxAnswers.front();
  boxAnswers.pop_front();
  return answer;
}

std::optional<QString> ScriptedUi::inputBox(const QString &prompt, const QString &, const QString &) {
  inputPrompts << prompt;
  if (inputAnswers.empty())
    return std::nullopt;
  const bool cancelled = !inputAnswers.front().has_value();
  const QString text = inputAnswers.front().value_or(QString());
  inputAnswers.pop_front();
  if (cancelled)
    return std::nullopt;
  return text;
}

QString ScriptedUi::answerFileDialog(const hostapi::FileDialogRequest &request) {
  fileDialogs.push_back(request);
  QString answer;
  if (!fileAnswers.empty()) {
    answer = fileAnswers.front();
    fileAnswers.pop_front();
  }
  if (answer.isEmpty())
    raiseError(ErrorNumber::DialogCancelled);
  return answer;
}

QString ScriptedUi::openFile(const hostapi::FileDialogRequest &request) { return answerFileDialog(request); }

QString ScriptedUi::saveFile(const hostapi::FileDialogRequest &request) { return answerFileDialog(request); }

QFont ScriptedUi::chooseFont(const QFont &, const QString &) {
  if (fontAnswers.empty())
    raiseError(ErrorNumber::DialogCancelled);
  const QFont answer = fontAnswers.front();
  fontAnswers.pop_front();
  return answer;
}

std::optional<QColor> ScriptedUi::chooseColor(const QColor &initial, const QString &) {
  colorsOffered.push_back(initial);
  if (colorAnswers.empty())
    return std::nullopt;
  const QColor answer = colorAnswers.front();
  colorAnswers.pop_front();
  return answer.isValid() ? std::optional<QColor>(answer) : std::nullopt;
}

void ScriptedUi::showModal(QWidget &window) {
  if (!modalHandler)
    raiseError(ErrorNumber::InvalidCall, QStringLiteral("ScriptedUi"), QStringLiteral("No handler for a modal window"));
  // A user looks at a preview once its pages are made.
  if (auto *preview = qobject_cast<engine::PreviewWindow *>(&window))
    preview->completeRun();
  modalHandler(window);
}

void ScriptedUi::setWaitCursor(bool busy) { waitCursorDepth += busy ? 1 : -1; }

} // namespace kordel::test
