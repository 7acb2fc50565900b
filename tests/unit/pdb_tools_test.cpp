// The parts database simulators qrn2pdb.exe and tlx2partsdb on crafted
// inputs: the parts database text byte for byte, rejected parts, the pin
// list and pin name case, the command line and injected failures.

#include <gtest/gtest.h>

#include <boost/filesystem.hpp>

#include "support/fake_host.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

namespace {

const fs::path kTools(VLT_TOOLS_DIR);

struct PdbToolsTest : ::testing::Test {
  CTempDir tmp;
  fs::path root, logs;

  void SetUp() override {
    root = tmp.path();
    logs = root / "log";
    fs::create_directories(logs);
    fs::create_directories(root / "lib");
    fs::create_directories(root / "symbols_1" / "gates");
    writeFile(root / "qrn.caf", ".FILETYPE PROPTRANS\n\n.soft_path  \"$L\"  \"" + (root / "lib").string() +
                                    "\"\n\n .PROP   \"VALUE\"  \"Value\"\n   ..PASS   forward\n   ..PDB    yes\n"
                                    " .PROP   \"CLASS\"  \"\"\n   ..PASS   forward\n   ..PDB    no\n\n");
    writeFile(root / "cat_neut.tlx",
              ".QRN_PART \"P1\"\n..QRN_PART_CONTAINER \"$L/sym/gates\"\n..QRN_MAP_FILE \"$L/p1.map\"\n"
              "..QRN_GEOM \"so8\"\n..QRN_COMP \"G\"\n...QRN_SYMBOL \"g\"\n..VALUE \"Nand gate\"\n..CLASS \"IC\"\n"
              "..EXTRA \"x\"\n"
              ".QRN_PART \"P2\"\n..QRN_PART_CONTAINER \"$L/sym/gates\"\n..QRN_MAP_FILE \"$L/p2.map\"\n"
              "..QRN_COMP \"G\"\n...QRN_SYMBOL \"g\"\n"
              ".QRN_PART \"P3\"\n..QRN_PART_CONTAINER \"$L/sym/other\"\n..QRN_COMP \"H\"\n...QRN_SYMBOL \"h\"\n");
    writeFile(root / "lib" / "p1.map", "# gate\nSYMBOL g 1\nPIN A 1 S0\nPIN Y B2,3 S0\n");
    writeFile(root / "lib" / "p2.map", "SYMBOL g 1\nPIN Q 4 S0\n");
    writeFile(root / "symbols_1" / "gates" / "g.neut", "SYMBOL g\nPIN_NAME A\nPIN_NAME Y\n");
    writeFile(root / "partitions", "gates_g logic\n");
    writeFile(root / "Library.zpc", "*ZPC_INDEX 1\n");
    writeFile(root / "pins", "// cell pins\nso8 1 b2 3\n");
  }

