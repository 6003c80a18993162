#include "Bddexpression.h"

#include "dravik_warn.h"
#include "exceptions.h"

#include <algorithm>
#include <climits>
#include <iostream>
#include <utility>

namespace {

// Largest table capacity that may still be doubled.
constexpr std::int64_t max_doubling_capacity = 536870911;

// Dates come from files: adding one must not overflow.
std::int64_t plus_one(std::int64_t d)
{
    return d == INT64_MAX ? d : d + 1;
}

const std::set<std::int64_t> no_readers;

} // namespace

// ---------------------------------------------------------------- Bddexpression

Bddexpression::Bddexpression(const std::string& name_, Bddexpressionwood* wood, const bdd& variable,
                             const bdd& function, std::int64_t earliest, std::int64_t latest)
    : pw(wood), name(name_), bdd_var(variable), bdd_exp(function), earliest_date(earliest)
{
    internal_build_dependances();
    if (!pw)
        return;
    pw->owned.emplace_back(this);
    pw->set_latest_date(getIndex(), latest);
    pw->learn_expression(this);
}

Bddexpression::Bddexpression(std::int64_t variable_index, Bddexpressionwood* wood,
                             const std::set<std::int64_t>& dependances, const std::string& exp_def_,
                             std::int64_t earliest, std::int64_t latest)
    : pw(wood), exp_def(exp_def_), vars_dependance(dependances), earliest_date(earliest), abstract_function(true)
{
    if (!pw)
        return;
    pw->owned.emplace_back(this);
    if (bddpp_manager* m = pw->man) {
        bdd_exp = m->Bdd_one();
        if (variable_index >= 0 && variable_index < m->Nb_bdd_vars()) {
            bdd_var = m->Bdd_var_by_index(variable_index);
            name = m->Name_var_by_index(variable_index);
        }
    }
    pw->set_latest_date(variable_index, latest);
    pw->learn_expression(this);
}

Bddexpression::Bddexpression(const std::string& name_, Bddexpressionwood* wood, const bdd& variable,
                             const bdd& function, int usertype_)
    : pw(wood), name(name_), bdd_var(variable), bdd_exp(function), usertype(usertype_)
{
    internal_build_dependances();
    if (!pw)
        return;
    pw->owned.emplace_back(this);
    pw->learn_expression(this);
}

std::int64_t Bddexpression::getIndex() const
{
    return bdd_var.node() ? bdd_var.node()->var_index() : -1;
}

void Bddexpression::internal_build_dependances()
{
    bddpp_manager* m = (pw && pw->man) ? pw->man : bdd_exp.manager_ref();
    vars_dependance.clear();
    if (!m)
        return;
    if (m->Nb_bdd_vars() > max_doubling_capacity)
        die("in Bddexpression: Nb bdd vars reached!\nprogram aborted ...");
    vars_dependance = m->set_of_index_depend_on(bdd_exp);
}

void Bddexpression::setBddExp(const bdd& function)
{
    std::int64_t k = getIndex();
    bool learnt = pw && k >= 0 && k < pw->nb_var_bdd && pw->exp_table[static_cast<std::size_t>(k)] == this;
    if (learnt)
        pw->remove_reader_edges(k, vars_dependance);
    bdd_exp = function;
    abstract_function = false;
    internal_build_dependances();
    if (learnt)
        pw->add_reader_edges(k, vars_dependance);
}

// ---------------------------------------------------------------- wood

Bddexpressionwood::Bddexpressionwood() : man(new bddpp_manager) {}

Bddexpressionwood::Bddexpressionwood(bddpp_manager* manager) : man(manager) {}

Bddexpressionwood::~Bddexpressionwood()
{
    // The equations hold handles into the manager: they go first.
    owned.clear();
    if (common_bdd_manager == 0)
        delete man;
}

std::int64_t Bddexpressionwood::grown_capacity(std::int64_t capacity, std::int64_t needed)
{
    if (capacity < 1)
        capacity = 1;
    while (capacity < needed) {
        if (capacity > max_doubling_capacity)
            die("in Bddexpressionwood: Nb bdd vars reached!\nprogram aborted ...");
        capacity *= 2;
    }
    return capacity;
}

