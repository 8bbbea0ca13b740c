#pragma once

#include <QString>

namespace kordel::engine {

class DesignerEvents;

// The messages the designer gives its user, by number. They reach the user
// through the designer control's Message event, whose owner may put its
// own text in their place; without an owner the designer shows them itself.
// Flags are those of a message box: 16 stop, 48 warning, 64 information,
// 4 + 32 + 256 a question answered Yes or No, No the default.
namespace DesignMessage {
constexpr int LayoutNotLoaded = 1;       // 16: "The layout could not be opened: %1"
constexpr int NothingToPaste = 6;        // 64: "The clipboard holds no controls to paste."
constexpr int PictureNotLoaded = 8;      // 16: "The picture could not be opened: %1"
constexpr int ValueRefused = 9;          // 16: "%1" (why a property refused a value)
constexpr int ScriptHasErrors = 10;      // 16: "The script has an error: %1"
constexpr int SectionNameTaken = 11;     // 16: "A section of that name exists already."
constexpr int ControlNotMade = 12;       // 16: "The control could not be made: %1"
constexpr int LayoutNotSaved = 13;       // 16: "The layout could not be saved: %1"
constexpr int NothingSelected = 18;      // 64: "Select a control or a section first."
constexpr int DetailStays = 19;          // 48: "Every layout keeps its detail section."
constexpr int ActionFailed = 20;         // 16: "The command could not be done: %1"
constexpr int DiscardScriptChanges = 21; // 292: "Discard your changes to the script?"
} // namespace DesignMessage

// The designer's own text of a message, with %1 filled in.
QString designMessageText(int number, const QString &detail = QString());
// The message box flags the designer shows a message with.
int designMessageFlags(int number);

// Gives the user a message: through the owner's events when there are
// any, else in the designer's own box through the host's Ui. The answer
// is the button pressed, as a message box numbers it.
int tellUser(DesignerEvents *events, int number, const QString &detail = QString());
// The designer's own box of a message, through the host's Ui.
int showDesignMessage(const QString &text, int flags);

} // namespace kordel::engine
