-- The catalog road through the real host and the catalog tool simulator:
-- list, save, translate, verify and update the sample library's catalogs.
local t = require("testlib")

-- A working directory whose path holds a blank: paths reach ksh in quotes.
local map, wdir = t.on_sample("work dir", true)
local examples, library = t.examples, "CORP_LIB"
local config, log, catalogs = wdir .. "/config", wdir .. "/log", wdir .. "/neutral/catalogs"

-- The line that starts the catalog tool on a catalog.
local function tbl2flat(catalog, swap)
  local function q(p) return '"' .. p .. '"' end
  local neutral = catalogs .. "/" .. catalog
  return "translation DEBUG Process starter: creating process: 'ksh -c \"" .. t.bin .. "/tools/tbl2flat.exe -i " ..
         examples .. "/catalogs/" .. catalog .. " -o " .. q(neutral .. "_neut.tlx") .. " -s QRN -d QRN2PDB -m " .. map ..
         " -z " .. q(neutral .. ".prop.list") .. " -y " .. q(neutral .. ".sym_list.caf") .. " -v " ..
         q(config .. "/catalog_val_prop.xml") .. " -e " .. q(config .. "/excluded_parts.caf") .. " -r " ..
         q(log .. "/rejected_parts.caf") .. (swap and " -w" or "") .. " >> " .. q(log .. "/tbl2flat.log") .. " 2>&1\"'"
end

-- The catalog list, edited by the script: a catalog that cannot be read
-- stands between two good ones.
t.case("catalog list", function()
  t.eq(t.items(get_catalog_list(library, map, examples), true), "analog,connectors,digital", "catalog names")
  local rid = new_1d_list()
  for _, name in ipairs({"digital", "ghost", "analog"}) do add_item_to_1d_list(rid, name) end
  t.eq(save_catalog_list(rid), true, "save_catalog_list")
  remove_1d_list(rid)
  t.eq(t.read(config .. "/catalog.list"), "digital\nghost\nanalog\n", "catalog.list")
end)

-- Saving: a run per catalog, the failing one logged, the step still true.
t.case("saving catalogs", function()
  use_part_no_prop(false)
  host.clear_messages()
  t.eq(save_catalogs(library, map, examples), true, "save_catalogs")
  t.expect_logged(tbl2flat("digital"))
  t.expect_logged("translation INFO Saving catalog: " .. examples .. "/catalogs/ghost")
  t.expect_logged("translation ERROR Tbl2flat program failed for catalog: ghost. Returned code: 2")
  -- The tool's log: an empty line between the catalogs' output.
  t.golden("catalogs/tbl2flat.log", t.read(log .. "/tbl2flat.log"))
end)

t.case("with the swap on, the command line ends the options with -w", function()
  use_part_no_prop(true)
  t.eq(save_catalogs(library, map, examples), true, "save_catalogs with swap")
  t.expect_logged(tbl2flat("digital", true))
  use_part_no_prop(false)
  t.eq(save_catalogs(library, map, examples), true, "save_catalogs again")
end)

-- Verifying: the missing neutral file (ghost's alone) and the tool's own complaint.
t.case("verifying", function()
  t.eq(verify_catalogs(library, map, examples), true, "verify_catalogs")
  t.golden("catalogs/verify_catalogs.txt", t.read(log .. "/reports/verify_catalogs.txt"))
end)

-- Updating the symbol lists stops at the catalog without neutral data (its
-- warning, and the one of the sample's blank symbol, are the unit tests').
t.case("symbol lists", function()
  t.eq(update_catalog_symbol_lists(library, map, examples), false, "update stops at ghost")
  -- Without the bad catalog the update runs through, and twice gives the same lists.
  t.write(config .. "/catalog.list", "digital\nanalog\nconnectors\n")
  t.eq(save_catalogs(library, map, examples), true, "save_catalogs of the three")
  t.eq(update_catalog_symbol_lists(library, map, examples), true, "update_catalog_symbol_lists")
  local digital = t.read(catalogs .. "/digital.sym_list.caf")
  t.golden("catalogs/digital.sym_list.caf", digital)
  t.eq(update_catalog_symbol_lists(library, map, examples), true, "second update")
  t.eq(t.read(catalogs .. "/digital.sym_list.caf"), digital, "update is idempotent")
end)

-- The property mapping collects the catalogs' property names beside the seeds.
t.case("property mapping", function()
  t.eq(update_catalog_prop_mapping(""), true, "update_catalog_prop_mapping")
  t.golden("catalogs/catalog_data_mapping.xml", t.read(config .. "/catalog_data_mapping.xml"))
  local props = get_catalog_property_list()
  assert(get_2d_list_size(props) > 10, "catalog properties listed")
  add_two_col_item_to_2d_list(props, "VALUE", "Value")
  t.eq(save_catalog_property_list(props), true, "save_catalog_property_list")
  remove_2d_list(props)
  t.eq(update_catalog_prop_mapping(""), true, "update keeps the user's target")
  assert(t.read(config .. "/catalog_data_mapping.xml"):find('<property qrn="VALUE" pdb="Value" />', 1, true))
end)
t.finish()
