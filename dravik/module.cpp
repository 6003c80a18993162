#include "module.h"

#include "Bddexpression.h"
#include "data.h"
#include "equationtable.h"
#include "exceptions.h"
#include "expression.h"
#include "signal_manager.h"

#include <cstdlib>
#include <ostream>
#include <set>
#include <utility>

namespace {

// The variable's name is the text "/tmp" itself: kept on purpose.
std::string simulation_dir_at_start()
{
    const char* dir = std::getenv("/tmp");
    return dir ? std::string(dir) : std::string("./");
}

Signal* find_by_original(const std::list<Signal*>* list, const std::string& name)
{
    for (Signal* s : *list)
        if (s && s->getOriginalName() == name)
            return s;
    return nullptr;
}

Signal* find_by_internal(const std::list<Signal*>* list, const std::string& name)
{
    for (Signal* s : *list)
        if (s && s->getInternalName() == name)
            return s;
    return nullptr;
}

Signal* find_pre(const std::list<memorizedSignal*>* list, const std::string& name)
{
    for (memorizedSignal* m : *list)
        if (m && m->pre() && m->pre()->getInternalName() == name)
            return m->pre();
    return nullptr;
}

// Replaces *slot by `list` (a new empty list for null), deleting the old list.
template <class T>
void replace_list(std::list<T*>*& slot, std::list<T*>* list)
{
    if (list == slot)
        return;
    delete slot;
    slot = list ? list : new std::list<T*>;
}

// The same for lists that own their records: records of the old list that
// the new one does not hold go with it.
template <class T>
void replace_owning_list(std::list<T*>*& slot, std::list<T*>* list)
{
    if (list == slot)
        return;
    std::set<T*> kept;
    if (list)
        kept.insert(list->begin(), list->end());
    std::set<T*> dropped;
    for (T* record : *slot)
        if (record && !kept.count(record))
            dropped.insert(record);
    for (T* record : dropped)
        delete record;
    replace_list(slot, list);
}

template <class T>
void delete_owning_list(std::list<T*>* list)
{
    std::set<T*> records(list->begin(), list->end());
    for (T* record : records)
        delete record;
    delete list;
}

// The equation at a variable index, or null; never reports.
Bddexpression* equation_at(Bddexpressionwood* wood, long index)
{
    const std::vector<Bddexpression*>& table = wood->Exp_table();
    if (index < 0 || static_cast<std::size_t>(index) >= table.size())
        return nullptr;
    return table[static_cast<std::size_t>(index)];
}

void set_user_type(Bddexpressionwood* wood, long index, int type)
{
    if (Bddexpression* e = equation_at(wood, index))
        e->setUserType(type);
}

// Status ids at even positions, value ids at odd ones.
void mark_pairs(Bddexpressionwood* wood, const std::list<long>& ids, int status_type, int value_type)
{
    for (auto it = ids.begin(); it != ids.end(); ++it) {
        long status = *it;
        if (status >= 0)
            set_user_type(wood, status, status_type);
        if (++it == ids.end())
            break;
        set_user_type(wood, *it, value_type);
    }
}

} // namespace

std::string Module::SimulationDir = simulation_dir_at_start();

// ---------------------------------------------------------------- DataBinding

DataBinding::~DataBinding()
{
    delete value;
}

DataExpr* DataBinding::releaseValue()
{
    DataExpr* v = value;
    value = nullptr;
    return v;
}

// ---------------------------------------------------------------- Module

Module::Module(const std::string& name_)
    : name(name_), input_signal_list(new std::list<Signal*>), output_signal_list(new std::list<Signal*>),
      local_signal_list(new std::list<Signal*>), pre_signal_list(new std::list<memorizedSignal*>),
      data_signal_list(new std::list<Signal*>), register_list(new std::list<regclass*>),
      compilation(new EquationTable(name_, new Bddexpressionwood)), signal_manager(new SignalManager)
{
}

