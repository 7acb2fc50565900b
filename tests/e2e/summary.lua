-- The migration summary of a working directory: summary.json holds the
-- counts and findings, summary.html the same facts and the symbol pictures;
-- vlt2hrw-summary and vlt2hrw-host --summary write the same files.
local t = require("testlib")
local function summary_status(dir)
  local ok, _, code = os.execute(t.quote(t.host_binary) .. " --summary " .. t.quote(dir) .. " > /dev/null 2>&1")
  return (ok == true or ok == 0) and 0 or code
end
local wdir = t.scratch .. "/wdir"
local lib = require("summary_fixture")(wdir)
local bin = t.host_binary:match("^(.*)/[^/]*$")

t.eq(t.sh(t.quote(bin .. "/vlt2hrw-summary") .. " " .. t.quote(wdir) .. " > " .. t.quote(t.scratch .. "/out.txt")), true,
     "summary written")
t.eq(t.read(t.scratch .. "/out.txt"), "summary: " .. wdir .. "/summary.html\n", "says where")
local json = t.read(wdir .. "/summary.json")
local html = t.read(wdir .. "/summary.html")
t.eq(json:match('"counts":(%b{})'),
     '{"catalogs listed":2,"catalogs saved":1,"parts translated":2,"parts rejected":1,"parts excluded":0,' ..
     '"symbols found":3,"neutral symbols written":1,"symbols converted":2,"symbols rejected":1,"symbols excluded":0,' ..
     '"symbol partitions":2,"parts database partitions":1,"cell partitions":0,"parts databases imported":1,' ..
     '"report findings":1}', "counts")
for _, piece in ipairs({
  '"rejected_parts":[{"part":"digital 7","reason":"rejected by tbl2flat: no CONTAINER"}]',
  '"rejected_symbols":[{"symbol":"' .. lib .. '/digital/logic/inv","reason":"Error: cannot place pin Y of ' .. lib ..
    '/digital/logic/inv: off grid"}]',
  '{"report":"verify_catalogs.txt","section":"Problems related due to absence of neutral catalog data files",' ..
    '"text":"ERROR: content of the following catalog has not been saved: analog"}',
  '"path_depth":{"default":2,"maximal":3,"collisions":[{"depth":1,"symbols":[["/l/digital/power","pwr_flag"],' ..
    '["/l/analog/power","pwr_flag"]]}]}',
  '"claimed_targets":[{"target":"logic_nand2","sources":["' .. lib .. '/digital/logic/nand2","' .. lib ..
    '/analog/passive/res"]}]',
  '{"source":"' .. lib .. '/digital/logic/inv","partition":"logic","target":"logic_inv","status":"rejected"}',
  '"log/reports/symbol_path_depth_report.txt"'}) do
  assert(json:find(piece, 1, true), "summary.json lacks " .. piece .. "\n" .. json)
end
assert(not json:find('"drawings"', 1, true), "the pictures stay in the page")
-- The page: the facts with the drawings of source and target, no reference
-- to anything outside the file.
-- nand2 drawn from the version the converter read (SOURCE), res from its highest.
assert(html:find('["nand2","U?",0,0,6,4,[["A","1",0,3,"L"],["B","2",0,1,"L"],["Y","3",6,2,"R"]]]', 1, true), "source drawing")
assert(html:find('["res","R?",0,0,6,2,[["1","1",0,1,"L"],["2","2",6,1,"R"]]]', 1, true), "highest version")
assert(html:find('["logic_nand2","R?",0,0,6,2,[["1","",0,1,"L"],["2","",6,1,"R"]]]', 1, true), "millimetres on the grid")
assert(html:find('["logic_nand2","U?",0,0,6,4,[["A","1",0,3,"L"]', 1, true), "target drawing")
assert(not html:find("<script src", 1, true), "no external script")
assert(not html:find("<link", 1, true), "no external style")

-- The host writes the same files.
t.write(wdir .. "/summary.json", "old")
t.eq(summary_status(wdir), 0, "vlt2hrw-host --summary")
t.eq(t.read(wdir .. "/summary.json"), json, "same facts")
t.eq(summary_status(t.scratch .. "/nowhere"), 2, "no working directory")
