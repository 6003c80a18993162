#ifndef DRAVIK_BDDEXPRESSION_H
#define DRAVIK_BDDEXPRESSION_H

// The equations of one module as BDD expressions ("wood"): at most one
// equation per variable of the wood's manager, the dependency graph in both
// directions, and the earliest and latest date of every variable.

#include "bddpp.h"

#include <cstdint>
#include <iosfwd>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <vector>

class Bddexpressionwood;

// One equation: a variable defined as a function of the others.
//
// Every constructor that takes a wood learns the equation into it; the wood
// then owns it (allocate it with new and never delete it yourself).
class Bddexpression {
public:
    // Defining form with the dates read from a compiled module: records the
    // earliest date, sets the wood's latest date of the variable and learns.
    Bddexpression(const std::string& name, Bddexpressionwood* wood, const bdd& variable, const bdd& function,
                  std::int64_t earliest, std::int64_t latest);
    // Abstract form: a value computed from data. Its dependencies are the
    // given indices, its definition text `exp_def` (usually "VALUE_SIGNAL"),
    // its name the manager's name of the variable; its function is the
    // constant one as a placeholder, and isAbstract() tells it apart.
    Bddexpression(std::int64_t variable_index, Bddexpressionwood* wood, const std::set<std::int64_t>& dependances,
                  const std::string& exp_def, std::int64_t earliest, std::int64_t latest);
    // Equation-table form: earliest date 0, learnt at once.
    Bddexpression(const std::string& name, Bddexpressionwood* wood, const bdd& variable, const bdd& function,
                  int usertype);
    Bddexpression(const Bddexpression&) = delete;
    Bddexpression& operator=(const Bddexpression&) = delete;

    Bddexpressionwood* getWood() const { return pw; }
    const std::string& getName() const { return name; }
    const bdd& getBddVar() const { return bdd_var; }
    const bdd& getBddExp() const { return bdd_exp; }
    // Replaces the function; the dependencies and, when the equation is in
    // its wood, the wood's reader sets follow.
    void setBddExp(const bdd& function);
    const std::string& getExpDef() const { return exp_def; }
    bool isAbstract() const { return abstract_function; }
    int getAbstraction() const { return abstraction; }
    void setAbstraction(int value) { abstraction = value; }
    std::int64_t getW() const { return w; }
    void setW(std::int64_t weight) { w = weight; }
    const std::set<std::int64_t>& getVarsDependance() const { return vars_dependance; }
    std::int64_t getEarliestDate() const { return earliest_date; }
    void setEarliestDate(std::int64_t date) { earliest_date = date; }
    int getUserType() const { return usertype; }
    void setUserType(int type) { usertype = type; }
    // Index of the defined variable (the equation's key in its wood).
    std::int64_t getIndex() const;

private:
    friend class Bddexpressionwood;

    void internal_build_dependances();

    Bddexpressionwood* pw;
    std::string name;
    bdd bdd_var;
    std::int32_t abstraction = 0;
    std::string exp_def;
    bdd bdd_exp;
    std::int64_t w = 0;
    std::set<std::int64_t> vars_dependance;
    std::int64_t earliest_date = 0;
    std::int32_t usertype = 0;
    bool abstract_function = false;
};

class Bddexpressionwood {
public:
    // With a manager of its own.
    Bddexpressionwood();
    // With the given manager (may be null: a wood without manager answers
    // nothing). The wood still destroys it unless setCommonBddManager(1).
    explicit Bddexpressionwood(bddpp_manager* manager);
    ~Bddexpressionwood();
    Bddexpressionwood(const Bddexpressionwood&) = delete;
    Bddexpressionwood& operator=(const Bddexpressionwood&) = delete;

    void setCommonBddManager(int shared) { common_bdd_manager = shared; }
    int getCommonBddManager() const { return common_bdd_manager; }
    bddpp_manager* getManager() const { return man; }

    // Enters or replaces the equation of e's variable; the wood owns e.
    void learn_expression(Bddexpression* e);
    // Brings the tables up to the manager's variable count.
    void update_bdd_vars();
    // Table capacity for `needed` variables, doubling from `capacity`; ends
    // the process past the limit.
    static std::int64_t grown_capacity(std::int64_t capacity, std::int64_t needed);

    // ---- Dates.
    // Computes the dates once; returns nb_level (stored value when already
    // computed).
    std::int64_t compute_dates();
    // The reader's form: the list of ids is not read, every equation is dated.
    std::int64_t compute_dates(const std::list<std::int64_t>& ids);
    // Makes the next compute_dates() start afresh: nb_level and every
    // earliest date back to 0.
    void reset_dates();
    std::list<std::int64_t> loop_detection();
    std::list<std::int64_t> earliest_sort() const;
    std::list<std::int64_t> latest_sort() const;
    // Longest chain from a variable towards its readers (down) or towards
    // what its equation reads (up), the variable first. Stops with a warning
    // on a cycle.
    std::list<std::int64_t> down_critical_path(std::int64_t index) const;
    std::list<std::int64_t> up_critical_path(std::int64_t index) const;
    std::int64_t latest_date(std::int64_t index) const;
    void set_latest_date(std::int64_t index, std::int64_t date);

