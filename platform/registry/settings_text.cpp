#include "platform/registry/detail/settings_text.h"

#include <algorithm>
#include <charconv>
#include <cstdint>

#include "platform/registry/detail/value.h"

namespace platform::registry {
namespace {

// The section of names that have one step.
constexpr std::string_view kGeneral = "General";
// A first line from before it was an INI file; then lines like "Scale"=dword:00000064 held the numbers.
constexpr std::string_view kFormerHead = "Tessarel12 registry 1";
constexpr std::string_view kFormerNumber = "dword:";
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The program's locale makes no difference to a file.
char Small(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool IsPlain(char letter) {
  const char small = Small(letter);
  return (small >= 'a' && small <= 'z') || (letter >= '0' && letter <= '9') || letter == '_' ||
         letter == '-' || letter == '.';
}

bool IsSame(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Small(x) == Small(y); });
}

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view blanks = " \t\v\f";
  const std::size_t begin = text.find_first_not_of(blanks);
  return begin == text.npos ? "" : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

std::string_view Unquoted(std::string_view text) {
  return text.size() >= 2 && text.front() == '"' && text.back() == '"' ? text.substr(1, text.size() - 2)
                                                                       : text;
}

template <typename Number>
bool ParseHex(std::string_view digits, Number& number) {
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  return error == std::errc() && end == digits.data() + digits.size();
}

std::string Escaped(std::string_view name) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string escaped;
  for (const char letter : name) {
    const auto byte = static_cast<unsigned char>(letter);
    if (IsPlain(letter))
      escaped += letter;
    else if (letter == '/')
      escaped += '\\';
    else
      escaped.append({'%', digits[byte >> 4], digits[byte & 15]});
  }
  return escaped;
}

std::string Unescaped(std::string_view name) {
  std::string plain;
  for (std::size_t at = 0; at < name.size(); ++at) {
    std::uint8_t byte = 0;
    if (name[at] == '%' && at + 2 < name.size() && ParseHex(name.substr(at + 1, 2), byte)) {
      plain += static_cast<char>(byte);
      at += 2;
    } else {
      plain += name[at] == '\\' ? '/' : name[at];
    }
  }
  return plain;
}

bool CanBeName(std::string_view name) {
  return !name.empty() && name.front() != '/' && name.back() != '/' && name.find("//") == name.npos &&
         static_cast<std::size_t>(std::count(name.begin(), name.end(), '/')) <= kDeepestName;
}

class Reader {
 public:
  explicit Reader(SettingsText& result) : m_result(result) {}
  void TakeLine(std::string_view line);

 private:
  void TakeSection(std::string_view line);
  void TakeValue(std::string_view name, std::string_view text);

  SettingsText& m_result;
  std::string m_path;  ///< of the section, with the '/' that ends it
};

void Reader::TakeLine(std::string_view line) {
  line = Trimmed(line);
  if (line.empty() || line.front() == ';' || line.front() == '#') return;
  if (line.front() == '[') return TakeSection(line);
  const std::size_t equals = line.find('=');
  if (equals == line.npos)
    m_result.damaged = true;
  else
    TakeValue(Trimmed(line.substr(0, equals)), Trimmed(line.substr(equals + 1)));
}

void Reader::TakeSection(std::string_view line) {
  const std::size_t end = line.find(']');
  m_result.damaged |= end == line.npos;
  const std::string_view name = Trimmed(line.substr(1, end - 1));
  if (IsSame(name, kGeneral))
    m_path.clear();
  else
    m_path =
        Unescaped(!name.empty() && name.front() == '%' && IsSame(name.substr(1), kGeneral) ? name.substr(1)
                                                                                           : name) +
        '/';
}

void Reader::TakeValue(std::string_view name, std::string_view text) {
  std::string whole = m_path + Unescaped(m_result.former ? Unquoted(name) : name);
  std::string value(Unquoted(Trimmed(text.substr(0, text.find(';')))));
  std::uint32_t number = 0;
  if (m_result.former && value.starts_with(kFormerNumber) &&
      ParseHex(std::string_view(value).substr(kFormerNumber.size()), number))
    value = std::to_string(number);
  if (!CanBeName(whole) || !Decode(value))
    m_result.damaged = true;
  else
    m_result.texts.insert_or_assign(std::move(whole), std::move(value));
}

std::string Section(std::string_view name) {
  std::string escaped = Escaped(name);
  if (IsSame(name, kGeneral)) escaped.insert(0, 1, '%');
  return escaped;
}

}  // namespace

bool NameLess::operator()(std::string_view a, std::string_view b) const {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(),
                                      [](char x, char y) { return Small(x) < Small(y); });
}

SettingsText ReadSettings(std::string_view text) {
  SettingsText result;
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  Reader reader(result);
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
    const std::string_view line = text.substr(0, end);
    if (IsSame(Trimmed(line), kFormerHead))
      result.former = true;
    else
      reader.TakeLine(line);
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return result;
}

std::string WriteSettings(const Texts& texts) {
  std::map<std::string, std::string, NameLess> sections;
  for (const auto& [name, text] : texts) {
    const std::size_t slash = name.find('/');
    const bool hasSection = slash != name.npos;
    const std::string section =
        hasSection ? Section(std::string_view(name).substr(0, slash)) : std::string(kGeneral);
    sections[section] += Escaped(hasSection ? name.substr(slash + 1) : name) + '=' + text + '\n';
  }
  std::string whole;
  for (const auto& [section, lines] : sections) {
    if (!whole.empty()) whole += '\n';
    whole.append("[").append(section).append("]\n").append(lines);
  }
  return whole;
}

}  // namespace platform::registry
