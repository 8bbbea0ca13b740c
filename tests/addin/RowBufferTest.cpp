#include "support/QtPrinters.h"

#include "data/RowBuffer.h"
#include "support/ErrorCapture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

using namespace kordel;
using namespace kordel::addin;
using kordel::test::errorNumber;
using kordel::test::errorOf;

namespace {

// A buffer with a text key of 64, a parent id and an id, the shape the
// record cursor gives its buffers.
void openKeyed(RowBuffer &buffer) {
  buffer.AppendField("key", ColumnType::VarChar, 64);
  buffer.AppendField("company.idcompany", ColumnType::BigInt, 0);
  buffer.AppendField("id", ColumnType::BigInt, 0);
  buffer.Open();
}

void addRow(RowBuffer &buffer, const Variant &key, const Variant &parent, int id) {
  buffer.AddNew();
  buffer.SetValue("key", key);
  buffer.SetValue("company.idcompany", parent);
  buffer.SetValue("id", id);
  buffer.Update();
}

// The value of a column on every row of the view, first to last, as text
// ("<null>" for Null). Leaves the buffer at EOF.
QStringList walk(RowBuffer &buffer, const QString &column) {
  QStringList values;
  if (buffer.RecordCount() == 0)
    return values;
  buffer.MoveFirst();
  while (!buffer.EOF()) {
    const Variant value = buffer.Value(column);
    values << (value.isNull() ? QStringLiteral("<null>") : value.toString());
    buffer.MoveNext();
  }
  return values;
}

QStringList ids(RowBuffer &buffer) { return walk(buffer, "id"); }

// A 64-bit type check and value in one, for the integer column.
void expectLong(const Variant &value, int expected) {
  ASSERT_EQ(value.type(), Variant::Type::Long);
  EXPECT_EQ(value.rawLong(), expected);
}

} // namespace

TEST(RowBufferColumns, AreNamedWithoutCaseAndFixedAtOpen) {
  RowBuffer buffer;
  buffer.AppendField("Company.IdCompany", ColumnType::BigInt, 0);
  buffer.AppendField("name", ColumnType::VarChar, 10);
  EXPECT_EQ(buffer.ColumnIndex("company.idcompany"), 0);
  EXPECT_EQ(buffer.ColumnIndex("NAME"), 1);
  EXPECT_EQ(errorNumber([&] { buffer.AppendField("COMPANY.idcompany", ColumnType::Double, 0); }),
            ErrorNumber::AlreadyInCollection);
  EXPECT_EQ(errorNumber([&] { buffer.AppendField(" ", ColumnType::Double, 0); }), ErrorNumber::BadArguments);
  EXPECT_EQ(errorNumber([&] { buffer.AppendField("date", ColumnType(7), 0); }), ErrorNumber::BadArguments);
  EXPECT_EQ(errorNumber([&] { buffer.AppendField("size", ColumnType::VarChar, -1); }), ErrorNumber::BadArguments);
  const Error unknown = errorOf([&] { buffer.ColumnIndex("company"); });
  EXPECT_EQ(unknown.number(), ErrorNumber::ItemNotFound);
  EXPECT_TRUE(unknown.description().contains("company"));

  // Nothing but columns before Open.
  EXPECT_EQ(errorNumber([&] { buffer.AddNew(); }), ErrorNumber::NotAllowedInContext);
  EXPECT_EQ(errorNumber([&] { buffer.EOF(); }), ErrorNumber::NotAllowedInContext);
  EXPECT_EQ(errorNumber([&] { buffer.SetSort("[name]"); }), ErrorNumber::NotAllowedInContext);

  buffer.Open();
  EXPECT_EQ(errorNumber([&] { buffer.Open(); }), ErrorNumber::NotAllowedInContext);
  EXPECT_EQ(errorNumber([&] { buffer.AppendField("late", ColumnType::Double, 0); }), ErrorNumber::NotAllowedInContext);
  buffer.AddNew();
  EXPECT_EQ(errorNumber([&] { buffer.Value("late"); }), ErrorNumber::ItemNotFound);
  EXPECT_EQ(errorNumber([&] { buffer.Value(2); }), ErrorNumber::ItemNotFound);
  EXPECT_EQ(errorNumber([&] { buffer.SetValue(-1, 1); }), ErrorNumber::ItemNotFound);

  RowBuffer empty;
  EXPECT_EQ(errorNumber([&] { empty.Open(); }), ErrorNumber::NotAllowedInContext);
}

