-- The symbol road up to the partition lists through the real host: the
-- path depth of the whole tree, then partitions in the catalog mode (lists
-- with catalog trees and use postfixes), the path levels as four results,
-- and the symbol mapping lists.
local t = require("testlib")

local scratch = t.fresh_dir(t.scratch)
local examples = t.source .. "/examples"
local map = dofile(examples .. "/make_location_map.lua")(examples, scratch)
local library = "CORP_LIB"
local wdir = scratch .. "/wdir"
host.set_wdir(wdir)
host.set_library(examples)
host.set_service("get qlln installation path", scratch .. "/qlln")
t.eq(create_wdir(wdir), true, "create_wdir")
local config, lists = wdir .. "/config", wdir .. "/neutral/symbol_lists"

local rid = get_catalog_list(library, map, examples)
t.eq(save_catalog_list(rid), true, "save_catalog_list")
remove_1d_list(rid)
t.eq(save_catalogs(library, map, examples), true, "save_catalogs")
t.eq(save_default_symbol_config(library, map, examples), true, "save_default_symbol_config")
local ok, start, stop, depth = get_symbol_path_levels()
t.eq(ok, true, "get_symbol_path_levels")
local comps = examples .. "/components"
local _, slashes = comps:gsub("/", "")
t.eq(start .. " " .. stop, slashes .. " " .. slashes, "default levels at the components directory")
t.eq(depth, 2, "pwr_flag collides at depth 1")
t.eq(find_symbol_path_depth(library, map, examples), 2, "find_symbol_path_depth")
t.eq(find_symbol_max_directory_level(library, map, examples), find_symbol_max_path_depth(library, map, examples),
     "both names of the max depth")
t.eq(set_symbol_path_levels(-1, 0, 0), false, "negative level")
t.expect_logged("component ERROR Setting symbol path levels: all levels should be positive numbers.")

t.eq(set_symbol_path_levels(start + 1, stop + 1, depth), true, "set_symbol_path_levels")
-- From here on the lists are the catalogs' own, with their trees.
t.eq(set_catalog_symbols_only(true), true, "catalog symbols only")
t.eq(create_symbol_partition_list(library, map, examples, false), true, "create_symbol_partition_list")
rid = get_symbol_partition_list()
t.eq(get_2d_list_size(rid), 3, "three partitions")
local renamed = new_2d_list()
for i = 0, 2 do
  local name = get_2d_list_item(rid, i, 0)
  add_two_col_item_to_2d_list(renamed, name, name == "analog" and "mixed" or name == "digital" and "mixed" or name)
end
t.eq(save_symbol_partition_list(renamed), true, "save_symbol_partition_list")
t.eq(partition_symbol_list(library, map, examples), true, "partition_symbol_list")
t.eq(t.read(config .. "/sym_partitions.caf"), "mixed\nconnector\nmixed\n", "sym_partitions.caf")
t.eq(update_partitioned_symbol_lists(), true, "update_partitioned_symbol_lists")
local mixed = t.read(lists .. "/mixed.sym_list.caf")
assert(mixed:find("/analog/passive/res\n", 1, true) and mixed:find("/digital/logic/inv\n", 1, true), mixed)
assert(mixed:find("..CATALOG digital\n", 1, true), "catalog trees kept")
assert(mixed:find("......NAME_POSTFIX _1\n", 1, true), "uses numbered")
t.eq(update_partitioned_symbol_lists(), true, "rerun")
t.eq(t.read(lists .. "/mixed.sym_list.caf"), mixed, "a rerun gives the same bytes")
local keys = t.read(config .. "/symbol_partitions.caf")
assert(keys:find("\ndigital_logic_inv mixed\n", 1, true) and keys:find("\nconnector_misc_testpoint connector\n", 1, true),
       keys)

-- The mapping lists: a known target shows its display name and goes back.
rid = get_symbol_property_list()
t.eq(get_2d_list_item(rid, 1, 0) .. "=" .. get_2d_list_item(rid, 1, 1), "REF=Ref Designator", "display name")
t.eq(save_symbol_property_list(rid), true, "save_symbol_property_list")
assert(t.read(config .. "/symbol_data_mapping.xml"):find('td="REFDES" sk="REF"', 1, true), "target name saved")
rid = get_symbol_scaling_list()
t.eq(get_2d_list_size(rid), 2, "scaling rows")
t.eq(get_2d_list_item(rid, 0, 0) .. " " .. get_2d_list_item(rid, 0, 1), "0.1 INCH", "scaling key order")
