%{
// Grammar of compiled-module files. Actions build lists and records and hand
// them to the active parser (plixc_parser), which builds the module; each
// reduction writes its trace line through trace(). There is no error
// recovery: the first syntax error, or a refused file (YYABORT), ends the
// read. An action that aborts frees its own right-hand side first, since the
// parser does not reclaim the symbols of the rule that aborts.
#include "ixc_parser.h"
#include "module.h"

#include <list>
#include <string>

#define P plixc_parser

// Moves the value of a number out of its semantic value.
static long take(long* n)
{
    long v = *n;
    delete n;
    return v;
}

static void delete_records(std::list<regclass*>* list)
{
    if (list)
        for (regclass* r : *list)
            delete r;
    delete list;
}

static void delete_records(std::list<memorizedSignal*>* list)
{
    if (list)
        for (memorizedSignal* m : *list)
            delete m;
    delete list;
}
%}

%code requires {
#include <list>
#include <string>
class Signal;
class regclass;
class memorizedSignal;
class couplelong;
class bindingparse;
class evalnodeparse;
class binding_declaration_parse;
}

%code {
// Bison names the end of input "end of file" and an unknown token "invalid
// token"; the reader's messages call them "$end" and "$undefined".
static std::ptrdiff_t ixc_tnamerr(char* result, const char* name);
#define yytnamerr ixc_tnamerr
}

%define api.prefix {ixc}
%define parse.error verbose

%union {
    std::string* str;
    long* num;
    Signal* signal;
    std::list<Signal*>* signals;
    regclass* reg;
    std::list<regclass*>* regs;
    memorizedSignal* mem;
    std::list<memorizedSignal*>* mems;
    std::list<long>* numbers;
    std::list<std::string>* strings;
    couplelong* couple;
    bindingparse* binding;
    std::list<bindingparse>* bindings;
    evalnodeparse* evalnode;
    std::list<evalnodeparse>* evalnodes;
    binding_declaration_parse* section;
}

/* Codes 258 to 289 in this order. TOKEN_EGAL is never produced; TOKEN_REAL
   is produced but used by no rule. */
%token TOKEN_MODULE TOKEN_INPUTS TOKEN_OUTPUTS TOKEN_DATA_SIGNAL TOKEN_LOCALS TOKEN_REGISTERS
%token TOKEN_MEMORIZED TOKEN_CONNEXION TOKEN_EQUATION_DEF TOKEN_EXPRESSION_DEF TOKEN_EGAL TOKEN_END
%token TOKEN_BINDING TOKEN_EVALTABLE TOKEN_VALUE TOKEN_CLOCK TOKEN_CONSTANT TOKEN_DATA TOKEN_TYPE
%token TOKEN_METHOD TOKEN_IMMEDIAT TOKEN_DEUX_POINTS TOKEN_VIRGULE TOKEN_POUVRANTE TOKEN_PFERMANTE
%token TOKEN_IDENT TOKEN_NUMBER TOKEN_REAL TOKEN_CHAINE_CARACTERES TOKEN_SEP TOKEN_DOUBLEPOURCENT
%token TOKEN_POURCENT

%type <str> name_declaration ident possibletype next_var actual_var pre_var initial_constant_value
%type <str> constant_string argument
%type <num> number reincarnate finalised initial_value evalconstante evalargument
%type <signal> iol
%type <signals> iol_list input_declarations output_declarations data_declarations local_declarations
%type <reg> register
%type <regs> register_list register_declarations
%type <mem> memorized
%type <mems> memorized_list memorized_declarations
%type <numbers> number_list evalargument_list
%type <strings> argument_list
%type <couple> doublenumber clock_declaration
%type <binding> binding
%type <bindings> binding_list
%type <evalnode> evaltable evaluation
%type <evalnodes> evaltable_list
%type <section> binding_declaration

/* Signals belong to their module; every other value to the stack. */
%destructor { delete $$; } <str> <num> <signals> <reg> <mem> <numbers> <strings> <couple> <binding>
%destructor { delete $$; } <bindings> <evalnode> <evalnodes> <section>
%destructor { delete_records($$); } <regs> <mems>

%start module_compile

%%

