// The three writers: the main Ix module, the project file and the Xfig
// drawing, byte for byte; round trips through the reader; drawings checked
// by fig2dev; projects whose indexes point outside their tables.

#include "bix_norm.h"
#include "test_paths.h"
#include "bix_parser.h"
#include "test_support.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <random>
#include <sstream>
#include <tuple>

using namespace quilp_test;

namespace {

using var = bix_declaration_variables;

std::unique_ptr<bix_tpen_fichier> read_text(const std::string& text)
{
    std::istringstream in(text);
    std::ostringstream log;
    std::unique_ptr<bix_tpen_fichier> p;
    stderr_of([&] { p.reset(parse_bix_stream(in, log, 0)); });
    return p;
}

std::unique_ptr<bix_tpen_fichier> read_example(const std::string& name)
{
    return read_text(read_file(quilp_test::examples_dir() + "/" + name));
}

std::string ix_of(const bix_tpen_fichier& p, const std::string& name)
{
    return text_of([&](std::ostream& os) { p.put_ix(os, name); });
}

std::string bix_of(const bix_tpen_fichier& p, const std::string& name)
{
    return text_of([&](std::ostream& os) { p.put_bix(os, name); });
}

std::string fig_of(const bix_tpen_fichier& p)
{
    return text_of([&](std::ostream& os) { p.put_xfig(os, p.mon_nom_module()); });
}

const std::string fig_header =
    "#FIG 3.2\nLandscape\nCenter\nInches\nLetter\n100.00\nSingle\n-2\n1200 2\n";


// A module with nothing inside, the eight section headers, the drawing's
// header alone; a link with neither end nor point draws nothing.
TEST(EmptyProject, EachWriterWritesItsFrameOnly)
{
    bix_tpen_fichier p;
    EXPECT_EQ(ix_of(p, "e"), "module e : \nend\n\n");
    EXPECT_EQ(bix_of(p, "e"), "Name: e;\n\nType:\n;\n\nInput:\n;\n\nOutput:\n;\n\nLocal:\n;\n\nRun:\n;\n\n"
                              "BlackBox:\n;\n\nLink:\n;\n");
    EXPECT_EQ(fig_of(p), fig_header);
    p.add_fin_transition(bix_tpen_lien(-1, 0, -1, 0));
    EXPECT_EQ(fig_of(p), fig_header + "\n");
}

// Two runs, terminals of every kind, links between instances, direct links
// from inputs to outputs and constants wired to instances, outputs and a
// don't-care box.
bix_tpen_fichier full_project()
{
    bix_tpen_fichier p("full", {"int", "speed"}, {var("go", ""), var("rate", "int")},
                       {var("alarm", "pure"), var("level", "int")}, {var("tmp", "bool")},
                       {bix_declaration_ixcmodule("/lib/", "filt", "filter",
                                                  {var("x", "pure"), var("r", "int")}, {var("y", "pure")}),
                        bix_declaration_ixcmodule("", "cnt", "counter", {var("tick", "pure")},
                                                  {var("n", "int")})});
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 0));     // 0 go
    p.add_fin_black_box(black_box("", 0, 4, BBOX_INPUT, 1));     // 1 rate
    p.add_fin_black_box(black_box("f", 8, 0, BBOX_INSTANCE, 0)); // 2 filter
    p.add_fin_black_box(black_box("c", 16, 0, BBOX_INSTANCE, 1));// 3 counter
    p.add_fin_black_box(black_box("", 24, 0, BBOX_OUTPUT, 0));   // 4 alarm
    p.add_fin_black_box(black_box("", 24, 4, BBOX_OUTPUT, 1));   // 5 level
    p.add_fin_black_box(black_box("", 0, 8, BBOX_CONSTANT, 1));  // 6 present
    p.add_fin_black_box(black_box("", 0, 12, BBOX_CONSTANT, 0)); // 7 absent
    p.add_fin_black_box(black_box("", 24, 8, BBOX_DONTCARE, 0)); // 8 don't care
    p.add_fin_black_box(black_box("", 12, 12, BBOX_INSTANCE, -1)); // 9 not completed
    for (const bix_tpen_lien& l : {bix_tpen_lien(0, 0, 2, 0), bix_tpen_lien(1, 0, 2, 1),
                                   bix_tpen_lien(2, 0, 3, 0, {12, 0.5, 12, 1}), bix_tpen_lien(3, 0, 5, 0),
                                   bix_tpen_lien(0, 0, 4, 0), bix_tpen_lien(6, 0, 3, 0), bix_tpen_lien(7, 0, 4, 0),
                                   bix_tpen_lien(6, 0, 5, 0), bix_tpen_lien(1, 0, 5, 0), bix_tpen_lien(6, 0, 8, 0)})
        p.add_fin_transition(l);
    return p;
}

