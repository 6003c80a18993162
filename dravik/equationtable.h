#ifndef DRAVIK_EQUATIONTABLE_H
#define DRAVIK_EQUATIONTABLE_H

// Turns "signal = expression" into two equations of a module's wood: one for
// the signal's status variable and one for its value variable. Each equation
// is learnt into the wood at once (the wood owns it).

#include <cstdint>
#include <string>

class Bddexpression;
class Bddexpressionwood;
class Expression;
class Module;
class Signal;

class EquationTable {
public:
    // The wood is not owned.
    EquationTable(const std::string& module_name, Bddexpressionwood* wood);
    EquationTable(const EquationTable&) = delete;
    EquationTable& operator=(const EquationTable&) = delete;

    Bddexpressionwood* getWood() const { return bdd_expression_wood; }
    const std::string& getModuleName() const { return module_name; }

    // Status equation from the expression's status (initial or current) for
    // the signal's status variable (initial or current). A wire's value is
    // the negation of its own current status; any other signal's value
    // equation takes the expression's value (initial or current) but always
    // defines the signal's current value variable.
    void createEquation(Signal* signal, Expression* expression, Module* module);
    void createEquation(Signal* signal, Expression* expression, Module* module, bool initial);
    // Ors a further contribution into the signal's existing equations; a
    // missing equation is reported on standard error and skipped.
    void createUnifyEquation(Signal* signal, Expression* expression, Module* module, bool initial);
    // Both variables defined as zero (not determined): of the current
    // occurrence, or of the given one.
    void createBottomEquation(Signal* signal, Module* module);
    void createBottomEquation(Signal* signal, int occurrence, Module* module);
    // Dates the equations; ends the process with a report naming the
    // variables of a dependency cycle. Returns the wood's number of levels.
    std::int64_t callPert();
    // Learns `equation` (an equation of this table's wood defining "_s_" or
    // "_v_" + a reference's name) after giving that reference its variables
    // in the wood.
    void add(Bddexpression* equation, Module* module);
    // Gives the signal's current reference variables in this table's wood,
    // with the signal's occurrence in the module's wood.
    void learnSignal(Signal* signal, Module* module);

private:
    Bddexpressionwood* bdd_expression_wood;
    std::string module_name;
};

#endif
