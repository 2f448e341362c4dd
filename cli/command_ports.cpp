
#include "cli/command.h"
#include "cli/text_layout.h"
#include "platform/advice.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using platform::Advice;
using platform::SerialDeviceInfo;
using platform::SerialDeviceState;
using services::NLSFmt;
using services::NLSText;

std::string_view StateName(SerialDeviceState state) {
  switch (state) {
    case SerialDeviceState::kFree:
      return NLSText("free");
    case SerialDeviceState::kBusy:
    case SerialDeviceState::kConsole:
      return NLSText("in use");
    case SerialDeviceState::kNoPermission:
      return NLSText("no permission");
  }
  return {};
}

// What is to be done before the device can be used; empty when nothing is.
std::string NextStep(const Program& program, const SerialDeviceInfo& device) {
  const services::Session& session = program.session;
  switch (device.state) {
    case SerialDeviceState::kFree:
      return {};
    case SerialDeviceState::kBusy:
      if (device.busy_with.empty())
        return NLSFmt(session, AdviceText(Advice::kInUse), {device.device});
      return NLSFmt(session, AdviceText(Advice::kPortBusyWith), {device.device, device.busy_with});
    case SerialDeviceState::kConsole:
      return NLSFmt(session, AdviceText(Advice::kPortIsConsole), {device.device});
    case SerialDeviceState::kNoPermission:
      break;
  }
  const std::unique_ptr<platform::SerialPort> port = program.surroundings.make_port(device.device);
  const platform::SystemError error = port->Open();
  port->Close();
  return NLSFmt(session, error.advice, error.advice_arguments);
}

void ShowDevices(Program& program) {
  const services::Session& session = program.session;
  Table table({NLSFmt(session, "Device"), NLSFmt(session, "Adapter"), NLSFmt(session, "USB id"),
               NLSFmt(session, "Serial number"), NLSFmt(session, "State")});
  std::string next_steps;
  Json json = Json::List();
  for (const SerialDeviceInfo& device : program.surroundings.list_devices()) {
    const std::string_view state = StateName(device.state);
    const std::string next_step = NextStep(program, device);
    table.AddRow({device.device, device.description, device.usb_id, device.serial_number,
                  NLSFmt(session, state)});
    if (!next_step.empty()) next_steps += next_step + "\n";
    json.Add(Json()
                 .Set("device", device.device)
                 .Set("adapter", device.description)
                 .Set("usb_id", device.usb_id)
                 .Set("serial_number", device.serial_number)
                 .Set("state", state)
                 .Set("in_use_by", device.busy_with)
                 .Set("next_step", next_step));
  }
  program.json.Set("devices", std::move(json));
  if (table.IsEmpty()) {
    program.Print(NLSFmt(session,
                         "There is no serial device on this computer. Please plug in the adapter "
                         "of the programming lead. Without one, \"-p sim:conventional\" gives you "
                         "a simulated radio.") +
                  "\n");
    return;
  }
  program.Print(table.Text() + (next_steps.empty() ? "" : "\n" + next_steps));
}

void ShowSlots(Program& program) {
  const services::Session& session = program.session;
  link::Link& link = program.Link();
  if (program.NamesPorts()) program.LinkForJob();
  Table table({NLSFmt(session, "Slot"), NLSFmt(session, "Device"), NLSFmt(session, "State")});
  Json json = Json::List();
  for (const int slot : link::kAllPorts) {
    const std::string device = link.Port(slot).Device();
    const std::string_view state = PortStateText(link.State(slot));
    table.AddRow({std::to_string(slot), device.empty() ? "-" : device, NLSFmt(session, state)});
    json.Add(Json().Set("slot", slot).Set("device", device).Set("state", state));
  }
  program.json.Set("slots", std::move(json));
  program.Print("\n" + table.Text());
}

ExitStatus Ports(Program& program) {
  ShowDevices(program);
  ShowSlots(program);
  return program.JobStatus(true);
}

}  // namespace

Action DeclarePorts(Arguments& arguments) {
  arguments.AddRemark(
      NLSText("The slots are the ports that a command uses when none is named with -p. With -p, "
              "the ports named are tried out."));
  return Ports;
}

}  // namespace zep::cli
