#include "sheet_geometry.h"

#include <algorithm>
#include <cmath>

namespace {

const black_box* box_at(const bix_tpen_fichier& p, int i)
{
    const std::vector<black_box>& boxes = p.ma_table_bbox();
    return i >= 0 && static_cast<std::size_t>(i) < boxes.size() ? &boxes[i] : nullptr;
}

// Truncation toward zero, held within a billion pixels either way (and NaN
// read as far off to the left) so that any coordinate a file can hold
// converts safely and sums of a few of them cannot overflow.
int trunc_int(double v)
{
    if (!(v > -1e9))
        return -1000000000;
    if (v > 1e9)
        return 1000000000;
    return static_cast<int>(std::trunc(v));
}

}  // namespace

int scale2font_size(int scale)
{
    if (scale > 40)
        return 18;
    if (scale > 30)
        return 14;
    if (scale > 20)
        return 12;
    if (scale > 15)
        return 9;
    if (scale > 10)
        return 7;
    return 0;
}

pixel_rect box_frame(const bix_tpen_fichier& p, int i, const sheet_view& v)
{
    const black_box* b = box_at(p, i);
    if (!b)
        return {};
    const double s = v.scale;
    const double w = p.bbox_largeur(i);
    const double h = p.bbox_hauteur(i);
    pixel_rect r;
    r.left = trunc_int(s * b->ma_posx() + v.wx - v.hslide - s * w / 2.0);
    r.top = trunc_int(s * b->ma_posy() + v.wy - v.vslide - s * h / 4.0);
    r.width = trunc_int(s * w);
    r.height = trunc_int(s * h / 2.0);
    return r;
}

void box_port_counts(const bix_tpen_fichier& p, int i, int* inputs, int* outputs)
{
    *inputs = 0;
    *outputs = 0;
    const black_box* b = box_at(p, i);
    if (!b)
        return;
    switch (b->mon_tpe()) {
    case BBOX_INSTANCE: {
        const std::vector<bix_declaration_ixcmodule>& runs = p.ma_table_external_ixcmodules();
        const int run = b->mon_ident();
        if (run >= 0 && static_cast<std::size_t>(run) < runs.size()) {
            *inputs = runs[run].nb_entrees();
            *outputs = runs[run].nb_sorties();
        }
        break;
    }
    case BBOX_INPUT:
    case BBOX_CONSTANT:
        *outputs = 1;
        break;
    case BBOX_OUTPUT:
    case BBOX_DONTCARE:
        *inputs = 1;
        break;
    default:
        break;
    }
}

double port_row(const bix_tpen_fichier& p, int i, int k, const sheet_view& v)
{
    const black_box* b = box_at(p, i);
    if (!b)
        return 0.0;
    const double s = v.scale;
    const double centre = s * b->ma_posy() + v.wy - v.vslide;
    return centre - s * p.bbox_hauteur(i) / 4.0 + s * k / 2.0 + s / 2.0;
}

pixel_rect input_port_area(const bix_tpen_fichier& p, int i, int k, const sheet_view& v)
{
    const pixel_rect frame = box_frame(p, i, v);
    pixel_rect r;
    r.left = frame.left - v.scale / 2;
    r.top = trunc_int(port_row(p, i, k, v));
    r.width = v.scale / 2;
    r.height = v.scale / 8;
    return r;
}

pixel_rect output_port_area(const bix_tpen_fichier& p, int i, int k, const sheet_view& v)
{
    const pixel_rect frame = box_frame(p, i, v);
    pixel_rect r;
    r.left = frame.left + frame.width;
    r.top = trunc_int(port_row(p, i, k, v));
    r.width = v.scale / 2;
    r.height = v.scale / 8;
    return r;
}

bool point_dans_segment(double px, double py, double x1, double y1, double x2, double y2,
                        double tolerance)
{
    const auto between = [](double a, double lo, double hi) {
        return a >= std::min(lo, hi) && a <= std::max(lo, hi);
    };
    if (std::fabs(x1 - x2) <= 1e-10)
        return between(py, y1, y2) && std::fabs(px - x1) < tolerance;
    if (std::fabs(y1 - y2) <= 1e-10)
        return between(px, x1, x2) && std::fabs(py - y1) < tolerance;
    // No margin around an oblique segment's bounding box: kept as drawn.
    if (!between(px, x1, x2) || !between(py, y1, y2))
        return false;
    const double length = std::hypot(x1 - x2, y1 - y2);
    if (length <= 1e-10)
        return false;
    return std::fabs((px - x1) * (y1 - y2) - (py - y1) * (x1 - x2)) / length < tolerance;
}

namespace {

// The link's listed points in pixels.
std::vector<pixel_point> listed_points(const bix_tpen_lien& l, const sheet_view& v)
{
    const std::vector<double>& pos = l.liste_positions();
    std::vector<pixel_point> line;
    line.reserve(pos.size() / 2 + 2);
    for (std::size_t i = 0; i + 1 < pos.size(); i += 2)
        line.push_back({v.pixel_x(pos[i]), v.pixel_y(pos[i + 1])});
    return line;
}

const bix_tpen_lien* link_at(const bix_tpen_fichier& p, int k)
{
    const std::vector<bix_tpen_lien>& links = p.ma_table_liens();
    return k >= 0 && static_cast<std::size_t>(k) < links.size() ? &links[k] : nullptr;
}

}  // namespace

