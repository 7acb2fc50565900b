// The value catalogs and value properties of catalog_val_prop.xml, carried
// to and from the script as 1D lists.

#include <boost/filesystem.hpp>

#include "catalog_helpers.hpp"
#include "impl/cfg_file_managers_impl.hpp"
#include "list_registry.hpp"
#include "script_functions.hpp"

namespace fs = boost::filesystem;
using NComponent::NConfig::NCatalog::CCatalogPropValData;

namespace NComponent {

namespace {

const char kValueFile[] = "catalog_val_prop.xml";

// The two lists of the file differ only in their words and their accessors.
struct TValueList {
  const char* getPhrase;   // "Obtaining value catalog list"
  const char* savePhrase;  // "Saving value catalog list"
  CCatalogPropValData::CatIterator (CCatalogPropValData::*begin)();
  CCatalogPropValData::CatIterator (CCatalogPropValData::*end)();
  void (CCatalogPropValData::*clear)();
  void (CCatalogPropValData::*add)(const std::string&);
};

const TValueList kCatalogs = {"Obtaining value catalog list",      "Saving value catalog list",
                              &CCatalogPropValData::beginCatalogs, &CCatalogPropValData::endCatalogs,
                              &CCatalogPropValData::clearCatalogs, &CCatalogPropValData::addCatalog};
const TValueList kProperties = {"Obtaining value property list",       "Saving value catalog property list",
                                &CCatalogPropValData::beginProperties, &CCatalogPropValData::endProperties,
                                &CCatalogPropValData::clearProperties, &CCatalogPropValData::addProperty};

std::string getValueList(const TValueList& kind) {
  CScriptCall call;
  if (!call.ok()) return {};
  const std::string phrase = kind.getPhrase;
  RIG_LOG(call, Debug, phrase << ".");
  fs::path configDir;
  if (!NCatalog::configDirectory(call, configDir, phrase + ": cannot obtain path to the configuration directory."))
    return {};
  const fs::path file = configDir / kValueFile;
  CCatalogPropValData data(call.translation());
  if (!data.parse(file)) {
    RIG_LOG(call, Error, phrase << ": cannot obtain path to catalog value property file: " << file.string());
    return {};
  }
  const std::string rid = new1DList(gListRegistry);
  TList1D* list = find1D(rid);
  for (auto it = (data.*kind.begin)(), last = (data.*kind.end)(); it != last; ++it) list->push_back(*it);
  return rid;
}

bool saveValueList(const TValueList& kind, const std::string& rid) {
  CScriptCall call;
  if (!call.ok()) return false;
  const std::string phrase = kind.savePhrase;
  RIG_LOG(call, Debug, phrase << ".");
  fs::path configDir;
  if (!NCatalog::configDirectory(call, configDir, phrase + ": cannot obtain path to the configuration directory."))
    return false;
  const fs::path file = configDir / kValueFile;
  const TList1D* list = find1D(rid);
  if (list == nullptr) {
    RIG_LOG(call, Error, phrase << ": unknown RID has been passed.");
    return false;
  }
  CCatalogPropValData data(call.translation());
  if (!data.parse(file)) {
    RIG_LOG(call, Error, phrase << ": cannot parse file: " << file.string());
    return false;
  }
  (data.*kind.clear)();
  for (const std::string& name : *list) (data.*kind.add)(name);
  if (!data.write(file)) {
    RIG_LOG(call, Error, phrase << ": cannot save data to file: " << file.string());
    return false;
  }
  return true;
}

}  // namespace

std::string getValueCatalogList() { return getValueList(kCatalogs); }
std::string getValuePropertyList() { return getValueList(kProperties); }
bool saveValueCatalogList(const std::string& rid) { return saveValueList(kCatalogs, rid); }
bool saveValuePropertyList(const std::string& rid) { return saveValueList(kProperties, rid); }

}  // namespace NComponent
