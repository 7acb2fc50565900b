#pragma once
// The in-memory symbol list: items in insertion order, at most one per path
// as long as they arrive through add(). An index from path to item sits
// beside the list, so add() and contains() do not search the whole list.
//
// Items reached through begin()/end() may be changed below their root, but
// their path must stay as it is while they are in the list.

#include <list>
#include <string>
#include <unordered_map>

#include "common/symbol_list_item.hpp"

namespace rig_common {
namespace symbol {

class CSymbolList {
 public:
  using TItems = std::list<CSymbolListItem>;
  using iterator = TItems::iterator;
  using const_iterator = TItems::const_iterator;

  explicit CSymbolList(ILogger* logger = nullptr) : logger(logger) {}
  CSymbolList(const CSymbolList& other);
  CSymbolList& operator=(const CSymbolList& other);
  CSymbolList(CSymbolList&&) = default;
  CSymbolList& operator=(CSymbolList&&) = default;

  // Merges into the item of the same path (exact comparison), or appends a
  // copy of `item`.
  void add(const CSymbolListItem& item);
  void add(CSymbolListItem&& item);
  // add() of each item of `list`, in order.
  void addAll(const CSymbolList& list);
  // Empties the list, then add() of a new item for each path.
  template <class TPaths>
  void assign(const TPaths& paths) {
    clear();
    for (const auto& path : paths) add(CSymbolListItem(logger, std::string(path)));
  }
  // Appends without merging, so that a list can hold two items of one path
  // (a file with repeated items reads so).
  void append(CSymbolListItem&& item);
  // True when an item's path, with quotes removed and '\' turned into '/',
  // is "<directory>/<name>" normalised the same way.
  bool contains(const std::string& directory, const std::string& name) const;
  // The first item with exactly this path, or null.
  CSymbolListItem* find(const std::string& path);
  const CSymbolListItem* find(const std::string& path) const;
  void clear();

  size_t size() const { return mItems.size(); }
  bool empty() const { return mItems.empty(); }
  iterator begin() { return mItems.begin(); }
  iterator end() { return mItems.end(); }
  const_iterator begin() const { return mItems.begin(); }
  const_iterator end() const { return mItems.end(); }

  ILogger* logger = nullptr;

 private:
  void index(CSymbolListItem& item);
  void rebuildIndex();

  TItems mItems;
  std::unordered_map<std::string, CSymbolListItem*> mByPath;  // first item of each path
  std::unordered_map<std::string, size_t> mNormalised;        // normalised path -> number of items
};

}  // namespace symbol

using symbol::CSymbolList;
using symbol::CSymbolListItem;
using symbol::TSymbolUse;

}  // namespace rig_common
