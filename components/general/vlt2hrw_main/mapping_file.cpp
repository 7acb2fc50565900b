// Reader of the symbol/pin mapping files.

#include "mapping_file.hpp"

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <boost/regex.hpp>
#include <fstream>

#include "common/text_helpers.hpp"
#include "misc.hpp"

namespace NComponent {

namespace {
// The text every message of the script function starts with.
const std::string kPrefix = "Reading mapping file: ";
}  // namespace
namespace MappingFile {

namespace {

// The words of `text` after trimming, split at runs of white space.
std::vector<std::string> words(const std::string& text) {
  std::vector<std::string> out;
  std::string trimmed = rig_common::trim(text);
  if (trimmed.empty()) return out;
  const boost::regex blanks("\\s+");
  boost::sregex_token_iterator it(trimmed.begin(), trimmed.end(), blanks, -1), end;
  for (; it != end; ++it) out.push_back(*it);
  return out;
}

std::string wordAt(const std::vector<std::string>& list, size_t index) {
  return index < list.size() ? rig_common::removeQuotes(list[index]) : std::string();
}

}  // namespace

bool readMappingFile(MappingFile& mapping, const boost::filesystem::path& file,
                     const rig_common::log4rig::TSinks& sinks) {
  const std::string path = file.string();
  RIG_LOG(sinks, Debug, kPrefix << path);
  std::ifstream stream(path);
  if (!stream.is_open()) {
    RIG_LOG(sinks, Error, kPrefix + "cannot open mapping file for reading: " << path);
    return false;
  }

  const auto flags = boost::regex::perl | boost::regex::icase;
  const boost::regex symbolLine("\\s*SYMBOL\\s+(\\S+)\\s+(\\S+)(.*)", flags);
  const boost::regex pinLine("\\s*PIN\\s+(\\S+)\\s+(\\S+)(.*)", flags);
  // Known keywords the reader has no use for.
  const boost::regex ignored[] = {boost::regex("\\s*COMMON\\s+(\\S+)\\s+(\\S+)", flags),
                                  boost::regex("\\s*PINSET\\s+(.+)", flags),
                                  boost::regex("\\s*POWER\\s+(\\S+)\\s+(\\S+)", flags),
                                  boost::regex("\\s*BLOCK\\s+(\\S+)\\s+(\\S+)", flags),
                                  boost::regex("\\s*SUBSYMBOL", flags),
                                  boost::regex("\\s*SUBPIN\\s+(\\S+)\\s+(\\S+)", flags),
                                  boost::regex("\\s*UNATTPHY\\s+(\\S+)", flags)};

  bool symbolSeen = false;
  long lineNumber = 0;
  std::string raw;
  boost::smatch match;
  while (std::getline(stream, raw)) {
    ++lineNumber;
    const std::string line = rig_common::trim(raw);
    // A '#' anywhere voids the whole line.
    if (line.empty() || line.find('#') != std::string::npos) continue;

    if (boost::regex_match(line, match, symbolLine)) {
      symbolSeen = true;
      TMappingSymbol symbol;
      symbol.name = match.str(1);
      symbol.secondName = match.str(2);
      const std::vector<std::string> rest = words(match.str(3));
      symbol.comp = wordAt(rest, 0);
      symbol.extra1 = wordAt(rest, 1);
      symbol.extra2 = wordAt(rest, 2);
      mapping.symbols.push_back(std::move(symbol));
      continue;
    }
    if (boost::regex_match(line, match, pinLine)) {
      if (!symbolSeen) {
        RIG_LOG(sinks, Warn,
                "Reading mapping file:"
                    << " orphaned pin entry found at line " << lineNumber << " in file: " << path);
        continue;
      }
      TMappingPin pin;
      pin.name = rig_common::removeQuotes(match.str(1));
      const std::string mapped = rig_common::removeQuotes(match.str(2));
      boost::algorithm::split(pin.mappedNames, mapped, boost::algorithm::is_any_of(","));
      const std::vector<std::string> rest = words(match.str(3));
      if (rest.empty()) {
        RIG_LOG(sinks, Warn,
                "Reading mapping file:"
                    << " pin swap code has not been specified for a pin at line " << lineNumber
                    << " in file: " << path);
      } else if (rest.size() > 1) {
        RIG_LOG(sinks, Warn,
                "Reading mapping file:"
                    << " more than one pin swap code has been specified for a pin at line " << lineNumber
                    << " in file: " << path);
      }
      pin.swapCode = wordAt(rest, 0);
      mapping.symbols.back().pins.push_back(std::move(pin));
      continue;
    }
    bool known = false;
    for (const auto& expression : ignored)
      if (boost::regex_match(line, expression)) {
        known = true;
        break;
      }
    if (!known)
      RIG_LOG(sinks, Warn,
              "Reading mapping file:"
                  << " unknown keyword found in entry: '" << line << "'"
                  << " at line " << lineNumber << " in file: " << path);
  }
  return true;
}

}  // namespace MappingFile
}  // namespace NComponent
