#pragma once

#include <QHash>
#include <QTranslator>

#include <memory>

namespace kordel::host {

// The layout engine's texts in the user's language. The engine asks
// QCoreApplication::translate(context, English text) for every text it
// shows; this translator answers from the section [engine] of
// "<folder>/kordel.<language>.ini", the files that hold the add-in's texts,
// whose keys are the context and the English text joined by a dot:
//
//   [engine]
//   Designer.Align lefts=Justera vänsterkanter
//   "Designer.Fields begin with =expression"=...
//
// A key holding '=' is written in double quotes, with '"' and '\' escaped
// by a backslash, as IniFile reads it. Keys are compared without regard to
// case, as the add-in's are, so texts that differ only in case share their
// entry. A text the file does not have stays as it is, in English, which
// needs no file.
class EngineTranslator : public QTranslator {
public:
  // A language "sv-SE" or "sv_SE" falls back to "sv". No file for the
  // language, or no section in it, gives no translations; a file that
  // cannot be read raises its error.
  EngineTranslator(const QString &folder, const QString &language);

  // Makes the translator of the language from the add-in's translation
  // folder and installs it for the process; it is taken out when the
  // result is dropped. A translation file that cannot be read leaves the
  // engine's texts in English.
  static std::unique_ptr<EngineTranslator> install(const QString &language);

  QString translate(const char *context, const char *sourceText, const char *disambiguation = nullptr,
                    int n = -1) const override;
  bool isEmpty() const override { return texts_.isEmpty(); }
  qsizetype size() const { return texts_.size(); }

private:
  QHash<QString, QString> texts_; // folded "context.text" -> translation
};

} // namespace kordel::host
