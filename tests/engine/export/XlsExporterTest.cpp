// Workbooks written from pages and read back: the compound document and
// its records with a reader of our own, and, where a spreadsheet program
// is installed, the values it sees after converting the file to CSV.

#include "support/XlsReader.h"

#include "engine/export/XlsExporter.h"
#include "engine/export/XlsExporterObject.h"
#include "engine/export/xls/XlsxWorkbook.h"
#include "engine/render/PagesObject.h"

#include "support/ErrorCapture.h"
#include "support/TempDir.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cmath>

using namespace kordel;
using namespace kordel::engine;
using kordel::test::ReadCell;
using kordel::test::ReadWorkbook;
using kordel::test::TempDir;

namespace {

constexpr Twips kA4Short = 11906;
constexpr Twips kA4Long = 16838;

// The columns' left edges on the pages.
constexpr Twips kNameX = 1440;
constexpr Twips kCityX = 4000;
constexpr Twips kAmountX = 7000;
constexpr Twips kNoteX = 9000;

QString longText(int number, int length) {
  // One-byte and UTF-16 characters mixed, so that both kinds get split.
  const QString pattern = number % 2 ? QStringLiteral("Příliš žluťoučký kůň úpěl ďábelské ódy. ")
                                     : QStringLiteral("Smörgåsbord på Öland, café crème. ");
  QString text = QStringLiteral("Note %1: ").arg(number);
  while (text.size() < length)
    text += pattern;
  return text.left(length);
}

struct Row {
  QString name;
  QString city;
  QString amount;
  QString note;
};

// A customer list of two pages: a title and a header line on each page,
// the list, and a page footer. The amounts stand in right-aligned boxes
// whose left edges and tops wander a little, as measured texts do.
class ListDocument {
public:
  static constexpr int kFirstPageRows = 5;
  static constexpr int kSecondPageRows = 30;
  // Title, header, list, footer.
  static constexpr int kFirstPageLines = kFirstPageRows + 3;

  ListDocument() {
    PageFont titleFont;
    titleFont.bold = true;
    titleFont.pointSize = 14;
    title_ = document.internFont(titleFont);
    body_ = document.internFont(PageFont{});
    PageFont footerFont;
    footerFont.italic = true;
    footerFont.underline = true;
    footer_ = document.internFont(footerFont);

    firstRows = {
        {QStringLiteral("Åsa Öberg"), QStringLiteral("Malmö"), QStringLiteral("1,234.50"),
         QStringLiteral("+46 40 123")},
        {QStringLiteral("Žluťoučký kůň"), QStringLiteral("Brno"), QStringLiteral("-3"), QStringLiteral("=SUM(A1)")},
        {QStringLiteral("Ελληνικά"), QStringLiteral("Αθήνα"), QStringLiteral("-3.5"), QStringLiteral("2024-03-05")},
        {QStringLiteral("Long note"), QStringLiteral("Oslo"), QStringLiteral("42"), longText(0, 300)},
        {QStringLiteral("Zeros"), QStringLiteral("Lund"), QStringLiteral("007"), QStringLiteral("@home")},
    };
    for (int i = 0; i < kSecondPageRows; ++i)
      secondRows.push_back({QStringLiteral("Customer %1").arg(i + 1), QStringLiteral("Praha"),
                            QStringLiteral("%1.25").arg(1000 * (i + 1)), longText(i + 1, 280)});
    addPage(firstRows, 1);
    addPage(secondRows, 2);
  }

  PageDocument document;
  std::vector<Row> firstRows;
  std::vector<Row> secondRows;

private:
  void addPage(const std::vector<Row> &rows, int number) {
    Page page(kA4Short, kA4Long);
    page.addText({kNameX, 500, 6000, 400}, QStringLiteral("Customer list"), title_);
    page.addText({kNameX, 1000, 2400, 280}, QStringLiteral("Name"), body_);
    page.addText({kCityX, 1000, 2400, 280}, QStringLiteral("City"), body_);
    page.addText({kAmountX, 1000, 1800, 280}, QStringLiteral("Amount"), body_, kBlack, TextAlign::Right);
    page.addText({kNoteX, 1000, 2500, 280}, QStringLiteral("Note"), body_);
    for (int i = 0; i < int(rows.size()); ++i) {
      const Twips y = 1300 + i * 300;
      page.addText({kNameX, y, 2400, 280}, rows[i].name, body_);
      page.addText({kCityX + 10, y + 5, 2400, 280}, rows[i].city, body_);
      page.addText({kAmountX + (i % 3) * 20, y + (i % 2) * 25, 1800, 280}, rows[i].amount, body_, kBlack,
                   TextAlign::Right);
      page.addText({kNoteX, y, 2500, 280}, rows[i].note, body_);
    }
    page.addText({kNoteX, 16000, 2500, 280}, QStringLiteral("Page %1 of 2").arg(number), footer_, kBlack,
                 TextAlign::Center);
    document.append(page);
  }