Module::~Module()
{
    if (data_table) {
        for (auto& entry : *data_table)
            delete entry.second;
        delete data_table;
    }
    delete_owning_list(register_list);
    delete_owning_list(pre_signal_list);
    delete input_signal_list;
    delete output_signal_list;
    delete local_signal_list;
    delete data_signal_list;
    if (run_decl_table) {
        for (auto& entry : *run_decl_table)
            delete entry.second;
        delete run_decl_table;
    }
    owned_signals.clear();
    delete signal_manager;
    Bddexpressionwood* wood = getBddWood();
    delete compilation;
    delete wood;
}

void Module::adoptSignal(Signal* signal)
{
    owned_signals.emplace_back(signal);
}

void Module::setInputSignalList(std::list<Signal*>* list) { replace_list(input_signal_list, list); }
void Module::setOutputSignalList(std::list<Signal*>* list) { replace_list(output_signal_list, list); }
void Module::setDataSignalList(std::list<Signal*>* list) { replace_list(data_signal_list, list); }
void Module::setLocalSignalList(std::list<Signal*>* list) { replace_list(local_signal_list, list); }
void Module::setRegisterList(std::list<regclass*>* list) { replace_owning_list(register_list, list); }
void Module::setPreSignalList(std::list<memorizedSignal*>* list) { replace_owning_list(pre_signal_list, list); }

Bddexpressionwood* Module::getBddWood() const
{
    return compilation ? compilation->getWood() : nullptr;
}

// ---------------------------------------------------------------- lookups

Signal* Module::getInputSignal(const std::string& n) const
{
    return find_by_original(input_signal_list, n);
}

Signal* Module::getOutputSignal(const std::string& n) const
{
    return find_by_original(output_signal_list, n);
}

Signal* Module::getLocalSignal(const std::string& n) const
{
    return find_by_internal(local_signal_list, n);
}

Signal* Module::getDataSignal(const std::string& n) const
{
    return find_by_internal(data_signal_list, n);
}

Signal* Module::getPreSignal(const std::string& n) const
{
    return find_pre(pre_signal_list, n);
}

Signal* Module::getOutputLocalSignal(const std::string& n) const
{
    if (Signal* s = getOutputSignal(n))
        return s;
    return getLocalSignal(n);
}

Signal* Module::getSignal(const std::string& n) const
{
    if (Signal* s = getInputSignal(n))
        return s;
    if (Signal* s = getOutputSignal(n))
        return s;
    if (Signal* s = getDataSignal(n))
        return s;
    if (Signal* s = getLocalSignal(n))
        return s;
    return getPreSignal(n);
}

Signal* Module::getSignalFromInternalName(const std::string& n) const
{
    if (Signal* s = find_by_internal(input_signal_list, n))
        return s;
    if (Signal* s = find_by_internal(output_signal_list, n))
        return s;
    if (Signal* s = find_by_internal(data_signal_list, n))
        return s;
    if (Signal* s = find_by_internal(local_signal_list, n))
        return s;
    return find_pre(pre_signal_list, n);
}

Signal* Module::getSignalById(long id, Bddexpressionwood* wood) const
{
    SignalRef* ref = signal_manager->getSignalRefById(id, wood);
    return ref ? getSignal(ref->getInternalName()) : nullptr;
}

// ---------------------------------------------------------------- bindings

void Module::store_binding(DataBinding* binding)
{
    if (!data_table)
        data_table = new std::map<std::string, DataBinding*>;
    DataBinding*& slot = (*data_table)[binding->getSignal()->getInternalName()];
    if (slot && slot != binding) {
        // The same expression bound again stays with the new binding.
        if (slot->getValue() == binding->getValue())
            slot->releaseValue();
        delete slot;
    }
    slot = binding;
}

