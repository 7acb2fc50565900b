-- The parts database steps on the sample library: after the demo's steps,
-- with symbol partitions and neutral symbols laid out as the symbol steps
-- leave them, every catalog gets a parts database in wdir/Library and the
-- report holds the one planted finding.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local examples = t.source .. "/examples"
t.eq(t.run_host({"--log", out .. "/demo.log"}, t.source .. "/workflow/migrate.lua", examples, out), 0, "demo ran")
local wdir = out .. "/wdir"

-- depth 1: the symbol key is "<directory>_<name>", the partition the directory above.
t.write(wdir .. "/config/symbol_data.xml",
        "<rig><symbol_data><common start='2' stop='2' depth='1'/><default/><partition_data/></symbol_data></rig>")
local components = examples .. "/components/"
local symbols = wdir .. "/neutral/symbols_1/"
local files, dirs, keys = {}, {}, {}
local listing = io.popen("find " .. t.quote(components) .. " -name '*.smbl_*' | sort")
for file in listing:lines() do
  local parent, dir, name = file:match("([^/]+)/([^/]+)/([^/]+)%.smbl_%d+$")
  files[#files + 1] = {file = file, out = symbols .. dir .. "/" .. name .. ".neut"}  -- the last version counts
  dirs[#dirs + 1] = t.quote(symbols .. dir)
  keys[dir .. "_" .. name] = parent
end
listing:close()
assert(t.sh("mkdir -p " .. table.concat(dirs, " ")))
for _, f in ipairs(files) do
  local pins = {}
  for line in io.lines(f.file) do
    local pin = line:match("^PIN (%S+)")
    if pin then pins[#pins + 1] = "PIN_NAME " .. pin .. "\n" end
  end
  t.write(f.out, table.concat(pins))
end
local table_lines = {}
for key, partition in pairs(keys) do table_lines[#table_lines + 1] = key .. " " .. partition .. "\n" end
table.sort(table_lines)
t.write(wdir .. "/config/symbol_partitions.caf", table.concat(table_lines))

os.remove(wdir .. "/log/rejected_parts.caf")  -- the demo may have run these steps already
host.set_wdir(wdir)
host.set_library(examples)
t.eq(run_qrn_to_pdb(""), true, "run_qrn_to_pdb")
t.eq(import_pdb_to_zpc(), true, "import_pdb_to_zpc")
t.eq(verify_qrn2pdb(), true, "verify_qrn2pdb")

local rule = string.rep("-", 79) .. "\n"
t.eq(t.read(wdir .. "/log/reports/verify_pdb.txt"),
     rule .. " Problems related due to absence of files produced by qrn2pdb\n" .. rule .. "\n" ..
     rule .. " Problems found by qrn2pdb\n" .. rule ..
     "--- Catalog: digital\n" ..
     "Error: catalog digital, part CD-1002: pin Z does not exist on symbol logic_nor2, the part is rejected\n" ..
     "--- Catalog: analog\n--- Catalog: connectors\n", "verify_pdb.txt")
for _, pdb in ipairs({"digital", "analog", "connectors"}) do
  assert(t.exists(wdir .. "/Library/PartsDBLibs/" .. pdb .. "/" .. pdb .. ".pdb"), "no parts database " .. pdb)
  assert(t.read(wdir .. "/Library/Library.zpc"):find("*PARTITION pdb " .. pdb .. "\n", 1, true), "not in the index")
end
t.eq(t.read(wdir .. "/log/rejected_parts.caf"),
     "// rejected by qrn2pdb: pin Z does not exist on symbol logic_nor2\ndigital CD-1002\n", "rejected parts")

for _, line in ipairs(t.lines()) do
  assert(not line:find(" ERROR ", 1, true), "an error was logged: " .. line)
end
