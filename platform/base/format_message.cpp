#include "platform/base/detail/format_message.h"

#include <cstdio>
#include <cstring>
#include <map>
#include <vector>

namespace platform {
namespace {

/// One piece of a template: literal text, or the place of an argument.
struct Piece {
  std::string text;
  int argument = 0;        ///< from 1; 0: the text itself
  std::string conversion;  ///< of an argument, printf's without the percent sign
};

bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

bool IsTextConversion(const std::string& conversion) {
  return conversion.back() == 's';
}

/// What stands between exclamation marks from at on; at goes behind them. Anything but a plain conversion of
/// one text or one int counts as a text.
std::string ReadConversion(const char*& at) {
  if (*at != '!') return "s";
  const char* end = std::strchr(at + 1, '!');
  if (end == nullptr) return "s";
  const std::string conversion(at + 1, end);
  at = end + 1;
  const bool plain = !conversion.empty() && std::strchr("sdiuxXc", conversion.back()) != nullptr &&
                     conversion.find_first_not_of("0123456789.-+ #") == conversion.size() - 1 &&
                     conversion.size() < 16;
  return plain ? conversion : "s";
}

/// at stands behind the percent sign. False at the end of the text.
bool ReadEscape(const char*& at, std::vector<Piece>& pieces) {
  if (*at == 0 || *at == '0') return false;
  if (IsDigit(*at)) {
    int number = *at++ - '0';
    if (IsDigit(*at)) number = number * 10 + (*at++ - '0');
    pieces.push_back({"", number, ReadConversion(at)});
    return true;
  }
  pieces.push_back({std::string(1, *at == 'n' ? '\n' : *at), 0, ""});
  ++at;
  return true;
}

std::vector<Piece> Split(const char* format) {
  std::vector<Piece> pieces;
  for (const char* at = format; *at != 0;) {
    if (*at == '%') {
      if (!ReadEscape(++at, pieces)) break;
      continue;
    }
    const std::size_t length = std::strcspn(at, "%");
    pieces.push_back({std::string(at, length), 0, ""});
    at += length;
  }
  return pieces;
}

template <typename Value>
std::string Convert(const std::string& conversion, Value value) {
  const std::string format = "%" + conversion;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
  const int length = std::snprintf(nullptr, 0, format.c_str(), value);
  std::string text(length < 0 ? 0 : static_cast<std::size_t>(length), '\0');
  if (length > 0) std::snprintf(text.data(), text.size() + 1, format.c_str(), value);
#pragma GCC diagnostic pop
  return text;
}

struct Argument {
  const char* text = "";
  int number = 0;
};

}  // namespace

std::string FormatMessageTemplate(const char* format, va_list arguments) {
  const std::vector<Piece> pieces = Split(format == nullptr ? "" : format);
  std::map<int, bool> isText;  // by argument; all up to the highest have to be taken, in order
  int highest = 0;
  for (const Piece& piece : pieces) {
    if (piece.argument == 0) continue;
    isText[piece.argument] = IsTextConversion(piece.conversion);
    highest = piece.argument > highest ? piece.argument : highest;
  }
  std::map<int, Argument> values;
  for (int i = 1; i <= highest; ++i) {
    const auto known = isText.find(i);
    if (known == isText.end() || known->second) {
      const char* text = va_arg(arguments, const char*);
      values[i].text = text == nullptr ? "" : text;
    } else {
      values[i].number = va_arg(arguments, int);
    }
  }
  std::string result;
  for (const Piece& piece : pieces) {
    if (piece.argument == 0)
      result += piece.text;
    else if (isText[piece.argument])
      result +=
          Convert(IsTextConversion(piece.conversion) ? piece.conversion : "s", values[piece.argument].text);
    else
      result +=
          Convert(IsTextConversion(piece.conversion) ? "d" : piece.conversion, values[piece.argument].number);
  }
  return result;
}

}  // namespace platform
