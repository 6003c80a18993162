// The editor's sheet in pixels: frames, ports, the transform and its
// snapping, link lines, the hit tests and their tolerances, the order in
// which the pointer meets objects.

#include "sheet_geometry.h"

#include <gmock/gmock.h>

namespace {

using var = bix_declaration_variables;
using testing::ElementsAre;

// Run "mod" (inputs a, b, c; output y); box 0 an instance at (10, 10).
bix_tpen_fichier one_box()
{
    bix_tpen_fichier p("p", {}, {var("speed", "int")}, {var("out", "")}, {},
                       {bix_declaration_ixcmodule("", "mod", "mod", {var("a", ""), var("b", ""), var("c", "")},
                                                  {var("y", "")})});
    p.add_fin_black_box(black_box("u", 10, 10, BBOX_INSTANCE, 0));
    return p;
}

sheet_view view(int scale, int hslide = 0, int vslide = 0)
{
    sheet_view v;
    v.scale = scale;
    v.hslide = hslide;
    v.vslide = vslide;
    v.wx = 10;
    v.wy = 60;
    return v;
}

std::vector<int> rect(const pixel_rect& r) { return {r.left, r.top, r.width, r.height}; }

TEST(SheetTransform, FramesAndPortsFollowScaleSlidesAndOrigin)
{
    bix_tpen_fichier p = one_box();
    // width 3 / 3.4 + 4 units, height 4 half-rows
    EXPECT_THAT(rect(box_frame(p, 0, view(30))), ElementsAre(236, 330, 146, 60));
    EXPECT_THAT(rect(box_frame(p, 0, view(30, 100, 50))), ElementsAre(136, 280, 146, 60));
    EXPECT_THAT(rect(input_port_area(p, 0, 0, view(30))), ElementsAre(221, 345, 15, 3));
    EXPECT_THAT(rect(input_port_area(p, 0, 2, view(30))), ElementsAre(221, 375, 15, 3));
    EXPECT_THAT(rect(output_port_area(p, 0, 0, view(30))), ElementsAre(382, 345, 15, 3));
    // Odd scales: half and eighth of the scale in integers.
    EXPECT_THAT(rect(box_frame(p, 0, view(15))), ElementsAre(123, 195, 73, 30));
    EXPECT_THAT(rect(input_port_area(p, 0, 1, view(15))), ElementsAre(116, 210, 7, 1));
    // Truncation is toward zero, also left of the origin.
    p.ma_table_bbox()[0].change_ma_posx(-3);
    EXPECT_EQ(box_frame(p, 0, view(30)).left, -153);
    // No box: nothing.
    EXPECT_THAT(rect(box_frame(p, 7, view(30))), ElementsAre(0, 0, 0, 0));
}

TEST(SheetTransform, PixelsSnapToTheNearestUnit)
{
    const sheet_view v = view(30, 60, 30);
    EXPECT_EQ(v.snapped_x(309 - 60), 10);  // 9.97 units
    EXPECT_EQ(v.snapped_x(294 - 60), 9);   // 9.47
    EXPECT_EQ(v.snapped_x(295 - 60), 10);  // 9.5
    EXPECT_EQ(v.snapped_y(360 - 30), 10);
    EXPECT_DOUBLE_EQ(v.model_x(220), 9.5);  // half a scale added, no snapping
    EXPECT_DOUBLE_EQ(v.pixel_x(10), 310 - 60);
    EXPECT_DOUBLE_EQ(v.pixel_y(0.5), 60 - 30 + 15);
}

TEST(SheetTransform, FontSizesByScale)
{
    std::vector<int> sizes;
    for (int s : {5, 8, 10, 11, 15, 16, 20, 21, 25, 30, 31, 40, 41, 50})
        sizes.push_back(scale2font_size(s));
    EXPECT_THAT(sizes, ElementsAre(0, 0, 0, 7, 7, 9, 9, 12, 12, 12, 14, 14, 18, 18));
}

TEST(SheetHits, SegmentTolerances)
{
    // Horizontal and vertical: ends inclusive, strictly less than 5 across.
    EXPECT_TRUE(point_dans_segment(150, 104, 100, 100, 200, 100, 5.0));
    EXPECT_FALSE(point_dans_segment(150, 105, 100, 100, 200, 100, 5.0));
    EXPECT_TRUE(point_dans_segment(200, 96, 200, 100, 100, 100, 5.0));
    EXPECT_FALSE(point_dans_segment(201, 100, 100, 100, 200, 100, 5.0));
    EXPECT_TRUE(point_dans_segment(96, 150, 100, 200, 100, 100, 5.0));
    EXPECT_FALSE(point_dans_segment(100, 99, 100, 200, 100, 100, 5.0));
    // Oblique: only inside its own bounding box.
    EXPECT_TRUE(point_dans_segment(50, 53, 0, 0, 100, 100, 5.0));
    EXPECT_FALSE(point_dans_segment(50, 58, 0, 0, 100, 100, 5.0));
    EXPECT_FALSE(point_dans_segment(101, 101, 0, 0, 100, 100, 5.0));
    EXPECT_FALSE(point_dans_segment(0, -2, 0, 0, 100, 100, 5.0));
}

TEST(SheetHits, BoxesArehalfOpenAndPortsOnlyForKnownBoxes)
{
    bix_tpen_fichier p = one_box();
    const sheet_view v = view(30);
    EXPECT_TRUE(box_hit(p, 0, v, 236, 330));
    EXPECT_TRUE(box_hit(p, 0, v, 381, 389));
    EXPECT_FALSE(box_hit(p, 0, v, 382, 350));
    EXPECT_FALSE(box_hit(p, 0, v, 300, 390));
    EXPECT_TRUE(input_port_hit(p, 0, 1, v, 221, 362));
    EXPECT_FALSE(input_port_hit(p, 0, 1, v, 221, 363));
    EXPECT_TRUE(output_port_hit(p, 0, 0, v, 396, 345));
    EXPECT_FALSE(output_port_hit(p, 0, 0, v, 397, 345));
    EXPECT_FALSE(box_hit(p, 3, v, 236, 330));

    // A default box is hit but has no ports; neither has an instance of a
    // run that does not exist.
    p.add_fin_black_box(black_box("inst0", 30, 10, BBOX_DEFAULT, -1));
    p.add_fin_black_box(black_box("", 30, 20, BBOX_INSTANCE, 4));
    EXPECT_THAT(objects_under(p, v, 900, 360), ElementsAre(sheet_object{VISUNET_IXCMODULE_OBJ, 1, 0}));
    int in = -1, out = -1;
    box_port_counts(p, 1, &in, &out);
    EXPECT_EQ(in + out, 0);
    box_port_counts(p, 2, &in, &out);
    EXPECT_EQ(in + out, 0);
}

TEST(SheetHits, LaterObjectsWinLinksOverPortsOverBoxes)
{
    bix_tpen_fichier p = one_box();
    // Box 1 overlaps box 0; link 0 runs straight between two terminals at
    // the height of box 0's input 2, across that port and the box.
    p.add_fin_black_box(black_box("v", 11, 10, BBOX_INSTANCE, 0));
    p.add_fin_black_box(black_box("", 2, 10.5, BBOX_INPUT, 0));
    p.add_fin_black_box(black_box("", 20, 10.5, BBOX_OUTPUT, 0));
    p.add_fin_transition(bix_tpen_lien(2, 0, 3, 0));
    const sheet_view v = view(30);
    EXPECT_THAT(objects_under(p, v, 300, 340), ElementsAre(sheet_object{VISUNET_IXCMODULE_OBJ, 0, 0},
                                                           sheet_object{VISUNET_IXCMODULE_OBJ, 1, 0}));
    EXPECT_THAT(objects_under(p, v, 300, 376),
                ElementsAre(sheet_object{VISUNET_IXCMODULE_OBJ, 0, 0}, sheet_object{VISUNET_IXCMODULE_OBJ, 1, 0},
                            sheet_object{VISUNET_TRANSITION_OBJ, 0, 0}));
    // (225, 375): input 2 of box 0 and the link's horizontal stretch at y 375.
    EXPECT_THAT(objects_under(p, v, 225, 375),
                ElementsAre(sheet_object{VISUNET_IXCMODULE_INPUT_OBJ, 0, 2}, sheet_object{VISUNET_TRANSITION_OBJ, 0, 0}));
    EXPECT_EQ(object_under(p, v, 225, 375), (sheet_object{VISUNET_TRANSITION_OBJ, 0, 0}));
    EXPECT_EQ(object_under(p, v, 900, 900), sheet_object{});
}

TEST(SheetLinks, HitLineRunsBetweenCentresCutAtTheBorders)
{
    bix_tpen_fichier p = one_box();
    p.add_fin_black_box(black_box("", 20, 10, BBOX_OUTPUT, 0));
    p.add_fin_transition(bix_tpen_lien(0, 0, 1, 0));
    const sheet_view v = view(30);
    const std::vector<pixel_point> line = link_hit_line(p, 0, v);
    ASSERT_EQ(line.size(), 2u);
    // From the centre (310, 360) by half the width of each box.
    EXPECT_DOUBLE_EQ(line[0].x, 310 + 30 * 0.5 * p.bbox_largeur(0));
    EXPECT_DOUBLE_EQ(line[1].x, 610 - 30 * 0.5 * p.bbox_largeur(1));
    EXPECT_DOUBLE_EQ(line[1].y, 360);
    EXPECT_TRUE(link_hit(p, 0, v, 500, 363));
    EXPECT_FALSE(link_hit(p, 0, v, 320, 360));

    // The drawn line joins the ports.
    const std::vector<pixel_point> drawn = link_drawn_line(p, 0, v);
    ASSERT_EQ(drawn.size(), 2u);
    double x = 0, y = 0;
    p.position_output(0, 0, &x, &y);
    EXPECT_DOUBLE_EQ(drawn[0].x, v.pixel_x(x));
    EXPECT_DOUBLE_EQ(drawn[0].y, v.pixel_y(y));
    p.position_input(1, 0, &x, &y);
    EXPECT_DOUBLE_EQ(drawn[1].x, v.pixel_x(x));
}

TEST(SheetLinks, EndsWithoutABoxStopAtTheNearestPoint)
{
    bix_tpen_fichier p = one_box();
    p.add_fin_transition(bix_tpen_lien(-1, 0, 0, 0, {2, 3, 4, 3}));   // no upstream
    p.add_fin_transition(bix_tpen_lien(0, 0, 9, 0, {20, 3}));         // downstream out of range
    p.add_fin_transition(bix_tpen_lien(-1, 0, -1, 0));                // nothing at all
    p.add_fin_transition(bix_tpen_lien(-1, 0, 0, 0));                 // one end, no point
    const sheet_view v = view(10);
    std::vector<pixel_point> hit = link_hit_line(p, 0, v);
    ASSERT_EQ(hit.size(), 3u);
    EXPECT_DOUBLE_EQ(hit[0].x, 30);
    EXPECT_DOUBLE_EQ(hit[0].y, 90);
    EXPECT_EQ(link_drawn_line(p, 0, v).size(), 3u);
    hit = link_hit_line(p, 1, v);
    ASSERT_EQ(hit.size(), 2u);
    EXPECT_DOUBLE_EQ(hit[1].x, 210);
    EXPECT_EQ(link_drawn_line(p, 1, v).back().x, 210);
    for (int k : {2, 3, 4}) {
        EXPECT_TRUE(link_hit_line(p, k, v).empty()) << k;
        EXPECT_TRUE(link_drawn_line(p, k, v).empty()) << k;
        EXPECT_FALSE(link_hit(p, k, v, 110, 110)) << k;
    }
}

TEST(SheetLinks, FarOffCoordinatesStayWithinIntegers)
{
    bix_tpen_fichier p = one_box();
    p.ma_table_bbox()[0].change_ma_posx(1e300);
    p.ma_table_bbox()[0].change_ma_posy(-1e300);
    const pixel_rect r = box_frame(p, 0, view(50));
    EXPECT_EQ(r.left, 1000000000);
    EXPECT_EQ(r.top, -1000000000);
    EXPECT_FALSE(box_hit(p, 0, view(50), 0, 0));
    EXPECT_TRUE(objects_under(p, view(50), 100, 100).empty());
}

}  // namespace
