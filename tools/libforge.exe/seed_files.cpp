#include "seed_files.hpp"

namespace libforge {

const std::string& seedPropertyFile() {
  static const std::string text =
      "!LibForge Central Library property definitions\n"
      "*PROPFILE_VERSION 3\n"
      "*UNITS INCH\n"
      "*TEXTPROP 1 CELL 40 \".*\" 1 \"Ref Designator\" 0.080in VISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1\n"
      "*TEXTPROP 2 CELL 132 \".*\" 1 \"Part Number\" 0.080in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1\n"
      "*TEXTPROP 3 CELL 132 \".*\" 1 \"Part Name\" 0.080in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1\n"
      "*TEXTPROP 4 CELL 255 \".*\" 1 \"Description\" 0.080in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1\n"
      "*NUMPROP 20 CELL \"Height\" 0.000in 0.000in 999.000in SINGLE \"mechanical\"\n"
      "*TEXTPROP 221 CELL 132 \".*\" 1 \"Manufacturer\" 0.080in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1\n"
      "*TEXTPROP 222 CELL 132 \".*\" 1 \"Manufacturer Part Number\" 0.080in INVISIBLE SINGLE TEMPLATE "
      "\"engineering\" 6 3 3 1 1 1\n"
      "*TEXTPROP 224 CELL 64 \".*\" 1 \"Package\" 0.080in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1\n"
      "*TEXTPROP 300 NET 132 \".*\" 1 \"Net Class\" 0.060in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1\n"
      "*TEXTPROP 457 PIN 32 \".*\" 1 \"Pin Function\" 0.060in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1\n"
      "*ENUMPROP 600 CELL \"Mount Type\" \"SMD\" \"THT\" SINGLE \"mechanical\"\n"
      "*TEXTPROP 1025 CELL 255 \".*\" 1 \"Datasheet\" 0.080in INVISIBLE SINGLE TEMPLATE \"engineering\" 6 3 3 1 1 1\n"
      "*END\n";
  return text;
}

}  // namespace libforge