TEST(IxWriter, EverySectionAndTheSharedLoopSeparator)
{
    const bix_tpen_fichier p = full_project();
    std::string ix;
    EXPECT_EQ(stderr_of([&] { ix = ix_of(p, "full"); }), "generation output with a constante : to do ...\n");
    expect_golden("writers/full.ix", ix);
}

TEST(IxWriter, DirectWiringAloneOpensTheLoopWithoutSeparator)
{
    bix_tpen_fichier p("d", {}, {var("i", "pure")}, {var("o", "pure")}, {}, {});
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 0));
    p.add_fin_black_box(black_box("", 5, 0, BBOX_OUTPUT, 0));
    p.add_fin_black_box(black_box("", 0, 5, BBOX_CONSTANT, 0));
    p.add_fin_transition(bix_tpen_lien(2, 0, 1, 0));
    p.add_fin_transition(bix_tpen_lien(0, 0, 1, 0));
    EXPECT_EQ(ix_of(p, "d"),
              "module d : \nInput:\ni\n;\n\nOutput:\no\n;\n\nLocal: \nlink0,\nlink1;\n\n"
              "loop\n{\n  noemit o\n    >>\n    present i { emit o}\n  >> pause\n}\nend\n\n");
}

TEST(BixWriter, RunWithoutPortsAndLinkWithoutPoints)
{
    bix_tpen_fichier p("p", {}, {}, {}, {}, {bix_declaration_ixcmodule("/d/", "f", "m", {}, {})});
    p.add_fin_black_box(black_box("b", 1.5, -2, BBOX_INSTANCE, 0));
    p.add_fin_transition(bix_tpen_lien(0, 1, 0, 2));
    EXPECT_EQ(bix_of(p, "other"),
              "Name: other;\n\nType:\n;\n\nInput:\n;\n\nOutput:\n;\n\nLocal:\n;\n\n"
              "Run:\n\"/d/\": f: m: \nInput:\n;\nOutput:\n;\n\n;\n\n"
              "BlackBox:\n\"b\" 1.5 -2 : 0 : 0\n;\n\n"
              "Link:\nFrom: 0:1 To: 0:2 By:\n;\n");
}

TEST(BixWriter, ShippedExamplesAreWrittenBackByteForByte)
{
    for (const char* name : {"top/top.bix", "alarm/alarm.bix", "cruise/cruise.bix"}) {
        const std::string text = read_file(quilp_test::examples_dir() + "/" + name);
        std::unique_ptr<bix_tpen_fichier> p = read_text(text);
        ASSERT_NE(p, nullptr) << name;
        EXPECT_EQ(bix_of(*p, p->mon_nom_module()), text) << name;
    }
}

