// convert_symbols on a generated library of 2,000 and 20,000 symbols (one
// partition, one in a hundred damaged and so without a neutral file), with
// the symbol tool and library update tool simulators: wall time per symbol,
// the component's own CPU time against its children's, and the growth of
// the per-symbol cost from the small run to the large one. Then the library
// update tool alone: one run per new symbol on the full partition.
//
// Usage: convert_symbols [scratch directory [symbol counts...]]
// BENCH_UPDATE_ONLY=1 measures the library update tool alone.

#include <sys/resource.h>

#include <boost/filesystem.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
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
  double wall = 0, own = 0, children = 0, update = 0;
};

const char kMapping[] =
    "<rig><symbol_data><data_map id=\"default\"><scaling><pin_spacing val=\"0.1\" unit=\"INCH\" factor=\"1.5\"/>"
    "</scaling><body_properties><property sk=\"VALUE\" td=\"Value\"/></body_properties><pin_properties>"
    "<property sk=\"PIN_NO\" td=\"Pin Number\"/></pin_properties><pin_types><type sk=\"IN\" td=\"IN\"/>"
    "</pin_types></data_map></symbol_data></rig>";

// What the neutral symbol step leaves: a neutral file per readable symbol,
// the mapping, and the prepared library with its partition.
void prepare(const fs::path& wdir, const benchlib::TLibrary& lib) {
  benchlib::writeText(wdir / "config" / "symbol_data_mapping.xml", kMapping);
  for (std::size_t k = 0; k < lib.symbols.size(); ++k) {
    if (k % 100 == 99) continue;
    const fs::path symbol(lib.symbols[k]);
    const fs::path dir =
        wdir / "neutral" / "symbols_2" /
        (symbol.parent_path().parent_path().filename().string() + "_" + symbol.parent_path().filename().string());
    if (k % 100 == 0) fs::create_directories(dir);
    benchlib::writeText(dir / (symbol.filename().string() + ".neut"),
                        "SYMBOL " + symbol.filename().string() +
                            "\nREFDES_VALUE U?\nUNIT_NAME INCH\nPIN_SPACING 0.1\nBODY_PROPERTY VALUE\n"
                            "PIN_PROPERTY PIN_NO\nPIN_NAME P0\n");
  }
  fs::create_directories(wdir / "Library" / "SymbolLibs" / "P0");
  benchlib::writeText(wdir / "Library" / "Library.zpc", "*ZPC_INDEX 1\n*PARTITION symbol P0\n");
}

// Wall time of one library update run with one new symbol, over `runs` runs.
double updateSeconds(const fs::path& wdir, const fs::path& tool, int runs) {
  const fs::path partition = wdir / "Library" / "SymbolLibs" / "P0";
  const std::string command = "'" + tool.string() + "' '-CentralLib=" + (wdir / "Library" / "Library.zpc").string() +
                              "' -Partition=P0 '-LogFile=" + (wdir / "log" / "tdlib2zpc.log").string() +
                              "' > /dev/null";
  const auto start = std::chrono::steady_clock::now();
  for (int i = 0; i < runs; ++i) {
    const std::string name = "extra_" + std::to_string(i);
    benchlib::writeText(partition / (name + ".sym"), "TDSYMBOL 1\n");
    // As the symbol tool does: the name goes to the partition's journal.
    fs::create_directories(partition / ".tdlib2zpc");
    std::ofstream(((partition / ".tdlib2zpc") / "journal").string(), std::ios::app) << name << "\n";
    if (std::system(command.c_str()) != 0) std::printf("the update tool failed\n");
  }
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count() / runs;
}

TResult measure(const fs::path& dir, const fs::path& buildDir, std::size_t count) {
  const benchlib::TLibrary lib = benchlib::makeLibrary(dir / "lib", count);
  const fs::path wdir = dir / "wdir";
  benchlib::makeSymbolWorkingDirectory(wdir, lib, 1);
  prepare(wdir, lib);

  vlthost::CHostCore host;
  unsetenv("KVE_HOME");
  const NComponent::TRegisterParams params =
      benchlib::startComponent(host, buildDir, buildDir / "bin" / "qlln", wdir, lib.root);
  TResult result;
  result.symbols = count;
  const double own = benchlib::cpuSeconds(RUSAGE_SELF), children = benchlib::cpuSeconds(RUSAGE_CHILDREN);
  const auto start = std::chrono::steady_clock::now();
  const bool ok = NComponent::convertSymbols(lib.locationMap.string());
  result.wall = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  result.own = benchlib::cpuSeconds(RUSAGE_SELF) - own;
  result.children = benchlib::cpuSeconds(RUSAGE_CHILDREN) - children;
  params.releaseComponent();

  std::size_t converted = 0, entered = 0;
  for (fs::directory_iterator it(wdir / "Library" / "SymbolLibs" / "P0"), end; it != end; ++it)
    converted += it->path().extension() == ".sym" ? 1 : 0;
  std::ifstream index((wdir / "Library" / "Library.zpc").string());
  for (std::string line; std::getline(index, line);) entered += line.rfind("*SYMBOL ", 0) == 0 ? 1 : 0;
  if (!ok || converted != count - lib.damaged || entered != converted)
    std::printf("unexpected result: %s, %zu symbols converted, %zu entered\n", ok ? "true" : "false", converted,
                entered);
  result.update = updateSeconds(wdir, buildDir / "bin" / "tools" / "tdlib2zpc.exe", 100);
  return result;
}

}  // namespace

