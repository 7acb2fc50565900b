// The converter configuration file and the symbol name map.

#include <gtest/gtest.h>

#include "components/hpp/impl/sym_config_managers_impl.hpp"
#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
using NComponent::NConfig::SymNameMapManager;
using NComponent::NConfig::SymXltConfigManager;
using NComponent::NConfig::NSymbol::TDataMapping;

namespace {

struct SymConfigTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  log4cxx::LoggerPtr translation, component;
  void SetUp() override {
    ASSERT_TRUE(host.start());
    // Two distinct loggers: the host's translation sink and its init sink
    // stand in for the translation and component loggers.
    translation = NComponent::getTranslationLogger(*NComponent::gComponent);
    component = NComponent::getInitializationLogger(*NComponent::gComponent);
    host.clearRecords();
  }
  void TearDown() override { host.release(); }

  boost::filesystem::path file(const std::string& name) { return tmp.path() / name; }

  SymXltConfigManager readXlt(const std::string& text) {
    writeFile(file("x.cfg"), text);
    SymXltConfigManager manager;
    EXPECT_TRUE(manager.read(file("x.cfg"), component, translation));
    return manager;
  }
  std::string dump(const SymXltConfigManager& manager) {
    std::string out;
    for (const auto& section : manager.sections()) {
      out += section.name + "\n";
      for (const auto& entry : section.entries) out += "  <" + entry.first + "> = <" + entry.second + ">\n";
    }
    return out;
  }
  // Both sinks with the same text, translation first.
  std::vector<std::string> both(const std::string& level, const std::string& text) {
    return {"translation " + level + " " + text, "init " + level + " " + text};
  }
};

// ---------------------------------------------------------------------------
// SymXlt configuration

TEST_F(SymConfigTest, XltReaderSectionsAndEntries) {
  SymXltConfigManager manager = readXlt(
      "junk before=any\n"
      "   [X]   \n"
      "a=b=c\n"
      "a=\n"
      "=b\n"
      "[X] y\n"
      "[X] y=z\n"
      "; comment\n"
      "# c=d\n"
      "\n"
      "  k = v  \n"
      "[]\n"
      "[ DESIGN SCALING ]\n"
      "Scale=2\n");
  EXPECT_EQ(dump(manager),
            "[X]\n"
            "  <a=b> = <c>\n"
            "  <a> = <>\n"
            "  <[X] y> = <z>\n"
            "  <# c> = <d>\n"
            "  <k > = < v  >\n"
            "[ DESIGN SCALING ]\n"
            "  <Scale> = <2>\n");
  std::string path = file("x.cfg").string();
  std::vector<std::string> expected = both("DEBUG", "Reading SymXlt configuration file: " + path);
  std::string before =
      "Reading SymXlt configuration file: line with following number exists before first section, "
      "so will be skipped: ";
  std::string improper =
      "Reading SymXlt configuration file: the content of line with following number seems to be "
      "improper, so will be skipped: ";
  for (const auto& line : {before + "1", improper + "5", improper + "6", improper + "8", improper + "12"})
    for (const auto& l : both("WARN", line)) expected.push_back(l);
  EXPECT_EQ(host.lines(), expected);
}

TEST_F(SymConfigTest, XltTrailingBlanksSurviveAReadWriteCycle) {
  const std::string text =
      "[PACKAGE ATTRIBUTES]\n"
      "REF=REFDES  \n"
      "VALUE=\t\n"
      "\n"
      "[DESIGN SCALING]\n"
      "Scale=1\n"
      "\n";
  SymXltConfigManager manager = readXlt(text);
  ASSERT_TRUE(manager.write(file("out.cfg"), component, translation));
  EXPECT_EQ(readFile(file("out.cfg")), text);
  EXPECT_EQ(manager.findSection("[PACKAGE ATTRIBUTES]")->entries.front().second, "REFDES  ");
}

TEST_F(SymConfigTest, XltRepeatedSectionsStaySeparateAndOnlyTheFirstIsReached) {
  SymXltConfigManager manager = readXlt("[A]\nk=1\n[B]\n[A]\nk=2\n");
  ASSERT_EQ(manager.sections().size(), 3u);
  manager.setEntry(manager.findSection("[A]"), "k", "3");
  manager.setEntry(manager.findSection("[A]"), "new", "4");
  manager.setEntry(manager.findSection("[missing]"), "dropped", "5");
  EXPECT_EQ(manager.findSection("[missing]"), manager.end());
  EXPECT_EQ(dump(manager),
            "[A]\n"
            "  <k> = <3>\n"
            "  <new> = <4>\n"
            "[B]\n"
            "[A]\n"
            "  <k> = <2>\n");
  // Reading again appends; the manager is copied whole.
  ASSERT_TRUE(manager.read(file("x.cfg"), component, translation));
  SymXltConfigManager copy = manager;
  copy.setEntry(copy.findSection("[B]"), "only", "copy");
  EXPECT_EQ(manager.sections().size(), 6u);
  EXPECT_TRUE(manager.findSection("[B]")->entries.empty());
  EXPECT_EQ(copy.findSection("[B]")->entries.size(), 1u);
}

