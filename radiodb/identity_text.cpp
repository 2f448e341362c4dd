#include "radiodb/identity_text.h"

#include "services/messages.h"

namespace zep::radiodb {
namespace {

using services::NLSFmt;
using services::NLSText;

std::string BandwidthText(const services::Session& session, const RadioIdentity& identity) {
  return identity.bandwidth == '2' ? NLSFmt(session, "Universal")
                                   : std::string(1, identity.bandwidth);
}

}  // namespace

std::vector<IdentityRow> IdentityRows(const services::Session& session,
                                      const RadioIdentity& identity) {
  std::vector<IdentityRow> rows;
  const auto row = [&](std::string_view name, std::string value) {
    rows.push_back({NLSFmt(session, name), std::move(value)});
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
  return rows;
}

std::string RadioName(const RadioIdentity& identity) {
  return identity.serial_number + " (" + identity.model_name + ")";
}

std::string_view TypeName(RadioType type) {
  return type == RadioType::kConventionalII ? NLSText("Conventional II")
                                            : ReturnTypeStringFromEnum(static_cast<int>(type));
}

}  // namespace zep::radiodb
