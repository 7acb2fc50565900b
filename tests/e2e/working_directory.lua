-- create_wdir and prepare_target_cl through the real host: a path with a
-- blank, a filled target library left alone.
-- (What the seed and the target hold is the unit tests' part.)
local t = require("testlib")

local scratch = t.fresh_dir(t.scratch)

-- A parent that does not exist: the filesystem error reaches the script.
local message = select(2, pcall(create_wdir, scratch .. "/missing/wdir"))
assert(type(message) == "string" and message:find("boost::filesystem::create_directory", 1, true), message)
t.eq(t.exists(scratch .. "/missing"), false, "nothing made")

-- A working directory whose path holds a blank (the seed tool's command line
-- for it is pinned by the unit tests' logs).
local wdir = scratch .. "/work dir"
host.set_wdir(wdir)
host.set_library(t.source)
t.eq(create_wdir(wdir), true, "create_wdir")

-- The target library from that seed; neither step touches it afterwards.
t.eq(prepare_target_cl(), true, "prepare_target_cl")
t.eq(t.read(wdir .. "/Library/CentLib.prp"), assert(t.read(wdir .. "/seed_library/CentLib.prp")), "target property file")
t.write(wdir .. "/Library/Library.zpc", "filled\n")
t.eq(create_wdir(wdir), true, "create_wdir again")
host.clear_messages()
t.eq(prepare_target_cl(), true, "second prepare_target_cl")
t.expect_logged("translation INFO Preparing target Central Library: ZPC index file exists, so we will skipping this step: "
                .. wdir .. "/Library/Library.zpc")
t.eq(t.read(wdir .. "/Library/Library.zpc"), "filled\n", "target library untouched")
