// Bindings and evaluation tables: the records, how evaluation nodes become
// data expressions (links, constants, built-in operations modulo 15, signal
// values, method calls), clocked and unclocked bindings, the fatal exits and
// the refused tables.

#include "ixc_support.h"

#include "parse_supl.h"

#include <gmock/gmock.h>

#include <vector>

using namespace ixc_test;
using dravik_test::debug_text;
using dravik_test::equation;
using testing::ExitedWithCode;
using testing::HasSubstr;

namespace {

// Inputs a : int, b : int, c; output o : int; local l : int. Variables:
// a 0 1, b 2 3, c 4 5, o 6 7, l 8 9, then set, reset, rtl (10 to 15).
const std::string declarations = "input: a : int b : int c ;\noutput: o : int ;\nlocal: l : int ;\n";
const std::string standard_data = "data:\ntype: int ;\nmethod: int f ( int , int ) ; int g ( ) ;\n"
                                  "constant: int k0 \"0\" ; int k1 \"1\" ;\nend:\n";

std::string bound_module(const std::string& bindings, const std::string& evaltable,
                         const std::string& data = standard_data)
{
    return module_text(declarations, equations(0, "", "")) + "binding:\n" + bindings + "end:\nevaltable:\n" + evaltable
        + "end:\n" + data;
}

// print_debug of the value bound to a signal (by internal name).
std::string bound_value(Module& m, const std::string& name)
{
    DataBinding* b = m.getBinding(name);
    return b ? debug_text(b->getValue()) : "<unbound>";
}

TEST(BindingRecords, EvaluationNodesCopyTheirArgumentsAndPrintThem)
{
    const std::list<long> args{1, 2};
    evalnodeparse node(evalnodeparse::METHODE_PREDEFINIE, 16, &args);
    node.nodeident(5);
    evalnodeparse copy = node;
    EXPECT_EQ(copy, node);
    const std::list<long> one{1};
    copy.arguments(&one);
    EXPECT_NE(copy, node);
    EXPECT_EQ(*node.arguments(), args);
    // No argument list differs from an empty one.
    const std::list<long> none;
    EXPECT_NE(evalnodeparse(evalnodeparse::METHODE_EXTERNE, 0, nullptr),
              evalnodeparse(evalnodeparse::METHODE_EXTERNE, 0, &none));

    std::ostringstream os;
    os << node << "|" << evalnodeparse(evalnodeparse::LINK, 3) << "|" << evalnodeparse(evalnodeparse::CONSTANTE, 1);
    EXPECT_EQ(os.str(), "5 METHODE PREDEFINIE 0 16 (1 2) |0 LINK 3 -1 () |0 CONSTANTE 1 -1 () ");
}

TEST(BindingRecords, NodeLinesPrintTheirBuiltNode)
{
    bddpp_manager manager;
    manager.New_var_last("x");
    parsed_nodes_class::table nodes;
    nodes.push_back(std::make_unique<parsed_nodes_class>(-1, 0, 0, 1));
    nodes.push_back(std::make_unique<parsed_nodes_class>(0, 0, 0, -1));
    EXPECT_EQ(text_of([&](std::ostream& os) { os << *nodes[1]; }), "0 0 -1 0 <not connected>");
    parsed_nodes_fault fault;
    bdd_node* built = parsed_nodes_class::build(1, &manager, nodes, fault);
    ASSERT_NE(built, nullptr) << fault.text;
    EXPECT_EQ(built, manager.Bdd_var_by_index(0).node());
    EXPECT_EQ(text_of([&](std::ostream& os) { os << *nodes[1]; }), "0 0 -1 0 #" + std::to_string(built->global_id()));
}

// Only the unclocked form adds the first id offset to the value id; a
// signal value keeps its first two arguments only.
TEST(BindingRecords, ParserHelpersOffsetUnclockedValueIdsAndTrimSignalValues)
{
    class_ixc_parser parser;
    parser.premier_bdd_id = 10;
    const couplelong signal(1, 2), clock(3, 4);
    EXPECT_EQ(parser.new_binding(signal, 7, nullptr), bindingparse(1, 12, 7, -1, -1));
    EXPECT_EQ(parser.new_binding(signal, 7, &clock), bindingparse(1, 2, 7, 3, 4));

    const std::list<long> three{0, 1, 999};
    for (long code : {14L, 29L}) {
        std::unique_ptr<evalnodeparse> n(parser.new_evaluation(evalnodeparse::METHODE_PREDEFINIE, code, &three));
        EXPECT_EQ(*n->arguments(), (std::list<long>{0, 1})) << code;
    }
    std::unique_ptr<evalnodeparse> sup(parser.new_evaluation(evalnodeparse::METHODE_PREDEFINIE, 13, &three));
    EXPECT_EQ(*sup->arguments(), three);
    std::unique_ptr<evalnodeparse> call(parser.new_evaluation(evalnodeparse::METHODE_EXTERNE, 14, &three));
    EXPECT_EQ(*call->arguments(), three);
}

TEST_F(ReaderTest, LinksLeadToConstantsByTheirGlobalIndex)
{
    // k1 and k9 get global indices 1 and 2 after a first file made k0, k1.
    load_result first = load_text(module_text("", equations(0, "", ""))
                                  + "data: type: method: constant: int k0 ; int k1 ; end:\n");
    ASSERT_NE(first.module, nullptr) << first.err;
    load_result r = load_text(bound_module("(6,7) : value: 0 ;\n(8,9) : value: 4 ;\n",
                                           "0 : 1 ;\n1 : $ 1 ;\n2 : 3 ;\n3 : $ 0 ;\n4 : 5 ;\n5 : 2 ;\n",
                                           "data: type: int ; method: constant: int k1 ; int k9 \"9\" ; end:\n"));
    ASSERT_NE(r.module, nullptr) << r.err;
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(bound_value(*r.module, "o"), "C: 2");
    EXPECT_EQ(bound_value(*r.module, "l"), "C: 1");
    EXPECT_TRUE(r.module->getBinding("o")->getValue()->isDataConstant());
}

TEST_F(ReaderTest, BuiltInOperationCodesWrapModuloFifteenAndSignalValuesTakeVariableIds)
{
    load_result r = load_text(bound_module("(6,7) : value: 0 ;\n(8,9) : value: 3 ;\n(2,3) : value: 4 ;\n",
                                           "0 : %% 16 ( 1 , 2 ) ;\n1 : $ 0 ;\n2 : $ 1 ;\n"
                                           "3 : %% 19 ( 1 ) ;\n4 : %% 29 ( 0 , 9 ) ;\n"));
    ASSERT_NE(r.module, nullptr) << r.err;
    Module& m = *r.module;
    EXPECT_EQ(bound_value(m, "o"), " 1(C: 0, C: 1)"); // Minus
    EXPECT_EQ(bound_value(m, "l"), "4(C: 0)");        // Uminus
    DataExpr* v = m.getBinding("b")->getValue();
    ASSERT_TRUE(v->isDataSignalValue());
    EXPECT_EQ(static_cast<DataSignalValue*>(v)->getSignal(), m.getInputSignal("a"));

    // A signal value's arguments are variable ids, extra ones dropped: 999
    // is no node, and a signal value never looks its arguments up as nodes.
    r = load_text(bound_module("(6,7) : value: 0 ;\n", "0 : %% 14 ( 2 , 3 , 999 ) ;\n"));
    ASSERT_NE(r.module, nullptr) << r.err;
    EXPECT_EQ(bound_value(*r.module, "o"), "b");
}

TEST_F(ReaderTest, ADollarBeforeAnArgumentIsIgnoredAndSharedNodesAreBuiltForEachUse)
{
    load_result r = load_text(bound_module("(6,7) : value: 0 ;\n(8,9) : value: 3 ;\n",
                                           "0 : %% 0 ( $ 1 , 1 ) ;\n1 : $ 0 ;\n3 : % 1 ( ) ;\n"));
    ASSERT_NE(r.module, nullptr) << r.err;
    Module& m = *r.module;
    // $ 1 is node 1 (constant 0), not constant 1.
    EXPECT_EQ(bound_value(m, "o"), " 0(C: 0, C: 0)");
    auto* sum = static_cast<DataBinaryOp*>(m.getBinding("o")->getValue());
    EXPECT_NE(sum->getLeftArg(), sum->getRightArg());
    auto* call = static_cast<DataMethodCall*>(m.getBinding("l")->getValue());
    EXPECT_EQ(call->getMethodIndex(), 1);
    ASSERT_NE(call->getArgList(), nullptr);
    EXPECT_TRUE(call->getArgList()->empty());
}

TEST_F(ReaderTest, ClockedBindingsMarkTheirClockAndExplicitMinusOnesMeanNoClock)
{
    load_result r = load_text(bound_module("(6,7) : value: 0 clock: (4,5) ;\n(8,9) : value: 0 clock: (-1,-1) ;\n"
                                           "(2,3) : value: 1 clock: (99,5) ;\n",
                                           "0 : %% 14 ( 1 ) ;\n1 : $ 0 ;\n"));
    ASSERT_NE(r.module, nullptr) << r.err;
    Module& m = *r.module;
    Signal* c = m.getInputSignal("c");
    EXPECT_TRUE(c->isClock());
    EXPECT_EQ(m.getBinding("o")->getClock(), c);
    EXPECT_TRUE(m.getOutputSignal("o")->isValue());
    EXPECT_EQ(equation(m, 6), nullptr);
    // Unclocked: the bound signal is not marked valued, and its status and
    // value variables get abstract equations over what the value reads.
    EXPECT_EQ(m.getBinding("l")->getClock(), nullptr);
    EXPECT_FALSE(m.getLocalSignal("l")->isValue());
    for (std::size_t var : {8u, 9u}) {
        ASSERT_NE(equation(m, var), nullptr);
        EXPECT_EQ(equation(m, var)->getExpDef(), "VALUE_SIGNAL");
        EXPECT_EQ(equation(m, var)->getVarsDependance(), (std::set<std::int64_t>{0, 1}));
    }
    // A clock id that names no signal: unclocked; a constant reads nothing.
    EXPECT_EQ(m.getBinding("b")->getClock(), nullptr);
    EXPECT_EQ(equation(m, 2), nullptr);
}

TEST_F(ReaderTest, BindingsFindSignalsAsGetSignalDoesInputsFirst)
{
    // x is an input and a data signal: the input is found first. (Typed, the
    // second declaration would end the load: see the reader's tests.)
    load_result r = load_text(module_text("input: x : int ;\ndata_signal: x ;\n", equations(0, "", ""))
                              + "binding: (0,1) : value: 0 ; end: evaltable: 0 : %% 14 ( 1 ) ; end:\n");
    ASSERT_NE(r.module, nullptr) << r.err;
    Module& m = *r.module;
    Signal* input = m.getInputSignalList()->front();
    ASSERT_NE(input, m.getDataSignalList()->front());
    DataBinding* b = m.getBinding("x");
    EXPECT_EQ(b->getSignal(), input);
    EXPECT_EQ(static_cast<DataSignalValue*>(b->getValue())->getSignal(), input);
}

TEST_F(ReaderTest, ThermostatExampleBindsWithAndWithoutClock)
{
    load_result r = load_text(read_file(example_path("thermostat.ixc")));
    ASSERT_NE(r.module, nullptr) << r.err;
    EXPECT_EQ(r.err, "");
    Module& m = *r.module;
    EXPECT_EQ(bound_value(m, "error"), " 1(temp, setpoint)");
    EXPECT_EQ(bound_value(m, "command"), "0( 2(error, gain), C: 0, C: 1)");
    EXPECT_TRUE(m.getInputSignal("temp")->isClock());
    EXPECT_EQ(m.getBinding("command")->getClock(), m.getInputSignal("temp"));
    EXPECT_EQ(equation(m, 10)->getVarsDependance(), (std::set<std::int64_t>{0, 1, 2, 3}));
    EXPECT_EQ(m.getFileMethodIds(), (std::vector<int>{0}));
    EXPECT_EQ(Compilation::getDataMethodTable()->getMethodById(0)->getName(), "clamp");
}

TEST_F(ReaderTest, LongChainsOfLinksAndOperationsBuildWithoutRecursion)
{
    std::string links = "0 : $ 0 ;\n";
    for (int i = 1; i <= 200000; ++i)
        links += std::to_string(i) + " : " + std::to_string(i - 1) + " ;\n";
    std::string ops = "300000 : $ 1 ;\n";
    for (int i = 300001; i <= 400000; ++i)
        ops += std::to_string(i) + " : %% 4 ( " + std::to_string(i - 1) + " ) ;\n";
    load_result r = load_text(
        bound_module("(6,7) : value: 200000 ;\n(8,9) : value: 400000 ;\n(2,3) : value: 199999 ;\n", links + ops), "", 0);
    ASSERT_NE(r.module, nullptr) << r.err;
    Module& m = *r.module;
    EXPECT_EQ(bound_value(m, "o"), "C: 0");
    EXPECT_EQ(bound_value(m, "b"), "C: 0");
    long depth = 0;
    for (DataExpr* e = m.getBinding("l")->getValue(); e->isDataUnaryOp(); e = static_cast<DataUnaryOp*>(e)->getArg())
        ++depth;
    EXPECT_EQ(depth, 100000);
}

TEST_F(ReaderTest, EvaluationTablesThatCannotBeBuiltAreRefusedWithOneLine)
{
    struct refusal {
        std::string evaltable;
        std::string message;
        std::string data = standard_data;
    };
    // Node k adds node k - 1 to itself: 2^31 - 1 tree nodes from 31 lines.
    std::string doubling;
    for (int k = 30; k >= 1; --k)
        doubling += std::to_string(k) + " : %% 0 ( " + std::to_string(k - 1) + " , " + std::to_string(k - 1) + " ) ;\n";
    doubling += "0 : $ 0 ;\n";
    const std::vector<refusal> cases = {
        {"0 : 1 ;\n1 : 0 ;\n", "evaluation node 0: cycle among evaluation nodes (node 1 leads back to it)"},
        {"0 : %% 4 ( 1 ) ;\n1 : 2 ;\n2 : %% 7 ( 0 ) ;\n",
         "evaluation node 0: cycle among evaluation nodes (node 2 leads back to it)"},
        {"0 : %% 0 ( 1 , 0 ) ;\n1 : $ 0 ;\n",
         "evaluation node 0: cycle among evaluation nodes (node 0 leads back to it)"},
        {"0 : $ 2 ;\n", "evaluation node 0: constant number 2 is not declared in the data section (2 constants)"},
        {"0 : $ -1 ;\n", "evaluation node 0: constant number -1 is not declared in the data section (2 constants)"},
        {"0 : $ 0 ;\n", "evaluation node 0: constant number 0 is not declared in the data section (0 constants)", ""},
        {"0 : % 2 ( ) ;\n", "evaluation node 0: method number 2 is not declared in the data section (2 methods)"},
        {"0 : %% 14 ( ) ;\n", "evaluation node 0: signal value without a signal"},
        {doubling, "evaluation node 30: the data expressions reach more than 4194304 nodes"},
    };
    for (const refusal& c : cases) {
        const std::string root = c.evaltable.substr(0, c.evaltable.find(' '));
        load_result r = load_text(bound_module("(6,7) : value: " + root + " ;\n", c.evaltable, c.data));
        EXPECT_EQ(r.module, nullptr) << c.message;
        EXPECT_EQ(r.err, "t.ixc: " + c.message + "\n");
    }
}

TEST(BindingsDeathTest, MissingNodesBadOperatorsUnknownNodeKindsAndUnknownSignalsEndTheProcess)
{
    const std::string missing = "Error: Illegal operation!\nbinding_declaration_parse::get_evalnode: node_not_found\n";
    const std::string bad_operator = "Error: Illegal operation!\nbinding_declaration_parse::dataexpr: invalid_operator\n";
    const struct {
        const char* binding;
        const char* evaltable;
        std::string message;
        const char* instance;
    } cases[] = {
        {"(6,7) : value: 5 ;\n", "0 : $ 0 ;\n", missing, ""},
        {"(6,7) : value: 0 ;\n", "0 : %% 0 ( 1 , 7 ) ;\n1 : $ 0 ;\n", missing, ""},
        {"(6,7) : value: 0 ;\n", "0 : 3 ;\n", missing, ""},
        {"(6,7) : value: 0 ;\n", "0 : %% 0 ( 1 , 1 , 1 ) ;\n1 : $ 0 ;\n", bad_operator, ""},
        {"(6,7) : value: 0 ;\n", "0 : %% 0 ( ) ;\n1 : $ 0 ;\n", bad_operator, ""},
        {"(99,7) : value: 0 ;\n", "0 : $ 0 ;\n", "unknown data signal:99\n", ""},
        {"(6,7) : value: 0 ;\n", "0 : %% 14 ( 99 ) ;\n", "binding_declaration_parse::dataexpr: signal not found: 99\n", ""},
        // With an instance suffix a local is not found by its declared name.
        {"(8,9) : value: 0 ;\n", "0 : $ 0 ;\n", "unknown data signal:l\n", "_i"},
        {"(6,7) : value: 0 ;\n", "0 : %% 14 ( 9 ) ;\n", "binding_declaration_parse::dataexpr2: signal not found: l\n", "_i"},
    };
    for (const auto& c : cases)
        EXPECT_EXIT(load_uncaptured(bound_module(c.binding, c.evaltable), c.instance), ExitedWithCode(1),
                    HasSubstr(c.message))
            << c.binding << c.evaltable;
    binding_declaration_parse section(nullptr, new std::list<evalnodeparse>{evalnodeparse(7, 0)}, nullptr, nullptr,
                                      nullptr);
    EXPECT_EXIT(section.dataexpr(0, nullptr), ExitedWithCode(1),
                HasSubstr("Error: Illegal operation!\nbinding_declaration_parse::dataexpr: unknown_eval_type\n"));
}

} // namespace
