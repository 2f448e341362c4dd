#include "platform/settings_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "platform/utf8_text.h"

namespace zep::platform {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
constexpr std::string_view kBlanks = " \t\r";

bool IsControl(char letter) { return static_cast<unsigned char>(letter) < 0x20 || letter == 0x7F; }

std::string_view Trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(kBlanks);
  if (begin == text.npos) return {};
  return text.substr(begin, text.find_last_not_of(kBlanks) - begin + 1);
}

std::string HexEscape(char letter) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(letter);
  return {'\\', 'x', digits[byte >> 4], digits[byte & 15]};
}

std::string Escaped(std::string_view value) {
  std::string text;
  for (std::size_t at = 0; at < value.size();) {
    const char letter = value[at];
    const Utf8Character character = FirstCharacter(value.substr(at));
    const bool outer_blank = letter == ' ' && (at == 0 || at + 1 == value.size());
    if (letter == '\\') {
      text += "\\\\";
    } else if (!character.is_valid || IsControl(letter) || outer_blank) {
      text += HexEscape(letter);
    } else {
      text += value.substr(at, character.bytes);
    }
    at += character.bytes;
  }
  return text;
}

// A backslash that starts neither of the two escapes stands for itself: people write paths.
std::string Unescaped(std::string_view text) {
  std::string value;
  for (std::size_t at = 0; at < text.size(); ++at) {
    std::uint8_t byte = 0;
    const std::string_view digits = text.substr(std::min(at + 2, text.size())).substr(0, 2);
    if (text.substr(at, 2) == "\\\\") {
      value += '\\';
      ++at;
    } else if (text.substr(at, 2) == "\\x" && digits.size() == 2 &&
               std::from_chars(digits.data(), digits.data() + 2, byte, 16).ptr ==
                   digits.data() + 2) {
      value += static_cast<char>(byte);
      at += 3;
    } else {
      value += text[at];
    }
  }
  return value;
}

}  // namespace

std::string LowerCase(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  });
  return lower;
}

SettingsText::SettingsText(std::string_view contents) {
  if (contents.starts_with(kByteOrderMark)) {
    start_ = kByteOrderMark;
    contents.remove_prefix(kByteOrderMark.size());
  }
  if (contents.substr(0, contents.find('\n')).ends_with('\r')) line_end_ = "\r\n";
  std::string key;
  while (!contents.empty()) {
    const std::size_t end = contents.find('\n');
    Read(contents.substr(0, end), key);
    contents.remove_prefix(end == contents.npos ? contents.size() : end + 1);
  }
}

void SettingsText::Read(std::string_view text, std::string& key) {
  if (text.ends_with('\r')) text.remove_suffix(1);
  const std::string_view trimmed = Trimmed(text);
  const std::size_t equals = trimmed.find('=');
  const bool readable =
      std::ranges::none_of(text, [](char letter) { return IsControl(letter) && letter != '\t'; });
  Line line{.text = std::string(text), .key = key};
  if (readable && (trimmed.empty() || trimmed.front() == ';' || trimmed.front() == '#')) {
    // A line for people.
  } else if (readable && trimmed.front() == '[' && trimmed.back() == ']') {
    key = line.key = LowerCase(trimmed.substr(1, trimmed.size() - 2));
    line.is_section = true;
  } else if (readable && equals != trimmed.npos && equals > 0) {
    line.name = LowerCase(Trimmed(trimmed.substr(0, equals)));
    line.value = Unescaped(Trimmed(trimmed.substr(equals + 1)));
  } else {
    damaged_ = true;
    return;
  }
  lines_.push_back(std::move(line));
}

std::optional<std::string> SettingsText::Find(std::string_view key, std::string_view name) const {
  const std::string wanted_key = LowerCase(key);
  const std::string wanted_name = LowerCase(name);
  std::optional<std::string> value;
  for (const Line& line : lines_) {
    if (line.key == wanted_key && line.name == wanted_name) value = line.value;
  }
  return value;
}

void SettingsText::Set(std::string_view key, std::string_view name, std::string_view value) {
  Line added{.text = std::string(name) + "=" + Escaped(value),
             .key = LowerCase(key),
             .name = LowerCase(name),
             .value = std::string(value)};
  const auto present = std::find_if(lines_.rbegin(), lines_.rend(), [&](const Line& line) {
    return line.key == added.key && line.name == added.name;
  });
  if (present != lines_.rend()) {
    *present = std::move(added);
    return;
  }
  const auto place = static_cast<std::ptrdiff_t>(Place(key));
  lines_.insert(lines_.begin() + place, std::move(added));
}

// Behind the last value or the head of the key's section, which is made when there is none.
std::size_t SettingsText::Place(std::string_view key) {
  const std::string wanted = LowerCase(key);
  for (std::size_t at = lines_.size(); at > 0; --at) {
    const Line& line = lines_[at - 1];
    if (line.key == wanted && (line.is_section || !line.name.empty())) return at;
  }
  if (!lines_.empty()) lines_.push_back({.text = {}, .key = lines_.back().key});
  lines_.push_back({.text = "[" + std::string(key) + "]", .key = wanted, .is_section = true});
  return lines_.size();
}

std::string SettingsText::Contents() const {
  std::string contents = start_;
  for (const Line& line : lines_) contents += line.text + line_end_;
  return contents;
}

bool SettingsText::CanHold(std::string_view key, std::string_view name) {
  return std::ranges::none_of(key, IsControl) && std::ranges::none_of(name, IsControl) &&
         !name.empty() && name == Trimmed(name) && name.find('=') == name.npos &&
         std::string_view("[;#").find(name.front()) == std::string_view::npos;
}

}  // namespace zep::platform
