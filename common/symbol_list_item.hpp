#pragma once
// One item of a symbol list: a symbol known by its full path, with the
// catalogs, parts, components and symbol names that use it, and their pin
// maps. The item is a keyword tree whose root is the SK_SYMBOL_PATH node:
//
//   .SK_SYMBOL_PATH <dir>/<name>
//   ..CATALOG <catalog>
//   ...QRN_PART <part number>
//   ....QRN_COMP <component>
//   .....QRN_SYMBOL <symbol name in the component>
//   ......NAME_POSTFIX <postfix>
//   ......LOGIC_PIN_MAP
//   .......SK_PIN <source pin>
//   .......TD_PIN <target pin>

#include <memory>
#include <string>

#include "common/tlx_tree.hpp"

namespace rig_common {
namespace symbol {

using log4rig::ILogger;

extern const char* const kSymbolPath;   // "SK_SYMBOL_PATH"
extern const char* const kCatalog;      // "CATALOG"
extern const char* const kPart;         // "QRN_PART"
extern const char* const kComp;         // "QRN_COMP"
extern const char* const kSymbol;       // "QRN_SYMBOL"
extern const char* const kNamePostfix;  // "NAME_POSTFIX"
extern const char* const kPinMap;       // "LOGIC_PIN_MAP"
extern const char* const kSourcePin;    // "SK_PIN"
extern const char* const kTargetPin;    // "TD_PIN"

// Removes every ' and " and turns \ into /.
std::string normaliseSymbolPath(const std::string& path);

// One use of a symbol: the nodes of the item's root, a CATALOG, a QRN_PART,
// a QRN_COMP and a QRN_SYMBOL. All null marks the end of a walk.
struct TSymbolUse {
  TLXNode* root = nullptr;
  TLXNode* catalog = nullptr;
  TLXNode* part = nullptr;
  TLXNode* comp = nullptr;
  TLXNode* symbol = nullptr;

  bool atEnd() const { return symbol == nullptr; }
  // First values of the four use nodes (empty for a null node).
  std::string catalogName() const;
  std::string partNumber() const;
  std::string compName() const;
  std::string symbolName() const;
};

class CSymbolListItem {
 public:
  // An empty item.
  explicit CSymbolListItem(ILogger* logger = nullptr);
  // With a non-empty path: a root whose value is the normalised path.
  CSymbolListItem(ILogger* logger, const std::string& path);
  // With a non-empty directory and name: "<directory>/<name>", each normalised.
  CSymbolListItem(ILogger* logger, const std::string& directory, const std::string& name);
  // Takes over a tree as it stands (a node read from a file).
  CSymbolListItem(ILogger* logger, std::unique_ptr<TLXNode> root);

  CSymbolListItem(const CSymbolListItem& other);  // deep copy
  CSymbolListItem& operator=(const CSymbolListItem& other);
  CSymbolListItem(CSymbolListItem&&) noexcept = default;
  CSymbolListItem& operator=(CSymbolListItem&&) noexcept = default;
  ~CSymbolListItem() = default;

  bool empty() const { return !root; }
  // First value of the root, or empty.
  std::string getPath() const;
  // getPath up to the last '/' (the whole path when it has none).
  std::string getDirectory() const;
  // getPath behind the last '/'.
  std::string getName() const;

  // SK_SYMBOL_PATH root with a value that holds a '/'; failures are
  // reported to `logger` (may be null) at level 5.
  bool isValid(ILogger* logger) const;

  // Finds or makes CATALOG, QRN_PART, QRN_COMP, QRN_SYMBOL by value.
  // Returns the QRN_SYMBOL node (null on an empty item).
  TLXNode* addSymbolUse(const std::string& catalog, const std::string& part, const std::string& component,
                        const std::string& symbol);
  // addSymbolUse, then the LOGIC_PIN_MAP with that SK_PIN (made when
  // missing), whose TD_PIN becomes targetPin.
  void addPinMap(const std::string& catalog, const std::string& part, const std::string& component,
                 const std::string& symbol, const std::string& sourcePin, const std::string& targetPin);
  // Sets the NAME_POSTFIX of the use with the values of `use` (which may
  // belong to another item), making nodes where they are missing.
  void setNamePostfix(const TSymbolUse& use, const std::string& postfix);

  // Merges `other` into this item: another path replaces the whole tree by a
  // copy of other's; the same path adds other's uses and pin maps.
  void merge(const CSymbolListItem& other);

  // The uses, depth first in tree order; nodes without a value are skipped
  // with their subtrees.
  TSymbolUse firstUse() const;
  TSymbolUse nextUse(const TSymbolUse& previous) const;

  std::unique_ptr<TLXNode> root;
  ILogger* logger = nullptr;
};

// Looks among the children of `node` with `keyword` for one whose first
// value is `value`; children without a value never match, an empty `value`
// matches the first child with a value.
TLXNode* findChildByValue(const TLXNode* node, const std::string& keyword, const std::string& value);

}  // namespace symbol
}  // namespace rig_common
