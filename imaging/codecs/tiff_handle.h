#pragma once

#include <tiffio.h>

#include <cstdint>
#include <memory>
#include <string>

#include "imaging/core/source.h"

namespace imaging {

/// Throws std::bad_alloc if there isn't room for the tables that the library keeps for a directory: it takes
/// them for granted (4.5.0), and has no callback for allocations.
void CheckRoomForTiff();

/// One directory of a TIFF file, open in libtiff over a source. Messages of the library stay in this handle:
/// warnings are dropped, since files in the field are full of harmless oddities, the first error is kept.
class TiffHandle {
 public:
  /// Throws if the library can't read the directory at that offset.
  TiffHandle(const Source& source, std::uint64_t directory, int page);
  ~TiffHandle();
  TiffHandle(const TiffHandle&) = delete;
  TiffHandle& operator=(const TiffHandle&) = delete;

  TIFF* Get() const { return m_tiff; }
  const Source& File() const { return m_client.source; }
  int Page() const { return m_page; }
  const std::string& FirstError() const { return m_client.firstError; }
  /// Throws for a page of which nothing could be decoded.
  [[noreturn]] void FailDecoding() const;
  int ErrorCount() const { return m_client.errors; }
  int WarningCount() const { return m_client.warnings; }

  /// How many rows in fax coding the library has found fault with, all strips and reads together.
  int FaxFaults() const { return m_client.faxFaults; }

  /// The value of a tag; a fallback, or what the standard gives as its default, if it is absent.
  std::uint16_t Short(std::uint32_t tag, std::uint16_t fallback) const;
  std::uint32_t Long(std::uint32_t tag, std::uint32_t fallback) const;
  double Real(std::uint32_t tag, double fallback) const;

 private:
  struct Client {
    const Source& source;
    std::int64_t position;
    std::string firstError;
    int errors = 0;
    int warnings = 0;
    int faxFaults = 0;
    std::string latestFault;  ///< several messages may be about one row
  };
  static tmsize_t Read(thandle_t client, void* target, tmsize_t size);
  static toff_t Seek(thandle_t client, toff_t offset, int whence);
  static toff_t Size(thandle_t client);
  static int CountWarning(TIFF* tiff, void* client, const char* module, const char* format, va_list args);
  static int KeepError(TIFF* tiff, void* client, const char* module, const char* format, va_list args);
  static void NoteFault(Client& client, const std::string& message);
  void Open();

  Client m_client;
  int m_page;
  TIFF* m_tiff = nullptr;
};

}  // namespace imaging
