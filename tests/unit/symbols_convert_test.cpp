// convert_symbols through recording stand-ins of the symbol tool and the library update tool.

#include <gtest/gtest.h>
#include <stdlib.h>

#include "components/hpp/convert_symbols.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

namespace fs = boost::filesystem;
using namespace vlttest;

namespace {

const std::string kDefaultConfig =
    "[PACKAGE ATTRIBUTES]\nREF=REFDES\n\n[PIN ATTRIBUTES]\nPIN_NO=#\n\n[PIN TYPES]\nIN=IN\n\n"
    "[DESIGN SCALING]\nScale=1.0\n\n";
const std::string kMapping =
    "<rig><symbol_data><data_map id='m'><scaling><pin_spacing val='0.1' unit='INCH' factor='2.5'/>"
    "<pin_spacing val='0.10' unit='INCH' factor='9'/></scaling>"
    "<body_properties><property sk='REF' td='Ref Designator'/><property sk='VALUE' td='Val'/></body_properties>"
    "<pin_properties><property sk='PIN_NO' td='Pin Number'/></pin_properties>"
    "<pin_types><type sk='IN' td='INPUT'/></pin_types></data_map></symbol_data></rig>";

struct ConvertSymbolsTest : WorkDirHostTest {
  fs::path library = wdir / "Library", bin = tmp.path() / "bin", rec = tmp.path() / "rec",
           kve = tmp.path() / "qlln" / "KVE_HOME" / "lm" / "win32" / "bin";

