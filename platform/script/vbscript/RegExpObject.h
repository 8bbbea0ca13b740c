#pragma once

#include "core/Object.h"

#include <QRegularExpression>

#include <optional>

namespace kordel::script::vb {

// The RegExp object of the language, made by New RegExp and by
// CreateObject("VBScript.RegExp"). Its pattern is compiled when Test,
// Execute or Replace first needs it after Pattern, IgnoreCase or Multiline
// changed; a faulty pattern raises its error there, not when it is set.
class RegExpObject final : public Object {
public:
  QString typeName() const override { return QStringLiteral("IRegExp2"); }

  const QString &pattern() const { return pattern_; }
  void setPattern(const QString &pattern);
  bool ignoreCase() const { return ignoreCase_; }
  void setIgnoreCase(bool on);
  bool global() const { return global_; }
  void setGlobal(bool on) { global_ = on; }
  bool multiline() const { return multiline_; }
  void setMultiline(bool on);

  bool test(const QString &text);
  // A MatchCollection: every match with Global, else the first at most.
  ObjectRef execute(const QString &text);
  // The replacement is a text with $ references, or a function (GetRef)
  // that gives the text for each match.
  QString replace(const QString &text, const Variant &replacement);

protected:
  const MemberTable &memberTable() const override;

private:
  const QRegularExpression &compiled();
  // The matches from the start of the text, each after the one before; an
  // empty match moves the search on by one character.
  std::vector<QRegularExpressionMatch> matches(const QString &text, bool all);

  QString pattern_;
  bool ignoreCase_ = false;
  bool global_ = false;
  bool multiline_ = false;
  std::optional<QRegularExpression> compiled_;
  int groups_ = 0;
};

} // namespace kordel::script::vb
