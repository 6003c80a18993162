#include "bdd_invariants.h"
#include "bddpp.h"
#include "test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

using ::testing::HasSubstr;
using quilp_test::stderr_of;

namespace {

std::string sop(const bddpp_manager& m, const bdd& f, const std::string& sep = "+")
{
    std::ostringstream os;
    m.Bdd_print_sop(os, f, sep);
    return os.str();
}

struct abc : ::testing::Test {
    bddpp_manager m;
    bdd a = m.New_var_last("a");
    bdd b = m.New_var_last("b");
    bdd c = m.New_var_last("c");
};

TEST(BddVariables, IdsIndicesNamesAndCapacityDoubling)
{
    bddpp_manager m;
    for (int i = 0; i < 70; ++i) {
        bdd v = m.New_var_last("v" + std::to_string(i));
        EXPECT_EQ(m.Id_var_by_bdd(v), i);
        EXPECT_EQ(m.Index_var_by_bdd(v), i);
        EXPECT_EQ(m.Max_bdd_vars(), i < 16 ? 16 : i < 32 ? 32 : i < 64 ? 64 : 128) << i;
    }
    bdd again = m.New_var_last("v5");
    EXPECT_EQ(again, m.Bdd_var_by_id(5));
    EXPECT_EQ(m.Nb_bdd_vars(), 70);
    EXPECT_EQ(m.Name_var_by_index(69), "v69");
    EXPECT_EQ(m.Index_var_by_name("v33"), 33);
    EXPECT_EQ(m.Index_var_by_name("nope"), -1);
    EXPECT_EQ(m.Name_var_by_id(70), "");
    EXPECT_EQ(m.Bdd_total_size(), 70); // one node per variable, the constant aside
    EXPECT_TRUE(m.Bdd_is_var(m.Bdd_var_by_name("v7")));
}

TEST(BddVariables, BeforeAndAfterMoveTheOrder)
{
    bddpp_manager m;
    bdd a = m.New_var_last("a"), b = m.New_var_last("b"), c = m.New_var_last("c");
    bdd t = m.New_var_before(0, "t"); // top of the order
    EXPECT_EQ(m.Id_var_by_bdd(t), 3);
    std::vector<std::string> order;
    for (int i = 0; i < 4; ++i)
        order.push_back(m.Name_var_by_index(i));
    EXPECT_EQ(order, (std::vector<std::string>{"t", "a", "b", "c"}));
    EXPECT_EQ(m.Index_var_by_bdd(a), 1);
    bdd w = m.New_var_after(3, "w"); // after the last position: at the end
    EXPECT_EQ(m.Index_var_by_bdd(w), 4);
    EXPECT_EQ(m.New_var_before(c, "t"), t); // a known name changes nothing
    EXPECT_EQ(m.Nb_bdd_vars(), 5);
    bddpp_manager appended;
    appended.New_var_last("a");
    appended.New_var_last("b");
    bdd u = appended.New_var_after(appended.Bdd_var_by_name("a"), "u");
    EXPECT_EQ(appended.Index_var_by_bdd(u), 1);
    EXPECT_EQ(appended.Index_var_by_name("b"), 2);
    EXPECT_EQ(appended.Id_var_by_index(1), 2);
}

TEST(BddVariables, BadPlacesAndIdsWriteTheirMessages)
{
    bddpp_manager m;
    m.New_var_last("a");
    m.New_var_last("b");
    const std::string bad_index = "Error in new_node_var_before(): abnormal index ...\n";
    bdd_node* n = nullptr;
    EXPECT_EQ(stderr_of([&] { n = m.New_node_var_before(-1, "x"); }), bad_index);
    EXPECT_EQ(n, nullptr);
    EXPECT_EQ(stderr_of([&] { n = m.New_node_var_before(2, "x"); }), bad_index);
    EXPECT_EQ(stderr_of([&] { n = m.New_node_var_after(2, "x"); }), "Error in new_node_var_after(): abnormal id ...\n");
    EXPECT_EQ(n, nullptr);
    EXPECT_EQ(stderr_of([&] { EXPECT_NE(m.New_node_var_before(9, "a"), nullptr); }), "");
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(m.New_var_before(m.Bdd_one(), "x"), bdd()); }), bad_index);
    bdd z;
    EXPECT_EQ(stderr_of([&] { z = m.Bdd_var_by_id(-4); }), "calling bddpp_manager::Bdd_var_by_id() with id= -4 :out of range!\n");
    EXPECT_EQ(z, m.Bdd_zero());
    EXPECT_EQ(stderr_of([&] { z = m.Bdd_ite(1, 2, m.Bdd_one(), m.Bdd_zero()); }),
              "calling bddpp_manager::Bdd_var_by_index() with index= 2 :out of range!\n");
    EXPECT_EQ(z, m.Bdd_zero());
    EXPECT_EQ(stderr_of([&] { z = m.Bdd_var_by_id(2); }), "calling bddpp_manager::Bdd_var_by_id() with id= 2 :out of range!\n");
    EXPECT_EQ(m.Nb_bdd_vars(), 2);
}