  // Runs the generator in the log directory; `pinSource` is "Library.zpc" or "pins".
  int generate(const std::string& options, const std::string& pinSource = "Library.zpc",
               const std::string& environment = "") {
    const std::string r = root.string() + "/";
    const std::string command = "cd " + logs.string() + " && " + environment + " " + (kTools / "qrn2pdb.exe").string() +
                                " " + options + " -m " + r + "lists " + r + "qrn.caf " + r + "cat_neut.tlx " + r +
                                "cat.tlx 1 0 dummy dummy " + r + "symbols_1 " + r + pinSource + " dummy " + r +
                                "rejected " + r + "partitions " + r + "Library.zpc";
    return shell(command);
  }
};

TEST_F(PdbToolsTest, GeneratorWritesTranslatedPartsAndRejectsTheOthers) {
  ASSERT_EQ(generate("-z -x -o"), 0);
  EXPECT_EQ(readFile(root / "cat.tlx"),
            ".PDB_CATALOG \"cat\"\n.PDB_PART \"P1\"\n..PDB_CELL \"so8\"\n..PDB_COMP \"G\"\n...PDB_SYMBOL \"gates_g\"\n"
            "....PDB_PARTITION \"logic\"\n....PDB_PORTION \"1\"\n.....PDB_PIN \"A\"\n......PDB_PHYS \"1\"\n"
            ".....PDB_PIN \"Y\"\n......PDB_PHYS \"B2\"\n......PDB_PHYS \"3\"\n..PDB_PROPERTY \"Value\"\n"
            "...PDB_VALUE \"Nand gate\"\n");
  EXPECT_EQ(readFile(logs / "qrn2pdb.txt"),
            "Warning: catalog cat, part P1: property EXTRA has no translation, it is not carried\n"
            "Error: catalog cat, part P2: pin Q does not exist on symbol gates_g, the part is rejected\n"
            "Error: catalog cat, part P3: symbol other_h has no partition, the part is rejected\n"
            "qrn2pdb: catalog cat: 1 parts written, 2 rejected\n");
  EXPECT_EQ(readFile(root / "rejected"),
            "// rejected by qrn2pdb: pin Q does not exist on symbol gates_g\ncat P2\n"
            "// rejected by qrn2pdb: symbol other_h has no partition\ncat P3\n");
}

TEST_F(PdbToolsTest, PinListChecksCellPinsInTheChosenCase) {
  ASSERT_EQ(generate("-z -x -o -p -a", "pins"), 0);
  EXPECT_NE(readFile(root / "cat.tlx").find("......PDB_PHYS \"b2\"\n"), std::string::npos);
  ASSERT_EQ(generate("-z -x -o -p", "pins"), 0);
  EXPECT_NE(
      readFile(logs / "qrn2pdb.txt")
          .find("Error: catalog cat, part P1: physical pin B2 does not exist on cell so8, the part is rejected\n"),
      std::string::npos);
  EXPECT_EQ(generate("-p -g", "pins"), 1);
  EXPECT_EQ(readFile(logs / "qrn2pdb.txt"), "Error: options -p and -g exclude each other\n");
  EXPECT_EQ(generate("-p", "nothing"), 2);
  EXPECT_EQ(readFile(logs / "qrn2pdb.txt"),
            "Error: cannot read geometry pin list: " + (root / "nothing").string() + "\n");
}

TEST_F(PdbToolsTest, GeneratorRefusesAWrongCountAndFailsPerCatalogOnRequest) {
  const std::string command = "cd " + logs.string() + " && " + (kTools / "qrn2pdb.exe").string() + " -z -m a b c";
  EXPECT_EQ(shell(command + " > /dev/null"), 1);
  EXPECT_EQ(readFile(logs / "qrn2pdb.txt"), "Error: expected 13 arguments behind -m <symbol list directory>, got 2\n");
  EXPECT_EQ(generate("", "Library.zpc", "QRN2PDB_FAIL=other=exit:4,cat=exit:7 >/dev/null"), 7);
  EXPECT_EQ(readFile(logs / "qrn2pdb.txt"),
            "Error: expected 13 arguments behind -m <symbol list directory>, got 2\n");  // untouched
  EXPECT_EQ(generate("", "Library.zpc", "QRN2PDB_FAIL=other=exit:4"), 0);
}

TEST_F(PdbToolsTest, ImportToolRefusesBadInputs) {
  const std::string tool = (kTools / "tlx2partsdb").string();
  const std::string log = (root / "t.log").string();
  auto run = [&](const std::string& args) { return shell(tool + " " + args + " -l " + log + " > /dev/null"); };
  writeFile(root / "cat.tlx", ".PDB_CATALOG \"cat\"\n");
  EXPECT_EQ(run("-w -i " + (root / "cat.tlx").string() + " -o cat.pdb"), 1);
  EXPECT_EQ(run("-w -i " + (root / "cat.tlx").string() + " -o cat.pdb -c " + (root / "none.zpc").string()), 2);
  EXPECT_EQ(run("-w -i " + (root / "no.tlx").string() + " -o cat.pdb -c " + (root / "Library.zpc").string()), 3);
  EXPECT_EQ(run("-i " + (root / "cat.tlx").string() + " -o cat.pdb -c " + (root / "Library.zpc").string()), 0);
  EXPECT_EQ(run("-i " + (root / "cat.tlx").string() + " -o cat.pdb -c " + (root / "Library.zpc").string()), 4);
  EXPECT_EQ(readFile(root / "t.log"),
            "Error: missing option -c\nError: cannot read Central Library index: " + (root / "none.zpc").string() +
                "\nError: parts database text does not exist: " + (root / "no.tlx").string() +
                "\ntlx2partsdb: " + (root / "cat.tlx").string() + " imported into parts database cat\n" +
                "Error: parts database exists, -w replaces it: " + (root / "PartsDBLibs" / "cat" / "cat.pdb").string() +
                "\n");
  EXPECT_EQ(readFile(root / "Library.zpc"),
            "*ZPC_INDEX 1\n*HOLDER symbol SymbolLibs\n*HOLDER pdb PartsDBLibs\n*HOLDER cell CellLibs\n"
            "*PARTITION pdb cat\n");
}

}  // namespace
