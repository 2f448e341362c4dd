// Who a radio is, for people and for programs.
#pragma once

#include "cli/json.h"
#include "cli/text_layout.h"
#include "radiodb/radio_identity.h"

namespace zep::cli {

// A row for each field: its name and its value.
Table IdentityTable(const services::Session& session, const radiodb::RadioIdentity& identity);

Json IdentityJson(const radiodb::RadioIdentity& identity);

// "10000001 (ZEP 2200)"
std::string RadioName(const radiodb::RadioIdentity& identity);

// What the models with this two-digit code are called; "Unknown", translated, when there are none.
std::string ModelName(const services::Session& session, std::string_view model_code);

// "Conventional", "Trunked" or "Conventional II", untranslated.
std::string_view TypeName(radiodb::RadioType type);

}  // namespace zep::cli
