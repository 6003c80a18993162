// Side-by-side timings of this BDD package and BuDDy, and of the wood's
// dating. Run by hand; see README.md.
//
//   bdd_bench [--quick] [--tsv]                  every workload in this process
//   bdd_bench fresh [--reps N] [--quick] [--tsv] each run in a new process
//   bdd_bench grid [--reps N] [--quick]          BuDDy alone under several sizes
//   bdd_bench once WORKLOAD SIDE ARG [NODES CACHE]
//                                                one run (what the others start)
//
// --tsv prints rows for bench/run instead of tables: area, case, size,
// seconds and the reference's seconds ("-" when there is none), tab-separated.

#include "Bddexpression.h"
#include "bdd_workloads.h"
#include "bddpp.h"
#include "buddy_side.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

extern char** environ;

namespace {

using workload::node_row;
using workload::sum_of_products;

double seconds_since(std::chrono::steady_clock::time_point start)
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> v)
{
    std::sort(v.begin(), v.end());
    std::size_t n = v.size();
    return n % 2 ? v[n / 2] : (v[n / 2 - 1] + v[n / 2]) / 2;
}

// ---------------------------------------------------------------- our side

// One file's node table as the compiled-module reader builds it: a fresh
// manager, its variables, then each row through Bdd_ite on the row's
// variable with counted handles on the two children.
double load_here(const std::vector<node_row>& rows, long& nodes)
{
    auto t0 = std::chrono::steady_clock::now();
    auto m = std::make_unique<bddpp_manager>();
    for (int v = 0; v < workload::load_vars; ++v)
        m->New_var_last("_s_v" + std::to_string(v));
    std::vector<bdd_node*> built(rows.size(), m->Bdd_node_one());
    for (std::size_t r = 1; r < rows.size(); ++r) {
        const node_row& n = rows[r];
        const bdd then_edge(m.get(), 1, built[static_cast<std::size_t>(n.then_row)]);
        const bdd else_edge(m.get(), n.else_link, built[static_cast<std::size_t>(n.else_row)]);
        built[r] = m->Bdd_ite(1, n.var, then_edge, else_edge).node();
    }
    double s = seconds_since(t0);
    nodes = m->Bdd_total_size();
    return s;
}

bdd build_here(bddpp_manager& m, const sum_of_products& f)
{
    bdd sum = m.Bdd_zero();
    for (const auto& product : f) {
        bdd p = m.Bdd_one();
        for (const workload::literal& l : product) {
            bdd v = m.Bdd_var_by_index(l.var);
            p = m.Bdd_and(p, l.positive ? v : m.Bdd_not(v));
        }
        sum = m.Bdd_or(sum, p);
    }
    return sum;
}

// A manager with the variables and the functions (the caller declares the
// manager before f: handles must go first).
std::unique_ptr<bddpp_manager> manager_with(int nvars, const std::vector<sum_of_products>& fns, std::vector<bdd>& f)
{
    auto m = std::make_unique<bddpp_manager>();
    for (int v = 0; v < nvars; ++v)
        m->New_var_last("v" + std::to_string(v));
    f.clear();
    for (const auto& sop : fns)
        f.push_back(build_here(*m, sop));
    return m;
}

// Global ids must stay under 2^22, where the signature's fields would start
// to overlap: past 3 million the functions are rebuilt in a fresh manager
// (timed too: the largest case needs one more).
constexpr std::int64_t id_budget = 3000000;

double apply_pairs_here(int nvars, const std::vector<sum_of_products>& fns,
                        const std::vector<std::pair<int, int>>& pairs, long& result_nodes)
{
    double seconds = 0;
    result_nodes = 0;
    std::size_t next = 0;
    while (next < pairs.size()) {
        auto t0 = std::chrono::steady_clock::now();
        std::unique_ptr<bddpp_manager> m;
        std::vector<bdd> f;
        m = manager_with(nvars, fns, f);
        std::vector<bdd> results;
        for (; next < pairs.size() && m->Next_node_id() < id_budget; ++next) {
            const bdd& a = f[static_cast<std::size_t>(pairs[next].first)];
            const bdd& b = f[static_cast<std::size_t>(pairs[next].second)];
            results.push_back(m->Bdd_and(a, b));
            results.push_back(m->Bdd_or(a, b));
        }
        seconds += seconds_since(t0);
        for (const bdd& r : results)
            result_nodes += m->Bdd_size(r);
    }
    return seconds;
}

