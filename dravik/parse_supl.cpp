#include "parse_supl.h"

#include "Bddexpression.h"
#include "bddpp.h"
#include "data.h"
#include "exceptions.h"
#include "expression.h"
#include "module.h"
#include "signal_manager.h"

#include <algorithm>
#include <ostream>
#include <unordered_map>
#include <unordered_set>
#include <utility>

// ---------------------------------------------------------------- records

bool bindingparse::operator==(const bindingparse& o) const
{
    return internal_instance_status_ident == o.internal_instance_status_ident
        && internal_instance_value_ident == o.internal_instance_value_ident
        && internal_eval_ident == o.internal_eval_ident
        && internal_signal_status_ident == o.internal_signal_status_ident
        && internal_signal_value_ident == o.internal_signal_value_ident;
}

evalnodeparse::evalnodeparse(int nodetype, long tableident)
    : internal_nodetype(nodetype), internal_tableident(tableident), internal_arguments(new std::list<long>)
{
}

evalnodeparse::evalnodeparse(int nodetype, long methodident, const std::list<long>* arguments)
    : internal_nodetype(nodetype), internal_methodident(methodident)
{
    this->arguments(arguments);
}

evalnodeparse::evalnodeparse(const evalnodeparse& other)
    : internal_nodeident(other.internal_nodeident), internal_nodetype(other.internal_nodetype),
      internal_tableident(other.internal_tableident), internal_methodident(other.internal_methodident)
{
    arguments(other.arguments());
}

evalnodeparse& evalnodeparse::operator=(const evalnodeparse& other)
{
    if (this != &other) {
        internal_nodeident = other.internal_nodeident;
        internal_nodetype = other.internal_nodetype;
        internal_tableident = other.internal_tableident;
        internal_methodident = other.internal_methodident;
        arguments(other.arguments());
    }
    return *this;
}

void evalnodeparse::arguments(const std::list<long>* list)
{
    internal_arguments.reset(list ? new std::list<long>(*list) : nullptr);
}

bool evalnodeparse::operator==(const evalnodeparse& o) const
{
    const bool same_arguments = (!internal_arguments && !o.internal_arguments)
        || (internal_arguments && o.internal_arguments && *internal_arguments == *o.internal_arguments);
    return internal_nodeident == o.internal_nodeident && internal_nodetype == o.internal_nodetype
        && internal_tableident == o.internal_tableident && internal_methodident == o.internal_methodident
        && same_arguments;
}

std::ostream& operator<<(std::ostream& os, const evalnodeparse& node)
{
    static const char* const kinds[] = {"CONSTANTE", "LINK", "METHODE PREDEFINIE", "METHODE EXTERNE"};
    const int type = node.nodetype();
    os << node.nodeident() << " " << (type >= 0 && type < 4 ? kinds[type] : "INCONNU") << " " << node.tableident()
       << " " << node.methodident() << " (";
    if (const std::list<long>* args = node.arguments()) {
        const char* sep = "";
        for (long a : *args) {
            os << sep << a;
            sep = " ";
        }
    }
    return os << ") ";
}

// ---------------------------------------------------------------- binding section

binding_declaration_parse::binding_declaration_parse(std::list<bindingparse>* bindings,
                                                     std::list<evalnodeparse>* nodes, const int* corres_method,
                                                     const int* corres_type, const int* corres_constant)
    : internal_binding_list(bindings ? bindings : new std::list<bindingparse>),
      internal_evalnode_list(nodes ? nodes : new std::list<evalnodeparse>), internal_corres_method(corres_method),
      internal_corres_type(corres_type), internal_corres_constant(corres_constant)
{
}

binding_declaration_parse::binding_declaration_parse(const binding_declaration_parse& other)
    : internal_binding_list(new std::list<bindingparse>(*other.internal_binding_list)),
      internal_evalnode_list(new std::list<evalnodeparse>(*other.internal_evalnode_list)),
      internal_corres_method(other.internal_corres_method), internal_corres_type(other.internal_corres_type),
      internal_corres_constant(other.internal_corres_constant), nb_methods(other.nb_methods),
      nb_types(other.nb_types), nb_constants(other.nb_constants)
{
}

