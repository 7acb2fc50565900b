// List handles: the registry and its script functions.

#include <cstdint>
#include <stdexcept>

#include "list_registry.hpp"
#include "misc.hpp"
#include "script_functions.hpp"

namespace NComponent {

TListRegistryPtr gListRegistry(new TListRegistry);

namespace {

class CItemMissing : public std::exception {
 public:
  const char* what() const noexcept override { return "Item does not exists."; }
};

// The deleter of a registry entry; its type is the list's kind.
template <class TList>
struct CListDeleter {
  void operator()(void* list) const { delete static_cast<TList*>(list); }
};

template <class TList>
std::string addList(const TListRegistryPtr& registry) {
  TList* list = new TList;
  std::string rid = std::to_string(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(list)));
  (*registry)[rid] = boost::shared_ptr<void>(static_cast<void*>(list), CListDeleter<TList>());
  return rid;
}

template <class TList>
TList* findTyped(const TListRegistryPtr& registry, const std::string& rid) {
  auto found = registry->find(rid);
  if (found == registry->end() || boost::get_deleter<CListDeleter<TList>>(found->second) == nullptr) return nullptr;
  return static_cast<TList*>(found->second.get());
}

}  // namespace

std::string new1DList(TListRegistryPtr registry) { return addList<TList1D>(registry); }
std::string new2DList(TListRegistryPtr registry) { return addList<TList2D>(registry); }

void* find(TListRegistryPtr registry, const std::string& rid) {
  auto found = registry->find(rid);
  return found == registry->end() ? nullptr : found->second.get();
}

TList1D* find1D(const std::string& rid) { return findTyped<TList1D>(gListRegistry, rid); }
TList2D* find2D(const std::string& rid) { return findTyped<TList2D>(gListRegistry, rid); }

std::string item(TListRegistryPtr registry, const std::string& rid, int index) {
  auto* list = findTyped<TList1D>(registry, rid);
  if (list == nullptr || index < 0 || static_cast<size_t>(index) >= list->size()) throw CItemMissing();
  return (*list)[index];
}

std::string item(TListRegistryPtr registry, const std::string& rid, int row, int column) {
  auto* list = findTyped<TList2D>(registry, rid);
  if (list == nullptr || row < 0 || static_cast<size_t>(row) >= list->size()) throw CItemMissing();
  const auto& cells = (*list)[row];
  if (column < 0 || static_cast<size_t>(column) >= cells.size()) throw CItemMissing();
  return cells[column];
}

std::string new1DList() {
  CScriptCall call;
  if (!call.ok()) return {};
  RIG_LOG1(call.component(), Debug, "Creating 1D list.");
  return new1DList(gListRegistry);
}

std::string new2DList() {
  CScriptCall call;
  if (!call.ok()) return {};
  RIG_LOG1(call.component(), Debug, "Creating 2D list.");
  return new2DList(gListRegistry);
}

void addItemTo1DList(const std::string& rid, const std::string& value) {
  CScriptCall call;
  if (!call.ok()) return;
  TList1D* list = find1D(rid);
  if (list == nullptr) {
    RIG_LOG(call, Error, "Invalid RID passed to add_item_to_1d_list() function.");
    return;
  }
  list->push_back(value);
}

void addRowTo2DList(const std::string& rid) {
  CScriptCall call;
  if (!call.ok()) return;
  TList2D* list = find2D(rid);
  if (list == nullptr) {
    RIG_LOG(call, Error, "Invalid RID passed to add_row_to_2d_list() function.");
    return;
  }
  list->emplace_back();
}

void addRowItemTo2DList(const std::string& rid, const std::string& value) {
  CScriptCall call;
  if (!call.ok()) return;
  TList2D* list = find2D(rid);
  if (list == nullptr) {
    RIG_LOG(call, Error, "Invalid RID passed to add_row_item_to_2d_list() function.");
    return;
  }
  if (list->empty()) {
    RIG_LOG(call, Error, "List is empty - the item cannot be added.");
    return;
  }
  list->back().push_back(value);
}

void addTwoColItemTo2DList(const std::string& rid, const std::string& item1, const std::string& item2) {
  CScriptCall call;
  if (!call.ok()) return;
  TList2D* list = find2D(rid);
  if (list == nullptr) {
    // The message names add_item_to_1d_list: scripts and users know it so.
    RIG_LOG(call, Error, "Invalid RID passed to add_item_to_1d_list() function.");
    return;
  }
  list->push_back({item1, item2});
}

}  // namespace NComponent

int get1DListSize(const std::string& rid) {
  auto* list = NComponent::find1D(rid);
  return list == nullptr ? -1 : static_cast<int>(list->size());
}

std::string get1DListItem(const std::string& rid, int index) {
  try {
    return NComponent::item(NComponent::gListRegistry, rid, index);
  } catch (const std::exception&) {
    return {};
  }
}

int get2DListSize(const std::string& rid) {
  auto* list = NComponent::find2D(rid);
  return list == nullptr ? -1 : static_cast<int>(list->size());
}

std::string get2DListItem(const std::string& rid, int row, int column) {
  try {
    return NComponent::item(NComponent::gListRegistry, rid, row, column);
  } catch (const std::exception&) {
    return {};
  }
}

void removeList(const std::string& rid) { NComponent::gListRegistry->erase(rid); }
