#include "data.h"

#include "exceptions.h"
#include "expression.h"
#include "module.h"
#include "signal_manager.h"

#include <algorithm>
#include <iostream>
#include <utility>

// ---------------------------------------------------------------- Compilation

namespace {
const std::string empty_string;
}

DataTypeTable* Compilation::GDataTypeTable = nullptr;
DataMethodTable* Compilation::GDataMethodTable = nullptr;
DataConstantTable* Compilation::GDataConstantTable = nullptr;
int Compilation::GDataConstIndex = -1;
const std::string& Compilation::EmptyString = empty_string;

int DataExpr::Indexation = 0;

DataTypeTable* Compilation::getDataTypeTable()
{
    if (!GDataTypeTable)
        GDataTypeTable = new DataTypeTable;
    return GDataTypeTable;
}

DataMethodTable* Compilation::getDataMethodTable()
{
    if (!GDataMethodTable)
        GDataMethodTable = new DataMethodTable;
    return GDataMethodTable;
}

DataConstantTable* Compilation::getDataConstantTable()
{
    if (!GDataConstantTable)
        GDataConstantTable = new DataConstantTable;
    return GDataConstantTable;
}

void Compilation::resetDataTables()
{
    delete GDataTypeTable;
    delete GDataMethodTable;
    delete GDataConstantTable;
    GDataTypeTable = nullptr;
    GDataMethodTable = nullptr;
    GDataConstantTable = nullptr;
    GDataConstIndex = -1;
}

namespace {

void print_number(std::ostream& os, bool numbered, int id)
{
    if (numbered)
        os << "   " << id << ": ";
}

} // namespace

// ---------------------------------------------------------------- types

void DataTypeTable::addType(const std::string& name)
{
    if (type_table.count(name))
        return;
    type_table.emplace(name, static_cast<int>(names_by_id.size()));
    names_by_id.push_back(name);
}

bool DataTypeTable::isDefined(const std::string& name) const
{
    return type_table.count(name) != 0;
}

int DataTypeTable::getIndex(const std::string& name) const
{
    auto it = type_table.find(name);
    return it == type_table.end() ? -1 : it->second;
}

std::string DataTypeTable::getTypeById(int id) const
{
    if (id < 0 || id >= size())
        return "undefined";
    return names_by_id[static_cast<std::size_t>(id)];
}

void DataTypeTable::print(std::ostream& os, bool numbered) const
{
    os << "type:" << '\n';
    for (int id = 0; id < size(); ++id) {
        print_number(os, numbered, id);
        os << getTypeById(id) << ";" << '\n';
    }
    os << '\n';
}

// ---------------------------------------------------------------- methods

MethodDecl::MethodDecl(const std::string* return_type_, const std::string* name_,
                       const std::list<std::string>* arg_types)
    : return_type(return_type_ ? *return_type_ : std::string()), name(name_ ? *name_ : std::string())
{
    if (arg_types)
        arg_type_list = std::make_unique<std::list<std::string>>(*arg_types);
}

MethodDecl::MethodDecl(const std::string& return_type_, const std::string& name_,
                       const std::list<std::string>& arg_types)
    : MethodDecl(&return_type_, &name_, &arg_types)
{
}

void MethodDecl::setIndex(int i)
{
    index = i;
    if (table)
        table->by_index.index_moved();
}

DataMethodTable::~DataMethodTable()
{
    for (MethodDecl* m : method_list)
        delete m;
}

void DataMethodTable::addMethod(MethodDecl* method)
{
    if (!method || method->table)
        return;
    if (by_name.count(method->getName()))
        AlreadyDefinedException(method->getName(), "overloading_of_method_not_yet_implemented");
    method->index = method_list.empty() ? 0 : method_list.back()->getIndex() + 1;
    method->table = this;
    method_list.push_back(method);
    by_name.emplace(method->getName(), method);
    by_index.add(method);
}

MethodDecl* DataMethodTable::getMethod(const std::string& name) const
{
    auto it = by_name.find(name);
    return it == by_name.end() ? nullptr : it->second;
}

