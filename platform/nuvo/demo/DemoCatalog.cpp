#include "nuvo/demo/DemoCatalog.h"

#include "nuvo/Catalog.h"

#include "hostapi/FieldTypes.h"
#include "hostapi/Filters.h"

#include <QJsonArray>
#include <QJsonObject>

namespace kordel::nuvo::demo {

namespace {

namespace FT = hostapi::FieldType;
namespace DT = hostapi::DataType;
namespace CO = hostapi::ConditionOp;

LocalTexts texts(const char *english, const char *swedish) {
  LocalTexts local;
  local.set(QStringLiteral("en"), QString::fromUtf8(english));
  local.set(QStringLiteral("sv"), QString::fromUtf8(swedish));
  return local;
}

int dataTypeOf(int type) {
  switch (type) {
  case FT::Counter:
  case FT::Integer:
  case FT::RelationToOne:
  case FT::RelationToMany:
  case FT::Choice: return DT::Long;
  case FT::Decimal:
  case FT::Percent: return DT::Double;
  case FT::Currency: return DT::Currency;
  case FT::Date:
  case FT::DateTime:
  case FT::Time:
  case FT::CreatedTime:
  case FT::UpdatedTime: return DT::Date;
  case FT::YesNo: return DT::Boolean;
  default: return DT::String;
  }
}

// Builds the classes of the model one call at a time.
class ModelBuilder {
public:
  ClassDef &addClass(const char *name, const char *english, const char *swedish, const char *description) {
    auto cls = std::make_unique<ClassDef>();
    cls->name = QString::fromLatin1(name);
    cls->localNames = texts(english, swedish);
    cls->descriptionTemplate = QString::fromLatin1(description);
    ClassDef &added = catalog_->addClass(std::move(cls));
    field(added, ("id" + std::string(name)).c_str(), FT::Counter, "ID", "ID");
    return added;
  }

  FieldDef &field(ClassDef &cls, const char *name, int type, const char *english, const char *swedish, int size = 0) {
    auto field = std::make_unique<FieldDef>();
    field->name = QString::fromLatin1(name);
    field->type = type;
    field->size = size;
    field->dataType = dataTypeOf(type);
    field->localNames = texts(english, swedish);
    cls.fields.push_back(std::move(field));
    return *cls.fields.back();
  }

  // A relation to one record of another class, with its other side, the
  // relation to many.
  void relation(ClassDef &from, const char *field, const char *english, const char *swedish, ClassDef &to,
                const char *back, const char *backEnglish, const char *backSwedish) {
    FieldDef &one = this->field(from, field, FT::RelationToOne, english, swedish);
    one.relatedClassName = to.name;
    one.relatedFieldName = QString::fromLatin1(back);
    FieldDef &many = this->field(to, back, FT::RelationToMany, backEnglish, backSwedish);
    many.relatedClassName = from.name;
    many.relatedFieldName = QString::fromLatin1(field);
  }

  void option(FieldDef &field, int key, const char *name, const char *english, const char *swedish) {
    field.options.push_back({key, QString::fromLatin1(name), texts(english, swedish)});
  }

  void systemFields(ClassDef &cls) {
    field(cls, "createdtime", FT::CreatedTime, "Created", "Skapad");
    field(cls, "timestamp", FT::UpdatedTime, "Updated", "Uppdaterad");
    field(cls, "createdby", FT::CreatedBy, "Created by", "Skapad av");
    field(cls, "updatedby", FT::UpdatedBy, "Updated by", "Uppdaterad av");
  }

  void filter(ClassDef &cls, const char *name, const char *english, const char *swedish, QJsonArray items) {
    cls.filters.push_back({QString::fromLatin1(name), texts(english, swedish), std::move(items)});
  }

