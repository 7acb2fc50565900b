-- Settings of a migration, for workflow/migrate.lua. Copy this file, edit
-- the copy and pass it:
--
--   build/bin/vlt2hrw-host --log OUT/host.log workflow/migrate.lua --settings my_settings.lua
--
-- The file is Lua and returns one table. Leave out what you do not need:
-- every setting has the default shown here (the choices of the sample
-- library's demo). Relative paths are taken from the directory of this file.
-- LIBRARY_DIR, OUT_DIR, LIBRARY_NAME and LOCATION_MAP given on the command
-- line win over the settings below.
return {
  -- The source library: the directory that holds
  -- vlt_library_definition.library_definition.
  library_dir = "../examples",

  -- Where the results go: OUT_DIR/wdir is the working directory (its path
  -- must hold no blank), OUT_DIR/location_map the sample's generated map.
  -- Pass the host's --log OUT_DIR/host.log to keep the log beside it, where
  -- the summary finds it.
  out_dir = "../build/my_migration",

  -- The library of the definition file to migrate (nil: the first there).
  library = "CORP_LIB",

  -- The location map (nil: LIBRARY_DIR/make_location_map.lua writes one, or
  -- LIBRARY_DIR/location_map is taken).
  location_map = nil,

  -- The catalogs to take, by name (nil: every catalog of the library).
  catalogs = nil, -- e.g. {"analog", "digital"}

  -- Part numbers from the PART_NO property instead of qrn_index.
  part_no = false,

  -- Translate only the symbols that the catalogs refer to (false: every
  -- symbol of the component directories).
  catalog_symbols_only = false,

  -- The library unit of the geometries.
  lib_unit = "MM",

  -- Geometries and cell partitions (false for a library without -qrn_geom).
  cells = true,

  -- Which directories become symbol partitions. The tokens of a symbol's
  -- directory are counted from 0; the components directory's last token is
  -- the default level. `below` moves the partition level that many levels
  -- further down, `count` joins that many levels into the name ("logic" and
  -- "memory" under "digital" give "digital_logic", "digital_memory" with
  -- count = 2). `depth`: the symbol path depth (nil: the depth found).
  -- Absolute levels may be given instead as start = N, stop = M.
  levels = {below = 1, count = 1},

  -- New names of partitions: partition name as found = name in the target.
  partition_renames = {connector = "connectors"},

  -- Targets of catalog properties, as config/catalog_data_mapping.xml maps
  -- them: source property = target property. The run names the properties
  -- still without a target.
  property_targets = {}, -- e.g. {VALUE = "Value"}

  -- Scale factors of the pin spacings, by "<value> <unit>" as
  -- log/reports/symbol_pin_spacing_report.txt lists them; the others get
  -- default_scale_factor (1.0 keeps the sizes), unless the mapping file
  -- already holds a factor.
  scale_factors = {}, -- e.g. {["0.05 INCH"] = "2.0"}
  default_scale_factor = "1.0",

  -- Write the neutral symbols again that an earlier run wrote
  -- (the same as --overwrite-symbols).
  overwrite_symbols = false,

  -- Make the working directory again from the templates, when it exists
  -- (the same as --new-wdir): your edits of its configuration files, such
  -- as config/excluded_parts.caf, are lost.
  new_wdir = false,

  -- Extra options of the parts database generator qrn2pdb, e.g. "-p" to
  -- check physical pins against the geometry pin list.
  qrn2pdb_options = "",

  -- Case of the cell pin names in the parts databases: "none", "lower" or
  -- "upper".
  cell_pin_name_case = "none",
}
