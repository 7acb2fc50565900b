#pragma once
// markup_core: the small DOM facade the component's XML configuration files
// go through. It hides pugixml; no component code includes pugixml itself.

#include <log4cxx/logger.h>

#include <memory>
#include <string>

namespace NMarkupCore {

class CXML_Parser {
 public:
  CXML_Parser();
  ~CXML_Parser();
  CXML_Parser(const CXML_Parser&) = delete;
  CXML_Parser& operator=(const CXML_Parser&) = delete;

  // Prepares the parser; called once before parse.
  void initialize();
  // Loads the file. False on a missing file or bad XML, after logging on
  // `logger` with the reason and the offset.
  bool parse(const std::string& path, log4cxx::LoggerPtr logger);

 private:
  struct CImpl;
  std::unique_ptr<CImpl> mImpl;
};

}  // namespace NMarkupCore
