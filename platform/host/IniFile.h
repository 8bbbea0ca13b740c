#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace kordel::host {

// A small INI document: "[section]" headers, "name=value" lines and ";"
// comment lines, in UTF-8.
//
// Values that this class writes are quoted with backslash escapes, so every
// string reads back exactly as it was set: blanks at either end, quotes,
// backslashes, line breaks, non-ASCII text and the empty string. Values
// written by hand without quotes are read as they stand, trimmed. Names are
// quoted the same way when they hold characters that would break the format.
//
// Section and value names are looked up without regard to case and keep the
// case they were first written with. Sections, values and comments keep
// their order.
class IniFile {
public:
  // Reads a file. Raises 53 when it does not exist, 70 when it cannot be
  // read and 321 when its text is not valid INI or not UTF-8.
  static IniFile load(const QString &path);
  // Reads INI text; origin names the text in error messages.
  static IniFile parse(const QByteArray &utf8, const QString &origin);

  // The document as INI text.
  QByteArray serialize() const;
  // Writes the document atomically: the file on disk is either the old one
  // or the new one, never a mix. Raises 70 when it cannot be written.
  void save(const QString &path) const;

  QStringList sections() const;
  bool hasSection(const QString &section) const;
  // The value names of a section, empty when the section is absent.
  QStringList names(const QString &section) const;
  // The value, or nothing when the section or the value is absent.
  std::optional<QString> value(const QString &section, const QString &name) const;
  // Sets a value, adding the section and the value at the end as needed.
  void setValue(const QString &section, const QString &name, const QString &value);

private:
  struct Entry {
    QString name;
    QString value;
    QStringList comments; // comment lines written just above the entry
  };
  struct Section {
    QString name;
    QStringList comments;
    std::vector<Entry> entries;
    QHash<QString, std::size_t> index; // folded name -> entry
  };

  const Section *findSection(const QString &name) const;
  Section &sectionFor(const QString &name);
  static Entry &entryFor(Section &section, const QString &name);

  std::vector<Section> sections_;
  QHash<QString, std::size_t> index_; // folded name -> section
  QStringList trailingComments_;
};

} // namespace kordel::host