double quantify_here(int nvars, const std::vector<sum_of_products>& fns, const std::vector<std::vector<int>>& sets,
                     long& result_nodes)
{
    std::unique_ptr<bddpp_manager> m;
    std::vector<bdd> f;
    auto t0 = std::chrono::steady_clock::now();
    m = manager_with(nvars, fns, f);
    std::vector<bdd> cubes;
    for (const auto& set : sets) {
        bdd c = m->Bdd_one();
        for (int v : set)
            c = m->Bdd_and(c, m->Bdd_var_by_index(v));
        cubes.push_back(c);
    }
    std::vector<bdd> results;
    for (const bdd& g : f)
        for (const bdd& c : cubes) {
            results.push_back(m->Bdd_exist(g, c));
            results.push_back(m->Bdd_forall(g, c));
        }
    double s = seconds_since(t0);
    result_nodes = 0;
    for (const bdd& r : results)
        result_nodes += m->Bdd_size(r);
    return s;
}

// ---------------------------------------------------------------- workloads

enum class side { ours, buddy };

// One run of a workload on one side: seconds, items done and a size to
// compare between the sides.
struct outcome {
    double seconds;
    double items;
    long size;
};

// BuDDy's node table and cache for each case: among the sizes its
// documentation and examples give (10^5 or 10^6 nodes, 10^4 to 10^5 cache
// entries), or 4 * 10^6 nodes for results of millions of nodes, the fastest
// on that case in fresh processes (`bdd_bench grid`).
buddy_side::init buddy_init(const std::string& name, int arg)
{
    if (name == "load")
        return {100000, 20000};
    if (name == "apply" && arg == 6)
        return {1000000, 10000};
    if (name == "apply" && arg > 6)
        return {4000000, 100000};
    return {100000, 10000};
}

// load: `arg` is the table number; apply and quantify: the products of each
// function.
bool run_once(const std::string& name, side s, int arg, buddy_side::init with, outcome& out)
{
    bool ours = s == side::ours;
    if (name == "load") {
        std::vector<int> sizes = workload::load_table_sizes(workload::load_rows);
        if (arg < 0 || arg >= static_cast<int>(sizes.size()))
            return false;
        std::vector<node_row> rows = workload::load_table(arg, sizes[static_cast<std::size_t>(arg)]);
        out.items = static_cast<double>(rows.size() - 1);
        out.seconds = ours ? load_here(rows, out.size) : buddy_side::load_table(with, rows, out.size);
        return true;
    }
    if (name == "apply" || name == "quantify") {
        const int nvars = workload::apply_vars;
        std::vector<sum_of_products> fns
            = workload::random_functions(workload::apply_functions, nvars, arg, 77 + static_cast<std::uint64_t>(arg));
        if (name == "apply") {
            std::vector<std::pair<int, int>> pairs = workload::all_pairs(workload::apply_functions);
            out.items = 2.0 * static_cast<double>(pairs.size());
            out.seconds = ours ? apply_pairs_here(nvars, fns, pairs, out.size)
                               : buddy_side::apply_pairs(with, nvars, fns, pairs, out.size);
        } else {
            std::vector<std::vector<int>> sets
                = workload::random_var_sets(workload::quantify_sets, workload::quantify_set_size, nvars, 5);
            out.items = 2.0 * static_cast<double>(fns.size() * sets.size());
            out.seconds = ours ? quantify_here(nvars, fns, sets, out.size)
                               : buddy_side::quantify(with, nvars, fns, sets, out.size);
        }
        return true;
    }
    return false;
}

