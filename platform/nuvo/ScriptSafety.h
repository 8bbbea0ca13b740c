#pragma once

#include <QString>

namespace kordel::nuvo {

enum class ScriptLanguage { VBScript, JScript };

// The safety rules for layout scripts, applied to the text without running
// it. Unsafe calls are replaced where they stand:
//   CreateObject and GetObject (also as members of another object) and
//   JScript's new ActiveXObject, unless they create one of the allowed
//   ProgIDs from a literal: the call becomes Nothing (null);
//   code run from strings (Execute, ExecuteGlobal, Eval; JScript's eval and
//   Function): an expression becomes Empty (undefined), a statement raises
//   error 70 where it stood;
//   file and network access that needs no object (LoadPicture,
//   XMLHttpRequest, Qt.include, import): as object creation.
// Strings and comments are not looked at. A safe script comes back
// unchanged.
QString neutraliseUnsafeCalls(const QString &text, ScriptLanguage language);

// For a text whose language is not known: the unsafe calls that the rules
// of either language find, replaced in the language the text seems to be
// written in (JScript when it has braces or semicolons). A call that one
// language reads as a comment may so be replaced as well: harmless, and no
// script can hide code from one language's rules in what the other reads as
// a comment or a string.
QString neutraliseUnsafeCallsOfEither(const QString &text);

// Whether a ProgID may be created by a layout script.
bool isAllowedProgId(const QString &progId);

} // namespace kordel::nuvo
