// Diagram geometry: box sizes, port positions, link routing, point edits,
// extents and the clipping of link ends.

#include "bix_norm.h"
#include "test_support.h"

#include <gmock/gmock.h>

using namespace quilp_test;
using testing::DoubleEq;
using testing::Pointwise;

namespace {

using var = bix_declaration_variables;

// Run "mod" has 3 inputs and 1 output; boxes: 0 instance at (10, 10),
// 1 instance at (30, 12), 2 input terminal, 3 output terminal, 4 constant,
// 5 don't care, 6 default box.
bix_tpen_fichier sheet()
{
    bix_tpen_fichier p("p", {}, {var("speed", "int"), var("go", "pure")}, {var("out", "")}, {},
                       {bix_declaration_ixcmodule("", "mod", "mod",
                                                  {var("a", ""), var("b", ""), var("c", "")},
                                                  {var("y", "")})});
    p.add_fin_black_box(black_box("u", 10, 10, BBOX_INSTANCE, 0));
    p.add_fin_black_box(black_box("d", 30, 12, BBOX_INSTANCE, 0));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 0));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_OUTPUT, 0));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_CONSTANT, 1));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_DONTCARE, 0));
    p.add_fin_black_box(black_box());
    return p;
}

TEST(GeometryBoxes, WidthAndHeightByKind)
{
    bix_tpen_fichier p = sheet();
    std::vector<double> widths, heights;
    for (int i : {0, 2, 3, 4, 5, 6, 99})
        widths.push_back(p.bbox_largeur(i));
    for (int i : {0, 2, 3, 4, 5, 6})
        heights.push_back(p.bbox_hauteur(i));
    // the input terminal counts "speed" and "int"
    EXPECT_THAT(widths, Pointwise(DoubleEq(), {3 / 3.4 + 4, 8 / 3.4 + 1, 3 / 3.4 + 1, 8 / 3.4 + 1, 3 / 3.4 + 1, 2., 2.}));
    EXPECT_THAT(heights, Pointwise(DoubleEq(), {4., 2., 2., 2., 2., 2.}));

    // "go": a pure type counts nothing; an ident past the inputs is reported
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 1));
    EXPECT_DOUBLE_EQ(p.bbox_largeur(7), 2 / 3.4 + 1.0);
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 101));
    EXPECT_EQ(stderr_of([&] { EXPECT_DOUBLE_EQ(p.bbox_largeur(8), 1.0); }),
              "ident_bb 8 table_bbox[ident_bb].mon_ident() 101\n");
}

TEST(GeometryBoxes, PortsSitOutsideTheBoxOnHalfRows)
{
    const bix_tpen_fichier p = sheet();
    const double w = p.bbox_largeur(0);
    double x = 0, y = 0;
    ASSERT_TRUE(p.position_output(0, 0, &x, &y));
    EXPECT_THAT((std::vector<double>{x, y}), Pointwise(DoubleEq(), {10 + 0.5 + w / 2, 10 + 0.5 - 1.0}));
    ASSERT_TRUE(p.position_input(0, 2, &x, &y));
    EXPECT_THAT((std::vector<double>{x, y}), Pointwise(DoubleEq(), {10 - 0.5 - w / 2, 10 + 1.0 + 0.5 - 1.0}));
    EXPECT_FALSE(p.position_input(-1, 0, &x, &y));
}

struct ports {
    double xs, ys, xe, ye;
};

ports ends(const bix_tpen_fichier& p, const bix_tpen_lien& l)
{
    ports e{};
    p.position_output(l.mon_ident_ixcmodule_amont(), l.mon_ident_ixcmodule_amont_output(), &e.xs, &e.ys);
    p.position_input(l.mon_ident_ixcmodule_aval(), l.mon_ident_ixcmodule_aval_input(), &e.xe, &e.ye);
    return e;
}

// A fresh link goes through the vertical midway; a two-point route keeps its
// vertical within the ports; a loop on a box goes over its top.
TEST(GeometryRouting, FreshTwoPointAndSelfLoopRoutes)
{
    const bix_tpen_fichier p = sheet();
    bix_tpen_lien fresh(0, 0, 1, 2);
    fresh.aligne_points(&p);
    ports e = ends(p, fresh);
    const double x = (e.xs + e.xe) / 2;
    EXPECT_EQ(fresh.liste_positions(), (std::vector<double>{x, e.ys, x, e.ye}));

    e = ends(p, bix_tpen_lien(0, 0, 1, 0));
    bix_tpen_lien far(0, 0, 1, 0, {e.xe + 100, 0, 0, 0});
    bix_tpen_lien within(0, 0, 1, 0, {20, 0, 0, 0});
    far.aligne_points(&p);
    within.aligne_points(&p);
    EXPECT_EQ(far.liste_positions(), (std::vector<double>{e.xe, e.ys, e.xe, e.ye}));
    EXPECT_EQ(within.liste_positions(), (std::vector<double>{20, e.ys, 20, e.ye}));

    bix_tpen_lien loop(0, 0, 0, 1);
    loop.aligne_points(&p);
    e = ends(p, loop);
    const double top = e.ys - p.bbox_hauteur(0) / 2;
    EXPECT_EQ(loop.liste_positions(),
              (std::vector<double>{e.xs + 0.5, e.ys, e.xs + 0.5, top, e.xe - 0.5, top, e.xe - 0.5, e.ye}));
}

