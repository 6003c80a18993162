#ifndef QUILP_SHEET_GEOMETRY_H
#define QUILP_SHEET_GEOMETRY_H

// The editor's sheet in pixels: where a project's boxes, ports and links
// fall for a given scale, scroll offsets and drawing-area origin, and which
// object lies under a pixel. Plain geometry over the project model, so the
// drawing and the mouse handling share it and it is tested without a display.

#include "bix_norm.h"

#include <vector>

// Pixels per model unit, scroll offsets and the drawing area's origin in its
// window. A model point (mx, my) shows at (wx - hslide + scale * mx,
// wy - vslide + scale * my).
struct sheet_view {
    int scale = 30;
    int hslide = 0;
    int vslide = 0;
    int wx = 0;
    int wy = 0;

    double pixel_x(double mx) const { return wx - hslide + static_cast<double>(scale) * mx; }
    double pixel_y(double my) const { return wy - vslide + static_cast<double>(scale) * my; }
    // Pixel to model, snapped to whole units (integer division, half a unit
    // added first so that the nearest unit is taken).
    int snapped_x(int px) const { return (px + scale / 2 - wx + hslide) / scale; }
    int snapped_y(int py) const { return (py + scale / 2 - wy + vslide) / scale; }
    // Pixel to model without snapping.
    double model_x(int px) const { return static_cast<double>(px + scale / 2 - wx + hslide) / scale; }
    double model_y(int py) const { return static_cast<double>(py + scale / 2 - wy + vslide) / scale; }
};

// A rectangle of whole pixels; a point is inside when left <= x < left + width
// and top <= y < top + height.
struct pixel_rect {
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;

    bool contains(int x, int y) const
    {
        return x >= left && y >= top && x < left + width && y < top + height;
    }
};

struct pixel_point {
    double x = 0.0;
    double y = 0.0;
};

// Kinds of object under the pointer.
enum {
    VISUNET_NO_OBJ = 0,
    VISUNET_IXCMODULE_OBJ = 1,         // a black box: num = box index
    VISUNET_IXCMODULE_INPUT_OBJ = 2,   // an input port: num = box, num2 = input
    VISUNET_IXCMODULE_OUTPUT_OBJ = 3,  // an output port: num = box, num2 = output
    VISUNET_TRANSITION_OBJ = 4         // a link: num = link index
};

struct sheet_object {
    int type = VISUNET_NO_OBJ;
    int num = 0;
    int num2 = 0;

    bool operator==(const sheet_object& o) const
    {
        return type == o.type && num == o.num && num2 == o.num2;
    }
};

// Font size of the sheet's labels at a scale; 0 means no text.
int scale2font_size(int scale);

// The frame of box i: centred on the box, scale * width wide and
// scale * height / 2 high (heights count half-rows), truncated toward zero.
// An index that names no box gives an empty rectangle.
pixel_rect box_frame(const bix_tpen_fichier& p, int i, const sheet_view& v);

// Ports of box i by its kind: a run instance has its run's ports, an input
// terminal or a constant one output, an output terminal or a don't-care one
// input, anything else none.
void box_port_counts(const bix_tpen_fichier& p, int i, int* inputs, int* outputs);

// The pixel row of port k of box i (inputs and outputs share rows).
double port_row(const bix_tpen_fichier& p, int i, int k, const sheet_view& v);

// Sensitive areas of input and output port k of box i: half a scale wide,
// an eighth of a scale high from the port's row, left of the frame for
// inputs, right of it for outputs.
pixel_rect input_port_area(const bix_tpen_fichier& p, int i, int k, const sheet_view& v);
pixel_rect output_port_area(const bix_tpen_fichier& p, int i, int k, const sheet_view& v);

// Whether (px, py) is within `tolerance` of the segment (x1, y1)-(x2, y2).
// Vertical and horizontal segments are tested over their length; an oblique
// one only inside its own bounding box.
bool point_dans_segment(double px, double py, double x1, double y1, double x2, double y2,
                        double tolerance);

// The polyline drawn for link k, in pixels: from the upstream output port
// through the link's points to the downstream input port. An end that names
// no box starts or stops at the nearest listed point; fewer than two points
// means nothing to draw.
std::vector<pixel_point> link_drawn_line(const bix_tpen_fichier& p, int k, const sheet_view& v);

// The polyline tested for link k: from the upstream box's centre through the
// points to the downstream box's centre, its end segments cut back at the
// box borders. Ends that name no box are handled as for the drawn line.
std::vector<pixel_point> link_hit_line(const bix_tpen_fichier& p, int k, const sheet_view& v);

bool box_hit(const bix_tpen_fichier& p, int i, const sheet_view& v, int x, int y);
bool input_port_hit(const bix_tpen_fichier& p, int i, int k, const sheet_view& v, int x, int y);
bool output_port_hit(const bix_tpen_fichier& p, int i, int k, const sheet_view& v, int x, int y);
bool link_hit(const bix_tpen_fichier& p, int k, const sheet_view& v, int x, int y);

// Every object under (x, y), in the order the pointer detection meets them:
// each box, then its inputs and outputs (for boxes with a non-negative
// ident), box after box; then each link. The last one is the selection.
std::vector<sheet_object> objects_under(const bix_tpen_fichier& p, const sheet_view& v, int x, int y);

// The selected object at (x, y): the last of objects_under, or no object.
sheet_object object_under(const bix_tpen_fichier& p, const sheet_view& v, int x, int y);

#endif
