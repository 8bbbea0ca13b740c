#include "xml/XmlDocument.h"

#include "core/Error.h"
#include "xml/XmlParseError.h"
#include "xml/XmlParser.h"
#include "xml/XmlSerializer.h"
#include "xml/XmlText.h"
#include "xml/XmlTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace kordel {

using namespace xmlinternal;

namespace {

const QString kSelectionLanguage = QStringLiteral("SelectionLanguage");

QByteArray readWholeFile(const QString &path, const QString &source) {
  const QFileInfo info(path);
  if (path.isEmpty() || !info.exists())
    raiseError(ErrorNumber::FileNotFound, source, QStringLiteral("File not found: %1").arg(path));
  QFile file(path);
  if (info.isDir() || !file.open(QIODevice::ReadOnly))
    raiseError(ErrorNumber::PermissionDenied, source,
               QStringLiteral("Cannot read the file %1: %2")
                   .arg(path, info.isDir() ? QStringLiteral("it is a folder") : file.errorString()));
  QByteArray bytes = file.readAll();
  if (file.error() != QFileDevice::NoError)
    raiseError(ErrorNumber::PermissionDenied, source,
               QStringLiteral("Cannot read the file %1: %2").arg(path, file.errorString()));
  return bytes;
}

} // namespace

XmlDocument::XmlDocument(Token)
    : XmlNode(XmlTree::createEmpty(), nullptr), parseError_(std::make_shared<XmlParseError>()) {
  node_ = tree_->docNode();
}

XmlDocument::~XmlDocument() = default;

std::shared_ptr<XmlDocument> XmlDocument::create() { return std::make_shared<XmlDocument>(Token{}); }

void XmlDocument::replaceTree(const std::function<std::shared_ptr<XmlTree>()> &load) {
  try {
    std::shared_ptr<XmlTree> tree = load();
    tree_ = std::move(tree);
    node_ = tree_->docNode();
    parseError_ = std::make_shared<XmlParseError>();
  } catch (const XmlParseFailure &failure) {
    parseError_ =
        std::make_shared<XmlParseError>(failure.number(), failure.description(), failure.line(), failure.column());
    throw;
  } catch (const Error &error) {
    parseError_ = std::make_shared<XmlParseError>(error.number(), error.description(), 0, 0);
    throw;
  }
}

void XmlDocument::loadXML(const QString &text) {
  replaceTree([&] { return parseDocument(text.toUtf8(), DeclaredEncoding::Ignore, sourceOf("loadXML")); });
}

void XmlDocument::load(const QString &path) {
  replaceTree([&] {
    const QString source = sourceOf("load");
    return parseDocument(readWholeFile(path, source), DeclaredEncoding::Honour, source);
  });
}

void XmlDocument::load(const QByteArray &bytes) {
  replaceTree([&] { return parseDocument(bytes, DeclaredEncoding::Honour, sourceOf("load")); });
}

void XmlDocument::save(const QString &path) const {
  const QString source = sourceOf("save");
  if (!xmlDocGetRootElement(tree_->doc()))
    raiseError(ErrorNumber::InvalidCall, source,
               QStringLiteral("The document has no root element, so there is nothing to save"));
  if (path.isEmpty())
    raiseError(ErrorNumber::PathNotFound, source, QStringLiteral("No file name was given"));
  const QFileInfo info(path);
  if (!info.absoluteDir().exists())
    raiseError(ErrorNumber::PathNotFound, source,
               QStringLiteral("Path not found: the folder %1 does not exist").arg(info.absolutePath()));
  if (info.isDir())
    raiseError(ErrorNumber::PermissionDenied, source, QStringLiteral("Cannot write %1: it is a folder").arg(path));

  const QByteArray bytes = serializeNode(node_);
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly))
    raiseError(ErrorNumber::PermissionDenied, source,
               QStringLiteral("Cannot write the file %1: %2").arg(path, file.errorString()));
  if (file.write(bytes) != bytes.size() || !file.commit())
    raiseError(ErrorNumber::PermissionDenied, source,
               QStringLiteral("Cannot write the file %1: %2").arg(path, file.errorString()));
}

std::shared_ptr<XmlNode> XmlDocument::documentElement() const { return wrap(xmlDocGetRootElement(tree_->doc())); }

std::shared_ptr<XmlNode> XmlDocument::createElement(const QString &name) {
  requirePlainName(name, sourceOf("createElement"));
  const QByteArray utf8 = name.toUtf8();
  return wrap(tree_->adopt(xmlNewDocNode(tree_->doc(), nullptr, xmlChars(utf8), nullptr)));
}

std::shared_ptr<XmlNode> XmlDocument::createTextNode(const QString &text) {
  requireStorableText(text, sourceOf("createTextNode"));
  const QByteArray utf8 = text.toUtf8();
  return wrap(tree_->adopt(xmlNewDocText(tree_->doc(), xmlChars(utf8))));
}

