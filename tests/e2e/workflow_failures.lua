-- How the workflow stops: a usage error prints the usage alone (status 2);
-- a failed prerequisite or a step that answers false stops at once with one
-- message, what to do and the log (status 4), before any later step.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local workflow = t.source .. "/workflow/migrate.lua"
local examples = t.source .. "/examples"

local function run(options, ...)
  local args = {"--progress", "off", unpack(options)}
  for _, a in ipairs({workflow, ...}) do args[#args + 1] = a end
  return t.run(args, true)
end

t.case("usage errors", function()
  for _, args in ipairs({{}, {"--bogus", examples, out}, {"--from", "nowhere", examples, out}}) do
    local status, text = run({}, unpack(args))
    t.eq(status, 2, "status of " .. table.concat(args, " "))
    assert(text:find("\nusage: vlt2hrw-host [HOST OPTIONS] workflow/migrate.lua", 1, true), text)
    assert(not text:find("traceback", 1, true), text)
  end
end)

t.case("a library name the definition file does not define", function()
  local status, text = run({"--log", out .. "/host.log"}, examples, out .. "/a", "NOPE")
  t.eq(status, 4, "status")
  assert(text:find("migrate.lua: stopped in the step \"Checks of the library definition and location map\": " ..
                   "the library NOPE is not defined in " .. examples ..
                   "/vlt_library_definition.library_definition (it defines CORP_LIB, CORP_DEV)\n" ..
                   "  what to do: give one of these names as LIBRARY_NAME (or library in the settings file)\n" ..
                   "  the log: " .. out .. "/host.log\n", 1, true), text)
  assert(not text:find("== 3/9", 1, true), "went on:\n" .. text)
end)

t.case("missing library directory and location map", function()
  local status, text = run({}, out .. "/none", out .. "/b")
  t.eq(status, 4, "status")
  assert(text:find("migrate.lua: cannot start: the library directory " .. out .. "/none does not exist\n", 1, true), text)
  status, text = run({}, examples, out .. "/with blank", "CORP_LIB", out .. "/no_map")
  t.eq(status, 4, "status")
  assert(text:find("migrate.lua: cannot start: the location map " .. out .. "/no_map does not exist\n", 1, true), text)
  assert(not t.exists(out .. "/with blank/wdir"), "a working directory was made")
  -- A working directory with a blank is warned of before the first step.
  assert(text:find("migrate.lua: warning: the working directory " .. out .. "/with blank/wdir holds a blank", 1, true),
         text)
end)

t.case("a step that answers false", function()
  local status, text = run({"--fail", "get log"}, examples, out .. "/c")
  t.eq(status, 4, "status")
  assert(text:find("migrate.lua: stopped in the step \"Working directory and seed library\": create_wdir answered " ..
                   "false\n", 1, true), text)
  assert(text:find("  the log: the host's standard error (--log FILE keeps it)\n", 1, true), text)
end)
t.finish()
