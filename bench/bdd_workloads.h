#ifndef BENCH_BDD_WORKLOADS_H
#define BENCH_BDD_WORKLOADS_H

// The BDD workloads, in plain types that both sides of the benchmark read
// (BuDDy's bdd.h cannot share a translation unit with ours). Everything is
// drawn from fixed seeds: every run and both sides see the same inputs.

#include <cstdint>
#include <vector>

namespace workload {

// One row of a node table, bottom-up: row 0 is the constant one; a row's
// children are earlier rows; the then-edge is regular.
struct node_row {
    int var, then_row, else_row, else_link;
};

struct literal {
    int var;
    bool positive;
};
using sum_of_products = std::vector<std::vector<literal>>;

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

// The load: rows of the node tables of compiled modules, 10^6 in all, in
// tables of at most 32,766 rows (one file's table) over 60 variables.
constexpr int load_rows = 1000000;
constexpr int load_table_rows = 32766;
constexpr int load_vars = 60;
constexpr int load_complemented_percent = 35;
// Rows of each table: full tables and a last, shorter one (31 in all).
std::vector<int> load_table_sizes(int total_rows);
// Table number `which` of the load, as a reader meets it: the deepest
// variables first, each row on a variable above both its children, the
// children drawn among the rows of the next four levels, about
// load_complemented_percent of the else-edges complemented.
std::vector<node_row> load_table(int which, int rows);

// Conjunctions and disjunctions: `count` random sums of `products` products
// of 3 to 6 literals over `nvars` variables, combined pairwise.
constexpr int apply_vars = 32;
constexpr int apply_functions = 40;
std::vector<sum_of_products> random_functions(int count, int nvars, int products, std::uint64_t seed);
// Every pair (i, j), i < j.
std::vector<std::pair<int, int>> all_pairs(int count);

// Quantifications: each function of random_functions quantified over each of
// `sets` random sets of `size` distinct variables.
constexpr int quantify_sets = 8;
constexpr int quantify_set_size = 6;
std::vector<std::vector<int>> random_var_sets(int sets, int size, int nvars, std::uint64_t seed);

} // namespace workload

#endif
