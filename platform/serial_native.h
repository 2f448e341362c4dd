// What a serial device needs beyond reading, writing and line settings, system by system. Only
// serial_device.cpp uses it.
#pragma once

#include <cstddef>
#include <string>

#include "platform/system_error.h"

namespace zep::platform {

#ifdef _WIN32
using SerialHandle = void*;
#else
using SerialHandle = int;
#endif

struct NativeSerial {
  SerialHandle handle = {};  // when there is no error
  SystemError error;         // with advice
};

// Opens the device for this program alone, DTR and RTS on, without flow control, input empty; ready
// for polling.
NativeSerial OpenNativeSerial(const std::string& device);

// What must be undone before the handle is closed, so that closing neither waits nor leaves the
// device locked.
void ReleaseNativeSerial(SerialHandle handle);

void CloseNativeSerial(SerialHandle handle);

// Bytes that are not on the line yet, when in_flight bytes are in the hands of an unfinished write.
std::size_t UnsentBytes(SerialHandle handle, std::size_t in_flight);

// Forgets what the system has not sent yet.
void DiscardOutput(SerialHandle handle);

// The error of an open device that is no longer there; number is the system's, 0 when its input has
// just ended.
SystemError DeviceGone(int number, const std::string& device);

}  // namespace zep::platform
