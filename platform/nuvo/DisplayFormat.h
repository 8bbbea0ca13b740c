#pragma once

#include "nuvo/Catalog.h"

#include "core/Variant.h"

#include <QLocale>
#include <QString>

namespace kordel::nuvo {

// How values read for a user in one language: numbers with the language's
// separators, dates in its short form, Yes and No in its words, options by
// their text. Null and Empty read as "".
class DisplayFormat {
public:
  explicit DisplayFormat(const QString &language);

  // The text of a field's value. Relations are not handled here: their
  // text is the other record's description.
  QString text(const FieldDef &field, const Variant &value) const;
  // The text of a value by its own type, as for formula fields.
  QString valueText(const Variant &value) const;

  QString integer(qint64 value, bool grouped) const;
  QString decimal(double value, int decimals) const;
  QString percent(double fraction) const;
  QString date(Date value) const;
  QString time(Date value) const;
  QString dateTime(Date value) const;
  QString yesNo(bool value) const;

private:
  QString language_;
  QLocale locale_;
  QString datePattern_;
  QString timePattern_;
  QString yes_;
  QString no_;
  QString percentPattern_;
};

} // namespace kordel::nuvo
