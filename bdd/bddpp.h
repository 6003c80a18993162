#ifndef BDD_BDDPP_H
#define BDD_BDDPP_H

// Reduced ordered binary decision diagrams with complemented else-edges.
//
// A bddpp_manager owns the variables and the nodes; a bdd is a counted handle
// (manager, link, node) that denotes the node's function when the link is +1
// and its complement when it is -1. Then-edges are never complemented.
//
// The manager keeps no operation cache between calls: each conjunction or
// disjunction recurses over its operands afresh (one call may memoise the
// sub-problems it meets; the memo is dropped when the call returns).
//
// Single-threaded. Handles of two managers are never combined.

#include <climits>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

class bddpp_manager;
struct bddpp_kernel;

// One decision node. Nodes are made only by their manager.
class bdd_node {
public:
    // A node outside any manager: variable -3, no children.
    bdd_node() = default;
    bdd_node(const bdd_node&) = delete;
    bdd_node& operator=(const bdd_node&) = delete;

    bddpp_manager* manager_ref() const { return internal_manager_ref; }
    std::int64_t signature() const { return internal_signature; }
    std::int64_t var_id() const { return internal_var_id; }
    // Position of the node's variable in the order: -1 for the constant node,
    // -3 for a node without a manager.
    std::int64_t var_index() const;
    // Ids of every variable the node's function depends on, increasing;
    // empty for the constant node.
    std::vector<std::int64_t> var_id_dep() const;
    std::int64_t local_id() const { return internal_local_id; }
    std::int64_t global_id() const { return internal_global_id; }
    std::int64_t mark() const { return internal_mark; }
    std::int32_t nb_refs() const { return internal_nb_refs; }
    std::int32_t else_link_type() const { return internal_else_link_type; }
    const bdd_node* then_node() const { return internal_then; }
    const bdd_node* else_node() const { return internal_else; }

    // Same variable, same else link, same children.
    bool operator==(const bdd_node& other) const;
    bool operator!=(const bdd_node& other) const { return !(*this == other); }

private:
    friend class bddpp_manager;
    friend class bdd;
    friend struct bddpp_kernel;

    // A node made by its manager, written in one pass.
    bdd_node(bddpp_manager* manager, std::int64_t signature, std::int64_t var_id, std::int64_t global_id,
             std::int32_t nb_refs, std::int32_t else_link, bdd_node* then_node, bdd_node* else_node)
        : internal_manager_ref(manager), internal_signature(signature), internal_var_id(var_id),
          internal_global_id(global_id), internal_nb_refs(nb_refs), internal_else_link_type(else_link),
          internal_then(then_node), internal_else(else_node)
    {
    }

    // Counts saturate: a count that reached the maximum never moves again,
    // so that it stays an upper bound and the node is never collected.
    void internal_ref()
    {
        if (internal_nb_refs != INT32_MAX)
            ++internal_nb_refs;
    }
    void internal_unref()
    {
        if (internal_nb_refs != INT32_MAX && internal_nb_refs != INT32_MIN)
            --internal_nb_refs;
    }

    bddpp_manager* internal_manager_ref = nullptr;
    std::int64_t internal_signature = -3;
    std::int64_t internal_var_id = -3;
    // Dependency ids kept only for nodes that were asked for them (see
    // bddpp_manager::Var_id_dep), owned by the manager; every other node's
    // set is computed on demand.
    const std::vector<std::int64_t>* internal_var_id_dep = nullptr;
    std::int64_t internal_local_id = 0;
    std::int64_t internal_global_id = 0;
    std::int64_t internal_mark = 0;
    std::int32_t internal_nb_refs = 0;
    std::int32_t internal_else_link_type = 1;
    bdd_node* internal_then = nullptr;
    bdd_node* internal_else = nullptr;
};

// A counted handle. Constructing from (manager, link, node), copying and
// assigning add one to the node's count; destroying or re-assigning removes
// it. Assigning a handle of the same node changes no count.
class bdd {
public:
    bdd() = default;
    bdd(bddpp_manager* manager, int link, bdd_node* node)
        : internal_manager_ref(manager), internal_link_type(link), internal_bdd_node(node)
    {
        if (internal_bdd_node)
            internal_bdd_node->internal_ref();
    }
    bdd(const bdd& other)
        : internal_manager_ref(other.internal_manager_ref),
          internal_link_type(other.internal_link_type),
          internal_bdd_node(other.internal_bdd_node)
    {
        if (internal_bdd_node)
            internal_bdd_node->internal_ref();
    }
    bdd& operator=(const bdd& other)
    {
        if (internal_bdd_node != other.internal_bdd_node) {
            if (other.internal_bdd_node)
                other.internal_bdd_node->internal_ref();
            if (internal_bdd_node)
                internal_bdd_node->internal_unref();
            internal_bdd_node = other.internal_bdd_node;
        }
        internal_manager_ref = other.internal_manager_ref;
        internal_link_type = other.internal_link_type;
        return *this;
    }
    ~bdd()
    {
        if (internal_bdd_node)
            internal_bdd_node->internal_unref();
    }

