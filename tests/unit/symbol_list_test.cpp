// Symbol list items and lists (paths, uses, pin maps, postfixes, merging),
// their files (reader, writer, byte format, name patterns), part list files
// and the neutral symbol file reader.

#include "common/symbol_list.hpp"

#include <gtest/gtest.h>

#include <boost/algorithm/string/join.hpp>
#include <map>
#include <sstream>

#include "common/part_list_file.hpp"
#include "common/symbol_list_file.hpp"
#include "common/symbol_neutral_handler.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"
#include "support/recording_logger.hpp"

using namespace vlttest;
using rig_common::CPartListFileReader;
using rig_common::CSymbolList;
using rig_common::CSymbolListFileReader;
using rig_common::CSymbolListFileWriter;
using rig_common::CSymbolListItem;
using rig_common::TLXNode;
using rig_common::TSymbolUse;
using Strings = std::vector<std::string>;

namespace {

std::string dump(const CSymbolListItem& item) {
  std::ostringstream out;
  if (item.root) rig_common::writeTLX(out, *item.root);
  return out.str();
}

std::string dump(const CSymbolList& list) {
  std::string out;
  for (const auto& item : list) out += dump(item);
  return out;
}

Strings uses(const CSymbolListItem& item) {
  Strings out;
  for (TSymbolUse u = item.firstUse(); !u.atEnd(); u = item.nextUse(u))
    out.push_back(u.catalogName() + "/" + u.partNumber() + "/" + u.compName() + "/" + u.symbolName());
  return out;
}

TEST(SymbolListItem, PathsAreNormalisedAndCheckedAndWalksSkipNodesWithoutValue) {
  auto parts = [](const CSymbolListItem& i) {
    return i.empty() ? "empty" : i.getPath() + "|" + i.getDirectory() + "|" + i.getName();
  };
  EXPECT_EQ(
      (Strings{parts(CSymbolListItem(nullptr, "")), parts(CSymbolListItem(nullptr, "'C:\\lib\\sym\"s\\nand'")),
               parts(CSymbolListItem(nullptr, "\"d:\\x\"", "'y'")), parts(CSymbolListItem(nullptr, "", "y")),
               parts(CSymbolListItem(nullptr, "d", "")), parts(CSymbolListItem(nullptr, "alone"))}),
      (Strings{"empty", "C:/lib/syms/nand|C:/lib/syms|nand", "d:/x/y|d:/x|y", "empty", "empty", "alone|alone|alone"}));
  CRecordingLogger log;
  EXPECT_TRUE(CSymbolListItem(nullptr, "a/b").isValid(&log));
  EXPECT_FALSE(CSymbolListItem(nullptr, "ab").isValid(&log));
  EXPECT_FALSE(CSymbolListItem(nullptr, std::make_unique<TLXNode>(1, "CATALOG")).isValid(&log));
  EXPECT_FALSE(CSymbolListItem(nullptr, std::make_unique<TLXNode>(1, "SK_SYMBOL_PATH")).isValid(&log));
  CSymbolListItem quoted(nullptr, std::make_unique<TLXNode>(1, "SK_SYMBOL_PATH"));
  quoted.root->addValue("'a\\b'");
  EXPECT_TRUE(quoted.isValid(nullptr));
  expectGolden("SymbolListItem.Paths.messages", log.messages);
  // Finding and walking skip nodes without a value.
  CSymbolListItem found(nullptr, "lib/s");
  found.root->addChildWithoutValue("CATALOG");
  found.root->addChild("CATALOG", "first");
  found.root->addChild("CATALOG", "second");
  EXPECT_EQ(rig_common::symbol::findChildByValue(found.root.get(), "CATALOG", "")->valueAt(0), "first");
  EXPECT_EQ(rig_common::symbol::findChildByValue(found.root.get(), "CATALOG", "second")->valueAt(0), "second");
  EXPECT_EQ(rig_common::symbol::findChildByValue(found.root.get(), "CATALOG", "Second"), nullptr);
  CSymbolListItem item(nullptr, "lib/s");
  EXPECT_TRUE(item.firstUse().atEnd());
  item.addSymbolUse("c1", "p1", "x", "s1");
  item.addSymbolUse("c1", "p1", "x", "s2");
  item.addSymbolUse("c1", "p2", "y", "s3");
  item.addSymbolUse("c2", "p3", "z", "s4");
  TLXNode* noValue = item.root->children[0]->addChildWithoutValue("QRN_PART");
  noValue->addChild("QRN_COMP", "hidden")->addChild("QRN_SYMBOL", "hidden");
  item.root->children[1]->children[0]->addChild("QRN_COMP", "nosym");
  EXPECT_EQ(uses(item), (Strings{"c1/p1/x/s1", "c1/p1/x/s2", "c1/p2/y/s3", "c2/p3/z/s4"}));
  EXPECT_TRUE(CSymbolListItem().firstUse().atEnd());
}

TEST(SymbolListItem, UsesPinMapsAndPostfixesAreFoundOrMade) {
  CSymbolListItem item(nullptr, "lib/nand");
  item.addSymbolUse("cat", "P1", "NAND2", "nand_a");
  item.addSymbolUse("cat", "P1", "NAND2", "nand_a");
  item.addPinMap("cat", "P1", "NAND2", "nand_a", "A", "A[0:1]");
  item.addPinMap("cat", "P1", "NAND2", "nand_a", "A", "A[0:2]");  // updated in place
  item.addPinMap("cat", "P2", "NAND2", "nand_a", "B", "B[0:1]");
  expectGolden("SymbolListItem.UsesPinMaps.pinMaps", {dump(item)});
  CSymbolListItem empty;
  empty.addPinMap("c", "p", "x", "s", "A", "B");
  EXPECT_TRUE(empty.empty());
  // A target pin without a value gets one.
  TLXNode* map = item.firstUse().symbol->children[0];
  map->children[1]->values.clear();
  item.addPinMap("cat", "P1", "NAND2", "nand_a", "A", "A[0:3]");
  EXPECT_EQ(map->children[1]->values, Strings{"A[0:3]"});
  EXPECT_EQ(item.firstUse().symbol->children.size(), 1u);
  // A name postfix is set or replaced.
  CSymbolListItem source(nullptr, "lib/s");
  source.addSymbolUse("c", "p", "x", "s");
  CSymbolListItem copy(source);
  TSymbolUse use = source.firstUse();
  copy.setNamePostfix(use, "_1");
  copy.setNamePostfix(use, "_2");
  expectGolden("SymbolListItem.UsesPinMaps.postfix", {dump(copy)});
  EXPECT_EQ(dump(source).find("NAME_POSTFIX"), std::string::npos);  // the copy is deep
}

TEST(SymbolListItemMerge, OtherPathReplacesTheTreeAndMissingUsesBringTheirCatalog) {
  CSymbolListItem own(nullptr, "lib/s"), other(nullptr, "lib/s"), third(nullptr, "lib/t");
  own.addSymbolUse("x", "q", "y", "t");
  third.addSymbolUse("d", "q", "y", "t");
  own.merge(third);
  EXPECT_EQ(dump(own), dump(third));
  own.merge(CSymbolListItem());
  EXPECT_TRUE(own.empty());
  CSymbolListItem mine(nullptr, "lib/s");
  mine.addSymbolUse("c", "p1", "x", "s");
  other.addSymbolUse("c", "p2", "x", "s");
  other.addSymbolUse("c", "p3", "x", "s");
  other.addSymbolUse("d", "p", "x", "s");
  mine.merge(other);
  // Each missing use copies the catalog again: c is present three times; a
  // new catalog is appended.
  EXPECT_EQ(uses(mine), (Strings{"c/p1/x/s", "c/p2/x/s", "c/p3/x/s", "c/p2/x/s", "c/p3/x/s", "d/p/x/s"}));
  EXPECT_EQ(mine.root->children.size(), 4u);
}

TEST(SymbolListItemMerge, PinMapWithSameSourcePinIsReplaced) {
  CSymbolListItem own(nullptr, "lib/s"), other(nullptr, "lib/s");
  own.addPinMap("c", "p", "x", "s", "A", "A[0:1]");
  own.addPinMap("c", "p", "x", "s", "B", "B[0:1]");
  other.addPinMap("c", "p", "x", "s", "A", "A[0:5]");
  other.addPinMap("c", "p", "x", "s", "C", "C[0:2]");
  other.firstUse().symbol->addChild("NAME_POSTFIX", "_9");  // not looked at
  own.merge(other);
  expectGolden("SymbolListItemMerge.PinMap", {dump(own)});
  own.merge(own);
  expectGolden("SymbolListItemMerge.PinMap", {dump(own)});
}

TEST(SymbolList, AddMergesByExactPathAndKeepsOrderAddAllAssignContainsClear) {
  CSymbolList list;
  CSymbolListItem b(nullptr, "lib/b");
  b.addSymbolUse("c1", "p", "x", "b");
  list.add(b);
  list.add(CSymbolListItem(nullptr, "lib/a"));
  CSymbolListItem b2(nullptr, "lib/b");
  b2.addSymbolUse("c2", "p", "x", "b");
  list.add(b2);
  list.add(CSymbolListItem(nullptr, "LIB/b"));  // case matters
  b.addSymbolUse("c9", "p", "x", "b");          // the list holds copies
  Strings said{dump(list)};
  // append keeps duplicates, find gives the first, add merges into it.
  CSymbolListItem one(nullptr, "a/x");
  one.addSymbolUse("c", "p", "x", "first");
  list.append(std::move(one));
  list.append(CSymbolListItem(nullptr, "a/x"));
  EXPECT_EQ(uses(*list.find("a/x")), Strings{"c/p/x/first"});
  CSymbolListItem more(nullptr, "a/x");
  more.addSymbolUse("c", "p", "x", "more");
  list.add(more);
  said.push_back(dump(list));
  expectGolden("SymbolList.AddMerges", said);
  CSymbolList first, second;
  first.add(CSymbolListItem(nullptr, "a/x"));
  second.add(CSymbolListItem(nullptr, "a/y"));
  second.add(CSymbolListItem(nullptr, "a/x"));
  first.addAll(second);
  first.addAll(first);
  EXPECT_EQ(first.size(), 2u);
  EXPECT_TRUE(first.contains("'a'", "\"x\""));
  EXPECT_TRUE(first.contains("a", "y"));
  EXPECT_FALSE(first.contains("a", "z"));
  first.assign(Strings{"d\\1", "d/2", "d/1"});
  EXPECT_EQ(dump(first), ".SK_SYMBOL_PATH d/1\n.SK_SYMBOL_PATH d/2\n");
  EXPECT_FALSE(first.contains("a", "x"));
  first.clear();
  EXPECT_TRUE(first.empty());
}

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

TEST_F(ListFileTest, RoundTripIsByteExactAndReaderKeepsValidItems) {
  EXPECT_EQ(rewrite(kRich), kRich);
  EXPECT_EQ(rewrite(kRich), kRich);
  // "extra" follows a level 2 keyword line, so it is a second value of the
  // item's root; written in the multi-value form it reads back as a value
  // of the file's root, which the list drops.
  std::string once = rewrite(".SK_SYMBOL_PATH a/b\n..X 1\nextra\n..Y\n");
  const std::string pad(16, ' ');  // keyword length + level + 1
  EXPECT_EQ(once, ".SK_SYMBOL_PATH a/b" + pad + "\nextra" + pad + "\n\n..X 1\n..Y \n");
  EXPECT_EQ(rewrite(once), ".SK_SYMBOL_PATH a/b\n..X 1\n..Y \n");
  // The reader keeps valid items as they stand and reports failures.
  writeFile(file("a.caf"),
            "! list\n.OTHER x\n..SK_SYMBOL_PATH hidden/under\n.SK_SYMBOL_PATH noslash\n"
            ".SK_SYMBOL_PATH a\\b\n.SK_SYMBOL_PATH a\\b\n..CATALOG c\n.sk_symbol_path l/m\n");
  CSymbolListFileReader reader(&log);
  ASSERT_TRUE(reader.read(file("a.caf")));
  // Two items of one path: no merge on reading.
  EXPECT_EQ(dump(reader.list()), ".SK_SYMBOL_PATH a\\b\n.SK_SYMBOL_PATH a\\b\n..CATALOG c\n");
  CSymbolListFileReader failing(&log);
  EXPECT_FALSE(failing.read(file("missing.caf")));
  writeFile(file("bad.caf"), ".SK_SYMBOL_PATH a/b\n...C\n");
  EXPECT_FALSE(failing.read(file("bad.caf")));
  EXPECT_TRUE(failing.list().empty());
  expectGolden("ListFileTest.RoundTrip.messages", log.messages);
}

TEST_F(ListFileTest, WritersOfEmptyExistingDamagedAndUnwritableFiles) {
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
  expectGolden("ListFileTest.Writers.catalogAdded", {readFile(file("cat.caf"))});
  // Unclosed writers write when they go, also when moved into a map.
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
  expectGolden("ListFileTest.Writers.p1", {readFile(file("p1.sym_list.caf"))});
  EXPECT_EQ(readFile(file("p2.sym_list.caf")), ".SK_SYMBOL_PATH lib/two\n");
  // Damaged or unwritable files are reported and kept.
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
  expectGolden("ListFileTest.Writers.messages", log.messages, {{tmp.str(), "$TMP"}});
}

TEST_F(ListFileTest, PartListRulesAndSymbolListNames) {
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
  // Symbol list file name patterns and stems.
  using namespace rig_common::symbol;
  Strings names;
  for (const char* name : {"cells.sym_list.caf", ".sym_list.caf", "cells.sym_list.caf.bak", "cellsXsym_list.caf",
                           "a.b.sym_list.caf", "a.sym_list.caf.sym_list.caf", "sym_partitions.caf"})
    names.push_back((isSymbolListFileName(name) ? "yes " : "no ") + symbolListStem(name));
  EXPECT_EQ(names, (Strings{"yes cells", "no ", "no ", "no ", "yes a.b", "yes a.sym_list.caf", "no "}));
}

// Keywords, last-wins fields, lists in file order, comments, case and failed parses.
TEST_F(ListFileTest, NeutralSymbolFileReadsTheSevenKeywords) {
  writeFile(file("nand2.neut"),
            "# written by the symbol tool\nSYMBOL nand2\r\n  REFDES_VALUE U?  \nUNIT_NAME MM\nPIN_SPACING 0.1\n"
            "\nUNIT_NAME\tINCH\nPIN_SPACING   0.10 \nBODY_PROPERTY  Value text\nBODY_PROPERTY CLASS\n"
            "BODY_PROPERTY CLASS\n # PIN_NAME X\nSymbol other\nPIN_PROPERTY PIN_NO\nPIN_NAME A\nPIN_NAME\n"
            "DESCRIPTION ignored\nPIN_NAME B");
  rig_common::CVlt2hrwSymbolNeutralHandler handler;
  auto fields = [&handler] {
    Strings out{handler.getSymbolName(), handler.getRefdesValue(), handler.getUnitName(), handler.getPinSpacing()};
    for (const auto& list : {handler.getBodyProperties(), handler.getPinProperties(), handler.getPinNames()})
      out.push_back(boost::algorithm::join(list, ","));
    return out;
  };
  ASSERT_TRUE(handler.parse(file("nand2.neut")));
  EXPECT_EQ(fields(), (Strings{"nand2", "U?", "INCH", "0.10", "Value text,CLASS,CLASS", "PIN_NO", "A,,B"}));
  // A failed parse leaves nothing of the earlier one; an empty file parses.
  EXPECT_FALSE(handler.parse(file("missing.neut")));
  EXPECT_FALSE(handler.parse(tmp.str()));
  EXPECT_EQ(fields(), Strings(7));
  writeFile(file("empty.neut"), "");
  EXPECT_TRUE(handler.parse(file("empty.neut")));
  EXPECT_EQ(fields(), Strings(7));
}

}  // namespace