  std::unique_ptr<Catalog> take() { return std::move(catalog_); }

private:
  std::unique_ptr<Catalog> catalog_ = std::make_unique<Catalog>();
};

QJsonObject condition(const char *path, int op, const QJsonValue &value) {
  return QJsonObject{{QStringLiteral("path"), QString::fromLatin1(path)},
                     {QStringLiteral("op"), op},
                     {QStringLiteral("value"), value}};
}

QJsonObject embedded(const char *filter) {
  return QJsonObject{{QStringLiteral("filter"), QString::fromLatin1(filter)}};
}

QJsonObject joinAnd() { return QJsonObject{{QStringLiteral("operator"), hostapi::FilterOperator::And}}; }

} // namespace

std::unique_ptr<Catalog> demoCatalog() {
  ModelBuilder m;
  ClassDef &coworker = m.addClass("coworker", "Coworker", "Medarbetare", "[name]");
  ClassDef &company = m.addClass("company", "Company", "Företag", "[name]");
  ClassDef &person = m.addClass("person", "Person", "Person", "[firstname] [lastname]");
  ClassDef &deal = m.addClass("deal", "Deal", "Affär", "[name]");
  ClassDef &history = m.addClass("history", "History", "Historik", "[date] [type]");
  ClassDef &product = m.addClass("product", "Product", "Produkt", "[name]");

  m.field(coworker, "name", FT::Text, "Name", "Namn", 64);
  m.field(coworker, "email", FT::Email, "E-mail", "E-post", 128);
  m.field(coworker, "phone", FT::Phone, "Phone", "Telefon", 32);
  m.field(coworker, "login", FT::Text, "Login", "Inloggning", 32).hidden = true;

  m.field(company, "name", FT::Text, "Name", "Namn", 128);
  m.field(company, "city", FT::Text, "City", "Ort", 64);
  m.field(company, "country", FT::Text, "Country", "Land", 64);
  m.field(company, "phone", FT::Phone, "Phone", "Telefon", 32);
  m.field(company, "email", FT::Email, "E-mail", "E-post", 128);
  FieldDef &category = m.field(company, "category", FT::Choice, "Category", "Kategori");
  m.option(category, 1, "customer", "Customer", "Kund");
  m.option(category, 2, "prospect", "Prospect", "Prospekt");
  m.option(category, 3, "partner", "Partner", "Partner");
  m.option(category, 4, "supplier", "Supplier", "Leverantör");
  m.option(category, 5, "competitor", "Competitor", "Konkurrent");
  m.field(company, "turnover", FT::Decimal, "Turnover", "Omsättning");
  m.field(company, "founded", FT::Date, "Founded", "Grundat");
  m.relation(company, "coworker", "Responsible", "Ansvarig", coworker, "company", "Companies", "Företag");

  m.field(person, "firstname", FT::Text, "First name", "Förnamn", 64);
  m.field(person, "lastname", FT::Text, "Last name", "Efternamn", 64);
  m.field(person, "position", FT::Text, "Position", "Befattning", 64);
  m.field(person, "email", FT::Email, "E-mail", "E-post", 128);
  m.field(person, "phone", FT::Phone, "Phone", "Telefon", 32);
  m.field(person, "birthday", FT::Date, "Birthday", "Födelsedag");
  m.relation(person, "company", "Company", "Företag", company, "person", "Persons", "Personer");

  m.field(deal, "name", FT::Text, "Name", "Namn", 128);
  m.field(deal, "value", FT::Currency, "Value", "Värde");
  m.field(deal, "probability", FT::Percent, "Probability", "Sannolikhet");
  FieldDef &stage = m.field(deal, "stage", FT::Choice, "Stage", "Fas");
  m.option(stage, 1, "lead", "Lead", "Lead");
  m.option(stage, 2, "qualified", "Qualified", "Kvalificerad");
  m.option(stage, 3, "proposal", "Proposal", "Offert");
  m.option(stage, 4, "negotiation", "Negotiation", "Förhandling");
  m.option(stage, 5, "won", "Won", "Vunnen");
  m.option(stage, 6, "lost", "Lost", "Förlorad");
  m.field(deal, "closedate", FT::Date, "Close date", "Avslutsdatum");
  // The amount stays in ten-thousandths in its column.
  FieldDef &weighted = m.field(deal, "weighted", FT::Formula, "Weighted value", "Viktat värde");
  weighted.dataType = DT::Double;
  weighted.formula = QStringLiteral("[value] * [probability] / 10000.0");
  m.relation(deal, "company", "Company", "Företag", company, "deal", "Deals", "Affärer");
  m.relation(deal, "person", "Contact", "Kontaktperson", person, "deal", "Deals", "Affärer");
  m.relation(deal, "coworker", "Responsible", "Ansvarig", coworker, "deal", "Deals", "Affärer");

  m.field(history, "date", FT::DateTime, "Date", "Datum");
  FieldDef &type = m.field(history, "type", FT::Choice, "Type", "Typ");
  m.option(type, 1, "call", "Phone call", "Telefonsamtal");
  m.option(type, 2, "meeting", "Meeting", "Möte");
  m.option(type, 3, "email", "E-mail", "E-post");
  m.option(type, 4, "note", "Note", "Anteckning");
  m.option(type, 5, "visit", "Visit", "Besök");
  m.field(history, "note", FT::Memo, "Note", "Anteckning");
  m.relation(history, "company", "Company", "Företag", company, "history", "History", "Historik");
  m.relation(history, "person", "Person", "Person", person, "history", "History", "Historik");
  m.relation(history, "deal", "Deal", "Affär", deal, "history", "History", "Historik");
  m.relation(history, "coworker", "Coworker", "Medarbetare", coworker, "history", "History", "Historik");

  m.field(product, "name", FT::Text, "Name", "Namn", 128);
  m.field(product, "price", FT::Currency, "Price", "Pris");
  m.field(product, "active", FT::YesNo, "Active", "Aktiv");

  for (ClassDef *cls : {&coworker, &company, &person, &deal, &history, &product})
    m.systemFields(*cls);

  m.filter(coworker, "withcustomers", "Responsible for customers", "Ansvariga för kunder",
           {condition("company.category", CO::Equal, QStringLiteral("customer"))});
  m.filter(coworker, "noname", "Without a name", "Utan namn", {condition("name", CO::Equal, QJsonValue::Null)});

  m.filter(company, "customers", "Customers", "Kunder", {condition("category", CO::Equal, QStringLiteral("customer"))});
  m.filter(company, "prospects", "Prospects", "Prospekt",
           {condition("category", CO::Equal, QStringLiteral("prospect"))});
  m.filter(company, "sweden", "Companies in Sweden", "Företag i Sverige",
           {condition("country", CO::Equal, QStringLiteral("Sweden"))});
  m.filter(company, "swedishcustomers", "Customers in Sweden", "Kunder i Sverige",
           {embedded("customers"), embedded("sweden"), joinAnd()});
  m.filter(company, "large", "Large companies", "Stora företag", {condition("turnover", CO::GreaterOrEqual, 5.0e8)});
  m.filter(company, "antarctica", "Companies in Antarctica", "Företag i Antarktis",
           {condition("country", CO::Equal, QStringLiteral("Antarctica"))});

  m.filter(person, "withemail", "With e-mail", "Med e-post", {condition("email", CO::NotEqual, QJsonValue::Null)});
  m.filter(person, "sweden", "Persons in Sweden", "Personer i Sverige",
           {condition("company.country", CO::Equal, QStringLiteral("Sweden"))});
  m.filter(person, "nobody", "Named Nobody", "Som heter Nobody",
           {condition("lastname", CO::Equal, QStringLiteral("Nobody"))});

  m.filter(deal, "open", "Open deals", "Öppna affärer", {condition("stage", CO::Less, 5)});
  m.filter(deal, "won", "Won deals", "Vunna affärer", {condition("stage", CO::Equal, QStringLiteral("won"))});
  m.filter(deal, "large", "Large deals", "Stora affärer", {condition("value", CO::GreaterOrEqual, 1000000)});
  m.filter(deal, "lostgiants", "Lost giant deals", "Förlorade jätteaffärer",
           {condition("stage", CO::Equal, QStringLiteral("lost")), condition("value", CO::Greater, 9.0e11), joinAnd()});

  m.filter(history, "calls", "Phone calls", "Telefonsamtal", {condition("type", CO::Equal, QStringLiteral("call"))});
  m.filter(history, "since2024", "Since 2024", "Sedan 2024", {condition("date", CO::GreaterOrEqual, "2024-01-01")});
  m.filter(history, "after2100", "After 2100", "Efter 2100", {condition("date", CO::Greater, "2100-01-01")});

  m.filter(product, "active", "Active products", "Aktiva produkter", {condition("active", CO::Equal, true)});
  m.filter(product, "inactive", "Inactive products", "Inaktiva produkter", {condition("active", CO::Equal, false)});

  return m.take();
}

} // namespace kordel::nuvo::demo