TEST(RowBufferPosition, EmptyBufferIsAtBothEnds) {
  RowBuffer buffer;
  openKeyed(buffer);
  EXPECT_EQ(buffer.RecordCount(), 0);
  EXPECT_TRUE(buffer.BOF());
  EXPECT_TRUE(buffer.EOF());
  for (const auto &move : {&RowBuffer::MoveFirst, &RowBuffer::MoveLast, &RowBuffer::MoveNext, &RowBuffer::MovePrevious})
    EXPECT_EQ(errorNumber([&] { (buffer.*move)(); }), ErrorNumber::NoCurrentRow);
  EXPECT_EQ(errorNumber([&] { buffer.Value("id"); }), ErrorNumber::NoCurrentRow);
  EXPECT_EQ(errorNumber([&] { buffer.SetValue("id", 1); }), ErrorNumber::NoCurrentRow);
  buffer.SetSort("[key]");
  buffer.SetFilter("[id] = 1");
  EXPECT_TRUE(buffer.BOF());
  EXPECT_TRUE(buffer.EOF());
}

TEST(RowBufferPosition, MovesToEachEndAndNoFurther) {
  RowBuffer buffer;
  openKeyed(buffer);
  for (int id = 1; id <= 3; ++id)
    addRow(buffer, "k", 0, id);
  EXPECT_EQ(buffer.RecordCount(), 3);
  expectLong(buffer.Value("id"), 3); // AddNew leaves the new row current

  buffer.MoveFirst();
  expectLong(buffer.Value("id"), 1);
  buffer.MoveNext();
  buffer.MoveNext();
  expectLong(buffer.Value("id"), 3);
  EXPECT_FALSE(buffer.EOF());
  buffer.MoveNext();
  EXPECT_TRUE(buffer.EOF());
  EXPECT_FALSE(buffer.BOF());
  EXPECT_EQ(errorNumber([&] { buffer.Value("id"); }), ErrorNumber::NoCurrentRow);
  EXPECT_EQ(errorNumber([&] { buffer.SetValue("id", 9); }), ErrorNumber::NoCurrentRow);
  EXPECT_EQ(errorNumber([&] { buffer.MoveNext(); }), ErrorNumber::NoCurrentRow);
  buffer.MovePrevious();
  expectLong(buffer.Value("id"), 3);

  buffer.MoveFirst();
  buffer.MovePrevious();
  EXPECT_TRUE(buffer.BOF());
  EXPECT_FALSE(buffer.EOF());
  EXPECT_EQ(errorNumber([&] { buffer.Value(2); }), ErrorNumber::NoCurrentRow);
  EXPECT_EQ(errorNumber([&] { buffer.MovePrevious(); }), ErrorNumber::NoCurrentRow);
  buffer.MoveNext();
  expectLong(buffer.Value("id"), 1);
  buffer.MoveLast();
  expectLong(buffer.Value("id"), 3);
}

TEST(RowBufferPosition, AddNewKeepsAnEarlierRowThatWasNotUpdated) {
  RowBuffer buffer;
  openKeyed(buffer);
  buffer.AddNew();
  buffer.SetValue("id", 1);
  EXPECT_TRUE(buffer.Editing());
  buffer.AddNew();
  EXPECT_TRUE(buffer.Value("id").isNull());
  buffer.SetValue("id", 2);
  buffer.Update();
  EXPECT_FALSE(buffer.Editing());
  EXPECT_EQ(ids(buffer), QStringList({"1", "2"}));
}

