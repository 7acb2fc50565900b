// Tool environments of the two suites.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>

#include "components/hpp/component.hpp"
#include "components/hpp/impl/qlln_environment_impl.hpp"
#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
using NComponent::gComponent;
using NMisc::CRunProgram;

namespace {

using TEnv = CRunProgram<std::string>::TEnvironment;

// TERVIA_WIN_ROOT of the test process for one test (nullptr: unset).
struct CTerviaRoot {
  explicit CTerviaRoot(const char* value) {
    if (const char* old = std::getenv("TERVIA_WIN_ROOT")) mOld = old;
    value ? ::setenv("TERVIA_WIN_ROOT", value, 1) : ::unsetenv("TERVIA_WIN_ROOT");
  }
  ~CTerviaRoot() { mOld ? ::setenv("TERVIA_WIN_ROOT", mOld->c_str(), 1) : ::unsetenv("TERVIA_WIN_ROOT"); }
  std::optional<std::string> mOld;
};

struct QllnEnvironmentTest : StartedHostTest {
  log4cxx::LoggerPtr translation;
  std::optional<NComponent::CPrivateLogger> component;
  std::unique_ptr<CRunProgram<std::string>> run;
  void SetUp() override {
    StartedHostTest::SetUp();
    translation = NComponent::getTranslationLogger(*gComponent);
    component.emplace(*gComponent);
    host.setService("get qlln installation path", "/opt/qlln");
    run = std::make_unique<CRunProgram<std::string>>(translation);
  }
  void TearDown() override {
    run.reset();
    component.reset();
    StartedHostTest::TearDown();
  }
  // A runner starting from `env`.
  void start(const TEnv& env) {
    for (const auto& entry : env) run->replaceVariable(entry.first, entry.second);
    host.clearRecords();
  }
  bool full() { return NComponent::setQllnEnvironment(*run, *gComponent, {translation, component->get()}); }
  bool qrn() { return NComponent::setQllnQrnEnvironment(*run, *gComponent, {translation, component->get()}); }
};

// The PATH entries of the source suite below QRN_HOME `h`.
std::string qrnPath(const std::string& h) {
  return h + "/lib;" + h + "/shared/lib;" + h + "/registry/tcodes;" + h + "/bin;";
}
const std::string kQrnPath = qrnPath("/opt/qlln/QRN_HOME");
const std::string kTonic = "/opt/qlln/QRN_HOME/pkgs/ukr_int/userware/default";

// The variables the full environment sets after QRN_HOMEQL, for KVE_HOME `k`
// and QRN_HOME `h`.
TEnv kveVariables(const std::string& k, const std::string& h) {
  return {{"KVE_HOME", k},
          {"KVE_COMMON_BIN", k + "\\common\\win32\\bin"},
          {"KVE_LIB", k + "\\common\\win32\\lib"},
          {"KVE_RXV_BIN", k + "\\rxv\\win32\\bin"},
          {"KVE_LM_BIN", k + "\\lm\\win32\\bin"},
          {"TONIC_PATH", h + "/pkgs/ukr_int/userware/default"},
          {"QRN_IGNORE_BROKEN_REFS", "1"}};
}

TEnv concat(TEnv first, const TEnv& second) {
  first.insert(first.end(), second.begin(), second.end());
  return first;
}

TEST_F(QllnEnvironmentTest, FullEnvironmentOnPlatform1) {
  CTerviaRoot root("/opt/tervia");
  start({{"Path", "/usr/bin:/bin"}, {"HOME", "/root"}, {"QRN_HOME", "old"}});
  ASSERT_TRUE(full());
  const std::string k = "\\opt\\qlln\\KVE_HOME";
  EXPECT_EQ(run->environment(),
            concat({{"Path", k + "\\common\\win32\\bin;" + k + "\\common\\win32\\lib;" + kQrnPath + "/usr/bin:/bin"},
                    {"HOME", "/root"},
                    {"QRN_HOME", "/opt/qlln/QRN_HOME"},
                    {"QRN_HOMEQL", "\\opt\\qlln\\QRN_HOME"}},
                   kveVariables(k, "/opt/qlln/QRN_HOME")));
  EXPECT_EQ(host.texts("translation", "DEBUG").size(), 13u);
  EXPECT_TRUE(host.lines("component").empty());
}

TEST_F(QllnEnvironmentTest, SourceSuiteAloneOnBothPlatformsAndFailures) {
  CTerviaRoot root(nullptr);  // unset: relative entries on platform 2
  start({{"Path", "/bin"}});
  ASSERT_TRUE(qrn());
  const TEnv::value_type home{"QRN_HOME", "/opt/qlln/QRN_HOME"}, homeQl{"QRN_HOMEQL", "\\opt\\qlln\\QRN_HOME"},
      tonic{"TONIC_PATH", kTonic};
  EXPECT_EQ(run->environment(), (TEnv{{"Path", kQrnPath + "/bin"}, home, homeQl, tonic}));
  run = std::make_unique<CRunProgram<std::string>>(translation);
  host.setPlatform(2);
  ASSERT_TRUE(qrn());
  EXPECT_EQ(run->environment(), (TEnv{home, homeQl, {"PATH", "bin;usr\\X11R6\\bin;" + kQrnPath}, tonic}));
  EXPECT_TRUE(host.texts("translation", "ERROR").empty());
  // Failures change nothing and log on both sinks.
  start({{"PATH", "/bin"}});
  const TEnv before = run->environment();
  host.failService("get platform");
  EXPECT_FALSE(full());
  EXPECT_FALSE(qrn());
  host.failService("get platform", false);
  host.setPlatform(0);
  EXPECT_FALSE(qrn());
  EXPECT_EQ(host.texts("translation", "ERROR"), TLines(3, "Cannot obtain platform."));
  EXPECT_EQ(host.texts("component", "ERROR"), TLines(3, "Cannot obtain platform."));
  host.clearRecords();
  host.setPlatform(1);
  host.clearService("get qlln installation path");
  EXPECT_FALSE(full());
  EXPECT_FALSE(qrn());
  const std::string noHome = "ERROR Cannot obtain QLLN's QRN_HOME directory.";
  EXPECT_EQ(host.lines(),
            (TLines{"translation " + noHome, "component " + noHome, "translation " + noHome, "component " + noHome}));
  EXPECT_EQ(run->environment(), before);
}

TEST_F(QllnEnvironmentTest, Platform2PutsTerviaFirstAndQuotesPathsWithBlanksAsComposed) {
  host.setService("get qlln installation path", "/opt/my qlln");
  host.setPlatform(2);
  CTerviaRoot root("/opt/ter via");
  start({{"PATH", "/bin"}});
  ASSERT_TRUE(full());
  const std::string h = "\"/opt/my qlln/QRN_HOME\"";
  const std::string k = "\"\\opt\\my qlln\\KVE_HOME\"";
  EXPECT_EQ(run->environment(),
            concat({{"PATH", "\"\\opt\\ter via\\bin\";\"\\opt\\ter via\\usr\\X11R6\\bin\";" + k +
                                 "\\common\\win32\\bin;" + k + "\\common\\win32\\lib;" + qrnPath(h) + "/bin"},
                    {"QRN_HOME", h},
                    {"QRN_HOMEQL", "\"\\opt\\my qlln\\QRN_HOME\""}},
                   kveVariables(k, h)));
}

}  // namespace
