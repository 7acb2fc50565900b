#pragma once
// A generated VLT library of any size in the sample library's formats
// (examples/README.md), for the road benchmark and the scale test.
//
//   genlib::TOptions options;
//   options.symbols = 10000;
//   genlib::TSummary summary = genlib::generate("/tmp/lib", options);
//
// Shape: components/<top>/... with six top directories (one symbol
// partition each) and leaf directories three to five levels below
// components/ (one to three levels of series, kind and leaf directories).
// Every leaf holds "pwr_flag" and "<leaf>_std", which collide by name, at
// depth 1 (same leaf directory name) and at depth 2 (same kind and leaf);
// the three-level tail of a leaf is unique, so the path depth is at most 3.
// Every tenth symbol has a second version, every fiftieth a third; every
// seventh is a bus symbol whose vector pins get their pads from the mapping
// file. C catalogs of P parts each refer to the symbols: most parts to the
// next symbol in turn, every fifth to one drawn at random, so some symbols
// serve several parts and some none. One mapping file per symbol used, a
// few dozen cells under geoms/, the definition of GEN_LIB, and the sample's
// location map template with its make_location_map.lua. The same options
// give the same bytes.

#include <algorithm>
#include <boost/filesystem.hpp>
#include <cstdint>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace genlib {

struct TOptions {
  std::size_t symbols = 1000;
  std::size_t catalogs = 4;
  std::size_t parts = 0;  // per catalog; 0: symbols / catalogs
  std::uint32_t seed = 1;
};

struct TSummary {
  std::size_t symbols = 0, symbolFiles = 0, directories = 0, parts = 0, mappingFiles = 0, cells = 0;
};

struct TSymbol {
  std::string dir;  // below components/
  std::string name;
  std::string spacing;  // "0.1 INCH"
  int pins = 0;         // numbered pins P1..Pn
  bool bus = false;     // pins A and B without PIN_NO, pads from the mapping file
  int versions = 1;
};

inline void writeText(const boost::filesystem::path& file, const std::string& text) {
  std::ofstream out(file.string(), std::ios::binary | std::ios::trunc);
  out << text;
}

inline std::string symbolText(const TSymbol& s, int version) {
  std::string text =
      "# generated symbol " + s.dir + "/" + s.name + ", version " + std::to_string(version) + "\nSKSYMBOL 1\nNAME " +
      s.name + "\nDESCRIPTION \"Generated symbol " + s.name + "\"\nUNIT " + s.spacing.substr(s.spacing.find(' ') + 1) +
      "\nPIN_SPACING " + s.spacing.substr(0, s.spacing.find(' ')) + "\nREFDES U?\nBODY 0 0 8 " +
      std::to_string(s.pins + 2) + "\nPROPERTY CLASS IC\nPROPERTY REVISION " + std::to_string(version) + "\n";
  if (s.bus)
    text += "PIN A IO 0 " + std::to_string(s.pins + 1) + " L\nPIN B IO 8 " + std::to_string(s.pins + 1) + " R\n";
  for (int pin = 1; pin <= s.pins; ++pin) {
    const std::string name = "P" + std::to_string(pin);
    const bool left = pin <= (s.pins + 1) / 2;
    text += "PIN " + name + (left ? " IN 0 " : " OUT 8 ") + std::to_string(pin) + (left ? " L\n" : " R\n") +
            "PIN_PROPERTY " + name + " PIN_NO " + std::to_string(pin) + "\n";
  }
  return text + "END\n";
}

inline std::string mappingText(const TSymbol& s) {
  std::string text = "# mapping of " + s.name + "\nSYMBOL " + s.name + " 1\n";
  for (int pin = 1; pin <= s.pins; ++pin) text += "PIN P" + std::to_string(pin) + " " + std::to_string(pin) + " S0\n";
  if (s.bus) {
    std::string a, b;
    for (int k = 1; k <= 4; ++k) {
      a += (k > 1 ? "," : "") + std::to_string(s.pins + k);
      b += (k > 1 ? "," : "") + std::to_string(s.pins + 4 + k);
    }
    text += "PIN A " + a + " S0\nPIN B " + b + " S0\n";
  }
  return text + "POWER GND 0\n";
}

