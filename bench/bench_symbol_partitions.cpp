// The symbol partition steps at library scale: a generated tree of symbols
// (a quarter of them used by two parts in two catalogs, so that merges and
// postfixes run) through the path depth search (two colliding depths before
// the good one), the partition names, and partition_symbol_list followed by
// update_partitioned_symbol_lists on files, driven through an in-process
// host. Prints the times at 20,000 and 200,000 symbols and the ratio of the
// per-symbol times.
//
// Usage: bench_symbol_partitions [scratch directory [symbols of the large run]]

#include <boost/filesystem.hpp>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <list>
#include <memory>
#include <string>

#include "common/symbol_list_file.hpp"
#include "components/hpp/component.hpp"
#include "components/hpp/script_functions.hpp"
#include "components/hpp/symbols.hpp"
#include "host/host_core.hpp"

namespace fs = boost::filesystem;
using rig_common::CSymbolList;
using rig_common::CSymbolListItem;

namespace {

using TClock = std::chrono::steady_clock;

double secondsSince(TClock::time_point start) { return std::chrono::duration<double>(TClock::now() - start).count(); }

// CPU seconds of the process: on a shared machine the wall clock also
// counts the time other processes had the cores.
double cpuSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// Wall and CPU seconds of one step.
struct TTime {
  double wall = 0, cpu = 0;
};

template <class TBody>
TTime timed(TBody body) {
  const auto wall = TClock::now();
  const double cpu = cpuSeconds();
  body();
  return {secondsSince(wall), cpuSeconds() - cpu};
}

const int kCatalogs = 8;

// Symbol j: groups of four share a name. The first two differ only in
// their group (they collide at depths 1 and 2), the third in its family
// (collides at depth 1), the fourth stands alone. About fifty names share
// a leaf directory, as in a real library.
CSymbolListItem makeSymbol(size_t j) {
  const size_t m = j / 4;
  const size_t kind = j % 4;
  const size_t leaf = m / 50 % 400;
  const std::string group = kind == 1 ? "gB" : kind == 3 ? "gC" : "gA";
  const std::string family = "f" + std::to_string(leaf % 37 + (kind == 2 ? 37 : 0));
  const std::string dir = "/vlt/library/components/" + group + "/" + family + "/leaf" + std::to_string(leaf);
  return CSymbolListItem(nullptr, dir, "s" + std::to_string(m));
}

struct TFigures {
  TTime depth, names, partition, postfixes;
  int foundDepth = 0;
  size_t partitions = 0;
};

TFigures runAt(size_t n, const fs::path& dir) {
  TFigures figures;
  CSymbolList list;
  for (size_t j = 0; j < n; ++j) list.add(makeSymbol(j));

  figures.depth = timed([&] {
    std::list<NVlt2HrwHelpers::TPathDepthRecord> records;
    figures.foundDepth = NVlt2HrwHelpers::findPathDepth(records, list);
  });
  std::list<std::string> names;
  figures.names = timed([&] {
    if (!NVlt2HrwHelpers::createPartitionNames(names, list, 4, 5)) std::printf("partition names failed\n");
  });
  figures.partitions = names.size();

  // The working directory: catalog lists (every symbol in one catalog, a
  // quarter also in the next one by another part) and symbol_data.xml.
  fs::remove_all(dir);
  const fs::path config = dir / "config", catalogs = dir / "neutral" / "catalogs";
  fs::create_directories(config);
  fs::create_directories(catalogs);
  {
    std::ofstream catalogList((config / "catalog.list").string(), std::ios::binary);
    std::vector<std::unique_ptr<rig_common::CSymbolListFileWriter>> writers;
    for (int c = 0; c < kCatalogs; ++c) {
      catalogList << "cat" << c << '\n';
      writers.push_back(std::make_unique<rig_common::CSymbolListFileWriter>());
      writers.back()->open((catalogs / ("cat" + std::to_string(c) + ".sym_list.caf")).string());
    }
    size_t j = 0;
    for (const CSymbolListItem& symbol : list) {
      const int c = static_cast<int>(j % kCatalogs);
      CSymbolListItem item(symbol);
      item.addSymbolUse("cat" + std::to_string(c), "PN-" + std::to_string(j), "C", symbol.getName());
      writers[c]->list().add(std::move(item));
      if (j % 4 == 0) {
        CSymbolListItem again(symbol);
        const int next = (c + 1) % kCatalogs;
        again.addSymbolUse("cat" + std::to_string(next), "PN-" + std::to_string(j) + "-B", "C", symbol.getName());
        writers[next]->list().add(std::move(again));
      }
      ++j;
    }
  }
  std::ofstream data((config / "symbol_data.xml").string(), std::ios::binary);
  data << "<rig><symbol_data><common start=\"4\" stop=\"5\" depth=\"" << figures.foundDepth
       << "\"/><default/><partition_data>";
  for (const std::string& name : names) data << "<partition name=\"" << name << "\" rename=\"" << name << "\"/>";
  data << "</partition_data></symbol_data></rig>";
  data.close();

  figures.partition = timed([&] {
    if (!NComponent::partitionSymbolList("L", "", dir.string())) std::printf("partition_symbol_list failed\n");
  });
  figures.postfixes = timed([&] {
    if (!NComponent::updatePartitionedSymbolLists()) std::printf("update_partitioned_symbol_lists failed\n");
  });
  return figures;
}

}  // namespace

