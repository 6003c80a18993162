#include "ixc_parser.h"

#include "parse_ixc.hpp"

#undef yyFlexLexer
#define yyFlexLexer ixcFlexLexer
#include <FlexLexer.h>

#include "Bddexpression.h"
#include "bdd_fatal.h"
#include "data.h"
#include "dravik_warn.h"
#include "exceptions.h"
#include "expression.h"
#include "module.h"
#include "stream_scanner.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <set>

class_ixc_parser* plixc_parser = nullptr;

namespace {

// Every parser alive, oldest first: plixc_parser is the newest one, so it
// never designates a destroyed parser whatever the order of destruction.
std::vector<class_ixc_parser*>& live_parsers()
{
    static std::vector<class_ixc_parser*> live;
    return live;
}

fatal_flush_hook flush_before_ixc = nullptr;

// Installed once: a fatal end during a read leaves a complete trace.
void flush_on_fatal_end()
{
    class_ixc_parser::flush_traces();
    if (flush_before_ixc)
        flush_before_ixc();
}

// The scanner of both entries: a read error ends its input.
class ixc_scanner : public stream_scanner<ixcFlexLexer> {
public:
    using stream_scanner::stream_scanner;

protected:
    // flex's own fatal errors (memory exhausted) end through the fatal path,
    // which flushes the trace, rather than by a bare exit.
    void LexerError(const char* message) override { die(message); }
};

bool in_list(const std::list<std::string>& names, const std::string& name)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

} // namespace

// ---------------------------------------------------------------- life

class_ixc_parser::class_ixc_parser()
{
    // The bindings keep pointers into these tables, which the data section
    // may fill afterwards: their room is set once and never moves. Reserved,
    // not filled: a load touches only the entries its file declares.
    corres_methodid.reserve(table_capacity);
    corres_typeid.reserve(table_capacity);
    corres_constantesid.reserve(table_capacity);
    static const bool hook_installed = [] {
        flush_before_ixc = set_fatal_flush(flush_on_fatal_end);
        return true;
    }();
    (void)hook_installed;
    live_parsers().push_back(this);
    plixc_parser = this;
}

class_ixc_parser::~class_ixc_parser()
{
    std::vector<class_ixc_parser*>& live = live_parsers();
    live.erase(std::remove(live.begin(), live.end(), this), live.end());
    plixc_parser = live.empty() ? nullptr : live.back();
    if (!succeeded)
        delete pmodule_parse;
}

void class_ixc_parser::flush_traces()
{
    for (class_ixc_parser* p : live_parsers())
        if (p->parse_os)
            p->parse_os->flush();
}

int class_ixc_parser::parse(std::ostream& trace, int explain, std::string& inst)
{
    std::string none = Compilation::EmptyString;
    return parse(trace, explain, inst, none);
}

int class_ixc_parser::parse(std::ostream& trace, int explain, std::string& inst, std::string& run_inst)
{
    parse_os = &trace;
    explain_param = explain;
    own_wood = std::make_unique<Bddexpressionwood>();
    pw = own_wood.get();
    instance = inst;
    run_instance = run_inst;
    succeeded = false;
    // The actions reach the parser that runs, even when a newer one exists.
    class_ixc_parser* before = plixc_parser;
    plixc_parser = this;
    const int status = ixcparse();
    plixc_parser = before;
    trace.flush();
    succeeded = status == 0 && pmodule_parse;
    return succeeded ? 0 : (status ? status : 1);
}

Module* class_ixc_parser::release_module()
{
    Module* m = succeeded ? pmodule_parse : nullptr;
    if (m)
        pmodule_parse = nullptr;
    return m;
}

int ixclex()
{
    if (!plixc_parser || !plixc_parser->plexer)
        return 0;
    return plixc_parser->plexer->yylex();
}

