#pragma once

#include "platform/framework/ddx.h"
#include "platform/framework/message_box.h"
#include "platform/framework/standard_controls.h"
#include "platform/framework/wnd.h"
#include "platform/window/dialog_keys.h"
#include "platform/window/dialog_units.h"

/// A dialog made from a template of the resources. Modal by DoModal, or modeless by Create.
class PLATFORM_API CDialog : public CWnd {
  DECLARE_DYNAMIC(CDialog)
 public:
  CDialog() = default;
  explicit CDialog(UINT templateId, CWnd* parent = nullptr)
      : m_lpszTemplateName(MAKEINTRESOURCE(templateId)), m_pParentWnd(parent) {}
  explicit CDialog(LPCTSTR templateName, CWnd* parent = nullptr)
      : m_lpszTemplateName(templateName), m_pParentWnd(parent) {}
  CDialog(const CDialog&) = delete;
  CDialog& operator=(const CDialog&) = delete;
  ~CDialog() override;

  /// Shows the dialog and runs it to its end. The parent, without one the active or main window, is disabled
  /// meanwhile. The value given to EndDialog; -1 if the dialog couldn't be made or the program ends.
  virtual int DoModal();
  using CWnd::Create;
  /// A dialog beside the program's other windows. FALSE without a template of that name.
  BOOL Create(UINT templateId, CWnd* parent = nullptr) { return Create(MAKEINTRESOURCE(templateId), parent); }
  BOOL Create(LPCTSTR templateName, CWnd* parent = nullptr);
  void EndDialog(int result);

  void MapDialogRect(LPRECT rect) const { ::MapDialogRect(m_hWnd, rect); }
  /// The button that Enter presses.
  void SetDefID(UINT id);
  DWORD GetDefID() { return static_cast<DWORD>(SendMessage(DM_GETDEFID)); }

  BOOL PreTranslateMessage(MSG* message) override;
  /// Fills the controls. FALSE if it has set the focus itself.
  virtual BOOL OnInitDialog();
  BOOL OnCmdMsg(UINT id, int code, void* extra, void* handlerInfo) override;

 protected:
  virtual void OnOK();
  virtual void OnCancel();
  LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

  /// The window that a modal dialog disables: that of the parent, else the active or the main one.
  static HWND ModalOwner(const CWnd* parent);

  void OnClose();
  void OnSetFocus(CWnd* former);

  LPCTSTR m_lpszTemplateName = nullptr;
  CWnd* m_pParentWnd = nullptr;

  DECLARE_MESSAGE_MAP()

 private:
  BOOL MakeWindow(HWND parent);
  void FocusFirst();
  HFONT m_font = nullptr;
  UINT m_defaultId = 0;
  HWND m_lastFocus = nullptr;
};
