#include "ixc_import.h"

#include "expression.h"
#include "ixc_parser.h"
#include "module.h"
#include "runs_warn.h"

#include <iostream>
#include <memory>

std::list<bix_declaration_variables> convert_IXC_IO(const std::list<Signal*>* signals, Module* module)
{
    std::list<bix_declaration_variables> declarations;
    if (!signals)
        return declarations;
    for (Signal* s : *signals) {
        const std::string type = s->getValueType(module);
        if (s->isPre()) {
            runs_warn() << "no integration " << s->getOriginalName() << ": " << type << std::endl;
            continue;
        }
        runs_warn() << "integration " << s->getOriginalName() << ": " << type << std::endl;
        declarations.emplace_back(s->getOriginalName(), type);
    }
    return declarations;
}

bix_declaration_ixcmodule run_declaration(Module& module, const std::string& path, const std::string& file_name)
{
    const std::list<bix_declaration_variables> inputs = convert_IXC_IO(module.getInputSignalList(), &module);
    const std::list<bix_declaration_variables> outputs = convert_IXC_IO(module.getOutputSignalList(), &module);
    return bix_declaration_ixcmodule(path, file_name, module.getName(), inputs, outputs);
}

std::string ixc_file_name(const std::string& path, const std::string& file_name)
{
    return path + file_name + ".ixc";
}

bool declare_run(const std::string& path, const std::string& file_name, bix_declaration_ixcmodule& run)
{
    std::string instance;
    const std::unique_ptr<Module> module(parse_IXC(ixc_file_name(path, file_name), instance));
    if (!module)
        return false;
    run = run_declaration(*module, path, file_name);
    return true;
}
