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

// Reads a file of radio data that is to be sound, its hex digits in either case. Nothing, after a
// message, when there is no such file; session.failure is set.
std::optional<radiodb::DataFile> ReadCheckedDataFile(services::Session& session,
                                                     const std::string& path);

// The file that the user's setting DefaultDataPath names (or default.ops in the folder that it
// names), when it exists; else default.ops in the folder of the programming application.
std::string FindDefaultSettings(const services::Session& session);

struct DefaultSettings {
  std::string path;
  conversion::PersonalityData data;
};

// Reads default settings: the file at path, by default where the suite keeps them, or the one that
// the user shows when it is not there. Nothing, with a line in the log, when they cannot be used;
// session.failure is set.
std::optional<DefaultSettings> ReadDefaultSettings(services::Session& session, UpgradeLog& log,
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

// Converts the data; nothing is written but the log, in which each outcome has its line. Nothing
// when it cannot be converted, with session.failure set.
std::optional<ConvertedPersonality> ConvertPersonalityData(services::Session& session,
                                                           UpgradeLog& log,
                                                           const PersonalityRequest& request);

// Converts a sound calibration file. Nothing, after a message, when it cannot be converted;
// session.failure is set. REQUIRES: the path of the request is set; its header is made here.
std::optional<conversion::CalibrationResult> ConvertCalibrationFile(
    services::Session& session, conversion::CalibrationConversion request,
    const radiodb::DataFile& saved);

// Writes a converted file where its path says; the folder is made when missing, and the file is
// replaced as a whole or not at all. False, after a report in the name of procedure, when it could
// not be written; session.failure is set.
bool WriteConvertedFile(services::Session& session, const radiodb::DataFile& file,
                        std::string_view procedure);

}  // namespace zep::upgrade
