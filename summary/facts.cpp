// Collects the facts of a migration from its working directory.

#include <algorithm>
#include <boost/algorithm/string/trim.hpp>
#include <boost/filesystem.hpp>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "summary/summary.hpp"

namespace fs = boost::filesystem;

namespace vltsummary {

namespace {

std::vector<std::string> readLines(const fs::path& file) {
  std::vector<std::string> lines;
  std::ifstream in(file.string());
  for (std::string line; std::getline(in, line);) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    lines.push_back(line);
  }
  return lines;
}

std::string trimmed(const std::string& text) { return boost::algorithm::trim_copy(text); }

std::string unquoted(std::string text) {
  text = trimmed(text);
  while (!text.empty() && (text.front() == '"' || text.front() == '\'')) text.erase(0, 1);
  while (!text.empty() && (text.back() == '"' || text.back() == '\'')) text.pop_back();
  return text;
}

// Regular files directly in `dir` (or below it, with `deep`), sorted.
std::vector<fs::path> filesIn(const fs::path& dir, bool deep = false) {
  std::vector<fs::path> files;
  boost::system::error_code ec;
  if (!fs::is_directory(dir, ec)) return files;
  if (deep) {
    for (fs::recursive_directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec))
      if (fs::is_regular_file(it->path(), ec)) files.push_back(it->path());
  } else {
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec))
      if (fs::is_regular_file(it->path(), ec)) files.push_back(it->path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

// The number of regular files below `dir` whose extension is `extension`;
// a count needs neither the paths nor their order.
long countFiles(const fs::path& dir, const char* extension) {
  long count = 0;
  boost::system::error_code ec;
  if (!fs::is_directory(dir, ec)) return 0;
  for (fs::recursive_directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec))
    if (it->path().extension() == extension && fs::is_regular_file(it->status(ec))) ++count;
  return count;
}

bool endsWith(const std::string& text, const std::string& tail) {
  return text.size() >= tail.size() && text.compare(text.size() - tail.size(), tail.size(), tail) == 0;
}

// The symbol paths of a symbol list file: its level-1 nodes.
std::vector<std::string> symbolPaths(const fs::path& file) {
  std::vector<std::string> paths;
  for (const std::string& line : readLines(file))
    if (line.rfind(".SK_SYMBOL_PATH ", 0) == 0) paths.push_back(unquoted(line.substr(16)));
  return paths;
}

// Lines of a part list file: "catalog part number"; the comment just above
// an entry is its reason, as the tools write it.
std::vector<TRejected> partList(const fs::path& file) {
  std::vector<TRejected> parts;
  std::string reason;
  for (const std::string& raw : readLines(file)) {
    std::string line = trimmed(raw);
    if (line.empty()) continue;
    if (line.rfind("//", 0) == 0) {
      reason = trimmed(line.substr(2));  // "rejected by <tool>: <reason>"
      continue;
    }
    size_t blank = line.find_first_of(" \t");
    if (blank != std::string::npos && !trimmed(line.substr(blank)).empty())
      parts.push_back({line.substr(0, blank) + " " + trimmed(line.substr(blank)), reason});
    reason.clear();
  }
  return parts;
}

bool problemLine(const std::string& line) {
  static const std::regex filter("\\s*(?:err|warn)\\S*\\s*:*\\s*(.+)", std::regex::icase);
  return std::regex_match(line, filter);
}

// The lines of a verify report under their section heads.
void readReport(const fs::path& file, std::vector<TFinding>& findings) {
  std::string section, context;
  bool inHead = false;
  for (const std::string& line : readLines(file)) {
    if (line.size() >= 20 && line.find_first_not_of('-') == std::string::npos) {
      inHead = !inHead;
      continue;
    }
    if (inHead) {
      section = trimmed(line);
      context.clear();
      continue;
    }
    if (trimmed(line).empty()) continue;
    if (line.rfind("--- Catalog: ", 0) == 0) {
      context = line.substr(13);
      continue;
    }
    findings.push_back({file.filename().string(), section, (context.empty() ? "" : "[" + context + "] ") + line});
  }
}

void readDepthReport(const fs::path& file, TSummary& summary) {
  static const std::regex record("Path depth: (-?[0-9]+) - (-?[0-9]+) duplicates found\\.");
  TCollision* current = nullptr;
  std::smatch match;
  for (const std::string& line : readLines(file)) {
    if (line.rfind("Default path depth: ", 0) == 0) {
      summary.defaultDepth = std::atoi(line.c_str() + 20);
    } else if (line.rfind("Maximal path depth: ", 0) == 0) {
      summary.maximalDepth = std::atoi(line.c_str() + 20);
    } else if (std::regex_match(line, match, record)) {
      summary.collisions.push_back({std::stoi(match[1]), {}});
      current = &summary.collisions.back();
    } else if (current != nullptr && line.find('\t') != std::string::npos) {
      size_t tab = line.find('\t');
      current->symbols.emplace_back(line.substr(0, tab), line.substr(tab + 1));
    }
  }
  summary.collisions.erase(std::remove_if(summary.collisions.begin(), summary.collisions.end(),
                                          [](const TCollision& c) { return c.symbols.empty(); }),
                           summary.collisions.end());
}

