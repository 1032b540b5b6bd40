#include <array>

#include "platform/framework/dialog.h"
#include "platform/print_dialogs/detail/print_choice.h"
#include "platform/resources/extension.h"
#include "platform/resources/resource_tables.h"
#include "platform/spooler/detail/sheet.h"

// The paper and the way it lies: all that our own printing can ask of a queue.

namespace platform {
namespace {

enum : int { kPapers = 1136, kUpright = 1058, kLying = 1059 };

using Kind = DialogItem::Kind;
constexpr const char* kName = "PRINT_PROPERTIES";

constexpr std::array kItems = {
    DialogItem{Kind::Static, "&Formato carta:", -1, 8, 10, 52, 8},
    DialogItem{Kind::ComboBox, "", kPapers, 64, 8, 128, 120,
               WS_GROUP | WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWNLIST},
    DialogItem{Kind::GroupBox, "Orientamento", -1, 8, 26, 184, 42, WS_GROUP},
    DialogItem{Kind::RadioButton, "&Verticale", kUpright, 16, 38, 80, 10, WS_GROUP | WS_TABSTOP},
    DialogItem{Kind::RadioButton, "&Orizzontale", kLying, 16, 52, 80, 10, WS_TABSTOP},
    DialogItem{Kind::DefaultPushButton, "OK", IDOK, 88, 76, 50, 14, WS_GROUP | WS_TABSTOP},
    DialogItem{Kind::PushButton, "Annulla", IDCANCEL, 142, 76, 50, 14, WS_TABSTOP},
};
constexpr std::array kDialogs = {DialogResource{0, kName, "Proprietà della stampante", 200, 98,
                                                WS_POPUP | WS_CAPTION | WS_SYSMENU | DS_MODALFRAME, kItems}};

/// Templates are found with the linked libraries; this layer's own stand under a module of its own.
void LinkTemplate() {
  static AFX_EXTENSION_MODULE module{};
  if (module.bInitialized != 0) return;
  AfxInitExtensionModule(module, reinterpret_cast<HMODULE>(&module));
  new CDynLinkLibrary(module);  // NOLINT: the framework owns it
  ResourceTables tables{};
  tables.dialogs = kDialogs;
  RegisterResources(module.hModule, tables);
}

class PropertiesWindow : public CDialog {
 public:
  PropertiesWindow(PrintChoice& choice, CWnd* parent) : CDialog(kName, parent), m_choice(choice) {}

 protected:
  BOOL OnInitDialog() override {
    CDialog::OnInitDialog();
    const PrintQueue queue = ChosenQueue(m_choice);
    const Sheet sheet = SheetOf(queue, &m_choice.mode);
    std::vector<Paper> papers = queue.papers;
    // A file can have any paper.
    if (m_choice.queues.empty())
      for (const auto& [width, length] :
           {std::pair{29700, 42000}, {14800, 21000}, {21590, 27940}, {21590, 35560}})
        papers.push_back(
            {"", width, length, papers[0].left, papers[0].top, papers[0].right, papers[0].bottom});
    for (const Paper& paper : papers) Offer(paper, PaperText(paper) == PaperText(sheet.paper));
    Send(sheet.landscape ? kLying : kUpright, BM_SETCHECK, BST_CHECKED);
    return TRUE;
  }

  void OnOK() override {
    const LRESULT index = Send(kPapers, CB_GETCURSEL);
    if (index >= 0) SetPaper(m_choice.mode, m_papers[static_cast<std::size_t>(index)]);
    m_choice.request.landscape = Send(kLying, BM_GETCHECK) == BST_CHECKED;
    m_choice.mode.dmOrientation = m_choice.request.landscape ? DMORIENT_LANDSCAPE : DMORIENT_PORTRAIT;
    EndDialog(IDOK);
  }

 private:
  LRESULT Send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
    return ::SendMessage(::GetDlgItem(m_hWnd, id), message, wParam, lParam);
  }

  /// Queues list a paper once for each way of feeding it; here it stands once.
  void Offer(const Paper& paper, bool select) {
    const std::string text = PaperText(paper);
    for (const Paper& known : m_papers)
      if (PaperText(known) == text) return;
    m_papers.push_back(paper);
    const LRESULT index = Send(kPapers, CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
    if (select) Send(kPapers, CB_SETCURSEL, static_cast<WPARAM>(index));
  }

  PrintChoice& m_choice;
  std::vector<Paper> m_papers;  // in the order of the list
};

}  // namespace

bool AskPrintProperties(HWND owner, PrintChoice& choice) {
  LinkTemplate();
  return PropertiesWindow(choice, CWnd::FromHandle(owner)).DoModal() == IDOK;
}

}  // namespace platform
