#include "common/part_list_file.hpp"

#include <fstream>

#include "common/text_helpers.hpp"

namespace rig_common {

namespace {

// [begin, end) of `text` without blanks at both ends.
void trimRange(const std::string& text, size_t& begin, size_t& end) {
  while (begin < end && isLineBlank(text[begin])) ++begin;
  while (end > begin && isLineBlank(text[end - 1])) --end;
}
}  // namespace

bool CPartListFileHandler::contains(const std::string& catalog, const std::string& partNumber) const {
  return mIndex.count(TPart(catalog, partNumber)) > 0;
}

void CPartListFileHandler::addPart(const std::string& catalog, const std::string& partNumber) {
  mParts.emplace_back(catalog, partNumber);
  mIndex.insert(mParts.back());
}

bool CPartListFileReader::read(const std::string& fileName) {
  std::ifstream stream(fileName);
  if (!stream.is_open()) return false;
  std::string line;
  while (std::getline(stream, line)) {
    size_t begin = 0, end = line.size();
    trimRange(line, begin, end);
    if (begin == end || line.compare(begin, 2, "//") == 0) continue;
    size_t split = begin;
    while (split < end && !isLineBlank(line[split])) ++split;
    size_t rest = split;
    trimRange(line, rest, end);
    if (rest == end) continue;  // no part number
    addPart(line.substr(begin, split - begin), line.substr(rest, end - rest));
  }
  return true;
}

}  // namespace rig_common
