#include "platform/markup_core.hpp"

#include <boost/filesystem/operations.hpp>
#include <map>
#include <pugixml.hpp>
#include <unordered_map>
#include <utility>

#include "common/log4rig.hpp"
#include "platform/xml_text.hpp"

namespace NMarkupCore {

namespace fs = boost::filesystem;

// ---------------------------------------------------------------------------
// CXMLHierPath

CXMLHierPath::CXMLHierPath(const std::string& name) { append(name); }

CXMLHierPath CXMLHierPath::operator/(const std::string& name) const {
  CXMLHierPath path(*this);
  path.append(name);
  return path;
}

std::string CXMLHierPath::get() const {
  std::string text;
  for (const auto& name : mNames) {
    if (!text.empty()) text += '/';
    text += name;
  }
  return text;
}

void CXMLHierPath::append(const std::string& name) {
  std::string::size_type start = 0;
  while (start <= name.size()) {
    std::string::size_type slash = name.find('/', start);
    if (slash == std::string::npos) slash = name.size();
    if (slash > start) mNames.push_back(name.substr(start, slash - start));
    start = slash + 1;
  }
}

// ---------------------------------------------------------------------------
// The opaque types

class CXML_Parser::CDOMElement {
 public:
  explicit CDOMElement(pugi::xml_node n) : node(n) {}
  pugi::xml_node node;  // empty once the element left the document
};

class CXML_Parser::CDOMNodeList {
 public:
  std::vector<CDOMElement*> elements;
};

namespace {

using TNames = std::vector<std::string>;

bool isElement(const pugi::xml_node& node, const std::string& name) {
  return node.type() == pugi::node_element && name == node.name();
}

// Every element at names[from..) below `context`, in document order.
void collect(const pugi::xml_node& context, const TNames& names, std::size_t from, std::vector<pugi::xml_node>& out) {
  if (from == names.size()) {
    out.push_back(context);
    return;
  }
  for (pugi::xml_node child = context.first_child(); child; child = child.next_sibling())
    if (isElement(child, names[from])) collect(child, names, from + 1, out);
}

// The first element at names[from..count) below `context`, in document order.
pugi::xml_node firstAt(const pugi::xml_node& context, const TNames& names, std::size_t from, std::size_t count) {
  if (from == count) return context;
  for (pugi::xml_node child = context.first_child(); child; child = child.next_sibling()) {
    if (!isElement(child, names[from])) continue;
    pugi::xml_node found = firstAt(child, names, from + 1, count);
    if (found) return found;
  }
  return pugi::xml_node();
}

bool isAnyElement(const pugi::xml_node& node) { return node.type() == pugi::node_element; }

std::string cacheKey(const TNames& names) {
  std::string key;
  for (const auto& name : names) key += name + '\n';
  return key;
}

// Makes every name and text of the document fit XML (see xml_text.hpp), so
// that a written file is well-formed whatever the values held; one Warn per
// item that had to change. The walk follows the node links, without
// recursion.
void makeWellFormed(pugi::xml_document& document, const std::string& path, const log4cxx::LoggerPtr& logger) {
  std::string fixed;
  const auto warn = [&](const std::string& item) {
    RIG_LOG1(logger, Warn,
             "XML write: '" << path << "': bytes that are not UTF-8 text replaced by U+FFFD in " << item << ".");
  };
  pugi::xml_node node = document.first_child();
  while (node) {
    const std::string element = node.name();
    if (node.type() == pugi::node_element || node.type() == pugi::node_pi) {
      if (toXmlName(element, fixed)) {
        node.set_name(fixed.c_str());
        warn("the element name '" + fixed + "'");
      }
      for (pugi::xml_attribute attribute = node.first_attribute(); attribute; attribute = attribute.next_attribute()) {
        if (toXmlName(attribute.name(), fixed)) {
          attribute.set_name(fixed.c_str());
          warn("the attribute name '" + fixed + "' of element '" + node.name() + "'");
        }
        if (toXmlText(attribute.value(), fixed)) {
          attribute.set_value(fixed.c_str());
          warn("the attribute '" + std::string(attribute.name()) + "' of element '" + node.name() + "'");
        }
      }
    }
    if (node.type() != pugi::node_element && node.type() != pugi::node_declaration && toXmlText(node.value(), fixed)) {
      node.set_value(fixed.c_str());
      warn("the text of element '" + std::string(node.parent().name()) + "'");
    }
    if (node.type() == pugi::node_comment) {
      std::string text = node.value();
      bool changed = false;
      for (std::size_t at = text.find("--"); at != std::string::npos; at = text.find("--", at)) {
        text.insert(at + 1, " ");
        changed = true;
      }
      if (!text.empty() && text.back() == '-') text += ' ', changed = true;
      if (changed) node.set_value(text.c_str());  // a comment may not hold "--" nor end in '-'
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

struct CXML_Parser::CImpl {
  pugi::xml_document document;
  // Every element object ever handed out, and the ones still in the document.
  std::vector<std::unique_ptr<CDOMElement>> elements;
  std::unordered_map<pugi::xml_node_struct*, CDOMElement*> live;
  // Node lists are snapshots; an unchanged document answers a repeated
  // question with the same list.
  std::vector<std::unique_ptr<CDOMNodeList>> lists;
  std::map<std::pair<pugi::xml_node_struct*, std::string>, CDOMNodeList*> listCache;

  CDOMElement* wrap(const pugi::xml_node& node) {
    if (!node) return nullptr;
    auto found = live.find(node.internal_object());
    if (found != live.end()) return found->second;
    elements.push_back(std::make_unique<CDOMElement>(node));
    live.emplace(node.internal_object(), elements.back().get());
    return elements.back().get();
  }

  void changed() { listCache.clear(); }

  // Forgets the whole document: every element handed out reads as missing.
  void dropAll() {
    for (auto& entry : live) entry.second->node = pugi::xml_node();
    live.clear();
    changed();
  }

  void forget(const pugi::xml_node& node) {
    auto found = live.find(node.internal_object());
    if (found != live.end()) {
      found->second->node = pugi::xml_node();
      live.erase(found);
    }
  }

  CDOMNodeList* list(const pugi::xml_node& context, const TNames& names) {
    auto key = std::make_pair(context.internal_object(), cacheKey(names));
    auto cached = listCache.find(key);
    if (cached != listCache.end()) return cached->second;
    lists.push_back(std::make_unique<CDOMNodeList>());
    CDOMNodeList* result = lists.back().get();
    if (context && !names.empty()) {
      std::vector<pugi::xml_node> nodes;
      collect(context, names, 0, nodes);
      result->elements.reserve(nodes.size());
      for (const auto& node : nodes) result->elements.push_back(wrap(node));
    }
    listCache.emplace(key, result);
    return result;
  }

  pugi::xml_node appendElement(pugi::xml_node& parent, const std::string& name) {
    // A document holds one root element.
    if (parent.type() == pugi::node_document && parent.find_child(&isAnyElement)) return pugi::xml_node();
    changed();
    return parent.append_child(name.c_str());
  }

  // The first element at names[0..count) below `context`, made if missing.
  pugi::xml_node ensure(pugi::xml_node context, const TNames& names, std::size_t count) {
    if (count == 0) return context;
    pugi::xml_node found = firstAt(context, names, 0, count);
    if (found) return found;
    pugi::xml_node parent = ensure(context, names, count - 1);
    if (!parent) return pugi::xml_node();
    return appendElement(parent, names[count - 1]);
  }

  CDOMElement* add(const pugi::xml_node& context, const TNames& names) {
    if (!context || names.empty()) return nullptr;
    pugi::xml_node parent = ensure(context, names, names.size() - 1);
    if (!parent) return nullptr;
    return wrap(appendElement(parent, names.back()));
  }

  // Takes the subtree apart from its deepest last leaf upwards, so that
  // neither this walk nor the library's freeing of nodes recurses into a
  // deeply nested subtree; every element of it reads as missing afterwards.
  CDOMElement* removeNode(CDOMElement* element) {
    pugi::xml_node top = element->node;
    pugi::xml_node node = top;
    while (true) {
      pugi::xml_node last = node.last_child();
      if (last) {
        node = last;
        continue;
      }
      pugi::xml_node parent = node.parent();
      const bool done = node == top;
      forget(node);
      parent.remove_child(node);
      if (done) break;
      node = parent;
    }
    changed();
    return element;
  }
};

// ---------------------------------------------------------------------------
// CXML_Parser

CXML_Parser::CXML_Parser() : mImpl(new CImpl) {}
CXML_Parser::~CXML_Parser() = default;

void CXML_Parser::initialize() {
  mImpl->dropAll();
  mImpl->document.reset();
}

bool CXML_Parser::parse(const std::string& path, log4cxx::LoggerPtr logger) {
  mImpl->dropAll();
  pugi::xml_parse_result result =
      mImpl->document.load_file(path.c_str(), pugi::parse_default | pugi::parse_declaration | pugi::parse_comments);
  if (result) return true;
  mImpl->document.reset();
  RIG_LOG1(logger, Error,
           "XML parse error in '" << path << "': " << result.description() << " at offset " << result.offset << ".");
  return false;
}

bool CXML_Parser::write(const std::string& path, log4cxx::LoggerPtr logger) {
  if (!mImpl->document.document_element()) {  // a file without a root element is no XML file
    RIG_LOG1(logger, Error, "XML write error in '" << path << "': no root element.");
    return false;
  }
  pugi::xml_node first = mImpl->document.first_child();
  if (!first || first.type() != pugi::node_declaration) {
    pugi::xml_node declaration = mImpl->document.prepend_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
  }
  makeWellFormed(mImpl->document, path, logger);
  // Written beside the target and renamed over it, so that a failed write
  // leaves the old file as it was.
  fs::path target(path);
  fs::path temporary = target.parent_path() / fs::unique_path(target.filename().string() + ".%%%%-%%%%.tmp");
  bool saved = mImpl->document.save_file(temporary.string().c_str(), "  ", pugi::format_indent, pugi::encoding_utf8);
  boost::system::error_code error;
  if (saved) fs::rename(temporary, target, error);
  if (!saved || error) {
    boost::system::error_code ignored;
    fs::remove(temporary, ignored);
    RIG_LOG1(logger, Error, "XML write error in '" << path << "': cannot write file.");
    return false;
  }
  return true;
}

void CXML_Parser::createEmptyDocument(const std::string& rootName) {
  initialize();
  mImpl->document.append_child(rootName.c_str());
}

CXML_Parser::CDOMElement* CXML_Parser::addElement(const CXMLHierPath& path) {
  return mImpl->add(mImpl->document, path.names());
}

CXML_Parser::CDOMElement* CXML_Parser::addElement(CDOMElement* parent, const CXMLHierPath& path) {
  if (parent == nullptr) return nullptr;
  return mImpl->add(parent->node, path.names());
}

void CXML_Parser::addAttribute(CDOMElement* element, const std::string& name, const std::string& value) {
  if (element == nullptr || !element->node) return;
  pugi::xml_attribute attribute = element->node.attribute(name.c_str());
  if (!attribute) attribute = element->node.append_attribute(name.c_str());
  attribute.set_value(value.c_str());
}

std::string CXML_Parser::getAttribute(CDOMElement* element, const std::string& name) {
  if (element == nullptr || !element->node) return std::string();
  return element->node.attribute(name.c_str()).value();
}

CXML_Parser::CDOMElement* CXML_Parser::getDOMElement(const CXMLHierPath& path) {
  const TNames& names = path.names();
  if (names.empty()) return nullptr;
  return mImpl->wrap(firstAt(mImpl->document, names, 0, names.size()));
}

CXML_Parser::CDOMElement* CXML_Parser::getDOMElement(CDOMNodeList* list, int index) {
  if (list == nullptr || index < 0 || static_cast<std::size_t>(index) >= list->elements.size()) return nullptr;
  CDOMElement* element = list->elements[static_cast<std::size_t>(index)];
  return element->node ? element : nullptr;
}

CXML_Parser::CDOMNodeList* CXML_Parser::getDomNodeList(const CXMLHierPath& path) {
  return mImpl->list(mImpl->document, path.names());
}

CXML_Parser::CDOMNodeList* CXML_Parser::getDomNodeList(CDOMElement* element, const std::string& name) {
  pugi::xml_node context = element != nullptr ? element->node : pugi::xml_node();
  return mImpl->list(context, TNames{name});
}

CXML_Parser::CDOMNodeList* CXML_Parser::getDomNodeList(CDOMElement* element, const CXMLHierPath& path) {
  pugi::xml_node context = element != nullptr ? element->node : pugi::xml_node();
  return mImpl->list(context, path.names());
}

int CXML_Parser::getDomNodeListLength(CDOMNodeList* list) {
  return list == nullptr ? 0 : static_cast<int>(list->elements.size());
}

CXML_Parser::CDOMElement* CXML_Parser::remove(const CXMLHierPath& path) {
  CDOMElement* element = getDOMElement(path);
  return element != nullptr ? mImpl->removeNode(element) : nullptr;
}

CXML_Parser::CDOMElement* CXML_Parser::remove(CDOMElement* element) {
  if (element == nullptr || !element->node) return nullptr;
  return mImpl->removeNode(element);
}

}  // namespace NMarkupCore
