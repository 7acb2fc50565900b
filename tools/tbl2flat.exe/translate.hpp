#pragma once
// Translation of one catalog entry into the catalog tool's outputs.

#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "catalog_entry.hpp"
#include "common/part_list_file.hpp"
#include "common/symbol_list.hpp"
#include "common/tlx_tree.hpp"

namespace tbl2flat {

// The marker written for a blank symbol ("-" in the catalog entry).
extern const char* const kBlankSymbol;  // "VLTTRANSDELETEME"
// The nodes that carry a value property of a value catalog.
extern const char* const kValueProperty;  // "QRN_VALUE_PROPERTY"
extern const char* const kValue;          // "QRN_VALUE"

struct TTranslationInput {
  std::string catalog;  // the catalog's name: the leaf name of the entry's path
  const TCatalogEntry* entry = nullptr;
  const TPrefixTable* prefixes = nullptr;
  const rig_common::CPartListFileReader* excluded = nullptr;
  const TValueData* values = nullptr;
  bool partNoSwap = false;  // -w: the part number is the PART_NO property
};

struct TRejectedPart {
  std::string part;  // the PART statement's number
  std::string reason;
};

struct TTranslation {
  rig_common::TLXNode neutral;             // root of the neutral catalog
  std::vector<std::string> propertyNames;  // order of first use
  rig_common::CSymbolList symbols;
  std::vector<TRejectedPart> rejected;
  int translated = 0;
  int excluded = 0;
};

// Translates every part; "Error: ..." (rejected part) and "Warning: ..."
// (translated part with a problem) lines go to `out`.
void translateCatalog(const TTranslationInput& input, TTranslation& result, std::ostream& out);

}  // namespace tbl2flat
