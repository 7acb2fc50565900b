#pragma once
// A generated VLT library for the benchmarks, in the sample library's
// formats (examples/README.md), and the working directory of the symbol
// steps over it.
//
//   benchlib::TLibrary lib = benchlib::makeLibrary(dir / "lib", 20000);
//   benchlib::makeSymbolWorkingDirectory(dir / "wdir", lib, 1);   // one partition
//
// Library layout: components/fam_<f>/grp_<g>/sym_<k> with 100 symbols a
// group and 10 groups a family (so the path tail at depth 2 is unique), every
// tenth symbol in two versions, every hundredth damaged (no END); one
// catalog "bench" with a part per readable symbol; the definition file of
// the library BENCH_LIB and its location map.

#include <boost/filesystem.hpp>
#include <fstream>
#include <string>
#include <vector>

namespace benchlib {

struct TLibrary {
  boost::filesystem::path root, locationMap;
  std::vector<std::string> symbols;  // full paths <dir>/<name>, in order
  std::size_t damaged = 0;
};

inline std::string symbolText(const std::string& name, int version, bool damaged) {
  std::string text = "# generated symbol " + name + ", version " + std::to_string(version) + "\nSKSYMBOL 1\nNAME " +
                     name +
                     "\nDESCRIPTION \"Generated symbol\"\nUNIT INCH\nPIN_SPACING 0.1\nREFDES U?\n"
                     "BODY 0 0 8 10\nPROPERTY CLASS IC\nPROPERTY VALUE \"" +
                     name + "\"\n";
  for (int pin = 0; pin < 8; ++pin) {
    const std::string pinName = "P" + std::to_string(pin);
    text += "PIN " + pinName + (pin < 4 ? " IN 0 " : " OUT 8 ") + std::to_string(9 - pin % 4 * 2) +
            (pin < 4 ? " L\n" : " R\n") + "PIN_PROPERTY " + pinName + " PIN_NO " + std::to_string(pin + 1) + "\n";
  }
  return damaged ? text : text + "END\n";
}

inline void writeText(const boost::filesystem::path& file, const std::string& text) {
  std::ofstream out(file.string(), std::ios::binary | std::ios::trunc);
  out << text;
}

inline TLibrary makeLibrary(const boost::filesystem::path& root, std::size_t count) {
  namespace fs = boost::filesystem;
  TLibrary lib;
  lib.root = root;
  fs::create_directories(root / "catalogs");
  writeText(root / "vlt_library_definition.library_definition",
            "// Generated library for the benchmarks.\nreleased \"BENCH_LIB\" {\n"
            "    COMPS       $BENCH_LIB/components    -qrn_component\n"
            "    CATALOGS    $BENCH_LIB/catalogs      -qrn_catalog\n}\n");
  lib.locationMap = root / "location_map";
  writeText(lib.locationMap, "QRN_LOCATION_MAP_1 force\n$BENCH_LIB\n" + root.string() + "\n");
  writeText(root / "catalogs" / "bench.qrn_catalog.attr", "NAME bench\nSTATUS released\nTABLE bench\n");
  std::ofstream catalog((root / "catalogs" / "bench").string(), std::ios::binary | std::ios::trunc);
  catalog << "CATALOG bench\n";
  for (std::size_t k = 0; k < count; ++k) {
    const std::string group = "fam_" + std::to_string(k / 1000) + "/grp_" + std::to_string(k / 100 % 10);
    const fs::path dir = root / "components" / group;
    if (k % 100 == 0) fs::create_directories(dir);
    const std::string name = "sym_" + std::to_string(k);
    const bool damaged = k % 100 == 99;
    writeText(dir / (name + ".smbl_1"), symbolText(name, 1, damaged));
    if (k % 10 == 3) writeText(dir / (name + ".smbl_2"), symbolText(name, 2, damaged));
    lib.symbols.push_back((dir / name).string());
    if (damaged) {
      ++lib.damaged;
      continue;
    }
    catalog << "PART B-" << k << "\n  PROPERTY PART_NO MPN-" << k << "\n  PROPERTY VALUE " << name
            << "\n  CONTAINER $BENCH_LIB/components/" << group << "\n  COMPONENT C\n    SYMBOL " << name
            << "\nEND_PART\n";
  }
  return lib;
}

// The working directory that the symbol steps read after partitioning:
// config/symbol_data.xml (depth 2, partitions P0..), config/excluded_symbols.caf,
// neutral/symbol_lists/P<i>.sym_list.caf with the symbols dealt out in
// `partitions` runs, log/reports.
inline void makeSymbolWorkingDirectory(const boost::filesystem::path& wdir, const TLibrary& lib,
                                       std::size_t partitions) {
  namespace fs = boost::filesystem;
  for (const char* dir : {"config", "log/reports", "neutral/symbol_lists"}) fs::create_directories(wdir / dir);
  writeText(wdir / "config" / "excluded_symbols.caf", "");
  writeText(wdir / "config" / "sk2td_symbols_only.cfg",
            "[PACKAGE ATTRIBUTES]\n\n[PIN ATTRIBUTES]\n\n[PIN TYPES]\n\n[DESIGN SCALING]\nScale=1.0\n\n");
  std::string data = "<rig><symbol_data><common start=\"1\" stop=\"1\" depth=\"2\"/><default/><partition_data>";
  const std::size_t per = (lib.symbols.size() + partitions - 1) / partitions;
  for (std::size_t p = 0; p < partitions; ++p) {
    const std::string name = "P" + std::to_string(p);
    data +=
        "<partition name=\"" + name + "\" rename=\"" + name + "\" file=\"symbol_data_mapping.xml\" id=\"default\"/>";
    std::ofstream list((wdir / "neutral" / "symbol_lists" / (name + ".sym_list.caf")).string(), std::ios::binary);
    for (std::size_t k = p * per; k < std::min(lib.symbols.size(), (p + 1) * per); ++k)
      list << ".SK_SYMBOL_PATH " << lib.symbols[k] << "\n..CATALOG bench\n...QRN_PART B-" << k << "\n....QRN_COMP C\n"
           << ".....QRN_SYMBOL sym_" << k << "\n";
  }
  writeText(wdir / "config" / "symbol_data.xml", data + "</partition_data></symbol_data></rig>");
}

}  // namespace benchlib
