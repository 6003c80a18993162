// quilp-ixc: shows from the shell what compiled modules hold. Each file named
// is loaded in turn, in one process, by the editor's own loader (its trace
// is written beside the file as usual); everything is printed once, after
// the last load, as a JSON array (--json) or a short summary. With
// --project, it checks that a project still matches its compiled modules
// and prints one line (or JSON object) per difference.

#include "ixc_listing.h"
#include "ixc_parser.h"
#include "module.h"
#include "project_check.h"

#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace {

const char* const usage =
    "usage: quilp-ixc [--json] FILE.ixc...\n"
    "       quilp-ixc [--json] --project FILE.bix\n"
    "\n"
    "Loads each compiled module named and prints what it holds: without\n"
    "--json, the module name and its inputs and outputs with their types\n"
    "(\"pure\" for a signal without value); with --json, one JSON array with an\n"
    "object per file: signals by role, registers, memorized signals, BDD\n"
    "variables and order, equations with their dates, data declarations and\n"
    "bindings.\n"
    "\n"
    "With --project, reads the project and loads the module of each of its\n"
    "runs (a relative path taken from the project's folder), then prints one\n"
    "line per difference between the project and its modules: a module not\n"
    "loaded or renamed, an input or output missing, added, renamed, moved or\n"
    "retyped, a link the type rule now refuses, an index out of range. With\n"
    "--json, the same findings as one JSON array.\n"
    "\n"
    "Each load writes its trace beside the file (FILE.ixc.log, FILE.bix.log).\n"
    "Exit status: 0 when every file loaded (with --project: nothing to\n"
    "report), 1 when one did not (or something was reported), 2 on a usage\n"
    "error.\n";

int usage_error(const std::string& message)
{
    std::cerr << "quilp-ixc: " << message << "; try quilp-ixc -h" << std::endl;
    return 2;
}

void write_finding_json(std::ostream& os, const std::string& project, const drift_finding& f)
{
    os << "{\"file\": " << json_string(project) << ", \"kind\": " << json_string(drift_kind_name(f.kind));
    const std::pair<const char*, int> numbers[] = {{"run", f.run}, {"box", f.box}, {"link", f.link}};
    for (const auto& n : numbers)
        if (n.second >= 0)
            os << ", \"" << n.first << "\": " << n.second;
    if (!f.module_file.empty())
        os << ", \"module_file\": " << json_string(f.module_file);
    if (!f.port.empty())
        os << ", \"port\": " << json_string(f.port);
    if (f.index >= 0)
        os << ", \"index\": " << f.index;
    if (f.module_index >= 0)
        os << ", \"module_index\": " << f.module_index;
    if (!f.name.empty())
        os << ", \"name\": " << json_string(f.name);
    if (!f.expected.empty())
        os << ", \"project\": " << json_string(f.expected);
    if (!f.found.empty())
        os << ", \"module\": " << json_string(f.found);
    os << ", \"message\": " << json_string(project + ": " + f.message) << "}";
}

// Checks a project against its modules; prints once, after every load.
int check(const std::string& project, bool json)
{
    const std::vector<drift_finding> findings = check_project_file(project);
    std::ostringstream out;
    if (json) {
        out << "[";
        for (std::size_t i = 0; i < findings.size(); ++i) {
            out << (i ? ",\n  " : "\n  ");
            write_finding_json(out, project, findings[i]);
        }
        out << (findings.empty() ? "]\n" : "\n]\n");
    } else {
        for (const drift_finding& f : findings)
            out << project << ": " << f.message << "\n";
    }
    std::cout << out.str();
    return findings.empty() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv)
{
    bool json = false;
    bool options_done = false;
    std::vector<std::string> files;
    std::vector<std::string> projects;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (!options_done && arg == "--") {
            options_done = true;
        } else if (!options_done && (arg == "-h" || arg == "--help")) {
            std::cout << usage;
            return 0;
        } else if (!options_done && arg == "--json") {
            json = true;
        } else if (!options_done && arg == "--project") {
            if (i + 1 == argc)
                return usage_error("--project needs a project file");
            projects.push_back(argv[++i]);
        } else if (!options_done && arg.size() > 1 && arg[0] == '-') {
            return usage_error("unknown option '" + arg + "'");
        } else {
            files.push_back(arg);
        }
    }
    if (projects.size() > 1)
        return usage_error("one project at a time");
    if (!projects.empty() && !files.empty())
        return usage_error("--project takes no module file");
    if (!projects.empty())
        return check(projects.front(), json);
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
