// The person at the program, as the procedures know them: message boxes, file dialogs and the
// moments in which the user interface gets its turn. The windows and the terminal implement it;
// texts arrive here translated.
#pragma once

#include <optional>
#include <string>

namespace zep::services {

enum class Icon { kInformation, kCritical, kQuestion };
enum class Buttons { kOk, kOkCancel, kYesNo };
enum class Answer { kOk = 1, kCancel = 2, kYes = 6, kNo = 7 };

// Whether the user must do something at the radio before the program may go on. A terminal waits
// for Enter then; it shows any other notice and goes on. A window waits for OK in both cases.
enum class Notice { kPlain, kAwaitsAction };

// What a question is for: the program's own, or the answer to the user's wish to cancel.
enum class Purpose { kAsks, kCancel };

struct MessageRequest {
  std::string text;
  std::string title;
  Icon icon = Icon::kInformation;
  Buttons buttons = Buttons::kOk;
  Notice notice = Notice::kPlain;
  Purpose purpose = Purpose::kAsks;
  bool cautious = false;  // No, or Cancel, is the button that Enter presses
};

struct FileRequest {
  std::string title;
  std::string filter;  // pairs "name|pattern" joined by "|", as in "All Files|*.*"
  std::string folder;  // where to start; may be empty
  std::string name;    // proposed file name; may be empty
};

class User {
 public:
  virtual ~User() = default;

  // Lets pending user-interface events run: a Cancel button, a repaint, Ctrl-C.
  virtual void PumpEvents() = 0;

  // Shows the box and returns the button pressed; closing a box counts as Cancel, No or, with one
  // button, OK.
  virtual Answer ShowMessage(const MessageRequest& request) = 0;

  // The file chosen, with its folder; nothing when the user gave up.
  virtual std::optional<std::string> AskOpenFile(const FileRequest& request) = 0;
  virtual std::optional<std::string> AskSaveFile(const FileRequest& request) = 0;
};

}  // namespace zep::services
