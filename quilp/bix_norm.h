#ifndef QUILP_BIX_NORM_H
#define QUILP_BIX_NORM_H

// The project: a block diagram of compiled modules ("runs") placed as black
// boxes on a sheet and joined by links, with the project's declared types,
// inputs, outputs and locals. The reader builds it, the writers print it and
// the editor's view derives from it.
//
// Tables are vectors whose size is the count of live entries; appends and
// deletions keep every entry's order and numbering.

#include <iosfwd>
#include <list>
#include <string>
#include <vector>

class bix_tpen_fichier;

// A typed signal declaration. The empty type means the pure (untyped) signal
// in a project file; "pure" is how loaded modules and the generator name it.
class bix_declaration_variables {
public:
    bix_declaration_variables() = default;
    bix_declaration_variables(const std::string& name, const std::string& type);

    const std::string& mon_nom() const { return name; }
    const std::string& mon_type() const { return typevar; }

    bool operator==(const bix_declaration_variables& other) const;
    bool operator!=(const bix_declaration_variables& other) const { return !(*this == other); }

    // "name: type" (project file form, no line end).
    void put_bix(std::ostream& os) const;
    // The name, then ": " and the type unless the type is exactly "pure".
    void put_ix(std::ostream& os) const;

private:
    std::string typevar;
    std::string name;
};

// "name : type" (the run declaration form, no line end).
std::ostream& operator<<(std::ostream& os, const bix_declaration_variables& v);

// A compiled module used by the project: one run.
class bix_declaration_ixcmodule {
public:
    bix_declaration_ixcmodule() = default;
    bix_declaration_ixcmodule(const std::string& path, const std::string& filename,
                              const std::string& modulename,
                              const std::list<bix_declaration_variables>& inputs,
                              const std::list<bix_declaration_variables>& outputs);

    const std::string& nom_module() const { return modulename; }
    const std::string& nom_fichier() const { return filename; }
    const std::string& chemin() const { return path; }
    int nb_entrees() const { return static_cast<int>(table_inputs.size()); }
    int nb_sorties() const { return static_cast<int>(table_outputs.size()); }

    // Indexed readers: an index outside the table gives an empty declaration
    // (empty name and type) and a report on standard error.
    bix_declaration_variables entree(int i) const;
    std::string nom_entree(int i) const;
    std::string tpe_entree(int i) const;
    bix_declaration_variables sortie(int i) const;
    std::string nom_sortie(int i) const;
    std::string tpe_sortie(int i) const;

    const std::vector<bix_declaration_variables>& ma_table_inputs() const { return table_inputs; }
    const std::vector<bix_declaration_variables>& ma_table_outputs() const { return table_outputs; }

    // Same path, file name, module name and port counts (ports not compared).
    bool operator==(const bix_declaration_ixcmodule& other) const;
    bool operator!=(const bix_declaration_ixcmodule& other) const { return !(*this == other); }

    // The run declaration over several lines, ending with a line end.
    void put_bix(std::ostream& os) const;
    // "\"path\": file: module" and a line end.
    void put_ix(std::ostream& os) const;

private:
    std::string modulename;
    std::string filename;
    std::string path;
    std::vector<bix_declaration_variables> table_inputs;
    std::vector<bix_declaration_variables> table_outputs;
};

// The dump written after "creation d'un run": the run's project file form.
std::ostream& operator<<(std::ostream& os, const bix_declaration_ixcmodule& m);

// 16 capital letters from the C library generator.
std::string bix_norm_genere_nom();

// Kinds of black boxes (`tpe`).
enum {
    BBOX_DEFAULT = -1,  // a default box not yet completed
    BBOX_INSTANCE = 0,  // an instance of a run; ident = run index
    BBOX_INPUT = 1,     // terminal of a project input; ident = input index
    BBOX_OUTPUT = 2,    // terminal of a project output; ident = output index
    BBOX_CONSTANT = 3,  // constant source; ident 0 always absent, else always present
    BBOX_DONTCARE = 4   // output left unchecked by the link type rule
};

// An element on the sheet.
class black_box {
public:
    // A default box: kind -1, at (0, 0), diameter 4, no name, ident -1, and a
    // freshly generated default name.
    black_box();
    black_box(const std::string& nom, double x, double y, int tpe, int ident);

    // The user's name, or the generated one when there is none.
    const std::string& un_nom() const { return nom.empty() ? nom_defaut : nom; }
    const std::string& mon_nom() const { return nom; }
    void change_nom(const std::string& n) { nom = n; }
    const std::string& mon_nom_defaut() const { return nom_defaut; }

    double ma_posx() const { return xpos; }
    double ma_posy() const { return ypos; }
    void change_ma_posx(double x) { xpos = x; }
    void change_ma_posy(double y) { ypos = y; }
    double ma_largeur() const { return largeur; }
    void change_largeur(double l) { largeur = l; }

