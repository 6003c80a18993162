#include "Bddexpression.h"
#include "test_support.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>

using ::testing::HasSubstr;
using quilp_test::stderr_of;

namespace {

// A wood of n variables "x0".."xn-1" whose equations are given as lists of
// read variables (each equation is the conjunction of what it reads).
struct wood_of {
    Bddexpressionwood w;
    explicit wood_of(int n)
    {
        for (int i = 0; i < n; ++i)
            w.Index_new_var_last("x" + std::to_string(i));
    }
    Bddexpression* define(std::int64_t k, const std::vector<std::int64_t>& reads)
    {
        bdd f = w.Bdd_one();
        for (std::int64_t j : reads)
            f = w.Bdd_and(f, w.Bdd_var_by_index(j));
        return new Bddexpression("x" + std::to_string(k), &w, w.Bdd_var_by_index(k), f, 0);
    }
    std::int64_t earliest(std::int64_t k) { return w.exp_by_index(k)->getEarliestDate(); }
};

std::vector<std::int64_t> as_vector(const std::list<std::int64_t>& l)
{
    return {l.begin(), l.end()};
}

TEST(WoodLearning, ReplacingAnEquationMovesItsReaderEdges)
{
    wood_of t(4);
    Bddexpression* first = t.define(3, {0, 1});
    EXPECT_EQ(t.w.Readers(0), (std::set<std::int64_t>{3}));
    EXPECT_EQ(t.w.Readers(1), (std::set<std::int64_t>{3}));
    t.w.learn_expression(first); // the same equation again: nothing changes
    EXPECT_EQ(t.w.exp_number(), 1);
    Bddexpression* second = t.define(3, {1, 2});
    EXPECT_EQ(t.w.exp_by_index(3), second);
    EXPECT_TRUE(t.w.Readers(0).empty());
    EXPECT_EQ(t.w.Readers(2), (std::set<std::int64_t>{3}));
    EXPECT_EQ(t.w.exp_number(), 1);
    second->setBddExp(t.w.Bdd_var_by_index(0));
    EXPECT_EQ(t.w.Readers(0), (std::set<std::int64_t>{3}));
    EXPECT_TRUE(t.w.Readers(2).empty());
    EXPECT_EQ(second->getVarsDependance(), (std::set<std::int64_t>{0}));
}

TEST(WoodLearning, BadEquationsAreReportedAndIgnored)
{
    bddpp_manager other; // outlives the wood, which holds an equation of it
    for (int i = 0; i < 5; ++i)
        other.New_var_last("o" + std::to_string(i));
    wood_of t(2);
    EXPECT_EQ(stderr_of([&] { t.w.learn_expression(nullptr); }),
              "INTERNAL ERROR in Bddexpressionwood::learn_expression():\nno expression !!!\n\n");
    EXPECT_EQ(stderr_of([&] { new Bddexpression("k", &t.w, t.w.Bdd_one(), t.w.Bdd_zero(), 0); }),
              "INTERNAL ERROR in Bddexpressionwood::learn_expression():\nno left member in expression\n\n");
    EXPECT_EQ(stderr_of([&] { new Bddexpression("o4", &t.w, other.Bdd_var_by_index(4), other.Bdd_one(), 0); }),
              "INTERNAL ERROR in Bddexpressionwood::learn_expression():\nbdd variable doesn't exist in Bdd manager\n\n");
    EXPECT_EQ(t.w.exp_number(), 0);
}

TEST(WoodLearning, FileDatesRaiseTheLevelAndAbstractEquationsKeepTheirSet)
{
    wood_of t(6);
    new Bddexpression("x2", &t.w, t.w.Bdd_var_by_index(2), t.w.Bdd_var_by_index(0), 3, 7);
    EXPECT_EQ(t.w.latest_date(2), 7);
    EXPECT_EQ(t.w.Nb_level(), 7);
    EXPECT_EQ(t.w.compute_dates(), 7); // already dated by the file
    Bddexpression* v = new Bddexpression(5, &t.w, {1, 3, 99, -2}, "VALUE_SIGNAL", 9, 0);
    EXPECT_TRUE(v->isAbstract());
    EXPECT_EQ(v->getName(), "x5");
    EXPECT_EQ(v->getExpDef(), "VALUE_SIGNAL");
    EXPECT_EQ(v->getUserType(), 0);
    EXPECT_EQ(v->getVarsDependance(), (std::set<std::int64_t>{-2, 1, 3, 99}));
    EXPECT_EQ(t.w.Readers(3), (std::set<std::int64_t>{5}));
    EXPECT_EQ(t.w.Nb_level(), 9);
    EXPECT_FALSE(t.w.exp_by_index(2)->isAbstract());
}

TEST(WoodLearning, TablesFollowVariablesMadeThroughTheWood)
{
    Bddexpressionwood w;
    EXPECT_EQ(w.compute_dates(), 0); // no variable
    EXPECT_EQ(w.Index_new_var_last("_s_a"), 0);
    EXPECT_EQ(w.Index_new_var_last("_v_a"), 1);
    EXPECT_EQ(w.Index_new_var_last("_s_a"), 0);
    EXPECT_EQ(w.New_var_after_by_index(1, "z"), 2);
    EXPECT_EQ(w.New_var_before_by_index(0, "top"), 0);
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(w.New_var_before_by_index(9, "bad"), -1); }),
              "Error in new_node_var_before(): abnormal index ...\n");
    EXPECT_EQ(w.Index_var_by_name("_v_a"), 2);
    for (int i = 0; i < 40; ++i)
        w.Index_new_var_last("n" + std::to_string(i));
    new Bddexpression("n39", &w, w.Bdd_var_by_index(43), w.Bdd_var_by_index(2), 0);
    EXPECT_EQ(w.Readers(2), (std::set<std::int64_t>{43}));
    EXPECT_EQ(Bddexpressionwood::grown_capacity(1, 44), 64);
    EXPECT_EQ(Bddexpressionwood::grown_capacity(1, std::int64_t(1) << 29), std::int64_t(1) << 29);
}

