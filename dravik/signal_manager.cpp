#include "signal_manager.h"

#include "Bddexpression.h"
#include "exceptions.h"
#include "expression.h"
#include "module.h"

#include <ostream>

// ---------------------------------------------------------------- SignalRef

SignalRef::SignalRef(const std::string& original, const std::string& internal, Module* module,
                     Bddexpressionwood* wood)
    : original_name(original), internal_name(internal), current_name(internal)
{
    make_variables(module, wood);
}

SignalRef::SignalRef(const std::string& original, const std::string& internal, const std::string& current,
                     int occurrence, bool valued, const std::string& value_type, Module* module,
                     Bddexpressionwood* wood)
    : original_name(original), internal_name(internal), current_name(current), current_occurrence(occurrence)
{
    if (valued)
        setType(value_type);
    make_variables(module, wood);
}

// Status variable first, then value variable: a loaded module's order is
// "_s_" then "_v_" for each signal in creation order.
void SignalRef::make_variables(Module* module, Bddexpressionwood* wood)
{
    if (wood) {
        long status = computeId("_s_" + current_name, wood);
        long value = computeId("_v_" + current_name, wood);
        addBddIds(status, value, wood);
    }
    if (module)
        module->getSignalManager()->addSignalRef(this);
}

long SignalRef::computeId(const std::string& name, Bddexpressionwood* wood)
{
    if (!wood)
        return -1;
    long id = wood->Index_var_by_name(name);
    if (id == -1)
        id = wood->Index_new_var_last(name);
    return id;
}

void SignalRef::addBddIds(long status, long value, Bddexpressionwood* wood)
{
    if (bdd_ids_wood.count(wood))
        IllegalOperationException("SignalRef::addBddIds: wood already added" + current_name);
    bdd_ids_wood.emplace(wood, std::make_pair(status, value));
}

long SignalRef::getBddStatusId(Bddexpressionwood* wood) const
{
    auto it = bdd_ids_wood.find(wood);
    if (it == bdd_ids_wood.end())
        IllegalOperationException("SignalRef::getBddStatusId:unknown wood" + current_name);
    return it->second.first;
}

long SignalRef::getBddValueId(Bddexpressionwood* wood) const
{
    auto it = bdd_ids_wood.find(wood);
    if (it == bdd_ids_wood.end())
        IllegalOperationException("SignalRef::getBddValueId:unknown wood" + current_name);
    return it->second.second;
}

void SignalRef::setBddStatusId(long id, Bddexpressionwood* wood)
{
    auto it = bdd_ids_wood.find(wood);
    if (it == bdd_ids_wood.end())
        // wording kept byte for byte: outputs are compared exactly
        IllegalOperationException("SignalRef::setBddStausId: wood not found");
    it->second.first = id;
}

void SignalRef::setBddValueId(long id, Bddexpressionwood* wood)
{
    auto it = bdd_ids_wood.find(wood);
    if (it == bdd_ids_wood.end())
        IllegalOperationException("SignalRef::setBddValueId: wood not found");
    it->second.second = id;
}

bool SignalRef::isDefinedWood(Bddexpressionwood* wood) const
{
    return bdd_ids_wood.count(wood) != 0;
}

void SignalRef::setType(const std::string& value_type)
{
    type = value_type;
    is_valued = true;
}

// ---------------------------------------------------------------- SignalRefTable

SignalRefTable::SignalRefTable(long size) : signal_ref_table(size > 0 ? static_cast<std::size_t>(size) : 0, nullptr)
{
}

SignalRef* SignalRefTable::get(long id) const
{
    if (id < 0 || id >= getSize())
        return nullptr;
    return signal_ref_table[static_cast<std::size_t>(id)];
}

void SignalRefTable::set(long id, SignalRef* ref)
{
    if (id >= 0 && id < getSize())
        signal_ref_table[static_cast<std::size_t>(id)] = ref;
}

// The vector grows geometrically underneath, so a table extended once per
// new signal still costs linear time overall.
void SignalRefTable::extend(long size)
{
    if (size > getSize())
        signal_ref_table.resize(static_cast<std::size_t>(size), nullptr);
}

// ---------------------------------------------------------------- SignalManager

SignalManager::~SignalManager()
{
    for (auto& entry : signalref_table)
        delete entry.second;
    for (auto& entry : signalref_id_table)
        delete entry.second;
}

void SignalManager::addSignalRef(SignalRef* ref)
{
    if (!ref)
        return;
    const std::string& key = ref->getCurrentName();
    if (signalref_table.count(key))
        HashTableAddException("SignalManager::addSignalRef", key);
    signalref_table.emplace(key, ref);
    for (const auto& entry : ref->getBddIdsWood())
        addSignalRefIdTable(entry.second.first, entry.second.second, ref, entry.first);
}