// "*HOLDER <kind> <dir>" and "*PARTITION <kind> <name>" of the library index.
void readIndex(const fs::path& library, std::map<std::string, std::string>& holders, TSummary& summary) {
  for (const std::string& line : readLines(library / "Library.zpc")) {
    std::istringstream words(line);
    std::string keyword, kind, name;
    words >> keyword >> kind;
    std::getline(words, name);
    name = trimmed(name);
    if (keyword == "*HOLDER") holders[kind] = name;
    if (keyword == "*PARTITION") summary.partitions[kind].push_back(name);
  }
}

// The source symbol file: <directory>/<name>.smbl_<n> with the highest n.
fs::path sourceSymbolFile(const std::string& path) {
  fs::path full(path);
  fs::path best;
  long bestVersion = -1;
  const std::string stem = full.filename().string() + ".smbl_";
  for (const fs::path& file : filesIn(full.parent_path())) {
    std::string leaf = file.filename().string();
    if (leaf.rfind(stem, 0) != 0) continue;
    std::string digits = leaf.substr(stem.size());
    if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos) continue;
    long version = std::stol(digits);
    if (version > bestVersion) bestVersion = version, best = file;
  }
  return best;
}

// The reason the tools give for a rejected symbol: the first problem line of
// their logs that names it.
std::string symbolReason(const std::string& path, const std::vector<std::pair<std::string, std::string>>& logLines) {
  std::string name = fs::path(path).filename().string();
  for (const auto& entry : logLines)
    if (entry.second.find(path) != std::string::npos && problemLine(entry.second)) return trimmed(entry.second);
  for (const auto& entry : logLines)
    if (entry.second.find("/" + name) != std::string::npos && problemLine(entry.second)) return trimmed(entry.second);
  return "no reason in the tool logs; see " + (logLines.empty() ? std::string("the log directory") : logLines[0].first);
}

}  // namespace

