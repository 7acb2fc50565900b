-- The default workflow: migrates a VLT library into a Central Library.
-- Usage: vlt2hrw-host workflow/migrate.lua LIBRARY_DIR OUT_DIR [LIBRARY_NAME [LOCATION_MAP]]
-- LIBRARY_DIR holds vlt_library_definition.library_definition; OUT_DIR
-- receives the working directory. Without LOCATION_MAP the map is written
-- by LIBRARY_DIR/make_location_map.lua, as the sample library ships it.
local usage = "usage: migrate.lua LIBRARY_DIR OUT_DIR [LIBRARY_NAME [LOCATION_MAP]]"
local examples = assert(arg[1], usage)
local out = assert(arg[2], usage)
local library = arg[3] or "CORP_LIB"
local given_location_map = arg[4]

local function step(title) print("== " .. title) end
local failed = {}
-- Prints a result; a step that answers false is remembered for the end.
local function show(what, value)
  print(string.format("  %-38s %s", what, tostring(value)))
  if value == false then failed[#failed + 1] = what end
end

-- Prints the items of a 1D list and frees it.
local function print_list(title, rid)
  if rid == "" then show(title, "(none)") return end
  show(title, get_1d_list_size(rid) .. " item(s)")
  for i = 0, get_1d_list_size(rid) - 1 do print("    " .. get_1d_list_item(rid, i)) end
  remove_1d_list(rid)
end

local wdir = out .. "/wdir"
host.set_wdir(wdir)
host.set_library(examples)
-- The suites' installation: the build keeps one beside the host, in
-- <host dir>/qlln, holding the library update tool under KVE_HOME; the tool
-- environments are composed from it.
local function host_directory()
  local pipe = io.popen('readlink -f "/proc/$PPID/exe" 2>/dev/null')
  local exe = pipe and pipe:read("*l")
  if pipe then pipe:close() end
  return exe and exe:match("^(.*)/[^/]*$")
end
host.set_service("get qlln installation path", (host_directory() or out) .. "/qlln")

step("Working directory")
show("working directory created", create_wdir(wdir))

step("Source library")
local location_map = given_location_map
if not location_map then
  local make_location_map = dofile(examples .. "/make_location_map.lua")
  location_map = make_location_map(examples, out)
end
show("location map", location_map)
show("location map checked", check_qrn_location_map(location_map))
show("library definition checked", check_vlt_library_definition_file(examples))
print_list("libraries", get_vlt_library_list(examples))
show("library " .. library .. " checked", check_vlt_library(library, location_map, examples))

step("Geometries")
set_lib_unit("MM")
show("library unit", get_lib_unit())
local geom_ok = obtain_vlt_geom_path(library, location_map, examples)
show("geometry root", geom_ok and host.get_param("geom path") or "(none)")
show("default geometry containers", geom_ok and create_default_container(library, location_map, examples))

step("Catalogs")
local catalogs = get_catalog_list(library, location_map, examples)
show("catalogs found", get_1d_list_size(catalogs))
show("catalog list saved", save_catalog_list(catalogs))
remove_1d_list(catalogs)
use_part_no_prop(false)
show("catalogs saved to neutral format", save_catalogs(library, location_map, examples))
show("catalogs verified", verify_catalogs(library, location_map, examples))
show("report", wdir .. "/log/reports/verify_catalogs.txt")
show("catalog symbol lists updated", update_catalog_symbol_lists(library, location_map, examples))
show("catalog property mapping updated", update_catalog_prop_mapping(""))
local properties = get_catalog_property_list()
local unmapped = {}
for i = 0, get_2d_list_size(properties) - 1 do
  if get_2d_list_item(properties, i, 1) == "" then unmapped[#unmapped + 1] = get_2d_list_item(properties, i, 0) end
end
remove_2d_list(properties)
show("catalog properties without a target", #unmapped > 0 and table.concat(unmapped, ", ") or "none")

step("Symbol partitions")
do
  local lib = {library, location_map, examples}
  show("default symbol configuration", save_default_symbol_config(unpack(lib)))
  show("symbol path depth", find_symbol_path_depth(unpack(lib)))
  show("deepest symbol directory level", find_symbol_max_path_depth(unpack(lib)))
  show("path depth report", report_symbol_duplicates_from_path_depth(unpack(lib)))
  show("report", wdir .. "/log/reports/symbol_path_depth_report.txt")
  -- The default levels name the components directory; one level further
  -- down gives one partition per directory below it (digital, analog, ...).
  local ok, start, stop, depth = get_symbol_path_levels()
  show("default levels (start stop depth)", ok and (start .. " " .. stop .. " " .. depth))
  show("levels set", ok and set_symbol_path_levels(start + 1, stop + 1, depth))
  show("partition names", create_symbol_partition_list(library, location_map, examples, false))
  local partitions = get_symbol_partition_list()
  local renamed = new_2d_list()
  for i = 0, get_2d_list_size(partitions) - 1 do
    local name = get_2d_list_item(partitions, i, 0)
    add_two_col_item_to_2d_list(renamed, name, name == "connector" and "connectors" or name)
  end
  remove_2d_list(partitions)
  show("partition connector renamed", save_symbol_partition_list(renamed))
  remove_2d_list(renamed)
  show("symbols partitioned", partition_symbol_list(unpack(lib)))
  show("use postfixes", update_partitioned_symbol_lists())
  local names = io.open(wdir .. "/config/sym_partitions.caf", "rb")
  for partition in (names and names:lines() or function() end) do
    local count = 0
    local list = io.open(wdir .. "/neutral/symbol_lists/" .. partition .. ".sym_list.caf", "rb")
    for line in (list and list:lines() or function() end) do
      if line:find("^%.SK_SYMBOL_PATH ") then count = count + 1 end
    end
    if list then list:close() end
    print(string.format("    %-20s %d symbol(s)", partition, count))
  end
  if names then names:close() end
end

step("Target Central Library")
show("target library prepared", prepare_target_cl())
show("symbol partitions added", add_symbol_partitions())
show("PDB partitions added", add_pdb_partitions())
show("cell partitions added", add_cell_partitions(""))

step("Neutral symbols")
do
  show("neutral symbol data written", write_neutral_symbol_data(location_map, true))
  local rejected = io.open(wdir .. "/log/rejected_symbols.caf", "rb")
  local names = {}
  for line in (rejected and rejected:lines() or function() end) do
    local path = line:match("^%.SK_SYMBOL_PATH (.*)$")
    if path then names[#names + 1] = path end
  end
  if rejected then rejected:close() end
  show("symbols rejected by the symbol tool", #names)
  for _, path in ipairs(names) do print("    " .. path) end
  show("symbols verified", verify_symbols(""))
  show("report", wdir .. "/log/reports/verify_symbols.txt")
  show("pin spacing report", report_symbol_pin_spacing_map())
  show("report", wdir .. "/log/reports/symbol_pin_spacing_report.txt")
  show("default symbol data mapping", create_default_symbol_data_mapping())
  -- The user's part: a scale factor for every pin spacing (1.0 keeps sizes).
  local scaling = get_symbol_scaling_list()
  local filled = new_2d_list()
  for i = 0, (scaling ~= "" and get_2d_list_size(scaling) or 0) - 1 do
    local factor = get_2d_list_item(scaling, i, 2)
    add_row_to_2d_list(filled)
    for _, value in ipairs({get_2d_list_item(scaling, i, 0), get_2d_list_item(scaling, i, 1),
                            factor ~= "" and factor or "1.0"}) do
      add_row_item_to_2d_list(filled, value)
    end
  end
  if scaling ~= "" then remove_2d_list(scaling) end
  show("scale factors filled in", save_symbol_scaling_list(filled))
  remove_2d_list(filled)
end

step("Converting symbols")
do
  show("symbols converted", convert_symbols(location_map))
  local map_file = wdir .. "/Library/TranslationData/symname_map.txt"
  local map = io.open(map_file, "rb")
  local count = 0
  for _ in (map and map:lines() or function() end) do count = count + 1 end
  if map then map:close() end
  show("symbol name map entries", count)
  -- Source symbols that fold to one target name overwrite each other.
  local collisions = dofile((arg[0]:match("^(.*)/") or ".") .. "/symbol_name_collisions.lua")
  local found = collisions(map_file) or {}
  show("target names claimed twice", #found)
  for _, c in ipairs(found) do print("    " .. c.partition .. "/" .. c.target .. ": " .. table.concat(c.sources, ", ")) end
end

step("Parts databases")
show("property translation file", generate_qrn_caf(location_map))
-- The generator needs the symbol partitions and the neutral symbols of the
-- symbol steps; without them the parts databases wait.
local function readable(path)
  local f = io.open(path, "rb")
  if f then f:close() end
  return f ~= nil
end
local symbol_data = io.open(wdir .. "/config/symbol_data.xml", "rb")
local depth = symbol_data and symbol_data:read("*a"):match("depth=[\"'](%d+)[\"']")
if symbol_data then symbol_data:close() end
if depth and readable(wdir .. "/config/symbol_partitions.caf") and readable(wdir .. "/neutral/symbols_" .. depth) then
  show("parts database texts generated", run_qrn_to_pdb(""))
  show("parts databases imported", import_pdb_to_zpc())
  show("parts databases verified", verify_qrn2pdb())
  show("report", wdir .. "/log/reports/verify_pdb.txt")
else
  show("parts databases", "(no symbol partitions or neutral symbols yet)")
end

if #failed > 0 then
  error("steps that failed: " .. table.concat(failed, ", ") .. "; see the host log", 0)
end
print("done")
