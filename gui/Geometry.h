#pragma once

#include <algorithm>

namespace fenn::gui {

// Positions, sizes and rectangles of the toolkit, in device-independent
// pixels; a frame multiplies them by its scale factor only when it paints.

struct CPoint
{
    int x = 0;
    int y = 0;

    friend bool operator==(const CPoint&, const CPoint&) = default;
};

struct CSize
{
    int width = 0;
    int height = 0;

    friend bool operator==(const CSize&, const CSize&) = default;
};

// Width and height of an extent without an upper bound: the maximum size of
// an item that may grow as far as it is given.
inline constexpr int kUnboundedExtent = 1 << 20;

struct CRect
{
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    constexpr int right() const { return x + width; }
    constexpr int bottom() const { return y + height; }
    constexpr bool isEmpty() const { return width <= 0 || height <= 0; }
    constexpr CPoint origin() const { return {x, y}; }
    constexpr CSize size() const { return {width, height}; }
    constexpr bool contains(CPoint point) const
    {
        return point.x >= x && point.y >= y && point.x < right() && point.y < bottom();
    }
    constexpr CRect translated(int dx, int dy) const { return {x + dx, y + dy, width, height}; }
    // Smaller by the margins on each side; never of negative size.
    constexpr CRect inset(int left, int top, int right_, int bottom_) const
    {
        return {x + left, y + top, std::max(0, width - left - right_), std::max(0, height - top - bottom_)};
    }
    constexpr CRect intersected(const CRect& other) const
    {
        const int left = std::max(x, other.x);
        const int top = std::max(y, other.y);
        const int r = std::min(right(), other.right());
        const int b = std::min(bottom(), other.bottom());
        if (r <= left || b <= top) return {};
        return {left, top, r - left, b - top};
    }
    // The smallest rectangle holding both; an empty side is ignored.
    constexpr CRect united(const CRect& other) const
    {
        if (isEmpty()) return other;
        if (other.isEmpty()) return *this;
        const int left = std::min(x, other.x);
        const int top = std::min(y, other.y);
        return {left, top, std::max(right(), other.right()) - left, std::max(bottom(), other.bottom()) - top};
    }

    friend bool operator==(const CRect&, const CRect&) = default;
};

}  // namespace fenn::gui
