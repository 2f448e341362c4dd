#include <cstdio>
#include <sstream>

#include <gtest/gtest.h>

#include "firmware/bootstraps.h"
#include "firmware/download.h"
#include "firmware/transfer_report.h"
#include "services/hex_text.h"
#include "tests/firmware_testing.h"

namespace zep::firmware {
namespace {

using testing::ImageBytes;
using testing::TestLink;
using testing::TestSession;

// Bank/kind start-end @file offset *blocks.
std::string RowText(const MemoryMapEntry& row) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%d/%d %X-%X @%X *%d", row.Bank,
                static_cast<int>(row.Kind), static_cast<unsigned>(row.StartAddress),
                static_cast<unsigned>(row.EndAddress), static_cast<unsigned>(row.FileOffset),
                row.Blocks);
  return text.data();
}

TEST(MemoryMaps, AreAsTheDownloadersExpectThem) {
  const MemoryMap a1 = BuildA1MemoryMap();
  const MemoryMap e1 = BuildE1MemoryMap();
  std::string all;
  std::string different;
  for (std::size_t at = 0; at < a1.size(); ++at) {
    all += RowText(a1[at]) + "\n";
    if (RowText(e1[at]) != RowText(a1[at]))
      different += std::to_string(at + 1) + ": " + RowText(e1[at]) + "\n";
  }
  EXPECT_EQ(all,
            "0/2 0-100 @0 *2\n0/1 100-1000 @100 *30\n0/2 1000-1080 @1000 *1\n"
            "0/1 1080-5000 @1080 *127\n0/2 5000-8000 @5000 *96\n0/1 8000-B600 @8000 *108\n"
            "0/2 B600-B800 @B600 *4\n0/1 B800-FFFF @B800 *144\n1/3 0-100 @10000 *2\n"
            "1/1 100-1000 @10100 *30\n1/3 1000-1080 @11000 *1\n1/1 1080-5000 @11080 *127\n"
            "1/3 5000-8100 @15000 *98\n2/1 100-1000 @18100 *30\n2/3 1000-1080 @19000 *1\n"
            "2/1 1080-5000 @19080 *127\n2/3 D000-1FFFF @1D000 *96\n3/2 0-100 @20000 *2\n"
            "3/1 100-1000 @20100 *30\n3/2 1000-1080 @21000 *1\n3/1 1080-5000 @21080 *127\n"
            "3/2 5000-8000 @25000 *96\n3/1 8000-B600 @28000 *108\n3/2 B600-B800 @2B600 *4\n"
            "3/1 B800-FFFF @2B800 *144\n4/3 0-100 @30000 *2\n4/1 100-1000 @30100 *30\n"
            "4/3 1000-1080 @31000 *1\n4/1 1080-5000 @31080 *127\n4/3 5000-8100 @35000 *98\n"
            "5/1 100-1000 @38100 *30\n5/3 1000-1080 @39000 *1\n5/1 1080-5000 @39080 *127\n"
            "5/3 D000-1FFFF @3D000 *96\n");
  EXPECT_EQ(different,
            "1: 0/2 0-200 @0 *4\n2: 0/1 200-1000 @200 *28\n9: 1/3 0-200 @10000 *4\n"
            "10: 1/1 200-1000 @10200 *28\n13: 1/3 5000-8200 @15000 *100\n"
            "14: 2/1 200-1000 @18200 *28\n18: 3/2 0-200 @20000 *4\n19: 3/1 200-1000 @20200 *28\n"
            "26: 4/3 0-200 @30000 *4\n27: 4/1 200-1000 @30200 *28\n30: 4/3 5000-8200 @35000 *100\n"
            "31: 5/1 200-1000 @38200 *28\n");
}

TEST(FlashDevices, AreKnownByMakerAndDevice) {
  std::string text;
  for (const int bytes : {0x1FD5, 0x1FDA, 0x1F00, 0xBF10, 0xBF24, 0xBFD5, 0x0102}) {
    const FlashDevice flash =
        IdentifyFlashDevice(services::GetHighByte(bytes), services::GetLowByte(bytes));
    text += flash.Name + " " + std::to_string(static_cast<int>(flash.Size)) + "\n";
  }
  EXPECT_EQ(text,
            "AT29C010A 1MBit 1\nAT29C020 2MBit 2\n 0\nSST29EE020 2MBit 2\nSST29SF020 2MBit 2\n 0\n"
            "Unknown 3\n");
}

