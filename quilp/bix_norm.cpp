#include "bix_norm.h"

#include "quilp_warn.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace {

// Report of an indexed reader called with an index it cannot serve.
void report_misuse(const char* reader, const std::string& detail)
{
    quilp_warn() << "PROBLEME DANS L'UTILISATION DE '" << reader << "()':" << std::endl
                 << detail << std::endl;
}

const char* const no_such_variable = "AUCUNE VARIABLE DE CE TYPE";

std::string ident_requested(int i)
{
    return "IDENT " + std::to_string(i) + " DEMANDE";
}

template <typename T>
bool in_range(const std::vector<T>& table, int i)
{
    return i >= 0 && static_cast<std::size_t>(i) < table.size();
}

template <typename T>
std::vector<T> to_vector(const std::list<T>& l)
{
    return std::vector<T>(l.begin(), l.end());
}

}  // namespace

// ---------------------------------------------------------------------------
// bix_declaration_variables

bix_declaration_variables::bix_declaration_variables(const std::string& n, const std::string& type)
    : typevar(type), name(n)
{
}

bool bix_declaration_variables::operator==(const bix_declaration_variables& other) const
{
    return typevar == other.typevar && name == other.name;
}

// ---------------------------------------------------------------------------
// bix_declaration_ixcmodule

bix_declaration_ixcmodule::bix_declaration_ixcmodule(
    const std::string& p, const std::string& file, const std::string& module,
    const std::list<bix_declaration_variables>& inputs,
    const std::list<bix_declaration_variables>& outputs)
    : modulename(module), filename(file), path(p), table_inputs(to_vector(inputs)),
      table_outputs(to_vector(outputs))
{
}

bix_declaration_variables bix_declaration_ixcmodule::entree(int i) const
{
    if (!in_range(table_inputs, i)) {
        report_misuse("entree", no_such_variable);
        return bix_declaration_variables();
    }
    return table_inputs[i];
}

std::string bix_declaration_ixcmodule::nom_entree(int i) const
{
    if (!in_range(table_inputs, i)) {
        report_misuse("nom_entree", no_such_variable);
        return std::string();
    }
    return table_inputs[i].mon_nom();
}

std::string bix_declaration_ixcmodule::tpe_entree(int i) const
{
    if (!in_range(table_inputs, i)) {
        report_misuse("tpe_entree", no_such_variable);
        return std::string();
    }
    return table_inputs[i].mon_type();
}

bix_declaration_variables bix_declaration_ixcmodule::sortie(int i) const
{
    if (!in_range(table_outputs, i)) {
        report_misuse("sortie", no_such_variable);
        return bix_declaration_variables();
    }
    return table_outputs[i];
}

std::string bix_declaration_ixcmodule::nom_sortie(int i) const
{
    if (!in_range(table_outputs, i)) {
        report_misuse("nom_sortie", no_such_variable);
        return std::string();
    }
    return table_outputs[i].mon_nom();
}

std::string bix_declaration_ixcmodule::tpe_sortie(int i) const
{
    if (!in_range(table_outputs, i)) {
        report_misuse("tpe_sortie", no_such_variable);
        return std::string();
    }
    return table_outputs[i].mon_type();
}

bool bix_declaration_ixcmodule::operator==(const bix_declaration_ixcmodule& other) const
{
    return path == other.path && filename == other.filename && modulename == other.modulename &&
           table_inputs.size() == other.table_inputs.size() &&
           table_outputs.size() == other.table_outputs.size();
}

// ---------------------------------------------------------------------------
// black_box

std::string bix_norm_genere_nom()
{
    std::string name(16, 'A');
    for (char& c : name)
        c = static_cast<char>('A' + static_cast<int>(std::rand() * 26.0 / 2147483648.0));
    return name;
}

black_box::black_box() : nom_defaut(bix_norm_genere_nom()) {}

