// The project model: deletions and their renumbering, replacement, the link
// type rule, diameters, lookups and the indexed readers' reports.

#include "bix_norm.h"
#include "test_support.h"

#include <gmock/gmock.h>

#include <cstdlib>

using namespace quilp_test;

namespace {

using var = bix_declaration_variables;
using ends = std::vector<std::pair<int, int>>;

// Three instances A, B, C of one run, with links A->B and B->C.
bix_tpen_fichier three_boxes()
{
    bix_tpen_fichier p("p", {}, {}, {}, {},
                       {bix_declaration_ixcmodule("/lib/", "m", "m", {var("i", "int")}, {var("o", "int")})});
    p.add_fin_black_box(black_box("A", 0, 0, BBOX_INSTANCE, 0));
    p.add_fin_black_box(black_box("B", 10, 0, BBOX_INSTANCE, 0));
    p.add_fin_black_box(black_box("C", 20, 0, BBOX_INSTANCE, 0));
    p.add_fin_transition(bix_tpen_lien(0, 0, 1, 0));
    p.add_fin_transition(bix_tpen_lien(1, 0, 2, 0, {15, 0}));
    return p;
}

// The ident of each box, in order.
std::vector<int> idents(const bix_tpen_fichier& p)
{
    std::vector<int> v;
    for (const black_box& b : p.ma_table_bbox())
        v.push_back(b.mon_ident());
    return v;
}

// The upstream and downstream boxes of each link, in order.
ends link_ends(const bix_tpen_fichier& p)
{
    ends e;
    for (const bix_tpen_lien& l : p.ma_table_liens())
        e.emplace_back(l.mon_ident_ixcmodule_amont(), l.mon_ident_ixcmodule_aval());
    return e;
}

// Edits on a copy leave the original as it was.
TEST(ModelDeletion, BoxRemovesItsLinksAndRenumbersTheOthers)
{
    const bix_tpen_fichier original = three_boxes();
    bix_tpen_fichier p(original);
    p.sup_black_box(0);
    p.add_fin_input(var("z", ""));
    EXPECT_EQ((std::vector<int>{original.nbr_black_box(), original.nbr_transitions(), original.nbr_inputs()}),
              (std::vector<int>{3, 2, 0}));
    ASSERT_EQ(p.nbr_black_box(), 2);
    EXPECT_EQ(p.ma_table_bbox()[0].mon_nom(), "B");
    ASSERT_EQ(link_ends(p), (ends{{0, 1}}));
    EXPECT_EQ(p.ma_table_liens()[0].liste_positions(), (std::vector<double>{15, 0}));

    // the middle box: both its links go, unrelated ones keep their order
    p = three_boxes();
    p.add_fin_transition(bix_tpen_lien(2, 0, 0, 0));
    p.add_fin_transition(bix_tpen_lien(-1, 0, 2, 0));
    p.sup_black_box(1);
    EXPECT_EQ(link_ends(p), (ends{{1, 0}, {-1, 1}}));
}

TEST(ModelDeletion, OutOfRangeIndexesAreReportedAndChangeNothing)
{
    bix_tpen_fichier p = three_boxes();
    EXPECT_EQ(stderr_of([&] { p.sup_black_box(3); p.sup_black_box(-1); p.sup_transition(2); }),
              "ERROR in bix_tpen_fichier::sup_ixcmodule: out of range\n"
              "ERROR in bix_tpen_fichier::sup_ixcmodule: out of range\n"
              "ERROR in bix_tpen_fichier::sup_transition: out of range\n");
    EXPECT_EQ(link_ends(p), (ends{{0, 1}, {1, 2}}));
    EXPECT_EQ(idents(p), (std::vector<int>{0, 0, 0}));
}

TEST(ModelDeletion, InputRenumbersTerminalsAndReportsOneStillInUse)
{
    bix_tpen_fichier p("p", {}, {var("a", ""), var("b", ""), var("c", "")}, {var("a", "")}, {}, {});
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 1));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 2));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_OUTPUT, 0));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 0));
    EXPECT_EQ(stderr_of([&] { p.sup_input(1); }), "error in sup_input() about input 1! \n");
    EXPECT_EQ(p.nbr_inputs(), 2);
    EXPECT_EQ(p.nom_input(1), "c");
    // The first box is left pointing at the removed input; the output
    // terminal is not touched.
    EXPECT_EQ(idents(p), (std::vector<int>{1, 1, 0, 0}));

    EXPECT_EQ(stderr_of([&] { p.sup_output(0); }), "error in sup_output() about output 0! \n");
    EXPECT_EQ(p.nbr_outputs(), 0);
}

