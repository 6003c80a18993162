#ifndef DRAVIK_EXPRESSION_H
#define DRAVIK_EXPRESSION_H

// Four-valued expressions on two rails. Every expression has a status
// function (where it is known true) and a value function (where it is known
// false), each a BDD of an expression wood's manager:
//   true = (one, zero), false = (zero, one),
//   not determined = (zero, zero), contradictory = (one, one).
// Each rail has a current version and the version of the first instant.
//
// Ownership: an operator node owns its operands and deletes them with itself,
// except Signal leaves, which belong to their module. plus() and mult() hand
// both operands to the Or/And node they build; when they return an operand
// or a fresh constant, ownership stays where it was.

#include "bddpp.h"

#include <iosfwd>
#include <list>
#include <map>
#include <string>

class Bddexpressionwood;
class EquationTable;
class Module;
class Signal;
class SignalRef;

class Expression {
public:
    Expression() = default;
    virtual ~Expression() = default;
    Expression(const Expression&) = delete;
    Expression& operator=(const Expression&) = delete;

    // A plain Expression has no rails: these end the process with the
    // abstract-method report naming the operation.
    virtual bdd getBddStatus(Module* module, Bddexpressionwood* wood);
    virtual bdd getBddValue(Module* module, Bddexpressionwood* wood);
    virtual bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood);
    virtual bdd getInitialBddValue(Module* module, Bddexpressionwood* wood);
    virtual bool isBottomExpr() const { return false; }
    virtual bool isErrorExpr() const { return false; }
    virtual bool isTrueExpr() const { return false; }
    virtual bool isFalseExpr() const { return false; }
    virtual bool isSignalExpr() const { return false; }
    // Merges (plus) or intersects (mult) two contributions to one signal;
    // see expression.cpp for the tables.
    virtual Expression* plus(Expression* e, Module* module);
    virtual Expression* mult(Expression* e, Module* module);
    // Deep copy (signal leaves are shared). A plain Expression reports and
    // yields null.
    virtual Expression* duplicate();
    virtual Expression* buildCurrentExpression(EquationTable* table, Module* module);
    virtual std::ostream& print(std::ostream& os);
    // The current status or value as a sum of products.
    virtual void printBddStatus(std::ostream& os, Module* module, Bddexpressionwood* wood);
    virtual void printBddValue(std::ostream& os, Module* module, Bddexpressionwood* wood);

    bool isBoolean() const { return is_boolean; }
    void setBoolean(bool value) { is_boolean = value; }

private:
    bool is_boolean = false;
};

// ---- Constants. The module given to a constructor is not kept.

class TrueExpression : public Expression {
public:
    TrueExpression() = default;
    explicit TrueExpression(Module*) {}
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    bool isTrueExpr() const override { return true; }
    Expression* plus(Expression* e, Module* module) override;
    Expression* mult(Expression* e, Module* module) override;
    Expression* duplicate() override;
    std::ostream& print(std::ostream& os) override;
};

class FalseExpression : public Expression {
public:
    FalseExpression() = default;
    explicit FalseExpression(Module*) {}
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    bool isFalseExpr() const override { return true; }
    Expression* plus(Expression* e, Module* module) override;
    Expression* mult(Expression* e, Module* module) override;
    Expression* duplicate() override;
    std::ostream& print(std::ostream& os) override;
};

class BottomExpression : public Expression {
public:
    BottomExpression() = default;
    explicit BottomExpression(Module*) {}
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    bool isBottomExpr() const override { return true; }
    Expression* plus(Expression* e, Module* module) override;
    Expression* mult(Expression* e, Module* module) override;
    Expression* duplicate() override;
    std::ostream& print(std::ostream& os) override;
};

class ErrorExpression : public Expression {
public:
    ErrorExpression() = default;
    explicit ErrorExpression(Module*) {}
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    bool isErrorExpr() const override { return true; }
    Expression* plus(Expression* e, Module* module) override;
    Expression* mult(Expression* e, Module* module) override;
    Expression* duplicate() override;
    std::ostream& print(std::ostream& os) override;
};

// ---- Operators. A missing (null) operand reads as not determined.

class BinaryExpression : public Expression {
public:
    BinaryExpression(Expression* left, Expression* right) : left(left), right(right) {}
    ~BinaryExpression() override;
    Expression* getLeft() const { return left; }
    Expression* getRight() const { return right; }

protected:
    Expression* left;
    Expression* right;
};