TEST(ImageFiles, AreRecognisedByMarkerAndSize) {
  const auto a1 = [](std::string_view identity, std::size_t offset, std::size_t size = 131072) {
    return ImageBytes(size, identity, offset);
  };
  const std::string e1 = a1("ZEP-xx52 ", 0x8000).replace(0xFF, 128, 128, '\xFF');
  const std::string unknown = "information Radio Model is invalid, will be set to 'ZEP 1100'.; ";
  const std::string past_end =
      "critical Error: 62 Input past end of file[CheckForValidFile]\nThe file F ";
  struct Row {
    std::string name, contents, found;  // model, type, micro, flash, after 9, X, 9, 9; boxes
  };
  for (const Row& row : std::vector<Row>{
           {"A1", a1("ZEP-xx52 ", 0x8000), "valid 7 Trunked 1 1|"},
           {"2 Mbit E1", e1 + std::string(131072, '\0'), "valid 7 Trunked 2 2|"},
           {"last of the area", std::string(e1).replace(0x17E, 1, "1"), "valid 7 Trunked 1 1|"},
           {"before the area", std::string(e1).replace(0xFE, 1, "1"), "valid 7 Trunked 2 1|"},
           {"behind the area", std::string(e1).replace(0x17F, 1, "1"), "valid 7 Trunked 2 1|"},
           {"first in the window", a1("ZEP-xx43 ", 0x7FFF), "valid 10 Conventional 1 1|"},
           {"before the window", a1("ZEP-xx43 ", 0x7FFE), "refused 9 X 1 9|"},
           {"last in the window", a1("ZEP-xx81 ", 0xFFF9), "valid 12 Conventional 1 1|"},
           {"behind the window", a1("ZEP-xx81 ", 0xFFFF), "refused 9 X 1 9|"},
           {"cut by the window's end", a1("ZEP-xx81 ", 0xFFFA),
            "refused 9 X 9 9|critical Error: 9 Subscript out of range[CheckForValidFile]\nThe "
            "file F "
            "does not say which radio it is for (there is no \"ZEP-xx\" in it), so it is no "
            "firmware file.; "},
           {"repeated start", a1("ZZEP-xx11", 0x8000), "valid 1 Conventional 1 1|"},
           {"unknown model", a1("ZEP-xx92 ", 0x8000), "valid 0 Trunked 1 1|" + unknown},
           {"no digit", a1("ZEP-xx5A ", 0x8000), "valid 0  1 1|" + unknown},
           {"one byte short", a1("ZEP-xx52 ", 0x8000, 262143),
            "refused 7 Trunked 9 9|information File size: 262143 incorrect; "},
           {"one byte long", a1("ZEP-xx11 ", 0x8000, 131073),
            "refused 1 Conventional 9 9|information File size: 131073 incorrect; "},
           {"only the window", a1("", 0, 65535), "refused 9 X 9 9|"},
           {"ends in the identity", a1("ZEP-xx1", 0xFFF9, 65535),
            "refused 9 X 9 9|" + past_end +
                "has 65535 bytes, but a firmware file has 131072 or 262144.; "},
           {"empty", "", "refused 9 X 9 9|" + past_end + "is empty.; "}}) {
    SCOPED_TRACE(row.name);
    TestSession test;
    ChosenImage image{"", "", 9, "X", MicroType{9}, FlashSize{9}, nullptr};
    ChooseImageFile(image, test.folder.Write("a.bin", row.contents));
    std::string found = CheckForValidFile(test.session, image) ? "valid " : "refused ";
    found += std::to_string(image.FirmwareRadioModel) + " " + image.FirmwareRadioType + " " +
             std::to_string(static_cast<int>(image.FirmwareMicroType)) + " " +
             std::to_string(static_cast<int>(image.FirmwareFlashSize)) + "|" +
             testing::Brief(test.user.Boxes());
    if (const auto at = found.find(image.FullName()); at != std::string::npos)
      found.replace(at, image.FullName().size(), "F");
    EXPECT_EQ(found, row.found);
  }
}

TEST(ImageFiles, ThatCannotBeUsedAreExplained) {
  TestSession test;
  ChosenImage image;
  ChooseImageFile(image, test.folder.Path("a.bin"));
  const std::string name = image.FullName();
  const auto problem = [&] {
    EXPECT_FALSE(CheckForValidFile(test.session, image));
    return ImageProblemText(test.session, *image.contents);
  };
  EXPECT_EQ(problem(), "There is no file " + name +
                           ". Please check its name and folder, or choose another file.");
  test.folder.Write("a.bin/b", "");
  EXPECT_EQ(problem(), name + " is a folder. Please choose a file.");
  EXPECT_EQ(test.user.Boxes(), "");
  std::filesystem::remove_all(name);
  test.folder.Write("a.bin", ImageBytes(131073, "ZEP-xx11 ", 0x8000));
  EXPECT_EQ(problem(), "The file " + name +
                           " has 131073 bytes, but a firmware file has 131072 or "
                           "262144. Please choose another file.");
}

