#ifndef TESTS_BUDDY_ORACLE_H
#define TESTS_BUDDY_ORACLE_H

// BuDDy as an oracle, behind plain types: its bdd.h declares a global
// `class bdd` that clashes with ours, so it lives in buddy_oracle.cpp alone.

#include <vector>

namespace oracle {

enum class op { var, not_, and_, or_, xor_, ite, ite_var, exist, forall, compose, replace, keep_first };

// One step of a random program: makes a new slot from earlier slots (a, b, c)
// or from variables (var: a; ite_var: variable a with link b; compose:
// variable b; keep_first: count b; exist/forall: the ids in `vars`;
// replace: vars[v] is the new variable of v).
struct step {
    op kind;
    int a, b, c;
    std::vector<int> vars;
};

// A function exported from the package under test: row 0 is the constant;
// every other row is a node whose children come earlier.
struct row {
    int var, then_row, else_row, else_link;
};
struct exported {
    std::vector<row> rows;
    int root_link, root_row;
};

// Runs programs over variables 0..nvars-1 (at most 14), variable v at level v.
class session {
public:
    explicit session(int nvars);
    ~session();
    session(const session&) = delete;
    session& operator=(const session&) = delete;

    void run(const std::vector<step>& program);
    // The exported function, rebuilt in BuDDy, equals slot s.
    bool same_function(int s, const exported& f) const;
    bool same_function(int s, int t) const;
    double satcount(int s) const;
    // BuDDy's one-paths of slot s, each a vector of nvars entries -1, 0 or 1, sorted.
    std::vector<std::vector<signed char>> paths(int s) const;

private:
    struct impl;
    impl* p;
};

} // namespace oracle

#endif