inline const char* makeLocationMapLua() {
  return "-- Writes the location map of the generated library from location_map.template.\n"
         "--\n"
         "--   local make_location_map = dofile(library .. \"/make_location_map.lua\")\n"
         "--   local map = make_location_map(library, out_dir)\n"
         "--\n"
         "-- Every \"@EXAMPLES@\" of the template becomes `library`; the map is\n"
         "-- written to out_dir .. \"/location_map\" and its path returned.\n"
         "return function(examples, out_dir)\n"
         "  local template = assert(io.open(examples .. \"/location_map.template\", \"rb\"))\n"
         "  local text = template:read(\"*a\")\n"
         "  template:close()\n"
         "  text = text:gsub(\"@EXAMPLES@\", function() return examples end)\n"
         "  local path = out_dir .. \"/location_map\"\n"
         "  local map = assert(io.open(path, \"wb\"))\n"
         "  map:write(text)\n"
         "  map:close()\n"
         "  return path\n"
         "end\n";
}

inline TSummary generate(const boost::filesystem::path& root, const TOptions& options) {
  namespace fs = boost::filesystem;
  static const char* const tops[] = {"digital", "analog", "power", "connector", "rf", "mechanical"};
  static const char* const kinds[] = {"std", "fast", "lowpower"};
  static const char* const leaves[] = {"logic", "power", "passive", "io", "misc"};
  std::mt19937 rng(options.seed);
  auto draw = [&rng](std::size_t n) { return static_cast<std::size_t>(rng() % n); };
  TSummary summary;

  // Leaf directories: about 60 symbols each, between 6 and 250 of them.
  const std::size_t leafCount = std::max<std::size_t>(6, std::min<std::size_t>(250, options.symbols / 60));
  std::vector<std::string> leafDirs;
  std::vector<std::string> leafNames;
  for (std::size_t i = 0; i < leafCount; ++i) {
    const std::string top = tops[i % 6];
    const std::string series = "ser" + std::to_string(i);
    const std::string leaf = leaves[draw(5)];
    const std::string kind = kinds[draw(3)];
    std::string dir;
    switch (i / 6 % 3) {
      case 0:
        dir = top + "/" + series + "/" + leaf;
        break;
      case 1:
        dir = top + "/" + series + "/" + kind + "/" + leaf;
        break;
      default:
        dir = top + "/zone" + std::to_string(i % 2) + "/" + series + "/" + kind + "/" + leaf;
        break;
    }
    leafDirs.push_back(dir);
    leafNames.push_back(leaf);
  }

  // Symbols, dealt out to the leaves in turn.
  std::vector<TSymbol> symbols;
  for (std::size_t k = 0; k < options.symbols; ++k) {
    const std::size_t leaf = k % leafCount;
    TSymbol s;
    s.dir = leafDirs[leaf];
    const std::size_t round = k / leafCount;
    s.name = round == 0   ? "pwr_flag"
             : round == 1 ? leafNames[leaf] + "_std"
                          : leafNames[leaf] + "_" + std::to_string(k);
    s.spacing = leafNames[leaf] == "passive"                 ? "0.05 INCH"
                : tops[leaf % 6] == std::string("connector") ? "2.54 MM"
                                                             : "0.1 INCH";
    s.bus = round >= 2 && k % 7 == 0;
    s.pins = s.bus ? 2 : 2 + static_cast<int>(draw(7));
    s.versions = k % 50 == 7 ? 3 : k % 10 == 3 ? 2 : 1;
    symbols.push_back(s);
  }

  fs::create_directories(root / "catalogs");
  fs::create_directories(root / "mapping");
  for (const std::string& dir : leafDirs) fs::create_directories(root / "components" / dir);
  for (fs::recursive_directory_iterator it(root / "components"), end; it != end; ++it) ++summary.directories;
  for (const TSymbol& s : symbols) {
    for (int v = 1; v <= s.versions; ++v) {
      writeText(root / "components" / s.dir / (s.name + ".smbl_" + std::to_string(v)), symbolText(s, v));
      ++summary.symbolFiles;
    }
  }
  summary.symbols = symbols.size();

  // Cells: two technologies, three families, five cells each.
  std::vector<std::string> cells;
  for (const char* tech : {"smd", "tht"})
    for (const char* family : {"ic", "passive", "connector"}) {
      const fs::path dir = root / "geoms" / tech / family;
      fs::create_directories(dir);
      for (int c = 0; c < 5; ++c) {
        const int pads = 2 + 4 * c;
        const std::string name = std::string(tech) + "_" + family + "_" + std::to_string(pads);
        std::string text = "# cell " + name + "\nCELL " + name +
                           "\nUNIT MM\nTECHNOLOGY default\nHEIGHT 1.5\n"
                           "OUTLINE -3.00 -3.00 3.00 3.00\nPADSTACK smd_0.6x1.5\n";
        for (int p = 1; p <= pads; ++p)
          text += "PAD " + std::to_string(p) + " " + (p % 2 ? "-2.50 " : "2.50 ") + std::to_string(p / 2) + ".00\n";
        writeText(dir / (name + ".cell"), text + "END\n");
        cells.push_back(name);
      }
    }
  summary.cells = cells.size();

  // Catalogs.
  const std::size_t perCatalog =
      options.parts ? options.parts
                    : std::max<std::size_t>(1, options.symbols / std::max<std::size_t>(1, options.catalogs));
  std::vector<bool> mapped(symbols.size(), false);
  std::size_t next = 0;
  for (std::size_t c = 0; c < options.catalogs; ++c) {
    const std::string name = "cat" + std::to_string(c);
    writeText(root / "catalogs" / (name + ".qrn_catalog.attr"),
              "# Catalog attributes of the catalog \"" + name + "\"\nNAME " + name +
                  "\nDESCRIPTION \"Generated catalog " + std::to_string(c) +
                  "\"\nOWNER \"Library team\"\nSTATUS released\nTABLE " + name + "\n");
    std::ofstream entry((root / "catalogs" / name).string(), std::ios::binary | std::ios::trunc);
    entry << "# VLT catalog table \"" << name << "\"\nCATALOG " << name << "\n";
    for (std::size_t p = 0; p < perCatalog && !symbols.empty(); ++p) {
      const std::size_t j = c * perCatalog + p;
      const std::size_t k = j % 5 == 4 ? draw(symbols.size()) : next++ % symbols.size();
      const TSymbol& s = symbols[k];
      if (!mapped[k]) {
        writeText(root / "mapping" / ("m" + std::to_string(k) + ".map"), mappingText(s));
        mapped[k] = true;
        ++summary.mappingFiles;
      }
      const int pads = s.pins + (s.bus ? 8 : 0);
      entry << "\nPART GP-" << j << "\n  PROPERTY PART_NO MPN-" << j << "\n  PROPERTY VALUE \"" << s.name
            << " part\"\n  PROPERTY CLASS IC\n  PROPERTY Comp_Height 1.5\n  CONTAINER $GEN_LIB/components/" << s.dir
            << "\n  MAP_FILE $GEN_LIB/mapping/m" << k << ".map\n  GEOM " << cells[draw(cells.size())] << "\n";
      if (pads > 6) entry << "  GEOM " << cells[draw(cells.size())] << "\n";
      entry << "  COMPONENT C1\n    SYMBOL " << s.name << "\nEND_PART\n";
      ++summary.parts;
    }
  }

  std::string definition =
      "// Generated VLT library definition (seed " + std::to_string(options.seed) + ").\n\nreleased \"GEN_LIB\" {\n";
  for (const char* top : tops) {
    std::string upper = top;
    std::transform(upper.begin(), upper.end(), upper.begin(), [](unsigned char ch) { return char(std::toupper(ch)); });
    upper.resize(12, ' ');
    definition += "    " + upper + "$GEN_LIB/components/" + top + "    -qrn_component\n";
  }
  definition +=
      "    CELLS       $GEN_CELLS    -qrn_geom\n    CATALOGS    $GEN_LIB/catalogs    -qrn_catalog\n"
      "    MAPPING     $GEN_LIB/mapping    -qrn_mapping -read_only\n}\n";
  writeText(root / "vlt_library_definition.library_definition", definition);
  writeText(root / "location_map.template",
            "QRN_LOCATION_MAP_1 force\n# Location map of the generated library; make_location_map.lua\n"
            "# writes the real map from this template.\n$GEN_LIB\n@EXAMPLES@\n$GEN_CELLS\n@EXAMPLES@/geoms\n");
  writeText(root / "make_location_map.lua", makeLocationMapLua());
  return summary;
}

}  // namespace genlib