// A copy of the manager keeps names and order, not the nodes.
TEST(BddVariables, InsertionsInTheMiddleKeepTheOrderAPermutationAndCopiesKeepTheOrder)
{
    bddpp_manager m;
    for (const char* n : {"a", "b", "c", "d"})
        m.New_var_last(n);
    m.New_var_before(2, "x");  // a b x c d
    m.New_var_before(1, "y");  // a y b x c d
    m.New_var_after(4, "z");   // a y b x c z d
    bdd f = m.Bdd_and(m.Bdd_var_by_name("a"), m.Bdd_var_by_name("b"));
    bddpp_manager copy(&m);
    EXPECT_EQ(copy.Nb_bdd_vars(), 7);
    const char* order[] = {"a", "y", "b", "x", "c", "z", "d"};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(m.Name_var_by_index(i), order[i]);
        EXPECT_EQ(m.Index_var_by_id(m.Id_var_by_index(i)), i);
        EXPECT_EQ(copy.Name_var_by_index(i), order[i]);
        EXPECT_EQ(copy.Id_var_by_index(i), m.Id_var_by_index(i));
    }
    EXPECT_EQ(copy.Index_var_by_name("b"), 2);
    EXPECT_EQ(copy.Bdd_total_size(), 7);
}

TEST(BddVariables, LeadingUnderscoreDroppedOnceAndNamesMapFollows)
{
    bddpp_manager m;
    m.New_var_last("_s_x");
    m.New_var_last("__v");
    m.New_var_last("a");
    m.New_var_last("_a");
    m.Loose_first_underscore_in_names();
    EXPECT_EQ((std::vector<std::string>{m.Name_var_by_id(0), m.Name_var_by_id(1), m.Name_var_by_id(3)}),
              (std::vector<std::string>{"s_x", "_v", "a"}));
    // A shared name ("a") stays with the lower id.
    EXPECT_EQ((std::vector<std::int64_t>{m.Index_var_by_name("s_x"), m.Index_var_by_name("_s_x"),
                                         m.Index_var_by_name("_v"), m.Index_var_by_name("a")}),
              (std::vector<std::int64_t>{0, -1, 1, 2}));
    EXPECT_EQ(m.New_var_last("s_x"), m.Bdd_var_by_id(0));
}

TEST_F(abc, FindOrCreateShortcutsAndCounts)
{
    bdd_node* one = m.Bdd_node_one();
    int out = 1;
    EXPECT_EQ(m.Find_or_create_bdd_node(-1, 1, 1, nullptr, nullptr, out), one);
    out = 1;
    EXPECT_EQ(m.Find_or_create_bdd_node(-2, 1, 1, one, one, out), nullptr);
    out = 1;
    EXPECT_EQ(m.Find_or_create_bdd_node(1, -1, -1, one, one, out), one); // not one, not one: zero
    EXPECT_EQ(out, -1);
    out = 1;
    EXPECT_EQ(m.Find_or_create_bdd_node(1, -1, 1, one, one, out), b.node()); // not (b ? 1 : 0)
    EXPECT_EQ(out, -1);

    // A then-edge complement moves to the edge above.
    out = 1;
    std::int64_t next = m.Next_node_id();
    bdd_node* n = m.Find_or_create_bdd_node(0, -1, 1, c.node(), b.node(), out);
    EXPECT_EQ(out, -1);
    EXPECT_EQ(n->else_link_type(), -1);
    EXPECT_EQ(n->global_id(), next);
    EXPECT_EQ(n->nb_refs(), 1);
    std::uint64_t key = ((((0ull << 22) | static_cast<std::uint64_t>(c.node()->global_id())) << 22)
                         | static_cast<std::uint64_t>(b.node()->global_id()))
        << 1;
    EXPECT_EQ(n->signature(), static_cast<std::int64_t>(key));
    out = 1;
    EXPECT_EQ(m.Find_or_create_bdd_node(0, -1, 1, c.node(), b.node(), out), n);
    EXPECT_EQ(n->nb_refs(), 2); // a hit adds one
    EXPECT_EQ(m.Next_node_id(), next + 1);
    EXPECT_EQ(check_invariants(m), "");
}