TEST(WoodLearning, SharedManagerOutlivesItsWoods)
{
    bddpp_manager* shared = new bddpp_manager;
    {
        Bddexpressionwood a(shared), b(shared);
        a.setCommonBddManager(1);
        b.setCommonBddManager(1);
        a.Index_new_var_last("x");
        EXPECT_EQ(b.Nb_bdd_vars(), 1);
        new Bddexpression("x", &a, a.Bdd_var_by_index(0), a.Bdd_one(), 0);
    }
    {
        bdd y = shared->New_var_last("y");
        EXPECT_EQ(y, shared->Bdd_var_by_index(1));
    }
    Bddexpressionwood owner(shared); // not shared: destroys the manager
}

TEST(WoodLookups, EachFailureWritesItsLine)
{
    wood_of t(3);
    t.define(1, {0});
    bdd x0 = t.w.Bdd_var_by_index(0), x1 = t.w.Bdd_var_by_index(1);
    EXPECT_EQ(t.w.exp_by_bdd(x1)->getName(), "x1");
    EXPECT_EQ(t.w.Index_exp_by_name("x1"), 1);
    EXPECT_EQ(t.w.Name_exp_by_bdd(x1), "x1");
    EXPECT_EQ(t.w.Bddname_exp_by_index(1), "x1");
    EXPECT_EQ(t.w.exp(0), t.w.exp_by_name("x1"));
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(t.w.exp_by_index(2), nullptr); }), "");
    EXPECT_EQ(stderr_of([&] { t.w.exp_by_index(3); }), "ERROR in Bddexpressionwood::exp_by_index : id `3' not found!\n");
    EXPECT_EQ(stderr_of([&] { t.w.exp_by_index(-1); }), "ERROR in Bddexpressionwood::exp_by_index : id `-1' not found!\n");
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(t.w.exp_by_bdd(x0), nullptr); }),
              "ERROR in Bddexpressionwood::exp_by_bdd : bdd not found!\n");
    EXPECT_THAT(stderr_of([&] { EXPECT_EQ(t.w.exp_by_name("x0"), nullptr); }),
                HasSubstr("ERROR in Bddexpressionwood::exp_by_name : `x0"));
    EXPECT_THAT(stderr_of([&] { EXPECT_EQ(t.w.Index_exp_by_name("q"), -1); }),
                HasSubstr("ERROR in Bddexpressionwood::Index_exp_by_name : `q"));
    EXPECT_THAT(stderr_of([&] { EXPECT_EQ(t.w.Name_exp_by_index(0), ""); }),
                HasSubstr("ERROR: in Bddexpressionwood::Name_exp_by_index(): index"));
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(t.w.Name_exp_by_bdd(x0), ""); }),
              "ERROR: in Bddexpressionwood::Name_exp_by_bdd(): bdd not found!\n");
    EXPECT_THAT(stderr_of([&] { EXPECT_EQ(t.w.Bddname_exp_by_index(7), ""); }),
                HasSubstr("ERROR: in Bddexpressionwood::Bddname_exp_by_index(): id"));
    EXPECT_THAT(stderr_of([&] { EXPECT_EQ(t.w.exp(1), nullptr); }), HasSubstr("ERROR in Bddexpressionwood::exp():"));
}

