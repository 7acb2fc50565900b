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

// TERVIA_WIN_ROOT of the test process, set or unset for one test.
class CTerviaRoot {
 public:
  explicit CTerviaRoot(const char* value) {
    const char* old = std::getenv("TERVIA_WIN_ROOT");
    mHad = old != nullptr;
    if (mHad) mOld = old;
    if (value != nullptr)
      ::setenv("TERVIA_WIN_ROOT", value, 1);
    else
      ::unsetenv("TERVIA_WIN_ROOT");
  }
  ~CTerviaRoot() {
    if (mHad)
      ::setenv("TERVIA_WIN_ROOT", mOld.c_str(), 1);
    else
      ::unsetenv("TERVIA_WIN_ROOT");
  }

 private:
  bool mHad = false;
  std::string mOld;
};

struct QllnEnvironmentTest : ::testing::Test {
  CFakeHost host;
  log4cxx::LoggerPtr translation;
  std::optional<NComponent::CPrivateLogger> component;

  void SetUp() override {
    ASSERT_TRUE(host.start());
    translation = NComponent::getTranslationLogger(*gComponent);
    component.emplace(*gComponent);
    host.setService("get qlln installation path", "/opt/qlln");
    host.clearRecords();
  }
  void TearDown() override {
    component.reset();
    host.release();
  }

  // A runner on the host's translation logger, starting from `env`.
  std::unique_ptr<CRunProgram<std::string>> runner(const TEnv& env) {
    auto run = std::make_unique<CRunProgram<std::string>>(translation);
    for (const auto& entry : env) run->replaceVariable(entry.first, entry.second);
    return run;
  }
  bool full(CRunProgram<std::string>& run) {
    return NComponent::setQllnEnvironment(run, *gComponent, translation, component->get());
  }
  bool qrn(CRunProgram<std::string>& run) {
    return NComponent::setQllnQrnEnvironment(run, *gComponent, translation, component->get());
  }
};

const std::string kQrnPath =
    "/opt/qlln/QRN_HOME/lib;/opt/qlln/QRN_HOME/shared/lib;/opt/qlln/QRN_HOME/registry/tcodes;/opt/qlln/QRN_HOME/bin;";

TEST_F(QllnEnvironmentTest, FullEnvironmentOnPlatform1) {
  CTerviaRoot root("/opt/tervia");
  auto run = runner({{"Path", "/usr/bin:/bin"}, {"HOME", "/root"}, {"QRN_HOME", "old"}});
  host.clearRecords();
  ASSERT_TRUE(full(*run));
  EXPECT_EQ(run->environment(),
            (TEnv{{"Path", "\\opt\\qlln\\KVE_HOME\\common\\win32\\bin;\\opt\\qlln\\KVE_HOME\\common\\win32\\lib;" +
                               kQrnPath + "/usr/bin:/bin"},
                  {"HOME", "/root"},
                  {"QRN_HOME", "/opt/qlln/QRN_HOME"},
                  {"QRN_HOMEQL", "\\opt\\qlln\\QRN_HOME"},
                  {"KVE_HOME", "\\opt\\qlln\\KVE_HOME"},
                  {"KVE_COMMON_BIN", "\\opt\\qlln\\KVE_HOME\\common\\win32\\bin"},
                  {"KVE_LIB", "\\opt\\qlln\\KVE_HOME\\common\\win32\\lib"},
                  {"KVE_RXV_BIN", "\\opt\\qlln\\KVE_HOME\\rxv\\win32\\bin"},
                  {"KVE_LM_BIN", "\\opt\\qlln\\KVE_HOME\\lm\\win32\\bin"},
                  {"TONIC_PATH", "/opt/qlln/QRN_HOME/pkgs/ukr_int/userware/default"},
                  {"QRN_IGNORE_BROKEN_REFS", "1"}}));
  // The order of the edits shows in the starter's messages.
  auto debug = host.texts("translation", "DEBUG");
  ASSERT_EQ(debug.size(), 13u);
  EXPECT_EQ(debug[7], "Process starter: pushing value to front: PATH=/opt/qlln/QRN_HOME/bin;$PATH");
  EXPECT_EQ(debug[12], "Process starter: setting variable: QRN_IGNORE_BROKEN_REFS=1");
  EXPECT_TRUE(host.texts("component", "DEBUG").empty());
}

TEST_F(QllnEnvironmentTest, FullEnvironmentOnPlatform2PutsTerviaFirst) {
  host.setPlatform(2);
  CTerviaRoot root("/opt/tervia");
  auto run = runner({{"PATH", "/usr/bin"}});
  ASSERT_TRUE(full(*run));
  EXPECT_EQ(
      run->environment().front(),
      (TEnv::value_type{"PATH",
                        "\\opt\\tervia\\bin;\\opt\\tervia\\usr\\X11R6\\bin;\\opt\\qlln\\KVE_HOME\\common\\win32\\bin;"
                        "\\opt\\qlln\\KVE_HOME\\common\\win32\\lib;" +
                            kQrnPath + "/usr/bin"}));
  EXPECT_EQ(run->environment().size(), 10u);
}

