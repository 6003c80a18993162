#include "expression.h"

#include "Bddexpression.h"
#include "data.h"
#include "dravik_warn.h"
#include "exceptions.h"
#include "module.h"
#include "signal_manager.h"

#include <iostream>
#include <sstream>

namespace {

enum class rail { status, value, initial_status, initial_value };

bdd zero(Bddexpressionwood* w)
{
    return w ? w->Bdd_zero() : bdd();
}

bdd one(Bddexpressionwood* w)
{
    return w ? w->Bdd_one() : bdd();
}

bdd conj(Bddexpressionwood* w, const bdd& f, const bdd& g)
{
    return w ? w->Bdd_and(f, g) : bdd();
}

bdd disj(Bddexpressionwood* w, const bdd& f, const bdd& g)
{
    return w ? w->Bdd_or(f, g) : bdd();
}

bdd neg(Bddexpressionwood* w, const bdd& f)
{
    return w ? w->Bdd_not(f) : bdd();
}

// One rail of an operand; a missing operand is not determined (zero, zero).
bdd rail_of(Expression* e, rail r, Module* m, Bddexpressionwood* w)
{
    if (!e)
        return zero(w);
    switch (r) {
    case rail::status:
        return e->getBddStatus(m, w);
    case rail::value:
        return e->getBddValue(m, w);
    case rail::initial_status:
        return e->getInitialBddStatus(m, w);
    case rail::initial_value:
        return e->getInitialBddValue(m, w);
    }
    return zero(w);
}

rail status_rail(bool initial)
{
    return initial ? rail::initial_status : rail::status;
}

rail value_rail(bool initial)
{
    return initial ? rail::initial_value : rail::value;
}

// Operands are owned, signal leaves are not.
void release(Expression* e)
{
    if (e && !e->isSignalExpr())
        delete e;
}

Expression* copy_of(Expression* e)
{
    return e ? e->duplicate() : nullptr;
}

// The current form of an operand for a node that owns it: an operand that is
// its own current form is copied, so that the two trees share no node.
Expression* current_of(Expression* e, EquationTable* table, Module* m)
{
    if (!e)
        return nullptr;
    Expression* current = e->buildCurrentExpression(table, m);
    if (current == e && !e->isSignalExpr())
        return e->duplicate();
    return current;
}

std::ostream& print_of(std::ostream& os, Expression* e)
{
    if (e)
        e->print(os);
    return os;
}

void print_sop(std::ostream& os, Bddexpressionwood* w, const bdd& f)
{
    if (w && w->getManager())
        w->getManager()->Bdd_print_sop(os, f, "+");
}

} // namespace

// ---------------------------------------------------------------- Expression

bdd Expression::getBddStatus(Module*, Bddexpressionwood*)
{
    AbstractMethodException("Expression::getBddStatus()");
}

bdd Expression::getBddValue(Module*, Bddexpressionwood*)
{
    AbstractMethodException("Expression::getBddValue()");
}

bdd Expression::getInitialBddStatus(Module*, Bddexpressionwood*)
{
    AbstractMethodException("Expression::getInitialBddStatus()");
}

bdd Expression::getInitialBddValue(Module*, Bddexpressionwood*)
{
    AbstractMethodException("Expression::getInitialBddValue()");
}

// Any expression other than the four constants: the result is an operand
// where the other one adds nothing (or swamps it), a new node otherwise.
Expression* Expression::plus(Expression* e, Module* module)
{
    if (!e)
        return this;
    if (e->isBottomExpr() || e->isFalseExpr())
        return this;
    if (e->isErrorExpr() || e->isTrueExpr())
        return e;
    return new OrExpression(this, e, module);
}

Expression* Expression::mult(Expression* e, Module* module)
{
    if (!e)
        return this;
    if (e->isBottomExpr() || e->isFalseExpr())
        return e;
    if (e->isErrorExpr() || e->isTrueExpr())
        return this;
    return new AndExpression(this, e, module);
}

Expression* Expression::duplicate()
{
    dravik_warn() << "abnormal use of expression::duplicate() ..." << '\n';
    return nullptr;
}

