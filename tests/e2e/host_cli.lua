-- The host program as a user meets it: its options, its log for people, its
-- progress lines, and a Lua error with a long path.
local t = require("testlib")
local dir = t.fresh_dir(t.scratch .. "/run")

local status, out, err = t.run({"--version"})
t.eq(status, 0, "--version")
assert(out:match("^vlt2hrw%-host %d+%.%d+%.%d+\n$"), out)

local usage = "usage: vlt2hrw-host [OPTIONS] SCRIPT.lua [ARGS...]\n       vlt2hrw-host --summary WDIR\n" ..
              "Try 'vlt2hrw-host --help' for the options.\n"
for _, c in ipairs({{{"--log-level", "FOO", "x.lua"}, "unknown log level FOO; the levels are TRACE, DEBUG, INFO, " ..
                       "WARN, ERROR, FATAL, OFF\n"}, {{"--log"}, "option --log needs a value\n"},
                   {{"--bogus", "x", "x.lua"}, "unknown option --bogus\n"}}) do
  status, out, err = t.run(c[1])
  t.eq(status, 2, c[1][1])
  t.eq(err, "vlt2hrw-host: " .. c[2] .. usage, "message and usage alone")
end
status, out = t.run({"--help"})
t.eq(status, 0, "--help")
for _, text in ipairs({"--log-format FORM", "--progress MODE", "--summary WDIR", "Exit status:",
                       "  1  the script stopped with a Lua error"}) do
  assert(out:find(text, 1, true), "help lacks " .. text)
end

-- A workflow: two named steps, a message on both sinks with a control byte,
-- and a file-system failure on a 600-character path.
local script = dir .. "/flow.lua"
local long = dir .. "/missing/" .. string.rep("d", 600)
t.write(script, [[
host.set_wdir(arg[1] .. "/wdir")
host.step("Working directory")
assert(create_wdir(arg[1] .. "/wd\1x"))
host.step("Checks")
create_wdir(arg[2])
]])
local log = dir .. "/host.log"
status, out, err = t.run({"--progress", "lines", "--log-format", "people", "--log", log, script, dir, long})
t.eq(status, 1, "Lua error exits 1")
assert(err:match("^Working directory: done, [0-9.]+ s\nChecks: FAILED %(create_wdir stopped with a Lua error%), [0-9.]+ s\n"),
       "one line per step:\n" .. err)
assert(err:find("bytes left out", 1, true) and #err < 2000, "the error is shortened:\n" .. err)
local text = t.read(log)
local header, first = text:match("^([^\n]*\n)([^\n]*\n)")
assert(header:match("^=== %d%d%d%d%-%d%d%-%d%d %d%d:%d%d:%d%d UTC vlt2hrw%-host .* ===\n$"), "header: " .. header)
t.eq(first:gsub("^%d%d:%d%d:%d%d%.%d%d%d ", "TIME "),
     "TIME INFO  init: Creating working directory at: " .. dir .. "/wd\\x01x\n", "time, level, sink, escaped text")
assert(text:find("\nTIME", 1, true) == nil and text:find("Lua error: ", 1, true), "the Lua error is in the log")
for line in text:gmatch("[^\n]*ERROR[^\n]*") do assert(#line < 700, "long line: " .. #line) end

-- The exact form: one line per message and sink.
t.eq(t.run({"--progress", "off", "--log-format", "exact", "--log", dir .. "/exact.log", script, dir, long}), 1, "exact run")
t.starts(t.read(dir .. "/exact.log"), "init INFO Creating working directory at: " .. dir .. "/wd\\x01x\n", "exact form")
