#include "cli/identity_report.h"

#include "cli/json_words.h"
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
  return Json{{"model", identity.model_name},
              {"model_string", identity.model_string},
              {"model_code", identity.model_code},
              {"tier", identity.tier},
              {"type", JsonWord(identity.type)},
              {"serial_number", identity.serial_number},
              {"software_version", identity.software_version},
              {"hardware_version", identity.hardware_version},
              {"database_version", identity.database_version},
              {"calibration_version", identity.calibration_version},
              {"band", std::string(1, identity.band)},
              {"band_text", BandText(identity)},
              {"bandwidth", std::string(1, identity.bandwidth)},
              {"compliance_code", std::string(1, identity.compliance_code)},
              {"networks", identity.networks}};
}

}  // namespace zep::cli
