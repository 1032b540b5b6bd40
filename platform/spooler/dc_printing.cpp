#include "platform/graphics/dc.h"
#include "platform/spooler/printers.h"

// The printing members of CDC.

BOOL CDC::CreateDC(LPCTSTR driver, LPCTSTR device, LPCTSTR output, const void* mode) {
  return Attach(::CreateDCA(driver, device, output, static_cast<const DEVMODEA*>(mode)));
}

BOOL CDC::ResetDC(const DEVMODE* mode) {
  return ::ResetDCA(m_hDC, mode) != nullptr;
}

int CDC::StartDoc(LPCTSTR documentName) {
  const DOCINFOA info{sizeof info, documentName, nullptr, nullptr, 0};
  return ::StartDocA(m_hDC, &info);
}

int CDC::StartDoc(LPDOCINFO info) {
  return ::StartDocA(m_hDC, info);
}

int CDC::StartPage() {
  return ::StartPage(m_hDC);
}

int CDC::EndPage() {
  return ::EndPage(m_hDC);
}

int CDC::EndDoc() {
  return ::EndDoc(m_hDC);
}

int CDC::AbortDoc() {
  return ::AbortDoc(m_hDC);
}

int CDC::SetAbortProc(ABORTPROC procedure) {
  return ::SetAbortProc(m_hDC, procedure);
}
