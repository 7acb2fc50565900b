-- The main job: the default workflow migrates the sample library. The files
-- that tell what a migration did match their golden copies, every file under
-- tests/e2e/golden/demo/ (UPDATE_GOLDEN=1 rewrites them; a new one starts as
-- an empty file). Catalogs and directories come in the directory order of the
-- machine, so a file passes whose lines are the golden ones in another order
-- (the parts database report and the rejected parts excepted). The index holds
-- a line for every target symbol file made; the bulk outputs are checked by a sample.
local t = require("testlib")

local out = t.fresh_dir(t.scratch)
-- Every step ran; the sample's planted items are rejected: status 3.
t.eq(t.run({"--log", out .. "/host.log", t.source .. "/workflow/migrate.lua", t.examples, out}), 3,
     "workflow ran to its end with rejected items")

local exact = {["wdir/log/reports/verify_pdb.txt"] = true, ["wdir/log/rejected_parts.caf"] = true}
-- Path levels count from the root of the file system: the golden copies
-- hold them relative to the sample's components directory, so that they do
-- not depend on where the checkout lies.
local _, base = (t.source .. "/examples/components"):gsub("/", "")
local function relative_levels(text)
  text = text:gsub('start="(%d+)" stop="(%d+)"', function(a, b)
    return string.format('start="+%d" stop="+%d"', a - base, b - base)
  end)
  return (text:gsub("Maximal path depth: (%d+)", function(d) return "Maximal path depth: +" .. (d - base) end))
end
local files, compared = io.popen("cd " .. t.quote(t.golden_dir .. "/demo") .. " && find . -type f | sort"), 0
for file in files:lines() do
  file, compared = file:sub(3), compared + 1
  t.case(file, function()
    t.golden("demo/" .. file, relative_levels(assert(t.read(out .. "/" .. file), "missing")), not exact[file])
  end)
end
files:close()
t.eq(compared >= 20, true, "golden files found")

t.case("only the damaged symbol's error in the log", function()
  -- The one error the sample asks for: its damaged symbol, rejected by the symbol tool.
  local rejected = " ERROR Writing neutral symbol data: sksym2td found problem(s) during obtaining data from symbol: " ..
                   t.source .. "/examples/components/digital/logic/mux4\n"
  local errors = ""
  for line in t.read(out .. "/host.log"):gmatch("[^\n]*\n") do
    if line:find(" ERROR ", 1, true) or line:find(" FATAL ", 1, true) then errors = errors .. line end
  end
  t.eq(errors, "translation" .. rejected .. "component" .. rejected .. "host ERROR the script ends with the status 3\n",
       "errors of the log")
end)
t.case("a parts database per catalog and the summary's counts", function()
  for _, catalog in ipairs({"analog", "connectors", "digital"}) do
    assert(t.exists(out .. "/wdir/Library/PartsDBLibs/" .. catalog .. "/" .. catalog .. ".pdb"), "no database " .. catalog)
  end
  assert(t.read(out .. "/wdir/Library/PartsDBLibs/digital/digital.pdb"):find("\n*END 6\n", 1, true), "six digital parts")
  t.eq(#t.read(out .. "/wdir/log/tlx2partsdb.log"):gsub("[^\n]", ""), 3, "one import line per catalog")
  t.eq(t.read(out .. "/wdir/summary.json"):match('"counts":(%b{})'),
       '{"catalogs listed":3,"catalogs saved":3,"parts translated":19,"parts rejected":1,"parts excluded":0,' ..
       '"symbols found":38,"neutral symbols written":37,"symbols converted":37,"symbols rejected":1,' ..
       '"symbols excluded":0,"symbol partitions":3,"parts database partitions":3,"cell partitions":8,' ..
       '"parts databases imported":3,"report findings":3,"warnings in the host log":8,"errors in the host log":2}',
       "summary counts")
end)
t.finish()
