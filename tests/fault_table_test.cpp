// Every procedure against simulated radios with each fault at each step of the conversation, on the
// virtual clock.
//
// Whatever happens, a procedure ends in time, leaves the ports closed and their states as they
// were, and claims success only when everything is as it is without the fault; otherwise it has
// said why.

#include <chrono>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "firmware/transfer_engine.h"
#include "radiodb/read_write_radio.h"
#include "simulator/samples.h"
#include "simulator/simulated_port.h"
#include "tests/link_testing.h"
#include "tests/views_testing.h"

namespace zep {
namespace {

using services::Failure;
using simulator::FaultKind;
using simulator::Step;

// What a run has brought about, as one text to compare, and how it went.
struct Outcome {
  bool claimed = false;
  std::string result;
  std::string boxes;
  Failure failure = Failure::kNone;
  std::string states_after;
  bool ports_closed = true;
  platform::Duration took{};

  void Take(const services::Outcome& ended) {
    claimed = ended.Done();
    failure = ended.failure;
  }
};

struct Bench : testing::TestLink {
  explicit Bench(const std::vector<std::string>& radios) {
    for (std::size_t at = 0; at < radios.size(); ++at) {
      auto made = simulator::MakeSimulatedPort("sim:" + radios[at], clock);
      EXPECT_EQ(made.error, "");
      simulated.push_back(made.value->get());
      link.ports[at] = std::move(*made.value);
      Choose(static_cast<int>(at) + 1);
    }
  }

  std::vector<simulator::SimulatedPort*> simulated;
  testing::QuietView view;
};

// A user's action on the radios of a bench: claims success or not, and what it has made.
using Action = std::function<void(Bench&, Outcome&)>;

Outcome Perform(const std::vector<std::string>& radios, const Action& action) {
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
    if (!file.empty())
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

void WriteLoaders(const Bench& bench) {
  const simulator::Bytes first = simulator::SampleFirstLoader();
  const simulator::Bytes second = simulator::SampleSecondLoader();
  bench.folder.Write("bs.tsk", std::string(first.begin(), first.end()));
  bench.folder.Write("dl.tsk", std::string(second.begin(), second.end()));
}

void Download(Bench& bench, Outcome& outcome) {
  WriteLoaders(bench);
  const simulator::Bytes image = simulator::MakeFirmwareImage(
      {.model_code = "51", .micro = simulator::Micro::kE1, .versions = {"0335", "0405", "0103"}});
  bench.folder.Write("new.bin", std::string(image.begin(), image.end()));
  firmware::Firmware firmware;
  firmware::ChooseImageFile(firmware.image, bench.folder.Path("new.bin"));
  ASSERT_TRUE(firmware::CheckForValidFile(bench.session, firmware.image));
  firmware::TransferRun run(bench.job, firmware, bench.view, link::Transfer::kProgram);
  const firmware::TransferResult result = firmware::RunTransfer(run);
  outcome.claimed = result.succeeded;
  outcome.failure = result.outcome.failure;
  for (std::size_t at = 0; at < bench.simulated.size(); ++at) {
    const bool done = result.ports[at].outcome == firmware::RadioOutcome::kDone;
    const bool equal = bench.simulated[at]->Radio().FlashMatches(image);
    outcome.result += done && equal ? "done " : done ? "claimed but not in the flash " : "failed ";
  }
}

void Upload(Bench& bench, Outcome& outcome) {
  WriteLoaders(bench);
  firmware::Firmware firmware;
  firmware::ChooseImageFile(firmware.image, bench.folder.Path("read.bin"));
  firmware::TransferRun run(bench.job, firmware, bench.view, link::Transfer::kRead);
  outcome.Take(firmware::RunTransfer(run).outcome);
  outcome.result = bench.folder.Read("read.bin").value_or("no file");
}

struct Procedure {
  const char* name;
  Action action;
  std::vector<std::string> radios;
  Step first_step;
  Step last_step;
  std::vector<int> ordinals;
};

std::vector<Procedure> Procedures() {
  const std::vector<std::string> both = {"conventional,unpaced", "trunked,networks=2,unpaced"};
  return {
      {"identify", Identify, both, Step::kCaret, Step::kRead, {1, 2, 4}},
      {"read", Read, both, Step::kCaret, Step::kNetwork, {1, 2, 5, 20, 60}},
      {"program", Program, both, Step::kCaret, Step::kEnd, {1, 2, 5, 40}},
      {"download",
       Download,
       {"conventional,unpaced"},
       Step::kBootstrap,
       Step::kFinish,
       {1, 2, 3, 5, 38, 257, 723}},
      {"upload",
       Upload,
       {"conventional,unpaced"},
       Step::kBootstrap,
       Step::kFinish,
       {1, 2, 3, 5, 38, 257, 1446}},
  };
}

std::string FaultOption(FaultKind kind, Step step, int ordinal) {
  simulator::Fault fault;
  fault.kind = kind;
  fault.step = step;
  fault.ordinal = ordinal;
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

TEST(FaultTable, EveryProcedureEndsWellOrSaysWhy) {
  int runs = 0;
  for (const Procedure& procedure : Procedures()) {
    for (const std::string& radio : procedure.radios) {
      const Outcome clean = Perform({radio}, procedure.action);
      ASSERT_TRUE(clean.claimed) << procedure.name << " " << radio << ": " << clean.boxes;
      for (const simulator::StepName& step : simulator::StepNames()) {
        if (step.step < procedure.first_step || step.step > procedure.last_step) continue;
        for (const simulator::FaultName& fault : simulator::FaultNames()) {
          if (!simulator::CanHappen(fault.kind, step.step) || IsUndetectable(fault.kind, step.step))
            continue;
          for (const int ordinal : procedure.ordinals) {
            const std::string faulty = radio + FaultOption(fault.kind, step.step, ordinal);
            SCOPED_TRACE(std::string(procedure.name) + " " + faulty);
            Judge(Perform({faulty}, procedure.action), clean, fault.kind);
            ++runs;
          }
        }
      }
    }
  }
  EXPECT_GT(runs, 1000);
}

TEST(FaultTable, ARadioThatFailsDoesNotStopTheOther) {
  const std::string radio = "conventional,unpaced";
  for (const simulator::StepName& step : simulator::StepNames()) {
    if (step.step < Step::kBootstrap) continue;
    for (const FaultKind kind : {FaultKind::kSilent, FaultKind::kWrong, FaultKind::kBrace,
                                 FaultKind::kDrop, FaultKind::kCut}) {
      if (!simulator::CanHappen(kind, step.step) || EndsTheRunForAll(kind, step.step)) continue;
      for (const int ordinal : {1, 3, 300}) {
        const std::string faulty = radio + FaultOption(kind, step.step, ordinal);
        SCOPED_TRACE(faulty);
        const Outcome outcome = Perform({faulty, radio}, Download);
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