binding_declaration_parse& binding_declaration_parse::operator=(const binding_declaration_parse& other)
{
    if (this != &other) {
        *internal_binding_list = *other.internal_binding_list;
        *internal_evalnode_list = *other.internal_evalnode_list;
        internal_corres_method = other.internal_corres_method;
        internal_corres_type = other.internal_corres_type;
        internal_corres_constant = other.internal_corres_constant;
        nb_methods = other.nb_methods;
        nb_types = other.nb_types;
        nb_constants = other.nb_constants;
        by_number.clear();
        indexed = false;
        link_end.clear();
        sizes.clear();
    }
    return *this;
}

binding_declaration_parse::~binding_declaration_parse()
{
    delete internal_binding_list;
    delete internal_evalnode_list;
}

void binding_declaration_parse::corres_sizes(int methods, int types, int constants)
{
    nb_methods = methods;
    nb_types = types;
    nb_constants = constants;
}

bool binding_declaration_parse::operator==(const binding_declaration_parse& o) const
{
    return *internal_binding_list == *o.internal_binding_list && *internal_evalnode_list == *o.internal_evalnode_list
        && internal_corres_method == o.internal_corres_method && internal_corres_type == o.internal_corres_type
        && internal_corres_constant == o.internal_corres_constant;
}

void binding_declaration_parse::index_nodes() const
{
    if (indexed)
        return;
    for (const evalnodeparse& node : *internal_evalnode_list)
        by_number.emplace(node.nodeident(), &node);
    indexed = true;
}

const evalnodeparse& binding_declaration_parse::get_evalnode(long number) const
{
    index_nodes();
    auto it = by_number.find(number);
    if (it == by_number.end())
        IllegalOperationException("binding_declaration_parse::get_evalnode: node_not_found");
    return *it->second;
}

bool binding_declaration_parse::refuse(long node, const std::string& fault)
{
    internal_error = "evaluation node " + std::to_string(node) + ": " + fault;
    return false;
}

const evalnodeparse* binding_declaration_parse::find_evalnode(long number) const
{
    index_nodes();
    auto it = by_number.find(number);
    return it == by_number.end() ? nullptr : it->second;
}

// The nodes whose expressions a node's expression is made of: the target of
// a link, the arguments of an operation or a method call. A signal value's
// arguments are variable ids, and an operation with a wrong argument count
// is a fatal error met when it is built: neither has any.
void binding_declaration_parse::expression_children(const evalnodeparse& node, std::vector<long>& out)
{
    out.clear();
    const std::list<long>* args = node.arguments();
    switch (node.nodetype()) {
    case evalnodeparse::LINK:
        out.push_back(node.tableident());
        break;
    case evalnodeparse::METHODE_PREDEFINIE:
        if (node.methodident() % DataExpr::NbPredefOp != DataExpr::SignalVal && args
            && (args->size() == 1 || args->size() == 2))
            out.assign(args->begin(), args->end());
        break;
    case evalnodeparse::METHODE_EXTERNE:
        if (args)
            out.assign(args->begin(), args->end());
        break;
    default:
        break;
    }
}

// Number of tree nodes the expression of `root` will have, each shared node
// counted once per reference (links count nothing), at most
// max_built_nodes + 1. Sizes are kept for the whole section, so that the
// table is walked once whatever the number of bindings. A missing node
// counts one: building it reports it. A cycle is refused (-1).
long binding_declaration_parse::expression_size(const evalnodeparse& root)
{
    if (auto known = sizes.find(&root); known != sizes.end())
        return known->second;
    struct frame {
        const evalnodeparse* node;
        std::vector<long> children;
        std::size_t next;
        long size;
    };
    std::vector<frame> stack;
    std::unordered_set<const evalnodeparse*> in_progress;
    auto enter = [&](const evalnodeparse* node) {
        in_progress.insert(node);
        stack.push_back(frame{node, {}, 0, node->nodetype() == evalnodeparse::LINK ? 0 : 1});
        expression_children(*node, stack.back().children);
    };
    auto add = [](long a, long b) { return std::min(a + b, max_built_nodes + 1); };
    enter(&root);
    while (!stack.empty()) {
        frame& f = stack.back();
        if (f.next < f.children.size()) {
            const evalnodeparse* child = find_evalnode(f.children[f.next++]);
            if (!child) {
                f.size = add(f.size, 1);
                continue;
            }
            if (auto known = sizes.find(child); known != sizes.end()) {
                f.size = add(f.size, known->second);
                continue;
            }
            if (in_progress.count(child)) {
                refuse(child->nodeident(), "cycle among evaluation nodes (node " + std::to_string(f.node->nodeident())
                                               + " leads back to it)");
                return -1;
            }
            enter(child);
            continue;
        }
        const long size = f.size;
        const evalnodeparse* done = f.node;
        sizes[done] = size;
        in_progress.erase(done);
        stack.pop_back();
        if (!stack.empty())
            stack.back().size = add(stack.back().size, size);
    }
    return sizes[&root];
}

