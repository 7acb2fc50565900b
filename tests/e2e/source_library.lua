-- The source library checks and get_vlt_library_list through the real host:
-- on the sample library, and on broken copies of it. Each case's messages
-- (both sinks, every level) match tests/e2e/golden/source_library/<case>.log.
local t = require("testlib")

local map = t.on_sample("wdir")
local examples, scratch = t.examples, t.scratch
local definition_name = "/vlt_library_definition.library_definition"
local sample_definition = t.read(examples .. definition_name)

-- A case runs its calls on a cleared log and compares the log with its golden file.
local function case(name, body)
  t.case(name, function()
    host.clear_messages()
    body()
    t.golden("source_library/" .. name .. ".log", t.take_log())
  end)
end

case("location map of the sample", function()
  t.golden("source_library/location_map", t.read(map))
  t.eq(check_qrn_location_map(map), true, "location map check")
end)
case("definition file of the sample", function() t.eq(check_vlt_library_definition_file(examples), true, "check") end)
case("released library", function() t.eq(check_vlt_library("CORP_LIB", map, examples), true, "library check") end)
case("development library", function() t.eq(check_vlt_library("CORP_DEV", map, examples), true, "library check") end)
case("library list", function() t.eq(t.items(get_vlt_library_list(examples)), "CORP_LIB,CORP_DEV", "libraries") end)

-- A location map with a missing path, a second path, an orphan and a
-- prefix without paths: still true, listing what it has; evaluated with it,
-- the library has no geometries.
local broken_map = scratch .. "/broken_location_map"
t.write(broken_map, "/orphan/path\nQRN_LOCATION_MAP_1\n$CORP_LIB\n" .. examples .. "\n" .. scratch ..
  "/missing lib\n$CORP_CELLS\n")
case("broken location map", function()
  t.eq(check_qrn_location_map(broken_map), true, "broken location map still checks")
  t.eq(check_vlt_library("CORP_LIB", broken_map, examples), true, "library without geometries")
end)

-- A library whose definition file is broken.
local defs = t.fresh_dir(scratch .. "/defs")
t.fixture("broken.library_definition", defs .. definition_name)
case("broken definition file", function()
  host.set_library(defs)
  t.eq(check_vlt_library_definition_file(defs), true, "broken definition file still checks")
  t.eq(t.items(get_vlt_library_list(defs)), "CORP_LIB,OPEN", "LOST never reaches the list, the unclosed last does")
  t.eq(check_vlt_library("LOST", map, defs), false, "dropped library")
end)

case("missing files", function()
  local empty = t.fresh_dir(scratch .. "/empty")
  t.eq(check_vlt_library_definition_file(empty), false, "no definition file")
  t.eq(get_vlt_library_list(empty), "", "no library list")
  t.eq(check_qrn_location_map(empty .. "/location_map"), false, "no location map")
end)

t.case("the sample is untouched and every component logger closed", function()
  t.eq(t.read(examples .. definition_name), sample_definition, "sample unchanged")
  local opened, closed = host.logger_counts()
  t.eq(opened, closed, "every opened component logger closed")
end)
t.finish()
