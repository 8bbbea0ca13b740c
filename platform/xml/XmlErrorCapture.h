#pragma once

// Internal to the XML service: keeps libxml2 from printing anything and
// turns what it reports into the text of an Error.

#include <QString>

#include <libxml/xmlerror.h>
#include <libxml/xmlversion.h>

namespace kordel::xmlinternal {

#if LIBXML_VERSION >= 21200
using LibxmlError = const xmlError *;
#else
using LibxmlError = xmlError *;
#endif

// The first error libxml2 reported: what, and where when it has a place.
struct XmlIssue {
  int line = 0;   // line in the parsed text, 0 when none
  int column = 0; // column in that line, or offset in an XPath expression
  QString message;
};

// While alive, every report that libxml2 makes on this thread, through its
// structured or its generic channel, lands here instead of on stderr; the
// routes that were set before come back when the capture ends. Parser and
// XPath contexts hand their own reports to record() as well. Warnings are
// dropped; the first error is kept.
class XmlErrorCapture {
public:
  XmlErrorCapture();
  ~XmlErrorCapture();
  XmlErrorCapture(const XmlErrorCapture &) = delete;
  XmlErrorCapture &operator=(const XmlErrorCapture &) = delete;

  void record(LibxmlError error);
  // An error found by our own checks, such as a refused DOCTYPE.
  void fail(XmlIssue issue);

  bool failed() const { return failed_; }
  const XmlIssue &issue() const { return issue_; }

  // A structured error handler whose data pointer is an XmlErrorCapture.
  static void onStructured(void *capture, LibxmlError error);

private:
  static void onGeneric(void *unused, const char *format, ...);

  bool failed_ = false;
  XmlIssue issue_;
  xmlStructuredErrorFunc savedStructured_;
  void *savedStructuredData_;
  xmlGenericErrorFunc savedGeneric_;
  void *savedGenericData_;
  XmlErrorCapture *outer_;
};

} // namespace kordel::xmlinternal
