#include "platform/print_dialogs/detail/print_choice.h"

#include "platform/base/string.h"
#include "platform/base/translation.h"
#include "platform/spooler/detail/sheet.h"

namespace platform {
namespace {

constexpr int kMostCopies = 9999;

struct StatusName {
  DWORD status;
  const char* text;
};

constexpr StatusName kStatusNames[] = {
    {PRINTER_STATUS_NOT_AVAILABLE, "non accetta lavori"},
    {PRINTER_STATUS_PAUSED, "in pausa"},
    {PRINTER_STATUS_ERROR, "errore"},
    {PRINTER_STATUS_OFFLINE, "non in linea"},
    {PRINTER_STATUS_PAPER_JAM, "carta inceppata"},
    {PRINTER_STATUS_PAPER_OUT, "carta esaurita"},
    {PRINTER_STATUS_DOOR_OPEN, "sportello aperto"},
    {PRINTER_STATUS_TONER_LOW, "toner in esaurimento"},
    {PRINTER_STATUS_PRINTING, "stampa in corso"},
};

/// The text in the product's language with its places filled.
template <typename... Values>
std::string Filled(const char* text, Values... values) {
  CString filled;
  filled.Format(Localized(text), values...);
  return static_cast<const char*>(filled);
}

bool IsPage(const PrintChoice& choice, int page) {
  return page >= choice.minPage && page <= choice.maxPage;
}

}  // namespace

PrintQueue ChosenQueue(const PrintChoice& choice) {
  for (const PrintQueue& queue : choice.queues)
    if (queue.name == choice.request.printer) return queue;
  return FileQueue();
}

void ChoosePrinter(PrintChoice& choice, const std::string& name) {
  choice.request.printer = name;
  choice.mode = DevModeOf(ChosenQueue(choice));
  choice.mode.dmOrientation = choice.request.landscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
}

std::string RefusalOf(const PrintChoice& choice, PrintField& field) {
  const PrintDialogRequest& request = choice.request;
  const std::string limits = Filled("Digitare numeri di pagina da %d a %d.", choice.minPage, choice.maxPage);
  field = PrintField::None;
  if (request.range == PrintDialogRequest::Range::Pages) {
    field = IsPage(choice, request.fromPage) ? PrintField::ToPage : PrintField::FromPage;
    if (!choice.mayPages) return Localized("Non è possibile stampare un intervallo di pagine.");
    if (!IsPage(choice, request.fromPage) || !IsPage(choice, request.toPage))
      return Localized("L'intervallo di pagine non è valido.\n") + limits;
    if (request.fromPage > request.toPage) {
      field = PrintField::FromPage;
      return std::string(Localized("L'intervallo di pagine non è valido.\n")) +
             Localized("La prima pagina non può seguire l'ultima.");
    }
  }
  if (request.range == PrintDialogRequest::Range::Selection && !choice.maySelection)
    return Localized("Non c'è nessuna selezione da stampare.");
  if (request.copies < 1 || request.copies > kMostCopies) {
    field = PrintField::Copies;
    return Filled("Il numero di copie non è valido.\nDigitare un numero da 1 a %d.", kMostCopies);
  }
  field = PrintField::Printer;
  if (!request.file.empty()) return choice.mayFile ? "" : Localized("Non è possibile stampare su file.");
  if (FileQueue().name == ChosenQueue(choice).name) return Localized("La stampante scelta non esiste più.");
  return "";
}

std::string StatusText(const PrintQueue& queue) {
  std::string text;
  for (const StatusName& name : kStatusNames)
    if ((queue.status & name.status) != 0)
      text += (text.empty() ? "" : "; ") + std::string(Localized(name.text));
  if (text.empty()) return Localized("Pronta");
  if (text.front() >= 'a' && text.front() <= 'z') text.front() = static_cast<char>(text.front() - 'a' + 'A');
  return text;
}

}  // namespace platform
