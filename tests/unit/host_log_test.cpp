// The host's log text, log forms and step lines, and the summary's drawing
// reader on a missing file.
#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "host/log_text.hpp"
#include "host/log_writer.hpp"
#include "host/progress.hpp"
#include "summary/summary.hpp"
#include "support/golden.hpp"

using namespace vlthost;

TEST(HostLogText, ControlBytesAndBrokenUtf8AreEscapedAndLongMessagesShortened) {
  EXPECT_EQ(escapeControlBytes("a\nb\tc\rd\001e\177f"), "a\\nb\\tc\\rd\\x01e\\x7Ff");
  EXPECT_EQ(escapeControlBytes("\xC3 \xFF caf\xC3\xA9 \xE2\x82\xAC C:\\dir"),
            "\\xC3 \\xFF caf\xC3\xA9 \xE2\x82\xAC C:\\dir");
  EXPECT_EQ(escapeControlBytes("\xED\xA0\x80"), "\\xED\\xA0\\x80");  // a surrogate is no UTF-8
  // Long messages keep head and tail.
  EXPECT_EQ(shortenMiddle(std::string(480, 'a')), std::string(480, 'a'));
  std::string shortened = shortenMiddle("head" + std::string(1000000, 'x') + "tail");
  EXPECT_LT(shortened.size(), 520u);
  EXPECT_EQ(shortened.substr(0, 4), "head");
  EXPECT_EQ(shortened.substr(shortened.size() - 4), "tail");
  EXPECT_NE(shortened.find(" [... 999568 bytes left out ...] "), std::string::npos);
  // The cut does not split a two-byte character.
  std::string accents;
  for (int i = 0; i < 300; ++i) accents += "\xC3\xA9";
  EXPECT_EQ(escapeControlBytes(shortenMiddle(accents)).find("\\x"), std::string::npos);
}

TEST(HostLogWriter, PeopleFormMergesTheTwoSinksOfOneMessage) {
  std::ostringstream out;
  {
    CLogWriter log(out, ELogFormat::People);
    log.header("vlt2hrw-host 1.0: run");
    log.write("translation", "WARN", "one\x02");
    log.write("component", "WARN", "one\x02");
    log.write("component", "WARN", "one\x02");  // the same sink again is a second message
    log.write("init", "INFO", "two");
  }
  std::string text = std::regex_replace(out.str(), std::regex("[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3} "), "T ");
  text = std::regex_replace(text, std::regex("^=== [0-9-]+ T?[0-9:]+ UTC "), "=== DATE ");
  vlttest::expectGolden("HostLogWriter.PeopleForm", {text});
  std::ostringstream exact;
  CLogWriter log(exact, ELogFormat::Exact);
  log.header("not in the exact form");
  log.write("translation", "ERROR", "a\nb");
  EXPECT_EQ(exact.str(), "translation ERROR a\\nb\n");
}

TEST(HostProgress, OneLinePerStepWithItemsWarningsAndResult) {
  std::ostringstream out;
  CProgress progress(out, EProgress::Lines);
  progress.callBegin("new_1d_list");  // no step of its own
  progress.callEnd("new_1d_list", "RID1");
  progress.callBegin("save_catalogs");
  progress.message("translation", "INFO", "Saving catalog: /lib/catalogs/digital");
  progress.message("component", "INFO", "Saving catalog: /lib/catalogs/digital");
  progress.message("translation", "WARN", "Saving catalog: /lib/catalogs/analog");
  progress.callEnd("save_catalogs", "true");
  progress.step("Symbols");
  progress.message("translation", "INFO", "Following number of symbols found for partition logic: 2");
  progress.callBegin("write_neutral_symbol_data");
  progress.callEnd("write_neutral_symbol_data", "false");
  progress.callBegin("verify_symbols");
  progress.callEnd("verify_symbols", "true");
  progress.finish();
  std::string text = std::regex_replace(out.str(), std::regex(", [0-9.]+ s\n"), ", D\n");
  EXPECT_EQ(text,
            "save_catalogs: done, 2 items, 1 warning, D\n"
            "Symbols: FAILED (write_neutral_symbol_data answered false), D\n");
  EXPECT_EQ(CProgress::durationText(std::chrono::seconds(187)), "3 min 07 s");
}

// What a readable drawing holds is checked through the summary page.
TEST(SummaryDrawing, MissingFileIsReportedAsNotValid) {
  vltsummary::TDrawing missing = vltsummary::readDrawing("/nonexistent.sym");
  EXPECT_FALSE(missing.valid);
  EXPECT_EQ(missing.problem, "cannot read /nonexistent.sym");
}
