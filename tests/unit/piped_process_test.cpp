// The piped run of the process starter.

#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "common/path_helpers.hpp"
#include "components/hpp/component.hpp"
#include "components/hpp/misc.hpp"
#include "core/hpp/impl/run_program.hpp"
#include "support/fake_host.hpp"

using namespace vlttest;
using NComponent::gComponent;
using NMisc::CRunProgram;
using rig_common::toUnixPath;
namespace fs = boost::filesystem;

namespace {

using TProcess = CRunProgram<std::string>::TProcess;

struct PipedProcessTest : StartedHostTest {
  std::unique_ptr<CRunProgram<std::string>> run;

  void SetUp() override {
    StartedHostTest::SetUp();
    run = std::make_unique<CRunProgram<std::string>>(NComponent::getTranslationLogger(*gComponent));
    host.setLevel("DEBUG");
  }
  void TearDown() override {
    run.reset();
    StartedHostTest::TearDown();
  }

  static std::string child() { return std::string(VLT_TEST_BIN_DIR) + "/test_child"; }

  // Steps 3 to 5 of a piped run: write all, close, wait.
  bool feed(TProcess* process, const std::string& text) {
    unsigned long written = 0;
    bool wrote = NPlatform::writeFile(process->writingEnd(), text, written);
    EXPECT_EQ(written, text.size());
    EXPECT_TRUE(NPlatform::closeHandle(process->writingEnd()));
    EXPECT_EQ(process->writingEnd(), NPlatform::kNullHandle);
    return run->closeProcess(process, NMisc::kInfinite, 1) && wrote;
  }
};

std::string bigText() {
  std::string text;
  for (int i = 0; text.size() < 300000; ++i) text += "symbol line " + std::to_string(i) + "\n";
  return text;
}

// Through a ksh line with redirections and a changed environment.
TEST_F(PipedProcessTest, ChildReceivesAllInputAndEndOfFile) {
  run->obtainCurrentEnvironment();
  run->replaceVariable("QRN_WD", "/neutral dir");
  host.clearRecords();
  fs::path dir = tmp.path() / "log dir";
  fs::create_directories(dir);
  std::string command = "ksh -c \"" + toUnixPath(child()) + " stdin=" + toUnixPath(dir / "in.txt") +
                        " env out=done exit=6 >> " + toUnixPath(dir / "conv.log") + " 2>&1\"";
  TProcess* process = run->createProcess(command, 10000);
  ASSERT_NE(process, nullptr);
  std::string text = bigText();
  EXPECT_TRUE(feed(process, text));
  EXPECT_EQ(run->exitCode(), 6u);
  EXPECT_EQ(readFile(dir / "in.txt"), text);
  std::string log = readFile(dir / "conv.log");
  EXPECT_NE(log.find("env:QRN_WD=/neutral dir\n"), std::string::npos);
  EXPECT_NE(log.find("done\n"), std::string::npos);
  EXPECT_EQ(
      host.lines(),
      (TLines{"translation DEBUG Piped process starter: creating process: '" + command + "'",
              "translation DEBUG Piped process starter: process created successfully; waiting until it has "
              "finished its initialization, up to 10000 milliseconds...",
              "translation DEBUG Piped process starter: restoring Std handles.",
              "translation DEBUG Piped process close: waiting until child process exits...",
              "translation DEBUG Piped process close: cleanup.", "translation DEBUG Piped process close: all done."}));
}

TEST_F(PipedProcessTest, ChildThatTakesNoInputAndWritingAfterItHasGone) {
  TProcess* process = run->createProcess(child() + " exit=4", 10000);
  ASSERT_NE(process, nullptr);
  ASSERT_TRUE(run->closeProcess(process, NMisc::kInfinite, 1));
  EXPECT_EQ(run->exitCode(), 4u);
  // The write fails with EPIPE instead of raising a signal.
  std::string text = bigText();
  unsigned long written = 0;
  EXPECT_FALSE(NPlatform::writeFile(process->writingEnd(), text.data(), text.size(), written));
  EXPECT_EQ(NPlatform::lastError(), EPIPE);
  EXPECT_LT(written, text.size());
}

TEST_F(PipedProcessTest, CommandsThatCannotStart) {
  EXPECT_EQ(run->createProcess("", 10000), nullptr);
  EXPECT_EQ(run->createProcess((tmp.path() / "sksym2td.exe").string() + " -nostart", 10000), nullptr);
  EXPECT_EQ(host.lines(), (TLines{"translation DEBUG Piped process starter: creating process: ''",
                                  "translation ERROR Piped process starter: process cannot be created - empty command",
                                  "translation DEBUG Piped process starter: creating process: '" + tmp.str() +
                                      "/sksym2td.exe -nostart'",
                                  "translation ERROR Piped process starter: process cannot be created. Reason: "
                                  "System error: 2 (No such file or directory)."}));
}

TEST_F(PipedProcessTest, TimeOutKillsWithTheGivenCodeAndEndsWhatTheShellStarted) {
  fs::path log = tmp.path() / "late.log";
  TProcess* process =
      run->createProcess("ksh -c \"" + child() + " sleep=600 out=late >> " + log.string() + "; exit 0\"", 10000);
  ASSERT_NE(process, nullptr);
  host.clearRecords();
  auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(run->closeProcess(process, 100, 77));
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
  EXPECT_EQ(run->exitCode(), 77u);
  EXPECT_EQ(host.lines(), (TLines{"translation DEBUG Piped process close: waiting until child process exits...",
                                  "translation ERROR Piped process close: time-out interval elapsed: 100 milliseconds.",
                                  "translation DEBUG Piped process close: attempting to terminate such a process...",
                                  "translation DEBUG Piped process close: cleanup.",
                                  "translation DEBUG Piped process close: all done."}));
  std::this_thread::sleep_for(std::chrono::milliseconds(900));
  EXPECT_EQ(readFile(log), "");
}

TEST_F(PipedProcessTest, BusyChildMissesTheInitializationLimit) {
  std::string command = child() + " spin=700 exit=9";
  auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(run->createProcess(command, 50), nullptr);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));
  EXPECT_EQ(run->exitCode(), 9u);
  EXPECT_EQ(
      host.lines(),
      (TLines{"translation DEBUG Piped process starter: creating process: '" + command + "'",
              "translation DEBUG Piped process starter: process created successfully; waiting until it has "
              "finished its initialization, up to 50 milliseconds...",
              "translation ERROR Piped process starter: process has not finished its initialization after: "
              "50milliseconds.",
              "translation DEBUG Piped process close: waiting until child process exits...",
              "translation DEBUG Piped process close: cleanup.", "translation DEBUG Piped process close: all done."}));
}

TEST_F(PipedProcessTest, ManyRunsLeaveNoDescriptorsBehind) {
  auto countFds = []() {
    int count = 0;
    for (fs::directory_iterator it("/proc/self/fd"), end; it != end; ++it) ++count;
    return count;
  };
  int before = countFds();
  for (int i = 0; i < 20; ++i) {
    TProcess* process = run->createProcess(child() + " stdin=/dev/null", 10000);
    ASSERT_NE(process, nullptr);
    ASSERT_TRUE(feed(process, "x\n"));
  }
  EXPECT_EQ(countFds(), before);
  // Abandoned after a failed write: its two ends go with the runner.
  ASSERT_NE(run->createProcess(child() + " stdin=/dev/null", 10000), nullptr);
  EXPECT_EQ(countFds(), before + 2);
  run.reset();
  EXPECT_EQ(countFds(), before);
}

}  // namespace
