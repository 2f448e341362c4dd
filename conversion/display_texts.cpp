#include "conversion/display_texts.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string_view>

#include "services/hex_text.h"

namespace zep::conversion {
namespace {

// Each text is ended by "|". A radio finds a text by its place here; blanks centre it on the
// display.
constexpr char kEndMark = '|';
constexpr std::string_view kTexts =
    "||||||||||"  // 10 empty
    "ENTER CODE:|    UNIT|** DIVERT **| CCDI  BUSY|ENTER SDM:|ENTER ID:|ACK RECEIVED|"
    "     NO|SDM TRANSMIT|CONTRAST| BATTERY IS|"
    "||||||||||||"  // 12 empty
    " STATUS | NO STATUS|ACKNOWLEDGE|     OK|   FAILED|  DISABLED|ADJUSTMENT|"
    " ** FLAT **|CHAN|DTMF|CALL|STAT|ALPH|MENU|GPGM|SPGM|CALL|VOL|ANI|FSPR|FSCN|RTA|"
    "Q||S|NS|P1|P2|T|P|||SDM||SOUND|AUX|LIGHT|CALL|QUEUE|CANNOT|DTMF|E LIGHT|ECONOMY|"
    "HORN|HUSH|HANDSET|KEYPAD|KEYTONE|LOW PWR|SQUELCH|GROUP|PROGRAM|PROGRAM|RSSI|||"
    "UNKNOWN|KEYPAD|CONTRST||ON|OFF|HIGH|LOW|FULL|DIM|CITY|COUNTRY|NORMAL|BUFFERED|"
    "DIVERT|CALLS:||DELETE|CHANGE|LOCKED|UNLOCKED|FULL|GROUP|SIGNAL|| STAT |NO STAT|"
    "LOCKED|ADJUST|";

constexpr std::uint8_t kStart = 0x00;
constexpr std::uint8_t kEndOfText = 0xFE;

constexpr auto MakeTable() {
  std::array<std::uint8_t, 1 + kTexts.size()> table{kStart};
  std::transform(kTexts.begin(), kTexts.end(), table.begin() + 1, [](char character) {
    return character == kEndMark ? kEndOfText : static_cast<std::uint8_t>(character);
  });
  return table;
}

constexpr auto kTable = MakeTable();
static_assert(kTable.size() == 625 && std::count(kTexts.begin(), kTexts.end(), kEndMark) == 118,
              "a radio expects exactly this many bytes and texts");

}  // namespace

std::string DisplayTextTable() {
  std::string hex;
  hex.reserve(2 * kTable.size());
  for (const std::uint8_t byte : kTable) hex += services::ConBytNumToHex(byte);
  return hex;
}

}  // namespace zep::conversion
