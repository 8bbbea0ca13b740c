#include "host/StoredRecord.h"

#include "core/Error.h"

#include <QDataStream>
#include <QIODevice>

namespace kordel::host {

namespace {

const QString kSource = QStringLiteral("StoredRecord");
// The first bytes of every stored record, and the layout's version.
constexpr quint32 kMagic = 0x4f525652; // "ORVR"
constexpr quint16 kVersion = 1;

void writeValue(QDataStream &out, const Variant &value) {
  const auto type = value.type();
  out << quint16(type);
  switch (type) {
  case Variant::Type::Empty:
  case Variant::Type::Null: break;
  case Variant::Type::Boolean: out << value.rawBool(); break;
  case Variant::Type::Byte: out << quint8(value.rawByte()); break;
  case Variant::Type::Integer: out << qint16(value.rawInteger()); break;
  case Variant::Type::Long: out << qint32(value.rawLong()); break;
  case Variant::Type::Single: out << double(value.rawSingle()); break;
  case Variant::Type::Double: out << value.rawDouble(); break;
  case Variant::Type::Currency: out << qint64(value.rawCurrency().scaled); break;
  case Variant::Type::Date: out << value.rawDate().serial; break;
  case Variant::Type::String: out << value.rawString(); break;
  case Variant::Type::ByteArray: out << value.rawBytes(); break;
  default:
    raiseError(ErrorNumber::TypeMismatch, kSource, QStringLiteral("Objects and arrays cannot be stored in a record"));
  }
}

Variant readValue(QDataStream &in) {
  quint16 type = 0;
  in >> type;
  switch (Variant::Type(type)) {
  case Variant::Type::Empty: return Variant();
  case Variant::Type::Null: return Variant::null();
  case Variant::Type::Boolean: {
    bool value = false;
    in >> value;
    return Variant(value);
  }
  case Variant::Type::Byte: {
    quint8 value = 0;
    in >> value;
    return Variant(std::uint8_t(value));
  }
  case Variant::Type::Integer: {
    qint16 value = 0;
    in >> value;
    return Variant(std::int16_t(value));
  }
  case Variant::Type::Long: {
    qint32 value = 0;
    in >> value;
    return Variant(int(value));
  }
  case Variant::Type::Single: {
    double value = 0;
    in >> value;
    return Variant(float(value));
  }
  case Variant::Type::Double: {
    double value = 0;
    in >> value;
    return Variant(value);
  }
  case Variant::Type::Currency: {
    qint64 value = 0;
    in >> value;
    return Variant(Currency{value});
  }
  case Variant::Type::Date: {
    double value = 0;
    in >> value;
    return Variant(Date{value});
  }
  case Variant::Type::String: {
    QString value;
    in >> value;
    return Variant(value);
  }
  case Variant::Type::ByteArray: {
    QByteArray value;
    in >> value;
    return Variant(value);
  }
  default:
    raiseError(ErrorNumber::InvalidFileFormat, kSource,
               QStringLiteral("The stored record holds a value of unknown type %1").arg(type));
  }
}

} // namespace

StoredRecord StoredRecord::fromBytes(const QByteArray &bytes) {
  QDataStream in(bytes);
  in.setVersion(QDataStream::Qt_6_0);
  quint32 magic = 0;
  quint16 version = 0;
  quint32 count = 0;
  in >> magic >> version >> count;
  if (in.status() != QDataStream::Ok || magic != kMagic)
    raiseError(ErrorNumber::InvalidFileFormat, kSource, QStringLiteral("These bytes are not a stored record"));
  if (version != kVersion)
    raiseError(
        ErrorNumber::InvalidFileFormat, kSource,
        QStringLiteral("The stored record has version %1; this program reads version %2").arg(version).arg(kVersion));
  StoredRecord record;
  for (quint32 i = 0; i < count; ++i) {
    QString name;
    in >> name;
    const Variant value = readValue(in);
    if (in.status() != QDataStream::Ok)
      raiseError(ErrorNumber::InvalidFileFormat, kSource, QStringLiteral("The stored record is cut short"));
    record.values_.append({name, value});
  }
  if (!in.atEnd())
    raiseError(ErrorNumber::InvalidFileFormat, kSource, QStringLiteral("The stored record has bytes after its end"));
  return record;
}

QByteArray StoredRecord::toBytes() const {
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setVersion(QDataStream::Qt_6_0);
  out << kMagic << kVersion << quint32(values_.size());
  for (const auto &[name, value] : values_) {
    out << name;
    writeValue(out, value);
  }
  return bytes;
}

const Variant *StoredRecord::find(const QString &name) const {
  for (const auto &entry : values_)
    if (entry.first == name)
      return &entry.second;
  return nullptr;
}

bool StoredRecord::contains(const QString &name) const { return find(name) != nullptr; }

Variant StoredRecord::ReadProperty(const QString &name) const {
  if (const Variant *value = find(name))
    return *value;
  raiseError(ErrorNumber::DataValueNotFound, kSource, QStringLiteral("The record has no value \"%1\"").arg(name));
}

Variant StoredRecord::ReadProperty(const QString &name, const Variant &defaultValue) const {
  const Variant *value = find(name);
  return value ? *value : defaultValue;
}

void StoredRecord::WriteProperty(const QString &name, const Variant &value) {
  // Checked here, so that an unstorable value fails when it is written.
  if (value.isObject() || value.isArray())
    raiseError(ErrorNumber::TypeMismatch, kSource,
               QStringLiteral("The value \"%1\" is an object or an array and cannot be stored").arg(name));
  for (auto &entry : values_)
    if (entry.first == name) {
      entry.second = value;
      return;
    }
  values_.append({name, value});
}

} // namespace kordel::host