// Module::getSignal's answer for every name at once, so that a binding
// section costs no scan of the signal lists per binding: inputs and outputs
// by declared name, data, local and pre signals by internal name, in that
// order, the first hit winning. The lists do not change while bindings are
// attached.
class binding_declaration_parse::signal_names {
public:
    explicit signal_names(const Module& m)
    {
        for (Signal* s : *m.getInputSignalList())
            add(s, s ? s->getOriginalName() : std::string());
        for (Signal* s : *m.getOutputSignalList())
            add(s, s ? s->getOriginalName() : std::string());
        for (Signal* s : *m.getDataSignalList())
            add(s, s ? s->getInternalName() : std::string());
        for (Signal* s : *m.getLocalSignalList())
            add(s, s ? s->getInternalName() : std::string());
        for (memorizedSignal* pre : *m.getPreSignalList())
            if (pre)
                add(pre->pre(), pre->pre() ? pre->pre()->getInternalName() : std::string());
    }

    Signal* find(const std::string& name) const
    {
        auto it = table.find(name);
        return it == table.end() ? nullptr : it->second;
    }

private:
    void add(Signal* s, const std::string& name)
    {
        if (s)
            table.emplace(name, s);
    }

    std::unordered_map<std::string, Signal*> table;
};

// Builds one data expression, without recursion, once expression_size() has
// found it finite and small enough. Links are followed to the node they end
// on (kept for the section: a chain costs its length once); every other node
// becomes a new tree node each time it is reached, as the format requires.
class binding_declaration_parse::builder {
public:
    // `names` may be null: the builder then makes its own when a signal
    // value needs it.
    builder(binding_declaration_parse& section, Module* module, const signal_names* names)
        : section(section), module(module), names(names)
    {
    }

    DataExpr* build(const evalnodeparse& root)
    {
        if (!enter(follow_links(&root)))
            return nullptr;
        while (!stack.empty()) {
            frame& f = stack.back();
            if (f.next != f.node->arguments()->end()) {
                const long number = *f.next++;
                if (!enter(follow_links(&section.get_evalnode(number))))
                    return nullptr;
                continue;
            }
            std::unique_ptr<DataExpr> made = assemble(f);
            stack.pop_back();
            deliver(std::move(made));
        }
        return result.release();
    }

private:
    struct frame {
        const evalnodeparse* node;
        std::list<long>::const_iterator next;
        std::vector<std::unique_ptr<DataExpr>> built;
    };

    const evalnodeparse* follow_links(const evalnodeparse* node)
    {
        std::vector<const evalnodeparse*> chain;
        while (node->nodetype() == evalnodeparse::LINK) {
            auto known = section.link_end.find(node);
            if (known != section.link_end.end()) {
                node = known->second;
                break;
            }
            chain.push_back(node);
            node = &section.get_evalnode(node->tableident());
        }
        for (const evalnodeparse* link : chain)
            section.link_end[link] = node;
        return node;
    }