Expression* Expression::buildCurrentExpression(EquationTable*, Module*)
{
    return this;
}

std::ostream& Expression::print(std::ostream& os)
{
    return os;
}

void Expression::printBddStatus(std::ostream& os, Module* module, Bddexpressionwood* wood)
{
    print_sop(os, wood, getBddStatus(module, wood));
}

void Expression::printBddValue(std::ostream& os, Module* module, Bddexpressionwood* wood)
{
    print_sop(os, wood, getBddValue(module, wood));
}

// ---------------------------------------------------------------- constants

bdd TrueExpression::getBddStatus(Module*, Bddexpressionwood* w) { return one(w); }
bdd TrueExpression::getBddValue(Module*, Bddexpressionwood* w) { return zero(w); }
bdd TrueExpression::getInitialBddStatus(Module*, Bddexpressionwood* w) { return one(w); }
bdd TrueExpression::getInitialBddValue(Module*, Bddexpressionwood* w) { return zero(w); }

// True plus false is contradictory (while x plus false is x): intended.
Expression* TrueExpression::plus(Expression* e, Module* module)
{
    if (e && e->isErrorExpr())
        return e;
    if (e && e->isFalseExpr())
        return new ErrorExpression(module);
    return this;
}

Expression* TrueExpression::mult(Expression* e, Module* module)
{
    if (!e || e->isErrorExpr())
        return this;
    if (e->isFalseExpr())
        return new BottomExpression(module);
    return e;
}

Expression* TrueExpression::duplicate() { return new TrueExpression; }
std::ostream& TrueExpression::print(std::ostream& os) { return os << " 1 "; }

bdd FalseExpression::getBddStatus(Module*, Bddexpressionwood* w) { return zero(w); }
bdd FalseExpression::getBddValue(Module*, Bddexpressionwood* w) { return one(w); }
bdd FalseExpression::getInitialBddStatus(Module*, Bddexpressionwood* w) { return zero(w); }
bdd FalseExpression::getInitialBddValue(Module*, Bddexpressionwood* w) { return one(w); }

Expression* FalseExpression::plus(Expression* e, Module* module)
{
    if (!e || e->isBottomExpr())
        return this;
    if (e->isTrueExpr())
        return new ErrorExpression(module);
    return e;
}

Expression* FalseExpression::mult(Expression* e, Module* module)
{
    if (e && e->isBottomExpr())
        return e;
    if (e && e->isTrueExpr())
        return new BottomExpression(module);
    return this;
}

Expression* FalseExpression::duplicate() { return new FalseExpression; }
std::ostream& FalseExpression::print(std::ostream& os) { return os << " 0 "; }

bdd BottomExpression::getBddStatus(Module*, Bddexpressionwood* w) { return zero(w); }
bdd BottomExpression::getBddValue(Module*, Bddexpressionwood* w) { return zero(w); }
bdd BottomExpression::getInitialBddStatus(Module*, Bddexpressionwood* w) { return zero(w); }
bdd BottomExpression::getInitialBddValue(Module*, Bddexpressionwood* w) { return zero(w); }

Expression* BottomExpression::plus(Expression* e, Module*) { return e ? e : this; }
Expression* BottomExpression::mult(Expression*, Module*) { return this; }
Expression* BottomExpression::duplicate() { return new BottomExpression; }
std::ostream& BottomExpression::print(std::ostream& os) { return os << " bottom "; }

bdd ErrorExpression::getBddStatus(Module*, Bddexpressionwood* w) { return one(w); }
bdd ErrorExpression::getBddValue(Module*, Bddexpressionwood* w) { return one(w); }
bdd ErrorExpression::getInitialBddStatus(Module*, Bddexpressionwood* w) { return one(w); }
bdd ErrorExpression::getInitialBddValue(Module*, Bddexpressionwood* w) { return one(w); }

Expression* ErrorExpression::plus(Expression*, Module*) { return this; }
Expression* ErrorExpression::mult(Expression* e, Module*) { return e ? e : this; }
Expression* ErrorExpression::duplicate() { return new ErrorExpression; }
std::ostream& ErrorExpression::print(std::ostream& os) { return os << " error "; }