module_compile
    : name_declaration reincarnate finalised
        { P->begin_module(); }
      input_declarations output_declarations data_declarations local_declarations register_declarations
        {
            P->store_lists($5, $6, $7, $8, $9);
            $5 = nullptr; $6 = nullptr; $7 = nullptr; $8 = nullptr; $9 = nullptr;
        }
      memorized_declarations connexion_declarations wood_declaration binding_declaration data_declaration
        {
            const bool done = P->finish_module($11, *$2, *$3, $14);
            delete $1; delete $2; delete $3;
            if (!done)
                YYABORT;
            P->trace(1, 1, "definition finale");
        }
    ;

name_declaration : TOKEN_MODULE ident
        { $$ = $2; P->set_module_name(*$2); P->trace(2, 1, "definition nom declaration"); }
    ;

reincarnate : number { $$ = $1; }
    ;

finalised : number { $$ = $1; }
    ;

input_declarations
    : %empty
        { $$ = new std::list<Signal*>; P->trace(3, 1, "definition liste inputs vide"); }
    | TOKEN_INPUTS iol_list TOKEN_SEP
        { $$ = P->input_list($2); P->trace(3, 2, "definition liste inputs"); }
    ;

output_declarations
    : %empty
        { $$ = new std::list<Signal*>; P->trace(4, 1, "definition liste output vide"); }
    | TOKEN_OUTPUTS iol_list TOKEN_SEP
        { $$ = P->output_list($2); P->trace(4, 2, "definition liste output"); }
    ;

data_declarations
    : %empty
        { $$ = new std::list<Signal*>; P->trace(3, 1, "definition liste data vide"); }
    | TOKEN_DATA_SIGNAL iol_list TOKEN_SEP
        { $$ = P->data_list($2); P->trace(3, 2, "definition liste data signals"); }
    ;

local_declarations
    : %empty
        { $$ = new std::list<Signal*>; P->trace(5, 1, "definition liste locaux vide"); }
    | TOKEN_LOCALS iol_list TOKEN_SEP
        { $$ = P->local_list($2); P->trace(5, 2, "definition liste locaux"); }
    ;

iol_list
    : iol
        { $$ = new std::list<Signal*>{$1}; P->trace(6, 1, "creation liste iol"); }
    | iol_list iol
        { $$ = $1; $$->push_back($2); P->trace(6, 2, "ajout iol liste"); }
    ;

iol : ident possibletype
        { $$ = P->new_signal(*$1, $2); delete $1; delete $2; P->trace(7, 1, P->text()); }
    ;

possibletype
    : %empty
        { $$ = nullptr; P->trace(8, 1, P->text()); }
    | TOKEN_DEUX_POINTS ident
        { $$ = $2; P->trace(8, 2, P->text()); }
    ;

register_declarations
    : %empty
        { $$ = new std::list<regclass*>; P->trace(9, 1, "definition liste registres vide"); }
    | TOKEN_REGISTERS register_list
        { $$ = $2; P->trace(9, 2, "definition liste registres"); }
    ;

register_list
    : register
        { $$ = new std::list<regclass*>{$1}; P->trace(10, 1, "creation liste ident"); }
    | register_list register
        { $$ = $1; $$->push_back($2); P->trace(10, 2, "ajout ident liste"); }
    ;

register : next_var actual_var initial_value TOKEN_SEP
        {
            $$ = P->new_register(*$1, *$2, *$3);
            delete $1; delete $2; delete $3;
            P->trace(11, 1, "ajout ident liste");
        }
    ;

next_var : ident { $$ = $1; P->trace(20, 1, "def var suivante"); }
    ;

actual_var : ident { $$ = $1; P->trace(21, 1, "def var actuelle"); }
    ;

initial_value : TOKEN_NUMBER
        { $$ = new long(P->initial_value(P->text())); P->trace(22, 1, "valeur initiale "); }
    ;

memorized_declarations
    : %empty
        { $$ = new std::list<memorizedSignal*>; P->trace(9, 1, "definition liste signaux a memoriser vide"); }
    | TOKEN_MEMORIZED memorized_list
        { $$ = $2; P->trace(9, 2, "definition liste signaux a memoriser"); }
    ;

memorized_list
    : memorized
        { $$ = new std::list<memorizedSignal*>{$1}; P->trace(10, 1, "creation liste signaux a memoriser"); }
    | memorized_list memorized
        { $$ = $1; $$->push_back($2); P->trace(10, 2, "ajout ident liste"); }
    ;

memorized : pre_var actual_var initial_constant_value TOKEN_SEP
        { $$ = P->new_memorized(*$1, *$2, *$3); delete $1; delete $2; delete $3; }
    ;