  int title_ = 0;
  int body_ = 0;
  int footer_ = 0;
};

class XlsExport : public ::testing::Test {
protected:
  ReadWorkbook exportAndRead(const PageDocument &document, const QString &name = QStringLiteral("report.xls")) {
    const QString path = dir_.file(name);
    XlsExporter().exportDocument(document, path);
    QString error;
    const auto book = test::readWorkbook(path, &error);
    if (!book) {
      ADD_FAILURE() << "cannot read " << path.toStdString() << ": " << error.toStdString();
      return {};
    }
    return *book;
  }

  static QString textAt(const ReadWorkbook &book, int row, int column) {
    const ReadCell *cell = book.cell(row, column);
    if (!cell)
      return QStringLiteral("<no cell>");
    return cell->isNumber ? QStringLiteral("<number %1>").arg(cell->number) : cell->text;
  }

  TempDir dir_;
};

TEST_F(XlsExport, WritesACompoundDocumentWithAWorkbookStreamOfBiff8Records) {
  const QString path = dir_.file(QStringLiteral("report.xls"));
  XlsExporter().exportDocument(ListDocument().document, path);

  const QByteArray file = test::readFile(path);
  ASSERT_TRUE(file.startsWith(QByteArray::fromHex("D0CF11E0A1B11AE1")));
  QString error;
  const auto stream = test::compoundStream(file, QStringLiteral("Workbook"), &error);
  ASSERT_TRUE(stream) << error.toStdString();

  const auto globals = test::substreamRecords(*stream, 0);
  ASSERT_GE(globals.size(), 2u);
  EXPECT_EQ(globals.front().type, 0x0809);
  EXPECT_EQ(globals.front().payload.left(4), QByteArray::fromHex("00060500")); // BIFF8, workbook globals
  EXPECT_EQ(globals.back().type, 0x000A);

  QString readError;
  const auto book = test::readWorkbook(path, &readError);
  ASSERT_TRUE(book) << readError.toStdString();
  ASSERT_FALSE(book->sheet.empty());
  EXPECT_EQ(book->sheet.front().type, 0x0809);
  EXPECT_EQ(book->sheet.front().payload.left(4), QByteArray::fromHex("00061000")); // BIFF8, worksheet
  EXPECT_EQ(book->sheet.back().type, 0x000A);
  for (const auto *records : {&book->globals, &book->sheet}) {
    for (const test::BiffRecord &record : *records)
      EXPECT_LE(record.payload.size(), 8224) << "record " << record.type;
  }
}

TEST_F(XlsExport, SmallWorkbookIsPaddedOutOfTheMiniStream) {
  PageDocument document;
  Page page(kA4Short, kA4Long);
  page.addText({1440, 1440, 2000, 280}, QStringLiteral("Only"), document.internFont(PageFont{}));
  document.append(page);
  const ReadWorkbook book = exportAndRead(document); // the reader refuses streams under 4096 bytes
  EXPECT_EQ(textAt(book, 0, 0), QStringLiteral("Only"));
  EXPECT_EQ(book.cells.size(), 1u);
}

TEST_F(XlsExport, CellsStandInTheRowsAndColumnsOfTheirPlacesOnThePages) {
  const ListDocument list;
  const ReadWorkbook book = exportAndRead(list.document);

  // Page 1 fills rows 0 to 7, page 2 follows at row 8, each with its own
  // title, header and footer.
  for (const int top : {0, ListDocument::kFirstPageLines}) {
    EXPECT_EQ(textAt(book, top, 0), QStringLiteral("Customer list"));
    EXPECT_EQ(textAt(book, top + 1, 0), QStringLiteral("Name"));
    EXPECT_EQ(textAt(book, top + 1, 1), QStringLiteral("City"));
    EXPECT_EQ(textAt(book, top + 1, 2), QStringLiteral("Amount"));
    EXPECT_EQ(textAt(book, top + 1, 3), QStringLiteral("Note"));
  }
  EXPECT_EQ(textAt(book, ListDocument::kFirstPageLines - 1, 3), QStringLiteral("Page 1 of 2"));
  const int secondFooter = ListDocument::kFirstPageLines + ListDocument::kSecondPageRows + 2;
  EXPECT_EQ(textAt(book, secondFooter, 3), QStringLiteral("Page 2 of 2"));

  for (int i = 0; i < ListDocument::kFirstPageRows; ++i) {
    EXPECT_EQ(textAt(book, 2 + i, 0), list.firstRows[i].name);
    EXPECT_EQ(textAt(book, 2 + i, 1), list.firstRows[i].city);
  }
  for (int i = 0; i < ListDocument::kSecondPageRows; ++i) {
    const int row = ListDocument::kFirstPageLines + 2 + i;
    EXPECT_EQ(textAt(book, row, 0), list.secondRows[i].name);
    EXPECT_EQ(textAt(book, row, 3), list.secondRows[i].note);
    const ReadCell *amount = book.cell(row, 2);
    ASSERT_TRUE(amount && amount->isNumber) << "row " << row;
    EXPECT_DOUBLE_EQ(amount->number, 1000.0 * (i + 1) + 0.25);
  }
  // Nothing beyond the four columns and the last footer.
  EXPECT_EQ(book.cells.rbegin()->first.first, secondFooter);
  for (const auto &[place, cell] : book.cells)
    EXPECT_LT(place.second, 4) << cell.text.toStdString();

  // Columns are as wide as the gaps between their edges.
  ASSERT_EQ(book.columnWidths.size(), 4u);
  EXPECT_LT(book.columnWidths.at(0), book.columnWidths.at(1));
  EXPECT_GT(book.columnWidths.at(1), book.columnWidths.at(2));
}

TEST_F(XlsExport, PlainNumbersBecomeNumbersAndEverythingElseStaysText) {
  const ReadWorkbook book = exportAndRead(ListDocument().document);
  auto number = [&](int row, int column) {
    const ReadCell *cell = book.cell(row, column);
    EXPECT_TRUE(cell && cell->isNumber) << textAt(book, row, column).toStdString();
    return cell && cell->isNumber ? cell->number : std::nan("");
  };
  EXPECT_DOUBLE_EQ(number(2, 2), 1234.5);
  EXPECT_DOUBLE_EQ(number(3, 2), -3);
  EXPECT_DOUBLE_EQ(number(4, 2), -3.5);
  EXPECT_DOUBLE_EQ(number(5, 2), 42);

  EXPECT_EQ(textAt(book, 2, 3), QStringLiteral("+46 40 123"));
  EXPECT_EQ(textAt(book, 3, 3), QStringLiteral("=SUM(A1)"));
  EXPECT_EQ(textAt(book, 4, 3), QStringLiteral("2024-03-05"));
  EXPECT_EQ(textAt(book, 6, 2), QStringLiteral("007"));
  EXPECT_EQ(textAt(book, 6, 3), QStringLiteral("@home"));
}

TEST_F(XlsExport, FontsAndAlignmentsReachTheCells) {
  const ReadWorkbook book = exportAndRead(ListDocument().document);
  const ReadCell *title = book.cell(0, 0);
  ASSERT_TRUE(title);
  EXPECT_TRUE(title->font.bold);
  EXPECT_FALSE(title->font.italic);
  EXPECT_EQ(title->font.height, 14 * 20);
  EXPECT_EQ(title->font.name, QStringLiteral("DejaVu Sans"));

  const ReadCell *name = book.cell(2, 0);
  ASSERT_TRUE(name);
  EXPECT_FALSE(name->font.bold);
  EXPECT_EQ(name->font.height, 200);
  EXPECT_EQ(name->horizontalAlignment, 1);

  const ReadCell *amount = book.cell(2, 2);
  ASSERT_TRUE(amount);
  EXPECT_EQ(amount->horizontalAlignment, 3);

  const ReadCell *footer = book.cell(ListDocument::kFirstPageLines - 1, 3);
  ASSERT_TRUE(footer);
  EXPECT_TRUE(footer->font.italic);
  EXPECT_TRUE(footer->font.underline);
  EXPECT_FALSE(footer->font.bold);
  EXPECT_EQ(footer->horizontalAlignment, 2);
}

TEST_F(XlsExport, ManyLongStringsSurviveTheSplitIntoContinueRecords) {
  const ListDocument list;
  ReadWorkbook book = exportAndRead(list.document);
  EXPECT_GE(book.sstContinueRecords, 1);
  EXPECT_EQ(textAt(book, 5, 3), list.firstRows[3].note);
  EXPECT_GT(list.firstRows[3].note.size(), 255);

  // Hundreds of strings of every length around the record size, some in
  // one-byte characters and some in UTF-16.
  PageDocument document;
  const int font = document.internFont(PageFont{});
  QStringList texts;
  for (int p = 0; p < 6; ++p) {
    Page page(kA4Short, kA4Long);
    for (int line = 0; line < 50; ++line) {
      const int number = p * 50 + line;
      const QString text = longText(number, 200 + number * 7 % 900);
      page.addText({1440, 600 + line * 300, 9000, 280}, text, font);
      texts.append(text);
    }
    document.append(page);
  }
  book = exportAndRead(document, QStringLiteral("strings.xls"));
  EXPECT_GE(book.sstContinueRecords, 20);
  ASSERT_EQ(book.cells.size(), std::size_t(texts.size()));
  for (int i = 0; i < texts.size(); ++i)
    ASSERT_EQ(textAt(book, i, 0), texts[i]) << "row " << i;
}

TEST_F(XlsExport, WorkbookOfMegabytesListsItsFatSectorsBeyondTheHeader) {
  // About 9 MB of text needs more FAT sectors than the header lists.
  PageDocument document;
  const int font = document.internFont(PageFont{});
  QString last;
  for (int p = 0; p < 120; ++p) {
    Page page(kA4Short, kA4Long);
    for (int line = 0; line < 50; ++line) {
      last = QStringLiteral("%1 ").arg(p * 50 + line) + QString(1500, QLatin1Char('x'));
      page.addText({1440, 600 + line * 300, 9000, 280}, last, font);
    }
    document.append(page);
  }
  const QString path = dir_.file(QStringLiteral("large.xls"));
  XlsExporter().exportDocument(document, path);
  const QByteArray file = test::readFile(path);
  EXPECT_GT(file.size(), 109 * 128 * 512);
  EXPECT_GE(qFromLittleEndian<quint32>(file.constData() + 72), 1u); // DIFAT sectors

  QString error;
  const auto book = test::readWorkbook(path, &error);
  ASSERT_TRUE(book) << error.toStdString();
  EXPECT_EQ(book->cells.size(), 6000u);
  EXPECT_EQ(textAt(*book, 5999, 0), last);
}

TEST_F(XlsExport, PagesBeyondAWorksheetRaiseFiveAndLeaveTheEarlierFile) {
  const QString path = dir_.file(QStringLiteral("report.xls"));
  XlsExporter().exportDocument(ListDocument().document, path);
  const QByteArray earlier = test::readFile(path);

  PageDocument wide;
  const int font = wide.internFont(PageFont{});
  Page page(kA4Short * 4, kA4Long);
  for (int column = 0; column < 257; ++column)
    page.addText({column * 100, 1440, 90, 280}, QStringLiteral("c"), font);
  wide.append(page);
  Error error = test::errorOf([&] { XlsExporter().exportDocument(wide, path); });
  EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(error.description().contains(QStringLiteral("256 columns"))) << error.description().toStdString();

  PageDocument tall;
  const int tallFont = tall.internFont(PageFont{});
  for (int p = 0; p < 66; ++p) {
    Page longPage(kA4Short, 1000 * 40 + 1440);
    for (int line = 0; line < 1000; ++line)
      longPage.addText({1440, line * 40, 2000, 30}, QStringLiteral("r"), tallFont);
    tall.append(longPage);
  }
  error = test::errorOf([&] { XlsExporter().exportDocument(tall, path); });
  EXPECT_EQ(error.number(), ErrorNumber::InvalidCall);
  EXPECT_TRUE(error.description().contains(QStringLiteral("65536"))) << error.description().toStdString();

  EXPECT_EQ(test::readFile(path), earlier);
  EXPECT_EQ(QDir(dir_.path()).entryList(QDir::Files), QStringList{QStringLiteral("report.xls")});
}

TEST_F(XlsExport, BadTargetsAndEmptyDocumentsRaiseErrorsAndWriteNothing) {
  const ListDocument list;
  const QString missing = dir_.file(QStringLiteral("missing/report.xls"));
  EXPECT_EQ(test::errorNumber([&] { XlsExporter().exportDocument(list.document, missing); }),
            ErrorNumber::PathNotFound);
  EXPECT_FALSE(QFileInfo::exists(dir_.file(QStringLiteral("missing"))));

  ASSERT_TRUE(QDir(dir_.path()).mkdir(QStringLiteral("folder.xls")));
  EXPECT_EQ(
      test::errorNumber([&] { XlsExporter().exportDocument(list.document, dir_.file(QStringLiteral("folder.xls"))); }),
      ErrorNumber::PermissionDenied);

  const QString path = dir_.file(QStringLiteral("empty.xls"));
  EXPECT_EQ(test::errorNumber([&] { XlsExporter().exportDocument(PageDocument(), path); }), ErrorNumber::InvalidCall);
  EXPECT_FALSE(QFileInfo::exists(path));
}

TEST_F(XlsExport, LateBoundObjectExportsThePagesToItsFileName) {
  ListDocument list;
  auto document = std::make_shared<PageDocument>(std::move(list.document));
  auto exporter = std::make_shared<XlsExporterObject>();
  const QString path = dir_.file(QStringLiteral("late.xls"));
  exporter->set(QStringLiteral("FileName"), Variant(path));
  EXPECT_EQ(exporter->get(QStringLiteral("filename")).toString(), path);
  EXPECT_EQ(exporter->typeName(), QStringLiteral("XlsExport"));

  exporter->invoke(QStringLiteral("Export"), {Variant(std::make_shared<PagesObject>(document))});
  QString error;
  const auto book = test::readWorkbook(path, &error);
  ASSERT_TRUE(book) << error.toStdString();
  EXPECT_EQ(textAt(*book, 0, 0), QStringLiteral("Customer list"));

  EXPECT_EQ(test::errorNumber([&] { exporter->invoke(QStringLiteral("Export"), {Variant(exporter)}); }),
            ErrorNumber::TypeMismatch);
  EXPECT_EQ(test::errorNumber(
                [&] { exporter->invoke(QStringLiteral("Export"), {Variant(std::make_shared<PagesObject>(nullptr))}); }),
            ErrorNumber::InvalidCall);
}

// The workbook as a spreadsheet program reads it, converted by LibreOffice
// to a flat XML spreadsheet: the cells' places, kinds and whole texts.
class XlsExportInSpreadsheet : public XlsExport {
protected:
  void SetUp() override {
    soffice_ = QStandardPaths::findExecutable(QStringLiteral("soffice"));
    if (soffice_.isEmpty())
      GTEST_SKIP() << "soffice is needed to read the workbook back";
  }