void Module::addSignalBinding(DataExpr* value, Signal* signal)
{
    if (!signal)
        return;
    store_binding(new DataBinding(signal, value));
    std::unique_ptr<std::set<Signal*>> reads = value ? value->computeDependencySet() : nullptr;
    if (!reads)
        return;
    Bddexpressionwood* wood = getBddWood();
    if (!wood)
        return;
    std::set<std::int64_t> ids;
    for (Signal* s : *reads) {
        ids.insert(s->getBddStatusId(this, wood));
        ids.insert(s->getBddValueId(this, wood));
    }
    new Bddexpression(signal->getBddStatusId(this, wood), wood, ids, "VALUE_SIGNAL", 0, 0);
    new Bddexpression(signal->getBddValueId(this, wood), wood, ids, "VALUE_SIGNAL", 0, 0);
}

void Module::addSignalBinding(DataExpr* value, Signal* signal, Signal* clock)
{
    if (!signal)
        return;
    if (clock) {
        clock->setClock();
        store_binding(new DataBinding(signal, value, clock));
    } else {
        store_binding(new DataBinding(signal, value));
    }
    signal->setValue();
}

DataBinding* Module::getBinding(const std::string& internal_name) const
{
    if (!data_table)
        return nullptr;
    auto it = data_table->find(internal_name);
    return it == data_table->end() ? nullptr : it->second;
}

bool Module::removeBinding(const std::string& internal_name)
{
    if (!data_table)
        return false;
    auto it = data_table->find(internal_name);
    if (it == data_table->end())
        return false;
    delete it->second;
    data_table->erase(it);
    return true;
}

std::list<Signal*> Module::getSignalBindingByClock(Signal* clock) const
{
    std::list<Signal*> signals;
    for (DataBinding* b : getDataBindingByClock(clock))
        signals.push_back(b->getSignal());
    return signals;
}

std::list<DataBinding*> Module::getDataBindingByClock(Signal* clock) const
{
    std::list<DataBinding*> bindings;
    if (data_table)
        for (const auto& entry : *data_table)
            if (entry.second->getClock() == clock)
                bindings.push_back(entry.second);
    return bindings;
}

void Module::debugPrintBinding(std::ostream& os) const
{
    os << "bindings of module " << name << ":" << '\n';
    if (!data_table)
        return;
    for (const auto& entry : *data_table) {
        const DataBinding* b = entry.second;
        os << "   " << entry.first << " = ";
        if (b->getValue())
            b->getValue()->print_debug(os);
        if (b->getClock())
            os << " clock: " << b->getClock()->getInternalName();
        os << '\n';
    }
}

// ---------------------------------------------------------------- user types

void Module::update_user_type()
{
    Bddexpressionwood* wood = getBddWood();
    if (!wood)
        return;
    // Each signal is asked for its variables in the wood, so a second
    // declaration of a name (a signal without an occurrence there) ends the
    // process here, as the loader's other questions about it do.
    bddpp_manager* manager = wood->getManager();
    auto status_of = [&](Signal* s) { return manager->Index_var_by_bdd(s->getBddStatus(this, wood)); };
    auto value_of = [&](Signal* s) { return manager->Index_var_by_bdd(s->getBddValue(this, wood)); };
    for (Signal* s : *output_signal_list) {
        if (!s)
            continue;
        set_user_type(wood, status_of(s), Compilation::SOUTPUT);
        set_user_type(wood, value_of(s), Compilation::VOUTPUT);
    }
    for (Signal* s : *local_signal_list) {
        if (!s)
            continue;
        if (s->isRegister())
            mark_pairs(wood, s->getAllBddId(this, wood), Compilation::SREG, Compilation::VREG);
        if (s->isClock())
            mark_pairs(wood, s->getAllBddId(this, wood), Compilation::SCLOCK, Compilation::VCLOCK);
    }
    for (memorizedSignal* m : *pre_signal_list) {
        Signal* actual = m ? m->actual() : nullptr;
        if (!actual)
            continue;
        const std::int64_t status = status_of(actual);
        const std::int64_t value = value_of(actual);
        Bddexpression* e = equation_at(wood, status);
        if (e && e->getUserType() != Compilation::SOUTPUT && e->getUserType() != Compilation::SINPUT)
            e->setUserType(Compilation::SUSEDPRE);
        e = equation_at(wood, value);
        if (e && e->getUserType() != Compilation::VOUTPUT && e->getUserType() != Compilation::VINPUT)
            e->setUserType(Compilation::VUSEDPRE);
    }
}