void expect_same_tables(const bix_tpen_fichier& a, const bix_tpen_fichier& b)
{
    EXPECT_EQ(a.mon_nom_module(), b.mon_nom_module());
    EXPECT_EQ(a.ma_table_types(), b.ma_table_types());
    EXPECT_EQ(a.ma_table_inputs(), b.ma_table_inputs());
    EXPECT_EQ(a.ma_table_outputs(), b.ma_table_outputs());
    EXPECT_EQ(a.ma_table_locals(), b.ma_table_locals());
    ASSERT_EQ(a.nbr_external_ixcmodules(), b.nbr_external_ixcmodules());
    for (int i = 0; i < a.nbr_external_ixcmodules(); ++i) {
        const bix_declaration_ixcmodule& ra = a.ma_table_external_ixcmodules()[i];
        const bix_declaration_ixcmodule& rb = b.ma_table_external_ixcmodules()[i];
        EXPECT_TRUE(ra == rb);
        EXPECT_EQ(ra.ma_table_inputs(), rb.ma_table_inputs());
        EXPECT_EQ(ra.ma_table_outputs(), rb.ma_table_outputs());
    }
    ASSERT_EQ(a.nbr_black_box(), b.nbr_black_box());
    for (int i = 0; i < a.nbr_black_box(); ++i) {
        EXPECT_TRUE(a.ma_table_bbox()[i] == b.ma_table_bbox()[i]) << "box " << i;
        EXPECT_EQ(a.ma_table_bbox()[i].ma_largeur(), b.ma_table_bbox()[i].ma_largeur());
    }
    ASSERT_EQ(a.nbr_transitions(), b.nbr_transitions());
    for (int i = 0; i < a.nbr_transitions(); ++i) {
        auto fields = [](const bix_tpen_lien& l) {
            return std::make_tuple(l.mon_ident_ixcmodule_amont(), l.mon_ident_ixcmodule_amont_output(),
                                   l.mon_ident_ixcmodule_aval(), l.mon_ident_ixcmodule_aval_input(), l.liste_positions());
        };
        EXPECT_EQ(fields(a.ma_table_liens()[i]), fields(b.ma_table_liens()[i])) << "link " << i;
    }
}

