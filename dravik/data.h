#ifndef DRAVIK_DATA_H
#define DRAVIK_DATA_H

// Data declarations shared by every module loaded in the process (types,
// external methods, constants), and the typed data expressions that compute
// the values of valued signals.

#include <iosfwd>
#include <list>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

class DataConstantTable;
class DataExpr;
class DataMethodTable;
class DataTypeTable;
class Interface;
class Module;
class Signal;

// Process-wide state, used for its static members only.
class Compilation {
public:
    // The three declaration tables: null until first use, then kept for the
    // whole process (loading a second module adds to them).
    static DataTypeTable* GDataTypeTable;
    static DataMethodTable* GDataMethodTable;
    static DataConstantTable* GDataConstantTable;
    static int GDataConstIndex;
    static const std::string& EmptyString;

    // Equation user types.
    static constexpr int STAT = 1;
    static constexpr int VAL = 2;
    static constexpr int SINPUT = 3;
    static constexpr int VINPUT = 4;
    static constexpr int SOUTPUT = 5;
    static constexpr int VOUTPUT = 6;
    static constexpr int SREG = 7;
    static constexpr int VREG = 8;
    static constexpr int SWIRE = 9;
    static constexpr int VWIRE = 10;
    static constexpr int SCLOCK = 11;
    static constexpr int VCLOCK = 12;
    static constexpr int SUSEDPRE = 13;
    static constexpr int VUSEDPRE = 14;

    // The tables, created on first use.
    static DataTypeTable* getDataTypeTable();
    static DataMethodTable* getDataMethodTable();
    static DataConstantTable* getDataConstantTable();

    // For tests and fuzz targets only: releases the three tables (and every
    // declaration in them), sets them back to null and GDataConstIndex to -1.
    // Nothing else ever clears them.
    static void resetDataTables();
};

// Type names with dense ids from 0, in order of first registration.
class DataTypeTable {
public:
    // A known name keeps its id; a new one gets the next id.
    void addType(const std::string& name);
    bool isDefined(const std::string& name) const;
    // -1 when unknown.
    int getIndex(const std::string& name) const;
    // "undefined" when no type has that id.
    std::string getTypeById(int id) const;
    const std::map<std::string, int>& getTypeTable() const { return type_table; }
    int size() const { return static_cast<int>(names_by_id.size()); }
    // "type:", one line per id ("   id: " first when numbered), an empty line.
    void print(std::ostream& os, bool numbered) const;

private:
    std::map<std::string, int> type_table;
    std::vector<std::string> names_by_id;
};

// An external method's signature.
class MethodDecl {
public:
    // A null return type or name reads as empty; a null list stays null, a
    // list is copied.
    MethodDecl(const std::string* return_type, const std::string* name, const std::list<std::string>* arg_types);
    MethodDecl(const std::string& return_type, const std::string& name, const std::list<std::string>& arg_types);
    MethodDecl(const MethodDecl&) = delete;
    MethodDecl& operator=(const MethodDecl&) = delete;

    const std::string& getName() const { return name; }
    const std::string& getReturnType() const { return return_type; }
    // Null when declared without a list.
    const std::list<std::string>* getArgTypeList() const { return arg_type_list.get(); }
    int getIndex() const { return index; }
    void setIndex(int i);

private:
    friend class DataMethodTable;

    std::string return_type;
    std::string name;
    std::unique_ptr<std::list<std::string>> arg_type_list;
    int index = -1;
    DataMethodTable* table = nullptr;
};

// The first entry per index of a table kept in registration order: filled
// as entries come in, rebuilt from the list at the next lookup after an
// entry's index moved.
template <class T, int (T::*index_of)() const>
class first_by_index {
public:
    void add(T* entry)
    {
        if (!stale)
            map.emplace((entry->*index_of)(), entry);
    }
    void index_moved() { stale = true; }
    T* find(int index, const std::list<T*>& entries) const
    {
        if (stale) {
            map.clear();
            for (T* e : entries)
                map.emplace((e->*index_of)(), e);
            stale = false;
        }
        auto it = map.find(index);
        return it == map.end() ? nullptr : it->second;
    }

private:
    mutable std::map<int, T*> map;
    mutable bool stale = false;
};

