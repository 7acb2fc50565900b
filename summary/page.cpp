// summary.html: one self-contained page (no network, no external script).
// The facts travel inside the page as JSON; a small script lays them out and
// draws the symbols page by page, so that a library of 20,000 symbols opens
// at once and stays responsive.

#include <boost/filesystem.hpp>
#include <fstream>
#include <sstream>

#include "summary/summary.hpp"
#include "summary/summary_json.hpp"

namespace fs = boost::filesystem;

namespace vltsummary {

namespace {

const char kHead[] = R"HTML(<!DOCTYPE html>
<html lang="en"><head><meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>Migration summary</title>
<style>
body{font:14px/1.4 system-ui,sans-serif;margin:0 2em 3em;color:#222}
h1{margin:.6em 0 .1em}h2{margin:1.4em 0 .4em;border-bottom:1px solid #ccc}
.where{color:#666;font-size:12px}
table{border-collapse:collapse}td,th{border:1px solid #ddd;padding:2px 8px;text-align:left;vertical-align:top;white-space:pre-line}
td.n{text-align:right;font-variant-numeric:tabular-nums}
tr.bad td.n{color:#b00;font-weight:bold}
.none{color:#080}
.grid{display:flex;flex-wrap:wrap;gap:10px}
.card{border:1px solid #ccc;border-radius:4px;padding:6px;width:470px}
.card.rejected{border-color:#b00}.card.notconverted{border-color:#c80}
.card .title{font-size:12px;word-break:break-all}
.pair{display:flex;gap:6px}.pair figure{margin:0;width:230px}
figcaption{font-size:11px;color:#666}
svg.sym{width:230px;height:180px;background:#fafafa;border:1px solid #eee}
svg.sym .body{fill:#ffd;stroke:#333;stroke-width:.12}
svg.sym line{stroke:#333;stroke-width:.1}
svg.sym text{font-family:sans-serif}
.problem{color:#b00;font-size:12px;height:180px;overflow:auto;word-break:break-all}
.pager button{margin:0 4px}
code{font-size:12px}
</style></head><body>
<h1>Migration summary</h1>
<div class="where" id="where"></div>
<nav id="toc"></nav>
<main id="main"><noscript>This page needs JavaScript to lay out its facts; summary.json holds the same facts.</noscript></main>
<script type="application/json" id="facts">
)HTML";

const char kTail[] = R"HTML(</script>
<script>
"use strict";
const facts = JSON.parse(document.getElementById("facts").textContent);
const main = document.getElementById("main");
const PAGE = 24;

function el(tag, attrs, ...children) {
  const e = document.createElement(tag);
  for (const k in attrs || {}) e.setAttribute(k, attrs[k]);
  for (const c of children) e.append(c instanceof Node ? c : document.createTextNode(String(c)));
  return e;
}
function section(id, title, count) {
  const h = el("h2", {id: id}, count === undefined ? title : title + " (" + count + ")");
  main.append(h);
  document.getElementById("toc").append(el("a", {href: "#" + id}, title), " · ");
  return h;
}
function table(head, rows) {
  const t = el("table", {}, el("tr", {}, ...head.map(h => el("th", {}, h))));
  for (const r of rows) t.append(el("tr", {}, ...r.map(c => el("td", {}, c))));
  return t;
}
function none(text) { return el("p", {class: "none"}, text); }

// One routine draws source and target symbols alike: the body, each pin as a
// short line out of its side with its name inside and its number outside,
// the reference designator above and the name below.
const SVGNS = "http://www.w3.org/2000/svg";
function svg(tag, attrs, text) {
  const e = document.createElementNS(SVGNS, tag);
  for (const k in attrs) e.setAttribute(k, attrs[k]);
  if (text !== undefined) e.textContent = text;
  return e;
}
function drawSymbol(d, role) {
  if (!Array.isArray(d)) return el("div", {class: "problem"}, d.problem || "no picture");
  const [name, refdes, x1, y1, x2, y2, pins] = d;
  const out = {L: [-2, 0], R: [2, 0], T: [0, 2], B: [0, -2]};
  let minX = Math.min(x1, x2), maxX = Math.max(x1, x2), minY = Math.min(y1, y2), maxY = Math.max(y1, y2);
  for (const p of pins) {
    const o = out[p[4]] || [0, 0];
    minX = Math.min(minX, p[2] + o[0]); maxX = Math.max(maxX, p[2] + o[0]);
    minY = Math.min(minY, p[3] + o[1]); maxY = Math.max(maxY, p[3] + o[1]);
  }
  minX -= 1.5; maxX += 1.5; minY -= 1.5; maxY += 1.5;
  const Y = y => maxY + minY - y;  // the symbol's y grows upwards
  const s = svg("svg", {class: "sym", "data-name": name, "data-role": role,
                        viewBox: minX + " " + minY + " " + (maxX - minX) + " " + (maxY - minY),
                        preserveAspectRatio: "xMidYMid meet"});
  s.append(svg("rect", {class: "body", x: Math.min(x1, x2), y: Y(Math.max(y1, y2)),
                        width: Math.abs(x2 - x1), height: Math.abs(y2 - y1)}));
  for (const p of pins) {
    const o = out[p[4]] || [0, 0];
    const x = p[2], y = Y(p[3]), ex = x + o[0], ey = y - o[1];
    s.append(svg("line", {x1: x, y1: y, x2: ex, y2: ey}));
    const horizontal = p[4] === "L" || p[4] === "R";
    const inward = p[4] === "L" ? "start" : p[4] === "R" ? "end" : "middle";
    s.append(svg("text", {class: "pin-name", x: x + (p[4] === "L" ? .3 : p[4] === "R" ? -.3 : 0),
                          y: y + (horizontal ? .25 : p[4] === "T" ? .9 : -.4), "font-size": .7,
                          "text-anchor": inward}, p[0]));
    if (p[1]) s.append(svg("text", {class: "pin-no", x: (x + ex) / 2, y: (horizontal ? y - .2 : (y + ey) / 2),
                                     "font-size": .55, "text-anchor": horizontal ? "middle" : "end", fill: "#06c"}, p[1]));
  }
  s.append(svg("text", {class: "refdes", x: Math.min(x1, x2), y: Y(Math.max(y1, y2)) - .35, "font-size": .8}, refdes));
  s.append(svg("text", {class: "sym-name", x: Math.min(x1, x2), y: Y(Math.min(y1, y2)) + 1, "font-size": .8}, name));
  return s;
}

function card(sym) {
  const c = el("div", {class: "card " + sym.status.replace(" ", ""), "data-source": sym.source, "data-target": sym.target});
  c.append(el("div", {class: "title"}, sym.source, " → ", el("b", {}, sym.target), " ", "(" + sym.status + ")"));
  c.append(el("div", {class: "pair"},
              el("figure", {}, drawSymbol(sym.drawings[0], "source"), el("figcaption", {}, "source")),
              el("figure", {}, drawSymbol(sym.drawings[1], "target"), el("figcaption", {}, "target"))));
  return c;
}

function gallery() {
  const byPartition = new Map();
  for (const s of facts.symbols) {
    if (!byPartition.has(s.partition)) byPartition.set(s.partition, []);
    byPartition.get(s.partition).push(s);
  }
  section("symbols", "Symbols by partition", facts.symbols.length);
  if (facts.symbols.length === 0) { main.append(none("No symbol has been converted yet.")); return; }
  const filter = el("input", {type: "search", id: "filter", placeholder: "filter by name or path"});
  main.append(el("p", {}, filter));
  // A partition's cards are made when it is first opened; with many
  // partitions only the first is open at the start.
  const parts = [];
  for (const [partition, symbols] of byPartition) {
    const box = el("details", {"data-partition": partition},
                   el("summary", {}, el("b", {}, partition), " – " + symbols.length + " symbols"));
    const grid = el("div", {class: "grid"});
    const pager = el("div", {class: "pager"});
    box.append(pager, grid);
    main.append(box);
    const part = {symbols: symbols, shown: symbols, page: 0, grid: grid, pager: pager, box: box, drawn: false};
    parts.push(part);
    box.addEventListener("toggle", () => { if (box.open && !part.drawn) render(part); });
    if (parts.length === 1 || byPartition.size <= 4) { box.open = true; render(part); }
  }
  let timer = 0;
  filter.addEventListener("input", () => {
    clearTimeout(timer);
    timer = setTimeout(() => {
      const q = filter.value.toLowerCase();
      for (const p of parts) {
        p.shown = q ? p.symbols.filter(s => (s.source + " " + s.target).toLowerCase().includes(q)) : p.symbols;
        p.page = 0;
        if (p.box.open) render(p); else p.drawn = false;
      }
    }, 150);
  });
}
function render(p) {
  p.drawn = true;
  const pages = Math.max(1, Math.ceil(p.shown.length / PAGE));
  p.grid.replaceChildren(...p.shown.slice(p.page * PAGE, (p.page + 1) * PAGE).map(card));
  p.pager.replaceChildren();
  if (pages > 1) {
    const prev = el("button", {}, "‹ previous"), next = el("button", {}, "next ›");
    prev.disabled = p.page === 0; next.disabled = p.page >= pages - 1;
    prev.onclick = () => { p.page--; render(p); };
    next.onclick = () => { p.page++; render(p); };
    p.pager.append(prev, "page " + (p.page + 1) + " of " + pages, next);
  }
}

document.getElementById("where").textContent = "Working directory: " + facts.wdir;

section("counts", "Counts");
const counts = el("table", {id: "count-table"});
for (const k in facts.counts) {
  const bad = /rejected|findings/.test(k) && facts.counts[k] > 0;
  counts.append(el("tr", {"data-count": k, class: bad ? "bad" : ""}, el("td", {}, k), el("td", {class: "n"}, facts.counts[k])));
}
main.append(counts);
const kinds = Object.keys(facts.partitions);
if (kinds.length)
  main.append(table(["partition kind", "partitions"], kinds.map(k => [k, facts.partitions[k].join(", ")])));

section("rejected-parts", "Rejected parts", facts.rejected_parts.length);
main.append(facts.rejected_parts.length ? table(["part", "reason"], facts.rejected_parts.map(r => [r.part, r.reason]))
                                        : none("No part was rejected."));
section("rejected-symbols", "Rejected symbols", facts.rejected_symbols.length);
main.append(facts.rejected_symbols.length
            ? table(["symbol", "reason"], facts.rejected_symbols.map(r => [r.symbol, r.reason]))
            : none("No symbol was rejected."));
section("findings", "Findings of the verify reports", facts.findings.length);
main.append(facts.findings.length ? table(["report", "section", "finding"], facts.findings.map(f => [f.report, f.section, f.text]))
                                  : none("The verify reports hold no finding."));
section("collisions", "Path depth collisions");
main.append(el("p", {}, "Default path depth: " + facts.path_depth.default + ", maximal path depth: " + facts.path_depth.maximal));
main.append(facts.path_depth.collisions.length
            ? table(["depth", "colliding symbols"], facts.path_depth.collisions.map(c => [c.depth, c.symbols.map(s => s[0] + "/" + s[1]).join("\n")]))
            : none("No collision."));
section("claims", "Target names claimed by more than one source symbol", facts.claimed_targets.length);
main.append(facts.claimed_targets.length ? table(["target", "source symbols"], facts.claimed_targets.map(c => [c.target, c.sources.join("\n")]))
                                         : none("Every target name has one source symbol."));
gallery();
section("links", "Reports and logs", facts.links.length);
const list = el("ul");
for (const l of facts.links) list.append(el("li", {}, el("a", {href: encodeURI(l)}, l)));
main.append(list);
document.body.dataset.ready = "yes";
</script></body></html>
)HTML";

// Writes beside the file and renames over it, so that a reader never sees
// half a page.
bool writeWhole(const fs::path& file, const std::string& text) {
  fs::path temporary = file;
  temporary += ".tmp";
  {
    std::ofstream out(temporary.string(), std::ios::binary | std::ios::trunc);
    out << text;
    out.close();
    if (!out) return false;
  }
  boost::system::error_code ec;
  fs::rename(temporary, file, ec);
  return !ec;
}

}  // namespace

void writeHtml(const TSummary& summary, std::ostream& out) { out << kHead << summaryJson(summary, true) << kTail; }

int runSummaryCommand(const std::string& wdir, std::ostream& out, std::ostream& err) {
  boost::system::error_code ec;
  if (!fs::is_directory(wdir, ec)) {
    err << "vlt2hrw-summary: not a working directory: " << wdir << "\n";
    return 2;
  }
  TSummary summary = collectSummary(wdir);
  std::ostringstream json, html;
  writeJson(summary, json);
  writeHtml(summary, html);
  const fs::path dir(summary.wdir);
  for (const auto& file :
       {std::make_pair(dir / "summary.json", json.str()), std::make_pair(dir / "summary.html", html.str())}) {
    if (!writeWhole(file.first, file.second)) {
      err << "vlt2hrw-summary: cannot write " << file.first.string() << "\n";
      return 2;
    }
  }
  out << "summary: " << (dir / "summary.html").string() << "\n";
  return 0;
}

}  // namespace vltsummary
