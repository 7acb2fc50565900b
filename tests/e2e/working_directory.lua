-- create_wdir and prepare_target_cl through the real host.
local t = require("testlib")

local scratch = t.fresh_dir(t.scratch)

local function contains(text, piece) return text ~= nil and text:find(piece, 1, true) ~= nil end

-- A parent that does not exist: the filesystem error reaches the script.
local ok, message = pcall(create_wdir, scratch .. "/missing/wdir")
t.eq(ok, false, "create_wdir under a missing parent")
assert(contains(message, "boost::filesystem::create_directory"), message)
t.eq(t.exists(scratch .. "/missing"), false, "nothing made")

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

local wdir = scratch .. "/work dir"
host.set_wdir(wdir)
host.set_library(t.source)
host.clear_messages()
t.eq(create_wdir(wdir), true, "create_wdir")
local command = "cmd /c " .. win(tools .. "/libforge.exe") .. " -CreateSeed -zpcpath=" ..
                unix(wdir .. "/seed_library/Library.zpc") .. " -log=" .. unix(wdir .. "/log/libforge_int.log") ..
                " > " .. win(wdir .. "/log/libforge.log") .. " 2>>&1"
t.expect_logged("init DEBUG Create process: " .. command)
t.expect_logged("init DEBUG VALUE_VLT property will have number: 223")
t.expect_logged("init INFO Working directory successfully created at: " .. wdir)
for _, line in ipairs(t.lines()) do assert(line:sub(1, 5) == "init ", "create_wdir logs on init only: " .. line) end
local prp = t.read(wdir .. "/seed_library/CentLib.prp")
assert(contains(prp, '\n*TEXTPROP 223 CELL 132 ".*" 1 "VALUE_VLT" 0.080in INVISIBLE SINGLE TEMPLATE "engineering" ' ..
                     '6 3 3 1 1 1\n*TEXTPROP 224 '), prp)

-- The target library from that seed; neither step touches it afterwards.
t.eq(prepare_target_cl(), true, "prepare_target_cl")
t.eq(t.read(wdir .. "/Library/CentLib.prp"), prp, "target property file")
t.expect_logged("translation DEBUG Preparing target Central Library.")
t.write(wdir .. "/Library/Library.zpc", "filled\n")
t.eq(create_wdir(wdir), true, "create_wdir again")
host.clear_messages()
t.eq(prepare_target_cl(), true, "second prepare_target_cl")
t.expect_logged("translation INFO Preparing target Central Library: ZPC index file exists, so we will skipping this step: "
                .. wdir .. "/Library/Library.zpc")
t.eq(t.read(wdir .. "/Library/Library.zpc"), "filled\n", "target library untouched")
