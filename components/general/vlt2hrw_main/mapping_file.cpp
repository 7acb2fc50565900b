// Reader of the symbol/pin mapping files.

#include "mapping_file.hpp"

#include <algorithm>
#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>
#include <cctype>

#include "common/text_file.hpp"
#include "common/text_helpers.hpp"
#include "misc.hpp"

namespace NComponent {

namespace {
// The text every message of the script function starts with.
const std::string kPrefix = "Reading mapping file: ";
}  // namespace
namespace MappingFile {

namespace {

// White space between the words of a line.
bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\v' || c == '\f' || c == '\r'; }

// The words of `text`, split at runs of white space. Lines are cut into
// words by hand: a mapping file is read per part, and regular expressions
// built for every file and line cost more than the tools the step runs.
std::vector<std::string> words(const std::string& text) {
  std::vector<std::string> out;
  size_t i = 0;
  while (true) {
    while (i < text.size() && isBlank(text[i])) ++i;
    if (i == text.size()) return out;
    const size_t start = i;
    while (i < text.size() && !isBlank(text[i])) ++i;
    out.emplace_back(text, start, i - start);
  }
}

// `word` is `keyword` in any case.
bool isKeyword(const std::string& word, const char* keyword) {
  size_t i = 0;
  for (; i < word.size() && keyword[i] != '\0'; ++i)
    if (std::toupper(static_cast<unsigned char>(word[i])) != static_cast<unsigned char>(keyword[i])) return false;
  return i == word.size() && keyword[i] == '\0';
}

// The keywords the reader knows and has no use for, with the number of
// words a line of each has (the keyword included); PINSET takes any
// number from two on.
bool isIgnoredEntry(const std::vector<std::string>& w) {
  static const struct {
    const char* keyword;
    size_t words;
  } kIgnored[] = {{"COMMON", 3}, {"POWER", 3}, {"BLOCK", 3}, {"SUBSYMBOL", 1}, {"SUBPIN", 3}, {"UNATTPHY", 2}};
  if (w.empty()) return false;
  if (isKeyword(w[0], "PINSET")) return w.size() >= 2;
  for (const auto& entry : kIgnored)
    if (isKeyword(w[0], entry.keyword)) return w.size() == entry.words;
  return false;
}

std::string wordAt(const std::vector<std::string>& list, size_t index) {
  return index < list.size() ? rig_common::removeQuotes(list[index]) : std::string();
}

}  // namespace

bool readMappingFile(MappingFile& mapping, const boost::filesystem::path& file,
                     const rig_common::log4rig::TSinks& sinks) {
  const std::string path = file.string();
  RIG_LOG(sinks, Debug, kPrefix << path);
  std::string text;
  if (!rig_common::readTextFile(path, text)) {
    RIG_LOG(sinks, Error, kPrefix + "cannot open mapping file for reading: " << path);
    return false;
  }

  bool symbolSeen = false;
  long lineNumber = 0;
  // Lines as std::getline cuts them: a last line needs no line end.
  for (size_t at = 0, end; at < text.size(); at = end + 1) {
    end = std::min(text.find('\n', at), text.size());
    ++lineNumber;
    const std::string line = rig_common::trim(text.substr(at, end - at));
    // A '#' anywhere voids the whole line.
    if (line.empty() || line.find('#') != std::string::npos) continue;
    const std::vector<std::string> w = words(line);

    // SYMBOL <name> <second name> [COMP [extra [extra]]]
    if (w.size() >= 3 && isKeyword(w[0], "SYMBOL")) {
      symbolSeen = true;
      TMappingSymbol symbol;
      symbol.name = w[1];
      symbol.secondName = w[2];
      symbol.comp = wordAt(w, 3);
      symbol.extra1 = wordAt(w, 4);
      symbol.extra2 = wordAt(w, 5);
      mapping.symbols.push_back(std::move(symbol));
      continue;
    }
    // PIN <pin> <physical pins, comma-separated> <swap code>
    if (w.size() >= 3 && isKeyword(w[0], "PIN")) {
      if (!symbolSeen) {
        RIG_LOG(sinks, Warn,
                "Reading mapping file:"
                    << " orphaned pin entry found at line " << lineNumber << " in file: " << path);
        continue;
      }
      TMappingPin pin;
      pin.name = rig_common::removeQuotes(w[1]);
      const std::string mapped = rig_common::removeQuotes(w[2]);
      boost::algorithm::split(pin.mappedNames, mapped, boost::algorithm::is_any_of(","));
      if (w.size() == 3) {
        RIG_LOG(sinks, Warn,
                "Reading mapping file:"
                    << " pin swap code has not been specified for a pin at line " << lineNumber
                    << " in file: " << path);
      } else if (w.size() > 4) {
        RIG_LOG(sinks, Warn,
                "Reading mapping file:"
                    << " more than one pin swap code has been specified for a pin at line " << lineNumber
                    << " in file: " << path);
      }
      pin.swapCode = wordAt(w, 3);
      mapping.symbols.back().pins.push_back(std::move(pin));
      continue;
    }
    if (!isIgnoredEntry(w))
      RIG_LOG(sinks, Warn,
              "Reading mapping file:"
                  << " unknown keyword found in entry: '" << line << "'"
                  << " at line " << lineNumber << " in file: " << path);
  }
  return true;
}

}  // namespace MappingFile
}  // namespace NComponent
