#include "host/IniFile.h"

#include "host/IniSyntax.h"

#include "core/Error.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringDecoder>

namespace kordel::host {

namespace {

// VB's "Bad file format"; the error table of the core has no entry for it.
constexpr int kBadFileFormat = 321;

QString folded(const QString &name) { return name.toCaseFolded(); }

[[noreturn]] void raiseFormat(const QString &origin, int line, const QString &what) {
  raiseError(kBadFileFormat, QStringLiteral("IniFile"),
             QStringLiteral("%1, line %2: %3").arg(origin).arg(line).arg(what));
}

qsizetype skipBlanks(QStringView text, qsizetype pos) {
  while (pos < text.size() && text[pos].isSpace())
    ++pos;
  return pos;
}

// "[name]" or "["quoted"]"; the line is trimmed and begins with '['.
QString parseSectionHeader(QStringView line, const QString &origin, int lineNumber) {
  qsizetype pos = skipBlanks(line, 1);
  QString name;
  if (ini::readQuoted(line, pos, name)) {
    pos = skipBlanks(line, pos);
    if (pos == line.size() - 1 && line.back() == u']')
      return name;
  }
  if (line.back() != u']')
    raiseFormat(origin, lineNumber, QStringLiteral("a section header must end with ']'"));
  return line.mid(1, line.size() - 2).trimmed().toString();
}

// A value after its '=': quoted when it is one quoted text and nothing
// more, else the raw text, trimmed.
QString parseValue(QStringView rest) {
  qsizetype pos = skipBlanks(rest, 0);
  QString value;
  if (ini::readQuoted(rest, pos, value) && skipBlanks(rest, pos) == rest.size())
    return value;
  return rest.trimmed().toString();
}

} // namespace

IniFile IniFile::load(const QString &path) {
  const QFileInfo info(path);
  if (!info.exists())
    raiseError(ErrorNumber::FileNotFound, QStringLiteral("IniFile"), QStringLiteral("File not found: %1").arg(path));
  if (info.isDir())
    raiseError(ErrorNumber::PermissionDenied, QStringLiteral("IniFile"),
               QStringLiteral("Cannot read %1: it is a folder").arg(path));
  QFile file(path);
  QByteArray bytes;
  if (file.open(QIODevice::ReadOnly))
    bytes = file.readAll();
  if (!file.isOpen() || file.error() != QFileDevice::NoError)
    raiseError(ErrorNumber::PermissionDenied, QStringLiteral("IniFile"),
               QStringLiteral("Cannot read %1: %2").arg(path, file.errorString()));
  return parse(bytes, path);
}

IniFile IniFile::parse(const QByteArray &utf8, const QString &origin) {
  QStringDecoder decoder(QStringConverter::Utf8);
  const QString text = decoder(utf8);
  if (decoder.hasError())
    raiseError(kBadFileFormat, QStringLiteral("IniFile"), QStringLiteral("%1 is not UTF-8 text").arg(origin));

  IniFile ini;
  QStringList comments;
  Section *current = nullptr;
  int lineNumber = 0;
  for (QStringView rawLine : QStringView(text).split(u'\n')) {
    ++lineNumber;
    const QStringView line = rawLine.trimmed();
    if (line.isEmpty())
      continue;
    if (line.front() == u';') {
      comments << line.toString();
      continue;
    }
    if (line.front() == u'[') {
      current = &ini.sectionFor(parseSectionHeader(line, origin, lineNumber));
      current->comments << comments;
      comments.clear();
      continue;
    }

    QString name;
    qsizetype pos = 0;
    qsizetype equals = -1;
    if (ini::readQuoted(line, pos, name) && (pos = skipBlanks(line, pos)) < line.size() && line[pos] == u'=') {
      equals = pos;
    } else {
      equals = line.indexOf(u'=');
      if (equals < 0)
        raiseFormat(origin, lineNumber, QStringLiteral("expected '[section]' or 'name=value'"));
      name = line.left(equals).trimmed().toString();
    }
    if (!current)
      raiseFormat(origin, lineNumber, QStringLiteral("a value before the first section"));
    Entry &entry = entryFor(*current, name);
    entry.value = parseValue(line.mid(equals + 1));
    entry.comments << comments;
    comments.clear();
  }
  ini.trailingComments_ = comments;
  return ini;
}

QByteArray IniFile::serialize() const {
  QString out;
  for (const Section &section : sections_) {
    if (!out.isEmpty())
      out += u'\n';
    for (const QString &comment : section.comments)
      out += comment + u'\n';
    out += u'[' + ini::nameText(section.name) + QStringLiteral("]\n");
    for (const Entry &entry : section.entries) {
      for (const QString &comment : entry.comments)
        out += comment + u'\n';
      out += ini::nameText(entry.name) + u'=' + ini::quoted(entry.value) + u'\n';
    }
  }
  for (const QString &comment : trailingComments_)
    out += comment + u'\n';
  return out.toUtf8();
}

void IniFile::save(const QString &path) const {
  QSaveFile file(path);
  const QByteArray bytes = serialize();
  if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
    raiseError(ErrorNumber::PermissionDenied, QStringLiteral("IniFile"),
               QStringLiteral("Cannot write %1: %2").arg(path, file.errorString()));
}

QStringList IniFile::sections() const {
  QStringList out;
  for (const Section &section : sections_)
    out << section.name;
  return out;
}

bool IniFile::hasSection(const QString &section) const { return findSection(section) != nullptr; }

QStringList IniFile::names(const QString &section) const {
  QStringList out;
  if (const Section *found = findSection(section)) {
    for (const Entry &entry : found->entries)
      out << entry.name;
  }
  return out;
}

std::optional<QString> IniFile::value(const QString &section, const QString &name) const {
  const Section *found = findSection(section);
  if (!found)
    return std::nullopt;
  const auto it = found->index.constFind(folded(name));
  if (it == found->index.constEnd())
    return std::nullopt;
  return found->entries[*it].value;
}

void IniFile::setValue(const QString &section, const QString &name, const QString &value) {
  entryFor(sectionFor(section), name).value = value;
}

const IniFile::Section *IniFile::findSection(const QString &name) const {
  const auto it = index_.constFind(folded(name));
  return it == index_.constEnd() ? nullptr : &sections_[*it];
}

IniFile::Section &IniFile::sectionFor(const QString &name) {
  const QString key = folded(name);
  const auto it = index_.constFind(key);
  if (it != index_.constEnd())
    return sections_[*it];
  index_.insert(key, sections_.size());
  sections_.push_back(Section{name, {}, {}, {}});
  return sections_.back();
}

IniFile::Entry &IniFile::entryFor(Section &section, const QString &name) {
  const QString key = folded(name);
  const auto it = section.index.constFind(key);
  if (it != section.index.constEnd())
    return section.entries[*it];
  section.index.insert(key, section.entries.size());
  section.entries.push_back(Entry{name, {}, {}});
  return section.entries.back();
}

} // namespace kordel::host
