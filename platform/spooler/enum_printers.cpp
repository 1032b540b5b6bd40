#include <cstring>

#include "platform/base/system_error.h"
#include "platform/spooler/detail/sheet.h"
#include "platform/spooler/printers.h"

namespace {

using platform::PrintQueue;

/// Lays records out in a buffer: all records first, then what they point to.
class Packer {
 public:
  Packer(BYTE* buffer, std::size_t records) : m_buffer(buffer), m_used(records * sizeof(PRINTER_INFO_2A)) {}

  char* Text(const std::string& text) {
    char* place = Take<char>(text.size() + 1, 1);
    if (place != nullptr) std::memcpy(place, text.c_str(), text.size() + 1);
    return place;
  }
  DEVMODEA* Mode(const DEVMODEA& mode) {
    auto* place = Take<DEVMODEA>(sizeof mode, alignof(DEVMODEA));
    if (place != nullptr) std::memcpy(place, &mode, sizeof mode);
    return place;
  }
  std::size_t Used() const { return m_used; }

 private:
  // Without a buffer it only counts.
  template <typename Kind>
  Kind* Take(std::size_t bytes, std::size_t alignment) {
    m_used = (m_used + alignment - 1) / alignment * alignment;
    void* place = m_buffer == nullptr ? nullptr : m_buffer + m_used;
    m_used += bytes;
    return static_cast<Kind*>(place);
  }

  BYTE* m_buffer;
  std::size_t m_used;
};

PRINTER_INFO_2A Pack(Packer& packer, const PrintQueue& queue) {
  PRINTER_INFO_2A info{};
  info.pDevMode = packer.Mode(platform::DevModeOf(queue));
  info.pPrinterName = packer.Text(queue.name);
  info.pShareName = packer.Text("");
  info.pPortName = packer.Text(queue.port);
  info.pDriverName = packer.Text(queue.model);
  info.pComment = packer.Text(queue.comment);
  info.pLocation = packer.Text(queue.location);
  info.pSepFile = packer.Text("");
  info.pPrintProcessor = packer.Text("");
  info.pDatatype = packer.Text("application/pdf");
  info.pParameters = packer.Text("");
  info.Attributes = PRINTER_ATTRIBUTE_LOCAL | (queue.isDefault ? PRINTER_ATTRIBUTE_DEFAULT : 0U);
  info.Priority = info.DefaultPriority = 1;
  info.Status = queue.status;
  return info;
}

BOOL Refuse(DWORD error) {
  SetLastError(error);
  return FALSE;
}

}  // namespace

BOOL EnumPrintersA(DWORD flags, LPCSTR server, DWORD level, BYTE* buffer, DWORD size, DWORD* needed,
                   DWORD* count) {
  if (needed == nullptr || count == nullptr) return Refuse(ERROR_INVALID_PARAMETER);
  *needed = *count = 0;
  if (level != 2) return Refuse(ERROR_INVALID_LEVEL);
  if (server != nullptr && *server != 0) return Refuse(ERROR_INVALID_NAME);
  std::vector<PrintQueue> queues;
  if ((flags & (PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS)) != 0) {
    // The call that asks for the size begins anew; the one that takes the records must find the same ones.
    const auto age = buffer == nullptr ? platform::ListAge::New : platform::ListAge::FewSeconds;
    auto known = platform::CurrentPrintService().Queues(age);
    if (!known) return Refuse(RPC_S_SERVER_UNAVAILABLE);
    queues = std::move(*known);
  }
  Packer counter(nullptr, queues.size());
  for (const PrintQueue& queue : queues) Pack(counter, queue);
  *needed = static_cast<DWORD>(counter.Used());
  if (*needed > size || (buffer == nullptr && *needed > 0)) return Refuse(ERROR_INSUFFICIENT_BUFFER);
  Packer packer(buffer, queues.size());
  for (std::size_t i = 0; i < queues.size(); ++i) {
    const PRINTER_INFO_2A info = Pack(packer, queues[i]);
    std::memcpy(buffer + i * sizeof info, &info, sizeof info);
  }
  *count = static_cast<DWORD>(queues.size());
  // No queue at all leaves nothing to ask for a second time; what a name can be told then.
  SetLastError(queues.empty() ? ERROR_INVALID_PRINTER_NAME : ERROR_SUCCESS);
  return TRUE;
}

BOOL GetDefaultPrinterA(LPSTR name, DWORD* size) {
  if (size == nullptr) return Refuse(ERROR_INVALID_PARAMETER);
  const auto queue = platform::DefaultQueue();
  if (!queue) return Refuse(ERROR_FILE_NOT_FOUND);
  const auto needed = static_cast<DWORD>(queue->name.size() + 1);
  const bool fits = name != nullptr && *size >= needed;
  *size = needed;
  if (!fits) return Refuse(ERROR_INSUFFICIENT_BUFFER);
  std::memcpy(name, queue->name.c_str(), needed);
  return TRUE;
}
