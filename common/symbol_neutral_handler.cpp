// The reader of neutral symbol files.

#include "common/symbol_neutral_handler.hpp"

#include <boost/filesystem/operations.hpp>
#include <fstream>

namespace rig_common {

namespace {

const char kBlanks[] = " \t\r\n";

std::string trimBlanks(const std::string& text) {
  const std::string::size_type first = text.find_first_not_of(kBlanks);
  if (first == std::string::npos) return std::string();
  const std::string::size_type last = text.find_last_not_of(kBlanks);
  return text.substr(first, last - first + 1);
}

}  // namespace

CVlt2hrwSymbolNeutralHandler::CVlt2hrwSymbolNeutralHandler() : mData(new TVlt2hrwSymbolNeutralData) {}

CVlt2hrwSymbolNeutralHandler::~CVlt2hrwSymbolNeutralHandler() = default;

bool CVlt2hrwSymbolNeutralHandler::parse(const std::string& path) {
  *mData = TVlt2hrwSymbolNeutralData();
  boost::system::error_code error;
  if (boost::filesystem::is_directory(path, error)) return false;
  std::ifstream in(path, std::ios::binary);
  if (!in) return false;
  std::string line;
  while (std::getline(in, line)) parseLine(line);
  return true;
}

void CVlt2hrwSymbolNeutralHandler::parseLine(const std::string& text) {
  const std::string line = trimBlanks(text);
  if (line.empty() || line[0] == '#') return;
  const std::string::size_type split = line.find_first_of(kBlanks);
  const std::string keyword = line.substr(0, split);
  const std::string value = split == std::string::npos ? std::string() : trimBlanks(line.substr(split));
  TVlt2hrwSymbolNeutralData& data = *mData;
  if (keyword == "SYMBOL") {
    data.symbolName = value;
  } else if (keyword == "REFDES_VALUE") {
    data.refdesValue = value;
  } else if (keyword == "UNIT_NAME") {
    data.unitName = value;
  } else if (keyword == "PIN_SPACING") {
    data.pinSpacing = value;
  } else if (keyword == "BODY_PROPERTY") {
    data.bodyProperties.push_back(value);
  } else if (keyword == "PIN_PROPERTY") {
    data.pinProperties.push_back(value);
  } else if (keyword == "PIN_NAME") {
    data.pinNames.push_back(value);
  }
}

}  // namespace rig_common
