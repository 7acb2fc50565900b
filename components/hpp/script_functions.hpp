#pragma once
// The handlers of the 68 script functions. Each is defined in the file of
// its area under components/general/vlt2hrw_main/.
//
// The declarations are weak: the script function table names every handler,
// and one whose area has not been written yet stays a null address, which
// the table answers like an unknown name.

#include <string>

#define VLT_SCRIPT_FN __attribute__((weak))

namespace NComponent {
using string = std::string;

// Working directory (vlt2hrw_impl)
VLT_SCRIPT_FN bool CreateWDir(const string& wdir);
// Library checks (check_vlt_cfg)
VLT_SCRIPT_FN bool checkQrnLocationMap(const string& locationMap);
VLT_SCRIPT_FN bool checkVLTLibraryDefinitionFile(const string& definitionFile);
VLT_SCRIPT_FN bool checkVLTLibrary(const string& library, const string& definitionFile, const string& locationMap);
// Source library (vlt_library_cfg)
VLT_SCRIPT_FN string getVLTLibraryList(const string& definitionFile);
// Catalogs (catalogs)
VLT_SCRIPT_FN string getCatalogList(const string& a, const string& b, const string& c);
VLT_SCRIPT_FN bool saveCatalogList(const string& rid);
VLT_SCRIPT_FN void usePartNoProp(bool on);
VLT_SCRIPT_FN bool saveCatalogs(const string& a, const string& b, const string& c);
VLT_SCRIPT_FN bool updateCatalogSymbolLists(const string& a, const string& b, const string& c);
VLT_SCRIPT_FN bool verifyCatalogs(const string& a, const string& b, const string& c);
VLT_SCRIPT_FN string getCatalogPropertyList();
VLT_SCRIPT_FN bool saveCatalogPropertyList(const string& rid);
VLT_SCRIPT_FN bool setCatalogSymbolsOnly(bool on);
VLT_SCRIPT_FN bool updateCatalogPropMapping(const string& a);
// Symbols (symbols)
VLT_SCRIPT_FN bool saveDefaultSymbolConfig(const string& a, const string& b, const string& c);
VLT_SCRIPT_FN bool createSymbolPartitionList(const string& a, const string& b, const string& c, bool d);
VLT_SCRIPT_FN bool partitionSymbolList(const string& a, const string& b, const string& c);
VLT_SCRIPT_FN bool updatePartitionedSymbolLists();
VLT_SCRIPT_FN bool writeNeutralSymbolData(const string& a, bool b);
VLT_SCRIPT_FN bool verifySymbols(const string& a);
VLT_SCRIPT_FN bool reportSymbolPinSpacingMap();
VLT_SCRIPT_FN bool reportSymbolDuplicatesFromPathDepth(const string& a, const string& b, const string& c);
VLT_SCRIPT_FN bool createDefaultSymbolDataMapping();
VLT_SCRIPT_FN bool convertSymbols(const string& a);
VLT_SCRIPT_FN bool getSymbolPathLevels(int& a, int& b, int& c);
VLT_SCRIPT_FN bool setSymbolPathLevels(int a, int b, int c);
VLT_SCRIPT_FN int findSymbolPathDepth(const string& a, const string& b, const string& c);
VLT_SCRIPT_FN int findSymbolMaxPathDepth(const string& a, const string& b, const string& c);
VLT_SCRIPT_FN string getSymbolPartitionList();
VLT_SCRIPT_FN bool saveSymbolPartitionList(const string& rid);
VLT_SCRIPT_FN string getSymbolPropertyList();
VLT_SCRIPT_FN bool saveSymbolPropertyList(const string& rid);
VLT_SCRIPT_FN string getSymbolPinPropertyList();
VLT_SCRIPT_FN bool saveSymbolPinPropertyList(const string& rid);
VLT_SCRIPT_FN string getSymbolPinTypeList();
VLT_SCRIPT_FN bool saveSymbolPinTypeList(const string& rid);
VLT_SCRIPT_FN string getSymbolScalingList();
VLT_SCRIPT_FN bool saveSymbolScalingList(const string& rid);
// Central Library (central_library)
VLT_SCRIPT_FN bool prepareTargetCL();
VLT_SCRIPT_FN bool addSymbolPartitions();
VLT_SCRIPT_FN bool addPDBPartitions();
VLT_SCRIPT_FN bool addCellPartitions(const string& a);
// Parts databases (pdb)
VLT_SCRIPT_FN bool generateQrnCaf(const string& a);
VLT_SCRIPT_FN bool runQrn2pdb(const string& a);
VLT_SCRIPT_FN bool importPdbToZpc();
VLT_SCRIPT_FN bool verifyQrn2pdb();
VLT_SCRIPT_FN string getValueCatalogList();
VLT_SCRIPT_FN string getValuePropertyList();
VLT_SCRIPT_FN bool saveValueCatalogList(const string& rid);
VLT_SCRIPT_FN bool saveValuePropertyList(const string& rid);
// Geometries (geometries)
VLT_SCRIPT_FN string GetLibraryUnit();
VLT_SCRIPT_FN void SetLibraryUnit(const string& unit);
VLT_SCRIPT_FN bool obtainVltGeomPath(const string& a, const string& b, const string& c);
VLT_SCRIPT_FN bool createDefaultContainerFile(const string& a, const string& b, const string& c);
// List handles (vlt2hrw_impl)
VLT_SCRIPT_FN string new1DList();
VLT_SCRIPT_FN void addItemTo1DList(const string& rid, const string& item);
VLT_SCRIPT_FN string new2DList();
VLT_SCRIPT_FN void addRowTo2DList(const string& rid);
VLT_SCRIPT_FN void addRowItemTo2DList(const string& rid, const string& item);
VLT_SCRIPT_FN void addTwoColItemTo2DList(const string& rid, const string& item1, const string& item2);
}  // namespace NComponent

// The list queries and find_symbol_max_directory_level stand outside the namespace.
VLT_SCRIPT_FN int findSymbolMaxDirectoryLevel(const std::string& a, const std::string& b, const std::string& c);
VLT_SCRIPT_FN int get1DListSize(const std::string& rid);
VLT_SCRIPT_FN std::string get1DListItem(const std::string& rid, int index);
VLT_SCRIPT_FN int get2DListSize(const std::string& rid);
VLT_SCRIPT_FN std::string get2DListItem(const std::string& rid, int row, int column);
VLT_SCRIPT_FN void removeList(const std::string& rid);
