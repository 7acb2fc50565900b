-- Runs workflow/migrate.lua unchanged and measures each of its steps: the
-- workflow prints "== <title>" as a step begins, so a print hook takes a
-- sample of the host process at every step boundary and at the end.
-- Usage: vlt2hrw-host --log LOG bench/road.lua MIGRATE_LUA LIBRARY_DIR OUT_DIR LIBRARY_NAME RESULT_FILE
-- A sample: wall clock (/proc/uptime), the host's own CPU (utime + stime of
-- /proc/self/stat), the CPU of its waited-for children (cutime + cstime) and
-- its peak resident memory (VmHWM of /proc/self/status). RESULT_FILE gets one
-- line per step: "<title>\t<wall s>\t<self cpu s>\t<children cpu s>\t<peak kB>".
local usage = "usage: road.lua MIGRATE_LUA LIBRARY_DIR OUT_DIR LIBRARY_NAME RESULT_FILE"
local migrate, library_dir, out, library, result_file = arg[1], arg[2], arg[3], arg[4], arg[5]
assert(result_file, usage)

local ticks = 100  -- USER_HZ on Linux
local function sample()
  local f = assert(io.open("/proc/uptime", "rb"))
  local wall = tonumber(f:read("*l"):match("^(%S+)"))
  f:close()
  f = assert(io.open("/proc/self/stat", "rb"))
  local stat = f:read("*l")
  f:close()
  -- Fields after the command name in parentheses: state is field 3, utime 14.
  local rest = stat:match("%) (.*)$")
  local fields = {}
  for field in rest:gmatch("%S+") do fields[#fields + 1] = field end
  local function at(n) return tonumber(fields[n - 2]) end
  f = assert(io.open("/proc/self/status", "rb"))
  local hwm = f:read("*a"):match("VmHWM:%s*(%d+)")
  f:close()
  return {wall = wall, self = (at(14) + at(15)) / ticks, children = (at(16) + at(17)) / ticks, hwm = tonumber(hwm)}
end

local results = assert(io.open(result_file, "wb"))
local current, started
local function close_step()
  if not current then return end
  local now = sample()
  results:write(string.format("%s\t%.2f\t%.2f\t%.2f\t%d\n", current, now.wall - started.wall,
                              now.self - started.self, now.children - started.children, now.hwm))
  results:flush()
end
local plain_print = print
print = function(...)
  local line = select("#", ...) > 0 and tostring((...)) or ""
  local title = line:match("^== (.*)$")
  if title then
    close_step()
    current, started = title, sample()
  end
  plain_print(...)
end

arg = {[0] = migrate, library_dir, out, library}
local ok, message = pcall(dofile, migrate)
close_step()
results:close()
if not ok then error(message, 0) end
