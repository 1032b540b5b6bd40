#pragma once

#include <cstddef>
#include <deque>
#include <memory>

#include "imaging/core/records.h"
#include "imaging/imagelist/layout.h"
#include "imaging/pages/bitmap_list.h"
#include "platform/base/string.h"
#include "platform/graphics/gdi.h"
#include "platform/window/accessible.h"
#include "platform/window/window.h"

namespace imaging {

/// A window of class LEADIMGLIST32: pictures with captions in cells, scrolled by the window's own bar. The
/// item that the user picks by mouse or key is told to the parent by WM_COMMAND. The parent may do anything
/// meanwhile, also clear the list or destroy the window.
class ImageListControl {
 public:
  using Item = leadtools12::_LILITEM;
  using SelectionOptions = leadtools12::_LILSELOPTION;
  using ItemOptions = leadtools12::_LILITEMOPTION;

  explicit ImageListControl(HWND window) : m_window(window) {}

  /// Registers the window class; again, it does nothing.
  static void RegisterWindowClass();
  /// The control behind a window. Throws if that is none or gone.
  static ImageListControl& Find(HWND window);

  // Items (control.cpp). Bad records and indices throw and change nothing.

  /// Appends. The control takes copies: the picture, turned upright, and the caption.
  void Insert(const Item& item);
  /// Appends an item for each bitmap of a list; only to a control without items. Their pictures stay the
  /// list's, until they are asked for or changed.
  void InsertList(void* list, CString (*caption)(int number));
  /// Picture and caption stay the control's and last until they are changed or the list is cleared.
  void Get(unsigned index, Item& item);
  void Set(unsigned index, const Item& item);
  void Clear();
  int Count() const { return static_cast<int>(m_items.size()); }
  const ImageListLayout& Layout() const { return m_layout; }
  int Scroll() const { return m_scroll; }
  const SelectionOptions& GetSelectionOptions() const { return m_selectionOptions; }
  void SetSelectionOptions(const SelectionOptions& options) { m_selectionOptions = options; }
  ItemOptions GetItemOptions() const;
  void SetItemOptions(const ItemOptions& options);
  /// Scrolls as little as is needed. An index that isn't there is left alone.
  void EnsureVisible(int index);

 private:
  struct Entry {
    Bitmap picture{};  ///< header of pixels
    ListedPixels pixels;
    CString caption;
    bool isSelected = false;
  };

  // control.cpp
  Entry& At(unsigned index);
  void SetPicture(Entry& entry, Bitmap* picture);
  /// What is shown: the entry's own picture, else the list's; without pixels if there is none.
  Bitmap PictureOf(int index);
  const CString& CaptionOf(int index);
  class AccessibleCells;  ///< the items for assistive programs (window.cpp)
  void Select(int index, bool select);
  void InvalidateCell(int index);

  // window.cpp
  static LRESULT Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
  void Relayout();
  void UpdateScrollBar();
  void ScrollTo(int scroll);
  void OnScroll(int code);
  void OnWheel(int delta);
  bool OnKey(int key);
  void OnPress(POINT point);
  /// What a click and a key do: mark, show, tell the parent. The control may be gone afterwards.
  void Pick(int index);

  // paint.cpp
  void Paint();
  void PaintCell(HDC dc, int index);
  void PaintPicture(HDC dc, int index, const RECT& box);

  HWND m_window;           ///< null once it is destroyed
  void* m_list = nullptr;  ///< where entries without a picture of their own have theirs from; null nowhere
  CString (*m_caption)(int number) = nullptr;
  std::deque<Entry> m_items;  ///< records keep their place while others are appended
  SelectionOptions m_selectionOptions{sizeof(SelectionOptions), 0, 0, 0};
  SIZE m_itemSize{kDefaultWidth, kDefaultHeight};
  COLORREF m_background = GetSysColor(COLOR_WINDOW);
  ImageListLayout m_layout;
  int m_scroll = 0;
  int m_wheel = 0;   ///< turned, but not enough for a step
  int m_focus = -1;  ///< where the keys start from; -1 nowhere

  // Room around a picture: 3 at the left, 4 at the right; gaps and a line of text above and below.
  static constexpr int kBesidePicture = 7;
  static constexpr int kAboveAndBelow = 35;
  static constexpr LONG kDefaultWidth = 107 + kBesidePicture;
  static constexpr LONG kDefaultHeight = 79 + kAboveAndBelow;
};

}  // namespace imaging