TEST_F(abc, FindOrCreateRefusesNodesBelowTheirChildren)
{
    int out = 1;
    bdd_node* n = b.node();
    EXPECT_EQ(stderr_of([&] { n = m.Find_or_create_bdd_node(2, 1, 1, c.node(), b.node(), out); }),
              "FATAL ERROR: Bad call of bddpp_manager::Find_or_create_bdd_node():\n"
              "  index 2 is not less than  its then node index (2)\n");
    EXPECT_EQ(n, nullptr);
    EXPECT_EQ(stderr_of([&] { m.Find_or_create_bdd_node(1, 1, -1, c.node(), a.node(), out); }),
              "FATAL ERROR: Bad call of bddpp_manager::Find_or_create_bdd_node():\n"
              "  index 1 is not less than  its else node index (0)\n");
}

TEST(BddUniqueTable, SignatureIsComputedWithoutOverflow)
{
    bddpp_manager m;
    const bdd_node* one = m.Bdd_node_one();
    std::int64_t v = (std::int64_t(1) << 19) + 5; // a signed shift would overflow here
    std::uint64_t expected = ((((static_cast<std::uint64_t>(v) << 22) | 1u) << 22) | 1u) << 1;
    EXPECT_EQ(bddpp_manager::Signature(v, -1, one, one), static_cast<std::int64_t>(expected));
    EXPECT_EQ(bddpp_manager::Signature(-1, 1, one, one), -1);
    EXPECT_EQ(bddpp_manager::Signature(-3, 1, one, one), -3);
}

// Variables made only at the end: equal functions are one handle. Once a
// variable is put before the others the lookup key (from the index) and the
// stored key (from the id) differ, and equal functions get distinct nodes.
TEST(BddUniqueTable, CanonicalUntilAVariableIsPutBefore)
{
    bddpp_manager m;
    bdd a = m.New_var_last("a"), b = m.New_var_last("b"), c = m.New_var_last("c");
    EXPECT_EQ(m.Bdd_and(a, m.Bdd_or(b, c)), m.Bdd_or(m.Bdd_and(a, b), m.Bdd_and(c, a)));
    EXPECT_EQ(m.Bdd_xor(a, b), m.Bdd_ite(a, m.Bdd_not(b), b));
    EXPECT_EQ(m.Bdd_not(m.Bdd_and(a, b)), m.Bdd_or(m.Bdd_not(a), m.Bdd_not(b)));
    EXPECT_EQ(check_invariants(m), "");

    m.New_var_before(0, "top");
    bdd f1 = m.Bdd_and(b, c);
    bdd f2 = m.Bdd_and(b, c);
    EXPECT_NE(f1.node(), f2.node());
    EXPECT_EQ(sop(m, f1), "b*c");
    EXPECT_EQ(sop(m, f2), "b*c");
}

