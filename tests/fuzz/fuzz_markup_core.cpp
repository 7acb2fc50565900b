// The XML facade: parse a file, look up, remove (also deeply nested
// subtrees), add values holding any bytes, and write. The written file must
// parse again and hold only names and texts that XML allows.
#include <cstdlib>
#include <pugixml.hpp>

#include "platform/markup_core.hpp"
#include "platform/xml_text.hpp"
#include "support.hpp"

using NMarkupCore::CXML_Parser;
using NMarkupCore::CXMLHierPath;

namespace {

void checkWellFormed(const std::string& file) {
  pugi::xml_document document;
  if (!document.load_file(file.c_str(), pugi::parse_default | pugi::parse_comments)) std::abort();
  std::string fixed;
  pugi::xml_node node = document.first_child();
  while (node) {
    if (node.type() == pugi::node_element) {
      if (NMarkupCore::toXmlName(node.name(), fixed)) std::abort();
      for (pugi::xml_attribute a = node.first_attribute(); a; a = a.next_attribute())
        if (NMarkupCore::toXmlName(a.name(), fixed) || NMarkupCore::toXmlText(a.value(), fixed)) std::abort();
    } else if (NMarkupCore::toXmlText(node.value(), fixed)) {
      std::abort();
    }
    if (node.first_child()) {
      node = node.first_child();
      continue;
    }
    while (node && !node.next_sibling()) node = node.parent();
    if (node) node = node.next_sibling();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const std::string file = vltfuzz::asFile(data, size, "input.xml");
  log4cxx::LoggerPtr logger;  // no logger: the facade logs nothing then
  CXML_Parser parser;
  parser.initialize();
  if (!parser.parse(file, logger)) parser.createEmptyDocument("rig");

  // The chain of first elements from the root, as a path (at most 64 deep).
  pugi::xml_document peek;
  peek.load_file(file.c_str());
  pugi::xml_node chainNode = peek.document_element();
  if (!chainNode) chainNode = peek.append_child("rig");
  CXMLHierPath path(chainNode.name());
  std::vector<CXMLHierPath> chain{path};
  for (pugi::xml_node child = chainNode.first_child(); child && chain.size() < 64; child = child.first_child())
    if (child.type() == pugi::node_element) chain.push_back(chain.back() / child.name());

  CXML_Parser::CDOMElement* deepest = parser.getDOMElement(chain.back());
  parser.addAttribute(deepest, "value", text.substr(0, 256));
  CXML_Parser::CDOMNodeList* list = parser.getDomNodeList(chain[chain.size() / 2]);
  for (int i = 0; i < parser.getDomNodeListLength(list) && i < 16; ++i) {
    CXML_Parser::CDOMElement* element = parser.getDOMElement(list, i);
    parser.getAttribute(element, "name");
    parser.addElement(element, CXMLHierPath("entry"));
  }
  if (size > 0 && data[0] % 3 == 0) parser.remove(chain[chain.size() > 1 ? 1 : 0]);
  if (size > 0 && data[0] % 3 == 1) parser.remove(chain.front());  // the whole document, however deep
  parser.getAttribute(deepest, "value");                           // may be removed by now

  const std::string written = vltfuzz::scratchPath("written.xml");
  if (parser.write(written, logger)) checkWellFormed(written);
  return 0;
}
