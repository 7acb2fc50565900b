// Component entry, prologue, release, logging facade, and the list registry
// with its twelve script functions.

#include <gtest/gtest.h>

#include "components/hpp/component.hpp"
#include "components/hpp/list_registry.hpp"
#include "components/hpp/misc.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

using namespace vlttest;
using namespace NComponent;

namespace {

struct FrameTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  void TearDown() override { host.release(); }
};

TEST_F(FrameTest, StartsWithConfigurationSetsTranslatorAndPrologueChecksInOrder) {
  ASSERT_TRUE(host.start());
  EXPECT_NE(host.params.bindScriptFunction, nullptr);
  EXPECT_EQ(host.parameters()["translator"], "vlt2hrw");
  EXPECT_EQ(host.lines(), (TLines{"init DEBUG Component is starting: vlt2hrw_main",
                                  "init DEBUG Component started successfully: vlt2hrw_main"}));
  // The prologue: the working directory check on the translation sink alone,
  // silence without a translation logger, then the source library check.
  host.clearRecords();
  EXPECT_EQ(new1DList(), "");
  EXPECT_EQ(host.lines(), TLines{"translation ERROR Working directory has not been set."});
  EXPECT_EQ(host.opened(), 0);
  host.clearRecords();
  host.failService("get component translation logger");
  EXPECT_EQ(new1DList(), "");
  EXPECT_TRUE(host.records().empty());
  host.failService("get component translation logger", false);
  host.setWdir(tmp.str());
  {
    CScriptCall call(CScriptCall::kWdirAndSource);
    EXPECT_FALSE(call.ok());
    EXPECT_EQ(host.lines(), TLines{"translation ERROR Source library location has not been set."});
  }
  // The private logger opens and closes once per call, also when the call is
  // left by an exception.
  host.clearRecords();
  const int opened = host.opened(), closed = host.closed();
  const std::string rid = new1DList();
  EXPECT_FALSE(rid.empty());
  EXPECT_EQ(host.opened() - opened, 1);
  EXPECT_EQ(host.closed() - closed, 1);
  EXPECT_EQ(host.lines(), TLines{"component DEBUG Creating 1D list."});
  removeList(rid);
  try {
    CScriptCall call;
    ASSERT_TRUE(call.ok());
    throw std::runtime_error("boom");
  } catch (const std::runtime_error&) {
  }
  EXPECT_EQ(host.opened() - opened, 2);
  EXPECT_EQ(host.closed() - closed, 2);
}

// Without an initialization logger the start fails silently; a missing or
// malformed file fails it (that an empty root element is enough, the
// create_wdir tests show).
TEST_F(FrameTest, InitializationLoggerAndConfigurationFileMustExist) {
  host.failService("get component initialization logger");
  EXPECT_FALSE(host.start());
  EXPECT_FALSE(gComponent);
  EXPECT_TRUE(host.records().empty());
  host.failService("get component initialization logger", false);
  host.componentDirectory() = tmp.str();
  EXPECT_FALSE(host.start());
  EXPECT_FALSE(gComponent);
  EXPECT_EQ(host.params.bindScriptFunction, nullptr);
  EXPECT_TRUE(host.logged(
      "init", "FATAL",
      "Configuration file does not exist: component: vlt2hrw_main, path: '" + tmp.str() + "/config_vlt2hrw_main.xml'"));
  host.clearRecords();
  writeFile(tmp.path() / "config_vlt2hrw_main.xml", "<rig><unclosed></rig>");
  EXPECT_FALSE(host.start());
  EXPECT_FALSE(gComponent);
  EXPECT_TRUE(host.parameters().empty());
  auto errors = host.texts("init", "ERROR");
  ASSERT_EQ(errors.size(), 1u);
  EXPECT_NE(errors[0].find("config_vlt2hrw_main.xml"), std::string::npos);
  EXPECT_NE(errors[0].find("offset"), std::string::npos);
}