TEST_F(abc, ConjunctionAndDisjunctionEdgeCases)
{
    bdd one = m.Bdd_one(), zero = m.Bdd_zero();
    EXPECT_EQ(m.Bdd_and(a, m.Bdd_not(a)), zero);
    EXPECT_EQ(m.Bdd_and(m.Bdd_not(a), one), m.Bdd_not(a));
    EXPECT_EQ(m.Bdd_and(one, a), a);
    EXPECT_EQ(m.Bdd_or(a, m.Bdd_not(a)), one);
    EXPECT_EQ(m.Bdd_or(zero, m.Bdd_not(b)), m.Bdd_not(b));
    EXPECT_EQ(m.Bdd_or(b, one), one);
    EXPECT_EQ(m.Bdd_and(b, b), b);
    bdd f = m.Bdd_or(a, c);
    std::int64_t next = m.Next_node_id();
    EXPECT_EQ(m.Bdd_and(zero, f), zero);
    EXPECT_EQ(m.Bdd_and(f, zero), zero);
    EXPECT_EQ(m.Next_node_id(), next); // no recursion, no node
    EXPECT_EQ(m.Bdd_not(m.Bdd_not(f)), f);
    EXPECT_EQ(m.Bdd_not(f).node(), f.node());
    // Cofactors of a complemented handle are the negated children.
    bdd g = m.Bdd_ite(a, b, m.Bdd_not(c));
    bdd ng = m.Bdd_not(g);
    EXPECT_EQ(m.Bdd_then(ng), m.Bdd_not(b));
    EXPECT_EQ(m.Bdd_else(ng), c);
    EXPECT_EQ(m.Bdd_then(one), one);
    EXPECT_EQ(m.Bdd_implication(a, b), m.Bdd_or(m.Bdd_not(a), b));
    EXPECT_EQ(m.Bdd_eq(a, b), m.Bdd_not(m.Bdd_xor(a, b)));
    EXPECT_EQ(m.Bdd_nand(a, b), m.Bdd_not(m.Bdd_and(a, b)));
    EXPECT_EQ(m.Bdd_nor(a, b), m.Bdd_and(m.Bdd_not(a), m.Bdd_not(b)));
    EXPECT_TRUE(m.Bdds_excl(m.Bdd_and(a, b), m.Bdd_not(b)));
    EXPECT_FALSE(m.Bdds_excl(a, b));
}

TEST_F(abc, ReferenceCountsFollowHandlesAndExitsFreeAndDupOnlyReport)
{
    bdd_node* bn = b.node();
    std::int32_t base = bn->nb_refs();
    {
        bdd copy = b;
        bdd other = a;
        EXPECT_EQ(bn->nb_refs(), base + 1);
        other = copy; // moves a count from a's node to b's
        EXPECT_EQ(bn->nb_refs(), base + 2);
        other = m.Bdd_not(copy); // same node: unchanged
        EXPECT_EQ(bn->nb_refs(), base + 2);
        EXPECT_EQ(other.link_type(), -1);
    }
    EXPECT_EQ(bn->nb_refs(), base);
    // A new node: 1 at creation, one more on the conjunction's exit, one for
    // the handle. Asking again: a hit, an exit and a handle.
    bdd f = m.Bdd_and(a, b);
    EXPECT_EQ(f.node()->nb_refs(), 3);
    bdd g = m.Bdd_and(a, b);
    EXPECT_EQ(f.node()->nb_refs(), 6);
    // Counts are upper bounds: nothing referenced is collected.
    g = bdd();
    EXPECT_EQ(m.Bdd_gc(), 0);
    EXPECT_EQ(m.Bdd_and(a, b), f);
    EXPECT_EQ(check_invariants(m), "");
    // Freeing and duplicating only report.
    EXPECT_EQ(stderr_of([&] { m.Bdd_free(a); }), "bddpp_manager::Bdd_free() is now became useless\n");
    bdd d;
    EXPECT_EQ(stderr_of([&] { d = m.Bdd_dup(b); }), "Warning: bddpp_manager::Bdd_dup() is became useless ...\n");
    EXPECT_EQ(d, b);
}

TEST_F(abc, PredicatesAndSizes)
{
    EXPECT_TRUE(m.Bdd_is_var(a));
    EXPECT_FALSE(m.Bdd_is_var(m.Bdd_not(a)));
    EXPECT_TRUE(m.Bdd_is_negvar(m.Bdd_not(a)));
    EXPECT_FALSE(m.Bdd_is_var(m.Bdd_and(a, b)));
    EXPECT_TRUE(m.Bdd_is_cube(m.Bdd_and(a, m.Bdd_not(c))));
    EXPECT_TRUE(m.Bdd_is_cube(m.Bdd_one()));
    EXPECT_FALSE(m.Bdd_is_cube(m.Bdd_zero()));
    EXPECT_FALSE(m.Bdd_is_cube(m.Bdd_or(a, c)));
    EXPECT_TRUE(m.Bdd_is_tautology(m.Bdd_or(a, m.Bdd_not(a))));
    EXPECT_TRUE(m.Bdd_is_tautology(m.Bdd_zero(), 0));
    EXPECT_FALSE(m.Bdd_is_tautology(a, 1));
    EXPECT_TRUE(m.Bdd_is_zero_tautologic(m.Bdd_and(a, m.Bdd_not(a))));
    bdd f = m.Bdd_ite(a, b, m.Bdd_not(c));
    EXPECT_EQ(m.Bdd_size(f), 4); // a, b, c and the constant
    EXPECT_EQ(m.Bdd_size(m.Bdd_one()), 1);
    EXPECT_EQ(m.Bdd_size(bdd()), 0);
    EXPECT_TRUE(m.Bdd_depends_on(f, c));
    EXPECT_FALSE(m.Bdd_depends_on(m.Bdd_and(a, b), c));
    EXPECT_EQ(f.node()->var_id_dep(), (std::vector<std::int64_t>{0, 1, 2}));
    EXPECT_TRUE(m.Bdd_node_one()->var_id_dep().empty());
    EXPECT_EQ(bdd_node().var_index(), -3);
    EXPECT_EQ(m.Bdd_if(f), a);
    EXPECT_EQ(m.Name_var_by_bdd(m.Bdd_not(f)), "a");
}

