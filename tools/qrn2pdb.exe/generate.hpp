#pragma once
// The translation of a neutral catalog into a parts database text.

#include <iosfwd>
#include <map>
#include <string>
#include <vector>

#include "common/tlx_tree.hpp"
#include "inputs.hpp"

namespace qrn2pdb {

enum class TPinCase { kAsIs, kLower, kUpper };

struct TGeneratorInput {
  std::string catalog;
  int depth = 0;
  std::string symbolsDir;
  const TTranslationFile* caf = nullptr;
  const std::map<std::string, std::string>* partitions = nullptr;
  // With the pin list: the pins of each cell; null when pins are not checked.
  const std::map<std::string, std::vector<std::string>>* cellPins = nullptr;
  TPinCase pinCase = TPinCase::kAsIs;
};

struct TRejectedPart {
  std::string part, reason;
};

struct TGeneratorResult {
  rig_common::TLXNode database;  // the root of the parts database text
  std::vector<TRejectedPart> rejected;
  int written = 0;
};

// Translates every QRN_PART of `neutral`; "Error: ..." and "Warning: ..."
// lines go to `messages`.
void generateDatabase(const TGeneratorInput& in, rig_common::TLXNode& neutral, TGeneratorResult& result,
                      std::ostream& messages);

}  // namespace qrn2pdb