std::shared_ptr<XmlNode> XmlDocument::createCDATASection(const QString &text) {
  requireStorableText(text, sourceOf("createCDATASection"));
  const QByteArray utf8 = text.toUtf8();
  return wrap(tree_->adopt(xmlNewCDataBlock(tree_->doc(), xmlChars(utf8), int(utf8.size()))));
}

std::shared_ptr<XmlNode> XmlDocument::createProcessingInstruction(const QString &target, const QString &data) {
  const QString source = sourceOf("createProcessingInstruction");
  requirePlainName(target, source);
  requireStorableText(data, source);
  if (data.contains(QStringLiteral("?>")))
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("A processing instruction cannot hold \"?>\""));
  const QByteArray targetUtf8 = target.toUtf8();
  const QByteArray dataUtf8 = data.toUtf8();
  return wrap(tree_->adopt(xmlNewDocPI(tree_->doc(), xmlChars(targetUtf8), xmlChars(dataUtf8))));
}

Variant XmlDocument::getProperty(const QString &name) const {
  if (name.compare(kSelectionLanguage, Qt::CaseInsensitive) == 0)
    return QStringLiteral("XPath");
  raiseError(ErrorNumber::InvalidCall, sourceOf("getProperty"), QStringLiteral("Unknown property \"%1\"").arg(name));
}

void XmlDocument::setProperty(const QString &name, const Variant &value) {
  const QString source = sourceOf("setProperty");
  if (name.compare(kSelectionLanguage, Qt::CaseInsensitive) != 0)
    raiseError(ErrorNumber::InvalidCall, source, QStringLiteral("Unknown property \"%1\"").arg(name));
  if (value.toString().compare(QStringLiteral("XPath"), Qt::CaseInsensitive) != 0)
    raiseError(ErrorNumber::InvalidCall, source,
               QStringLiteral("XPath is the only selection language, not \"%1\"").arg(value.toString()));
}

bool XmlDocument::loadForScript(const Variant &source) {
  if (!source.isString() && !source.isByteArray())
    raiseError(ErrorNumber::TypeMismatch, sourceOf("load"), QStringLiteral("load takes a file path or a byte array"));
  try {
    if (source.isString())
      load(source.rawString());
    else
      load(source.rawBytes());
  } catch (const Error &) {
    return false; // the reason is in parseError
  }
  return true;
}

bool XmlDocument::loadXMLForScript(const QString &text) {
  try {
    loadXML(text);
  } catch (const Error &) {
    return false; // the reason is in parseError
  }
  return true;
}

const MemberTable &XmlDocument::memberTable() const {
  static const MemberTable table{
      {
          property<XmlDocument>("documentElement", [](XmlDocument &d) { return d.documentElement(); }),
          method<XmlDocument>("loadXML",
                              [](XmlDocument &d, Args &a) {
                                expectArgs(a, 1, 1);
                                return d.loadXMLForScript(arg(a, 0).toString());
                              }),
          method<XmlDocument>("load",
                              [](XmlDocument &d, Args &a) {
                                expectArgs(a, 1, 1);
                                return d.loadForScript(arg(a, 0));
                              }),
          method<XmlDocument>("save",
                              [](XmlDocument &d, Args &a) {
                                expectArgs(a, 1, 1);
                                d.save(arg(a, 0).toString());
                                return Variant();
                              }),
          method<XmlDocument>("createElement",
                              [](XmlDocument &d, Args &a) {
                                expectArgs(a, 1, 1);
                                return d.createElement(arg(a, 0).toString());
                              }),
          method<XmlDocument>("createTextNode",
                              [](XmlDocument &d, Args &a) {
                                expectArgs(a, 1, 1);
                                return d.createTextNode(arg(a, 0).toString());
                              }),
          method<XmlDocument>("createCDATASection",
                              [](XmlDocument &d, Args &a) {
                                expectArgs(a, 1, 1);
                                return d.createCDATASection(arg(a, 0).toString());
                              }),
          method<XmlDocument>("createProcessingInstruction",
                              [](XmlDocument &d, Args &a) {
                                expectArgs(a, 2, 2);
                                return d.createProcessingInstruction(arg(a, 0).toString(), arg(a, 1).toString());
                              }),
          property<XmlDocument>("parseError", [](XmlDocument &d) { return d.parseError(); }),
          property<XmlDocument>(
              "async", [](XmlDocument &d) { return d.async(); },
              [](XmlDocument &d, const Variant &v) { d.setAsync(v.toBool()); }),
          property<XmlDocument>(
              "validateOnParse", [](XmlDocument &d) { return d.validateOnParse(); },
              [](XmlDocument &d, const Variant &v) { d.setValidateOnParse(v.toBool()); }),
          method<XmlDocument>("getProperty",
                              [](XmlDocument &d, Args &a) {
                                expectArgs(a, 1, 1);
                                return d.getProperty(arg(a, 0).toString());
                              }),
          method<XmlDocument>("setProperty",
                              [](XmlDocument &d, Args &a) {
                                expectArgs(a, 2, 2);
                                d.setProperty(arg(a, 0).toString(), arg(a, 1));
                                return Variant();
                              }),
      },
      &XmlNode::memberTable()};
  return table;
}

} // namespace kordel