// The cases of the comparison: a workload, its argument and a label. The
// load is made of one run per table.
struct bench_case {
    std::string label;
    const char* name;
    std::vector<int> args;
};

std::vector<bench_case> cases(bool quick)
{
    std::vector<int> tables;
    int count = static_cast<int>(workload::load_table_sizes(workload::load_rows).size());
    for (int t = 0; t < (quick ? 4 : count); ++t)
        tables.push_back(t);
    std::vector<bench_case> all{{"load: node tables, ite per row", "load", tables}};
    for (int products : {4, 6, 8}) {
        if (quick && products == 8)
            break;
        std::string sums = std::to_string(products) + "-product sums";
        all.push_back(bench_case{"apply: and/or, " + sums, "apply", {products}});
        all.push_back(bench_case{"quantify: exist/forall, " + sums, "quantify", {products}});
    }
    return all;
}

bool tsv = false;

void print_header(const char* mode)
{
    if (tsv)
        return;
    std::printf("%s\n%-38s %9s %9s %9s %7s %7s %10s %10s\n", mode, "workload", "items", "quilp_s", "BuDDy_s",
                "ratio", "min_x", "quilp/s", "BuDDy/s");
}

// ratio: of the medians; min_x: of the best runs.
void print_row(const char* area, const bench_case& c, double items, const std::vector<double>& ours,
               const std::vector<double>& theirs)
{
    double a = median(ours), b = median(theirs);
    double amin = *std::min_element(ours.begin(), ours.end());
    double bmin = *std::min_element(theirs.begin(), theirs.end());
    if (tsv)
        std::printf("%s\t%s\t%.0f\t%.4f\t%.4f\n", area, c.label.c_str(), items, a, b);
    else
        std::printf("%-38s %9.0f %9.4f %9.4f %7.2f %7.2f %10.0f %10.0f\n", c.label.c_str(), items, a, b, a / b,
                    amin / bmin, items / a, items / b);
    std::fflush(stdout);
}

// ---------------------------------------------------------------- in process

void bench_in_process(bool quick)
{
    print_header("in one process (medians of runs, the two sides alternating)");
    const int reps = quick ? 3 : 5;
    for (const bench_case& c : cases(quick)) {
        std::vector<double> ours, theirs;
        double items = 0;
        long size_ours = 0, size_theirs = 0;
        for (int rep = 0; rep < reps; ++rep) {
            double a = 0, b = 0;
            items = 0;
            for (int arg : c.args) {
                outcome o{}, t{};
                // Alternate which side goes first, so that a change in the
                // machine's load falls on both.
                buddy_side::init with = buddy_init(c.name, arg);
                if (rep % 2 == 0) {
                    run_once(c.name, side::ours, arg, with, o);
                    run_once(c.name, side::buddy, arg, with, t);
                } else {
                    run_once(c.name, side::buddy, arg, with, t);
                    run_once(c.name, side::ours, arg, with, o);
                }
                a += o.seconds;
                b += t.seconds;
                items += o.items;
                size_ours = o.size;
                size_theirs = t.size;
            }
            ours.push_back(a);
            theirs.push_back(b);
        }
        print_row("bdd, one process", c, items, ours, theirs);
        if (!tsv && std::strcmp(c.name, "load") != 0)
            std::printf("    mean result size: %.0f nodes here, %.0f in BuDDy\n",
                        static_cast<double>(size_ours) / items, static_cast<double>(size_theirs) / items);
    }
}

// ---------------------------------------------------------------- fresh processes

std::string self_path()
{
    char buf[4096];
    ssize_t n = readlink("/proc/self/exe", buf, sizeof buf - 1);
    if (n <= 0)
        return std::string();
    return std::string(buf, static_cast<std::size_t>(n));
}

