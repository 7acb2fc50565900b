// Tool environments of the two suites.

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>

#include "components/hpp/component.hpp"
#include "components/hpp/impl/qlln_environment_impl.hpp"
#include "components/hpp/misc.hpp"
#include "support/fake_host.hpp"
#include "support/golden.hpp"

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
  // The environment in order ("NAME=value"), then the whole log, against the
  // golden file of `name`.
  void expectEnvironment(const std::string& name) {
    TLines lines;
    for (const auto& entry : run->environment()) lines.push_back(entry.first + "=" + entry.second);
    lines.push_back("--- log");
    for (const auto& line : host.lines()) lines.push_back(line);
    expectGolden("QllnEnvironmentTest." + name, lines);
  }
};

TEST_F(QllnEnvironmentTest, FullEnvironmentOnPlatform1) {
  CTerviaRoot root("/opt/tervia");
  start({{"Path", "/usr/bin:/bin"}, {"HOME", "/root"}, {"QRN_HOME", "old"}});
  ASSERT_TRUE(full());
  expectEnvironment("FullEnvironmentOnPlatform1");
}

TEST_F(QllnEnvironmentTest, SourceSuiteAloneOnBothPlatformsAndFailures) {
  CTerviaRoot root(nullptr);  // unset: relative entries on platform 2
  start({{"Path", "/bin"}});
  ASSERT_TRUE(qrn());
  expectEnvironment("SourceSuite.platform1");
  run = std::make_unique<CRunProgram<std::string>>(translation);
  host.setPlatform(2);
  host.clearRecords();
  ASSERT_TRUE(qrn());
  expectEnvironment("SourceSuite.platform2");
  // Failures change nothing and log on both sinks.
  start({{"PATH", "/bin"}});
  host.failService("get platform");
  EXPECT_FALSE(full());
  EXPECT_FALSE(qrn());
  host.failService("get platform", false);
  host.setPlatform(0);
  EXPECT_FALSE(qrn());
  host.setPlatform(1);
  host.clearService("get qlln installation path");
  EXPECT_FALSE(full());
  EXPECT_FALSE(qrn());
  expectEnvironment("SourceSuite.failures");
}

TEST_F(QllnEnvironmentTest, Platform2PutsTerviaFirstAndQuotesPathsWithBlanksAsComposed) {
  host.setService("get qlln installation path", "/opt/my qlln");
  host.setPlatform(2);
  CTerviaRoot root("/opt/ter via");
  start({{"PATH", "/bin"}});
  ASSERT_TRUE(full());
  expectEnvironment("Platform2TerviaFirst");
}

}  // namespace
