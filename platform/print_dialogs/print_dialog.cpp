#include "platform/print_dialogs/print_dialog.h"

#include <algorithm>
#include <utility>

#include "platform/print_dialogs/detail/print_choice.h"
#include "platform/resources/detail/find.h"
#include "platform/spooler/detail/print_answer.h"

IMPLEMENT_DYNAMIC(CPrintDialog, CDialog)

namespace {

using platform::PrintChoice;
using platform::PrintDialogRequest;
using platform::PrintQueue;
using Range = PrintDialogRequest::Range;

/// What is wrong with the record's template and hook; 0 if nothing is.
DWORD FaultOf(const PRINTDLGA& dialog) {
  if ((dialog.Flags & PD_PRINTSETUP) != 0) return CDERR_INITIALIZATION;
  if ((dialog.Flags & PD_ENABLEPRINTHOOK) != 0 && dialog.lpfnPrintHook == nullptr) return CDERR_NOHOOK;
  if ((dialog.Flags & PD_ENABLEPRINTTEMPLATE) == 0 || dialog.lpPrintTemplateName == nullptr)
    return CDERR_NOTEMPLATE;
  if (dialog.hInstance == nullptr) return CDERR_NOHINSTANCE;
  const auto* resource = platform::FindDialogResource(dialog.hInstance, dialog.lpPrintTemplateName);
  return resource == nullptr ? CDERR_FINDRESFAILURE : 0U;
}

PrintChoice ChoiceOf(const PRINTDLGA& dialog) {
  PrintChoice choice;
  PrintDialogRequest& request = choice.request;
  choice.queues =
      platform::CurrentPrintService().Queues(platform::ListAge::New).value_or(std::vector<PrintQueue>{});
  for (const PrintQueue& queue : choice.queues) {
    request.printers.push_back(queue.name);
    if (request.printer.empty() || queue.isDefault) request.printer = queue.name;
  }
  const std::string device = platform::DeviceOf(dialog.hDevNames);
  for (const PrintQueue& queue : choice.queues)
    if (queue.name == device) request.printer = device;
  choice.mode = platform::DevModeOf(platform::ChosenQueue(choice));
  DEVMODEA given{};
  if (platform::ReadMode(dialog.hDevMode, given)) {
    if (device == request.printer) choice.mode = given;
    request.landscape = (given.dmFields & DM_ORIENTATION) != 0 && given.dmOrientation == DMORIENT_LANDSCAPE;
    choice.mode.dmOrientation = request.landscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
  }
  choice.minPage = dialog.nMinPage;
  choice.maxPage = dialog.nMaxPage;
  choice.mayPages = (dialog.Flags & PD_NOPAGENUMS) == 0;
  choice.maySelection = (dialog.Flags & PD_NOSELECTION) == 0;
  choice.mayFile =
      (dialog.Flags & (PD_DISABLEPRINTTOFILE | PD_HIDEPRINTTOFILE)) == 0 || choice.queues.empty();
  if ((dialog.Flags & PD_PAGENUMS) != 0 && choice.mayPages) request.range = Range::Pages;
  if ((dialog.Flags & PD_SELECTION) != 0 && choice.maySelection) request.range = Range::Selection;
  request.fromPage = dialog.nFromPage;
  request.toPage = dialog.nToPage;
  request.copies = std::max<int>(dialog.nCopies, 1);
  request.collate = (dialog.Flags & PD_COLLATE) != 0;
  return choice;
}

bool AskSeam(PrintChoice& choice) {
  PrintDialogRequest& request = choice.request;
  const std::string proposed = request.printer;
  const bool given = platform::TheSeams().printDialog(request);
  if (request.printer != proposed) ChoosePrinter(choice, request.printer);
  choice.mode.dmOrientation = request.landscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
  platform::PrintField field{};
  return given && RefusalOf(choice, field).empty();
}

void PutRange(PRINTDLGA& dialog, const PrintChoice& choice) {
  const PrintDialogRequest& request = choice.request;
  const auto set = [&](DWORD flag, bool on) {
    dialog.Flags = on ? dialog.Flags | flag : dialog.Flags & ~flag;
  };
  set(PD_PAGENUMS, request.range == Range::Pages);
  set(PD_SELECTION, request.range == Range::Selection);
  set(PD_COLLATE, request.collate);
  set(PD_PRINTTOFILE, !request.file.empty());
  dialog.nCopies = static_cast<WORD>(request.copies);
  if (!choice.mayPages) return;
  // Programs that look at the numbers alone get the whole document where it was chosen.
  const bool pages = request.range == Range::Pages;
  dialog.nFromPage = static_cast<WORD>(pages ? request.fromPage : choice.minPage);
  dialog.nToPage = static_cast<WORD>(pages ? request.toPage : choice.maxPage);
}

}  // namespace

BOOL PrintDlgA(PRINTDLGA* dialog) {
  using platform::EndPrintDialog;
  EndPrintDialog(0);
  if (dialog == nullptr) return EndPrintDialog(CDERR_INITIALIZATION);
  if (dialog->lStructSize != sizeof *dialog) return EndPrintDialog(CDERR_STRUCTSIZE);
  dialog->hDC = nullptr;
  if ((dialog->Flags & PD_RETURNDEFAULT) != 0) return platform::AnswerWithDefaultPrinter(*dialog);
  if (const DWORD fault = FaultOf(*dialog); fault != 0) return EndPrintDialog(fault);
  PrintChoice choice = ChoiceOf(*dialog);
  if (!(platform::TheSeams().printDialog ? AskSeam(choice) : platform::AskPrintChoice(*dialog, choice)))
    return FALSE;
  PutRange(*dialog, choice);
  return platform::AnswerWithPrinter(*dialog, platform::ChosenQueue(choice), choice.request.file,
                                     choice.mode);
}

DWORD CommDlgExtendedError() {
  return platform::PrintDialogError();
}

CPrintDialog::CPrintDialog(BOOL printSetupOnly, DWORD flags, CWnd* parent) {
  m_pParentWnd = parent;
  m_pd.lStructSize = sizeof m_pd;
  m_pd.Flags = flags & ~static_cast<DWORD>(PD_RETURNIC);
  m_pd.Flags |= printSetupOnly != 0 ? PD_PRINTSETUP : PD_RETURNDC;
}

int CPrintDialog::DoModal() {
  m_pd.hwndOwner = ModalOwner(m_pParentWnd);
  return PrintDlgA(&m_pd) != 0 ? IDOK : IDCANCEL;
}

BOOL CPrintDialog::GetDefaults() {
  m_pd.Flags |= PD_RETURNDEFAULT;
  return PrintDlgA(&m_pd);
}

CString CPrintDialog::GetDeviceName() const {
  return platform::DeviceOf(m_pd.hDevNames).c_str();
}
