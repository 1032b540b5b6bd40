#include <cstring>

#include "tests/registry/registry_fixture.h"

namespace {

TEST_F(RegistryTest, FreshAccountHoldsOnlySoftware) {
  const HKEY software = Open(HKEY_CURRENT_USER, "software");
  HKEY key = nullptr;
  EXPECT_EQ(RegOpenKeyExA(HKEY_CURRENT_USER, "Control Panel\\Desktop", 0, KEY_QUERY_VALUE, &key),
            ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(RegOpenKeyExA(software, "Some Program", 0, KEY_READ, &key), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(key, nullptr);
}

TEST_F(RegistryTest, NamesDontMindCaseAndKeepTheirs) {
  HKEY key = Create(HKEY_CURRENT_USER, "Software\\Some Program\\1.0");
  EXPECT_EQ(SetNumber(key, "Scale", 250), ERROR_SUCCESS);
  RegCloseKey(key);
  key = Open(HKEY_CURRENT_USER, "SOFTWARE\\some PROGRAM\\1.0");
  EXPECT_EQ(SetNumber(key, "SCALE", 300), ERROR_SUCCESS);
  DWORD number = 0;
  EXPECT_EQ(GetNumber(key, "scale", number), ERROR_SUCCESS);
  EXPECT_EQ(number, 300U);
  EXPECT_NE(StoreText().find("Some%20Program\\1.0\\Scale=300"), std::string::npos) << StoreText();
}

TEST_F(RegistryTest, DispositionTellsNewFromExisting) {
  HKEY key = nullptr;
  DWORD disposition = 0;
  for (const DWORD expected : {REG_CREATED_NEW_KEY, REG_OPENED_EXISTING_KEY}) {
    EXPECT_EQ(
        RegCreateKeyExA(HKEY_CURRENT_USER, "a\\b", 0, nullptr, 0, KEY_READ, nullptr, &key, &disposition), 0);
    EXPECT_EQ(disposition, expected);
  }
  Open(HKEY_CURRENT_USER, "a");  // made on the way
}

TEST_F(RegistryTest, BufferSizes) {
  const HKEY key = Create(HKEY_CURRENT_USER, "software\\sizes");
  const char text[] = "twelve bytes";
  EXPECT_EQ(RegSetValueExA(key, "text", 0, REG_SZ, reinterpret_cast<const BYTE*>(text), sizeof text), 0);
  struct Row {
    const char* name;
    DWORD room;
    bool hasBuffer;
    LSTATUS result;
    bool filled;
  };
  const Row rows[] = {{"ask for the size", 0, false, ERROR_SUCCESS, false},
                      {"one byte short", sizeof text - 1, true, ERROR_MORE_DATA, false},
                      {"exact", sizeof text, true, ERROR_SUCCESS, true},
                      {"more than enough", 100, true, ERROR_SUCCESS, true}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    BYTE buffer[100] = {};
    DWORD size = row.room;
    DWORD type = 0;
    EXPECT_EQ(RegQueryValueExA(key, "text", nullptr, &type, row.hasBuffer ? buffer : nullptr, &size),
              row.result);
    EXPECT_EQ(size, sizeof text);
    EXPECT_EQ(type, REG_SZ);
    EXPECT_EQ(std::memcmp(buffer, text, sizeof text) == 0, row.filled);
  }
  BYTE byte = 0;
  EXPECT_EQ(RegQueryValueExA(key, "text", nullptr, nullptr, &byte, nullptr), ERROR_INVALID_PARAMETER);
}

TEST_F(RegistryTest, AnyBytesComeBack) {
  struct Row {
    const char* name;
    DWORD type;
    std::string data;
  };
  const Row rows[] = {{"", REG_SZ, std::string("the unnamed value\0", 18)},
                      {"quotes \" [x] % \n=", REG_SZ, std::string("\" ] % \r\n \xc3\xa8\0", 11)},
                      {"unclosed text", REG_SZ, "no closing 0"},
                      {"inner 0", REG_SZ, std::string("a\0b\0", 4)},
                      {"empty", REG_BINARY, ""},
                      {"binary", REG_BINARY, std::string("\0\xff\x80", 3)},
                      {"odd number", REG_DWORD, "abc"},
                      {"own type", 0xfffffff0, "z"}};
  const HKEY key = Create(HKEY_CURRENT_USER, "software\\odd [name] %\"");
  for (const Row& row : rows)
    EXPECT_EQ(RegSetValueExA(key, row.name, 0, row.type, reinterpret_cast<const BYTE*>(row.data.data()),
                             static_cast<DWORD>(row.data.size())),
              0);
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    char buffer[64];
    DWORD size = sizeof buffer;
    DWORD type = 0;
    EXPECT_EQ(RegQueryValueExA(key, row.name, nullptr, &type, reinterpret_cast<BYTE*>(buffer), &size), 0);
    EXPECT_EQ(type, row.type);
    EXPECT_EQ(std::string(buffer, size), row.data);
  }
}

TEST_F(RegistryTest, RightsOfTheHandleCount) {
  const HKEY whole = Create(HKEY_CURRENT_USER, "software\\rights");
  EXPECT_EQ(SetNumber(whole, "n", 1), ERROR_SUCCESS);
  const HKEY reader = Open(HKEY_CURRENT_USER, "software\\rights", KEY_READ);
  const HKEY writer = Open(HKEY_CURRENT_USER, "software\\rights", KEY_WRITE);
  DWORD number = 0;
  HKEY child = nullptr;
  EXPECT_EQ(SetNumber(reader, "n", 2), ERROR_ACCESS_DENIED);
  EXPECT_EQ(RegCreateKeyExA(reader, "x", 0, nullptr, 0, KEY_READ, nullptr, &child, nullptr),
            ERROR_ACCESS_DENIED);
  EXPECT_EQ(GetNumber(writer, "n", number), ERROR_ACCESS_DENIED);
  EXPECT_EQ(GetNumber(reader, "n", number), ERROR_SUCCESS);
  EXPECT_EQ(number, 1U);
}

TEST_F(RegistryTest, DeadHandlesFailSoftly) {
  const HKEY key = Create(HKEY_CURRENT_USER, "software\\short");
  EXPECT_EQ(RegCloseKey(key), ERROR_SUCCESS);
  DWORD number = 0;
  HKEY child = nullptr;
  for (const HKEY dead : {key, HKEY{}, reinterpret_cast<HKEY>(std::uintptr_t{0xdeadbeef})}) {
    EXPECT_EQ(RegCloseKey(dead), ERROR_INVALID_HANDLE);
    EXPECT_EQ(SetNumber(dead, "n", 1), ERROR_INVALID_HANDLE);
    EXPECT_EQ(GetNumber(dead, "n", number), ERROR_INVALID_HANDLE);
    EXPECT_EQ(RegOpenKeyExA(dead, "", 0, KEY_READ, &child), ERROR_INVALID_HANDLE);
  }
}

TEST_F(RegistryTest, OddPaths) {
  HKEY key = nullptr;
  for (const char* path : {"\\a", "a\\\\b", "\\"}) {
    const bool bare = std::strcmp(path, "\\") == 0;  // a lone closing separator names the key itself
    EXPECT_EQ(RegCreateKeyExA(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr),
              bare ? ERROR_SUCCESS : ERROR_BAD_PATHNAME)
        << path;
  }
  std::string tooDeep;
  for (int i = 0; i < 30000; ++i) tooDeep += "k\\";
  for (const std::string& path : {std::string(256, 'k'), tooDeep})
    EXPECT_EQ(
        RegCreateKeyExA(HKEY_CURRENT_USER, path.c_str(), 0, nullptr, 0, KEY_READ, nullptr, &key, nullptr),
        ERROR_BAD_PATHNAME);
  // An empty name opens the same key again.
  const HKEY first = Create(HKEY_CURRENT_USER, "software\\twice");
  const HKEY second = Create(first, "");
  EXPECT_NE(first, second);
  DWORD number = 0;
  EXPECT_EQ(SetNumber(first, "n", 7), ERROR_SUCCESS);
  EXPECT_EQ(GetNumber(second, "n", number), ERROR_SUCCESS);
  EXPECT_EQ(number, 7U);
}

TEST_F(RegistryTest, TheRootHoldsValuesToo) {
  DWORD number = 0;
  EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "n", number), ERROR_FILE_NOT_FOUND);
  EXPECT_EQ(SetNumber(HKEY_CURRENT_USER, "n", 9), ERROR_SUCCESS);
  EXPECT_EQ(SetNumber(Create(HKEY_CURRENT_USER, "general"), "n", 8),
            ERROR_SUCCESS);  // what its section is called
  EXPECT_EQ(GetNumber(HKEY_CURRENT_USER, "n", number), ERROR_SUCCESS);
  EXPECT_EQ(number, 9U);
}

}  // namespace
