#include "simulator/bench_report.h"

#include <utility>
#include <vector>

#include "platform/files.h"
#include "services/text_layout.h"

namespace zep::simulator {
namespace {

using Cells = std::vector<std::string>;

std::string FlashState(const SimulatedRadio& radio, std::span<const std::uint8_t> image) {
  const FlashComparison found =
      CompareFlash(radio.FlashMemory().Contents(), image, radio.Profile().micro);
  if (found.IsEqual()) return "equal to the image";
  if (!found.first_difference) return "not comparable";
  const auto offset = static_cast<std::uint32_t>(*found.first_difference);
  const Bytes digits{static_cast<std::uint8_t>(offset >> 16),
                     static_cast<std::uint8_t>(offset >> 8), static_cast<std::uint8_t>(offset)};
  return std::to_string(found.different) + " bytes differ from the image, the first at 0x" +
         HexText(digits);
}

Cells RowOf(const BenchPlace& place, std::size_t number) {
  const SimulatedRadio& radio = place.Radio();
  const RadioCounts& counts = radio.Counts();
  const Versions& versions = radio.Profile().versions;
  return {std::to_string(number),
          radio.Profile().model_code,
          versions.firmware + " " + versions.database + " " + versions.calibration,
          std::to_string(place.BytesIn()),
          std::to_string(place.BytesOut()),
          std::to_string(counts.items_read),
          std::to_string(counts.records_written),
          std::to_string(counts.blocks_written),
          std::to_string(counts.blocks_read),
          std::to_string(counts.restarts),
          std::to_string(counts.errors_replied)};
}

}  // namespace

std::string BenchReport(const RadioBench& bench, std::span<const std::uint8_t> image) {
  Cells headings = {"radio",       "model",      "versions",        "bytes in",
                    "bytes out",   "items read", "records written", "blocks written",
                    "blocks read", "restarts",   "errors"};
  if (!image.empty()) headings.emplace_back("flash");
  services::Table table(std::move(headings));
  std::size_t number = 0;
  for (const auto& place : bench.Places()) {
    Cells row = RowOf(*place, ++number);
    if (!image.empty()) row.push_back(FlashState(place->Radio(), image));
    table.AddRow(std::move(row));
  }
  return table.Text();
}

platform::SystemError SaveFlash(const RadioBench& bench, const std::string& folder) {
  platform::SystemError error = platform::MakeFolders(folder);
  int number = 0;
  for (const auto& place : bench.Places()) {
    const std::string name = folder + "/radio" + std::to_string(++number) + ".bin";
    if (!error)
      error = platform::WriteWholeFile(name, TextOf(place->Radio().FlashMemory().Contents()));
  }
  return error;
}

}  // namespace zep::simulator
