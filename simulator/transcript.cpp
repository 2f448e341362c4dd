#include "simulator/transcript.h"

namespace zep::simulator {

platform::SystemError Transcript::Open(const std::string& file) {
  platform::SystemError error = file_.Open(file, platform::WriteMode::kReplace);
  if (!error) file_.Write("        time port   baud\n");
  return error;
}

void Transcript::Add(int radio, const WireByte& byte) {
  text_.Byte(byte.due - start_, {.port = radio, .from_radio = byte.from_radio, .baud = byte.baud},
             byte.value);
}

platform::SystemError Transcript::EndLine() {
  text_.EndLine();
  return file_.Error();
}

}  // namespace zep::simulator