    int mon_tpe() const { return tpe; }
    void change_tpe(int t) { tpe = t; }
    int mon_ident() const { return ident; }
    void change_ident(int i) { ident = i; }
    // Adds d to the ident unless it is -1.
    void translate_ident(int d);

    // Compares position, name, kind and ident; ignores the diameter and the
    // generated name.
    bool operator!=(const black_box& other) const;
    bool operator==(const black_box& other) const { return !(*this != other); }

    // One project file line, no line end; the project is not used.
    void put_bix(std::ostream& os, const bix_tpen_fichier& project) const;
    // The ellipse and the texts of the drawing.
    void put_xfig(std::ostream& os, const std::vector<bix_declaration_ixcmodule>& runs,
                  const std::string& module_name) const;

private:
    int tpe = BBOX_DEFAULT;
    double xpos = 0.0;
    double ypos = 0.0;
    double largeur = 4.0;
    std::string nom;
    std::string nom_defaut;
    int ident = -1;
};

// A link: a polyline from an output of the upstream box to an input of the
// downstream box. The points are the intermediate bends, x then y each.
class bix_tpen_lien {
public:
    bix_tpen_lien() = default;
    bix_tpen_lien(int amont, int amont_output, int aval, int aval_input);
    bix_tpen_lien(int amont, int amont_output, int aval, int aval_input,
                  const std::vector<double>& points);

    int mon_ident_ixcmodule_amont() const { return ident_ixcmodule_amont; }
    int mon_ident_ixcmodule_amont_output() const { return ident_ixcmodule_amont_output; }
    int mon_ident_ixcmodule_aval() const { return ident_ixcmodule_aval; }
    int mon_ident_ixcmodule_aval_input() const { return ident_ixcmodule_aval_input; }
    void modif_ident_ixcmodule_amont(int i) { ident_ixcmodule_amont = i; }
    void modif_ident_ixcmodule_aval(int i) { ident_ixcmodule_aval = i; }
    // Adds d to each box index that is not -1.
    void translate_ident_ixcmodules(int d);

    const std::vector<double>& liste_positions() const { return positions; }
    int nb_points() const { return static_cast<int>(positions.size() / 2); }

    // Extents of the points: maxima start from 0, minima from 1e12.
    double posxmax() const;
    double posymax() const;
    double posxmin() const;
    double posymin() const;

    // Re-routes the link between its two ports on the project's sheet.
    void aligne_points(const bix_tpen_fichier* project);
    void translation_points(double dx, double dy);
    // Appends a point only while the link has none or one.
    void add_point(double x, double y);
    void modif_coords_point(int k, double x, double y);
    void modif_xcoords_point(int k, double x);
    void modif_ycoords_point(int k, double y);
    void modif_coords_premier_point(double x, double y);
    void modif_coords_dernier_point(double x, double y);

    // One project file line, no line end.
    void put_bix(std::ostream& os) const;
    // The polyline of the drawing.
    void put_xfig(std::ostream& os, const std::vector<black_box>& boxes) const;

private:
    std::vector<double> positions;
    int ident_ixcmodule_amont = -1;
    int ident_ixcmodule_amont_output = -1;
    int ident_ixcmodule_aval = -1;
    int ident_ixcmodule_aval_input = -1;
};

// Moves (*px, *py) by r towards (x, y).
void frontieres_corrections(double x, double y, double r, double* px, double* py);

// The project.
class bix_tpen_fichier {
public:
    bix_tpen_fichier() = default;
    bix_tpen_fichier(const std::string& name, const std::list<std::string>& types,
                     const std::list<bix_declaration_variables>& inputs,
                     const std::list<bix_declaration_variables>& outputs,
                     const std::list<bix_declaration_variables>& locals,
                     const std::list<bix_declaration_ixcmodule>& runs);
    virtual ~bix_tpen_fichier() = default;
    bix_tpen_fichier(const bix_tpen_fichier&) = default;
    bix_tpen_fichier& operator=(const bix_tpen_fichier&) = default;

    // Replace the black box and link tables, in list order.
    void parse_ixcmodules(const std::list<black_box>& boxes);
    void parse_liens(const std::list<bix_tpen_lien>& links);

    // Appends.
    void add_fin_black_box(const black_box& b);
    void add_fin_transition(const bix_tpen_lien& l);
    void add_fin_input(const bix_declaration_variables& v);
    void add_fin_output(const bix_declaration_variables& v);
    void add_fin_local(const bix_declaration_variables& v);
    void add_fin_progs_externes(const bix_declaration_ixcmodule& m);
    void add_type(const std::string& t);
    // Index of the run named `name`, appended (empty path, file = module = name) if new.
    int ident_et_add_external_ixcmodule(const std::string& name);

    // Deletions with renumbering.
    void sup_black_box(int i);
    void sup_transition(int i);
    void sup_input(int i);
    void sup_output(int i);
    void replace_transition(int i, const bix_tpen_lien& l);