TEST(GeometryRouting, BackwardRouteAndItsShapeWhenMovedAgain)
{
    bix_tpen_fichier p = sheet();
    bix_tpen_lien l(0, 0, 1, 1);
    l.aligne_points(&p);
    p.ma_table_bbox()[1].change_ma_posx(0);  // downstream now left of upstream
    l.aligne_points(&p);
    ports e = ends(p, l);
    const double mid = (e.ys + e.ye) / 2;
    EXPECT_EQ(l.liste_positions(), (std::vector<double>{e.xs + 0.5, e.ys, e.xs + 0.5, mid,
                                                        e.xe - 0.5, mid, e.xe - 0.5, e.ye}));

    // the user drags the bends; re-routing keeps them beyond the ports
    l.modif_coords_point(0, e.xs + 3, 0);
    l.modif_coords_point(1, 1, 20);
    l.modif_coords_point(2, e.xe + 2, 7);
    p.ma_table_bbox()[1].change_ma_posy(14);
    l.aligne_points(&p);
    e = ends(p, l);
    EXPECT_EQ(l.liste_positions(), (std::vector<double>{e.xs + 3, e.ys, e.xs + 3, 20, e.xe - 0.5,
                                                        20, e.xe - 0.5, e.ye}));

    // back to the right: a two-point route again
    p.ma_table_bbox()[1].change_ma_posx(40);
    l.aligne_points(&p);
    e = ends(p, l);
    EXPECT_EQ(l.nb_points(), 2);
    EXPECT_DOUBLE_EQ(l.liste_positions()[0], (e.xs + e.xe) / 2);
}

TEST(GeometryRouting, MalformedLinksAreReportedAndLeftAsTheyAre)
{
    const bix_tpen_fichier p = sheet();
    bix_tpen_lien three(0, 0, 1, 0, {1, 1, 2, 2, 3, 3});
    bix_tpen_lien no_up(-1, 0, 1, 0);
    bix_tpen_lien no_down(0, 0, 57, 0, {1, 2});
    EXPECT_EQ(stderr_of([&] { three.aligne_points(&p); no_up.aligne_points(&p); no_down.aligne_points(&p); }),
              "warning: incorrect line with 3 points detected ...\n"
              "internal error in  bix_tpen_lien:: aligne_points():downstream not defined !\n"
              "internal error in  bix_tpen_lien:: aligne_points():upstream not defined !\n");
    EXPECT_EQ(three.nb_points(), 3);
    EXPECT_EQ(no_down.liste_positions(), (std::vector<double>{1, 2}));

    const bix_tpen_fichier empty;
    EXPECT_EQ(stderr_of([&] { no_up.aligne_points(&empty); }), "");
}

TEST(GeometryPoints, EditsReportPointsThatDoNotExist)
{
    bix_tpen_lien l(0, 0, 1, 0);
    l.add_point(1, 2);
    l.add_point(3, 4);
    l.add_point(5, 6);  // a third point is never added this way
    EXPECT_EQ(l.liste_positions(), (std::vector<double>{1, 2, 3, 4}));

    l.modif_coords_premier_point(7, 8);
    l.modif_coords_dernier_point(9, 10);
    l.modif_xcoords_point(1, 11);
    l.modif_ycoords_point(0, 12);
    EXPECT_EQ(l.liste_positions(), (std::vector<double>{7, 12, 11, 10}));

    EXPECT_EQ(stderr_of([&] { l.modif_coords_point(2, 0, 0); l.modif_ycoords_point(5, 0); }),
              "probleme dans bix_tpen_lien:: modif_coords_point();\npoint 2 non trouve ...\n"
              "probleme dans bix_tpen_lien:: modif_xcoords_point();\npoint 5 non trouve ...\n");

    l.translation_points(1, -1);
    EXPECT_EQ(l.liste_positions(), (std::vector<double>{8, 11, 12, 9}));
}

TEST(GeometryExtents, StartingValuesShowThroughEmptyAndNegativeLists)
{
    const bix_tpen_lien empty;
    EXPECT_EQ(empty.posxmax(), 0.0);
    EXPECT_EQ(empty.posymin(), 1e12);
    const bix_tpen_lien negative(0, 0, 0, 0, {-5, -6, -1, -9});
    EXPECT_EQ((std::vector<double>{negative.posxmax(), negative.posymax(), negative.posxmin(), negative.posymin()}),
              (std::vector<double>{0, 0, -5, -9}));

    bix_tpen_fichier p = sheet();
    EXPECT_DOUBLE_EQ(p.largueur_max(), 40.0);
    EXPECT_DOUBLE_EQ(p.hauteur_max(), 22.0);
    EXPECT_DOUBLE_EQ(bix_tpen_fichier().largueur_max(), 10.0);
}

TEST(GeometryClipping, EndsMoveTowardsTheirNeighbour)
{
    struct clip {
        double nx, ny, px, py, x, y, tolerance;
    };
    const clip cases[] = {
        {10.01, 5, 10, 0, 10.01, 0.5, 0}, // nearly vertical
        {-4, 3, 0, 3, -0.5, 3, 0},        // horizontal, neighbour on the left
        {3, 4, 0, 0, 0.3, 0.4, 1e-12},    // diagonal
        {0, 0, 3, 4, 2.7, 3.6, 1e-12},
    };
    for (const clip& c : cases) {
        double px = c.px, py = c.py;
        frontieres_corrections(c.nx, c.ny, 0.5, &px, &py);
        EXPECT_NEAR(px, c.x, c.tolerance) << c.nx << ", " << c.ny;
        EXPECT_NEAR(py, c.y, c.tolerance) << c.nx << ", " << c.ny;
    }
}

}  // namespace
