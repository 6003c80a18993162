%{
// Grammar of project files. Each action builds a list or an element and
// hands it to the project model; trace lines go to the parse log through
// bix_trace().
#include "bix_parser.h"

#include <list>
#include <string>
#include <vector>

int bixlex();
void bixerror(const char* message);
%}

%code requires {
#include "bix_norm.h"
#include <list>
#include <string>
#include <vector>
}

%code {
// Bison names the end of input "end of file" and an unknown token "invalid
// token"; the reader's messages call them "$end" and "$undefined".
static std::ptrdiff_t bix_tnamerr(char* result, const char* name);
#define yytnamerr bix_tnamerr
}

%define api.prefix {bix}
%define parse.error verbose

%union {
    std::string* str;
    std::list<std::string>* strings;
    bix_declaration_variables* var;
    std::list<bix_declaration_variables>* vars;
    bix_declaration_ixcmodule* run;
    std::list<bix_declaration_ixcmodule>* runs;
    black_box* box;
    std::list<black_box>* boxes;
    bix_tpen_lien* link;
    std::list<bix_tpen_lien>* links;
    std::vector<double>* points;
    double number;
    int integer;
}

/* The first six tokens are never produced: they keep the token codes. */
%token BASIC_MODEL PAR_AUTOMATA_MODEL IX_MODEL PROJET_MODEL N_S F_S
%token DEUX_POINTS VIRGULE POINT_VIRGULE NAME TYPE INPUT SENSOR OUTPUT LOCAL
%token VARIABLE RUN ACTION BLACKBOX LINK TO FROM BY SLASH PAR_OUVRANTE PAR_FERMANTE
%token NUMBER DNUMBER WORD STRING

%type <str> nom_module mot identword typeinoutput chaine nom_instance
%type <strings> def_types liste_types
%type <var> inoutput
%type <vars> def_inputs def_outputs def_locals liste_inoutput
%type <runs> def_runs liste_runs
%type <run> run_entite
%type <boxes> liste_black_box
%type <box> black_box
%type <links> liste_liens
%type <link> lien
%type <points> liste_points
%type <number> coord xpos_instance ypos_instance
%type <integer> ident tpe ident_ixcmodule ident_signal

%destructor { delete $$; } <str> <strings> <var> <vars> <run> <runs> <box> <boxes> <link> <links> <points>

%start projet

%%

projet : entete corps
        { bix_project()->normalise_diametre_ixcmodules(); bix_trace(1, 1, "projet cree"); }
    ;

entete : NAME nom_module POINT_VIRGULE def_types def_inputs def_outputs def_locals def_runs
        {
            bix_set_project(new bix_tpen_fichier(*$2, *$4, *$5, *$6, *$7, *$8));
            delete $2; delete $4; delete $5; delete $6; delete $7; delete $8;
            bix_trace(2, 1, "entete et table bdd cree");
        }
    ;

nom_module : mot { $$ = $1; }
    ;

def_types : TYPE liste_types POINT_VIRGULE
        { $$ = $2; bix_trace(4, 1, "definition de la liste des types"); }
    ;

def_inputs : INPUT liste_inoutput POINT_VIRGULE
        { $$ = $2; bix_trace(4, 1, "definition de la liste des inputs"); }
    ;

liste_inoutput : %empty
        { $$ = new std::list<bix_declaration_variables>; bix_trace(5, 1, "liste inoutput vide"); }
    | inoutput
        {
            $$ = new std::list<bix_declaration_variables>;
            $$->push_back(std::move(*$1)); delete $1;
            bix_trace(5, 2, "liste inoutput a un element");
        }
    | liste_inoutput VIRGULE inoutput
        { $$ = $1; $$->push_back(std::move(*$3)); delete $3; bix_trace(5, 3, "ajoute inoutput liste"); }
    ;

inoutput : identword DEUX_POINTS typeinoutput
        {
            $$ = new bix_declaration_variables(*$1, *$3); delete $1; delete $3;
            bix_trace(6, 1, "input/output bool");
        }
    ;

liste_types : %empty
        { $$ = new std::list<std::string>; bix_trace(5, 1, "liste types vide"); }
    | mot
        {
            $$ = new std::list<std::string>;
            $$->push_back(std::move(*$1)); delete $1;
            bix_trace(5, 2, "liste types a un element");
        }
    | liste_types VIRGULE mot
        { $$ = $1; $$->push_back(std::move(*$3)); delete $3; bix_trace(5, 3, "ajoute type liste"); }
    ;

identword : mot { $$ = $1; }
    ;

typeinoutput : mot { $$ = $1; }
    | %empty { $$ = new std::string; }
    ;

mot : WORD
        { $$ = new std::string(bix_text()); bix_trace(7, 1, bix_text()); }
    ;

def_outputs : OUTPUT liste_inoutput POINT_VIRGULE
        { $$ = $2; bix_trace(8, 1, "definition de la liste des outputs"); }
    ;

