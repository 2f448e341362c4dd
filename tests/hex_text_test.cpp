#include "services/hex_text.h"

#include <sstream>

#include <gtest/gtest.h>

#include "tests/testing.h"

namespace zep::services {
namespace {

using testing::TestSession;

struct HexRow {
  std::string text;
  std::string result;
  std::string_view boxes = {};
};

// Converts each text in a session of its own.
template <typename Convert>
void Check(const Convert& convert, const std::vector<HexRow>& rows) {
  for (const HexRow& row : rows) {
    SCOPED_TRACE(row.text);
    TestSession test;
    std::ostringstream result;
    result << convert(test.session, row.text);
    EXPECT_EQ(result.str(), row.result);
    EXPECT_EQ(test.user.Boxes(), row.boxes);
  }
}

TEST(HexText, ReadsNumbersAndTellsWhatItCannotRead) {
  constexpr auto overflow = "critical [ConHexNumToLng] Error Number: 6, Overflow -> OK\n";
  constexpr auto bad_character = "critical [ConHexNumToLng] Error Number: 0,  -> OK\n";
  Check(ConHexNumToLng, {{"", "0"},
                         {"FF", "255"},
                         {"1000000", "16777216"},
                         {"000000007FFFFFFF", "2147483647"},
                         {"80000000", "0", overflow},
                         {"7FFFFFFf", "0", overflow},  // the sum, not a term
                         {"1" + std::string(40, '0'), "0", overflow},
                         {"a", "42"},  // a lower-case letter counts 32 more
                         {"1f", "63"},
                         {"1G", "0", bad_character},
                         {"G80000000", "0", overflow},  // read from the right
                         {" 1", "0", bad_character}});
}

TEST(HexText, ReadsBytesAndComplainsOnlyAboutTheirLength) {
  Check(ConHexByteToInt,
        {{"00", "0"},
         {"7B", "123"},
         {"0G", "0"},
         {"A?", "160"},
         {"ff", "799"},
         {"1", "0", "critical Data: 1 is not correct length [ConHexByteToInt] -> OK\n"},
         {"123", "0", "critical Data: 123 is not correct length [ConHexByteToInt] -> OK\n"}});
}

TEST(HexText, ChecksumMakesTheSumAMultipleOf256) {
  const std::string bytes_of_ff(256, 'F');
  Check(CalcHexChecksum,
        {{"", "00"},
         {"FF01", "00"},
         {"0102", "FD"},
         {bytes_of_ff, "80"},
         {"01020", "FD", "critical Data: 0 is not correct length [ConHexByteToInt] -> OK\n"},
         {bytes_of_ff + "FF", "", "critical Error: 6 Overflow[CalcHexChecksum] -> OK\n"}});
}

TEST(HexText, WritesNumbersAndText) {
  EXPECT_EQ(ConLngNumToHex(0), "00000000");
  EXPECT_EQ(ConLngNumToHex(65537), "00010001");
  EXPECT_EQ(ConLngNumToHex(4294967295.0), "FFFFFFFF");
  EXPECT_EQ(ConLngNumToHex(0x12345678), "12345678");
  EXPECT_EQ(ConBytNumToHex(0), "00");
  EXPECT_EQ(ConBytNumToHex(0xAF), "AF");
  EXPECT_EQ(GetHighByte(0xD080), 0xD0);
  EXPECT_EQ(GetLowByte(0xD080), 0x80);
  EXPECT_EQ(ConHexToText("5A45502D7878"), "ZEP-xx");
  EXPECT_EQ(ConHexToText("5A4g502"), "Z?P");
  EXPECT_EQ(ConTextToHex("v\xFF"), "76FF");
}

TEST(HexText, PadsOnEitherSideUpToTheWidth) {
  EXPECT_EQ(PadString("7", PadSide::kLeft, 3, "0"), "007");
  EXPECT_EQ(PadString("7", PadSide::kRight, 3, "0"), "700");
  EXPECT_EQ(PadString("1234", PadSide::kLeft, 3, "0"), "1234");
  EXPECT_EQ(PadString("7", PadSide::kRight, 4, "ab"), "7abab");
  EXPECT_EQ(PadString("7", PadSide::kLeft, 4, ""), "7");
}

}  // namespace
}  // namespace zep::services
