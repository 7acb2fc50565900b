// write_neutral_symbol_data on a generated library of 2,000 and 20,000
// symbols (one partition, one in a hundred damaged), with the symbol tool
// simulator: wall time per symbol, the component's own CPU time against its
// children's, and how the per-symbol cost grows from the small run to the
// large one.
//
// Usage: neutral_symbols [scratch directory [symbol counts...]]

#include <sys/resource.h>

#include <boost/filesystem.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "bench/bench_host.hpp"
#include "bench/vlt_library.hpp"
#include "components/hpp/component.hpp"
#include "components/hpp/script_functions.hpp"
#include "host/host_core.hpp"

namespace fs = boost::filesystem;

namespace {

struct TResult {
  std::size_t symbols = 0;
  double wall = 0, own = 0, children = 0;
};

TResult measure(const fs::path& dir, const fs::path& buildDir, std::size_t count) {
  const benchlib::TLibrary lib = benchlib::makeLibrary(dir / "lib", count);
  const fs::path wdir = dir / "wdir";
  benchlib::makeSymbolWorkingDirectory(wdir, lib, 1);

  vlthost::CHostCore host;
  const NComponent::TRegisterParams params = benchlib::startComponent(host, buildDir, dir / "qlln", wdir, lib.root);
  TResult result;
  result.symbols = count;
  const double own = benchlib::cpuSeconds(RUSAGE_SELF), children = benchlib::cpuSeconds(RUSAGE_CHILDREN);
  const auto start = std::chrono::steady_clock::now();
  const bool ok = NComponent::writeNeutralSymbolData(lib.locationMap.string(), false);
  result.wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  result.own = benchlib::cpuSeconds(RUSAGE_SELF) - own;
  result.children = benchlib::cpuSeconds(RUSAGE_CHILDREN) - children;
  params.releaseComponent();

  std::size_t written = 0, rejected = 0;
  for (fs::recursive_directory_iterator it(wdir / "neutral" / "symbols_2"), end; it != end; ++it)
    written += fs::is_regular_file(it->path()) ? 1 : 0;
  std::ifstream list((wdir / "log" / "rejected_symbols.caf").string());
  for (std::string line; std::getline(list, line);) rejected += line.rfind(".SK_SYMBOL_PATH ", 0) == 0 ? 1 : 0;
  if (!ok || written != count - lib.damaged || rejected != lib.damaged)
    std::printf("unexpected result: %s, %zu neutral files, %zu rejected\n", ok ? "true" : "false", written, rejected);
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  const fs::path scratch = argc > 1 ? fs::path(argv[1]) : fs::temp_directory_path() / fs::unique_path("bench-%%%%%%");
  std::vector<std::size_t> counts;
  for (int i = 2; i < argc; ++i) counts.push_back(std::strtoul(argv[i], nullptr, 10));
  if (counts.empty()) counts = {2000, 20000};
  const fs::path buildDir = fs::canonical(fs::path(argv[0]).parent_path() / "..");

  std::printf("write_neutral_symbol_data, one partition, sksym2td simulator, 1 symbol in 100 damaged\n");
  std::printf("%8s %10s %12s %14s %16s %10s\n", "symbols", "wall s", "wall ms/sym", "own CPU us/sym", "children ms/sym",
              "own/child");
  std::vector<TResult> results;
  for (std::size_t count : counts) {
    const fs::path dir = scratch / std::to_string(count);
    fs::remove_all(dir);
    const TResult r = measure(dir, buildDir, count);
    results.push_back(r);
    const double n = static_cast<double>(r.symbols);
    std::printf("%8zu %10.2f %12.3f %14.1f %16.3f %9.2f%%\n", r.symbols, r.wall, r.wall / n * 1e3, r.own / n * 1e6,
                r.children / n * 1e3, 100.0 * r.own / r.children);
    std::fflush(stdout);
    fs::remove_all(dir);
  }
  if (results.size() >= 2) {
    const TResult& a = results.front();
    const TResult& b = results.back();
    const double na = static_cast<double>(a.symbols), nb = static_cast<double>(b.symbols);
    std::printf(
        "per-symbol cost %zu vs %zu: own CPU x%.2f, wall x%.2f (target: own CPU under 10%% of the "
        "children's, growth within x1.3)\n",
        b.symbols, a.symbols, (b.own / nb) / (a.own / na), (b.wall / nb) / (a.wall / na));
  }
  if (argc <= 1) fs::remove_all(scratch);
  return 0;
}
