#pragma once

#include <QString>

namespace kordel::nuvo {

enum class ScriptLanguage { VBScript, JScript };

// The safety rules for layout scripts, applied to the text without running
// it. Unsafe calls are replaced where they stand:
//   CreateObject and GetObject (also as members of another object) and
//   JScript's new ActiveXObject, unless they create one of the allowed
//   ProgIDs from a plain literal: the call becomes Nothing (null);
//   code run from strings (Execute, ExecuteGlobal, Eval; JScript's eval,
//   also as a member, and the Function constructor by any road): an
//   expression becomes Empty (undefined), a statement raises error 70 where
//   it stood;
//   file and network access that needs no object (LoadPicture,
//   XMLHttpRequest, Qt.include, import): as object creation;
//   JScript's roads to names that the text does not show: a computed
//   member name or property key (obj[key]) that is not a number or a plain
//   string naming nothing unsafe becomes undefined, and so does every read
//   of "constructor" (a class may still define its own).
// Names are read as the engines read them: JScript's \u escapes decoded,
// the code in template placeholders read as code, line ends as each
// language has them (VBScript ends a line at a bare CR too). Strings,
// comments and regular expressions are not looked at. A JScript text that
// cannot be read cleanly (an unfinished string, comment or template,
// brackets that do not pair) is replaced as a whole by a statement that
// raises "Permission denied". A safe script comes back unchanged.
//
// The rules read names, not values: a script that finds a function among
// the values it enumerates at run time is for the run time's rights to
// stop.
QString neutraliseUnsafeCalls(const QString &text, ScriptLanguage language);

// For a text whose language is not known: the unsafe calls that the rules
// of either language find, replaced in the language the text seems to be
// written in (JScript when it has braces or semicolons). A call that one
// language reads as a comment may so be replaced as well: harmless, and no
// script can hide code from one language's rules in what the other reads as
// a comment or a string. The text is replaced as a whole only when JScript
// cannot read it cleanly and VBScript does not compile it either.
QString neutraliseUnsafeCallsOfEither(const QString &text);

// Whether a ProgID may be created by a layout script.
bool isAllowedProgId(const QString &progId);

} // namespace kordel::nuvo
