-- The workflow run twice into one directory, with a settings file: the
-- second run keeps the working directory (and the user's edit of
-- excluded_parts.caf), and leaves the same files and summary. --only runs one step on the results of the first run.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local function run(...)
  return t.run({"--progress", "off", "--log", out .. "/host.log", t.source .. "/workflow/migrate.lua", ...}, true)
end

-- Relative paths of the settings file are taken from its directory.
t.write(out .. "/settings.lua", [[
return {
  library_dir = "]] .. t.source .. [[/examples",
  out_dir = ".",
  catalogs = {"digital", "connectors"},
  partition_renames = {connector = "connectors", analog = "linear"},
  property_targets = {VALUE = "Value"},
  scale_factors = {["0.05 INCH"] = "2.0"},
}
]])

-- summary.json without the counts of the host log, which grows with each run.
local function summary()
  return (t.read(out .. "/wdir/summary.json"):gsub(',"warnings in the host log":%d+,"errors in the host log":%d+', ""))
end

local status, text = run("--settings", out .. "/settings.lua")
t.eq(status, 3, "first run: rejected items")
t.case("the settings' choices", function()
  t.eq(t.read(out .. "/wdir/config/catalog.list"), "digital\nconnectors\n", "catalogs taken")
  t.eq(t.read(out .. "/wdir/config/sym_partitions.caf"), "linear\nconnectors\ndigital\n", "partitions renamed")
  assert(t.read(out .. "/wdir/config/catalog_data_mapping.xml"):find('"Value"', 1, true), "property target")
  assert(t.read(out .. "/wdir/config/symbol_data_mapping.xml"):find(
    '<pin_spacing val="0.05" unit="INCH" factor="2.0" />', 1, true), "scale factor")
  assert(text:find("\n  parts            11 translated, 1 rejected, 0 excluded\n", 1, true), text)
  assert(text:find("\n  rejected: digital CD-1002 (rejected by qrn2pdb: pin Z does not exist on symbol digital_logic_nor2)\n", 1, true), text)
  assert(text:find("\nsummary: " .. out .. "/wdir/summary.html\n", 1, true), text)
end)

local first_summary = summary()
t.write(out .. "/wdir/config/excluded_parts.caf", t.read(out .. "/wdir/config/excluded_parts.caf") .. "// a note\n")
-- Every file of the working directory but the tools' logs and the summary
-- (which counts the host log's lines) stays as the first run (and the
-- user's edit) left it.
assert(t.sh("cp -R " .. t.quote(out .. "/wdir") .. " " .. t.quote(out .. "/first")))
local function unchanged()
  return t.sh("diff -r -x '*.log' -x 'summary.*' " .. t.quote(out .. "/first") .. " " .. t.quote(out .. "/wdir") .. " >&2")
end

status, text = run("--settings", out .. "/settings.lua")
t.eq(status, 3, "second run: the same rejected items")
t.case("the second run keeps the working directory and gives the same results", function()
  assert(text:find("the working directory " .. out .. "/wdir exists: it is kept", 1, true), text)
  assert(unchanged(), "the working directory changed (the differences are above)")
  t.eq(summary(), first_summary, "summary.json")
end)

status, text = run("--settings", out .. "/settings.lua", "--only", "pdb")
t.case("--only runs one step", function()
  t.eq(status, 3, "status")
  assert(text:find("== 9/9 Parts databases\n", 1, true) and not text:find("== 8/9", 1, true), text)
  assert(unchanged(), "the working directory changed (the differences are above)")
end)
t.finish()
