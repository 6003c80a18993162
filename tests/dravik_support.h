#ifndef QUILP_DRAVIK_SUPPORT_H
#define QUILP_DRAVIK_SUPPORT_H

// Helpers shared by the module-layer suites.

#include "Bddexpression.h"
#include "data.h"
#include "expression.h"
#include "module.h"
#include "signal_manager.h"
#include "test_support.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace dravik_test {

// A signal of the module, in the module's wood (the module owns it).
inline Signal* signal_of(Module& m, const std::string& name)
{
    return new Signal(name, &m, m.getBddWood());
}

using namespace quilp_test;

// The names of the wood's variables, in their order.
inline std::vector<std::string> variable_names(Bddexpressionwood* w)
{
    std::vector<std::string> names;
    for (std::int64_t i = 0; i < w->Nb_bdd_vars(); ++i)
        names.push_back(w->getManager()->Name_var_by_index(i));
    return names;
}

inline std::vector<std::string> variable_names(Module& m) { return variable_names(m.getBddWood()); }

// The equation of variable `var` in the module's wood (null if it has none).
inline Bddexpression* equation(Module& m, std::int64_t var)
{
    return m.getBddWood()->Exp_table().at(static_cast<std::size_t>(var));
}

inline std::string printed(Expression* e)
{
    std::ostringstream os;
    e->print(os);
    return os.str();
}

inline std::string debug_text(DataExpr* e)
{
    std::ostringstream os;
    e->print_debug(os);
    return os.str();
}

// Each case starts with empty process-wide data tables.
class DataTablesTest : public testing::Test {
protected:
    void SetUp() override { Compilation::resetDataTables(); }
    void TearDown() override { Compilation::resetDataTables(); }
};

} // namespace dravik_test

#endif
