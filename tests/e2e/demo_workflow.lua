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
assert(not text:find(" ERROR ", 1, true), "the demo logged an error:\n" .. text)
assert(not text:find(" FATAL ", 1, true), "the demo logged a fatal error:\n" .. text)
