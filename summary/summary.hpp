#pragma once
// The migration summary: what a run left in a working directory, collected
// from the directory alone (lists, reports, logs, the target library) and
// written as summary.json for machines and summary.html for people.

#include <map>
#include <ostream>
#include <string>
#include <vector>

namespace vltsummary {

// One symbol drawn: source and target symbols share this form, so that one
// routine draws both.
struct TPin {
  std::string name, number, type, side;  // side L, R, T or B
  double x = 0, y = 0;
};

struct TDrawing {
  bool valid = false;
  std::string file, name, refdes, problem;  // problem: why there is no picture
  std::string source;                       // a target symbol: the source file it was made from
  double x1 = 0, y1 = 0, x2 = 0, y2 = 0;    // body, in grid steps
  std::vector<TPin> pins;
};

struct TSymbolPair {
  std::string source, partition, target;  // source: the symbol's path
  std::string status;                     // "converted", "rejected", "not converted"
  TDrawing sourceDrawing, targetDrawing;
};

struct TRejected {
  std::string what;    // part "catalog number" or symbol path
  std::string reason;  // the tool's words, or where to look
};

struct TFinding {
  std::string report, section, text;
};

struct TCollision {
  int depth = 0;
  std::vector<std::pair<std::string, std::string>> symbols;  // directory, name
};

struct TLink {
  std::string label, path;  // path relative to the working directory
};

struct TSummary {
  std::string wdir;
  std::vector<std::pair<std::string, long>> counts;            // in the order shown
  std::map<std::string, std::vector<std::string>> partitions;  // kind -> names
  std::vector<TRejected> rejectedParts, rejectedSymbols;
  std::vector<TFinding> findings;
  int defaultDepth = -1, maximalDepth = -1;
  std::vector<TCollision> collisions;
  std::map<std::string, std::vector<std::string>> claimedTargets;  // target -> sources
  std::vector<TSymbolPair> symbols;
  std::vector<TLink> links;
};

// Reads a symbol file in the statement form of the source library, or a
// target symbol in the same style. The page draws both with one routine.
TDrawing readDrawing(const std::string& file);

TSummary collectSummary(const std::string& wdir);
void writeJson(const TSummary& summary, std::ostream& out);
void writeHtml(const TSummary& summary, std::ostream& out);

// Writes both files into `wdir`; says where on `out`. 0 on success, 2 when
// `wdir` is no directory or a file cannot be written (said on `err`).
int runSummaryCommand(const std::string& wdir, std::ostream& out, std::ostream& err);

}  // namespace vltsummary