int DataMethodTable::getMethodIndex(const std::string& name) const
{
    MethodDecl* m = getMethod(name);
    return m ? m->getIndex() : -1;
}

MethodDecl* DataMethodTable::getMethodById(int index) const
{
    return by_index.find(index, method_list);
}

void DataMethodTable::print(std::ostream& os, bool numbered) const
{
    os << "method:" << '\n';
    int count = static_cast<int>(method_list.size());
    for (int index = 0; index < count; ++index) {
        const MethodDecl* m = getMethodById(index);
        if (!m)
            continue;
        print_number(os, numbered, index);
        os << m->getReturnType() << " " << m->getName() << "(";
        if (const std::list<std::string>* args = m->getArgTypeList()) {
            const char* sep = "";
            for (const std::string& arg : *args) {
                os << sep << arg;
                sep = ", ";
            }
        }
        os << ")" << ";" << '\n';
    }
    os << '\n';
}

// ---------------------------------------------------------------- constants

ConstantDecl::ConstantDecl(const std::string& type_, const std::string& name_, DataExpr* value_)
    : type(type_), name(name_), value(value_)
{
}

ConstantDecl::ConstantDecl(const std::string& type_, const std::string& name_) : type(type_), name(name_) {}

ConstantDecl::~ConstantDecl()
{
    delete value;
}

void ConstantDecl::setIndex(int i)
{
    index = i;
    if (table) {
        table->by_index.index_moved();
        table->largest_stale = true;
    }
}

DataConstantTable::~DataConstantTable()
{
    for (ConstantDecl* c : constant_list)
        delete c;
}

void DataConstantTable::addConstant(ConstantDecl* constant)
{
    if (!constant || constant->table)
        return;
    if (by_name.count(constant->getName()))
        AlreadyDefinedException(constant->getName(), "constant");
    // The largest index of the list, kept as constants come in and counted
    // again after a registered constant's index moved.
    if (largest_stale) {
        largest_index = -1;
        for (const ConstantDecl* c : constant_list)
            largest_index = std::max(largest_index, c->index);
        largest_stale = false;
    }
    if (!constant->getValue() || constant->getValue()->isDataValue())
        constant->index = largest_index + 1;
    constant->table = this;
    constant_list.push_back(constant);
    by_name.emplace(constant->getName(), constant);
    largest_index = std::max(largest_index, constant->index);
    by_index.add(constant);
}

ConstantDecl* DataConstantTable::getConstant(const std::string& name) const
{
    auto it = by_name.find(name);
    return it == by_name.end() ? nullptr : it->second;
}

int DataConstantTable::getConstantIndex(const std::string& name) const
{
    ConstantDecl* c = getConstant(name);
    return c ? c->getConstantIndex() : -1;
}

ConstantDecl* DataConstantTable::getConstantById(int index) const
{
    return by_index.find(index, constant_list);
}

void DataConstantTable::print(std::ostream& os, bool numbered) const
{
    os << "constant:" << '\n';
    int count = static_cast<int>(constant_list.size());
    for (int index = 0; index < count; ++index) {
        const ConstantDecl* c = getConstantById(index);
        if (!c)
            continue;
        print_number(os, numbered, index);
        os << c->getType() << " " << c->getName();
        if (c->getValue()) {
            os << " value: ";
            c->getValue()->print_debug(os);
        }
        os << ";" << '\n';
    }
    os << '\n';
}

// ---------------------------------------------------------------- DataExpr walks

// What a copy does with the signals it meets.
struct DataExpr::copy_mode {
    enum kind_t { same_signals, change_module, instance } kind;
    Module* from = nullptr;
    Interface* interface = nullptr;
    std::map<std::string, Signal*>* renaming = nullptr;
};

namespace {

// The replacement of `s` for an instance; `s` itself when nothing matches.
Signal* renamed(Signal* s, std::map<std::string, Signal*>* renaming, Interface* interface)
{
    if (!s)
        return s;
    if (renaming) {
        auto it = renaming->find(s->getInternalName());
        if (it != renaming->end() && it->second)
            return it->second;
    }
    if (interface)
        if (Signal* found = interface->getSignal(s->getInternalName()))
            return found;
    return s;
}

} // namespace