// Handlers called after the release answer as failures, touch nothing and
// log nothing; the lists outlive the component, also when it starts again.
TEST_F(FrameTest, ReleasedComponentRefusesEveryHandlerWithoutAWord) {
  ASSERT_TRUE(host.start());
  host.setWdir(tmp.str());
  host.setLibrary(tmp.str());
  const std::string rid1 = new1DList(), rid2 = new2DList(), d = tmp.str();
  addItemTo1DList(rid1, "kept");
  EXPECT_FALSE(host.params.releaseComponent());
  EXPECT_FALSE(gComponent);
  host.clearRecords();
  // Every handler answers false or "" and touches nothing.
  EXPECT_FALSE(CreateWDir(d + "/w") || checkQrnLocationMap(d) || checkVLTLibraryDefinitionFile(d) ||
               checkVLTLibrary("L", d, d) || saveCatalogList(rid1) || setCatalogSymbolsOnly(true) ||
               saveCatalogs("L", d, d) || verifyCatalogs("L", d, d) || updateCatalogSymbolLists("L", d, d) ||
               saveCatalogPropertyList(rid2) || updateCatalogPropMapping("") || prepareTargetCL() ||
               obtainVltGeomPath("L", d, d) || createDefaultContainerFile("L", d, d));
  EXPECT_EQ(getVLTLibraryList(d) + getCatalogList("L", d, d) + getCatalogPropertyList() + GetLibraryUnit() +
                new1DList() + new2DList(),
            "");
  usePartNoProp(true);
  SetLibraryUnit("mm");
  addItemTo1DList(rid1, "x");
  addRowTo2DList(rid2);
  addRowItemTo2DList(rid2, "x");
  addTwoColItemTo2DList(rid2, "x", "y");
  EXPECT_TRUE(host.lines().empty());
  EXPECT_FALSE(boost::filesystem::exists(tmp.path() / "w"));
  EXPECT_EQ(get1DListItem(rid1, 0), "kept");
  EXPECT_EQ(get2DListSize(rid2), 0);
  ASSERT_TRUE(host.start());
  EXPECT_TRUE(gComponent);
  EXPECT_EQ(get1DListSize(rid1), 1);
  removeList(rid1);
  removeList(rid2);
  EXPECT_EQ(get1DListSize(rid1), -1);
}

// A message below the threshold is never formatted.
struct CCountingValue {
  int* count;
};
std::ostream& operator<<(std::ostream& out, const CCountingValue& v) {
  ++*v.count;
  return out << "value";
}

TEST(LoggerFacade, LevelsMapUnknownLevelsAreDroppedAndNoTextIsBuiltBehindADisabledLevel) {
  CFakeHost host;
  log4cxx::LoggerPtr init = host.logger("get component initialization logger");
  rig_common::log4rig::Log4Cxx facade({init, log4cxx::LoggerPtr()});
  for (int level = 0; level <= 8; ++level) facade(level, "m" + std::to_string(level));
  EXPECT_EQ(host.lines(), (TLines{"init DEBUG m2", "init INFO m3", "init WARN m4", "init ERROR m5", "init FATAL m6"}));
  host.clearRecords();
  host.setLevel("INFO");
  int built = 0;
  RIG_LOG((rig_common::log4rig::TSinks{init, log4cxx::LoggerPtr()}), Debug, "x " << CCountingValue{&built});
  RIG_LOG1(init, Debug, "x " << CCountingValue{&built});
  EXPECT_EQ(built, 0);
  RIG_LOG((rig_common::log4rig::TSinks{init, init}), Info, "x " << CCountingValue{&built});
  EXPECT_EQ(built, 2);
  EXPECT_TRUE(host.records().size() == 2);
}

}  // namespace

// The binding layer's two texts, on functions bound the way the table binds
// (the table's own names and results are checked through the real host).
#include <lua.hpp>
#include <luabind/luabind.hpp>

#include "components/general/vlt2hrw_main/script_binding.hpp"