black_box::black_box(const std::string& n, double x, double y, int t, int id)
    : tpe(t), xpos(x), ypos(y), nom(n), nom_defaut(bix_norm_genere_nom()), ident(id)
{
}

void black_box::translate_ident(int d)
{
    if (ident != -1)
        ident += d;
}

bool black_box::operator!=(const black_box& other) const
{
    return xpos != other.xpos || ypos != other.ypos || nom != other.nom || tpe != other.tpe ||
           ident != other.ident;
}

// ---------------------------------------------------------------------------
// bix_tpen_lien

bix_tpen_lien::bix_tpen_lien(int amont, int amont_output, int aval, int aval_input)
    : ident_ixcmodule_amont(amont), ident_ixcmodule_amont_output(amont_output),
      ident_ixcmodule_aval(aval), ident_ixcmodule_aval_input(aval_input)
{
}

bix_tpen_lien::bix_tpen_lien(int amont, int amont_output, int aval, int aval_input,
                             const std::vector<double>& points)
    : positions(points), ident_ixcmodule_amont(amont), ident_ixcmodule_amont_output(amont_output),
      ident_ixcmodule_aval(aval), ident_ixcmodule_aval_input(aval_input)
{
}

void bix_tpen_lien::translate_ident_ixcmodules(int d)
{
    if (ident_ixcmodule_amont != -1)
        ident_ixcmodule_amont += d;
    if (ident_ixcmodule_aval != -1)
        ident_ixcmodule_aval += d;
}

// ---------------------------------------------------------------------------
// bix_tpen_fichier: construction and appends

bix_tpen_fichier::bix_tpen_fichier(const std::string& name, const std::list<std::string>& types,
                                   const std::list<bix_declaration_variables>& inputs,
                                   const std::list<bix_declaration_variables>& outputs,
                                   const std::list<bix_declaration_variables>& locals,
                                   const std::list<bix_declaration_ixcmodule>& runs)
    : table_types(to_vector(types)), table_inputs(to_vector(inputs)),
      table_outputs(to_vector(outputs)), table_locals(to_vector(locals)),
      table_external_ixcmodules(to_vector(runs)), nom_module(name)
{
}

void bix_tpen_fichier::parse_ixcmodules(const std::list<black_box>& boxes)
{
    table_bbox = to_vector(boxes);
}

void bix_tpen_fichier::parse_liens(const std::list<bix_tpen_lien>& links)
{
    table_liens = to_vector(links);
}

void bix_tpen_fichier::add_fin_black_box(const black_box& b) { table_bbox.push_back(b); }
void bix_tpen_fichier::add_fin_transition(const bix_tpen_lien& l) { table_liens.push_back(l); }
void bix_tpen_fichier::add_fin_input(const bix_declaration_variables& v) { table_inputs.push_back(v); }
void bix_tpen_fichier::add_fin_output(const bix_declaration_variables& v) { table_outputs.push_back(v); }
void bix_tpen_fichier::add_fin_local(const bix_declaration_variables& v) { table_locals.push_back(v); }
void bix_tpen_fichier::add_fin_progs_externes(const bix_declaration_ixcmodule& m)
{
    table_external_ixcmodules.push_back(m);
}
void bix_tpen_fichier::add_type(const std::string& t) { table_types.push_back(t); }

int bix_tpen_fichier::ident_et_add_external_ixcmodule(const std::string& name)
{
    for (std::size_t i = 0; i < table_external_ixcmodules.size(); ++i)
        if (table_external_ixcmodules[i].nom_module() == name)
            return static_cast<int>(i);
    table_external_ixcmodules.push_back(bix_declaration_ixcmodule("", name, name, {}, {}));
    return static_cast<int>(table_external_ixcmodules.size() - 1);
}

// ---------------------------------------------------------------------------
// Deletions

