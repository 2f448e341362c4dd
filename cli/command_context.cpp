#include "cli/command_context.h"

#include <algorithm>

#include "cli/json_words.h"
#include "link/byte_exchange.h"
#include "link/port_devices.h"
#include "platform/files.h"
#include "services/foundation.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::Icon;
using services::Language;
using services::NLSFmt;

std::optional<bool> AnswerToAll(const Options& options) {
  if (options.yes) return true;
  if (options.no) return false;
  return std::nullopt;
}

std::optional<Language> FindLanguage(const std::string& code) {
  for (int number = 1; number <= services::kLanguageCount; ++number) {
    const auto language = static_cast<Language>(number);
    if (services::LanguageCode(language) == code) return language;
  }
  return std::nullopt;
}

bool IsStringTable(const std::string& name, const std::string& application_folder) {
  const std::vector<std::string> names = services::StringTable::Names();
  return std::find(names.begin(), names.end(), name) != names.end() ||
         platform::FileExists(services::AppMakePath(application_folder, name + ".strings"));
}

Json Describe(const ShownMessage& message) {
  Json described = {{"icon", JsonWord(message.answer ? Icon::kQuestion : message.icon)},
                    {"text", message.text}};
  if (message.answer) {
    described["answer"] =
        *message.answer == services::Answer::kYes || *message.answer == services::Answer::kOk;
  }
  return described;
}

}  // namespace

CommandContext::CommandContext(const Options& given_options, Console& the_console,
                               const platform::Computer& the_computer)
    : options(given_options),
      console(the_console),
      computer(the_computer),
      user(console, AnswerToAll(given_options)),
      foundation_(given_options.application_folder, given_options.string_table, computer),
      session(foundation_.SeamsFor(computer, user), foundation_.paths),
      progress(console, session, byte_count_, given_options.quiet),
      io_ports_(std::make_unique<platform::NoIoPorts>()),
      windows_(std::make_unique<TerminalLinkWindows>(user)) {
  user.Attach(session, progress);
  session.in_house = options.in_house;
}

CommandContext::~CommandContext() = default;

std::string CommandContext::ChooseLanguage() {
  const std::optional<Language> wanted = FindLanguage(options.language);
  const platform::SystemError error =
      services::LoadTexts(session, options.json ? Language::kEnglish : wanted);
  if (error) ShowNote(error);
  if (wanted || options.language.empty()) return {};
  return NLSFmt(session, "There is no language %0:s. Please choose one of %1:s.",
                {options.language, services::LanguageCodes(", ")});
}

ExitStatus CommandContext::Start() {
  if (options.yes && options.no)
    return UsageError(NLSFmt(session, "Please give one of --yes and --no, not both."));
  const std::string& folder = options.application_folder;
  if (!folder.empty() && !platform::IsFolder(folder)) {
    user.Say(NLSFmt(session,
                    "There is no folder %0:s. Please make the folder, or choose another one.",
                    {folder}));
    return ExitStatus::kFile;
  }
  if (!IsStringTable(options.string_table, session.paths.application_folder)) {
    return UsageError(NLSFmt(session,
                             "There is no string table %0:s. Please choose ZEP, \"Vorn PMR II\" or "
                             "Torvik.",
                             {options.string_table}));
  }
  if (const std::string note = services::StringTableNote(session); !note.empty()) user.Say(note);
  if (const std::string problem = ParsePorts(session, options.ports, devices_); !problem.empty())
    return UsageError(problem);
  ShowNote(computer.user_hive.Problem());
  ShowNote(computer.machine_hive.Problem());
  if (options.trace.empty()) return ExitStatus::kDone;
  const platform::SystemError error =
      trace_file_.Open(options.trace, platform::WriteMode::kReplace);
  if (error) {
    ReportError(session, error, "--trace");
    return ExitStatus::kFile;
  }
  trace_ = std::make_unique<link::WireTrace>(
      computer.clock, [this](std::string_view piece) { trace_file_.WriteThrough(piece); });
  return ExitStatus::kDone;
}

link::Link& CommandContext::Link() {
  if (link_) return *link_;
  link::Ports ports;
  const auto devices = NamesPorts() ? devices_ : link::DevicesOfPorts(session.settings);
  for (const int number : link::kAllPorts) {
    const std::size_t index = link::Link::Index(number);
    ports[index] = std::make_unique<link::WatchedPort>(computer.make_port(devices[index]),
                                                       byte_count_, trace_.get());
  }
  link_ = std::make_unique<link::Link>(session, std::move(ports), *windows_, *io_ports_);
  if (!NamesPorts()) link::CheckCommPorts(*link_, true);
  return *link_;
}

link::Link* CommandContext::LinkForJob() {
  link::Link& link = Link();
  const bool can_begin = NamesPorts() ? ActivateNamedPorts(link, devices_) : FindActivePorts(link);
  if (can_begin) return &link;
  link_failure_ = services::Failure::kPort;
  return nullptr;
}

link::Link* CommandContext::LinkForOneRadio(link::Transfer direction) {
  link::Link* link = LinkForJob();
  if (link == nullptr || link::ActivePorts(link->CommStates) == 1) return link;
  link::Job choice(*link);
  choice.TransferMode = direction;
  windows_->ShowPortSelection(choice);
  link_failure_ = choice.Ended(link::ActivePorts(choice.CommStates) == 1).failure;
  SaveCommStates(choice);
  return link_failure_ == services::Failure::kNone ? link : nullptr;
}

void CommandContext::Print(const std::string& text) {
  progress.StepAside();
  if (!options.json) console.WriteOutput(text);
}

ExitStatus CommandContext::UsageError(const std::string& text) {
  user.Say(text);
  user.Say(NLSFmt(session, "\"zepctl --help\" shows the commands and options."));
  return ExitStatus::kUsage;
}

ExitStatus CommandContext::JobStatus(const services::Outcome& outcome) {
  if (!outcome.radio_reply.empty()) json["radio_reply"] = outcome.radio_reply;
  return StatusOf(outcome.failure);
}

ExitStatus CommandContext::WorkStatus(services::Failure why) const {
  return user.WasInterrupted() ? ExitStatus::kCancelled : StatusOf(why);
}

void CommandContext::Finish(ExitStatus status) {
  progress.EndPhase();
  // One that could not be opened was told of at the start.
  if (trace_ && trace_file_.Error()) ReportError(session, trace_file_.Error(), "--trace");
  if (const platform::SystemError& problem = session.settings.WriteProblem()) {
    user.Say(NLSFmt(session, "The settings cannot be saved."));
    ShowNote(problem);
  }
  if (!options.json || status == ExitStatus::kUsage) return;
  Json all = {{"ok", status == ExitStatus::kDone}, {"exit_status", static_cast<int>(status)}};
  all.update(json);
  Json& messages = all["messages"] = Json::array();
  for (const ShownMessage& message : user.Messages()) messages.push_back(Describe(message));
  // What is no UTF-8 in a text, as it may come from a radio, is replaced.
  const std::string text = all.dump(2, ' ', false, Json::error_handler_t::replace);
  console.WriteOutput(text + "\n");
}

void CommandContext::ShowNote(const platform::SystemError& error) {
  if (error) user.Say(services::ErrorNote(session, error));
}

}  // namespace zep::cli