pre_var : ident { $$ = $1; P->trace(21, 1, "def var pre"); }
    ;

initial_constant_value
    : ident
        { $$ = $1; P->trace(21, 1, "def initial constante value"); }
    | %empty
        { $$ = new std::string; }
    ;

connexion_declarations : TOKEN_CONNEXION ident ident ident TOKEN_SEP
        {
            P->connexion(*$2, *$3, *$4);
            delete $2; delete $3; delete $4;
            P->trace(12, 1, "ajout ident liste");
        }
    ;

ident : TOKEN_IDENT
        { $$ = new std::string(P->text()); P->trace(13, 1, P->text()); }
    ;

wood_declaration
    : TOKEN_EQUATION_DEF number
        {
            if (!P->node_count(*$2))
                YYABORT;
        }
      equations_list TOKEN_EXPRESSION_DEF expressions_list TOKEN_END
        { delete $2; P->trace(14, 1, "wood declaration"); }
    ;

equations_list
    : %empty
        { P->trace(15, 1, "equation seule"); }
    | equations_list equation
        { P->trace(15, 2, "ajout equation gen liste"); }
    ;

equation
    : number TOKEN_DEUX_POINTS number TOKEN_DEUX_POINTS number TOKEN_DEUX_POINTS number TOKEN_VIRGULE number
        {
            P->node_line(take($1), take($3), take($5), take($7), take($9));
            P->trace(16, 1, "equation");
        }
    ;

expressions_list
    : %empty
        { P->trace(17, 1, "expression booleenne gen seule"); }
    | expressions_list expression_bool
        { P->trace(17, 2, "ajout expression gen liste"); }
    ;

expression_bool
    : number number number TOKEN_DEUX_POINTS number TOKEN_VIRGULE number TOKEN_VIRGULE
      TOKEN_POUVRANTE number_list TOKEN_PFERMANTE
        {
            const long earliest = take($1), latest = take($2), var = take($3), node = take($5), link = take($7);
            const bool done = P->expression_line(earliest, latest, var, node, link, *$10);
            delete $10;
            if (!done)
                YYABORT;
            P->trace(18, 1, "def expression bool");
        }
    ;

number_list
    : %empty
        { $$ = new std::list<long>; }
    | number_list number
        { $$ = $1; $$->push_back(take($2)); }
    ;

number : TOKEN_NUMBER
        { $$ = new long(class_ixc_parser::number_value(P->text())); P->trace(19, 1, P->text()); }
    ;

binding_declaration
    : %empty
        { $$ = nullptr; P->trace(26, 1, ""); }
    | TOKEN_BINDING binding_list TOKEN_END TOKEN_EVALTABLE evaltable_list TOKEN_END
        { $$ = P->new_binding_section($2, $5); P->trace(26, 2, ""); }
    ;

binding_list
    : %empty
        { $$ = new std::list<bindingparse>; P->trace(27, 1, ""); }
    | binding_list binding
        { $$ = $1; $$->push_back(*$2); delete $2; P->trace(27, 2, ""); }
    ;

binding : doublenumber TOKEN_DEUX_POINTS TOKEN_VALUE number clock_declaration TOKEN_SEP
        {
            $$ = new bindingparse(P->new_binding(*$1, *$4, $5));
            delete $1; delete $4; delete $5;
            P->trace(28, 1, "");
        }
    ;

clock_declaration
    : %empty
        { $$ = nullptr; P->trace(29, 1, "clock declaration vide"); }
    | TOKEN_CLOCK doublenumber
        { $$ = $2; P->trace(29, 2, " clock declaration (nombre,nombre)"); }
    ;

doublenumber : TOKEN_POUVRANTE number TOKEN_VIRGULE number TOKEN_PFERMANTE
        { $$ = new couplelong(take($2), take($4)); P->trace(30, 1, "(nombre,nombre)"); }
    ;

evaltable_list
    : %empty
        { $$ = new std::list<evalnodeparse>; P->trace(31, 1, ""); }
    | evaltable_list evaltable
        { $$ = $1; $$->push_back(std::move(*$2)); delete $2; P->trace(31, 2, ""); }
    ;

evaltable : number TOKEN_DEUX_POINTS evaluation TOKEN_SEP
        { $$ = $3; $$->nodeident(take($1)); P->trace(32, 1, ""); }
    ;