  void SetUp() override {
    WorkDirHostTest::SetUp();
    for (const auto& dir : {neutral / "symbol_lists", library / "SymbolLibs" / "P", bin, kve, rec})
      fs::create_directories(dir);
    const fs::path recorder = fs::path(VLT_TEST_BIN_DIR) / "record_tool";
    fs::create_symlink(recorder, bin / "sksym2td.exe");
    fs::create_symlink(recorder, kve / "tdlib2zpc.exe");
    writeFile(config / "symbol_data.xml",
              "<rig><symbol_data><common start='1' stop='1' depth='1'/><default/><partition_data>"
              "<partition name='lib_n' rename='P' file='m.xml' id='m'/></partition_data></symbol_data></rig>");
    writeFile(config / "m.xml", kMapping);
    writeFile(config / "sk2td_symbols_only.cfg", kDefaultConfig);
    writeFile(config / "excluded_symbols.caf", ".SK_SYMBOL_PATH /lib/x.y/gone\n");
    writeFile(neutral / "symbols_1" / "x.y" / "a.b.neut", "SYMBOL a.b\nUNIT_NAME INCH\nPIN_SPACING 0.1\n");
    writeFile(neutral / "symbols_1" / "x.y" / "bad.neut", "SYMBOL bad\nUNIT_NAME MM\n");
    writeFile(neutral / "symbol_lists" / "P.sym_list.caf",
              ".SK_SYMBOL_PATH /lib/x.y/a.b\n..CATALOG c\n...QRN_PART 1\n....QRN_COMP U\n.....QRN_SYMBOL a.b\n"
              "......NAME_POSTFIX _1\n......LOGIC_PIN_MAP \n.......SK_PIN A\n.......TD_PIN A[0:2]\n"
              ".SK_SYMBOL_PATH /lib/x.y/missing\n.SK_SYMBOL_PATH /lib/x.y/gone\n.SK_SYMBOL_PATH /lib/x.y/bad\n");
    setenv("RECORD_TOOL_DIR", rec.c_str(), 1);
    setenv("RECORD_TOOL_FAIL_ON", "/bad\n", 1);
    unsetenv("KVE_HOME");
    host.setService("get qlln installation path", (tmp.path() / "qlln").string());
    host.setService("get rig install bin", bin.string());
  }
  void TearDown() override {
    unsetenv("RECORD_TOOL_DIR");
    unsetenv("RECORD_TOOL_FAIL_ON");
    WorkDirHostTest::TearDown();
  }
  std::string calls() { return readFile(rec / "calls.txt"); }
  std::string updateCall() {
    return "tdlib2zpc.exe -CentralLib=" + (library / "Library.zpc").string() +
           "|-Partition=P|-LogFile=" + (log / "tdlib2zpc.log").string() + "\n";
  }
};

TEST_F(ConvertSymbolsTest, ConvertsEachSymbolWithItsFittedConfigurationAndUpdatesThePartition) {
  ASSERT_TRUE(NComponent::convertSymbols(" map "));
  // Labels become internal names; the scale of the exact (spacing, unit) pair.
  // Without a fitting record the default scale stays.
  const fs::path dir = neutral / "symbols_1" / "x.y";
  TLines files;
  for (const fs::path& file :
       {dir / "a.b_sk2td_symbols_only.cfg", dir / "bad_sk2td_symbols_only.cfg", rec / "stdin.txt",
        log / "rejected_symbols.caf", library / "TranslationData" / "symname_map.txt", log / "symbol_converter.log"})
    files.insert(files.end(), {"--- " + file.filename().string(), readFile(file)});
  const std::string name = "ConvertSymbolsTest.ConvertsEachSymbolWithItsFittedConfigurationAndUpdatesThePartition";
  expectGolden(name + ".files", files, {{tmp.str(), "$TMP"}});
  // The missing neutral file: no tool; the failed symbol: the update runs.
  EXPECT_EQ(calls(), "sksym2td.exe -nostart\n" + updateCall() + "sksym2td.exe -nostart\n" + updateCall());
  expectGolden(name, withoutEnvironment(host.lines()), {{tmp.str(), "$TMP"}});
}

TEST_F(ConvertSymbolsTest, NameMapIsKeptAcrossRunsAndADefaultConfigurationNeedsNoNeutralFile) {
  writeFile(library / "TranslationData" / "symname_map.txt", "/old/s\tQ\told_s\nonly\ttwo\n/lib/x.y/bad\tP\tstale\n");
  fs::remove(config / "m.xml");
  fs::remove(kve / "tdlib2zpc.exe");
  unsetenv("RECORD_TOOL_FAIL_ON");
  ASSERT_TRUE(NComponent::convertSymbols("map"));
  EXPECT_EQ(readFile(library / "TranslationData" / "symname_map.txt"),
            "/old/s\tQ\told_s\n/lib/x.y/bad\tP\tx_y_bad\n/lib/x.y/a.b\tP\tx_y_a_b\n/lib/x.y/missing\tP\tx_y_missing\n");
  EXPECT_EQ(calls(), "sksym2td.exe -nostart\nsksym2td.exe -nostart\nsksym2td.exe -nostart\n");
  EXPECT_NE(readFile(rec / "stdin.txt").find("symxlt_cfg_file " + (config / "sk2td_symbols_only.cfg").string()),
            std::string::npos);
  expectGolden("ConvertSymbolsTest.NameMapIsKeptAcrossRunsAndADefaultConfigurationNeedsNoNeutralFile",
               withoutEnvironment(host.lines()), {{tmp.str(), "$TMP"}});
  EXPECT_EQ(readFile(log / "rejected_symbols.caf"), "");
}

TEST_F(ConvertSymbolsTest, TargetNameUpdateToolLineSetUpFailuresAndAnEmptyRun) {
  EXPECT_EQ(NComponent::NSymbol::targetSymbolName("/lib/x.y", "a.b", 1), "x_y_a_b");
  EXPECT_EQ(NComponent::NSymbol::targetSymbolName("/lib/d/x", "a", 2), "d_x_a");
  EXPECT_EQ(
      NComponent::NSymbol::tdlib2zpcCommandLine("/k h/lm/win32/bin/tdlib2zpc.exe", "/w=d/Library", "P", "/w=d/log"),
      "cmd /c \"\"\\k h\\lm\\win32\\bin\\tdlib2zpc.exe\" -CentralLib=/w=d/Library/Library.zpc -Partition=P "
      "-LogFile=\"\\w=d\\log\\tdlib2zpc.log\" >> \"\\w=d\\log\\symbol_converter.log\" 2>&1\"");
  fs::remove(neutral / "symbol_lists" / "P.sym_list.caf");
  ASSERT_TRUE(NComponent::convertSymbols("map"));
  EXPECT_EQ(readFile(library / "TranslationData" / "symname_map.txt"), "");
  EXPECT_FALSE(fs::exists(rec / "calls.txt"));
  fs::remove_all(library / "SymbolLibs");
  host.clearRecords();
  EXPECT_FALSE(NComponent::convertSymbols("map"));
  expectGolden("ConvertSymbolsTest.TargetNameUpdateToolLineSetUpFailuresAndAnEmptyRun", host.lines(),
               {{tmp.str(), "$TMP"}});
}

}  // namespace
