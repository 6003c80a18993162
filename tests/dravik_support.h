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

namespace dravik_test {

// A signal of the module, in the module's wood (the module owns it).
inline Signal* signal_of(Module& m, const std::string& name)
{
    return new Signal(name, &m, m.getBddWood());
}

using namespace quilp_test;

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
