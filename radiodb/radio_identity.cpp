#include "radiodb/radio_identity.h"

#include <array>

#include "link/byte_exchange.h"
#include "link/programming_mode.h"
#include "link/record_text.h"
#include "radiodb/radio_commands.h"
#include "services/hex_text.h"
#include "services/messages.h"
#include "services/waits.h"

namespace zep::radiodb {
namespace {

using services::ConHexByteToInt;
using services::ConHexToText;
using services::Failure;
using services::Icon;
using services::NLSMsgBox;
using services::NLSText;
using services::Session;

// How the data of item 0, of this length in hexadecimal characters, is cut into its four fields,
// and what the identity records make of them. Field 1, the model string, is always the first 18
// characters, fields 3 and 4 are the last 18 and 4.
struct Item0Format {
  std::size_t length;
  std::size_t versions_length;       // of field 2 in the item
  std::string_view versions_ending;  // what the item leaves out of it
  std::size_t hardware_at;           // the hardware version's place in field 2
  std::string_view database_header;
  std::string_view calibration_header;
};
constexpr std::size_t kModelLength = 18;
constexpr std::size_t kDatabaseLength = 18;

constexpr std::array kItem0Formats = {
    // The shortest format has no hardware version: a comma and four zeros stand in for it.
    Item0Format{48, 8, "2C30303030", 10, "000011", "00001C"},
    Item0Format{58, 18, "", 10, "000011", "00001C"},
    // Kept: this record holds 17 bytes like the others, although its length field says 21. Files
    // and radios have it so.
    Item0Format{66, 26, "", 18, "000015", "000020"},
};

struct Item0Fields {
  std::string model;
  std::string versions;
  std::string database;
  std::string rest;
};

const Item0Format* FindItem0Format(std::size_t length) {
  for (const Item0Format& format : kItem0Formats) {
    if (format.length == length) return &format;
  }
  return nullptr;
}

Item0Fields CutItem0(std::string_view data, const Item0Format& format) {
  Item0Fields fields;
  fields.model = data.substr(0, kModelLength);
  fields.versions = data.substr(kModelLength, format.versions_length);
  fields.versions += format.versions_ending;
  data.remove_prefix(kModelLength + format.versions_length);
  fields.database = data.substr(0, kDatabaseLength);
  fields.rest = data.substr(kDatabaseLength);
  return fields;
}

// Data bytes of the calibration identity record that the serial number takes at its end.
constexpr std::size_t kSerialNumberLength = 6;

void BeginIdentityRecords(Session& session, const Item0Format& format, const Item0Fields& fields,
                          RadioIdentity& identity) {
  identity.database_record = std::string(format.database_header) + fields.model +
                             fields.database.substr(0, 8) +
                             fields.versions.substr(format.hardware_at, 8);
  identity.calibration_record = std::string(format.calibration_header) + fields.model +
                                fields.versions + fields.database + fields.rest;
  const int bytes = ConHexByteToInt(session, format.calibration_header.substr(4));
  identity.calibration_record.resize(6 + 2 * static_cast<std::size_t>(bytes) - kSerialNumberLength);
}

// The places of band letter, bandwidth and compliance code in the model string.
constexpr std::size_t kBandAt = 4;
constexpr std::size_t kBandwidthAt = 5;
constexpr std::size_t kComplianceAt = 8;
constexpr std::size_t kModelStringLength = 9;

void FillInModelString(RadioIdentity& identity) {
  if (identity.model_string.size() != kModelStringLength) return;
  identity.model_string[kBandAt] = identity.band;
  identity.model_string[kBandwidthAt] = identity.bandwidth;
  identity.model_string[kComplianceAt] = identity.compliance_code;
}

std::string CompleteIdentityRecord(Session& session, std::string record,
                                   const RadioIdentity& identity) {
  if (record.empty()) return record;
  const auto fill_in = [&record](std::size_t at, char code) {
    record.replace(link::kRecordHeader + 2 * at, 2, services::ConTextToHex({&code, 1}));
  };
  fill_in(kBandAt, identity.band);
  fill_in(kBandwidthAt, identity.bandwidth);
  fill_in(kComplianceAt, identity.compliance_code);
  return record + services::CalcHexChecksum(session, record);
}

constexpr std::string_view kBandLetters = "ABCDEFGHIJK";          // low nibbles from 1
constexpr std::string_view kComplianceCodes = "ABCD02345EFGHZL";  // high nibbles from 0

struct BandRow {
  char band;
  char compliance_code;  // 0: any other
  std::string_view text;
};
constexpr std::array kBands = {
    BandRow{'A', 0, "A 66-88 MHz"},      BandRow{'B', 0, "B 136-174 MHz"},
    BandRow{'C', 0, "C 174-225 MHz"},    BandRow{'D', 0, "D 220-270 MHz"},
    BandRow{'E', 0, "E 270-310 MHz"},    BandRow{'F', 0, "F 290-340 MHz"},
    BandRow{'G', 0, "G 336-400 MHz"},    BandRow{'H', 'H', "HH 440-470 MHz"},
    BandRow{'H', 'L', "HL 400-440 MHz"}, BandRow{'H', 0, "H 400-470 MHz"},
    BandRow{'I', 0, "I 450-530 MHz"},    BandRow{'J', 0, "J 806-870 MHz"},
    BandRow{'K', 0, "K 896-941 MHz"},
};

// Opens the one port that the user has chosen and puts the radio behind it into programming mode.
bool OpenRadio(link::Job& job) {
  if (!SelectSinglePort(job)) {
    if (job.CancelRequested) return false;  // the choice itself
    return Refuse(job,
                  NLSText("This works with one radio at a time. Please make exactly one "
                          "communication port Active in menu File->Preferences."),
                  Failure::kPort);
  }
  if (!InitialiseComms(job)) return false;
  SelectBaudRate(job, 9600);
  SelectInputMode(job.link, job.CommStates, platform::InputMode::kText);
  job.ReportRadioErrors = link::ReportErrors::kSilent;
  PutActiveCommsInProgMode(job);
  job.ReportRadioErrors = link::ReportErrors::kShow;
  return true;
}

bool ContinueWithModelError(link::Job& job) {
  const services::Answer answer =
      NLSMsgBox(job.session, "The radio has a model configuration error, continue anyway?",
                {.icon = Icon::kQuestion,
                 .buttons = services::Buttons::kYesNo,
                 .title = NLSText("Radio Reported Error"),
                 .cautious = true});
  if (answer == services::Answer::kYes) return true;
  job.RequestCancel(Failure::kRefused);
  return false;
}

std::string ReadItemData(link::Job& job, std::string_view item) {
  SendCommand(job, "r" + std::string(item));
  return ReceiveReply(job);
}

// The data of item "00"; empty, and the user was told, when there is none.
std::string ReadItem0(link::Job& job) {
  Session& session = job.session;
  std::string data;
  if (!job.Stopped()) {
    services::WaitSecondsYielding(session, 1);
    SelectInputMode(job.link, job.CommStates, platform::InputMode::kText);
    data = ReadItemData(job, "00");
  }
  if (data.empty() && !job.CancelRequested)
    Refuse(job, NLSText("Error Reading Item 0."), Failure::kRadioError);
  return data;
}

void ReadNumberOfNetworks(link::Job& job, RadioIdentity& identity) {
  if (identity.IsTrunked()) ProcessNumberOfNetworks(ReadItemData(job, "3C"), identity);
}

bool ReadFreqBandInfo(link::Job& job, IdentityUse use, RadioIdentity& identity) {
  const std::string data = ReadItemData(job, identity.IsTrunked() ? "40" : "2A");
  if (job.Stopped()) return false;
  ProcessFreqBandInfo(job.session, data, use, identity);
  FillInModelString(identity);
  return true;
}

bool ReadRadioSerialNumber(link::Job& job, IdentityUse use, RadioIdentity& identity) {
  const std::string data = ReadItemData(job, identity.IsTrunked() ? "3D" : "27");
  if (job.Stopped()) return false;
  ProcessRadioSerialNumber(job.session, data, use, identity);
  return true;
}

}  // namespace

void ProcessItem0(Session& session, std::string_view data, IdentityUse use,
                  RadioIdentity& identity) {
  identity = {};
  if (const Item0Format* format = FindItem0Format(data.size())) {
    const Item0Fields fields = CutItem0(data, *format);
    const std::string versions = ConHexToText(session, fields.versions);
    const std::string database = ConHexToText(session, fields.database);
    identity.model_string = ConHexToText(session, fields.model);
    identity.model_code = identity.model_string.substr(6, 2);
    identity.software_version = versions.substr(0, versions.find(','));
    identity.hardware_version = versions.substr(versions.size() - 4);
    identity.database_version = database.substr(0, 4);
    identity.calibration_version = database.substr(5);
    if (use == IdentityUse::kTransfer) BeginIdentityRecords(session, *format, fields, identity);
  }
  const RadioModel model = LookUpRadioModel(session, identity.model_code).value_or(RadioModel{});
  identity.tier = model.tier;
  identity.type = model.type;
  identity.model_name = AppGetRadioModel(session, model.tier);
}

void ProcessNumberOfNetworks(std::string_view data, RadioIdentity& identity) {
  constexpr std::array<std::string_view, 4> kMasks = {"01", "03", "07", "0F"};
  for (std::size_t at = 0; at < kMasks.size(); ++at) {
    if (data == kMasks[at]) identity.networks = static_cast<int>(at) + 1;
  }
}

void ProcessFreqBandInfo(Session& session, std::string_view data, IdentityUse use,
                         RadioIdentity& identity) {
  if (data == "FFFFFFFFFFFF") {
    if (use == IdentityUse::kTransfer) {
      NLSMsgBox(session, "The Band Information Item is blank. Please check model configuration.");
    }
    identity.band = identity.bandwidth = identity.compliance_code = kUnknownCode;
    return;
  }
  const auto byte_at = [&](std::size_t at) {
    const std::string_view digits = data.size() < at ? std::string_view() : data.substr(at, 2);
    return static_cast<std::uint8_t>(ConHexByteToInt(session, digits));
  };
  if (!SetBandAndComplianceCodeFromByte(byte_at(0), identity)) {
    NLSMsgBox(session, "The band type is invalid, it will be set to 'H'.");
    identity.band = 'H';
    identity.compliance_code = '0';
  }
  identity.bandwidth = static_cast<char>(byte_at(2));
  if (identity.bandwidth != '1' && identity.bandwidth != '2') {
    NLSMsgBox(session, "The bandwidth value is invalid, it will be set to Universal.");
    identity.bandwidth = '2';
  }
}

void ProcessRadioSerialNumber(Session& session, std::string_view data, IdentityUse use,
                              RadioIdentity& identity) {
  if (data == "FFFFFF") {
    if (use == IdentityUse::kTransfer) {
      NLSMsgBox(session,
                "The Radio Serial Number item is blank. Please check model configuration.");
    }
    identity.serial_number = "NOT SET";
  } else {
    identity.serial_number =
        std::to_string(services::ConHexNumToLng(session, data) + kSerialNumberOffset);
  }
  if (use != IdentityUse::kTransfer || identity.calibration_record.empty()) return;
  identity.calibration_record +=
      services::PadString(std::string(data.substr(0, kSerialNumberLength)),
                          services::PadSide::kRight, kSerialNumberLength, "F");
}

bool SetBandAndComplianceCodeFromByte(std::uint8_t byte, RadioIdentity& identity) {
  const std::size_t band = byte % 16U;
  const std::size_t compliance = byte / 16U;
  const bool band_is_valid = band >= 1 && band <= kBandLetters.size();
  const bool compliance_is_valid = compliance < kComplianceCodes.size();
  if (band_is_valid) identity.band = kBandLetters[band - 1];
  if (compliance_is_valid) identity.compliance_code = kComplianceCodes[compliance];
  return band_is_valid && compliance_is_valid;
}

std::optional<std::uint8_t> SetByteFromBandAndComplianceCode(const RadioIdentity& identity) {
  const std::size_t band = kBandLetters.find(identity.band);
  const std::size_t compliance = kComplianceCodes.find(identity.compliance_code);
  if (band == std::string_view::npos || compliance == std::string_view::npos) return std::nullopt;
  return static_cast<std::uint8_t>(16 * compliance + band + 1);
}

std::string_view BandText(const RadioIdentity& identity) {
  for (const BandRow& row : kBands) {
    const bool any_code = row.compliance_code == 0;
    if (row.band == identity.band && (any_code || row.compliance_code == identity.compliance_code))
      return row.text;
  }
  return NLSText("Unknown");
}

std::string DatabaseIdentityRecord(Session& session, const RadioIdentity& identity) {
  return CompleteIdentityRecord(session, identity.database_record, identity);
}

std::string CalibrationIdentityRecord(Session& session, const RadioIdentity& identity) {
  return CompleteIdentityRecord(session, identity.calibration_record, identity);
}

int VersionNumber(std::string_view version) {
  constexpr int kLargest = 99'999'999;
  int number = 0;
  for (const char character : version) {
    if (character == '.') continue;
    if (character < '0' || character > '9' || number > kLargest) break;
    number = 10 * number + (character - '0');
  }
  return number;
}

bool ReadRadioIdentity(link::Job& job, IdentityUse use, RadioIdentity& identity) {
  Session& session = job.session;
  identity = {};
  if (!OpenRadio(job)) return false;
  if (use == IdentityUse::kTransfer && job.RadioErrorReply == "{X31}" &&
      !ContinueWithModelError(job)) {
    return false;
  }
  const std::string item_0 = ReadItem0(job);
  if (item_0.empty() || job.Stopped()) return false;
  ProcessItem0(session, item_0, use, identity);
  ReadNumberOfNetworks(job, identity);
  return ReadFreqBandInfo(job, use, identity) && ReadRadioSerialNumber(job, use, identity);
}

}  // namespace zep::radiodb
