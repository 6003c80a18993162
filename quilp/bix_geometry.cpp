// Sheet geometry of a project, in model units: box sizes, port positions,
// link routing, point edits and extents.

#include "bix_norm.h"

#include "quilp_warn.h"

#include <algorithm>
#include <cmath>
#include <iostream>

namespace {

// Length of a declaration's text on the sheet: its name and its type, a
// "pure" type counting for nothing.
double declaration_length(const std::string& name, const std::string& type)
{
    return static_cast<double>(name.size() + (type == "pure" ? 0 : type.size()));
}

}  // namespace

double bix_tpen_fichier::bbox_largeur(int i) const
{
    const black_box* b = box_or_null(i);
    if (!b)
        return 2.0;
    const int id = b->mon_ident();
    switch (b->mon_tpe()) {
    case BBOX_INSTANCE: {
        const bix_declaration_ixcmodule* run = run_or_null(id);
        return (run ? static_cast<double>(run->nom_module().size()) : 0.0) / 3.4 + 4.0;
    }
    case BBOX_INPUT: {
        // a guard against corrupt indexes; the width is computed all the same
        if (id > 100)
            quilp_warn() << "ident_bb " << i << " table_bbox[ident_bb].mon_ident() " << id << std::endl;
        if (id < 0 || id >= nbr_inputs())
            return 1.0;
        const bix_declaration_variables& v = table_inputs[id];
        return declaration_length(v.mon_nom(), v.mon_type()) / 3.4 + 1.0;
    }
    case BBOX_OUTPUT: {
        if (id < 0 || id >= nbr_outputs())
            return 1.0;
        const bix_declaration_variables& v = table_outputs[id];
        return declaration_length(v.mon_nom(), v.mon_type()) / 3.4 + 1.0;
    }
    case BBOX_CONSTANT:
        return 3.3529411764705883;  // 8 / 3.4 + 1
    case BBOX_DONTCARE:
        return 1.8823529411764706;  // 3 / 3.4 + 1
    default:
        return 2.0;
    }
}

double bix_tpen_fichier::bbox_hauteur(int i) const
{
    const black_box* b = box_or_null(i);
    if (!b || b->mon_tpe() != BBOX_INSTANCE)
        return 2.0;
    const bix_declaration_ixcmodule* run = run_or_null(b->mon_ident());
    const int inputs = run ? run->nb_entrees() : 0;
    const int outputs = run ? run->nb_sorties() : 0;
    return static_cast<double>(std::max(inputs + 1, outputs + 1));
}

bool bix_tpen_fichier::position_output(int i, int k, double* x, double* y) const
{
    const black_box* b = box_or_null(i);
    if (!b)
        return false;
    *x = b->ma_posx() + 0.5 + bbox_largeur(i) / 2.0;
    *y = b->ma_posy() + k / 2.0 + 0.5 - bbox_hauteur(i) / 4.0;
    return true;
}

bool bix_tpen_fichier::position_input(int i, int k, double* x, double* y) const
{
    const black_box* b = box_or_null(i);
    if (!b)
        return false;
    *x = b->ma_posx() - 0.5 - bbox_largeur(i) / 2.0;
    *y = b->ma_posy() + k / 2.0 + 0.5 - bbox_hauteur(i) / 4.0;
    return true;
}

// The link points never widen these extents: only the boxes count.
double bix_tpen_fichier::largueur_max() const
{
    double m = 0.0;
    for (const black_box& b : table_bbox)
        m = std::max(m, b.ma_posx());
    return 10.0 + m;
}

double bix_tpen_fichier::hauteur_max() const
{
    double m = 0.0;
    for (const black_box& b : table_bbox)
        m = std::max(m, b.ma_posy());
    return m + 10.0;
}

// ---------------------------------------------------------------------------
// Link points

namespace {

// The largest or smallest x (coordinate 0) or y (coordinate 1) of the points.
double extreme(const std::vector<double>& p, std::size_t coordinate, double start, bool maximum)
{
    double m = start;
    for (std::size_t k = 0; 2 * k + 1 < p.size(); ++k) {
        const double v = p[2 * k + coordinate];
        m = maximum ? std::max(m, v) : std::min(m, v);
    }
    return m;
}

}  // namespace

double bix_tpen_lien::posxmax() const { return extreme(positions, 0, 0.0, true); }
double bix_tpen_lien::posymax() const { return extreme(positions, 1, 0.0, true); }
double bix_tpen_lien::posxmin() const { return extreme(positions, 0, 1e12, false); }
double bix_tpen_lien::posymin() const { return extreme(positions, 1, 1e12, false); }

