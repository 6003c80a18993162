#ifndef EDITOR_OFL_SHEET_H
#define EDITOR_OFL_SHEET_H

// The drawing sheet: the pixel bounds of a drawing area and primitives that
// draw only inside them, in the window made current by the caller.

#include <string>

// Label alignment of ofl_drw_String relative to its anchor.
enum ofl_align { OFL_ALIGN_LEFT, OFL_ALIGN_CENTER, OFL_ALIGN_RIGHT };

class OFL_vision_sheet {
public:
    void define(int x, int y, int w, int h, int color);
    void resize(int x, int y, int w, int h);

    int xbeg = 0;
    int ybeg = 0;
    int xend = 0;
    int yend = 0;
    int back_color = 0;

    // While a scope lives, the toolkit clips every drawing to the sheet, so
    // the primitives need not set the clip one by one. Scopes may nest.
    class clip_scope {
    public:
        explicit clip_scope(OFL_vision_sheet& sheet);
        ~clip_scope();
        clip_scope(const clip_scope&) = delete;
        clip_scope& operator=(const clip_scope&) = delete;

    private:
        OFL_vision_sheet& sheet;
    };

    // A line from (x1, y1) to (x2, y2).
    void ofl_line(double x1, double y1, double x2, double y2, int color);
    // A rectangle filled with `color` and bounded by a black line.
    void ofl_rectbound(int x, int y, int w, int h, int color);
    // A filled rectangle with no bound (used to erase).
    void ofl_rectf(int x, int y, int w, int h, int color);
    // Text in `font` at `size` (nothing at size 0), vertically centred on y;
    // x is where it starts, its centre or where it ends, by `align`.
    void ofl_drw_String(double x, double y, const std::string& text, int color, int font, int size,
                        ofl_align align);
    // A line from (x1, y1) to (x2, y2) with an arrow head at (x2, y2) whose
    // length is `factor` times the line's; style 1 fills the head, 0 draws
    // its two sides only.
    void ofl_drw_arrow_line(double x1, double y1, double x2, double y2, int color, double factor,
                            int style);

private:
    int scopes = 0;

    bool outside(double x1, double y1, double x2, double y2) const;
    void push_clip();
    void pop_clip();
};

#endif