int main(int argc, char** argv) {
  const fs::path scratch = argc > 1 ? fs::path(argv[1]) : fs::temp_directory_path() / fs::unique_path("bench-%%%%%%");
  fs::create_directories(scratch);
  const fs::path wdir = scratch / "wdir";

  vlthost::CHostCore host;
  host.componentDirectory() = VLT_SHIPPED_DIR;
  host.setLevel("WARN");
  host.setService("get wdir", wdir.string());
  host.setService("get library location", scratch.string());
  host.parameters()["catalog symbols only"] = "1";
  NComponent::TRegisterParams params;
  NComponent::TPlatformServices services = host.services();
  if (!NComponent::InitComponent(&params, &services)) {
    std::printf("the component did not start\n");
    return 1;
  }

  const size_t large = argc > 2 ? std::stoul(argv[2]) : 200000, small = large / 10;
  const TFigures a = runAt(small, wdir);
  const TFigures b = runAt(large, wdir);
  if (!host.records().empty()) std::printf("logged: %s\n", host.records().front().message.c_str());

  std::printf("Symbol partitions: %zu and %zu symbols (depth found %d and %d, %zu and %zu partitions)\n", small, large,
              a.foundDepth, b.foundDepth, a.partitions, b.partitions);
  std::printf("%-44s %9s %9s %9s %9s %12s %7s %7s\n", "step", "wall n/10", "wall n", "cpu n/10", "cpu n", "cpu us/sym",
              "ratio", "target");
  bool met = true;
  auto row = [&](const char* what, TTime x, TTime y) {
    const double perSmall = x.cpu / small * 1e6, perLarge = y.cpu / large * 1e6;
    const double ratio = perLarge / perSmall;
    const bool ok = y.cpu < 2.0 && ratio <= 1.3;
    met = met && ok;
    std::printf("%-44s %9.3f %9.3f %9.3f %9.3f %5.2f/%5.2f %7.2f %7s\n", what, x.wall, y.wall, x.cpu, y.cpu, perSmall,
                perLarge, ratio, ok ? "met" : "MISSED");
  };
  row("findPathDepth", a.depth, b.depth);
  row("createPartitionNames", a.names, b.names);
  row("partition_symbol_list", a.partition, b.partition);
  row("update_partitioned_symbol_lists", a.postfixes, b.postfixes);
  const TTime both1{a.partition.wall + a.postfixes.wall, a.partition.cpu + a.postfixes.cpu};
  const TTime both2{b.partition.wall + b.postfixes.wall, b.partition.cpu + b.postfixes.cpu};
  row("partition + update together", both1, both2);
  std::printf("targets (CPU time): under 2 s at %zu, per-symbol time within 1.3x of %zu: %s\n", large, small,
              met ? "met" : "MISSED");

  if (params.releaseComponent != nullptr) params.releaseComponent();
  if (argc <= 1) fs::remove_all(scratch);
  return 0;
}
