#ifndef DRAVIK_MODULE_H
#define DRAVIK_MODULE_H

// A compiled module in memory: its signals by role, registers, memorized
// signals, connection signals, data bindings, signal manager, and the
// equation table with the expression wood holding its equations.
//
// A Module owns everything made for it and releases it on deletion: every
// Signal constructed with it (whichever list holds it, or none), the lists,
// register and memorized records, bindings and their data expressions, the
// signal manager, the equation table and the wood.

#include <iosfwd>
#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

class Bddexpressionwood;
class DataExpr;
class EquationTable;
class Signal;
class SignalManager;

// One register: the current-value signal, the next-value signal, the
// initial value (0 or 1).
class regclass {
public:
    regclass(Signal* actual, Signal* next, int is_initialy_true)
        : internal_actual_var(actual), internal_next_var(next), internal_is_initialy_true(is_initialy_true) {}

    Signal* actual_var() const { return internal_actual_var; }
    void actual_var(Signal* s) { internal_actual_var = s; }
    Signal* next_var() const { return internal_next_var; }
    void next_var(Signal* s) { internal_next_var = s; }
    int is_initialy_true() const { return internal_is_initialy_true; }
    void is_initialy_true(int value) { internal_is_initialy_true = value; }

private:
    Signal* internal_actual_var;
    Signal* internal_next_var;
    int internal_is_initialy_true;
};

// One memorized ("pre") signal: the signal carrying the previous-instant
// copy, the signal it copies (null when undeclared) and the initial text.
class memorizedSignal {
public:
    memorizedSignal(Signal* pre, Signal* actual, const std::string& initial_value)
        : internal_pre(pre), internal_actual(actual), internal_initial_value(initial_value) {}

    Signal* pre() const { return internal_pre; }
    void pre(Signal* s) { internal_pre = s; }
    Signal* actual() const { return internal_actual; }
    void actual(Signal* s) { internal_actual = s; }
    const std::string& initial_value() const { return internal_initial_value; }
    void initial_value(const std::string& text) { internal_initial_value = text; }

private:
    Signal* internal_pre;
    Signal* internal_actual;
    std::string internal_initial_value;
};

// The data expression defining a valued signal, sampled by a clock or not.
// Owns its expression.
class DataBinding {
public:
    DataBinding(Signal* signal, DataExpr* value) : signal(signal), value(value) {}
    DataBinding(Signal* signal, DataExpr* value, Signal* clock) : clock(clock), signal(signal), value(value) {}
    ~DataBinding();
    DataBinding(const DataBinding&) = delete;
    DataBinding& operator=(const DataBinding&) = delete;

    Signal* getClock() const { return clock; }
    Signal* getSignal() const { return signal; }
    DataExpr* getValue() const { return value; }
    // Hands the expression over; the binding keeps none.
    DataExpr* releaseValue();

private:
    Signal* clock = nullptr;
    Signal* signal;
    DataExpr* value;
};

class Module {
public:
    // Simulation directory: the environment variable whose name is "/tmp",
    // else "./". Set at start-up.
    static std::string SimulationDir;

    explicit Module(const std::string& name);
    ~Module();
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    // ---- Setters used by the reader. A list setter takes the new list
    // (null stands for an empty one) and deletes the previous list; register
    // and memorized records of the previous list that the new one does not
    // hold are deleted with it.
    void setInputSignalList(std::list<Signal*>* list);
    void setOutputSignalList(std::list<Signal*>* list);
    void setDataSignalList(std::list<Signal*>* list);
    void setLocalSignalList(std::list<Signal*>* list);
    void setRegisterList(std::list<regclass*>* list);
    void setPreSignalList(std::list<memorizedSignal*>* list);
    void setReincarnate(bool value) { reincarnate = value; }
    void setFinalised(bool value) { finalised = value ? 1 : 0; }
    void setSet(Signal* s) { set_wire = s; }
    void setReset(Signal* s) { reset_wire = s; }
    void setRtl(Signal* s) { rtl_wire = s; }

    // ---- Accessors. The lists are never null.
    const std::string& getName() const { return name; }
    std::list<Signal*>* getInputSignalList() const { return input_signal_list; }
    std::list<Signal*>* getOutputSignalList() const { return output_signal_list; }
    std::list<Signal*>* getLocalSignalList() const { return local_signal_list; }
    std::list<Signal*>* getDataSignalList() const { return data_signal_list; }
    std::list<memorizedSignal*>* getPreSignalList() const { return pre_signal_list; }
    std::list<regclass*>* getRegisterList() const { return register_list; }
    EquationTable* getCompilation() const { return compilation; }
    // The equation table's wood.
    Bddexpressionwood* getBddWood() const;
    SignalManager* getSignalManager() const { return signal_manager; }
    bool getReincarnate() const { return reincarnate; }
    int getFinalised() const { return finalised; }
    Signal* getSet() const { return set_wire; }
    Signal* getReset() const { return reset_wire; }
    Signal* getRtl() const { return rtl_wire; }
    // Bindings by the bound signal's internal name; null until the first one.
    std::map<std::string, DataBinding*>* getDataTable() const { return data_table; }
    // Submodule declarations of modules compiled from source: null for a
    // loaded module.
    std::map<std::string, std::string*>* getRunDeclTable() const { return run_decl_table; }
    int getCurrentInstance() const { return current_instance; }
    void incrCurrentInstance() { ++current_instance; }

