#include "firmware/image_transfer.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "link/byte_exchange.h"
#include "platform/files.h"
#include "services/hex_text.h"
#include "services/messages.h"
#include "services/waits.h"

namespace zep::firmware {
namespace {

using link::Link;
using services::Failure;
using services::NLSText;
using services::Session;

using Rows = std::span<const MemoryMapEntry>;

// Kept: the bar may stop short of its maximum.
int ProgressMaximum(bool upload, bool one_megabit) {
  if (upload) return one_megabit ? 1024 : 2050;
  return one_megabit ? 723 : 1450;
}

Rows ChooseRows(const Firmware& firmware, bool one_megabit) {
  const MemoryMap& map = firmware.micro_type == "E1" ? firmware.E1MemoryMap : firmware.A1MemoryMap;
  return Rows(map).first(one_megabit ? kRowsOf1Mbit : kRowsOf2Mbit);
}

std::size_t EndOf(const MemoryMapEntry& row) {
  return static_cast<std::size_t>(row.FileOffset) +
         static_cast<std::size_t>(row.Blocks) * kBlockSize;
}

void StopForFile(Session& session, const platform::SystemError& error) {
  ReportError(session, error, "WriteRadioSoftware");
  session.RequestCancel(Failure::kFile);
}

bool SendsAtOnce(const TransferRun& run) {
  const services::Settings& settings = run.firmware.link.session.settings;
  return run.options.at_once.value_or(
      settings.AppGetUserNumber(settings.OwnType(), "SendToAllAtOnce", 0) != 0);
}

void CountBlock(TransferRun& run, bool on_the_wire) {
  run.view.SetProgress(++run.blocks_counted);
  if (!on_the_wire) return;
  ++run.result.statistics.blocks;
  run.result.statistics.bytes += kBlockSize;
  run.result.statistics.ended = run.firmware.link.session.clock.Now();
}

void SendHeader(Link& link, const MemoryMapEntry& row) {
  for (const std::uint8_t byte :
       {static_cast<std::uint8_t>(row.Bank), services::GetHighByte(row.StartAddress),
        services::GetLowByte(row.StartAddress), services::GetHighByte(row.Blocks),
        services::GetLowByte(row.Blocks)}) {
    SendByteToAllComms(link, byte, {.wait = true, .expected = byte, .end_on_zero = byte == 0});
    if (link.session.Stopped()) return;
  }
  services::WaitSeconds(link.session, 0.02);
}

void DownloadRow(TransferRun& run, const MemoryMapEntry& row, std::string_view image,
                 bool at_once) {
  Link& link = run.firmware.link;
  for (auto at = static_cast<std::size_t>(row.FileOffset); at < EndOf(row); at += kBlockSize) {
    const std::string_view text = image.substr(at, kBlockSize);
    const std::vector<std::uint8_t> block(text.begin(), text.end());
    if (at_once) {
      SendBytesToAllCommsAtOnce(link, block);
    } else {
      SendBytesToAllComms(link, block);
    }
    if (link.session.Stopped()) return;
    WaitForDotFromActiveComms(link);
    if (link.session.Stopped()) return;
    ClearInputBuffers(link);
    CountBlock(run, true);
    ShowChangedStates(run);
    UpdateStatusBar(run, NLSText("Downloading radio firmware"));
  }
}

void Download(TransferRun& run, Rows rows) {
  Link& link = run.firmware.link;
  const std::string file = run.firmware.image.FullName();
  const platform::FileContents image = platform::ReadWholeFile(file);
  if (image.error) return StopForFile(link.session, image.error);
  if (image.bytes.size() < EndOf(rows.back()))
    return StopForFile(link.session, InputPastEndOfFile(file, image.bytes.size()));
  const bool at_once = SendsAtOnce(run);
  for (const MemoryMapEntry& row : rows) {
    if (row.Kind != kTransferred) continue;
    SendHeader(link, row);
    if (link.session.Stopped()) return;
    DownloadRow(run, row, image.bytes, at_once);
    if (link.session.Stopped()) return;
  }
  services::WaitSecondsYielding(link.session, 1);
}

void UploadRow(TransferRun& run, const MemoryMapEntry& row, platform::FileWriter& file) {
  Link& link = run.firmware.link;
  const int port = FirstActivePort(link);
  SendHeader(link, row);
  for (std::int32_t count = 0; count < row.Blocks && !link.session.Stopped(); ++count) {
    SendByteToActiveComms(link, '.');
    if (!WaitForInputCount(link, port, kBlockSize, "WriteRadioSoftware")) return;
    std::string block;
    for (std::int32_t at = 0; at < kBlockSize; ++at)
      block += static_cast<char>(GetAnyByte(link, port));
    file.Write(block);
    CountBlock(run, true);
    UpdateStatusBar(run, NLSText("Uploading radio firmware"));
  }
}

void Upload(TransferRun& run, Rows rows) {
  Session& session = run.firmware.link.session;
  platform::FileWriter file;
  if (const auto error = file.Open(run.firmware.image.FullName(), platform::WriteMode::kReplace))
    return StopForFile(session, error);
  run.upload_begun = true;
  for (const MemoryMapEntry& row : rows) {
    if (row.Kind == kTransferred) {
      UploadRow(run, row, file);
    } else {
      for (std::int32_t block = 0; block < row.Blocks; ++block) {
        file.Write(std::string(kBlockSize, '\xFF'));
        CountBlock(run, false);
      }
    }
    if (session.Stopped()) return;
    // Row by row, so that a full disk is noticed early.
    if (const auto error = file.Flush()) return StopForFile(session, error);
  }
  services::WaitSecondsYielding(session, 1);
  if (const auto error = file.Close()) return StopForFile(session, error);
}

}  // namespace

void WriteRadioSoftware(TransferRun& run) {
  Firmware& firmware = run.firmware;
  Session& session = firmware.link.session;
  const bool upload = session.TransferMode == services::Transfer::kRead;
  const bool one_megabit =
      (upload ? firmware.UploadFlashSize : firmware.image.FirmwareFlashSize) == kFlash1Mbit;
  ClearInputBuffers(firmware.link);
  run.view.SetProgressMaximum(ProgressMaximum(upload, one_megabit));
  run.result.statistics.began = run.result.statistics.ended = session.clock.Now();
  if (upload) {
    Upload(run, ChooseRows(firmware, one_megabit));
  } else {
    Download(run, ChooseRows(firmware, one_megabit));
  }
}

void DiscardUpload(TransferRun& run) {
  const std::string file = run.firmware.image.FullName();
  // Devices stay.
  if (run.upload_begun && platform::FileSize(file)) platform::RemoveFile(file);
}

}  // namespace zep::firmware
