// The program zepsim: simulated radios on pseudo-terminals, until it is interrupted.
#pragma once

#include <string>
#include <vector>

namespace zep::simulator {

// Returns the exit status: 0 done, 1 something could not be opened or written, 2 usage.
int RunZepsim(std::vector<std::string> arguments);

}  // namespace zep::simulator