void DataExpr::operands(std::vector<DataExpr*>&) const {}

void DataExpr::typing_operands(std::vector<DataExpr*>&) const {}

void DataExpr::detach_operands(std::vector<DataExpr*>&) {}

void DataExpr::destroy(std::vector<DataExpr*>& pending)
{
    while (!pending.empty()) {
        DataExpr* e = pending.back();
        pending.pop_back();
        if (!e)
            continue;
        e->detach_operands(pending);
        delete e;
    }
}

// Post-order copy: each node is rebuilt once its operands are.
DataExpr* DataExpr::copy_tree(const copy_mode& mode) const
{
    struct frame {
        const DataExpr* node;
        std::vector<DataExpr*> ops;
        std::size_t next;
        std::vector<DataExpr*> copies;
    };
    std::vector<frame> stack;
    auto enter = [&stack](const DataExpr* node) {
        stack.push_back(frame{node, {}, 0, {}});
        node->operands(stack.back().ops);
    };
    enter(this);
    DataExpr* result = nullptr;
    while (!stack.empty()) {
        frame& f = stack.back();
        if (f.next < f.ops.size()) {
            const DataExpr* child = f.ops[f.next++];
            if (child)
                enter(child);
            else
                f.copies.push_back(nullptr);
            continue;
        }
        DataExpr* made = f.node->copy_over(f.copies, mode);
        stack.pop_back();
        if (stack.empty())
            result = made;
        else
            stack.back().copies.push_back(made);
    }
    return result;
}

void DataExpr::computeType(Module* module)
{
    std::vector<std::pair<DataExpr*, bool>> stack{{this, false}};
    std::vector<DataExpr*> needed;
    while (!stack.empty()) {
        auto& top = stack.back();
        if (!top.second) {
            top.second = true;
            DataExpr* node = top.first;
            needed.clear();
            node->typing_operands(needed);
            for (auto it = needed.rbegin(); it != needed.rend(); ++it)
                if (*it)
                    stack.emplace_back(*it, false);
            continue;
        }
        DataExpr* node = top.first;
        stack.pop_back();
        node->own_type(module);
    }
}

std::string DataExpr::getType(Module* module)
{
    if (type.empty())
        computeType(module);
    return type;
}

DataExpr* DataExpr::instanciate(Interface* interface, std::map<std::string, Signal*>* renaming, Module*)
{
    copy_mode mode{copy_mode::instance};
    mode.interface = interface;
    mode.renaming = renaming;
    return copy_tree(mode);
}

void DataExpr::applyRenaming(std::map<std::string, Signal*>* renaming, Interface* interface)
{
    std::vector<DataExpr*> stack{this};
    while (!stack.empty()) {
        DataExpr* node = stack.back();
        stack.pop_back();
        if (!node)
            continue;
        if (Signal* s = node->read_signal())
            node->rebind(renamed(s, renaming, interface));
        node->operands(stack);
    }
}

DataExpr* DataExpr::duplicate()
{
    return copy_tree(copy_mode{copy_mode::same_signals});
}

DataExpr* DataExpr::changeModule(Module* from, Module*)
{
    copy_mode mode{copy_mode::change_module};
    mode.from = from;
    return copy_tree(mode);
}

std::unique_ptr<std::set<Signal*>> DataExpr::computeDependencySet()
{
    std::unique_ptr<std::set<Signal*>> signals;
    std::vector<DataExpr*> stack{this};
    while (!stack.empty()) {
        DataExpr* node = stack.back();
        stack.pop_back();
        if (!node)
            continue;
        if (Signal* s = node->read_signal()) {
            if (!signals)
                signals = std::make_unique<std::set<Signal*>>();
            signals->insert(s);
        }
        node->operands(stack);
    }
    return signals;
}