void SignalManager::addSignalRefIdTable(long status, long value, SignalRef* ref, Bddexpressionwood* wood)
{
    if (!ref || !wood)
        return;
    auto it = signalref_id_table.find(wood);
    if (it == signalref_id_table.end())
        it = signalref_id_table.emplace(wood, new SignalRefTable(wood->Nb_bdd_vars())).first;
    else if (it->second->getSize() < wood->Nb_bdd_vars())
        extendIdTable(wood);
    SignalRefTable* table = it->second;
    if (status >= 0 && status < table->getSize()) {
        if (table->get(status))
            IllegalOperationException("addSignalRef (excep1) " + ref->getCurrentName());
        table->set(status, ref);
    }
    if (value >= 0 && value < table->getSize()) {
        if (table->get(value))
            IllegalOperationException("addSignalRef (excep2)" + ref->getCurrentName());
        table->set(value, ref);
    }
}

void SignalManager::extendIdTable(Bddexpressionwood* wood)
{
    auto it = signalref_id_table.find(wood);
    if (it != signalref_id_table.end() && wood)
        it->second->extend(wood->Nb_bdd_vars());
}

void SignalManager::extendSignalRef(long status, long value, SignalRef* ref, Bddexpressionwood* wood)
{
    if (!ref)
        return;
    ref->addBddIds(status, value, wood);
    addSignalRefIdTable(status, value, ref, wood);
}

SignalRef* SignalManager::getSignalRefByName(const std::string& name) const
{
    auto it = signalref_table.find(name);
    return it == signalref_table.end() ? nullptr : it->second;
}

SignalRef* SignalManager::getSignalRefByOccurrence(const Signal* signal, int occurrence) const
{
    if (!signal)
        return nullptr;
    std::string name = signal->getInternalName();
    if (occurrence != 0)
        name += "_" + std::to_string(occurrence);
    return getSignalRefByName(name);
}

SignalRef* SignalManager::getSignalRefById(long id, Bddexpressionwood* wood) const
{
    auto it = signalref_id_table.find(wood);
    return it == signalref_id_table.end() ? nullptr : it->second->get(id);
}

SignalRef* SignalManager::getCurrentOccurrence(const Signal* signal, Bddexpressionwood* wood) const
{
    if (!signal)
        return nullptr;
    return getSignalRefByOccurrence(signal, signal->getCurrentOccurrence(wood));
}

std::list<SignalRef*> SignalManager::getAllSignalRef(const Signal* signal, Bddexpressionwood* wood) const
{
    std::list<SignalRef*> refs;
    if (!signal)
        return refs;
    int current = signal->hasCurrentOccurrence(wood) ? signal->getCurrentOccurrence(wood) : 0;
    for (int n = 0; n <= current; ++n)
        if (SignalRef* ref = getSignalRefByOccurrence(signal, n))
            refs.push_back(ref);
    return refs;
}

void SignalManager::deleteWood(Bddexpressionwood* wood)
{
    auto it = signalref_id_table.find(wood);
    if (it != signalref_id_table.end()) {
        delete it->second;
        signalref_id_table.erase(it);
    }
    for (auto& entry : signalref_table)
        entry.second->removeWood(wood);
}

void SignalManager::duplicate(Bddexpressionwood* from, Bddexpressionwood* to)
{
    auto source = signalref_id_table.find(from);
    if (source == signalref_id_table.end() || !to || from == to)
        return;
    SignalRefTable* copy = new SignalRefTable(*source->second);
    auto target = signalref_id_table.find(to);
    if (target != signalref_id_table.end()) {
        delete target->second;
        target->second = copy;
    } else {
        signalref_id_table.emplace(to, copy);
    }
    for (long id = 0; id < copy->getSize(); ++id) {
        SignalRef* ref = copy->get(id);
        if (ref && !ref->isDefinedWood(to))
            ref->addBddIds(ref->getBddStatusId(from), ref->getBddValueId(from), to);
    }
}

const SignalRefTable* SignalManager::getIdTable(Bddexpressionwood* wood) const
{
    auto it = signalref_id_table.find(wood);
    return it == signalref_id_table.end() ? nullptr : it->second;
}

void SignalManager::printSignalTableByName(std::ostream& os) const
{
    os << "signal references by name:" << '\n';
    for (const auto& entry : signalref_table) {
        const SignalRef* ref = entry.second;
        os << "   " << entry.first << ": " << ref->getOriginalName() << " / " << ref->getInternalName()
           << " occurrence " << ref->getCurrentOccurrence() << " type " << ref->getType();
        if (ref->isPre())
            os << " pre";
        for (const auto& ids : ref->getBddIdsWood())
            os << " (" << ids.second.first << ", " << ids.second.second << ")";
        os << '\n';
    }
}

void SignalManager::printSignalTableById(std::ostream& os) const
{
    os << "signal references by id:" << '\n';
    int n = 0;
    for (const auto& entry : signalref_id_table) {
        os << "  wood " << n++ << ":" << '\n';
        const SignalRefTable* table = entry.second;
        for (long id = 0; id < table->getSize(); ++id)
            if (const SignalRef* ref = table->get(id))
                os << "   " << id << ": " << ref->getCurrentName() << '\n';
    }
}
