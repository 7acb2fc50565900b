-- The parts database road of the demo on the sample library: every catalog
-- gets a parts database in wdir/Library, and the report holds the one
-- planted finding.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local examples = t.source .. "/examples"
-- Status 3: the sample plants rejected items.
t.eq(t.run_host({"--log", out .. "/demo.log"}, t.source .. "/workflow/migrate.lua", examples, out), 3, "demo ran")
local wdir = out .. "/wdir"

local rule = string.rep("-", 79) .. "\n"
t.eq(t.read(wdir .. "/log/reports/verify_pdb.txt"),
     rule .. " Problems related due to absence of files produced by qrn2pdb\n" .. rule .. "\n" ..
     rule .. " Problems found by qrn2pdb\n" .. rule ..
     "--- Catalog: digital\n" ..
     "Error: catalog digital, part CD-1002: pin Z does not exist on symbol digital_logic_nor2, the part is rejected\n" ..
     "--- Catalog: analog\n--- Catalog: connectors\n", "verify_pdb.txt")
local index = t.read(wdir .. "/Library/Library.zpc")
for _, pdb in ipairs({"digital", "analog", "connectors"}) do
  assert(t.exists(wdir .. "/Library/PartsDBLibs/" .. pdb .. "/" .. pdb .. ".pdb"), "no parts database " .. pdb)
  assert(index:find("*PARTITION pdb " .. pdb .. "\n", 1, true), "not in the index: " .. pdb)
end
t.eq(t.read(wdir .. "/log/rejected_parts.caf"),
     "// rejected by qrn2pdb: pin Z does not exist on symbol digital_logic_nor2\ndigital CD-1002\n", "rejected parts")
assert(t.read(wdir .. "/Library/PartsDBLibs/digital/digital.pdb"):find("\n*END 6\n", 1, true), "six digital parts")
t.eq(#t.read(wdir .. "/log/tlx2partsdb.log"):gsub("[^\n]", ""), 3, "one import line per catalog")
