#pragma once

#include <string>
#include <vector>

#include "page_ranges.h"
#include "resource_ids.h"

/// Asks which pages are to be exported or, with a list of printers, printed.
class CPagesDialog : public CDialog {
 public:
  enum class Purpose { Export, Print };

  CPagesDialog(Purpose purpose, int current, int pages, CWnd* parent);
  ~CPagesDialog() override = default;

  const PageRanges& Ranges() const { return m_ranges; }
  const std::string& Printer() const { return m_printer; }

 protected:
  BOOL OnInitDialog() override;
  void OnOK() override;
  void OnPagesTyped();

 private:
  void FillPrinters();
  bool TakeRanges();

  int m_current;
  int m_pages;
  PageRanges m_ranges;
  std::string m_printer;

  DECLARE_MESSAGE_MAP()
};

/// The names of all printers; the default one comes first.
std::vector<std::string> PrinterNames();
