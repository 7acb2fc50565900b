-- How the workflow stops: a usage error prints the usage alone (status 2);
-- a failed prerequisite or a step that answers false stops at once with one
-- message, what to do and the log (status 4), before any later step.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local workflow = t.source .. "/workflow/migrate.lua"
local function run(...) return t.run({"--progress", "off", "--log", out .. "/host.log", workflow, ...}, true) end

-- The whole output of each run matches tests/e2e/golden/workflow_failures/<name>.
t.case("usage errors", function()
  for name, args in pairs({none = {}, bogus = {"--bogus", t.examples, out},
                           from = {"--from", "nowhere", t.examples, out}}) do
    local status, text = run(unpack(args))
    t.eq(status, 2, "status of " .. table.concat(args, " "))
    t.golden("workflow_failures/usage_" .. name .. ".txt", text)
  end
end)

t.case("a library name the definition file does not define", function()
  local status, text = run(t.examples, out .. "/a", "NOPE")
  t.eq(status, 4, "status")
  t.golden("workflow_failures/undefined_library.txt", text)
end)

t.case("missing library directory and location map", function()
  local status, text = run(out .. "/none", out .. "/b")
  t.eq(status, 4, "status")
  t.golden("workflow_failures/missing_library.txt", text)
  status, text = run(t.examples, out .. "/with blank", "CORP_LIB", out .. "/no_map")
  t.eq(status, 4, "status")
  -- A working directory with a blank is warned of before the first step.
  t.golden("workflow_failures/missing_map.txt", text)
  assert(not t.exists(out .. "/with blank/wdir"), "a working directory was made")
end)

t.case("a step that answers false", function()
  -- Without --log the host log goes to the standard error.
  local status, text = t.run({"--progress", "off", "--fail", "get log", workflow, t.examples, out .. "/c"}, true)
  t.eq(status, 4, "status")
  assert(text:find("migrate.lua: stopped in the step \"Working directory and seed library\": create_wdir answered " ..
                   "false\n", 1, true), text)
  assert(text:find("  the log: the host's standard error (--log FILE keeps it)\n", 1, true), text)
end)
t.finish()
