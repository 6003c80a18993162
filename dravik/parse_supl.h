#ifndef DRAVIK_PARSE_SUPL_H
#define DRAVIK_PARSE_SUPL_H

// Records the compiled-module reader collects while it reads a file: the BDD
// nodes of the equation section, and the bindings and evaluation nodes of the
// binding section, which become data expressions bound to the module's
// valued signals once the whole file is read.

#include <iosfwd>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

class DataExpr;
class Module;
class bdd_node;
class bddpp_manager;

// "(" a "," b ")" in the file.
class couplelong {
public:
    couplelong(long premier = 0, long second = 0) : internal_premier(premier), internal_second(second) {}

    long premier() const { return internal_premier; }
    void premier(long value) { internal_premier = value; }
    long second() const { return internal_second; }
    void second(long value) { internal_second = value; }

    bool operator==(const couplelong& o) const
    {
        return internal_premier == o.internal_premier && internal_second == o.internal_second;
    }
    bool operator!=(const couplelong& o) const { return !(*this == o); }

private:
    long internal_premier;
    long internal_second;
};

// One binding line: the bound signal's status and value variable ids, the
// evaluation node of its value, and the clock's ids (-1 without a clock).
class bindingparse {
public:
    bindingparse(long status, long value, long eval, long clock_status = -1, long clock_value = -1)
        : internal_instance_status_ident(status), internal_instance_value_ident(value),
          internal_eval_ident(eval), internal_signal_status_ident(clock_status),
          internal_signal_value_ident(clock_value)
    {
    }

    long instance_status_ident() const { return internal_instance_status_ident; }
    void instance_status_ident(long v) { internal_instance_status_ident = v; }
    long instance_value_ident() const { return internal_instance_value_ident; }
    void instance_value_ident(long v) { internal_instance_value_ident = v; }
    long eval_ident() const { return internal_eval_ident; }
    void eval_ident(long v) { internal_eval_ident = v; }
    long signal_status_ident() const { return internal_signal_status_ident; }
    void signal_status_ident(long v) { internal_signal_status_ident = v; }
    long signal_value_ident() const { return internal_signal_value_ident; }
    void signal_value_ident(long v) { internal_signal_value_ident = v; }

    bool operator==(const bindingparse& o) const;
    bool operator!=(const bindingparse& o) const { return !(*this == o); }

private:
    long internal_instance_status_ident;
    long internal_instance_value_ident;
    long internal_eval_ident;
    long internal_signal_status_ident;
    long internal_signal_value_ident;
};

// One evaluation node: a constant, a link to another node, a built-in
// operation or a call of an external method.
class evalnodeparse {
public:
    static constexpr int CONSTANTE = 0;
    static constexpr int LINK = 1;
    static constexpr int METHODE_PREDEFINIE = 2;
    static constexpr int METHODE_EXTERNE = 3;

    // A constant (constant number) or a link (node number): no method, no
    // argument.
    evalnodeparse(int nodetype, long tableident);
    // An operation (operator code) or a method call (file method number) over
    // argument node numbers; a null list means no argument list at all.
    evalnodeparse(int nodetype, long methodident, const std::list<long>* arguments);
    evalnodeparse(const evalnodeparse& other);
    evalnodeparse& operator=(const evalnodeparse& other);
    evalnodeparse(evalnodeparse&&) = default;
    evalnodeparse& operator=(evalnodeparse&&) = default;
    ~evalnodeparse() = default;

    long nodeident() const { return internal_nodeident; }
    void nodeident(long v) { internal_nodeident = v; }
    int nodetype() const { return internal_nodetype; }
    void nodetype(int v) { internal_nodetype = v; }
    long tableident() const { return internal_tableident; }
    void tableident(long v) { internal_tableident = v; }
    long methodident() const { return internal_methodident; }
    void methodident(long v) { internal_methodident = v; }
    // Null when the node has no argument list.
    const std::list<long>* arguments() const { return internal_arguments.get(); }
    void arguments(const std::list<long>* list);

    bool operator==(const evalnodeparse& o) const;
    bool operator!=(const evalnodeparse& o) const { return !(*this == o); }

private:
    long internal_nodeident = 0;
    int internal_nodetype;
    long internal_tableident = 0;
    long internal_methodident = -1;
    std::unique_ptr<std::list<long>> internal_arguments;
};

// "<number> <kind> <table ident> <method ident> (<arguments>) ".
std::ostream& operator<<(std::ostream& os, const evalnodeparse& node);

// The binding section of a file, and the reader's translation arrays from
// the file's method, type and constant numbers to the global ones.
class binding_declaration_parse {
public:
    // Takes the two lists (null reads as empty). The arrays belong to the
    // reader and are filled by the data section, which follows the binding
    // section: their used sizes are given later with corres_sizes().
    binding_declaration_parse(std::list<bindingparse>* bindings, std::list<evalnodeparse>* nodes,
                              const int* corres_method, const int* corres_type, const int* corres_constant);
    binding_declaration_parse(const binding_declaration_parse& other);
    binding_declaration_parse& operator=(const binding_declaration_parse& other);
    ~binding_declaration_parse();