void bix_tpen_fichier::sup_black_box(int i)
{
    if (!in_range(table_bbox, i)) {
        // the message names the operation's former name
        quilp_warn() << "ERROR in bix_tpen_fichier::sup_ixcmodule: out of range" << std::endl;
        return;
    }
    table_liens.erase(std::remove_if(table_liens.begin(), table_liens.end(),
                                     [i](const bix_tpen_lien& l) {
                                         return l.mon_ident_ixcmodule_amont() == i ||
                                                l.mon_ident_ixcmodule_aval() == i;
                                     }),
                      table_liens.end());
    table_bbox.erase(table_bbox.begin() + i);
    for (bix_tpen_lien& l : table_liens) {
        if (l.mon_ident_ixcmodule_amont() > i)
            l.modif_ident_ixcmodule_amont(l.mon_ident_ixcmodule_amont() - 1);
        if (l.mon_ident_ixcmodule_aval() > i)
            l.modif_ident_ixcmodule_aval(l.mon_ident_ixcmodule_aval() - 1);
    }
}

void bix_tpen_fichier::sup_transition(int i)
{
    if (!in_range(table_liens, i)) {
        quilp_warn() << "ERROR in bix_tpen_fichier::sup_transition: out of range" << std::endl;
        return;
    }
    table_liens.erase(table_liens.begin() + i);
}

namespace {

// Removes entry i of a declaration table, then renumbers the terminals of the
// given kind that point past it. A terminal still pointing at the removed
// entry is reported and left as it is: the caller should have deleted it.
void remove_declaration(std::vector<bix_declaration_variables>& table, std::vector<black_box>& boxes,
                        int i, int kind, const char* operation, const char* what)
{
    if (!in_range(table, i)) {
        quilp_warn() << "ERROR in bix_tpen_fichier::" << operation << ": out of range" << std::endl;
        return;
    }
    table.erase(table.begin() + i);
    for (black_box& b : boxes) {
        if (b.mon_tpe() != kind || b.mon_ident() < i)
            continue;
        if (b.mon_ident() == i)
            quilp_warn() << "error in " << operation << "() about " << what << " " << i << "! "
                         << std::endl;
        else
            b.change_ident(b.mon_ident() - 1);
    }
}

}  // namespace

void bix_tpen_fichier::sup_input(int i)
{
    remove_declaration(table_inputs, table_bbox, i, BBOX_INPUT, "sup_input", "input");
}

void bix_tpen_fichier::sup_output(int i)
{
    remove_declaration(table_outputs, table_bbox, i, BBOX_OUTPUT, "sup_output", "output");
}

void bix_tpen_fichier::replace_transition(int i, const bix_tpen_lien& l)
{
    if (!in_range(table_liens, i)) {
        quilp_warn() << "ERROR in bix_tpen_fichier::replace_transition: out of range" << std::endl;
        return;
    }
    const bix_tpen_lien& old = table_liens[i];
    if (old.mon_ident_ixcmodule_amont() != l.mon_ident_ixcmodule_amont()) {
        quilp_warn() << "probleme interne dans bix_tpen_fichier::replace_transition() sur l'ixcmodule amont"
                     << std::endl;
        return;
    }
    if (old.mon_ident_ixcmodule_aval() != l.mon_ident_ixcmodule_aval()) {
        quilp_warn() << "probleme interne dans bix_tpen_fichier::replace_transition() sur l'ixcmodule aval"
                     << std::endl;
        return;
    }
    table_liens[i] = l;
}

// ---------------------------------------------------------------------------
// Link type rule

