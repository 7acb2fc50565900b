// Reads what a picture of a symbol needs from a symbol file: the body, the
// pins with their names and numbers, the reference designator.
//
// Source symbols (SKSYMBOL 1, .smbl_<n>) and target symbols (TDSYMBOL 1,
// .sym) are both plain text, one statement a line, a keyword and fields
// separated by blanks, a field with blanks in double quotes, '#' comments.
// They differ in a few names (PIN_PROPERTY / PIN_ATTRIBUTE, and the pin
// number PIN_NO, which the converter's configuration renames, "#" by
// default) and in the unit of positions: grid steps in a source symbol, the
// symbol's unit in a target symbol, which divided by its PIN_SPACING gives
// grid steps again, so that both are drawn on the same grid.

#include <boost/algorithm/string/case_conv.hpp>
#include <fstream>
#include <sstream>

#include "summary/summary.hpp"

namespace vltsummary {

namespace {

std::vector<std::string> fields(const std::string& line) {
  std::vector<std::string> out;
  size_t i = 0;
  while (i < line.size()) {
    while (i < line.size() && isspace(static_cast<unsigned char>(line[i]))) ++i;
    if (i >= line.size()) break;
    std::string field;
    if (line[i] == '"') {
      size_t close = line.find('"', i + 1);
      if (close == std::string::npos) close = line.size();
      field = line.substr(i + 1, close - i - 1);
      i = close + 1;
    } else {
      while (i < line.size() && !isspace(static_cast<unsigned char>(line[i]))) field += line[i++];
    }
    out.push_back(field);
  }
  return out;
}

bool number(const std::string& text, double& value) {
  try {
    size_t used = 0;
    value = std::stod(text, &used);
    return used == text.size();
  } catch (const std::exception&) {
    return false;
  }
}

TPin* findPin(TDrawing& drawing, const std::string& name) {
  for (TPin& pin : drawing.pins)
    if (pin.name == name) return &pin;
  return nullptr;
}

}  // namespace

TDrawing readDrawing(const std::string& file) {
  TDrawing drawing;
  drawing.file = file;
  std::ifstream in(file);
  if (!in) {
    drawing.problem = "cannot read " + file;
    return drawing;
  }
  bool header = false, body = false, end = false, target = false;
  double spacing = 0;
  std::string line;
  while (!end && std::getline(in, line)) {
    std::vector<std::string> f = fields(line);
    if (f.empty() || f[0][0] == '#') continue;
    std::string keyword = boost::algorithm::to_upper_copy(f[0]);
    if (!header) {
      // SKSYMBOL 1 for a source symbol; a target symbol opens with its own
      // format name and version in the same way.
      header = f.size() >= 2 && keyword.find("SYMBOL") != std::string::npos;
      target = keyword == "TDSYMBOL";
      if (!header) break;
      continue;
    }
    if (keyword == "END") {
      end = true;
    } else if ((keyword == "NAME" || keyword == "SYMBOL_NAME") && f.size() >= 2) {
      drawing.name = f[1];
    } else if (keyword == "SOURCE" && f.size() >= 2) {
      drawing.source = f[1];
    } else if (keyword == "PIN_SPACING" && f.size() >= 2) {
      number(f[1], spacing);
    } else if ((keyword == "REFDES" || keyword == "REFDES_VALUE") && f.size() >= 2) {
      drawing.refdes = f[1];
    } else if ((keyword == "BODY" || keyword == "RECT") && f.size() >= 5) {
      body =
          number(f[1], drawing.x1) && number(f[2], drawing.y1) && number(f[3], drawing.x2) && number(f[4], drawing.y2);
    } else if (keyword == "PIN" && f.size() >= 6) {
      TPin pin;
      pin.name = f[1];
      pin.type = f[2];
      pin.side = boost::algorithm::to_upper_copy(f[5]);
      if (number(f[3], pin.x) && number(f[4], pin.y)) drawing.pins.push_back(pin);
    } else if ((keyword == "PIN_PROPERTY" || keyword == "PIN_ATTRIBUTE") && f.size() >= 4 &&
               (f[2] == "PIN_NO" || f[2] == "PIN_NUMBER" || f[2] == "#")) {
      if (TPin* pin = findPin(drawing, f[1])) pin->number = f[3];
    } else if ((keyword == "PIN_NO" || keyword == "PIN_NUMBER") && f.size() >= 3) {
      if (TPin* pin = findPin(drawing, f[1])) pin->number = f[2];
    }
  }
  if (target && spacing > 0) {
    for (double* v : {&drawing.x1, &drawing.y1, &drawing.x2, &drawing.y2}) *v /= spacing;
    for (TPin& pin : drawing.pins) pin.x /= spacing, pin.y /= spacing;
  }
  if (!header)
    drawing.problem = "not a symbol file: " + file;
  else if (!end)
    drawing.problem = "no END statement: " + file;
  else if (!body)
    drawing.problem = "no body: " + file;
  drawing.valid = drawing.problem.empty();
  return drawing;
}

}  // namespace vltsummary
