#include "monitor_edits.h"

#include "ixc_import.h"
#include "ofl_dialogs.h"
#include "quilp_names.h"

#include <algorithm>

namespace {

const char* const pure_type = "pure";
const char* const run_separator = " --> ";
// Wording kept byte for byte: the texts are compared exactly.
const char* const signal_in_use = " is actually using: operation rejected ...";
const char* const type_in_use = " is actually using by a I/O or a run: operation rejected ...";
const char* const no_module = "no module loaded: browse to a compiled module first";
const char* const not_loaded = "ERROR about loading file : ";

}  // namespace

std::string io_line(const bix_declaration_variables& v)
{
    return (v.mon_type().empty() ? std::string(pure_type) : v.mon_type()) + ": " + v.mon_nom();
}

bix_declaration_variables parse_io_line(const std::string& line)
{
    const std::string::size_type colon = line.find(':');
    if (colon == std::string::npos)
        return bix_declaration_variables(trim_blanks(line), pure_type);
    return bix_declaration_variables(trim_blanks(line.substr(colon + 1)), trim_blanks(line.substr(0, colon)));
}

std::string prog_line(const bix_declaration_ixcmodule& run)
{
    return run.nom_module() + ":" + run.nom_fichier() + run_separator + run.chemin();
}

prog_line_parts parse_prog_line(const std::string& line)
{
    prog_line_parts parts;
    const std::string::size_type colon = line.find(':');
    parts.modulename = trim_blanks(line.substr(0, colon));
    if (colon == std::string::npos)
        return parts;
    const std::string rest = line.substr(colon + 1);
    const std::string::size_type arrow = rest.find(run_separator);
    parts.filename = trim_blanks(rest.substr(0, arrow));
    if (arrow != std::string::npos)
        parts.path = trim_blanks(rest.substr(arrow + std::string(run_separator).size()));
    return parts;
}

ixc_choice split_ixc_path(const std::string& chosen)
{
    ixc_choice choice;
    const std::string::size_type slash = chosen.rfind('/');
    const std::string::size_type start = slash == std::string::npos ? 0 : slash + 1;
    choice.path = chosen.substr(0, start);
    choice.filename = chosen.substr(start);
    const std::string extension = ".ixc";
    if (choice.filename.size() >= extension.size() &&
        choice.filename.compare(choice.filename.size() - extension.size(), extension.size(), extension) == 0)
        choice.filename.erase(choice.filename.size() - extension.size());
    return choice;
}

template <class T>
monitor_list<T>::monitor_list(const std::list<std::string>& in_use, const std::string& k, const std::string& text)
    : names_in_use(in_use), kind(k), in_use_text(text)
{
}

template <class T>
bool monitor_list<T>::acceptable(const std::string& name) const
{
    if (!checkvarname_with_pre_underscore(name)) {
        editor_dialogs().message("\"" + name + "\"\n is not a correct " + kind + " name");
        return false;
    }
    if (std::find(line_names.begin(), line_names.end(), name) != line_names.end()) {
        editor_dialogs().message(name + " is already declared");
        return false;
    }
    return true;
}

template <class T>
bool monitor_list<T>::del(int line)
{
    if (line < 0 || static_cast<std::size_t>(line) >= line_names.size())
        return false;
    const std::string& name = line_names[line];
    if (std::find(names_in_use.begin(), names_in_use.end(), name) != names_in_use.end()) {
        editor_dialogs().message(name + in_use_text);
        return false;
    }
    browser_lines.erase(browser_lines.begin() + line);
    line_names.erase(line_names.begin() + line);
    entries.erase(entries.begin() + line);
    return true;
}

template <class T>
void monitor_list<T>::append(const std::string& line, const std::string& name, const T& entry)
{
    browser_lines.push_back(line);
    line_names.push_back(name);
    entries.push_back(entry);
}

template class monitor_list<bix_declaration_variables>;
template class monitor_list<std::string>;
template class monitor_list<bix_declaration_ixcmodule>;

io_monitor_list::io_monitor_list(const std::vector<bix_declaration_variables>& table,
                                 const std::list<std::string>& in_use)
    : monitor_list(in_use, "variable", signal_in_use)
{
    for (const bix_declaration_variables& v : table)
        append(io_line(v), v.mon_nom(), v);
}

bool io_monitor_list::add(const std::string& type, const std::string& field)
{
    const std::string name = trim_blanks(field);
    if (name.empty() || !acceptable(name))
        return false;
    const std::string line = io_line(bix_declaration_variables(name, type));
    append(line, name, parse_io_line(line));
    return true;
}

type_monitor_list::type_monitor_list(const std::vector<std::string>& table, const std::list<std::string>& in_use)
    : monitor_list(in_use, "type", type_in_use)
{
    for (const std::string& t : table)
        append(t, t, t);
}

bool type_monitor_list::add(const std::string& field)
{
    const std::string name = trim_blanks(field);
    if (name.empty() || !acceptable(name))
        return false;
    append(name, name, name);
    return true;
}

prog_monitor_list::prog_monitor_list(const std::vector<bix_declaration_ixcmodule>& table,
                                     const std::list<std::string>& in_use)
    : monitor_list(in_use, "RUN", signal_in_use)
{
    for (const bix_declaration_ixcmodule& run : table)
        append(prog_line(run), run.nom_module(), run);
}

bool prog_monitor_list::browse()
{
    std::string chosen;
    if (!editor_dialogs().file_chooser("ixc file selection", "*.ixc", browse_directory, &chosen))
        return false;
    load(chosen);
    return true;
}

void prog_monitor_list::load(const std::string& chosen)
{
    const ixc_choice choice = split_ixc_path(chosen);
    path = choice.path;
    browse_directory = choice.path;
    filename = choice.filename;
    modulename.clear();
    // A failed load forgets the module loaded before: the fields no longer
    // show it, so "add run" must not declare it.
    loaded = declare_run(path, filename, loaded_run);
    if (loaded)
        modulename = loaded_run.nom_module();
    else
        editor_dialogs().message(not_loaded + ixc_file_name(path, filename));
}

bool prog_monitor_list::add(const std::string& module_field)
{
    if (!loaded) {
        editor_dialogs().message(no_module);
        return false;
    }
    const std::string name = trim_blanks(module_field);
    if (name.empty() || !acceptable(name))
        return false;
    const bix_declaration_ixcmodule run(loaded_run.chemin(), loaded_run.nom_fichier(), name,
                                        {loaded_run.ma_table_inputs().begin(), loaded_run.ma_table_inputs().end()},
                                        {loaded_run.ma_table_outputs().begin(), loaded_run.ma_table_outputs().end()});
    append(prog_line(run), name, run);
    loaded = false;
    modulename.clear();
    filename.clear();
    path.clear();
    return true;
}
