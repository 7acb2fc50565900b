-- The main job: the default workflow migrates the sample library; the list
-- of files it writes and every file match their golden copies under
-- tests/e2e/golden/demo/ (UPDATE_GOLDEN=1 rewrites them). The catalogs and
-- geometry directories come in the directory order of the machine, so a
-- file passes whose lines are the golden ones in another order.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local status = t.run_host({"--log", out .. "/host.log"}, t.source .. "/workflow/migrate.lua", t.source .. "/examples", out)
t.eq(status, 0, "workflow ran to its end")

local files = t.output_lines("cd " .. t.quote(out) .. " && find . -type f | sed 's|^\\./||' | LC_ALL=C sort")
if t.updating then t.sh("rm -rf " .. t.quote(t.golden_dir .. "/demo")) end
t.case("the files written", function() t.golden("demo/files.txt", table.concat(files, "\n") .. "\n") end)
for _, file in ipairs(files) do
  t.case(file, function() t.golden("demo/" .. file, t.read(out .. "/" .. file), true) end)
end
t.case("no error in the log", function()
  local log = t.read(out .. "/host.log")
  assert(not log:find(" ERROR ", 1, true) and not log:find(" FATAL ", 1, true), "the demo logged an error:\n" .. log)
end)
t.finish()
