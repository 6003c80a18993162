// The view's mouse handling without a window: what a press, a drag and a
// release do in each mode, the connection rules with their exact texts, moving
// boxes and link segments, and the Save and Export writers.

#include "editor_support.h"
#include "test_support.h"
#include "visu_net.h"

#include <gmock/gmock.h>

#include <memory>
#include <sys/stat.h>

using namespace quilp_test;
using testing::ElementsAre;

namespace {

using var = bix_declaration_variables;

// Detached, so pixels are model units times 30 from (0, 0).
//   box 0: instance of "mod" at (10, 10): inputs a: int (row 292), b (307),
//          outputs y: int (292), z: float (307); input areas x 211..225,
//          output areas x 372..386, 3 pixels high from the row
//   box 1: terminal of input "speed: int" at (2, 10); output area 109..123 x 300
//   box 2: terminal of output "out: int" at (20, 10); input area 543..557 x 300
//   box 3: terminal of output "alarm" at (20, 14); input area 547..561 x 420
class EditorView : public testing::Test {
protected:
    EditorView()
    {
        const bix_tpen_fichier p("p", {"int", "float"}, {var("go", "pure"), var("speed", "int")},
                                 {var("alarm", "pure"), var("out", "int")}, {},
                                 {bix_declaration_ixcmodule("", "mod", "mod", {var("a", "int"), var("b", "pure")},
                                                            {var("y", "int"), var("z", "float")})});
        view = std::make_unique<visu_net>(&p);
        view->add_fin_black_box(black_box("m", 10, 10, BBOX_INSTANCE, 0));
        view->add_fin_black_box(black_box("", 2, 10, BBOX_INPUT, 1));
        view->add_fin_black_box(black_box("", 20, 10, BBOX_OUTPUT, 1));
        view->add_fin_black_box(black_box("", 20, 14, BBOX_OUTPUT, 0));
        view->change_mode(VISUNET_MODE_INSERT);
    }

    // A press and its release, and what they wrote on standard error.
    std::string click(int px, int py, int rx, int ry)
    {
        return stderr_of([&] {
            view->push(px, py);
            view->release(rx, ry);
        });
    }

    std::vector<int> link(int k) const
    {
        const bix_tpen_lien& l = view->ma_table_liens().at(k);
        return {l.mon_ident_ixcmodule_amont(), l.mon_ident_ixcmodule_amont_output(), l.mon_ident_ixcmodule_aval(),
                l.mon_ident_ixcmodule_aval_input()};
    }