evaluation
    : evalconstante
        { $$ = P->new_evaluation(evalnodeparse::CONSTANTE, take($1), nullptr); P->trace(33, 1, ""); }
    | number
        { $$ = P->new_evaluation(evalnodeparse::LINK, take($1), nullptr); P->trace(33, 2, ""); }
    | TOKEN_POURCENT number TOKEN_POUVRANTE evalargument_list TOKEN_PFERMANTE
        {
            $$ = P->new_evaluation(evalnodeparse::METHODE_EXTERNE, take($2), $4);
            delete $4;
            P->trace(33, 3, "");
        }
    | TOKEN_DOUBLEPOURCENT number TOKEN_POUVRANTE evalargument_list TOKEN_PFERMANTE
        {
            $$ = P->new_evaluation(evalnodeparse::METHODE_PREDEFINIE, take($2), $4);
            delete $4;
            P->trace(33, 4, "");
        }
    ;

evalconstante : TOKEN_IMMEDIAT number
        { $$ = $2; P->trace(34, 1, ""); }
    ;

evalargument_list
    : %empty
        { $$ = new std::list<long>; P->trace(35, 1, ""); }
    | evalargument
        { $$ = new std::list<long>{take($1)}; P->trace(35, 2, ""); }
    | evalargument_list TOKEN_VIRGULE evalargument
        { $$ = $1; $$->push_back(take($3)); P->trace(35, 3, ""); }
    ;

evalargument
    : number
        { $$ = $1; P->trace(36, 1, ""); }
    | evalconstante
        { $$ = $1; }
    ;

data_declaration
    : %empty
        { P->trace(41, 1, ""); }
    | TOKEN_DATA TOKEN_TYPE typedata_list TOKEN_METHOD method_list constant_declaration TOKEN_END
        { P->trace(41, 2, ""); }
    ;

typedata_list
    : %empty
        { P->trace(42, 1, ""); }
    | typedata_list typedata
        { P->trace(42, 2, ""); }
    ;

typedata : ident TOKEN_SEP
        {
            const bool done = P->new_type(*$1);
            delete $1;
            if (!done)
                YYABORT;
            P->trace(43, 1, "");
        }
    ;

method_list
    : %empty
        { P->trace(44, 1, ""); }
    | method_list met
        { P->trace(44, 2, ""); }
    ;

met : ident ident TOKEN_POUVRANTE argument_list TOKEN_PFERMANTE TOKEN_SEP
        {
            const bool done = P->new_method(*$1, *$2, *$4);
            delete $1; delete $2; delete $4;
            if (!done)
                YYABORT;
            P->trace(45, 1, "");
        }
    ;

argument_list
    : %empty
        { $$ = new std::list<std::string>; P->trace(46, 1, ""); }
    | argument
        { $$ = new std::list<std::string>{*$1}; delete $1; P->trace(46, 2, ""); }
    | argument_list TOKEN_VIRGULE argument
        { $$ = $1; $$->push_back(*$3); delete $3; P->trace(46, 3, ""); }
    ;

argument : ident { $$ = $1; P->trace(47, 1, ""); }
    ;

constant_declaration
    : %empty
        { P->trace(37, 1, ""); }
    | TOKEN_CONSTANT constant_list
        { P->trace(37, 2, ""); }
    ;

constant_list
    : %empty
        { P->trace(38, 1, ""); }
    | constant_list constant
        { P->trace(38, 2, ""); }
    ;

constant
    : ident ident constant_string TOKEN_SEP
        {
            const bool done = P->new_constant(*$1, *$2, $3);
            delete $1; delete $2; delete $3;
            if (!done)
                YYABORT;
            P->trace(39, 1, "");
        }
    | ident ident TOKEN_SEP
        {
            const bool done = P->new_constant(*$1, *$2, nullptr);
            delete $1; delete $2;
            if (!done)
                YYABORT;
            P->trace(39, 2, "");
        }
    ;

constant_string : TOKEN_CHAINE_CARACTERES
        { $$ = new std::string(P->text()); P->trace(40, 1, P->text()); }
    ;

%%

static std::ptrdiff_t ixc_tnamerr(char* result, const char* name)
{
    std::string text = name;
    if (text == "\"end of file\"")
        text = "$end";
    else if (text == "\"invalid token\"")
        text = "$undefined";
    if (result) {
        text.copy(result, text.size());
        result[text.size()] = '\0';
    }
    return static_cast<std::ptrdiff_t>(text.size());
}
