#include "firmware/firmware.h"

namespace zep::firmware {

Firmware::Firmware(link::Link& program_link)
    : link(program_link), A1MemoryMap(BuildA1MemoryMap()), E1MemoryMap(BuildE1MemoryMap()) {}

}  // namespace zep::firmware