TEST_F(SymConfigTest, XltFileFailuresAndEmptyWrite) {
  SymXltConfigManager manager;
  std::string missing = file("none.cfg").string();
  EXPECT_FALSE(manager.read(missing, component, translation));
  EXPECT_EQ(host.texts("translation", "ERROR"),
            std::vector<std::string>{"Reading SymXlt configuration file: cannot open file for reading: " + missing});
  EXPECT_EQ(host.texts("init", "ERROR"), host.texts("translation", "ERROR"));
  host.clearRecords();

  EXPECT_FALSE(manager.write(tmp.path() / "no" / "out.cfg", component, translation));
  EXPECT_EQ(host.texts("translation", "ERROR"),
            std::vector<std::string>{"Writing SymXlt configuration file:  cannot open file for writing: " +
                                     (tmp.path() / "no" / "out.cfg").string()});
  host.clearRecords();

  writeFile(file("old.cfg"), "[A]\n");
  EXPECT_TRUE(manager.write(file("old.cfg"), component, translation));
  EXPECT_EQ(readFile(file("old.cfg")), "");
  std::vector<std::string> expected = both("DEBUG", "Writing SymXlt configuration file: " + file("old.cfg").string());
  for (const auto& l : both("WARN", "Writing SymXlt configuration file:  no data, so the file will be empty: " +
                                        file("old.cfg").string()))
    expected.push_back(l);
  EXPECT_EQ(host.lines(), expected);
}

TEST_F(SymConfigTest, FillingFromAMappingUsesTheKnownTablesAndTheFittingScale) {
  SymXltConfigManager manager =
      readXlt("[PACKAGE ATTRIBUTES]\nREF=old\n\n[PIN ATTRIBUTES]\n\n[PIN TYPES]\n\n[DESIGN SCALING]\nScale=1\n\n");
  TDataMapping mapping;
  mapping.bodyProperties = {{"REF", "Ref Designator"},   // the label: internal name
                            {"PART_NO", "DEVICE"},       // already internal
                            {"SP_HPPN", "Part Number"},  // the label of its own row
                            {"FOO", "Part Number"},      // not in the table: as mapped
                            {"COMP", "COMP"}};           // label is P/D_NUM: as mapped
  mapping.pinProperties = {{"PIN_NO", "Pin Number"}, {"PINID", "PIN"}, {"X", "Pin Type"}};
  mapping.pinTypes = {{"IO", "BI"}};
  mapping.scaling = {{{"100", "mil"}, "0.5"}, {{"100", "MIL"}, "9"}};
  SymXltConfigManager copy = manager;
  copy.fillFromMapping(mapping, "100", "mil");
  ASSERT_TRUE(copy.write(file("out.cfg"), component, translation));
  EXPECT_EQ(readFile(file("out.cfg")),
            "[PACKAGE ATTRIBUTES]\n"
            "REF=REFDES\n"
            "COMP=COMP\n"
            "FOO=Part Number\n"
            "PART_NO=DEVICE\n"
            "SP_HPPN=DEVICE\n"
            "\n"
            "[PIN ATTRIBUTES]\n"
            "PINID=PIN\n"
            "PIN_NO=#\n"
            "X=Pin Type\n"
            "\n"
            "[PIN TYPES]\n"
            "IO=BI\n"
            "\n"
            "[DESIGN SCALING]\n"
            "Scale=0.5\n"
            "\n");
  // No fitting record: the default scale stays; the unit compares exactly.
  SymXltConfigManager other = manager;
  other.fillFromMapping(mapping, "100", "Mil");
  EXPECT_EQ(other.findSection("[DESIGN SCALING]")->entries.front().second, "1");
  // Missing sections drop their values without harm.
  SymXltConfigManager bare;
  bare.fillFromMapping(mapping, "100", "mil");
  EXPECT_TRUE(bare.sections().empty());
}

