#include "imaging/codecs/tiff_handle.h"

#include <cstdarg>
#include <cstdio>
#include <new>

#include "imaging/core/exception.h"
#include "imaging/core/limits.h"

namespace imaging {
namespace {

tmsize_t RefuseWrite(thandle_t /*client*/, void* /*data*/, tmsize_t /*size*/) {
  return -1;
}
int KeepOpen(thandle_t /*client*/) {
  return 0;
}
int RefuseMap(thandle_t /*client*/, void** /*base*/, toff_t* /*size*/) {
  return 0;
}
void IgnoreUnmap(thandle_t /*client*/, void* /*base*/, toff_t /*size*/) {}

std::string MessageText(const char* format, va_list args) {
  char text[256];
  std::vsnprintf(text, sizeof text, format, args);
  return text;
}

/// Short of memory the library (4.5.0) keeps the size of JPEG tables without the tables, and reads at null.
bool HasItsTables(TIFF* tiff) {
  std::uint32_t size = 0;
  const void* tables = nullptr;
  return TIFFGetField(tiff, TIFFTAG_JPEGTABLES, &size, &tables) == 0 || size == 0 || tables != nullptr;
}

constexpr std::size_t kRoomForTables = std::size_t{1} << 18;

}  // namespace

void CheckRoomForTiff() {
  // Called by its name, since the compiler may leave a pair of new and delete out.
  ::operator delete(::operator new(kRoomForTables));
}

TiffHandle::TiffHandle(const Source& source, std::uint64_t directory, int page)
    : m_client{source, 0, {}, 0, 0, 0, {}}, m_page(page) {
  Open();
  const bool read = m_tiff != nullptr && TIFFSetSubDirectory(m_tiff, directory) != 0;
  if (read && HasItsTables(m_tiff)) return;
  if (m_tiff != nullptr) TIFFClose(m_tiff);
  if (read) throw std::bad_alloc();
  Fail(kErrorCorrupt, "%s, page %d: the page's directory is damaged (%s)", source.Name().c_str(), page,
       FirstError().c_str());
}

TiffHandle::~TiffHandle() {
  TIFFClose(m_tiff);
}

void TiffHandle::Open() {
  CheckRoomForTiff();
  const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> options(TIFFOpenOptionsAlloc(),
                                                                                 TIFFOpenOptionsFree);
  if (options == nullptr) return;
  TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), Limit().codecBytes);
  TIFFOpenOptionsSetErrorHandlerExtR(options.get(), KeepError, &m_client);
  TIFFOpenOptionsSetWarningHandlerExtR(options.get(), CountWarning, &m_client);
  // r: read, m: without mapping, h: the header alone, since the directory is chosen afterwards.
  m_tiff = TIFFClientOpenExt(m_client.source.Name().c_str(), "rmh", &m_client, Read, RefuseWrite, Seek,
                             KeepOpen, Size, RefuseMap, IgnoreUnmap, options.get());
}

void TiffHandle::FailDecoding() const {
  Fail(kErrorCorrupt, "%s, page %d: nothing of the page can be decoded%s%s", File().Name().c_str(), m_page,
       FirstError().empty() ? "" : ": ", FirstError().c_str());
}

std::uint16_t TiffHandle::Short(std::uint32_t tag, std::uint16_t fallback) const {
  std::uint16_t value = 0;
  return TIFFGetFieldDefaulted(m_tiff, tag, &value) != 0 ? value : fallback;
}

std::uint32_t TiffHandle::Long(std::uint32_t tag, std::uint32_t fallback) const {
  std::uint32_t value = 0;
  return TIFFGetFieldDefaulted(m_tiff, tag, &value) != 0 ? value : fallback;
}

double TiffHandle::Real(std::uint32_t tag, double fallback) const {
  float value = 0;
  return TIFFGetFieldDefaulted(m_tiff, tag, &value) != 0 ? static_cast<double>(value) : fallback;
}

tmsize_t TiffHandle::Read(thandle_t client, void* target, tmsize_t size) {
  auto& self = *static_cast<Client*>(client);
  if (size <= 0) return 0;
  const std::size_t got =
      self.source.ReadAt(self.position, {static_cast<std::uint8_t*>(target), static_cast<std::size_t>(size)});
  self.position += static_cast<std::int64_t>(got);
  return static_cast<tmsize_t>(got);
}

toff_t TiffHandle::Seek(thandle_t client, toff_t offset, int whence) {
  auto& self = *static_cast<Client*>(client);
  const std::int64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? self.position : self.source.Size();
  self.position = static_cast<std::int64_t>(static_cast<std::uint64_t>(base) + offset);
  return static_cast<toff_t>(self.position);
}

toff_t TiffHandle::Size(thandle_t client) {
  return static_cast<toff_t>(static_cast<Client*>(client)->source.Size());
}

int TiffHandle::CountWarning(TIFF* /*tiff*/, void* client, const char* /*module*/, const char* format,
                             va_list args) {
  auto& self = *static_cast<Client*>(client);
  ++self.warnings;
  NoteFault(self, MessageText(format, args));
  return 1;
}

int TiffHandle::KeepError(TIFF* /*tiff*/, void* client, const char* /*module*/, const char* format,
                          va_list args) {
  auto& self = *static_cast<Client*>(client);
  const std::string text = MessageText(format, args);
  NoteFault(self, text);
  if (self.errors++ == 0) self.firstError = text;
  return 1;  // handled; the library's process-wide handlers stay out of it
}

/// The library tells of damaged fax rows in words alone: "Bad code word at line 7 of strip 0 (x 12)".
void TiffHandle::NoteFault(Client& client, const std::string& message) {
  const std::size_t at = message.find(" at line ");
  if (at == std::string::npos) return;
  const std::string row = message.substr(at, message.find('(', at) - at);
  if (row == client.latestFault) return;
  client.latestFault = row;
  ++client.faxFaults;
}

}  // namespace imaging