    // ---- Signal lookups, in list order, null when not found. Inputs and
    // outputs match their original name, every other list the internal name.
    Signal* getInputSignal(const std::string& name) const;
    Signal* getOutputSignal(const std::string& name) const;
    Signal* getLocalSignal(const std::string& name) const;
    Signal* getDataSignal(const std::string& name) const;
    // Matches the pre signal's internal name.
    Signal* getPreSignal(const std::string& name) const;
    Signal* getOutputLocalSignal(const std::string& name) const;
    // Inputs, outputs, data, locals, memorized: the first hit wins.
    Signal* getSignal(const std::string& name) const;
    Signal* getSignalFromInternalName(const std::string& name) const;
    // The signal named like the reference at variable `id` of `wood`.
    Signal* getSignalById(long id, Bddexpressionwood* wood) const;

    // ---- Bindings.
    // Binds `signal` to `value` (replacing and deleting a previous binding of
    // the signal) and adds to the wood an abstract "VALUE_SIGNAL" equation for
    // the signal's status and one for its value, depending on the variables of
    // the signals `value` reads (none when it reads no signal).
    void addSignalBinding(DataExpr* value, Signal* signal);
    // Binds `signal` to `value`, sampled by `clock` when not null (which
    // becomes a clock), and marks the signal valued; adds no equation.
    void addSignalBinding(DataExpr* value, Signal* signal, Signal* clock);
    DataBinding* getBinding(const std::string& internal_name) const;
    // Deletes the binding (and its expression); false when there was none.
    bool removeBinding(const std::string& internal_name);
    // The signals, or the bindings, sampled by `clock`, in key order.
    std::list<Signal*> getSignalBindingByClock(Signal* clock) const;
    std::list<DataBinding*> getDataBindingByClock(Signal* clock) const;
    void debugPrintBinding(std::ostream& os) const;

    // Marks each equation of the wood with its role (Compilation::SOUTPUT
    // ...): outputs, then local registers and clocks, then the signals that
    // memorized signals copy. A signal so marked that has no occurrence in
    // the wood (a name declared twice) ends the process.
    void update_user_type();
    void loose_first_underscore_in_name_variables();

    // ---- The compiled-module reader's translation tables of the file the
    // module was loaded from: entry i is the global id (types) or index
    // (methods, constants) of the file's type, method or constant number i.
    // Empty for a module without data section.
    const std::vector<int>& getFileTypeIds() const { return file_type_ids; }
    const std::vector<int>& getFileMethodIds() const { return file_method_ids; }
    const std::vector<int>& getFileConstantIds() const { return file_constant_ids; }
    void setFileDataIds(std::vector<int> type_ids, std::vector<int> method_ids, std::vector<int> constant_ids);

private:
    friend class Signal;

    // Called by Signal's constructors: the module deletes the signal.
    void adoptSignal(Signal* signal);
    void store_binding(DataBinding* binding);

    std::string name;
    std::list<Signal*>* input_signal_list;
    std::list<Signal*>* output_signal_list;
    std::list<Signal*>* local_signal_list;
    std::list<memorizedSignal*>* pre_signal_list;
    std::list<Signal*>* data_signal_list;
    std::map<std::string, std::string*>* run_decl_table = nullptr;
    std::list<regclass*>* register_list;
    EquationTable* compilation;
    Signal* set_wire = nullptr;
    Signal* reset_wire = nullptr;
    Signal* rtl_wire = nullptr;
    bool reincarnate = false;
    int finalised = 0;
    int current_instance = -1;
    SignalManager* signal_manager;
    std::map<std::string, DataBinding*>* data_table = nullptr;
    // Every signal constructed with the module, in creation order.
    std::vector<std::unique_ptr<Signal>> owned_signals;
    std::vector<int> file_type_ids;
    std::vector<int> file_method_ids;
    std::vector<int> file_constant_ids;
};

// Modules by name (not owned).
class ModuleTable {
public:
    ModuleTable();
    ~ModuleTable();
    ModuleTable(const ModuleTable&) = delete;
    ModuleTable& operator=(const ModuleTable&) = delete;

    // False when a module of that name is already registered.
    bool add(Module* module);
    Module* get(const std::string& name) const;
    std::ostream* getOutputStream() const { return output_stream; }
    void setOutputStream(std::ostream* os) { output_stream = os; }

private:
    std::map<std::string, Module*>* table;
    std::ostream* output_stream = nullptr;
};

// A module's signals by name, as seen from a module that instantiates it.
// Owns its tables and its register list, not the signals nor the registers.
class Interface {
public:
    Interface();
    ~Interface();
    Interface(const Interface&) = delete;
    Interface& operator=(const Interface&) = delete;

    // Each refuses a name already present, fatally.
    void addInput(const std::string& name, Signal* signal);
    void addOutput(const std::string& name, Signal* signal);
    void addLocal(const std::string& name, Signal* signal);
    void addData(const std::string& name, Signal* signal);
    void addRegister(regclass* reg);

    // Fatal when missing.
    Signal* getInputSignal(const std::string& name) const;
    Signal* getOutputSignal(const std::string& name) const;
    // Null when missing.
    Signal* getLocalSignal(const std::string& name) const;
    Signal* getDataSignal(const std::string& name) const;
    // Inputs, outputs, locals, data: the first hit, or null.
    Signal* getSignal(const std::string& name) const;
    // The original name of the signal stored under `name`; empty when none.
    std::string getOriginalSignalName(const std::string& name) const;
    const std::list<regclass*>* getRegisterList() const { return register_list; }

private:
    std::map<std::string, Signal*>* input_signal_table;
    std::map<std::string, Signal*>* output_signal_table;
    std::map<std::string, Signal*>* local_signal_table;
    std::map<std::string, Signal*>* data_signal_table;
    std::list<regclass*>* register_list;
};

#endif
