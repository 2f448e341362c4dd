#include "simulator/zepsim_options.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "services/text_layout.h"
#include "simulator/radio_text.h"

namespace zep::simulator {

namespace {

constexpr std::size_t kMostRadios = 4;
constexpr int kUsage = 2;
// Longer than any pause of a program that is at work.
constexpr double kIdleAfterJob = 6;

constexpr const char* kDescription =
    "Simulated radios on pseudo-terminals. Programs open these as they open serial devices, one "
    "after the other, and "
    "find the radio as the one before has left it. Ends with Ctrl-C and shows what was done.";

constexpr const char* kExamples =
    "Examples:\n"
    "  zepsim trunked --link /tmp/radio           one radio, at /tmp/radio1\n"
    "  zepsim conventional conventional trunked torvik --unpaced\n"
    "  zepsim torvik,fault=silent@block:100,fault=slow@read:1+=20 --transcript wire.txt\n"
    "  zepsim --samples data                      loaders, images and data files to try things "
    "with\n";

// What may stand on the command line as RADIO, for the end of the help.
std::string RadioHelp() {
  std::string text = "RADIO is NAME[,OPTION]... with the names\n";
  for (const KnownRadio& radio : KnownRadios()) {
    text += "  " + services::PadTo(radio.name, 20) + std::string(radio.description) + "\n";
  }
  text += "and the options, applied from left to right,\n";
  for (const RadioOptionHelp& option : RadioOptions()) {
    const std::string form =
        std::string(option.name) + (option.value.empty() ? "" : "=") + std::string(option.value);
    text += "  " + services::PadTo(form, 20) + std::string(option.meaning) + "\n";
  }
  text +=
      "A FAULT is KIND@STEP[:N[+]][=VALUE]: it happens the N-th time that the step is reached, "
      "with + every time "
      "from then on.\n  KIND";
  for (const FaultName& fault : FaultNames()) text += " " + std::string(fault.name);
  text += "\n  STEP";
  for (const StepName& step : StepNames()) text += " " + std::string(step.name);
  return text +
         "\n  VALUE: wrong=HH byte, brace=C04 reply, slow=MILLISECONDS, drop=POSITION in the "
         "answer\n";
}

struct Arguments {
  std::vector<std::string> radios;
  bool paced = false;
  bool unpaced = false;
  bool once = false;
};

void Declare(CLI::App& app, ZepsimOptions& options, Arguments& given) {
  app.add_option("RADIO", given.radios,
                 "one to four radios, see below; a conventional one when there are none");
  app.add_option("--link", options.link, "make links NAME1, NAME2, ... to the terminals")
      ->type_name("NAME");
  app.add_option("--ready-file", options.ready_file,
                 "write the devices into FILE once they can be opened")
      ->type_name("FILE");
  app.add_flag("--pace", given.paced,
               "let bytes take their time on the line, as radios do by themselves");
  app.add_flag("--unpaced", given.unpaced, "let bytes arrive at once");
  app.add_option("--transcript", options.transcript, "write every byte on the wire into FILE")
      ->type_name("FILE");
  app.add_option("--compare", options.compare, "say at the end whether each flash holds IMAGE")
      ->type_name("IMAGE");
  app.add_option("--save-flash", options.save_flash, "write each flash into DIR at the end")
      ->type_name("DIR");
  app.add_option("--samples", options.samples,
                 "write sample files into DIR first; without a RADIO that is all")
      ->type_name("DIR");
  app.add_flag("--once", given.once, "end after the first job: as --idle 6");
  app.add_option("--idle", options.idle,
                 "end when the radios have been spoken to and then left alone so long")
      ->type_name("SECONDS");
  app.add_option("--for", options.longest, "end after so many seconds at the latest")
      ->type_name("SECONDS");
}

ZepsimCommandLine UsageError(const std::string& text) {
  return {{}, kUsage, "zepsim: " + text + "\n"};
}

}  // namespace

ZepsimCommandLine ParseZepsimCommandLine(std::vector<std::string> arguments) {
  ZepsimCommandLine result;
  Arguments given;
  CLI::App app(kDescription, "zepsim");
  Declare(app, result.options, given);
  app.footer(RadioHelp() + "\n" + kExamples);
  try {
    std::reverse(arguments.begin(), arguments.end());
    app.parse(arguments);
  } catch (const CLI::CallForHelp&) {
    return {{}, 0, app.help()};
  } catch (const CLI::ParseError& error) {
    return UsageError(std::string(error.what()) + " zepsim --help shows what there is.");
  }
  if (given.paced && given.unpaced) return UsageError("--pace and --unpaced exclude each other.");
  if (given.once) result.options.idle = kIdleAfterJob;
  if (given.radios.size() > kMostRadios) return UsageError("There can be four radios at the most.");
  if (given.radios.empty() && result.options.samples.empty()) given.radios = {"conventional"};
  for (const std::string& text : given.radios) {
    Parsed<RadioProfile> radio = ParseRadio(text);
    if (!radio.value) return UsageError(radio.error);
    if (given.paced || given.unpaced) radio.value->paced = given.paced;
    result.options.radios.push_back(std::move(*radio.value));
  }
  return result;
}

}  // namespace zep::simulator