void DataExpr::print_debug(std::ostream& os)
{
    std::vector<debug_piece> stack{{std::string(), this}};
    std::vector<debug_piece> pieces;
    while (!stack.empty()) {
        debug_piece piece = std::move(stack.back());
        stack.pop_back();
        if (!piece.node) {
            os << piece.text;
            continue;
        }
        pieces.clear();
        piece.node->debug_pieces(pieces);
        for (auto it = pieces.rbegin(); it != pieces.rend(); ++it)
            // an absent operand prints as nothing
            if (it->node || !it->text.empty())
                stack.push_back(std::move(*it));
    }
}

// ---------------------------------------------------------------- DataConstant

void DataConstant::setIndex(int i)
{
    DataExpr::setIndex(i);
    ConstantDecl* c = Compilation::GDataConstantTable ? Compilation::GDataConstantTable->getConstantById(constant_index)
                                                      : nullptr;
    if (!c)
        UndefinedConstantException("constant: " + std::to_string(constant_index));
    if (c->getEvalIndex() == -1)
        c->setEvalIndex(i);
}

DataExpr* DataConstant::copy_over(std::vector<DataExpr*>&, const copy_mode&) const
{
    return new DataConstant(constant_index);
}

void DataConstant::own_type(Module* module)
{
    ConstantDecl* c = Compilation::GDataConstantTable ? Compilation::GDataConstantTable->getConstantById(constant_index)
                                                      : nullptr;
    if (!c)
        UndefinedConstantException("constant: " + (module ? module->getName() : std::string()));
    setType(c->getType());
}

void DataConstant::debug_pieces(std::vector<debug_piece>& out) const
{
    out.push_back({"C: " + std::to_string(constant_index), nullptr});
}

// ---------------------------------------------------------------- DataValue

DataExpr* DataValue::copy_over(std::vector<DataExpr*>&, const copy_mode&) const
{
    return new DataValue(value, const_decl);
}

void DataValue::own_type(Module*)
{
    UndefinedTypeException(value);
}

void DataValue::debug_pieces(std::vector<debug_piece>& out) const
{
    out.push_back({value, nullptr});
}

// ---------------------------------------------------------------- DataSignalValue

DataExpr* DataSignalValue::copy_over(std::vector<DataExpr*>&, const copy_mode& mode) const
{
    Signal* s = bound_signal;
    if (mode.kind == copy_mode::change_module && s) {
        s = mode.from ? mode.from->getSignal(bound_signal->getInternalName()) : nullptr;
        if (!s)
            IllegalOperationException("DataSignalValue::changeModule: no signal in new module for:"
                                      + bound_signal->getInternalName());
    } else if (mode.kind == copy_mode::instance) {
        s = renamed(s, mode.renaming, mode.interface);
    }
    return new DataSignalValue(s);
}

void DataSignalValue::own_type(Module* module)
{
    SignalRef* ref = bound_signal ? bound_signal->getSignalRef(module) : nullptr;
    std::string name = bound_signal ? bound_signal->getName(module) : std::string();
    if (!ref) {
        std::cerr << "undefined signal ";
        UndefinedTypeException(name);
    }
    if (!ref->isValued()) {
        std::cerr << "signal not valued ";
        UndefinedTypeException(name);
    }
    setType(ref->getType());
}

void DataSignalValue::debug_pieces(std::vector<debug_piece>& out) const
{
    out.push_back({bound_signal ? bound_signal->getInternalName() : std::string(), nullptr});
}

// ---------------------------------------------------------------- DataUnaryOp

DataUnaryOp::~DataUnaryOp()
{
    std::vector<DataExpr*> pending;
    detach_operands(pending);
    destroy(pending);
}

void DataUnaryOp::operands(std::vector<DataExpr*>& out) const
{
    out.push_back(arg);
}

void DataUnaryOp::detach_operands(std::vector<DataExpr*>& out)
{
    out.push_back(arg);
    arg = nullptr;
}

DataExpr* DataUnaryOp::copy_over(std::vector<DataExpr*>& copies, const copy_mode&) const
{
    return new DataUnaryOp(op, copies.empty() ? nullptr : copies[0]);
}

