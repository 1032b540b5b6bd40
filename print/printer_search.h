#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/base/global_memory.h"
#include "platform/spooler/printers.h"

// A printer by its name, without a dialog.
namespace printers {

/// Longest name of a server that is asked for its printers, in bytes.
inline constexpr std::size_t kLongestServer = 259;

/// Where a printer is looked for.
struct Place {
  DWORD flags;                        ///< PRINTER_ENUM_...
  std::optional<std::string> server;  ///< none: the local machine
};

/// A name that begins with a backslash holds its server, up to the last backslash. Nothing if the server's
/// name is too long.
std::optional<Place> PlaceOf(const std::string& name);

/// A printer found by its name, and a copy of its settings in movable memory, as the print dialog gives it.
class NamedPrinter {
 public:
  /// Throws PrintFailureNoSuchPrinter; a failure of the search itself is shown in a message box first.
  explicit NamedPrinter(const char* name);
  NamedPrinter(const NamedPrinter&) = delete;
  NamedPrinter& operator=(const NamedPrinter&) = delete;
  ~NamedPrinter() { GlobalFree(m_mode); }

  /// The caller's to delete; null if the printer is gone.
  HDC CreateContext() const;
  /// Null if the printer has no settings. Stays this object's.
  HGLOBAL Mode() const { return m_mode; }

 private:
  void Keep(const PRINTER_INFO_2& info);

  std::string m_name;
  std::string m_driver;
  HGLOBAL m_mode = nullptr;
};

}  // namespace printers