// Runs `bdd_bench once NAME SIDE ARG NODES CACHE` and reads what it prints.
bool run_child(const std::string& self, const char* name, side s, int arg, buddy_side::init with, outcome& out)
{
    int fds[2];
    if (pipe(fds) != 0)
        return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, fds[1], 1);
    posix_spawn_file_actions_addclose(&actions, fds[0]);
    std::string texts[] = {self, "once", name, s == side::ours ? "ours" : "buddy", std::to_string(arg),
                           std::to_string(with.nodes), std::to_string(with.cache)};
    std::vector<char*> argv;
    for (std::string& t : texts)
        argv.push_back(&t[0]);
    argv.push_back(nullptr);
    pid_t pid = 0;
    int spawned = posix_spawn(&pid, self.c_str(), &actions, nullptr, argv.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    close(fds[1]);
    std::string text;
    char buf[256];
    ssize_t n;
    while ((n = read(fds[0], buf, sizeof buf)) > 0)
        text.append(buf, static_cast<std::size_t>(n));
    close(fds[0]);
    if (spawned != 0)
        return false;
    int status = 0;
    waitpid(pid, &status, 0);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        return false;
    return std::sscanf(text.c_str(), "%lf %lf %ld", &out.seconds, &out.items, &out.size) == 3;
}

int bench_fresh(int reps, bool quick)
{
    std::string self = self_path();
    print_header("fresh processes (one process a run and a side; medians of repetitions)");
    for (const bench_case& c : cases(quick)) {
        std::vector<double> ours, theirs;
        double items = 0;
        for (int rep = 0; rep < reps; ++rep) {
            double a = 0, b = 0;
            items = 0;
            for (std::size_t k = 0; k < c.args.size(); ++k) {
                outcome o{}, t{};
                buddy_side::init with = buddy_init(c.name, c.args[k]);
                bool ok = ((rep + k) % 2 == 0)
                    ? run_child(self, c.name, side::ours, c.args[k], with, o)
                        && run_child(self, c.name, side::buddy, c.args[k], with, t)
                    : run_child(self, c.name, side::buddy, c.args[k], with, t)
                        && run_child(self, c.name, side::ours, c.args[k], with, o);
                if (!ok) {
                    std::fprintf(stderr, "bdd_bench: a run of %s did not complete\n", c.name);
                    return 1;
                }
                a += o.seconds;
                b += t.seconds;
                items += o.items;
            }
            ours.push_back(a);
            theirs.push_back(b);
        }
        print_row("bdd, fresh processes", c, items, ours, theirs);
    }
    return 0;
}

// ---------------------------------------------------------------- dating

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

double best_of(int runs, const std::function<double()>& run)
{
    double best = 1e300;
    for (int i = 0; i < runs; ++i)
        best = std::min(best, run());
    return best;
}

void report_dates(const char* workload, long size, double seconds)
{
    if (tsv)
        std::printf("wood dating\t%s\t%ld\t%.4f\t-\n", workload, size, seconds);
    else
        std::printf("%-38s %9ld %12.0f\n", workload, size, static_cast<double>(size) / seconds);
    std::fflush(stdout);
}

void bench_dates(bool quick)
{
    if (!tsv)
        std::printf("\n%-38s %9s %12s\n", "compute_dates (no BuDDy counterpart)", "equations", "per second");
    for (int n : {10000, 100000}) {
        if (quick && n > 10000)
            break;
        workload::xorshift r{42 + static_cast<std::uint64_t>(n)};
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
        report_dates("dates: chain", n, best_of(3, [&] { return date_wood(chain, level); }));
        report_dates("dates: binary tree", n, best_of(3, [&] { return date_wood(tree, level); }));
        report_dates("dates: random DAG", n, best_of(3, [&] { return date_wood(dag, level); }));
    }
    // Read against the index order, the recursive dating revisits the chain
    // from every variable: quadratic, by the algorithm's definition.
    for (int n : {1000, 10000}) {
        std::vector<std::vector<std::int64_t>> reversed(static_cast<std::size_t>(n));
        for (int k = 0; k + 1 < n; ++k)
            reversed[static_cast<std::size_t>(k)] = {k + 1};
        std::int64_t level = 0;
        report_dates("dates: chain against the index order", n, best_of(1, [&] { return date_wood(reversed, level); }));
    }
}

