#ifndef TESTS_BDD_INVARIANTS_H
#define TESTS_BDD_INVARIANTS_H

// Test-only heap check of a manager: every unique-table entry is a node of
// this manager whose key is its own signature (recomputed here from its
// fields), found again by that key, above both children in the order, not
// redundant, with a +1/-1 else link and a positive count. The node form has
// no then link: then-edges are regular by construction.

#include "bddpp.h"

#include <cstdint>
#include <sstream>
#include <string>

inline std::string check_invariants(const bddpp_manager& m)
{
    std::ostringstream bad;
    std::int64_t entries = 0;
    m.For_each_table_entry([&](std::int64_t key, const bdd_node* n) {
        ++entries;
        const bdd_node* t = n->then_node();
        const bdd_node* e = n->else_node();
        if (n->manager_ref() != &m || !t || !e) {
            bad << "malformed node " << n->global_id() << '\n';
            return;
        }
        std::uint64_t s = static_cast<std::uint64_t>(n->var_id());
        s = (s << 22) | static_cast<std::uint64_t>(t->global_id());
        s = (s << 22) | static_cast<std::uint64_t>(e->global_id());
        s = (s << 1) | (n->else_link_type() == 1 ? 1u : 0u);
        if (static_cast<std::int64_t>(s) != key || n->signature() != key)
            bad << "key " << key << " is not the signature of node " << n->global_id() << '\n';
        if (m.Find_node_by_signature(key) != n)
            bad << "key " << key << " does not find its node\n";
        bool t_below = t == m.Bdd_node_one() || n->var_index() < t->var_index();
        bool e_below = e == m.Bdd_node_one() || n->var_index() < e->var_index();
        if (!t_below || !e_below)
            bad << "node " << n->global_id() << " not above its children\n";
        if (t == e && n->else_link_type() == 1)
            bad << "redundant node " << n->global_id() << '\n';
        if (n->else_link_type() != 1 && n->else_link_type() != -1)
            bad << "bad else link on node " << n->global_id() << '\n';
        if (n->nb_refs() < 1)
            bad << "node " << n->global_id() << " has count " << n->nb_refs() << '\n';
    });
    if (entries != m.Bdd_total_size())
        bad << "table holds " << entries << " entries, total size says " << m.Bdd_total_size() << '\n';
    return bad.str();
}

#endif
