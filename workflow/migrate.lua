-- The migration workflow: runs every step of the road, in the order the data
-- needs, on any VLT library, and ends with the counts of the run and the
-- migration summary (WDIR/summary.html).
--
--   vlt2hrw-host [HOST OPTIONS] workflow/migrate.lua [OPTIONS] LIBRARY_DIR OUT_DIR [LIBRARY_NAME [LOCATION_MAP]]
--   vlt2hrw-host [HOST OPTIONS] workflow/migrate.lua [OPTIONS] --settings FILE [LIBRARY_DIR OUT_DIR ...]
--
-- LIBRARY_DIR holds vlt_library_definition.library_definition; the working
-- directory is OUT_DIR/wdir. The user's choices come from a settings file
-- (copy and edit workflow/settings.example.lua, which documents each one);
-- what the command line gives wins over the settings file. The options and
-- the exit status are told in USAGE below.
--
-- Steps, by name (for --from and --only): wdir, checks, geometries, catalogs,
-- partitions, target, neutral, convert, pdb. Every step can run again over
-- the results of an earlier run: the working directory is not made again
-- unless asked (so edits to its configuration files stay), neutral symbols
-- already written are not written again unless asked, and the tools do not
-- list a rejected item twice.

local USAGE = [==[
usage: vlt2hrw-host [HOST OPTIONS] workflow/migrate.lua [OPTIONS] LIBRARY_DIR OUT_DIR [LIBRARY_NAME [LOCATION_MAP]]
       vlt2hrw-host [HOST OPTIONS] workflow/migrate.lua [OPTIONS] --settings FILE [LIBRARY_DIR OUT_DIR ...]
options:
  --settings FILE       the choices of the migration (see workflow/settings.example.lua)
  --new-wdir            make the working directory again from the templates
                        (configuration files you edited there go back to their shipped state)
  --overwrite-symbols   write neutral symbols again that an earlier run wrote
  --from STEP           begin with STEP, on the results of an earlier run
  --only STEP           run STEP alone, on the results of an earlier run
  --help                print this text
steps: wdir checks geometries catalogs partitions target neutral convert pdb
exit status: 0 every step ran and no item failed; 3 every step ran but items
  failed (rejected parts or symbols, errors in the log); 4 a step could not run
  (a missing or wrong input, or a step that answered false); 2 usage error;
  1 the script stopped with a Lua error]==]

local EXIT_ITEMS_FAILED, EXIT_STEP_FAILED, EXIT_USAGE = 3, 4, 2
local STEPS = {"wdir", "checks", "geometries", "catalogs", "partitions", "target", "neutral", "convert", "pdb"}

local function usage_error(message)
  io.stderr:write("migrate.lua: " .. message .. "\n" .. USAGE .. "\n")
  os.exit(EXIT_USAGE)
end

local function exists(path)
  local f = io.open(path, "rb")
  if f then f:close() end
  return f ~= nil
end

local function is_dir(path)
  local ok = os.execute("test -d '" .. path:gsub("'", "'\\''") .. "'")
  return ok == true or ok == 0
end

local function current_dir()
  local pipe = io.popen("pwd")
  local dir = pipe and pipe:read("*l")
  if pipe then pipe:close() end
  return dir or os.getenv("PWD") or "."
end

