-- The main job: the default workflow migrates the sample library. The files
-- that tell what a migration did (configuration, lists, reports, index,
-- name map) match their golden copies under tests/e2e/golden/demo/
-- (UPDATE_GOLDEN=1 rewrites them); catalogs and directories come in the
-- directory order of the machine, so a file passes whose lines are the
-- golden ones in another order. The bulk outputs (neutral files, target
-- symbols) are checked by their places and a sample.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local status = t.run_host({"--log", out .. "/host.log"}, t.source .. "/workflow/migrate.lua", t.source .. "/examples", out)
-- Every step ran; the sample's planted items are rejected: status 3.
t.eq(status, 3, "workflow ran to its end with rejected items")

local golden = {
  "wdir/config/catalog.list", "wdir/config/catalog_data_mapping.xml", "wdir/config/symbol_data.xml",
  "wdir/config/symbol_data_mapping.xml", "wdir/config/sym_partitions.caf", "wdir/config/symbol_partitions.caf",
  "wdir/neutral/catalogs/digital_neut.tlx", "wdir/neutral/catalogs/analog.sym_list.caf",
  "wdir/neutral/symbol_lists/digital.sym_list.caf", "wdir/neutral/symbols_2/digital_logic/nand2.neut",
  "wdir/log/reports/verify_catalogs.txt", "wdir/log/reports/symbol_path_depth_report.txt",
  "wdir/log/reports/verify_symbols.txt", "wdir/log/reports/symbol_pin_spacing_report.txt",
  "wdir/log/reports/verify_pdb.txt", "wdir/log/rejected_symbols.caf", "wdir/log/rejected_parts.caf",
  "wdir/Library/Library.zpc", "wdir/Library/TranslationData/symname_map.txt",
  "wdir/Library/SymbolLibs/digital/digital_logic_nand2.sym",
}
-- Path levels count from the root of the file system: the golden copies
-- hold them relative to the sample's components directory, so that they do
-- not depend on where the checkout lies.
local _, base = (t.source .. "/examples/components"):gsub("/", "")
local function relative_levels(text)
  text = text:gsub('start="(%d+)" stop="(%d+)"', function(a, b)
    return string.format('start="+%d" stop="+%d"', a - base, b - base)
  end)
  return (text:gsub("Maximal path depth: (%d+)", function(d) return "Maximal path depth: +" .. (d - base) end))
end
if t.updating then t.sh("rm -rf " .. t.quote(t.golden_dir .. "/demo")) end
for _, file in ipairs(golden) do
  t.case(file, function()
    t.golden("demo/" .. file, relative_levels(assert(t.read(out .. "/" .. file), "missing")), true)
  end)
end

local log = t.read(out .. "/host.log")
t.case("only the damaged symbol's error in the log", function()
  -- The one error the sample asks for: its damaged symbol, rejected by the symbol tool.
  local rejected = "Writing neutral symbol data: sksym2td found problem(s) during obtaining data from symbol: " ..
                   t.source .. "/examples/components/digital/logic/mux4"
  local errors = 0
  for line in log:gmatch("[^\n]+") do
    if line:find(" ERROR ", 1, true) and line ~= "host ERROR the script ends with the status 3" then
      assert(line:sub(-#rejected) == rejected, "the demo logged an error:\n" .. line)
      errors = errors + 1
    end
  end
  t.eq(errors, 2, "the damaged symbol's error on both sinks")
  assert(not log:find(" FATAL ", 1, true), "the demo logged a fatal error")
end)
t.case("every readable symbol converted and entered", function()
  local index = t.read(out .. "/wdir/Library/Library.zpc")
  for _, symbol in ipairs({"digital digital_logic_nand2", "analog analog_opamp_opamp", "connectors header_dual_row_hdr_2x5"}) do
    local partition, name = symbol:match("(%S+) (%S+)")
    assert(t.exists(out .. "/wdir/Library/SymbolLibs/" .. partition .. "/" .. name .. ".sym"), "not converted: " .. name)
    assert(index:find("\n*SYMBOL " .. symbol .. "\n", 1, true), "not in the index: " .. symbol)
  end
  local entered = 0
  for _ in index:gmatch("\n%*SYMBOL ") do entered = entered + 1 end
  t.eq(entered, 37, "symbols in the index")
end)
t.case("the planted rejected items and the summary's counts", function()
  t.eq(t.read(out .. "/wdir/log/rejected_symbols.caf"), ".SK_SYMBOL_PATH " .. t.source ..
       "/examples/components/digital/logic/mux4\n", "rejected symbols")
  assert(t.read(out .. "/wdir/log/rejected_parts.caf"):find("\ndigital CD-1002\n", 1, true), "CD-1002 not rejected")
  for _, catalog in ipairs({"analog", "connectors", "digital"}) do
    assert(t.exists(out .. "/wdir/Library/PartsDBLibs/" .. catalog .. "/" .. catalog .. ".pdb"), "no database " .. catalog)
  end
  t.eq(t.read(out .. "/wdir/summary.json"):match('"counts":(%b{})'),
       '{"catalogs listed":3,"catalogs saved":3,"parts translated":19,"parts rejected":1,"parts excluded":0,' ..
       '"symbols found":38,"neutral symbols written":37,"symbols converted":37,"symbols rejected":1,' ..
       '"symbols excluded":0,"symbol partitions":3,"parts database partitions":3,"cell partitions":8,' ..
       '"parts databases imported":3,"report findings":3,"warnings in the host log":8,"errors in the host log":2}',
       "summary counts")
end)
t.case("every symbol of the partition lists but the rejected one converted into its partition", function()
  for _, partition in ipairs({"analog", "connectors", "digital"}) do
    local list = t.read(out .. "/wdir/neutral/symbol_lists/" .. partition .. ".sym_list.caf")
    for path in list:gmatch("%.SK_SYMBOL_PATH ([^\n]+)") do
      local tail = path:match("([^/]+/[^/]+/[^/]+)$"):gsub("/", "_")
      if not path:find("/mux4$") then
        assert(t.exists(out .. "/wdir/Library/SymbolLibs/" .. partition .. "/" .. tail .. ".sym"), "not converted: " .. path)
      end
    end
  end
end)
t.finish()
