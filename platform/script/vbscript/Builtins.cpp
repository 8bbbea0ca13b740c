#include "script/vbscript/Builtins.h"

#include "core/Error.h"

#include <QHash>

namespace kordel::script::vb {

namespace {

QHash<QString, const BuiltinDef *> buildFunctionIndex() {
  QHash<QString, const BuiltinDef *> index;
  for (auto group :
       {stringBuiltins(), conversionBuiltins(), mathBuiltins(), dateBuiltins(), formatBuiltins(), runtimeBuiltins()}) {
    for (const BuiltinDef &def : group)
      index.insert(QString::fromLatin1(def.name).toLower(), &def);
  }
  return index;
}

QHash<QString, Variant> buildConstants() {
  const auto text = [](const char *s) { return Variant(QString::fromLatin1(s)); };
  return {
      {QStringLiteral("vbcrlf"), text("\r\n")},
      {QStringLiteral("vbnewline"), text("\r\n")},
      {QStringLiteral("vbcr"), text("\r")},
      {QStringLiteral("vblf"), text("\n")},
      {QStringLiteral("vbtab"), text("\t")},
      {QStringLiteral("vbverticaltab"), text("\v")},
      {QStringLiteral("vbformfeed"), text("\f")},
      {QStringLiteral("vbnullchar"), Variant(QString(QChar(0)))},
      {QStringLiteral("vbnullstring"), Variant(QString())},
      {QStringLiteral("vbobjecterror"), Variant(int(-2147221504))},
      {QStringLiteral("vbbinarycompare"), Variant(0)},
      {QStringLiteral("vbtextcompare"), Variant(1)},
      {QStringLiteral("vbdatabasecompare"), Variant(2)},
      {QStringLiteral("vbusesystemdayofweek"), Variant(0)},
      {QStringLiteral("vbsunday"), Variant(1)},
      {QStringLiteral("vbmonday"), Variant(2)},
      {QStringLiteral("vbtuesday"), Variant(3)},
      {QStringLiteral("vbwednesday"), Variant(4)},
      {QStringLiteral("vbthursday"), Variant(5)},
      {QStringLiteral("vbfriday"), Variant(6)},
      {QStringLiteral("vbsaturday"), Variant(7)},
      {QStringLiteral("vbusesystem"), Variant(0)},
      {QStringLiteral("vbfirstjan1"), Variant(1)},
      {QStringLiteral("vbfirstfourdays"), Variant(2)},
      {QStringLiteral("vbfirstfullweek"), Variant(3)},
      {QStringLiteral("vbgeneraldate"), Variant(0)},
      {QStringLiteral("vblongdate"), Variant(1)},
      {QStringLiteral("vbshortdate"), Variant(2)},
      {QStringLiteral("vblongtime"), Variant(3)},
      {QStringLiteral("vbshorttime"), Variant(4)},
      {QStringLiteral("vbtrue"), Variant(-1)},
      {QStringLiteral("vbfalse"), Variant(0)},
      {QStringLiteral("vbusedefault"), Variant(-2)},
      {QStringLiteral("vbokonly"), Variant(0)},
      {QStringLiteral("vbokcancel"), Variant(1)},
      {QStringLiteral("vbabortretryignore"), Variant(2)},
      {QStringLiteral("vbyesnocancel"), Variant(3)},
      {QStringLiteral("vbyesno"), Variant(4)},
      {QStringLiteral("vbretrycancel"), Variant(5)},
      {QStringLiteral("vbcritical"), Variant(16)},
      {QStringLiteral("vbquestion"), Variant(32)},
      {QStringLiteral("vbexclamation"), Variant(48)},
      {QStringLiteral("vbinformation"), Variant(64)},
      {QStringLiteral("vbdefaultbutton1"), Variant(0)},
      {QStringLiteral("vbdefaultbutton2"), Variant(256)},
      {QStringLiteral("vbdefaultbutton3"), Variant(512)},
      {QStringLiteral("vbdefaultbutton4"), Variant(768)},
      {QStringLiteral("vbapplicationmodal"), Variant(0)},
      {QStringLiteral("vbsystemmodal"), Variant(4096)},
      {QStringLiteral("vbok"), Variant(1)},
      {QStringLiteral("vbcancel"), Variant(2)},
      {QStringLiteral("vbabort"), Variant(3)},
      {QStringLiteral("vbretry"), Variant(4)},
      {QStringLiteral("vbignore"), Variant(5)},
      {QStringLiteral("vbyes"), Variant(6)},
      {QStringLiteral("vbno"), Variant(7)},
      {QStringLiteral("vbempty"), Variant(0)},
      {QStringLiteral("vbnull"), Variant(1)},
      {QStringLiteral("vbinteger"), Variant(2)},
      {QStringLiteral("vblong"), Variant(3)},
      {QStringLiteral("vbsingle"), Variant(4)},
      {QStringLiteral("vbdouble"), Variant(5)},
      {QStringLiteral("vbcurrency"), Variant(6)},
      {QStringLiteral("vbdate"), Variant(7)},
      {QStringLiteral("vbstring"), Variant(8)},
      {QStringLiteral("vbobject"), Variant(9)},
      {QStringLiteral("vberror"), Variant(10)},
      {QStringLiteral("vbboolean"), Variant(11)},
      {QStringLiteral("vbvariant"), Variant(12)},
      {QStringLiteral("vbdataobject"), Variant(13)},
      {QStringLiteral("vbdecimal"), Variant(14)},
      {QStringLiteral("vbbyte"), Variant(17)},
      {QStringLiteral("vbarray"), Variant(8192)},
      {QStringLiteral("vbblack"), Variant(0)},
      {QStringLiteral("vbred"), Variant(0xFF)},
      {QStringLiteral("vbgreen"), Variant(0xFF00)},
      {QStringLiteral("vbyellow"), Variant(0xFFFF)},
      {QStringLiteral("vbblue"), Variant(0xFF0000)},
      {QStringLiteral("vbmagenta"), Variant(0xFF00FF)},
      {QStringLiteral("vbcyan"), Variant(0xFFFF00)},
      {QStringLiteral("vbwhite"), Variant(0xFFFFFF)},
  };
}

} // namespace

const BuiltinDef *findBuiltin(const QString &folded) {
  static const QHash<QString, const BuiltinDef *> index = buildFunctionIndex();
  return index.value(folded, nullptr);
}

const Variant *findBuiltinConstant(const QString &folded) {
  static const QHash<QString, Variant> constants = buildConstants();
  const auto it = constants.constFind(folded);
  return it == constants.constEnd() ? nullptr : &*it;
}

void requireNotNull(const Variant &value) {
  if (value.isNull())
    raiseError(ErrorNumber::InvalidUseOfNull);
}

int intArg(const BuiltinArgs &args, int index, int fallback) {
  if (!args.has(index))
    return fallback;
  requireNotNull(args[index]);
  return args[index].toLong();
}

} // namespace kordel::script::vb