void Bddexpressionwood::update_bdd_vars()
{
    std::int64_t count = Nb_bdd_vars();
    if (nb_var_bdd >= count)
        return;
    nb_max_var_bdd = grown_capacity(nb_max_var_bdd, count);
    std::size_t size = static_cast<std::size_t>(nb_max_var_bdd);
    exp_table.resize(size, nullptr);
    amont_dep_table.resize(size);
    latest_date_table.resize(size, 0);
    nb_var_bdd = count;
}

void Bddexpressionwood::add_reader_edges(std::int64_t k, const std::set<std::int64_t>& deps)
{
    // Equations mostly come in increasing variable order: the end is then
    // the right place and the insertion costs no search.
    for (std::int64_t j : deps)
        if (j >= 0 && j < nb_var_bdd) {
            std::set<std::int64_t>& readers = amont_dep_table[static_cast<std::size_t>(j)];
            readers.insert(readers.end(), k);
        }
}

void Bddexpressionwood::remove_reader_edges(std::int64_t k, const std::set<std::int64_t>& deps)
{
    for (std::int64_t j : deps)
        if (j >= 0 && j < nb_var_bdd)
            amont_dep_table[static_cast<std::size_t>(j)].erase(k);
}

void Bddexpressionwood::learn_expression(Bddexpression* e)
{
    const char* head = "INTERNAL ERROR in Bddexpressionwood::learn_expression():";
    if (!e) {
        dravik_warn() << head << '\n' << "no expression !!!" << "\n\n";
        return;
    }
    std::int64_t k = e->getIndex();
    if (k < 0) {
        dravik_warn() << head << '\n' << "no left member in expression" << "\n\n";
        return;
    }
    if (k >= Nb_bdd_vars()) {
        dravik_warn() << head << '\n' << "bdd variable doesn't exist in Bdd manager" << "\n\n";
        return;
    }
    if (k >= nb_var_bdd)
        update_bdd_vars();
    std::size_t slot = static_cast<std::size_t>(k);
    if (exp_table[slot] == e)
        return;
    if (Bddexpression* old = exp_table[slot]) {
        remove_reader_edges(k, old->vars_dependance);
    } else {
        ens_exp.insert(k);
        exp_order_stale = true;
    }
    exp_table[slot] = e;
    add_reader_edges(k, e->vars_dependance);
    nb_level = std::max(nb_level, e->earliest_date);
    nb_level = std::max(nb_level, latest_date_table[slot]);
}

// ---------------------------------------------------------------- dates

std::int64_t Bddexpressionwood::latest_date(std::int64_t index) const
{
    if (index < 0 || index >= nb_var_bdd)
        return 0;
    return latest_date_table[static_cast<std::size_t>(index)];
}

void Bddexpressionwood::set_latest_date(std::int64_t index, std::int64_t date)
{
    update_bdd_vars();
    if (index >= 0 && index < nb_var_bdd)
        latest_date_table[static_cast<std::size_t>(index)] = date;
}

std::int64_t Bddexpressionwood::compute_dates(const std::list<std::int64_t>&)
{
    return compute_dates();
}

std::int64_t Bddexpressionwood::compute_dates()
{
    update_bdd_vars();
    if (nb_level != 0 || Nb_bdd_vars() == 0)
        return nb_level;
    std::fill(latest_date_table.begin(), latest_date_table.end(), 0);
    for (std::int64_t i = 0; i < nb_var_bdd; ++i) {
        std::size_t slot = static_cast<std::size_t>(i);
        const std::set<std::int64_t>& readers = amont_dep_table[slot];
        if (!readers.empty()) {
            for (std::int64_t j : readers) {
                if (j < nb_var_bdd) {
                    Bddexpression* e = exp_table[slot];
                    early_propagation(j, e ? plus_one(e->earliest_date) : 1);
                } else {
                    dravik_warn() << "ERREUR dans compute_date(): nombre de variables trop grand :" << j << ">= "
                                  << nb_var_bdd << '\n';
                }
            }
        } else if (Bddexpression* e = exp_table[slot]) {
            // A sink: nobody reads it.
            nb_level = std::max(nb_level, plus_one(e->earliest_date));
            for (std::int64_t j : e->vars_dependance)
                if (j >= 0 && j < nb_var_bdd)
                    late_propagation(j, plus_one(e->pw ? e->pw->latest_date(e->getIndex()) : 0));
        }
    }
    return nb_level;
}

