#include "common/symbol_list.hpp"

namespace rig_common {
namespace symbol {

CSymbolList::CSymbolList(const CSymbolList& other) : logger(other.logger), mItems(other.mItems) { rebuildIndex(); }

CSymbolList& CSymbolList::operator=(const CSymbolList& other) {
  if (this != &other) {
    logger = other.logger;
    mItems = other.mItems;
    rebuildIndex();
  }
  return *this;
}

void CSymbolList::index(CSymbolListItem& item) {
  std::string path = item.getPath();
  ++mNormalised[normaliseSymbolPath(path)];
  mByPath.emplace(std::move(path), &item);  // keeps the first item of a path
}

void CSymbolList::rebuildIndex() {
  mByPath.clear();
  mNormalised.clear();
  for (auto& item : mItems) index(item);
}

void CSymbolList::add(const CSymbolListItem& item) {
  if (CSymbolListItem* own = find(item.getPath())) {
    own->merge(item);
    return;
  }
  mItems.push_back(item);
  index(mItems.back());
}

void CSymbolList::add(CSymbolListItem&& item) {
  if (CSymbolListItem* own = find(item.getPath())) {
    own->merge(item);
    return;
  }
  append(std::move(item));
}

void CSymbolList::addAll(const CSymbolList& list) {
  if (&list == this) return;  // every item would merge into itself
  for (const auto& item : list) add(item);
}

void CSymbolList::append(CSymbolListItem&& item) {
  mItems.push_back(std::move(item));
  index(mItems.back());
}

bool CSymbolList::contains(const std::string& directory, const std::string& name) const {
  return mNormalised.count(normaliseSymbolPath(directory) + "/" + normaliseSymbolPath(name)) > 0;
}

CSymbolListItem* CSymbolList::find(const std::string& path) {
  auto it = mByPath.find(path);
  return it == mByPath.end() ? nullptr : it->second;
}

const CSymbolListItem* CSymbolList::find(const std::string& path) const {
  auto it = mByPath.find(path);
  return it == mByPath.end() ? nullptr : it->second;
}

void CSymbolList::clear() {
  mItems.clear();
  mByPath.clear();
  mNormalised.clear();
}

}  // namespace symbol
}  // namespace rig_common
