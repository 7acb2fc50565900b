#include "catalog_entry.hpp"

#include <boost/regex.hpp>
#include <fstream>
#include <pugixml.hpp>

#include "common/text_helpers.hpp"

namespace tbl2flat {

bool TEntryPart::property(const std::string& name, std::string& value) const {
  for (const auto& p : properties)
    if (p.first == name) {
      value = p.second;
      return true;
    }
  return false;
}

std::vector<std::string> splitStatement(const std::string& line) {
  std::vector<std::string> fields;
  size_t i = 0;
  const size_t n = line.size();
  while (i < n) {
    while (i < n && (line[i] == ' ' || line[i] == '\t')) ++i;
    if (i >= n) break;
    std::string field;
    if (line[i] == '"') {
      // A quoted field runs to the next quote, or to the end of the line.
      size_t close = line.find('"', i + 1);
      if (close == std::string::npos) close = n;
      field = line.substr(i + 1, close - i - 1);
      i = close + 1;
    } else {
      size_t end = i;
      while (end < n && line[end] != ' ' && line[end] != '\t') ++end;
      field = line.substr(i, end - i);
      i = end;
    }
    fields.push_back(field);
  }
  return fields;
}

namespace {

// Reports problems of one catalog entry with the catalog name and line.
class CEntryReporter {
 public:
  CEntryReporter(std::ostream& out, const std::string& catalog) : mOut(out), mCatalog(catalog) {}
  void warn(int line, const std::string& text) {
    mOut << "Warning: catalog " << mCatalog << ", line " << line << ": " << text << "\n";
  }

 private:
  std::ostream& mOut;
  const std::string& mCatalog;
};

// How many fields a statement takes behind its keyword.
int fieldsOf(const std::string& keyword) {
  if (keyword == "END_PART") return 0;
  if (keyword == "PROPERTY") return 2;
  if (keyword == "PART" || keyword == "CONTAINER" || keyword == "MAP_FILE" || keyword == "GEOM" ||
      keyword == "COMPONENT" || keyword == "SYMBOL" || keyword == "CATALOG")
    return 1;
  return -1;
}

// Builds the parts statement by statement.
class CEntryBuilder {
 public:
  CEntryBuilder(TCatalogEntry& entry, CEntryReporter& report) : mEntry(entry), mReport(report) {}

  void statement(int line, const std::vector<std::string>& fields) {
    const std::string& keyword = fields[0];
    const int wanted = fieldsOf(keyword);
    if (wanted < 0) {
      mReport.warn(line, "unknown statement " + keyword + ", the line is skipped");
      return;
    }
    if (keyword == "CATALOG") {
      mReport.warn(line, "a second CATALOG statement, the line is skipped");
      return;
    }
    if (keyword != "END_PART" && (fields.size() < 2 || fields[1].empty())) {
      mReport.warn(line, keyword + " without a value, the line is skipped");
      return;
    }
    if (static_cast<int>(fields.size()) > wanted + 1)
      mReport.warn(line, "extra fields behind " + keyword + " are ignored");
    if (keyword == "PART") {
      closeOpenPart(line);
      mEntry.parts.emplace_back();
      mEntry.parts.back().number = fields[1];
      mEntry.parts.back().line = line;
      mOpen = true;
      return;
    }
    if (!mOpen) {
      mReport.warn(line, keyword + " outside a part, the line is skipped");
      return;
    }
    TEntryPart& part = mEntry.parts.back();
    if (keyword == "END_PART") {
      mOpen = false;
    } else if (keyword == "PROPERTY") {
      part.properties.emplace_back(fields[1], fields.size() > 2 ? fields[2] : std::string());
    } else if (keyword == "CONTAINER") {
      if (!part.container.empty())
        mReport.warn(line, "another CONTAINER for part " + part.number + ", the last one counts");
      part.container = fields[1];
    } else if (keyword == "MAP_FILE") {
      if (!part.mapFile.empty())
        mReport.warn(line, "another MAP_FILE for part " + part.number + ", the last one counts");
      part.mapFile = fields[1];
    } else if (keyword == "GEOM") {
      part.geoms.push_back(fields[1]);
    } else if (keyword == "COMPONENT") {
      part.components.push_back(TEntryComponent{fields[1], {}});
    } else if (part.components.empty()) {  // SYMBOL
      mReport.warn(line, "SYMBOL before any COMPONENT of part " + part.number + ", the line is skipped");
    } else {
      part.components.back().symbols.push_back(fields[1]);
    }
  }

