// Cost of the process starter next to a bare posix_spawn + waitpid loop:
// the emulated "cmd /c" must cost nothing next to a process start. Also
// gives the "ksh -c" figure and the cost of the environment dump when Trace
// is off (nil: one level check).
//
//   process_starter [runs]   (default 1000)

#include <log4cxx/fileappender.h>
#include <log4cxx/logger.h>
#include <log4cxx/simplelayout.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "core/hpp/impl/run_program.hpp"

extern char** environ;

namespace {

using TClock = std::chrono::steady_clock;
const char* const kProgram = "/bin/true";

double seconds(const std::function<void()>& body, int runs) {
  auto start = TClock::now();
  for (int i = 0; i < runs; ++i) body();
  return std::chrono::duration<double>(TClock::now() - start).count();
}

void bareRun() {
  char name[] = "true";
  char* argv[] = {name, nullptr};
  pid_t pid;
  if (posix_spawn(&pid, kProgram, nullptr, nullptr, argv, environ) != 0) std::abort();
  int status;
  waitpid(pid, &status, 0);
}

}  // namespace

int main(int argc, char** argv) {
  int runs = argc > 1 ? std::atoi(argv[1]) : 1000;
  if (runs < 10) runs = 10;
  log4cxx::LoggerPtr logger = log4cxx::Logger::getLogger("bench.process_starter");
  logger->setAdditivity(false);
  logger->setLevel(log4cxx::Level::getInfo());

  NMisc::CRunProgram<std::string> run(logger);
  const std::string cmdLine = std::string("cmd /c ") + kProgram;
  const std::string kshLine = std::string("ksh -c \"") + kProgram + "\"";
  auto cmdRun = [&]() {
    if (!run.runProgram(cmdLine, true, NMisc::kCreateNoWindow) || run.exitCode() != 0) std::abort();
  };
  auto kshRun = [&]() {
    if (!run.runProgram(kshLine, true, NMisc::kCreateNoWindow) || run.exitCode() != 0) std::abort();
  };

  // Warm up, then alternate slices of both loops so that a busy neighbour
  // weighs on both alike.
  seconds(bareRun, 20);
  seconds(cmdRun, 20);
  const int slices = 10;
  double bare = 0, cmd = 0;
  for (int s = 0; s < slices; ++s) {
    bare += seconds(bareRun, runs / slices);
    cmd += seconds(cmdRun, runs / slices);
  }
  int done = runs / slices * slices;
  double ksh = seconds(kshRun, done);
  double ratio = cmd / bare;
  std::printf("runs                       %d of %s\n", done, kProgram);
  std::printf("bare posix_spawn+waitpid   %8.1f us per run\n", bare / done * 1e6);
  std::printf("runProgram \"cmd /c\"        %8.1f us per run   ratio %.3f (target <= 1.15): %s\n", cmd / done * 1e6,
              ratio, ratio <= 1.15 ? "met" : "MISSED");
  std::printf("runProgram \"ksh -c\"        %8.1f us per run   ratio %.3f\n", ksh / done * 1e6, ksh / bare);

  // The environment dump: a start that fails at once (no process), with a
  // 200-entry environment, logged nowhere / Trace off / Trace on.
  NMisc::CRunProgram<std::string> quiet(nullptr), off(logger), on(logger);
  for (auto* r : {&quiet, &off, &on})
    for (int i = 0; i < 200; ++i) r->replaceVariable("VAR_" + std::to_string(i), std::string(40, 'x'));
  const std::string missing = "/nonexistent/tool.exe -x";
  const int calls = 20000;
  // Best of several alternating rounds, so that noise from a busy machine
  // does not pass for a cost.
  logger->setLevel(log4cxx::Level::getFatal());
  double none = 1e9, traceOff = 1e9;
  for (int round = 0; round < 7; ++round) {
    if (round % 2 == 0) traceOff = std::min(traceOff, seconds([&]() { off.runProgram(missing, true, 0); }, calls));
    none = std::min(none, seconds([&]() { quiet.runProgram(missing, true, 0); }, calls));
    if (round % 2 == 1) traceOff = std::min(traceOff, seconds([&]() { off.runProgram(missing, true, 0); }, calls));
  }
  logger->addAppender(std::make_shared<log4cxx::FileAppender>(std::make_shared<log4cxx::SimpleLayout>(),
                                                              LOG4CXX_STR("/dev/null"), false));
  logger->setLevel(log4cxx::Level::getTrace());
  double traceOn = seconds([&]() { on.runProgram(missing, true, 0); }, calls / 20);
  std::printf("failed start, no logger     %8.3f us per run (200 entries)\n", none / calls * 1e6);
  std::printf("failed start, Trace off    %8.3f us per run\n", traceOff / calls * 1e6);
  volatile bool sink = false;
  double check = seconds([&]() { sink = sink ^ logger->isEnabledFor(log4cxx::Level::getTrace()); }, calls);
  std::printf("one level check            %8.3f us\n", check / calls * 1e6);
  std::printf("environment dump, Trace off %7.3f us per run (nil: the difference is level checks and noise)\n",
              (traceOff - none) / calls * 1e6);
  std::printf("environment dump, Trace on  %8.1f us per run (for comparison)\n",
              (traceOn / (calls / 20) - none / calls) * 1e6);
  return ratio <= 1.15 ? 0 : 1;
}
