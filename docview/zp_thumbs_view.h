#pragma once

#include "library/export.h"
#include "platform/framework/view.h"
#include "thumbs/thumb_size.h"

class CZPDoc;

/// The strip of a CZPDoc: a picture of each page with its caption, made of the bitmaps that the document
/// holds. It follows the document's hints and needs no call of its frame. A page without a bitmap gets a
/// crossed box. A pick of the user is told as by CThumbsWindow; whether the document then changes its page is
/// the frame's affair. Failures are reported and leave the strip as far as it was filled.
class TESSAREL_API CZPThumbsView : public CView {
  DECLARE_DYNCREATE(CZPThumbsView)
 public:
  CZPThumbsView(const CZPThumbsView&) = delete;
  CZPThumbsView& operator=(const CZPThumbsView&) = delete;

  /// Scrolls an item, counted from 0, into view, unless it is there.
  void EnsureVisible(int nIndex);
  /// Nothing: the pictures are made when the document tells that it has been opened.
  void OnInitialUpdate() override {}

 protected:
  CZPThumbsView() = default;
  ~CZPThumbsView() override = default;

  BOOL PreCreateWindow(CREATESTRUCT& cs) override;
  /// Nothing: the control paints.
  void OnDraw(CDC* /*pDC*/) override {}
  void OnUpdate(CView* pSender, LPARAM lHint, CObject* pHint) override;
  /// Makes the picture of a page, from 0, or with -1 of the active one, anew. The old one stays if the page
  /// has no bitmap.
  virtual void UpdatePageModification(int nPage);
  /// Selects the active page and brings it into view.
  virtual void ChangeSelPage();
  /// Makes everything anew.
  virtual void CreateThumbsList();

  int OnCreate(LPCREATESTRUCT cs);
  void OnPaint();

  /// Size of an item's cell in logical units, looked at when the window is created and for each picture.
  int m_nThumbWidth = thumbs::kCellSide;
  int m_nThumbHeight = thumbs::kCellSide;

 private:
  CZPDoc* Document() const;
  SIZE PictureRoom() const { return thumbs::PictureRoom({m_nThumbWidth, m_nThumbHeight}); }
  int ActivePage() const;
  void InsertPage(CZPDoc& document, int nPage);

  unsigned m_nFillings = 0;  ///< tells one whether another one has begun meanwhile

  DECLARE_MESSAGE_MAP()
};
