#include "project_check.h"

#include "bix_parser.h"
#include "dravik_warn.h"
#include "expression.h"
#include "ixc_import.h"
#include "ixc_parser.h"
#include "module.h"
#include "quilp_warn.h"
#include "runs_warn.h"

#include <filesystem>
#include <list>
#include <memory>
#include <sstream>
#include <unordered_map>
#include <utility>

namespace {

// Holds the non-fatal messages of the project reader, the module layer and
// the interface import while it lives.
class warn_capture {
public:
    warn_capture()
        : saved_quilp(set_quilp_warn(&text)), saved_dravik(set_dravik_warn(&text)), saved_runs(set_runs_warn(&text))
    {
    }
    ~warn_capture()
    {
        set_quilp_warn(saved_quilp);
        set_dravik_warn(saved_dravik);
        set_runs_warn(saved_runs);
    }
    warn_capture(const warn_capture&) = delete;
    warn_capture& operator=(const warn_capture&) = delete;

    std::string str() const { return text.str(); }

private:
    std::ostringstream text;
    std::ostream* saved_quilp;
    std::ostream* saved_dravik;
    std::ostream* saved_runs;
};

using ports = std::vector<bix_declaration_variables>;

// A project file writes a pure signal with an empty type, a loaded module
// with "pure".
std::string type_of(const bix_declaration_variables& v)
{
    return v.mon_type().empty() ? "pure" : v.mon_type();
}

std::string backquoted(const std::string& name)
{
    return "`" + name + "`";
}

std::string counted(std::size_t n, const std::string& noun)
{
    return std::to_string(n) + " " + noun + (n == 1 ? "" : noun == "box" ? "es" : "s");
}

template <typename T>
std::list<T> as_list(const std::vector<T>& v)
{
    return std::list<T>(v.begin(), v.end());
}

template <typename T>
bool in_range(const std::vector<T>& table, int i)
{
    return i >= 0 && static_cast<std::size_t>(i) < table.size();
}

// Compares one side (inputs or outputs) of a run: ports of the same name are
// paired first, in order; a port left alone is taken as renamed when the
// module's port at its place is left alone too.
void compare_ports(const drift_finding& run_finding, const std::string& port, const ports& kept, const ports& now,
                   std::vector<drift_finding>& out)
{
    std::unordered_map<std::string, std::list<int>> free_by_name;
    for (std::size_t j = 0; j < now.size(); ++j)
        free_by_name[now[j].mon_nom()].push_back(static_cast<int>(j));
    std::vector<int> match(kept.size(), -1);
    std::vector<bool> taken(now.size(), false);
    for (std::size_t i = 0; i < kept.size(); ++i) {
        std::list<int>& free = free_by_name[kept[i].mon_nom()];
        if (free.empty())
            continue;
        match[i] = free.front();
        taken[static_cast<std::size_t>(free.front())] = true;
        free.pop_front();
    }
    std::vector<bool> renamed(kept.size(), false);
    for (std::size_t i = 0; i < kept.size() && i < now.size(); ++i)
        if (match[i] < 0 && !taken[i]) {
            match[i] = static_cast<int>(i);
            taken[i] = true;
            renamed[i] = true;
        }

    const std::string prefix = run_finding.message;
    for (std::size_t i = 0; i < kept.size(); ++i) {
        drift_finding f = run_finding;
        f.port = port;
        f.index = static_cast<int>(i);
        f.name = kept[i].mon_nom();
        const std::string head = prefix + port + " " + std::to_string(i) + " " + backquoted(f.name);
        if (match[i] < 0) {
            f.kind = drift_kind::port_missing;
            f.message = head + " missing from module";
            out.push_back(f);
            continue;
        }
        const bix_declaration_variables& other = now[static_cast<std::size_t>(match[i])];
        if (renamed[i]) {
            drift_finding r = f;
            r.kind = drift_kind::port_renamed;
            r.expected = f.name;
            r.found = other.mon_nom();
            r.message = head + " renamed, module says " + backquoted(other.mon_nom());
            out.push_back(r);
        } else if (match[i] != f.index) {
            drift_finding m = f;
            m.kind = drift_kind::port_moved;
            m.module_index = match[i];
            m.message = head + " moved, module says " + port + " " + std::to_string(match[i]);
            out.push_back(m);
        }
        if (type_of(kept[i]) != type_of(other)) {
            f.kind = drift_kind::port_type;
            f.expected = type_of(kept[i]);
            f.found = type_of(other);
            f.message = head + " has type " + f.expected + ", module says " + f.found;
            out.push_back(f);
        }
    }
    for (std::size_t j = 0; j < now.size(); ++j) {
        if (taken[j])
            continue;
        drift_finding f = run_finding;
        f.kind = drift_kind::port_added;
        f.port = port;
        f.index = static_cast<int>(j);
        f.name = now[j].mon_nom();
        f.found = type_of(now[j]);
        f.message = prefix + port + " " + std::to_string(j) + " " + backquoted(f.name) + " added by module, type "
            + f.found;
        out.push_back(f);
    }
}

// Ports of a box as the editor offers them: a run's own for an instance, one
// output for an input terminal and a constant, one input for an output
// terminal and a don't-care box, none otherwise.
int input_count(const bix_tpen_fichier& p, const black_box& b)
{
    switch (b.mon_tpe()) {
    case BBOX_INSTANCE:
        return p.nb_inputs_external_ixcmodule(b.mon_ident());
    case BBOX_OUTPUT:
    case BBOX_DONTCARE:
        return 1;
    default:
        return 0;
    }
}

int output_count(const bix_tpen_fichier& p, const black_box& b)
{
    switch (b.mon_tpe()) {
    case BBOX_INSTANCE:
        return p.nb_outputs_external_ixcmodule(b.mon_ident());
    case BBOX_INPUT:
    case BBOX_CONSTANT:
        return 1;
    default:
        return 0;
    }
}

// The box's finding when its index into the runs, inputs or outputs is out
// of range; true when the box is sound.
bool check_box(const bix_tpen_fichier& p, int i, std::vector<drift_finding>& out)
{
    const black_box& b = p.ma_table_bbox()[static_cast<std::size_t>(i)];
    const char* what = nullptr;
    std::size_t count = 0;
    switch (b.mon_tpe()) {
    case BBOX_INSTANCE:
        what = "run";
        count = p.ma_table_external_ixcmodules().size();
        break;
    case BBOX_INPUT:
        what = "input";
        count = p.ma_table_inputs().size();
        break;
    case BBOX_OUTPUT:
        what = "output";
        count = p.ma_table_outputs().size();
        break;
    default:
        return true;
    }
    if (b.mon_ident() >= 0 && static_cast<std::size_t>(b.mon_ident()) < count)
        return true;
    drift_finding f;
    f.kind = drift_kind::box_range;
    f.box = i;
    f.message = "box " + std::to_string(i) + (b.mon_nom().empty() ? "" : " " + backquoted(b.mon_nom())) + ": "
        + what + " " + std::to_string(b.mon_ident()) + " out of range (" + counted(count, what) + ")";
    out.push_back(f);
    return false;
}

void check_link(const bix_tpen_fichier& now, int l, const std::vector<bool>& box_sound, std::vector<drift_finding>& out)
{
    const bix_tpen_lien& link = now.ma_table_liens()[static_cast<std::size_t>(l)];
    const int up = link.mon_ident_ixcmodule_amont();
    const int up_output = link.mon_ident_ixcmodule_amont_output();
    const int down = link.mon_ident_ixcmodule_aval();
    const int down_input = link.mon_ident_ixcmodule_aval_input();
    drift_finding f;
    f.link = l;
    const std::string head = "link " + std::to_string(l) + ": box " + std::to_string(up) + " output "
        + std::to_string(up_output) + " -> box " + std::to_string(down) + " input " + std::to_string(down_input)
        + ": ";
    const std::vector<black_box>& boxes = now.ma_table_bbox();
    auto report = [&](drift_kind kind, const std::string& what) {
        f.kind = kind;
        f.message = head + what;
        out.push_back(f);
    };
    bool sound = true;
    for (int box : {up, down})
        if (box != -1 && !in_range(boxes, box)) {
            report(drift_kind::link_range, "box " + std::to_string(box) + " out of range ("
                                               + counted(boxes.size(), "box") + ")");
            sound = false;
        }
    // An end that names no box has no port to check; a box with a fault of
    // its own (or a run not loaded) has no ports to check against.
    if (!sound || up == -1 || down == -1 || !box_sound[static_cast<std::size_t>(up)]
        || !box_sound[static_cast<std::size_t>(down)])
        return;
    const int outputs = output_count(now, boxes[static_cast<std::size_t>(up)]);
    if (up_output < 0 || up_output >= outputs) {
        report(drift_kind::link_range, "box " + std::to_string(up) + " has " + counted(outputs, "output"));
        sound = false;
    }
    const int inputs = input_count(now, boxes[static_cast<std::size_t>(down)]);
    if (down_input < 0 || down_input >= inputs) {
        report(drift_kind::link_range, "box " + std::to_string(down) + " has " + counted(inputs, "input"));
        sound = false;
    }
    std::string refusal;
    if (sound && !now.correct_type_interconnection(up, up_output, down, down_input, refusal)) {
        const std::size_t start = refusal.find_first_not_of(' ');
        report(drift_kind::link_type, start == std::string::npos ? refusal : refusal.substr(start));
    }
}

}  // namespace

