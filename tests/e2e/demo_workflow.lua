-- The main job: the default workflow migrates the sample library, and every
-- step it runs reports success.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local log = out .. "/host.log"
local status = t.run_host({"--log", log}, t.source .. "/workflow/migrate.lua", t.source .. "/examples", out)
t.eq(status, 0, "workflow ran to its end")

for _, file in ipairs({"wdir/config/catalog.list", "wdir/config/catalog_data_mapping.xml",
                       "wdir/neutral/catalogs/digital_neut.tlx", "wdir/neutral/catalogs/analog.sym_list.caf",
                       "wdir/log/reports/verify_catalogs.txt", "wdir/Library/Library.zpc",
                       "wdir/config/geom_technology/technology_list.xml",
                       "wdir/Library/TranslationData/symname_map.txt"}) do
  assert(t.exists(out .. "/" .. file), "missing after the demo: " .. file)
end
local text = t.read(log)
-- The one error the sample asks for: its damaged symbol, rejected by the symbol tool.
local rejected = "Writing neutral symbol data: sksym2td found problem(s) during obtaining data from symbol: " ..
                 t.source .. "/examples/components/digital/logic/mux4"
local errors = 0
for line in text:gmatch("[^\n]+") do
  if line:find(" ERROR ", 1, true) then
    assert(line:sub(-#rejected) == rejected, "the demo logged an error:\n" .. line)
    errors = errors + 1
  end
end
t.eq(errors, 2, "the damaged symbol's error on both sinks")
assert(t.read(out .. "/wdir/log/rejected_symbols.caf"):find("/digital/logic/mux4\n", 1, true), "mux4 rejected")
for _, file in ipairs({"wdir/neutral/symbols_2/digital_logic/nand2.neut", "wdir/log/reports/verify_symbols.txt",
                       "wdir/log/reports/symbol_pin_spacing_report.txt", "wdir/config/symbol_data_mapping.xml"}) do
  assert(t.exists(out .. "/" .. file), "missing after the demo: " .. file)
end
-- Every readable sample symbol converted into its partition and entered in the index.
local index = t.read(out .. "/wdir/Library/Library.zpc")
for _, symbol in ipairs({"digital digital_logic_nand2", "analog analog_opamp_opamp", "connectors header_dual_row_hdr_2x5"}) do
  local partition, name = symbol:match("(%S+) (%S+)")
  assert(t.exists(out .. "/wdir/Library/SymbolLibs/" .. partition .. "/" .. name .. ".sym"), "not converted: " .. name)
  assert(index:find("\n*SYMBOL " .. symbol .. "\n", 1, true), "not in the index: " .. symbol)
end
local entered = 0
for _ in index:gmatch("\n%*SYMBOL ") do entered = entered + 1 end
t.eq(entered, 37, "symbols in the index")
assert(not text:find(" FATAL ", 1, true), "the demo logged a fatal error:\n" .. text)
