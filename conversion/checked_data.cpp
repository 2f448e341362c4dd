#include "conversion/checked_data.h"

#include <utility>

namespace zep::conversion {

using radiodb::DataFile;
using radiodb::Finding;
using services::NLSText;
using services::Problem;

tl::expected<DataFile, Problem> CheckedData(DataFile file) {
  if (file.IsSound()) return file;
  DataFile upper = file.UpperCase();
  const std::vector<Finding> findings = upper.Findings();
  if (findings.empty()) return upper;
  return tl::unexpected(
      Problem{.lines = {{NLSText("The data file %0:s is damaged and cannot be used. %1:s Please "
                                 "use another copy of it, or read the radio again."),
                         {file.Path()},
                         {FindingText(findings.front())}}}});
}

}  // namespace zep::conversion
