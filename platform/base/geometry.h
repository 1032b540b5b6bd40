#pragma once

#include <algorithm>

#include "platform/base/types.h"

// Points, sizes and rectangles. A rectangle holds its left and top edge, not its right and bottom one; it is
// empty when it is not at least one unit wide and high. Functions that take pointers return FALSE on a null
// one.

using LPPOINT = POINT*;
using LPSIZE = SIZE*;
using LPRECT = RECT*;
using LPCRECT = const RECT*;

inline BOOL SetRect(LPRECT rect, int left, int top, int right, int bottom) {
  if (rect == nullptr) return FALSE;
  *rect = RECT{left, top, right, bottom};
  return TRUE;
}
inline BOOL SetRectEmpty(LPRECT rect) {
  return SetRect(rect, 0, 0, 0, 0);
}
inline BOOL CopyRect(LPRECT to, LPCRECT from) {
  if (to == nullptr || from == nullptr) return FALSE;
  *to = *from;
  return TRUE;
}
inline BOOL IsRectEmpty(LPCRECT rect) {
  return rect == nullptr || rect->right <= rect->left || rect->bottom <= rect->top;
}
inline BOOL EqualRect(LPCRECT a, LPCRECT b) {
  return a != nullptr && b != nullptr && a->left == b->left && a->top == b->top && a->right == b->right &&
         a->bottom == b->bottom;
}
inline BOOL PtInRect(LPCRECT rect, POINT point) {
  return rect != nullptr && point.x >= rect->left && point.x < rect->right && point.y >= rect->top &&
         point.y < rect->bottom;
}
inline BOOL OffsetRect(LPRECT rect, int dx, int dy) {
  if (rect == nullptr) return FALSE;
  return SetRect(rect, rect->left + dx, rect->top + dy, rect->right + dx, rect->bottom + dy);
}
/// Moves each edge outward; negative amounts move it inward.
inline BOOL InflateRect(LPRECT rect, int dx, int dy) {
  if (rect == nullptr) return FALSE;
  return SetRect(rect, rect->left - dx, rect->top - dy, rect->right + dx, rect->bottom + dy);
}
/// The part that both share. FALSE, and an empty rectangle, if there is none.
inline BOOL IntersectRect(LPRECT result, LPCRECT a, LPCRECT b) {
  if (result == nullptr || a == nullptr || b == nullptr) return FALSE;
  const RECT both = {std::max(a->left, b->left), std::max(a->top, b->top), std::min(a->right, b->right),
                     std::min(a->bottom, b->bottom)};
  if (IsRectEmpty(a) || IsRectEmpty(b) || IsRectEmpty(&both)) {
    SetRectEmpty(result);
    return FALSE;
  }
  *result = both;
  return TRUE;
}
/// The smallest rectangle around both; an empty one counts for nothing. FALSE if both are empty.
inline BOOL UnionRect(LPRECT result, LPCRECT a, LPCRECT b) {
  if (result == nullptr || a == nullptr || b == nullptr) return FALSE;
  if (IsRectEmpty(a) && IsRectEmpty(b)) {
    SetRectEmpty(result);
    return FALSE;
  }
  const RECT first = IsRectEmpty(a) ? *b : *a;
  const RECT second = IsRectEmpty(b) ? *a : *b;
  return SetRect(result, std::min(first.left, second.left), std::min(first.top, second.top),
                 std::max(first.right, second.right), std::max(first.bottom, second.bottom));
}
/// What b leaves of a, where that is a rectangle; otherwise the whole of a. FALSE if nothing is left.
inline BOOL SubtractRect(LPRECT result, LPCRECT a, LPCRECT b) {
  if (result == nullptr || a == nullptr || b == nullptr) return FALSE;
  RECT rest = *a;
  RECT cut = {};
  if (IntersectRect(&cut, a, b)) {
    if (cut.top == rest.top && cut.bottom == rest.bottom) {
      if (cut.left == rest.left)
        rest.left = cut.right;
      else if (cut.right == rest.right)
        rest.right = cut.left;
    } else if (cut.left == rest.left && cut.right == rest.right) {
      if (cut.top == rest.top)
        rest.top = cut.bottom;
      else if (cut.bottom == rest.bottom)
        rest.bottom = cut.top;
    }
  }
  if (IsRectEmpty(&rest)) rest = RECT{};
  *result = rest;
  return !IsRectEmpty(&rest);
}

