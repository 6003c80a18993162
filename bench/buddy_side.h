#ifndef BENCH_BUDDY_SIDE_H
#define BENCH_BUDDY_SIDE_H

// The BuDDy half of the benchmarks, behind plain types (its bdd.h cannot
// share a translation unit with ours).

#include <cstddef>
#include <utility>
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

} // namespace workload

namespace buddy_side {

// Builds every row with if-then-else on the row's variable; returns the
// seconds spent in the rows and the nodes in use afterwards.
double build_table(int nvars, const std::vector<workload::node_row>& rows, std::size_t& nodes);

// Builds the functions (untimed), then times the conjunction and the
// disjunction of each pair; returns seconds and the summed result sizes.
double apply_pairs(int nvars, const std::vector<workload::sum_of_products>& functions,
                   const std::vector<std::pair<int, int>>& pairs, long& result_nodes);

} // namespace buddy_side

#endif