// BuDDy alone on every case, for each node table and cache size it is
// commonly given, in fresh processes: the figures behind buddy_init().
int buddy_grid(int reps, bool quick)
{
    std::string self = self_path();
    const buddy_side::init grid[] = {{100000, 10000},  {100000, 20000},  {100000, 50000},  {100000, 100000},
                                     {1000000, 10000}, {1000000, 20000}, {1000000, 50000}, {1000000, 100000},
                                     {4000000, 10000}, {4000000, 20000}, {4000000, 50000}, {4000000, 100000}};
    std::printf("BuDDy alone, fresh processes, medians of %d: seconds by node table / cache entries\n%-38s", reps,
                "workload");
    for (const buddy_side::init& g : grid)
        std::printf(" %11s", (std::to_string(g.nodes / 1000) + "k/" + std::to_string(g.cache / 1000) + "k").c_str());
    std::printf("\n");
    for (const bench_case& c : cases(quick)) {
        std::printf("%-38s", c.label.c_str());
        double best = 1e300;
        for (const buddy_side::init& g : grid) {
            std::vector<double> runs;
            for (int rep = 0; rep < reps; ++rep) {
                // A setting already ten times slower than the best is not run again.
                if (rep == 1 && runs[0] > 10 * best)
                    break;
                double total = 0;
                for (int arg : c.args) {
                    outcome t{};
                    if (!run_child(self, c.name, side::buddy, arg, g, t)) {
                        std::fprintf(stderr, "bdd_bench: a run of %s did not complete\n", c.name);
                        return 1;
                    }
                    total += t.seconds;
                }
                runs.push_back(total);
            }
            best = std::min(best, median(runs));
            std::printf(" %11.4f", median(runs));
            std::fflush(stdout);
        }
        std::printf("\n");
    }
    return 0;
}

int usage()
{
    std::fprintf(stderr, "usage: bdd_bench [--quick] [--tsv]\n"
                         "       bdd_bench fresh|grid [--reps N] [--quick] [--tsv]\n"
                         "       bdd_bench once load|apply|quantify ours|buddy ARG [NODES CACHE]\n");
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    std::vector<std::string> args(argv + 1, argv + argc);
    if (!args.empty() && args[0] == "once") {
        if ((args.size() != 4 && args.size() != 6) || (args[2] != "ours" && args[2] != "buddy"))
            return usage();
        buddy_side::init with = buddy_init(args[1], std::atoi(args[3].c_str()));
        if (args.size() == 6)
            with = {std::atoi(args[4].c_str()), std::atoi(args[5].c_str())};
        outcome o{};
        if (with.nodes <= 0 || with.cache <= 0
            || !run_once(args[1], args[2] == "ours" ? side::ours : side::buddy, std::atoi(args[3].c_str()), with, o))
            return usage();
        std::printf("%.6f %.0f %ld\n", o.seconds, o.items, o.size);
        return 0;
    }
    std::string mode = !args.empty() && (args[0] == "fresh" || args[0] == "grid") ? args[0] : "";
    int reps = mode == "fresh" ? 5 : 3;
    bool quick = false;
    for (std::size_t i = mode.empty() ? 0 : 1; i < args.size(); ++i) {
        if (args[i] == "--quick" || args[i] == "quick")
            quick = true;
        else if (args[i] == "--tsv")
            tsv = true;
        else if (args[i] == "--reps" && i + 1 < args.size() && !mode.empty())
            reps = std::max(1, std::atoi(args[++i].c_str()));
        else
            return usage();
    }
    if (mode == "fresh")
        return bench_fresh(reps, quick);
    if (mode == "grid")
        return buddy_grid(reps, quick);
    bench_in_process(quick);
    bench_dates(quick);
    return 0;
}