TEST(KnownPropertiesTest, TablesHoldTheTargetToolNames) {
  const auto& body = NComponent::NConfig::knownBodyProperties();
  const auto& pins = NComponent::NConfig::knownPinProperties();
  EXPECT_EQ(body.size(), 10u);
  EXPECT_EQ(pins.size(), 4u);
  EXPECT_EQ(body.at("GLOBAL").label, "Global Signal Name");
  EXPECT_EQ(body.at("COMP").internalName, "P/D_NUM");
  EXPECT_EQ(body.at("REF").attributeName, "REFDES");
  EXPECT_EQ(pins.at("PIN_NO").internalName, "#");
  EXPECT_EQ(pins.at("PINTYPE").label, "Pin Type");
}

// ---------------------------------------------------------------------------
// Symbol name map

TEST_F(SymConfigTest, NameMapReaderSplitsOnlyAtTheSeparator) {
  writeFile(file("map.txt"),
            "  /lib/a/x\tpart with blanks\tT_X  \n"
            "\n"
            "/lib/b\tp\n"
            "/lib/c\tp\tT_C\textra\tmore\n"
            "/lib/d\t\tT_D\n");
  SymNameMapManager map;
  map.setRecord("/earlier", "e", "E");
  ASSERT_TRUE(map.read(file("map.txt"), component, translation, "\t"));
  ASSERT_EQ(map.records().size(), 4u);
  EXPECT_EQ(map.records()[0].sourceSymbol, "/earlier") << "records held before stay";
  EXPECT_EQ(map.records()[1].sourceSymbol, "/lib/a/x");
  EXPECT_EQ(map.records()[1].partition, "part with blanks");
  EXPECT_EQ(map.records()[1].targetSymbol, "T_X");
  EXPECT_EQ(map.records()[2].targetSymbol, "T_C");
  EXPECT_EQ(map.records()[3].partition, "");
  std::vector<std::string> expected = both("DEBUG", "Reading symbol name mapping file: " + file("map.txt").string());
  for (const auto& l :
       both("WARN",
            "Reading symbol name mapping file:  following line contains not enough data, so will be skipped: "
            "/lib/b\tp"))
    expected.push_back(l);
  for (const auto& l : both("WARN",
                            "Reading symbol name mapping file:  following line contains some extra data. This extra "
                            "data will be skipped: /lib/c\tp\tT_C\textra\tmore"))
    expected.push_back(l);
  EXPECT_EQ(host.lines(), expected);
}

TEST_F(SymConfigTest, NameMapSetReplacesTheFirstRecordAndWriteUsesPlainSeparator) {
  writeFile(file("map.txt"), "/a\tp\tA\n/b\tp\tB\n/a\tq\tA2\n");
  SymNameMapManager map;
  ASSERT_TRUE(map.read(file("map.txt"), component, translation, "\t"));
  EXPECT_EQ(map.records().size(), 3u) << "reading keeps duplicates";
  map.setRecord("/a", "new", "N");
  map.setRecord("/c", "p", "C");
  ASSERT_TRUE(map.write(file("out.txt"), component, translation, "\t"));
  EXPECT_EQ(readFile(file("out.txt")), "/a\tnew\tN\n/b\tp\tB\n/a\tq\tA2\n/c\tp\tC\n");
  // The separator is a regular expression when reading and plain text when writing.
  ASSERT_TRUE(map.write(file("dots.txt"), component, translation, "."));
  SymNameMapManager dots;
  ASSERT_TRUE(dots.read(file("dots.txt"), component, translation, "\\."));
  EXPECT_EQ(dots.records().size(), 4u);
  EXPECT_EQ(dots.records()[3].targetSymbol, "C");
}

TEST_F(SymConfigTest, NameMapFailuresAndEmptyWrite) {
  SymNameMapManager map;
  EXPECT_FALSE(map.read(file("none.txt"), component, translation, "\t"));
  EXPECT_TRUE(
      host.logged("init", "ERROR",
                  "Reading symbol name mapping file:  cannot open file for reading: " + file("none.txt").string()));
  EXPECT_FALSE(map.read(tmp.path(), component, translation, "\t")) << "a directory cannot be read";
  EXPECT_FALSE(map.write(tmp.path() / "no" / "x.txt", component, translation, "\t"));
  EXPECT_TRUE(host.logged(
      "translation", "ERROR",
      "Writing symbol name mapping file:  cannot open file for writing: " + (tmp.path() / "no" / "x.txt").string()));
  host.clearRecords();
  EXPECT_TRUE(map.write(file("empty.txt"), component, translation, "\t"));
  EXPECT_EQ(readFile(file("empty.txt")), "");
  EXPECT_TRUE(host.logged(
      "translation", "WARN",
      "Writing symbol name mapping file:  no data, so the file will be empty: " + file("empty.txt").string()));
}

}  // namespace
