#include "bdd_workloads.h"

#include <algorithm>

namespace workload {

std::vector<int> load_table_sizes(int total_rows)
{
    std::vector<int> sizes;
    for (int left = total_rows; left > 0; left -= load_table_rows)
        sizes.push_back(std::min(left, load_table_rows));
    return sizes;
}

std::vector<node_row> load_table(int which, int rows)
{
    const int nvars = load_vars;
    xorshift r{0x9E3779B97F4A7C15ull ^ (static_cast<std::uint64_t>(which + 1) * 0xC2B2AE3D27D4EB4Full)};
    std::vector<node_row> table{node_row{-1, 0, 0, 1}};
    table.reserve(static_cast<std::size_t>(rows) + 1);
    std::vector<int> level_start(static_cast<std::size_t>(nvars) + 4, 0);
    int left = rows;
    for (int v = nvars - 1; v >= 0; --v) {
        const int first = static_cast<int>(table.size());
        level_start[static_cast<std::size_t>(v)] = first;
        // Children among the rows of the next four levels (the constant too
        // near the bottom).
        const int lower = v + 4 <= nvars - 1 ? level_start[static_cast<std::size_t>(v + 4)] : 0;
        const int span = first - lower;
        // An even share of what is left, but no more rows than the level can
        // hold distinct functions (few near the bottom).
        int here = left / (v + 1);
        here = std::min(here, std::max(1, span * span / 2));
        for (int k = 0; k < here; ++k) {
            int t = lower + r.below(span);
            int e = lower + r.below(span);
            int link = r.below(100) < load_complemented_percent ? -1 : 1;
            if (t == e)
                link = -1; // ite(v, f, f) is f itself, not a row of this level
            table.push_back(node_row{v, t, e, link});
        }
        left -= here;
    }
    return table;
}

std::vector<sum_of_products> random_functions(int count, int nvars, int products, std::uint64_t seed)
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

std::vector<std::pair<int, int>> all_pairs(int count)
{
    std::vector<std::pair<int, int>> pairs;
    for (int i = 0; i < count; ++i)
        for (int j = i + 1; j < count; ++j)
            pairs.emplace_back(i, j);
    return pairs;
}

std::vector<std::vector<int>> random_var_sets(int sets, int size, int nvars, std::uint64_t seed)
{
    xorshift r{seed};
    std::vector<std::vector<int>> all;
    for (int s = 0; s < sets; ++s) {
        std::vector<int> vars;
        while (static_cast<int>(vars.size()) < size) {
            int v = r.below(nvars);
            if (std::find(vars.begin(), vars.end(), v) == vars.end())
                vars.push_back(v);
        }
        std::sort(vars.begin(), vars.end());
        all.push_back(vars);
    }
    return all;
}

} // namespace workload