TEST(RowBufferValues, AreStoredByColumnType) {
  RowBuffer buffer;
  buffer.AppendField("text", ColumnType::VarChar, 64);
  buffer.AppendField("big", ColumnType::BigInt, 0);
  buffer.AppendField("real", ColumnType::Double, 0);
  buffer.AppendField("short", ColumnType::VarChar, 3);
  buffer.Open();
  buffer.AddNew();
  for (int column = 0; column < 4; ++column)
    EXPECT_TRUE(buffer.Value(column).isNull());

  const QString seventy = QString(60, u'x') + QStringLiteral("0123456789");
  buffer.SetValue("text", seventy);
  EXPECT_EQ(buffer.Value("text").type(), Variant::Type::String);
  EXPECT_EQ(buffer.Value("text").rawString(), seventy.left(64));
  buffer.SetValue("short", QStringLiteral("a\U0001F600")); // a surrogate pair would be split at 3
  EXPECT_EQ(buffer.Value("short").rawString(), QStringLiteral("a\U0001F600"));
  buffer.SetValue("short", QStringLiteral("ab\U0001F600"));
  EXPECT_EQ(buffer.Value("short").rawString(), "ab");
  buffer.SetValue("short", QString());
  EXPECT_EQ(buffer.Value("short").type(), Variant::Type::String);

  buffer.SetValue("big", 2147483647);
  expectLong(buffer.Value("big"), 2147483647);
  buffer.SetValue("big", 6000000000.0);
  EXPECT_EQ(buffer.Value("big").type(), Variant::Type::Double);
  EXPECT_EQ(buffer.Value("big").rawDouble(), 6000000000.0);
  buffer.SetValue("big", -6000000001.0);
  EXPECT_EQ(buffer.Value("big").rawDouble(), -6000000001.0);

  buffer.SetValue("real", 2.25);
  EXPECT_EQ(buffer.Value("real").type(), Variant::Type::Double);
  EXPECT_EQ(buffer.Value("real").rawDouble(), 2.25);

  buffer.SetValue("real", Variant::null());
  EXPECT_TRUE(buffer.Value("real").isNull());
  buffer.SetValue("text", Variant::null());
  EXPECT_TRUE(buffer.Value("text").isNull());
}