// a <- b <- c: b reads a, c reads b; a is an input. Then a tree.
TEST(WoodDates, ChainAndTreeDatesRiseBothWaysAndAreComputedOnce)
{
    wood_of t(3);
    t.define(1, {0});
    t.define(2, {1});
    EXPECT_EQ(t.w.compute_dates(), 3);
    EXPECT_EQ((std::vector<std::int64_t>{t.earliest(1), t.earliest(2)}), (std::vector<std::int64_t>{1, 2}));
    // The latest date of a is recorded though a has no equation.
    EXPECT_EQ((std::vector<std::int64_t>{t.w.latest_date(0), t.w.latest_date(1), t.w.latest_date(2)}),
              (std::vector<std::int64_t>{2, 1, 0}));
    EXPECT_EQ(as_vector(t.w.earliest_sort()), (std::vector<std::int64_t>{1, 2}));
    EXPECT_EQ(as_vector(t.w.latest_sort()), (std::vector<std::int64_t>{2, 1}));
    EXPECT_TRUE(t.w.loop_detection().empty());
    EXPECT_EQ(as_vector(t.w.down_critical_path(0)), (std::vector<std::int64_t>{0, 1, 2}));
    EXPECT_EQ(as_vector(t.w.up_critical_path(2)), (std::vector<std::int64_t>{2, 1, 0}));

    t.w.Index_new_var_last("x3");
    t.define(3, {2}); // would lengthen the chain
    EXPECT_EQ(t.w.compute_dates(), 3); // the stored level, no recomputation
    t.w.reset_dates();
    EXPECT_EQ(t.w.compute_dates(), 4);
    EXPECT_EQ(t.earliest(3), 3);

    // x0 reads x1 and x2; x1 reads the inputs x3 and x4; x2 reads the input x5.
    wood_of tree(6);
    tree.define(0, {1, 2});
    tree.define(1, {3, 4});
    tree.define(2, {5});
    EXPECT_EQ(tree.w.compute_dates(), 3);
    EXPECT_EQ(as_vector(tree.w.earliest_sort()), (std::vector<std::int64_t>{1, 2, 0}));
    EXPECT_EQ(as_vector(tree.w.latest_sort()), (std::vector<std::int64_t>{0, 1, 2}));
    EXPECT_EQ(tree.w.latest_date(5), 2);
    EXPECT_EQ(as_vector(tree.w.up_critical_path(0)), (std::vector<std::int64_t>{0, 1, 3}));
}

