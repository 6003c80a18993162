// Side-by-side timings of this BDD package and BuDDy, and of the wood's
// dating. Run by hand; see README.md.
//
//   bdd_bench          all cases
//   bdd_bench quick    the smaller sizes only

#include "Bddexpression.h"
#include "bddpp.h"
#include "buddy_side.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

namespace {

using workload::literal;
using workload::node_row;
using workload::sum_of_products;

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

double seconds_since(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Best of a few runs.
double best_of(int runs, const std::function<double()>& run)
{
    double best = 1e300;
    for (int i = 0; i < runs; ++i)
        best = std::min(best, run());
    return best;
}

// Best of a few runs of each side, the two sides alternating so that a
// change in the machine's load falls on both.
std::pair<double, double> best_of_both(int runs, const std::function<double()>& ours,
                                       const std::function<double()>& theirs)
{
    double a = 1e300, b = 1e300;
    for (int i = 0; i < runs; ++i) {
        a = std::min(a, ours());
        b = std::min(b, theirs());
    }
    return {a, b};
}

void report(const char* workload, long size, double items, double ours, double theirs)
{
    if (theirs > 0)
        std::printf("%-34s %9ld %12.0f %12.0f %8.2f\n", workload, size, items / ours, items / theirs, ours / theirs);
    else
        std::printf("%-34s %9ld %12.0f %12s %8s\n", workload, size, items / ours, "-", "-");
    std::fflush(stdout);
}

// ---------------------------------------------------------------- (a)

// A node table as a compiled module holds it: rows bottom-up, the deepest
// variables first, children taken among the rows of the next few levels.
std::vector<node_row> make_table(int rows, int nvars, std::uint64_t seed)
{
    xorshift r{seed};
    std::vector<node_row> table{node_row{-1, 0, 0, 1}};
    std::vector<int> level_start(static_cast<std::size_t>(nvars) + 1, 0);
    int per_level = std::max(1, rows / nvars);
    for (int v = nvars - 1; v >= 0 && static_cast<int>(table.size()) <= rows; --v) {
        int first = static_cast<int>(table.size());
        int lower = v + 4 <= nvars - 1 ? level_start[static_cast<std::size_t>(v + 4)] : 0;
        for (int k = 0; k < per_level; ++k) {
            int span = first - lower;
            int t = span > 0 ? lower + r.below(span) : 0;
            int e = span > 0 ? lower + r.below(span) : 0;
            int link = r.below(2) ? 1 : -1;
            if (t == e && link == 1)
                link = -1;
            table.push_back(node_row{v, t, e, link});
        }
        level_start[static_cast<std::size_t>(v)] = first;
    }
    return table;
}

double build_table_here(int nvars, const std::vector<node_row>& rows, std::size_t& nodes)
{
    bddpp_manager m; // fresh: global ids stay under 2^22
    for (int v = 0; v < nvars; ++v)
        m.New_var_last("v" + std::to_string(v));
    std::vector<bdd> built(rows.size(), m.Bdd_one());
    auto t0 = std::chrono::steady_clock::now();
    for (std::size_t r = 1; r < rows.size(); ++r) {
        const node_row& n = rows[r];
        const bdd& e = built[static_cast<std::size_t>(n.else_row)];
        bdd else_edge(&m, n.else_link * e.link_type(), e.node());
        built[r] = m.Bdd_ite(1, n.var, built[static_cast<std::size_t>(n.then_row)], else_edge);
    }
    double s = seconds_since(t0);
    nodes = static_cast<std::size_t>(m.Bdd_total_size());
    return s;
}

void bench_tables(bool quick)
{
    for (int rows : {100000, 300000, 1000000}) {
        if (quick && rows > 100000)
            break;
        const int nvars = 1000;
        std::vector<node_row> table = make_table(rows, nvars, 0x9E3779B97F4A7C15ull + static_cast<std::uint64_t>(rows));
        std::size_t ours_nodes = 0, their_nodes = 0;
        auto [ours, theirs] = best_of_both(
            5, [&] { return build_table_here(nvars, table, ours_nodes); },
            [&] { return buddy_side::build_table(nvars, table, their_nodes); });
        report("(a) node table, ite on top var", rows, static_cast<double>(table.size() - 1), ours, theirs);
    }
}

// ---------------------------------------------------------------- (b)

std::vector<sum_of_products> make_functions(int count, int nvars, int products, std::uint64_t seed)
{
    xorshift r{seed};
    std::vector<sum_of_products> fns;
    for (int f = 0; f < count; ++f) {
        sum_of_products sop;
        for (int p = 0; p < products; ++p) {
            std::vector<literal> product;
            for (int l = 3 + r.below(4); l > 0; --l)
                product.push_back(literal{r.below(nvars), r.below(2) == 0});
            sop.push_back(product);
        }
        fns.push_back(sop);
    }
    return fns;
}

bdd build_here(bddpp_manager& m, const sum_of_products& f)
{
    bdd sum = m.Bdd_zero();
    for (const auto& product : f) {
        bdd p = m.Bdd_one();
        for (const literal& l : product) {
            bdd v = m.Bdd_var_by_index(l.var);
            p = m.Bdd_and(p, l.positive ? v : m.Bdd_not(v));
        }
        sum = m.Bdd_or(sum, p);
    }
    return sum;
}

// Global ids must stay under 2^22, where the signature's fields would start
// to overlap: the functions are rebuilt in a fresh manager (untimed) before
// that point.
double apply_pairs_here(int nvars, const std::vector<sum_of_products>& fns,
                        const std::vector<std::pair<int, int>>& pairs, long& result_nodes)
{
    const std::int64_t id_budget = 3000000;
    double seconds = 0;
    result_nodes = 0;
    std::size_t next = 0;
    while (next < pairs.size()) {
        bddpp_manager m;
        for (int v = 0; v < nvars; ++v)
            m.New_var_last("v" + std::to_string(v));
        std::vector<bdd> f;
        for (const auto& sop : fns)
            f.push_back(build_here(m, sop));
        std::vector<bdd> results;
        auto t0 = std::chrono::steady_clock::now();
        for (; next < pairs.size() && m.Next_node_id() < id_budget; ++next) {
            const auto& p = pairs[next];
            results.push_back(m.Bdd_and(f[static_cast<std::size_t>(p.first)], f[static_cast<std::size_t>(p.second)]));
            results.push_back(m.Bdd_or(f[static_cast<std::size_t>(p.first)], f[static_cast<std::size_t>(p.second)]));
        }
        seconds += seconds_since(t0);
        for (const bdd& r : results)
            result_nodes += m.Bdd_size(r);
    }
    return seconds;
}

void bench_apply(bool quick)
{
    const int nvars = 32;
    const int count = 40;
    for (int products : {4, 6, 8}) {
        if (quick && products > 4)
            break;
        std::vector<sum_of_products> fns = make_functions(count, nvars, products, 77 + static_cast<std::uint64_t>(products));
        std::vector<std::pair<int, int>> pairs;
        for (int i = 0; i < count; ++i)
            for (int j = i + 1; j < count; ++j)
                pairs.emplace_back(i, j);
        long ours_nodes = 0, their_nodes = 0;
        auto [ours, theirs] = best_of_both(
            3, [&] { return apply_pairs_here(nvars, fns, pairs, ours_nodes); },
            [&] { return buddy_side::apply_pairs(nvars, fns, pairs, their_nodes); });
        char name[64];
        std::snprintf(name, sizeof name, "(b) and/or ops, %d-product sums", products);
        double ops = static_cast<double>(2 * pairs.size());
        report(name, static_cast<long>(ops), ops, ours, theirs);
        // Complement edges let f and not f share nodes: the sizes differ a little.
        std::printf("    mean result size: %.0f nodes here, %.0f in BuDDy\n", ours_nodes / ops, their_nodes / ops);
        std::fflush(stdout);
    }
}

// ---------------------------------------------------------------- (c)

// reads[k]: the indices read by the equation of variable k.
double date_wood(const std::vector<std::vector<std::int64_t>>& reads, std::int64_t& level)
{
    Bddexpressionwood w;
    std::int64_t n = static_cast<std::int64_t>(reads.size());
    for (std::int64_t i = 0; i < n; ++i)
        w.Index_new_var_last("x" + std::to_string(i));
    for (std::int64_t k = 0; k < n; ++k) {
        if (reads[static_cast<std::size_t>(k)].empty())
            continue;
        bdd f = w.Bdd_zero();
        for (std::int64_t j : reads[static_cast<std::size_t>(k)])
            f = w.Bdd_or(f, w.Bdd_var_by_index(j));
        new Bddexpression("x", &w, w.Bdd_var_by_index(k), f, 0);
    }
    auto t0 = std::chrono::steady_clock::now();
    level = w.compute_dates();
    return seconds_since(t0);
}

void bench_dates(bool quick)
{
    for (int n : {10000, 100000}) {
        if (quick && n > 10000)
            break;
        xorshift r{42 + static_cast<std::uint64_t>(n)};
        std::vector<std::vector<std::int64_t>> chain(static_cast<std::size_t>(n)), tree(static_cast<std::size_t>(n)),
            dag(static_cast<std::size_t>(n));
        for (int k = 1; k < n; ++k) {
            chain[static_cast<std::size_t>(k)] = {k - 1};
            dag[static_cast<std::size_t>(k)].push_back(r.below(k));
            for (int extra = r.below(3); extra > 0; --extra)
                dag[static_cast<std::size_t>(k)].push_back(std::max(0, k - 1 - r.below(std::min(k, 50))));
        }
        for (int k = 0; 2 * k + 2 < n; ++k)
            tree[static_cast<std::size_t>(k)] = {2 * k + 1, 2 * k + 2}; // a node reads its two children
        for (auto& d : dag) {
            std::sort(d.begin(), d.end());
            d.erase(std::unique(d.begin(), d.end()), d.end());
        }
        std::int64_t level = 0;
        report("(c) compute_dates, chain", n, n, best_of(3, [&] { return date_wood(chain, level); }), 0);
        report("(c) compute_dates, binary tree", n, n, best_of(3, [&] { return date_wood(tree, level); }), 0);
        report("(c) compute_dates, random DAG", n, n, best_of(3, [&] { return date_wood(dag, level); }), 0);
    }
    // Read against the index order, the recursive dating revisits the chain
    // from every variable: quadratic, by the algorithm's definition.
    for (int n : {1000, 10000}) {
        std::vector<std::vector<std::int64_t>> reversed(static_cast<std::size_t>(n));
        for (int k = 0; k + 1 < n; ++k)
            reversed[static_cast<std::size_t>(k)] = {k + 1};
        std::int64_t level = 0;
        report("(c) compute_dates, reversed chain", n, n, best_of(1, [&] { return date_wood(reversed, level); }), 0);
    }
}

} // namespace

int main(int argc, char** argv)
{
    bool quick = argc > 1 && std::strcmp(argv[1], "quick") == 0;
    std::printf("%-34s %9s %12s %12s %8s\n", "workload", "size", "quilp/s", "BuDDy/s", "time x");
    bench_tables(quick);
    bench_apply(quick);
    bench_dates(quick);
    return 0;
}