    // Starts the expression of a node that is not a link: leaves are made at
    // once, operations and calls get a frame for their arguments.
    bool enter(const evalnodeparse* node)
    {
        switch (node->nodetype()) {
        case evalnodeparse::CONSTANTE: {
            const long c = node->tableident();
            if (c < 0 || c >= section.nb_constants)
                return section.refuse(node->nodeident(), "constant number " + std::to_string(c)
                                                             + " is not declared in the data section ("
                                                             + std::to_string(section.nb_constants) + " constants)");
            deliver(std::make_unique<DataConstant>(section.internal_corres_constant[c]));
            return true;
        }
        case evalnodeparse::METHODE_PREDEFINIE: {
            const long op = node->methodident() % DataExpr::NbPredefOp;
            const std::list<long>* args = node->arguments();
            const std::size_t count = args ? args->size() : 0;
            if (op == DataExpr::SignalVal) {
                if (count == 0)
                    return section.refuse(node->nodeident(), "signal value without a signal");
                deliver(std::make_unique<DataSignalValue>(signal_at(args->front())));
                return true;
            }
            if (count != 1 && count != 2)
                IllegalOperationException("binding_declaration_parse::dataexpr: invalid_operator");
            push(node);
            return true;
        }
        case evalnodeparse::METHODE_EXTERNE: {
            const long m = node->methodident();
            if (m < 0 || m >= section.nb_methods)
                return section.refuse(node->nodeident(), "method number " + std::to_string(m)
                                                             + " is not declared in the data section ("
                                                             + std::to_string(section.nb_methods) + " methods)");
            if (!node->arguments()) {
                deliver(std::make_unique<DataMethodCall>(section.internal_corres_method[m], nullptr));
                return true;
            }
            push(node);
            return true;
        }
        default:
            IllegalOperationException("binding_declaration_parse::dataexpr: unknown_eval_type");
        }
    }

    void push(const evalnodeparse* node) { stack.push_back(frame{node, node->arguments()->begin(), {}}); }

    // The module's signal whose variable is `id`.
    Signal* signal_at(long id)
    {
        SignalRef* ref = module ? module->getSignalManager()->getSignalRefById(id, module->getBddWood()) : nullptr;
        if (!ref)
            die("binding_declaration_parse::dataexpr: signal not found: " + std::to_string(id));
        if (!names) {
            own_names = std::make_unique<signal_names>(*module);
            names = own_names.get();
        }
        Signal* s = names->find(ref->getOriginalName());
        if (!s)
            die("binding_declaration_parse::dataexpr2: signal not found: " + ref->getOriginalName());
        return s;
    }

    // The node of a frame whose arguments are all built.
    std::unique_ptr<DataExpr> assemble(frame& f)
    {
        if (f.node->nodetype() == evalnodeparse::METHODE_EXTERNE) {
            auto args = std::make_unique<std::list<DataExpr*>>();
            for (auto& a : f.built)
                args->push_back(a.release());
            return std::make_unique<DataMethodCall>(section.internal_corres_method[f.node->methodident()],
                                                    args.release());
        }
        const int op = static_cast<int>(f.node->methodident() % DataExpr::NbPredefOp);
        if (f.built.size() == 2)
            return std::make_unique<DataBinaryOp>(op, f.built[0].release(), f.built[1].release());
        return std::make_unique<DataUnaryOp>(op, f.built[0].release());
    }

    void deliver(std::unique_ptr<DataExpr> made)
    {
        if (stack.empty())
            result = std::move(made);
        else
            stack.back().built.push_back(std::move(made));
    }

    binding_declaration_parse& section;
    Module* module;
    const signal_names* names;
    std::unique_ptr<signal_names> own_names;
    std::vector<frame> stack;
    std::unique_ptr<DataExpr> result;
};

DataExpr* binding_declaration_parse::dataexpr(long number, Module* module)
{
    return dataexpr(get_evalnode(number), module);
}

DataExpr* binding_declaration_parse::dataexpr(const evalnodeparse& node, Module* module)
{
    internal_error.clear();
    const long size = expression_size(node);
    if (size < 0)
        return nullptr;
    built_nodes += size;
    if (built_nodes > max_built_nodes) {
        refuse(node.nodeident(), "the data expressions reach more than " + std::to_string(max_built_nodes) + " nodes");
        return nullptr;
    }
    return builder(*this, module, names).build(node);
}

bool binding_declaration_parse::createbinding(Module* module)
{
    Bddexpressionwood* wood = module->getBddWood();
    SignalManager* manager = module->getSignalManager();
    built_nodes = 0;
    const signal_names by_name(*module);
    names = &by_name;
    struct forget {
        const signal_names*& names;
        ~forget() { names = nullptr; }
    } forget_names{names};
    for (const bindingparse& b : *internal_binding_list) {
        SignalRef* ref = manager->getSignalRefById(b.instance_status_ident(), wood);
        if (!ref)
            die("unknown data signal:" + std::to_string(b.instance_status_ident()));
        Signal* signal = by_name.find(ref->getOriginalName());
        if (!signal)
            die("unknown data signal:" + ref->getOriginalName());
        DataExpr* value = dataexpr(b.eval_ident(), module);
        if (!value)
            return false;
        // Module::getSignalById: the signal named like the clock's reference.
        Signal* clock = nullptr;
        if (b.signal_status_ident() != -1)
            if (SignalRef* clock_ref = manager->getSignalRefById(b.signal_status_ident(), wood))
                clock = by_name.find(clock_ref->getInternalName());
        if (clock) {
            clock->setClock();
            module->addSignalBinding(value, signal, clock);
        } else {
            module->addSignalBinding(value, signal);
        }
    }
    return true;
}