    // Type rule of a link from output up_output of box up_box to input
    // down_input of box down_box: 1 compatible, 0 not (message set).
    int correct_type_interconnection(int up_box, int up_output, int down_box, int down_input,
                                     std::string& message) const;

    // Lookups: index or -1.
    int ident_output(const std::string& name) const;
    int ident_local(const std::string& name) const;
    int ident_action(const std::string& name) const;
    int ident_black_box(const std::string& name) const;

    // Readers. The indexed ones report a bad index on standard error
    // ("PROBLEME DANS L'UTILISATION DE ...") and give an empty text or 0.
    const std::string& mon_nom_module() const { return nom_module; }
    void def_nom_module(const std::string& name) { nom_module = name; }
    int mon_modele() const { return modele; }
    void def_modele(int m) { modele = m; }
    int nbr_types() const { return static_cast<int>(table_types.size()); }
    int nbr_inputs() const { return static_cast<int>(table_inputs.size()); }
    int nbr_inputs_bool() const;
    std::string nom_input(int i) const;
    std::string type_input(int i) const;
    int nbr_outputs() const { return static_cast<int>(table_outputs.size()); }
    std::string nom_output(int i) const;
    std::string type_output(int i) const;
    int nbr_locals() const { return static_cast<int>(table_locals.size()); }
    std::string nom_local(int i) const;
    std::string type_local(int i) const;
    int nbr_external_ixcmodules() const { return static_cast<int>(table_external_ixcmodules.size()); }
    std::string nom_module_external_ixcmodule(int i) const;
    std::string nom_fichier_external_ixcmodule(int i) const;
    std::string chemin_external_ixcmodule(int i) const;
    int nb_inputs_external_ixcmodule(int i) const;
    int nb_outputs_external_ixcmodule(int i) const;
    int nbr_actions() const { return static_cast<int>(table_actions.size()); }
    std::string action(int i) const;
    std::string nom_black_box(int i) const;
    int nbr_black_box() const { return static_cast<int>(table_bbox.size()); }
    int nbr_transitions() const { return static_cast<int>(table_liens.size()); }
    void efface_table_locals() { table_locals.clear(); }

    const std::vector<black_box>& ma_table_bbox() const { return table_bbox; }
    std::vector<black_box>& ma_table_bbox() { return table_bbox; }
    const std::vector<bix_tpen_lien>& ma_table_liens() const { return table_liens; }
    std::vector<bix_tpen_lien>& ma_table_liens() { return table_liens; }
    const std::vector<std::string>& ma_table_types() const { return table_types; }
    const std::vector<bix_declaration_variables>& ma_table_inputs() const { return table_inputs; }
    const std::vector<bix_declaration_variables>& ma_table_outputs() const { return table_outputs; }
    const std::vector<bix_declaration_variables>& ma_table_locals() const { return table_locals; }
    const std::vector<bix_declaration_ixcmodule>& ma_table_external_ixcmodules() const
    {
        return table_external_ixcmodules;
    }
    const std::vector<std::string>& ma_table_actions() const { return table_actions; }

    // Sets every box's drawn diameter from its kind and run.
    void normalise_diametre_ixcmodules();

    // Geometry, in model units.
    double bbox_largeur(int i) const;
    double bbox_hauteur(int i) const;
    // Position of output (input) port k of box i; false when i is not a box.
    bool position_output(int i, int k, double* x, double* y) const;
    bool position_input(int i, int k, double* x, double* y) const;
    double largueur_max() const;
    double hauteur_max() const;

    // Writers.
    void put_bix(const std::string& file_name, const std::string& module_name) const;
    void put_bix(std::ostream& os, const std::string& module_name) const;
    void put_ix(const std::string& file_name, const std::string& module_name) const;
    void put_ix(std::ostream& os, const std::string& module_name) const;
    void put_xfig(const std::string& file_name, const std::string& module_name) const;
    void put_xfig(std::ostream& os, const std::string& module_name) const;

protected:
    std::vector<black_box> table_bbox;
    std::vector<bix_tpen_lien> table_liens;
    std::vector<std::string> table_types;
    std::vector<bix_declaration_variables> table_inputs;
    std::vector<bix_declaration_variables> table_outputs;
    std::vector<bix_declaration_variables> table_locals;
    // Reserved sections of the format: always empty in this program.
    std::vector<bix_declaration_variables> table_variables;
    std::vector<bix_declaration_variables> table_sensors;
    std::vector<bix_declaration_ixcmodule> table_external_ixcmodules;
    int nb_functions = 0;
    int nb_constants = 0;
    std::vector<std::string> table_actions;
    std::string nom_module;
    int modele = 0;

    // Silent readers for the writers and geometry: a name out of range is the
    // empty text, a run out of range is null.
    const bix_declaration_ixcmodule* run_or_null(int i) const;
    const black_box* box_or_null(int i) const;
    std::string input_name_or_empty(int i) const;
    std::string output_name_or_empty(int i) const;
    std::string output_type_or_empty(int i) const;
};

#endif