std::vector<pixel_point> link_drawn_line(const bix_tpen_fichier& p, int k, const sheet_view& v)
{
    const bix_tpen_lien* l = link_at(p, k);
    if (!l)
        return {};
    std::vector<pixel_point> line = listed_points(*l, v);
    double x = 0.0;
    double y = 0.0;
    if (p.position_output(l->mon_ident_ixcmodule_amont(), l->mon_ident_ixcmodule_amont_output(), &x, &y))
        line.insert(line.begin(), {v.pixel_x(x), v.pixel_y(y)});
    if (p.position_input(l->mon_ident_ixcmodule_aval(), l->mon_ident_ixcmodule_aval_input(), &x, &y))
        line.push_back({v.pixel_x(x), v.pixel_y(y)});
    if (line.size() < 2)
        line.clear();
    return line;
}

std::vector<pixel_point> link_hit_line(const bix_tpen_fichier& p, int k, const sheet_view& v)
{
    const bix_tpen_lien* l = link_at(p, k);
    if (!l)
        return {};
    std::vector<pixel_point> line = listed_points(*l, v);
    const black_box* up = box_at(p, l->mon_ident_ixcmodule_amont());
    const black_box* down = box_at(p, l->mon_ident_ixcmodule_aval());
    if (up)
        line.insert(line.begin(), {v.pixel_x(up->ma_posx()), v.pixel_y(up->ma_posy())});
    if (down)
        line.push_back({v.pixel_x(down->ma_posx()), v.pixel_y(down->ma_posy())});
    if (line.size() < 2)
        return {};
    const double s = v.scale;
    if (up)
        frontieres_corrections(line[1].x, line[1].y, s * 0.5 * p.bbox_largeur(l->mon_ident_ixcmodule_amont()),
                               &line[0].x, &line[0].y);
    const std::size_t last = line.size() - 1;
    if (down)
        frontieres_corrections(line[last - 1].x, line[last - 1].y,
                               s * 0.5 * p.bbox_largeur(l->mon_ident_ixcmodule_aval()), &line[last].x,
                               &line[last].y);
    return line;
}

bool box_hit(const bix_tpen_fichier& p, int i, const sheet_view& v, int x, int y)
{
    return box_at(p, i) && box_frame(p, i, v).contains(x, y);
}

bool input_port_hit(const bix_tpen_fichier& p, int i, int k, const sheet_view& v, int x, int y)
{
    return box_at(p, i) && input_port_area(p, i, k, v).contains(x, y);
}

bool output_port_hit(const bix_tpen_fichier& p, int i, int k, const sheet_view& v, int x, int y)
{
    return box_at(p, i) && output_port_area(p, i, k, v).contains(x, y);
}

bool link_hit(const bix_tpen_fichier& p, int k, const sheet_view& v, int x, int y)
{
    const std::vector<pixel_point> line = link_hit_line(p, k, v);
    for (std::size_t j = 0; j + 1 < line.size(); ++j)
        if (point_dans_segment(x, y, line[j].x, line[j].y, line[j + 1].x, line[j + 1].y, 5.0))
            return true;
    return false;
}

std::vector<sheet_object> objects_under(const bix_tpen_fichier& p, const sheet_view& v, int x, int y)
{
    std::vector<sheet_object> hits;
    const int boxes = p.nbr_black_box();
    for (int i = 0; i < boxes; ++i) {
        const pixel_rect frame = box_frame(p, i, v);
        if (frame.contains(x, y))
            hits.push_back({VISUNET_IXCMODULE_OBJ, i, 0});
        if (p.ma_table_bbox()[i].mon_ident() < 0)
            continue;
        // Ports lie within half a scale of the frame's sides and within
        // its height: nothing else to test when the pointer is elsewhere.
        const int reach = v.scale / 2;
        if (x < frame.left - reach || x >= frame.left + frame.width + reach || y < frame.top ||
            y >= frame.top + frame.height + v.scale)
            continue;
        int inputs = 0;
        int outputs = 0;
        box_port_counts(p, i, &inputs, &outputs);
        for (int j = 0; j < inputs; ++j)
            if (input_port_area(p, i, j, v).contains(x, y))
                hits.push_back({VISUNET_IXCMODULE_INPUT_OBJ, i, j});
        for (int j = 0; j < outputs; ++j)
            if (output_port_area(p, i, j, v).contains(x, y))
                hits.push_back({VISUNET_IXCMODULE_OUTPUT_OBJ, i, j});
    }
    const int links = p.nbr_transitions();
    for (int k = 0; k < links; ++k)
        if (link_hit(p, k, v, x, y))
            hits.push_back({VISUNET_TRANSITION_OBJ, k, 0});
    return hits;
}

sheet_object object_under(const bix_tpen_fichier& p, const sheet_view& v, int x, int y)
{
    const std::vector<sheet_object> hits = objects_under(p, v, x, y);
    return hits.empty() ? sheet_object{} : hits.back();
}
