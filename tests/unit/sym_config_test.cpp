// The converter configuration file and the symbol name map.

#include <gtest/gtest.h>

#include "components/hpp/impl/sym_config_managers_impl.hpp"
#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using NComponent::NConfig::SymNameMapManager;
using NComponent::NConfig::SymXltConfigManager;
using NComponent::NConfig::NSymbol::TDataMapping;

namespace {

struct SymConfigTest : StartedHostTest {
  log4cxx::LoggerPtr translation, component;
  void SetUp() override {
    StartedHostTest::SetUp();
    // The host's init sink stands in for the component logger.
    translation = NComponent::getTranslationLogger(*NComponent::gComponent);
    component = NComponent::getInitializationLogger(*NComponent::gComponent);
  }
  NComponent::TSinks sinks() const { return {translation, component}; }
  std::string file(const std::string& name) { return (tmp.path() / name).string(); }
  SymXltConfigManager readXlt(const std::string& text) {
    writeFile(file("x.cfg"), text);
    SymXltConfigManager manager;
    EXPECT_TRUE(manager.read(file("x.cfg"), sinks()));
    return manager;
  }
  bool writeXlt(SymXltConfigManager& manager, const std::string& name) { return manager.write(file(name), sinks()); }
  std::string dump(const SymXltConfigManager& manager) {
    std::string out;
    for (const auto& section : manager.sections()) {
      out += section.name + "\n";
      for (const auto& entry : section.entries) out += "  <" + entry.first + "> = <" + entry.second + ">\n";
    }
    return out;
  }
  std::string dump(const SymNameMapManager& map) {
    std::string out;
    for (const auto& r : map.records()) out += r.sourceSymbol + "|" + r.partition + "|" + r.targetSymbol + "\n";
    return out;
  }
};

TEST_F(SymConfigTest, XltReaderSectionsEntriesAndRoundTrip) {
  SymXltConfigManager manager = readXlt(
      "junk before=any\n   [X]   \na=b=c\na=\n=b\n[X] y\n[X] y=z\n; comment\n# c=d\n\n  k = v  \n[]\n"
      "[ DESIGN SCALING ]\nScale=2\n");
  expectGolden("SymConfigTest.XltReaderSectionsEntriesAndRoundTrip.dump", {dump(manager)});
  expectGolden("SymConfigTest.XltReaderSectionsEntriesAndRoundTrip", host.lines(), {{tmp.str(), "$TMP"}});

  // A round trip keeps trailing blanks; only the first of repeated sections is reached.
  const std::string text = "[PACKAGE ATTRIBUTES]\nREF=REFDES  \nVALUE=\t\n\n[DESIGN SCALING]\nScale=1\n\n";
  SymXltConfigManager kept = readXlt(text);
  ASSERT_TRUE(writeXlt(kept, "out.cfg"));
  EXPECT_EQ(readFile(file("out.cfg")), text);
  EXPECT_EQ(kept.findSection("[PACKAGE ATTRIBUTES]")->entries.front().second, "REFDES  ");
  SymXltConfigManager repeated = readXlt("[A]\nk=1\n[B]\n[A]\nk=2\n");
  repeated.setEntry(repeated.findSection("[A]"), "k", "3");
  repeated.setEntry(repeated.findSection("[A]"), "new", "4");
  repeated.setEntry(repeated.findSection("[missing]"), "dropped", "5");
  EXPECT_EQ(repeated.findSection("[missing]"), repeated.end());
  EXPECT_EQ(dump(repeated), "[A]\n  <k> = <3>\n  <new> = <4>\n[B]\n[A]\n  <k> = <2>\n");
  ASSERT_TRUE(repeated.read(file("x.cfg"), sinks()));
  EXPECT_EQ(repeated.sections().size(), 6u) << "reading again appends";
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
  ASSERT_TRUE(writeXlt(copy, "out.cfg"));
  expectGolden("SymConfigTest.FillingFromAMappingUsesTheKnownTablesAndTheFittingScale", {readFile(file("out.cfg"))});
  // No fitting record: the default scale stays; the unit compares exactly.
  manager.fillFromMapping(mapping, "100", "Mil");
  EXPECT_EQ(manager.findSection("[DESIGN SCALING]")->entries.front().second, "1");
  // Missing sections drop their values without harm.
  SymXltConfigManager bare;
  bare.fillFromMapping(mapping, "100", "mil");
  EXPECT_TRUE(bare.sections().empty());
}

TEST_F(SymConfigTest, NameMapSplitsOnlyAtTheSeparatorAndSetReplacesTheFirstRecord) {
  writeFile(file("map.txt"),
            "  /lib/a/x\tpart with blanks\tT_X  \n\n/lib/b\tp\n/lib/c\tp\tT_C\textra\tmore\n"
            "/lib/d\t\tT_D\n/lib/c\tq\tC2\n");
  SymNameMapManager map;
  map.setRecord("/earlier", "e", "E");
  ASSERT_TRUE(map.read(file("map.txt"), sinks(), "\t"));
  EXPECT_EQ(dump(map), "/earlier|e|E\n/lib/a/x|part with blanks|T_X\n/lib/c|p|T_C\n/lib/d||T_D\n/lib/c|q|C2\n");
  expectGolden("SymConfigTest.NameMapSplitsOnlyAtTheSeparatorAndSetReplacesTheFirstRecord", host.lines(),
               {{tmp.str(), "$TMP"}});
  map.setRecord("/lib/c", "new", "N");
  map.setRecord("/z", "p", "Z");
  ASSERT_TRUE(map.write(file("out.txt"), sinks(), "\t"));
  expectGolden("SymConfigTest.NameMapSplitsOnlyAtTheSeparatorAndSetReplacesTheFirstRecord.out",
               {readFile(file("out.txt"))});
  // The separator is a regular expression when reading and plain text when writing.
  ASSERT_TRUE(map.write(file("dots.txt"), sinks(), "."));
  SymNameMapManager dots;
  ASSERT_TRUE(dots.read(file("dots.txt"), sinks(), "\\."));
  EXPECT_EQ(dump(dots), dump(map));
}

TEST_F(SymConfigTest, FileFailuresAndEmptyWritesOfBothFiles) {
  SymXltConfigManager manager;
  EXPECT_FALSE(manager.read(file("none.cfg"), sinks()));
  EXPECT_FALSE(writeXlt(manager, "no/out.cfg"));
  writeFile(file("old.cfg"), "[A]\n");
  EXPECT_TRUE(writeXlt(manager, "old.cfg"));
  EXPECT_EQ(readFile(file("old.cfg")), "");
  SymNameMapManager map;
  EXPECT_FALSE(map.read(file("none.txt"), sinks(), "\t"));
  EXPECT_FALSE(map.read(tmp.str(), sinks(), "\t")) << "a directory cannot be read";
  EXPECT_FALSE(map.write(file("no/x.txt"), sinks(), "\t"));
  EXPECT_TRUE(map.write(file("empty.txt"), sinks(), "\t"));
  EXPECT_EQ(readFile(file("empty.txt")), "");
  expectGolden("SymConfigTest.FileFailuresAndEmptyWritesOfBothFiles", host.lines(), {{tmp.str(), "$TMP"}});
}

}  // namespace
