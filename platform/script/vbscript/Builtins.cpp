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
  // The native engine gives its numeric constants the Integer subtype, and
  // Long only to those an Integer cannot hold and to the colours.
  const auto text = [](const char *s) { return Variant(QString::fromLatin1(s)); };
  const auto integer = [](int value) { return Variant(std::int16_t(value)); };
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
      {QStringLiteral("vbobjecterror"), Variant(std::int32_t(-2147221504))},
      {QStringLiteral("vbbinarycompare"), integer(0)},
      {QStringLiteral("vbtextcompare"), integer(1)},
      {QStringLiteral("vbdatabasecompare"), integer(2)},
      {QStringLiteral("vbusesystemdayofweek"), integer(0)},
      {QStringLiteral("vbsunday"), integer(1)},
      {QStringLiteral("vbmonday"), integer(2)},
      {QStringLiteral("vbtuesday"), integer(3)},
      {QStringLiteral("vbwednesday"), integer(4)},
      {QStringLiteral("vbthursday"), integer(5)},
      {QStringLiteral("vbfriday"), integer(6)},
      {QStringLiteral("vbsaturday"), integer(7)},
      {QStringLiteral("vbusesystem"), integer(0)},
      {QStringLiteral("vbfirstjan1"), integer(1)},
      {QStringLiteral("vbfirstfourdays"), integer(2)},
      {QStringLiteral("vbfirstfullweek"), integer(3)},
      {QStringLiteral("vbgeneraldate"), integer(0)},
      {QStringLiteral("vblongdate"), integer(1)},
      {QStringLiteral("vbshortdate"), integer(2)},
      {QStringLiteral("vblongtime"), integer(3)},
      {QStringLiteral("vbshorttime"), integer(4)},
      {QStringLiteral("vbtrue"), integer(-1)},
      {QStringLiteral("vbfalse"), integer(0)},
      {QStringLiteral("vbusedefault"), integer(-2)},
      {QStringLiteral("vbokonly"), integer(0)},
      {QStringLiteral("vbokcancel"), integer(1)},
      {QStringLiteral("vbabortretryignore"), integer(2)},
      {QStringLiteral("vbyesnocancel"), integer(3)},
      {QStringLiteral("vbyesno"), integer(4)},
      {QStringLiteral("vbretrycancel"), integer(5)},
      {QStringLiteral("vbcritical"), integer(16)},
      {QStringLiteral("vbquestion"), integer(32)},
      {QStringLiteral("vbexclamation"), integer(48)},
      {QStringLiteral("vbinformation"), integer(64)},
      {QStringLiteral("vbdefaultbutton1"), integer(0)},
      {QStringLiteral("vbdefaultbutton2"), integer(256)},
      {QStringLiteral("vbdefaultbutton3"), integer(512)},
      {QStringLiteral("vbdefaultbutton4"), integer(768)},
      {QStringLiteral("vbapplicationmodal"), integer(0)},
      {QStringLiteral("vbsystemmodal"), integer(4096)},
      {QStringLiteral("vbmsgboxhelpbutton"), integer(16384)},
      {QStringLiteral("vbmsgboxsetforeground"), Variant(std::int32_t(65536))},
      {QStringLiteral("vbmsgboxright"), Variant(std::int32_t(524288))},
      {QStringLiteral("vbmsgboxrtlreading"), Variant(std::int32_t(1048576))},
      {QStringLiteral("vbok"), integer(1)},
      {QStringLiteral("vbcancel"), integer(2)},
      {QStringLiteral("vbabort"), integer(3)},
      {QStringLiteral("vbretry"), integer(4)},
      {QStringLiteral("vbignore"), integer(5)},
      {QStringLiteral("vbyes"), integer(6)},
      {QStringLiteral("vbno"), integer(7)},
      {QStringLiteral("vbempty"), integer(0)},
      {QStringLiteral("vbnull"), integer(1)},
      {QStringLiteral("vbinteger"), integer(2)},
      {QStringLiteral("vblong"), integer(3)},
      {QStringLiteral("vbsingle"), integer(4)},
      {QStringLiteral("vbdouble"), integer(5)},
      {QStringLiteral("vbcurrency"), integer(6)},
      {QStringLiteral("vbdate"), integer(7)},
      {QStringLiteral("vbstring"), integer(8)},
      {QStringLiteral("vbobject"), integer(9)},
      {QStringLiteral("vberror"), integer(10)},
      {QStringLiteral("vbboolean"), integer(11)},
      {QStringLiteral("vbvariant"), integer(12)},
      {QStringLiteral("vbdataobject"), integer(13)},
      {QStringLiteral("vbdecimal"), integer(14)},
      {QStringLiteral("vbbyte"), integer(17)},
      {QStringLiteral("vbarray"), integer(8192)},
      {QStringLiteral("vbblack"), Variant(std::int32_t(0))},
      {QStringLiteral("vbred"), Variant(std::int32_t(0xFF))},
      {QStringLiteral("vbgreen"), Variant(std::int32_t(0xFF00))},
      {QStringLiteral("vbyellow"), Variant(std::int32_t(0xFFFF))},
      {QStringLiteral("vbblue"), Variant(std::int32_t(0xFF0000))},
      {QStringLiteral("vbmagenta"), Variant(std::int32_t(0xFF00FF))},
      {QStringLiteral("vbcyan"), Variant(std::int32_t(0xFFFF00))},
      {QStringLiteral("vbwhite"), Variant(std::int32_t(0xFFFFFF))},
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
