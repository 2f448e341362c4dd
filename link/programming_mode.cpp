#include "link/programming_mode.h"

#include <string>

#include "link/byte_exchange.h"
#include "platform/files.h"
#include "services/messages.h"
#include "services/paths.h"

namespace zep::link {
namespace {

using services::NLSFmt;
using services::NLSMsgBox;
using services::ReportError;
using services::Session;

constexpr std::size_t kBootstrapSize = 256;
constexpr std::string_view kBootstrapStart = "\xFF";

void SendBootstrapToPort(Link& link, TransferView& view, int port, const std::string& loader) {
  Session& session = link.session;
  view.SetProgressMaximum(static_cast<int>(kBootstrapSize));
  view.ShowStatus(NLSFmt(session, "Writing bootstrap file 1 to communication port %0:s",
                         {std::to_string(port)}));
  SendStringToSpecificComms(link, kBootstrapStart, port);
  int sent = 0;
  for (const char byte : loader) {
    SendByteToSpecificComms(link, static_cast<std::uint8_t>(byte), port);
    ShortenOutput(link, port, kBytesAhead);
    // A slow processor leaves the bar alone, so that the line is kept fed.
    if (session.fast_processor) view.SetProgress(++sent);
    if (session.DownloadError || !link.IsActive(port)) return;
  }
}

// Sends one character of the handshake and waits for its answer. False when the handshake is over.
bool Handshake(Link& link, int port, std::string_view character, std::string_view answer) {
  SendStringToSpecificComms(link, character, port);
  WaitForChar(link, answer, port);
  return !link.session.Stopped() && link.IsActive(port);
}

}  // namespace

void SendBootStrap1ToAllComms(Link& link, TransferView& view) {
  Session& session = link.session;
  const platform::FileContents loader =
      platform::ReadWholeFile(services::FindApplicationFile(session.paths, "bs.tsk"));
  if (loader.error) {
    ReportError(session, loader.error, "SendBootStrap1ToAllComms");
    session.RequestCancel(services::Failure::kFile);
    return;
  }
  if (loader.bytes.size() != kBootstrapSize) {
    NLSMsgBox(session, "Invalid bootstrap file (bs.tsk)");
    session.RequestCancel(services::Failure::kFile);
    CheckForNoResponse(link);
    return;
  }
  for (const int port : kAllPorts) {
    if (link.IsActive(port)) SendBootstrapToPort(link, view, port, loader.bytes);
  }
  DrainOutput(link);
  CheckForNoResponse(link);
}

void PutActiveCommsInProgMode(Link& link) {
  for (const int port : kAllPorts) {
    if (!link.IsActive(port)) continue;
    link.in_programming_mode[Link::Index(port)] = true;
    if (!Handshake(link, port, "^", "v")) return;
    if (!Handshake(link, port, "#", ">")) return;
  }
}

void SendCaretToActiveComms(Link& link) {
  for (const int port : kAllPorts) {
    if (!link.IsActive(port)) continue;
    SendStringToSpecificComms(link, "^", port);
    link.in_programming_mode[Link::Index(port)] = false;
  }
}

void ReleaseFromProgMode(Link& link) {
  constexpr std::uint8_t kCaret = '^';
  for (const int port : kAllPorts) {
    bool& in_programming_mode = link.in_programming_mode[Link::Index(port)];
    if (in_programming_mode && link.Port(port).IsOpen()) link.Port(port).Write({&kCaret, 1});
    in_programming_mode = false;
  }
}

}  // namespace zep::link