TEST(WoodDates, TwoVariableCycleIsCaughtAndStopsPastTwiceTheCount)
{
    wood_of pair(2);
    pair.define(0, {1});
    pair.define(1, {0});
    EXPECT_EQ(pair.w.compute_dates(), 2 * 2 + 1);
    EXPECT_EQ(as_vector(pair.w.loop_detection()), (std::vector<std::int64_t>{0, 1}));

    wood_of t(4);
    t.define(1, {0, 2}); // x1 reads the input x0 and x2
    t.define(2, {1});    // x2 reads x1: a cycle
    t.define(3, {2});    // x3 below the cycle
    EXPECT_GT(t.w.compute_dates(), 2 * 4);
    EXPECT_EQ(as_vector(t.w.loop_detection()), (std::vector<std::int64_t>{1, 2, 3}));
    std::list<std::int64_t> path;
    EXPECT_EQ(stderr_of([&] { path = t.w.down_critical_path(1); }),
              "WARNING in Bddexpressionwood::down_critical_path():\n"
              "   possible infinite recursion due to a signals cycle\n");
    EXPECT_THAT(stderr_of([&] { t.w.up_critical_path(2); }), HasSubstr("possible infinite recursion"));
}

// Dates of random DAGs against an independent longest-path computation.
TEST(WoodDates, RandomAcyclicWoodsMatchLongestPaths)
{
    std::uint64_t seed = 12345;
    auto next = [&](int n) {
        seed = seed * 6364136223846793005ull + 1442695040888963407ull;
        return static_cast<int>((seed >> 33) % static_cast<std::uint64_t>(n));
    };
    for (int round = 0; round < 60; ++round) {
        const int n = 2 + next(40);
        wood_of t(n);
        // Variables are defined in a random rank order and read only
        // variables of a lower rank: no cycle.
        std::vector<int> by_rank(n);
        std::iota(by_rank.begin(), by_rank.end(), 0);
        for (int v = n - 1; v > 0; --v)
            std::swap(by_rank[v], by_rank[next(v + 1)]);
        std::vector<std::vector<std::int64_t>> reads(n);
        std::vector<bool> defined(n, false), read(n, false);
        for (int r = 0; r < n; ++r) {
            const int v = by_rank[r];
            if (next(4) == 0)
                continue; // an input
            defined[v] = true;
            for (int q = 0; q < r; ++q)
                if (next(3) == 0) {
                    reads[v].push_back(by_rank[q]);
                    read[by_rank[q]] = true;
                }
            std::sort(reads[v].begin(), reads[v].end());
            t.define(v, reads[v]);
        }
        const std::int64_t level = t.w.compute_dates();

        std::vector<std::int64_t> early(n, 0), late(n, 0);
        for (int v : by_rank)
            for (std::int64_t u : reads[v])
                early[v] = std::max(early[v], defined[u] ? early[u] + 1 : 1);
        for (auto v = by_rank.rbegin(); v != by_rank.rend(); ++v)
            for (std::int64_t u : reads[*v])
                late[u] = std::max(late[u], late[*v] + 1);
        std::int64_t expected_level = 0;
        std::size_t equations = 0;
        for (int v = 0; v < n; ++v) {
            if (defined[v]) {
                ++equations;
                EXPECT_EQ(t.earliest(v), early[v]) << "round " << round << " x" << v;
                if (early[v] > 0 || !read[v]) // dated by propagation, or a sink
                    expected_level = std::max(expected_level, early[v] + 1);
            }
            EXPECT_EQ(t.w.latest_date(v), late[v]) << "round " << round << " x" << v;
            if (late[v] > 0)
                expected_level = std::max(expected_level, late[v] + 1);
        }
        EXPECT_EQ(level, expected_level) << "round " << round;
        EXPECT_TRUE(t.w.loop_detection().empty());
        std::list<std::int64_t> order = t.w.earliest_sort();
        EXPECT_TRUE(std::is_sorted(order.begin(), order.end(), [&](std::int64_t a, std::int64_t b) {
            return t.earliest(a) < t.earliest(b);
        }));
        EXPECT_EQ(order.size(), equations);
    }
}