TEST(BddServices, DependenciesAreIndicesOfTheCurrentOrder)
{
    bddpp_manager m;
    bdd a = m.New_var_last("a"), b = m.New_var_last("b"), c = m.New_var_last("c");
    bdd f = m.Bdd_or(a, c);
    EXPECT_EQ(m.set_of_index_depend_on(f), (std::set<std::int64_t>{0, 2}));
    bdd t = m.New_var_before(0, "t");
    EXPECT_EQ(m.set_of_index_depend_on(f), (std::set<std::int64_t>{1, 3}));
    EXPECT_TRUE(m.set_of_index_depend_on(m.Bdd_zero()).empty());
    bdd g = m.Bdd_and(t, f); // holds f's node, whose answer is kept from above
    EXPECT_EQ(m.set_of_index_depend_on(g), (std::set<std::int64_t>{0, 1, 3}));
    EXPECT_FALSE(m.Bdd_depends_on(g, b));
}

TEST_F(abc, SumOfProductsAndOnePaths)
{
    bdd f = m.Bdd_ite(a, b, m.Bdd_not(c));
    EXPECT_EQ(sop(m, f), "a*b+!a*!c");
    EXPECT_EQ(sop(m, m.Bdd_not(f), " + "), "a*!b + !a*c");
    EXPECT_EQ(sop(m, m.Bdd_one()), "1");
    EXPECT_EQ(sop(m, m.Bdd_zero()), "0");
    EXPECT_EQ(sop(m, bdd()), "0");
    std::vector<std::vector<bdd_literal>> paths;
    ASSERT_TRUE(m.Bdd_one_paths(m.Bdd_not(f), 2, paths));
    EXPECT_EQ(paths, (std::vector<std::vector<bdd_literal>>{{{0, true}, {1, false}}, {{0, false}, {2, true}}}));
    EXPECT_FALSE(m.Bdd_one_paths(f, 1, paths));
    EXPECT_TRUE(paths.empty());
    ASSERT_TRUE(m.Bdd_one_paths(m.Bdd_one(), 1, paths));
    EXPECT_EQ(paths, std::vector<std::vector<bdd_literal>>{{}});
    ASSERT_TRUE(m.Bdd_one_paths(m.Bdd_zero(), 0, paths));
    EXPECT_TRUE(paths.empty());
}

// The measured size of a sum of products is that of the text written, on
// functions sharing nodes under both parities; past 2^64 paths it saturates.
TEST(BddServices, SumOfProductsSizeMatchesTheTextWithoutWritingIt)
{
    bddpp_manager m;
    std::vector<bdd> v;
    for (int i = 0; i < 8; ++i)
        v.push_back(m.New_var_last(std::string(i + 1, static_cast<char>('a' + i))));
    std::uint32_t state = 12345;
    auto next = [&state] { return state = state * 1103515245u + 12345u; };
    for (int round = 0; round < 200; ++round) {
        bdd f = v[next() % 8];
        for (int step = 0; step < 6; ++step) {
            const bdd g = next() % 2 ? v[next() % 8] : m.Bdd_not(v[next() % 8]);
            f = next() % 2 ? m.Bdd_and(f, g) : next() % 2 ? m.Bdd_or(f, g) : m.Bdd_xor(f, g);
        }
        const std::string text = sop(m, f, " + ");
        std::vector<std::vector<bdd_literal>> paths;
        ASSERT_TRUE(m.Bdd_one_paths(f, 1000, paths));
        const bddpp_manager::sop_size size = m.Bdd_sop_size(f);
        EXPECT_EQ(size.length, text.size()) << text;
        EXPECT_EQ(size.paths, paths.size()) << text;
    }
    EXPECT_EQ(m.Bdd_sop_size(m.Bdd_one()).length, 1u);
    EXPECT_EQ(m.Bdd_sop_size(m.Bdd_zero()).paths, 0u);
    EXPECT_EQ(m.Bdd_sop_size(bdd()).paths, 0u);

    bddpp_manager wide;
    bdd parity = wide.Bdd_zero();
    for (int i = 0; i < 70; ++i)
        parity = wide.Bdd_xor(parity, wide.New_var_last("x" + std::to_string(i)));
    const bddpp_manager::sop_size huge = wide.Bdd_sop_size(parity);
    EXPECT_EQ(huge.paths, UINT64_MAX);
    EXPECT_EQ(huge.length, UINT64_MAX);
}

