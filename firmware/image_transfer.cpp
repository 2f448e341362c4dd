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

using link::Job;
using services::Failure;
using services::NLSText;

using Rows = std::span<const MemoryMapEntry>;

// Kept: the bar may stop short of its maximum.
int ProgressMaximum(bool upload, bool one_megabit) {
  if (upload) return one_megabit ? 1024 : 2050;
  return one_megabit ? 723 : 1450;
}

Rows ChooseRows(const TransferRun& run, bool one_megabit) {
  const Firmware& firmware = run.firmware;
  const MemoryMap& map =
      run.micro_type == MicroType::kE1 ? firmware.E1MemoryMap : firmware.A1MemoryMap;
  return Rows(map).first(one_megabit ? kRowsOf1Mbit : kRowsOf2Mbit);
}

std::size_t EndOf(const MemoryMapEntry& row) {
  return static_cast<std::size_t>(row.FileOffset) +
         static_cast<std::size_t>(row.Blocks) * kBlockSize;
}

void StopForImage(Job& job, const platform::SystemError& error) {
  ReportError(job.session, error, "WriteRadioSoftware");
  job.RequestCancel(Failure::kFile);
}

bool SendsAtOnce(const TransferRun& run) {
  const services::Settings& settings = run.job.session.settings;
  return run.options.at_once.value_or(
      settings.AppGetUserNumber(settings.OwnType(), "SendToAllAtOnce", 0) != 0);
}

void CountBlock(TransferRun& run, bool on_the_wire) {
  run.view.SetProgress(++run.blocks_counted);
  if (!on_the_wire) return;
  ++run.result.statistics.blocks;
  run.result.statistics.bytes += kBlockSize;
  run.result.statistics.ended = run.job.session.clock.Now();
}

void SendHeader(Job& job, const MemoryMapEntry& row) {
  for (const std::uint8_t byte :
       {static_cast<std::uint8_t>(row.Bank), services::GetHighByte(row.StartAddress),
        services::GetLowByte(row.StartAddress), services::GetHighByte(row.Blocks),
        services::GetLowByte(row.Blocks)}) {
    SendByteToAllComms(job, byte, {.wait = true, .expected = byte, .end_on_zero = byte == 0});
    if (job.Stopped()) return;
  }
  services::WaitSeconds(job.session, 0.02);
}

void DownloadRow(TransferRun& run, const MemoryMapEntry& row, std::string_view image,
                 bool at_once) {
  Job& job = run.job;
  for (auto at = static_cast<std::size_t>(row.FileOffset); at < EndOf(row); at += kBlockSize) {
    const std::string_view text = image.substr(at, kBlockSize);
    const std::vector<std::uint8_t> block(text.begin(), text.end());
    if (at_once) {
      SendBytesToAllCommsAtOnce(job, block);
    } else {
      SendBytesToAllComms(job, block);
    }
    if (job.Stopped()) return;
    WaitForDotFromActiveComms(job);
    if (job.Stopped()) return;
    ClearInputBuffers(job.link);
    CountBlock(run, true);
    ShowChangedStates(run);
    UpdateStatusBar(run, NLSText("Downloading radio firmware"));
  }
}

void Download(TransferRun& run, Rows rows) {
  Job& job = run.job;
  const bool at_once = SendsAtOnce(run);
  for (const MemoryMapEntry& row : rows) {
    if (row.Kind != RowKind::kTransferred) continue;
    SendHeader(job, row);
    if (job.Stopped()) return;
    // The bytes that were checked, whatever has become of the file since then.
    DownloadRow(run, row, run.firmware.image.contents->bytes, at_once);
    if (job.Stopped()) return;
  }
  services::WaitSecondsYielding(job.session, 1);
}

void UploadRow(TransferRun& run, const MemoryMapEntry& row, platform::FileWriter& file) {
  Job& job = run.job;
  const int port = FirstActivePort(job.CommStates);
  SendHeader(job, row);
  for (std::int32_t count = 0; count < row.Blocks && !job.Stopped(); ++count) {
    SendByteToActiveComms(job, '.');
    if (!WaitForInputCount(job, port, kBlockSize, "WriteRadioSoftware")) return;
    std::string block;
    for (std::int32_t at = 0; at < kBlockSize; ++at)
      block += static_cast<char>(GetAnyByte(job, port));
    file.Write(block);
    CountBlock(run, true);
    UpdateStatusBar(run, NLSText("Uploading radio firmware"));
  }
}

void Upload(TransferRun& run, Rows rows) {
  Job& job = run.job;
  platform::FileWriter file;
  if (const auto error = file.Open(run.firmware.image.FullName(), platform::WriteMode::kReplace))
    return StopForImage(job, error);
  run.upload_begun = true;
  for (const MemoryMapEntry& row : rows) {
    if (row.Kind == RowKind::kTransferred) {
      UploadRow(run, row, file);
    } else {
      for (std::int32_t block = 0; block < row.Blocks; ++block) {
        file.Write(std::string(kBlockSize, '\xFF'));
        CountBlock(run, false);
      }
    }
    if (job.Stopped()) return;
    // Row by row, so that a full disk is noticed early.
    if (const auto error = file.Flush()) return StopForImage(job, error);
  }
  services::WaitSecondsYielding(job.session, 1);
  if (const auto error = file.Close()) return StopForImage(job, error);
}

}  // namespace

void WriteRadioSoftware(TransferRun& run) {
  const Firmware& firmware = run.firmware;
  const bool one_megabit = run.IsUpload() ? firmware.UploadFlashSize == 1
                                          : firmware.image.FirmwareFlashSize == FlashSize::k1Mbit;
  ClearInputBuffers(run.job.link);
  run.view.SetProgressMaximum(ProgressMaximum(run.IsUpload(), one_megabit));
  run.result.statistics.began = run.result.statistics.ended = run.job.session.clock.Now();
  if (run.IsUpload()) {
    Upload(run, ChooseRows(run, one_megabit));
  } else {
    Download(run, ChooseRows(run, one_megabit));
  }
}

void DiscardUpload(TransferRun& run) {
  const std::string file = run.firmware.image.FullName();
  // Devices stay.
  if (run.upload_begun && platform::FileSize(file)) platform::RemoveFile(file);
}

}  // namespace zep::firmware
