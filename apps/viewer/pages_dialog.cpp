#include "pages_dialog.h"

#include <algorithm>
#include <array>
#include <new>

#include "resources.h"

BEGIN_MESSAGE_MAP(CPagesDialog, CDialog)
ON_CONTROL(EN_CHANGE, IDC_PAGES_EDIT, OnPagesTyped)
END_MESSAGE_MAP()

CPagesDialog::CPagesDialog(Purpose purpose, int current, int pages, CWnd* parent)
    : CDialog(purpose == Purpose::Print ? IDD_PRINT_PAGES : IDD_EXPORT_PAGES, parent),
      m_current(current),
      m_pages(pages) {}

BOOL CPagesDialog::OnInitDialog() {
  CDialog::OnInitDialog();
  ::SendMessage(GetDlgItem(IDC_PAGES_ALL)->m_hWnd, BM_SETCHECK, 1);
  SetDlgItemText(IDC_PAGES_HINT, TextWith(IDS_PAGES_HINT, m_pages));
  FillPrinters();
  return TRUE;
}

void CPagesDialog::FillPrinters() {
  CWnd* const list = GetDlgItem(IDC_PAGES_PRINTER);
  if (list == nullptr) return;
  for (const std::string& name : PrinterNames())
    list->SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(name.c_str()));
  list->SendMessage(CB_SETCURSEL, 0);
}

/// Who types pages wants these.
void CPagesDialog::OnPagesTyped() {
  for (const int button : {IDC_PAGES_ALL, IDC_PAGES_CURRENT, IDC_PAGES_SOME})
    ::SendMessage(GetDlgItem(button)->m_hWnd, BM_SETCHECK, button == IDC_PAGES_SOME ? 1 : 0);
}

bool CPagesDialog::TakeRanges() {
  const auto isChecked = [this](int button) {
    return ::SendMessage(GetDlgItem(button)->m_hWnd, BM_GETCHECK) != 0;
  };
  if (isChecked(IDC_PAGES_ALL)) {
    m_ranges = {{1, m_pages}};
    return true;
  }
  if (isChecked(IDC_PAGES_CURRENT)) {
    m_ranges = {{m_current, m_current}};
    return true;
  }
  CString text;
  GetDlgItemText(IDC_PAGES_EDIT, text);
  const auto ranges = ReadPageRanges(static_cast<const char*>(text));
  const auto beyond = [this](const PageRange& range) { return std::max(range.first, range.last) > m_pages; };
  if (!ranges || std::ranges::any_of(*ranges, beyond)) return false;
  m_ranges = RangesWithin(*ranges, m_pages);
  return true;
}

void CPagesDialog::OnOK() {
  if (!TakeRanges()) {
    MessageBox(TextWith(IDS_BAD_PAGES, m_pages), AfxGetAppName(), MB_OK | MB_ICONEXCLAMATION);
    if (m_hWnd != nullptr) GetDlgItem(IDC_PAGES_EDIT)->SetFocus();
    return;
  }
  CString printer;
  GetDlgItemText(IDC_PAGES_PRINTER, printer);
  m_printer = printer;
  CDialog::OnOK();
}

std::vector<std::string> PrinterNames() {
  constexpr DWORD kLevel = 2;
  constexpr DWORD kAll = PRINTER_ENUM_LOCAL | PRINTER_ENUM_CONNECTIONS;
  std::vector<std::string> names;
  DWORD needed = 0;
  DWORD count = 0;
  EnumPrintersA(kAll, nullptr, kLevel, nullptr, 0, &needed, &count);
  // Records with pointers, aligned as such.
  std::vector<PRINTER_INFO_2> records(needed / sizeof(PRINTER_INFO_2) + 1);
  if (needed == 0 || EnumPrintersA(kAll, nullptr, kLevel, reinterpret_cast<BYTE*>(records.data()), needed,
                                   &needed, &count) == FALSE)
    return names;
  for (DWORD i = 0; i < count; ++i) names.emplace_back(records[i].pPrinterName);
  std::array<char, 1024> name{};
  DWORD size = name.size();
  if (GetDefaultPrinterA(name.data(), &size) == FALSE) return names;
  std::stable_partition(names.begin(), names.end(),
                        [&](const std::string& printer) { return printer == name.data(); });
  return names;
}
