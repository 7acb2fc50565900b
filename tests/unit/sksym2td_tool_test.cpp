// The symbol tool simulator sksym2td.exe on sample symbols: target symbols
// with the SymXlt configuration (renamed and dropped properties, pin types,
// scale, a vector pin), soft prefixes and QRN_WD, and its failures.

#include <gtest/gtest.h>

#include "support/fake_host.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

namespace {

const std::string kLogic = std::string(VLT_SOURCE_DIR) + "/examples/components/digital/logic";

struct Sksym2tdToolTest : ::testing::Test {
  CTempDir tmp;
  // Runs the tool on `script` in the temporary directory; the exit code.
  int run(const std::string& script, const std::string& environment = "") {
    writeFile(tmp.path() / "script", script);
    return shell("cd '" + tmp.str() + "' && QRN_WD='" + tmp.str() + "' " + environment + " '" + VLT_TOOLS_DIR +
                 "/sksym2td.exe' -nostart < script > out.txt 2>&1");
  }
  std::string out() { return readFile(tmp.path() / "out.txt"); }
};

TEST_F(Sksym2tdToolTest, TargetSymbolsWithTheConfigurationApplied) {
  writeFile(tmp.path() / "c.cfg",
            "[PACKAGE ATTRIBUTES]\nCLASS=\nREVISION=REV\n\n[PIN ATTRIBUTES]\nPIN_NO=#\n\n[PIN TYPES]\nIO=BI\n\n"
            "[DESIGN SCALING]\nScale=2.0\n\n");
  writeFile(tmp.path() / "map", "QRN_LOCATION_MAP_1\n$LIB\n" + kLogic + "\n");
  fs::create_directories(tmp.path() / "out");
  ASSERT_EQ(run("\nsymxlt_cfg_file c.cfg\ntd_symbol_output_path out\nsymbol begin\nsk_symbol_path " + kLogic +
                    "/nand2\ntd_symbol_name logic_nand2\nsymbol end\nsymbol begin\nsk_symbol_path $LIB/buf8\n"
                    "td_symbol_name \"logic buf8_v\"\npin_map A A[0:2]\nsymbol end\nrun\nexit\n",
                "QRN_LOCATION_MAP='\"" + (tmp.path() / "map").string() + "\"'"),
            0)
      << out();
  EXPECT_EQ(readFile(tmp.path() / "out" / "logic_nand2.sym"),
            "TDSYMBOL 1\nNAME logic_nand2\nSOURCE " + kLogic +
                "/nand2.smbl_2\nDESCRIPTION \"2-input NAND gate\"\nUNIT INCH\nPIN_SPACING 0.2\nSCALE 2\nREFDES U?\n"
                "BODY 0 0 1.2 0.8\nATTRIBUTE REV 2\nPIN A IN 0 0.6 L\nPIN_ATTRIBUTE A # 1\nPIN B IN 0 0.2 L\n"
                "PIN_ATTRIBUTE B # 2\nPIN Y OUT 1.2 0.4 R\nPIN_ATTRIBUTE Y # 3\nEND\n");
  const std::string vector = readFile(tmp.path() / "out" / "logic buf8_v.sym");
  EXPECT_NE(vector.find("NAME \"logic buf8_v\"\n"), std::string::npos);
  EXPECT_NE(vector.find("PIN A[0] BI 0 0.8 L\nPIN A[1] BI 0 0.6 L\nPIN A[2] BI 0 0.4 L\nPIN B BI 1.6 0.8 R\n"),
            std::string::npos)
      << vector;
  EXPECT_NE(out().find("sksym2td: 2 symbol block(s), exit code 0\n"), std::string::npos);
}

TEST_F(Sksym2tdToolTest, FailuresAndTheirExitCodes) {
  const std::string block = "symbol begin\nsk_symbol_path " + kLogic +
                            "/mux4\ntd_symbol_neutral_path m.neut\n"
                            "symbol end\nsymbol begin\nsk_symbol_path " +
                            kLogic +
                            "/or2\ntd_symbol_neutral_path "
                            "o.neut\nsymbol end\n";
  EXPECT_EQ(run("write_symbol off\n" + block + "run\nexit\n"), 2);
  EXPECT_NE(out().find("Error: cannot read symbol " + kLogic + "/mux4: no END in " + kLogic + "/mux4.smbl_1\n"),
            std::string::npos);
  EXPECT_FALSE(fs::exists(tmp.path() / "m.neut"));
  EXPECT_TRUE(fs::exists(tmp.path() / "o.neut")) << "the other block is done";

  EXPECT_EQ(run("write_symbol off\nsymbol begin\nrun\n"), 1);
  EXPECT_EQ(out(), "Error: unknown script line 3: run\n");
  EXPECT_EQ(run("symxlt_cfg_file missing.cfg\ntd_symbol_output_path .\nsymbol begin\nsk_symbol_path " + kLogic +
                "/or2\ntd_symbol_name x\nsymbol end\nrun\nexit\n"),
            4);
  EXPECT_NE(out().find("Error: cannot read SymXlt configuration file: missing.cfg\n"), std::string::npos);
  EXPECT_EQ(run("write_symbol off\n" + block + "run\nexit\n", "SKSYM2TD_FAIL=exit:9 SKSYM2TD_FAIL_SYMBOLS=or2,x"), 9);
  EXPECT_NE(out().find("Error: sksym2td failed on request (SKSYM2TD_FAIL=exit:9)\n"), std::string::npos);
}

}  // namespace
