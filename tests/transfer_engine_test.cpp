#include "firmware/transfer_engine.h"

#include <regex>

#include <gtest/gtest.h>

#include "firmware/download.h"
#include "platform/files.h"
#include "tests/firmware_testing.h"

namespace zep::firmware {
namespace {

using link::Transfer;
using services::Answer;
using services::Failure;
using std::chrono::milliseconds;
using testing::FirmwareBench;
using testing::ImageBytes;

TEST(TransferEngine, TwoRadiosMoveInLockstep) {
  FirmwareBench bench;
  bench.Script({1, 3});
  EXPECT_EQ(bench.Run(), "1010 2 0");
  EXPECT_EQ(testing::Shorten(bench.Wire()),
            "1<FF 1<b*256 3<FF 3<b*256 1<0 3<0 1<B 3<B 1<d 3<d 1<E 3<E 1>1F 1>D5 1>a 3>1F 3>D5 3>a "
            "1<r 1>r 3<r 3>r 1<0 1>0 3<0 3>0 "
            "1<00 1>00 3<00 3>00 1<01 1>01 3<01 3>01 1<00 1>00 3<00 3>00 1<00 1>00 3<00 3>00 "
            "1<02 1>02 3<02 3>02 1<A5*128 3<A5*128 1>. 3>. 1<A5*128 3<A5*128 1>. 3>. "
            "1<FF 3<FF 1<^ 3<^");
  EXPECT_EQ(bench.view.notes,
            "Downloading Radio Firmware\ncancel off\n"
            "0 to 256\nWriting bootstrap file 1 to communication port 1\n"
            "0 to 256\nWriting bootstrap file 1 to communication port 3\n"
            "cancel on\n0 to 1\nStatus: Writing bootstrap file 2\n"
            "0 to 723\nStatus: Downloading radio firmware\n"
            "Completed writing data\nCompleted writing data\n"
            "Status: Closing communication ports...\n");
  EXPECT_EQ(bench.Boxes(), "ask; done 1; done 3; ");
  const PortFacts& facts = bench.view.ports[3];
  EXPECT_EQ(facts.state, link::PortState::kActive);
  EXPECT_EQ(facts.micro, MicroType::kA1);
  EXPECT_EQ(facts.flash.Name, "AT29C010A 1MBit");
  EXPECT_TRUE(bench.view.ports[2].left_out);
  EXPECT_EQ(bench.port(3).settings, (std::vector<std::string>{"1200,n,8,1", "9600,n,8,1"}));
  // 1 s, 1 s, 0.5 s, 1 s, a header's 0.02 s, 1 s, 0.5 s, 1 s.
  EXPECT_EQ(bench.clock.Now(), milliseconds(6020));
  EXPECT_FALSE(bench.job.others_go_on);
  EXPECT_FALSE(bench.link.Port(1).IsOpen());
}

TEST(TransferEngine, ADotTooManyAcknowledgesNoOtherBlock) {
  FirmwareBench bench;
  bench.Script({1});
  bench.port(1).Answer(std::string(128, '\xA5'), "..");
  bench.Choose(ImageBytes(131072, "ZEP-xx11 ", 0x8000).replace(0x180, 128, 128, '\xA6'));
  EXPECT_EQ(bench.Run(), "2000 1 3") << "nothing answers the second block";
}

TEST(TransferEngine, RunsEndAsTheRadiosAre) {
  const std::string a1 = ImageBytes(131072, "ZEP-xx11 ", 0x8000);
  const std::string large = ImageBytes(262144, "ZEP-xx31 ", 0x8000);
  const std::string e1 = ImageBytes(131072, "ZEP-xx12 ", 0x8000).replace(0xFF, 128, 128, '\xFF');
  struct Row {
    std::string radios, image, result, boxes;  // boxes behind "ask"
  };
  const std::string hold =
      "\n\nNOTE: For ZEP 1300 radios the On button must be pressed until bootstrap1 file is loaded";
  const std::string config = "critical Invalid value in the Config Register of the radio on Com ";
  const std::string micro = "critical Unknown Micro type returned.; ";
  const std::string mixed = "critical You cannot program an E1 and an A1 radio at the same time; ";
  for (const Row& row : std::vector<Row>{
           {"torvik", a1, "1000 723 0", "; done 1; "},
           {"model31", large, "1000 1446 0", hold + "; done 1; "},
           {"conventional", e1, "1000 717 0", "; done 1; "},
           {"torvik torvik torvik,fault=silent@block:100 torvik", a1, "1121 723 3",
            "; silent; done 1; done 2; failed 3; done 4; "},
           {"torvik,fault=silent@block:5 torvik,fault=silent@header:9", a1, "2200 30 3",
            "; silent; silent; nobody; "},
           {"torvik,fault=silent@identification:3,flash=unknown torvik", a1, "2100 723 3",
            "; silent; failed 1; done 2; "},
           {"torvik torvik,fault=brace@header:7=C04", a1, "1200 723 4",
            "; critical [Radio reported error] {C04} Item not recognized; done 1; failed 2; "},
           {"torvik,config=43 torvik", a1, "2100 723 1", "; " + config + "1.; failed 1; done 2; "},
           {"torvik,config=42 torvik,config=44 torvik,config=00 torvik,config=7B", a1, "1111 723 0",
            "; done 1; done 2; done 3; done 4; "},
           {"torvik,config=43", a1, "2000 0 1", "; " + config + "1.; nobody; "},
           {"torvik,fault=wrong@identification:3=7A", a1, "2000 0 1", "; " + micro},
           {"torvik torvik,fault=wrong@identification:3=7A", a1, "1100 723 0",
            "; " + micro + "done 1; done 2; "},
           {"torvik conventional", e1, "2200 0 1", "; " + mixed},
           {"torvik,flash=unknown", a1, "2000 0 1", "; unknown; "},
           {"torvik,fault=wrong@block:10=53", a1, "2000 9 3", "; silent; "},
           {"torvik,fault=drop@block:30", a1, "2000 29 3", "; silent; "},
           {"torvik,fault=wrong@header:2=53", a1, "2000 0 3", "; silent; "},
           {"torvik,manual,fault=drop@finish", a1, "1000 723 0", "; done 1; "}}) {
    SCOPED_TRACE(row.radios);
    FirmwareBench bench;
    bench.Simulate(row.radios);
    const bool by_hand = row.radios.find("manual") != std::string::npos;
    if (by_hand) bench.simulated[0]->Radio().PutIntoBootstrapMode();
    bench.Choose(row.image);
    EXPECT_EQ(bench.Run(), row.result);
    EXPECT_EQ(bench.Boxes(), "ask" + row.boxes);
    EXPECT_EQ(bench.view.notes.find("Error writing data\n") != std::string::npos,
              row.boxes.find("failed") != std::string::npos);
    const simulator::Bytes image = simulator::BytesOf(row.image);
    for (std::size_t at = 0; at < bench.simulated.size(); ++at) {
      const simulator::SimulatedRadio& radio = bench.simulated[at]->Radio();
      const bool is_done = row.result[at] == '1';
      EXPECT_EQ(radio.FlashMatches(image), is_done);
      EXPECT_EQ(radio.Counts().restarts, is_done && !by_hand ? 1U : 0U);
    }
  }
}

TEST(TransferEngine, LooksAtTheLoadersBeforeUse) {
  std::string all;
  // Name and length of a loader; 0 for none.
  for (const auto& [file, length] :
       std::vector<std::pair<std::string, std::size_t>>{{"bs.tsk", 0},
                                                        {"bs.tsk", 255},
                                                        {"bs.tsk", 257},
                                                        {"dl.tsk", 0},
                                                        {"dl.tsk", 2000},
                                                        {"dl.tsk", 2001}}) {
    FirmwareBench bench;
    bench.Script({1});
    if (length == 0) std::filesystem::remove(bench.folder.Path(file));
    if (length > 0) bench.folder.Write(file, std::string(length, 'd'));
    all += bench.Run() + " ";
    const std::string wire = testing::Shorten(bench.Wire());
    EXPECT_EQ(bench.Boxes().find("\nThe files bs.tsk and dl.tsk come with the radio's firmware. "
                                 "Please put them into the folder " +
                                 bench.folder.Path() + ".") != std::string::npos,
              bench.Boxes().find("Please reinstall") != std::string::npos);
    all += std::regex_replace(bench.Boxes(), std::regex("\nThe files.*\\.; "), "; ") +
           wire.substr(wire.rfind(' ') + 1) + "\n";
  }
  EXPECT_EQ(
      all,
      "2000 0 5 critical The file bs.tsk does not exist. Please reinstall this application.; \n"
      "2000 0 5 ask; information Invalid bootstrap file (bs.tsk); \n"
      "2000 0 5 ask; information Invalid bootstrap file (bs.tsk); \n"
      "2000 0 5 ask; critical The file dl.tsk does not exist. Please reinstall this application.; "
      "1<b*256\n"
      "1000 2 0 ask; done 1; 1<^\n"
      "2000 0 5 ask; critical The file dl.tsk is corrupt. Please reinstall this application.; "
      "1<B\n");
}

TEST(TransferEngine, CancelStopsTheRunAtAnyTurn) {
  int turns = 0;
  for (int turn = 0; turn <= turns; ++turn) {
    for (const Answer answer : {Answer::kNo, Answer::kYes}) {
      SCOPED_TRACE(std::to_string(turn) + (answer == Answer::kYes ? " yes" : " no"));
      FirmwareBench bench;
      bench.Script({1});
      TransferRun run(bench.job, bench.firmware, bench.view, Transfer::kProgram);
      bench.user.while_shown = [&] { bench.clock.Sleep(milliseconds(60000)); };
      bench.user.on_turn = [&](int now) {
        if (now != turn) return;
        bench.user.WillAnswer("This action will leave the radio in an undefined state. Cancel?",
                              answer);
        bench.session.jobs.Cancel();
        bench.Wire();
      };
      bench.view.on_status = [&](const std::string& status) {
        // Too late: nothing is asked.
        if (status == "Completed writing data") bench.session.jobs.Cancel();
      };
      RunTransfer(run);
      if (turn == 0) turns = bench.user.turns - 10;  // the last ones close the ports
      const bool stopped = turn > 0 && answer == Answer::kYes;
      EXPECT_EQ(run.result.ports[0].outcome, stopped ? RadioOutcome::kFailed : RadioOutcome::kDone);
      EXPECT_EQ(run.result.outcome.failure, stopped ? Failure::kCancelled : Failure::kNone);
      EXPECT_EQ(bench.job.DownloadSucceeded, !stopped);
      EXPECT_EQ(bench.Wire().ends_with("1<^"), !stopped);
      EXPECT_FALSE(bench.link.Port(1).IsOpen());
    }
  }
  EXPECT_GT(turns, 40);
}

// The bytes that were checked are the ones that are sent, whatever becomes of the file.
TEST(TransferEngine, AnImageThatIsReplacedMeanwhileIsNotFlashed) {
  FirmwareBench bench;
  bench.Simulate("torvik");
  const std::string image = ImageBytes(131072, "ZEP-xx11 ", 0x8000);
  bench.Choose(image);
  bench.user.on_turn = [&](int) {
    if (bench.clock.Now() < milliseconds(1500)) return;
    bench.folder.Write("image.bin", ImageBytes(262144, "ZEP-xx62 ", 0x8000));
    bench.user.on_turn = nullptr;
  };
  EXPECT_EQ(bench.Run(), "1000 723 0");
  EXPECT_EQ(bench.user.on_turn, nullptr) << "it was replaced";
  EXPECT_TRUE(bench.simulated[0]->Radio().FlashMatches(simulator::BytesOf(image)));
}

TEST(TransferEngine, UploadReadsTheOnlyActivePort) {
  FirmwareBench bench;
  bench.Simulate("conventional conventional");
  bench.windows.on_selection = [](link::Job& job) { SelectPort(job, 2); };
  ChooseImageFile(bench.firmware.image, bench.folder.Write("up.bin", std::string(300000, 'x')));
  EXPECT_EQ(bench.Run({}, Transfer::kRead), "0100 1434 0");
  EXPECT_EQ(bench.Boxes(), "ask; read 2; ");
  const std::string file = bench.folder.Read("up.bin").value_or("");
  EXPECT_EQ(file.size(), 262144U);
  EXPECT_TRUE(bench.simulated[1]->Radio().FlashMatches(simulator::BytesOf(file)));
  EXPECT_EQ(file.substr(0x1D000, 0x3000), std::string(0x3000, '\xFF'));
  EXPECT_EQ(bench.view.progress, 2048);
}

TEST(TransferEngine, UploadThatFailsLeavesNoFile) {
  const std::string disk_full =
      "critical Error: 28 No space left on device[WriteRadioSoftware]\nThere is no space left for "
      "/dev/full. Please delete files that are not needed, or choose a folder on another disk.; ";
  for (const std::size_t length : {126U, 129U, 128U}) {
    SCOPED_TRACE(length);
    FirmwareBench bench;
    bench.Script({3});
    bench.port(3).Answer(".", std::string(length, 'u'));
    bool late = length != 126;
    bench.user.on_turn = [&](int) {
      if (!late && bench.clock.Now() >= milliseconds(7000)) bench.port(3).Receive("u"), late = true;
    };
    const bool full = length == 128;
    const std::string file = full ? "/dev/full" : bench.folder.Write("up.bin", "old");
    ChooseImageFile(bench.firmware.image, file);
    EXPECT_EQ(bench.Run({}, Transfer::kRead), full ? "0020 0 5" : "0020 0 3");
    EXPECT_EQ(bench.Boxes(), "ask; " + (full ? disk_full : "silent; "));
    EXPECT_EQ(platform::FileExists(file), full);
    // The loaders 3.5 s, a header, 4 s from the last byte on, closing 1 s.
    EXPECT_EQ(bench.clock.Now() / milliseconds(10), full ? 450 : length == 126 ? 1200 : 852);
  }
}

TEST(TransferEngine, AllAtOnceTakesTheTimeOfOne) {
  const auto seconds = [](const std::string& radios, std::optional<bool> at_once) {
    FirmwareBench bench;
    bench.Script({});
    bench.firmware.A1MemoryMap[1].Blocks = 30;
    bench.Simulate(radios);
    bench.user_hive.Write("Software\\Vorn Electronics Ltd\\ZEP\\Download", "SendToAllAtOnce", "1");
    bench.Run({.at_once = at_once, .automatic_upgrade = true});
    EXPECT_EQ(bench.Boxes(), "ask; ");
    const TransferStatistics& data = bench.result.statistics;
    return std::chrono::duration<double>(data.ended - data.began).count();
  };
  const double one = seconds("torvik,paced", false);
  const std::string four = "torvik,paced torvik,paced torvik,paced torvik,paced";
  EXPECT_NEAR(one, 30 * 129 / 960.0, 0.1);
  EXPECT_LT(seconds(four, true), 1.05 * one);
  EXPECT_LT(seconds(four, std::nullopt), 1.05 * one);
  EXPECT_GT(seconds(four, false), 3.9 * one);
}

// The windows of a download, which note what is asked of them; one step fails.
struct NotedWindows final : DownloadWindows {
  NotedWindows(FirmwareBench& the_bench, std::string failing)
      : bench(the_bench), stop_at(std::move(failing)) {}
  FirmwareBench& bench;
  std::string stop_at, steps;
  int tier = 1;  // of the radio

