#include "buddy_side.h"

// BuDDy's C interface only: its C++ class would clash with ours.
#include <bdd.h>
#undef bdd_init
#undef bdd_ithvar
#undef bdd_nithvar

#include <chrono>

namespace buddy_side {

namespace {

constexpr BDD buddy_true = 1;

double seconds_since(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// A fresh kernel per case, large enough that no collection runs.
void start(int nvars, std::size_t nodes)
{
    bdd_init(static_cast<int>(nodes), static_cast<int>(nodes / 8 + 1000));
    bdd_setmaxincrease(static_cast<int>(nodes));
    bdd_setvarnum(nvars);
    bdd_gbc_hook(nullptr);
}

BDD build(const workload::sum_of_products& f)
{
    BDD sum = bdd_addref(bdd_not(buddy_true));
    for (const auto& product : f) {
        BDD p = bdd_addref(buddy_true);
        for (const workload::literal& l : product) {
            BDD next = bdd_addref(bdd_and(p, l.positive ? bdd_ithvar(l.var) : bdd_nithvar(l.var)));
            bdd_delref(p);
            p = next;
        }
        BDD next = bdd_addref(bdd_or(sum, p));
        bdd_delref(p);
        bdd_delref(sum);
        sum = next;
    }
    return sum;
}

} // namespace

double build_table(int nvars, const std::vector<workload::node_row>& rows, std::size_t& nodes)
{
    start(nvars, 2 * rows.size() + static_cast<std::size_t>(nvars) * 2 + 10000);
    std::vector<BDD> built(rows.size(), buddy_true);
    auto t0 = std::chrono::steady_clock::now();
    for (std::size_t r = 1; r < rows.size(); ++r) {
        const workload::node_row& n = rows[r];
        BDD e = built[static_cast<std::size_t>(n.else_row)];
        if (n.else_link != 1)
            e = bdd_not(e);
        built[r] = bdd_addref(bdd_ite(bdd_ithvar(n.var), built[static_cast<std::size_t>(n.then_row)], e));
    }
    double s = seconds_since(t0);
    nodes = static_cast<std::size_t>(bdd_getnodenum());
    bdd_done();
    return s;
}

double apply_pairs(int nvars, const std::vector<workload::sum_of_products>& functions,
                   const std::vector<std::pair<int, int>>& pairs, long& result_nodes)
{
    start(nvars, 4000000);
    std::vector<BDD> f;
    for (const auto& sop : functions)
        f.push_back(build(sop));
    std::vector<BDD> results;
    results.reserve(2 * pairs.size());
    auto t0 = std::chrono::steady_clock::now();
    for (const auto& p : pairs) {
        results.push_back(bdd_addref(bdd_and(f[static_cast<std::size_t>(p.first)], f[static_cast<std::size_t>(p.second)])));
        results.push_back(bdd_addref(bdd_or(f[static_cast<std::size_t>(p.first)], f[static_cast<std::size_t>(p.second)])));
    }
    double s = seconds_since(t0);
    result_nodes = 0;
    for (BDD r : results)
        result_nodes += bdd_nodecount(r) + 1; // with the terminal, as Bdd_size counts
    bdd_done();
    return s;
}

} // namespace buddy_side
