#ifndef QUILP_BIX_PARSER_H
#define QUILP_BIX_PARSER_H

// Reader of project files (".bix"): a generated scanner feeding a generated
// parser whose actions build the project. One parser is active at a time: the
// scanner hook and the actions reach it through a process-wide pointer, set
// by its constructor and restored by its destructor.

#include "bix_norm.h"

#include <iosfwd>
#include <string>

class FlexLexer;

class class_bix_parser {
public:
    class_bix_parser();
    ~class_bix_parser();
    class_bix_parser(const class_bix_parser&) = delete;
    class_bix_parser& operator=(const class_bix_parser&) = delete;

    // Runs the parser over plexer's input with the trace going to `log` when
    // explain is non-zero. 0 success, 1 syntax error, 2 memory exhausted.
    int parse(std::ostream& log, int explain);

    int explain_param = 0;
    std::ostream* parse_os = nullptr;
    FlexLexer* plexer = nullptr;
    bix_tpen_fichier* p_fichier_parse = nullptr;

private:
    class_bix_parser* previous;
};

// Batch entry: "reading <name>" on standard output, then reads the project
// with its trace in <name>.log. Null (after a message on standard error) when
// the file cannot be opened or parsed; otherwise the caller owns the project.
bix_tpen_fichier* parse(const std::string& name);

// Opens <name> and <name>.log and reads with the trace on, reporting
// "FILE NOT FOUND !" or "ERROR about loading file : <name>" on failure. The
// shared part of the batch and editor entries, after their opening message.
bix_tpen_fichier* bix_read_file(const std::string& name);

// Reads a project from a stream; unmatched characters and the trace (when
// explain is non-zero) go to `log`. Null on a syntax error or exhaustion.
bix_tpen_fichier* parse_bix_stream(std::istream& in, std::ostream& log, int explain);

// One trace line: level, ",sub" unless sub is 1, " --> ", the text. The
// parser flushes the log once, when the read ends: nothing in between can
// end the process, and a flush per line would cost a write per reduction.
void bix_debuger_law(int level, int sub, const std::string& text, int explain, std::ostream& log);

// Used by the grammar's actions, on the active parser.
void bix_trace(int level, int sub, const std::string& text);
const char* bix_text();
bix_tpen_fichier* bix_project();
void bix_set_project(bix_tpen_fichier* project);
void bix_report_run(const bix_declaration_ixcmodule& run);
std::string bix_unquote(const char* text);
int bix_integer(const char* text);
double bix_decimal(const char* text);

#endif