void ixcerror(const char* message)
{
    const int line = plixc_parser && plixc_parser->plexer ? plixc_parser->plexer->lineno() : 0;
    dravik_warn() << "line " << line << ": " << message << std::endl;
}

// ---------------------------------------------------------------- helpers

void class_ixc_parser::trace(int level, int alternative, const std::string& text)
{
    if (explain_param != 1 || !parse_os)
        return;
    // One write per line; the stream is flushed when the read ends (or
    // before a fatal end), not once per reduction.
    std::string line = std::to_string(level);
    if (alternative != 1)
        line += "," + std::to_string(alternative);
    line += " --> ";
    line += text;
    line += '\n';
    parse_os->write(line.data(), static_cast<std::streamsize>(line.size()));
}

const char* class_ixc_parser::text() const
{
    return plexer ? plexer->YYText() : "";
}

int class_ixc_parser::number_value(const char* text)
{
    return static_cast<int>(std::strtol(text, nullptr, 10));
}

bool class_ixc_parser::refuse(long line, const std::string& fault)
{
    if (!file_name.empty())
        dravik_warn() << file_name << ": ";
    if (line > 0)
        dravik_warn() << "line " << line << ": ";
    dravik_warn() << fault << std::endl;
    return false;
}

void class_ixc_parser::add_global(Signal* signal)
{
    global_signal_list.push_back(signal);
    global_by_internal_name[signal->getInternalName()].push_back(signal);
}

// ---------------------------------------------------------------- header and signals

void class_ixc_parser::set_module_name(const std::string& name)
{
    module_name = name;
}

void class_ixc_parser::begin_module()
{
    pmodule_parse = new Module(module_name);
    pw = pmodule_parse->getBddWood();
    own_wood.reset();
}

Signal* class_ixc_parser::new_signal(const std::string& name, const std::string* type)
{
    Signal* s = new Signal(name, name + instance, pmodule_parse, pw);
    if (type)
        s->setValueType(*type, pmodule_parse);
    add_global(s);
    return s;
}

std::list<Signal*>* class_ixc_parser::interface_list(std::list<Signal*>* signals,
                                                      const std::list<std::string>* awaited, const char* kind,
                                                      bool input)
{
    for (Signal* s : *signals) {
        if (awaited && !awaited->empty() && !s->isValued(pmodule_parse) && !in_list(*awaited, s->getOriginalName())) {
            std::string text = module_name.empty() ? std::string() : module_name + ":";
            text += std::string("PARSING ERROR: ") + kind + " signal \"" + s->getOriginalName()
                + "\" is unknown in main module!\n  --> authorised signals:\n";
            for (const std::string& name : *awaited)
                text += name + "\n";
            fatal_message(text);
        }
        if (input)
            s->setInput();
        else
            s->setOutput();
    }
    return signals;
}

std::list<Signal*>* class_ixc_parser::input_list(std::list<Signal*>* signals)
{
    return interface_list(signals, awaited_input_list, "input", true);
}

std::list<Signal*>* class_ixc_parser::output_list(std::list<Signal*>* signals)
{
    return interface_list(signals, awaited_output_list, "output", false);
}

std::list<Signal*>* class_ixc_parser::data_list(std::list<Signal*>* signals)
{
    for (Signal* s : *signals) {
        s->setInput();
        s->setValue();
    }
    return signals;
}

std::list<Signal*>* class_ixc_parser::local_list(std::list<Signal*>* signals)
{
    for (Signal* s : *signals)
        s->setLocal();
    return signals;
}

int class_ixc_parser::initial_value(const char* text)
{
    int value = number_value(text);
    if (value >= 2) {
        message_report("Warning: Boolean value expected to initialize register value\n");
        value = 0;
    }
    return value;
}

