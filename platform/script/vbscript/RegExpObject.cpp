#include "script/vbscript/RegExpObject.h"

#include "core/Error.h"
#include "script/vbscript/RegExpMatches.h"
#include "script/vbscript/RegExpPattern.h"
#include "script/vbscript/VbErrors.h"

namespace kordel::script::vb {

namespace {

[[noreturn]] void raisePatternError(int number) {
  raiseError(number, runtimeErrorSource(), standardDescription(number));
}

// The text of a group, or a null string when it took no part.
QString groupText(const QRegularExpressionMatch &match, int group) {
  return match.capturedStart(group) < 0 ? QString() : match.captured(group);
}

// The replacement for one match: $1..$99 are groups, $& the match, $` the
// text before it, $' the text after it and $$ a dollar sign. A two-digit
// group number counts only when that group exists, else one digit does;
// any other dollar stands for itself.
QString expandReplacement(const QString &replacement, const QRegularExpressionMatch &match, const QString &text,
                          int groups) {
  QString out;
  const qsizetype length = replacement.size();
  for (qsizetype i = 0; i < length; ++i) {
    const QChar c = replacement.at(i);
    if (c != u'$' || i + 1 >= length) {
      out += c;
      continue;
    }
    const QChar next = replacement.at(i + 1);
    if (next == u'$') {
      out += u'$';
      ++i;
    } else if (next == u'&') {
      out += match.captured(0);
      ++i;
    } else if (next == u'`') {
      out += text.left(match.capturedStart(0));
      ++i;
    } else if (next == u'\'') {
      out += text.mid(match.capturedEnd(0));
      ++i;
    } else if (next.isDigit() && next.unicode() < 0x80) {
      const int first = next.unicode() - u'0';
      const bool twoDigits =
          i + 2 < length && replacement.at(i + 2).unicode() >= u'0' && replacement.at(i + 2).unicode() <= u'9';
      const int two = twoDigits ? first * 10 + (replacement.at(i + 2).unicode() - u'0') : -1;
      if (two >= 1 && two <= groups) {
        out += groupText(match, two);
        i += 2;
      } else if (first >= 1 && first <= groups) {
        out += groupText(match, first);
        ++i;
      } else {
        out += c;
      }
    } else {
      out += c;
    }
  }
  return out;
}

// A replacement that is an object, a function of GetRef, is called for each
// match with the match, the text of each group (Empty for a group that took
// no part), the match's position from 0 and the whole text; what it returns
// replaces the match.
QString calledReplacement(const Variant &function, const QRegularExpressionMatch &match, const QString &text,
                          int groups) {
  const ObjectRef object = function.rawObject();
  if (!object)
    raiseError(ErrorNumber::ObjectNotSet);
  Args args;
  args.reserve(std::size_t(groups) + 3);
  args.push_back(Variant(match.captured(0)));
  for (int group = 1; group <= groups; ++group)
    args.push_back(match.capturedStart(group) < 0 ? Variant() : Variant(match.captured(group)));
  args.push_back(Variant(int(match.capturedStart(0))));
  args.push_back(Variant(text));
  return plainValue(object->call(QString(), args)).toString();
}

} // namespace

void RegExpObject::setPattern(const QString &pattern) {
  pattern_ = pattern;
  compiled_.reset();
}

void RegExpObject::setIgnoreCase(bool on) {
  ignoreCase_ = on;
  compiled_.reset();
}

void RegExpObject::setMultiline(bool on) {
  multiline_ = on;
  compiled_.reset();
}

const QRegularExpression &RegExpObject::compiled() {
  if (compiled_)
    return *compiled_;
  const RegExpPattern translated = translateRegExpPattern(pattern_, multiline_);
  if (translated.error)
    raisePatternError(translated.error);
  QRegularExpression expression(translated.translated, ignoreCase_ ? QRegularExpression::CaseInsensitiveOption
                                                                   : QRegularExpression::NoPatternOption);
  // The translation leaves only what the engine accepts, except for limits
  // of its own such as a repeat count above 65535.
  if (!expression.isValid())
    raisePatternError(VbError::RegExpSyntax);
  groups_ = expression.captureCount();
  compiled_ = std::move(expression);
  return *compiled_;
}

std::vector<QRegularExpressionMatch> RegExpObject::matches(const QString &text, bool all) {
  const QRegularExpression &expression = compiled();
  std::vector<QRegularExpressionMatch> found;
  qsizetype from = 0;
  while (from <= text.size()) {
    QRegularExpressionMatch match = expression.match(text, from);
    if (!match.hasMatch())
      break;
    from = match.capturedEnd(0);
    if (match.capturedLength(0) == 0) {
      // Past the empty match, and never into the middle of a surrogate pair.
      from += from + 1 < text.size() && text.at(from).isHighSurrogate() && text.at(from + 1).isLowSurrogate() ? 2 : 1;
    }
    found.push_back(std::move(match));
    if (!all)
      break;
  }
  return found;
}

bool RegExpObject::test(const QString &text) { return compiled().match(text).hasMatch(); }

ObjectRef RegExpObject::execute(const QString &text) {
  std::vector<Variant> list;
  for (const QRegularExpressionMatch &match : matches(text, global_)) {
    std::vector<Variant> groups;
    for (int group = 1; group <= groups_; ++group)
      groups.push_back(match.capturedStart(group) < 0 ? Variant() : Variant(match.captured(group)));
    list.push_back(
        Variant(std::make_shared<RegExpMatch>(int(match.capturedStart(0)), match.captured(0), std::move(groups))));
  }
  return std::make_shared<MatchCollection>(std::move(list));
}

QString RegExpObject::replace(const QString &text, const Variant &replacement) {
  const bool called = replacement.isObject();
  const QString pattern = called ? QString() : plainValue(replacement).toString();
  QString out;
  qsizetype copied = 0;
  const std::vector<QRegularExpressionMatch> found = matches(text, global_);
  const int groups = groups_; // the function called may change the pattern
  for (const QRegularExpressionMatch &match : found) {
    out += QStringView(text).mid(copied, match.capturedStart(0) - copied);
    out +=
        called ? calledReplacement(replacement, match, text, groups) : expandReplacement(pattern, match, text, groups);
    copied = match.capturedEnd(0);
  }
  out += QStringView(text).mid(copied);
  return out;
}

const MemberTable &RegExpObject::memberTable() const {
  static const MemberTable table{{
      property<RegExpObject>(
          "Pattern", [](RegExpObject &r) { return r.pattern(); },
          [](RegExpObject &r, const Variant &v) { r.setPattern(plainValue(v).toString()); }),
      property<RegExpObject>(
          "IgnoreCase", [](RegExpObject &r) { return r.ignoreCase(); },
          [](RegExpObject &r, const Variant &v) { r.setIgnoreCase(plainValue(v).toBool()); }),
      property<RegExpObject>(
          "Global", [](RegExpObject &r) { return r.global(); },
          [](RegExpObject &r, const Variant &v) { r.setGlobal(plainValue(v).toBool()); }),
      property<RegExpObject>(
          "Multiline", [](RegExpObject &r) { return r.multiline(); },
          [](RegExpObject &r, const Variant &v) { r.setMultiline(plainValue(v).toBool()); }),
      method<RegExpObject>("Test",
                           [](RegExpObject &r, Args &a) {
                             expectArgs(a, 1, 1);
                             return r.test(plainValue(a[0]).toString());
                           }),
      method<RegExpObject>("Execute",
                           [](RegExpObject &r, Args &a) {
                             expectArgs(a, 1, 1);
                             return Variant(r.execute(plainValue(a[0]).toString()));
                           }),
      method<RegExpObject>("Replace",
                           [](RegExpObject &r, Args &a) {
                             expectArgs(a, 2, 2);
                             return r.replace(plainValue(a[0]).toString(), a[1]);
                           }),
  }};
  return table;
}

} // namespace kordel::script::vb