// The file format allows 32767 nodes: a chain over as many variables, built
// bottom-up as the module reader does, must go through every walk and
// operation without exhausting the stack (also under ASan).
TEST(BddDeep, ChainOf32767NodesGoesThroughEveryWalk)
{
    const int n = 32767;
    bddpp_manager m;
    for (int i = 0; i < n; ++i)
        m.New_var_last("v" + std::to_string(i));
    bdd all = m.Bdd_one(), none = m.Bdd_one();
    for (int i = n - 1; i >= 0; --i) {
        all = m.Bdd_ite(1, i, all, m.Bdd_zero()); // v0 * v1 * ... * vn-1
        none = m.Bdd_ite(1, i, m.Bdd_zero(), none); // !v0 * ... * !vn-1
    }
    EXPECT_EQ(m.Bdd_size(all), n + 1);
    EXPECT_EQ(m.set_of_index_depend_on(all).size(), static_cast<std::size_t>(n));
    EXPECT_TRUE(m.Bdd_is_cube(all));
    bdd either = m.Bdd_or(all, none);
    EXPECT_EQ(m.Bdd_size(either), 2 * n - 1); // the two chains share v(n-1)
    EXPECT_EQ(m.Bdd_and(all, none), m.Bdd_zero());
    std::vector<std::vector<bdd_literal>> paths;
    ASSERT_TRUE(m.Bdd_one_paths(either, 10, paths));
    ASSERT_EQ(paths.size(), 2u);
    EXPECT_EQ(paths[1].size(), static_cast<std::size_t>(n));
    std::string text = sop(m, all);
    EXPECT_EQ(std::count(text.begin(), text.end(), '*'), n - 1);
    EXPECT_EQ(text.substr(0, 6), "v0*v1*");
    bdd last = m.Bdd_var_by_index(n - 1);
    bdd all_but_last = m.Bdd_exist(all, last);
    EXPECT_EQ(all_but_last, m.Bdd_compose(all, last, m.Bdd_one()));
    EXPECT_EQ(m.Bdd_and(all_but_last, either), all); // both operands deep all the way down
    EXPECT_EQ(m.Bdd_keep_first_variables(all, n - 1), m.Bdd_exist(all, std::vector<std::int64_t>{n - 1}));
    EXPECT_EQ(check_invariants(m), "");
}

// With a variable put at the top, the lookup for c's index (3) finds the
// node stored under d's id (3): a node of d, above both operands.
TEST(BddDeathTest, ANullOperandOrAResultAboveItsOperandsEndsTheProcess)
{
    bddpp_manager m;
    bdd a = m.New_var_last("a");
    EXPECT_EXIT(m.Bdd_and(bdd(), a), ::testing::ExitedWithCode(1),
                HasSubstr("ERROR: call bddpp_manager::Bdd_and() with null reference\nBdd_and(0,0x"));
    EXPECT_EXIT(m.Bdd_or(a, bdd()), ::testing::ExitedWithCode(1),
                HasSubstr("ERROR: call bddpp_manager::Bdd_or() with null reference\nBdd_or(0x"));

    m.New_var_last("b");
    bdd c = m.New_var_last("c");
    bdd d = m.New_var_before(0, "d");
    bdd e = m.New_var_last("e");
    bdd de = m.Bdd_and(d, e);
    EXPECT_EXIT(m.Bdd_and(c, e), ::testing::ExitedWithCode(1),
                ::testing::AllOf(HasSubstr("INTERNAL ERROR in Bdd_and(): result has an index (0) less than the "
                                           "operands (3) and (4)!\n"),
                                 HasSubstr("x= \n"), HasSubstr("y=\n"), HasSubstr("result=\n")));
}

} // namespace