// 10^5 equations in a chain, then closed into a cycle: propagation must not
// exhaust the machine stack (also under ASan).
TEST(WoodDates, ChainOfAHundredThousandEquations)
{
    const int n = 100000;
    Bddexpressionwood w;
    for (int i = 0; i < n; ++i)
        w.Index_new_var_last("x" + std::to_string(i));
    for (int i = 1; i < n; ++i)
        new Bddexpression("x", &w, w.Bdd_var_by_index(i), w.Bdd_var_by_index(i - 1), 0);
    EXPECT_EQ(w.compute_dates(), n);
    EXPECT_EQ(w.exp_by_index(n - 1)->getEarliestDate(), n - 1);
    EXPECT_EQ(w.latest_date(0), n - 1);
    EXPECT_EQ(w.down_critical_path(0).size(), static_cast<std::size_t>(n));

    new Bddexpression("x", &w, w.Bdd_var_by_index(0), w.Bdd_var_by_index(n - 1), 0);
    w.reset_dates();
    EXPECT_EQ(w.compute_dates(), 2 * n + 1);
    EXPECT_EQ(w.loop_detection().size(), static_cast<std::size_t>(n));
}

TEST(WoodRelaxation, HelpersRelaxOneEquationAndReportBadIndices)
{
    wood_of t(3);
    Bddexpression* e = t.define(2, {0, 1});
    std::vector<std::int64_t> dates{0, 4, 2};
    bool overflow = false;
    EXPECT_TRUE(Bddexpressionwood::learn_upstream_dependance(3, dates, e, overflow));
    EXPECT_EQ(dates, (std::vector<std::int64_t>{0, 4, 5}));
    EXPECT_FALSE(overflow);
    EXPECT_FALSE(Bddexpressionwood::learn_upstream_dependance(3, dates, e, overflow));
    EXPECT_TRUE(Bddexpressionwood::learn_downstream_dependance(3, dates, e, overflow));
    EXPECT_EQ(dates, (std::vector<std::int64_t>{6, 6, 5}));
    EXPECT_TRUE(overflow); // 6 reaches 2n
    EXPECT_EQ(stderr_of([&] { EXPECT_FALSE(Bddexpressionwood::learn_downstream_dependance(2, dates, e, overflow)); }),
              "INTERNAL ERROR in learn_downstream_dependance()\n");
    EXPECT_EQ(stderr_of([&] { Bddexpressionwood::learn_upstream_dependance(3, dates, nullptr, overflow); }),
              "INTERNAL ERROR in learn_upstream_dependance()\n");
}

TEST(WoodRelaxation, StandaloneDatingNamesTheCycle)
{
    wood_of t(5);
    std::vector<Bddexpression*> exps{t.define(1, {0}), t.define(2, {1})};
    std::vector<std::int64_t> early, late;
    testing::internal::CaptureStdout();
    EXPECT_TRUE(Bddexpressionwood::date_expressions(5, exps, early, late));
    EXPECT_EQ(early, (std::vector<std::int64_t>{0, 1, 2, 0, 0}));
    EXPECT_EQ(late, (std::vector<std::int64_t>{2, 1, 0, 0, 0}));
    exps.push_back(t.define(3, {4}));
    exps.push_back(t.define(4, {3, 2}));
    EXPECT_FALSE(Bddexpressionwood::date_expressions(5, exps, early, late));
    // x3 and x4 read each other; x2 and x1, read by the cycle, have their
    // latest dates climb with it.
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "CYCLE DE CAUSALITE SUR:\nx1\nx2\nx3\nx4\n");
    EXPECT_GE(early[3], 10);
    EXPECT_LT(early[2], 10);
}

TEST(WoodDeathTest, TableOverflowEndsTheProcess)
{
    EXPECT_EXIT(Bddexpressionwood::grown_capacity(1, (std::int64_t(1) << 29) + 1), ::testing::ExitedWithCode(1),
                HasSubstr("in Bddexpressionwood: Nb bdd vars reached!\nprogram aborted ...\n"));
}

} // namespace