TEST(ImageFiles, AreComparedWithEveryRadio) {
  std::string all;
  // Model, micro and flash of the image; micro and flash of the radios from port 2 on.
  for (const std::string text :
       {"311 A1 1", "422 E1 2", "321 A1 1", "111 A1 2", "111 E1 2 A1 1 E1 1", "112 none 1",
        "421 A1 1", "421 A1 1 in house", "412 A1 1 E1 2", "112 A1 0", "111 A1 3 A1 3",
        "111 A1 3 E1 1"}) {
    TestLink test;
    Firmware firmware;
    testing::QuietView view;
    TransferRun run(test.job, firmware, view, link::Transfer::kProgram);
    firmware.image.FirmwareRadioModel = text[0] - '0';
    firmware.image.FirmwareMicroType = MicroType{text[1] - '0'};
    firmware.image.FirmwareFlashSize = FlashSize{text[2] - '0'};
    test.session.in_house = text.ends_with("in house");
    std::istringstream radios(text.substr(3));
    std::string micro;
    int flash = 0;
    for (int port = 2; port <= 4 && radios >> micro >> flash; ++port) {
      run.Facts(port).micro = micro == "A1"   ? MicroType::kA1
                              : micro == "E1" ? MicroType::kE1
                                              : MicroType::kUnknown;
      run.Facts(port).flash.Size = FlashSize{flash};
    }
    VerifyFlashFile(run);
    EXPECT_EQ(test.job.DownloadError, !test.user.Boxes().empty());
    all += text + ": " + testing::Brief(test.user.Boxes()) + "\n";
  }
  EXPECT_EQ(all,
            "311 A1 1: \n422 E1 2: \n321 A1 1: \n111 A1 2: \n"
            "111 E1 2 A1 1 E1 1: A1 into E1; A1 into E1; \n112 none 1: 2 into 1; \n"
            "421 A1 1: hardware; \n421 A1 1 in house: \n"
            "412 A1 1 E1 2: 2 into 1; hardware; A1 into E1; \n112 A1 0: \n"
            "111 A1 3 A1 3: unknown; \n111 A1 3 E1 1: A1 into E1; \n");
}

TEST(DownloadChoices, AreKeptWithTheirSeparators) {
  TestSession test;
  const std::string separator(1, services::kPathSeparator);
  EXPECT_EQ(LoadDownloadChoices(test.session).DataFilePath,
            test.folder.Path("Data Files") + separator);
  SaveDownloadChoices(test.session, {"a.bin", "typed", "b.ops", "kept" + separator, false});
  const DownloadChoices choices = LoadDownloadChoices(test.session);
  EXPECT_EQ(choices.BinaryFilePath + choices.BinaryFileName, "typed" + separator + "a.bin");
  EXPECT_EQ(choices.DataFilePath + choices.DataFileName, "kept" + separator + "b.ops");
}

TEST(ErrorReplies, TheReportOfAnUploadNamesActiveAndFailedPortsInOrder) {
  TestLink test;
  testing::NotedView view;
  Firmware firmware;
  TransferRun run(test.job, firmware, view, link::Transfer::kRead);
  test.job.CommStates = {link::PortState::kActive, link::PortState::kAvailable,
                         link::PortState::kErrorDetected, link::PortState::kNotAvailable};
  TransferReport(run);
  EXPECT_EQ(test.user.Boxes(),
            "information Completed uploading firmware from radio on communication port 1 -> OK\n"
            "critical Error uploading firmware from radio on communication port 3 -> OK\n");
  EXPECT_EQ(view.notes, "");
}

TEST(Bootstrap, NoLoaderGoesOutOnceTheLinkHasFailed) {
  TestLink test;
  testing::QuietView view;
  test.Activate({1, 4});
  test.folder.Write("bs.tsk", std::string(256, 'b'));
  test.job.DownloadError = true;
  SendBootStrap1ToAllComms(test.job, view);
  EXPECT_EQ(test.Wire(), "1<FF 4<FF") << "each port gets its leading byte and no more";
}

}  // namespace
}  // namespace zep::firmware