regclass* class_ixc_parser::new_register(const std::string& next, const std::string& actual, long initial)
{
    auto mark = [this](const std::string& internal_name) -> Signal* {
        auto it = global_by_internal_name.find(internal_name);
        if (it == global_by_internal_name.end())
            return nullptr;
        for (Signal* s : it->second)
            s->setRegister();
        return it->second.front();
    };
    Signal* actual_signal = mark(actual + instance);
    Signal* next_signal = mark(next + instance);
    if (!actual_signal || !next_signal) {
        dravik_warn() << "register " << actual << " not defined as local ..." << std::endl;
        return nullptr;
    }
    return new regclass(actual_signal, next_signal, static_cast<int>(initial));
}

void class_ixc_parser::store_lists(std::list<Signal*>* inputs, std::list<Signal*>* outputs,
                                   std::list<Signal*>* data, std::list<Signal*>* locals,
                                   std::list<regclass*>* registers)
{
    pmodule_parse->setInputSignalList(inputs);
    pmodule_parse->setOutputSignalList(outputs);
    pmodule_parse->setDataSignalList(data);
    pmodule_parse->setLocalSignalList(locals);
    pmodule_parse->setRegisterList(registers);
}

memorizedSignal* class_ixc_parser::new_memorized(const std::string& pre, const std::string& actual,
                                                  const std::string& initial)
{
    Module* m = pmodule_parse;
    Signal* pre_signal = m->getSignal(pre);
    if (!pre_signal) {
        pre_signal = new Signal(pre, pre + instance, m, pw);
        add_global(pre_signal);
    }
    pre_signal->setPre();
    pre_signal->setInput();
    Signal* actual_signal = m->getSignal(actual);
    if (actual_signal) {
        if (actual_signal->isValued(m))
            pre_signal->setValueType(actual_signal->getValueType(m), m);
    } else {
        // no line end: the message is written as it always was
        dravik_warn() << " undeclared signal \"" << actual << "\" at line " << (plexer ? plexer->lineno() : 0);
    }
    return new memorizedSignal(pre_signal, actual_signal, initial);
}

void class_ixc_parser::connexion(const std::string& set, const std::string& reset, const std::string& rtl)
{
    Signal* signals[] = {new Signal(set, pmodule_parse, pw), new Signal(reset, pmodule_parse, pw),
                         new Signal(rtl, pmodule_parse, pw)};
    pmodule_parse->setSet(signals[0]);
    pmodule_parse->setReset(signals[1]);
    pmodule_parse->setRtl(signals[2]);
    for (Signal* s : signals)
        add_global(s);
}

// ---------------------------------------------------------------- equations

bool class_ixc_parser::node_count(long count)
{
    if (count > table_capacity)
        return refuse(plexer ? plexer->lineno() : 0,
                      "equation_def: " + std::to_string(count) + " nodes announced, more than the format's "
                          + std::to_string(table_capacity));
    parsed_nodes_number = count;
    const std::size_t size = static_cast<std::size_t>(std::max(0L, count));
    parsed_nodes_table.clear();
    parsed_nodes_table.resize(size);
    node_lines.assign(size, 0);
    return true;
}

void class_ixc_parser::node_line(long index, long var, long then_id, long else_id, long else_link_type)
{
    if (index < 0 || index >= parsed_nodes_number) {
        dravik_warn() << "detecting bad indice about parsed_nodes_table[]! skipping ..." << std::endl;
        return;
    }
    const std::size_t slot = static_cast<std::size_t>(index);
    parsed_nodes_table[slot] =
        std::make_unique<parsed_nodes_class>(var, then_id, else_id, static_cast<int>(else_link_type));
    node_lines[slot] = plexer ? plexer->lineno() : 0;
}

