#include "bix_parser.h"

#include "parse_bix.hpp"

#undef yyFlexLexer
#define yyFlexLexer bixFlexLexer
#include <FlexLexer.h>

#include "quilp_warn.h"
#include "stream_scanner.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iostream>
#include <limits>

namespace {
class_bix_parser* active_parser = nullptr;
}

class_bix_parser::class_bix_parser() : previous(active_parser)
{
    active_parser = this;
}

class_bix_parser::~class_bix_parser()
{
    if (active_parser == this)
        active_parser = previous;
}

int class_bix_parser::parse(std::ostream& log, int explain)
{
    parse_os = &log;
    explain_param = explain;
    const int status = bixparse();
    log.flush();
    return status;
}

int bixlex()
{
    if (!active_parser || !active_parser->plexer)
        return 0;
    return active_parser->plexer->yylex();
}

void bixerror(const char* message)
{
    quilp_warn() << message << std::endl;
}

void bix_debuger_law(int level, int sub, const std::string& text, int explain, std::ostream& log)
{
    if (!explain)
        return;
    // One write per line: the trace of a large project has millions of lines.
    std::string line = std::to_string(level);
    if (sub != 1)
        line += "," + std::to_string(sub);
    line += " --> ";
    line += text;
    line += '\n';
    log.write(line.data(), static_cast<std::streamsize>(line.size()));
}

void bix_trace(int level, int sub, const std::string& text)
{
    if (active_parser && active_parser->parse_os)
        bix_debuger_law(level, sub, text, active_parser->explain_param, *active_parser->parse_os);
}

const char* bix_text()
{
    return active_parser && active_parser->plexer ? active_parser->plexer->YYText() : "";
}

bix_tpen_fichier* bix_project()
{
    return active_parser->p_fichier_parse;
}

void bix_set_project(bix_tpen_fichier* project)
{
    delete active_parser->p_fichier_parse;
    active_parser->p_fichier_parse = project;
}

void bix_report_run(const bix_declaration_ixcmodule& run)
{
    quilp_warn() << "creation d'un run" << run << std::endl;
}

std::string bix_unquote(const char* text)
{
    std::string s;
    for (const char* p = text; *p; ++p)
        if (*p != '"')
            s += *p;
    return s;
}

// The C library's integer conversion: out-of-range values are taken as the
// conversion gives them, never as undefined behaviour.
int bix_integer(const char* text)
{
    return static_cast<int>(std::strtol(text, nullptr, 10));
}

// Decimal with "." as separator whatever the locale. A value too large for a
// double is infinite; one too small is zero.
double bix_decimal(const char* text)
{
    double value = 0.0;
    const char* end = text + std::strlen(text);
    const std::from_chars_result r = std::from_chars(text, end, value);
    if (r.ec == std::errc::result_out_of_range) {
        const bool negative = *text == '-';
        const char* digits = negative ? text + 1 : text;
        const bool large = std::strspn(digits, "0") < std::strcspn(digits, ".");
        value = large ? std::numeric_limits<double>::infinity() : 0.0;
        if (negative)
            value = -value;
    }
    return value;
}

namespace {

using bix_scanner = stream_scanner<bixFlexLexer>;

}  // namespace

bix_tpen_fichier* parse_bix_stream(std::istream& in, std::ostream& log, int explain)
{
    bix_scanner lexer(&in, &log);
    class_bix_parser parser;
    parser.plexer = &lexer;
    if (parser.parse(log, explain) != 0) {
        delete parser.p_fichier_parse;
        return nullptr;
    }
    return parser.p_fichier_parse;
}

bix_tpen_fichier* bix_read_file(const std::string& name)
{
    std::ifstream in(name);
    std::fstream log(name + ".log", std::ios::out | std::ios::trunc);
    // A directory opens but cannot be read: it is no file either.
    if (!in || (in.peek(), in.bad())) {
        quilp_warn() << "FILE NOT FOUND !" << std::endl;
        return nullptr;
    }
    bix_tpen_fichier* project = parse_bix_stream(in, log, 1);
    if (!project)
        quilp_warn() << "ERROR about loading file : " << name << std::endl;
    return project;
}

bix_tpen_fichier* parse(const std::string& name)
{
    std::cout << "reading " << name << std::endl;
    return bix_read_file(name);
}