// The recursion "date the readers of i after i", run on an explicit stack in
// the order of the recursive definition: a long chain must not exhaust the
// machine stack.
void Bddexpressionwood::early_propagation(std::int64_t i, std::int64_t d)
{
    std::vector<date_frame>& stack = propagation_stack;
    stack.clear();
    auto enter = [&](std::int64_t at, std::int64_t date) {
        Bddexpression* e = exp_table[static_cast<std::size_t>(at)];
        if (!e || date <= e->earliest_date)
            return;
        e->earliest_date = date;
        nb_level = std::max(nb_level, plus_one(date));
        if (nb_level > 2 * nb_var_bdd)
            return; // the cycle guard
        const std::set<std::int64_t>& readers = amont_dep_table[static_cast<std::size_t>(at)];
        stack.push_back(date_frame{date, readers.begin(), readers.end()});
    };
    enter(i, d);
    while (!stack.empty()) {
        date_frame& f = stack.back();
        if (f.next == f.end) {
            stack.pop_back();
            continue;
        }
        std::int64_t j = *f.next++;
        if (j < nb_var_bdd)
            enter(j, plus_one(f.d));
    }
}

// Mirror of early_propagation towards what each equation reads, with its own
// rules: a latest date of 0 counts as unset, and the date is recorded even for
// a variable without equation.
void Bddexpressionwood::late_propagation(std::int64_t i, std::int64_t d)
{
    std::vector<date_frame>& stack = propagation_stack;
    stack.clear();
    auto enter = [&](std::int64_t at, std::int64_t date) {
        std::int64_t& latest = latest_date_table[static_cast<std::size_t>(at)];
        if (latest != 0 && latest >= date)
            return;
        latest = date;
        nb_level = std::max(nb_level, plus_one(date));
        Bddexpression* e = exp_table[static_cast<std::size_t>(at)];
        if (!e || nb_level > 2 * nb_var_bdd)
            return;
        stack.push_back(date_frame{date, e->vars_dependance.begin(), e->vars_dependance.end()});
    };
    enter(i, d);
    while (!stack.empty()) {
        date_frame& f = stack.back();
        if (f.next == f.end) {
            stack.pop_back();
            continue;
        }
        std::int64_t j = *f.next++;
        if (j >= 0 && j < nb_var_bdd)
            enter(j, plus_one(f.d));
    }
}

void Bddexpressionwood::reset_dates()
{
    nb_level = 0;
    for (std::int64_t k : ens_exp)
        exp_table[static_cast<std::size_t>(k)]->earliest_date = 0;
}

std::list<std::int64_t> Bddexpressionwood::loop_detection()
{
    if (nb_level == 0)
        compute_dates();
    std::list<std::int64_t> caught;
    if (nb_level <= nb_var_bdd)
        return caught;
    for (std::int64_t i = 0; i < nb_var_bdd; ++i) {
        Bddexpression* e = exp_table[static_cast<std::size_t>(i)];
        if (e && (e->earliest_date > nb_var_bdd || latest_date_table[static_cast<std::size_t>(i)] > nb_var_bdd))
            caught.push_back(i);
    }
    return caught;
}

