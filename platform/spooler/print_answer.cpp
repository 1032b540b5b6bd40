#include "platform/spooler/detail/print_answer.h"

#include <cstring>

#include "platform/base/global_memory.h"
#include "platform/spooler/detail/printer_dc.h"

namespace platform {
namespace {

DWORD g_error = 0;

/// Writes bytes into the block, which is made if it is null, so that the caller's own handles stay the same.
bool PutBlock(HGLOBAL& block, const void* data, std::size_t size) {
  if (block == nullptr || GlobalSize(block) < size)
    block = block == nullptr ? GlobalAlloc(GHND, size) : GlobalReAlloc(block, size, GMEM_ZEROINIT);
  void* target = GlobalLock(block);
  if (target == nullptr) return false;
  std::memcpy(target, data, size);
  GlobalUnlock(block);
  return true;
}

bool PutNames(HGLOBAL& block, const PrintQueue& queue, const std::string& output) {
  const std::string texts[] = {queue.model, queue.name, output};
  std::string record(sizeof(DEVNAMES), 0);
  WORD offsets[3] = {};
  for (int i = 0; i < 3; ++i) {
    offsets[i] = static_cast<WORD>(record.size());
    record += texts[i];
    record.push_back(0);
  }
  const DEVNAMES names{offsets[0], offsets[1], offsets[2],
                       static_cast<WORD>(queue.isDefault ? DN_DEFAULTPRN : 0)};
  std::memcpy(record.data(), &names, sizeof names);
  return PutBlock(block, record.data(), record.size());
}

}  // namespace

BOOL EndPrintDialog(DWORD error) {
  g_error = error;
  return error == 0;
}

DWORD PrintDialogError() {
  return g_error;
}

std::string DeviceOf(HGLOBAL block) {
  const auto* names = static_cast<const char*>(GlobalLock(block));
  if (names == nullptr) return "";
  const std::size_t size = GlobalSize(block);
  DEVNAMES head{};
  if (size >= sizeof head) std::memcpy(&head, names, sizeof head);
  const std::size_t offset = head.wDeviceOffset;
  std::string device = offset >= sizeof head && offset < size
                           ? std::string(names + offset, strnlen(names + offset, size - offset))
                           : "";
  GlobalUnlock(block);
  return device;
}

bool ReadMode(HGLOBAL block, DEVMODEA& mode) {
  const void* given = GlobalLock(block);
  if (given == nullptr) return false;
  const bool whole = GlobalSize(block) >= sizeof mode;
  if (whole) std::memcpy(&mode, given, sizeof mode);
  GlobalUnlock(block);
  return whole;
}

BOOL AnswerWithPrinter(PRINTDLGA& dialog, const PrintQueue& queue, const std::string& output,
                       const DEVMODEA& mode) {
  const std::string port = output.empty() ? queue.port : output;
  if (!PutBlock(dialog.hDevMode, &mode, sizeof mode) || !PutNames(dialog.hDevNames, queue, port))
    return EndPrintDialog(CDERR_MEMALLOCFAILURE);
  if ((dialog.Flags & (PD_RETURNDC | PD_RETURNIC)) == 0) return EndPrintDialog(0);
  dialog.hDC = CreatePrinterDC(queue, output, &mode);
  return EndPrintDialog(dialog.hDC == nullptr ? PDERR_CREATEICFAILURE : DWORD{0});
}

BOOL AnswerWithDefaultPrinter(PRINTDLGA& dialog) {
  if (dialog.hDevMode != nullptr || dialog.hDevNames != nullptr) return EndPrintDialog(PDERR_RETDEFFAILURE);
  const auto queue = DefaultQueue();
  if (!queue) return EndPrintDialog(PDERR_NODEFAULTPRN);
  return AnswerWithPrinter(dialog, *queue, "", DevModeOf(*queue));
}

}  // namespace platform
