// The keyword tree parse of a neutral catalog against a bare std::getline
// loop over the same file. The catalog is written in the catalog tool's
// neutral format: per part a QRN_PART with its container, mapping file,
// cells, component, symbol and properties.
//
// Usage: catalog_tree [parts [scratch directory]]   (default 100000 parts)
// Target: the parse at least half the throughput of std::getline.

#include <time.h>

#include <algorithm>
#include <boost/filesystem.hpp>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>

#include "common/tlx_tree.hpp"

namespace fs = boost::filesystem;

namespace {

// CPU time of the process rather than the wall clock: the figures stay
// comparable on a machine that other work shares.
struct TClock {
  using time_point = std::chrono::duration<double>;
  static time_point now() {
    timespec t{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &t);
    return time_point(static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_nsec) * 1e-9);
  }
};

template <class TBody>
double best(int runs, TBody body) {
  double result = 1e30;
  for (int run = 0; run < runs; ++run) {
    const auto start = TClock::now();
    body();
    result = std::min(result, (TClock::now() - start).count());
  }
  return result;
}

void writeCatalog(const fs::path& file, size_t parts) {
  std::ofstream out(file.string(), std::ios::binary | std::ios::trunc);
  for (size_t k = 0; k < parts; ++k) {
    const std::string dir = "$GEN_LIB/components/digital/ser" + std::to_string(k % 250) + "/fast/logic";
    out << ".QRN_PART \"GP-" << k << "\"\n..QRN_PART_CONTAINER \"" << dir << "\"\n..QRN_MAP_FILE \"$GEN_LIB/mapping/m"
        << k << ".map\"\n..QRN_GEOM \"smd_ic_" << 2 + k % 5 * 4 << "\"\n..QRN_COMP \"C1\"\n...QRN_SYMBOL \"logic_" << k
        << "\"\n..PART_NO \"MPN-" << k << "\"\n..VALUE \"logic_" << k
        << " part\"\n..CLASS \"IC\"\n..Comp_Height \"1.5\"\n";
  }
}

}  // namespace

int main(int argc, char** argv) {
  const size_t parts = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 100000;
  const fs::path dir = argc > 2 ? fs::path(argv[2]) : fs::temp_directory_path() / fs::unique_path("bench-%%%%%%");
  fs::create_directories(dir);
  const fs::path file = dir / "bench_neut.tlx";
  writeCatalog(file, parts);

  size_t lines = 0;
  const double getlineSeconds = best(5, [&] {
    std::ifstream in(file.string());
    std::string line;
    lines = 0;
    while (std::getline(in, line)) ++lines;
  });
  // The parse alone, best of five; freeing the tree is timed by itself.
  size_t nodes = 0;
  double parseSeconds = 1e30, freeSeconds = 1e30;
  for (int run = 0; run < 5; ++run) {
    auto tree = std::make_unique<rig_common::TLXManager>();
    auto start = TClock::now();
    if (!tree->readFile(file.string())) std::printf("parse failed\n");
    parseSeconds = std::min(parseSeconds, (TClock::now() - start).count());
    nodes = tree->root->children.size();
    start = TClock::now();
    tree.reset();
    freeSeconds = std::min(freeSeconds, (TClock::now() - start).count());
  }
  const double megabytes = static_cast<double>(fs::file_size(file)) / 1e6;
  std::printf("Neutral catalog of %zu parts (%zu read), %.1f MB, %zu lines\n", parts, nodes, megabytes, lines);
  auto row = [&](const char* what, double seconds) {
    std::printf("  %-30s %8.3f s %8.1f MB/s %7.1f ns/line %5.0f%% of std::getline\n", what, seconds,
                megabytes / seconds, seconds / static_cast<double>(lines) * 1e9, 100.0 * getlineSeconds / seconds);
  };
  row("std::getline", getlineSeconds);
  row("TLXManager parse", parseSeconds);
  std::printf("  %-30s %8.3f s\n", "TLXManager tree freed", freeSeconds);
  const double share = getlineSeconds / parseSeconds;
  std::printf("target: parse at least 50%% of std::getline throughput: %.0f%% %s\n", 100 * share,
              share >= 0.5 ? "met" : "MISSED");
  if (argc <= 2) fs::remove_all(dir);
  return 0;
}
