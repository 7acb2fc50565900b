-- The summary page in a real browser: headless Chromium opens summary.html;
-- the page runs without a console error, shows the counts and draws a known
-- symbol. The screenshot stays in the scratch directory.
local t = require("testlib")
local function installed(name) return t.sh("command -v " .. name .. " > /dev/null 2>&1") and name end
local browser = installed("chromium") or installed("chromium-browser")
if not browser then
  print("SKIPPED: chromium is not installed (scripts/setup-deps installs it)")
  return
end

local wdir = t.fresh_dir(t.scratch) .. "/wdir"
t.fixture("summary_wdir", wdir)
t.eq(t.run({"--summary", wdir}), 0, "summary written")
local profile = t.fresh_dir(t.scratch .. "/profile")
local function chromium(args, out, err)
  return t.sh(browser .. " --headless --no-sandbox --disable-gpu --disable-quic --no-first-run " ..
              "--disable-background-networking --disable-component-update --disable-sync --enable-logging=stderr " ..
              "--user-data-dir=" .. t.quote(profile) .. " " .. args .. " " .. t.quote("file://" .. wdir .. "/summary.html") ..
              " > " .. t.quote(out) .. " 2> " .. t.quote(err))
end
assert(chromium("--dump-dom", t.scratch .. "/dom.html", t.scratch .. "/console.txt"), "chromium --dump-dom")
local dom = t.read(t.scratch .. "/dom.html")
local console = t.read(t.scratch .. "/console.txt")
assert(not console:find("CONSOLE", 1, true), "console messages:\n" .. console)
for _, piece in ipairs({'data-ready="yes"',
                        '<tr data-count="symbols converted" class=""><td>symbols converted</td><td class="n">2</td></tr>',
                        '<tr data-count="parts rejected" class="bad"><td>parts rejected</td><td class="n">1</td></tr>',
                        "<td>digital 7</td><td>rejected by tbl2flat: no CONTAINER</td>",
                        '<svg class="sym" data-name="nand2" data-role="source"'}) do
  assert(dom:find(piece, 1, true), "the page lacks " .. piece .. ":\n" .. dom)
end
-- The target picture of nand2: its body and its three pins with names and numbers.
local svg = dom:match('<svg class="sym" data%-name="logic_nand2" data%-role="target".-</svg>')
assert(svg, "no picture of logic_nand2:\n" .. dom)
assert(svg:find('<rect class="body" x="0" y="0" width="6" height="4"', 1, true), svg)
for _, pin in ipairs({">A</text>", ">B</text>", ">Y</text>", ">1</text>", ">2</text>", ">3</text>", ">U?</text>"}) do
  assert(svg:find(pin, 1, true), "missing " .. pin .. " in " .. svg)
end
assert(chromium("--screenshot=" .. t.quote(t.scratch .. "/summary.png") .. " --window-size=1280,2400",
                t.scratch .. "/shot.txt", t.scratch .. "/shot_err.txt"), "screenshot")
assert(t.exists(t.scratch .. "/summary.png"), "screenshot kept")
