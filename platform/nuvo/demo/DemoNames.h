#pragma once

#include <QStringList>

namespace kordel::nuvo::demo {

// The words the demo data is made of, per country, so that names, places
// and notes fit together.
struct CountryWords {
  QString country;
  QString phonePrefix;
  QString domain;
  QStringList cities;
  QStringList companyRoots;
  QStringList companyForms;
  QStringList maleNames;
  QStringList femaleNames;
  QStringList lastNames;
  QStringList positions;
  QStringList dealSubjects;
  QStringList notes; // with %1 first name, %2 subject, %3 city, %4 company
};

// The countries of the demo, with the share of companies each has, in
// percent (they add up to 100).
struct CountryShare {
  const CountryWords *words;
  int percent;
};
const std::vector<CountryShare> &demoCountries();

// The coworkers: name, login and whether they sell (sales users have the
// right to change sales reports).
struct DemoCoworker {
  QString name;
  QString login;
  bool sales;
};
const std::vector<DemoCoworker> &demoCoworkers();

// Products: name and price.
struct DemoProduct {
  QString name;
  double price;
};
const std::vector<DemoProduct> &demoProducts();

// A female form of a last name where the language has one.
QString femaleLastName(const CountryWords &words, const QString &lastName);
// A name in plain ASCII letters for addresses: "Söderström" gives
// "soderstrom".
QString asciiSlug(const QString &text);

} // namespace kordel::nuvo::demo
