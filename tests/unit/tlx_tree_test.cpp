// Keyword tree files: the parse, its failure reports, searches and writing.

#include "common/tlx_tree.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <sstream>

#include "support/fake_host.hpp"
#include "support/golden.hpp"
#include "support/recording_logger.hpp"

using rig_common::TLXInput;
using rig_common::TLXManager;
using rig_common::TLXNode;
using vlttest::CRecordingLogger;

namespace {

struct TlxTest : ::testing::Test {
  CRecordingLogger log;
  std::unique_ptr<TLXManager> tree = std::make_unique<TLXManager>(&log);
  // Parses `text` into a fresh tree.
  bool parse(const std::string& text) {
    tree = std::make_unique<TLXManager>(&log);
    std::istringstream in(text);
    return tree->readStream(in);
  }
  TLXNode& root() { return *tree->root; }
};

TEST_F(TlxTest, KeywordAndArgumentLinesBuildTheTreeAndFailuresReportTheLine) {
  EXPECT_TRUE(parse("! comment\n\n   \t\n!.A 1\n"));
  EXPECT_TRUE(root().children.empty());
  ASSERT_TRUE(parse(".A\n..B 1\n  x y \n...C\n....D\nz\n.E  two  words \r\nA.B\n"));
  ASSERT_EQ(root().children.size(), 2u);
  TLXNode& a = *root().children[0];
  EXPECT_EQ(a.keyword, "A");
  EXPECT_EQ(a.level, 1u);
  EXPECT_EQ(a.parent, &root());
  // A keyword alone has one empty value; an argument line adds a value to
  // the parent of the last keyword line; a full stop inside a line is no level.
  EXPECT_EQ(a.values, (std::vector<std::string>{"", "x y"}));
  TLXNode& b = *a.children[0];
  EXPECT_EQ(b.level, 2u);
  EXPECT_EQ(b.parent, &a);
  EXPECT_EQ(b.values, (std::vector<std::string>{"1"}));
  EXPECT_EQ(b.children[0]->children[0]->keyword, "D");
  EXPECT_EQ(b.children[0]->values, (std::vector<std::string>{"", "z"}));
  EXPECT_EQ(root().children[1]->values, (std::vector<std::string>{"two  words"}));
  EXPECT_EQ(root().values, (std::vector<std::string>{"A.B"}));
  EXPECT_TRUE(log.messages.empty());
  // Parse failures report the line: the messages of each text in turn.
  std::vector<std::string> reports;
  for (const char* text : {"! header\n\nstray\n.A 1\n", ". v\nstray\n", "\n  ..A 1  \n", "...A\n",
                           ".A\n!c\n..B\n....C\n", ".A 1\n ... \n.B 2\n"}) {
    log.messages.clear();
    TLXManager fresh(&log);
    std::istringstream in(text);
    EXPECT_FALSE(fresh.readStream(in)) << text;
    reports.push_back("---");
    reports.insert(reports.end(), log.messages.begin(), log.messages.end());
  }
  vlttest::expectGolden("TlxTest.ParseFailures", reports);
  // What was built before the failure stays.
  EXPECT_FALSE(parse(".A\n..B\n....C\n"));
  EXPECT_EQ(root().children[0]->children[0]->keyword, "B");
  log.messages.clear();
  std::istringstream in(".A\n");
  in.setstate(std::ios::failbit);
  EXPECT_FALSE(tree->readStream(in));
  EXPECT_FALSE(tree->readFile("/nonexistent/x.tlx"));
  EXPECT_EQ(log.messages, (std::vector<std::string>{"5 Input stream is not valid.",
                                                    "5 Cannot open file for reading: /nonexistent/x.tlx"}));
}

TEST_F(TlxTest, FilesBlocksHandedBackLinesDepthAndSearches) {
  vlttest::CTempDir tmp;
  vlttest::writeFile(tmp.path() / "a.tlx", ".A 1\n..B 2");
  ASSERT_TRUE(tree->readFile((tmp.path() / "a.tlx").string()));
  EXPECT_EQ(root().children[0]->children[0]->valueAt(0), "2");
  std::istringstream in("..B 2\n");
  TLXInput input(in);
  input.handBack(".A 1");
  std::vector<std::string> seen;
  input.progress = [&](int kind, const rig_common::TLXHandler::TLXProgress& p) {
    seen.push_back(std::to_string(kind) + " " + std::to_string(p.level) + " " + p.keyword + " " + p.line);
  };
  ASSERT_TRUE(tree->read(input));
  EXPECT_EQ(input.lineNumber, 1);
  EXPECT_EQ(seen, (std::vector<std::string>{"0 1 A .A 1", "0 2 B ..B 2"}));
  // Lines across read blocks and longer than one; line numbers count every line.
  const std::string longValue(200000, 'v');
  std::string text;
  for (int i = 0; i < 20000; ++i) text += ".K" + std::to_string(i) + " value " + std::to_string(i) + "\n";
  text += ".LONG " + longValue + "\r\n.LAST x";
  ASSERT_TRUE(parse(text));
  ASSERT_EQ(root().children.size(), 20002u);
  EXPECT_EQ(root().children[12345]->keyword, "K12345");
  EXPECT_EQ(root().children[19999]->valueAt(0), "value 19999");
  EXPECT_EQ(root().children[20000]->valueAt(0), longValue);
  EXPECT_EQ(root().children.back()->valueAt(0), "x");
  text.clear();
  for (int i = 0; i < 9000; ++i) text += "! comment number " + std::to_string(i) + "\n\n";
  EXPECT_FALSE(parse(text + "..orphan\n"));
  EXPECT_EQ(log.messages.front(), "5 Found a grandchild without a parent at line: 18001");
  text.clear();
  for (int i = 1; i <= 1500; ++i) text += std::string(static_cast<size_t>(i), '.') + "K\n";
  ASSERT_TRUE(parse(text));
  int depth = 0;
  for (const TLXNode* node = &root(); !node->children.empty(); node = node->children.front()) ++depth;
  EXPECT_EQ(depth, 1500);
  // Searches are resumable and optionally case-blind.
  ASSERT_TRUE(parse(".QRN_PART 1\n.X\n.QRN_PART 2\n.qrn_part 3\n"));
  EXPECT_EQ(root().findNextChild("QRN_PART"), nullptr);  // no search started
  EXPECT_EQ(root().findFirstChild("QRN_PART")->valueAt(0), "1");
  EXPECT_EQ(root().findNextChild("QRN_PART")->valueAt(0), "2");
  EXPECT_EQ(root().findNextChild("QRN_PART"), nullptr);
  EXPECT_EQ(root().findNextChild("QRN_PART"), nullptr);
  EXPECT_EQ(root().findFirstChild("qrn_part", false)->valueAt(0), "1");
  EXPECT_EQ(root().findNextChild("Qrn_Part", false)->valueAt(0), "2");
  EXPECT_EQ(root().findNextChild("Qrn_Part", false)->valueAt(0), "3");
  EXPECT_EQ(root().findFirstChild("MISSING"), nullptr);
}

TEST_F(TlxTest, ValuesChildrenAndTheByteFormat) {
  TLXNode* a = root().addChild("A", "v w");
  a->addChildWithoutValue("MAP");
  TLXNode* m = a->addChild("MV", "x");
  m->addValue("y");
  m->addChild("LEAF", "'q'");
  std::ostringstream out;
  rig_common::writeTLXChildren(out, root());
  EXPECT_EQ(out.str(), ".A v w\n..MAP \n..MV x     \ny     \n\n...LEAF 'q'\n");
  EXPECT_EQ(m->valueAt(7), "");  // out of range gives an empty string
  m->setValue(3, "four");
  EXPECT_EQ(m->values, (std::vector<std::string>{"x", "y", "", "four"}));
  auto copy = m->clone();  // deep: the values are the copy's own
  EXPECT_EQ(copy->parent, nullptr);
  EXPECT_EQ(copy->values, m->values);
  copy->values[1] = "z";
  copy->values.resize(5);
  EXPECT_FALSE(copy->values == m->values);
  EXPECT_EQ(m->values, (std::vector<std::string>{"x", "y", "", "four"}));
  EXPECT_EQ(std::vector<std::string>(copy->values.begin() + 1, copy->values.end()),
            (std::vector<std::string>{"z", "", "four", ""}));
  EXPECT_EQ(root().detachChild(copy.get()), nullptr);
}

// A parsed node keeps its keyword and first value behind it, in its block:
// they must stay whole when the node outlives its tree, and every copy or
// move of them must own its characters.
TEST_F(TlxTest, ParsedTextsOutliveTheTreeAndCopiesOwnTheirCharacters) {
  ASSERT_TRUE(parse(".PART_CONTAINER \"$GEN_LIB/a/long/container/path\"\n..QRN_MAP_FILE m.map\nsecond\n.B\n"));
  auto part = root().detachChild(root().children.front());
  rig_common::TLXHandler::TLXValues moved = std::move(part->values);
  rig_common::TLXHandler::TLXText keyword = part->keyword;
  tree.reset();
  EXPECT_EQ(moved, (std::vector<std::string>{"\"$GEN_LIB/a/long/container/path\"", "second"}));
  EXPECT_TRUE(part->values.empty());
  TLXNode* map = part->children.front();
  EXPECT_EQ(map->keyword, "QRN_MAP_FILE");
  map->values[0] = map->values[0].view().substr(2);  // from its own characters
  map->addValue(map->values[0]);
  EXPECT_EQ(map->values, (std::vector<std::string>{"map", "map"}));
  part.reset();
  EXPECT_EQ("in " + keyword + "!", "in PART_CONTAINER!");
}

TEST(TlxChildren, DetachAnywhereKeepsTheListAndTheCursorWhole) {
  TLXNode root;
  TLXNode* a = root.addChild("A", "1");
  TLXNode* b = root.addChild("B", "2");
  TLXNode* c = root.addChild("C", "3");
  root.findFirstChild("B");
  auto last = root.detachChild(c);
  EXPECT_EQ(last->parent, nullptr);
  EXPECT_EQ(root.children.back(), b);
  root.detachChild(a);
  EXPECT_EQ(root.children.front(), b);
  EXPECT_EQ(root.cursor, b);
  root.adoptChild(std::move(last));
  EXPECT_EQ(std::vector<TLXNode*>(root.children.begin(), root.children.end()), (std::vector<TLXNode*>{b, c}));
  EXPECT_EQ(root.findNextChild("C"), c);
  root.detachChild(b);
  EXPECT_EQ(root.children.front(), c);
  EXPECT_EQ(root.children.back(), c);
}

}  // namespace