const char* drift_kind_name(drift_kind kind)
{
    switch (kind) {
    case drift_kind::project_not_loaded:
        return "project_not_loaded";
    case drift_kind::not_loaded:
        return "not_loaded";
    case drift_kind::declared_twice:
        return "declared_twice";
    case drift_kind::module_name:
        return "module_name";
    case drift_kind::port_missing:
        return "port_missing";
    case drift_kind::port_added:
        return "port_added";
    case drift_kind::port_renamed:
        return "port_renamed";
    case drift_kind::port_moved:
        return "port_moved";
    case drift_kind::port_type:
        return "port_type";
    case drift_kind::box_range:
        return "box_range";
    case drift_kind::link_range:
        return "link_range";
    case drift_kind::link_type:
        return "link_type";
    }
    return "";
}

std::string run_module_file(const bix_declaration_ixcmodule& run, const std::string& project_dir)
{
    const std::string joined = run.chemin() + run.nom_fichier() + ".ixc";
    if (project_dir.empty() || std::filesystem::path(joined).is_absolute())
        return joined;
    return (std::filesystem::path(project_dir) / joined).string();
}

loaded_run load_run(const bix_declaration_ixcmodule& run, const std::string& project_dir)
{
    loaded_run r;
    r.file = run_module_file(run, project_dir);
    std::string instance;
    const std::unique_ptr<Module> module(parse_IXC(r.file, instance));
    if (!module)
        return r;
    // convert_IXC_IO asks each signal for its type, which ends the process
    // for a second declaration: such a module is reported, not converted.
    Bddexpressionwood* wood = module->getBddWood();
    for (const auto& side : {std::make_pair("input", module->getInputSignalList()),
                             std::make_pair("output", module->getOutputSignalList())})
        for (Signal* s : *side.second)
            if (s && !s->hasCurrentOccurrence(wood)) {
                r.state = loaded_run::declared_twice;
                r.twice_port = side.first;
                r.twice_name = s->getOriginalName();
                return r;
            }
    {
        warn_capture trace;
        r.interface = run_declaration(*module, run.chemin(), run.nom_fichier());
    }
    r.state = loaded_run::loaded;
    return r;
}