// ---------------------------------------------------------------- Or, And

BinaryExpression::~BinaryExpression()
{
    release(left);
    if (right != left)
        release(right);
}

bdd OrExpression::getBddStatus(Module* m, Bddexpressionwood* w)
{
    return disj(w, rail_of(left, rail::status, m, w), rail_of(right, rail::status, m, w));
}

bdd OrExpression::getBddValue(Module* m, Bddexpressionwood* w)
{
    return conj(w, rail_of(left, rail::value, m, w), rail_of(right, rail::value, m, w));
}

bdd OrExpression::getInitialBddStatus(Module* m, Bddexpressionwood* w)
{
    return disj(w, rail_of(left, rail::initial_status, m, w), rail_of(right, rail::initial_status, m, w));
}

bdd OrExpression::getInitialBddValue(Module* m, Bddexpressionwood* w)
{
    return conj(w, rail_of(left, rail::initial_value, m, w), rail_of(right, rail::initial_value, m, w));
}

Expression* OrExpression::duplicate()
{
    Expression* l = copy_of(left);
    Expression* r = copy_of(right);
    return new OrExpression(l, r);
}

Expression* OrExpression::buildCurrentExpression(EquationTable* table, Module* m)
{
    Expression* l = current_of(left, table, m);
    Expression* r = current_of(right, table, m);
    return new OrExpression(l, r, m);
}

std::ostream& OrExpression::print(std::ostream& os)
{
    os << "(";
    print_of(os, left) << " + ";
    return print_of(os, right) << ")";
}

bdd AndExpression::getBddStatus(Module* m, Bddexpressionwood* w)
{
    return conj(w, rail_of(left, rail::status, m, w), rail_of(right, rail::status, m, w));
}

bdd AndExpression::getBddValue(Module* m, Bddexpressionwood* w)
{
    return disj(w, rail_of(left, rail::value, m, w), rail_of(right, rail::value, m, w));
}

bdd AndExpression::getInitialBddStatus(Module* m, Bddexpressionwood* w)
{
    return conj(w, rail_of(left, rail::initial_status, m, w), rail_of(right, rail::initial_status, m, w));
}

bdd AndExpression::getInitialBddValue(Module* m, Bddexpressionwood* w)
{
    return disj(w, rail_of(left, rail::initial_value, m, w), rail_of(right, rail::initial_value, m, w));
}

Expression* AndExpression::duplicate()
{
    Expression* l = copy_of(left);
    Expression* r = copy_of(right);
    return new AndExpression(l, r);
}

Expression* AndExpression::buildCurrentExpression(EquationTable* table, Module* m)
{
    Expression* l = current_of(left, table, m);
    Expression* r = current_of(right, table, m);
    return new AndExpression(l, r, m);
}

std::ostream& AndExpression::print(std::ostream& os)
{
    os << "(";
    print_of(os, left) << " * ";
    return print_of(os, right) << ")";
}

// ---------------------------------------------------------------- Not, Np

NotExpression::~NotExpression()
{
    release(expr);
}

bdd NotExpression::getBddStatus(Module* m, Bddexpressionwood* w) { return rail_of(expr, rail::value, m, w); }
bdd NotExpression::getBddValue(Module* m, Bddexpressionwood* w) { return rail_of(expr, rail::status, m, w); }
bdd NotExpression::getInitialBddStatus(Module* m, Bddexpressionwood* w)
{
    return rail_of(expr, rail::initial_value, m, w);
}
bdd NotExpression::getInitialBddValue(Module* m, Bddexpressionwood* w)
{
    return rail_of(expr, rail::initial_status, m, w);
}

Expression* NotExpression::duplicate()
{
    return new NotExpression(copy_of(expr));
}

Expression* NotExpression::buildCurrentExpression(EquationTable* table, Module* m)
{
    return new NotExpression(current_of(expr, table, m), m);
}

std::ostream& NotExpression::print(std::ostream& os)
{
    os << "~";
    return print_of(os, expr);
}

