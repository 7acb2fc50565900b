// Symbol lists at library scale: building (a quarter of the adds merge into
// an existing path, every item with a catalog tree and a pin map), writing,
// reading back, and the keyword tree reader against plain std::getline on
// the same file.
//
// Usage: bench_symbol_list [scratch directory]

#include <boost/filesystem.hpp>
#include <chrono>
#include <cstdio>
#include <fstream>
#include <memory>
#include <string>
#include <string_view>

#include "common/symbol_list_file.hpp"

namespace fs = boost::filesystem;
using rig_common::CSymbolList;
using rig_common::CSymbolListFileReader;
using rig_common::CSymbolListFileWriter;
using rig_common::CSymbolListItem;

namespace {

using TClock = std::chrono::steady_clock;

double secondsSince(TClock::time_point start) { return std::chrono::duration<double>(TClock::now() - start).count(); }

// Item k of a run of n adds: the first three quarters are new paths, the
// last quarter repeats earlier paths with a catalog of their own.
CSymbolListItem makeItem(size_t k, size_t n) {
  const size_t fresh = n - n / 4;
  const size_t id = k < fresh ? k : (k - fresh) * 3 % fresh;
  const std::string name = "sym_" + std::to_string(id);
  CSymbolListItem item(nullptr, "/vlt/library/components/family_" + std::to_string(id % 97), name);
  const std::string catalog = k < fresh ? "catalog_" + std::to_string(id % 13) : "merged_catalog";
  const std::string part = "PN-" + std::to_string(k);
  item.addPinMap(catalog, part, "COMP_" + std::to_string(k % 7), name, "A", "A[0:3]");
  item.addPinMap(catalog, part, "COMP_" + std::to_string(k % 7), name, "B", "B[0:1]");
  return item;
}

// Best of three runs of `body`, in seconds.
template <class TBody>
double best(TBody body) {
  double result = 1e30;
  for (int run = 0; run < 3; ++run) {
    const auto start = TClock::now();
    body();
    result = std::min(result, secondsSince(start));
  }
  return result;
}

}  // namespace

int main(int argc, char** argv) {
  const fs::path dir = argc > 1 ? fs::path(argv[1]) : fs::temp_directory_path() / fs::unique_path("bench-%%%%%%");
  fs::create_directories(dir);
  const fs::path file = dir / "bench.sym_list.caf";

  std::printf("Symbol lists: build (n adds, a quarter merged), write, read back\n");
  std::printf("%10s %10s %12s %14s %12s %12s %12s\n", "adds", "items", "build s", "build us/add", "write s", "read s",
              "file MB");
  for (size_t n : {1000u, 10000u, 100000u, 200000u}) {
    size_t items = 0;
    double build = 0, write = 0, read = 0;
    {
      CSymbolList list;
      auto start = TClock::now();
      for (size_t k = 0; k < n; ++k) list.add(makeItem(k, n));
      build = secondsSince(start);
      items = list.size();

      start = TClock::now();
      {
        CSymbolListFileWriter writer;
        writer.open(file.string());
        writer.list() = std::move(list);
      }
      write = secondsSince(start);
    }
    read = best([&] {
      CSymbolListFileReader reader;
      if (!reader.read(file.string()) || reader.list().size() != items) std::printf("read back failed\n");
    });
    std::printf("%10zu %10zu %12.3f %14.3f %12.3f %12.3f %12.1f\n", n, items, build, build / n * 1e6, write, read,
                static_cast<double>(fs::file_size(file)) / 1e6);
  }

  // The largest file once more: the keyword tree against a plain line reader.
  const double megabytes = static_cast<double>(fs::file_size(file)) / 1e6;
  size_t lines = 0;
  const double getlineSeconds = best([&] {
    std::ifstream in(file.string());
    std::string line;
    lines = 0;
    while (std::getline(in, line)) ++lines;
  });
  const double scanSeconds = best([&] {
    std::ifstream in(file.string());
    rig_common::TLXInput input(in);
    std::string_view line;
    size_t count = 0;
    while (input.next(line)) ++count;
    if (count != lines) std::printf("line count differs\n");
  });
  // The parse alone; the tree is destroyed outside the timing and timed
  // by itself. The first parse of a process also pays for fresh memory.
  double parseFirst = 0, parseBest = 1e30, destroyBest = 1e30;
  for (int run = 0; run < 4; ++run) {
    auto tree = std::make_unique<rig_common::TLXManager>();
    auto start = TClock::now();
    if (!tree->readFile(file.string())) std::printf("parse failed\n");
    const double parse = secondsSince(start);
    start = TClock::now();
    tree.reset();
    destroyBest = std::min(destroyBest, secondsSince(start));
    if (run == 0) parseFirst = parse;
    parseBest = std::min(parseBest, parse);
  }
  auto row = [&](const char* what, double seconds) {
    std::printf("  %-34s %8.3f s %8.1f MB/s %7.1f ns/line %5.0f%% of std::getline\n", what, seconds,
                megabytes / seconds, seconds / static_cast<double>(lines) * 1e9, 100.0 * getlineSeconds / seconds);
  };
  std::printf("\nKeyword tree read of %.1f MB, %zu lines\n", megabytes, lines);
  row("std::getline", getlineSeconds);
  row("TLXInput lines (block reads)", scanSeconds);
  row("TLXManager parse, best run", parseBest);
  row("TLXManager parse, first run", parseFirst);
  std::printf("  %-34s %8.3f s\n", "TLXManager destruction, best run", destroyBest);

  if (argc <= 1) fs::remove_all(dir);
  return 0;
}