    bool operator==(const bdd& o) const
    {
        return internal_manager_ref == o.internal_manager_ref
            && internal_link_type == o.internal_link_type
            && internal_bdd_node == o.internal_bdd_node;
    }
    bool operator!=(const bdd& o) const { return !(*this == o); }

    bddpp_manager* manager_ref() const { return internal_manager_ref; }
    int link_type() const { return internal_link_type; }
    bdd_node* node() const { return internal_bdd_node; }

private:
    bddpp_manager* internal_manager_ref = nullptr;
    std::int32_t internal_link_type = 0;
    bdd_node* internal_bdd_node = nullptr;
};

// One literal of a one-path: the variable id, and whether the path took the
// variable's then-edge (positive) or its else-edge.
struct bdd_literal {
    std::int64_t var_id;
    bool positive;
    bool operator==(const bdd_literal& o) const { return var_id == o.var_id && positive == o.positive; }
};

std::string Bdd_version();

class bddpp_manager {
public:
    bddpp_manager();
    // Same variables (ids, names) and the same order as `other`; no other node.
    explicit bddpp_manager(bddpp_manager* other);
    ~bddpp_manager();
    bddpp_manager(const bddpp_manager&) = delete;
    bddpp_manager& operator=(const bddpp_manager&) = delete;

    // ---- Variables. A known name returns the existing variable, unchanged.
    bdd_node* New_node_var_last(const std::string& name);
    // Null after "Error in new_node_var_before(): abnormal index ...".
    bdd_node* New_node_var_before(std::int64_t index, const std::string& name);
    // Null after "Error in new_node_var_after(): abnormal id ...".
    bdd_node* New_node_var_after(std::int64_t index, const std::string& name);
    bdd New_var_last(const std::string& name);
    // Handle forms: the default handle where the node form yields null. The
    // forms with a bdd take the place of that function's top variable.
    bdd New_var_before(std::int64_t index, const std::string& name);
    bdd New_var_before(const bdd& var, const std::string& name);
    bdd New_var_after(std::int64_t index, const std::string& name);
    bdd New_var_after(const bdd& var, const std::string& name);

    // Zero after an "out of range" line when the variable does not exist.
    bdd Bdd_var_by_id(std::int64_t id);
    bdd Bdd_var_by_index(std::int64_t index);
    bdd Bdd_var_by_name(const std::string& name);
    // Top variable of a function: -1 for a constant, -3 for a null handle.
    std::int64_t Id_var_by_bdd(const bdd& f) const;
    std::int64_t Index_var_by_bdd(const bdd& f) const;
    std::int64_t Bdd_if_id(const bdd& f) const { return Id_var_by_bdd(f); }
    std::int64_t Bdd_if_index(const bdd& f) const { return Index_var_by_bdd(f); }
    // The top variable's handle; a constant gives itself.
    bdd Bdd_if(const bdd& f);
    // Names: empty when out of range.
    std::string Name_var_by_id(std::int64_t id) const;
    std::string Name_var_by_index(std::int64_t index) const;
    std::string Name_var_by_bdd(const bdd& f) const;
    // -1 when unknown or out of range.
    std::int64_t Index_var_by_name(const std::string& name) const;
    std::int64_t Id_var_by_name(const std::string& name) const;
    std::int64_t Index_var_by_id(std::int64_t id) const;
    std::int64_t Id_var_by_index(std::int64_t index) const;
    std::int64_t Nb_bdd_vars() const { return internal_bdd_vars; }
    std::int64_t Max_bdd_vars() const { return internal_max_bdd_vars; }
    std::int64_t Next_node_id() const { return internal_next_node_id; }

    // Drops one leading underscore from every variable name that has one.
    // When two variables end up with one name, the name maps to the lower id.
    void Loose_first_underscore_in_names();

