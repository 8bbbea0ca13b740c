#pragma once

#include <QHash>
#include <QJsonArray>
#include <QString>

#include <memory>
#include <vector>

namespace kordel::nuvo {

struct ClassDef;

// Texts in several languages, with a fallback: the language asked for,
// else English, else the first one given, else nothing.
class LocalTexts {
public:
  void set(const QString &language, const QString &text) { texts_.insert(language, text); }
  QString get(const QString &language) const;
  bool isEmpty() const { return texts_.isEmpty(); }
  const QHash<QString, QString> &all() const { return texts_; }

private:
  QHash<QString, QString> texts_;
};

// One option of a choice field: its stored key, its stable name and its
// texts.
struct OptionDef {
  int key = 0;
  QString name;
  LocalTexts texts;
};

// A field of a class as the metadata tables describe it.
struct FieldDef {
  QString name;
  LocalTexts localNames;
  int type = 0;
  int size = 0;
  int dataType = 0;
  bool hidden = false;
  QString relatedClassName; // relations: the class at the other side
  QString relatedFieldName; // relations: the field at the other side
  QString formula;          // formula fields: an SQL expression with [field] for the class's columns
  std::vector<OptionDef> options;

  // Filled when the catalog is complete.
  const ClassDef *owner = nullptr;
  const ClassDef *relatedClass = nullptr;
  const FieldDef *relatedField = nullptr;

  // Whether the field is a column of its class's table.
  bool hasColumn() const;
  const OptionDef *optionByKey(int key) const;
  // An option by its name or its text in any language, without regard to case.
  const OptionDef *optionByName(const QString &name) const;
};

// A saved filter: its names and its conditions in postfix order, each a
// JSON object {"path", "op", "value"}, {"filter": name} or {"operator"}.
struct FilterDef {
  QString name;
  LocalTexts localNames;
  QJsonArray items;
};

// A class: its table is named as the class, its key column id<class>.
struct ClassDef {
  QString name;
  LocalTexts localNames;
  // How a record reads as one line: text with [field] for the display text
  // of plain fields of the class.
  QString descriptionTemplate;
  std::vector<std::unique_ptr<FieldDef>> fields;
  std::vector<FilterDef> filters;

  QString idFieldName() const { return QStringLiteral("id") + name; }
  const FieldDef *field(const QString &name) const;
  const FieldDef *fieldByLocalName(const QString &localName, const QString &language) const;
  const FilterDef *filter(const QString &name) const;
  // The fields the description template names, in order, with the text
  // between them.
  struct DescriptionPart {
    QString literal;
    const FieldDef *field = nullptr;
  };
  const std::vector<DescriptionPart> &descriptionParts() const { return descriptionParts_; }

private:
  friend class Catalog;
  QHash<QString, int> byName_; // folded name -> index
  std::vector<DescriptionPart> descriptionParts_;
};

// All classes of a database. A catalog is built once, then completed:
// relations are joined up and checked, and it does not change again.
class Catalog {
public:
  ClassDef &addClass(std::unique_ptr<ClassDef> cls);
  // Joins relations and descriptions; raises 5 when the metadata does not
  // hold together (a relation without its other side, an unknown field in
  // a description).
  void complete();

  const std::vector<std::unique_ptr<ClassDef>> &classes() const { return classes_; }
  const ClassDef *find(const QString &name) const;
  const ClassDef *findByLocalName(const QString &localName, const QString &language) const;

private:
  std::vector<std::unique_ptr<ClassDef>> classes_;
  QHash<QString, int> byName_;
};

} // namespace kordel::nuvo
