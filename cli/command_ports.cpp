#include "cli/command.h"
#include "link/port_texts.h"
#include "services/messages.h"
#include "services/text_layout.h"

namespace zep::cli {
namespace {

using platform::SerialDeviceInfo;
using services::NLSFmt;
using services::NLSText;
using services::Table;

void ShowDevices(CommandContext& context) {
  const services::Session& session = context.session;
  Table table({NLSFmt(session, "Device"), NLSFmt(session, "Adapter"), NLSFmt(session, "USB id"),
               NLSFmt(session, "Serial number"), NLSFmt(session, "State")});
  std::string next_steps;
  Json json = Json::List();
  const auto try_device = [&context](const std::string& device) {
    return context.surroundings.make_port(device)->Open();
  };
  for (const SerialDeviceInfo& device : context.surroundings.list_devices()) {
    const std::string_view state = link::DeviceStateText(device.state);
    const std::string next_step = link::DeviceNextStep(session, device, try_device);
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
  context.json.Set("devices", std::move(json));
  if (table.IsEmpty()) {
    context.Print(NLSFmt(session,
                         "There is no serial device on this computer. Please plug in the adapter "
                         "of the programming lead. Without one, \"-p sim:conventional\" gives you "
                         "a simulated radio.") +
                  "\n");
    return;
  }
  context.Print(table.Text() + (next_steps.empty() ? "" : "\n" + next_steps));
}

void ShowSlots(CommandContext& context) {
  const services::Session& session = context.session;
  link::Link& link = context.Link();
  if (context.NamesPorts()) context.LinkForJob();
  Table table({NLSFmt(session, "Slot"), NLSFmt(session, "Device"), NLSFmt(session, "State")});
  Json json = Json::List();
  for (const int slot : link::kAllPorts) {
    const std::string device = link.Port(slot).Device();
    const std::string_view state = PortStateText(link.State(slot));
    table.AddRow({std::to_string(slot), device.empty() ? "-" : device, NLSFmt(session, state)});
    json.Add(Json().Set("slot", slot).Set("device", device).Set("state", state));
  }
  context.json.Set("slots", std::move(json));
  context.Print("\n" + table.Text());
}

ExitStatus Ports(CommandContext& context) {
  ShowDevices(context);
  ShowSlots(context);
  return context.JobStatus(true);
}

}  // namespace

Action DeclarePorts(Arguments& arguments) {
  arguments.AddRemark(
      NLSText("The slots are the ports that a command uses when none is named with -p. With -p, "
              "the ports named are tried out."));
  return Ports;
}

}  // namespace zep::cli
