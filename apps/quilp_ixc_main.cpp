// quilp-ixc: shows from the shell what compiled modules hold. Each file named
// is loaded in turn, in one process, by the editor's own loader (its trace
// is written beside the file as usual); everything is printed once, after
// the last load, as a JSON array (--json) or a short summary.

#include "ixc_listing.h"
#include "ixc_parser.h"
#include "module.h"

#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

const char* const usage =
    "usage: quilp-ixc [--json] FILE.ixc...\n"
    "\n"
    "Loads each compiled module named and prints what it holds: without\n"
    "--json, the module name and its inputs and outputs with their types\n"
    "(\"pure\" for a signal without value); with --json, one JSON array with an\n"
    "object per file: signals by role, registers, memorized signals, BDD\n"
    "variables and order, equations with their dates, data declarations and\n"
    "bindings.\n"
    "\n"
    "Each load writes its trace beside the file (FILE.ixc.log).\n"
    "Exit status: 0 when every file loaded, 1 when one did not, 2 on a usage\n"
    "error.\n";

int usage_error(const std::string& message)
{
    std::cerr << "quilp-ixc: " << message << "; try quilp-ixc -h" << std::endl;
    return 2;
}

}  // namespace

int main(int argc, char** argv)
{
    bool json = false;
    bool options_done = false;
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (!options_done && arg == "--") {
            options_done = true;
        } else if (!options_done && (arg == "-h" || arg == "--help")) {
            std::cout << usage;
            return 0;
        } else if (!options_done && arg == "--json") {
            json = true;
        } else if (!options_done && arg.size() > 1 && arg[0] == '-') {
            return usage_error("unknown option '" + arg + "'");
        } else {
            files.push_back(arg);
        }
    }
    if (files.empty())
        return usage_error("no file named");

    std::ostringstream out;
    int status = 0;
    if (json)
        out << "[";
    for (std::size_t f = 0; f < files.size(); ++f) {
        std::string instance;
        const std::unique_ptr<Module> module(parse_IXC(files[f], instance));
        if (json)
            out << (f ? ",\n  " : "\n  ");
        else if (f)
            out << "\n";
        if (!module) {
            status = 1;
            if (json)
                write_failure_json(out, files[f], 2);
            else
                out << files[f] << ": not loaded\n";
            continue;
        }
        if (json) {
            const ixc_file_ids ids{module->getFileTypeIds(), module->getFileMethodIds(),
                                   module->getFileConstantIds()};
            write_module_json(out, files[f], *module, ids, 2);
        } else {
            write_module_summary(out, files[f], *module);
        }
    }
    if (json)
        out << "\n]\n";
    std::cout << out.str();
    return status;
}
