#pragma once
// The list registry: string lists that the script holds by RID.

#include <boost/shared_ptr.hpp>
#include <map>
#include <string>
#include <vector>

namespace NComponent {

using TList1D = std::vector<std::string>;
using TList2D = std::vector<std::vector<std::string>>;
using TListRegistry = std::map<std::string, boost::shared_ptr<void>>;
using TListRegistryPtr = boost::shared_ptr<TListRegistry>;

// The process-wide registry; it outlives releaseComponent.
extern TListRegistryPtr gListRegistry;

std::string new1DList(TListRegistryPtr registry);
std::string new2DList(TListRegistryPtr registry);
void* find(TListRegistryPtr registry, const std::string& rid);
// Throw std::exception "Item does not exists." for an unknown RID or an
// index out of range.
std::string item(TListRegistryPtr registry, const std::string& rid, int index);
std::string item(TListRegistryPtr registry, const std::string& rid, int row, int column);

// Typed access for the functions that fill or read lists; null for an
// unknown RID and for the RID of a list of the other kind, which a script
// may hand over by mistake (the list's deleter tells its kind).
TList1D* find1D(const std::string& rid);
TList2D* find2D(const std::string& rid);

}  // namespace NComponent