NpExpression::~NpExpression()
{
    release(expr);
}

namespace {

// (not s) or (s and v)
bdd np_status(Bddexpressionwood* w, const bdd& s, const bdd& v)
{
    return disj(w, neg(w, s), conj(w, s, v));
}

} // namespace

bdd NpExpression::getBddStatus(Module* m, Bddexpressionwood* w)
{
    return np_status(w, rail_of(expr, rail::status, m, w), rail_of(expr, rail::value, m, w));
}

bdd NpExpression::getBddValue(Module* m, Bddexpressionwood* w) { return rail_of(expr, rail::status, m, w); }

bdd NpExpression::getInitialBddStatus(Module* m, Bddexpressionwood* w)
{
    return np_status(w, rail_of(expr, rail::initial_status, m, w), rail_of(expr, rail::initial_value, m, w));
}

bdd NpExpression::getInitialBddValue(Module* m, Bddexpressionwood* w)
{
    return rail_of(expr, rail::initial_status, m, w);
}

Expression* NpExpression::duplicate()
{
    return new NpExpression(copy_of(expr));
}

Expression* NpExpression::buildCurrentExpression(EquationTable* table, Module* m)
{
    return new NpExpression(current_of(expr, table, m), m);
}

std::ostream& NpExpression::print(std::ostream& os)
{
    os << "np ";
    return print_of(os, expr);
}

// ---------------------------------------------------------------- Then, Else

namespace {

// The guard of Then: surely true (true and not false).
bdd then_guard(Expression* guard, bool initial, Module* m, Bddexpressionwood* w)
{
    return conj(w, rail_of(guard, status_rail(initial), m, w), neg(w, rail_of(guard, value_rail(initial), m, w)));
}

// The complement of the Then guard.
bdd else_guard(Expression* guard, bool initial, Module* m, Bddexpressionwood* w)
{
    return disj(w, neg(w, rail_of(guard, status_rail(initial), m, w)), rail_of(guard, value_rail(initial), m, w));
}

bdd guard_of(Expression* guard, bool passes_when_true, bool initial, Module* m, Bddexpressionwood* w)
{
    return passes_when_true ? then_guard(guard, initial, m, w) : else_guard(guard, initial, m, w);
}

} // namespace

GuardedExpression::~GuardedExpression()
{
    release(bool_expr);
    if (identifier != bool_expr)
        release(identifier);
}

bdd GuardedExpression::getBddStatus(Module* m, Bddexpressionwood* w)
{
    return conj(w, guard_of(bool_expr, passes_when_true, false, m, w), rail_of(identifier, rail::status, m, w));
}

bdd GuardedExpression::getBddValue(Module* m, Bddexpressionwood* w)
{
    return conj(w, guard_of(bool_expr, passes_when_true, false, m, w), rail_of(identifier, rail::value, m, w));
}

bdd GuardedExpression::getInitialBddStatus(Module* m, Bddexpressionwood* w)
{
    return conj(w, guard_of(bool_expr, passes_when_true, true, m, w),
                rail_of(identifier, rail::initial_status, m, w));
}

bdd GuardedExpression::getInitialBddValue(Module* m, Bddexpressionwood* w)
{
    return conj(w, guard_of(bool_expr, passes_when_true, true, m, w),
                rail_of(identifier, rail::initial_value, m, w));
}

std::ostream& GuardedExpression::print(std::ostream& os)
{
    os << (passes_when_true ? "(SET_then(" : "(SET_else(");
    print_of(os, bool_expr) << ", ";
    return print_of(os, identifier) << "))";
}

Expression* ThenExpression::duplicate()
{
    Expression* guard = copy_of(bool_expr);
    Expression* id = copy_of(identifier);
    return new ThenExpression(guard, id);
}

Expression* ElseExpression::duplicate()
{
    Expression* guard = copy_of(bool_expr);
    Expression* id = copy_of(identifier);
    return new ElseExpression(guard, id);
}

// ---------------------------------------------------------------- Cond

CondExpression::~CondExpression()
{
    release(expression);
}