// Comparisons are free functions of the plain records, so that they are the same from either side.
inline bool operator==(const POINT& a, const POINT& b) {
  return a.x == b.x && a.y == b.y;
}
inline bool operator==(const SIZE& a, const SIZE& b) {
  return a.cx == b.cx && a.cy == b.cy;
}
inline bool operator==(const RECT& a, const RECT& b) {
  return EqualRect(&a, &b);
}

class CSize : public tagSIZE {
 public:
  constexpr CSize() : tagSIZE{0, 0} {}
  constexpr CSize(int width, int height) : tagSIZE{width, height} {}
  constexpr CSize(SIZE size) : tagSIZE(size) {}                // NOLINT: the same value
  constexpr CSize(POINT point) : tagSIZE{point.x, point.y} {}  // NOLINT: the same value

  void SetSize(int width, int height) { *this = CSize(width, height); }
  CSize& operator+=(SIZE size) {
    cx += size.cx;
    cy += size.cy;
    return *this;
  }
  CSize& operator-=(SIZE size) {
    cx -= size.cx;
    cy -= size.cy;
    return *this;
  }
  CSize operator+(SIZE size) const { return {cx + size.cx, cy + size.cy}; }
  CSize operator-(SIZE size) const { return {cx - size.cx, cy - size.cy}; }
  CSize operator-() const { return {-cx, -cy}; }
};

class CPoint : public tagPOINT {
 public:
  constexpr CPoint() : tagPOINT{0, 0} {}
  constexpr CPoint(int atX, int atY) : tagPOINT{atX, atY} {}
  constexpr CPoint(POINT point) : tagPOINT(point) {}           // NOLINT: the same value
  constexpr CPoint(SIZE size) : tagPOINT{size.cx, size.cy} {}  // NOLINT: the same value
  /// The point that a mouse message carries: x in the low word, y in the high one, both signed.
  constexpr explicit CPoint(LPARAM packed) : tagPOINT{GET_X_LPARAM(packed), GET_Y_LPARAM(packed)} {}

  void SetPoint(int toX, int toY) { *this = CPoint(toX, toY); }
  void Offset(int dx, int dy) {
    x += dx;
    y += dy;
  }
  void Offset(POINT by) { Offset(by.x, by.y); }
  void Offset(SIZE by) { Offset(by.cx, by.cy); }
  CPoint& operator+=(SIZE by) {
    Offset(by);
    return *this;
  }
  CPoint& operator-=(SIZE by) {
    Offset(-by.cx, -by.cy);
    return *this;
  }
  CPoint& operator+=(POINT by) {
    Offset(by);
    return *this;
  }
  CPoint& operator-=(POINT by) {
    Offset(-by.x, -by.y);
    return *this;
  }
  CPoint operator+(SIZE by) const { return {x + by.cx, y + by.cy}; }
  CPoint operator-(SIZE by) const { return {x - by.cx, y - by.cy}; }
  CPoint operator+(POINT by) const { return {x + by.x, y + by.y}; }
  CSize operator-(POINT other) const { return {x - other.x, y - other.y}; }
  CPoint operator-() const { return {-x, -y}; }
};

class CRect : public tagRECT {
 public:
  constexpr CRect() : tagRECT{0, 0, 0, 0} {}
  constexpr CRect(int l, int t, int r, int b) : tagRECT{l, t, r, b} {}
  constexpr CRect(const RECT& rect) : tagRECT(rect) {}  // NOLINT: the same value
  constexpr CRect(LPCRECT rect) : tagRECT(rect == nullptr ? RECT{0, 0, 0, 0} : *rect) {}  // NOLINT: likewise
  // The analyzer loses the values of points and sizes that are made in the call.
  // NOLINTNEXTLINE(clang-analyzer-core.UndefinedBinaryOperatorResult)
  constexpr CRect(POINT at, SIZE size) : tagRECT{at.x, at.y, at.x + size.cx, at.y + size.cy} {}
  constexpr CRect(POINT topLeft, POINT bottomRight)
      : tagRECT{topLeft.x, topLeft.y, bottomRight.x, bottomRight.y} {}

  operator LPRECT() { return this; }         // NOLINT: passed wherever a rectangle's address is wanted
  operator LPCRECT() const { return this; }  // NOLINT: likewise

