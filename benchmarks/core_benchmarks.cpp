// What the program computes on files of radio data.

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>
#include <string>

#include "benchmarks/bench_session.h"
#include "radiodb/data_file_reader.h"
#include "services/hex_text.h"
#include "simulator/samples.h"
#include "upgrade/calibration_conversion.h"
#include "upgrade/personality_conversion.h"

namespace zep::benchmarks {
namespace {

// A data file of an old radio with a channel table of as many records as make this number in all.
std::string WriteDataFile(services::Session& session, const std::string& name, int records) {
  simulator::RadioProfile profile;
  simulator::MakeOld(profile);
  std::string text = simulator::DataFileText(profile);
  for (int record = 0; record < records; ++record) {
    const std::string number = services::ConBytNumToHex(static_cast<std::uint8_t>(record % 100));
    std::string line = "15" + number + "13";
    for (int byte = 0; byte < 19; ++byte)
      line += services::ConBytNumToHex(static_cast<std::uint8_t>(record + byte));
    text += line + services::CalcHexChecksum(session, line) + "\r\n";
  }
  std::string path = (std::filesystem::temp_directory_path() / name).string();
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

void CheckDataFileOf10000Records(benchmark::State& state) {
  platform::SystemClock clock;
  BenchSession bench(clock);
  const std::string path = WriteDataFile(bench.session, "zep_benchmark.ops", 10000);
  for ([[maybe_unused]] auto _ : state) {
    const auto file = radiodb::ReadDataFile(bench.session, path);
    if (!file) Fail(bench.user.last_box);
    const radiodb::DataFileCheck check = radiodb::CheckDataFile(bench.session, *file);
    if (check.records < 10000 || !check.findings.empty()) Fail("the file was found unsound");
  }
  std::filesystem::remove(path);
}
BENCHMARK(CheckDataFileOf10000Records)->Unit(benchmark::kMillisecond);

void ConvertPersonalityOf10000Records(benchmark::State& state) {
  platform::SystemClock clock;
  BenchSession bench(clock);
  const std::string path = WriteDataFile(bench.session, "zep_benchmark_old.ops", 10000);
  const std::string default_path = WriteDataFile(bench.session, "zep_benchmark_default.ops", 0);
  upgrade::UpgradeLog log(bench.session, "");
  const auto defaults = upgrade::ReadDefaultSettings(bench.session, log, default_path);
  const auto saved = upgrade::ReadDatabase(bench.session, path);
  if (!defaults || !saved) Fail(bench.user.last_box);
  const upgrade::DatabaseConversion conversion{.old_version = 205,
                                               .new_version = 405,
                                               .version_text = "0405",
                                               .defaults = defaults->networks[0].items};
  for ([[maybe_unused]] auto _ : state) {
    upgrade::PersonalityData data = *saved;
    if (ConvertDatabase(bench.session, log, conversion, data) != 405)
      Fail("the conversion stopped early");
    benchmark::DoNotOptimize(data);
  }
  std::filesystem::remove(path);
  std::filesystem::remove(default_path);
}
BENCHMARK(ConvertPersonalityOf10000Records)->Unit(benchmark::kMillisecond);

void ConvertCalibration(benchmark::State& state) {
  platform::SystemClock clock;
  BenchSession bench(clock);
  for ([[maybe_unused]] auto _ : state) {
    std::string data(260, '1');
    if (!upgrade::ConvertCalibrationDatabase(bench.session, data, 100, 103))
      Fail(bench.user.last_box);
    benchmark::DoNotOptimize(data);
  }
}
BENCHMARK(ConvertCalibration)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zep::benchmarks