bdd CondExpression::getBddStatus(Module* m, Bddexpressionwood* w)
{
    return conj(w, then_guard(condition, false, m, w), rail_of(expression, rail::status, m, w));
}

bdd CondExpression::getBddValue(Module* m, Bddexpressionwood* w)
{
    return conj(w, then_guard(condition, false, m, w), rail_of(expression, rail::value, m, w));
}

namespace {

// The initial guard reads the condition's initial status and its *current*
// value; kept deliberately.
bdd cond_initial_guard(Signal* condition, Module* m, Bddexpressionwood* w)
{
    return conj(w, rail_of(condition, rail::initial_status, m, w), neg(w, rail_of(condition, rail::value, m, w)));
}

} // namespace

bdd CondExpression::getInitialBddStatus(Module* m, Bddexpressionwood* w)
{
    return conj(w, cond_initial_guard(condition, m, w), rail_of(expression, rail::initial_status, m, w));
}

// Deliberately the expression's current value.
bdd CondExpression::getInitialBddValue(Module* m, Bddexpressionwood* w)
{
    return conj(w, cond_initial_guard(condition, m, w), rail_of(expression, rail::value, m, w));
}

Expression* CondExpression::duplicate()
{
    Expression* e = copy_of(expression);
    Signal* c = condition ? condition->duplicate() : nullptr;
    return new CondExpression(e, c);
}

std::ostream& CondExpression::print(std::ostream& os)
{
    os << "(Cond(";
    print_of(os, expression) << ", ";
    return print_of(os, condition) << "))";
}

// ---------------------------------------------------------------- Signal

Signal::Signal(const std::string& name, Module* module, Bddexpressionwood* wood)
    : original_name(name), internal_name(name)
{
    bind(module, wood, true);
}

Signal::Signal(const std::string& original, const std::string& internal, Module* module, Bddexpressionwood* wood)
    : original_name(original), internal_name(internal)
{
    bind(module, wood, false);
}

Signal::Signal(const Signal& from, Module* owner)
    : original_name(from.original_name), internal_name(from.internal_name), is_local(from.is_local),
      is_input(from.is_input), is_output(from.is_output), is_wire(from.is_wire), is_register(from.is_register),
      is_clock(from.is_clock), is_value(from.is_value), is_pre(from.is_pre),
      current_occurrence_table(from.current_occurrence_table), update(from.update)
{
    setBoolean(from.isBoolean());
    owner->adoptSignal(this);
}

// A new name gets its reference (and variables). An existing one is shared by
// the one-name constructor only; the two-name constructor leaves the signal
// without occurrence in the wood.
void Signal::bind(Module* module, Bddexpressionwood* wood, bool share_existing)
{
    if (!module)
        return;
    module->adoptSignal(this);
    if (!module->getSignalManager()->getSignalRefByName(internal_name)) {
        new SignalRef(original_name, internal_name, module, wood);
        current_occurrence_table[wood] = 0;
    } else if (share_existing) {
        current_occurrence_table[wood] = 0;
    }
}

void Signal::setLocal()
{
    is_local = true;
    is_input = false;
    is_output = false;
}

void Signal::setRegister()
{
    is_register = true;
    is_wire = true;
}

std::string Signal::getName(Module* module) const
{
    SignalRef* ref = getSignalRef(module);
    return ref ? ref->getCurrentName() : internal_name;
}

int Signal::getCurrentOccurrence(Bddexpressionwood* wood) const
{
    auto it = current_occurrence_table.find(wood);
    if (it == current_occurrence_table.end()) {
        std::ostringstream text;
        text << "Signal:getCurrentOccurrence: no current occurrence for the considered wood:"
             << static_cast<const void*>(wood) << "  for signal:" << internal_name;
        die(text.str());
    }
    return it->second;
}

bool Signal::hasCurrentOccurrence(Bddexpressionwood* wood) const
{
    return current_occurrence_table.count(wood) != 0;
}

void Signal::setCurrentOccurrence(Bddexpressionwood* wood, int occurrence)
{
    current_occurrence_table[wood] = occurrence;
}

