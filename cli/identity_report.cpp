#include "cli/identity_report.h"

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

Json IdentityJson(const RadioIdentity& identity) {
  Json json;
  json.Set("model", identity.model_name);
  json.Set("model_string", identity.model_string);
  json.Set("model_code", identity.model_code);
  json.Set("tier", identity.tier);
  json.Set("type", TypeName(identity.type));
  json.Set("serial_number", identity.serial_number);
  json.Set("software_version", identity.software_version);
  json.Set("hardware_version", identity.hardware_version);
  json.Set("database_version", identity.database_version);
  json.Set("calibration_version", identity.calibration_version);
  json.Set("band", std::string(1, identity.band));
  json.Set("band_text", BandText(identity));
  json.Set("bandwidth", std::string(1, identity.bandwidth));
  json.Set("compliance_code", std::string(1, identity.compliance_code));
  json.Set("networks", identity.networks);
  return json;
}

}  // namespace zep::cli
