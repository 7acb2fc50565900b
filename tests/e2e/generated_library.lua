-- A generated library of 50 symbols (vlt2hrw-gen-library, the generator of
-- the road benchmark) passes the library checks without a warning and
-- migrates end to end with the default workflow; the same seed gives the
-- same library.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
local gen = t.host_binary:match("^(.*)/[^/]*$") .. "/vlt2hrw-gen-library"
local function generate(dir, seed)
  return t.sh(t.quote(gen) .. " 50 " .. t.quote(dir) .. " --catalogs 2 --parts 30 --seed " .. seed .. " >/dev/null 2>&1")
end

t.case("generated deterministically", function()
  assert(generate(out .. "/lib", 7), "generator failed")
  assert(generate(out .. "/again", 7), "generator failed")
  assert(t.sh("diff -r " .. t.quote(out .. "/lib") .. " " .. t.quote(out .. "/again") .. " >/dev/null"),
         "two runs with one seed differ")
  assert(not generate(out .. "/lib", 7), "the generator wrote into a library that exists")
  local catalog = assert(t.read(out .. "/lib/catalogs/cat1"))
  local parts = 0
  for _ in catalog:gmatch("\nPART ") do parts = parts + 1 end
  t.eq(parts, 30, "parts of the second catalog")
end)

local status = t.run_host({"--log", out .. "/host.log"}, t.source .. "/workflow/migrate.lua", out .. "/lib",
                          t.fresh_dir(out .. "/run"), "GEN_LIB")
t.case("migrated end to end", function()
  t.eq(status, 0, "workflow ran to its end")
  local index = assert(t.read(out .. "/run/wdir/Library/Library.zpc"), "no library index")
  local entered = 0
  for _ in index:gmatch("\n%*SYMBOL ") do entered = entered + 1 end
  t.eq(entered, 50, "symbols in the index")
end)
t.case("no warning or error in the log", function()
  local log = assert(t.read(out .. "/host.log"))
  for line in log:gmatch("[^\n]+") do
    assert(not line:find(" WARN ", 1, true) and not line:find(" ERROR ", 1, true), "logged:\n" .. line)
  end
end)
t.finish()
