#pragma once
// markup_core: the small DOM facade the component's XML configuration files
// go through. It hides pugixml; no component code includes pugixml itself.
//
// Elements and node lists are handed out as pointers to opaque types owned
// by the parser. They stay valid until the parser is destroyed; an element
// that was removed (or whose document was replaced) still exists as an
// object but no longer stands for a node, and reads as missing.

#include <log4cxx/logger.h>

#include <memory>
#include <string>
#include <vector>

namespace NMarkupCore {

// A path of element names from the document root (or, for the element-based
// operations, from a given element).
class CXMLHierPath {
 public:
  // A path of one element. A name holding "/" is taken as several levels.
  explicit CXMLHierPath(const std::string& name);

  // A new path with `name` appended; the receiver is left alone.
  CXMLHierPath operator/(const std::string& name) const;

  // The path as text, names joined with "/".
  std::string get() const;

  const std::vector<std::string>& names() const { return mNames; }

 private:
  CXMLHierPath() = default;
  void append(const std::string& name);

  std::vector<std::string> mNames;
};

class CXML_Parser {
 public:
  class CDOMElement;
  class CDOMNodeList;

  CXML_Parser();
  ~CXML_Parser();
  CXML_Parser(const CXML_Parser&) = delete;
  CXML_Parser& operator=(const CXML_Parser&) = delete;

  // Prepares the parser (drops any document); called once before parse.
  void initialize();
  // Loads the file. False on a missing file or bad XML, after logging on
  // `logger` with the reason and the offset.
  bool parse(const std::string& path, log4cxx::LoggerPtr logger);
  // Saves the document as indented XML with a declaration, replacing the
  // file. False, after logging on `logger`, when it cannot be written.
  bool write(const std::string& path, log4cxx::LoggerPtr logger);

  // Discards the document and makes one with a single root element.
  void createEmptyDocument(const std::string& rootName);

  // Creates the element at the end of the path and returns it. Missing
  // elements on the way to it are made first; the last one is always new.
  // Null when the path does not start at the root element.
  CDOMElement* addElement(const CXMLHierPath& path);
  // The same below `parent`; the path starts with a child name of `parent`.
  CDOMElement* addElement(CDOMElement* parent, const CXMLHierPath& path);

  // Sets an attribute; an existing one keeps its place.
  void addAttribute(CDOMElement* element, const std::string& name, const std::string& value);
  // The attribute's value, or an empty string.
  std::string getAttribute(CDOMElement* element, const std::string& name);

  // The first element at that path, in document order, or null.
  CDOMElement* getDOMElement(const CXMLHierPath& path);
  // The element at `index` of the list, or null (bad index, removed element).
  CDOMElement* getDOMElement(CDOMNodeList* list, int index);

  // All elements at that path, in document order, as they are now. Never null.
  CDOMNodeList* getDomNodeList(const CXMLHierPath& path);
  // The children of `element` named `name`, in document order. Never null.
  CDOMNodeList* getDomNodeList(CDOMElement* element, const std::string& name);
  // The elements at that path below `element`. Never null.
  CDOMNodeList* getDomNodeList(CDOMElement* element, const CXMLHierPath& path);
  int getDomNodeListLength(CDOMNodeList* list);

  // Removes the first element at that path with its subtree; returns it, or
  // null when there is none.
  CDOMElement* remove(const CXMLHierPath& path);
  // Removes that element with its subtree; returns it, or null when it was
  // no (longer a) node of the document.
  CDOMElement* remove(CDOMElement* element);

 private:
  struct CImpl;
  std::unique_ptr<CImpl> mImpl;
};

}  // namespace NMarkupCore