TEST(ModelReplace, OnlyALinkBetweenTheSameBoxesReplacesIt)
{
    bix_tpen_fichier p = three_boxes();
    EXPECT_EQ(stderr_of([&] {
                  p.replace_transition(0, bix_tpen_lien(0, 0, 2, 0));
                  p.replace_transition(0, bix_tpen_lien(2, 0, 1, 0));
              }),
              "probleme interne dans bix_tpen_fichier::replace_transition() sur l'ixcmodule aval\n"
              "probleme interne dans bix_tpen_fichier::replace_transition() sur l'ixcmodule amont\n");
    EXPECT_EQ(p.ma_table_liens()[0].mon_ident_ixcmodule_aval(), 1);
    EXPECT_TRUE(p.ma_table_liens()[0].liste_positions().empty());

    p.replace_transition(0, bix_tpen_lien(0, 0, 1, 0, {5, 5}));
    EXPECT_EQ(p.ma_table_liens()[0].liste_positions(), (std::vector<double>{5, 5}));
}

TEST(ModelEquality, BoxesIgnoreDiameterAndGeneratedName)
{
    black_box a("x", 1, 2, BBOX_INSTANCE, 0);
    black_box b("x", 1, 2, BBOX_INSTANCE, 0);
    b.change_largeur(9.0);
    EXPECT_NE(a.mon_nom_defaut(), b.mon_nom_defaut());
    EXPECT_FALSE(a != b);
    b.change_ma_posy(3);
    EXPECT_TRUE(a != b);

    bix_declaration_ixcmodule m1("/p/", "f", "m", {var("i", "int")}, {});
    bix_declaration_ixcmodule m2("/p/", "f", "m", {var("j", "bool")}, {});
    bix_declaration_ixcmodule m3("/p/", "f", "m", {}, {});
    EXPECT_TRUE(m1 == m2);  // ports are counted, not compared
    EXPECT_FALSE(m1 == m3);
    EXPECT_FALSE(var("a", "int") == var("a", ""));
}

// Boxes: 0 input "i" (int), 1 input "g" (pure), 2 output "o" (int),
// 3 constant, 4 don't care, 5 instance of run m (inputs a:int, b:pure;
// output r:int).
bix_tpen_fichier typed_project()
{
    bix_tpen_fichier p("p", {"int"}, {var("i", "int"), var("g", "pure")}, {var("o", "int")}, {},
                       {bix_declaration_ixcmodule("", "m", "m", {var("a", "int"), var("b", "pure")},
                                                  {var("r", "int")})});
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 0));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 1));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_OUTPUT, 0));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_CONSTANT, 1));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_DONTCARE, 0));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INSTANCE, 0));
    return p;
}

TEST(ModelTypeRule, MatchingTypesAndDontCareBoxesPassMismatchesExplainBothSides)
{
    const bix_tpen_fichier p = typed_project();
    std::string message = "untouched";
    EXPECT_EQ(p.correct_type_interconnection(0, 0, 5, 0, message), 1);  // int -> int
    EXPECT_EQ(p.correct_type_interconnection(3, 0, 5, 1, message), 1);  // constant -> pure
    EXPECT_EQ(p.correct_type_interconnection(5, 0, 2, 0, message), 1);  // int -> int
    EXPECT_EQ(p.correct_type_interconnection(4, 0, 5, 7, message), 1);  // don't care, bad port
    EXPECT_EQ(p.correct_type_interconnection(1, 0, 4, 0, message), 1);
    EXPECT_EQ(message, "untouched");
    // mismatches explain both sides
    EXPECT_EQ(p.correct_type_interconnection(0, 0, 5, 1, message), 0);
    EXPECT_EQ(message, "signal typed with: \"int\" versus no typed signal");
    EXPECT_EQ(p.correct_type_interconnection(1, 0, 5, 0, message), 0);
    EXPECT_EQ(message, " no typed signal versus signal typed with: \"int\"");
    // a bad port or box gives the empty type
    EXPECT_EQ(p.correct_type_interconnection(5, 3, 2, 0, message), 0);
    EXPECT_EQ(message, "signal typed with: \"\" versus signal typed with: \"int\"");
    EXPECT_EQ(p.correct_type_interconnection(3, 0, 99, 0, message), 0);
    EXPECT_EQ(message, " no typed signal versus signal typed with: \"\"");
}

