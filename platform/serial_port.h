// The serial port object: what the rest of the program knows of a serial port. Polled, never
// blocking but for the two waits named below. Two makers exist: a real device (serial_device.h) and
// the simulator's in-process port.
//
// A failure of an open port (a cable pulled, a device gone) does not show in the results: the port
// then reads nothing and swallows what is written, and TakeError() tells what happened.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "platform/clock.h"
#include "platform/system_error.h"

namespace zep::platform {

enum class InputMode { kText = 0, kBinary = 1 };

class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // The device's name as the user knows it ("/dev/ttyUSB0", "COM3", "sim:trunked").
  virtual std::string Device() const = 0;

  // Opens the device for this program alone. kPortDoesNotExist when there is none, kPortInUse when
  // somebody else has it, else the operating system's error; advice is filled in. Opening an open
  // port does nothing.
  virtual SystemError Open() = 0;
  // Lets what was written go out (at most a second), then closes. Closing a closed port does
  // nothing.
  virtual void Close() = 0;
  virtual bool IsOpen() const = 0;

  // Line settings: baud, parity, data bits, stop bits, as in "9600,n,8,1". Kept while the port is
  // closed.
  virtual SystemError SetSettings(std::string_view settings) = 0;

  // Bytes received and not read yet.
  virtual std::size_t InputCount() = 0;
  // Bytes written and not on the line yet, as far as the device tells.
  virtual std::size_t OutputCount() = 0;
  virtual void ClearInput() = 0;
  virtual void ClearOutput() = 0;

  // The next received byte, or nothing.
  virtual std::optional<std::uint8_t> Read() = 0;
  // Queues bytes for sending, all of them, without waiting.
  virtual void Write(std::span<const std::uint8_t> bytes) = 0;

  // Waits until there is input, the port fails, or longest is over.
  virtual void WaitForInput(Duration longest) = 0;
  // Waits until all output is on the line, the port fails, or longest is over. May return early:
  // ask OutputCount().
  virtual void WaitForOutput(Duration longest) = 0;

  // The failure since the last call, if any. A port that failed stays failed until it is opened
  // again.
  virtual SystemError TakeError() = 0;

  // The number by which this object addresses its port; port n of the four is number n unless a
  // multi-port card says otherwise.
  void SetPortNumber(int number) { port_number_ = number; }
  int PortNumber() const { return port_number_; }

  // How the input is read. Both modes read bytes as bytes; the mode is kept for whoever asks.
  void SetInputMode(InputMode mode) { input_mode_ = mode; }
  InputMode GetInputMode() const { return input_mode_; }

 private:
  int port_number_ = 0;
  InputMode input_mode_ = InputMode::kText;
};

}  // namespace zep::platform
