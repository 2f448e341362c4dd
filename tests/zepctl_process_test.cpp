// The program zepctl itself, as a shell starts it: streams, signals, pipes and terminals. In real
// time, on simulated radios inside the program.
#include <cstdio>
#include <nlohmann/json.hpp>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/testing.h"

namespace zep::cli {
namespace {

using nlohmann::json;
using ::testing::EndsWith;
using ::testing::HasSubstr;

class ZepctlProcess : public ::testing::Test {
 protected:
  // Runs a line of shell in which "zepctl" is the program, with settings of its own. Returns what
  // it has written and its exit status: "...=0".
  std::string Shell(const std::string& line) const {
    const std::string program = ZEP_PROGRAM_DIR "/zepctl";
    const std::string script =
        "cd " + folder_.Path() + "; export XDG_CONFIG_HOME=" + folder_.Path("config") +
        "; zepctl() { " + program + " --application-folder . \"$@\"; }; Z='" + program +
        " --application-folder .'; " + line + "\necho =$?\n";
    folder_.Write("script", script);
    // Whoever runs the tests may have told them to ignore signals.
    const std::string command =
        "env --default-signal=INT,TERM,HUP,PIPE bash " + folder_.Path("script");
    std::FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    for (int byte = std::fgetc(pipe); byte != EOF; byte = std::fgetc(pipe))
      output += static_cast<char>(byte);
    pclose(pipe);
    return output;
  }

  testing::TempFolder folder_;
};

TEST_F(ZepctlProcess, EndsWithTheStatusOfWhatWentWrong) {
  for (const auto& [line, status] : std::vector<std::pair<std::string, std::string>>{
           {"zepctl data check none.ops", "=6\n"},
           {"zepctl -p sim:trunked,unpaced identify > /dev/full", "=1\n"},
       }) {
    SCOPED_TRACE(line);
    EXPECT_THAT(Shell(line + " 2>&1"), EndsWith(status));
  }
}

TEST_F(ZepctlProcess, ResultsGoToTheStandardOutputAndAllElseToTheStandardError) {
  const std::string out = Shell("zepctl --json -p sim:conventional,unpaced read a.ops 2> err.txt");
  const json result = json::parse(out.substr(0, out.rfind("=0\n")));
  EXPECT_EQ(result["ok"], true);
  EXPECT_THAT(folder_.Read("err.txt").value_or(""), HasSubstr("Reading Items"));
  // What is said cannot be heard any longer; the radio is read all the same.
  EXPECT_EQ(Shell("(zepctl -p sim:conventional,unpaced read b.ops; echo =$? > status) 2>&1 | true"),
            "=0\n");
  EXPECT_EQ(folder_.Read("status"), "=0\n");
  EXPECT_EQ(folder_.Read("b.ops"), folder_.Read("a.ops"));
}

TEST_F(ZepctlProcess, SignalsCancelTheJob) {
  for (const std::string signal : {"INT", "TERM", "HUP"}) {
    SCOPED_TRACE(signal);
    // The signal comes once the job says that it reads.
    const std::string out = Shell(
        "mkfifo said; env --default-signal=INT $Z -p sim:conventional read " + signal +
        ".ops > said 2>&1 & exec 3< said; while read -r line <&3; do echo \"$line\"; case $line in "
        "*Reading*) kill -s " +
        signal + " $!; break; esac; done; cat <&3; rm said; wait $!");
    EXPECT_THAT(out, EndsWith("is incomplete, because reading the radio ended early. Please read "
                              "the radio again.\n=130\n"));
  }
}

TEST_F(ZepctlProcess, AsksOnATerminalAndShowsABarThere) {
  folder_.Write("a.ops", "old");
  const std::string out = Shell(
      "(until grep -q overwrite shown; do sleep 0.05; done; printf 'y\\n') 2> /dev/null | "
      "script -qefc \"$Z -p sim:conventional,unpaced read a.ops\" shown");
  EXPECT_THAT(out, HasSubstr("File exists overwrite? [y/N] "));
  EXPECT_THAT(out, HasSubstr("\rReading Items  ["));
  EXPECT_THAT(out, EndsWith("=0\n"));
  EXPECT_NE(folder_.Read("a.ops"), "old");
}

}  // namespace
}  // namespace zep::cli
