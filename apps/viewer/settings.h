#pragma once

#include <string>

// What the application keeps for its user. Failures are silent: a read gives its default.
namespace settings {

std::string ReadText(const std::string& name);
void WriteText(const std::string& name, const std::string& text);
int ReadNumber(const std::string& name, int otherwise);
void WriteNumber(const std::string& name, int number);

}  // namespace settings
