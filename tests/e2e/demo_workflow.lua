-- The main job: the default workflow migrates the sample library; the list
-- of files it writes and every file match their golden copies under
-- tests/e2e/golden/demo/ byte for byte (UPDATE_GOLDEN=1 rewrites them).
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local status = t.run_host({"--log", out .. "/host.log"}, t.source .. "/workflow/migrate.lua", t.source .. "/examples", out)
t.eq(status, 0, "workflow ran to its end")

local files = t.output_lines("cd " .. t.quote(out) .. " && find . -type f | sed 's|^\\./||' | LC_ALL=C sort")
if t.updating then t.sh("rm -rf " .. t.quote(t.golden_dir .. "/demo")) end
t.case("the files written", function() t.golden("demo/files.txt", table.concat(files, "\n") .. "\n") end)
for _, file in ipairs(files) do
  t.case(file, function() t.golden("demo/" .. file, t.read(out .. "/" .. file)) end)
end
t.finish()