class DataMethodTable {
public:
    DataMethodTable() = default;
    ~DataMethodTable();
    DataMethodTable(const DataMethodTable&) = delete;
    DataMethodTable& operator=(const DataMethodTable&) = delete;

    // Takes ownership. A name already present is fatal (no overloading);
    // otherwise the method gets index 0 in an empty table, else the last
    // method's index + 1.
    void addMethod(MethodDecl* method);
    MethodDecl* getMethod(const std::string& name) const;
    int getMethodIndex(const std::string& name) const;
    // The first method (in registration order) with that index, or null.
    MethodDecl* getMethodById(int index) const;
    const std::list<MethodDecl*>& getMethodList() const { return method_list; }
    // "method:", then for index 0 to size - 1 "ret name(arg, arg);", an empty line.
    void print(std::ostream& os, bool numbered) const;

private:
    friend class MethodDecl;

    std::list<MethodDecl*> method_list;
    std::map<std::string, MethodDecl*> by_name;
    first_by_index<MethodDecl, &MethodDecl::getIndex> by_index;
};

// A named constant, with its value expression when it has one.
class ConstantDecl {
public:
    // Takes ownership of `value`.
    ConstantDecl(const std::string& type, const std::string& name, DataExpr* value);
    ConstantDecl(const std::string& type, const std::string& name);
    ~ConstantDecl();
    ConstantDecl(const ConstantDecl&) = delete;
    ConstantDecl& operator=(const ConstantDecl&) = delete;

    const std::string& getType() const { return type; }
    const std::string& getName() const { return name; }
    DataExpr* getValue() const { return value; }
    int getConstantIndex() const { return index; }
    void setIndex(int i);
    // The first evaluation node that uses the constant, -1 until one does.
    int getEvalIndex() const { return eval_index; }
    void setEvalIndex(int i) { eval_index = i; }

private:
    friend class DataConstantTable;

    std::string type;
    std::string name;
    DataExpr* value = nullptr;
    int index = -1;
    int eval_index = -1;
    DataConstantTable* table = nullptr;
};

class DataConstantTable {
public:
    DataConstantTable() = default;
    ~DataConstantTable();
    DataConstantTable(const DataConstantTable&) = delete;
    DataConstantTable& operator=(const DataConstantTable&) = delete;

    // Takes ownership. A name already present is fatal. A constant without
    // value, or whose value is a literal, gets the largest index so far + 1;
    // any other keeps the index it has.
    void addConstant(ConstantDecl* constant);
    ConstantDecl* getConstant(const std::string& name) const;
    int getConstantIndex(const std::string& name) const;
    // The first constant (in registration order) with that index, or null.
    ConstantDecl* getConstantById(int index) const;
    const std::list<ConstantDecl*>& getConstantList() const { return constant_list; }
    // "constant:", then for index 0 to size - 1 "type name[ value: v];", an empty line.
    void print(std::ostream& os, bool numbered) const;

private:
    friend class ConstantDecl;

    std::list<ConstantDecl*> constant_list;
    std::map<std::string, ConstantDecl*> by_name;
    int largest_index = -1;
    bool largest_stale = false;
    first_by_index<ConstantDecl, &ConstantDecl::getConstantIndex> by_index;
};

// A typed data expression. Trees are owned by their root: deleting the root
// deletes the operands. Every walk over a tree (copies, types, dependencies,
// printing, deletion) uses an explicit stack, so chains of any depth are safe.
class DataExpr {
public:
    // Built-in operation codes.
    static constexpr int Plus = 0;
    static constexpr int Minus = 1;
    static constexpr int Mult = 2;
    static constexpr int Div = 3;
    static constexpr int Uminus = 4;
    static constexpr int And = 5;
    static constexpr int Or = 6;
    static constexpr int Not = 7;
    static constexpr int Eq = 8;
    static constexpr int Neq = 9;
    static constexpr int Inf = 10;
    static constexpr int Infe = 11;
    static constexpr int Sup = 12;
    static constexpr int Supe = 13;
    static constexpr int SignalVal = 14;
    static constexpr int NbPredefOp = 15;
    // Running counter of the code writers' node numbering.
    static int Indexation;

