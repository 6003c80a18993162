#ifndef BENCH_BUDDY_SIDE_H
#define BENCH_BUDDY_SIDE_H

// The BuDDy half of the benchmarks, behind plain types (its bdd.h cannot
// share a translation unit with ours). Every run starts BuDDy afresh with the
// given node table and cache sizes (bdd_init), and ends it; BuDDy grows its
// table and collects by its own defaults when the table is not enough.

#include "bdd_workloads.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace buddy_side {

struct init {
    int nodes, cache;
};

// Each returns the seconds from bdd_init to the last operation.

// Builds every row with if-then-else on the row's variable; nodes: the nodes
// in use at the end.
double load_table(init with, const std::vector<workload::node_row>& rows, long& nodes);

// Builds the functions, then the conjunction and the disjunction of each
// pair; result_nodes: the summed result sizes.
double apply_pairs(init with, int nvars, const std::vector<workload::sum_of_products>& functions,
                   const std::vector<std::pair<int, int>>& pairs, long& result_nodes);

// Builds the functions and the variable sets, then the existential and the
// universal quantification of each function over each set.
double quantify(init with, int nvars, const std::vector<workload::sum_of_products>& functions,
                const std::vector<std::vector<int>>& sets, long& result_nodes);

} // namespace buddy_side

#endif
