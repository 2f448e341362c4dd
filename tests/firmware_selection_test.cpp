#include "upgrade/firmware_selection.h"

#include <sstream>

#include <gtest/gtest.h>

#include "services/locate_file.h"
#include "tests/testing.h"

namespace zep::upgrade {
namespace {

using services::Answer;

// Rows: versions, a bar, the file for each group of tiers.
void CheckSelection(const std::string& family, const std::vector<std::vector<int>>& tiers,
                    const std::vector<std::string>& rows) {
  for (const std::string& row : rows) {
    std::istringstream versions(row.substr(0, row.find('|')));
    for (std::string version; versions >> version;) {
      std::istringstream files(row.substr(row.find('|') + 1));
      for (const std::vector<int>& group : tiers) {
        std::string file;
        files >> file;
        for (const int tier : group)
          EXPECT_EQ(SelectFirmware(family, tier, version), file) << version << " tier " << tier;
      }
    }
  }
}

TEST(FirmwareSelection, ChoosesTheConversionImagesOfVornPmrII) {
  CheckSelection(
      "Vorn PMR II", {{3}, {1, 10}, {2, 11}, {0, 4, 5, 6, 7, 8, 9, 12, 13}},
      {"0303 0304 0313 0314 0315 0316 | QPP31CNV.BIN %UNSUPPORTED% %UNSUPPORTED% %UNSUPPORTED%",
       "0323 0324 0325 0326 0327 0328 0329 0330 0333 0334 | "
       "%UNSUPPORTED% QOP43CNV.BIN QOP63CNV.BIN %UNSUPPORTED%",
       "0335 0317 | %UPTODATE% %UPTODATE% %UPTODATE% %UPTODATE%",
       "0305 0318 0331 0332 0336 0125 0126 303 00303 0303a | "
       "%UNSUPPORTED% %UNSUPPORTED% %UNSUPPORTED% %UNSUPPORTED%"});
}

TEST(FirmwareSelection, ChoosesThePhaseImagesOfTorvik) {
  CheckSelection(
      "Torvik", {{3}, {1, 10}, {2, 11}, {0, 4, 13}},
      // NOLINTNEXTLINE(bugprone-suspicious-missing-comma): a row of versions and files
      {"0107 0108 0109 0116 0122 0123 0124 0125 | "
       "PP31PhaseI.bin PP11PhaseI.bin PP21PhaseI.bin PhaseI.bin",
       "0303 0304 0313 0314 0315 0316 | "
       "PP31PhaseII.bin PP11PhaseII.bin PP21PhaseII.bin PhaseII.bin",
       "0323 0324 0325 0326 0327 0328 0329 0330 | "
       "PP31PhaseIII.bin PP11PhaseIII.bin PP21PhaseIII.bin PhaseIII.bin",
       "0126 0317 0334 | %UPTODATE% %UPTODATE% %UPTODATE% %UPTODATE%",
       "0333 0335 0106 0110 0331 125 | %UNSUPPORTED% %UNSUPPORTED% %UNSUPPORTED% %UNSUPPORTED%"});
}

TEST(FirmwareSelection, KnowsNoOtherFamily) {
  for (const char* family : {"ZEP", "torvik", "Torvik ", "Vorn PMR", ""})
    CheckSelection(family, {{1, 3}}, {"0303 0317 0335 | %UNSUPPORTED%"});
}

TEST(FirmwareSelection, FindsAFileWhereTheUserShowsIt) {
  testing::TestSession test;
  const std::string other = test.folder.Write("elsewhere/other.bin", "x");
  std::string folder = test.folder.Path("");
  std::string name = "gone.bin";
  const auto get = [&] {
    return GetFile(test.session, folder, name, services::FindTitle(test.session, name));
  };
  test.user.WillAnswer("Cannot find gone.bin would you like to locate the file?", Answer::kNo);
  EXPECT_FALSE(get());
  for (const std::optional<std::string>& choice : {std::optional<std::string>(), {other}}) {
    test.user.WillAnswer("Cannot find", Answer::kYes);
    test.user.WillChoose("open", choice);
    EXPECT_EQ(get(), choice.has_value());
  }
  EXPECT_EQ(folder + name, other);
  EXPECT_EQ(test.user.file_requests[1].title, "Find gone.bin...");
  EXPECT_EQ(test.user.file_requests[1].filter, "All files|*.*");
  EXPECT_TRUE(get()) << "now it is there";
}

}  // namespace
}  // namespace zep::upgrade