void Signal::extendCurrentOccurrenceTable(Bddexpressionwood* wood, int occurrence)
{
    current_occurrence_table.emplace(wood, occurrence);
}

SignalRef* Signal::newOccurrence(Bddexpressionwood* wood, Module* module)
{
    if (!(is_local || is_output) || !module)
        return nullptr;
    SignalManager* manager = module->getSignalManager();
    int next = getCurrentOccurrence(wood) + 1;
    std::string name = internal_name + "_" + std::to_string(next);
    SignalRef* ref = manager->getSignalRefByName(name);
    if (ref) {
        if (ref->isDefinedWood(wood))
            // wording kept byte for byte: outputs are compared exactly
            IllegalOperationException("Signal::newOccurrence: signal ref already exits for the current wood"
                                      + internal_name);
        long status = SignalRef::computeId("_s_" + name, wood);
        long value = SignalRef::computeId("_v_" + name, wood);
        manager->extendSignalRef(status, value, ref, wood);
    } else {
        SignalRef* first = manager->getSignalRefByName(internal_name);
        bool valued = first && first->isValued();
        ref = new SignalRef(original_name, internal_name, name, next, valued, first ? first->getType() : "pure",
                            module, wood);
        if (first && first->isPre())
            ref->setIsPre();
    }
    current_occurrence_table[wood] = next;
    return ref;
}

SignalRef* Signal::getSignalRef(Module* module) const
{
    return module ? getSignalRef(module, module->getBddWood()) : nullptr;
}

SignalRef* Signal::getSignalRef(Module* module, Bddexpressionwood* wood) const
{
    if (!module)
        return nullptr;
    return module->getSignalManager()->getSignalRefByOccurrence(this, getCurrentOccurrence(wood));
}

SignalRef* Signal::findCurrentSignalRef(Module* module, Bddexpressionwood* wood) const
{
    auto it = current_occurrence_table.find(wood);
    if (!module || it == current_occurrence_table.end())
        return nullptr;
    SignalRef* ref = module->getSignalManager()->getSignalRefByOccurrence(this, it->second);
    return ref && ref->isDefinedWood(wood) ? ref : nullptr;
}

bool Signal::findBddIds(Module* module, Bddexpressionwood* wood, long& status, long& value) const
{
    SignalRef* ref = findCurrentSignalRef(module, wood);
    if (!ref)
        return false;
    status = ref->getBddStatusId(wood);
    value = ref->getBddValueId(wood);
    return true;
}

bool Signal::isValued(Module* module) const
{
    SignalRef* ref = getSignalRef(module);
    return ref && ref->isValued();
}

std::string Signal::getValueType(Module* module) const
{
    SignalRef* ref = getSignalRef(module);
    return ref ? ref->getType() : "pure";
}

std::string Signal::findValueType(Module* module) const
{
    if (!module)
        return "pure";
    Bddexpressionwood* wood = module->getBddWood();
    SignalRef* ref = hasCurrentOccurrence(wood) ? getSignalRef(module, wood)
                                                : module->getSignalManager()->getSignalRefByName(internal_name);
    return ref ? ref->getType() : "pure";
}

void Signal::setValueType(const std::string& type, Module* module)
{
    if (SignalRef* ref = getSignalRef(module))
        ref->setType(type);
}

SignalRef* Signal::current_ref_or_die(Module* module, Bddexpressionwood* wood, const char* no_occurrence,
                                      const char* no_ref) const
{
    auto it = current_occurrence_table.find(wood);
    if (it == current_occurrence_table.end())
        IllegalOperationException(no_occurrence + internal_name);
    SignalRef* ref = module ? module->getSignalManager()->getSignalRefByOccurrence(this, it->second) : nullptr;
    if (!ref)
        IllegalOperationException(no_ref + internal_name);
    return ref;
}

// The value forms report under the status texts, as they always have.
long Signal::getBddStatusId(Module* module, Bddexpressionwood* wood) const
{
    return current_ref_or_die(module, wood, "Signal::getBddStatusId: no current occurrence for this wood",
                              "Signal::getBddStatusId: no ref for signal")
        ->getBddStatusId(wood);
}

