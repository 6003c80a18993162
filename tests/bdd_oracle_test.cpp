// Random programs run side by side in this package and in BuDDy: every
// intermediate function must agree (rebuilt in BuDDy from our nodes), with
// the same satisfying count and one-paths, and two slots must be the same
// handle exactly when BuDDy says they are the same function.

#include "bdd_invariants.h"
#include "bddpp.h"
#include "buddy_oracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

namespace {

constexpr int max_vars = 14;

struct xorshift {
    std::uint64_t s;
    std::uint64_t next()
    {
        s ^= s << 13;
        s ^= s >> 7;
        s ^= s << 17;
        return s;
    }
    int below(int n) { return static_cast<int>(next() % static_cast<std::uint64_t>(n)); }
};

std::vector<int> some_vars(xorshift& r, int nv)
{
    std::vector<int> vars;
    for (int k = 1 + r.below(3); k > 0; --k)
        vars.push_back(r.below(nv));
    std::sort(vars.begin(), vars.end());
    vars.erase(std::unique(vars.begin(), vars.end()), vars.end());
    return vars;
}

// Every variable first; then a few sums of products of literals; then random
// operations on those and on their results.
std::vector<oracle::step> make_program(xorshift& r, int nv)
{
    using oracle::op;
    std::vector<oracle::step> p;
    auto last = [&] { return static_cast<int>(p.size()) - 1; };
    for (int v = 0; v < nv; ++v)
        p.push_back({op::var, v, 0, 0, {}});
    std::vector<int> sums;
    for (int f = 3 + r.below(4); f > 0; --f) {
        int sum = -1;
        for (int t = 3 + r.below(10); t > 0; --t) {
            int product = -1;
            for (int l = 2 + r.below(4); l > 0; --l) {
                int literal = r.below(nv);
                if (r.below(2)) {
                    p.push_back({op::not_, literal, 0, 0, {}});
                    literal = last();
                }
                if (product >= 0)
                    p.push_back({op::and_, product, literal, 0, {}});
                product = product >= 0 ? last() : literal;
            }
            if (sum >= 0)
                p.push_back({r.below(4) ? op::or_ : op::xor_, sum, product, 0, {}});
            sum = sum >= 0 ? last() : product;
        }
        sums.push_back(sum);
    }
    const op kinds[] = {op::not_,  op::and_,    op::and_,  op::or_,     op::or_,    op::xor_,
                        op::xor_,  op::ite,     op::ite,   op::ite_var, op::exist,  op::forall,
                        op::compose, op::replace, op::keep_first};
    int length = static_cast<int>(p.size()) + 20 + r.below(20);
    while (static_cast<int>(p.size()) < length) {
        int n = static_cast<int>(p.size());
        auto operand = [&] {
            int pick = r.below(3);
            return pick == 0 ? sums[static_cast<std::size_t>(r.below(static_cast<int>(sums.size())))]
                 : pick == 1 ? n - 1 - r.below(std::min(n - nv, 8))
                             : nv + r.below(n - nv);
        };
        op k = kinds[r.below(static_cast<int>(sizeof kinds / sizeof kinds[0]))];
        oracle::step s{k, operand(), operand(), operand(), {}};
        switch (k) {
        case op::ite_var:
            s = {k, r.below(nv), r.below(2) ? 1 : -1, operand(), {operand()}};
            break;
        case op::exist:
        case op::forall:
            s.vars = some_vars(r, nv);
            break;
        case op::compose:
            s.b = r.below(nv);
            break;
        case op::replace:
            for (int v = 0; v < nv; ++v)
                s.vars.push_back(r.below(2) ? v : r.below(nv));
            if (r.below(2)) { // a transposition, run through Bdd_swap_vars
                s.vars.clear();
                for (int v = 0; v < nv; ++v)
                    s.vars.push_back(v);
                std::swap(s.vars[static_cast<std::size_t>(r.below(nv))], s.vars[static_cast<std::size_t>(r.below(nv))]);
            }
            break;
        case op::keep_first:
            s.b = r.below(nv + 1);
            break;
        default:
            break;
        }
        p.push_back(s);
    }
    return p;
}

std::vector<bdd> run_here(bddpp_manager& m, const std::vector<oracle::step>& program, int step_seed)
{
    using oracle::op;
    std::vector<bdd> s;
    auto ids = [](const std::vector<int>& vars) { return std::vector<std::int64_t>(vars.begin(), vars.end()); };
    for (const oracle::step& st : program) {
        // Alternate the two forms of the quantifiers.
        bool cube_form = (s.size() + static_cast<std::size_t>(step_seed)) % 2 == 0;
        bdd cube = m.Bdd_one();
        for (int v : st.vars)
            cube = m.Bdd_and(cube, m.Bdd_var_by_id(v));
        switch (st.kind) {
        case op::var: s.push_back(m.Bdd_var_by_id(st.a)); break;
        case op::not_: s.push_back(m.Bdd_not(s[st.a])); break;
        case op::and_: s.push_back(m.Bdd_and(s[st.a], s[st.b])); break;
        case op::or_: s.push_back(m.Bdd_or(s[st.a], s[st.b])); break;
        case op::xor_: s.push_back(m.Bdd_xor(s[st.a], s[st.b])); break;
        case op::ite: s.push_back(m.Bdd_ite(s[st.a], s[st.b], s[st.c])); break;
        case op::ite_var: s.push_back(m.Bdd_ite(st.b, st.a, s[st.c], s[st.vars[0]])); break;
        case op::exist: s.push_back(cube_form ? m.Bdd_exist(s[st.a], cube) : m.Bdd_exist(s[st.a], ids(st.vars))); break;
        case op::forall: s.push_back(cube_form ? m.Bdd_forall(s[st.a], cube) : m.Bdd_forall(s[st.a], ids(st.vars))); break;
        case op::compose: s.push_back(m.Bdd_compose(s[st.a], m.Bdd_var_by_id(st.b), s[st.c])); break;
        case op::replace: {
            std::vector<int> moved;
            for (int v = 0; v < static_cast<int>(st.vars.size()); ++v)
                if (st.vars[static_cast<std::size_t>(v)] != v)
                    moved.push_back(v);
            bool swap = moved.size() == 2 && st.vars[static_cast<std::size_t>(moved[0])] == moved[1]
                && st.vars[static_cast<std::size_t>(moved[1])] == moved[0];
            s.push_back(swap ? m.Bdd_swap_vars(s[st.a], m.Bdd_var_by_id(moved[0]), m.Bdd_var_by_id(moved[1]))
                             : m.Bdd_replace_vars(s[st.a], ids(st.vars)));
            break;
        }
        case op::keep_first: s.push_back(m.Bdd_keep_first_variables(s[st.a], st.b)); break;
        }
    }
    return s;
}

oracle::exported export_function(const bddpp_manager& m, const bdd& f)
{
    oracle::exported ex{{oracle::row{-1, 0, 0, 1}}, f.link_type(), 0};
    std::map<const bdd_node*, int> row_of{{m.Bdd_node_one(), 0}};
    std::vector<const bdd_node*> stack{f.node()};
    while (!stack.empty()) {
        const bdd_node* n = stack.back();
        if (row_of.count(n)) {
            stack.pop_back();
            continue;
        }
        const bdd_node* t = n->then_node();
        const bdd_node* e = n->else_node();
        if (!row_of.count(t) || !row_of.count(e)) {
            stack.push_back(t);
            stack.push_back(e);
            continue;
        }
        row_of[n] = static_cast<int>(ex.rows.size());
        ex.rows.push_back(oracle::row{static_cast<int>(n->var_id()), row_of[t], row_of[e], n->else_link_type()});
        stack.pop_back();
    }
    ex.root_row = row_of[f.node()];
    return ex;
}

std::vector<std::vector<signed char>> paths_here(const bddpp_manager& m, const bdd& f, double& count)
{
    std::vector<std::vector<signed char>> out;
    count = 0;
    m.Bdd_for_each_one_path(f, [&](const std::vector<bdd_literal>& path) {
        std::vector<signed char> profile(max_vars, -1);
        for (const bdd_literal& l : path)
            profile[static_cast<std::size_t>(l.var_id)] = l.positive ? 1 : 0;
        out.push_back(profile);
        count += std::ldexp(1.0, max_vars - static_cast<int>(path.size()));
        return true;
    });
    std::sort(out.begin(), out.end());
    return out;
}

TEST(BddOracle, RandomProgramsAgreeWithBuddy)
{
    oracle::session buddy(max_vars);
    xorshift r{0x2545F4914F6CDD1Dull};
    for (int program_number = 0; program_number < 2000; ++program_number) {
        int nv = r.below(5) ? 6 + r.below(max_vars - 5) : 1 + r.below(5);
        std::vector<oracle::step> program = make_program(r, nv);
        bddpp_manager m;
        for (int v = 0; v < nv; ++v)
            m.New_var_last("x" + std::to_string(v));
        std::vector<bdd> here = run_here(m, program, program_number);
        buddy.run(program);
        int n = static_cast<int>(here.size());
        for (int s = 0; s < n; ++s) {
            ASSERT_TRUE(buddy.same_function(s, export_function(m, here[static_cast<std::size_t>(s)])))
                << "program " << program_number << " slot " << s;
            double count = 0;
            std::vector<std::vector<signed char>> paths = paths_here(m, here[static_cast<std::size_t>(s)], count);
            ASSERT_EQ(count, buddy.satcount(s)) << "program " << program_number << " slot " << s;
            if (s >= n - 3) {
                ASSERT_EQ(paths, buddy.paths(s)) << "program " << program_number << " slot " << s;
            }
            for (int t = 0; t < s; ++t)
                ASSERT_EQ(buddy.same_function(s, t), here[static_cast<std::size_t>(s)] == here[static_cast<std::size_t>(t)])
                    << "program " << program_number << " slots " << t << " and " << s;
        }
        ASSERT_EQ(check_invariants(m), "") << "program " << program_number;
    }
}

} // namespace