void bix_tpen_lien::translation_points(double dx, double dy)
{
    for (std::size_t i = 0; i + 1 < positions.size(); i += 2) {
        positions[i] += dx;
        positions[i + 1] += dy;
    }
}

void bix_tpen_lien::add_point(double x, double y)
{
    if (nb_points() > 1)
        return;
    positions.push_back(x);
    positions.push_back(y);
}

namespace {

void point_not_found(const char* operation, int k)
{
    quilp_warn() << "probleme dans bix_tpen_lien:: " << operation << "();" << std::endl
                 << "point " << k << " non trouve ..." << std::endl;
}

}  // namespace

void bix_tpen_lien::modif_coords_point(int k, double x, double y)
{
    if (k < 0 || k >= nb_points()) {
        point_not_found("modif_coords_point", k);
        return;
    }
    positions[2 * k] = x;
    positions[2 * k + 1] = y;
}

void bix_tpen_lien::modif_xcoords_point(int k, double x)
{
    if (k < 0 || k >= nb_points()) {
        point_not_found("modif_xcoords_point", k);
        return;
    }
    positions[2 * k] = x;
}

// The y form reports with the x form's text.
void bix_tpen_lien::modif_ycoords_point(int k, double y)
{
    if (k < 0 || k >= nb_points()) {
        point_not_found("modif_xcoords_point", k);
        return;
    }
    positions[2 * k + 1] = y;
}

void bix_tpen_lien::modif_coords_premier_point(double x, double y)
{
    modif_coords_point(0, x, y);
}

void bix_tpen_lien::modif_coords_dernier_point(double x, double y)
{
    modif_coords_point(nb_points() - 1, x, y);
}

// ---------------------------------------------------------------------------
// Routing

void bix_tpen_lien::aligne_points(const bix_tpen_fichier* project)
{
    if (!project || project->nbr_black_box() == 0)
        return;
    const int up = ident_ixcmodule_amont;
    const int down = ident_ixcmodule_aval;
    const bool has_up = up >= 0 && up < project->nbr_black_box();
    const bool has_down = down >= 0 && down < project->nbr_black_box();
    if (!has_up || !has_down) {
        // the two words are crossed relative to the missing end; kept as written
        quilp_warn() << "internal error in  bix_tpen_lien:: aligne_points():";
        if (!has_up)
            quilp_warn() << "downstream not defined !" << std::endl;
        if (!has_down)
            quilp_warn() << "upstream not defined !" << std::endl;
        return;
    }

    double xs, ys, xe, ye;
    project->position_output(up, ident_ixcmodule_amont_output, &xs, &ys);
    project->position_input(down, ident_ixcmodule_aval_input, &xe, &ye);
    const double mid = (ys + ye) / 2.0;
    const double h = project->bbox_hauteur(up) / 2.0;
    const std::size_t n = positions.size();

    if (n == 4 && xe >= xs) {
        const double x = std::min(std::max(positions[0], xs), xe);
        positions = {x, ys, x, ye};
    } else if (n == 4) {
        positions = {xs + 0.5, ys, xs + 0.5, mid, xe - 0.5, mid, xe - 0.5, ye};
    } else if (n == 8 && xe < xs) {
        positions[0] = std::max(positions[0], xs + 0.5);
        positions[1] = ys;
        positions[2] = positions[0];
        positions[4] = std::min(positions[4], xe - 0.5);
        positions[5] = positions[3];
        positions[6] = positions[4];
        positions[7] = ye;
    } else if ((n == 8 || n == 0) && xe >= xs) {
        const double x = (xs + xe) / 2.0;
        positions = {x, ys, x, ye};
    } else if (n == 0 && up != down) {
        positions = {xs + 0.5, ys, xs + 0.5, mid, xe - 0.5, mid, xe - 0.5, ye};
    } else if (n == 0) {
        // a loop over the top of the box
        positions = {xs + 0.5, ys, xs + 0.5, ys - h, xe - 0.5, ys - h, xe - 0.5, ye};
    } else {
        quilp_warn() << "warning: incorrect line with " << n / 2 << " points detected ..." << std::endl;
    }
}

void frontieres_corrections(double x, double y, double r, double* px, double* py)
{
    const double t = r / 20.0;
    if (std::fabs(*px - x) < t) {
        *px = x;
        *py = *py > y ? *py - r : *py + r;
    } else if (std::fabs(*py - y) < t) {
        *px = *px > x ? *px - r : *px + r;
        *py = y;
    } else if (*px != x) {
        const double a = std::atan((*py - y) / (*px - x));
        if (*px > x) {
            *px -= r * std::cos(a);
            *py -= r * std::sin(a);
        } else {
            *px += r * std::cos(a);
            *py += r * std::sin(a);
        }
    }
}