bool class_ixc_parser::expression_line(long earliest, long latest, long var, long node, long link,
                                       const std::list<long>& ids)
{
    bddpp_manager* manager = pw ? pw->getManager() : nullptr;
    if (!manager)
        die("internal error in class_ixc_parser::bddexpression_convert(): no bdd manager !");
    const long line = plexer ? plexer->lineno() : 0;
    if (var < 0 || var >= manager->Nb_bdd_vars())
        return refuse(line, "expression line: variable " + std::to_string(var) + " is not a variable of the module");
    if (node == -3) {
        const std::set<std::int64_t> dependances(ids.begin(), ids.end());
        new Bddexpression(var, pw, dependances, "VALUE_SIGNAL", earliest, latest);
        return true;
    }
    if (node < 0)
        return refuse(line, "expression line: node " + std::to_string(node) + " is negative");
    if (node >= parsed_nodes_number)
        return refuse(line, "expression line: node " + std::to_string(node) + " is out of the table ("
                                + std::to_string(parsed_nodes_number) + " nodes announced)");
    if (!parsed_nodes_table[static_cast<std::size_t>(node)])
        return refuse(line, "expression line: node " + std::to_string(node) + " is never defined");
    if (link != 1 && link != -1)
        return refuse(line, "expression line: link type " + std::to_string(link) + " is neither 1 nor -1");
    parsed_nodes_fault fault;
    bdd_node* built = parsed_nodes_class::build(node, manager, parsed_nodes_table, fault);
    if (!built)
        return refuse(node_lines[static_cast<std::size_t>(fault.node)],
                      "node " + std::to_string(fault.node) + ": " + fault.text);
    const bdd function(manager, static_cast<int>(link), built);
    new Bddexpression(manager->Name_var_by_index(var), pw, manager->Bdd_var_by_index(var), function, earliest,
                      latest);
    return true;
}

// ---------------------------------------------------------------- bindings

bindingparse class_ixc_parser::new_binding(const couplelong& signal, long eval, const couplelong* clock) const
{
    if (clock)
        return bindingparse(signal.premier(), signal.second(), eval, clock->premier(), clock->second());
    return bindingparse(signal.premier(), signal.second() + premier_bdd_id, eval);
}

evalnodeparse* class_ixc_parser::new_evaluation(int nodetype, long ident, const std::list<long>* arguments) const
{
    if (nodetype == evalnodeparse::CONSTANTE || nodetype == evalnodeparse::LINK)
        return new evalnodeparse(nodetype, ident);
    if (nodetype == evalnodeparse::METHODE_PREDEFINIE && arguments && arguments->size() > 2
        && ident % DataExpr::NbPredefOp == DataExpr::SignalVal) {
        // A signal value keeps its first two arguments only.
        const std::list<long> kept(arguments->begin(), std::next(arguments->begin(), 2));
        return new evalnodeparse(nodetype, ident, &kept);
    }
    return new evalnodeparse(nodetype, ident, arguments);
}

binding_declaration_parse* class_ixc_parser::new_binding_section(std::list<bindingparse>* bindings,
                                                                 std::list<evalnodeparse>* nodes) const
{
    return new binding_declaration_parse(bindings, nodes, corres_methodid.data(), corres_typeid.data(),
                                         corres_constantesid.data());
}

// ---------------------------------------------------------------- data declarations

bool class_ixc_parser::new_type(const std::string& name)
{
    if (nb_types >= table_capacity)
        return refuse(plexer ? plexer->lineno() : 0,
                      "more than " + std::to_string(table_capacity) + " types in the data section");
    DataTypeTable* types = Compilation::getDataTypeTable();
    int id = types->getIndex(name);
    if (id < 0) {
        types->addType(name);
        id = types->size() - 1;
    }
    corres_typeid.push_back(id);
    ++nb_types;
    return true;
}

bool class_ixc_parser::new_method(const std::string& return_type, const std::string& name,
                                  const std::list<std::string>& args)
{
    if (nb_methods >= table_capacity)
        return refuse(plexer ? plexer->lineno() : 0,
                      "more than " + std::to_string(table_capacity) + " methods in the data section");
    DataMethodTable* methods = Compilation::getDataMethodTable();
    auto decl = std::make_unique<MethodDecl>(return_type, name, args);
    int index = methods->getMethodIndex(name);
    if (index < 0) {
        methods->addMethod(decl.release());
        index = static_cast<int>(methods->getMethodList().size()) - 1;
    }
    corres_methodid.push_back(index);
    ++nb_methods;
    return true;
}

