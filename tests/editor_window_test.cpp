// The main window's arithmetic and the forms' rules, without a window: zoom
// steps and their slider ratios, the scroll offsets, menu numbering, the
// black box form's result.

#include "black_box_form.h"
#include "forms_menu.h"
#include "main_window.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

TEST(EditorZoom, MinusRescalesEveryStepButTheLastOne)
{
    std::vector<int> scales;
    std::vector<double> ratios;
    int index = editor_default_scale_index;
    for (int i = 0; i < 8; ++i) {
        const zoom_step s = zoom_moins(index);
        index = s.index;
        scales.push_back(editor_scales[index]);
        ratios.push_back(s.rescale ? s.ratio : 0.0);
    }
    EXPECT_THAT(scales, ElementsAre(25, 20, 15, 10, 8, 5, 5, 5));
    // 8 to 5 does not rescale; at 5 nothing changes.
    EXPECT_THAT(ratios, ElementsAre(25.0 / 30, 20.0 / 25, 15.0 / 20, 10.0 / 15, 8.0 / 10, 0.0, 0.0, 0.0));
}

TEST(EditorZoom, PlusRescalesUpToTheLargestScale)
{
    std::vector<int> scales;
    std::vector<double> ratios;
    int index = 0;
    for (int i = 0; i < 10; ++i) {
        const zoom_step s = zoom_plus(index);
        index = s.index;
        scales.push_back(editor_scales[index]);
        ratios.push_back(s.rescale ? s.ratio : 0.0);
    }
    EXPECT_THAT(scales, ElementsAre(8, 10, 15, 20, 25, 30, 40, 50, 50, 50));
    EXPECT_DOUBLE_EQ(ratios[0], 8.0 / 5);
    EXPECT_DOUBLE_EQ(ratios[7], 50.0 / 40);
    EXPECT_EQ(ratios[8], 0.0);
}

TEST(EditorZoom, SliderSumsTruncateTowardZero)
{
    EXPECT_EQ(slider_offset(10.9, 0.9), 11);
    EXPECT_EQ(slider_offset(999.99, 9999.99), 10999);
    EXPECT_EQ(slider_offset(-0.5, -0.9), -1);
    EXPECT_EQ(slider_offset(0.4, 0.5), 0);
}

TEST(EditorMenus, ItemNumbersCountTheSubmenuItsItemAndItsEnd)
{
    const std::vector<forms_menu_entry> file =
        parse_forms_menu("  New |  Name |  Load  |  Save  |  Export/ xfig: graphical format |  About |  Quit  ");
    std::vector<std::string> labels;
    for (const forms_menu_entry& e : file)
        labels.push_back(e.end ? "<end>" : e.label);
    EXPECT_THAT(labels, ElementsAre("  New ", "  Name ", "  Load  ", "  Save  ", "  Export", " xfig: graphical format ",
                                    "<end>", "  About ", "  Quit  "));
    EXPECT_TRUE(file[4].submenu);
    // Underscores, repeated labels and blanks are kept as written.
    const std::vector<forms_menu_entry> names = parse_forms_menu(forms_menu_items({"_a1", "_a1", "b"}));
    ASSERT_EQ(names.size(), 3u);
    EXPECT_EQ(names[0].label, "_a1 ");
    EXPECT_EQ(names[1].label, "_a1 ");
    EXPECT_EQ(names[2].label, "b");
    EXPECT_TRUE(parse_forms_menu("").empty());
}

TEST(BlackBoxForm, TheLastPickGivesTheIdentUnderTheKindDown)
{
    black_box b;
    EXPECT_EQ(OFD_black_box_form::result_of(BBOX_INSTANCE, -1, &b), 0);
    EXPECT_EQ(b.mon_tpe(), BBOX_DEFAULT);
    EXPECT_EQ(OFD_black_box_form::result_of(BBOX_INSTANCE, 2, &b), 1);
    EXPECT_EQ(b.mon_tpe(), BBOX_INSTANCE);
    EXPECT_EQ(b.mon_ident(), 1);
    EXPECT_EQ(OFD_black_box_form::result_of(BBOX_CONSTANT, 2, &b), 1);  // "Always Present"
    EXPECT_EQ(b.mon_ident(), 1);
    EXPECT_EQ(b.mon_tpe(), BBOX_CONSTANT);
    // "D.Care" has no items of its own: it takes a pick made under another kind.
    EXPECT_EQ(OFD_black_box_form::result_of(BBOX_DONTCARE, 3, &b), 1);
    EXPECT_EQ(b.mon_ident(), 2);
    EXPECT_EQ(b.mon_tpe(), BBOX_DONTCARE);
}

}  // namespace
