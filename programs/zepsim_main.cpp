// The program zepsim.
#include "platform/terminal.h"
#include "simulator/zepsim.h"

int main(int argc, char** argv) {
  return zep::simulator::RunZepsim(zep::platform::ProgramArguments(argc, argv));
}
