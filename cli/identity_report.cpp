#include "cli/identity_report.h"

#include "radiodb/radio_models.h"
#include "services/messages.h"

namespace zep::cli {

using radiodb::RadioIdentity;
using services::Table;

std::string ModelName(const services::Session& session, std::string_view model_code) {
  const auto model = radiodb::FindRadioModel(model_code);
  return model ? radiodb::AppGetRadioModel(session, model->tier)
               : services::NLSFmt(session, "Unknown");
}

Table IdentityTable(const services::Session& session, const RadioIdentity& identity) {
  Table table;
  for (const radiodb::IdentityRow& row : IdentityRows(session, identity))
    table.AddRow({row.name, row.value});
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