// ---------------------------------------------------------------- BDD nodes

bool parsed_nodes_class::operator==(const parsed_nodes_class& o) const
{
    return internal_var_id == o.internal_var_id && internal_then_id == o.internal_then_id
        && internal_else_link_type == o.internal_else_link_type && internal_else_id == o.internal_else_id
        && internal_bdd_node == o.internal_bdd_node;
}

std::ostream& operator<<(std::ostream& os, const parsed_nodes_class& node)
{
    os << node.var_id() << " " << node.then_id() << " " << node.else_link_type() << " " << node.else_id() << " ";
    if (node.node())
        os << "#" << node.node()->global_id();
    else
        os << "<not connected>";
    return os;
}

bdd_node* parsed_nodes_class::build(long number, bddpp_manager* manager, table& nodes, parsed_nodes_fault& fault)
{
    const long size = static_cast<long>(nodes.size());
    auto defined = [&](long n) { return n >= 0 && n < size && nodes[static_cast<std::size_t>(n)]; };
    auto at = [&](long n) -> parsed_nodes_class& { return *nodes[static_cast<std::size_t>(n)]; };
    if (!defined(number)) {
        fault.node = number;
        fault.text = "node " + std::to_string(number) + " is not defined";
        return nullptr;
    }
    if (at(number).internal_bdd_node)
        return at(number).internal_bdd_node;

    std::vector<long> stack{number};
    at(number).on_path = true;
    // A fault leaves no marks behind: the next build starts clean.
    auto fail = [&](long n, const std::string& text) -> bdd_node* {
        for (long s : stack)
            at(s).on_path = false;
        fault.node = n;
        fault.text = text;
        return nullptr;
    };
    auto child_fault = [&](const char* which, long c) {
        std::string text = std::string(which) + " child " + std::to_string(c);
        if (c < 0)
            return text + " is negative";
        if (c >= size)
            return text + " is out of the table (" + std::to_string(size) + " nodes announced)";
        return text + " is never defined";
    };

    while (!stack.empty()) {
        const long i = stack.back();
        parsed_nodes_class& n = at(i);
        if (n.internal_var_id == -1) {
            n.internal_bdd_node = manager->Bdd_node_one();
            n.on_path = false;
            stack.pop_back();
            continue;
        }
        if (n.internal_var_id < 0 || n.internal_var_id >= manager->Nb_bdd_vars())
            return fail(i, "variable " + std::to_string(n.internal_var_id) + " is not a variable of the module");
        if (n.internal_else_link_type != 1 && n.internal_else_link_type != -1)
            return fail(i, "else link type " + std::to_string(n.internal_else_link_type) + " is neither 1 nor -1");
        bool descended = false;
        for (const auto& [which, c] : {std::pair<const char*, long>{"then", n.internal_then_id},
                                       std::pair<const char*, long>{"else", n.internal_else_id}}) {
            if (!defined(c))
                return fail(i, child_fault(which, c));
            parsed_nodes_class& child = at(c);
            if (child.internal_bdd_node)
                continue;
            if (child.on_path)
                return fail(i, "cycle among node lines (" + std::string(which) + " child " + std::to_string(c)
                                   + " leads back to node " + std::to_string(i) + ")");
            child.on_path = true;
            stack.push_back(c);
            descended = true;
            break;
        }
        if (descended)
            continue;
        const bdd then_edge(manager, 1, at(n.internal_then_id).internal_bdd_node);
        const bdd else_edge(manager, n.internal_else_link_type, at(n.internal_else_id).internal_bdd_node);
        const bdd made = manager->Bdd_ite(1, n.internal_var_id, then_edge, else_edge);
        if (made.link_type() != 1)
            die("internal error in parsed_nodes_class::build()");
        n.internal_bdd_node = made.node();
        n.on_path = false;
        stack.pop_back();
    }
    return at(number).internal_bdd_node;
}