    DataExpr() = default;
    virtual ~DataExpr() = default;
    DataExpr(const DataExpr&) = delete;
    DataExpr& operator=(const DataExpr&) = delete;

    // The stored type, empty when not computed yet.
    virtual const std::string& getType() const { return type; }
    // Computes and stores the type of this node (and, on the way, of the
    // operands it needs); type errors are fatal.
    virtual void computeType(Module* module);
    virtual void setIndex(int i) { index = i; }
    virtual int getIndex() const { return index; }
    virtual bool hasIndex() const { return index != -1; }
    virtual bool isDataValue() const { return false; }
    virtual bool isDataConstant() const { return false; }
    virtual bool isDataMethod() const { return false; }
    virtual bool isDataSignalValue() const { return false; }
    virtual bool isDataBinaryOp() const { return false; }
    virtual bool isDataUnaryOp() const { return false; }
    // Copy for an instance: each signal is replaced by the entry of
    // `renaming` under its internal name, else by the interface's signal of
    // that name, else kept.
    virtual DataExpr* instanciate(Interface* interface, std::map<std::string, Signal*>* renaming, Module* module);
    // The same replacement, in place.
    virtual void applyRenaming(std::map<std::string, Signal*>* renaming, Interface* interface);
    // Deep copy: same classes, operators and indices, empty types, index -1.
    virtual DataExpr* duplicate();
    // Deep copy whose signals are looked up by internal name in `from`
    // (Module::getSignal); a missing one is fatal.
    virtual DataExpr* changeModule(Module* from, Module* to);
    // The signals the expression reads; null when it reads none.
    virtual std::unique_ptr<std::set<Signal*>> computeDependencySet();
    virtual void print_debug(std::ostream& os);

    // The type, computed first when empty.
    std::string getType(Module* module);
    void setType(const std::string& t) { type = t; }

    // One step of a walk: the node's owned operands in order (may hold null).
    virtual void operands(std::vector<DataExpr*>& out) const;

protected:
    struct copy_mode;
    struct debug_piece {
        std::string text;
        const DataExpr* node;
    };

    // A new node of the same class over already copied operands.
    virtual DataExpr* copy_over(std::vector<DataExpr*>& copies, const copy_mode& mode) const = 0;
    // The operands whose types this node's type needs computed first.
    virtual void typing_operands(std::vector<DataExpr*>& out) const;
    // This node's type, from its operands' stored types.
    virtual void own_type(Module* module) = 0;
    // The node's print_debug text, operands left as nodes.
    virtual void debug_pieces(std::vector<debug_piece>& out) const = 0;
    // The signal a signal value reads (null for every other node).
    virtual Signal* read_signal() const { return nullptr; }
    virtual void rebind(Signal*) {}
    // Moves the owned operands into `out`, leaving the node without them.
    virtual void detach_operands(std::vector<DataExpr*>& out);
    // Deletes trees without recursion.
    static void destroy(std::vector<DataExpr*>& pending);

private:
    DataExpr* copy_tree(const copy_mode& mode) const;

    std::string type;
    int index = -1;
};

// A registered constant, by its global index.
class DataConstant : public DataExpr {
public:
    explicit DataConstant(int constant_index) : constant_index(constant_index) {}
    int getConstantIndex() const { return constant_index; }
    bool isDataConstant() const override { return true; }
    // Also records `i` as the constant's evaluation index when it has none.
    void setIndex(int i) override;

protected:
    DataExpr* copy_over(std::vector<DataExpr*>& copies, const copy_mode& mode) const override;
    void own_type(Module* module) override;
    void debug_pieces(std::vector<debug_piece>& out) const override;

private:
    int constant_index;
};

