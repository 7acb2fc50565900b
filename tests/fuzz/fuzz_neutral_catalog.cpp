// Neutral catalogs (<catalog>_neut.tlx) as the catalog steps read them.
#include "neutral_catalogs.hpp"
#include "support.hpp"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  vltfuzz::startComponent();
  NComponent::CScriptCall call;
  NComponent::NCatalog::TSoftPrefixes prefixes{{"$CORP_LIB", "/lib"}};
  NComponent::NCatalog::NeutralCatalogs catalogs(prefixes);
  catalogs.readQrnNeutralCatalog(vltfuzz::asFile(data, size), "cat", call);
  return 0;
}