std::vector<drift_finding> check_project(const bix_tpen_fichier& project, const std::vector<loaded_run>& runs)
{
    std::vector<drift_finding> out;
    const std::vector<bix_declaration_ixcmodule>& kept = project.ma_table_external_ixcmodules();
    std::vector<bool> compared(kept.size(), false);
    std::list<bix_declaration_ixcmodule> interfaces;
    for (std::size_t r = 0; r < kept.size(); ++r) {
        const bix_declaration_ixcmodule& run = kept[r];
        const loaded_run* loaded = r < runs.size() ? &runs[r] : nullptr;
        drift_finding f;
        f.run = static_cast<int>(r);
        f.module_file = loaded ? loaded->file : std::string();
        f.message = "run " + std::to_string(r) + " " + backquoted(run.nom_module()) + ": ";
        if (!loaded || loaded->state == loaded_run::not_loaded) {
            f.kind = drift_kind::not_loaded;
            f.message += "not loaded from " + f.module_file;
            out.push_back(f);
            interfaces.push_back(run);
            continue;
        }
        if (loaded->state == loaded_run::declared_twice) {
            f.kind = drift_kind::declared_twice;
            f.port = loaded->twice_port;
            f.name = loaded->twice_name;
            f.message += "module declares " + f.port + " " + backquoted(f.name) + " twice, ports not compared";
            out.push_back(f);
            interfaces.push_back(run);
            continue;
        }
        compared[r] = true;
        const bix_declaration_ixcmodule& now = loaded->interface;
        if (now.nom_module() != run.nom_module()) {
            drift_finding n = f;
            n.kind = drift_kind::module_name;
            n.expected = run.nom_module();
            n.found = now.nom_module();
            n.message += "module says name " + backquoted(now.nom_module());
            out.push_back(n);
        }
        compare_ports(f, "input", run.ma_table_inputs(), now.ma_table_inputs(), out);
        compare_ports(f, "output", run.ma_table_outputs(), now.ma_table_outputs(), out);
        interfaces.push_back(now);
    }

    // The project as the loaded modules make it, for the link rule.
    bix_tpen_fichier now(project.mon_nom_module(), as_list(project.ma_table_types()),
                         as_list(project.ma_table_inputs()), as_list(project.ma_table_outputs()),
                         as_list(project.ma_table_locals()), interfaces);
    now.parse_ixcmodules(as_list(project.ma_table_bbox()));
    now.parse_liens(as_list(project.ma_table_liens()));

    std::vector<bool> box_sound(now.ma_table_bbox().size(), false);
    for (std::size_t b = 0; b < box_sound.size(); ++b) {
        box_sound[b] = check_box(now, static_cast<int>(b), out);
        const black_box& box = now.ma_table_bbox()[b];
        if (box_sound[b] && box.mon_tpe() == BBOX_INSTANCE)
            box_sound[b] = compared[static_cast<std::size_t>(box.mon_ident())];
    }
    for (std::size_t l = 0; l < now.ma_table_liens().size(); ++l)
        check_link(now, static_cast<int>(l), box_sound, out);
    return out;
}

std::vector<drift_finding> check_project_file(const std::string& project_file)
{
    std::unique_ptr<bix_tpen_fichier> project;
    std::string said;
    // The reader's scanner ends the process when its input cannot be read,
    // as a directory cannot.
    std::error_code ignored;
    if (!std::filesystem::is_directory(project_file, ignored)) {
        warn_capture capture;
        project.reset(bix_read_file(project_file));
        said = capture.str();
    }
    if (!project) {
        runs_warn() << said << std::flush;
        drift_finding f;
        f.kind = drift_kind::project_not_loaded;
        f.message = "project not loaded";
        return {f};
    }
    const std::string dir = std::filesystem::path(project_file).parent_path().string();
    std::vector<loaded_run> runs;
    for (const bix_declaration_ixcmodule& run : project->ma_table_external_ixcmodules())
        runs.push_back(load_run(run, dir));
    return check_project(*project, runs);
}