bool class_ixc_parser::new_constant(const std::string& type, const std::string& name,
                                    const std::string* quoted_value)
{
    if (nb_constantes >= table_capacity)
        return refuse(plexer ? plexer->lineno() : 0,
                      "more than " + std::to_string(table_capacity) + " constants in the data section");
    std::unique_ptr<ConstantDecl> decl;
    if (quoted_value) {
        // The text between the quotes.
        auto* value = new DataValue(quoted_value->substr(1, quoted_value->size() - 2));
        decl = std::make_unique<ConstantDecl>(type, name, value);
        value->setConstDecl(decl.get());
    } else {
        decl = std::make_unique<ConstantDecl>(type, name);
    }
    DataConstantTable* constants = Compilation::getDataConstantTable();
    int index = constants->getConstantIndex(name);
    if (index < 0) {
        decl->setIndex(static_cast<int>(constants->getConstantList().size()) - 1);
        constants->addConstant(decl.release());
        index = static_cast<int>(constants->getConstantList().size()) - 1;
    }
    corres_constantesid.push_back(index);
    ++nb_constantes;
    return true;
}

// ---------------------------------------------------------------- end of file

bool class_ixc_parser::finish_module(std::list<memorizedSignal*>* memorized, long reincarnate, long finalised,
                                     binding_declaration_parse* bindings)
{
    std::unique_ptr<binding_declaration_parse> section(bindings);
    Module* m = pmodule_parse;
    m->setPreSignalList(memorized);
    m->setReincarnate(reincarnate != 0);
    m->setFinalised(finalised != 0);
    m->setFileDataIds(std::vector<int>(corres_typeid.begin(), corres_typeid.begin() + nb_types),
                      std::vector<int>(corres_methodid.begin(), corres_methodid.begin() + nb_methods),
                      std::vector<int>(corres_constantesid.begin(), corres_constantesid.begin() + nb_constantes));
    if (!section) {
        m->update_user_type();
        return true;
    }
    section->corres_sizes(nb_methods, nb_types, nb_constantes);
    if (!section->createbinding(m))
        return refuse(0, section->error());
    std::list<std::int64_t> ids;
    for (std::list<Signal*>* signals : {m->getLocalSignalList(), m->getOutputSignalList()})
        for (Signal* s : *signals)
            for (long id : s->getAllBddId(m, pw))
                ids.push_back(id);
    pw->compute_dates(ids);
    m->update_user_type();
    return true;
}

// ---------------------------------------------------------------- entries

Module* parse_IXC_stream(std::istream& in, std::ostream& log, const std::string& name, std::string& instance,
                         int explain)
{
    class_ixc_parser parser;
    ixc_scanner lexer(&in, &log);
    parser.plexer = &lexer;
    parser.file_name = name;
    if (parser.parse(log, explain, instance) != 0)
        return nullptr;
    return parser.release_module();
}

Module* parse_IXC(const std::string& file, std::string& instance)
{
    class_ixc_parser parser;
    std::ifstream in(file);
    std::fstream log(file + ".log", std::ios::out | std::ios::trunc);
    // A directory opens but cannot be read: it is no file either.
    if (!in || (in.peek(), in.bad())) {
        dravik_warn() << "FILE NOT FOUND !" << std::endl;
        log.close();
        return nullptr;
    }
    ixc_scanner lexer(&in, &log);
    parser.plexer = &lexer;
    parser.file_name = file;
    if (parser.parse(log, 1, instance) != 0) {
        dravik_warn() << "ERROR about loading file : " << file << std::endl;
        return nullptr;
    }
    return parser.release_module();
}
