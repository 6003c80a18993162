#ifndef QUILP_IXC_IMPORT_H
#define QUILP_IXC_IMPORT_H

// From a loaded compiled module to the declarations a project keeps of it.

#include "bix_norm.h"

#include <list>
#include <string>

class Module;
class Signal;

// One declaration (original name, value type: "pure" for a signal without
// value) per signal of the list, in list order; memorized copies are
// skipped. Each signal, skipped or not, is traced on standard error as
// "integration NAME: TYPE" ("no integration ..." when skipped).
std::list<bix_declaration_variables> convert_IXC_IO(const std::list<Signal*>* signals, Module* module);

// The run declaration of a loaded module: the path and file name given, the
// module's name, its typed inputs and outputs through convert_IXC_IO.
bix_declaration_ixcmodule run_declaration(Module& module, const std::string& path, const std::string& file_name);

// The compiled module a run names: its path and file name joined as they
// are (the path keeps its last "/"), then ".ixc".
std::string ixc_file_name(const std::string& path, const std::string& file_name);

// Loads ixc_file_name(path, file_name) (its trace beside it) and makes the
// run declaration of it: the path and file name as given, the module's own
// name, the typed inputs and outputs. False, with the loader's message on
// standard error, when the file cannot be loaded.
bool declare_run(const std::string& path, const std::string& file_name,
                 bix_declaration_ixcmodule& run);

#endif