namespace {

// The type carried at a port of a box: the declaration's type for terminals,
// "pure" for constants, the run's port type for instances; the empty text for
// a bad box, ident or port.
std::string port_type(const bix_tpen_fichier& p, int box, int port, bool upstream)
{
    const std::vector<black_box>& boxes = p.ma_table_bbox();
    if (!in_range(boxes, box))
        return std::string();
    const black_box& b = boxes[box];
    const int id = b.mon_ident();
    switch (b.mon_tpe()) {
    case BBOX_INPUT:
        return in_range(p.ma_table_inputs(), id) ? p.ma_table_inputs()[id].mon_type() : std::string();
    case BBOX_OUTPUT:
        return in_range(p.ma_table_outputs(), id) ? p.ma_table_outputs()[id].mon_type() : std::string();
    case BBOX_CONSTANT:
        return "pure";
    case BBOX_INSTANCE: {
        if (!in_range(p.ma_table_external_ixcmodules(), id))
            return std::string();
        const bix_declaration_ixcmodule& run = p.ma_table_external_ixcmodules()[id];
        const std::vector<bix_declaration_variables>& ports =
            upstream ? run.ma_table_outputs() : run.ma_table_inputs();
        return in_range(ports, port) ? ports[port].mon_type() : std::string();
    }
    default:
        return std::string();
    }
}

bool is_dont_care(const std::vector<black_box>& boxes, int i)
{
    return in_range(boxes, i) && boxes[i].mon_tpe() == BBOX_DONTCARE;
}

}  // namespace

int bix_tpen_fichier::correct_type_interconnection(int up_box, int up_output, int down_box,
                                                   int down_input, std::string& message) const
{
    if (is_dont_care(table_bbox, up_box) || is_dont_care(table_bbox, down_box))
        return 1;
    const std::string up = port_type(*this, up_box, up_output, true);
    const std::string down = port_type(*this, down_box, down_input, false);
    if (up == down)
        return 1;
    if (up != "pure")
        message = "signal typed with: \"" + up + "\" versus ";
    else
        message = " no typed signal versus ";
    if (down == "pure")
        message += "no typed signal";
    else
        message += "signal typed with: \"" + down + "\"";
    return 0;
}

// ---------------------------------------------------------------------------
// Lookups and readers

namespace {

int find_declaration(const std::vector<bix_declaration_variables>& table, const std::string& name)
{
    for (std::size_t i = 0; i < table.size(); ++i)
        if (table[i].mon_nom() == name)
            return static_cast<int>(i);
    return -1;
}

}  // namespace

int bix_tpen_fichier::ident_output(const std::string& name) const
{
    return find_declaration(table_outputs, name);
}

int bix_tpen_fichier::ident_local(const std::string& name) const
{
    return find_declaration(table_locals, name);
}

int bix_tpen_fichier::ident_action(const std::string& name) const
{
    for (std::size_t i = 0; i < table_actions.size(); ++i)
        if (table_actions[i] == name)
            return static_cast<int>(i);
    return -1;
}

// A box is known by the name it shows: the user's, else the generated one.
int bix_tpen_fichier::ident_black_box(const std::string& name) const
{
    for (std::size_t i = 0; i < table_bbox.size(); ++i)
        if (table_bbox[i].un_nom() == name)
            return static_cast<int>(i);
    return -1;
}

int bix_tpen_fichier::nbr_inputs_bool() const
{
    return static_cast<int>(std::count_if(table_inputs.begin(), table_inputs.end(),
                                          [](const bix_declaration_variables& v) {
                                              return v.mon_type() == "bool";
                                          }));
}

namespace {

std::string declaration_field(const std::vector<bix_declaration_variables>& table, int i,
                              const char* reader, bool want_type)
{
    if (!in_range(table, i)) {
        report_misuse(reader, no_such_variable);
        return std::string();
    }
    return want_type ? table[i].mon_type() : table[i].mon_nom();
}

}  // namespace

std::string bix_tpen_fichier::nom_input(int i) const
{
    return declaration_field(table_inputs, i, "nom_input", false);
}

std::string bix_tpen_fichier::type_input(int i) const
{
    return declaration_field(table_inputs, i, "type_input", true);
}

std::string bix_tpen_fichier::nom_output(int i) const
{
    return declaration_field(table_outputs, i, "nom_output", false);
}

