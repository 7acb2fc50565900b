-- A working directory as a finished run leaves it, made by hand: two
-- converted symbols of the sample library, one rejected symbol, one target
-- name claimed twice, reports with findings, a rejected part.
local t = require("testlib")

return function(wdir)
  t.fresh_dir(wdir)
  local lib = t.source .. "/examples/components"
  for _, d in ipairs({"config", "log/reports", "neutral/catalogs", "neutral/symbol_lists", "neutral/symbols_1/logic",
                      "Library/SymbolLibs/logic", "Library/SymbolLibs/passive", "Library/PartsDBLibs",
                      "Library/TranslationData"}) do
    t.sh("mkdir -p " .. t.quote(wdir .. "/" .. d))
  end
  local function w(path, text) t.write(wdir .. "/" .. path, text) end
  w("config/catalog.list", "digital\nanalog\n")
  w("neutral/catalogs/digital_neut.tlx", '.QRN_PART "1"\n..QRN_COMP "c"\n.QRN_PART "2"\n')
  w("neutral/symbol_lists/logic.sym_list.caf",
    ".SK_SYMBOL_PATH " .. lib .. "/digital/logic/nand2\n.SK_SYMBOL_PATH " .. lib .. "/digital/logic/inv\n")
  w("neutral/symbol_lists/passive.sym_list.caf", ".SK_SYMBOL_PATH " .. lib .. "/analog/passive/res\n")
  w("neutral/symbols_1/logic/nand2.neut", "SYMBOL nand2\n")
  w("log/rejected_symbols.caf", ".SK_SYMBOL_PATH " .. lib .. "/digital/logic/inv\n")
  w("log/symbol_converter.log", "sksym2td: converting\nError: cannot place pin Y of " .. lib ..
    "/digital/logic/inv: off grid\n")
  w("log/rejected_parts.caf", "// rejected by tbl2flat: no CONTAINER\ndigital 7\n")
  w("config/excluded_parts.caf", "// none\n")
  w("log/reports/verify_catalogs.txt", string.rep("-", 79) .. "\n Problems related due to absence of neutral catalog data files\n" ..
    string.rep("-", 79) .. "\nERROR: content of the following catalog has not been saved: analog\n\n" ..
    string.rep("-", 79) .. "\n Problems found by the tbl2flat tool\n" .. string.rep("-", 79) .. "\n")
  w("log/reports/symbol_path_depth_report.txt", "Default path depth: 2\nMaximal path depth: 3\n\n" ..
    "Path depth: 2 - 0 duplicates found.\n\nPath depth: 1 - 1 duplicates found.\n/l/digital/power\tpwr_flag\n" ..
    "/l/analog/power\tpwr_flag\n\n")
  w("Library/Library.zpc", "*ZPC_INDEX 1\n*HOLDER symbol SymbolLibs\n*HOLDER pdb PartsDBLibs\n*HOLDER cell CellLibs\n" ..
    "*PARTITION symbol logic\n*PARTITION symbol passive\n*PARTITION pdb digital\n")
  w("Library/PartsDBLibs/digital.pdb", "pdb\n")
  w("Library/TranslationData/symname_map.txt", lib .. "/digital/logic/nand2\tlogic\tlogic_nand2\n" ..
    lib .. "/digital/logic/inv\tlogic\tlogic_inv\n" .. lib .. "/analog/passive/res\tpassive\tlogic_nand2\n")
  -- Target symbols as the symbol tool writes them: positions in the unit,
  -- the pin number under the name the converter's configuration gives it.
  w("Library/SymbolLibs/logic/logic_nand2.sym", "TDSYMBOL 1\nNAME logic_nand2\nSOURCE " .. lib ..
    "/digital/logic/nand2.smbl_1\nUNIT INCH\nPIN_SPACING 0.1\nSCALE 1\nREFDES U?\nBODY 0 0 0.6 0.4\n" ..
    "PIN A IN 0 0.3 L\nPIN_ATTRIBUTE A # 1\nPIN B IN 0 0.1 L\nPIN_ATTRIBUTE B # 2\nPIN Y OUT 0.6 0.2 R\n" ..
    "PIN_ATTRIBUTE Y # 3\nEND\n")
  w("Library/SymbolLibs/passive/logic_nand2.sym", "TDSYMBOL 1\nNAME logic_nand2\nUNIT MM\nPIN_SPACING 2.54\n" ..
    "REFDES R?\nBODY 0 0 15.24 5.08\nPIN 1 ANA 0 2.54 L\nPIN 2 ANA 15.24 2.54 R\nEND\n")
  return lib
end