TEST_F(QllnEnvironmentTest, UnsetTerviaRootGivesRelativeEntries) {
  host.setPlatform(2);
  CTerviaRoot root(nullptr);
  auto run = runner({});
  ASSERT_TRUE(qrn(*run));
  EXPECT_EQ(run->environment(), (TEnv{{"QRN_HOME", "/opt/qlln/QRN_HOME"},
                                      {"QRN_HOMEQL", "\\opt\\qlln\\QRN_HOME"},
                                      {"PATH", "bin;usr\\X11R6\\bin;" + kQrnPath},
                                      {"TONIC_PATH", "/opt/qlln/QRN_HOME/pkgs/ukr_int/userware/default"}}));
  EXPECT_TRUE(host.records().size() > 0);
  EXPECT_TRUE(host.texts("translation", "ERROR").empty());
}

TEST_F(QllnEnvironmentTest, SourceSuiteAloneOnPlatform1) {
  CTerviaRoot root("/opt/tervia");
  auto run = runner({{"Path", "/bin"}});
  ASSERT_TRUE(qrn(*run));
  EXPECT_EQ(run->environment(), (TEnv{{"Path", kQrnPath + "/bin"},
                                      {"QRN_HOME", "/opt/qlln/QRN_HOME"},
                                      {"QRN_HOMEQL", "\\opt\\qlln\\QRN_HOME"},
                                      {"TONIC_PATH", "/opt/qlln/QRN_HOME/pkgs/ukr_int/userware/default"}}));
}

TEST_F(QllnEnvironmentTest, InstallationPathWithBlankIsQuotedAsComposed) {
  host.setService("get qlln installation path", "/opt/my qlln");
  host.setPlatform(2);
  CTerviaRoot root("/opt/ter via");
  auto run = runner({{"PATH", "/bin"}});
  ASSERT_TRUE(full(*run));
  const std::string h = "\"/opt/my qlln/QRN_HOME\"";
  const std::string k = "\"\\opt\\my qlln\\KVE_HOME\"";
  EXPECT_EQ(run->environment(), (TEnv{{"PATH", "\"\\opt\\ter via\\bin\";\"\\opt\\ter via\\usr\\X11R6\\bin\";" + k +
                                                   "\\common\\win32\\bin;" + k + "\\common\\win32\\lib;" + h + "/lib;" +
                                                   h + "/shared/lib;" + h + "/registry/tcodes;" + h + "/bin;/bin"},
                                      {"QRN_HOME", h},
                                      {"QRN_HOMEQL", "\"\\opt\\my qlln\\QRN_HOME\""},
                                      {"KVE_HOME", k},
                                      {"KVE_COMMON_BIN", k + "\\common\\win32\\bin"},
                                      {"KVE_LIB", k + "\\common\\win32\\lib"},
                                      {"KVE_RXV_BIN", k + "\\rxv\\win32\\bin"},
                                      {"KVE_LM_BIN", k + "\\lm\\win32\\bin"},
                                      {"TONIC_PATH", h + "/pkgs/ukr_int/userware/default"},
                                      {"QRN_IGNORE_BROKEN_REFS", "1"}}));
}

TEST_F(QllnEnvironmentTest, FailuresChangeNothingAndLogOnBothSinks) {
  auto run = runner({{"PATH", "/bin"}});
  const TEnv before = run->environment();
  host.failService("get platform");
  EXPECT_FALSE(full(*run));
  EXPECT_FALSE(qrn(*run));
  host.failService("get platform", false);
  host.setPlatform(0);
  EXPECT_FALSE(qrn(*run));
  EXPECT_EQ(host.texts("translation", "ERROR"), std::vector<std::string>(3, "Cannot obtain platform."));
  EXPECT_EQ(host.texts("component", "ERROR"), std::vector<std::string>(3, "Cannot obtain platform."));
  host.clearRecords();
  host.setPlatform(1);
  host.clearService("get qlln installation path");
  EXPECT_FALSE(full(*run));
  EXPECT_FALSE(qrn(*run));
  EXPECT_EQ(host.lines(), (std::vector<std::string>{"translation ERROR Cannot obtain QLLN's QRN_HOME directory.",
                                                    "component ERROR Cannot obtain QLLN's QRN_HOME directory.",
                                                    "translation ERROR Cannot obtain QLLN's QRN_HOME directory.",
                                                    "component ERROR Cannot obtain QLLN's QRN_HOME directory."}));
  EXPECT_EQ(run->environment(), before);
}

}  // namespace
