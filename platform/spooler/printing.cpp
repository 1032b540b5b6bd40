#include "platform/spooler/printing.h"

#include "platform/base/system_error.h"
#include "platform/spooler/page_images.h"
#include "platform/testing.h"

BOOL EnumPrintersA(DWORD, LPCSTR, DWORD, BYTE*, DWORD, DWORD* needed, DWORD* count) {
  if (needed != nullptr) *needed = 0;
  if (count != nullptr) *count = 0;
  SetLastError(RPC_S_SERVER_UNAVAILABLE);
  return FALSE;
}

BOOL GetDefaultPrinterA(LPSTR, DWORD*) {
  SetLastError(ERROR_FILE_NOT_FOUND);
  return FALSE;
}

HDC CreateDCA(LPCSTR, LPCSTR, LPCSTR, const DEVMODEA*) {
  return nullptr;
}
HDC ResetDCA(HDC, const DEVMODEA*) {
  return nullptr;
}
int StartDocA(HDC, const DOCINFOA*) {
  return SP_ERROR;
}
int StartPage(HDC) {
  return SP_ERROR;
}
int EndPage(HDC) {
  return SP_ERROR;
}
int EndDoc(HDC) {
  return SP_ERROR;
}
int AbortDoc(HDC) {
  return SP_ERROR;
}
int SetAbortProc(HDC, ABORTPROC) {
  return SP_ERROR;
}

bool platform::IsPrinterDC(HDC) {
  return false;
}
bool platform::DrawImageOnPrinter(HDC, const PrinterImage&, const RECT&, const RECT&) {
  return false;
}
void platform::testing::SetTestPrinters(std::span<const TestPrinter>) {}
