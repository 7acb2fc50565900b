-- The migration summary of a working directory: summary.json holds the
-- counts and findings, summary.html the same facts and the symbol pictures;
-- vlt2hrw-summary and vlt2hrw-host --summary write the same files.
local t = require("testlib")
-- A working directory as a finished run leaves it, made by hand: two
-- converted symbols of the sample library, one rejected symbol, one target
-- name claimed twice, reports with findings, a rejected part.
local wdir = t.fresh_dir(t.scratch) .. "/wdir"
t.fixture("summary_wdir", wdir)

t.eq(t.sh(t.quote(t.bin .. "/vlt2hrw-summary") .. " " .. t.quote(wdir) .. " > " .. t.quote(t.scratch .. "/out.txt")), true,
     "summary written")
t.eq(t.read(t.scratch .. "/out.txt"), "summary: " .. wdir .. "/summary.html\n", "says where")
-- The facts: counts, rejected items with their reasons, findings, path
-- depth collisions, claimed target names; the pictures stay in the page.
local json = t.read(wdir .. "/summary.json")
t.golden("summary/summary.json", json)
-- The page: the facts with the drawings of source and target (nand2 from the version the
-- converter read, SOURCE, res from its highest), no reference to anything outside the file.
local html = t.read(wdir .. "/summary.html")
assert(html:find('["nand2","U?",0,0,6,4,[["A","1",0,3,"L"],["B","2",0,1,"L"],["Y","3",6,2,"R"]]]', 1, true), "source drawing")
assert(html:find('["res","R?",0,0,6,2,[["1","1",0,1,"L"],["2","2",6,1,"R"]]]', 1, true), "highest version")
assert(html:find('["logic_nand2","R?",0,0,6,2,[["1","",0,1,"L"],["2","",6,1,"R"]]]', 1, true), "millimetres on the grid")
assert(html:find('["logic_nand2","U?",0,0,6,4,[["A","1",0,3,"L"]', 1, true), "target drawing")
assert(not html:find("<script src", 1, true), "no external script")
assert(not html:find("<link", 1, true), "no external style")

-- The host writes the same files.
t.write(wdir .. "/summary.json", "old")
t.eq(t.run({"--summary", wdir}), 0, "vlt2hrw-host --summary")
t.eq(t.read(wdir .. "/summary.json"), json, "same facts")
t.eq(t.run({"--summary", t.scratch .. "/nowhere"}), 2, "no working directory")
