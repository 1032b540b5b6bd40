#include "platform/base/system_error.h"
#include "platform/base/translation.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

thread_local DWORD g_lastError = ERROR_SUCCESS;

struct ErrorText {
  DWORD code;
  const char* text;
};

constexpr ErrorText kTexts[] = {
    {ERROR_SUCCESS, "Operazione completata."},
    {ERROR_FILE_NOT_FOUND, "Impossibile trovare il file specificato."},
    {ERROR_ACCESS_DENIED, "Accesso negato."},
    {ERROR_INVALID_HANDLE, "Handle non valido."},
    {ERROR_NOT_ENOUGH_MEMORY, "Memoria insufficiente per eseguire l'operazione."},
    {ERROR_INVALID_PARAMETER, "Parametro non corretto."},
    {ERROR_DISK_FULL, "Spazio su disco insufficiente."},
    {ERROR_INSUFFICIENT_BUFFER, "L'area dati passata alla chiamata di sistema è troppo piccola."},
    {ERROR_INVALID_NAME, "Il nome specificato non è corretto."},
    {ERROR_INVALID_LEVEL, "Il livello di informazioni richiesto non è corretto."},
    {RPC_S_SERVER_UNAVAILABLE, "Il servizio di stampa non è disponibile."},
    {ERROR_INVALID_PRINTER_NAME, "Il nome della stampante non è valido."},
};

std::string TextOf(DWORD code) {
  const auto* found = std::find_if(std::begin(kTexts), std::end(kTexts),
                                   [code](const ErrorText& entry) { return entry.code == code; });
  if (found != std::end(kTexts)) return std::string(platform::Localized(found->text)) + "\r\n";
  return platform::Localized("Errore ") + std::to_string(code) + ".\r\n";
}

}  // namespace

DWORD GetLastError() {
  return g_lastError;
}

void SetLastError(DWORD code) {
  g_lastError = code;
}

HLOCAL LocalAlloc(UINT flags, std::size_t bytes) {
  const std::size_t room = std::max<std::size_t>(bytes, 1);
  void* memory = (flags & LMEM_ZEROINIT) != 0 ? std::calloc(room, 1) : std::malloc(room);
  if (memory == nullptr) SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return memory;
}

HLOCAL LocalFree(HLOCAL memory) {
  std::free(memory);
  return nullptr;
}

DWORD FormatMessageA(DWORD flags, const void* /*source*/, DWORD code, DWORD /*language*/, LPSTR buffer,
                     DWORD size, void* /*arguments*/) {
  if ((flags & FORMAT_MESSAGE_FROM_SYSTEM) == 0 || buffer == nullptr) {
    SetLastError(ERROR_INVALID_PARAMETER);
    return 0;
  }
  const std::string text = TextOf(code);
  char* target = buffer;
  if ((flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) != 0) {
    target = static_cast<char*>(LocalAlloc(LMEM_FIXED, std::max<std::size_t>(size, text.size() + 1)));
    std::memcpy(buffer, &target, sizeof target);  // buffer stands for the address of a pointer here
    if (target == nullptr) return 0;
  } else if (size <= text.size()) {
    SetLastError(ERROR_INSUFFICIENT_BUFFER);
    return 0;
  }
  std::memcpy(target, text.c_str(), text.size() + 1);
  return static_cast<DWORD>(text.size());
}
