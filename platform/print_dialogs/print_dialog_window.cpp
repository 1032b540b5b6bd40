#include <cstdlib>

#include "platform/base/translation.h"
#include "platform/framework/dialog.h"
#include "platform/framework/file_dialog.h"
#include "platform/print_dialogs/detail/print_choice.h"

namespace platform {
namespace {

// The numbers that templates of the print dialog give their controls.
enum : int {
  kProperties = 1025,
  kToFile = 1040,
  kCollate = 1041,
  kAll = 1056,
  kSelection = 1057,
  kPages = 1058,
  kFromText = 1089,
  kToText = 1090,
  kKind = 1098,
  kStatus = 1099,
  kComment = 1100,
  kPlace = 1101,
  kPrinters = 1139,
  kFrom = 1152,
  kTo = 1153,
  kCopies = 1154,
};

constexpr const char* kNoQueue = "Stampa su file (PDF)";
constexpr int kMostDigits = 5;

using Range = PrintDialogRequest::Range;

class PrintWindow : public CDialog {
 public:
  PrintWindow(PRINTDLGA& record, PrintChoice& choice, CWnd* parent)
      : CDialog(record.lpPrintTemplateName, parent), m_record(record), m_choice(choice) {}

 protected:
  BOOL OnInitDialog() override;
  void OnOK() override;
  LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
  DECLARE_MESSAGE_MAP()

 private:
  void OnPrinter();
  void OnProperties();
  void OnRange() { ShowRange(); }
  void OnPageTyped();
  void OnCopiesTyped();

  void FillPrinters();
  void ShowPrinter();
  void ShowRange();
  bool AskFile();

  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessage(::GetDlgItem(m_hWnd, id), message, wParam, lParam);
  }
  bool IsChecked(int id) const { return Send(id, BM_GETCHECK) == BST_CHECKED; }
  void Check(int id, bool on) { Send(id, BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED); }
  void Enable(int id, bool on) { ::EnableWindow(::GetDlgItem(m_hWnd, id), on); }
  void SetText(int id, const std::string& text) { SetDlgItemText(id, text.c_str()); }
  void SetNumber(int id, int number);
  int Number(int id) const;
  void Complain(const std::string& text, PrintField field);

  PRINTDLGA& m_record;
  PrintChoice& m_choice;
  bool m_filling = false;  // fields are being set by the dialog, not typed into
};

BEGIN_MESSAGE_MAP(PrintWindow, CDialog)
ON_CONTROL(CBN_SELCHANGE, kPrinters, OnPrinter)
ON_COMMAND(kProperties, OnProperties)
ON_COMMAND(kAll, OnRange)
ON_COMMAND(kPages, OnRange)
ON_COMMAND(kSelection, OnRange)
ON_CONTROL(EN_CHANGE, kFrom, OnPageTyped)
ON_CONTROL(EN_CHANGE, kTo, OnPageTyped)
ON_CONTROL(EN_CHANGE, kCopies, OnCopiesTyped)
END_MESSAGE_MAP()

void PrintWindow::SetNumber(int id, int number) {
  m_filling = true;
  SetText(id, number > 0 ? std::to_string(number) : "");
  m_filling = false;
}

int PrintWindow::Number(int id) const {
  CString text;
  GetDlgItemText(id, text);
  return std::atoi(text);  // the field takes digits only, and few of them; empty counts as 0
}

LRESULT PrintWindow::WindowProc(UINT message, WPARAM wParam, LPARAM lParam) {
  const bool hooked = (m_record.Flags & PD_ENABLEPRINTHOOK) != 0;
  if (hooked && m_record.lpfnPrintHook(m_hWnd, message, wParam, lParam) != 0) return TRUE;
  return CDialog::WindowProc(message, wParam, lParam);
}

BOOL PrintWindow::OnInitDialog() {
  CDialog::OnInitDialog();
  const PrintDialogRequest& request = m_choice.request;
  FillPrinters();
  for (const int id : {kFrom, kTo, kCopies}) Send(id, EM_LIMITTEXT, kMostDigits);
  SetNumber(kFrom, request.fromPage);
  SetNumber(kTo, request.toPage);
  SetNumber(kCopies, request.copies);
  Check(kCollate, request.collate);
  Enable(kCollate, request.copies > 1);
  for (const int id : {kPages, kFrom, kTo, kFromText, kToText}) Enable(id, m_choice.mayPages);
  Enable(kSelection, m_choice.maySelection);
  Check(kAll, request.range == Range::All);
  Check(kPages, request.range == Range::Pages);
  Check(kSelection, request.range == Range::Selection);
  if ((m_record.Flags & PD_HIDEPRINTTOFILE) != 0) ::ShowWindow(::GetDlgItem(m_hWnd, kToFile), SW_HIDE);
  ShowRange();
  ShowPrinter();
  if ((m_record.Flags & PD_ENABLEPRINTHOOK) != 0)
    m_record.lpfnPrintHook(m_hWnd, WM_INITDIALOG, 0, reinterpret_cast<LPARAM>(&m_record));
  return TRUE;
}

void PrintWindow::FillPrinters() {
  for (const PrintQueue& queue : m_choice.queues)
    Send(kPrinters, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(queue.name.c_str()));
  // Without a queue a file is all that can be printed to.
  const bool none = m_choice.queues.empty();
  if (none) Send(kPrinters, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Localized(kNoQueue)));
  const std::string& chosen = none ? Localized(kNoQueue) : m_choice.request.printer;
  const LRESULT index =
      Send(kPrinters, CB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), reinterpret_cast<LPARAM>(chosen.c_str()));
  Send(kPrinters, CB_SETCURSEL, index < 0 ? 0 : static_cast<WPARAM>(index));
  Check(kToFile, none || (m_record.Flags & PD_PRINTTOFILE) != 0);
  Enable(kToFile, !none && m_choice.mayFile);
}

