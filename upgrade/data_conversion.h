// Saved data files brought to the versions that a radio has now: which files are used, and what is
// logged and told. How the data itself is converted: conversion/.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "conversion/calibration_conversion.h"
#include "conversion/personality_conversion.h"
#include "radiodb/data_file.h"
#include "services/session.h"
#include "upgrade/upgrade_log.h"

namespace zep::upgrade {

// Where nothing came of it the user has been told why; this is the cause.
template <typename Value>
using Expected = tl::expected<Value, services::Failure>;

// Reads a file of radio data that is to be sound, its hex digits in either case.
Expected<radiodb::DataFile> ReadCheckedDataFile(services::Session& session,
                                                const std::string& path);

// The file that the user's setting DefaultDataPath names (or default.ops in the folder that it
// names), when it exists; else default.ops in the folder of the programming application.
std::string FindDefaultSettings(const services::Session& session);

struct DefaultSettings {
  std::string path;
  conversion::PersonalityData data;
};

// Reads default settings: the file at path, by default where the suite keeps them, or the one that
// the user shows when it is not there. A line in the log tells when they cannot be used.
Expected<DefaultSettings> ReadDefaultSettings(services::Session& session, UpgradeLog& log,
                                              const std::string& path = {});

// Where a saved data file's converted twin is: under its name in the folder "upgrade" of the
// application folder.
std::string ConvertedFileOf(const services::Session& session, const std::string& saved_file);

struct PersonalityRequest {
  // As a radio reports them: four characters, "0402" is 4.02.
  std::string old_version;
  std::string new_version;
  const radiodb::DataFile& saved;
  std::string converted_file;  // full name
  // Null: they are read from default_file (see ReadDefaultSettings).
  const DefaultSettings* defaults = nullptr;
  std::string default_file = {};
  bool collect_changes = false;
};

struct ConvertedPersonality {
  radiodb::DataFile file;
  std::vector<conversion::Remark> remarks;  // logged already
  std::vector<conversion::Change> changes;  // when they are collected
};

// Converts the data; nothing is written but the log, in which each outcome has its line.
Expected<ConvertedPersonality> ConvertPersonalityData(services::Session& session, UpgradeLog& log,
                                                      const PersonalityRequest& request);

// Converts a sound calibration file.
// REQUIRES: the path of the request is set; its header is made here.
Expected<conversion::CalibrationResult> ConvertCalibrationFile(
    services::Session& session, conversion::CalibrationConversion request,
    const radiodb::DataFile& saved);

// Writes a converted file where its path says; the folder is made when missing, and the file is
// replaced as a whole or not at all. Fails, after a report in the name of procedure, when it could
// not be written.
Expected<void> WriteConvertedFile(services::Session& session, const radiodb::DataFile& file,
                                  std::string_view procedure);

// Converts a sound calibration file and writes the converted one.
// REQUIRES: as for ConvertCalibrationFile.
Expected<conversion::CalibrationResult> ConvertAndWriteCalibration(
    services::Session& session, const conversion::CalibrationConversion& request,
    const radiodb::DataFile& saved);

}  // namespace zep::upgrade
