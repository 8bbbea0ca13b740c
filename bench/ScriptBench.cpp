// script_bench: how fast our VBScript interpreter runs the procedure of a
// detail row, against the same logic in JavaScript on a plain QJSEngine in
// the same run.
//
//   script_bench [--calls N] [--rounds R]
//
// The VBScript procedure is compiled once and called N times (default
// 1,000,000) from the host, as a report run calls an event procedure once
// per row: string work, a few Ifs and two member calls on one of our
// Objects. The JavaScript function does the same on a plain script object.
// Prints calls per second of both and their ratio; the aim is a ratio of at
// least 1 (VBScript no slower than the JavaScript engine).

#include "script/ScriptEngine.h"

#include "core/Error.h"
#include "core/Object.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QJSEngine>

#include <algorithm>
#include <cstdio>
#include <functional>

using namespace kordel;

namespace {

const char *const kVBScript = R"VB(
Function FormatRow(name, amount, city)
  Dim label, grade
  label = Trim(name)
  If Len(label) > 12 Then
    label = Left(label, 11) & "~"
  End If
  If amount >= 1000 Then
    grade = "A"
  ElseIf amount >= 100 Then
    grade = "B"
  Else
    grade = "C"
  End If
  label = UCase(Left(label, 1)) & Mid(label, 2)
  If InStr(city, " ") > 0 Then
    city = Replace(city, " ", "_")
  End If
  row.Tally amount
  FormatRow = row.Prefix(grade) & label & " / " & city & " (" & amount & ")"
End Function
)VB";

const char *const kJavaScript = R"JS(
(function (row) {
  return function formatRow(name, amount, city) {
    var label, grade;
    label = name.trim();
    if (label.length > 12) {
      label = label.substr(0, 11) + "~";
    }
    if (amount >= 1000) {
      grade = "A";
    } else if (amount >= 100) {
      grade = "B";
    } else {
      grade = "C";
    }
    label = label.substr(0, 1).toUpperCase() + label.substr(1);
    if (city.indexOf(" ") >= 0) {
      city = city.split(" ").join("_");
    }
    row.tally(amount);
    return row.prefix(grade) + label + " / " + city + " (" + amount + ")";
  };
})
)JS";

// The row object of the VBScript side: Tally(amount) adds to a running
// total, Prefix(grade) gives the row's prefix.
class BenchRow final : public Object {
public:
  QString typeName() const override { return QStringLiteral("Row"); }
  double total = 0.0;

protected:
  const MemberTable &memberTable() const override {
    static const MemberTable table{{
        method<BenchRow>("Tally",
                         [](BenchRow &r, Args &a) {
                           expectArgs(a, 1, 1);
                           r.total += a[0].toDouble();
                           return Variant();
                         }),
        method<BenchRow>("Prefix",
                         [](BenchRow &, Args &a) {
                           expectArgs(a, 1, 1);
                           return QStringLiteral("[") + a[0].toString() + QStringLiteral("] ");
                         }),
    }};
    return table;
  }
};

const char *const kJavaScriptRow = R"JS(
({ total: 0,
   tally: function (amount) { this.total += amount; },
   prefix: function (grade) { return "[" + grade + "] "; } })
)JS";

struct Input {
  QString name;
  int amount;
  QString city;
};

const Input kInputs[] = {
    {QStringLiteral("  anna andersson "), 1250, QStringLiteral("Umeå")},
    {QStringLiteral("bo"), 40, QStringLiteral("Las Palmas")},
    {QStringLiteral("cilla berglund-lind"), 300, QStringLiteral("Lund")},
    {QStringLiteral("david"), 99999, QStringLiteral("New York City")},
};
constexpr int kInputCount = int(sizeof kInputs / sizeof kInputs[0]);

struct Run {
  qint64 calls = 0;
  qint64 nanoseconds = 0;
  qint64 checksum = 0;
  double callsPerSecond() const { return nanoseconds ? calls * 1e9 / double(nanoseconds) : 0.0; }
};