  services::Outcome Note(link::Job& job, const std::string& step) {
    steps += step + " ";
    if (step == stop_at) job.RequestCancel();
    return job.Ended(true);
  }
  services::Outcome ReadRadioData(radiodb::RadioDb& db) override {
    db.data_file = "/d/1.ops";
    db.identity.tier = tier;
    return Note(db.job, "read" + std::to_string(static_cast<int>(db.transfer_kind)));
  }
  services::Outcome ProgramRadioData(radiodb::RadioDb& db, const std::string& file) override {
    return Note(db.job, file + std::to_string(static_cast<int>(db.transfer_kind)));
  }
  TransferResult TransferFirmware(link::Job& job, Firmware&, Transfer direction) override {
    TransferResult result;
    if (stop_at != "early") result.ports[0].micro = MicroType::kA1;
    result.succeeded = Note(job, direction == Transfer::kProgram ? "write" : "?").Done();
    if (stop_at == "early") job.RequestCancel(), result.succeeded = false;
    return result;
  }
};

TEST(Download, DoesFirmwareAndDataInTheirOrder) {
  struct Row {
    std::string model, data_file;  // of the image; empty: no image
    bool auto_save;
    std::string stop_at, steps, boxes, wire;  // steps with their kind
  };
  const std::string trunked = "1<^ 1>v 1<# 1>> 1<0D 1<w 1<4 1<F 1<8 1<0*2 1<1 1<0*4 1<0D 1<^";
  const std::string ask = "question Program default data file: /x/b.ops -> Yes\n";
  const std::string refused = "question Program default data file: /x/b.ops -> No\n";
  const std::string none = "critical Please select a valid file to down load.; ";
  const std::string turn_on = "information Please turn radio on so data may be programmed.; ";
  const std::string data_is =
      "information The data of this radio is in /d/1.ops. Please keep this file until the radio "
      "has its data back.; ";
  const std::string other_model =
      "question The firmware file a.bin is for a ZEP 1200, but the radio is a ZEP 1100. Download "
      "it nevertheless? -> No\n";
  for (const Row& row :
       std::vector<Row>{{"11", "", false, "", "write ", "", ""},
                        {"11", "b.ops", false, "", "write /x/b.ops0 ", ask, ""},
                        {"11", "b.ops", false, "", "write ", refused, ""},
                        {"12", "b.ops", false, "write", "write ", "", ""},
                        {"11", "b.ops", true, "", "read1 write /d/1.ops1 ", "", ""},
                        {"11", "", true, "read1", "read1 ", "", ""},
                        {"11", "", true, "write", "read1 write ", data_is, ""},
                        {"11", "", true, "early", "read1 write ", "", ""},
                        {"11", "", true, "/d/1.ops1", "read1 write /d/1.ops1 ", data_is, ""},
                        {"21", "", true, "?", "read1 ", other_model, ""},
                        {"31", "", true, "", "read1 write /d/1.ops1 ", turn_on, ""},
                        {"12", "b.ops", false, "", "write /x/b.ops0 ", ask, trunked},
                        {"", "b.ops", true, "-", "", none, ""}}) {
    SCOPED_TRACE(row.model + row.steps);
    FirmwareBench bench;
    bench.TestLink::Choose(1);
    bench.port(1).Answer("^", "v");
    bench.port(1).Answer("#", ">");
    bench.folder.Write("a.bin", ImageBytes(131072, "ZEP-xx" + row.model, 0x8000));
    if (row.boxes == refused) bench.user.WillAnswer("Program default data file", Answer::kNo);
    if (row.boxes == ask) bench.user.WillAnswer("Program default data file", Answer::kYes);
    if (row.boxes == other_model) bench.user.WillAnswer("The firmware file", Answer::kNo);
    NotedWindows windows(bench, row.stop_at);
    if (row.model == "31") windows.tier = 3;
    radiodb::LastRadio radio;
    EXPECT_EQ(DownloadFirmwareAndData({bench.link, bench.firmware, radio, windows},
                                      {row.model.empty() ? "" : "a.bin", bench.folder.Path(),
                                       row.data_file, "/x", row.auto_save})
                  .Done(),
              row.stop_at.empty());
    EXPECT_EQ(windows.steps, row.steps);
    EXPECT_EQ(bench.folder.Renamed(bench.Boxes()), row.boxes);
    EXPECT_EQ(testing::Shorten(bench.Wire()), row.wire);
    EXPECT_EQ(bench.port(1).settings.size(), row.wire.empty() ? 0U : 1U);
    EXPECT_FALSE(bench.link.Port(1).IsOpen());
  }
}

}  // namespace
}  // namespace zep::firmware
