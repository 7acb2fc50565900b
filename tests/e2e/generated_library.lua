-- A generated library of 50 symbols (vlt2hrw-gen-library, the generator of
-- the road benchmark) passes the library checks without a warning and
-- migrates end to end with the default workflow; the same seed gives the
-- same library.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local function generate(dir)
  return t.sh(t.quote(t.bin .. "/vlt2hrw-gen-library") .. " 50 " .. t.quote(dir) .. " --catalogs 2 --parts 30 --seed 7 >/dev/null 2>&1")
end

t.case("generated deterministically", function()
  assert(generate(out .. "/lib") and generate(out .. "/again"), "generator failed")
  assert(t.sh("diff -r " .. t.quote(out .. "/lib") .. " " .. t.quote(out .. "/again") .. " >/dev/null"),
         "two runs with one seed differ")
  assert(not generate(out .. "/lib"), "the generator wrote into a library that exists")
  t.eq(select(2, assert(t.read(out .. "/lib/catalogs/cat1")):gsub("\nPART ", "")), 30, "parts of the second catalog")
end)

local status = t.run({"--log", out .. "/host.log", t.source .. "/workflow/migrate.lua", out .. "/lib",
                     t.fresh_dir(out .. "/run"), "GEN_LIB"})
t.case("migrated end to end", function()
  t.eq(status, 0, "workflow ran to its end")
  local index = assert(t.read(out .. "/run/wdir/Library/Library.zpc"), "no library index")
  t.eq(select(2, index:gsub("\n%*SYMBOL ", "")), 50, "symbols in the index")
end)
t.case("no warning or error in the log", function()
  local log = assert(t.read(out .. "/host.log"))
  t.eq(log:match("[^\n]* WARN [^\n]*") or log:match("[^\n]* ERROR [^\n]*"), nil, "a warning or an error")
end)
t.finish()