-- An absolute path without "." and ".." (the tools run in other directories).
local function absolute(path, base)
  if path == nil or path == "" then return path end
  if path:sub(1, 1) ~= "/" then path = (base or current_dir()) .. "/" .. path end
  local parts = {}
  for part in path:gmatch("[^/]+") do
    if part == ".." then parts[#parts] = nil
    elseif part ~= "." then parts[#parts + 1] = part end
  end
  return "/" .. table.concat(parts, "/")
end

local function read_lines(path)
  local lines, f = {}, io.open(path, "rb")
  if not f then return lines end
  for line in f:lines() do lines[#lines + 1] = (line:gsub("\r$", "")) end
  f:close()
  return lines
end

-- Command line --------------------------------------------------------------

local options, positional = {}, {}
do
  local i = 1
  while arg[i] do
    local a = arg[i]
    if a == "--help" or a == "-h" then
      print(USAGE)
      os.exit(0)
    elseif a == "--settings" or a == "--from" or a == "--only" then
      if not arg[i + 1] then usage_error("option " .. a .. " needs a value") end
      options[a:sub(3)] = arg[i + 1]
      i = i + 1
    elseif a == "--new-wdir" or a == "--overwrite-symbols" then
      options[a:sub(3)] = true
    elseif a:sub(1, 2) == "--" then
      usage_error("unknown option " .. a)
    else
      positional[#positional + 1] = a
    end
    i = i + 1
  end
  if #positional > 4 then usage_error("too many arguments") end
  for _, key in ipairs({"from", "only"}) do
    local known = false
    for _, name in ipairs(STEPS) do known = known or name == options[key] end
    if options[key] and not known then usage_error("unknown step " .. options[key] .. " for --" .. key) end
  end
  if options.from and options.only then usage_error("--from and --only exclude each other") end
end

-- Settings: the defaults, then the settings file, then the command line.
local settings = {
  library = nil, location_map = nil, catalogs = nil, part_no = false, catalog_symbols_only = false,
  lib_unit = "MM", cells = true, levels = {below = 1, count = 1}, partition_renames = {connector = "connectors"},
  property_targets = {}, scale_factors = {}, default_scale_factor = "1.0", overwrite_symbols = false,
  new_wdir = false, qrn2pdb_options = "", cell_pin_name_case = "none",
}
if options.settings then
  local file = absolute(options.settings)
  if not exists(file) then usage_error("settings file " .. file .. " not found") end
  local chunk, message = loadfile(file)
  if not chunk then usage_error("settings file " .. file .. " cannot be read: " .. message) end
  local ok, given = pcall(chunk)
  if not ok or type(given) ~= "table" then
    usage_error("settings file " .. file .. " must return a table" .. (ok and "" or ": " .. tostring(given)))
  end
  local base = file:match("^(.*)/[^/]*$")
  for key, value in pairs(given) do
    if settings[key] == nil and key ~= "library" and key ~= "location_map" and key ~= "catalogs" and
       key ~= "library_dir" and key ~= "out_dir" then
      usage_error("settings file " .. file .. ": unknown setting " .. tostring(key))
    end
    settings[key] = value
  end
  -- Paths in the settings file are relative to its directory.
  for _, key in ipairs({"library_dir", "out_dir", "location_map"}) do settings[key] = absolute(settings[key], base) end
end
settings.library_dir = absolute(positional[1]) or settings.library_dir
settings.out_dir = absolute(positional[2]) or settings.out_dir
settings.library = positional[3] or settings.library
settings.location_map = absolute(positional[4]) or settings.location_map
if options["new-wdir"] then settings.new_wdir = true end
if options["overwrite-symbols"] then settings.overwrite_symbols = true end
if not settings.library_dir or not settings.out_dir then
  usage_error("LIBRARY_DIR and OUT_DIR are needed (as arguments or library_dir and out_dir in the settings file)")
end

local library_dir, out = settings.library_dir:gsub("/+$", ""), settings.out_dir:gsub("/+$", "")
local wdir = out .. "/wdir"
-- The host's log file: the value of its --log option, if it was given.
local host_log
do
  local pipe = io.popen("tr '\\0' '\\n' < /proc/$PPID/cmdline 2>/dev/null")
  local words = {}
  for line in (pipe and pipe:lines() or function() end) do words[#words + 1] = line end
  if pipe then pipe:close() end
  for i = 1, #words - 1 do
    if words[i] == "--log" then host_log = absolute(words[i + 1]) end
    if words[i]:match("%.lua$") then break end
  end
end

-- Output --------------------------------------------------------------------

local function say(text) print("  " .. text) end

-- Warnings and errors the component logged, counted per message (a message
-- on both sinks of a call arrives twice in a row).
local tally = {warnings = 0, errors = 0}
local function count_messages()
  local last
  for _, m in ipairs(host.messages()) do
    local key = m.level .. "\0" .. m.text
    if key ~= last and m.sink ~= "host" then
      if m.level == "WARN" then tally.warnings = tally.warnings + 1 end
      if m.level == "ERROR" or m.level == "FATAL" then
        tally.errors = tally.errors + 1
        tally.last_error = m.text
      end
    end
    last = key
  end
  host.clear_messages()
end

-- Stops the run: what went wrong, where, what to do.
local current_step = nil
local function stop(what, todo)
  count_messages()
  local where = current_step and ("stopped in the step \"" .. current_step .. "\"") or "cannot start"
  io.stderr:write("\nmigrate.lua: " .. where .. ": " .. what .. "\n")
  if tally.last_error then io.stderr:write("  the last error in the log: " .. tally.last_error .. "\n") end
  if todo then io.stderr:write("  what to do: " .. todo .. "\n") end
  io.stderr:write("  the log: " .. (host_log or "the host's standard error (--log FILE keeps it)") .. "\n")
  os.exit(EXIT_STEP_FAILED)
end

-- A step's call must answer true (or a non-empty list).
local function need(name, result, todo)
  if result == false or result == "" or result == -1 or result == nil then
    stop(name .. " answered " .. tostring(result == nil and "nothing" or result), todo or "see the messages of " ..
         name .. " in the log")
  end
  return result
end

local function list_items(rid)
  local items = {}
  for i = 0, get_1d_list_size(rid) - 1 do items[#items + 1] = get_1d_list_item(rid, i) end
  remove_1d_list(rid)
  return items
end

-- Checks before the first step -----------------------------------------------

local definition = library_dir .. "/vlt_library_definition.library_definition"
if not is_dir(library_dir) then
  stop("the library directory " .. library_dir .. " does not exist", "give the directory that holds " ..
       "vlt_library_definition.library_definition as LIBRARY_DIR (or library_dir in the settings file)")
end
if not exists(definition) then
  stop("the library definition file " .. definition .. " does not exist",
       "LIBRARY_DIR must hold vlt_library_definition.library_definition (docs/library-files.md tells its form)")
end
if wdir:find("[%s;&,=()'\"#]") then
  io.stderr:write("migrate.lua: warning: the working directory " .. wdir .. " holds a blank or a character of " ..
                  "the shell; the parts database tools take their paths unquoted and will fail on it. Choose an " ..
                  "OUT_DIR without them.\n")
end
if not host_log then
  io.stderr:write("migrate.lua: note: the host has no --log FILE: the log goes to standard error, and the summary " ..
                  "finds no log to count (--log " .. out .. "/host.log keeps it where the summary looks)\n")
end
os.execute("mkdir -p '" .. out:gsub("'", "'\\''") .. "'")
if not is_dir(out) then stop("the output directory " .. out .. " cannot be made", "choose an OUT_DIR you can write") end

-- The location map: given, or written by the library's make_location_map.lua
-- (as the sample library ships it), or the library's own location_map file.
local location_map = settings.location_map
if not location_map then
  if exists(library_dir .. "/make_location_map.lua") then
    location_map = dofile(library_dir .. "/make_location_map.lua")(library_dir, out)
  elseif exists(library_dir .. "/location_map") then
    location_map = library_dir .. "/location_map"
  else
    stop("no location map for " .. library_dir, "give LOCATION_MAP (or location_map in the settings file)")
  end
end
if not exists(location_map) then
  stop("the location map " .. location_map .. " does not exist",
       "give the path of the library's location map (docs/library-files.md tells its form)")
end

-- The suites' installation: the build keeps one beside the host, in
-- <host dir>/qlln, holding the library update tool under KVE_HOME.
local function host_directory()
  local pipe = io.popen('readlink -f "/proc/$PPID/exe" 2>/dev/null')
  local exe = pipe and pipe:read("*l")
  if pipe then pipe:close() end
  return exe and exe:match("^(.*)/[^/]*$")
end
local host_dir = host_directory()
host.set_wdir(wdir)
host.set_library(library_dir)
host.set_service("get qlln installation path", (host_dir or out) .. "/qlln")

local first, last = 1, #STEPS
for i, name in ipairs(STEPS) do
  if name == options.from then first = i end
  if name == options.only then first, last = i, i end
end
local wdir_existed = is_dir(wdir)
if first > 1 and not wdir_existed then
  stop("there is no working directory " .. wdir .. " to go on from", "run the workflow from its first step")
end

-- The steps -------------------------------------------------------------------

local library, lib = nil, nil
local titles = {
  wdir = "Working directory and seed library", checks = "Checks of the library definition and location map",
  geometries = "Geometries and containers", catalogs = "Catalogs",
  partitions = "Symbol configuration, path depth, levels, partitions", target = "Target library and partitions",
  neutral = "Neutral symbols, reports, default mapping", convert = "Converting symbols",
  pdb = "Parts databases",
}
local run = {}

function run.wdir()
  if wdir_existed and not settings.new_wdir then
    say("the working directory " .. wdir .. " exists: it is kept as it is, with your edits of its")
    say("configuration files (--new-wdir or new_wdir = true makes it again from the templates)")
    return
  end
  need("create_wdir", create_wdir(wdir), "check that " .. out .. " can be written")
  say("working directory: " .. wdir)
end

-- The settings that live in the host for the whole run, and the library name.
local function prepare_run()
  set_lib_unit(settings.lib_unit)
  use_part_no_prop(settings.part_no and true or false)
  set_catalog_symbols_only(settings.catalog_symbols_only and true or false)
  host.set_param("cell pin name case", settings.cell_pin_name_case)
  local rid = get_vlt_library_list(library_dir)
  local names = rid ~= "" and list_items(rid) or {}
  if #names == 0 then
    stop("the library definition file " .. definition .. " defines no library",
         "fix the file (docs/library-files.md tells its form; the log names the lines it could not read)")
  end
  library = settings.library or names[1]
  local found = false
  for _, name in ipairs(names) do found = found or name == library end
  if not found then
    stop("the library " .. library .. " is not defined in " .. definition .. " (it defines " ..
         table.concat(names, ", ") .. ")", "give one of these names as LIBRARY_NAME (or library in the settings file)")
  end
  if not settings.library and #names > 1 then
    say("library " .. library .. ", the first of " .. table.concat(names, ", ") .. " (library = ... chooses another)")
  end
  lib = {library, location_map, library_dir}
end

function run.checks()
  say("location map: " .. location_map)
  need("check_qrn_location_map", check_qrn_location_map(location_map),
       "the location map " .. location_map .. " cannot be read")
  need("check_vlt_library_definition_file", check_vlt_library_definition_file(library_dir),
       "fix " .. definition .. " (the log names the lines)")
  need("check_vlt_library", check_vlt_library(unpack(lib)),
       "the library " .. library .. " cannot be evaluated with " .. location_map ..
       ": a soft prefix of the definition file may be missing in the location map (see the log)")
  say("library " .. library .. " checked")
end

function run.geometries()
  if not settings.cells then return say("geometries left out (cells = false)") end
  need("obtain_vlt_geom_path", obtain_vlt_geom_path(unpack(lib)),
       "the library " .. library .. " has no geometry directory (-qrn_geom); set cells = false if it has none")
  say("geometry root: " .. host.get_param("geom path") .. ", unit " .. get_lib_unit())
  need("create_default_container", create_default_container(unpack(lib)))
end

function run.catalogs()
  local found = list_items(need("get_catalog_list", get_catalog_list(unpack(lib))))
  local chosen = found
  if settings.catalogs then
    local present = {}
    for _, name in ipairs(found) do present[name] = true end
    chosen = {}
    for _, name in ipairs(settings.catalogs) do
      if present[name] then chosen[#chosen + 1] = name
      else stop("the catalog " .. name .. " of the settings is not in the library " .. library ..
                " (it has " .. table.concat(found, ", ") .. ")", "correct catalogs in the settings file") end
    end
  end
  local rid = new_1d_list()
  for _, name in ipairs(chosen) do add_item_to_1d_list(rid, name) end
  need("save_catalog_list", save_catalog_list(rid))
  remove_1d_list(rid)
  say(#chosen .. " of " .. #found .. " catalog(s): " .. table.concat(chosen, ", "))
  need("save_catalogs", save_catalogs(unpack(lib)))
  need("verify_catalogs", verify_catalogs(unpack(lib)))
  need("update_catalog_symbol_lists", update_catalog_symbol_lists(unpack(lib)))
  need("update_catalog_prop_mapping", update_catalog_prop_mapping(""))
  -- Targets of the settings for catalog properties; the rest stay as mapped.
  local properties = need("get_catalog_property_list", get_catalog_property_list())
  local mapped, unmapped = new_2d_list(), {}
  for i = 0, get_2d_list_size(properties) - 1 do
    local name = get_2d_list_item(properties, i, 0)
    local target = settings.property_targets[name] or get_2d_list_item(properties, i, 1)
    add_two_col_item_to_2d_list(mapped, name, target)
    if target == "" then unmapped[#unmapped + 1] = name end
  end
  remove_2d_list(properties)
  if next(settings.property_targets) then need("save_catalog_property_list", save_catalog_property_list(mapped)) end
  remove_2d_list(mapped)
  if #unmapped > 0 then
    say("catalog properties without a target: " .. table.concat(unmapped, ", ") ..
        " (property_targets in the settings, or config/catalog_data_mapping.xml)")
  end
end

function run.partitions()
  need("save_default_symbol_config", save_default_symbol_config(unpack(lib)))
  local depth = find_symbol_path_depth(unpack(lib))
  if depth < 0 then need("find_symbol_path_depth", false) end
  say("symbol path depth " .. depth .. ", deepest symbol directory level " .. find_symbol_max_path_depth(unpack(lib)))
  need("report_symbol_duplicates_from_path_depth", report_symbol_duplicates_from_path_depth(unpack(lib)))
  -- The default levels name the components directory; `below` levels further
  -- down give one partition per directory there (digital, analog, ...).
  local ok, start, stop_level, default_depth = get_symbol_path_levels()
  need("get_symbol_path_levels", ok)
  local levels = settings.levels or {}
  local new_start = levels.start or start + (levels.below or 0)
  local new_stop = levels.stop or new_start + (levels.count or 1) - 1
  if not levels.start and not levels.below and not levels.count then new_stop = stop_level end
  local new_depth = levels.depth or default_depth
  need("set_symbol_path_levels", set_symbol_path_levels(new_start, new_stop, new_depth))
  say("levels " .. new_start .. " to " .. new_stop .. ", depth " .. new_depth)
  need("create_symbol_partition_list", create_symbol_partition_list(library, location_map, library_dir, false),
       "the levels " .. new_start .. " to " .. new_stop .. " go below some symbol's directory: choose levels in the settings")
  local partitions = need("get_symbol_partition_list", get_symbol_partition_list())
  local renamed = new_2d_list()
  for i = 0, get_2d_list_size(partitions) - 1 do
    local name = get_2d_list_item(partitions, i, 0)
    add_two_col_item_to_2d_list(renamed, name, settings.partition_renames[name] or get_2d_list_item(partitions, i, 1))
  end
  remove_2d_list(partitions)
  need("save_symbol_partition_list", save_symbol_partition_list(renamed))
  remove_2d_list(renamed)
  need("partition_symbol_list", partition_symbol_list(unpack(lib)))
  need("update_partitioned_symbol_lists", update_partitioned_symbol_lists())
  local counts = {}
  for _, partition in ipairs(read_lines(wdir .. "/config/sym_partitions.caf")) do
    local count = 0
    for _, line in ipairs(read_lines(wdir .. "/neutral/symbol_lists/" .. partition .. ".sym_list.caf")) do
      if line:find("^%.SK_SYMBOL_PATH ") then count = count + 1 end
    end
    counts[#counts + 1] = partition .. " " .. count
  end
  say("symbol partitions: " .. table.concat(counts, ", "))
end

function run.target()
  need("prepare_target_cl", prepare_target_cl())
  need("add_symbol_partitions", add_symbol_partitions())
  need("add_pdb_partitions", add_pdb_partitions())
  if settings.cells then need("add_cell_partitions", add_cell_partitions("")) end
  say("target library: " .. wdir .. "/Library")
end

function run.neutral()
  need("write_neutral_symbol_data", write_neutral_symbol_data(location_map, settings.overwrite_symbols and true or false))
  if wdir_existed and not settings.overwrite_symbols then
    say("neutral symbols of an earlier run kept (--overwrite-symbols writes them again)")
  end
  need("verify_symbols", verify_symbols(""))
  need("report_symbol_pin_spacing_map", report_symbol_pin_spacing_map())
  need("create_default_symbol_data_mapping", create_default_symbol_data_mapping())
  -- A scale factor for every pin spacing: the settings', else the default
  -- (1.0 keeps the sizes); a factor already in the mapping stays.
  local scaling = get_symbol_scaling_list()
  local filled = new_2d_list()
  for i = 0, (scaling ~= "" and get_2d_list_size(scaling) or 0) - 1 do
    local val, unit, factor = get_2d_list_item(scaling, i, 0), get_2d_list_item(scaling, i, 1),
                              get_2d_list_item(scaling, i, 2)
    factor = settings.scale_factors[val .. " " .. unit] or (factor ~= "" and factor or settings.default_scale_factor)
    add_row_to_2d_list(filled)
    for _, value in ipairs({val, unit, tostring(factor)}) do add_row_item_to_2d_list(filled, value) end
  end
  if scaling ~= "" then remove_2d_list(scaling) end
  need("save_symbol_scaling_list", save_symbol_scaling_list(filled))
  remove_2d_list(filled)
end

function run.convert()
  need("convert_symbols", convert_symbols(location_map))
  -- Source symbols that fold to one target name overwrite each other.
  local collisions = dofile((arg[0]:match("^(.*)/") or ".") .. "/symbol_name_collisions.lua")
  local found = collisions(wdir .. "/Library/TranslationData/symname_map.txt") or {}
  for _, c in ipairs(found) do
    say("target name claimed twice: " .. c.partition .. "/" .. c.target .. ": " .. table.concat(c.sources, ", "))
  end
end

function run.pdb()
  need("generate_qrn_caf", generate_qrn_caf(location_map))
  need("run_qrn_to_pdb", run_qrn_to_pdb(settings.qrn2pdb_options))
  need("import_pdb_to_zpc", import_pdb_to_zpc())
  need("verify_qrn2pdb", verify_qrn2pdb())
end

-- The run ---------------------------------------------------------------------

for i = first, last do
  local name = STEPS[i]
  current_step, tally.last_error = titles[name], nil
  print(string.format("== %d/%d %s", i, #STEPS, titles[name]))
  host.step(titles[name])
  if name ~= "wdir" and not lib then prepare_run() end
  run[name]()
  count_messages()
end
host.step("Summary")

-- The end of a run: counts, reports, the summary -----------------------------

local reports = is_dir(wdir .. "/log/reports") and wdir .. "/log/reports" or wdir .. "/reports"
local summary_text, counts = nil, {}
if host_dir then
  local pipe = io.popen("'" .. host_dir:gsub("'", "'\\''") .. "/vlt2hrw-host' --summary '" .. wdir:gsub("'", "'\\''") ..
                        "' 2>&1")
  summary_text = pipe and pipe:read("*a")
  if pipe then pipe:close() end
  local json = io.open(wdir .. "/summary.json", "rb")
  local text = json and json:read("*a") or ""
  if json then json:close() end
  for key, value in (text:match('"counts":(%b{})') or ""):gmatch('"([^"]+)":(%-?%d+)') do counts[key] = tonumber(value) end
end
local function n(key) return counts[key] or 0 end

print("== Results")
local rows = {
  {"catalogs", n("catalogs saved") .. " translated of " .. n("catalogs listed")},
  {"parts", n("parts translated") .. " translated, " .. n("parts rejected") .. " rejected, " .. n("parts excluded") ..
   " excluded"},
  {"symbols", n("symbols found") .. " found, " .. n("neutral symbols written") .. " written, " ..
   n("symbols converted") .. " converted, " .. n("symbols rejected") .. " rejected, " .. n("symbols excluded") ..
   " excluded"},
  {"partitions", n("symbol partitions") .. " symbol, " .. n("parts database partitions") .. " parts database, " ..
   n("cell partitions") .. " cell"},
  {"parts databases", n("parts databases imported") .. " imported of " .. n("catalogs listed") .. " catalog(s)"},
  {"log", tally.warnings .. " warning(s), " .. tally.errors .. " error(s)" ..
   (host_log and " in " .. host_log or "")},
}
for _, row in ipairs(rows) do print(string.format("  %-16s %s", row[1], row[2])) end
print("  reports:")
for _, name in ipairs({"verify_catalogs.txt", "symbol_path_depth_report.txt", "verify_symbols.txt",
                       "symbol_pin_spacing_report.txt", "verify_pdb.txt"}) do
  if exists(reports .. "/" .. name) then print("    " .. reports .. "/" .. name) end
end
-- The rejected items by name, the first few of each file, with the reason
-- the tool wrote in the comment line before a part.
for _, file in ipairs({"rejected_parts.caf", "rejected_symbols.caf"}) do
  local names, reason = {}, nil
  for _, line in ipairs(read_lines(wdir .. "/log/" .. file)) do
    local symbol = line:match("^%.SK_SYMBOL_PATH (.*)$")
    if line:match("^//") then reason = line:match("^//%s*(.-)%s*$")
    elseif symbol then names[#names + 1] = symbol
    elseif line:match("%S") and not line:match("^%.") then
      names[#names + 1] = line .. (reason and " (" .. reason .. ")" or "")
      reason = nil
    end
  end
  for i = 1, math.min(#names, 10) do print("  rejected: " .. names[i]) end
  if #names > 10 then print("  rejected: ... " .. (#names - 10) .. " more in " .. file) end
end
print("  rejected items and tool logs:")
for _, name in ipairs({"rejected_parts.caf", "rejected_symbols.caf", "tbl2flat.log", "symbol_converter_initial.log",
                       "symbol_converter.log", "tdlib2zpc.log", "qrn2pdb.txt", "tlx2partsdb.log", "libforge.log"}) do
  if exists(wdir .. "/log/" .. name) then print("    " .. wdir .. "/log/" .. name) end
end
if exists(wdir .. "/summary.html") then
  print("summary: " .. wdir .. "/summary.html")
else
  print("summary: not written" .. (summary_text and (": " .. summary_text:gsub("%s+$", "")) or ""))
end

local failed_items = n("parts rejected") + n("symbols rejected") + (n("catalogs listed") - n("catalogs saved")) +
                     math.max(0, n("catalogs listed") - n("parts databases imported"))
if failed_items > 0 or tally.errors > 0 then
  print("some items failed: see the reports, the rejected item files and the summary")
  os.exit(EXIT_ITEMS_FAILED)
end
print("done")
