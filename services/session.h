// Everything program-wide, in one object that is handed down: the flags that every waiting loop
// tests, the options of the command line, and the seams to the user, the time, the settings and the
// texts.
//
// One thread uses it. A long job is a loop inside the handler that started it; it calls
// PumpEvents() once a pass and gives up when Stopped().
#pragma once

#include <functional>
#include <string>

#include "platform/clock.h"
#include "services/log.h"
#include "services/outcome.h"
#include "services/paths.h"
#include "services/settings.h"
#include "services/string_table.h"
#include "services/translation.h"
#include "services/user.h"

namespace zep::services {

// Which way firmware or data flows.
enum class Transfer { kRead = 1, kProgram = 2 };

// Whether error replies of a radio are shown, or only kept in RadioErrorReply.
enum class ReportErrors { kShow = 1, kSilent = 2 };

// What the program is made of; all of it outlives the session.
struct Seams {
  platform::Clock& clock;
  User& user;
  Settings& settings;
  const StringTable& strings;
  Translation& translation;
  ApplicationLog& log;
};

class Session {
 public:
  Session(const Seams& seams, ApplicationPaths application_paths)
      : clock(seams.clock),
        user(seams.user),
        settings(seams.settings),
        strings(seams.strings),
        translation(seams.translation),
        log(seams.log),
        paths(std::move(application_paths)) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  platform::Clock& clock;
  User& user;
  Settings& settings;
  const StringTable& strings;
  Translation& translation;
  ApplicationLog& log;
  const ApplicationPaths paths;

  // Options and facts of the start-up.
  bool high_speed = false;     // option HIGHSPEED; switched off at start-up in this build
  bool upload = false;         // option UPLOAD; likewise
  bool in_house = false;       // option INHOUSE
  bool fast_processor = true;  // false on a 386 or 486
  bool factory_mode = true;    // false in customer mode

  // The flags of the running job.
  bool CancelRequested = false;    // set by Cancel and by fatal file errors
  bool DownloadError = false;      // the comms error flag
  bool DownloadSucceeded = false;  // the last firmware run finished
  Transfer TransferMode = Transfer::kProgram;
  std::string
      RadioErrorReply;  // the last error reply collected, beginning with "{"; empty when none
  ReportErrors ReportRadioErrors = ReportErrors::kShow;
  Failure failure = Failure::kNone;

  int status_dots = 0;  // 0 to 5: which step of the status animation comes next

  bool Stopped() const { return CancelRequested || DownloadError; }

  // Makes this the cause of the job's failure unless there is one already.
  void KeepCause(Failure why) {
    if (failure == Failure::kNone) failure = why;
  }
  // Sets DownloadError, or CancelRequested, and keeps the first cause.
  void SetDownloadError(Failure why);
  void RequestCancel(Failure why = Failure::kCancelled);
  // Clears both flags and the cause, as every action of the user does when it starts.
  void ClearFlags();

  // A turn of the user interface, then of the timers.
  void PumpEvents();
  std::function<void()> on_turn;

  // How long the user has been asked questions so far. A modal question inside a turn may take
  // minutes, which are not to be counted against a radio.
  platform::Duration time_in_questions{};
  int open_questions = 0;
};

}  // namespace zep::services