long Signal::getBddValueId(Module* module, Bddexpressionwood* wood) const
{
    return current_ref_or_die(module, wood, "Signal::getBddStatusId: no current occurrence for this wood",
                              "Signal::getBddStatusId: no ref for signal")
        ->getBddValueId(wood);
}

long Signal::getInitialBddStatusId(Module* module, Bddexpressionwood* wood) const
{
    SignalRef* ref = module ? module->getSignalManager()->getSignalRefByName(internal_name) : nullptr;
    if (!ref)
        IllegalOperationException("Signal::getBddStatusId:no signal ref for signal");
    return ref->getBddStatusId(wood);
}

long Signal::getInitialBddValueId(Module* module, Bddexpressionwood* wood) const
{
    SignalRef* ref = module ? module->getSignalManager()->getSignalRefByName(internal_name) : nullptr;
    if (!ref)
        IllegalOperationException("Signal::getBddStatusId:no signal ref for signal");
    return ref->getBddValueId(wood);
}

bdd Signal::getBddStatus(Module* module, Bddexpressionwood* wood)
{
    int occurrence = getCurrentOccurrence(wood);
    SignalRef* ref = module ? module->getSignalManager()->getSignalRefByOccurrence(this, occurrence) : nullptr;
    if (!ref)
        IllegalOperationException("Signal::getBddStatus:no signal ref for signal " + internal_name);
    return wood ? wood->Bdd_var_by_index(ref->getBddStatusId(wood)) : bdd();
}

bdd Signal::getBddValue(Module* module, Bddexpressionwood* wood)
{
    int occurrence = getCurrentOccurrence(wood);
    SignalRef* ref = module ? module->getSignalManager()->getSignalRefByOccurrence(this, occurrence) : nullptr;
    if (!ref)
        IllegalOperationException("Signal::getBddStatus:no signal ref for signal " + internal_name);
    return wood ? wood->Bdd_var_by_index(ref->getBddValueId(wood)) : bdd();
}

bdd Signal::getInitialBddStatus(Module* module, Bddexpressionwood* wood)
{
    long id = getInitialBddStatusId(module, wood);
    return wood ? wood->Bdd_var_by_index(id) : bdd();
}

bdd Signal::getInitialBddValue(Module* module, Bddexpressionwood* wood)
{
    long id = getInitialBddValueId(module, wood);
    return wood ? wood->Bdd_var_by_index(id) : bdd();
}

std::list<long> Signal::getAllBddId(Module* module, Bddexpressionwood* wood) const
{
    if (!(is_local || is_wire || is_output))
        IllegalOperationException("Signal::getAllBddId" + internal_name);
    int current = getCurrentOccurrence(wood);
    if (current == 0)
        return {getBddStatusId(module, wood), getBddValueId(module, wood)};
    std::list<long> ids;
    for (int n = 0; n <= current; ++n) {
        SignalRef* ref = module ? module->getSignalManager()->getSignalRefByOccurrence(this, n) : nullptr;
        if (!ref)
            IllegalOperationException(" Signal::getAllBddId: Unknown Signal Ref" + internal_name);
        ids.push_back(ref->getBddStatusId(wood));
        ids.push_back(ref->getBddValueId(wood));
    }
    return ids;
}

int Signal::computeStatusType() const
{
    if (is_output)
        return Compilation::SOUTPUT;
    if (is_clock)
        return Compilation::SCLOCK;
    if (is_register)
        return Compilation::SREG;
    if (is_wire)
        return Compilation::SWIRE;
    if (is_input)
        return Compilation::SINPUT;
    return Compilation::STAT;
}

// Each value type is the status type plus one.
int Signal::computeValueType() const
{
    return computeStatusType() + 1;
}

Signal* Signal::duplicate()
{
    return this;
}

Expression* Signal::buildCurrentExpression(EquationTable*, Module* module)
{
    if (!module)
        return this;
    return new Signal(*this, module);
}

std::ostream& Signal::print(std::ostream& os)
{
    return os << internal_name;
}
