// Component entry: InitComponent, the script function table and its binding.

#include <luabind/luabind.hpp>
#include <luabind/out_value_policy.hpp>

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
void bindPathLevels(lua_State* state, const char* name, TGenericHandler handler) {
  using TSignature = bool(int&, int&, int&);
  luabind::module(
      state)[luabind::def(name, reinterpret_cast<TSignature*>(handler),
                          luabind::pure_out_value(boost::arg<1>()) + luabind::pure_out_value(boost::arg<2>()) +
                              luabind::pure_out_value(boost::arg<3>()))];
}

using S = const std::string&;

template <class TSignature>
constexpr TScriptFunction row(const char* name, TSignature* handler) {
  return {name, reinterpret_cast<TGenericHandler>(handler), &bindAs<TSignature>};
}

// The rows stand in the order in which the lookup compares the names.
const TScriptFunction kScriptFunctions[] = {
    row("create_wdir", &CreateWDir),
    row("check_qrn_location_map", &checkQrnLocationMap),
    row("check_vlt_library_definition_file", &checkVLTLibraryDefinitionFile),
    row("check_vlt_library", &checkVLTLibrary),
    row("get_vlt_library_list", &getVLTLibraryList),
    row("get_catalog_list", &getCatalogList),
    row("save_catalog_list", &saveCatalogList),
    row("use_part_no_prop", &usePartNoProp),
    row("save_catalogs", &saveCatalogs),
    row("update_catalog_symbol_lists", &updateCatalogSymbolLists),
    row("verify_catalogs", &verifyCatalogs),
    row("get_catalog_property_list", &getCatalogPropertyList),
    row("save_catalog_property_list", &saveCatalogPropertyList),
    row("set_catalog_symbols_only", &setCatalogSymbolsOnly),
    row("save_default_symbol_config", &saveDefaultSymbolConfig),
    row("create_symbol_partition_list", &createSymbolPartitionList),
    row("partition_symbol_list", &partitionSymbolList),
    row("update_partitioned_symbol_lists", &updatePartitionedSymbolLists),
    row("write_neutral_symbol_data", &writeNeutralSymbolData),
    row("verify_symbols", &verifySymbols),
    row("report_symbol_pin_spacing_map", &reportSymbolPinSpacingMap),
    row("report_symbol_duplicates_from_path_depth", &reportSymbolDuplicatesFromPathDepth),
    row("create_default_symbol_data_mapping", &createDefaultSymbolDataMapping),
    row("convert_symbols", &convertSymbols),
    {"get_symbol_path_levels", reinterpret_cast<TGenericHandler>(&getSymbolPathLevels), &bindPathLevels},
    row("set_symbol_path_levels", &setSymbolPathLevels),
    row("find_symbol_path_depth", &findSymbolPathDepth),
    row("find_symbol_max_path_depth", &findSymbolMaxPathDepth),
    row("find_symbol_max_directory_level", &::findSymbolMaxDirectoryLevel),
    row("get_symbol_partition_list", &getSymbolPartitionList),
    row("save_symbol_partition_list", &saveSymbolPartitionList),
    row("get_symbol_property_list", &getSymbolPropertyList),
    row("save_symbol_property_list", &saveSymbolPropertyList),
    row("get_symbol_pin_property_list", &getSymbolPinPropertyList),
    row("save_symbol_pin_property_list", &saveSymbolPinPropertyList),
    row("get_symbol_pin_type_list", &getSymbolPinTypeList),
    row("save_symbol_pin_type_list", &saveSymbolPinTypeList),
    row("get_symbol_scaling_list", &getSymbolScalingList),
    row("save_symbol_scaling_list", &saveSymbolScalingList),
    row("prepare_target_cl", &prepareTargetCL),
    row("add_symbol_partitions", &addSymbolPartitions),
    row("add_pdb_partitions", &addPDBPartitions),
    row("add_cell_partitions", &addCellPartitions),
    row("update_catalog_prop_mapping", &updateCatalogPropMapping),
    row("generate_qrn_caf", &generateQrnCaf),
    row("run_qrn_to_pdb", &runQrn2pdb),
    row("import_pdb_to_zpc", &importPdbToZpc),
    row("verify_qrn2pdb", &verifyQrn2pdb),
    row("get_value_catalog_list", &getValueCatalogList),
    row("get_value_property_list", &getValuePropertyList),
    row("save_value_catalog_list", &saveValueCatalogList),
    row("save_value_property_list", &saveValuePropertyList),
    row("get_lib_unit", &GetLibraryUnit),
    row("set_lib_unit", &SetLibraryUnit),
    row("obtain_vlt_geom_path", &obtainVltGeomPath),
    row("create_default_container", &createDefaultContainerFile),
    row("get_1d_list_size", &::get1DListSize),
    row("get_1d_list_item", &::get1DListItem),
    row("new_1d_list", &new1DList),
    row("add_item_to_1d_list", &addItemTo1DList),
    row("remove_1d_list", &::removeList),
    row("get_2d_list_size", &::get2DListSize),
    row("get_2d_list_item", &::get2DListItem),
    row("new_2d_list", &new2DList),
    row("add_row_to_2d_list", &addRowTo2DList),
    row("add_row_item_to_2d_list", &addRowItemTo2DList),
    row("add_two_col_item_to_2d_list", &addTwoColItemTo2DList),
    row("remove_2d_list", &::removeList),
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
