#ifndef EDITOR_MONITOR_EDITS_H
#define EDITOR_MONITOR_EDITS_H

// What the declaration monitors do with their lists, apart from the widgets:
// the browser lines, adding under the name rule, deleting unless in use, and
// the table handed back on OK. A form reads its widgets, calls these and
// shows lines() again; refusals go to editor_dialogs().message(), so all of
// it runs without a display.

#include "bix_norm.h"

#include <list>
#include <string>
#include <vector>

// Signal lines: "type: name", "pure" standing for an empty type.
std::string io_line(const bix_declaration_variables& v);
// A line back into a declaration: split at the first ":", both parts
// trimmed (no ":" reads as a pure signal of that name).
bix_declaration_variables parse_io_line(const std::string& line);

// Run lines: "module:file --> path".
std::string prog_line(const bix_declaration_ixcmodule& run);
struct prog_line_parts {
    std::string modulename;
    std::string filename;
    std::string path;
};
// Split at the first ":" and the first " --> " after it, parts trimmed.
prog_line_parts parse_prog_line(const std::string& line);

// A chosen compiled module split after its last "/": the path keeps that
// "/" and the file name loses a trailing ".ixc", so that
// ixc_file_name(path, filename) names the chosen file again.
struct ixc_choice {
    std::string path;
    std::string filename;
};
ixc_choice split_ixc_path(const std::string& chosen);

// What the three lists share: lines, the name each line declares, the
// entries behind them (handed back on OK), and the refusals of names and
// deletions.
template <class T>
class monitor_list {
public:
    const std::vector<std::string>& lines() const { return browser_lines; }
    // "del ..." on line `line` (0-based; anything else does nothing): true
    // when deleted; an entry in use stays, after its refusal.
    bool del(int line);
    // The table on OK, in line order.
    std::list<T> result() const { return {entries.begin(), entries.end()}; }

protected:
    // `kind` ends the bad-name text ("variable", "type", "RUN"); `in_use_text`
    // follows the name of an entry that cannot be deleted.
    monitor_list(const std::list<std::string>& in_use, const std::string& kind, const std::string& in_use_text);

    // True when the (trimmed) name passes the rule and is not declared yet;
    // otherwise its refusal has been shown.
    bool acceptable(const std::string& name) const;
    void append(const std::string& line, const std::string& name, const T& entry);

private:
    std::vector<std::string> browser_lines;
    std::vector<std::string> line_names;
    std::vector<T> entries;
    std::list<std::string> names_in_use;
    std::string kind;
    std::string in_use_text;
};

// The signal monitor ("INPUTS", "OUTPUTS", "LOCALS"). Entries shown when it
// opened come back exactly as they were; added ones are read back from their
// lines.
class io_monitor_list : public monitor_list<bix_declaration_variables> {
public:
    io_monitor_list(const std::vector<bix_declaration_variables>& table, const std::list<std::string>& in_use);

    // "add signal" with the name field's text and the chosen type's name:
    // true when a line was added (the field is then cleared); an empty name
    // does nothing.
    bool add(const std::string& type, const std::string& field);
};

// The types monitor.
class type_monitor_list : public monitor_list<std::string> {
public:
    type_monitor_list(const std::vector<std::string>& table, const std::list<std::string>& in_use);

    bool add(const std::string& field);
};

// The runs monitor ("IXC modules"): browsing loads a module and fills the
// three fields; "add run" declares the module loaded last under the name
// in the "Module name" field.
class prog_monitor_list : public monitor_list<bix_declaration_ixcmodule> {
public:
    prog_monitor_list(const std::vector<bix_declaration_ixcmodule>& table, const std::list<std::string>& in_use);

    // "browse": the file chooser (opening where the last choice was), then
    // the load of the chosen module (its trace lines on standard error, a
    // message box when it does not load). True when a file was chosen: the
    // fields then show the choice.
    bool browse();
    // "add run" with the "Module name" field's text: true when a line was
    // added (the fields are then cleared).
    bool add(const std::string& module_field);

    // What the three fields show.
    const std::string& modulename_field() const { return modulename; }
    const std::string& filename_field() const { return filename; }
    const std::string& path_field() const { return path; }

private:
    std::string modulename;
    std::string filename;
    std::string path;
    std::string browse_directory;
    // The run made from the last module loaded, until it is added.
    bool loaded = false;
    bix_declaration_ixcmodule loaded_run;

    void load(const std::string& chosen);
};

#endif
