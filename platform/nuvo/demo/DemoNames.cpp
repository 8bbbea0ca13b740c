#include "nuvo/demo/DemoNames.h"

namespace kordel::nuvo::demo {

namespace {

QStringList words(std::initializer_list<const char *> list) {
  QStringList result;
  for (const char *word : list)
    result << QString::fromUtf8(word);
  return result;
}

CountryWords sweden() {
  return {
      QStringLiteral("Sweden"),
      QStringLiteral("+46"),
      QStringLiteral("se"),
      words({"Stockholm", "Göteborg",   "Malmö",     "Uppsala",     "Västerås", "Örebro", "Linköping",  "Helsingborg",
             "Jönköping", "Norrköping", "Umeå",      "Luleå",       "Gävle",    "Borås",  "Södertälje", "Växjö",
             "Karlstad",  "Sundsvall",  "Östersund", "Trollhättan", "Skövde",   "Kalmar", "Falun",      "Nyköping"}),
      words({"Björkvik",   "Nordlund",   "Ekholm",    "Sjöviken", "Åkerlund",  "Älvdalen",  "Granström",
             "Lindgården", "Solberga",   "Ängsbacka", "Högberg",  "Fjällgren", "Strömvall", "Västkust",
             "Österlen",   "Bergslagen", "Kvarnby",   "Tallåsen", "Hagström",  "Lövgren",   "Rönnbäck",
             "Dalsjö",     "Norrskog",   "Sävsjö",    "Måsvik",   "Ljungby"}),
      words({"AB", "Konsult AB", "Bygg AB", "Data AB", "& Partners AB", "Handel AB", "Industri AB", "Logistik AB"}),
      words({"Johan", "Lars", "Mikael", "Anders", "Per", "Björn", "Göran", "Örjan", "Håkan", "Nils", "Sören", "Åke",
             "Olof", "Magnus", "Fredrik"}),
      words({"Anna", "Karin", "Eva", "Maria", "Lena", "Kerstin", "Sara", "Emma", "Åsa", "Märta", "Stina", "Ingrid",
             "Sofia", "Linnéa", "Ebba"}),
      words({"Andersson", "Johansson",  "Karlsson",   "Nilsson",   "Eriksson",  "Larsson",  "Olsson",   "Persson",
             "Svensson",  "Gustafsson", "Pettersson", "Jönsson",   "Lindström", "Sjöberg",  "Åberg",    "Öhman",
             "Björk",     "Ekström",    "Nordqvist",  "Hällström", "Sandström", "Holmgren", "Wikström", "Bäckström"}),
      words({"VD", "Inköpschef", "Ekonomichef", "Säljare", "Projektledare", "IT-chef", "Marknadschef", "Kundansvarig",
             "Driftstekniker", "Kontorschef"}),
      words({"Licensavtal", "Supportavtal", "Serveruppgradering", "Utbildning", "Molntjänst", "Konsulttimmar",
             "Nätverksprojekt", "Säkerhetsgranskning"}),
      words({"Ringde %1 om %2. Återkommer nästa vecka.", "Möte med %1 i %3: genomgång av offerten för %2.",
             "Skickade prisförslag på %2 till %1.", "%1 vill ha en demo av %2 på plats i %3.",
             "Besök hos %4, träffade %1. Bra stämning, beslut före månadsskiftet.",
             "Påminnelse: följ upp %2 med %1 på %4."}),
  };
}

CountryWords germany() {
  return {
      QStringLiteral("Germany"),
      QStringLiteral("+49"),
      QStringLiteral("de"),
      words({"Berlin",
             "München",
             "Köln",
             "Düsseldorf",
             "Nürnberg",
             "Lübeck",
             "Münster",
             "Göttingen",
             "Würzburg",
             "Saarbrücken",
             "Frankfurt am Main",
             "Stuttgart",
             "Hamburg",
             "Dresden",
             "Osnabrück",
             "Tübingen",
             "Fürth",
             "Gießen",
             "Lüneburg",
             "Mönchengladbach"}),
      words({"Müller",     "Schäfer",      "Großmann",  "Bräuer",     "Köhler",      "Weißenberg", "Jägermeister",
             "Löwenstein", "Fröhlich",     "Süderland", "Rheinblick", "Alpenglühen", "Nordstern",  "Brückner",
             "Grünwald",   "Eichhörnchen", "Kühne",     "Hoffmann",   "Straßburger", "Bärenstark"}),
      words({"GmbH", "AG", "& Söhne KG", "Handel GmbH", "Maschinenbau GmbH", "Software AG", "Logistik GmbH"}),
      words({"Jürgen", "Günter", "Uwe", "Klaus", "Stefan", "Jörg", "Sören", "Matthias", "Dieter", "Wolfgang", "Lukas",
             "Maximilian", "Björn", "Rüdiger"}),
      words({"Ulrike", "Jutta", "Käthe", "Bärbel", "Anja", "Sabine", "Monika", "Frauke", "Gudrun", "Heike", "Hannah",
             "Lea", "Marlene", "Dörte"}),
      words({"Müller",  "Schmidt", "Schneider", "Fischer", "Weber",  "Meyer", "Wagner",   "Becker",
             "Schäfer", "Koch",    "Bauer",     "Richter", "Klein",  "Wolf",  "Schröder", "Günther",
             "Krüger",  "Weiß",    "Groß",      "Köhler",  "Hübner", "Lößl"}),
      words({"Geschäftsführer", "Einkaufsleiter", "Vertriebsleiter", "IT-Leiter", "Projektleiter", "Buchhalterin",
             "Außendienst", "Prokurist"}),
      words({"Rahmenvertrag Wartung", "Lizenzverlängerung", "Schulungspaket", "Serverumzug", "Cloud-Migration",
             "Beratungstage", "Datenschutzprüfung"}),
      words({"Telefonat mit %1 über %2, Rückruf nächste Woche.",
             "Besuch bei %4 in %3, Termin für Angebot %2 vereinbart.", "%1 wünscht ein überarbeitetes Angebot für %2.",
             "Präsentation von %2 bei %4 in %3, sehr gutes Feedback.", "Rückfrage von %1 zur Lieferzeit für %2."}),
  };
}

CountryWords czechia() {
  return {
      QStringLiteral("Czech Republic"),
      QStringLiteral("+420"),
      QStringLiteral("cz"),
      words({"Praha", "Brno", "Ostrava", "Plzeň", "Liberec", "Olomouc", "České Budějovice", "Hradec Králové",
             "Ústí nad Labem", "Pardubice", "Zlín", "Jihlava", "Karlovy Vary", "Třebíč", "Kolín", "Příbram"}),
      words({"Dvořák", "Černý", "Růžička", "Květoslav", "Šťastný", "Želva", "Řeka", "Hrad", "Třešeň", "Kůň", "Lípa",
             "Vltava", "Moravan", "Sokol", "Beskydy", "Šumava", "Krkonoše"}),
      words({"s.r.o.", "a.s.", "Stavby s.r.o.", "Obchod s.r.o.", "Strojírny a.s.", "Software s.r.o."}),
      words({"Jiří", "Tomáš", "Petr", "Jan", "Lukáš", "Ondřej", "Martin", "Miroslav", "Zdeněk", "Václav", "Radek",
             "Přemysl"}),
      words({"Eva", "Jana", "Lucie", "Tereza", "Kateřina", "Zuzana", "Markéta", "Božena", "Růžena", "Věra", "Dagmar",
             "Alžběta"}),
      words({"Novák",   "Svoboda", "Novotný", "Dvořák",  "Černý",    "Procházka", "Kučera",
             "Veselý",  "Horák",   "Němec",   "Pokorný", "Marek",    "Pospíšil",  "Hájek",
             "Jelínek", "Růžička", "Beneš",   "Fiala",   "Sedláček", "Doležal"}),
      words({"Ředitel", "Obchodní zástupce", "Vedoucí nákupu", "Projektový manažer", "Účetní", "Technik", "Jednatel"}),
      words({"Dodávka serverů", "Servisní smlouva", "Školení obsluhy", "Licence na rok", "Migrace dat",
             "Bezpečnostní audit"}),
      words({"Telefonát s %1 ohledně %2, ozve se příští týden.", "Schůzka s %1 v %3: nabídka na %2.",
             "Návštěva u %4, %1 chce upravit cenu za %2.", "Poslali jsme %1 podklady k %2."}),
  };
}

CountryWords britain() {
  return {
      QStringLiteral("United Kingdom"),
      QStringLiteral("+44"),
      QStringLiteral("co.uk"),
      words({"London", "Manchester", "Leeds", "Bristol", "Edinburgh", "Glasgow", "Cardiff", "York", "Oxford",
             "Cambridge", "Brighton", "Belfast"}),
      words({"Ashford", "Blackwood", "Carrington", "Dunmore", "Elmsworth", "Fairfax", "Greystone", "Hartley",
             "Kingsbridge", "Oakfield", "Redmond", "Whitmore"}),
      words({"Ltd", "plc", "Consulting Ltd", "Engineering Ltd", "& Co"}),
      words({"James", "Oliver", "Thomas", "William", "Harry", "George", "Jack"}),
      words({"Emily", "Sophie", "Charlotte", "Amelia", "Olivia", "Grace", "Chloé"}),
      words({"Smith", "Jones", "Taylor", "Brown", "Wilson", "Evans", "Thomas", "Roberts", "Walker", "O'Brien"}),
      words({"Managing Director", "Purchasing Manager", "Account Manager", "IT Manager", "Project Manager",
             "Finance Director"}),
      words({"Support renewal", "Licence upgrade", "Training days", "Hosting contract", "Data migration"}),
      words({"Called %1 about %2, will follow up next week.", "Met %1 in %3 to go through the %2 proposal.",
             "%1 asked for a revised quote on %2.", "Visited %4; %1 wants a decision on %2 before the quarter ends."}),
  };
}

CountryWords norway() {
  return {
      QStringLiteral("Norway"),
      QStringLiteral("+47"),
      QStringLiteral("no"),
      words({"Oslo", "Bergen", "Trondheim", "Stavanger", "Tromsø", "Kristiansand", "Drammen", "Fredrikstad", "Bodø",
             "Ålesund"}),
      words({"Fjordhavn", "Nordlys", "Bjørkeli", "Vestkyst", "Solstrand", "Fjellheim", "Havbris", "Skogsrud"}),
      words({"AS", "ASA", "Konsult AS", "Bygg AS"}),
      words({"Øystein", "Bjørn", "Håvard", "Ola", "Knut", "Sindre"}),
      words({"Solveig", "Kari", "Ingrid", "Ragnhild", "Åse", "Tuva"}),
      words({"Hansen", "Johansen", "Olsen", "Larsen", "Berg", "Haugen", "Dahl", "Bakken", "Strøm", "Lie", "Sæther",
             "Løvås"}),
      words({"Daglig leder", "Innkjøpssjef", "Økonomisjef", "Selger", "Prosjektleder"}),
      words({"Lisensavtale", "Supportavtale", "Opplæring", "Skytjeneste"}),
      words({"Ringte %1 om %2, følger opp neste uke.", "Møte med %1 i %3 om %2.",
             "Besøk hos %4, %1 vil ha tilbud på %2."}),
  };
}

} // namespace

const std::vector<CountryShare> &demoCountries() {
  static const CountryWords se = sweden(), de = germany(), cz = czechia(), uk = britain(), no = norway();
  static const std::vector<CountryShare> shares{{&se, 40}, {&de, 25}, {&cz, 15}, {&uk, 10}, {&no, 10}};
  return shares;
}

const std::vector<DemoCoworker> &demoCoworkers() {
  static const std::vector<DemoCoworker> coworkers{
      {QStringLiteral("Anna Lindqvist"), QStringLiteral("anna"), false},
      {QString::fromUtf8("Erik Söderström"), QStringLiteral("erik"), true},
      {QString::fromUtf8("Jürgen Weiß"), QStringLiteral("jurgen"), false},
      {QString::fromUtf8("Petra Nováková"), QStringLiteral("petra"), false},
      {QString::fromUtf8("Lars Åkesson"), QStringLiteral("lars"), true},
      {QString::fromUtf8("Klára Dvořáková"), QStringLiteral("klara"), false},
      {QString::fromUtf8("Mats Öberg"), QStringLiteral("mats"), true},
      {QString::fromUtf8("Sabine Müller"), QStringLiteral("sabine"), true},
      {QString::fromUtf8("Tomáš Černý"), QStringLiteral("tomas"), false},
      {QString::fromUtf8("Ingrid Håkansson"), QStringLiteral("ingrid"), false},
  };
  return coworkers;
}

const std::vector<DemoProduct> &demoProducts() {
  static const std::vector<DemoProduct> products{
      {QStringLiteral("Licence Standard"), 4900},        {QStringLiteral("Licence Premium"), 12900},
      {QStringLiteral("Support Silver"), 2400},          {QStringLiteral("Support Gold"), 6800},
      {QString::fromUtf8("Utbildning, heldag"), 8500},   {QStringLiteral("Schulung vor Ort"), 9200},
      {QString::fromUtf8("Školení online"), 3100},       {QStringLiteral("Server Small"), 18500},
      {QStringLiteral("Server Large"), 54000},           {QStringLiteral("Backup Service"), 990},
      {QString::fromUtf8("Konsulttimme"), 1250},         {QStringLiteral("Beratungstag"), 9600},
      {QStringLiteral("Cloud Storage 1 TB"), 450},       {QStringLiteral("Cloud Storage 10 TB"), 3900},
      {QString::fromUtf8("Säkerhetsgranskning"), 38000}, {QStringLiteral("Migration Package"), 27500},
      {QStringLiteral("Mobile App Module"), 15800},      {QString::fromUtf8("Rapportmodul"), 7300},
      {QStringLiteral("Integration API"), 11200},        {QString::fromUtf8("Údržba systému"), 5400},
  };
  return products;
}

QString femaleLastName(const CountryWords &words, const QString &lastName) {
  if (words.country != QLatin1String("Czech Republic"))
    return lastName;
  if (lastName.endsWith(u'ý'))
    return lastName.chopped(1) + u'á';
  if (lastName.endsWith(QLatin1String("ek")))
    return lastName.chopped(2) + QStringLiteral("ková");
  if (lastName.endsWith(u'a'))
    return lastName.chopped(1) + QStringLiteral("ová");
  return lastName + QStringLiteral("ová");
}

QString asciiSlug(const QString &text) {
  QString slug;
  for (const QChar c : text.normalized(QString::NormalizationForm_D).toLower()) {
    if (c == u'ß')
      slug += QStringLiteral("ss");
    else if (c == u'ø')
      slug += u'o';
    else if (c == u'æ')
      slug += QStringLiteral("ae");
    else if ((c >= u'a' && c <= u'z') || (c >= u'0' && c <= u'9'))
      slug += c;
  }
  return slug;
}

} // namespace kordel::nuvo::demo
