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
