#include "buddy_oracle.h"

// Only BuDDy's C interface is used here: its C++ class `bdd` has inline and
// library members whose symbols would merge with those of our own `bdd`.
#include <bdd.h>
#undef bdd_init
#undef bdd_ithvar
#undef bdd_nithvar

#include <algorithm>

namespace oracle {

namespace {
// The constant true of BuDDy's C interface (node 1).
constexpr BDD buddy_true = 1;

// Results of the C interface are unreferenced until bdd_addref.
BDD kept(BDD r)
{
    return bdd_addref(r);
}

BDD varset(const std::vector<int>& vars)
{
    BDD set = bdd_addref(buddy_true);
    for (int v : vars) {
        BDD next = bdd_addref(bdd_and(set, bdd_ithvar(v)));
        bdd_delref(set);
        set = next;
    }
    return set; // referenced
}

std::vector<std::vector<signed char>>* collected = nullptr;
int collected_vars = 0;

void collect(char* profile, int)
{
    collected->emplace_back(profile, profile + collected_vars);
}
} // namespace

struct session::impl {
    int nvars;
    std::vector<BDD> slots;
    void clear()
    {
        for (BDD r : slots)
            bdd_delref(r);
        slots.clear();
    }
};

session::session(int nvars) : p(new impl{nvars, {}})
{
    bdd_init(100000, 10000);
    bdd_setvarnum(nvars);
}

session::~session()
{
    p->clear();
    delete p;
    bdd_done();
}

void session::run(const std::vector<step>& program)
{
    p->clear();
    std::vector<BDD>& s = p->slots;
    for (const step& st : program) {
        switch (st.kind) {
        case op::var: s.push_back(kept(bdd_ithvar(st.a))); break;
        case op::not_: s.push_back(kept(bdd_not(s[st.a]))); break;
        case op::and_: s.push_back(kept(bdd_and(s[st.a], s[st.b]))); break;
        case op::or_: s.push_back(kept(bdd_or(s[st.a], s[st.b]))); break;
        case op::xor_: s.push_back(kept(bdd_xor(s[st.a], s[st.b]))); break;
        case op::ite: s.push_back(kept(bdd_ite(s[st.a], s[st.b], s[st.c]))); break;
        case op::ite_var: {
            BDD v = st.b == -1 ? bdd_nithvar(st.a) : bdd_ithvar(st.a);
            s.push_back(kept(bdd_ite(v, s[st.c], s[static_cast<std::size_t>(st.vars[0])])));
            break;
        }
        case op::exist:
        case op::forall: {
            BDD set = varset(st.vars);
            s.push_back(kept(st.kind == op::exist ? bdd_exist(s[st.a], set) : bdd_forall(s[st.a], set)));
            bdd_delref(set);
            break;
        }
        case op::compose: s.push_back(kept(bdd_compose(s[st.a], s[st.c], st.b))); break;
        case op::replace: {
            bddPair* pair = bdd_newpair();
            for (int v = 0; v < static_cast<int>(st.vars.size()); ++v)
                bdd_setbddpair(pair, v, bdd_ithvar(st.vars[static_cast<std::size_t>(v)]));
            s.push_back(kept(bdd_veccompose(s[st.a], pair)));
            bdd_freepair(pair);
            break;
        }
        case op::keep_first: {
            std::vector<int> below;
            for (int v = std::max(st.b, 0); v < p->nvars; ++v)
                below.push_back(v);
            BDD set = varset(below);
            s.push_back(kept(bdd_exist(s[st.a], set)));
            bdd_delref(set);
            break;
        }
        }
    }
}

bool session::same_function(int s, const exported& f) const
{
    std::vector<BDD> built(f.rows.size(), buddy_true);
    for (std::size_t r = 1; r < f.rows.size(); ++r) {
        const row& n = f.rows[r];
        BDD e = built[static_cast<std::size_t>(n.else_row)];
        BDD e_edge = kept(n.else_link == 1 ? e : bdd_not(e));
        built[r] = kept(bdd_ite(bdd_ithvar(n.var), built[static_cast<std::size_t>(n.then_row)], e_edge));
        bdd_delref(e_edge);
    }
    BDD root = built[static_cast<std::size_t>(f.root_row)];
    BDD rooted = kept(f.root_link == 1 ? root : bdd_not(root));
    bool same = rooted == p->slots[static_cast<std::size_t>(s)];
    bdd_delref(rooted);
    for (std::size_t r = 1; r < built.size(); ++r)
        bdd_delref(built[r]);
    return same;
}

bool session::same_function(int s, int t) const
{
    return p->slots[static_cast<std::size_t>(s)] == p->slots[static_cast<std::size_t>(t)];
}

double session::satcount(int s) const
{
    return bdd_satcount(p->slots[static_cast<std::size_t>(s)]);
}

std::vector<std::vector<signed char>> session::paths(int s) const
{
    std::vector<std::vector<signed char>> out;
    collected = &out;
    collected_vars = p->nvars;
    bdd_allsat(p->slots[static_cast<std::size_t>(s)], collect);
    collected = nullptr;
    std::sort(out.begin(), out.end());
    return out;
}

} // namespace oracle
