#include "equationtable.h"

#include "Bddexpression.h"
#include "dravik_warn.h"
#include "exceptions.h"
#include "expression.h"
#include "module.h"
#include "signal_manager.h"

#include <iostream>

namespace {

// The equation at a variable index, or null; never reports.
Bddexpression* equation_at(Bddexpressionwood* wood, long index)
{
    const std::vector<Bddexpression*>& table = wood->Exp_table();
    if (index < 0 || static_cast<std::size_t>(index) >= table.size())
        return nullptr;
    return table[static_cast<std::size_t>(index)];
}

} // namespace

EquationTable::EquationTable(const std::string& name, Bddexpressionwood* wood)
    : bdd_expression_wood(wood), module_name(name)
{
}

void EquationTable::createEquation(Signal* signal, Expression* expression, Module* module)
{
    createEquation(signal, expression, module, false);
}

void EquationTable::createEquation(Signal* signal, Expression* expression, Module* module, bool initial)
{
    Bddexpressionwood* w = bdd_expression_wood;
    if (!w || !signal || !expression)
        return;
    const std::string& name = signal->getInternalName();
    bdd status = initial ? expression->getInitialBddStatus(module, w) : expression->getBddStatus(module, w);
    long status_id = initial ? signal->getInitialBddStatusId(module, w) : signal->getBddStatusId(module, w);
    new Bddexpression(name, w, w->Bdd_var_by_index(status_id), status, signal->computeStatusType());
    if (signal->isWire()) {
        bdd own_status = signal->getBddStatus(module, w);
        new Bddexpression(name, w, signal->getBddValue(module, w), w->Bdd_not(own_status),
                          signal->computeValueType());
        return;
    }
    // The current value variable even for an initial equation: intended.
    bdd value = initial ? expression->getInitialBddValue(module, w) : expression->getBddValue(module, w);
    new Bddexpression(name, w, signal->getBddValue(module, w), value, signal->computeValueType());
}

void EquationTable::createUnifyEquation(Signal* signal, Expression* expression, Module* module, bool initial)
{
    Bddexpressionwood* w = bdd_expression_wood;
    if (!w || !signal || !expression)
        return;
    bdd status = initial ? expression->getInitialBddStatus(module, w) : expression->getBddStatus(module, w);
    long sid = initial ? signal->getInitialBddStatusId(module, w) : signal->getBddStatusId(module, w);
    if (Bddexpression* e = equation_at(w, sid))
        e->setBddExp(w->Bdd_or(e->getBddExp(), status));
    else
        dravik_warn() << "internal error 1 in createUnifyEquation()! about sid=" << sid << '\n';
    bdd value = initial ? expression->getInitialBddValue(module, w) : expression->getBddValue(module, w);
    long vid = signal->getBddValueId(module, w);
    if (Bddexpression* e = equation_at(w, vid))
        e->setBddExp(w->Bdd_or(e->getBddExp(), value));
    else
        dravik_warn() << "internal error 2 in createUnifyEquation()! about vid=" << vid << '\n';
}

void EquationTable::createBottomEquation(Signal* signal, Module* module)
{
    Bddexpressionwood* w = bdd_expression_wood;
    if (!w || !signal)
        return;
    const std::string& name = signal->getInternalName();
    new Bddexpression(name, w, signal->getBddStatus(module, w), w->Bdd_zero(), signal->computeStatusType());
    new Bddexpression(name, w, signal->getBddValue(module, w), w->Bdd_zero(), signal->computeValueType());
}

void EquationTable::createBottomEquation(Signal* signal, int occurrence, Module* module)
{
    Bddexpressionwood* w = bdd_expression_wood;
    if (!w || !signal)
        return;
    SignalRef* ref = module ? module->getSignalManager()->getSignalRefByOccurrence(signal, occurrence) : nullptr;
    if (!ref) {
        dravik_warn() << "createBottomEquation: no signalref" << '\n';
        return;
    }
    const std::string& name = signal->getInternalName();
    new Bddexpression(name, w, w->Bdd_var_by_index(ref->getBddStatusId(w)), w->Bdd_zero(),
                      signal->computeStatusType());
    new Bddexpression(name, w, w->Bdd_var_by_index(ref->getBddValueId(w)), w->Bdd_zero(),
                      signal->computeValueType());
}

std::int64_t EquationTable::callPert()
{
    Bddexpressionwood* w = bdd_expression_wood;
    if (!w)
        return 0;
    std::int64_t dates = w->compute_dates();
    if (dates < 0)
        SchedulingFailureException(module_name);
    std::list<std::int64_t> cycle = w->loop_detection();
    if (cycle.empty())
        return dates;
    bddpp_manager* man = w->getManager();
    auto name_of = [man](std::int64_t index) { return man ? man->Name_var_by_index(index) : std::string(); };
    std::string text = "ERROR in Module `" + module_name + "': detecting variables in a dependance cycle:\n";
    for (std::int64_t index : cycle)
        text += " " + name_of(index) + "\n";
    text += "\n\n";
    text += "when sorting equations: \n";
    // Each caught variable with the variables its equation reads.
    for (std::int64_t index : cycle) {
        text += "   " + name_of(index) + " depends on:";
        if (Bddexpression* e = equation_at(w, index))
            for (std::int64_t read : e->getVarsDependance())
                text += " " + name_of(read);
        text += "\n";
    }
    fatal_report(text);
}

void EquationTable::add(Bddexpression* equation, Module* module)
{
    Bddexpressionwood* w = bdd_expression_wood;
    if (!w || !equation)
        return;
    const std::string& variable = equation->getName();
    SignalRef* ref = nullptr;
    if (module && variable.size() > 3)
        ref = module->getSignalManager()->getSignalRefByName(variable.substr(3));
    if (!ref) {
        dravik_warn() << "EquationTable::add: no Signal ref " << variable << '\n';
        return;
    }
    if (!ref->isDefinedWood(w)) {
        long status = SignalRef::computeId("_s_" + ref->getCurrentName(), w);
        long value = SignalRef::computeId("_v_" + ref->getCurrentName(), w);
        module->getSignalManager()->extendSignalRef(status, value, ref, w);
    }
    w->learn_expression(equation);
}

void EquationTable::learnSignal(Signal* signal, Module* module)
{
    Bddexpressionwood* w = bdd_expression_wood;
    if (!w || !signal)
        return;
    Bddexpressionwood* module_wood = module ? module->getBddWood() : nullptr;
    SignalRef* ref = signal->findCurrentSignalRef(module, module_wood);
    if (!ref) {
        // wording kept byte for byte: outputs are compared exactly
        dravik_warn() << "EquationTable:learSignal: signal not defined in module wood: " << signal->getInternalName()
                      << '\n';
        return;
    }
    if (ref->isDefinedWood(w))
        return;
    long status = SignalRef::computeId("_s_" + ref->getCurrentName(), w);
    long value = SignalRef::computeId("_v_" + ref->getCurrentName(), w);
    module->getSignalManager()->extendSignalRef(status, value, ref, w);
    signal->extendCurrentOccurrenceTable(w, signal->getCurrentOccurrence(module_wood));
}