    // ---- Constants and cofactors.
    bdd Bdd_one() { return bdd(this, 1, internal_bdd_node_one); }
    bdd Bdd_zero() { return bdd(this, -1, internal_bdd_node_one); }
    bdd_node* Bdd_node_one() const { return internal_bdd_node_one; }
    // A constant (or null) handle is its own cofactor.
    bdd Bdd_then(const bdd& f);
    bdd Bdd_else(const bdd& f);
    bdd Bdd_not(const bdd& f) { return bdd(f.manager_ref(), -f.link_type(), f.node()); }

    // ---- Boolean operations. A null operand of the conjunction or the
    // disjunction ends the process after a dump, as does a result above both
    // operands in the order.
    bdd Bdd_and(const bdd& f, const bdd& g);
    bdd Bdd_or(const bdd& f, const bdd& g);
    bdd Bdd_nand(const bdd& f, const bdd& g);
    bdd Bdd_nor(const bdd& f, const bdd& g);
    bdd Bdd_xor(const bdd& f, const bdd& g);
    bdd Bdd_xnor(const bdd& f, const bdd& g);
    bdd Bdd_eq(const bdd& f, const bdd& g) { return Bdd_xnor(f, g); }
    bdd Bdd_equiv(const bdd& f, const bdd& g) { return Bdd_xnor(f, g); }
    bdd Bdd_implication(const bdd& f, const bdd& g);
    bdd Bdd_imply(const bdd& f, const bdd& g) { return Bdd_implication(f, g); }
    // True when the two functions are never true together.
    bool Bdds_excl(const bdd& f, const bdd& g);
    bool Bdds_exclude(const bdd& f, const bdd& g) { return Bdds_excl(f, g); }
    // (f and g) or (not f and h), through the conjunction and the disjunction.
    bdd Bdd_ite(const bdd& f, const bdd& g, const bdd& h);
    // The same with the variable at `index` (complemented when link is -1)
    // as condition; zero after an "out of range" line for a bad index.
    bdd Bdd_ite(int link, std::int64_t index, const bdd& g, const bdd& h);

    // ---- Substitution and quantification (cofactor recursions, memoised
    // per call, with an explicit stack).
    // g in place of the top variable of `var` in f; f when `var` is constant.
    bdd Bdd_compose(const bdd& f, const bdd& var, const bdd& g);
    // g in place of the variable at `index` in f.
    bdd Bdd_compose_loc(const bdd& f, std::int64_t index, const bdd& g);
    // Quantification over the variables of `vars`, a conjunction of positive
    // variables (a cube), or over a list of variable ids.
    bdd Bdd_exist(const bdd& f, const bdd& vars);
    bdd Bdd_exist(const bdd& f, const std::vector<std::int64_t>& var_ids);
    bdd Bdd_forall(const bdd& f, const bdd& vars);
    bdd Bdd_forall(const bdd& f, const std::vector<std::int64_t>& var_ids);
    // Exchanges the top variables of x and y in f.
    bdd Bdd_swap_vars(const bdd& f, const bdd& x, const bdd& y);
    // Simultaneous renaming: variable id v becomes table[v]; entries that are
    // negative, unknown or beyond the table leave the variable as it is.
    bdd Bdd_replace_vars(const bdd& f, const std::vector<std::int64_t>& table);
    // Keeps the first n variables of the order: the variables at index n and
    // beyond are quantified existentially.
    bdd Bdd_keep_first_variables(const bdd& f, std::int64_t n);

    // ---- Tests.
    bool Bdd_depends_on(const bdd& f, const bdd& var) const;
    bool Bdd_is_var(const bdd& f) const;
    bool Bdd_is_negvar(const bdd& f) const;
    // A conjunction of literals; one (the empty product) counts, zero does not.
    bool Bdd_is_cube(const bdd& f) const;
    bool Bdd_is_tautology(const bdd& f) const { return Bdd_is_one_tautologic(f); }
    // value non-zero: f is one; value zero: f is zero.
    bool Bdd_is_tautology(const bdd& f, int value) const;
    bool Bdd_is_one_tautologic(const bdd& f) const
    {
        return f.node() == internal_bdd_node_one && f.link_type() == 1;
    }
    bool Bdd_is_zero_tautologic(const bdd& f) const
    {
        return f.node() == internal_bdd_node_one && f.link_type() == -1;
    }

