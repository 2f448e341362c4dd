#include "link/error_replies.h"

#include <array>
#include <string>

#include "services/messages.h"

namespace zep::link {
namespace {

using services::Icon;
using services::NLSFmt;
using services::NLSMsgBox;
using services::NLSText;

struct ErrorText {
  std::string_view code;
  std::string_view text;
};

constexpr std::array kDatabaseErrors = {
    ErrorText{"{C01}", NLSText("{C01} Command not recognized")},
    ErrorText{"{C02}", NLSText("{C02} Record corrupted")},
    ErrorText{"{C03}", NLSText("{C03} Record not accepted")},
    ErrorText{"{C04}", NLSText("{C04} Item not recognized")},
    ErrorText{"{C05}", NLSText("{C05} Record size error")},
    ErrorText{"{C06}", NLSText("{C06} Item size overflow")},
    ErrorText{"{C07}", NLSText("{C07} Read only item error")},
    ErrorText{"{C08}", NLSText("{C08} Record too long")},
    ErrorText{"{C09}", NLSText("{C09} Dynamic database full")},
    ErrorText{"{C10}", NLSText("{C10} Database write error")},
    ErrorText{"{X32}", NLSText("{X32} Database is corrupted")},
    ErrorText{"{X31}", NLSText("{X31} Model configuration not successful")},
};

constexpr std::array kFlashErrors = {
    ErrorText{"S", NLSText("Invalid storage.")},
    ErrorText{"I", NLSText("Invalid Rx, Tx character.")},
    ErrorText{"X", NLSText("Invalid Flash.")},
    ErrorText{"G", NLSText("Invalid page address.")},
    ErrorText{"A", NLSText("Invalid start address.")},
    ErrorText{"F", NLSText("Invalid Flash program.")},
    ErrorText{"P", NLSText("Invalid prompt.")},
    ErrorText{"!", NLSText("Overrun error.")},
    ErrorText{"#", NLSText("Noise error.")},
    ErrorText{"$", NLSText("Frame error.")},
    ErrorText{"?", NLSText("Data corrupt.")},
};

template <std::size_t kRows>
std::string_view Find(const std::array<ErrorText, kRows>& table, std::string_view code) {
  for (const ErrorText& row : table) {
    if (row.code == code) return row.text;
  }
  return {};
}

}  // namespace

void RadioErrorReporter(Job& job) {
  if (job.ReportRadioErrors != ReportErrors::kShow) return;
  if (const std::string_view text = Find(kDatabaseErrors, job.RadioErrorReply); !text.empty()) {
    NLSMsgBox(job.session, text,
              {.icon = Icon::kCritical, .title = NLSText("Radio reported error")});
  }
  job.SetDownloadError(services::Failure::kRadioError);
}

void ReportRadioError(Job& job, std::string_view reply) {
  job.RadioErrorReply = reply;
  RadioErrorReporter(job);
}

void FlashErrorReporter(services::Session& session, std::string_view code, int port) {
  const std::string_view text = Find(kFlashErrors, code);
  if (text.empty()) return;
  NLSMsgBox(session,
            NLSFmt(session, "Error detected on communication port %0:s :  %1:s",
                   {std::to_string(port), NLSFmt(session, text)}),
            {.icon = Icon::kCritical});
}

}  // namespace zep::link
