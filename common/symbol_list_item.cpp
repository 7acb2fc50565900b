#include "common/symbol_list_item.hpp"

#include <algorithm>

#include "common/keywords.hpp"

namespace rig_common {
namespace symbol {

const char* const kSymbolPath = "SK_SYMBOL_PATH";
const char* const kCatalog = "CATALOG";
const char* const kPart = keyword::kQrnPart;
const char* const kComp = keyword::kQrnComp;
const char* const kSymbol = keyword::kQrnSymbol;
const char* const kNamePostfix = "NAME_POSTFIX";
const char* const kPinMap = "LOGIC_PIN_MAP";
const char* const kSourcePin = "SK_PIN";
const char* const kTargetPin = "TD_PIN";

namespace {

// Keywords of the use levels below the root, in depth order.
const char* const kUseKeywords[4] = {kCatalog, kPart, kComp, kSymbol};

std::string firstValue(const TLXNode* node) {
  return node != nullptr && !node->values.empty() ? node->values[0] : std::string();
}

// The child of `parent` behind `after` (from the start when `after` is null)
// with `keyword` and at least one value.
TLXNode* nextValued(const TLXNode* parent, const char* keyword, const TLXNode* after) {
  if (parent == nullptr) return nullptr;
  if (after != nullptr && after->parent != parent) return nullptr;
  TLXNode* node = after != nullptr ? after->nextSibling() : parent->children.front();
  for (; node != nullptr; node = node->nextSibling())
    if (!node->values.empty() && node->keyword == keyword) return node;
  return nullptr;
}

// Moves the walk of uses on from level k (1 = CATALOG .. 4 = QRN_SYMBOL):
// nodes[k] is advanced behind its current node, or to the first node when
// null; an exhausted level goes up, a found node goes down.
TSymbolUse advance(TLXNode* nodes[5], int k) {
  while (k >= 1) {
    TLXNode* found = nextValued(nodes[k - 1], kUseKeywords[k - 1], nodes[k]);
    if (found == nullptr) {
      nodes[k] = nullptr;
      --k;
      continue;
    }
    nodes[k] = found;
    if (k == 4) return {nodes[0], nodes[1], nodes[2], nodes[3], nodes[4]};
    nodes[++k] = nullptr;
  }
  return {};
}

// The own LOGIC_PIN_MAP of `symbolNode` whose SK_PIN has `pin`.
TLXNode* findPinMap(const TLXNode* symbolNode, const std::string& pin) {
  for (TLXNode* child : symbolNode->children)
    if (child->keyword == kPinMap && findChildByValue(child, kSourcePin, pin) != nullptr) return child;
  return nullptr;
}

TLXNode* findOrAdd(TLXNode* node, const char* keyword, const std::string& value) {
  TLXNode* child = findChildByValue(node, keyword, value);
  return child != nullptr ? child : node->addChild(keyword, value);
}

}  // namespace

std::string normaliseSymbolPath(const std::string& path) {
  std::string out;
  out.reserve(path.size());
  for (char c : path) {
    if (c == '\'' || c == '"') continue;
    out.push_back(c == '\\' ? '/' : c);
  }
  return out;
}

TLXNode* findChildByValue(const TLXNode* node, const std::string& keyword, const std::string& value) {
  if (node == nullptr) return nullptr;
  for (TLXNode* child : node->children) {
    if (child->keyword != keyword || child->values.empty()) continue;
    if (value.empty() || child->values[0] == value) return child;
  }
  return nullptr;
}

std::string TSymbolUse::catalogName() const { return firstValue(catalog); }
std::string TSymbolUse::partNumber() const { return firstValue(part); }
std::string TSymbolUse::compName() const { return firstValue(comp); }
std::string TSymbolUse::symbolName() const { return firstValue(symbol); }

// ---------------------------------------------------------------- construction

CSymbolListItem::CSymbolListItem(ILogger* logger) : logger(logger) {}

CSymbolListItem::CSymbolListItem(ILogger* logger, const std::string& path) : logger(logger) {
  if (path.empty()) return;
  root = std::make_unique<TLXNode>(1, kSymbolPath, normaliseSymbolPath(path));
}

CSymbolListItem::CSymbolListItem(ILogger* logger, const std::string& directory, const std::string& name)
    : logger(logger) {
  if (directory.empty() || name.empty()) return;
  root = std::make_unique<TLXNode>(1, kSymbolPath, normaliseSymbolPath(directory) + "/" + normaliseSymbolPath(name));
}

CSymbolListItem::CSymbolListItem(ILogger* logger, std::unique_ptr<TLXNode> tree)
    : root(std::move(tree)), logger(logger) {}

CSymbolListItem::CSymbolListItem(const CSymbolListItem& other)
    : root(other.root ? other.root->clone() : nullptr), logger(other.logger) {}

CSymbolListItem& CSymbolListItem::operator=(const CSymbolListItem& other) {
  if (this != &other) {
    root = other.root ? other.root->clone() : nullptr;
    logger = other.logger;
  }
  return *this;
}

// ---------------------------------------------------------------- path

std::string CSymbolListItem::getPath() const { return firstValue(root.get()); }

std::string CSymbolListItem::getDirectory() const {
  std::string path = getPath();
  size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(0, slash);
}

std::string CSymbolListItem::getName() const {
  std::string path = getPath();
  size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

bool CSymbolListItem::isValid(ILogger* log) const {
  if (!root || root->keyword != kSymbolPath) {
    if (log != nullptr)
      (*log)(log4rig::kError, std::string("Expected ") + kSymbolPath + " node not found. " +
                                  " Instead there is: " + (root ? root->keyword : std::string()));
    return false;
  }
  if (root->values.empty()) {
    if (log != nullptr) (*log)(log4rig::kError, "Path to SK symbol not found.");
    return false;
  }
  std::string path = normaliseSymbolPath(root->values[0]);
  if (path.find('/') == std::string::npos) {
    if (log != nullptr) (*log)(log4rig::kError, "Invalid path to SK symbol: " + path);
    return false;
  }
  return true;
}

// ---------------------------------------------------------------- uses

TLXNode* CSymbolListItem::addSymbolUse(const std::string& catalog, const std::string& part,
                                       const std::string& component, const std::string& symbolName) {
  if (!root) return nullptr;
  TLXNode* node = findOrAdd(root.get(), kCatalog, catalog);
  node = findOrAdd(node, kPart, part);
  node = findOrAdd(node, kComp, component);
  return findOrAdd(node, kSymbol, symbolName);
}

void CSymbolListItem::addPinMap(const std::string& catalog, const std::string& part, const std::string& component,
                                const std::string& symbolName, const std::string& sourcePin,
                                const std::string& targetPin) {
  TLXNode* symbolNode = addSymbolUse(catalog, part, component, symbolName);
  if (symbolNode == nullptr) return;
  TLXNode* map = findPinMap(symbolNode, sourcePin);
  if (map == nullptr) {
    map = symbolNode->addChildWithoutValue(kPinMap);
    map->addChild(kSourcePin, sourcePin);
  }
  TLXNode* target = map->findFirstChild(kTargetPin);
  if (target == nullptr)
    map->addChild(kTargetPin, targetPin);
  else
    target->setValue(0, targetPin);
}

void CSymbolListItem::setNamePostfix(const TSymbolUse& use, const std::string& postfix) {
  TLXNode* symbolNode = addSymbolUse(use.catalogName(), use.partNumber(), use.compName(), use.symbolName());
  if (symbolNode == nullptr) return;
  TLXNode* node = symbolNode->findFirstChild(kNamePostfix);
  if (node == nullptr)
    symbolNode->addChild(kNamePostfix, postfix);
  else
    node->setValue(0, postfix);
}

TSymbolUse CSymbolListItem::firstUse() const {
  TLXNode* nodes[5] = {root.get(), nullptr, nullptr, nullptr, nullptr};
  return advance(nodes, 1);
}

TSymbolUse CSymbolListItem::nextUse(const TSymbolUse& previous) const {
  if (previous.atEnd() || previous.root != root.get()) return {};
  TLXNode* nodes[5] = {previous.root, previous.catalog, previous.part, previous.comp, previous.symbol};
  return advance(nodes, 4);
}

// ---------------------------------------------------------------- merge

void CSymbolListItem::merge(const CSymbolListItem& other) {
  if (&other == this) return;
  if (getPath() != other.getPath()) {
    root = other.root ? other.root->clone() : nullptr;
    return;
  }
  if (getPath().empty()) return;

  for (const TLXNode* catalog : other.root->children) {
    if (catalog->keyword != kCatalog || catalog->values.empty()) continue;
    for (const TLXNode* part : catalog->children) {
      if (part->keyword != kPart || part->values.empty()) continue;
      for (const TLXNode* comp : part->children) {
        if (comp->keyword != kComp || comp->values.empty()) continue;
        for (const TLXNode* sym : comp->children) {
          if (sym->keyword != kSymbol || sym->values.empty()) continue;
          TLXNode* own = findChildByValue(root.get(), kCatalog, catalog->values[0]);
          own = findChildByValue(own, kPart, part->values[0]);
          own = findChildByValue(own, kComp, comp->values[0]);
          own = findChildByValue(own, kSymbol, sym->values[0]);
          if (own == nullptr) {
            // The whole catalog of the other item comes over, so a catalog
            // can be present twice, with its other branches.
            root->adoptChild(catalog->clone());
            continue;
          }
          for (const TLXNode* map : sym->children) {
            if (map->keyword != kPinMap) continue;
            for (const TLXNode* pin : map->children) {
              if (pin->keyword != kSourcePin || pin->values.empty()) continue;
              if (TLXNode* ownMap = findPinMap(own, pin->values[0])) {
                own->detachChild(ownMap);
                break;
              }
            }
            own->adoptChild(map->clone());
          }
        }
      }
    }
  }
}

}  // namespace symbol
}  // namespace rig_common