// The library update tool alone on a partition that holds `count` symbols
// already: the run that lists them, then the wall time of a run per new symbol.
void updateAlone(const fs::path& dir, const fs::path& buildDir, std::size_t count, double& first, double& perRun) {
  const fs::path wdir = dir / "wdir";
  fs::create_directories(wdir / "log");
  fs::create_directories(wdir / "Library" / "SymbolLibs" / "P0");
  benchlib::writeText(wdir / "Library" / "Library.zpc", "*ZPC_INDEX 1\n*PARTITION symbol P0\n");
  for (std::size_t k = 0; k < count; ++k)
    benchlib::writeText(wdir / "Library" / "SymbolLibs" / "P0" / ("sym_" + std::to_string(k) + ".sym"), "TDSYMBOL 1\n");
  const fs::path tool = buildDir / "bin" / "tools" / "tdlib2zpc.exe";
  first = updateSeconds(wdir, tool, 1);
  perRun = updateSeconds(wdir, tool, 200);
}

int main(int argc, char** argv) {
  const fs::path scratch = argc > 1 ? fs::path(argv[1]) : fs::temp_directory_path() / fs::unique_path("bench-%%%%%%");
  std::vector<std::size_t> counts;
  for (int i = 2; i < argc; ++i) counts.push_back(std::strtoul(argv[i], nullptr, 10));
  if (counts.empty()) counts = {2000, 20000};
  const fs::path buildDir = fs::canonical(fs::path(argv[0]).parent_path() / "..");

  std::printf("tdlib2zpc alone, one partition holding the symbols, a run per new symbol\n");
  std::printf("%8s %16s %16s\n", "symbols", "first run ms", "later ms/run");
  std::vector<double> runs;
  for (std::size_t count : counts) {
    const fs::path dir = scratch / ("update_" + std::to_string(count));
    fs::remove_all(dir);
    double first = 0, perRun = 0;
    updateAlone(dir, buildDir, count, first, perRun);
    runs.push_back(perRun);
    std::printf("%8zu %16.3f %16.3f\n", count, first * 1e3, perRun * 1e3);
    std::fflush(stdout);
    fs::remove_all(dir);
  }
  if (runs.size() >= 2)
    std::printf("tdlib2zpc run %zu vs %zu symbols: x%.2f (target: within x1.3)\n", counts.back(), counts.front(),
                runs.back() / runs.front());
  if (std::getenv("BENCH_UPDATE_ONLY") != nullptr) return 0;

  std::printf("convert_symbols, one partition, sksym2td and tdlib2zpc simulators, 1 symbol in 100 damaged\n");
  std::printf("%8s %10s %12s %14s %16s %10s %18s\n", "symbols", "wall s", "wall ms/sym", "own CPU us/sym",
              "children ms/sym", "own/child", "tdlib2zpc ms/run");
  std::vector<TResult> results;
  for (std::size_t count : counts) {
    const fs::path dir = scratch / std::to_string(count);
    fs::remove_all(dir);
    const TResult r = measure(dir, buildDir, count);
    results.push_back(r);
    const double n = static_cast<double>(r.symbols);
    std::printf("%8zu %10.2f %12.3f %14.1f %16.3f %9.2f%% %18.3f\n", r.symbols, r.wall, r.wall / n * 1e3,
                r.own / n * 1e6, r.children / n * 1e3, 100.0 * r.own / r.children, r.update * 1e3);
    std::fflush(stdout);
    fs::remove_all(dir);
  }
  if (results.size() >= 2) {
    const TResult& a = results.front();
    const TResult& b = results.back();
    const double na = static_cast<double>(a.symbols), nb = static_cast<double>(b.symbols);
    std::printf(
        "per-symbol cost %zu vs %zu: own CPU x%.2f, children's CPU x%.2f, wall x%.2f, tdlib2zpc run x%.2f "
        "(target: own CPU under 10%% of the children's, growth within x1.3)\n",
        b.symbols, a.symbols, (b.own / nb) / (a.own / na), (b.children / nb) / (a.children / na),
        (b.wall / nb) / (a.wall / na), b.update / a.update);
  }
  if (argc <= 1) fs::remove_all(scratch);
  return 0;
}
