#include <array>

#include "cli/command.h"
#include "services/messages.h"

namespace zep::cli {
namespace {

using services::NLSText;

constexpr std::array kCommands = {
    Command{"ports", "", NLSText("serial devices of this computer, and the four ports"),
            &DeclarePorts},
    Command{"identify", "", NLSText("who the radio is: model, versions, band, serial number"),
            &DeclareIdentify},
    Command{"read", "FILE | --calibration FILE | --auto",
            NLSText("the radio's data into a file (.ops, .omn; calibration: .ocs)"), &DeclareRead},
    Command{"program", "FILE", NLSText("a data file into the radio, after checking that it fits"),
            &DeclareProgram},
    Command{"firmware check", "IMAGE", NLSText("what a firmware image is for"),
            &DeclareFirmwareCheck},
    Command{"firmware write", "IMAGE", NLSText("a firmware image into every radio"),
            &DeclareFirmwareWrite},
    Command{"firmware read", "IMAGE", NLSText("the flash memory of one radio into a file"),
            &DeclareFirmwareRead},
    Command{"upgrade", "",
            NLSText("the automatic upgrade: save, new firmware, convert, write back"),
            &DeclareUpgrade},
    Command{"convert personality", "IN OUT --to VERSION",
            NLSText("a data file from one database version to another"),
            &DeclareConvertPersonality},
    Command{"convert calibration", "IN OUT --to VERSION",
            NLSText("a calibration file from one calibration version to another"),
            &DeclareConvertCalibration},
    Command{"data check", "FILE", NLSText("whether a data file is sound, line by line"),
            &DeclareDataCheck},
    Command{"data show", "FILE", NLSText("what is in a data file"), &DeclareDataShow},
    Command{"data diff", "A B", NLSText("how two data files differ, byte by byte"),
            &DeclareDataDiff},
};

}  // namespace

std::span<const Command> Commands() { return kCommands; }

}  // namespace zep::cli
