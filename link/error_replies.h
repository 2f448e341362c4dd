// What radios report, in words for the user: error replies of the database command set, and error
// codes of the flash loader.
#pragma once

#include <string_view>

#include "link/job.h"

namespace zep::link {

// Reports RadioErrorReply. With ReportRadioErrors at kShow a known reply is shown, and any reply
// sets DownloadError; with kSilent nothing happens. RadioErrorReply keeps its value for the caller
// to test.
void RadioErrorReporter(Job& job);

// Hands an error reply that the program found by itself (a wrong checksum) to the reporter.
void ReportRadioError(Job& job, std::string_view reply);

// Shows the flash loader's error code (one character) for the port; an unknown code shows nothing.
// The caller marks the port.
void FlashErrorReporter(services::Session& session, std::string_view code, int port);

}  // namespace zep::link