    scripted_dialogs dialogs;
    std::unique_ptr<visu_net> view;
};

const char* const start_output = "first_type_object_select= VISUNET_IXCMODULE_OUTPUT_OBJ;\n";
const char* const start_input = "first_type_object_select= VISUNET_IXCMODULE_INPUT_OBJ;\n";
const char* const cleared = "first_type_object_select= VISUNET_NO_OBJ;\n";

TEST_F(EditorView, LinksAreDrawnFromEitherEndAndRouted)
{
    // Output of the "speed" terminal to input a.
    EXPECT_EQ(click(115, 301, 215, 293), std::string(start_output) + cleared);
    // Press on the "out" terminal's input, release on output y.
    EXPECT_EQ(click(550, 301, 380, 293), std::string(start_input) + cleared);
    ASSERT_EQ(view->nbr_transitions(), 2);
    EXPECT_THAT(link(0), ElementsAre(1, 0, 0, 0));
    EXPECT_THAT(link(1), ElementsAre(0, 0, 2, 0));
    // Routed at once: two points on the vertical half-way between the ports.
    bix_tpen_lien routed(0, 0, 2, 0);
    routed.aligne_points(view.get());
    EXPECT_EQ(view->ma_table_liens()[1].liste_positions(), routed.liste_positions());
    EXPECT_EQ(routed.nb_points(), 2);
    EXPECT_TRUE(dialogs.shown.empty());
}

TEST_F(EditorView, RefusedConnectionsShowTheirTextsAndChangeNothing)
{
    // float output to an int output terminal
    EXPECT_EQ(click(380, 308, 550, 301), std::string(start_output) + cleared);
    // input to input
    EXPECT_EQ(click(215, 293, 550, 301), std::string(start_input) + cleared);
    // output to output: only the error stream says so
    EXPECT_EQ(click(115, 301, 380, 293), std::string(start_output) + "bad connection ...\n" + cleared);
    // pure output to an int input: the rule's other wording
    view->ma_table_bbox()[1].change_ident(0);  // now "go", a narrower box
    EXPECT_EQ(click(90, 301, 215, 293), std::string(start_output) + cleared);
    EXPECT_THAT(dialogs.shown,
                ElementsAre("Bad data type between input and output!\n FORBIDDEN connection ...\n"
                            "signal typed with: \"float\" versus signal typed with: \"int\"",
                            "Input to Input connection FORBIDDEN!",
                            "Bad data type between input and output!\n FORBIDDEN connection ...\n"
                            " no typed signal versus signal typed with: \"int\""));
    EXPECT_EQ(view->nbr_transitions(), 0);
}

TEST_F(EditorView, APendingStartOutlivesReleasesElsewhere)
{
    // Released over empty space: the start stays and no box is made.
    EXPECT_EQ(click(115, 301, 700, 450), start_output);
    EXPECT_EQ(view->nbr_black_box(), 4);
    // A press over a box does nothing; the release over an input completes
    // the link started before.
    EXPECT_EQ(click(300, 300, 550, 301), cleared);
    ASSERT_EQ(view->nbr_transitions(), 1);
    EXPECT_THAT(link(0), ElementsAre(1, 0, 2, 0));
    // A release over an input with no start only says so.
    EXPECT_EQ(click(300, 300, 550, 421), std::string("bad connection ...\n") + cleared);
    // The new link leaves the output port horizontally, over the port's
    // area: a press there meets the link, which starts nothing.
    EXPECT_EQ(click(115, 301, 550, 421), std::string("bad connection ...\n") + cleared);
}

TEST_F(EditorView, BoxesFromTheFormAndDefaultBoxes)
{
    // Over empty space the press opens the form; its box goes at the raw
    // press position; the release that follows is the press's own.
    dialogs.forms.push_back({1, black_box("", 0, 0, BBOX_CONSTANT, 1)});
    click(714, 449, 714, 449);
    ASSERT_EQ(view->nbr_black_box(), 5);
    const black_box& made = view->ma_table_bbox()[4];
    EXPECT_EQ(made.mon_tpe(), BBOX_CONSTANT);
    EXPECT_DOUBLE_EQ(made.ma_posx(), 23);
    EXPECT_DOUBLE_EQ(made.ma_posy(), 14);
    // Cancelled: nothing.
    click(714, 600, 714, 600);
    EXPECT_EQ(view->nbr_black_box(), 5);
    EXPECT_THAT(dialogs.shown, ElementsAre("form -1", "form -1"));

    // A release over empty space after a press elsewhere: a default box,
    // snapped to the nearest unit, named by a counter.
    click(300, 300, 714, 600);
    click(300, 300, 90, 90);
    ASSERT_EQ(view->nbr_black_box(), 7);
    EXPECT_EQ(view->ma_table_bbox()[5].mon_nom(), "inst0");
    EXPECT_DOUBLE_EQ(view->ma_table_bbox()[5].ma_posx(), 24);
    EXPECT_DOUBLE_EQ(view->ma_table_bbox()[5].ma_posy(), 20);
    EXPECT_EQ(view->ma_table_bbox()[6].mon_nom(), "inst1");
    EXPECT_EQ(view->ma_table_bbox()[6].mon_tpe(), BBOX_DEFAULT);
    EXPECT_EQ(view->ma_table_bbox()[6].mon_ident(), -1);
    // The default box can be hit, though not drawn: edit mode completes it,
    // keeping its place.
    view->change_mode(VISUNET_MODE_EDIT);
    dialogs.forms.push_back({1, black_box("", 0, 0, BBOX_INPUT, 0)});
    click(95, 95, 95, 95);
    EXPECT_EQ(dialogs.shown.back(), "form 6");
    EXPECT_EQ(view->ma_table_bbox()[6].mon_tpe(), BBOX_INPUT);
    EXPECT_DOUBLE_EQ(view->ma_table_bbox()[6].ma_posx(), 3);
    EXPECT_DOUBLE_EQ(view->ma_table_bbox()[6].ma_posy(), 3);
}

TEST_F(EditorView, AnUnnamedProjectRefusesEveryPress)
{
    view->def_nom_module("");
    for (int mode : {VISUNET_MODE_INSERT, VISUNET_MODE_DELETE}) {
        view->change_mode(mode);
        click(300, 300, 714, 600);
    }
    EXPECT_THAT(dialogs.shown, ElementsAre("NAME THE PROJECT FIRST!", "NAME THE PROJECT FIRST!"));
    EXPECT_EQ(view->nbr_black_box(), 4);
}

TEST_F(EditorView, DeleteModeRemovesBoxesAndLinksNotPorts)
{
    click(115, 301, 215, 293);
    click(550, 301, 380, 293);
    view->change_mode(VISUNET_MODE_DELETE);
    click(215, 308, 215, 308);  // a port: nothing
    EXPECT_EQ(view->nbr_transitions(), 2);
    click(300, 300, 300, 300);  // box 0 and both its links
    EXPECT_EQ(view->nbr_black_box(), 3);
    EXPECT_EQ(view->nbr_transitions(), 0);
    EXPECT_EQ(view->objet_selectionne().type, VISUNET_NO_OBJ);
}

TEST_F(EditorView, TheLastObjectMetIsSelected)
{
    // A link crossing box 0 over its frame.
    view->add_fin_transition(bix_tpen_lien(1, 0, 2, 0, {9, 10, 9, 10}));
    view->detect_object(300, 300);
    EXPECT_EQ(view->objet_selectionne(), (sheet_object{VISUNET_TRANSITION_OBJ, 0, 0}));
    view->detect_object(300, 280);
    EXPECT_EQ(view->objet_selectionne(), (sheet_object{VISUNET_IXCMODULE_OBJ, 0, 0}));
    view->detect_object(380, 308);
    EXPECT_EQ(view->objet_selectionne(), (sheet_object{VISUNET_IXCMODULE_OUTPUT_OBJ, 0, 1}));
    view->detect_object(2000, 2000);
    EXPECT_EQ(view->objet_selectionne().type, VISUNET_NO_OBJ);
}

TEST_F(EditorView, MovingABoxReroutesItsLinksAndTranslatesLoops)
{
    click(115, 301, 215, 293);
    view->add_fin_transition(bix_tpen_lien(0, 0, 0, 1, {13, 9, 13, 8, 7, 8, 7, 10}));
    bix_tpen_lien routed = view->ma_table_liens()[0];
    view->change_mode(VISUNET_MODE_MOVE);
    const std::string err = stderr_of([&] {
        view->push(300, 300);
        view->drag(614, 460, 314, 160);
        view->release(614, 460);
    });
    EXPECT_EQ(err, "");
    const black_box& b = view->ma_table_bbox()[0];
    EXPECT_DOUBLE_EQ(b.ma_posx(), 20);
    EXPECT_DOUBLE_EQ(b.ma_posy(), 15);
    routed.aligne_points(view.get());
    EXPECT_EQ(view->ma_table_liens()[0].liste_positions(), routed.liste_positions());
    EXPECT_EQ(view->ma_table_liens()[1].liste_positions(), (std::vector<double>{23, 14, 23, 13, 17, 13, 17, 15}));
}

TEST_F(EditorView, LinkSegmentsMoveAlongTheNearestMidpoint)
{
    auto points = [&](int k) { return view->ma_table_liens()[k].liste_positions(); };
    view->add_fin_transition(bix_tpen_lien(1, 0, 2, 0, {8, 10, 8, 12}));
    view->add_fin_transition(bix_tpen_lien(0, 0, 1, 0, {14, 9, 14, 12, 1, 12, 1, 10}));
    view->add_fin_transition(bix_tpen_lien(0, 0, 1, 0, {1, 1, 2, 2, 3, 3}));
    view->add_fin_transition(bix_tpen_lien(0, 0, 1, 0));
    // The cursor in model units is (x + 15) / 30: 315 gives 11.
    view->trans_xforms_move(0, 315, 315);
    EXPECT_EQ(points(0), (std::vector<double>{11, 10, 11, 12}));
    view->trans_xforms_move(1, 225, 375);  // nearest the middle segment: y 13
    EXPECT_EQ(points(1), (std::vector<double>{14, 9, 14, 13, 1, 13, 1, 10}));
    view->trans_xforms_move(1, 45, 315);   // nearest the last: x 2
    EXPECT_EQ(points(1), (std::vector<double>{14, 9, 14, 13, 2, 13, 2, 10}));
    EXPECT_EQ(stderr_of([&] { view->trans_xforms_move(2, 0, 0); }),
              "warning: in visu_net::link_xforms_move(): incorrect line with 3points \n");
    EXPECT_EQ(points(2), (std::vector<double>{1, 1, 2, 2, 3, 3}));
    EXPECT_EQ(stderr_of([&] { view->trans_xforms_move(3, 0, 0); }), "");

    // A drag in move mode takes the cursor half a scale up and left.
    view->change_mode(VISUNET_MODE_MOVE);
    view->detect_object(330, 330);
    ASSERT_EQ(view->objet_selectionne(), (sheet_object{VISUNET_TRANSITION_OBJ, 0, 0}));
    view->drag(300, 330, -30, 0);
    EXPECT_EQ(points(0), (std::vector<double>{10, 10, 10, 12}));
}

TEST_F(EditorView, SaveAndExportWriteBatchBytesOrKeepTheOldFile)
{
    scratch_dir dir;
    EXPECT_TRUE(view->sauve(dir.file("q"), "q.bix"));
    EXPECT_EQ(view->mon_nom_module(), "q");
    EXPECT_EQ(read_file(dir.file("q.bix")), text_of([&](std::ostream& os) { view->put_bix(os, "q"); }));
    EXPECT_TRUE(view->export_ix(dir.file("q.bix"), "q"));
    EXPECT_EQ(read_file(dir.file("q.ix")), text_of([&](std::ostream& os) { view->put_ix(os, "q"); }));
    EXPECT_TRUE(view->export_xfig(dir.file("q"), "q"));
    EXPECT_EQ(read_file(dir.file("q.fig")), text_of([&](std::ostream& os) { view->put_xfig(os, "q"); }));

    EXPECT_FALSE(view->sauve(dir.file("none/k"), "k"));
    mkdir(dir.file("d.fig").c_str(), 0755);
    EXPECT_FALSE(view->export_xfig(dir.file("d"), "q"));
    EXPECT_THAT(dialogs.shown,
                ElementsAre("ERROR about writing file : " + dir.file("none/k.bix") + "\ncannot create a file in " +
                                dir.file("none") + ": No such file or directory",
                            "ERROR about writing file : " + dir.file("d.fig") +
                                "\na folder has that name: Is a directory"));
}

TEST_F(EditorView, ClearEmptiesTheProjectAndResetsTheView)
{
    view->change_scale(50);
    view->xforms_hslide(40);
    view->change_mode(VISUNET_MODE_DELETE);
    view->detect_object(300, 300);
    view->clear();
    EXPECT_EQ(view->nbr_black_box() + view->nbr_inputs() + view->nbr_external_ixcmodules(), 0);
    EXPECT_EQ(view->mon_nom_module(), "");
    EXPECT_EQ(view->mon_scale(), 30);
    EXPECT_EQ(view->mon_hslide(), 0);
    EXPECT_EQ(view->mon_mode(), VISUNET_MODE_INSERT);
    EXPECT_EQ(view->objet_selectionne(), sheet_object{});
}

}  // namespace
