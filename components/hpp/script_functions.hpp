#pragma once
// Index of the handlers of the 68 script functions, grouped by the file of
// components/general/vlt2hrw_main/ that defines them. The table in
// vlt2hrw_main.cpp binds each under its script name; a static_assert there
// keeps the table and this index in step.
//
// The declarations are weak: a handler whose area has not been written yet
// stays a null address, which the table answers like an unknown name.
//
// Most script functions take the same three library arguments: the name of
// the library in the definition file, the location map file and the
// library directory.

#include <string>

#define VLT_SCRIPT_FN __attribute__((weak))

namespace NComponent {
using string = std::string;

// working_directory.cpp
VLT_SCRIPT_FN bool CreateWDir(const string& wdir);

// check_vlt_cfg.cpp
VLT_SCRIPT_FN bool checkQrnLocationMap(const string& locationMapFile);
VLT_SCRIPT_FN bool checkVLTLibraryDefinitionFile(const string& libraryDir);
VLT_SCRIPT_FN bool checkVLTLibrary(const string& libraryName, const string& locationMapFile, const string& libraryDir);

// vlt_library_cfg.cpp
VLT_SCRIPT_FN string getVLTLibraryList(const string& libraryDir);

// catalogs.cpp
VLT_SCRIPT_FN string getCatalogList(const string& libraryName, const string& locationMapFile, const string& libraryDir);
VLT_SCRIPT_FN bool saveCatalogList(const string& rid);
VLT_SCRIPT_FN void usePartNoProp(bool on);
VLT_SCRIPT_FN bool setCatalogSymbolsOnly(bool on);
// catalogs_save.cpp
VLT_SCRIPT_FN bool saveCatalogs(const string& libraryName, const string& locationMapFile, const string& libraryDir);
// catalogs_verify.cpp
VLT_SCRIPT_FN bool verifyCatalogs(const string& libraryName, const string& locationMapFile, const string& libraryDir);
// catalog_symbol_lists.cpp
VLT_SCRIPT_FN bool updateCatalogSymbolLists(const string& libraryName, const string& locationMapFile,
                                            const string& libraryDir);
// catalog_properties.cpp
VLT_SCRIPT_FN string getCatalogPropertyList();
VLT_SCRIPT_FN bool saveCatalogPropertyList(const string& rid);
VLT_SCRIPT_FN bool updateCatalogPropMapping(const string& ignored);

// symbols_list.cpp
VLT_SCRIPT_FN bool saveDefaultSymbolConfig(const string& libraryName, const string& locationMapFile,
                                           const string& libraryDir);
// symbols_path_depth.cpp
VLT_SCRIPT_FN int findSymbolPathDepth(const string& libraryName, const string& locationMapFile,
                                      const string& libraryDir);
VLT_SCRIPT_FN int findSymbolMaxPathDepth(const string& libraryName, const string& locationMapFile,
                                         const string& libraryDir);
VLT_SCRIPT_FN bool reportSymbolDuplicatesFromPathDepth(const string& libraryName, const string& locationMapFile,
                                                       const string& libraryDir);
// symbols_partitions.cpp
VLT_SCRIPT_FN bool createSymbolPartitionList(const string& libraryName, const string& locationMapFile,
                                             const string& libraryDir, bool keepExisting);
VLT_SCRIPT_FN bool partitionSymbolList(const string& libraryName, const string& locationMapFile,
                                       const string& libraryDir);
VLT_SCRIPT_FN bool updatePartitionedSymbolLists();
VLT_SCRIPT_FN string getSymbolPartitionList();
VLT_SCRIPT_FN bool saveSymbolPartitionList(const string& rid);
VLT_SCRIPT_FN bool getSymbolPathLevels(int& start, int& stop, int& depth);
VLT_SCRIPT_FN bool setSymbolPathLevels(int start, int stop, int depth);
// symbols_mapping_lists.cpp
VLT_SCRIPT_FN string getSymbolPropertyList();
VLT_SCRIPT_FN bool saveSymbolPropertyList(const string& rid);
VLT_SCRIPT_FN string getSymbolPinPropertyList();
VLT_SCRIPT_FN bool saveSymbolPinPropertyList(const string& rid);
VLT_SCRIPT_FN string getSymbolPinTypeList();
VLT_SCRIPT_FN bool saveSymbolPinTypeList(const string& rid);
VLT_SCRIPT_FN string getSymbolScalingList();
VLT_SCRIPT_FN bool saveSymbolScalingList(const string& rid);
// symbols_neutral.cpp
VLT_SCRIPT_FN bool writeNeutralSymbolData(const string& locationMapFile, bool overwrite);
// symbols_verify.cpp
VLT_SCRIPT_FN bool verifySymbols(const string& ignored);
// symbols_reports.cpp
VLT_SCRIPT_FN bool reportSymbolPinSpacingMap();
VLT_SCRIPT_FN bool createDefaultSymbolDataMapping();
// symbols_convert.cpp
VLT_SCRIPT_FN bool convertSymbols(const string& locationMapFile);

// central_library.cpp
VLT_SCRIPT_FN bool prepareTargetCL();
// central_library_partitions.cpp
VLT_SCRIPT_FN bool addSymbolPartitions();
VLT_SCRIPT_FN bool addPDBPartitions();
VLT_SCRIPT_FN bool addCellPartitions(const string& ignored);

// pdb_qrn_caf.cpp
VLT_SCRIPT_FN bool generateQrnCaf(const string& locationMapFile);
// pdb_generate.cpp
VLT_SCRIPT_FN bool runQrn2pdb(const string& options);
// pdb_import.cpp
VLT_SCRIPT_FN bool importPdbToZpc();
// pdb_verify.cpp
VLT_SCRIPT_FN bool verifyQrn2pdb();
// pdb_value_catalogs.cpp
VLT_SCRIPT_FN string getValueCatalogList();
VLT_SCRIPT_FN string getValuePropertyList();
VLT_SCRIPT_FN bool saveValueCatalogList(const string& rid);
VLT_SCRIPT_FN bool saveValuePropertyList(const string& rid);

// geometries.cpp
VLT_SCRIPT_FN string GetLibraryUnit();
VLT_SCRIPT_FN void SetLibraryUnit(const string& unit);
VLT_SCRIPT_FN bool obtainVltGeomPath(const string& libraryName, const string& locationMapFile,
                                     const string& libraryDir);
// technologies.cpp
VLT_SCRIPT_FN bool createDefaultContainerFile(const string& libraryName, const string& locationMapFile,
                                              const string& libraryDir);

// vlt2hrw_impl.cpp
VLT_SCRIPT_FN string new1DList();
VLT_SCRIPT_FN void addItemTo1DList(const string& rid, const string& value);
VLT_SCRIPT_FN string new2DList();
VLT_SCRIPT_FN void addRowTo2DList(const string& rid);
VLT_SCRIPT_FN void addRowItemTo2DList(const string& rid, const string& value);
VLT_SCRIPT_FN void addTwoColItemTo2DList(const string& rid, const string& item1, const string& item2);
}  // namespace NComponent

// Outside NComponent, as the host's older list interface declared them: the
// list queries and remove run no prologue (they log nothing and need no
// working directory), and find_symbol_max_directory_level is a second name
// that forwards to NComponent::findSymbolMaxPathDepth.

// symbols_path_depth.cpp
VLT_SCRIPT_FN int findSymbolMaxDirectoryLevel(const std::string& libraryName, const std::string& locationMapFile,
                                              const std::string& libraryDir);
// vlt2hrw_impl.cpp
VLT_SCRIPT_FN int get1DListSize(const std::string& rid);
VLT_SCRIPT_FN std::string get1DListItem(const std::string& rid, int index);
VLT_SCRIPT_FN int get2DListSize(const std::string& rid);
VLT_SCRIPT_FN std::string get2DListItem(const std::string& rid, int row, int column);
VLT_SCRIPT_FN void removeList(const std::string& rid);