std::string bix_tpen_fichier::type_output(int i) const
{
    return declaration_field(table_outputs, i, "type_output", true);
}

std::string bix_tpen_fichier::nom_local(int i) const
{
    return declaration_field(table_locals, i, "nom_local", false);
}

std::string bix_tpen_fichier::type_local(int i) const
{
    return declaration_field(table_locals, i, "type_local", true);
}

std::string bix_tpen_fichier::nom_module_external_ixcmodule(int i) const
{
    if (!in_range(table_external_ixcmodules, i)) {
        report_misuse("nom_module_external_ixcmodule", ident_requested(i));
        return std::string();
    }
    return table_external_ixcmodules[i].nom_module();
}

std::string bix_tpen_fichier::nom_fichier_external_ixcmodule(int i) const
{
    if (!in_range(table_external_ixcmodules, i)) {
        report_misuse("nom_fichier_external_ixcmodule", ident_requested(i));
        return std::string();
    }
    return table_external_ixcmodules[i].nom_fichier();
}

std::string bix_tpen_fichier::chemin_external_ixcmodule(int i) const
{
    if (!in_range(table_external_ixcmodules, i)) {
        report_misuse("chemin_external_ixcmodule", ident_requested(i));
        return std::string();
    }
    return table_external_ixcmodules[i].chemin();
}

int bix_tpen_fichier::nb_inputs_external_ixcmodule(int i) const
{
    if (!in_range(table_external_ixcmodules, i)) {
        report_misuse("nb_inputs_external_ixcmodule", ident_requested(i));
        return 0;
    }
    return table_external_ixcmodules[i].nb_entrees();
}

int bix_tpen_fichier::nb_outputs_external_ixcmodule(int i) const
{
    if (!in_range(table_external_ixcmodules, i)) {
        report_misuse("nb_outputs_external_ixcmodule", ident_requested(i));
        return 0;
    }
    return table_external_ixcmodules[i].nb_sorties();
}

std::string bix_tpen_fichier::action(int i) const
{
    if (!in_range(table_actions, i)) {
        report_misuse("action", ident_requested(i));
        return std::string();
    }
    return table_actions[i];
}

std::string bix_tpen_fichier::nom_black_box(int i) const
{
    if (!in_range(table_bbox, i)) {
        report_misuse("nom_black_box", ident_requested(i));
        return std::string();
    }
    return table_bbox[i].un_nom();
}

const bix_declaration_ixcmodule* bix_tpen_fichier::run_or_null(int i) const
{
    return in_range(table_external_ixcmodules, i) ? &table_external_ixcmodules[i] : nullptr;
}

const black_box* bix_tpen_fichier::box_or_null(int i) const
{
    return in_range(table_bbox, i) ? &table_bbox[i] : nullptr;
}

std::string bix_tpen_fichier::input_name_or_empty(int i) const
{
    return in_range(table_inputs, i) ? table_inputs[i].mon_nom() : std::string();
}

std::string bix_tpen_fichier::output_name_or_empty(int i) const
{
    return in_range(table_outputs, i) ? table_outputs[i].mon_nom() : std::string();
}

std::string bix_tpen_fichier::output_type_or_empty(int i) const
{
    return in_range(table_outputs, i) ? table_outputs[i].mon_type() : std::string();
}

// ---------------------------------------------------------------------------
// Box diameters

void bix_tpen_fichier::normalise_diametre_ixcmodules()
{
    for (black_box& b : table_bbox) {
        if (b.mon_ident() == -1)
            continue;
        double d = 1.0;
        if (b.mon_tpe() == BBOX_INSTANCE) {
            const bix_declaration_ixcmodule* run = run_or_null(b.mon_ident());
            d = (run ? static_cast<double>(run->nom_module().size()) : 0.0) / 3.4;
        }
        b.change_largeur(std::max(d, 1.0));
    }
}
