// Who a radio is, in words for people.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "radiodb/radio_identity.h"
#include "services/session.h"

namespace zep::radiodb {

// One field of the identity: its name and its value, both in the user's language.
struct IdentityRow {
  std::string name;
  std::string value;
};

// All fields, in the order in which they are shown. The networks are left out for a conventional
// radio.
std::vector<IdentityRow> IdentityRows(const services::Session& session,
                                      const RadioIdentity& identity);

// "10000001 (ZEP 2200)"
std::string RadioName(const RadioIdentity& identity);

// "Conventional", "Trunked" or "Conventional II", untranslated.
std::string_view TypeName(RadioType type);

}  // namespace zep::radiodb