/* Locals trace the outputs' text too. */
def_locals : LOCAL liste_inoutput POINT_VIRGULE
        { $$ = $2; bix_trace(8, 1, "definition de la liste des outputs"); }
    ;

def_runs : RUN liste_runs POINT_VIRGULE
        { $$ = $2; bix_trace(9, 1, "definition de la liste des runs"); }
    ;

liste_runs : %empty
        { $$ = new std::list<bix_declaration_ixcmodule>; bix_trace(5, 1, "liste run vide"); }
    | run_entite
        {
            $$ = new std::list<bix_declaration_ixcmodule>;
            $$->push_back(std::move(*$1)); delete $1;
            bix_trace(5, 2, "liste run a un element");
        }
    | liste_runs VIRGULE run_entite
        { $$ = $1; $$->push_back(std::move(*$3)); delete $3; bix_trace(5, 3, "ajoute run liste"); }
    ;

run_entite : chaine DEUX_POINTS mot DEUX_POINTS mot DEUX_POINTS def_inputs def_outputs
        {
            $$ = new bix_declaration_ixcmodule(*$1, *$3, *$5, *$7, *$8);
            delete $1; delete $3; delete $5; delete $7; delete $8;
            bix_report_run(*$$);
            bix_trace(6, 1, "creation d'un run");
        }
    ;

chaine : STRING
        { $$ = new std::string(bix_unquote(bix_text())); bix_trace(10, 1, bix_text()); }
    ;

corps : def_black_box def_liens
        { bix_trace(11, 1, "corps cree"); }
    ;

def_black_box : BLACKBOX liste_black_box POINT_VIRGULE
        {
            bix_project()->parse_ixcmodules(*$2); delete $2;
            bix_trace(12, 1, "definition table ixcmodule");
        }
    ;

liste_black_box : %empty
        { $$ = new std::list<black_box>; bix_trace(13, 1, "generation liste vide"); }
    | black_box
        {
            $$ = new std::list<black_box>;
            $$->push_back(std::move(*$1)); delete $1;
            bix_trace(13, 2, "generation liste a un ixcmodule");
        }
    | liste_black_box VIRGULE black_box
        { $$ = $1; $$->push_back(std::move(*$3)); delete $3; bix_trace(13, 3, "ajoute ixcmodule liste"); }
    ;

black_box : nom_instance xpos_instance ypos_instance DEUX_POINTS tpe DEUX_POINTS ident
        {
            $$ = new black_box(*$1, $2, $3, $5, $7); delete $1;
            bix_trace(14, 1, "genere ixcmodule");
        }
    ;

xpos_instance : coord { $$ = $1; bix_trace(15, 1, bix_text()); }
    ;

ypos_instance : coord { $$ = $1; bix_trace(16, 1, bix_text()); }
    ;

nom_instance : chaine { $$ = $1; }
    ;

ident : NUMBER { $$ = bix_integer(bix_text()); bix_trace(18, 1, bix_text()); }
    ;

tpe : NUMBER { $$ = bix_integer(bix_text()); bix_trace(19, 1, bix_text()); }
    ;

def_liens : LINK liste_liens POINT_VIRGULE
        { bix_project()->parse_liens(*$2); delete $2; bix_trace(24, 1, "definition table lien"); }
    ;

liste_liens : %empty
        { $$ = new std::list<bix_tpen_lien>; bix_trace(25, 1, "generation liste de lien vide"); }
    | lien
        {
            $$ = new std::list<bix_tpen_lien>;
            $$->push_back(std::move(*$1)); delete $1;
            bix_trace(25, 2, "ajoute lien liste");
        }
    | liste_liens VIRGULE lien
        { $$ = $1; $$->push_back(std::move(*$3)); delete $3; bix_trace(25, 3, "ajoute lien liste"); }
    ;

lien : FROM ident_ixcmodule DEUX_POINTS ident_signal TO ident_ixcmodule DEUX_POINTS ident_signal BY liste_points
        {
            $$ = new bix_tpen_lien($2, $4, $6, $8, *$10); delete $10;
            bix_trace(26, 1, "genere lien");
        }
    ;

ident_ixcmodule : NUMBER { $$ = bix_integer(bix_text()); bix_trace(27, 1, bix_text()); }
    ;

ident_signal : NUMBER { $$ = bix_integer(bix_text()); bix_trace(28, 1, bix_text()); }
    ;

liste_points : %empty
        { $$ = new std::vector<double>; bix_trace(28, 1, "liste vide"); }
    | liste_points coord VIRGULE coord
        { $$ = $1; $$->push_back($2); $$->push_back($4); bix_trace(28, 3, "ajout point liste points"); }
    ;

coord : NUMBER { $$ = bix_integer(bix_text()); bix_trace(28, 1, bix_text()); }
    | DNUMBER { $$ = bix_decimal(bix_text()); bix_trace(28, 2, bix_text()); }
    ;

%%

static std::ptrdiff_t bix_tnamerr(char* result, const char* name)
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
