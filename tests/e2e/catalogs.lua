-- The catalog road through the real host and the catalog tool simulator:
-- list, save, translate, verify and update the sample library's catalogs.
local t = require("testlib")

local scratch = t.fresh_dir(t.scratch)
local examples = t.source .. "/examples"
local make_location_map = dofile(examples .. "/make_location_map.lua")
local map = make_location_map(examples, scratch)
local library = "CORP_LIB"

local function contains(text, piece) return text ~= nil and text:find(piece, 1, true) ~= nil end

-- A working directory whose path holds a blank: paths reach ksh in quotes.
local wdir = scratch .. "/work dir"
host.set_wdir(wdir)
host.set_library(examples)
host.set_service("get qlln installation path", scratch .. "/qlln")
t.eq(create_wdir(wdir), true, "create_wdir")
local config, log, catalogs = wdir .. "/config", wdir .. "/log", wdir .. "/neutral/catalogs"

-- The catalog list, edited by the script: a catalog that cannot be read
-- stands between two good ones.
t.case("catalog list", function()
  local rid = get_catalog_list(library, map, examples)
  t.eq(get_1d_list_size(rid), 3, "three catalogs")
  local names = {}
  for i = 0, 2 do names[#names + 1] = get_1d_list_item(rid, i) end
  table.sort(names)
  t.eq(table.concat(names, ","), "analog,connectors,digital", "catalog names")
  remove_1d_list(rid)
  rid = new_1d_list()
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
  local line
  for _, l in ipairs(t.lines()) do
    if l:find("translation DEBUG Process starter: creating process: 'ksh -c \"", 1, true) and l:find("digital_neut", 1, true) then
      line = l
    end
  end
  assert(line, "command line of the digital catalog logged")
  local q = function(p) return '"' .. p .. '"' end
  assert(contains(line, " -i " .. examples .. "/catalogs/digital -o " .. q(catalogs .. "/digital_neut.tlx") ..
                  " -s QRN -d QRN2PDB -m " .. map .. " -z " .. q(catalogs .. "/digital.prop.list") ..
                  " -y " .. q(catalogs .. "/digital.sym_list.caf") .. " -v " .. q(config .. "/catalog_val_prop.xml") ..
                  " -e " .. q(config .. "/excluded_parts.caf") .. " -r " .. q(log .. "/rejected_parts.caf") ..
                  " >> " .. q(log .. "/tbl2flat.log") .. " 2>&1\"'"), line)
  assert(not contains(line, " -w"), "no swap")
  t.expect_logged("translation INFO Saving catalog: " .. examples .. "/catalogs/ghost")
  local failed
  for _, l in ipairs(t.lines()) do
    if l:find("^translation ERROR Tbl2flat program failed for catalog: ghost%. Returned code: [1-9]") then failed = l end
  end
  assert(failed, "the failing catalog is logged:\n" .. table.concat(t.lines(), "\n"))
  t.eq(t.exists(catalogs .. "/digital_neut.tlx"), true, "digital neutral file")
  t.eq(t.exists(catalogs .. "/analog.sym_list.caf"), true, "analog symbol list")
  t.eq(t.exists(catalogs .. "/ghost_neut.tlx"), false, "no ghost neutral file")
  -- The tool's log: an empty line between the catalogs' output.
  t.golden("catalogs/tbl2flat.log", t.read(log .. "/tbl2flat.log"))
end)

-- With the swap on, the command line ends the options with -w.
t.case("swap", function()
  use_part_no_prop(true)
  host.clear_messages()
  t.eq(save_catalogs(library, map, examples), true, "save_catalogs with swap")
  local swapped = false
  for _, l in ipairs(t.lines()) do
    if contains(l, 'rejected_parts.caf" -w >> ') then swapped = true end
  end
  t.eq(swapped, true, "-w on the command line")
  use_part_no_prop(false)
  t.eq(save_catalogs(library, map, examples), true, "save_catalogs again")
end)

-- Verifying: the missing neutral file and the tool's own complaint.
t.case("verifying", function()
  t.eq(verify_catalogs(library, map, examples), true, "verify_catalogs")
  t.golden("catalogs/verify_catalogs.txt", t.read(log .. "/reports/verify_catalogs.txt"))
end)

-- Updating the symbol lists stops at the catalog without neutral data.
t.case("symbol lists", function()
  host.clear_messages()
  t.eq(update_catalog_symbol_lists(library, map, examples), false, "update stops at ghost")
  t.expect_logged("translation WARN Update catalog symbol lists: cannot parse neutral catalog file: " ..
                  catalogs .. "/ghost_neut.tlx")

  -- Without the bad catalog the update runs through, and twice gives the same lists.
  t.write(config .. "/catalog.list", "digital\nanalog\nconnectors\n")
  t.eq(save_catalogs(library, map, examples), true, "save_catalogs of the three")
  t.eq(update_catalog_symbol_lists(library, map, examples), true, "update_catalog_symbol_lists")
  local digital = t.read(catalogs .. "/digital.sym_list.caf")
  t.golden("catalogs/digital.sym_list.caf", digital)
  t.eq(update_catalog_symbol_lists(library, map, examples), true, "second update")
  t.eq(t.read(catalogs .. "/digital.sym_list.caf"), digital, "update is idempotent")
  t.expect_logged("translation WARN Reading neutral catalog file: blank symbol found and will be skipped for part: " ..
                  "CC-6932 , comp: MH")
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
  assert(contains(t.read(config .. "/catalog_data_mapping.xml"), '<property qrn="VALUE" pdb="Value" />'))
end)
t.finish()
