-- The symbol road up to the partition lists through the real host: the
-- path depth of the whole tree, then partitions in the catalog mode (lists
-- with catalog trees and use postfixes), the path levels as four results,
-- and the symbol property mapping list.
local t = require("testlib")

local map, wdir = t.on_sample("wdir", true)
local examples, library = t.examples, "CORP_LIB"
local config, lists = wdir .. "/config", wdir .. "/neutral/symbol_lists"

t.eq(save_catalog_list(get_catalog_list(library, map, examples)), true, "save_catalog_list of every catalog")
t.eq(save_catalogs(library, map, examples), true, "save_catalogs")
t.eq(save_default_symbol_config(library, map, examples), true, "save_default_symbol_config")
local ok, start, stop, depth = get_symbol_path_levels()
local _, slashes = (examples .. "/components"):gsub("/", "")
t.eq(table.concat({tostring(ok), start, stop, depth}, " "), "true " .. slashes .. " " .. slashes .. " 2",
     "default levels at the components directory, depth 2 as pwr_flag collides at depth 1")
t.eq(find_symbol_path_depth(library, map, examples), 2, "find_symbol_path_depth")
t.eq(find_symbol_max_directory_level(library, map, examples), find_symbol_max_path_depth(library, map, examples),
     "both names of the max depth")

t.eq(set_symbol_path_levels(start + 1, stop + 1, depth), true, "set_symbol_path_levels")
-- From here on the lists are the catalogs' own, with their trees.
t.eq(set_catalog_symbols_only(true), true, "catalog symbols only")
t.eq(create_symbol_partition_list(library, map, examples, false), true, "create_symbol_partition_list")
local rid = get_symbol_partition_list()
local renamed, to = new_2d_list(), {analog = "mixed", digital = "mixed"}
for i = 0, 2 do
  local name = get_2d_list_item(rid, i, 0)
  add_two_col_item_to_2d_list(renamed, name, to[name] or name)
end
t.eq(save_symbol_partition_list(renamed), true, "save_symbol_partition_list")
t.eq(partition_symbol_list(library, map, examples), true, "partition_symbol_list")
t.eq(t.read(config .. "/sym_partitions.caf"), "mixed\nconnector\nmixed\n", "sym_partitions.caf")
t.eq(update_partitioned_symbol_lists(), true, "update_partitioned_symbol_lists")
-- The lists keep the catalog trees and number the uses; the lines come in
-- the directory order of the machine.
local mixed = t.read(lists .. "/mixed.sym_list.caf")
t.golden("symbols/mixed.sym_list.caf", mixed, true)
t.golden("symbols/symbol_partitions.caf", t.read(config .. "/symbol_partitions.caf"), true)
t.eq(update_partitioned_symbol_lists(), true, "rerun")
t.eq(t.read(lists .. "/mixed.sym_list.caf"), mixed, "a rerun gives the same bytes")

-- The property mapping list: a known target shows its display name and goes
-- back (the scaling list is the workflow's, workflow_rerun.lua).
rid = get_symbol_property_list()
t.eq(get_2d_list_item(rid, 1, 0) .. "=" .. get_2d_list_item(rid, 1, 1), "REF=Ref Designator", "display name")
t.eq(save_symbol_property_list(rid), true, "save_symbol_property_list")
assert(t.read(config .. "/symbol_data_mapping.xml"):find('td="REFDES" sk="REF"', 1, true), "target name saved")
