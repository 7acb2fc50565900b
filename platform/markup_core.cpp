#include "platform/markup_core.hpp"

#include <pugixml.hpp>

#include "components/hpp/impl/log4rig_impl.hpp"

namespace NMarkupCore {

struct CXML_Parser::CImpl {
  pugi::xml_document document;
};

CXML_Parser::CXML_Parser() : mImpl(new CImpl) {}
CXML_Parser::~CXML_Parser() = default;

void CXML_Parser::initialize() { mImpl->document.reset(); }

bool CXML_Parser::parse(const std::string& path, log4cxx::LoggerPtr logger) {
  pugi::xml_parse_result result =
      mImpl->document.load_file(path.c_str(), pugi::parse_default | pugi::parse_declaration);
  if (result) return true;
  VLT_LOG1(logger, Error,
           "XML parse error in '" << path << "': " << result.description() << " at offset " << result.offset << ".");
  return false;
}

}  // namespace NMarkupCore
