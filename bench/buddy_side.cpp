#include "buddy_side.h"

// BuDDy's C interface only: its C++ class would clash with ours.
#include <bdd.h>
#undef bdd_init
#undef bdd_ithvar
#undef bdd_nithvar
#undef bdd_makeset

#include <chrono>

namespace buddy_side {

namespace {

constexpr BDD buddy_true = 1;

double seconds_since(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// Collections are silenced, nothing else is changed.
void start(init with, int nvars)
{
    bdd_init(with.nodes, with.cache);
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

long size_of(BDD r)
{
    return bdd_nodecount(r) + 1; // with the terminal, as Bdd_size counts
}

} // namespace

double load_table(init with, const std::vector<workload::node_row>& rows, long& nodes)
{
    auto t0 = std::chrono::steady_clock::now();
    start(with, workload::load_vars);
    std::vector<BDD> built(rows.size(), buddy_true);
    for (std::size_t r = 1; r < rows.size(); ++r) {
        const workload::node_row& n = rows[r];
        BDD e = built[static_cast<std::size_t>(n.else_row)];
        if (n.else_link != 1)
            e = bdd_not(e);
        built[r] = bdd_addref(bdd_ite(bdd_ithvar(n.var), built[static_cast<std::size_t>(n.then_row)], e));
    }
    double s = seconds_since(t0);
    nodes = bdd_getnodenum();
    bdd_done();
    return s;
}

double apply_pairs(init with, int nvars, const std::vector<workload::sum_of_products>& functions,
                   const std::vector<std::pair<int, int>>& pairs, long& result_nodes)
{
    std::vector<BDD> results;
    results.reserve(2 * pairs.size());
    auto t0 = std::chrono::steady_clock::now();
    start(with, nvars);
    std::vector<BDD> f;
    for (const auto& sop : functions)
        f.push_back(build(sop));
    for (const auto& p : pairs) {
        results.push_back(bdd_addref(bdd_and(f[static_cast<std::size_t>(p.first)], f[static_cast<std::size_t>(p.second)])));
        results.push_back(bdd_addref(bdd_or(f[static_cast<std::size_t>(p.first)], f[static_cast<std::size_t>(p.second)])));
    }
    double s = seconds_since(t0);
    result_nodes = 0;
    for (BDD r : results)
        result_nodes += size_of(r);
    bdd_done();
    return s;
}

double quantify(init with, int nvars, const std::vector<workload::sum_of_products>& functions,
                const std::vector<std::vector<int>>& sets, long& result_nodes)
{
    std::vector<BDD> results;
    results.reserve(2 * functions.size() * sets.size());
    auto t0 = std::chrono::steady_clock::now();
    start(with, nvars);
    std::vector<BDD> f;
    for (const auto& sop : functions)
        f.push_back(build(sop));
    std::vector<BDD> cubes;
    for (const auto& set : sets) {
        std::vector<int> vars(set);
        cubes.push_back(bdd_addref(bdd_makeset(vars.data(), static_cast<int>(vars.size()))));
    }
    for (BDD g : f)
        for (BDD c : cubes) {
            results.push_back(bdd_addref(bdd_exist(g, c)));
            results.push_back(bdd_addref(bdd_forall(g, c)));
        }
    double s = seconds_since(t0);
    result_nodes = 0;
    for (BDD r : results)
        result_nodes += size_of(r);
    bdd_done();
    return s;
}

} // namespace buddy_side
