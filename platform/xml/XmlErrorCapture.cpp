#include "xml/XmlErrorCapture.h"

#include <libxml/globals.h>

#include <cstdarg>
#include <cstdio>

namespace kordel::xmlinternal {

namespace {

// XPath reports come with a code and, in older libxml2 versions, without a
// message of their own.
QString describeXPathError(int code) {
  switch (code - XML_XPATH_EXPRESSION_OK) {
  case 1: return QStringLiteral("Number expected");
  case 2: return QStringLiteral("Unfinished literal");
  case 3: return QStringLiteral("Literal expected");
  case 4: return QStringLiteral("Variable name expected");
  case 5: return QStringLiteral("Undefined variable");
  case 6: return QStringLiteral("Invalid predicate");
  case 7: return QStringLiteral("Invalid expression");
  case 8: return QStringLiteral("Missing closing bracket or parenthesis");
  case 9: return QStringLiteral("Unknown function");
  case 10: return QStringLiteral("Invalid operand");
  case 11: return QStringLiteral("Invalid type");
  case 12: return QStringLiteral("Wrong number of arguments to a function");
  case 13: return QStringLiteral("Invalid context size");
  case 14: return QStringLiteral("Invalid context position");
  case 15: return QStringLiteral("Out of memory");
  case 19: return QStringLiteral("Undefined namespace prefix");
  case 20: return QStringLiteral("Encoding error");
  case 21: return QStringLiteral("Invalid character");
  default: return QStringLiteral("Invalid expression");
  }
}

// The innermost capture of this thread. The generic channel is called with
// whatever data pointer the reporting code had at hand, so it finds its
// capture here instead.
thread_local XmlErrorCapture *currentCapture = nullptr;

} // namespace

XmlErrorCapture::XmlErrorCapture()
    : savedStructured_(xmlStructuredError), savedStructuredData_(xmlStructuredErrorContext),
      savedGeneric_(xmlGenericError), savedGenericData_(xmlGenericErrorContext), outer_(currentCapture) {
  currentCapture = this;
  xmlStructuredError = &XmlErrorCapture::onStructured;
  xmlStructuredErrorContext = this;
  xmlGenericError = &XmlErrorCapture::onGeneric;
  xmlGenericErrorContext = this;
}

XmlErrorCapture::~XmlErrorCapture() {
  xmlStructuredError = savedStructured_;
  xmlStructuredErrorContext = savedStructuredData_;
  xmlGenericError = savedGeneric_;
  xmlGenericErrorContext = savedGenericData_;
  currentCapture = outer_;
}

void XmlErrorCapture::record(LibxmlError error) {
  if (!error || error->level < XML_ERR_ERROR)
    return;
  XmlIssue issue;
  if (error->domain == XML_FROM_XPATH) {
    issue.column = error->int1;
    issue.message = error->message ? QString::fromUtf8(error->message).trimmed() : describeXPathError(error->code);
  } else {
    issue.line = error->line;
    issue.column = error->int2;
    issue.message = QString::fromUtf8(error->message ? error->message : "Unknown error").trimmed();
  }
  fail(std::move(issue));
}

void XmlErrorCapture::fail(XmlIssue issue) {
  if (failed_)
    return;
  failed_ = true;
  issue_ = std::move(issue);
}

void XmlErrorCapture::onStructured(void *capture, LibxmlError error) {
  static_cast<XmlErrorCapture *>(capture)->record(error);
}

void XmlErrorCapture::onGeneric(void *, const char *format, ...) {
  char text[512];
  va_list args;
  va_start(args, format);
  std::vsnprintf(text, sizeof text, format, args);
  va_end(args);
  if (currentCapture)
    currentCapture->fail(XmlIssue{0, 0, QString::fromUtf8(text).trimmed()});
}

} // namespace kordel::xmlinternal
