#include "cli/identity_report.h"

#include <nlohmann/json.hpp>

#include "services/messages.h"
#include "services/radio_model.h"

namespace zep::cli {
namespace {

using radiodb::RadioIdentity;
using services::NLSFmt;
using services::NLSText;

std::string BandwidthText(const services::Session& session, const RadioIdentity& identity) {
  return identity.bandwidth == '2' ? NLSFmt(session, "Universal")
                                   : std::string(1, identity.bandwidth);
}

}  // namespace

std::string_view TypeName(radiodb::RadioType type) {
  return type == radiodb::RadioType::kConventionalII
             ? NLSText("Conventional II")
             : radiodb::ReturnTypeStringFromEnum(static_cast<int>(type));
}

std::string ModelName(const services::Session& session, std::string_view model_code) {
  const auto model = radiodb::FindRadioModel(model_code);
  return model ? services::AppGetRadioModel(session, model->tier) : NLSFmt(session, "Unknown");
}

std::string RadioName(const RadioIdentity& identity) {
  return identity.serial_number + " (" + identity.model_name + ")";
}

Table IdentityTable(const services::Session& session, const RadioIdentity& identity) {
  Table table;
  const auto row = [&](std::string_view name, std::string value) {
    table.AddRow({NLSFmt(session, name), std::move(value)});
  };
  row(NLSText("Model"), identity.model_name);
  row(NLSText("Model string"), identity.model_string);
  row(NLSText("Type"), NLSFmt(session, TypeName(identity.type)));
  row(NLSText("Serial number"), NLSFmt(session, identity.serial_number));
  row(NLSText("Software version"), identity.software_version);
  row(NLSText("Hardware version"), identity.hardware_version);
  row(NLSText("Database version"), identity.database_version);
  row(NLSText("Calibration version"), identity.calibration_version);
  row(NLSText("Band"), NLSFmt(session, BandText(identity)));
  row(NLSText("Bandwidth"), BandwidthText(session, identity));
  row(NLSText("Compliance code"), std::string(1, identity.compliance_code));
  if (identity.IsTrunked()) row(NLSText("Networks"), std::to_string(identity.networks));
  return table;
}

nlohmann::ordered_json IdentityJson(const RadioIdentity& identity) {
  nlohmann::ordered_json json;
  json["model"] = identity.model_name;
  json["model_string"] = identity.model_string;
  json["model_code"] = identity.model_code;
  json["tier"] = identity.tier;
  json["type"] = TypeName(identity.type);
  json["serial_number"] = identity.serial_number;
  json["software_version"] = identity.software_version;
  json["hardware_version"] = identity.hardware_version;
  json["database_version"] = identity.database_version;
  json["calibration_version"] = identity.calibration_version;
  json["band"] = std::string(1, identity.band);
  json["band_text"] = BandText(identity);
  json["bandwidth"] = std::string(1, identity.bandwidth);
  json["compliance_code"] = std::string(1, identity.compliance_code);
  json["networks"] = identity.networks;
  return json;
}

}  // namespace zep::cli