// A random project: bare-word names, integer coordinates below a million
// and a few halves and quarters, all exact in six significant digits; box,
// run and port indexes that may point anywhere, but every link touches at
// least one real box and a loop on one box has bends (a lone point, or two
// equal ones, with an arrow is what fig2dev warns about).
bix_tpen_fichier random_project(unsigned seed, int boxes, int links)
{
    std::mt19937 rng(seed);
    auto pick = [&rng](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    auto word = [&](const char* prefix) { return prefix + std::to_string(pick(1000)); };
    auto type = [&]() {
        const char* types[] = {"", "int", "bool", "speed", "pure"};
        return std::string(types[pick(5)]);
    };
    auto coord = [&]() {
        const double sign = pick(2) ? 1 : -1;
        switch (pick(4)) {
        case 0:
            return sign * pick(9999) / 4;
        case 1:
            return sign * (pick(99999) + 0.5);
        default:
            return sign * pick(1000000);
        }
    };
    std::list<std::string> types;
    std::list<bix_declaration_variables> in, out, loc;
    std::list<bix_declaration_ixcmodule> runs;
    for (int i = pick(5); i > 0; --i)
        types.push_back(word("t"));
    for (int i = pick(8); i > 0; --i)
        in.push_back(var(word("i"), type()));
    for (int i = pick(8); i > 0; --i)
        out.push_back(var(word("o"), type()));
    for (int i = pick(4); i > 0; --i)
        loc.push_back(var(word("l"), type()));
    for (int r = pick(6) + 1; r > 0; --r) {
        std::list<bix_declaration_variables> ri, ro;
        for (int i = pick(5); i > 0; --i)
            ri.push_back(var(word("x"), type()));
        for (int i = pick(5); i > 0; --i)
            ro.push_back(var(word("y"), type()));
        runs.push_back(bix_declaration_ixcmodule("/lib " + word("p") + "/", word("f"), word("m"), ri, ro));
    }
    bix_tpen_fichier p(word("n"), types, in, out, loc, runs);
    for (int i = 0; i < boxes; ++i)
        p.add_fin_black_box(black_box(pick(3) ? word("b") : "", coord(), coord(), pick(6) - 1, pick(12) - 1));
    for (int i = 0; i < links; ++i) {
        std::vector<double> pts;
        for (int k = pick(5); k > 0; --k) {
            pts.push_back(coord());
            pts.push_back(coord());
        }
        const int up = pick(boxes + 2) - 1;
        const int down = up >= 0 && up < boxes ? pick(boxes + 2) - 1 : pick(boxes);
        if (up == down && pts.empty())
            pts = {coord(), coord()};  // a loop on a box has its bends
        p.add_fin_transition(bix_tpen_lien(up, pick(4), down, pick(4), pts));
    }
    p.normalise_diametre_ixcmodules();
    return p;
}

TEST(BixWriter, RoundTripGivesIdenticalTablesInTheSameOrder)
{
    scratch_dir dir;
    for (unsigned seed = 1; seed <= 12; ++seed) {
        const bix_tpen_fichier p = random_project(seed, seed < 10 ? 20 : 400, seed < 10 ? 30 : 500);
        const std::string file = dir.file("p" + std::to_string(seed) + ".bix");
        p.put_bix(file, p.mon_nom_module());
        std::unique_ptr<bix_tpen_fichier> q = read_text(read_file(file));
        ASSERT_NE(q, nullptr) << "seed " << seed;
        expect_same_tables(p, *q);
        EXPECT_EQ(bix_of(*q, q->mon_nom_module()), read_file(file));
    }
}

// Runs fig2dev on a copy of the drawing without its polyline end marks;
// returns fig2dev's error output, or a failure text.
std::string fig2dev_complaints(const std::string& fig, const scratch_dir& dir)
{
    const std::string copy = dir.file("copy.fig");
    const std::string err = dir.file("fig2dev.err");
    std::string stripped;
    std::istringstream lines(fig);
    for (std::string line; std::getline(lines, line);)
        if (line != "\\001")
            stripped += line + "\n";
    write_file(copy, stripped);
    const std::string cmd = "fig2dev -L svg " + copy + " " + dir.file("copy.svg") + " 2>" + err;
    const int rc = std::system(cmd.c_str());
    std::string complaints = read_file(err);
    if (rc != 0)
        complaints += "fig2dev exit status " + std::to_string(rc);
    return complaints;
}

TEST(XfigWriter, BoxesLinksAndTheirClippedEnds)
{
    bix_tpen_fichier p("p", {}, {var("i", "")}, {}, {}, {bix_declaration_ixcmodule("", "m", "mod", {}, {})});
    p.add_fin_black_box(black_box("a", 1, 1, BBOX_INSTANCE, 0));
    p.add_fin_black_box(black_box("", 4, 5, BBOX_INPUT, 0));
    p.add_fin_black_box(black_box("c", 0.0009, -0.0009, BBOX_INSTANCE, -1));
    p.add_fin_transition(bix_tpen_lien(0, 0, 1, 0));
    p.add_fin_transition(bix_tpen_lien(-1, 0, 0, 0));
    p.add_fin_transition(bix_tpen_lien(-1, 0, -1, 0, {2, 3}));
    expect_golden("writers/boxes_links.fig", fig_of(p));
}

TEST(XfigWriter, Fig2devReadsEveryDrawing)
{
    scratch_dir dir;
    std::vector<bix_tpen_fichier> projects{full_project()};
    for (const char* name : {"top/top.bix", "alarm/alarm.bix", "cruise/cruise.bix"})
        projects.push_back(*read_example(name));
    for (unsigned seed = 100; seed < 106; ++seed)
        projects.push_back(random_project(seed, 60, 80));
    for (const bix_tpen_fichier& p : projects)
        EXPECT_EQ(fig2dev_complaints(fig_of(p), dir), "") << p.mon_nom_module();
}

TEST(BadIndexes, WritersAndRoutingNeverReadOutsideATable)
{
    const std::string data = quilp_test::data_dir() + "/bix/bad_indices.";
    std::unique_ptr<bix_tpen_fichier> p = read_text(read_file(data + "bix"));
    ASSERT_NE(p, nullptr);
    // The generated module and drawing are golden files of their own.
    testing::internal::CaptureStderr();
    ix_of(*p, "bad");
    fig_of(*p);
    const std::string bix = bix_of(*p, "bad");
    for (bix_tpen_lien l : p->ma_table_liens())
        l.aligne_points(p.get());
    std::string message;
    for (int i = -1; i <= p->nbr_black_box(); ++i) {
        p->bbox_largeur(i);
        p->bbox_hauteur(i);
        p->correct_type_interconnection(i, 5, i + 1, -3, message);
    }
    testing::internal::GetCapturedStderr();
    std::unique_ptr<bix_tpen_fichier> again = read_text(bix);
    ASSERT_NE(again, nullptr);
    expect_same_tables(*p, *again);
}

}  // namespace
