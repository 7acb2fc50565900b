-- create_wdir and prepare_target_cl through the real host.
local t = require("testlib")

local scratch = t.fresh_dir(t.scratch)

local function contains(text, piece) return text ~= nil and text:find(piece, 1, true) ~= nil end

-- A parent that does not exist: the filesystem error reaches the script.
host.clear_messages()
local ok, message = pcall(create_wdir, scratch .. "/missing/wdir")
t.eq(ok, false, "create_wdir under a missing parent")
assert(contains(message, "boost::filesystem::create_directory"), message)
t.eq(t.exists(scratch .. "/missing"), false, "nothing made")

-- A component directory without templates: the four directories, the Fatal, no seed.
local component = t.fresh_dir(scratch .. "/component")
t.write(component .. "/config_vlt2hrw_main.xml", "<rig/>")
local script = scratch .. "/no_templates.lua"
t.write(script, [[
local t = require("testlib")
local wdir = arg[1]
assert(create_wdir(wdir) == false, "create_wdir without templates")
for _, d in ipairs({"config", "log", "log/reports", "reports", "neutral"}) do
  assert(t.exists(wdir .. "/" .. d), d)
end
assert(not t.exists(wdir .. "/seed_library"), "no seed library")
t.expect_logged("init FATAL Template configuration directory does not exist: '" .. arg[2] .. "/templates'")
]])
t.eq(t.run_host({"--component-dir", component}, script, scratch .. "/no templates", component), 0,
     "host run without templates")

-- prepare_target_cl copies the seed once.
local wdir = scratch .. "/target wdir"
host.set_wdir(wdir)
host.set_library(t.source)
t.sh("mkdir -p " .. t.quote(wdir .. "/seed_library/SymbolLibs"))
t.write(wdir .. "/seed_library/Library.zpc", "*ZPC_INDEX 1\n")
t.write(wdir .. "/seed_library/CentLib.prp", "*END\n")
host.clear_messages()
t.eq(prepare_target_cl(), true, "prepare_target_cl")
t.eq(t.read(wdir .. "/Library/Library.zpc"), "*ZPC_INDEX 1\n", "index copied")
t.eq(t.exists(wdir .. "/Library/SymbolLibs"), true, "holder copied")
t.expect_logged("translation DEBUG Preparing target Central Library.")
t.write(wdir .. "/Library/Library.zpc", "*ZPC_INDEX 1\n*PARTITION symbol p\n")
host.clear_messages()
t.eq(prepare_target_cl(), true, "second prepare_target_cl")
t.eq(t.read(wdir .. "/Library/Library.zpc"), "*ZPC_INDEX 1\n*PARTITION symbol p\n", "library kept")
t.expect_logged("translation INFO Preparing target Central Library: ZPC index file exists, so we will skipping this step: "
                .. wdir .. "/Library/Library.zpc")

-- The whole road on a working directory whose path holds a blank.
local tools = t.host_binary:match("^(.*)/[^/]*$") .. "/tools"
if tools:sub(1, 1) ~= "/" then tools = os.getenv("PWD") .. "/" .. tools:gsub("^%./", "") end
local function win(p)
  p = p:gsub("/", "\\")
  if p:find("[ ;&,=]") then p = '"' .. p .. '"' end
  return p
end
local function unix(p)
  if p:find("[ ;#&()'=]") then p = '"' .. p .. '"' end
  return p
end

wdir = scratch .. "/work dir"
host.set_wdir(wdir)
host.clear_messages()
t.eq(create_wdir(wdir), true, "create_wdir")
local command = "cmd /c " .. win(tools .. "/libforge.exe") .. " -CreateSeed -zpcpath=" ..
                unix(wdir .. "/seed_library/Library.zpc") .. " -log=" .. unix(wdir .. "/log/libforge_int.log") ..
                " > " .. win(wdir .. "/log/libforge.log") .. " 2>>&1"
t.expect_logged("init DEBUG Create process: " .. command)
t.expect_logged("init DEBUG VALUE_VLT property will have number: 223")
t.expect_logged("init INFO Working directory successfully created at: " .. wdir)
for _, line in ipairs(t.lines()) do assert(line:sub(1, 5) == "init ", "create_wdir logs on init only: " .. line) end
for _, d in ipairs({"config/geom_technology", "log/reports", "reports", "neutral", "seed_library/CellLibs"}) do
  t.eq(t.exists(wdir .. "/" .. d), true, d)
end
t.eq(t.read(wdir .. "/config/catalog_val_prop.xml"),
     t.read(t.source .. "/shipped/templates/catalog_val_prop.xml"), "template copied")
t.eq(t.read(wdir .. "/seed_library/Library.cfg"),
     'SECTION LibraryManager\nKEY FlowType "TD"\nKEY FlowVersion "HX2007"\nENDSECTION\n', "Library.cfg")
local prp = t.read(wdir .. "/seed_library/CentLib.prp")
assert(contains(prp, '\n*TEXTPROP 223 CELL 132 ".*" 1 "VALUE_VLT" 0.080in INVISIBLE SINGLE TEMPLATE "engineering" ' ..
                     '6 3 3 1 1 1\n*TEXTPROP 224 '), prp)

-- The target library from that seed; create_wdir never touches it afterwards.
t.eq(prepare_target_cl(), true, "prepare_target_cl after create_wdir")
t.eq(t.read(wdir .. "/Library/CentLib.prp"), prp, "target property file")
t.write(wdir .. "/Library/Library.zpc", "filled\n")

-- A tool that reports a problem: a Warn, and the run goes on.
local failbin = t.fresh_dir(scratch .. "/fail bin")
t.write(failbin .. "/libforge.exe", "#!/bin/sh\nLIBFORGE_FAIL=exit:3 exec " .. t.quote(tools .. "/libforge.exe") ..
        ' "$@"\n')
t.sh("chmod +x " .. t.quote(failbin .. "/libforge.exe"))
host.set_service("get rig install bin", failbin)
host.clear_messages()
t.eq(create_wdir(wdir), true, "create_wdir with a failing tool")
t.expect_logged("init WARN LibForge found problem(s) during creating seed CL: " .. wdir ..
                "/seed_library. Returned code: 3")
t.eq(t.read(wdir .. "/Library/Library.zpc"), "filled\n", "target library untouched")

-- No tool at all: cmd reports it, and without a property file the step fails.
host.set_service("get rig install bin", t.fresh_dir(scratch .. "/empty bin"))
host.clear_messages()
local fresh = scratch .. "/no tool"
t.eq(create_wdir(fresh), false, "create_wdir without the tool")
t.expect_logged("init WARN LibForge found problem(s) during creating seed CL: " .. fresh ..
                "/seed_library. Returned code: 9009")
t.expect_logged("init ERROR Cannot read Central Library property file: " .. fresh .. "/seed_library/CentLib.prp")
host.set_service("get rig install bin", tools)