void PrintWindow::ShowPrinter() {
  const PrintQueue queue = ChosenQueue(m_choice);
  const bool none = m_choice.queues.empty();
  SetText(kStatus, StatusText(queue));
  SetText(kKind, none ? "PDF" : queue.model);
  SetText(kPlace, queue.location.empty() ? queue.port : queue.location);
  SetText(kComment, none ? Localized("Nessuna stampante installata") : queue.comment);
}

/// The numbers count only where the range is chosen.
void PrintWindow::ShowRange() {
  if (IsChecked(kPages) && Number(kFrom) == 0 && ::GetFocus() != ::GetDlgItem(m_hWnd, kFrom))
    ::SetFocus(::GetDlgItem(m_hWnd, kFrom));
}

void PrintWindow::OnPrinter() {
  const LRESULT index = Send(kPrinters, CB_GETCURSEL);
  if (index < 0 || m_choice.queues.empty()) return;
  const LRESULT length = Send(kPrinters, CB_GETLBTEXTLEN, static_cast<WPARAM>(index));
  if (length < 0) return;
  std::vector<char> name(static_cast<std::size_t>(length) + 1);
  Send(kPrinters, CB_GETLBTEXT, static_cast<WPARAM>(index), reinterpret_cast<LPARAM>(name.data()));
  ChoosePrinter(m_choice, name.data());
  ShowPrinter();
}

void PrintWindow::OnProperties() {
  AskPrintProperties(m_hWnd, m_choice);
}

/// Who types a page number wants a range.
void PrintWindow::OnPageTyped() {
  if (m_filling) return;
  Check(kAll, false);
  Check(kSelection, false);
  Check(kPages, true);
}

void PrintWindow::OnCopiesTyped() {
  Enable(kCollate, Number(kCopies) > 1);
}

bool PrintWindow::AskFile() {
  CFileDialog dialog(FALSE, "pdf", nullptr, OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST,
                     Localized("Documenti PDF|*.pdf|Tutti i file|*.*||"), this);
  dialog.m_ofn.lpstrTitle = Localized("Stampa su file");
  if (dialog.DoModal() != IDOK) return false;
  m_choice.request.file = dialog.GetPathName();
  return true;
}

void PrintWindow::Complain(const std::string& text, PrintField field) {
  AfxMessageBox(text.c_str(), MB_ICONEXCLAMATION);
  int id = kPrinters;
  if (field == PrintField::FromPage) id = kFrom;
  if (field == PrintField::ToPage) id = kTo;
  if (field == PrintField::Copies) id = kCopies;
  ::SetFocus(::GetDlgItem(m_hWnd, id));
  if (id != kPrinters) Send(id, EM_SETSEL, 0, -1);
}

void PrintWindow::OnOK() {
  PrintDialogRequest& request = m_choice.request;
  request.range = IsChecked(kPages) ? Range::Pages : IsChecked(kSelection) ? Range::Selection : Range::All;
  request.fromPage = Number(kFrom);
  request.toPage = Number(kTo);
  request.copies = Number(kCopies);
  request.collate = IsChecked(kCollate);
  const bool toFile = IsChecked(kToFile);
  request.file.assign(toFile ? 1U : 0U, '?');  // its name isn't asked yet
  PrintField field = PrintField::None;
  const std::string refusal = RefusalOf(m_choice, field);
  if (!refusal.empty()) {
    Complain(refusal, field);
    return;
  }
  if (!toFile || AskFile()) EndDialog(IDOK);
}

}  // namespace

bool AskPrintChoice(PRINTDLGA& dialog, PrintChoice& choice) {
  return PrintWindow(dialog, choice, CWnd::FromHandle(dialog.hwndOwner)).DoModal() == IDOK;
}

}  // namespace platform
