#ifndef DRAVIK_SIGNAL_MANAGER_H
#define DRAVIK_SIGNAL_MANAGER_H

// Per-module registry of signal references. A SignalRef is one occurrence of
// a signal: it holds the status and value BDD variable indices of that
// occurrence in each wood where it exists. The SignalManager finds references
// by their current name and, per wood, by variable index.

#include <iosfwd>
#include <list>
#include <map>
#include <string>
#include <utility>
#include <vector>

class Bddexpressionwood;
class Module;
class Signal;

class SignalRef {
public:
    // First occurrence of a signal: current name = internal name, occurrence 0,
    // type "pure". Makes (or reuses) the variables "_s_" + internal and
    // "_v_" + internal in `wood`, then registers itself with the module's
    // manager, which owns it from then on. Without a module it registers
    // nowhere and belongs to the caller.
    SignalRef(const std::string& original, const std::string& internal, Module* module, Bddexpressionwood* wood);
    // A later occurrence, named `current_name`, with the variables
    // "_s_" + current_name and "_v_" + current_name; valued with `type` when
    // `valued` is set.
    SignalRef(const std::string& original, const std::string& internal, const std::string& current_name,
              int occurrence, bool valued, const std::string& type, Module* module, Bddexpressionwood* wood);
    SignalRef(const SignalRef&) = delete;
    SignalRef& operator=(const SignalRef&) = delete;

    // The wood's index of the variable `name`, made last in the order when
    // the wood does not know it.
    static long computeId(const std::string& name, Bddexpressionwood* wood);

    void addBddIds(long status, long value, Bddexpressionwood* wood);
    long getBddStatusId(Bddexpressionwood* wood) const;
    long getBddValueId(Bddexpressionwood* wood) const;
    void setBddStatusId(long id, Bddexpressionwood* wood);
    void setBddValueId(long id, Bddexpressionwood* wood);
    bool isDefinedWood(Bddexpressionwood* wood) const;
    // (status, value) per wood.
    const std::map<Bddexpressionwood*, std::pair<long, long>>& getBddIdsWood() const { return bdd_ids_wood; }
    // Forgets the wood (the manager's deleteWood).
    void removeWood(Bddexpressionwood* wood) { bdd_ids_wood.erase(wood); }

    const std::string& getOriginalName() const { return original_name; }
    const std::string& getInternalName() const { return internal_name; }
    const std::string& getCurrentName() const { return current_name; }
    int getCurrentOccurrence() const { return current_occurrence; }
    const std::string& getType() const { return type; }
    // Setting a type makes the reference valued.
    void setType(const std::string& value_type);
    bool isPre() const { return is_pre; }
    void setIsPre() { is_pre = true; }
    bool isValued() const { return is_valued; }
    void setIsValued() { is_valued = true; }

private:
    void make_variables(Module* module, Bddexpressionwood* wood);

    std::string original_name;
    std::string internal_name;
    std::string current_name;
    int current_occurrence = 0;
    std::string type = "pure";
    std::map<Bddexpressionwood*, std::pair<long, long>> bdd_ids_wood;
    bool is_pre = false;
    bool is_valued = false;
};

// References by BDD variable index for one wood. Indices outside the table
// read as null.
class SignalRefTable {
public:
    explicit SignalRefTable(long size);

    long getSize() const { return static_cast<long>(signal_ref_table.size()); }
    SignalRef* get(long id) const;
    // Ignored outside the table.
    void set(long id, SignalRef* ref);
    // Grows to `size` slots, keeping the occupied ones (never shrinks).
    void extend(long size);

private:
    std::vector<SignalRef*> signal_ref_table;
};

class SignalManager {
public:
    SignalManager() = default;
    // Releases every reference and every table.
    ~SignalManager();
    SignalManager(const SignalManager&) = delete;
    SignalManager& operator=(const SignalManager&) = delete;

    // Registers `ref` under its current name (fatal when the name is taken)
    // and enters its ids in the table of each of its woods. Takes ownership.
    void addSignalRef(SignalRef* ref);
    void addSignalRefIdTable(long status, long value, SignalRef* ref, Bddexpressionwood* wood);
    void extendIdTable(Bddexpressionwood* wood);
    // Gives `ref` variables in one more wood.
    void extendSignalRef(long status, long value, SignalRef* ref, Bddexpressionwood* wood);

    SignalRef* getSignalRefByName(const std::string& name) const;
    // Occurrence 0 is the internal name, occurrence n the internal name + "_" + n.
    SignalRef* getSignalRefByOccurrence(const Signal* signal, int occurrence) const;
    // Null for a wood without a table and for an index outside its table.
    SignalRef* getSignalRefById(long id, Bddexpressionwood* wood) const;
    // The reference of the signal's current occurrence in `wood` (fatal when
    // the signal has no occurrence there).
    SignalRef* getCurrentOccurrence(const Signal* signal, Bddexpressionwood* wood) const;
    // References of occurrences 0 up to the current one in `wood` (only 0
    // when the signal has no occurrence there); missing ones are skipped.
    std::list<SignalRef*> getAllSignalRef(const Signal* signal, Bddexpressionwood* wood) const;
    // Drops the wood's table and the wood's ids from every reference.
    void deleteWood(Bddexpressionwood* wood);
    // Copies the id table of `from` as the table of `to`; every reference in
    // it gets the same ids for `to` unless it already has ids there.
    void duplicate(Bddexpressionwood* from, Bddexpressionwood* to);

    const std::map<std::string, SignalRef*>& getSignalRefTable() const { return signalref_table; }
    // Null when the wood has no table.
    const SignalRefTable* getIdTable(Bddexpressionwood* wood) const;

    // Debugging dumps.
    void printSignalTableByName(std::ostream& os) const;
    void printSignalTableById(std::ostream& os) const;

private:
    std::map<std::string, SignalRef*> signalref_table;
    std::map<Bddexpressionwood*, SignalRefTable*> signalref_id_table;
};

#endif
