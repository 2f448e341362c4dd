#include "radiodb/radio_identity.h"

#include <array>

#include "link/byte_exchange.h"
#include "link/programming_mode.h"
#include "radiodb/radio_commands.h"
#include "services/hex_text.h"
#include "services/messages.h"
#include "services/waits.h"

namespace zep::radiodb {
namespace {

using services::ConHexByteToInt;
using services::Failure;
using services::Icon;
using services::NLSMsgBox;
using services::NLSText;
using services::Session;

RadioCodes CodesOf(const RadioIdentity& identity) {
  return {identity.band, identity.bandwidth, identity.compliance_code};
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
bool OpenRadio(link::Link& link) {
  Session& session = link.session;
  if (!SelectSinglePort(link)) {
    if (session.CancelRequested) return false;  // the choice itself
    return Refuse(session,
                  NLSText("This works with one radio at a time. Please make exactly one "
                          "communication port Active in menu File->Preferences."),
                  Failure::kPort);
  }
  if (!InitialiseComms(link)) return false;
  SelectBaudRate(link, 9600);
  SelectInputMode(link, platform::InputMode::kText);
  session.ReportRadioErrors = services::ReportErrors::kSilent;
  PutActiveCommsInProgMode(link);
  session.ReportRadioErrors = services::ReportErrors::kShow;
  return true;
}

bool ContinueWithModelError(Session& session) {
  const services::Answer answer =
      NLSMsgBox(session, "The radio has a model configuration error, continue anyway?",
                {.icon = Icon::kQuestion,
                 .buttons = services::Buttons::kYesNo,
                 .title = NLSText("Radio Reported Error"),
                 .cautious = true});
  if (answer == services::Answer::kYes) return true;
  session.RequestCancel(Failure::kRefused);
  return false;
}

std::string ReadItemData(link::Link& link, std::string_view item) {
  SendCommand(link, "r" + std::string(item));
  return ReceiveReply(link);
}

// The data of item "00"; empty, and the user was told, when there is none.
std::string ReadItem0(link::Link& link) {
  Session& session = link.session;
  std::string data;
  if (!session.Stopped()) {
    services::WaitSecondsYielding(session, 1);
    SelectInputMode(link, platform::InputMode::kText);
    data = ReadItemData(link, "00");
  }
  if (data.empty() && !session.CancelRequested)
    Refuse(session, NLSText("Error Reading Item 0."), Failure::kRadioError);
  return data;
}

void ReadNumberOfNetworks(link::Link& link, RadioIdentity& identity) {
  if (identity.IsTrunked()) ProcessNumberOfNetworks(ReadItemData(link, "3C"), identity);
}

bool ReadFreqBandInfo(link::Link& link, IdentityUse use, RadioIdentity& identity) {
  const std::string data = ReadItemData(link, identity.IsTrunked() ? "40" : "2A");
  if (link.session.Stopped()) return false;
  ProcessFreqBandInfo(link.session, data, use, identity);
  FillInCodes(CodesOf(identity), identity.model_string);
  return true;
}

bool ReadRadioSerialNumber(link::Link& link, IdentityUse use, RadioIdentity& identity) {
  const std::string data = ReadItemData(link, identity.IsTrunked() ? "3D" : "27");
  if (link.session.Stopped()) return false;
  ProcessRadioSerialNumber(link.session, data, use, identity);
  return true;
}

}  // namespace

void ProcessItem0(Session& session, std::string_view data, IdentityUse use,
                  RadioIdentity& identity) {
  identity = {};
  if (std::optional<Item0> item = ParseItem0(data)) {
    identity.model_string = std::move(item->model_string);
    identity.model_code = identity.model_string.substr(6, 2);
    identity.software_version = std::move(item->software_version);
    identity.hardware_version = std::move(item->hardware_version);
    identity.database_version = std::move(item->database_version);
    identity.calibration_version = std::move(item->calibration_version);
    if (use == IdentityUse::kTransfer) {
      identity.database_record = std::move(item->database_record);
      identity.calibration_record = std::move(item->calibration_record);
    }
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
    identity.serial_number = kSerialNumberNotSet;
  } else {
    identity.serial_number =
        std::to_string(services::ConHexNumToLng(session, data) + kSerialNumberOffset);
  }
  if (use != IdentityUse::kTransfer || identity.calibration_record.empty()) return;
  AppendSerialNumber(data, identity.calibration_record);
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

std::optional<Record> DatabaseIdentityRecord(const RadioIdentity& identity) {
  return CompleteIdentityRecord(identity.database_record, CodesOf(identity));
}

std::optional<Record> CalibrationIdentityRecord(const RadioIdentity& identity) {
  return CompleteIdentityRecord(identity.calibration_record, CodesOf(identity));
}

bool ReadRadioIdentity(link::Link& link, IdentityUse use, RadioIdentity& identity) {
  Session& session = link.session;
  identity = {};
  if (!OpenRadio(link)) return false;
  if (use == IdentityUse::kTransfer && session.RadioErrorReply == "{X31}" &&
      !ContinueWithModelError(session)) {
    return false;
  }
  const std::string item_0 = ReadItem0(link);
  if (item_0.empty() || session.Stopped()) return false;
  ProcessItem0(session, item_0, use, identity);
  ReadNumberOfNetworks(link, identity);
  return ReadFreqBandInfo(link, use, identity) && ReadRadioSerialNumber(link, use, identity);
}

}  // namespace zep::radiodb
