// Everything program-wide, in one object that is handed down: the options of the command line, and
// the seams to the user, the time, the settings and the texts. It outlives all jobs; what is true
// only while one runs is the job's (link/job.h).
//
// One thread uses it. A long job is a loop inside the handler that started it; it calls
// PumpEvents() once a pass and gives up when it is stopped.
#pragma once

#include <functional>
#include <string>

#include "platform/clock.h"
#include "platform/system_error.h"
#include "services/job_control.h"
#include "services/log.h"
#include "services/outcome.h"
#include "services/paths.h"
#include "services/settings.h"
#include "services/string_table.h"
#include "services/translation.h"
#include "services/user.h"

namespace zep::services {

// What the program is made of; all of it outlives the session.
struct Seams {
  platform::Clock& clock;
  User& user;
  Settings& settings;
  const StringTable& strings;
  Translation& translation;
  ApplicationLog& log;
  // Starts another program, which goes on by itself.
  std::function<platform::SystemError(const std::string& program)> start_program;
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
        start_program(seams.start_program),
        paths(std::move(application_paths)) {}
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  platform::Clock& clock;
  User& user;
  Settings& settings;
  const StringTable& strings;
  Translation& translation;
  ApplicationLog& log;
  const std::function<platform::SystemError(const std::string& program)> start_program;
  const ApplicationPaths paths;

  // Options and facts of the start-up.
  bool high_speed = false;     // option HIGHSPEED; switched off at start-up in this build
  bool upload = false;         // option UPLOAD; likewise
  bool in_house = false;       // option INHOUSE
  bool fast_processor = true;  // false on a 386 or 486
  bool factory_mode = true;    // false in customer mode

  int status_dots = 0;  // 0 to 5: which step of the status animation comes next

  // The job that is running.
  JobControl jobs;

  // A turn of the user interface, then of the timers.
  void PumpEvents();
  std::function<void()> on_turn;  // the timers of the running job

  // How long the user has been asked questions so far. A modal question inside a turn may take
  // minutes, which are not to be counted against a radio.
  platform::Duration time_in_questions{};
  int open_questions = 0;
};

}  // namespace zep::services
