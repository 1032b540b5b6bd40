#include "print/printer_search.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "library/resource_ids.h"
#include "platform/base/string.h"
#include "platform/base/system_error.h"
#include "platform/framework/message_box.h"
#include "print/print_failure.h"

namespace printers {

namespace {

constexpr DWORD kLevel = 2;
constexpr DWORD kUserLanguage = 1024;

/// Memory of LocalAlloc or FormatMessage.
struct LocalDeleter {
  void operator()(void* memory) const { LocalFree(memory); }
};
template <class T>
using LocalPointer = std::unique_ptr<T, LocalDeleter>;

[[noreturn]] void FailSearch(DWORD error) {
  char* text = nullptr;
  FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM,
                 nullptr, error, kUserLanguage, reinterpret_cast<LPSTR>(&text), 0, nullptr);
  const LocalPointer<char> owner(text);
  AfxMessageBox(text == nullptr ? "" : text, MB_OK);
  throw static_cast<int>(PrintFailureNoSuchPrinter);
}

/// A search that went well and found no printer has no error of the system to tell.
[[noreturn]] void FailWithoutPrinters() {
  AfxMessageBox(IDS_ZP_NO_DEFAULT_PRINTER, MB_OK);
  throw static_cast<int>(PrintFailureNoSuchPrinter);
}

/// The records of all printers at a place, and the memory that they stand in.
struct Listing {
  LocalPointer<BYTE> memory;
  DWORD count = 0;

  const PRINTER_INFO_2* Find(const std::string& name) const {
    const auto* infos = reinterpret_cast<const PRINTER_INFO_2*>(memory.get());
    for (DWORD i = 0; i < count; ++i)
      if (infos[i].pPrinterName != nullptr && name == infos[i].pPrinterName) return &infos[i];
    return nullptr;
  }
};

Listing Enumerate(const Place& place) {
  const char* server = place.server ? place.server->c_str() : nullptr;
  DWORD needed = 0;
  Listing listing;
  if (EnumPrinters(place.flags, server, kLevel, nullptr, 0, &needed, &listing.count) != 0)
    FailWithoutPrinters();
  if (const DWORD error = GetLastError(); error != ERROR_INSUFFICIENT_BUFFER) FailSearch(error);
  listing.memory.reset(static_cast<BYTE*>(LocalAlloc(LPTR, needed)));
  if (listing.memory == nullptr) FailSearch(ERROR_NOT_ENOUGH_MEMORY);
  if (EnumPrinters(place.flags, server, kLevel, listing.memory.get(), needed, &needed, &listing.count) == 0)
    FailSearch(GetLastError());
  return listing;
}

}  // namespace

std::optional<Place> PlaceOf(const std::string& name) {
  constexpr DWORD kLocal = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
  if (name.empty() || name.front() != '\\') return Place{kLocal, std::nullopt};
  std::string server = name.substr(0, name.rfind('\\'));
  if (server.size() > kLongestServer) return std::nullopt;
  return Place{kLocal | PRINTER_ENUM_NAME, std::move(server)};
}

NamedPrinter::NamedPrinter(const char* name) : m_name(name == nullptr ? "" : name) {
  const std::optional<Place> place = PlaceOf(m_name);
  if (!place) throw static_cast<int>(PrintFailureNoSuchPrinter);
  const Listing listing = Enumerate(*place);
  const PRINTER_INFO_2* info = listing.Find(m_name);
  if (info == nullptr) throw static_cast<int>(PrintFailureNoSuchPrinter);
  Keep(*info);
}

void NamedPrinter::Keep(const PRINTER_INFO_2& info) {
  m_driver = info.pDriverName == nullptr ? "" : info.pDriverName;
  if (info.pDevMode == nullptr) return;
  const std::size_t size = static_cast<std::size_t>(info.pDevMode->dmSize) + info.pDevMode->dmDriverExtra;
  m_mode = GlobalAlloc(GHND, std::max(size, sizeof(DEVMODE)));
  void* target = GlobalLock(m_mode);
  if (target == nullptr) return;
  std::memcpy(target, info.pDevMode, size);
  GlobalUnlock(m_mode);
}

HDC NamedPrinter::CreateContext() const {
  const auto* mode = static_cast<const DEVMODE*>(GlobalLock(m_mode));
  const HDC dc = CreateDC(m_driver.c_str(), m_name.c_str(), nullptr, mode);
  GlobalUnlock(m_mode);
  return dc;
}

}  // namespace printers