// The best of a few rounds, so that a busy machine disturbs less.
Run best(int rounds, const std::function<Run()> &work) {
  Run fastest;
  for (int i = 0; i < rounds; ++i) {
    QElapsedTimer timer;
    timer.start();
    Run run = work();
    run.nanoseconds = timer.nsecsElapsed();
    if (i == 0 || run.nanoseconds < fastest.nanoseconds)
      fastest = run;
  }
  return fastest;
}

Run runVBScript(script::ScriptEngine &engine, qint64 calls) {
  Run run;
  run.calls = calls;
  const QString procedure = QStringLiteral("FormatRow");
  for (qint64 i = 0; i < calls; ++i) {
    const Input &input = kInputs[i % kInputCount];
    Args args{Variant(input.name), Variant(input.amount), Variant(input.city)};
    run.checksum += engine.call(procedure, args).toString().size();
  }
  return run;
}

Run runJavaScript(const QJSValue &function, qint64 calls) {
  Run run;
  run.calls = calls;
  for (qint64 i = 0; i < calls; ++i) {
    const Input &input = kInputs[i % kInputCount];
    const QJSValue result = function.call({QJSValue(input.name), QJSValue(input.amount), QJSValue(input.city)});
    run.checksum += result.toString().size();
  }
  return run;
}

} // namespace

int main(int argc, char **argv) {
  QCoreApplication app(argc, argv);
  qint64 calls = 1000000;
  int rounds = 3;
  const QStringList args = app.arguments().mid(1);
  for (qsizetype i = 0; i + 1 < args.size(); i += 2) {
    if (args[i] == QLatin1String("--calls"))
      calls = std::max<qint64>(1, args[i + 1].toLongLong());
    else if (args[i] == QLatin1String("--rounds"))
      rounds = std::max(1, args[i + 1].toInt());
  }
  try {
    auto engine = script::createScriptEngine(QStringLiteral("VBScript"));
    const auto vbRow = std::make_shared<BenchRow>();
    engine->addNamedItem(QStringLiteral("row"), vbRow);
    engine->addCode(QString::fromUtf8(kVBScript));
    const Run vb = best(rounds, [&] { return runVBScript(*engine, calls); });

    QJSEngine qjs;
    const QJSValue row = qjs.evaluate(QString::fromUtf8(kJavaScriptRow));
    const QJSValue function = qjs.evaluate(QString::fromUtf8(kJavaScript)).call({row});
    if (!function.isCallable()) {
      std::fprintf(stderr, "script_bench: the JavaScript did not compile: %s\n",
                   function.toString().toUtf8().constData());
      return 1;
    }
    const Run js = best(rounds, [&] { return runJavaScript(function, calls); });

    std::printf("%lld calls of a detail-row procedure, best of %d rounds\n", static_cast<long long>(calls), rounds);
    std::printf("  VBScript (ours)  %12.0f calls/s\n", vb.callsPerSecond());
    std::printf("  QJSEngine        %12.0f calls/s\n", js.callsPerSecond());
    std::printf("  ratio VBScript/QJSEngine %.2f\n",
                js.callsPerSecond() ? vb.callsPerSecond() / js.callsPerSecond() : 0.0);
    // Both made the same texts and tallied the same amounts.
    const double jsTotal = row.property(QStringLiteral("total")).toNumber();
    if (vb.checksum != js.checksum || vbRow->total != jsTotal) {
      std::fprintf(stderr, "script_bench: the two scripts disagree (checksums %lld and %lld, totals %.0f and %.0f)\n",
                   static_cast<long long>(vb.checksum), static_cast<long long>(js.checksum), vbRow->total, jsTotal);
      return 1;
    }
    return 0;
  } catch (const Error &error) {
    std::fprintf(stderr, "script_bench: %s (%d)\n", error.description().toUtf8().constData(), error.number());
    return 1;
  }
}