    // ---- Sizes, counts, collection.
    // Nodes reachable from f, the constant node included; 0 for a null handle.
    std::int64_t Bdd_size(const bdd& f);
    // Nodes in the unique table (the constant node is not in it).
    std::int64_t Bdd_total_size() const;
    void Bdd_free(const bdd& f);
    bdd Bdd_dup(const bdd& f);
    // Frees the nodes of the unique table whose count fell to zero or below,
    // other than the variables' own nodes; returns how many.
    std::int64_t Bdd_gc();
    std::string Bdd_version() const { return ::Bdd_version(); }

    // ---- Marks.
    void Bdd_clear_marks(const bdd& f);
    void Bdd_global_clear_marks();

    // ---- Services for the module layer and the inspector.
    // Variable ids f depends on, increasing. The set is computed by a walk
    // (explicit stack) and kept on the root node asked for, within a budget,
    // so that repeated questions on one function are cheap.
    std::vector<std::int64_t> Var_id_dep(const bdd_node* node);
    // Indices (positions in the order) of the variables f depends on.
    std::set<std::int64_t> set_of_index_depend_on(const bdd& f);
    // Calls visit on each one-path of f: depth first, then-edge before
    // else-edge, a path counting when the complement parity of its edges
    // makes it reach one. The literals run from the root. One has a single
    // empty path, zero none. visit returns false to stop the walk; the result
    // is false when it was stopped.
    bool Bdd_for_each_one_path(const bdd& f,
                               const std::function<bool(const std::vector<bdd_literal>&)>& visit) const;
    // Collects the one-paths; false (paths cleared) when there are more than
    // max_paths.
    bool Bdd_one_paths(const bdd& f, std::size_t max_paths,
                       std::vector<std::vector<bdd_literal>>& paths) const;
    // What Bdd_print_sop(os, f, " + ") would write, measured without writing
    // it: the number of one-paths and the text's length, both saturating at
    // the largest 64-bit value. Counted per node (and complement parity), so
    // the cost grows with the size of f, not with its number of paths.
    struct sop_size {
        std::uint64_t paths = 0;
        std::uint64_t length = 0;
    };
    sop_size Bdd_sop_size(const bdd& f) const;
    // Writes f as a sum of its one-paths: variable names joined by "*", "!"
    // before a negated one, products joined by `separator`, nothing after a
    // product. One is written "1" and zero (or a null handle) "0".
    void Bdd_print_sop(std::ostream& os, const bdd& f, const std::string& separator = "+") const;
    // Structure of f down to `depth` levels, one node a line (debugging aid).
    void Bdd_print_structure(std::ostream& os, const bdd& f, int depth) const;

    // ---- Low level.
    // The only door to the unique table for decision nodes. The caller sets
    // out_link to 1; see bddpp.cpp for the steps.
    bdd_node* Find_or_create_bdd_node(std::int64_t index, int then_link, int else_link,
                                      bdd_node* then_node, bdd_node* else_node, int& out_link);
    // Node stored under a key of the unique table, or null.
    bdd_node* Find_node_by_signature(std::int64_t signature) const;
    // Every (key, node) of the unique table, in no particular order.
    void For_each_table_entry(const std::function<void(std::int64_t, const bdd_node*)>& visit) const;
    // The key of a node with variable v, else link l and children t, e.
    static std::int64_t Signature(std::int64_t v, int l, const bdd_node* t, const bdd_node* e);

private:
    friend class bdd_node;
    friend struct bddpp_kernel;
    struct unique_table;
    struct workspace;

    std::int64_t internal_make_variable(const std::string& name);
    bdd_node* internal_new_node(std::int64_t var_id, int else_link, bdd_node* t, bdd_node* e,
                                std::uint32_t& number);

    std::int64_t internal_bdd_vars = 0;
    std::int64_t internal_max_bdd_vars = 16;
    std::int64_t internal_next_node_id = 2;
    std::vector<std::string> internal_names_table;
    std::vector<bdd_node*> internal_variables_table;
    std::vector<std::int64_t> internal_idtoindex_table;
    std::vector<std::int64_t> internal_indextoid_table;
    std::vector<bdd_node*> internal_assoc_var_table;
    unique_table* internal_bdd_node_map = nullptr;
    std::map<std::string, std::int64_t> internal_names_map;
    bdd_node* internal_bdd_node_one = nullptr;
    // The per-call memos and the walks' scratch stacks and dependency sets.
    std::unique_ptr<workspace> internal_workspace;
};

inline std::int64_t bdd_node::var_index() const
{
    if (!internal_manager_ref)
        return -3;
    if (internal_var_id < 0)
        return internal_var_id;
    return internal_manager_ref->internal_idtoindex_table[static_cast<std::size_t>(internal_var_id)];
}

#endif
