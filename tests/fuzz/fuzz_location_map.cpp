// The location map: the component's reader (loud and silent), the silent
// table reader of the neutral catalogs, and the catalog tool's reader.
#include <boost/filesystem/exception.hpp>

#include "components/hpp/impl/qlln_general_impl.hpp"
#include "neutral_catalogs.hpp"
#include "support.hpp"
#include "tools/tbl2flat.exe/catalog_entry.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vltfuzz::startComponent();
  NComponent::CScriptCall call;
  const std::string file = vltfuzz::asFile(data, size);
  for (bool verbose : {true, false}) {
    QllnGeneral::TLocationMap map;
    try {
      QllnGeneral::readLocationMap(call, map, file, verbose);
    } catch (const boost::filesystem::filesystem_error&) {
      // A path the file system refuses (too long, say) is a file system
      // error, which the binding layer turns into a Lua error.
    }
  }
  NComponent::NCatalog::TSoftPrefixes table;
  NComponent::NCatalog::readLocationMapTable(file, table);
  NComponent::NCatalog::NeutralCatalogs(table).replaceSoftPrefixes("$CORP_LIB/x\\y");
  tbl2flat::TPrefixTable prefixes;
  tbl2flat::readLocationMap(file, prefixes);
  std::string resolved, unresolved;
  for (const auto& prefix : prefixes) tbl2flat::resolveLocation(prefix.first + "/a", prefixes, resolved, unresolved);
  return 0;
}
