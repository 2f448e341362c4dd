// Who a radio is, for people and for programs.
#pragma once

#include "cli/json.h"
#include "radiodb/identity_text.h"
#include "services/text_layout.h"

namespace zep::cli {

// A row for each field: its name and its value.
services::Table IdentityTable(const services::Session& session,
                              const radiodb::RadioIdentity& identity);

Json IdentityJson(const radiodb::RadioIdentity& identity);

// What the models with this two-digit code are called; "Unknown", translated, when there are none.
std::string ModelName(const services::Session& session, std::string_view model_code);

}  // namespace zep::cli