// Dates 0 to nb_level, each in increasing index order: a stable sort of the
// indices by date gives that order without one pass per date.
std::list<std::int64_t> Bddexpressionwood::sort_by(bool earliest) const
{
    std::vector<std::pair<std::int64_t, std::int64_t>> dated;
    if (nb_level < 0)
        return {};
    for (std::int64_t i = 0; i < nb_var_bdd; ++i) {
        Bddexpression* e = exp_table[static_cast<std::size_t>(i)];
        if (!e)
            continue;
        std::int64_t d = earliest ? e->earliest_date : latest_date_table[static_cast<std::size_t>(i)];
        if (d >= 0 && d <= nb_level)
            dated.emplace_back(d, i);
    }
    std::stable_sort(dated.begin(), dated.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::list<std::int64_t> order;
    for (const auto& p : dated)
        order.push_back(p.second);
    return order;
}

std::list<std::int64_t> Bddexpressionwood::earliest_sort() const
{
    return sort_by(true);
}

std::list<std::int64_t> Bddexpressionwood::latest_sort() const
{
    return sort_by(false);
}

void Bddexpressionwood::critical_path_warning() const
{
    // Both walkers carry the same text.
    dravik_warn() << "WARNING in Bddexpressionwood::down_critical_path():" << '\n'
                  << "   possible infinite recursion due to a signals cycle" << '\n';
}

std::list<std::int64_t> Bddexpressionwood::down_critical_path(std::int64_t index) const
{
    std::list<std::int64_t> path;
    std::set<std::int64_t> met;
    std::int64_t cur = index;
    while (cur >= 0 && cur < nb_var_bdd) {
        path.push_back(cur);
        met.insert(cur);
        std::int64_t next = -1;
        for (std::int64_t j : amont_dep_table[static_cast<std::size_t>(cur)])
            if (j < nb_var_bdd && (next < 0 || latest_date(j) > latest_date(next)))
                next = j;
        if (next < 0)
            break;
        if (met.count(next)) {
            critical_path_warning();
            break;
        }
        cur = next;
    }
    return path;
}

std::list<std::int64_t> Bddexpressionwood::up_critical_path(std::int64_t index) const
{
    auto earliest = [&](std::int64_t j) {
        Bddexpression* e = exp_table[static_cast<std::size_t>(j)];
        return e ? e->earliest_date : 0;
    };
    std::list<std::int64_t> path;
    std::set<std::int64_t> met;
    std::int64_t cur = index;
    while (cur >= 0 && cur < nb_var_bdd) {
        path.push_back(cur);
        met.insert(cur);
        Bddexpression* e = exp_table[static_cast<std::size_t>(cur)];
        if (!e)
            break;
        std::int64_t next = -1;
        for (std::int64_t j : e->vars_dependance)
            if (j >= 0 && j < nb_var_bdd && (next < 0 || earliest(j) > earliest(next)))
                next = j;
        if (next < 0)
            break;
        if (met.count(next)) {
            critical_path_warning();
            break;
        }
        cur = next;
    }
    return path;
}

// ---------------------------------------------------------------- relaxation

namespace {

// One relaxation step over e's dependencies: downstream, every variable e
// reads must come after e's variable; upstream, e's variable after every
// variable it reads. A date raised to 2n or more is an overflow.
bool learn_dependance(const char* name, bool upstream, std::int64_t n, std::vector<std::int64_t>& dates,
                      const Bddexpression* e, bool& overflow)
{
    std::int64_t limit = std::min<std::int64_t>(n, static_cast<std::int64_t>(dates.size()));
    std::int64_t k = e ? e->getIndex() : -1;
    if (k < 0 || k >= limit) {
        dravik_warn() << "INTERNAL ERROR in " << name << "()" << '\n';
        return false;
    }
    bool changed = false;
    for (std::int64_t j : e->getVarsDependance()) {
        if (j < 0 || j >= limit)
            continue;
        std::int64_t& later = dates[static_cast<std::size_t>(upstream ? k : j)];
        const std::int64_t earlier = dates[static_cast<std::size_t>(upstream ? j : k)];
        if (later <= earlier) {
            later = plus_one(earlier);
            changed = true;
            if (later >= 2 * n)
                overflow = true;
        }
    }
    return changed;
}

} // namespace

bool Bddexpressionwood::learn_downstream_dependance(std::int64_t n, std::vector<std::int64_t>& dates,
                                                    const Bddexpression* e, bool& overflow)
{
    return learn_dependance("learn_downstream_dependance", false, n, dates, e, overflow);
}

bool Bddexpressionwood::learn_upstream_dependance(std::int64_t n, std::vector<std::int64_t>& dates,
                                                  const Bddexpression* e, bool& overflow)
{
    return learn_dependance("learn_upstream_dependance", true, n, dates, e, overflow);
}

// Relaxes every equation until nothing moves. A date reaching 2n reveals a
// cycle; n more passes then lift every variable on or below it to the limit,
// so that all of them are named.
bool Bddexpressionwood::date_expressions(std::int64_t n, const std::vector<Bddexpression*>& exps,
                                         std::vector<std::int64_t>& earliest, std::vector<std::int64_t>& latest)
{
    if (n < 0)
        n = 0;
    earliest.assign(static_cast<std::size_t>(n), 0);
    latest.assign(static_cast<std::size_t>(n), 0);
    bool cycle = false;
    for (int upstream = 1; upstream >= 0; --upstream) {
        std::vector<std::int64_t>& dates = upstream ? earliest : latest;
        bool overflow = false;
        auto pass = [&]() {
            bool changed = false;
            for (const Bddexpression* e : exps) {
                if (!e)
                    continue;
                changed |= upstream ? learn_upstream_dependance(n, dates, e, overflow)
                                    : learn_downstream_dependance(n, dates, e, overflow);
            }
            return changed;
        };
        while (pass()) {
            if (overflow) {
                for (std::int64_t r = 0; r < n; ++r)
                    pass();
                cycle = true;
                break;
            }
        }
    }
    if (!cycle)
        return true;
    std::cout << "CYCLE DE CAUSALITE SUR:" << '\n';
    for (const Bddexpression* e : exps) {
        std::int64_t k = e ? e->getIndex() : -1;
        if (k < 0 || k >= n)
            continue;
        std::size_t s = static_cast<std::size_t>(k);
        if (earliest[s] >= 2 * n || latest[s] >= 2 * n)
            std::cout << e->getName() << '\n';
    }
    return false;
}

// ---------------------------------------------------------------- lookups

Bddexpression* Bddexpressionwood::exp_by_index(std::int64_t index) const
{
    if (index >= 0 && index < nb_var_bdd)
        return exp_table[static_cast<std::size_t>(index)];
    dravik_warn() << "ERROR in Bddexpressionwood::exp_by_index : id `" << index << "' not found!" << '\n';
    return nullptr;
}

Bddexpression* Bddexpressionwood::exp_by_bdd(const bdd& var) const
{
    std::int64_t k = var.node() ? var.node()->var_index() : -1;
    if (k >= 0 && k < nb_var_bdd && exp_table[static_cast<std::size_t>(k)])
        return exp_table[static_cast<std::size_t>(k)];
    dravik_warn() << "ERROR in Bddexpressionwood::exp_by_bdd : bdd not found!" << '\n';
    return nullptr;
}

Bddexpression* Bddexpressionwood::exp_by_name(const std::string& name) const
{
    std::int64_t k = Index_var_by_name(name);
    if (k >= 0 && k < nb_var_bdd && exp_table[static_cast<std::size_t>(k)])
        return exp_table[static_cast<std::size_t>(k)];
    dravik_warn() << "ERROR in Bddexpressionwood::exp_by_name : `" << name << "' not found!" << '\n';
    return nullptr;
}

std::int64_t Bddexpressionwood::Index_exp_by_name(const std::string& name) const
{
    std::int64_t k = Index_var_by_name(name);
    if (k >= 0 && k < nb_var_bdd && exp_table[static_cast<std::size_t>(k)])
        return k;
    dravik_warn() << "ERROR in Bddexpressionwood::Index_exp_by_name : `" << name << "' not found!" << '\n';
    return -1;
}

std::string Bddexpressionwood::Bddname_exp_by_index(std::int64_t index) const
{
    if (index >= 0 && index < nb_var_bdd && exp_table[static_cast<std::size_t>(index)] && man)
        return man->Name_var_by_index(index);
    dravik_warn() << "ERROR: in Bddexpressionwood::Bddname_exp_by_index(): id " << index << " not found!" << '\n';
    return std::string();
}

std::string Bddexpressionwood::Bddname_exp_by_bdd(const bdd& var) const
{
    std::int64_t k = var.node() ? var.node()->var_index() : -1;
    if (k >= 0 && k < nb_var_bdd && exp_table[static_cast<std::size_t>(k)] && man)
        return man->Name_var_by_index(k);
    dravik_warn() << "ERROR: in Bddexpressionwood::Bddname_exp_by_bdd(): bdd not found!" << '\n';
    return std::string();
}

std::string Bddexpressionwood::Name_exp_by_index(std::int64_t index) const
{
    if (index >= 0 && index < nb_var_bdd && exp_table[static_cast<std::size_t>(index)])
        return exp_table[static_cast<std::size_t>(index)]->name;
    dravik_warn() << "ERROR: in Bddexpressionwood::Name_exp_by_index(): index " << index << " not found!" << '\n';
    return std::string();
}

std::string Bddexpressionwood::Name_exp_by_bdd(const bdd& var) const
{
    std::int64_t k = var.node() ? var.node()->var_index() : -1;
    if (k >= 0 && k < nb_var_bdd && exp_table[static_cast<std::size_t>(k)])
        return exp_table[static_cast<std::size_t>(k)]->name;
    dravik_warn() << "ERROR: in Bddexpressionwood::Name_exp_by_bdd(): bdd not found!" << '\n';
    return std::string();
}

Bddexpression* Bddexpressionwood::exp(int n) const
{
    if (n < 0 || static_cast<std::size_t>(n) >= ens_exp.size()) {
        dravik_warn() << "ERROR in Bddexpressionwood::exp(): index " << n << " out of range!" << '\n';
        return nullptr;
    }
    if (exp_order_stale || exp_order.size() != ens_exp.size()) {
        exp_order.assign(ens_exp.begin(), ens_exp.end());
        exp_order_stale = false;
    }
    return exp_table[static_cast<std::size_t>(exp_order[static_cast<std::size_t>(n)])];
}

const std::set<std::int64_t>& Bddexpressionwood::Readers(std::int64_t index) const
{
    if (index < 0 || index >= nb_var_bdd)
        return no_readers;
    return amont_dep_table[static_cast<std::size_t>(index)];
}

// ---------------------------------------------------------------- forwarding

std::int64_t Bddexpressionwood::index_after(bdd_node* made)
{
    update_bdd_vars();
    return made ? made->var_index() : -1;
}

std::int64_t Bddexpressionwood::Index_new_var_last(const std::string& name)
{
    return man ? index_after(man->New_node_var_last(name)) : -1;
}

std::int64_t Bddexpressionwood::New_var_before_by_index(std::int64_t index, const std::string& name)
{
    return man ? index_after(man->New_node_var_before(index, name)) : -1;
}

std::int64_t Bddexpressionwood::New_var_before_by_bdd(const bdd& var, const std::string& name)
{
    return man ? index_after(man->New_node_var_before(man->Index_var_by_bdd(var), name)) : -1;
}

std::int64_t Bddexpressionwood::New_var_after_by_index(std::int64_t index, const std::string& name)
{
    return man ? index_after(man->New_node_var_after(index, name)) : -1;
}

std::int64_t Bddexpressionwood::New_var_after_by_bdd(const bdd& var, const std::string& name)
{
    return man ? index_after(man->New_node_var_after(man->Index_var_by_bdd(var), name)) : -1;
}

std::int64_t Bddexpressionwood::Index_var_by_name(const std::string& name) const
{
    return man ? man->Index_var_by_name(name) : -1;
}

bdd Bddexpressionwood::Bdd_and(const bdd& f, const bdd& g)
{
    return man ? man->Bdd_and(f, g) : bdd();
}

bdd Bddexpressionwood::Bdd_or(const bdd& f, const bdd& g)
{
    return man ? man->Bdd_or(f, g) : bdd();
}

bdd Bddexpressionwood::Bdd_not(const bdd& f)
{
    return man ? man->Bdd_not(f) : bdd();
}

bdd Bddexpressionwood::Bdd_one()
{
    return man ? man->Bdd_one() : bdd();
}

bdd Bddexpressionwood::Bdd_zero()
{
    return man ? man->Bdd_zero() : bdd();
}

bdd Bddexpressionwood::Bdd_var_by_index(std::int64_t index)
{
    return man ? man->Bdd_var_by_index(index) : bdd();
}

std::int64_t Bddexpressionwood::Nb_bdd_vars() const
{
    return man ? man->Nb_bdd_vars() : 0;
}

void Bddexpressionwood::print_statistics(std::ostream& os) const
{
    os << "wood Bddexpression statistics:" << '\n'
       << "  variables: " << nb_var_bdd << '\n'
       << "  equations: " << ens_exp.size() << '\n'
       << "  levels: " << nb_level << '\n'
       << "  bdd nodes: " << (man ? man->Bdd_total_size() : 0) << '\n';
}
