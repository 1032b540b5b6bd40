#pragma once

#include <vector>

#include "platform/framework/frame_wnd.h"

/// What a pane is made for; the framework's document classes fill it.
struct CCreateContext;

/// Divides its client area into rows and columns of panes, with bars between them that the user drags. Pane
/// (row, column) is the child with the number IdFromRowCol. The panes are made by CreateView and end with the
/// splitter's window.
class PLATFORM_API CSplitterWnd : public CWnd {
  DECLARE_DYNAMIC(CSplitterWnd)
 public:
  /// Height of a row or width of a column.
  struct CRowColInfo {
    int nMinSize;    ///< below this the pane is closed
    int nIdealSize;  ///< as wanted
    int nCurSize;    ///< as laid out last; -1 before any layout
  };

  CSplitterWnd() = default;

  /// 1 to 16 rows and columns.
  BOOL CreateStatic(CWnd* parent, int rows, int columns, DWORD style = WS_CHILD | WS_VISIBLE,
                    UINT id = AFX_IDW_PANE_FIRST);
  /// Makes a pane of a class that can be created by name; size becomes the ideal one of its row and column. A
  /// view belongs to the context's document; without a context to that of the frame's active view.
  virtual BOOL CreateView(int row, int column, CRuntimeClass* viewClass, SIZE size, CCreateContext* context);
  virtual void DeleteView(int row, int column);

  /// Nothing for a column that isn't there.
  void SetColumnInfo(int column, int ideal, int least);
  int GetRowCount() const { return m_nRows; }
  int GetColumnCount() const { return m_nCols; }

  /// Null for a place without a pane.
  CWnd* GetPane(int row, int column) const;
  BOOL IsChildPane(CWnd* window, int* row = nullptr, int* column = nullptr) const;
  int IdFromRowCol(int row, int column) const {
    return static_cast<int>(AFX_IDW_PANE_FIRST) + row * kMaxPanes + column;
  }
  /// The pane that has the keyboard, itself or in a child; null if none has.
  virtual CWnd* GetActivePane(int* row = nullptr, int* column = nullptr);
  /// Gives the keyboard to a pane; pane counts if it isn't null.
  virtual void SetActivePane(int row, int column, CWnd* pane = nullptr);

  virtual void RecalcLayout();

  /// Places sizes in a row: each track gets its ideal size while there is room, the last one the rest. A
  /// track that would be smaller than its minimum is closed, and the one before it takes the room.
  static void LayoutTracks(CRowColInfo* tracks, int count, int room, int bar);

 protected:
  enum : int { kMaxPanes = 16 };

  BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

  void OnSize(UINT type, int cx, int cy);
  void OnSetFocus(CWnd* former);
  void OnPaint();
  BOOL OnEraseBkgnd(CDC*) { return TRUE; }
  BOOL OnSetCursor(CWnd* window, UINT hit, UINT message);
  void OnMouseMove(UINT flags, CPoint point);
  void OnLButtonDown(UINT flags, CPoint point);
  void OnLButtonUp(UINT flags, CPoint point);
  void OnCaptureChanged(CWnd* to);

  int m_nRows = 0;
  int m_nCols = 0;
  CRowColInfo* m_pRowInfo = nullptr;  ///< of all rows and columns made, those out of use included
  CRowColInfo* m_pColInfo = nullptr;
  int m_cxSplitter = 6;
  int m_cySplitter = 6;

 private:
  /// A bar: behind that column or row. None: both -1.
  struct Bar {
    int column = -1;
    int row = -1;
  };
  Bar BarAt(CPoint point) const;
  static void ShowBarCursor(Bar bar);
  void DragTo(CPoint point);

  std::vector<CRowColInfo> m_rows;
  std::vector<CRowColInfo> m_columns;
  Bar m_dragged;
  int m_dragOffset = 0;  ///< from the bar's first edge to where it was taken

  DECLARE_MESSAGE_MAP()
};
