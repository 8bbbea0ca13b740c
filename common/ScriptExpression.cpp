#include "common/ScriptExpression.h"

#include "common/ApplicationManager.h"
#include "common/Globals.h"
#include "hostapi/ActiveUser.h"
#include "hostapi/Records.h"

namespace kordel::addin {

namespace {

// While the references are rewritten, the three quoted forms hide behind
// markers that cannot occur in an expression, so that the shorter forms do
// not match inside the longer one.
struct QuotedForm {
  QString form;
  QString marker;
};

const QuotedForm kActiveUserValue{QStringLiteral("ActiveUser.Record.Value(\""), QStringLiteral("@A$U$V@(\"")};
const QuotedForm kPageValue{QStringLiteral("Value(\""), QStringLiteral("@L$V@(\"")};
const QuotedForm kPageText{QStringLiteral("Text(\""), QStringLiteral("@T$V@(\"")};

bool knownField(const std::shared_ptr<hostapi::Fields> &fields, const QString &name) {
  try {
    return fields && fields->lookup(name, hostapi::LookupMode::Either) != nullptr;
  } catch (...) {
    return false; // a path that cannot be looked up is left alone
  }
}

// Replaces every "[name]" whose path the fields know.
void convertBrackets(QString &text, const std::shared_ptr<hostapi::Fields> &fields, int mode) {
  const QStringList pieces = text.split(u'[');
  for (const QString &piece : pieces) {
    if (!piece.contains(u']'))
      continue;
    const QString name = GetToken(piece, QStringLiteral("]"), true);
    if (name.isEmpty() || !knownField(fields, name))
      continue;
    try {
      text.replace(u'[' + name + u']', u'[' + fields->translatePath(name, mode) + u']', Qt::CaseSensitive);
    } catch (...) {
      // A path that cannot be translated stays as written.
    }
  }
}

// Replaces marker + name + quote for every name after a marker that the
// fields know. A piece without a quote keeps the name of the piece before
// it, which only repeats a replacement that finds nothing new.
void convertQuoted(QString &text, const QString &marker, const std::shared_ptr<hostapi::Fields> &fields, int mode,
                   bool lookUpEmptyName) {
  QString name;
  for (const QString &piece : text.split(marker)) {
    if (piece.isEmpty())
      continue;
    const qsizetype quote = piece.indexOf(u'"');
    if (quote >= 0)
      name = piece.left(quote);
    if ((name.isEmpty() && !lookUpEmptyName) || !knownField(fields, name))
      continue;
    try {
      text.replace(marker + name + u'"', marker + fields->translatePath(name, mode) + u'"', Qt::CaseSensitive);
    } catch (...) {
      // As above.
    }
  }
}

std::shared_ptr<hostapi::Fields> activeUserFields() {
  try {
    const auto application = CurrentApplication();
    const auto user = application ? application->activeUser() : nullptr;
    const auto record = user ? user->record() : nullptr;
    return record ? record->fields() : nullptr;
  } catch (...) {
    return nullptr; // without a user record its references stay as written
  }
}

} // namespace

QString ConvertScriptExpression(const std::shared_ptr<hostapi::Fields> &fields, const QString &expression, int mode) {
  QString text = expression;
  if (!text.isEmpty())
    convertBrackets(text, fields, mode);
  if (text.isEmpty())
    return text;

  for (const QuotedForm *form : {&kActiveUserValue, &kPageValue, &kPageText})
    text.replace(form->form, form->marker, Qt::CaseInsensitive);

  if (const auto userFields = activeUserFields())
    convertQuoted(text, kActiveUserValue.marker, userFields, mode, false);
  convertQuoted(text, kPageValue.marker, fields, mode, false);
  convertQuoted(text, kPageText.marker, fields, mode, true);

  for (const QuotedForm *form : {&kActiveUserValue, &kPageValue, &kPageText})
    text.replace(form->marker, form->form, Qt::CaseSensitive);
  return text;
}

} // namespace kordel::addin