TSummary collectSummary(const std::string& wdirText) {
  TSummary summary;
  const fs::path wdir = fs::absolute(wdirText);
  summary.wdir = wdir.string();
  const fs::path config = wdir / "config", log = wdir / "log", neutral = wdir / "neutral", library = wdir / "Library";
  const fs::path catalogs = neutral / "catalogs";

  // Catalogs and parts.
  long listed = 0, saved = 0, parts = 0;
  for (const std::string& line : readLines(config / "catalog.list")) {
    std::string catalog = trimmed(line);
    if (catalog.empty()) continue;
    ++listed;
    fs::path neutralCatalog = catalogs / (catalog + "_neut.tlx");
    if (!fs::is_regular_file(neutralCatalog)) continue;
    ++saved;
    for (const std::string& tree : readLines(neutralCatalog))
      if (tree.rfind(".QRN_PART ", 0) == 0) ++parts;
  }
  summary.rejectedParts = partList(log / "rejected_parts.caf");
  std::set<std::string> rejectedParts;
  for (const TRejected& r : summary.rejectedParts) rejectedParts.insert(r.what);
  long excludedParts = static_cast<long>(partList(config / "excluded_parts.caf").size());

  // Symbols.
  std::set<std::string> found;
  fs::path lists = neutral / "symbol_lists";
  if (filesIn(lists).empty()) lists = catalogs;
  for (const fs::path& file : filesIn(lists))
    if (endsWith(file.filename().string(), ".sym_list.caf"))
      for (const std::string& path : symbolPaths(file)) found.insert(path);
  long written = 0;
  boost::system::error_code ec;
  for (fs::directory_iterator it(neutral, ec), end; !ec && it != end; it.increment(ec))
    if (it->path().filename().string().rfind("symbols_", 0) == 0) written += countFiles(it->path(), ".neut");
  std::vector<std::pair<std::string, std::string>> toolLines;
  for (const char* name : {"symbol_converter_initial.log", "symbol_converter.log"})
    for (const std::string& line : readLines(log / name)) toolLines.emplace_back(std::string("log/") + name, line);
  std::set<std::string> rejectedSymbols;
  for (const std::string& path : symbolPaths(log / "rejected_symbols.caf"))
    if (rejectedSymbols.insert(path).second) summary.rejectedSymbols.push_back({path, symbolReason(path, toolLines)});
  long excludedSymbols = static_cast<long>(symbolPaths(config / "excluded_symbols.caf").size());

  // Target library.
  std::map<std::string, std::string> holders;
  readIndex(library, holders, summary);
  const fs::path symbolHolder = library / (holders.count("symbol") ? holders["symbol"] : "SymbolLibs");
  const fs::path pdbHolder = library / (holders.count("pdb") ? holders["pdb"] : "PartsDBLibs");
  const long converted = countFiles(symbolHolder, ".sym"), databases = countFiles(pdbHolder, ".pdb");

  // Source and target of every symbol the conversion named.
  std::map<std::string, TDrawing> sourceDrawings;
  for (const std::string& line : readLines(library / "TranslationData" / "symname_map.txt")) {
    size_t first = line.find('\t'), second = first == std::string::npos ? first : line.find('\t', first + 1);
    if (second == std::string::npos) continue;
    TSymbolPair pair;
    pair.source = unquoted(line.substr(0, first));
    pair.partition = line.substr(first + 1, second - first - 1);
    pair.target = line.substr(second + 1);
    summary.claimedTargets[pair.target].push_back(pair.source);
    fs::path targetFile = symbolHolder / pair.partition / (pair.target + ".sym");
    pair.targetDrawing = readDrawing(targetFile.string());
    if (!fs::exists(targetFile)) pair.targetDrawing.problem = "no target symbol " + targetFile.string();
    // The source version the converter read, else the highest one. Many
    // targets may share a source symbol (postfixes): read each once.
    std::string sourceKey = pair.targetDrawing.source.empty() ? pair.source : pair.targetDrawing.source;
    auto cached = sourceDrawings.find(sourceKey);
    if (cached == sourceDrawings.end()) {
      fs::path sourceFile = pair.targetDrawing.source.empty() ? sourceSymbolFile(pair.source) : fs::path(sourceKey);
      TDrawing drawing = sourceFile.empty() ? TDrawing{} : readDrawing(sourceFile.string());
      if (sourceFile.empty()) drawing.problem = "source symbol not found: " + pair.source;
      cached = sourceDrawings.emplace(sourceKey, drawing).first;
    }
    pair.sourceDrawing = cached->second;
    pair.status = rejectedSymbols.count(pair.source) ? "rejected"
                  : fs::exists(targetFile)           ? "converted"
                                                     : "not converted";
    summary.symbols.push_back(pair);
  }
  for (auto it = summary.claimedTargets.begin(); it != summary.claimedTargets.end();) {
    std::set<std::string> distinct(it->second.begin(), it->second.end());
    it = distinct.size() > 1 ? std::next(it) : summary.claimedTargets.erase(it);
  }
  std::stable_sort(summary.symbols.begin(), summary.symbols.end(),
                   [](const TSymbolPair& a, const TSymbolPair& b) { return a.partition < b.partition; });

  // Reports.
  fs::path reports = fs::is_directory(log / "reports") ? log / "reports" : wdir / "reports";
  for (const char* name : {"verify_catalogs.txt", "verify_symbols.txt", "verify_pdb.txt"})
    readReport(reports / name, summary.findings);
  readDepthReport(reports / "symbol_path_depth_report.txt", summary);

  summary.counts = {{"catalogs listed", listed},
                    {"catalogs saved", saved},
                    {"parts translated", parts},
                    {"parts rejected", static_cast<long>(rejectedParts.size())},
                    {"parts excluded", excludedParts},
                    {"symbols found", static_cast<long>(found.size())},
                    {"neutral symbols written", written},
                    {"symbols converted", converted},
                    {"symbols rejected", static_cast<long>(rejectedSymbols.size())},
                    {"symbols excluded", excludedSymbols},
                    {"symbol partitions", static_cast<long>(summary.partitions["symbol"].size())},
                    {"parts database partitions", static_cast<long>(summary.partitions["pdb"].size())},
                    {"cell partitions", static_cast<long>(summary.partitions["cell"].size())},
                    {"parts databases imported", databases},
                    {"report findings", static_cast<long>(summary.findings.size())}};

  // The host's log, where the demo and the workflow put it: beside the
  // working directory or in it.
  for (const fs::path& hostLog : {wdir / "host.log", wdir.parent_path() / "host.log"}) {
    if (!fs::is_regular_file(hostLog)) continue;
    long warnings = 0, errors = 0;
    static const std::regex warn("(?:[0-9:.]+ )?(?:\\S+ )?WARN\\b.*"),
        error("(?:[0-9:.]+ )?(?:\\S+ )?(?:ERROR|FATAL)\\b.*");
    for (const std::string& line : readLines(hostLog)) {
      if (std::regex_match(line, warn)) ++warnings;
      if (std::regex_match(line, error)) ++errors;
    }
    summary.counts.emplace_back("warnings in the host log", warnings);
    summary.counts.emplace_back("errors in the host log", errors);
    std::string relative = fs::relative(hostLog, wdir).generic_string();
    summary.links.push_back({relative, relative});
    break;
  }

  // Every report and log, and the lists a user edits or reads.
  for (const fs::path& file : filesIn(log, true))
    summary.links.push_back({fs::relative(file, wdir).generic_string(), fs::relative(file, wdir).generic_string()});
  if (reports == wdir / "reports")
    for (const fs::path& file : filesIn(reports))
      summary.links.push_back({fs::relative(file, wdir).generic_string(), fs::relative(file, wdir).generic_string()});
  for (const fs::path& file : {config / "catalog.list", config / "excluded_parts.caf", config / "excluded_symbols.caf",
                               library / "TranslationData" / "symname_map.txt"})
    if (fs::is_regular_file(file))
      summary.links.push_back({fs::relative(file, wdir).generic_string(), fs::relative(file, wdir).generic_string()});
  for (const fs::path& file : filesIn(wdir))
    if (file.extension() == ".log") summary.links.push_back({file.filename().string(), file.filename().string()});
  return summary;
}

}  // namespace vltsummary