  constexpr int Width() const { return right - left; }
  constexpr int Height() const { return bottom - top; }
  constexpr CSize Size() const { return {Width(), Height()}; }
  CPoint& TopLeft() { return *reinterpret_cast<CPoint*>(&left); }
  CPoint& BottomRight() { return *reinterpret_cast<CPoint*>(&right); }
  constexpr CPoint TopLeft() const { return {left, top}; }
  constexpr CPoint BottomRight() const { return {right, bottom}; }
  constexpr CPoint CenterPoint() const { return {(left + right) / 2, (top + bottom) / 2}; }

  BOOL IsRectEmpty() const { return ::IsRectEmpty(this); }
  /// TRUE if all four edges are 0.
  BOOL IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
  BOOL PtInRect(POINT point) const { return ::PtInRect(this, point); }
  BOOL EqualRect(LPCRECT other) const { return ::EqualRect(this, other); }

  void SetRect(int l, int t, int r, int b) { ::SetRect(this, l, t, r, b); }
  void SetRect(POINT topLeft, POINT bottomRight) { *this = CRect(topLeft, bottomRight); }
  void SetRectEmpty() { ::SetRectEmpty(this); }
  void CopyRect(LPCRECT from) { ::CopyRect(this, from); }
  /// Exchanges opposite edges that stand the wrong way round.
  void NormalizeRect() {
    if (left > right) std::swap(left, right);  // NOLINT: the analyzer loses the values, as above
    if (top > bottom) std::swap(top, bottom);
  }

  void OffsetRect(int dx, int dy) { ::OffsetRect(this, dx, dy); }
  void OffsetRect(POINT by) { ::OffsetRect(this, by.x, by.y); }
  void OffsetRect(SIZE by) { ::OffsetRect(this, by.cx, by.cy); }
  void MoveToX(int x) { OffsetRect(x - left, 0); }
  void MoveToY(int y) { OffsetRect(0, y - top); }
  void MoveToXY(int x, int y) { OffsetRect(x - left, y - top); }
  void MoveToXY(POINT to) { MoveToXY(to.x, to.y); }
  void InflateRect(int dx, int dy) { ::InflateRect(this, dx, dy); }
  void InflateRect(SIZE by) { InflateRect(by.cx, by.cy); }
  void InflateRect(LPCRECT by) { InflateRect(by->left, by->top, by->right, by->bottom); }
  void InflateRect(int l, int t, int r, int b) { SetRect(left - l, top - t, right + r, bottom + b); }
  void DeflateRect(int dx, int dy) { InflateRect(-dx, -dy); }
  void DeflateRect(SIZE by) { InflateRect(-by.cx, -by.cy); }
  void DeflateRect(LPCRECT by) { DeflateRect(by->left, by->top, by->right, by->bottom); }
  void DeflateRect(int l, int t, int r, int b) { InflateRect(-l, -t, -r, -b); }

  BOOL IntersectRect(LPCRECT a, LPCRECT b) { return ::IntersectRect(this, a, b); }
  BOOL UnionRect(LPCRECT a, LPCRECT b) { return ::UnionRect(this, a, b); }
  BOOL SubtractRect(LPCRECT a, LPCRECT b) { return ::SubtractRect(this, a, b); }

  CRect& operator+=(POINT by) {
    OffsetRect(by);
    return *this;
  }
  CRect& operator+=(SIZE by) {
    OffsetRect(by);
    return *this;
  }
  CRect& operator+=(LPCRECT by) {
    InflateRect(by);
    return *this;
  }
  CRect& operator-=(POINT by) {
    OffsetRect(-by.x, -by.y);
    return *this;
  }
  CRect& operator-=(SIZE by) {
    OffsetRect(-by.cx, -by.cy);
    return *this;
  }
  CRect& operator-=(LPCRECT by) {
    DeflateRect(by);
    return *this;
  }
  CRect& operator&=(const RECT& other) {
    IntersectRect(this, &other);
    return *this;
  }
  CRect& operator|=(const RECT& other) {
    UnionRect(this, &other);
    return *this;
  }
  CRect operator+(POINT by) const { return CRect(*this) += by; }
  CRect operator+(SIZE by) const { return CRect(*this) += by; }
  CRect operator-(POINT by) const { return CRect(*this) -= by; }
  CRect operator-(SIZE by) const { return CRect(*this) -= by; }
  CRect operator&(const RECT& other) const { return CRect(*this) &= other; }
  CRect operator|(const RECT& other) const { return CRect(*this) |= other; }
};

inline CPoint operator+(SIZE by, CPoint point) {
  return point + by;
}
