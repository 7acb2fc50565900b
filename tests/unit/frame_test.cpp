// Component entry, prologue, logging facade and list handles.

#include <gtest/gtest.h>

#include "components/hpp/component.hpp"
#include "components/hpp/list_registry.hpp"
#include "components/hpp/misc.hpp"
#include "components/hpp/script_functions.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
using NComponent::gComponent;

namespace {

struct FrameTest : ::testing::Test {
  CFakeHost host;
  CTempDir tmp;
  void TearDown() override { host.release(); }
};

TEST_F(FrameTest, StartsWithConfigurationAndSetsTranslator) {
  ASSERT_TRUE(host.start());
  EXPECT_NE(host.params.bindScriptFunction, nullptr);
  EXPECT_NE(host.params.releaseComponent, nullptr);
  EXPECT_EQ(host.parameters()["translator"], "vlt2hrw");
  EXPECT_EQ(host.lines(), (TLines{"init DEBUG Component is starting: vlt2hrw_main",
                                  "init DEBUG Component started successfully: vlt2hrw_main"}));
}

// A missing or malformed file fails the start; an empty root element is enough.
TEST_F(FrameTest, ConfigurationFileMustExistAndParse) {
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
  writeFile(tmp.path() / "config_vlt2hrw_main.xml", "<rig/>");
  EXPECT_TRUE(host.start());
}

TEST_F(FrameTest, NoInitializationLoggerFailsSilently) {
  host.failService("get component initialization logger");
  EXPECT_FALSE(host.start());
  EXPECT_FALSE(gComponent);
  EXPECT_TRUE(host.records().empty());
}

// The prologue: the working directory check on the translation sink alone,
// silence without a translation logger, then the source library check.
TEST_F(FrameTest, PrologueChecksInOrder) {
  ASSERT_TRUE(host.start());
  host.clearRecords();
  EXPECT_EQ(NComponent::new1DList(), "");
  EXPECT_EQ(host.lines(), TLines{"translation ERROR Working directory has not been set."});
  EXPECT_EQ(host.opened(), 0);
  host.clearRecords();
  host.failService("get component translation logger");
  EXPECT_EQ(NComponent::new1DList(), "");
  EXPECT_TRUE(host.records().empty());
  host.failService("get component translation logger", false);
  host.setWdir(tmp.str());
  NComponent::CScriptCall call(NComponent::CScriptCall::kWdirAndSource);
  EXPECT_FALSE(call.ok());
  EXPECT_EQ(host.lines(), TLines{"translation ERROR Source library location has not been set."});
}

// The private logger opens and closes once per call, also when the call is
// left by an exception.
TEST_F(FrameTest, PrivateLoggerOpensAndClosesOncePerCall) {
  ASSERT_TRUE(host.start());
  host.setWdir(tmp.str());
  host.clearRecords();
  std::string rid = NComponent::new1DList();
  EXPECT_FALSE(rid.empty());
  EXPECT_EQ(host.opened(), 1);
  EXPECT_EQ(host.closed(), 1);
  EXPECT_EQ(host.lines(), TLines{"component DEBUG Creating 1D list."});
  removeList(rid);
  try {
    NComponent::CScriptCall call;
    ASSERT_TRUE(call.ok());
    throw std::runtime_error("boom");
  } catch (const std::runtime_error&) {
  }
  EXPECT_EQ(host.opened(), 2);
  EXPECT_EQ(host.closed(), 2);
}

TEST(LoggerFacade, LevelsMapAndUnknownLevelsAreDropped) {
  CFakeHost host;
  log4cxx::LoggerPtr init = host.logger("get component initialization logger");
  rig_common::log4rig::Log4Cxx facade({init, log4cxx::LoggerPtr()});
  for (int level = 0; level <= 8; ++level) facade(level, "m" + std::to_string(level));
  EXPECT_EQ(host.lines(), (TLines{"init DEBUG m2", "init INFO m3", "init WARN m4", "init ERROR m5", "init FATAL m6"}));
}

// A message below the threshold is never formatted.
struct CCountingValue {
  int* count;
};
std::ostream& operator<<(std::ostream& out, const CCountingValue& v) {
  ++*v.count;
  return out << "value";
}

TEST(LoggerFacade, NoTextIsBuiltBehindADisabledLevel) {
  CFakeHost host;
  host.setLevel("INFO");
  log4cxx::LoggerPtr init = host.logger("get component initialization logger");
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

}  // namespace
