// For the tests of platform/: errors as one line of text, and the rights of an ordinary user.
#pragma once

#include <string>

#include <gtest/gtest.h>  // brings the POSIX calls along

#include "platform/system_error.h"
#include "services/fill_in.h"

namespace zep::testing {

// "13 You are not allowed ...": number and advice with the arguments filled in; "ok" when there is
// no error.
inline std::string Say(const platform::SystemError& error) {
  if (!error) return "ok";
  return std::to_string(error.number) + " " +
         services::FillIn(error.advice, error.advice_arguments);
}

// While it lives, root is an ordinary user; other users stay who they are.
class OrdinaryUser {
 public:
  OrdinaryUser() { Become(65534); }
  ~OrdinaryUser() { Become(0); }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  void Become(unsigned number) const {
    if (!was_root_) return;
    // Only root may change the group.
    const bool done = number == 0 ? seteuid(number) == 0 && setegid(number) == 0
                                  : setegid(number) == 0 && seteuid(number) == 0;
    EXPECT_TRUE(done);
  }

  bool was_root_ = geteuid() == 0;
};

}  // namespace zep::testing
