// Component entry: InitComponent, the script function table and its binding.

#include <luabind/luabind.hpp>
#include <luabind/out_value_policy.hpp>
#include <type_traits>

#include "config_holder.hpp"
#include "misc.hpp"
#include "script_binding.hpp"
#include "script_functions.hpp"

namespace NComponent {

boost::shared_ptr<CComponent> gComponent;

namespace {

// One binding routine per handler signature.
template <class TSignature>
void bindAs(lua_State* state, const char* name, TGenericHandler handler) {
  luabind::module(state)[luabind::def(name, reinterpret_cast<TSignature*>(handler))];
}

// get_symbol_path_levels: the three int& are pure out values.
using TPathLevels = bool(int&, int&, int&);
static_assert(std::is_same<decltype(getSymbolPathLevels), TPathLevels>::value,
              "handler declaration differs from its table row");

void bindPathLevels(lua_State* state, const char* name, TGenericHandler handler) {
  using TSignature = TPathLevels;
  luabind::module(
      state)[luabind::def(name, reinterpret_cast<TSignature*>(handler),
                          luabind::pure_out_value(boost::arg<1>()) + luabind::pure_out_value(boost::arg<2>()) +
                              luabind::pure_out_value(boost::arg<3>()))];
}

using S = const std::string&;

// A row binds its handler with the signature written in the row; a
// declaration in script_functions.hpp that drifts from it stops the build
// instead of changing what the script sees.
template <class TExpected, class THandler>
TScriptFunction row(const char* name, THandler* handler) {
  static_assert(std::is_same<TExpected, THandler>::value, "handler declaration differs from its table row");
  return {name, reinterpret_cast<TGenericHandler>(handler), &bindAs<TExpected>};
}

// The rows stand in the order in which the lookup compares the names.
const TScriptFunction kScriptFunctions[] = {
    row<bool(S)>("create_wdir", &CreateWDir),
    row<bool(S)>("check_qrn_location_map", &checkQrnLocationMap),
    row<bool(S)>("check_vlt_library_definition_file", &checkVLTLibraryDefinitionFile),
    row<bool(S, S, S)>("check_vlt_library", &checkVLTLibrary),
    row<std::string(S)>("get_vlt_library_list", &getVLTLibraryList),
    row<std::string(S, S, S)>("get_catalog_list", &getCatalogList),
    row<bool(S)>("save_catalog_list", &saveCatalogList),
    row<void(bool)>("use_part_no_prop", &usePartNoProp),
    row<bool(S, S, S)>("save_catalogs", &saveCatalogs),
    row<bool(S, S, S)>("update_catalog_symbol_lists", &updateCatalogSymbolLists),
    row<bool(S, S, S)>("verify_catalogs", &verifyCatalogs),
    row<std::string()>("get_catalog_property_list", &getCatalogPropertyList),
    row<bool(S)>("save_catalog_property_list", &saveCatalogPropertyList),
    row<bool(bool)>("set_catalog_symbols_only", &setCatalogSymbolsOnly),
    row<bool(S, S, S)>("save_default_symbol_config", &saveDefaultSymbolConfig),
    row<bool(S, S, S, bool)>("create_symbol_partition_list", &createSymbolPartitionList),
    row<bool(S, S, S)>("partition_symbol_list", &partitionSymbolList),
    row<bool()>("update_partitioned_symbol_lists", &updatePartitionedSymbolLists),
    row<bool(S, bool)>("write_neutral_symbol_data", &writeNeutralSymbolData),
    row<bool(S)>("verify_symbols", &verifySymbols),
    row<bool()>("report_symbol_pin_spacing_map", &reportSymbolPinSpacingMap),
    row<bool(S, S, S)>("report_symbol_duplicates_from_path_depth", &reportSymbolDuplicatesFromPathDepth),
    row<bool()>("create_default_symbol_data_mapping", &createDefaultSymbolDataMapping),
    row<bool(S)>("convert_symbols", &convertSymbols),
    {"get_symbol_path_levels", reinterpret_cast<TGenericHandler>(&getSymbolPathLevels), &bindPathLevels},
    row<bool(int, int, int)>("set_symbol_path_levels", &setSymbolPathLevels),
    row<int(S, S, S)>("find_symbol_path_depth", &findSymbolPathDepth),
    row<int(S, S, S)>("find_symbol_max_path_depth", &findSymbolMaxPathDepth),
    row<int(S, S, S)>("find_symbol_max_directory_level", &::findSymbolMaxDirectoryLevel),
    row<std::string()>("get_symbol_partition_list", &getSymbolPartitionList),
    row<bool(S)>("save_symbol_partition_list", &saveSymbolPartitionList),
    row<std::string()>("get_symbol_property_list", &getSymbolPropertyList),
    row<bool(S)>("save_symbol_property_list", &saveSymbolPropertyList),
    row<std::string()>("get_symbol_pin_property_list", &getSymbolPinPropertyList),
    row<bool(S)>("save_symbol_pin_property_list", &saveSymbolPinPropertyList),
    row<std::string()>("get_symbol_pin_type_list", &getSymbolPinTypeList),
    row<bool(S)>("save_symbol_pin_type_list", &saveSymbolPinTypeList),
    row<std::string()>("get_symbol_scaling_list", &getSymbolScalingList),
    row<bool(S)>("save_symbol_scaling_list", &saveSymbolScalingList),
    row<bool()>("prepare_target_cl", &prepareTargetCL),
    row<bool()>("add_symbol_partitions", &addSymbolPartitions),
    row<bool()>("add_pdb_partitions", &addPDBPartitions),
    row<bool(S)>("add_cell_partitions", &addCellPartitions),
    row<bool(S)>("update_catalog_prop_mapping", &updateCatalogPropMapping),
    row<bool(S)>("generate_qrn_caf", &generateQrnCaf),
    row<bool(S)>("run_qrn_to_pdb", &runQrn2pdb),
    row<bool()>("import_pdb_to_zpc", &importPdbToZpc),
    row<bool()>("verify_qrn2pdb", &verifyQrn2pdb),
    row<std::string()>("get_value_catalog_list", &getValueCatalogList),
    row<std::string()>("get_value_property_list", &getValuePropertyList),
    row<bool(S)>("save_value_catalog_list", &saveValueCatalogList),
    row<bool(S)>("save_value_property_list", &saveValuePropertyList),
    row<std::string()>("get_lib_unit", &GetLibraryUnit),
    row<void(S)>("set_lib_unit", &SetLibraryUnit),
    row<bool(S, S, S)>("obtain_vlt_geom_path", &obtainVltGeomPath),
    row<bool(S, S, S)>("create_default_container", &createDefaultContainerFile),
    row<int(S)>("get_1d_list_size", &::get1DListSize),
    row<std::string(S, int)>("get_1d_list_item", &::get1DListItem),
    row<std::string()>("new_1d_list", &new1DList),
    row<void(S, S)>("add_item_to_1d_list", &addItemTo1DList),
    row<void(S)>("remove_1d_list", &::removeList),
    row<int(S)>("get_2d_list_size", &::get2DListSize),
    row<std::string(S, int, int)>("get_2d_list_item", &::get2DListItem),
    row<std::string()>("new_2d_list", &new2DList),
    row<void(S)>("add_row_to_2d_list", &addRowTo2DList),
    row<void(S, S)>("add_row_item_to_2d_list", &addRowItemTo2DList),
    row<void(S, S, S)>("add_two_col_item_to_2d_list", &addTwoColItemTo2DList),
    row<void(S)>("remove_2d_list", &::removeList),
};

static_assert(sizeof(kScriptFunctions) / sizeof(kScriptFunctions[0]) == 68, "68 script functions");

}  // namespace

bool bindScriptFunction(lua_State* state, const char* name) {
  const std::string wanted(name);
  for (const TScriptFunction& function : kScriptFunctions) {
    if (wanted != function.name) continue;
    if (function.handler == nullptr) return false;
    function.binder(state, function.name, function.handler);
    wrapBindingErrors(state, function.name);
    return true;
  }
  return false;
}

bool releaseComponent() {
  gComponent.reset();
  return false;
}

extern "C" bool InitComponent(TRegisterParams* params, const TPlatformServices* services) {
  log4cxx::LoggerPtr logger;
  if (!services->requestService("get component initialization logger", nullptr, &logger)) return false;
  RIG_LOG1(logger, Debug, "Component is starting: " << componentName());
  {
    CConfig config(logger);
    if (!config.parse(boost::filesystem::path(services->componentDirectory) / "config_vlt2hrw_main.xml")) return false;
    gComponent = boost::shared_ptr<CComponent>(new CComponent(*services));
    params->bindScriptFunction = &bindScriptFunction;
    params->releaseComponent = &releaseComponent;
    gComponent->setParameter("translator", "vlt2hrw");
    RIG_LOG1(logger, Debug, "Component started successfully: " << componentName());
  }
  return true;
}

}  // namespace NComponent
