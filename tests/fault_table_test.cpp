// Every procedure against simulated radios with each fault at each step of the conversation, on the
// virtual clock.
//
// Whatever happens, a procedure ends in time, leaves the ports closed and their states as they
// were, and claims success only when everything is as it is without the fault; otherwise it has
// said why.

#include <ostream>

#include <gtest/gtest.h>

#include "radiodb/read_write_radio.h"
#include "simulator/samples.h"
#include "tests/firmware_testing.h"

namespace zep {
namespace {

using services::Failure;
using simulator::FaultKind;
using simulator::Step;

// What a run has brought about, as one text to compare, and how it went.
struct Outcome {
  bool claimed = false;
  std::string result, boxes, states_after;
  Failure failure = Failure::kNone;
  bool ports_closed = true;
  platform::Duration took{};

  void Take(const services::Outcome& ended) {
    claimed = ended.Done();
    failure = ended.failure;
  }
};

struct Bench : testing::FirmwareBench {
  explicit Bench(const std::string& radios) { Simulate(radios); }
};

// A user's action on the radios of a bench: claims success or not, and what it has made.
using Action = std::function<void(Bench&, Outcome&)>;

Outcome Perform(const std::string& radios, const Action& action) {
  Bench bench(radios);
  Outcome outcome;
  const std::string states_before = bench.States(bench.link.CommStates);
  action(bench, outcome);
  outcome.took = bench.clock.Now();
  outcome.boxes = bench.user.Boxes();
  outcome.states_after =
      bench.States(bench.link.CommStates) == states_before ? "as before" : bench.States();
  for (const auto& port : bench.link.ports)
    outcome.ports_closed = outcome.ports_closed && !port->IsOpen();
  return outcome;
}

void Identify(Bench& bench, Outcome& outcome) {
  radiodb::LastRadio radio;
  radiodb::RadioDb db(bench.job, radio);
  outcome.Take(radiodb::ReadSpecification(db));
  outcome.result = db.identity.model_string + " " + db.identity.serial_number + " " +
                   db.identity.software_version + " " + db.identity.database_version + " " +
                   std::to_string(db.identity.networks);
}

void Read(Bench& bench, Outcome& outcome) {
  radiodb::LastRadio radio;
  radiodb::RadioDb db(bench.job, radio);
  db.transfer_kind = radiodb::TransferKind::kBoth;
  db.database_folder = db.calibration_folder = bench.folder.Path() + "/";
  outcome.Take(radiodb::ReadRadio(db, bench.view));
  for (const std::string& file : {db.data_file, db.calibration_file}) {
    if (file.empty()) continue;
    outcome.result +=
        bench.folder.Read(std::filesystem::path(file).filename().string()).value_or("none");
  }
}

// Programs the radio's factory data, of which one byte of an item was changed.
void Program(Bench& bench, Outcome& outcome) {
  const simulator::SimulatedRadio& radio = bench.simulated[0]->Radio();
  const std::string file = bench.folder.Write("new.omn", simulator::DataFileText(radio.Profile()));
  radiodb::LastRadio last;
  radiodb::RadioDb db(bench.job, last);
  outcome.Take(radiodb::ProgramRadio(db, bench.view, file));
  outcome.result = "items written: " + std::to_string(radio.Counts().records_written);
  EXPECT_EQ(bench.user.Boxes().find("only part of the data now. Please program " + file +
                                    " again.") != std::string::npos,
            !outcome.claimed && db.writing_begun);
  EXPECT_TRUE(db.writing_begun || radio.Counts().records_written == 0);
}

void Download(Bench& bench, Outcome& outcome) {
  const simulator::Bytes image = simulator::MakeFirmwareImage(
      {.model_code = "51", .micro = simulator::Micro::kE1, .versions = {"0335", "0405", "0103"}});
  bench.Choose({image.begin(), image.end()});
  bench.Run();
  outcome.Take(bench.result.outcome);
  outcome.claimed = bench.result.succeeded;
  for (std::size_t at = 0; at < bench.simulated.size(); ++at) {
    const bool done = bench.result.ports[at].outcome == firmware::RadioOutcome::kDone;
    const bool equal = bench.simulated[at]->Radio().FlashMatches(image);
    outcome.result += done && equal ? "done " : done ? "claimed but not in the flash " : "failed ";
  }
}

void Upload(Bench& bench, Outcome& outcome) {
  firmware::ChooseImageFile(bench.firmware.image, bench.folder.Path("read.bin"));
  bench.Run({}, link::Transfer::kRead);
  outcome.Take(bench.result.outcome);
  outcome.result = bench.folder.Read("read.bin").value_or("no file");
}

// A piece of the table: a procedure on a radio. Each is a test of its own, so that they run side by
// side.
struct Piece {
  const char* name;
  Action action;
  const char* radio;
  Step first_step, last_step;
  std::vector<int> ordinals;
  int runs;  // no fewer, or the table has lost rows
};

void PrintTo(const Piece& piece, std::ostream* out) { *out << piece.name; }

constexpr const char* kConventional = "conventional";
constexpr const char* kTrunked = "trunked,networks=2";

const std::vector<int> kBlocks = {1, 2, 3, 5, 38, 257, 723};
const Piece kPieces[] = {
    {"UploadEarly", Upload, kConventional, Step::kBootstrap, Step::kFinish, {1, 2, 3, 5}, 220},
    {"UploadLate", Upload, kConventional, Step::kBootstrap, Step::kFinish, {38, 257, 1446}, 165},
    {"Download", Download, kConventional, Step::kBootstrap, Step::kFinish, kBlocks, 385},
    {"Identify", Identify, kConventional, Step::kCaret, Step::kRead, {1, 2, 4}, 72},
    {"IdentifyTrunked", Identify, kTrunked, Step::kCaret, Step::kRead, {1, 2, 4}, 72},
    {"Read", Read, kConventional, Step::kCaret, Step::kNetwork, {1, 2, 5, 20, 60}, 150},
    {"ReadTrunked", Read, kTrunked, Step::kCaret, Step::kNetwork, {1, 2, 5, 20, 60}, 150},
    {"Program", Program, kConventional, Step::kCaret, Step::kEnd, {1, 2, 5, 40}, 192},
    {"ProgramTrunked", Program, kTrunked, Step::kCaret, Step::kEnd, {1, 2, 5, 40}, 192},
};

std::string FaultOption(FaultKind kind, Step step, int ordinal) {
  simulator::Fault fault{.kind = kind, .step = step, .ordinal = ordinal};
  if (kind == FaultKind::kWrong) fault.value = 0x3F;
  if (kind == FaultKind::kSlow) fault.value = 1000;
  if (kind == FaultKind::kBrace) fault.code = "C01";
  return ",fault=" + simulator::FaultText(fault);
}

// The blocks of an upload and the lines of the item list carry no checksum.
bool IsUndetectable(FaultKind kind, Step step) {
  return (kind == FaultKind::kWrong && step == Step::kUpload) ||
         (kind == FaultKind::kDrop && step == Step::kList);
}

// A radio that identifies itself wrongly is refused, and with it the image for all.
bool EndsTheRunForAll(FaultKind kind, Step step) {
  return kind == FaultKind::kWrong && step == Step::kIdentification;
}

void Judge(const Outcome& got, const Outcome& clean, FaultKind kind) {
  EXPECT_EQ(got.states_after, "as before");
  EXPECT_TRUE(got.ports_closed);
  EXPECT_LE(got.took - clean.took, std::chrono::seconds(15));
  if (got.claimed) {
    EXPECT_TRUE(got.result == clean.result) << "claims success, but: " << got.result.substr(0, 200);
  } else {
    EXPECT_NE(got.boxes, "") << "failed without a word";
    EXPECT_EQ(got.boxes.find("Completed"), std::string::npos) << got.boxes;
    EXPECT_NE(got.failure, Failure::kNone);
    EXPECT_NE(kind, FaultKind::kSlow) << "a slow radio is no silent one: " << got.boxes;
  }
}

class FaultTable : public ::testing::TestWithParam<Piece> {};

TEST_P(FaultTable, EndsWellOrSaysWhy) {
  const Piece& piece = GetParam();
  const Outcome clean = Perform(piece.radio, piece.action);
  ASSERT_TRUE(clean.claimed) << clean.boxes;
  int runs = 0;
  for (const simulator::StepName& step : simulator::StepNames()) {
    if (step.step < piece.first_step || step.step > piece.last_step) continue;
    for (const simulator::FaultName& fault : simulator::FaultNames()) {
      if (!simulator::CanHappen(fault.kind, step.step) || IsUndetectable(fault.kind, step.step))
        continue;
      for (const int ordinal : piece.ordinals) {
        const std::string faulty = piece.radio + FaultOption(fault.kind, step.step, ordinal);
        SCOPED_TRACE(faulty);
        Judge(Perform(faulty, piece.action), clean, fault.kind);
        ++runs;
      }
    }
  }
  EXPECT_GE(runs, piece.runs);
}

INSTANTIATE_TEST_SUITE_P(Procedures, FaultTable, ::testing::ValuesIn(kPieces));

TEST(FaultTableOfTwo, ARadioThatFailsDoesNotStopTheOther) {
  const std::string radio = kConventional;
  for (const simulator::StepName& step : simulator::StepNames()) {
    if (step.step < Step::kBootstrap) continue;
    for (const FaultKind kind : {FaultKind::kSilent, FaultKind::kWrong, FaultKind::kBrace,
                                 FaultKind::kDrop, FaultKind::kCut}) {
      if (!simulator::CanHappen(kind, step.step) || EndsTheRunForAll(kind, step.step)) continue;
      for (const int ordinal : {1, 3, 300}) {
        const std::string faulty = radio + FaultOption(kind, step.step, ordinal);
        SCOPED_TRACE(faulty);
        const Outcome outcome = Perform(faulty + " " + radio, Download);
        EXPECT_TRUE(outcome.claimed) << outcome.boxes;
        EXPECT_TRUE(outcome.result == "done done " || outcome.result == "failed done ")
            << outcome.result << outcome.boxes;
        EXPECT_EQ(outcome.states_after, "as before");
      }
    }
  }
}

}  // namespace
}  // namespace zep