class OrExpression : public BinaryExpression {
public:
    OrExpression(Expression* l, Expression* r, Module* = nullptr) : BinaryExpression(l, r) {}
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    Expression* duplicate() override;
    Expression* buildCurrentExpression(EquationTable* table, Module* module) override;
    std::ostream& print(std::ostream& os) override;
};

class AndExpression : public BinaryExpression {
public:
    AndExpression(Expression* l, Expression* r, Module* = nullptr) : BinaryExpression(l, r) {}
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    Expression* duplicate() override;
    Expression* buildCurrentExpression(EquationTable* table, Module* module) override;
    std::ostream& print(std::ostream& os) override;
};

// Swaps the rails.
class NotExpression : public Expression {
public:
    explicit NotExpression(Expression* e, Module* = nullptr) : expr(e) {}
    ~NotExpression() override;
    Expression* getExpr() const { return expr; }
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    Expression* duplicate() override;
    Expression* buildCurrentExpression(EquationTable* table, Module* module) override;
    std::ostream& print(std::ostream& os) override;

private:
    Expression* expr;
};

// Negation reading "not determined" as absent: true gives false, false and
// not determined give true, contradictory stays contradictory.
class NpExpression : public Expression {
public:
    explicit NpExpression(Expression* e, Module* = nullptr) : expr(e) {}
    ~NpExpression() override;
    Expression* getExpr() const { return expr; }
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    Expression* duplicate() override;
    Expression* buildCurrentExpression(EquationTable* table, Module* module) override;
    std::ostream& print(std::ostream& os) override;

private:
    Expression* expr;
};

// Passes `identifier` on each rail where its guard lets it through: Then
// where the guard is surely true (true and not false), Else exactly where
// Then does not.
class GuardedExpression : public Expression {
public:
    ~GuardedExpression() override;
    Expression* getBoolExpr() const { return bool_expr; }
    Expression* getIdentifier() const { return identifier; }
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    std::ostream& print(std::ostream& os) override;

protected:
    GuardedExpression(Expression* guard, Expression* identifier, bool passes_when_true)
        : bool_expr(guard), identifier(identifier), passes_when_true(passes_when_true) {}

    Expression* bool_expr;
    Expression* identifier;

private:
    bool passes_when_true;
};

class ThenExpression : public GuardedExpression {
public:
    ThenExpression(Expression* guard, Expression* identifier, Module* = nullptr)
        : GuardedExpression(guard, identifier, true) {}
    Expression* duplicate() override;
};

class ElseExpression : public GuardedExpression {
public:
    ElseExpression(Expression* guard, Expression* identifier, Module* = nullptr)
        : GuardedExpression(guard, identifier, false) {}
    Expression* duplicate() override;
};

// Passes `expression` where the condition signal is surely true. Its initial
// versions deliberately mix rails: the guard reads the condition's initial
// status with its current value, and the value rail reads the expression's
// current value.
class CondExpression : public Expression {
public:
    CondExpression(Expression* expression, Signal* condition, Module* = nullptr)
        : expression(expression), condition(condition) {}
    ~CondExpression() override;
    Expression* getExpression() const { return expression; }
    Signal* getCondition() const { return condition; }
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    Expression* duplicate() override;
    std::ostream& print(std::ostream& os) override;

private:
    Expression* expression;
    Signal* condition;
};

// ---- Signals.
//
// A named wire of a module, with a status and a value variable per occurrence
// and per wood (see SignalRef). Construct signals with new: the module given
// to a constructor owns the signal from then on and deletes it with itself.
class Signal : public Expression {
public:
    // Original and internal names both `name`. When the module already has a
    // reference of that name, the new signal shares it (occurrence 0 in `wood`).
    Signal(const std::string& name, Module* module, Bddexpressionwood* wood);
    // When the module already has a reference named `internal`, no reference
    // is made and the new signal gets no occurrence in `wood`: asking for its
    // current occurrence there ends the process (hasCurrentOccurrence tells).
    Signal(const std::string& original, const std::string& internal, Module* module, Bddexpressionwood* wood);

    // ---- Flags. setLocal clears input and output; setRegister sets wire too.
    void setLocal();
    void setInput() { is_input = true; }
    void setOutput() { is_output = true; }
    void setRegister();
    void setWire() { is_wire = true; }
    void setClock() { is_clock = true; }
    void setValue() { is_value = true; }
    void setPre() { is_pre = true; }
    bool isLocal() const { return is_local; }
    bool isInput() const { return is_input; }
    bool isOutput() const { return is_output; }
    bool isWire() const { return is_wire; }
    bool isRegister() const { return is_register; }
    bool isClock() const { return is_clock; }
    bool isValue() const { return is_value; }
    bool isPre() const { return is_pre; }
    bool getUpdate() const { return update; }
    void setUpdate(bool value) { update = value; }

