// The numbers of the string table's entries. Tables: resources/strings/NAME.strings.
//
// User-visible entries (104, and 500 and above) are English texts to be translated where they are
// shown, with NLSFmt. The others are data: names, paths and texts that stand in files as they are.
#pragma once

namespace zep::services {

// Who the program is.
inline constexpr int kResIdentity = 100;  // family name; decides which tasks and upgrades there are
inline constexpr int kResVersion =
    101;  // version text, as the files' headers and the About window show it
inline constexpr int kResRegistryRoot = 102;  // root key of the suite's settings
inline constexpr int kResOwnType = 103;       // this program's AppType, a number
inline constexpr int kResApplicationTitle = 104;

// Where the suite's applications are: a folder, then a path below it for each AppType 0 to 3.
inline constexpr int kResSuiteFolderWindows = 110;
inline constexpr int kResExecutableWindows = 111;  // to 114
inline constexpr int kResSuiteFolder = 120;        // on other systems
inline constexpr int kResExecutable = 121;         // to 124

// Files of radio data.
inline constexpr int kResDataFileTitle = 150;
inline constexpr int kResMultiNetworkFileTitle = 151;
inline constexpr int kResDataFileExtension = 160;
inline constexpr int kResMultiNetworkFileExtension = 161;
inline constexpr int kResCalibrationFileExtension = 162;
inline constexpr int kResFirmwareFileExtension = 163;

// Model names of the tiers 1 to 13.
inline constexpr int kResModelName = 200;  // plus the tier
inline constexpr int kLastModelTier = 13;

// Web addresses.
inline constexpr int kResHomePage = 300;
inline constexpr int kResSupport = 301;
inline constexpr int kResApplicationUpgrade = 302;

// Filters of file dialogs.
inline constexpr int kResDataFileFilter = 501;
inline constexpr int kResMultiNetworkFileFilter = 502;
inline constexpr int kResCalibrationFileFilter = 503;
inline constexpr int kResFirmwareFileFilter = 504;
inline constexpr int kResAnyDataFileFilter = 507;  // one network or several

// Menu captions, with their mnemonics.
inline constexpr int kResCaptionWorld = 700;
inline constexpr int kResCaptionSupport = 701;
inline constexpr int kResCaptionUpdate = 702;
inline constexpr int kResCaptionLaunchTrunked = 703;
inline constexpr int kResCaptionLaunchConventional = 704;
inline constexpr int kResCaptionLaunchCalibration = 705;
inline constexpr int kResCaptionInternet = 706;
inline constexpr int kResCaptionFile = 710;
inline constexpr int kResCaptionRadio = 711;
inline constexpr int kResCaptionTools = 712;
inline constexpr int kResCaptionHelp = 713;
inline constexpr int kResCaptionPreferences = 720;
inline constexpr int kResCaptionExit = 721;
inline constexpr int kResCaptionRead = 722;
inline constexpr int kResCaptionProgram = 723;
inline constexpr int kResCaptionContents = 724;
inline constexpr int kResCaptionSearch = 725;
inline constexpr int kResCaptionAbout = 726;

// Captions of windows.
inline constexpr int kResWindowSpecification = 801;
inline constexpr int kResWindowDownload = 802;
inline constexpr int kResWindowUpgrade = 803;
inline constexpr int kResWindowPreferences = 804;
inline constexpr int kResWindowSelectPort = 805;
inline constexpr int kResWindowAbout = 806;

// "true" when the advanced tasks are offered only to users who asked for them.
inline constexpr int kResAskForAdvanced = 901;

}  // namespace zep::services