TEST(ModelDiameter, FromTheRunNameForInstancesAndOneOtherwise)
{
    bix_tpen_fichier p("p", {}, {var("i", "")}, {}, {},
                       {bix_declaration_ixcmodule("", "f", "a_rather_long_name", {}, {}),
                        bix_declaration_ixcmodule("", "f", "ab", {}, {})});
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INSTANCE, 0));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INSTANCE, 1));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INPUT, 0));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INSTANCE, -1));
    p.add_fin_black_box(black_box("", 0, 0, BBOX_INSTANCE, 42));
    p.normalise_diametre_ixcmodules();
    std::vector<double> widths;
    for (const black_box& b : p.ma_table_bbox())
        widths.push_back(b.ma_largeur());
    // ident -1 keeps its diameter; ident 42 names a run that does not exist
    EXPECT_THAT(widths, testing::Pointwise(testing::DoubleEq(), std::vector<double>{18 / 3.4, 1, 1, 4, 1}));
}

TEST(ModelLookup, NamesAndRunsAreFoundOrAppended)
{
    bix_tpen_fichier p = three_boxes();
    p.add_fin_output(var("o1", ""));
    p.add_fin_output(var("o2", ""));
    p.add_fin_local(var("l", "int"));
    EXPECT_EQ((std::vector<int>{p.ident_output("o2"), p.ident_output("l"), p.ident_local("l"), p.ident_action("x"),
                                p.ident_black_box("C")}),
              (std::vector<int>{1, -1, 0, -1, 2}));

    black_box unnamed;
    p.add_fin_black_box(unnamed);
    EXPECT_EQ(p.ident_black_box(unnamed.mon_nom_defaut()), 3);

    EXPECT_EQ(p.ident_et_add_external_ixcmodule("m"), 0);
    EXPECT_EQ(p.ident_et_add_external_ixcmodule("n"), 1);
    EXPECT_EQ(p.nbr_external_ixcmodules(), 2);
    EXPECT_EQ(p.nom_fichier_external_ixcmodule(1), "n");
    EXPECT_EQ(p.chemin_external_ixcmodule(1), "");
}

TEST(ModelReaders, BadIndexesAreReportedWithAnEmptyResult)
{
    bix_tpen_fichier p = three_boxes();
    p.add_fin_input(var("a", "bool"));
    p.add_fin_input(var("b", "int"));
    p.add_fin_input(var("c", "bool"));
    EXPECT_EQ(p.nbr_inputs_bool(), 2);

    EXPECT_EQ(stderr_of([&] {
                  EXPECT_EQ(p.nom_input(3), "");
                  EXPECT_EQ(p.nom_black_box(7), "");
                  EXPECT_EQ(p.nb_inputs_external_ixcmodule(-2), 0);
              }),
              "PROBLEME DANS L'UTILISATION DE 'nom_input()':\nAUCUNE VARIABLE DE CE TYPE\n"
              "PROBLEME DANS L'UTILISATION DE 'nom_black_box()':\nIDENT 7 DEMANDE\n"
              "PROBLEME DANS L'UTILISATION DE 'nb_inputs_external_ixcmodule()':\nIDENT -2 DEMANDE\n");

    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(p.nom_black_box(1), "B"); EXPECT_EQ(p.type_input(1), "int"); }), "");
}

TEST(ModelNames, GeneratedNamesFollowTheCLibraryGenerator)
{
    std::srand(7);
    const std::string first = bix_norm_genere_nom();
    ASSERT_EQ(first.size(), 16u);
    std::srand(7);
    for (char c : first)
        EXPECT_EQ(c, 'A' + static_cast<int>(std::rand() * 26.0 / 2147483648.0));
}

TEST(ModelIdents, TranslationsSkipMinusOne)
{
    black_box b("", 0, 0, BBOX_INSTANCE, -1);
    b.translate_ident(3);
    EXPECT_EQ(b.mon_ident(), -1);
    b.change_ident(2);
    b.translate_ident(3);
    EXPECT_EQ(b.mon_ident(), 5);
    bix_tpen_lien l(-1, 0, 4, 1);
    l.translate_ident_ixcmodules(-2);
    EXPECT_EQ(std::make_pair(l.mon_ident_ixcmodule_amont(), l.mon_ident_ixcmodule_aval()), std::make_pair(-1, 2));
}

}  // namespace