TEST(RowBufferValues, AreConvertedByVbRules) {
  RowBuffer buffer;
  buffer.AppendField("text", ColumnType::VarChar, 64);
  buffer.AppendField("big", ColumnType::BigInt, 0);
  buffer.AppendField("real", ColumnType::Double, 0);
  buffer.Open();
  buffer.AddNew();

  buffer.SetValue("text", 17);
  EXPECT_EQ(buffer.Value("text").rawString(), "17");
  buffer.SetValue("text", true);
  EXPECT_EQ(buffer.Value("text").rawString(), "True");
  buffer.SetValue("text", Variant());
  EXPECT_EQ(buffer.Value("text").rawString(), "");

  buffer.SetValue("big", QStringLiteral(" 42 "));
  expectLong(buffer.Value("big"), 42);
  buffer.SetValue("big", 2.5); // halves go to the even neighbour
  expectLong(buffer.Value("big"), 2);
  buffer.SetValue("big", 3.5);
  expectLong(buffer.Value("big"), 4);
  buffer.SetValue("big", true);
  expectLong(buffer.Value("big"), -1);
  buffer.SetValue("big", QStringLiteral("6000000000"));
  EXPECT_EQ(buffer.Value("big").rawDouble(), 6000000000.0);
  buffer.SetValue("big", Currency::fromDouble(7.0));
  expectLong(buffer.Value("big"), 7);

  buffer.SetValue("real", QStringLiteral("12.5"));
  EXPECT_EQ(buffer.Value("real").rawDouble(), 12.5);
  buffer.SetValue("real", 3);
  EXPECT_EQ(buffer.Value("real").type(), Variant::Type::Double);

  // A value that does not convert leaves the cell as it was.
  EXPECT_EQ(errorNumber([&] { buffer.SetValue("big", QStringLiteral("abc")); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(errorNumber([&] { buffer.SetValue("real", QStringLiteral("1x")); }), ErrorNumber::TypeMismatch);
  EXPECT_EQ(errorNumber([&] {
              buffer.SetValue("text", Variant(VariantArray::fromValues({1, 2})));
            }),
            ErrorNumber::TypeMismatch);
  EXPECT_EQ(errorNumber([&] { buffer.SetValue("big", 1e30); }), ErrorNumber::Overflow);
  expectLong(buffer.Value("big"), 7);
  EXPECT_EQ(buffer.Value("real").rawDouble(), 3.0);
  EXPECT_EQ(buffer.Value("text").rawString(), "");
}

TEST(RowBufferValues, SurviveManyRewritesOfLongerAndShorterTexts) {
  RowBuffer buffer;
  buffer.AppendField("text", ColumnType::VarChar, 0);
  buffer.Open();
  for (int row = 0; row < 50; ++row) {
    buffer.AddNew();
    buffer.SetValue(0, QString::number(row));
  }
  // Texts Latin-1 holds (a byte a character) and texts it does not ("ł",
  // two bytes) take each other's places, at odd and even offsets.
  const auto textFor = [](int round, int row) {
    const QChar letter = (round + row) % 3 == 0 ? QChar(0x0142 + row % 5) : QChar(u'a' + row % 26);
    return QString(round % 7 == 0 ? 1 : 50 + round, letter) + QString::number(row);
  };
  // Enough rewrites to leave most of the stored text behind, and repacked.
  for (int round = 0; round < 200; ++round) {
    buffer.MoveFirst();
    for (int row = 0; row < 50; ++row, buffer.MoveNext())
      buffer.SetValue(0, textFor(round, row));
  }
  buffer.MoveFirst();
  for (int row = 0; row < 50; ++row, buffer.MoveNext())
    EXPECT_EQ(buffer.Value(0).rawString(), textFor(199, row));
}

TEST(RowBufferSort, IsStableOverSeveralKeysWithNullsAtTheLowEnd) {
  RowBuffer buffer;
  buffer.AppendField("group", ColumnType::VarChar, 64);
  buffer.AppendField("rank", ColumnType::Double, 0);
  buffer.AppendField("id", ColumnType::BigInt, 0);
  buffer.Open();
  struct Row {
    Variant group;
    Variant rank;
  };
  const std::vector<Row> rows{{"b", 1.0},
                              {"a", 2.0},
                              {Variant::null(), 5.0},
                              {"a", Variant::null()},
                              {"b", 1.0},
                              {"a", 2.0},
                              {"b", 10.0},
                              {Variant::null(), 5.0},
                              {"a", 9.0}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    buffer.AddNew();
    buffer.SetValue("group", rows[i].group);
    buffer.SetValue("rank", rows[i].rank);
    buffer.SetValue("id", int(i + 1));
  }

  buffer.SetSort("[group] ASC, [rank] DESC");
  EXPECT_EQ(buffer.Sort(), "[group] ASC, [rank] DESC");
  EXPECT_FALSE(buffer.BOF()); // the view is at its first row
  expectLong(buffer.Value("id"), 3);
  // Nulls first ascending and last descending; ties in AddNew order.
  EXPECT_EQ(ids(buffer), QStringList({"3", "8", "9", "2", "6", "4", "7", "1", "5"}));

  buffer.SetSort("group DESC,rank");
  EXPECT_EQ(ids(buffer), QStringList({"1", "5", "7", "4", "2", "6", "9", "3", "8"}));

  // Numbers compare as numbers: 10 after 9.
  buffer.SetSort("[rank]");
  EXPECT_EQ(ids(buffer), QStringList({"4", "1", "5", "2", "6", "3", "8", "9", "7"}));

  // Row data never moved: the empty sort gives the order of AddNew back.
  buffer.SetSort("");
  EXPECT_EQ(ids(buffer), QStringList({"1", "2", "3", "4", "5", "6", "7", "8", "9"}));
}

TEST(RowBufferSort, ComparesTextWithoutCaseAndOnTheStoredPrefix) {
  RowBuffer buffer;
  openKeyed(buffer);
  const QString prefix(64, u'm');
  const QStringList keys{"b", "a", "B", "A", "c", prefix + "zzzzzz", prefix + "aaaaaa", "Ä", "ä"};
  for (int i = 0; i < keys.size(); ++i)
    addRow(buffer, keys[i], 0, i + 1);
  buffer.SetSort("[key]");
  // Two 70-character texts that differ past 64 tie, so keep their order.
  EXPECT_EQ(ids(buffer), QStringList({"2", "4", "1", "3", "5", "6", "7", "8", "9"}));
  buffer.SetSort("[KEY] desc");
  EXPECT_EQ(ids(buffer), QStringList({"8", "9", "6", "7", "5", "1", "3", "2", "4"}));

  // Beyond ASCII the case folding decides: the Kelvin sign is a "k".
  RowBuffer kelvin;
  openKeyed(kelvin);
  addRow(kelvin, QStringLiteral("\u212Ab"), 0, 1);
  addRow(kelvin, "kc", 0, 2);
  addRow(kelvin, "KA", 0, 3);
  kelvin.SetSort("[key]");
  EXPECT_EQ(ids(kelvin), QStringList({"3", "1", "2"}));
}

TEST(RowBufferSort, TakesRowsAddedSinceOnlyWhenSetAgain) {
  RowBuffer buffer;
  openKeyed(buffer);
  addRow(buffer, "b", 0, 1);
  addRow(buffer, "c", 0, 2);
  buffer.SetSort("[key]");
  addRow(buffer, "a", 0, 3);
  EXPECT_EQ(ids(buffer), QStringList({"1", "2", "3"}));
  buffer.SetSort(buffer.Sort());
  EXPECT_EQ(ids(buffer), QStringList({"3", "1", "2"}));
}

TEST(RowBufferSort, RejectsTextItCannotReadAndKeepsTheOldOrder) {
  RowBuffer buffer;
  openKeyed(buffer);
  addRow(buffer, "b", 0, 1);
  addRow(buffer, "a", 0, 2);
  buffer.SetSort("[key] ASC");
  for (const char *bad : {"[key] UP", "[key", "[key] ASC [id]", "[key],,[id]", "[key],", "[nope] ASC", "[]",
                          "[key] ASC, [Missing.path] DESC"})
    EXPECT_EQ(errorNumber([&] { buffer.SetSort(bad); }), ErrorNumber::BadArguments) << bad;
  const Error unknown = errorOf([&] { buffer.SetSort("[key], [Missing.path]"); });
  EXPECT_TRUE(unknown.description().contains("Missing.path")) << unknown.description().toStdString();
  EXPECT_EQ(buffer.Sort(), "[key] ASC");
  EXPECT_EQ(ids(buffer), QStringList({"2", "1"}));
}

TEST(RowBufferFilter, PicksRowsByNumberOrQuotedTextInSortOrder) {
  RowBuffer buffer;
  openKeyed(buffer);
  addRow(buffer, "O'Brien", 17, 1);
  addRow(buffer, "c", 4, 2);
  addRow(buffer, "b", 17, 3);
  addRow(buffer, "o'brien", 4, 4);
  addRow(buffer, "a", 17, 5);
  addRow(buffer, Variant::null(), Variant::null(), 6);
  buffer.SetSort("[key] DESC");

  buffer.SetFilter("[company.idcompany] = 17");
  EXPECT_EQ(buffer.Filter(), "[company.idcompany] = 17");
  EXPECT_EQ(buffer.RecordCount(), 3);
  expectLong(buffer.Value("id"), 1); // at the first row of the view
  EXPECT_EQ(ids(buffer), QStringList({"1", "3", "5"}));

  buffer.SetFilter("[key] = 'O''Brien'");
  EXPECT_EQ(ids(buffer), QStringList({"1", "4"}));
  buffer.SetFilter("key='o''BRIEN'");
  EXPECT_EQ(ids(buffer), QStringList({"1", "4"}));

  // Sorting while filtered sorts the filtered rows.
  buffer.SetFilter("[company.idcompany] = 17");
  buffer.SetSort("[key]");
  EXPECT_EQ(buffer.RecordCount(), 3);
  EXPECT_EQ(ids(buffer), QStringList({"5", "3", "1"}));

  buffer.SetFilter("[company.idcompany] = 99");
  EXPECT_EQ(buffer.RecordCount(), 0);
  EXPECT_TRUE(buffer.BOF());
  EXPECT_TRUE(buffer.EOF());

  buffer.SetFilter("");
  EXPECT_EQ(buffer.Filter(), "");
  EXPECT_EQ(buffer.RecordCount(), 6);
  expectLong(buffer.Value("id"), 6);
  EXPECT_EQ(ids(buffer), QStringList({"6", "5", "3", "2", "1", "4"}));
}

TEST(RowBufferFilter, ComparesNumbersByValue) {
  RowBuffer buffer;
  buffer.AppendField("big", ColumnType::BigInt, 0);
  buffer.AppendField("real", ColumnType::Double, 0);
  buffer.AppendField("code", ColumnType::VarChar, 8);
  buffer.AppendField("id", ColumnType::BigInt, 0);
  buffer.Open();
  const std::vector<std::tuple<double, double, const char *>> rows{
      {17, 2.5, "17"}, {6000000000.0, 0.0, "017"}, {-3, -0.0, "x"}, {17, 2.25, "17"}, {9007199254740992.0, 1.0, "y"}};
  for (std::size_t i = 0; i < rows.size(); ++i) {
    buffer.AddNew();
    buffer.SetValue("big", std::get<0>(rows[i]));
    buffer.SetValue("real", std::get<1>(rows[i]));
    buffer.SetValue("code", std::get<2>(rows[i]));
    buffer.SetValue("id", int(i + 1));
  }
  const std::vector<std::pair<const char *, QStringList>> cases{
      {"[big] = 17", {"1", "4"}},
      {"[big] = 17.0", {"1", "4"}},
      {"[big] = '17'", {"1", "4"}},
      {"[big] = 17.5", {}},
      {"[big] = 6000000000", {"2"}},
      {"[big] = -3", {"3"}},
      {"[big] = 6e9", {"2"}},
      {"[big] = 9007199254740992", {"5"}},
      // A double would round this one to the one above.
      {"[big] = 9007199254740993", {}},
      {"[real] = 2.5", {"1"}},
      {"[real] = 0", {"2", "3"}},
      {"[real] = -0", {"2", "3"}},
      {"[real] = 2.250", {"4"}},
      {"[code] = 17", {"1", "4"}},
      {"[code] = '017'", {"2"}},
  };
  for (const auto &[filter, expected] : cases) {
    buffer.SetFilter(filter);
    EXPECT_EQ(ids(buffer), expected) << filter;
  }
}

TEST(RowBufferFilter, RejectsTextItCannotReadAndKeepsTheOldView) {
  RowBuffer buffer;
  openKeyed(buffer);
  addRow(buffer, "a", 1, 1);
  addRow(buffer, "b", 2, 2);
  buffer.SetFilter("[id] = 2");
  for (const char *bad :
       {"[id] > 1", "[id] == 1", "[id] = 1 AND [key] = 'a'", "[key] = 'a", "[key] = abc", "[id] = Null", "[id]",
        "[id = 1", "= 1", "[id] = 1x", "[nope] = 1", "[id] = 'one'", "[id] = 1 OR [id] = 2"})
    EXPECT_EQ(errorNumber([&] { buffer.SetFilter(bad); }), ErrorNumber::BadArguments) << bad;
  const Error unread = errorOf([&] { buffer.SetFilter("[id] <> 1"); });
  EXPECT_TRUE(unread.description().contains("[id] <> 1")) << unread.description().toStdString();
  const Error unknown = errorOf([&] { buffer.SetFilter("[company.name] = 1"); });
  EXPECT_TRUE(unknown.description().contains("company.name")) << unknown.description().toStdString();
  EXPECT_EQ(buffer.Filter(), "[id] = 2");
  EXPECT_EQ(ids(buffer), QStringList({"2"}));
}

TEST(RowBufferFilter, FollowsWritesAndNewRows) {
  RowBuffer buffer;
  openKeyed(buffer);
  addRow(buffer, "a", 1, 1);
  addRow(buffer, "b", 1, 2);
  addRow(buffer, "c", 2, 3);
  buffer.SetFilter("[company.idcompany] = 1");
  EXPECT_EQ(ids(buffer), QStringList({"1", "2"}));

  // A write keeps the rows in view until the filter is set again.
  buffer.MoveFirst();
  buffer.SetValue("company.idcompany", 2);
  EXPECT_EQ(ids(buffer), QStringList({"1", "2"}));
  buffer.SetFilter("[company.idcompany] = 1");
  EXPECT_EQ(ids(buffer), QStringList({"2"}));
  buffer.SetFilter("[company.idcompany] = 2");
  EXPECT_EQ(ids(buffer), QStringList({"1", "3"}));

  // A row added while filtered shows at the end until the filter is set again.
  addRow(buffer, "0", 7, 4);
  EXPECT_EQ(ids(buffer), QStringList({"1", "3", "4"}));
  buffer.SetFilter("[company.idcompany] = 2");
  EXPECT_EQ(ids(buffer), QStringList({"1", "3"}));
  buffer.SetFilter("[company.idcompany] = 7");
  EXPECT_EQ(ids(buffer), QStringList({"4"}));
}

TEST(RowBufferFilter, RepeatedForEveryParentMatchesAPlainSelection) {
  struct Row {
    QString key;
    int parent;
    int id;
  };
  std::vector<Row> rows;
  unsigned seed = 12345;
  auto next = [&seed](unsigned range) {
    seed = seed * 1103515245u + 12345u;
    return (seed >> 8) % range;
  };
  RowBuffer buffer;
  openKeyed(buffer);
  for (int id = 1; id <= 3000; ++id) {
    // Few distinct keys, in both cases, so that ties and case matter.
    const QString key = QString(QChar(u'a' + next(5))) + QChar((next(2) ? u'A' : u'a') + next(3));
    rows.push_back({key, int(next(300)), id});
    addRow(buffer, key, rows.back().parent, id);
  }
  buffer.SetSort("[key] DESC, [id] ASC");
  buffer.SetSort("[key] ASC");

  // The plain way: the rows of the parent in AddNew order, then sorted.
  auto expected = [&rows](int parent) {
    std::vector<Row> picked;
    std::copy_if(rows.begin(), rows.end(), std::back_inserter(picked),
                 [&](const Row &row) { return row.parent == parent; });
    std::stable_sort(picked.begin(), picked.end(), [](const Row &a, const Row &b) {
      return QString::compare(a.key, b.key, Qt::CaseInsensitive) < 0;
    });
    QStringList ids;
    for (const Row &row : picked)
      ids << QString::number(row.id);
    return ids;
  };
  int seen = 0;
  for (int round = 0; round < 2; ++round) {
    for (int parent = -2; parent < 302; ++parent) {
      buffer.SetFilter(QStringLiteral("[company.idcompany] = %1").arg(parent));
      const QStringList picked = ids(buffer);
      ASSERT_EQ(picked, expected(parent)) << "parent " << parent;
      EXPECT_EQ(buffer.RecordCount(), picked.size());
      seen += picked.size();
    }
  }
  EXPECT_EQ(seen, 2 * 3000);
}
