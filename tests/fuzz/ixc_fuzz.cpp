// libFuzzer target: the compiled-module reader on any bytes, through the
// stream entry (no file is written), then what the editor and the inspector
// read from a loaded module: lists, registers, equations and their one-paths,
// dependencies, dates and cycles, bindings and the types of their values.
//
// Fatal conditions end a real run with status 1. Here the ending throws
// instead, and the throw is caught below, so that the fuzzer goes on; values
// on the parser's stack are then lost, so run with -detect_leaks=0 or filter
// the leak reports of inputs that end this way.

#include "Bddexpression.h"
#include "bdd_fatal.h"
#include "data.h"
#include "expression.h"
#include "ixc_parser.h"
#include "module.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

namespace {

struct fatal_end {};

[[noreturn]] void throw_fatal_end()
{
    throw fatal_end{};
}

void exercise(Module& m)
{
    Bddexpressionwood* wood = m.getBddWood();
    bddpp_manager* man = wood->getManager();
    for (std::list<Signal*>* list : {m.getInputSignalList(), m.getOutputSignalList(), m.getDataSignalList(),
                                     m.getLocalSignalList()}) {
        for (Signal* s : *list) {
            long status = 0, value = 0;
            s->findValueType(&m);
            if (s->findBddIds(&m, wood, status, value))
                m.getSignalById(status, wood);
        }
    }
    for (regclass* r : *m.getRegisterList())
        if (r)
            r->actual_var()->getOriginalName();
    std::vector<std::vector<bdd_literal>> paths;
    for (std::int64_t k : wood->Exp_set()) {
        Bddexpression* e = wood->exp_by_index(k);
        if (!e->isAbstract())
            man->Bdd_one_paths(e->getBddExp(), 1000, paths);
        for (std::int64_t j : e->getVarsDependance())
            man->Name_var_by_index(j);
    }
    wood->loop_detection();
    wood->earliest_sort();
    wood->latest_sort();
    std::ostringstream out;
    m.debugPrintBinding(out);
    if (std::map<std::string, DataBinding*>* table = m.getDataTable())
        for (auto& entry : *table)
            entry.second->getValue()->getType(&m);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    set_fatal_ending(throw_fatal_end);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Compilation::resetDataTables();
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    std::ostringstream log;
    std::string instance;
    try {
        std::unique_ptr<Module> m(parse_IXC_stream(in, log, "fuzz.ixc", instance));
        if (m)
            exercise(*m);
    } catch (const fatal_end&) {
    }
    Compilation::resetDataTables();
    return 0;
}