  // The converted file, empty when the conversion failed.
  QByteArray convert(const PageDocument &document, const QString &format) {
    const QString path = dir_.file(QStringLiteral("report.xls"));
    XlsExporter().exportDocument(document, path);
    const QString out = dir_.file(QStringLiteral("converted"));
    QDir().mkpath(out);
    QDir().mkpath(dir_.file(QStringLiteral("home")));

    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("HOME"), dir_.file(QStringLiteral("home")));
    process.setProcessEnvironment(environment);
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(soffice_, {QStringLiteral("--headless"), QStringLiteral("--convert-to"), format,
                             QStringLiteral("--outdir"), out, path});
    if (!process.waitForFinished(120000)) {
      process.kill();
      process.waitForFinished();
      ADD_FAILURE() << "soffice did not finish";
      return {};
    }
    const QByteArray converted = test::readFile(out + QStringLiteral("/report.") + format);
    if (converted.isEmpty())
      ADD_FAILURE() << "nothing converted: " << process.readAll().toStdString();
    return converted;
  }

  QString soffice_;
};

TEST_F(XlsExportInSpreadsheet, ValuesArriveWholeInTheirRowsAndColumnsAsNumbersOrText) {
  const ListDocument list;
  const test::FlatSheet sheet = test::parseFlatSheet(convert(list.document, "fods"));
  ASSERT_EQ(int(sheet.rows.size()), ListDocument::kFirstPageLines + ListDocument::kSecondPageRows + 3);
  // A number shows as <number value>, everything else as its text.
  const auto shown = [&](int row, int column) {
    if (row >= int(sheet.rows.size()) || column >= int(sheet.rows[row].size()))
      return QStringLiteral("<none>");
    const test::FlatCell &cell = sheet.rows[row][column];
    return cell.type == QLatin1String("float") ? QStringLiteral("<number %1>").arg(cell.value) : cell.text;
  };

  EXPECT_EQ(shown(0, 0), QStringLiteral("Customer list"));
  EXPECT_EQ(shown(1, 3), QStringLiteral("Note"));
  for (int i = 0; i < ListDocument::kFirstPageRows; ++i) {
    EXPECT_EQ(shown(2 + i, 0), list.firstRows[i].name);
    EXPECT_EQ(shown(2 + i, 1), list.firstRows[i].city);
  }
  EXPECT_EQ(shown(2, 2), QStringLiteral("<number 1234.5>"));
  EXPECT_EQ(shown(2, 3), QStringLiteral("+46 40 123"));
  EXPECT_EQ(shown(3, 2), QStringLiteral("<number -3>"));
  EXPECT_EQ(shown(3, 3), QStringLiteral("=SUM(A1)"));
  EXPECT_EQ(shown(4, 2), QStringLiteral("<number -3.5>"));
  EXPECT_EQ(shown(4, 3), QStringLiteral("2024-03-05"));
  EXPECT_EQ(shown(5, 2), QStringLiteral("<number 42>"));
  EXPECT_EQ(shown(5, 3), list.firstRows[3].note);
  EXPECT_EQ(shown(6, 2), QStringLiteral("007"));
  EXPECT_EQ(shown(6, 3), QStringLiteral("@home"));
  EXPECT_EQ(shown(7, 3), QStringLiteral("Page 1 of 2"));
  for (int i = 0; i < ListDocument::kSecondPageRows; ++i) {
    const int row = ListDocument::kFirstPageLines + 2 + i;
    EXPECT_EQ(shown(row, 0), list.secondRows[i].name);
    EXPECT_EQ(shown(row, 2), QStringLiteral("<number %1>").arg(QString::number(1000 * (i + 1) + 0.25, 'g', 15)));
    EXPECT_EQ(shown(row, 3), list.secondRows[i].note) << "row " << row;
  }
  EXPECT_EQ(shown(int(sheet.rows.size()) - 1, 3), QStringLiteral("Page 2 of 2"));
}

} // namespace