  void finish(int line) { closeOpenPart(line); }

 private:
  void closeOpenPart(int line) {
    if (mOpen) mReport.warn(line, "part " + mEntry.parts.back().number + " has no END_PART");
    mOpen = false;
  }

  TCatalogEntry& mEntry;
  CEntryReporter& mReport;
  bool mOpen = false;
};

}  // namespace

bool readCatalogEntry(const std::string& file, const std::string& catalog, TCatalogEntry& entry, std::ostream& out) {
  std::ifstream in(file);
  if (!in.is_open()) return false;
  CEntryReporter report(out, catalog);
  CEntryBuilder builder(entry, report);
  bool first = true;
  int number = 0;
  std::string line;
  while (std::getline(in, line)) {
    ++number;
    const std::string text = rig_common::trim(line);
    if (text.empty() || text[0] == '#') continue;
    const std::vector<std::string> fields = splitStatement(text);
    if (first) {
      // Anything but "CATALOG <name>" first is not a catalog entry.
      if (fields.size() < 2 || fields[0] != "CATALOG" || fields[1].empty()) return false;
      entry.name = fields[1];
      first = false;
      continue;
    }
    builder.statement(number, fields);
  }
  if (first) return false;
  builder.finish(number);
  return true;
}

bool readLocationMap(const std::string& file, TPrefixTable& table) {
  std::ifstream in(file);
  if (!in.is_open()) return false;
  const boost::regex header("QRN_LOCATION_MAP_\\d+(?:\\s+force)?.*");
  const boost::regex prefixLine("(\\$\\S+).*");
  std::string prefix, line;
  while (std::getline(in, line)) {
    const std::string text = rig_common::trim(line);
    boost::smatch match;
    if (text.empty() || text[0] == '#' || boost::regex_match(text, header)) continue;
    if (boost::regex_match(text, match, prefixLine)) {
      prefix = match.str(1);
    } else if (!prefix.empty()) {
      table.emplace(prefix, text);  // the first hard pathname of a prefix counts
    }
  }
  return true;
}

bool resolveLocation(const std::string& value, const TPrefixTable& table, std::string& resolved,
                     std::string& unresolved) {
  std::string path = value;
  if (!value.empty() && value[0] == '$') {
    const size_t end = value.find_first_of("/\\");
    const std::string prefix = value.substr(0, end);
    auto found = table.find(prefix);
    if (found == table.end()) {
      unresolved = prefix;
      return false;
    }
    path = found->second + (end == std::string::npos ? std::string() : value.substr(end));
  }
  for (char& c : path)
    if (c == '\\') c = '/';
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  resolved = path;
  return true;
}

bool readValueData(const std::string& file, TValueData& data) {
  pugi::xml_document doc;
  if (!doc.load_file(file.c_str())) return false;
  const pugi::xml_node mapping = doc.child("rig").child("catalog_data").child("value_property_mapping");
  for (auto list : mapping.children("catalog_list"))
    for (auto catalog : list.children("catalog")) data.catalogs.insert(catalog.attribute("name").value());
  std::set<std::string> seen;
  for (auto list : mapping.children("ql_property_list"))
    for (auto property : list.children("ql_property")) {
      const std::string name = property.attribute("name").value();
      if (seen.insert(name).second) data.properties.push_back(name);
    }
  return true;
}

}  // namespace tbl2flat
