#include "ofl_sheet.h"

#include <FL/Fl.H>
#include <FL/fl_draw.H>

#include <algorithm>
#include <cmath>

namespace {

// Liang-Barsky clipping of the segment to [x0, x1] x [y0, y1]; false when
// nothing of it is left. Non-finite coordinates leave nothing.
bool clip_segment(double& ax, double& ay, double& bx, double& by, double x0, double y0, double x1,
                  double y1)
{
    if (!std::isfinite(ax) || !std::isfinite(ay) || !std::isfinite(bx) || !std::isfinite(by))
        return false;
    const double dx = bx - ax;
    const double dy = by - ay;
    double t0 = 0.0;
    double t1 = 1.0;
    const double p[4] = {-dx, dx, -dy, dy};
    const double q[4] = {ax - x0, x1 - ax, ay - y0, y1 - ay};
    for (int i = 0; i < 4; ++i) {
        if (p[i] == 0.0) {
            if (q[i] < 0.0)
                return false;
            continue;
        }
        const double t = q[i] / p[i];
        if (p[i] < 0.0)
            t0 = std::max(t0, t);
        else
            t1 = std::min(t1, t);
        if (t0 > t1)
            return false;
    }
    const double sx = ax;
    const double sy = ay;
    ax = sx + t0 * dx;
    ay = sy + t0 * dy;
    bx = sx + t1 * dx;
    by = sy + t1 * dy;
    return true;
}

int pixel(double v) { return static_cast<int>(std::lround(v)); }

}  // namespace

void OFL_vision_sheet::define(int x, int y, int w, int h, int color)
{
    resize(x, y, w, h);
    back_color = color;
}

void OFL_vision_sheet::resize(int x, int y, int w, int h)
{
    xbeg = x;
    ybeg = y;
    xend = x + w;
    yend = y + h;
}

OFL_vision_sheet::clip_scope::clip_scope(OFL_vision_sheet& s) : sheet(s)
{
    sheet.push_clip();
    ++sheet.scopes;
}

OFL_vision_sheet::clip_scope::~clip_scope()
{
    --sheet.scopes;
    sheet.pop_clip();
}

void OFL_vision_sheet::push_clip() { fl_push_clip(xbeg, ybeg, xend - xbeg, yend - ybeg); }

void OFL_vision_sheet::pop_clip() { fl_pop_clip(); }

bool OFL_vision_sheet::outside(double x1, double y1, double x2, double y2) const
{
    return !(std::max(x1, x2) >= xbeg && std::min(x1, x2) <= xend && std::max(y1, y2) >= ybeg &&
             std::min(y1, y2) <= yend);
}

void OFL_vision_sheet::ofl_line(double x1, double y1, double x2, double y2, int color)
{
    // Clipped here as well as by the toolkit: the window system's coordinates
    // are 16-bit, and a far-off end would wrap around.
    if (!clip_segment(x1, y1, x2, y2, xbeg - 1, ybeg - 1, xend + 1, yend + 1))
        return;
    if (scopes == 0)
        push_clip();
    fl_color(static_cast<Fl_Color>(color));
    fl_line(pixel(x1), pixel(y1), pixel(x2), pixel(y2));
    if (scopes == 0)
        pop_clip();
}

void OFL_vision_sheet::ofl_rectf(int x, int y, int w, int h, int color)
{
    // Cut to the sheet (and a pixel around it) in wide integers first.
    const long long left = std::max<long long>(x, xbeg - 1);
    const long long top = std::max<long long>(y, ybeg - 1);
    const long long right = std::min<long long>(static_cast<long long>(x) + w, xend + 1);
    const long long bottom = std::min<long long>(static_cast<long long>(y) + h, yend + 1);
    if (right <= left || bottom <= top)
        return;
    if (scopes == 0)
        push_clip();
    fl_color(static_cast<Fl_Color>(color));
    fl_rectf(static_cast<int>(left), static_cast<int>(top), static_cast<int>(right - left),
             static_cast<int>(bottom - top));
    if (scopes == 0)
        pop_clip();
}

void OFL_vision_sheet::ofl_rectbound(int x, int y, int w, int h, int color)
{
    if (w <= 0 || h <= 0)
        return;
    ofl_rectf(x, y, w, h, color);
    const double l = x;
    const double t = y;
    const double r = static_cast<double>(x) + w - 1;
    const double b = static_cast<double>(y) + h - 1;
    ofl_line(l, t, r, t, FL_BLACK);
    ofl_line(r, t, r, b, FL_BLACK);
    ofl_line(r, b, l, b, FL_BLACK);
    ofl_line(l, b, l, t, FL_BLACK);
}

void OFL_vision_sheet::ofl_drw_String(double x, double y, const std::string& text, int color, int font,
                                      int size, ofl_align align)
{
    if (size <= 0 || text.empty() || !std::isfinite(x) || !std::isfinite(y))
        return;
    fl_font(static_cast<Fl_Font>(font), size);
    const double width = fl_width(text.c_str(), static_cast<int>(text.size()));
    double left = x;
    if (align == OFL_ALIGN_CENTER)
        left = x - width / 2.0;
    else if (align == OFL_ALIGN_RIGHT)
        left = x - width;
    if (outside(left, y - size, left + width, y + size))
        return;
    if (scopes == 0)
        push_clip();
    fl_color(static_cast<Fl_Color>(color));
    // the baseline sits so that the letters' body is centred on y
    fl_draw(text.c_str(), static_cast<int>(text.size()), pixel(left), pixel(y + (fl_height() / 2.0 - fl_descent())));
    if (scopes == 0)
        pop_clip();
}

void OFL_vision_sheet::ofl_drw_arrow_line(double x1, double y1, double x2, double y2, int color,
                                          double factor, int style)
{
    ofl_line(x1, y1, x2, y2, color);
    const double dx = x2 - x1;
    const double dy = y2 - y1;
    const double length = std::hypot(dx, dy);
    if (!(length > 0.0) || !std::isfinite(length) || outside(x2 - length, y2 - length, x2 + length, y2 + length))
        return;
    // The head: two sides at 30 degrees from the line, `factor` of its length.
    const double head = factor * length;
    const double ux = dx / length;
    const double uy = dy / length;
    const double c = std::cos(M_PI / 6.0);
    const double s = std::sin(M_PI / 6.0);
    const double ax = x2 - head * (ux * c - uy * s);
    const double ay = y2 - head * (uy * c + ux * s);
    const double bx = x2 - head * (ux * c + uy * s);
    const double by = y2 - head * (uy * c - ux * s);
    if (style == 1) {
        if (scopes == 0)
            push_clip();
        fl_color(static_cast<Fl_Color>(color));
        fl_polygon(pixel(x2), pixel(y2), pixel(ax), pixel(ay), pixel(bx), pixel(by));
        if (scopes == 0)
            pop_clip();
    } else {
        ofl_line(x2, y2, ax, ay, color);
        ofl_line(x2, y2, bx, by, color);
    }
}
