// The parts database steps: qrn.caf, the generator, the import, the report, the value lists.

#include <gtest/gtest.h>

#include <boost/filesystem.hpp>
#include <cstdlib>

#include "components/hpp/list_registry.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

namespace NComponent {
namespace NPdb {
std::string qrn2pdbOptions(const std::string& options, const std::string& pinNameCase);
struct TQrn2pdbFiles {
  fs::path tool, symbolLists, qrnCaf, symbolsDir, pinSource, rejectedParts, symbolPartitions;
  std::string centralLibrary;
};
std::string qrn2pdbCommandLine(const TQrn2pdbFiles& files, const std::string& options, const fs::path& input,
                               const fs::path& output, int depth);
std::string pdbName(const std::string& catalog);
std::string tlx2partsdbCommandLine(const fs::path& input, const std::string& pdb, const fs::path& log,
                                   const fs::path& library);
}  // namespace NPdb
}  // namespace NComponent

using namespace NComponent;
using namespace NComponent::NPdb;

namespace {

// A working directory and a bin directory for a fake generator.
struct PdbTest : WorkDirHostTest {
  fs::path bin = tmp.path() / "bin";

  void SetUp() override {
    WorkDirHostTest::SetUp();
    fs::create_directories(bin);
    host.setService("get rig install bin", bin.string());
  }
  // A generator that records its directory and arguments, then runs `body`.
  void fakeGenerator(const std::string& body) {
    const fs::path tool = bin / "qrn2pdb.exe";
    writeFile(tool, "#!/bin/sh\npwd > \"$0.cwd\"\necho \"$@\" > \"$0.args\"\n" + body + "\n");
    fs::permissions(tool, fs::owner_all);
  }
  std::string args() { return readFile(bin / "qrn2pdb.exe.args"); }
};

TEST_F(PdbTest, QrnCafHoldsTheFirstValueOfEachPrefixAndEveryPropertyBlock) {
  const fs::path map = tmp.path() / "map";
  writeFile(map, "QRN_LOCATION_MAP_1\n$A\n/a/one\n/a/two\n$EMPTY\n$A\n/a/again\n");
  writeFile(config / "catalog_data_mapping.xml",
            "<rig><catalog_data><data_map><property_map>"
            "<property qrn='Q\"x' pdb='A &amp; B'/><property qrn='KEEP' pdb=''/>"
            "</property_map></data_map></catalog_data></rig>");
  ASSERT_TRUE(generateQrnCaf(map.string()));
  TLines cafs{readFile(config / "qrn.caf"), "--- without prefixes and properties"};
  writeFile(map, "# nothing\n");
  writeFile(config / "catalog_data_mapping.xml",
            "<rig><catalog_data><data_map><property_map/></data_map></catalog_data></rig>");
  ASSERT_TRUE(generateQrnCaf(map.string()));
  cafs.push_back(readFile(config / "qrn.caf"));
  expectGolden("PdbTest.QrnCafHoldsTheFirstValueOfEachPrefixAndEveryPropertyBlock.caf", cafs);
  fs::remove_all(catalogs);
  EXPECT_FALSE(generateQrnCaf(map.string()));
  expectGolden("PdbTest.QrnCafHoldsTheFirstValueOfEachPrefixAndEveryPropertyBlock", host.lines(),
               {{tmp.str(), "$TMP"}});
}

TEST_F(PdbTest, GeneratorRunsInTheLogDirectoryKeepsItsLogPerCatalogAndChecksItsOptions) {
  fakeGenerator("echo \"Warning: $8\" > qrn2pdb.txt\nexit 5");
  writeFile(config / "catalog.list", " a \nmissing\n");
  writeFile(catalogs / "a_neut.tlx", "");
  writeFile(config / "symbol_data.xml", "<rig><symbol_data><common start='1' stop='1'/></symbol_data></rig>");
  const fs::path before = fs::current_path();
  ASSERT_TRUE(runQrn2pdb(""));
  EXPECT_EQ(fs::current_path(), before);
  EXPECT_EQ(readFile(bin / "qrn2pdb.exe.cwd"), fs::canonical(log).string() + "\n");
  expectGolden("PdbTest.GeneratorRunsInTheLogDirectoryKeepsItsLogPerCatalogAndChecksItsOptions.args", {args()},
               {{tmp.str(), "$TMP"}});
  EXPECT_EQ(readFile(log / "qrn2pdb_logs" / "qrn2pdb_a.log"), "Warning: " + (catalogs / "a.tlx").string() + "\n");
  EXPECT_FALSE(fs::exists(log / "qrn2pdb_logs" / "qrn2pdb_missing.log"));
  // A tool that writes no log: the old one is copied all the same.
  fakeGenerator("exit 0");
  writeFile(log / "qrn2pdb.txt", "old\n");
  ASSERT_TRUE(runQrn2pdb(""));
  EXPECT_EQ(readFile(log / "qrn2pdb_logs" / "qrn2pdb_a.log"), "old\n");
  // The pin list option needs the list and excludes the geometry option.
  fs::remove(bin / "qrn2pdb.exe.args");
  fs::remove(config / "symbol_data.xml");
  writeFile(config / "catalog.list", "a\n");
  ASSERT_TRUE(runQrn2pdb("-p"));
  EXPECT_FALSE(fs::exists(bin / "qrn2pdb.exe.args"));
  writeFile(config / "geomPinList.caf", "");
  ASSERT_TRUE(runQrn2pdb("-p"));
  expectGolden("PdbTest.GeneratorRunsInTheLogDirectoryKeepsItsLogPerCatalogAndChecksItsOptions.pinList", {args()},
               {{tmp.str(), "$TMP"}});
  fs::remove(bin / "qrn2pdb.exe.args");
  ASSERT_TRUE(runQrn2pdb("-g -p"));
  EXPECT_FALSE(fs::exists(bin / "qrn2pdb.exe.args"));
  fs::remove_all(log / "qrn2pdb_logs");
  writeFile(log / "qrn2pdb_logs", "in the way");
  EXPECT_FALSE(runQrn2pdb(""));
  expectGolden("PdbTest.GeneratorRunsInTheLogDirectoryKeepsItsLogPerCatalogAndChecksItsOptions", host.lines(),
               {{tmp.str(), "$TMP"}});
}

TEST_F(PdbTest, ToolCommandLinesAndTheImportFindsItsToolOnThePath) {
  EXPECT_EQ(qrn2pdbOptions("", "none"), "-z -x -o");
  EXPECT_EQ(qrn2pdbOptions("  -g -q ", " lower\t"), "-z -x -o -g -q -a");
  EXPECT_EQ(qrn2pdbOptions("\n", "upper"), "-z -x -o -b");
  EXPECT_EQ(qrn2pdbOptions("", "Upper"), "-z -x -o");
  TQrn2pdbFiles files{
      "/opt/rig bin/qrn2pdb.exe", "/w/n/symbol_lists",          "/w/c/qrn.caf",    "/w/n/symbols_2", "/w/L/Library.zpc",
      "/w/l/rejected_parts.caf",  "/w/c/symbol_partitions.caf", "/w/L/Library.zpc"};
  EXPECT_EQ(qrn2pdbCommandLine(files, "-z -x -o", "/w/n/c/a b_neut.tlx", "/w/n/c/a b.tlx", 2),
            "cmd /c \"\"\\opt\\rig bin\\qrn2pdb.exe\" -z -x -o -m /w/n/symbol_lists /w/c/qrn.caf /w/n/c/a b_neut.tlx "
            "/w/n/c/a b.tlx 2 0 dummy dummy /w/n/symbols_2 /w/L/Library.zpc dummy /w/l/rejected_parts.caf "
            "/w/c/symbol_partitions.caf /w/L/Library.zpc\"");
  EXPECT_EQ(pdbName("sub/x.y"), "sub_x_y");
  EXPECT_EQ(tlx2partsdbCommandLine("/n/a b.tlx", "a b", "/l/t.log", "/L/Library.zpc"),
            "cmd /c tlx2partsdb -w -i /n/a b.tlx -o a b.pdb -l /l/t.log -c /L/Library.zpc");
  host.setService("get rig install bin", VLT_TOOLS_DIR);
  fs::create_directories(wdir / "Library");
  writeFile(wdir / "Library" / "Library.zpc", "*ZPC_INDEX 1\n");
  writeFile(config / "catalog.list", "x.y\nnone\n");
  writeFile(catalogs / "x.y.tlx", ".PDB_CATALOG \"x.y\"\n.PDB_PART \"P1\"\n..PDB_CELL \"c\"\n");
  writeFile(log / "tlx2partsdb.log", "earlier run\n");
  ASSERT_TRUE(importPdbToZpc());
  expectGolden("PdbTest.ToolCommandLinesAndTheImportFindsItsToolOnThePath.files",
               {readFile(wdir / "Library" / "PartsDBLibs" / "x_y" / "x_y.pdb"), "--- log",
                readFile(log / "tlx2partsdb.log"), "--- index", readFile(wdir / "Library" / "Library.zpc")},
               {{tmp.str(), "$TMP"}});
  writeFile(catalogs / "x.y.tlx", "..damaged\n");
  ASSERT_TRUE(importPdbToZpc());
  expectGolden(
      "PdbTest.ToolCommandLinesAndTheImportFindsItsToolOnThePath", withoutEnvironment(host.lines()),
      {{"PATH=" + std::string(std::getenv("PATH")), "PATH=$PATH"}, {tmp.str(), "$TMP"}, {VLT_TOOLS_DIR, "$TOOLS"}});
}

TEST_F(PdbTest, ReportListsAbsentFilesThenTheFilteredLogLines) {
  fs::create_directories(log / "qrn2pdb_logs");
  writeFile(config / "catalog.list", "a\nb\nc\n");
  writeFile(catalogs / "a.tlx", "");
  writeFile(catalogs / "c.tlx", "");
  writeFile(log / "qrn2pdb_logs" / "qrn2pdb_a.log", "Error: e1\nWarning:\nqrn2pdb: summary\n warning x\n");
  writeFile(log / "qrn2pdb_logs" / "qrn2pdb_c.log", "");
  ASSERT_TRUE(verifyQrn2pdb());
  expectGolden("PdbTest.ReportListsAbsentFilesThenTheFilteredLogLines", {readFile(log / "reports" / "verify_pdb.txt")},
               {{tmp.str(), "$TMP"}});
  fs::remove_all(log / "reports");
  EXPECT_FALSE(verifyQrn2pdb());
  EXPECT_TRUE(host.logged(
      "translation", "ERROR",
      "Verifying qrn2pdb data: cannot open report file for writing: " + (log / "reports" / "verify_pdb.txt").string()));
}

TEST_F(PdbTest, ValueListsCarryOneListEachInFileOrder) {
  const fs::path file = config / "catalog_val_prop.xml";
  EXPECT_FALSE(saveValueCatalogList(""));
  EXPECT_EQ(getValuePropertyList(), "");
  writeFile(file,
            "<rig><catalog_data><value_property_mapping><catalog_list><catalog name='z'/><catalog name='a'/>"
            "</catalog_list><ql_property_list><ql_property name='VALUE'/></ql_property_list>"
            "</value_property_mapping></catalog_data></rig>");
  std::string rid = new1DList();
  for (const char* item : {"TOL", "VALUE"}) addItemTo1DList(rid, item);
  ASSERT_TRUE(saveValuePropertyList(rid));
  removeList(rid);
  rid = getValuePropertyList();
  EXPECT_EQ(list1D(rid), (TLines{"TOL", "VALUE"}));
  removeList(rid);
  rid = getValueCatalogList();
  EXPECT_EQ(list1D(rid), (TLines{"z", "a"}));
  removeList(rid);
  const std::string before = readFile(file);
  EXPECT_FALSE(saveValuePropertyList("no such list"));
  EXPECT_EQ(readFile(file), before);
  expectGolden("PdbTest.ValueListsCarryOneListEachInFileOrder", host.lines(), {{tmp.str(), "$TMP"}});
}

}  // namespace
