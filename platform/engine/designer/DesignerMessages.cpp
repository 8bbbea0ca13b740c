#include "engine/designer/DesignerMessages.h"

#include "engine/designer/DesignerEvents.h"
#include "engine/designer/DesignerText.h"

#include "hostapi/Ui.h"

namespace kordel::engine {

namespace {

struct Message {
  int number;
  int flags;
  const char *text;
};

// The texts stand beside their numbers in DesignerMessages.h as well.
constexpr Message kMessages[] = {
    {DesignMessage::LayoutNotLoaded, 16, QT_TRANSLATE_NOOP("Designer", "The layout could not be opened: %1")},
    {DesignMessage::NothingToPaste, 64, QT_TRANSLATE_NOOP("Designer", "The clipboard holds no controls to paste.")},
    {DesignMessage::PictureNotLoaded, 16, QT_TRANSLATE_NOOP("Designer", "The picture could not be opened: %1")},
    {DesignMessage::ValueRefused, 16, "%1"},
    {DesignMessage::ScriptHasErrors, 16, QT_TRANSLATE_NOOP("Designer", "The script has an error: %1")},
    {DesignMessage::SectionNameTaken, 16, QT_TRANSLATE_NOOP("Designer", "A section of that name exists already.")},
    {DesignMessage::ControlNotMade, 16, QT_TRANSLATE_NOOP("Designer", "The control could not be made: %1")},
    {DesignMessage::LayoutNotSaved, 16, QT_TRANSLATE_NOOP("Designer", "The layout could not be saved: %1")},
    {DesignMessage::NothingSelected, 64, QT_TRANSLATE_NOOP("Designer", "Select a control or a section first.")},
    {DesignMessage::DetailStays, 48, QT_TRANSLATE_NOOP("Designer", "Every layout keeps its detail section.")},
    {DesignMessage::ActionFailed, 16, QT_TRANSLATE_NOOP("Designer", "The command could not be done: %1")},
    {DesignMessage::DiscardScriptChanges,
     hostapi::MsgBox::YesNo | hostapi::MsgBox::Question | hostapi::MsgBox::DefaultButton2,
     QT_TRANSLATE_NOOP("Designer", "Discard your changes to the script?")},
};

const Message *find(int number) {
  for (const Message &message : kMessages)
    if (message.number == number)
      return &message;
  return nullptr;
}

} // namespace

QString designMessageText(int number, const QString &detail) {
  const Message *message = find(number);
  if (!message)
    return detail;
  const QString text = designerText(message->text);
  return text.contains(QLatin1String("%1")) ? text.arg(detail) : text;
}

int designMessageFlags(int number) {
  const Message *message = find(number);
  return message ? message->flags : 16;
}

int tellUser(DesignerEvents *events, int number, const QString &detail) {
  const QString text = designMessageText(number, detail);
  const int flags = designMessageFlags(number);
  return events ? events->message(number, text, flags) : showDesignMessage(text, flags);
}

int showDesignMessage(const QString &text, int flags) {
  return hostapi::ui().messageBox(text, flags, designerText("Report Designer"));
}

} // namespace kordel::engine
