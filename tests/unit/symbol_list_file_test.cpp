// Symbol list files (reader, writer, byte format), file name patterns and
// part list files.

#include "common/symbol_list_file.hpp"

#include <gtest/gtest.h>

#include <map>

#include "common/part_list_file.hpp"
#include "support/fake_host.hpp"
#include "support/recording_logger.hpp"

using namespace vlttest;
using rig_common::CPartListFileReader;
using rig_common::CSymbolListFileReader;
using rig_common::CSymbolListFileWriter;
using rig_common::CSymbolListItem;

namespace {

struct ListFileTest : ::testing::Test {
  CTempDir tmp;
  CRecordingLogger log;
  std::string file(const std::string& leaf) const { return (tmp.path() / leaf).string(); }
  // Reads `text` through a writer opened on the file and lets it write back.
  std::string rewrite(const std::string& text) {
    writeFile(file("r.sym_list.caf"), text);
    {
      CSymbolListFileWriter writer(&log);
      EXPECT_TRUE(writer.open(file("r.sym_list.caf"), true));
    }
    return readFile(file("r.sym_list.caf"));
  }
};

const char* const kRich =
    ".SK_SYMBOL_PATH /lib/my symbols/nand a\n..CATALOG cat one\n...QRN_PART AB 123\n....QRN_COMP NAND2\n"
    ".....QRN_SYMBOL nand_a\n......NAME_POSTFIX _1\n......LOGIC_PIN_MAP \n.......SK_PIN A\n.......TD_PIN A[0:2]\n"
    "..FOREIGN_NODE 'kept as is'\n...DEEPER \n.SK_SYMBOL_PATH /lib/x\n";

TEST_F(ListFileTest, RoundTripIsByteExactAndMultiValueNodesArePadded) {
  EXPECT_EQ(rewrite(kRich), kRich);
  EXPECT_EQ(rewrite(kRich), kRich);
  // "extra" follows a level 2 keyword line, so it is a second value of the
  // item's root; written in the multi-value form it reads back as a value
  // of the file's root, which the list drops.
  std::string once = rewrite(".SK_SYMBOL_PATH a/b\n..X 1\nextra\n..Y\n");
  const std::string pad(16, ' ');  // keyword length + level + 1
  EXPECT_EQ(once, ".SK_SYMBOL_PATH a/b" + pad + "\nextra" + pad + "\n\n..X 1\n..Y \n");
  EXPECT_EQ(rewrite(once), ".SK_SYMBOL_PATH a/b\n..X 1\n..Y \n");
}

TEST_F(ListFileTest, ReaderKeepsValidItemsAsTheyStandAndReportsFailures) {
  writeFile(file("a.caf"),
            "! list\n.OTHER x\n..SK_SYMBOL_PATH hidden/under\n.SK_SYMBOL_PATH noslash\n"
            ".SK_SYMBOL_PATH a\\b\n.SK_SYMBOL_PATH a\\b\n..CATALOG c\n.sk_symbol_path l/m\n");
  CSymbolListFileReader reader(&log);
  ASSERT_TRUE(reader.read(file("a.caf")));
  ASSERT_EQ(reader.list().size(), 2u);  // two items of one path: no merge on reading
  EXPECT_EQ(reader.list().begin()->getPath(), "a\\b");
  EXPECT_EQ(std::next(reader.list().begin())->root->children.size(), 1u);
  EXPECT_TRUE(log.messages.empty());

  CSymbolListFileReader failing(&log);
  EXPECT_FALSE(failing.read(file("missing.caf")));
  writeFile(file("bad.caf"), ".SK_SYMBOL_PATH a/b\n...C\n");
  EXPECT_FALSE(failing.read(file("bad.caf")));
  EXPECT_TRUE(failing.list().empty());
  EXPECT_EQ(log.messages, (TLines{
                              "5 Cannot open the following symbol list file for reading: ",
                              "5 Inconsistency found (too many dots) at line: 2",
                              "5 Problem found during reading from the following symbol list file: ",
                          }));
}

TEST_F(ListFileTest, EmptyListsUnopenedWritersAndReadingExistingFiles) {
  writeFile(file("old.caf"), ".SK_SYMBOL_PATH a/b\n");
  {
    CSymbolListFileWriter writer;
    writer.open(file("old.caf"));
    CSymbolListFileWriter unopened;
    unopened.add("a", "b");
    CSymbolListFileWriter missing(&log);
    EXPECT_TRUE(missing.open(file("new.caf"), true));  // a missing file is no fault
  }
  EXPECT_EQ(readFile(file("old.caf")), "");
  EXPECT_EQ(readFile(file("new.caf")), "");

  writeFile(file("cat.caf"), ".SK_SYMBOL_PATH l/s\n..CATALOG c\n");
  {
    CSymbolListFileWriter writer(&log);
    ASSERT_TRUE(writer.open(file("cat.caf"), true));
    CSymbolListItem item(nullptr, "l/s");
    item.addSymbolUse("d", "p", "x", "s");
    writer.list().add(item);
  }
  EXPECT_EQ(readFile(file("cat.caf")),
            ".SK_SYMBOL_PATH l/s\n..CATALOG c\n..CATALOG d\n...QRN_PART p\n....QRN_COMP x\n.....QRN_SYMBOL s\n");
  EXPECT_TRUE(log.messages.empty());
}

TEST_F(ListFileTest, DamagedOrUnwritableFilesAreReportedAndKept) {
  writeFile(file("d.caf"), "stray\n.SK_SYMBOL_PATH l/s\n");
  {
    CSymbolListFileWriter writer(&log);
    EXPECT_FALSE(writer.open(file("d.caf"), true));
    EXPECT_TRUE(writer.impl().fileName.empty());
    writer.add("l", "t");
  }
  EXPECT_EQ(readFile(file("d.caf")), "stray\n.SK_SYMBOL_PATH l/s\n");
  // A failed write is the result of close(), or only a message when the
  // writer goes unclosed; a closed writer does not write again.
  const std::string name = file("no/such/dir/x.caf");
  {
    CSymbolListFileWriter writer(&log);
    ASSERT_TRUE(writer.open(name));
    writer.add("a", "b");
    EXPECT_FALSE(writer.close());
  }
  {
    CSymbolListFileWriter writer(&log);
    ASSERT_TRUE(writer.open(name));
  }
  {
    CSymbolListFileWriter writer(&log);
    ASSERT_TRUE(writer.open(file("c.caf")));
    writer.add("a", "b");
    EXPECT_TRUE(writer.close());
    boost::filesystem::remove(file("c.caf"));
  }
  EXPECT_FALSE(boost::filesystem::exists(file("c.caf")));
  EXPECT_EQ(log.messages, (TLines{
                              "5 Inconsistency found (argument without keyword) at line: 1",
                              "5 Problem found during reading from the following symbol list file: ",
                              "5 Cannot open the following symbol list file for writing: " + name,
                              "5 Cannot open the following symbol list file for writing: " + name,
                          }));
}

// Unclosed writers write when they go, also when moved into a map.
TEST_F(ListFileTest, UnclosedWritersWriteAtDestructionOnly) {
  {
    std::map<std::string, CSymbolListFileWriter> writers;
    for (const char* part : {"p1", "p2"}) {
      CSymbolListFileWriter writer(&log);
      ASSERT_TRUE(writer.open(file(std::string(part) + ".sym_list.caf")));
      writers.emplace(part, std::move(writer));
    }
    EXPECT_TRUE(writers.at("p1").add("'C:\\lib'", "sym"));
    CSymbolListItem item(nullptr, "C:/lib/sym");
    item.addPinMap("c", "p", "x", "sym", "A", "A[0:1]");
    writers.at("p1").list().add(item);
    writers.at("p2").add("lib", "two");
    EXPECT_FALSE(boost::filesystem::exists(file("p1.sym_list.caf")));
  }
  EXPECT_EQ(readFile(file("p1.sym_list.caf")),
            ".SK_SYMBOL_PATH C:/lib/sym\n..CATALOG c\n...QRN_PART p\n....QRN_COMP x\n.....QRN_SYMBOL sym\n"
            "......LOGIC_PIN_MAP \n.......SK_PIN A\n.......TD_PIN A[0:1]\n");
  EXPECT_EQ(readFile(file("p2.sym_list.caf")), ".SK_SYMBOL_PATH lib/two\n");
  EXPECT_TRUE(log.messages.empty());
}

TEST(SymbolListNames, PatternsAndStems) {
  using namespace rig_common::symbol;
  EXPECT_TRUE(isSymbolListFileName("cells.sym_list.caf"));
  EXPECT_FALSE(isSymbolListFileName(".sym_list.caf"));
  EXPECT_FALSE(isSymbolListFileName("cells.sym_list.caf.bak"));
  EXPECT_FALSE(isSymbolListFileName("cellsXsym_list.caf"));
  EXPECT_EQ(symbolListStem("a.b.sym_list.caf"), "a.b");
  EXPECT_EQ(symbolListStem("a.sym_list.caf.sym_list.caf"), "a.sym_list.caf");
  EXPECT_EQ(symbolListStem("sym_partitions.caf"), "");
}

TEST_F(ListFileTest, PartListRules) {
  writeFile(file("excluded_parts.caf"),
            "// header\n  cat1   AB 123  \r\n\tcat2\tX\n  // indented comment\ncat3\n\ncat4 //not a comment\n"
            "cat1 a//b\n");
  CPartListFileReader parts;
  ASSERT_TRUE(parts.read(file("excluded_parts.caf")));
  using P = std::pair<std::string, std::string>;
  EXPECT_EQ(parts.parts(),
            (std::vector<P>{{"cat1", "AB 123"}, {"cat2", "X"}, {"cat4", "//not a comment"}, {"cat1", "a//b"}}));
  EXPECT_TRUE(parts.contains("cat1", "AB 123"));
  EXPECT_FALSE(parts.contains("cat1", "ab 123"));
  EXPECT_FALSE(parts.contains("cat3", ""));
  EXPECT_FALSE(CPartListFileReader().read(file("none.caf")));
}

}  // namespace