// A literal, usually the value of a declared constant.
class DataValue : public DataExpr {
public:
    explicit DataValue(const std::string& value, ConstantDecl* const_decl = nullptr)
        : value(value), const_decl(const_decl) {}
    const std::string& getValue() const { return value; }
    ConstantDecl* getConstDecl() const { return const_decl; }
    void setConstDecl(ConstantDecl* decl) { const_decl = decl; }
    bool isDataValue() const override { return true; }

protected:
    DataExpr* copy_over(std::vector<DataExpr*>& copies, const copy_mode& mode) const override;
    // A bare literal has no type: always fatal.
    void own_type(Module* module) override;
    void debug_pieces(std::vector<debug_piece>& out) const override;

private:
    std::string value;
    ConstantDecl* const_decl;
};

// The current value of a valued signal.
class DataSignalValue : public DataExpr {
public:
    explicit DataSignalValue(Signal* signal) : bound_signal(signal) {}
    Signal* getSignal() const { return bound_signal; }
    void setSignal(Signal* signal) { bound_signal = signal; }
    bool isDataSignalValue() const override { return true; }

protected:
    DataExpr* copy_over(std::vector<DataExpr*>& copies, const copy_mode& mode) const override;
    void own_type(Module* module) override;
    void debug_pieces(std::vector<debug_piece>& out) const override;
    Signal* read_signal() const override { return bound_signal; }
    void rebind(Signal* signal) override { bound_signal = signal; }

private:
    Signal* bound_signal;
};

class DataUnaryOp : public DataExpr {
public:
    // Takes ownership of `arg`.
    DataUnaryOp(int op, DataExpr* arg) : op(op), arg(arg) {}
    ~DataUnaryOp() override;
    int getOp() const { return op; }
    DataExpr* getArg() const { return arg; }
    bool isDataUnaryOp() const override { return true; }
    void operands(std::vector<DataExpr*>& out) const override;

protected:
    DataExpr* copy_over(std::vector<DataExpr*>& copies, const copy_mode& mode) const override;
    void typing_operands(std::vector<DataExpr*>& out) const override;
    void own_type(Module* module) override;
    void debug_pieces(std::vector<debug_piece>& out) const override;
    void detach_operands(std::vector<DataExpr*>& out) override;

private:
    int op;
    DataExpr* arg;
};

class DataBinaryOp : public DataExpr {
public:
    // Takes ownership of both operands.
    DataBinaryOp(int op, DataExpr* left, DataExpr* right) : op(op), left_arg(left), right_arg(right) {}
    ~DataBinaryOp() override;
    int getOp() const { return op; }
    DataExpr* getLeftArg() const { return left_arg; }
    DataExpr* getRightArg() const { return right_arg; }
    bool isDataBinaryOp() const override { return true; }
    void operands(std::vector<DataExpr*>& out) const override;

protected:
    DataExpr* copy_over(std::vector<DataExpr*>& copies, const copy_mode& mode) const override;
    // Both operands are (re)computed; they must agree, and the result has the
    // left one's type, comparisons included.
    void typing_operands(std::vector<DataExpr*>& out) const override;
    void own_type(Module* module) override;
    void debug_pieces(std::vector<debug_piece>& out) const override;
    void detach_operands(std::vector<DataExpr*>& out) override;

private:
    int op;
    DataExpr* left_arg;
    DataExpr* right_arg;
};

// A call of a registered external method; argument types are not checked.
class DataMethodCall : public DataExpr {
public:
    // Takes ownership of the list and its expressions; the list may be null.
    DataMethodCall(int method_index, std::list<DataExpr*>* args) : method_index(method_index), arg_list(args) {}
    ~DataMethodCall() override;
    int getMethodIndex() const { return method_index; }
    std::list<DataExpr*>* getArgList() const { return arg_list; }
    bool isDataMethod() const override { return true; }
    void operands(std::vector<DataExpr*>& out) const override;

protected:
    DataExpr* copy_over(std::vector<DataExpr*>& copies, const copy_mode& mode) const override;
    void own_type(Module* module) override;
    void debug_pieces(std::vector<debug_piece>& out) const override;
    void detach_operands(std::vector<DataExpr*>& out) override;

private:
    int method_index;
    std::list<DataExpr*>* arg_list;
};

#endif
