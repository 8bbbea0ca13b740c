#include "data/RowBufferSyntax.h"

#include "core/Error.h"

#include <QRegularExpression>

#include <optional>

namespace kordel::addin {

namespace {

// Walks a text left to right; every failure names what was wrong.
class TextReader {
public:
  explicit TextReader(const QString &text) : text_(text) {}

  bool atEnd() const { return pos_ >= text_.size(); }
  QChar peek() const { return atEnd() ? QChar() : text_[pos_]; }
  void skip() { ++pos_; }
  void skipBlanks() {
    while (!atEnd() && text_[pos_].isSpace())
      ++pos_;
  }
  bool take(QChar c) {
    if (peek() != c)
      return false;
    ++pos_;
    return true;
  }

  // A name in brackets, or a bare name up to a blank or one of the stops.
  // Nothing when there is no name here or its bracket is not closed.
  std::optional<QString> name(QStringView stops) {
    if (take(u'[')) {
      const qsizetype close = text_.indexOf(u']', pos_);
      if (close < 0)
        return std::nullopt;
      const QString name = text_.mid(pos_, close - pos_).trimmed();
      pos_ = close + 1;
      return name.isEmpty() ? std::nullopt : std::optional(name);
    }
    return word(stops);
  }

  // The characters up to a blank or one of the stops; nothing when there are none.
  std::optional<QString> word(QStringView stops = {}) {
    const qsizetype start = pos_;
    while (!atEnd() && !text_[pos_].isSpace() && !stops.contains(text_[pos_]))
      ++pos_;
    if (pos_ == start)
      return std::nullopt;
    return text_.mid(start, pos_ - start);
  }

  // The text up to the closing quote, with each doubled quote made single;
  // the opening quote is already taken.
  std::optional<QString> quoted() {
    QString value;
    while (!atEnd()) {
      const QChar c = text_[pos_++];
      if (c != u'\'') {
        value += c;
        continue;
      }
      if (!take(u'\''))
        return value;
      value += u'\'';
    }
    return std::nullopt;
  }

private:
  const QString &text_;
  qsizetype pos_ = 0;
};

[[noreturn]] void sortError(const QString &text, const QString &reason) {
  raiseError(ErrorNumber::BadArguments, QStringLiteral("RowBuffer.Sort"),
             QStringLiteral("The sort \"%1\" cannot be read: %2. A sort names columns, each with ASC or DESC, "
                            "separated by commas, as [name] ASC, [city] DESC.")
                 .arg(text, reason));
}

[[noreturn]] void filterError(const QString &text, const QString &reason) {
  raiseError(ErrorNumber::BadArguments, QStringLiteral("RowBuffer.Filter"),
             QStringLiteral("The filter \"%1\" cannot be read: %2. A filter takes one column equal to a number or "
                            "a text in single quotes, as [id] = 17 or [name] = 'O''Brien'.")
                 .arg(text, reason));
}

bool isNumber(const QString &word) {
  static const QRegularExpression number(QStringLiteral("^[+-]?(\\d+\\.?\\d*|\\.\\d+)([eE][+-]?\\d+)?$"));
  return number.match(word).hasMatch();
}

} // namespace

std::vector<SortKeyText> parseSortText(const QString &text) {
  std::vector<SortKeyText> keys;
  TextReader reader(text);
  reader.skipBlanks();
  if (reader.atEnd())
    return keys;
  for (;;) {
    reader.skipBlanks();
    const std::optional<QString> column = reader.name(u",");
    if (!column)
      sortError(text, QStringLiteral("a column name is missing or its bracket is not closed"));
    SortKeyText key{*column, false};
    reader.skipBlanks();
    if (const std::optional<QString> order = reader.word(u",")) {
      if (order->compare(QLatin1String("DESC"), Qt::CaseInsensitive) == 0)
        key.descending = true;
      else if (order->compare(QLatin1String("ASC"), Qt::CaseInsensitive) != 0)
        sortError(text, QStringLiteral("\"%1\" after %2 is neither ASC nor DESC").arg(*order, *column));
      reader.skipBlanks();
    }
    keys.push_back(key);
    if (reader.atEnd())
      return keys;
    if (!reader.take(u','))
      sortError(text, QStringLiteral("a comma must follow the order of %1").arg(*column));
  }
}

FilterCondition parseFilterText(const QString &text) {
  TextReader reader(text);
  reader.skipBlanks();
  const std::optional<QString> column = reader.name(u"=<>!");
  if (!column)
    filterError(text, QStringLiteral("a column name is missing or its bracket is not closed"));
  FilterCondition condition{*column, {}};
  reader.skipBlanks();
  if (!reader.take(u'=') || reader.peek() == u'=')
    filterError(text, QStringLiteral("only = can follow the column name"));
  reader.skipBlanks();
  if (reader.take(u'\'')) {
    const std::optional<QString> value = reader.quoted();
    if (!value)
      filterError(text, QStringLiteral("the closing quote is missing"));
    condition.value = {*value, true};
  } else {
    const std::optional<QString> value = reader.word();
    if (!value || !isNumber(*value))
      filterError(text, QStringLiteral("the value is neither a number nor a text in single quotes"));
    condition.value = {*value, false};
  }
  reader.skipBlanks();
  if (!reader.atEnd())
    filterError(text, QStringLiteral("nothing may follow the value"));
  return condition;
}

} // namespace kordel::addin
