// The tool simulators libforge.exe, sksym2td.exe, tdlib2zpc.exe, qrn2pdb.exe
// and tlx2partsdb on crafted inputs: outputs byte for byte, errors, exit codes.

#include <gtest/gtest.h>

#include <boost/filesystem.hpp>

#include "support/fake_host.hpp"
#include "support/golden.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

namespace {

const fs::path kTools(VLT_TOOLS_DIR);
const std::string kLogic = std::string(VLT_SOURCE_DIR) + "/examples/components/digital/logic";

// A temporary directory to run the tools in, their output in out.txt.
struct ToolTest : ::testing::Test {
  CTempDir tmp;
  std::string output() const { return readFile(tmp.path() / "out.txt"); }
  // The exit code of a run and what it said, for transcripts.
  std::string outcome(int code) const { return "exit " + std::to_string(code) + ": " + output(); }
  // A file's name and bytes, for transcripts.
  static std::string section(const fs::path& f) { return "--- " + f.filename().string() + "\n" + readFile(f); }
  // The lines against the golden file of `name`, paths as $TMP and $SRC.
  void expectLines(const std::string& name, const TLines& lines) const {
    expectGolden(name, lines, {{tmp.str(), "$TMP"}, {VLT_SOURCE_DIR, "$SRC"}});
  }
  // The exit code of `tool` run with `args` (quoted where needed) in the
  // temporary directory, with `environment` settings in front.
  int runTool(const std::string& tool, const std::string& args, const std::string& environment = "") {
    return shell("cd '" + tmp.str() + "' && " + environment + " '" + (kTools / tool).string() + "' " + args +
                 " > out.txt 2>&1");
  }
};

const std::string kSeedIndex =
    "*ZPC_INDEX 1\n*HOLDER symbol SymbolLibs\n*HOLDER pdb PartsDBLibs\n*HOLDER cell CellLibs\n";

struct LibForgeTest : ToolTest {
  fs::path lib() const { return tmp.path() / "my lib"; }
  fs::path index() const { return lib() / "Library.zpc"; }
  fs::path log() const { return tmp.path() / "int.log"; }
  static std::string quote(const std::string& text) { return "'" + text + "'"; }
  std::string zpc() const { return quote("-zpcpath=" + index().string()); }
  int run(const std::string& args) { return runTool("libforge.exe", args); }
  std::string partition(const std::string& type, const std::string& name) {
    return "-CreatePartition " + zpc() + " -partitiontype=" + type + " " + quote("-partitionname=" + name) + " " +
           quote("-log=" + log().string());
  }
  std::string fromFile(const std::string& option, const std::string& file) {
    return "-CreatePartition " + zpc() + " " + quote("-" + option + "partitionfile=" + tmp.str() + "/" + file);
  }
  // Each run with its outcome, then the log and the index.
  void expectRuns(const std::string& name, const TLines& runs) {
    TLines said;
    for (const auto& args : runs) said.push_back("$ " + args + "\n" + outcome(run(args)));
    said.insert(said.end(), {"--- log", fs::exists(log()) ? readFile(log()) : "", "--- index", readFile(index())});
    expectLines(name, said);
  }
};

// The seed's properties and holders are checked with create_wdir. Names in
// quotes lose them.
TEST_F(LibForgeTest, SeedAndPartitionsAreMadeOnceAndRecordedByKind) {
  writeFile(tmp.path() / "catalog.list", "resistors\n\n  capacitors \r\nresistors\n");
  writeFile(tmp.path() / "p.caf", "\"x y\"\n");
  expectRuns("LibForgeTest.Seed",
             {"-CreateSeed " + zpc() + " " + quote("-log=" + log().string()), partition("cell", "pcb_std"),
              partition("symbol", "logic gates"), partition("symbol", "logic gates"), fromFile("pdb", "catalog.list"),
              partition("cell", "\"c d_e\""), fromFile("sym", "p.caf")});
  for (const char* dir :
       {"CellLibs/pcb_std", "SymbolLibs/logic gates", "PartsDBLibs/resistors", "PartsDBLibs/capacitors"})
    EXPECT_TRUE(fs::is_directory(lib() / dir)) << dir;
}

// An unquoted name with a blank arrives split.
TEST_F(LibForgeTest, ErrorsGiveClearMessagesAndCodes) {
  writeFile(tmp.path() / "sym_partitions.caf", "a/b\ngood\n..\n");
  expectRuns("LibForgeTest.Errors",
             {"-CreateSeed " + zpc(), fromFile("sym", "sym_partitions.caf"), partition("Symbol", "x"),
              "-CreatePartition " + zpc() + " -partitiontype=cell", "-CreateSeed", "-zpcpath=x",
              "-CreatePartition -zpcpath=/nonexistent/Library.zpc -partitiontype=pdb -partitionname=x",
              "-CreatePartition " + zpc() + " -cellpartitionfile=/nonexistent",
              "-CreatePartition " + zpc() + " -partitiontype=cell -partitionname=c d"});
  EXPECT_TRUE(fs::is_directory(lib() / "SymbolLibs" / "good"));
  EXPECT_FALSE(fs::exists(lib() / "SymbolLibs" / "a"));
}

struct Sksym2tdToolTest : ToolTest {
  // Runs the tool on `script` with QRN_WD the temporary directory.
  int run(const std::string& script, const std::string& environment = "") {
    writeFile(tmp.path() / "script", script);
    return runTool("sksym2td.exe", "-nostart < script", "QRN_WD='" + tmp.str() + "' " + environment);
  }
};

TEST_F(Sksym2tdToolTest, TargetSymbolsWithTheConfigurationAppliedAndFailures) {
  writeFile(tmp.path() / "c.cfg",
            "[PACKAGE ATTRIBUTES]\nCLASS=\nREVISION=REV\n\n[PIN ATTRIBUTES]\nPIN_NO=#\n\n[PIN TYPES]\nIO=BI\n\n"
            "[DESIGN SCALING]\nScale=2.0\n\n");
  writeFile(tmp.path() / "map", "QRN_LOCATION_MAP_1\n$LIB\n" + kLogic + "\n");
  fs::create_directories(tmp.path() / "out");
  // Each run's code and output, with the symbols written.
  TLines said{outcome(run("\nsymxlt_cfg_file c.cfg\ntd_symbol_output_path out\nsymbol begin\nsk_symbol_path " + kLogic +
                              "/nand2\ntd_symbol_name logic_nand2\nsymbol end\nsymbol begin\nsk_symbol_path $LIB/buf8\n"
                              "td_symbol_name \"logic buf8_v\"\npin_map A A[0:2]\nsymbol end\nrun\nexit\n",
                          "QRN_LOCATION_MAP='\"" + (tmp.path() / "map").string() + "\"'")),
              section(tmp.path() / "out" / "logic_nand2.sym"), section(tmp.path() / "out" / "logic buf8_v.sym")};
  std::string block;
  for (const char* name : {"mux4", "or2"})
    block += "symbol begin\nsk_symbol_path " + kLogic + "/" + name + "\ntd_symbol_neutral_path " + name[0] +
             std::string(".neut\nsymbol end\n");
  said.push_back(outcome(run("write_symbol off\n" + block + "run\nexit\n")));
  EXPECT_FALSE(fs::exists(tmp.path() / "m.neut"));
  EXPECT_TRUE(fs::exists(tmp.path() / "o.neut")) << "the other block is done";
  said.push_back(outcome(run("write_symbol off\nsymbol begin\nrun\n")));
  said.push_back(outcome(run("symxlt_cfg_file missing.cfg\ntd_symbol_output_path .\nsymbol begin\nsk_symbol_path " +
                             kLogic + "/or2\ntd_symbol_name x\nsymbol end\nrun\nexit\n")));
  said.push_back(
      outcome(run("write_symbol off\n" + block + "run\nexit\n", "SKSYM2TD_FAIL=exit:9 SKSYM2TD_FAIL_SYMBOLS=or2,x")));
  expectLines("Sksym2tdToolTest.TargetSymbols", said);
}

struct Tdlib2zpcTest : ToolTest {
  fs::path lib() const { return tmp.path() / "Library"; }
  fs::path part() const { return lib() / "SymbolLibs" / "P"; }
  void SetUp() override {
    fs::create_directories(part());
    writeFile(lib() / "Library.zpc", "*ZPC_INDEX 1\n*PARTITION symbol P\n");
  }
  int run(const std::string& args, const std::string& environment = "") {
    return runTool("tdlib2zpc.exe", args, environment);
  }
  int update(const std::string& partition = "P", const std::string& environment = "") {
    return run("'-CentralLib=" + (lib() / "Library.zpc").string() + "' -Partition=" + partition +
                   " '-LogFile=" + (tmp.path() / "t.log").string() + "'",
               environment);
  }
};

TEST_F(Tdlib2zpcTest, ListsOnceThenEntersWhatTheJournalNamesOnce) {
  for (const char* file : {"a.sym", "notes.txt"}) writeFile(part() / file, "x");
  // The output of each run, then the index and the log file.
  TLines said{outcome(update())};
  // Afterwards only the journal counts: a file nobody journalled waits.
  for (const char* file : {"b c.sym", "unjournalled.sym"}) writeFile(part() / file, "x");
  writeFile(part() / ".tdlib2zpc" / "journal", "b c\na\nb c\n");
  said.push_back(outcome(update()));
  EXPECT_EQ(readFile(part() / ".tdlib2zpc" / "journal"), "");
  // Damaged lines are passed over, a last line without its end counts.
  for (const char* file : {"e.sym", "f.sym"}) writeFile(part() / file, "x");
  writeFile(part() / ".tdlib2zpc" / "journal", "\n../a\nnope\n#sync 12\ne\r\n\xff\xfe\ne\nf");
  said.push_back(outcome(update()));
  fs::remove(part() / ".tdlib2zpc" / "journal");
  said.push_back(outcome(update()));
  EXPECT_FALSE(fs::exists(part() / ".tdlib2zpc" / "journal"));
  said.insert(said.end(), {"--- index", readFile(lib() / "Library.zpc"), "--- log", readFile(tmp.path() / "t.log")});
  expectLines("Tdlib2zpcTest.ListsOnce", said);
}

TEST_F(Tdlib2zpcTest, EntersWhatTheSymbolToolWroteOnceTakesOverAnOlderStateAndErrors) {
  // An earlier version kept the names entered in a file: they stay entered.
  writeFile(part() / ".tdlib2zpc" / "entered", "old\n");
  writeFile(part() / "old.sym", "x");
  TLines said{outcome(update())};
  // Two source symbols folding to one target name, and the old name again.
  std::string script = "td_symbol_output_path " + part().string() + "\n";
  for (const char* name : {"n", "n", "old"})
    script += "symbol begin\nsk_symbol_path " + kLogic + "/nand2\ntd_symbol_name " + name + "\nsymbol end\n";
  writeFile(tmp.path() / "script", script + "run\nexit\n");
  ASSERT_EQ(runTool("sksym2td.exe", "-nostart < script"), 0);
  EXPECT_EQ(readFile(part() / ".tdlib2zpc" / "journal"), "n\nn\nold\n");
  said.push_back(outcome(update()));
  said.push_back(readFile(lib() / "Library.zpc"));
  // Errors give messages and codes; a library path with a blank, not quoted, arrives split.
  for (const char* args : {"-Partition=P", "-CentralLib=/w d/Library.zpc -Partition=P",
                           "-CentralLib=/nonexistent/Library.zpc -Partition=P"})
    said.push_back(outcome(run(args)));
  said.push_back(outcome(update("Q")));
  said.push_back(outcome(update("P", "TDLIB2ZPC_FAIL=exit:7")));
  expectLines("Tdlib2zpcTest.EntersWhatTheSymbolToolWrote", said);
}

struct PdbToolsTest : ToolTest {
  fs::path root = tmp.path(), logs = root / "log";
  void SetUp() override {
    for (const auto& dir : {logs, root / "lib", root / "symbols_1" / "gates"}) fs::create_directories(dir);
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
    return shell("cd " + logs.string() + " && " + environment + " " + (kTools / "qrn2pdb.exe").string() + " " +
                 options + " -m " + r + "lists " + r + "qrn.caf " + r + "cat_neut.tlx " + r +
                 "cat.tlx 1 0 dummy dummy " + r + "symbols_1 " + r + pinSource + " dummy " + r + "rejected " + r +
                 "partitions " + r + "Library.zpc");
  }
  std::string report() const { return readFile(logs / "qrn2pdb.txt"); }
};

TEST_F(PdbToolsTest, GeneratorWritesTranslatedPartsRejectsTheOthersChecksPinsAndFails) {
  // Each run's code and report, with the catalog and rejected parts where they count. The pin list
  // checks cell pins in the chosen case; a failure on request (per catalog) leaves the report untouched.
  auto said = [&](int code) { return "exit " + std::to_string(code) + ": " + report(); };
  TLines out{
      said(generate("-z -x -o")),
      section(root / "cat.tlx"),
      section(root / "rejected"),
      said(generate("-z -x -o -p -a", "pins")),
      section(root / "cat.tlx"),
      said(generate("-z -x -o -p", "pins")),
      said(generate("-p -g", "pins")),
      said(generate("-p", "nothing")),
      said(shell("cd " + logs.string() + " && " + (kTools / "qrn2pdb.exe").string() + " -z -m a b c > /dev/null")),
      said(generate("", "Library.zpc", "QRN2PDB_FAIL=other=exit:4,cat=exit:7 >/dev/null"))};
  EXPECT_EQ(generate("", "Library.zpc", "QRN2PDB_FAIL=other=exit:4"), 0);
  expectLines("PdbToolsTest.Generator", out);
}

TEST_F(PdbToolsTest, ImportToolRefusesBadInputs) {
  const std::string tool = (kTools / "tlx2partsdb").string(), log = (root / "t.log").string(),
                    cat = " -o cat.pdb -c " + (root / "Library.zpc").string();
  auto run = [&](const std::string& args) { return shell(tool + " " + args + " -l " + log + " > /dev/null"); };
  writeFile(root / "cat.tlx", ".PDB_CATALOG \"cat\"\n");
  EXPECT_EQ(run("-w -i " + (root / "cat.tlx").string() + " -o cat.pdb"), 1);
  EXPECT_EQ(run("-w -i " + (root / "cat.tlx").string() + " -o cat.pdb -c " + (root / "none.zpc").string()), 2);
  EXPECT_EQ(run("-w -i " + (root / "no.tlx").string() + cat), 3);
  EXPECT_EQ(run("-i " + (root / "cat.tlx").string() + cat), 0);
  EXPECT_EQ(run("-i " + (root / "cat.tlx").string() + cat), 4);
  expectLines("PdbToolsTest.ImportTool.log", {readFile(log)});
  EXPECT_EQ(readFile(root / "Library.zpc"), kSeedIndex + "*PARTITION pdb cat\n");
}

}  // namespace
