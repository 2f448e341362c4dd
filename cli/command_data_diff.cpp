#include "cli/command.h"
#include "cli/difference_report.h"
#include "services/messages.h"
#include "upgrade/data_conversion.h"

namespace zep::cli {
namespace {

using services::NLSFmt;
using services::NLSText;

struct DiffFiles {
  std::string before;
  std::string after;
};

ExitStatus Diff(CommandContext& context, const DiffFiles& files) {
  const upgrade::Expected<radiodb::DataFile> before =
      upgrade::ReadCheckedDataFile(context.session, files.before);
  if (!before) return context.WorkStatus(before.error());
  const upgrade::Expected<radiodb::DataFile> after =
      upgrade::ReadCheckedDataFile(context.session, files.after);
  if (!after) return context.WorkStatus(after.error());
  const conversion::DataFileDifferences differences = conversion::CompareDataFiles(*before, *after);
  context.Print(DifferenceText(context.session, differences));
  context.json["differences"] = DifferenceJson(context.session, differences);
  if (!differences.None()) return ExitStatus::kRefused;
  context.Print(NLSFmt(context.session, "The files hold the same data.") + "\n");
  return ExitStatus::kDone;
}

}  // namespace

Action DeclareDataDiff(Arguments& arguments) {
  auto files = std::make_shared<DiffFiles>();
  arguments.AddWord("A", files->before, NLSText("data file or calibration file"));
  arguments.AddWord("B", files->after, NLSText("the file to compare it with"));
  arguments.AddRemark(
      NLSText("Who the files are for comes first, then every item; a table's bytes are given as "
              "record/byte. The exit status is 1 when the files differ."));
  return [files](CommandContext& context) { return Diff(context, *files); };
}

}  // namespace zep::cli
