// What the program computes on files of radio data.

#include <benchmark/benchmark.h>
#include <filesystem>
#include <fstream>
#include <string>

#include "benchmarks/bench_session.h"
#include "conversion/calibration_conversion.h"
#include "conversion/personality_conversion.h"
#include "radiodb/data_file.h"
#include "services/hex_text.h"
#include "simulator/samples.h"

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
  const std::string path = (std::filesystem::temp_directory_path() / name).string();
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

void CheckDataFileOf10000Records(benchmark::State& state) {
  platform::SystemClock clock;
  BenchSession bench(clock);
  const std::string path = WriteDataFile(bench.session, "zep_benchmark.ops", 10000);
  for (auto _ : state) {
    const auto file = radiodb::ReadDataFile(path);
    if (!file || file->Records() < 10000 || !file->Findings().empty())
      Fail("the file was found unsound");
  }
  std::filesystem::remove(path);
}
BENCHMARK(CheckDataFileOf10000Records)->Unit(benchmark::kMillisecond);

void ConvertPersonalityOf10000Records(benchmark::State& state) {
  platform::SystemClock clock;
  BenchSession bench(clock);
  const std::string path = WriteDataFile(bench.session, "zep_benchmark_old.ops", 10000);
  const std::string default_path = WriteDataFile(bench.session, "zep_benchmark_default.ops", 0);
  const auto defaults = radiodb::ReadDataFile(default_path).and_then(conversion::ReadDatabase);
  const auto saved = radiodb::ReadDataFile(path).and_then(conversion::ReadDatabase);
  if (!defaults || !saved) Fail("the files were found unsound");
  const conversion::DatabaseConversion conversion{.old_version = 205,
                                                  .new_version = 405,
                                                  .version_text = "0405",
                                                  .defaults = defaults->networks[0].items};
  for (auto _ : state) {
    conversion::PersonalityData data = *saved;
    if (ConvertDatabase(conversion, data).version != 405) Fail("the conversion stopped early");
    benchmark::DoNotOptimize(data);
  }
  std::filesystem::remove(path);
  std::filesystem::remove(default_path);
}
BENCHMARK(ConvertPersonalityOf10000Records)->Unit(benchmark::kMillisecond);

void ConvertCalibration(benchmark::State& state) {
  for (auto _ : state) {
    std::string data(260, '1');
    if (!conversion::ConvertCalibrationDatabase(data, 100, 103)) Fail("a length was wrong");
    benchmark::DoNotOptimize(data);
  }
}
BENCHMARK(ConvertCalibration)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace zep::benchmarks
