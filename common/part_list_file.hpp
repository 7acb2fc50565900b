#pragma once
// Part list files (excluded_parts.caf): plain text, one part a line,
// "<catalog> <part number>". Lines are trimmed of blanks, tabs, carriage
// returns and line feeds; empty lines and lines starting with "//" are
// skipped; the part number is the whole trimmed rest and may hold blanks;
// a line without a part number is skipped without a word.

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace rig_common {

class CPartListFileHandler {
 public:
  using TPart = std::pair<std::string, std::string>;  // catalog, part number

  CPartListFileHandler() = default;
  virtual ~CPartListFileHandler() = default;

  // The pairs in file order.
  const std::vector<TPart>& parts() const { return mParts; }
  // Exact comparison of both strings.
  bool contains(const std::string& catalog, const std::string& partNumber) const;

 protected:
  void addPart(const std::string& catalog, const std::string& partNumber);

 private:
  std::vector<TPart> mParts;
  std::set<TPart> mIndex;
};

class CPartListFileReader : public CPartListFileHandler {
 public:
  // False when the file cannot be opened; otherwise reads every line.
  bool read(const std::string& fileName);
};

}  // namespace rig_common
