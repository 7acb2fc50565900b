// summary.json, and the same facts with the symbol drawings for the page.

#include <cstdio>
#include <sstream>

#include "summary/summary.hpp"
#include "summary/summary_json.hpp"

namespace vltsummary {

// A JSON string. Control characters and '<', '>', '&' are escaped, so that the
// text may also stand inside a <script> element; bytes that are not UTF-8
// become U+FFFD.
std::string jsonString(const std::string& text) {
  std::string out = "\"";
  for (size_t i = 0; i < text.size();) {
    unsigned char c = static_cast<unsigned char>(text[i]);
    size_t length = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 0;
    bool valid = length > 0 && i + length <= text.size() && (length == 1 || c >= 0xC2);
    for (size_t k = 1; valid && k < length; ++k) valid = (static_cast<unsigned char>(text[i + k]) & 0xC0) == 0x80;
    if (!valid) {
      out += "\\ufffd";
      ++i;
      continue;
    }
    if (length > 1) {
      out.append(text, i, length);
      i += length;
      continue;
    }
    char escape[8];
    switch (c) {
      case '"':
        out += "\\\"";
        break;
      case '\\':
        out += "\\\\";
        break;
      case '\n':
        out += "\\n";
        break;
      case '\t':
        out += "\\t";
        break;
      default:
        if (c < 0x20 || c == '<' || c == '>' || c == '&' || c == 0x7F) {
          std::snprintf(escape, sizeof(escape), "\\u%04x", c);
          out += escape;
        } else {
          out += static_cast<char>(c);
        }
    }
    ++i;
  }
  return out + "\"";
}

namespace {

std::string number(double value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

template <class T, class F>
std::string array(const std::vector<T>& items, F item) {
  std::string out = "[";
  for (size_t i = 0; i < items.size(); ++i) out += (i ? "," : "") + item(items[i]);
  return out + "]";
}

// [name, refdes, x1, y1, x2, y2, [[pin, number, x, y, side], ...]] or {"problem": text}
std::string drawingJson(const TDrawing& d) {
  if (!d.valid) return "{\"problem\":" + jsonString(d.problem) + "}";
  return "[" + jsonString(d.name) + "," + jsonString(d.refdes) + "," + number(d.x1) + "," + number(d.y1) + "," +
         number(d.x2) + "," + number(d.y2) + "," +
         array(d.pins,
               [](const TPin& p) {
                 return "[" + jsonString(p.name) + "," + jsonString(p.number) + "," + number(p.x) + "," + number(p.y) +
                        "," + jsonString(p.side) + "]";
               }) +
         "]";
}

}  // namespace

std::string summaryJson(const TSummary& s, bool drawings) {
  std::string out = "{\n\"wdir\":" + jsonString(s.wdir) + ",\n\"counts\":{";
  for (size_t i = 0; i < s.counts.size(); ++i)
    out += (i ? "," : "") + jsonString(s.counts[i].first) + ":" + std::to_string(s.counts[i].second);
  out += "},\n\"partitions\":{";
  bool first = true;
  for (const auto& kind : s.partitions) {
    out += (first ? "" : ",") + jsonString(kind.first) + ":" + array(kind.second, jsonString);
    first = false;
  }
  out += "},\n\"path_depth\":{\"default\":" + std::to_string(s.defaultDepth) +
         ",\"maximal\":" + std::to_string(s.maximalDepth) + ",\"collisions\":" +
         array(s.collisions,
               [](const TCollision& c) {
                 return "{\"depth\":" + std::to_string(c.depth) + ",\"symbols\":" +
                        array(c.symbols,
                              [](const std::pair<std::string, std::string>& p) {
                                return "[" + jsonString(p.first) + "," + jsonString(p.second) + "]";
                              }) +
                        "}";
               }) +
         "},\n";
  auto rejected = [](const char* key) {
    return [key](const TRejected& r) {
      return "{\"" + std::string(key) + "\":" + jsonString(r.what) + ",\"reason\":" + jsonString(r.reason) + "}";
    };
  };
  out += "\"rejected_parts\":" + array(s.rejectedParts, rejected("part")) + ",\n";
  out += "\"rejected_symbols\":" + array(s.rejectedSymbols, rejected("symbol")) + ",\n";
  out += "\"findings\":" +
         array(s.findings,
               [](const TFinding& f) {
                 return "{\"report\":" + jsonString(f.report) + ",\"section\":" + jsonString(f.section) +
                        ",\"text\":" + jsonString(f.text) + "}";
               }) +
         ",\n";
  out += "\"claimed_targets\":[";
  first = true;
  for (const auto& claim : s.claimedTargets) {
    out += std::string(first ? "" : ",") + "{\"target\":" + jsonString(claim.first) +
           ",\"sources\":" + array(claim.second, jsonString) + "}";
    first = false;
  }
  out += "],\n\"symbols\":" +
         array(s.symbols,
               [drawings](const TSymbolPair& p) {
                 std::string item = "{\"source\":" + jsonString(p.source) +
                                    ",\"partition\":" + jsonString(p.partition) +
                                    ",\"target\":" + jsonString(p.target) + ",\"status\":" + jsonString(p.status);
                 if (drawings)
                   item += ",\"drawings\":[" + drawingJson(p.sourceDrawing) + "," + drawingJson(p.targetDrawing) + "]";
                 return item + "}\n";
               }) +
         ",\n";
  out += "\"links\":" + array(s.links, [](const TLink& l) { return jsonString(l.path); }) + "\n}\n";
  return out;
}

void writeJson(const TSummary& summary, std::ostream& out) { out << summaryJson(summary, false); }

}  // namespace vltsummary
