-- The source library checks and get_vlt_library_list through the real host:
-- on the sample library, and on broken copies of it.
local t = require("testlib")

local examples = t.source .. "/examples"
local scratch = t.fresh_dir(t.scratch)
local make_location_map = dofile(examples .. "/make_location_map.lua")
local definition_name = "/vlt_library_definition.library_definition"

-- The texts logged on one sink at one level since the last clear.
local function texts(sink, level)
  local head, out = sink .. " " .. level .. " ", {}
  for _, line in ipairs(t.lines()) do
    if line:sub(1, #head) == head then out[#out + 1] = line:sub(#head + 1) end
  end
  return out
end

local function same(actual, expected, what)
  t.eq(table.concat(actual, "\n"), table.concat(expected, "\n"), what)
end

-- Both sinks carry the same messages in a check.
local function both(level, expected, what)
  same(texts("translation", level), expected, what .. " (translation)")
  same(texts("component", level), expected, what .. " (component)")
end

local sample_definition = t.read(examples .. definition_name)
host.set_wdir(t.fresh_dir(scratch .. "/wdir"))
host.set_library(examples)
local map = make_location_map(examples, scratch)
t.eq(t.read(map), "QRN_LOCATION_MAP_1 force\n" ..
  "# Location map of the sample library. The token in the path lines below\n" ..
  "# stands for the directory of the sample library; make_location_map.lua\n" ..
  "# writes the real map from this template.\n" ..
  "$CORP_LIB\n" .. examples .. "\n$CORP_CELLS\n" .. examples .. "/geoms\n", "location map of the sample")

---------------------------------------------------------------- the sample
host.clear_messages()
t.eq(check_qrn_location_map(map), true, "location map check")
both("WARN", {}, "location map warnings")
both("INFO", {
  "Reading location map file: " .. map,
  "Location map file paths:",
  "    Soft prefix: $CORP_LIB",
  "        Hard pathname: " .. examples,
  "    Soft prefix: $CORP_CELLS",
  "        Hard pathname: " .. examples .. "/geoms"}, "location map listing")

host.clear_messages()
t.eq(check_vlt_library_definition_file(examples), true, "definition file check")
both("WARN", {}, "definition file warnings")
both("INFO", {"Reading VLT library definition file: " .. examples .. definition_name}, "definition file info")
same(texts("translation", "DEBUG"), {
  "Dumping parsed content of library definition file: " .. examples .. definition_name,
  "**Library name: 'CORP_LIB' library type: released",
  "    Index label: 'DIGITAL' path to data: $CORP_LIB/components/digital", "      : qrn_component",
  "    Index label: 'ANALOG' path to data: $CORP_LIB/components/analog", "      : qrn_component",
  "    Index label: 'CONNECTOR' path to data: $CORP_LIB/components/connector", "      : qrn_component",
  "    Index label: 'CELLS' path to data: $CORP_CELLS", "      : qrn_geom",
  "    Index label: 'CATALOGS' path to data: $CORP_LIB/catalogs", "      : qrn_catalog",
  "    Index label: 'MAPPING' path to data: $CORP_LIB/mapping", "      : qrn_mapping", "      : read_only",
  "",
  "**Library name: 'CORP_DEV' library type: development",
  "    Index label: 'ANALOG' path to data: $CORP_LIB/components/analog", "      : qrn_component",
  "    Index label: 'CELLS' path to data: $CORP_CELLS/smd", "      : qrn_geom",
  "    Index label: 'CATALOGS' path to data: $CORP_LIB/catalogs", "      : qrn_catalog",
  ""}, "definition file dump")

host.clear_messages()
t.eq(check_vlt_library("CORP_LIB", map, examples), true, "library check")
both("WARN", {}, "library warnings")
both("INFO", {"Evaluating VLT library: CORP_LIB defined in: " .. examples .. definition_name}, "library info")
same(texts("component", "DEBUG"), {
  "Dumping evaluated content of library definition file: " .. examples .. definition_name,
  "  Component hard path list:",
  "    $CORP_LIB/components/analog",
  "    $CORP_LIB/components/connector",
  "    $CORP_LIB/components/digital",
  "  Geom hard path list:",
  "    $CORP_CELLS",
  "  Catalog hard path list:",
  "    $CORP_LIB/catalogs",
  "  Component common path: " .. examples .. "/components",
  "  Geom common path: " .. examples .. "/geoms",
  "  Catalog common path: " .. examples .. "/catalogs"}, "library dump")

host.clear_messages()
t.eq(check_vlt_library("CORP_DEV", map, examples), true, "development library check")
both("WARN", {}, "development library warnings")
t.expect_logged("translation DEBUG   Component common path: " .. examples .. "/components/analog")
t.expect_logged("translation DEBUG   Geom common path: " .. examples .. "/geoms/smd")

host.clear_messages()
local rid = get_vlt_library_list(examples)
t.eq(get_1d_list_size(rid), 2, "two libraries")
t.eq(get_1d_list_item(rid, 0), "CORP_LIB", "first library")
t.eq(get_1d_list_item(rid, 1), "CORP_DEV", "second library")
remove_1d_list(rid)
same(t.lines(), {"translation INFO Obtaining VLT library list from: " .. examples .. definition_name,
                 "component INFO Obtaining VLT library list from: " .. examples .. definition_name},
     "library list messages")


---------------------------------------------------------------- broken copies
-- A location map with a missing path, a second path, an orphan and a
-- prefix without paths: still true, listing what it has (the warnings'
-- texts are pinned by the unit tests).
local broken_map = scratch .. "/broken_location_map"
t.write(broken_map, "/orphan/path\nQRN_LOCATION_MAP_1\n$CORP_LIB\n" .. examples .. "\n" .. scratch ..
  "/missing lib\n$CORP_CELLS\n")
host.clear_messages()
t.eq(check_qrn_location_map(broken_map), true, "broken location map still checks")
t.eq(#texts("component", "WARN"), 2, "broken location map warnings")
both("INFO", {
  "Reading location map file: " .. broken_map,
  "Location map file: more than one hard pathname assigned to  the following soft prefix: $CORP_LIB",
  "Location map file: no hard pathnames have been assigned to  the following soft prefix: $CORP_CELLS",
  "Location map file paths:",
  "    Soft prefix: $CORP_LIB",
  "        Hard pathname: " .. examples,
  "        Hard pathname: " .. scratch .. "/missing lib",
  "    Soft prefix: $CORP_CELLS"}, "broken location map listing")

-- Evaluated with that map, the library has no geometries.
host.clear_messages()
t.eq(check_vlt_library("CORP_LIB", broken_map, examples), true, "library without geometries")
t.expect_logged("component WARN Evaluating VLT Library: invalid (empty) common geometries directory.")

-- A library whose definition file is broken.
local defs = t.fresh_dir(scratch .. "/defs")
t.write(defs .. definition_name, table.concat({
  "stray words before any library",
  "released \"CORP_LIB\"",
  "    DIGITAL $CORP_LIB/components/digital -qrn_component",
  "{",
  "    ANALOG $CORP_LIB/components/analog -qrn_component",
  "}",
  "released \"LOST\" {",
  "    X $CORP_LIB/x",
  "development \"OPEN\" {",
  "    ANALOG $CORP_LIB/components/analog -qrn_component"}, "\n") .. "\n")
host.set_library(defs)
host.clear_messages()
t.eq(check_vlt_library_definition_file(defs), true, "broken definition file still checks")
t.eq(#texts("translation", "WARN"), 4, "broken definition file warnings")
rid = get_vlt_library_list(defs)
t.eq(get_1d_list_size(rid), 2, "LOST never reaches the list")
t.eq(get_1d_list_item(rid, 1), "OPEN", "unclosed last library")
remove_1d_list(rid)

host.clear_messages()
t.eq(check_vlt_library("LOST", map, defs), false, "dropped library")
both("ERROR", {
  "Evaluating VLT Library: library not found: LOST",
  "Errors found while reading VLT library definition file: " .. defs .. definition_name}, "dropped library errors")

-- Missing files.
local empty = t.fresh_dir(scratch .. "/empty")
host.clear_messages()
t.eq(check_vlt_library_definition_file(empty), false, "no definition file")
t.eq(get_vlt_library_list(empty), "", "no library list")
t.eq(check_qrn_location_map(empty .. "/location_map"), false, "no location map")
same(texts("translation", "ERROR"), {
  "VLT library definition file: cannot read the file: " .. empty .. definition_name,
  "Errors found while reading VLT library definition file: " .. empty .. definition_name,
  "VLT library definition file: cannot read the file: " .. empty .. definition_name,
  "Evaluating VLT Library: errors found while reading VLT library definition file: " .. empty .. definition_name,
  "Location map file: cannot read the file: " .. empty .. "/location_map",
  "Errors found while reading location map file: " .. empty .. "/location_map"}, "missing file errors")

-- The sample library itself is untouched by all of this.
t.eq(t.read(examples .. definition_name), sample_definition, "sample unchanged")

local opened, closed = host.logger_counts()
t.eq(opened, closed, "every opened component logger closed")