namespace {

// Rows of one number each, as many as asked for, below a heading of one
// frozen row.
class CountingSheet : public xls::SheetContent {
public:
  explicit CountingSheet(int rows) : rows_(rows) {}
  int rowCount() const override { return rows_; }
  const std::vector<Twips> &columnWidths() const override { return widths_; }
  int frozenRows() const override { return 1; }
  int deepestOutlineLevel() const override { return 0; }
  void forEachRow(const std::function<void(const xls::SheetRow &row)> &visit) const override {
    xls::SheetRow row;
    row.height = 300;
    row.cells.resize(1);
    row.cells[0].text = QStringLiteral("Number");
    visit(row);
    row.cells[0].kind = xls::SheetCell::Kind::Number;
    for (int i = 1; i < rows_; ++i) {
      row.cells[0].number = i;
      visit(row);
    }
  }

private:
  int rows_;
  std::vector<Twips> widths_{2000};
};

// The newer format has no limit of its own: rows beyond a worksheet's go on
// to the next worksheet, whose names the archive lists.
TEST(XlsxWorkbook, RowsBeyondAWorksheetGoOnToTheNext) {
  TempDir dir;
  PageDocument document;
  document.internFont(PageFont{});
  const QString path = dir.file(QStringLiteral("long.xlsx"));
  xls::writeXlsxWorkbook(document, CountingSheet(1048576 + 10), path, QStringLiteral("test"));
  const QByteArray archive = test::readFile(path);
  EXPECT_TRUE(archive.contains("xl/worksheets/sheet1.xml"));
  EXPECT_TRUE(archive.contains("xl/worksheets/sheet2.xml"));
  EXPECT_FALSE(archive.contains("xl/worksheets/sheet3.xml"));
}

} // namespace
