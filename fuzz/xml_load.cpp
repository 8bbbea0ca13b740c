// The XML service's load: any bytes either load or raise an Error. A loaded
// document is walked node by node, and what it saves must load again and
// save to the same text.

#include "xml/XmlDocument.h"
#include "xml/XmlNodeList.h"

#include "core/Error.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <vector>

using namespace kordel;

namespace {

// Reads every node's name, value, text and attributes. Documents nest
// deeper than any stack holds, so the walk keeps its own.
void walk(const std::shared_ptr<XmlNode> &root) {
  std::vector<std::shared_ptr<XmlNode>> pending{root};
  while (!pending.empty()) {
    const auto node = std::move(pending.back());
    pending.pop_back();
    (void)node->nodeName();
    (void)node->nodeValue();
    (void)node->text();
    (void)node->dataType();
    if (const auto attributes = node->attributes())
      for (int i = 0; i < attributes->length(); ++i)
        (void)attributes->item(i)->nodeValue();
    for (auto child = node->firstChild(); child; child = child->nextSibling())
      pending.push_back(child);
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  const auto document = XmlDocument::create();
  try {
    document->load(QByteArray(reinterpret_cast<const char *>(data), qsizetype(size)));
  } catch (const Error &) {
    return 0;
  }
  walk(document);
  const QString saved = document->xml();
  const auto again = XmlDocument::create();
  try {
    again->loadXML(saved);
  } catch (const Error &error) {
    std::fprintf(stderr, "A saved document does not load again: %s\n%s\n", qPrintable(error.description()),
                 qPrintable(saved));
    std::abort();
  }
  if (again->xml() != saved) {
    std::fprintf(stderr, "Saving a loaded document twice gives two texts:\n%s\n%s\n", qPrintable(saved),
                 qPrintable(again->xml()));
    std::abort();
  }
  return 0;
}