    // ---- Names.
    const std::string& getOriginalName() const { return original_name; }
    const std::string& getInternalName() const { return internal_name; }
    // Name of the current occurrence in the module's wood (the internal name
    // when the module has no such reference). Fatal without an occurrence.
    std::string getName(Module* module) const;

    // ---- Occurrences.
    // Fatal (standard error only) when the signal has no occurrence in `wood`.
    int getCurrentOccurrence(Bddexpressionwood* wood) const;
    // Never fatal.
    bool hasCurrentOccurrence(Bddexpressionwood* wood) const;
    void setCurrentOccurrence(Bddexpressionwood* wood, int occurrence);
    // Enters an occurrence for a wood the signal has none in yet.
    void extendCurrentOccurrenceTable(Bddexpressionwood* wood, int occurrence);
    const std::map<Bddexpressionwood*, int>& getCurrentOccurrenceTable() const { return current_occurrence_table; }
    // Makes occurrence n + 1 with fresh variables (locals and outputs only;
    // other signals are left as they are and yield null).
    SignalRef* newOccurrence(Bddexpressionwood* wood, Module* module);

    // ---- References: the reference of the current occurrence in the wood
    // (the module's own wood for the first form); null when the module has no
    // such reference. Fatal when the signal has no occurrence in the wood.
    SignalRef* getSignalRef(Module* module) const;
    SignalRef* getSignalRef(Module* module, Bddexpressionwood* wood) const;
    // The reference of the current occurrence in `wood`; null when the signal
    // has no occurrence there or the reference has no ids for `wood`.
    SignalRef* findCurrentSignalRef(Module* module, Bddexpressionwood* wood) const;
    // Current (status, value) variable indices in `wood`, without ending the
    // process: false when findCurrentSignalRef finds nothing.
    bool findBddIds(Module* module, Bddexpressionwood* wood, long& status, long& value) const;

    // ---- Value type: "pure" when not valued. Through getSignalRef, so fatal
    // for a signal without an occurrence in the module's wood.
    bool isValued(Module* module) const;
    std::string getValueType(Module* module) const;
    void setValueType(const std::string& type, Module* module);
    // The same answer as getValueType without ending the process: a signal
    // without an occurrence in the module's wood answers with the type of
    // the reference named by its internal name.
    std::string findValueType(Module* module) const;

    // ---- Variable indices and variables (fatal when missing).
    long getBddStatusId(Module* module, Bddexpressionwood* wood) const;
    long getBddValueId(Module* module, Bddexpressionwood* wood) const;
    long getInitialBddStatusId(Module* module, Bddexpressionwood* wood) const;
    long getInitialBddValueId(Module* module, Bddexpressionwood* wood) const;
    bdd getBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getBddValue(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddStatus(Module* module, Bddexpressionwood* wood) override;
    bdd getInitialBddValue(Module* module, Bddexpressionwood* wood) override;
    // (status, value) of every occurrence up to the current one; locals,
    // wires and outputs only.
    std::list<long> getAllBddId(Module* module, Bddexpressionwood* wood) const;

    // ---- Equation user types (Compilation::STAT ...), by role, first match:
    // output SOUTPUT, clock SCLOCK, register SREG, wire SWIRE, input SINPUT,
    // otherwise STAT (and the V... counterparts for the value).
    int computeStatusType() const;
    int computeValueType() const;

    bool isSignalExpr() const override { return true; }
    // Signals are leaves shared by every tree: the copy is the signal itself.
    Signal* duplicate() override;
    // A signal fixed at its current occurrences: later occurrences of this
    // signal do not move it. Owned by the module.
    Expression* buildCurrentExpression(EquationTable* table, Module* module) override;
    std::ostream& print(std::ostream& os) override;

private:
    // The frozen copy made by buildCurrentExpression.
    Signal(const Signal& from, Module* owner);
    void bind(Module* module, Bddexpressionwood* wood, bool share_existing);
    SignalRef* current_ref_or_die(Module* module, Bddexpressionwood* wood, const char* no_occurrence,
                                  const char* no_ref) const;

    std::string original_name;
    std::string internal_name;
    bool is_local = false;
    bool is_input = false;
    bool is_output = false;
    bool is_wire = false;
    bool is_register = false;
    bool is_clock = false;
    bool is_value = false;
    bool is_pre = false;
    std::map<Bddexpressionwood*, int> current_occurrence_table;
    bool update = false;
};

#endif
