#include "cli/command.h"
#include "cli/json_words.h"
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
  Json json = Json::array();
  const auto try_device = [&context](const std::string& device) {
    return context.computer.make_port(device)->Open();
  };
  for (const SerialDeviceInfo& device : context.computer.list_devices()) {
    const std::string next_step = link::DeviceNextStep(session, device, try_device);
    table.AddRow({device.device, device.description, device.usb_id, device.serial_number,
                  NLSFmt(session, link::DeviceStateText(device.state))});
    if (!next_step.empty()) next_steps += next_step + "\n";
    json.push_back(Json{{"device", device.device},
                        {"adapter", device.description},
                        {"usb_id", device.usb_id},
                        {"serial_number", device.serial_number},
                        {"state", JsonWord(device.state)},
                        {"in_use_by", device.busy_with},
                        {"next_step", next_step}});
  }
  context.json["devices"] = std::move(json);
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

void ShowPorts(CommandContext& context) {
  const services::Session& session = context.session;
  link::Link& link = context.Link();
  if (context.NamesPorts()) context.LinkForJob();
  Table table({NLSFmt(session, "Port"), NLSFmt(session, "Device"), NLSFmt(session, "State")});
  Json json = Json::array();
  for (const int port : link::kAllPorts) {
    const std::string device = link.Port(port).Device();
    const link::PortState state = link.State(port);
    table.AddRow({std::to_string(port), device.empty() ? "-" : device,
                  NLSFmt(session, PortStateText(state))});
    json.push_back(Json{{"port", port}, {"device", device}, {"state", JsonWord(state)}});
  }
  context.json["ports"] = std::move(json);
  context.Print("\n" + table.Text());
}

ExitStatus Ports(CommandContext& context) {
  ShowDevices(context);
  ShowPorts(context);
  return context.LinkStatus();
}

}  // namespace

Action DeclarePorts(Arguments& arguments) {
  arguments.AddRemark(
      NLSText("Without -p, a command uses the Active ports of the settings, which are shown. With "
              "-p, the ports named are tried out."));
  return Ports;
}

}  // namespace zep::cli
