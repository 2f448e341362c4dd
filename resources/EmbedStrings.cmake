# Writes a C++ source with all string tables of a folder: cmake -DFOLDER=... -DVERSION=... -DOUTPUT=... -P EmbedStrings.cmake
# ZEP comes first, the others by name.
cmake_minimum_required(VERSION 3.25)
file(GLOB tables ${FOLDER}/*.strings)
list(FILTER tables EXCLUDE REGEX "/ZEP\\.strings$")
list(SORT tables)
list(PREPEND tables ${FOLDER}/ZEP.strings)

set(rows "")
foreach(table IN LISTS tables)
  get_filename_component(name ${table} NAME_WLE)
  file(READ ${table} contents)
  string(REPLACE "@PROJECT_VERSION@" "${VERSION}" contents "${contents}")
  string(APPEND rows "    {\"${name}\", R\"=====(${contents})=====\"},\n")
endforeach()

file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT [[
// Made from resources/strings; changes here are lost.
#include "services/builtin_tables.h"

namespace zep::services {
namespace {

constexpr BuiltInTable kTables[] = {
@rows@};

}  // namespace

std::span<const BuiltInTable> BuiltInTables() { return kTables; }

}  // namespace zep::services
]])
