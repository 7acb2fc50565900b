#include "impl/config_parser_impl.hpp"

#include <boost/filesystem/operations.hpp>

namespace NComponent {
namespace NConfig {

bool CConfigParser::parse(const boost::filesystem::path& file) {
  if (!boost::filesystem::exists(file)) {
    RIG_LOG1(logger, Fatal,
             "Configuration file does not exist:"
                 << "'" << file.string() << "'");
    return false;
  }
  parser.initialize();
  return parser.parse(file.string(), logger);
}

bool CConfigParser::write(const boost::filesystem::path& file) { return parser.write(file.string(), logger); }

TDOMElement* CConfigParser::findElement(const CXMLHierPath& path, const char* attribute, const std::string& value) {
  TDOMNodeList* list = parser.getDomNodeList(path);
  for (int i = 0, n = parser.getDomNodeListLength(list); i < n; ++i) {
    TDOMElement* element = parser.getDOMElement(list, i);
    if (element != nullptr && parser.getAttribute(element, attribute) == value) return element;
  }
  return nullptr;
}

}  // namespace NConfig
}  // namespace NComponent