    const std::list<bindingparse>& binding_list() const { return *internal_binding_list; }
    const std::list<evalnodeparse>& evalnode_list() const { return *internal_evalnode_list; }
    const int* corres_method() const { return internal_corres_method; }
    const int* corres_type() const { return internal_corres_type; }
    const int* corres_constant() const { return internal_corres_constant; }
    // How many entries of each array the file defined; method and constant
    // numbers at or beyond them are refused.
    void corres_sizes(int methods, int types, int constants);

    // The first node of the list with that number; none is fatal
    // ("node_not_found").
    const evalnodeparse& get_evalnode(long number) const;

    // The data expression of an evaluation node, a new tree owned by the
    // caller. Fatal conditions end the process as their messages say. Null
    // when the table cannot be built (a cycle among evaluation nodes, a
    // method or constant number the file did not declare, an expression too
    // large); error() then tells why.
    DataExpr* dataexpr(long number, Module* module);
    DataExpr* dataexpr(const evalnodeparse& node, Module* module);

    // Attaches every binding, in file order, to the module. False (with
    // error() set) when an expression cannot be built; bindings attached
    // before stay.
    bool createbinding(Module* module);

    const std::string& error() const { return internal_error; }

    bool operator==(const binding_declaration_parse& o) const;
    bool operator!=(const binding_declaration_parse& o) const { return !(*this == o); }

    // Tree nodes of the data expressions built by one createbinding() (or
    // by the dataexpr() calls of one section): every reference of a shared
    // node is a tree of its own, so a small table can stand for a huge
    // expression.
    static constexpr long max_built_nodes = 1L << 22;

private:
    class builder;
    class signal_names;

    void index_nodes() const;
    const evalnodeparse* find_evalnode(long number) const;
    static void expression_children(const evalnodeparse& node, std::vector<long>& out);
    long expression_size(const evalnodeparse& root);
    bool refuse(long node, const std::string& fault);

    std::list<bindingparse>* internal_binding_list;
    std::list<evalnodeparse>* internal_evalnode_list;
    const int* internal_corres_method;
    const int* internal_corres_type;
    const int* internal_corres_constant;
    int nb_methods = 0;
    int nb_types = 0;
    int nb_constants = 0;
    std::string internal_error;
    long built_nodes = 0;
    // The module's signals by name while createbinding() runs.
    const signal_names* names = nullptr;
    // Node number -> first node with that number; built on first use.
    mutable std::map<long, const evalnodeparse*> by_number;
    mutable bool indexed = false;
    // Link node -> the node its chain of links ends on, found once.
    std::unordered_map<const evalnodeparse*, const evalnodeparse*> link_end;
    // Node -> number of tree nodes of its expression, found once.
    std::unordered_map<const evalnodeparse*, long> sizes;
};

// Why a node table could not be built: the node whose line is at fault and
// what is wrong with it.
struct parsed_nodes_fault {
    long node = -1;
    std::string text;
};

// One BDD node line of the equation section: variable index (-1 for the
// terminal node), then child, else child and the link type of the else edge.
class parsed_nodes_class {
public:
    parsed_nodes_class(long var_id, long then_id, long else_id, int else_link_type)
        : internal_var_id(var_id), internal_then_id(then_id), internal_else_link_type(else_link_type),
          internal_else_id(else_id)
    {
    }

    long var_id() const { return internal_var_id; }
    void var_id(long v) { internal_var_id = v; }
    long then_id() const { return internal_then_id; }
    void then_id(long v) { internal_then_id = v; }
    int else_link_type() const { return internal_else_link_type; }
    void else_link_type(int v) { internal_else_link_type = v; }
    long else_id() const { return internal_else_id; }
    void else_id(long v) { internal_else_id = v; }
    // The built node, null until built.
    bdd_node* node() const { return internal_bdd_node; }
    void node(bdd_node* n) { internal_bdd_node = n; }

    using table = std::vector<std::unique_ptr<parsed_nodes_class>>;

    // Builds node `number` of `nodes` (null entries: no line defined them)
    // and every node below it with the manager's if-then-else, each node
    // once: a node already built is returned as it is. The walk keeps its own
    // stack, so chains as long as the table are safe. Null, with `fault`
    // filled, when a node below has a variable the manager does not have, an
    // else link other than 1 and -1, a child that is negative, out of the
    // table or never defined, or when the nodes form a cycle.
    static bdd_node* build(long number, bddpp_manager* manager, table& nodes, parsed_nodes_fault& fault);

    // Member-wise; the walk's mark is not part of the value.
    bool operator==(const parsed_nodes_class& o) const;
    bool operator!=(const parsed_nodes_class& o) const { return !(*this == o); }

private:
    long internal_var_id;
    long internal_then_id;
    int internal_else_link_type;
    long internal_else_id;
    bdd_node* internal_bdd_node = nullptr;
    bool on_path = false;
};

// "<var> <then> <else link> <else> " then the built node's global id, or
// "<not connected>".
std::ostream& operator<<(std::ostream& os, const parsed_nodes_class& node);

#endif
