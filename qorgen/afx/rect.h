#pragma once

// CRect: a rectangle of whole-numbered coordinates. Right and bottom lie just outside. A plain value.
//
// Sums and differences that leave the range of a LONG wrap around.

#include "qorgen/platform/types.h"

class CRect : public RECT {
 public:
  constexpr CRect() noexcept : RECT{0, 0, 0, 0} {}
  constexpr CRect(int l, int t, int r, int b) noexcept : RECT{l, t, r, b} {}
  constexpr CRect(const RECT& rect) noexcept : RECT(rect) {}
  // Null gives the null rectangle.
  constexpr explicit CRect(const RECT* rect) noexcept : RECT(rect != nullptr ? *rect : RECT{0, 0, 0, 0}) {}

  constexpr int Width() const noexcept { return Minus(right, left); }
  constexpr int Height() const noexcept { return Minus(bottom, top); }
  // Whether the rectangle covers nothing: a width or height of 0 or less.
  constexpr bool IsRectEmpty() const noexcept { return left >= right || top >= bottom; }
  // Whether all four coordinates are 0.
  constexpr bool IsRectNull() const noexcept { return left == 0 && top == 0 && right == 0 && bottom == 0; }

  operator RECT*() noexcept { return this; }
  operator const RECT*() const noexcept { return this; }

  constexpr void SetRect(int l, int t, int r, int b) noexcept { *this = CRect(l, t, r, b); }
  constexpr void SetRectEmpty() noexcept { *this = CRect(); }
  constexpr void CopyRect(const RECT* rect) noexcept { *this = CRect(rect); }
  constexpr bool EqualRect(const RECT* rect) const noexcept {
    return rect != nullptr && *this == CRect(rect);
  }

  // Exchanges the sides so that width and height are not negative.
  constexpr void NormalizeRect() noexcept {
    *this = CRect(left < right ? left : right, top < bottom ? top : bottom, left < right ? right : left,
                  top < bottom ? bottom : top);
  }
  constexpr void OffsetRect(int x, int y) noexcept {
    *this = CRect(Plus(left, x), Plus(top, y), Plus(right, x), Plus(bottom, y));
  }
  constexpr void MoveToXY(int x, int y) noexcept { *this = CRect(x, y, Plus(x, Width()), Plus(y, Height())); }
  // Moves each side outwards (inflate) or inwards (deflate).
  constexpr void InflateRect(int x, int y) noexcept { InflateRect(x, y, x, y); }
  constexpr void InflateRect(int l, int t, int r, int b) noexcept {
    *this = CRect(Minus(left, l), Minus(top, t), Plus(right, r), Plus(bottom, b));
  }
  constexpr void DeflateRect(int x, int y) noexcept { DeflateRect(x, y, x, y); }
  constexpr void DeflateRect(int l, int t, int r, int b) noexcept {
    *this = CRect(Plus(left, l), Plus(top, t), Minus(right, r), Minus(bottom, b));
  }

  // Becomes what both rectangles cover: true, or false and the null rectangle when that is nothing.
  constexpr bool IntersectRect(const RECT* first, const RECT* second) noexcept {
    const CRect a(first);
    const CRect b(second);
    const CRect both(a.left > b.left ? a.left : b.left, a.top > b.top ? a.top : b.top,
                     a.right < b.right ? a.right : b.right, a.bottom < b.bottom ? a.bottom : b.bottom);
    const bool covers = !a.IsRectEmpty() && !b.IsRectEmpty() && !both.IsRectEmpty();
    *this = covers ? both : CRect();
    return covers;
  }
  // Becomes the smallest rectangle around both; an empty one isn't counted. False and null when both are
  // empty.
  constexpr bool UnionRect(const RECT* first, const RECT* second) noexcept {
    const CRect a(first);
    const CRect b(second);
    if (a.IsRectEmpty() || b.IsRectEmpty()) {
      *this = !a.IsRectEmpty() ? a : !b.IsRectEmpty() ? b : CRect();
    } else {
      *this = CRect(a.left < b.left ? a.left : b.left, a.top < b.top ? a.top : b.top,
                    a.right > b.right ? a.right : b.right, a.bottom > b.bottom ? a.bottom : b.bottom);
    }
    return !IsRectEmpty();
  }

  friend constexpr bool operator==(const CRect& a, const CRect& b) noexcept {
    return a.left == b.left && a.top == b.top && a.right == b.right && a.bottom == b.bottom;
  }
  CRect& operator&=(const RECT& other) noexcept {
    const CRect mine(*this);
    IntersectRect(mine, &other);
    return *this;
  }
  CRect& operator|=(const RECT& other) noexcept {
    const CRect mine(*this);
    UnionRect(mine, &other);
    return *this;
  }
  friend CRect operator&(CRect left, const RECT& right) noexcept { return left &= right; }
  friend CRect operator|(CRect left, const RECT& right) noexcept { return left |= right; }

 private:
  static constexpr int Plus(LONG a, LONG b) noexcept {
    return static_cast<int>(static_cast<ULONG>(a) + static_cast<ULONG>(b));
  }
  static constexpr int Minus(LONG a, LONG b) noexcept {
    return static_cast<int>(static_cast<ULONG>(a) - static_cast<ULONG>(b));
  }
};

static_assert(sizeof(CRect) == sizeof(RECT));
