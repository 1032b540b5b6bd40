#include "platform/print_dialogs/detail/print_choice.h"

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
  const std::string limits = "Digitare numeri di pagina da " + std::to_string(choice.minPage) + " a " +
                             std::to_string(choice.maxPage) + ".";
  field = PrintField::None;
  if (request.range == PrintDialogRequest::Range::Pages) {
    field = IsPage(choice, request.fromPage) ? PrintField::ToPage : PrintField::FromPage;
    if (!choice.mayPages) return "Non è possibile stampare un intervallo di pagine.";
    if (!IsPage(choice, request.fromPage) || !IsPage(choice, request.toPage))
      return "L'intervallo di pagine non è valido.\n" + limits;
    if (request.fromPage > request.toPage) {
      field = PrintField::FromPage;
      return "L'intervallo di pagine non è valido.\nLa prima pagina non può seguire l'ultima.";
    }
  }
  if (request.range == PrintDialogRequest::Range::Selection && !choice.maySelection)
    return "Non c'è nessuna selezione da stampare.";
  if (request.copies < 1 || request.copies > kMostCopies) {
    field = PrintField::Copies;
    return "Il numero di copie non è valido.\nDigitare un numero da 1 a " + std::to_string(kMostCopies) + ".";
  }
  field = PrintField::Printer;
  if (!request.file.empty()) return choice.mayFile ? "" : "Non è possibile stampare su file.";
  if (FileQueue().name == ChosenQueue(choice).name) return "La stampante scelta non esiste più.";
  return "";
}

std::string StatusText(const PrintQueue& queue) {
  std::string text;
  for (const StatusName& name : kStatusNames)
    if ((queue.status & name.status) != 0) text += (text.empty() ? "" : "; ") + std::string(name.text);
  if (text.empty()) return "Pronta";
  text.front() = static_cast<char>(text.front() - 'a' + 'A');
  return text;
}

}  // namespace platform