namespace {

int throwsUnknown(int) { throw 42; }
int throwsStd(int) { throw std::runtime_error("plain failure"); }

std::string callAndGetError(lua_State* L, const char* chunk) {
  if (luaL_loadstring(L, chunk) != LUA_OK) return "load failed";
  if (lua_pcall(L, 0, 0, 0) == LUA_OK) return "no error";
  std::string message = lua_tostring(L, -1);
  lua_pop(L, 1);
  return message;
}

TEST(ScriptBinding, ErrorTextsOfTheScriptInterface) {
  lua_State* L = luaL_newstate();
  luaL_openlibs(L);
  luabind::open(L);
  luabind::module(L)[luabind::def("throws_unknown", &throwsUnknown)];
  NComponent::wrapBindingErrors(L, "throws_unknown");
  luabind::module(L)[luabind::def("throws_std", &throwsStd)];
  NComponent::wrapBindingErrors(L, "throws_std");
  EXPECT_EQ(callAndGetError(L, "throws_unknown(1)"), "throws_unknown() threw an exception");
  // Standard exceptions keep the binding layer's own wording, type and text.
  EXPECT_EQ(callAndGetError(L, "throws_std(1)"), "std::runtime_error: 'plain failure'");
  EXPECT_EQ(callAndGetError(L, "throws_unknown('x', true)"),
            "no match for function call 'throws_unknown' with the parameters (string, boolean)\n"
            "candidates are:\nint throws_unknown(int)\n");
  lua_close(L);
}

struct ListTest : StartedHostTest {};

TEST_F(ListTest, OneDimensionalItemsAndBoundsAndTheRidIsTheDecimalAddress) {
  std::string rid = new1DList();
  EXPECT_EQ(rid, std::to_string(reinterpret_cast<std::int64_t>(find(gListRegistry, rid))));
  addItemTo1DList(rid, "a");
  addItemTo1DList(rid, "");
  EXPECT_EQ(get1DListSize(rid), 2);
  EXPECT_EQ(get1DListItem(rid, 0), "a");
  EXPECT_EQ(get1DListItem(rid, -1), "");
  EXPECT_EQ(get1DListItem(rid, 2), "");
  EXPECT_THROW(item(gListRegistry, rid, 2), std::exception);
  try {
    item(gListRegistry, rid, -1);
  } catch (const std::exception& e) {
    EXPECT_STREQ(e.what(), "Item does not exists.");
  }
  removeList(rid);
  EXPECT_EQ(get1DListSize(rid), -1);
}

TEST_F(ListTest, TwoDimensionalRowRules) {
  std::string rid = new2DList();
  addRowItemTo2DList(rid, "lost");
  expectGolden("ListTest.TwoDimensional.emptyList", host.lines());
  EXPECT_EQ(get2DListSize(rid), 0);
  addRowTo2DList(rid);
  addRowItemTo2DList(rid, "x");
  addRowItemTo2DList(rid, "y");
  addTwoColItemTo2DList(rid, "k", "v");
  EXPECT_EQ(get2DListSize(rid), 2);
  EXPECT_EQ(get2DListItem(rid, 0, 1), "y");
  EXPECT_EQ(get2DListItem(rid, 1, 0), "k");
  for (auto cell : std::vector<std::pair<int, int>>{{0, 5}, {2, 0}, {-1, 0}, {1, -1}})
    EXPECT_EQ(get2DListItem(rid, cell.first, cell.second), "");
  EXPECT_THROW(item(gListRegistry, rid, 1, 2), std::exception);
  // The queries need no working directory; adding does nothing beyond the prologue.
  host.clearService("get wdir");
  host.clearRecords();
  EXPECT_EQ(new2DList(), "");
  addRowItemTo2DList(rid, "x");
  addTwoColItemTo2DList(rid, "a", "b");
  addRowTo2DList(rid);
  EXPECT_EQ(get1DListSize(""), -1);
  EXPECT_EQ(get1DListItem("", 0), "");
  EXPECT_EQ(get2DListSize("123"), -1);
  EXPECT_EQ(get2DListItem("123", 0, 0), "");
  removeList("nothing");
  EXPECT_EQ(host.texts("translation", "ERROR"), TLines(4, "Working directory has not been set."));
  EXPECT_EQ(host.records().size(), 4u);  // the queries never log
  EXPECT_EQ(get2DListSize(rid), 2);
  EXPECT_EQ(get2DListItem(rid, 0, 0), "x");
  removeList(rid);  // remove_1d_list and remove_2d_list share the handler
  EXPECT_EQ(get2DListSize(rid), -1);
}

// Unknown, removed and other-kind RIDs are refused, never read as the wrong type.
TEST_F(ListTest, UnknownRemovedAndOtherKindRids) {
  addItemTo1DList("1", "x");
  addRowTo2DList("1");
  addRowItemTo2DList("1", "x");
  addTwoColItemTo2DList("1", "a", "b");
  expectGolden("ListTest.UnknownRids.unknown", host.lines());
  std::string one = new1DList(), two = new2DList(), gone = new2DList();
  addItemTo1DList(one, "a");
  addTwoColItemTo2DList(two, "k", "v");
  removeList(gone);
  removeList(gone);  // a second remove is ignored
  host.clearRecords();
  EXPECT_EQ(get1DListSize(two), -1);
  EXPECT_EQ(get1DListItem(two, 0), "");
  EXPECT_EQ(get2DListSize(one), -1);
  EXPECT_EQ(get2DListItem(one, 0, 0), "");
  addItemTo1DList(two, "x");
  addRowTo2DList(one);
  addTwoColItemTo2DList(gone, "c", "d");
  expectGolden("ListTest.UnknownRids.otherKind", host.lines());
  EXPECT_EQ(get2DListItem(gone, 0, 0), "");
  EXPECT_EQ(get1DListSize(one), 1);
  EXPECT_EQ(get2DListSize(two), 1);
  removeList(one);  // one handler removes either kind
  removeList(two);
  EXPECT_EQ(find(gListRegistry, one), nullptr);
  EXPECT_EQ(find(gListRegistry, two), nullptr);
}

}  // namespace