    // ---- Relaxation over arrays of dates (one date per variable index).
    // Every variable read by e gets a date above the date of e's variable.
    static bool learn_downstream_dependance(std::int64_t n, std::vector<std::int64_t>& dates,
                                            const Bddexpression* e, bool& overflow);
    // e's variable gets a date above the date of every variable it reads.
    static bool learn_upstream_dependance(std::int64_t n, std::vector<std::int64_t>& dates,
                                          const Bddexpression* e, bool& overflow);
    // Dates n variables from the equations alone by repeated relaxation:
    // `earliest` upstream, `latest` downstream. On a causality cycle, prints
    // "CYCLE DE CAUSALITE SUR:" and then the name of each equation whose date
    // reached 2n, and returns false.
    static bool date_expressions(std::int64_t n, const std::vector<Bddexpression*>& exps,
                                 std::vector<std::int64_t>& earliest, std::vector<std::int64_t>& latest);

    // ---- Lookups (each failure writes one line and yields null or "").
    Bddexpression* exp_by_index(std::int64_t index) const;
    Bddexpression* exp_by_bdd(const bdd& var) const;
    Bddexpression* exp_by_name(const std::string& name) const;
    std::int64_t Index_exp_by_name(const std::string& name) const;
    std::string Bddname_exp_by_bdd(const bdd& var) const;
    std::string Bddname_exp_by_index(std::int64_t index) const;
    std::string Name_exp_by_index(std::int64_t index) const;
    std::string Name_exp_by_bdd(const bdd& var) const;
    // The n-th equation in increasing index order, 0 <= n < exp_number().
    Bddexpression* exp(int n) const;
    std::int64_t exp_number() const { return static_cast<std::int64_t>(ens_exp.size()); }
    const std::set<std::int64_t>& Exp_set() const { return ens_exp; }
    const std::vector<Bddexpression*>& Exp_table() const { return exp_table; }
    // Indices of the variables whose equations read `index`.
    const std::set<std::int64_t>& Readers(std::int64_t index) const;

    // ---- Variables and operations of the manager. The variable makers
    // return the new variable's index, -1 when the manager refused.
    std::int64_t Index_new_var_last(const std::string& name);
    std::int64_t New_var_before_by_index(std::int64_t index, const std::string& name);
    std::int64_t New_var_before_by_bdd(const bdd& var, const std::string& name);
    std::int64_t New_var_after_by_index(std::int64_t index, const std::string& name);
    std::int64_t New_var_after_by_bdd(const bdd& var, const std::string& name);
    std::int64_t Index_var_by_name(const std::string& name) const;
    bdd Bdd_and(const bdd& f, const bdd& g);
    bdd Bdd_or(const bdd& f, const bdd& g);
    bdd Bdd_not(const bdd& f);
    bdd Bdd_one();
    bdd Bdd_zero();
    bdd Bdd_var_by_index(std::int64_t index);
    std::int64_t Nb_bdd_vars() const;
    std::int64_t Nb_level() const { return nb_level; }

    // "wood Bddexpression statistics:" and a few counts.
    void print_statistics(std::ostream& os) const;

private:
    friend class Bddexpression;

    void early_propagation(std::int64_t i, std::int64_t d);
    void late_propagation(std::int64_t i, std::int64_t d);
    void add_reader_edges(std::int64_t k, const std::set<std::int64_t>& deps);
    void remove_reader_edges(std::int64_t k, const std::set<std::int64_t>& deps);
    std::int64_t index_after(bdd_node* made);
    std::list<std::int64_t> sort_by(bool earliest) const;
    void critical_path_warning() const;

    int common_bdd_manager = 0;
    bddpp_manager* man = nullptr;
    std::set<std::int64_t> ens_exp;
    std::int64_t nb_var_bdd = 0;
    std::int64_t nb_max_var_bdd = 1;
    std::vector<Bddexpression*> exp_table;
    std::vector<std::set<std::int64_t>> amont_dep_table;
    std::vector<std::int64_t> latest_date_table;
    std::int64_t nb_level = 0;

    // Every equation ever learnt, replaced ones included (callers may still
    // hold them); deleted with the wood, before the manager.
    std::vector<std::unique_ptr<Bddexpression>> owned;
    // One pending step of the date propagations: a date, and the indices
    // still to visit. Kept between calls to spare an allocation per call.
    struct date_frame {
        std::int64_t d;
        std::set<std::int64_t>::const_iterator next, end;
    };
    std::vector<date_frame> propagation_stack;
    // ens_exp as an array for exp(n); rebuilt when ens_exp changed.
    mutable std::vector<std::int64_t> exp_order;
    mutable bool exp_order_stale = false;
};

#endif