// The operand's type is computed on demand only.
void DataUnaryOp::typing_operands(std::vector<DataExpr*>& out) const
{
    if (arg && arg->getType().empty())
        out.push_back(arg);
}

void DataUnaryOp::own_type(Module*)
{
    if (!arg)
        UndefinedTypeException("missing operand of operator " + std::to_string(op));
    setType(arg->getType());
}

void DataUnaryOp::debug_pieces(std::vector<debug_piece>& out) const
{
    out.push_back({std::to_string(op) + "(", nullptr});
    out.push_back({std::string(), arg});
    out.push_back({")", nullptr});
}

// ---------------------------------------------------------------- DataBinaryOp

DataBinaryOp::~DataBinaryOp()
{
    std::vector<DataExpr*> pending;
    detach_operands(pending);
    destroy(pending);
}

void DataBinaryOp::operands(std::vector<DataExpr*>& out) const
{
    out.push_back(left_arg);
    out.push_back(right_arg);
}

void DataBinaryOp::detach_operands(std::vector<DataExpr*>& out)
{
    out.push_back(left_arg);
    out.push_back(right_arg);
    left_arg = nullptr;
    right_arg = nullptr;
}

DataExpr* DataBinaryOp::copy_over(std::vector<DataExpr*>& copies, const copy_mode&) const
{
    return new DataBinaryOp(op, copies.size() > 0 ? copies[0] : nullptr, copies.size() > 1 ? copies[1] : nullptr);
}

void DataBinaryOp::typing_operands(std::vector<DataExpr*>& out) const
{
    out.push_back(left_arg);
    out.push_back(right_arg);
}

void DataBinaryOp::own_type(Module*)
{
    if (!left_arg || !right_arg)
        UndefinedTypeException("missing operand of operator " + std::to_string(op));
    const std::string& left = left_arg->getType();
    const std::string& right = right_arg->getType();
    if (left != right)
        die("*** Type check error in binary operator: type: " + left + " differs from type: " + right);
    setType(left);
}

void DataBinaryOp::debug_pieces(std::vector<debug_piece>& out) const
{
    out.push_back({" " + std::to_string(op) + "(", nullptr});
    out.push_back({std::string(), left_arg});
    out.push_back({", ", nullptr});
    out.push_back({std::string(), right_arg});
    out.push_back({")", nullptr});
}

// ---------------------------------------------------------------- DataMethodCall

DataMethodCall::~DataMethodCall()
{
    std::vector<DataExpr*> pending;
    detach_operands(pending);
    destroy(pending);
    delete arg_list;
}

void DataMethodCall::operands(std::vector<DataExpr*>& out) const
{
    if (arg_list)
        out.insert(out.end(), arg_list->begin(), arg_list->end());
}

void DataMethodCall::detach_operands(std::vector<DataExpr*>& out)
{
    if (!arg_list)
        return;
    out.insert(out.end(), arg_list->begin(), arg_list->end());
    arg_list->clear();
}

DataExpr* DataMethodCall::copy_over(std::vector<DataExpr*>& copies, const copy_mode&) const
{
    std::list<DataExpr*>* args = arg_list ? new std::list<DataExpr*>(copies.begin(), copies.end()) : nullptr;
    return new DataMethodCall(method_index, args);
}

void DataMethodCall::own_type(Module*)
{
    MethodDecl* m = Compilation::GDataMethodTable ? Compilation::GDataMethodTable->getMethodById(method_index)
                                                  : nullptr;
    if (!m)
        UndefinedMethodException("method");
    setType(m->getReturnType());
}

void DataMethodCall::debug_pieces(std::vector<debug_piece>& out) const
{
    out.push_back({std::to_string(method_index) + "(", nullptr});
    if (arg_list) {
        bool first = true;
        for (DataExpr* arg : *arg_list) {
            if (!first)
                out.push_back({", ", nullptr});
            first = false;
            out.push_back({std::string(), arg});
        }
    }
    out.push_back({")", nullptr});
}
