#ifndef QUILP_PROJECT_CHECK_H
#define QUILP_PROJECT_CHECK_H

// Does a project still match its compiled modules? A project keeps a copy of
// each run's interface; when a module is recompiled with another interface
// the copy goes stale. The check loads each run's module as the runs monitor
// does, compares it with the copy, and checks the boxes and links against
// the loaded interfaces with the project's own type rule.

#include "bix_norm.h"

#include <string>
#include <vector>

enum class drift_kind {
    project_not_loaded,  // the project file could not be read
    not_loaded,          // a run's module could not be loaded
    declared_twice,      // the module declares an interface name twice: ports not compared
    module_name,         // the module's name is not the run's
    port_missing,        // a port of the project's copy is not in the module
    port_added,          // a port of the module is not in the project's copy
    port_renamed,        // the module has another name at the port's place
    port_moved,          // the module has the port at another place
    port_type,           // the module gives the port another type
    box_range,           // a box's run, input or output index is out of range
    link_range,          // a link's box or port index is out of range
    link_type            // a link refused by the type rule against the loaded interfaces
};

// The keyword of a kind in the JSON form: "project_not_loaded", "not_loaded" ...
const char* drift_kind_name(drift_kind kind);

// One finding. Fields that do not apply keep their defaults.
struct drift_finding {
    drift_kind kind = drift_kind::not_loaded;
    int run = -1;
    int box = -1;
    int link = -1;
    std::string module_file;  // the module file of a run finding
    std::string port;         // "input" or "output" for a port finding
    int index = -1;           // the port's place in the project's copy (in the module's for an added port)
    int module_index = -1;    // the port's place in the module (a moved port)
    std::string name;         // the port's name (the module's for an added port)
    std::string expected;     // what the project holds: type, name or module name
    std::string found;        // what the module holds instead
    std::string message;      // the finding as one line, without the project's name
};

// A run's interface as its module gives it.
struct loaded_run {
    enum state_t { not_loaded, loaded, declared_twice };
    state_t state = not_loaded;
    std::string file;                // the module file read
    std::string twice_port;          // "input" or "output" (declared_twice)
    std::string twice_name;
    bix_declaration_ixcmodule interface;  // the run's path and file name, the module's name and ports
};

// The module file of a run: path, file name and ".ixc" joined as the runs
// monitor joins them (plain concatenation); a relative result is taken from
// `project_dir` (left as it is when that is empty).
std::string run_module_file(const bix_declaration_ixcmodule& run, const std::string& project_dir);

// Loads a run's module with the module loader (its trace beside it, its
// messages on standard error; a fatal condition of the loader ends the
// process as always) and takes its ports as convert_IXC_IO gives them,
// memorized copies left out. The trace lines convert_IXC_IO writes on
// standard error are dropped. An input or output declared twice in the
// module is not converted: its second declaration has no type of its own.
loaded_run load_run(const bix_declaration_ixcmodule& run, const std::string& project_dir);

// The findings, in this order: each run in run order (not loaded, declared
// twice, module name, then its inputs and outputs: the project's ports in
// order, then the added ones in the module's order), each box in order, each
// link in order. `runs` holds one entry per run of the project; a run
// without one counts as not loaded. Types "" and "pure" are the same type
// when ports are compared; the link rule compares as the editor does.
std::vector<drift_finding> check_project(const bix_tpen_fichier& project, const std::vector<loaded_run>& runs);

// Reads the project file with the project reader (its trace beside it),
// loads every run relative to the project's folder and checks. The reader's
// standard error is dropped when the project reads (it holds only the dump
// of each run) and passed on when it does not; a project that cannot be read
// is one project_not_loaded finding.
std::vector<drift_finding> check_project_file(const std::string& project_file);

#endif
