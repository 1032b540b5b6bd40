#pragma once

#include "library/export.h"
#include "platform/framework/wnd.h"

struct CCreateContext;

namespace leadtools12 {
struct struct_LEAD_Bitmap;
}

/// A strip of page pictures, each with its caption, made of a file or of a file image in memory. A pick of
/// the user is told by the control to its parent: WM_COMMAND with the strip's id and code 1024, and in lParam
/// a record whose third 32-bit word is the page, from 0. Failures are shown in a message box and leave the
/// strip as far as it was filled.
///
/// A long file is there at once: its pictures are made as they come into view, and m_pBitmapList gives each
/// when it is asked for it. In such a strip a page that can't be decoded is a crossed box.
class TESSAREL_API CThumbsWindow : public CWnd {
  DECLARE_DYNCREATE(CThumbsWindow)
 public:
  CThumbsWindow() = default;
  CThumbsWindow(const CThumbsWindow&) = delete;
  CThumbsWindow& operator=(const CThumbsWindow&) = delete;
  ~CThumbsWindow() override;

  /// The class name isn't looked at: the strip is always the imaging service's list control.
  BOOL Create(LPCTSTR className, LPCTSTR title, DWORD style, const RECT& rect, CWnd* parent, UINT id,
              void* context = nullptr) override;
  /// Shows the pages of a file in the place of what was shown; the first one is selected.
  void CreateThumbsFile(const char* path);
  /// The same for a block, which is read during the call only.
  void CreateThumbsMemory(char* block, int size);
  /// Moves the selection to a page, counted from 1, and brings it into view. Nothing while the strip is
  /// empty.
  void SetSel(int page);

  void* m_pBitmapList = nullptr;  ///< the imaging service's list of pictures, in page order; owned

 protected:
  /// Shrinks every bitmap of the list, in place. False: the user has stopped it, or the window is gone.
  bool CreateThumbnails();

 private:
  void Clear();
  /// One item for each bitmap, the first one selected. caption gives the text for a page.
  void InsertItems(CString (*caption)(int page));
  /// The same, but pictures are made when they come into view.
  void InsertItemsUnmade();
  unsigned Count() const;
  void AddShrunk(leadtools12::struct_LEAD_Bitmap* page);
  void Shrink(unsigned index);
  void ReadPages(char* block, int size);
  void ShowFailure(class CLeadtoolsException* exception);

  bool m_bMaking = false;  ///< a host's handler that runs meanwhile must not begin anew
};
