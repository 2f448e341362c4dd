#include <windows.h>
#include <algorithm>

#include "platform/advice.h"
#include "platform/serial_native.h"
#include "platform/wide_text.h"

namespace zep::platform {
namespace {

SystemError OpenError(DWORD number, const std::string& device) {
  SystemError error = MakeSystemError(static_cast<int>(number), device);
  switch (number) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_PATHNAME:
      error.number = kPortDoesNotExist;
      return WithAdvice(std::move(error), Advice::kPortMissing, {device});
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
      error.number = kPortInUse;
      return WithAdvice(std::move(error), Advice::kInUse, {device});
    default:
      return error;
  }
}

// Bytes as they are, no flow control, DTR and RTS on; a read ends a millisecond after the last
// byte.
bool Prepare(HANDLE port) {
  DCB settings{};
  settings.DCBlength = sizeof settings;
  if (GetCommState(port, &settings) == 0) return false;
  settings.fBinary = TRUE;
  settings.fOutxCtsFlow = FALSE;
  settings.fOutxDsrFlow = FALSE;
  settings.fDsrSensitivity = FALSE;
  settings.fOutX = FALSE;
  settings.fInX = FALSE;
  settings.fNull = FALSE;
  settings.fErrorChar = FALSE;
  settings.fAbortOnError = FALSE;
  settings.fDtrControl = DTR_CONTROL_ENABLE;
  settings.fRtsControl = RTS_CONTROL_ENABLE;
  COMMTIMEOUTS timeouts{};
  timeouts.ReadIntervalTimeout = 1;
  return SetCommState(port, &settings) != 0 && SetCommTimeouts(port, &timeouts) != 0;
}

}  // namespace

NativeSerial OpenNativeSerial(const std::string& device) {
  const std::string path = device.starts_with("\\\\") ? device : "\\\\.\\" + device;
  const HANDLE port = CreateFileW(Widen(path).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                  OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
  if (port == INVALID_HANDLE_VALUE)
    return {.handle = nullptr, .error = OpenError(GetLastError(), device)};
  if (!Prepare(port)) {
    SystemError error = LastSystemError(device);
    CloseHandle(port);
    return {.handle = nullptr,
            .error = WithAdvice(std::move(error), Advice::kNotSerialDevice, {device})};
  }
  PurgeComm(port, PURGE_RXCLEAR);
  return {.handle = port, .error = {}};
}

void ReleaseNativeSerial(SerialHandle handle) { PurgeComm(handle, PURGE_TXABORT | PURGE_TXCLEAR); }

void CloseNativeSerial(SerialHandle handle) { CloseHandle(handle); }

std::size_t UnsentBytes(SerialHandle handle, std::size_t in_flight) {
  DWORD errors = 0;
  COMSTAT status{};
  if (ClearCommError(handle, &errors, &status) == 0) return in_flight;
  // The driver counts the unfinished write too.
  return std::max<std::size_t>(in_flight, status.cbOutQue);
}

void DiscardOutput(SerialHandle handle) { PurgeComm(handle, PURGE_TXCLEAR); }

SystemError DeviceGone(int number, const std::string& device) {
  return WithAdvice(MakeSystemError(number == 0 ? ERROR_DEVICE_NOT_CONNECTED : number, device),
                    Advice::kPortGone, {device});
}

}  // namespace zep::platform
