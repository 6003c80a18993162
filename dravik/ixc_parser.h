#ifndef DRAVIK_IXC_PARSER_H
#define DRAVIK_IXC_PARSER_H

// Reader of compiled-module files (".ixc"): a generated scanner feeding a
// generated parser whose actions build a Module through the active
// class_ixc_parser. One parser is active at a time: the scanner hook and the
// actions reach it through plixc_parser, which each parser sets when it is
// constructed and which always designates a live parser (or is null).

#include <iosfwd>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "parse_supl.h"

class Bddexpressionwood;
class Module;
class Signal;
class ixcFlexLexer;
class memorizedSignal;
class regclass;

class class_ixc_parser {
public:
    // The fixed capacity of the format: at most this many BDD nodes, types,
    // methods and constants per file.
    static constexpr int table_capacity = 32767;

    class_ixc_parser();
    // Deletes the module of a parse that did not succeed.
    ~class_ixc_parser();
    class_ixc_parser(const class_ixc_parser&) = delete;
    class_ixc_parser& operator=(const class_ixc_parser&) = delete;

    // Reads plexer's input into a new module (pmodule_parse), the trace going
    // to `trace` when explain is 1. 0 on success; 1 on a syntax error or a
    // refused file, 2 when the parser's stack is exhausted. The trace is
    // flushed when the read ends and before any fatal end during it.
    int parse(std::ostream& trace, int explain, std::string& instance);
    int parse(std::ostream& trace, int explain, std::string& instance, std::string& run_instance);

    // After a successful parse the module belongs to whoever takes it.
    Module* release_module();

    // ---- State of the read.
    long premier_bdd_id = 0;
    int explain_param = 0;
    std::ostream* parse_os = nullptr;
    ixcFlexLexer* plexer = nullptr;
    Module* pmodule_parse = nullptr;
    std::string instance;
    std::string run_instance;
    Bddexpressionwood* pw = nullptr;
    std::list<Signal*> global_signal_list;
    // When non-empty, the only input (output) names the file may declare.
    std::list<std::string>* awaited_input_list = nullptr;
    std::list<std::string>* awaited_output_list = nullptr;
    long parsed_nodes_number = 0;
    parsed_nodes_class::table parsed_nodes_table;
    int nb_methods = 0;
    std::vector<int> corres_methodid;
    int nb_types = 0;
    std::vector<int> corres_typeid;
    int nb_constantes = 0;
    std::vector<int> corres_constantesid;
    // Name of the input in refusal messages (the file name).
    std::string file_name;

    // ---- Called by the grammar's actions. Those returning bool refuse the
    // file with one line on standard error when they return false.
    void trace(int level, int alternative, const std::string& text);
    const char* text() const;
    void set_module_name(const std::string& name);
    void begin_module();
    Signal* new_signal(const std::string& name, const std::string* type);
    std::list<Signal*>* input_list(std::list<Signal*>* signals);
    std::list<Signal*>* output_list(std::list<Signal*>* signals);
    std::list<Signal*>* data_list(std::list<Signal*>* signals);
    std::list<Signal*>* local_list(std::list<Signal*>* signals);
    // The C library's conversion of a number, read as an int: out-of-range
    // texts wrap as that conversion makes them, never undefined behaviour.
    static int number_value(const char* text);
    // A register's initial value: 2 or more is warned about and read as 0.
    int initial_value(const char* text);
    regclass* new_register(const std::string& next, const std::string& actual, long initial);
    void store_lists(std::list<Signal*>* inputs, std::list<Signal*>* outputs, std::list<Signal*>* data,
                     std::list<Signal*>* locals, std::list<regclass*>* registers);
    memorizedSignal* new_memorized(const std::string& pre, const std::string& actual, const std::string& initial);
    void connexion(const std::string& set, const std::string& reset, const std::string& rtl);
    bool node_count(long count);
    void node_line(long index, long var, long then_id, long else_id, long else_link_type);
    bool expression_line(long earliest, long latest, long var, long node, long link, const std::list<long>& ids);
    bindingparse new_binding(const couplelong& signal, long eval, const couplelong* clock) const;
    evalnodeparse* new_evaluation(int nodetype, long ident, const std::list<long>* arguments) const;
    binding_declaration_parse* new_binding_section(std::list<bindingparse>* bindings,
                                                   std::list<evalnodeparse>* nodes) const;
    bool new_type(const std::string& name);
    bool new_method(const std::string& return_type, const std::string& name, const std::list<std::string>& args);
    bool new_constant(const std::string& type, const std::string& name, const std::string* quoted_value);
    // The final action; takes the memorized list and the binding section.
    bool finish_module(std::list<memorizedSignal*>* memorized, long reincarnate, long finalised,
                       binding_declaration_parse* bindings);

    // Flushes the trace of every live parser (before a fatal end).
    static void flush_traces();

private:
    std::list<Signal*>* interface_list(std::list<Signal*>* signals, const std::list<std::string>* awaited,
                                       const char* kind, bool input);
    // "<file>: line <line>: <fault>" on standard error (no line when 0).
    bool refuse(long line, const std::string& fault);
    void add_global(Signal* signal);

    std::string module_name;
    // global_signal_list by internal name, in creation order.
    std::unordered_map<std::string, std::vector<Signal*>> global_by_internal_name;
    std::unique_ptr<Bddexpressionwood> own_wood;
    // Line of each node line, by node number, for messages.
    std::vector<long> node_lines;
    bool succeeded = false;
};

// The active parser, or null.
extern class_ixc_parser* plixc_parser;

// Scanner hook and error report of the generated parser.
int ixclex();
// "line N: <message>" on standard error.
void ixcerror(const char* message);

// The editor's entry: reads `file` with the trace on, into `file` + ".log".
// Writes "FILE NOT FOUND !" or "ERROR about loading file : <file>" on
// standard error and returns null when the file cannot be read or loaded;
// otherwise the caller owns the module.
Module* parse_IXC(const std::string& file, std::string& instance);

// Reads a compiled module from a stream and writes no file: unmatched
// characters and the trace (when explain is 1) go to `log`; `name` stands
// for the file in refusal messages. Null when the read fails (the reader's
// own messages are on standard error); otherwise the caller owns the module.
Module* parse_IXC_stream(std::istream& in, std::ostream& log, const std::string& name, std::string& instance,
                         int explain = 1);

#endif