void Module::loose_first_underscore_in_name_variables()
{
    Bddexpressionwood* wood = getBddWood();
    if (wood && wood->getManager())
        wood->getManager()->Loose_first_underscore_in_names();
}

void Module::setFileDataIds(std::vector<int> type_ids, std::vector<int> method_ids, std::vector<int> constant_ids)
{
    file_type_ids = std::move(type_ids);
    file_method_ids = std::move(method_ids);
    file_constant_ids = std::move(constant_ids);
}

// ---------------------------------------------------------------- ModuleTable

ModuleTable::ModuleTable() : table(new std::map<std::string, Module*>) {}

ModuleTable::~ModuleTable()
{
    delete table;
}

bool ModuleTable::add(Module* module)
{
    return module && table->emplace(module->getName(), module).second;
}

Module* ModuleTable::get(const std::string& name) const
{
    for (const auto& entry : *table)
        if (entry.first == name)
            return entry.second;
    return nullptr;
}

// ---------------------------------------------------------------- Interface

namespace {

Signal* find_in(const std::map<std::string, Signal*>* table, const std::string& name)
{
    auto it = table->find(name);
    return it == table->end() ? nullptr : it->second;
}

} // namespace

Interface::Interface()
    : input_signal_table(new std::map<std::string, Signal*>), output_signal_table(new std::map<std::string, Signal*>),
      local_signal_table(new std::map<std::string, Signal*>), data_signal_table(new std::map<std::string, Signal*>),
      register_list(new std::list<regclass*>)
{
}

Interface::~Interface()
{
    delete input_signal_table;
    delete output_signal_table;
    delete local_signal_table;
    delete data_signal_table;
    delete register_list;
}

void Interface::addInput(const std::string& name, Signal* signal)
{
    if (!input_signal_table->emplace(name, signal).second)
        ImpossibleToAddSignalException("Input", name);
}

void Interface::addOutput(const std::string& name, Signal* signal)
{
    if (!output_signal_table->emplace(name, signal).second)
        HashTableAddException("Interface::addOutput", name);
}

void Interface::addLocal(const std::string& name, Signal* signal)
{
    if (!local_signal_table->emplace(name, signal).second)
        HashTableAddException("Interface::addLocal", name);
}

// Reports under addLocal's context, as it always has.
void Interface::addData(const std::string& name, Signal* signal)
{
    if (!data_signal_table->emplace(name, signal).second)
        HashTableAddException("Interface::addLocal", name);
}

void Interface::addRegister(regclass* reg)
{
    register_list->push_back(reg);
}

Signal* Interface::getInputSignal(const std::string& name) const
{
    auto it = input_signal_table->find(name);
    if (it == input_signal_table->end())
        SignalNotFoundException("Input", name);
    return it->second;
}

Signal* Interface::getOutputSignal(const std::string& name) const
{
    auto it = output_signal_table->find(name);
    if (it == output_signal_table->end())
        SignalNotFoundException("Output", name);
    return it->second;
}

Signal* Interface::getLocalSignal(const std::string& name) const
{
    return find_in(local_signal_table, name);
}

Signal* Interface::getDataSignal(const std::string& name) const
{
    return find_in(data_signal_table, name);
}

Signal* Interface::getSignal(const std::string& name) const
{
    if (Signal* s = find_in(input_signal_table, name))
        return s;
    if (Signal* s = find_in(output_signal_table, name))
        return s;
    if (Signal* s = find_in(local_signal_table, name))
        return s;
    return find_in(data_signal_table, name);
}

std::string Interface::getOriginalSignalName(const std::string& name) const
{
    Signal* s = getSignal(name);
    return s ? s->getOriginalName() : std::string();
}
