// The compiled-module reader: tokens, syntax errors with their lines, the
// trace, signals and their variables, registers, memorized signals, the node
// table and its refusals, data declarations across files, the file entry,
// the active-parser pointer, and the shipped examples.

#include "ixc_support.h"

#include "exceptions.h"

#undef yyFlexLexer
#define yyFlexLexer ixcFlexLexer
#include <FlexLexer.h>

#include <gmock/gmock.h>

#include <vector>

using namespace ixc_test;
using dravik_test::equation;
using dravik_test::variable_names;
using testing::ExitedWithCode;
using testing::HasSubstr;

namespace {

const std::string no_equations = equations(0, "", "");

std::vector<std::string> original_names(const std::list<Signal*>& signals)
{
    std::vector<std::string> names;
    for (Signal* s : signals)
        names.push_back(s ? s->getOriginalName() : "<null>");
    return names;
}

TEST_F(ReaderTest, MinimalFileLoadsAnEmptyModuleWithItsThreeConnexionSignals)
{
    load_result r = load_text("module: m\n0 0\nconnexion: a b c ;\n" + no_equations);
    ASSERT_NE(r.module, nullptr) << r.err;
    Module& m = *r.module;
    EXPECT_EQ(r.err, "");
    EXPECT_EQ(m.getName(), "m");
    for (auto* list : {m.getInputSignalList(), m.getOutputSignalList(), m.getDataSignalList(), m.getLocalSignalList()})
        EXPECT_TRUE(list->empty());
    EXPECT_TRUE(m.getRegisterList()->empty() && m.getPreSignalList()->empty());
    EXPECT_EQ(original_names({m.getSet(), m.getReset(), m.getRtl()}), (std::vector<std::string>{"a", "b", "c"}));
    EXPECT_EQ(variable_names(m), (std::vector<std::string>{"_s_a", "_v_a", "_s_b", "_v_b", "_s_c", "_v_c"}));
    EXPECT_EQ(m.getBddWood()->exp_number(), 0);
    EXPECT_EQ(m.getBddWood()->Nb_level(), 0);
    EXPECT_FALSE(m.getReincarnate());
    EXPECT_EQ(m.getFinalised(), 0);
    EXPECT_EQ(m.getDataTable(), nullptr);
    EXPECT_TRUE(m.getFileTypeIds().empty());

    r = load_text("module: m\n7 -1\nconnexion: a b c ;\n" + no_equations);
    ASSERT_NE(r.module, nullptr);
    EXPECT_TRUE(r.module->getReincarnate());
    EXPECT_EQ(r.module->getFinalised(), 1);
}

TEST_F(ReaderTest, TokensAreTheLongestMatchAndTheEarlierRuleOnTiesOthersGoToTheLog)
{
    // 12a, 1e5 and .5 are identifiers, keywords need their colon; a lone
    // minus sign is no token, nor the first of two before digits.
    load_result r = load_text("module: m\n0 --5\ninput: 12a 1e5 .5 x.y@z MODULE: t datasignal: u - b ;\n"
                              "connexion: set reset rtl ;\n" + no_equations,
                              "", 0);
    ASSERT_NE(r.module, nullptr) << r.err;
    Module& m = *r.module;
    EXPECT_EQ(original_names(*m.getInputSignalList()),
              (std::vector<std::string>{"12a", "1e5", ".5", "x.y@z", "MODULE", "datasignal", "b"}));
    EXPECT_EQ(m.getInputSignal("MODULE")->getValueType(&m), "t");
    EXPECT_EQ(m.getInputSignal("datasignal")->getValueType(&m), "u");
    EXPECT_EQ(m.getFinalised(), 1);
    EXPECT_EQ(r.log, "--");
    EXPECT_EQ(r.err, "");

    // Characters that start no token go to the log. "" and a string holding
    // an at sign are no strings: their quotes are echoed, the constant
    // without value remains.
    r = load_text("module: m\r\n0 0\nconnexion: a b c ;\n" + no_equations
                                  + "data: type: method: constant: int c \"\" ; end:\n",
                              "", 0);
    ASSERT_NE(r.module, nullptr) << r.err;
    EXPECT_EQ(r.log, "\r\"\"");
    ConstantDecl* c = Compilation::getDataConstantTable()->getConstant("c");
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(c->getValue(), nullptr);

    r = load_text("module: m\n0 0\nconnexion: a b c ;\n" + no_equations
                  + "data: type: method: constant: int d \"a@b\" ; end:\n");
    EXPECT_EQ(r.module, nullptr);
    EXPECT_EQ(r.err, "line 7: syntax error, unexpected TOKEN_IDENT, expecting TOKEN_CHAINE_CARACTERES or TOKEN_SEP\n");
}

TEST_F(ReaderTest, SyntaxErrorsNameTheLineAndBisonsTokens)
{
    struct error_case {
        std::string text;
        std::string message;
    };
    const std::vector<error_case> cases = {
        {"module : m\n", "line 1: syntax error, unexpected TOKEN_IDENT, expecting TOKEN_MODULE"},
        {"MODULE: m\n", "line 1: syntax error, unexpected TOKEN_IDENT, expecting TOKEN_MODULE"},
        {"module: m\n0", "line 2: syntax error, unexpected $end, expecting TOKEN_NUMBER"},
        {"module: m\n1.5 0\n", "line 2: syntax error, unexpected TOKEN_REAL, expecting TOKEN_NUMBER"},
        {"// a comment\n// another one\n\nmodule: m // the name\n0 0\nconnexion: a b ;\n",
         "line 6: syntax error, unexpected TOKEN_SEP, expecting TOKEN_IDENT"},
        {"module: m\n0 0\ninput: ;\n", "line 3: syntax error, unexpected TOKEN_SEP, expecting TOKEN_IDENT"},
        // The empty register and memorized sections are reduced by default
        // before the input keyword is found out of place.
        {"module: m\n0 0\nlocal: a ;\ninput: b ;\n",
         "line 4: syntax error, unexpected TOKEN_INPUTS, expecting TOKEN_CONNEXION"},
        {"module: m\n0 0\nconnexion: a b c ;\nexpressions:\n",
         "line 4: syntax error, unexpected TOKEN_EXPRESSION_DEF, expecting TOKEN_EQUATION_DEF"},
        {"module: m\n0 0\nconnexion: a b c ;\nequation_def: 1\n0 : -1 : 0 : 0 1\n",
         "line 5: syntax error, unexpected TOKEN_NUMBER, expecting TOKEN_VIRGULE"},
        {"module: m\n0 0\nconnexion: a b c ;\n" + no_equations + "binding:\n",
         "line 8: syntax error, unexpected $end, expecting TOKEN_END or TOKEN_POUVRANTE"},
        {"module: m\n0 0\nconnexion: a b c ;\n" + no_equations + "binding: end: evaltable: 0 : %% 14 ( 1 0 ) ;\n",
         "line 7: syntax error, unexpected TOKEN_NUMBER, expecting TOKEN_VIRGULE or TOKEN_PFERMANTE"},
    };
    for (const error_case& c : cases) {
        load_result r = load_text(c.text);
        EXPECT_EQ(r.module, nullptr) << c.text;
        EXPECT_EQ(r.err, c.message + "\n") << c.text;
    }
    // The trace is complete up to the error.
    EXPECT_EQ(load_text("module: m\n0 x\n").log, "13 --> m\n2 --> definition nom declaration\n19 --> 0\n");
}

TEST_F(ReaderTest, SignalsTakeTheirVariablesInDeclarationOrderAndTheInstanceSuffix)
{
    load_result r = load_text(module_text("input: a : int b ;\noutput: o ;\ndata_signal: d : t ;\nlocal: l ;\n"
                                          "memorized: p a ;\n",
                                          no_equations),
                              "_1");
    ASSERT_NE(r.module, nullptr) << r.err;
    Module& m = *r.module;
    EXPECT_EQ(variable_names(m),
              (std::vector<std::string>{"_s_a_1", "_v_a_1", "_s_b_1", "_v_b_1", "_s_o_1", "_v_o_1", "_s_d_1", "_v_d_1",
                                        "_s_l_1", "_v_l_1", "_s_p_1", "_v_p_1", "_s_set", "_v_set", "_s_reset",
                                        "_v_reset", "_s_rtl", "_v_rtl"}));
    Signal *a = m.getInputSignal("a"), *d = m.getDataSignal("d_1"), *l = m.getLocalSignal("l_1"),
           *p = m.getPreSignal("p_1");
    ASSERT_TRUE(a && d && l && p);
    EXPECT_EQ(a->getInternalName(), "a_1");
    EXPECT_TRUE(a->isInput());
    EXPECT_EQ(a->getValueType(&m), "int");
    EXPECT_FALSE(m.getInputSignal("b")->isValued(&m));
    EXPECT_TRUE(m.getOutputSignal("o")->isOutput());
    EXPECT_TRUE(d->isInput() && d->isValue());
    EXPECT_EQ(d->getValueType(&m), "t");
    EXPECT_TRUE(l->isLocal());
    // The pre signal copies the value type of the signal it memorizes.
    EXPECT_TRUE(p->isPre() && p->isInput());
    EXPECT_EQ(p->getValueType(&m), "int");
}

TEST_F(ReaderTest, RegistersWarnAboutNonBooleanValuesAndKeepUndeclaredOnesAsNull)
{
    static std::vector<std::string> boxes;
    boxes.clear();
    const message_hook previous = set_message_hook([](const std::string& text) { boxes.push_back(text); });
    load_result r = load_text(
        module_text("local: a b c ;\nregister:\nb a 3 ;\nc a -1 ;\nb zz 1 ;\n", no_equations));
    set_message_hook(previous);
    ASSERT_NE(r.module, nullptr);
    Module& m = *r.module;
    EXPECT_EQ(r.err, "Warning: Boolean value expected to initialize register value\n"
                     "register zz not defined as local ...\n");
    EXPECT_EQ(boxes, (std::vector<std::string>{"Warning: Boolean value expected to initialize register value\n"}));
    // Each register as "actual next initial".
    std::vector<std::string> regs;
    for (const regclass* g : *m.getRegisterList())
        regs.push_back(g ? g->actual_var()->getOriginalName() + " " + g->next_var()->getOriginalName() + " "
                               + std::to_string(g->is_initialy_true())
                         : "<null>");
    EXPECT_EQ(regs, (std::vector<std::string>{"a b 0", "a c -1", "<null>"}));
    for (const char* name : {"a", "b", "c"})
        EXPECT_TRUE(m.getLocalSignal(name)->isRegister() && m.getLocalSignal(name)->isWire()) << name;
}

TEST_F(ReaderTest, MemorizedSignalsFindOrMakeTheirPreSignal)
{
    load_result r = load_text(module_text("input: a : int pa ;\nlocal: l ;\nmemorized:\npa a v0 ;\npl l ;\n"
                                          "px q ;\n",
                                          no_equations));
    ASSERT_NE(r.module, nullptr);
    Module& m = *r.module;
    EXPECT_EQ(r.err, " undeclared signal \"q\" at line 8");
    const std::vector<memorizedSignal*> pres(m.getPreSignalList()->begin(), m.getPreSignalList()->end());
    ASSERT_EQ(pres.size(), 3u);
    // A declared input serves as the pre signal; the others are made.
    EXPECT_EQ(pres[0]->pre(), m.getInputSignal("pa"));
    EXPECT_TRUE(pres[0]->pre()->isPre());
    EXPECT_EQ(pres[0]->pre()->getValueType(&m), "int");
    EXPECT_EQ(pres[0]->actual(), m.getInputSignal("a"));
    EXPECT_EQ(pres[0]->initial_value(), "v0");
    EXPECT_EQ(pres[1]->pre()->getOriginalName(), "pl");
    EXPECT_TRUE(pres[1]->pre()->isInput());
    EXPECT_FALSE(pres[1]->pre()->isValued(&m));
    EXPECT_EQ(pres[1]->actual(), m.getLocalSignal("l"));
    EXPECT_EQ(pres[1]->initial_value(), "");
    EXPECT_EQ(pres[2]->pre()->getOriginalName(), "px");
    EXPECT_EQ(pres[2]->actual(), nullptr);
    const std::vector<std::string> names = variable_names(m);
    EXPECT_EQ(std::vector<std::string>(names.begin() + 6, names.begin() + 10),
              (std::vector<std::string>{"_s_pl", "_v_pl", "_s_px", "_v_px"}));
}

// Reads `text` with awaited interface names, as a caller of the parser
// object may.
std::unique_ptr<Module> load_awaiting(const std::string& text, std::list<std::string> inputs,
                                      std::list<std::string> outputs)
{
    std::istringstream in(text);
    std::ostringstream log;
    ixcFlexLexer lexer(&in, &log);
    class_ixc_parser parser;
    parser.plexer = &lexer;
    parser.awaited_input_list = &inputs;
    parser.awaited_output_list = &outputs;
    std::string instance;
    if (parser.parse(log, 1, instance) != 0)
        return nullptr;
    return std::unique_ptr<Module>(parser.release_module());
}

TEST_F(ReaderTest, AwaitedListsAcceptListedAndValuedSignals)
{
    std::unique_ptr<Module> m =
        load_awaiting(module_text("input: a v : int ;\noutput: o w : int ;\n", no_equations), {"a"}, {"o"});
    ASSERT_NE(m, nullptr);
    for (Signal* s : *m->getInputSignalList())
        EXPECT_TRUE(s->isInput()) << s->getOriginalName();
    for (Signal* s : *m->getOutputSignalList())
        EXPECT_TRUE(s->isOutput()) << s->getOriginalName();
    // An empty list awaits nothing in particular.
    EXPECT_NE(load_awaiting(module_text("input: z ;\n", no_equations), {}, {}), nullptr);
}

TEST(ReaderDeathTest, AnUnknownPureInterfaceSignalEndsTheProcess)
{
    EXPECT_EXIT(load_awaiting(module_text("input: a b ;\n", no_equations), {"a", "c"}, {}), ExitedWithCode(1),
                HasSubstr("m:PARSING ERROR: input signal \"b\" is unknown in main module!\n"
                          "  --> authorised signals:\na\nc\n"));
    EXPECT_EXIT(load_awaiting(module_text("output: o ;\n", no_equations), {}, {"p"}), ExitedWithCode(1),
                HasSubstr("m:PARSING ERROR: output signal \"o\" is unknown in main module!\n"
                          "  --> authorised signals:\np\n"));
}

// A name declared twice: the second signal finds the first one's reference
// and gets no occurrence in the wood. The load ends wherever a step asks it
// for its occurrence (its type set, its equations marked, its variables
// dated) and goes on where the lookups by name find the first declaration.
testing::Matcher<const std::string&> no_occurrence_of(const std::string& name)
{
    return testing::AllOf(HasSubstr("Signal:getCurrentOccurrence: no current occurrence for the considered wood:"),
                          HasSubstr("  for signal:" + name + "\n"));
}

TEST(ReaderDeathTest, ASecondDeclarationAskedForItsOccurrenceEndsTheLoad)
{
    const auto text = [](const char* declarations, const char* after = "") {
        return module_text(declarations, no_equations + after);
    };
    const std::pair<std::string, const char*> cases[] = {
        {text("output: o o ;\n"), "o"},                                         // output equations marked
        {text("input: a ;\noutput: a ;\n"), "a"},
        {text("input: a ;\nlocal: a : int ;\n"), "a"},                          // its type set
        {text("input: a a : int ;\n"), "a"},
        {text("input: a ;\nlocal: a n ;\nregister:\nn a 0 ;\n"), "a"},          // a local register marked
        {text("local: v : int ;\nmemorized:\nv_pre v ;\nv_pre v ;\n"), "v_pre"}, // the copy takes v's type
        {text("input: a ;\nlocal: a ;\n", "binding:\nend:\nevaltable:\nend:\n"), "a"}, // locals dated
        // The shape that once loaded with the local's type shown on the input.
        {"module: d 0 0 input: a ; local: a : int ; connexion: s r t ; equation_def: 0 expressions: end:", "a"},
    };
    for (const auto& [file, name] : cases)
        EXPECT_EXIT(load_uncaptured(file), ExitedWithCode(1), no_occurrence_of(name)) << file;
}

TEST_F(ReaderTest, ASecondDeclarationThatNothingAsksAboutLoadsBesideTheFirst)
{
    // An input listed twice: one pair of variables, the first signal found.
    load_result r = load_text(module_text("input: a a ;\ndata_signal: d d ;\n", no_equations));
    ASSERT_NE(r.module, nullptr) << r.err;
    EXPECT_EQ(r.err, "");
    Module* m = r.module.get();
    Bddexpressionwood* w = m->getBddWood();
    EXPECT_EQ(original_names(*m->getInputSignalList()), (std::vector<std::string>{"a", "a"}));
    EXPECT_EQ(m->getInputSignal("a"), m->getInputSignalList()->front());
    EXPECT_FALSE(m->getInputSignalList()->back()->hasCurrentOccurrence(w));
    EXPECT_FALSE(m->getDataSignalList()->back()->hasCurrentOccurrence(w));
    EXPECT_EQ(variable_names(*m), (std::vector<std::string>{"_s_a", "_v_a", "_s_d", "_v_d", "_s_set", "_v_set",
                                                            "_s_reset", "_v_reset", "_s_rtl", "_v_rtl"}));

    // An input and an untyped local: the input keeps its own type.
    r = load_text(module_text("input: a : int ;\nlocal: a ;\n", no_equations));
    ASSERT_NE(r.module, nullptr) << r.err;
    m = r.module.get();
    Signal* local = m->getLocalSignalList()->front();
    EXPECT_EQ(m->getSignal("a"), m->getInputSignalList()->front());
    EXPECT_EQ(m->getInputSignal("a")->getValueType(m), "int");
    EXPECT_FALSE(local->hasCurrentOccurrence(m->getBddWood()));
    EXPECT_TRUE(local->isLocal());

    // A local listed twice, its second declaration untyped: the memorized
    // copy takes the first one's type. A copy of an untyped signal declared
    // again is a second signal without occurrence, its actual signal the same.
    r = load_text(module_text("local: v : int v u ;\nmemorized:\nv_pre v ;\nu_pre u ;\nu_pre u ;\n", no_equations));
    ASSERT_NE(r.module, nullptr) << r.err;
    m = r.module.get();
    const std::vector<memorizedSignal*> pres(m->getPreSignalList()->begin(), m->getPreSignalList()->end());
    ASSERT_EQ(pres.size(), 3u);
    EXPECT_EQ(pres[0]->pre()->getValueType(m), "int");
    EXPECT_EQ(pres[0]->actual(), m->getLocalSignalList()->front());
    EXPECT_NE(pres[1]->pre(), pres[2]->pre());
    EXPECT_FALSE(pres[2]->pre()->hasCurrentOccurrence(m->getBddWood()));
    EXPECT_EQ(pres[2]->actual(), pres[1]->actual());
    EXPECT_EQ(m->getPreSignal("u_pre"), pres[1]->pre());
}

TEST_F(ReaderTest, NodeLinesAreBuiltAsWrittenAndThoseOutsideTheAnnouncedCountSkipped)
{
    // Nodes 2 and -1 lie outside a count of 2.
    load_result r = load_text(module_text("input: a ;\n", equations(2,
        "0 : -1 : 0 : 0 , 1\n1 : 0 : 0 : 0 , -1\n2 : 0 : 0 : 0 , 1\n-1 : 0 : 0 : 0 , 1\n", "0 0 1 : 1 , 1 , ( )\n")));
    ASSERT_NE(r.module, nullptr) << r.err;
    EXPECT_EQ(r.err, "detecting bad indice about parsed_nodes_table[]! skipping ...\n"
                     "detecting bad indice about parsed_nodes_table[]! skipping ...\n");
    EXPECT_EQ(equation(*r.module, 1)->getBddExp(), r.module->getBddWood()->Bdd_var_by_index(0));

    // The terminal node gives the constant function through either link.
    r = load_text(module_text("input: a ;\n", equations(1, "0 : -1 : 7 : 9 , 0\n",
                                                         "0 0 0 : 0 , 1 , ( )\n0 0 1 : 0 , -1 , ( )\n")));
    ASSERT_NE(r.module, nullptr) << r.err;
    bddpp_manager* man = r.module->getBddWood()->getManager();
    EXPECT_TRUE(man->Bdd_is_one_tautologic(equation(*r.module, 0)->getBddExp()));
    EXPECT_TRUE(man->Bdd_is_zero_tautologic(equation(*r.module, 1)->getBddExp()));
    EXPECT_EQ(equation(*r.module, 1)->getName(), "_v_a");
    EXPECT_FALSE(equation(*r.module, 0)->isAbstract());

    // Node 1 is written twice (the second line holds), and node 2 decides on
    // a variable below its child's in the order.
    const std::string nodes = "0 : -1 : 0 : 0 , 1\n1 : 0 : 0 : 0 , -1\n2 : 4 : 1 : 0 , -1\n1 : 2 : 0 : 0 , -1\n";
    r = load_text(module_text("input: a b c ;\n", equations(3, nodes, "1 2 1 : 2 , -1 , ( )\n")));
    ASSERT_NE(r.module, nullptr) << r.err;
    Bddexpressionwood* w = r.module->getBddWood();
    EXPECT_EQ(equation(*r.module, 1)->getBddExp(),
              w->Bdd_not(w->Bdd_and(w->Bdd_var_by_index(4), w->Bdd_var_by_index(2))));
    EXPECT_EQ(equation(*r.module, 1)->getEarliestDate(), 1);
    EXPECT_EQ(w->latest_date(1), 2);
}

TEST_F(ReaderTest, NodeMinusThreeMakesAnAbstractValueEquationOverTheListedIds)
{
    load_result r = load_text(module_text("input: a b ;\noutput: o : int ;\n",
                                          equations(0, "", "2 3 5 : -3 , 7 , ( 1 3 1 )\n")));
    ASSERT_NE(r.module, nullptr) << r.err;
    Module& m = *r.module;
    Bddexpression* e = equation(m, 5);
    ASSERT_NE(e, nullptr);
    EXPECT_TRUE(e->isAbstract());
    EXPECT_EQ(e->getExpDef(), "VALUE_SIGNAL");
    EXPECT_EQ(e->getName(), "_v_o");
    EXPECT_EQ(e->getVarsDependance(), (std::set<std::int64_t>{1, 3}));
    EXPECT_EQ(e->getEarliestDate(), 2);
    EXPECT_EQ(m.getBddWood()->latest_date(5), 3);
    EXPECT_EQ(m.getBddWood()->Readers(3), (std::set<std::int64_t>{5}));
}

struct refusal_case {
    std::string nodes;
    std::string message;
    std::string expressions = "0 0 1 : 1 , 1 , ( )\n";
};

TEST_F(ReaderTest, NodeTablesThatCannotBeBuiltAreRefusedWithOneLine)
{
    // Variables 0 to 9: a, b, then set, reset, rtl. Node lines start on line 6.
    const std::string one = "0 : -1 : 0 : 0 , 1\n";
    const std::vector<refusal_case> cases = {
        {one + "1 : 0 : -2 : 0 , 1\n", "line 7: node 1: then child -2 is negative"},
        {one + "1 : 0 : 0 : 3 , 1\n", "line 7: node 1: else child 3 is out of the table (3 nodes announced)"},
        {one + "1 : 0 : 2 : 0 , 1\n", "line 7: node 1: then child 2 is never defined"},
        {one + "1 : 10 : 0 : 0 , 1\n", "line 7: node 1: variable 10 is not a variable of the module"},
        {one + "1 : -2 : 0 : 0 , 1\n", "line 7: node 1: variable -2 is not a variable of the module"},
        {one + "1 : 0 : 0 : 0 , 0\n", "line 7: node 1: else link type 0 is neither 1 nor -1"},
        {one + "1 : 0 : 1 : 0 , 1\n", "line 7: node 1: cycle among node lines (then child 1 leads back to node 1)"},
        {one + "1 : 0 : 2 : 0 , 1\n2 : 1 : 0 : 1 , 1\n",
         "line 8: node 2: cycle among node lines (else child 1 leads back to node 2)"},
        // A fault below the node named by the expression names its own line.
        {one + "1 : 0 : 2 : 0 , 1\n2 : 1 : 0 : 9 , 1\n",
         "line 8: node 2: else child 9 is out of the table (3 nodes announced)"},
        {one, "line 8: expression line: node -1 is negative", "0 0 1 : -1 , 1 , ( )\n"},
        {one, "line 8: expression line: node 3 is out of the table (3 nodes announced)", "0 0 1 : 3 , 1 , ( )\n"},
        {one, "line 8: expression line: node 2 is never defined", "0 0 1 : 2 , 1 , ( )\n"},
        {one, "line 8: expression line: variable 10 is not a variable of the module", "0 0 10 : 0 , 1 , ( )\n"},
        {one, "line 8: expression line: variable 10 is not a variable of the module", "0 0 10 : -3 , 1 , ( )\n"},
        {one, "line 8: expression line: link type 2 is neither 1 nor -1", "0 0 1 : 0 , 2 , ( )\n"},
    };
    for (const refusal_case& c : cases) {
        load_result r = load_text(module_text("input: a b ;\n", equations(3, c.nodes, c.expressions)));
        EXPECT_EQ(r.module, nullptr) << c.message;
        EXPECT_EQ(r.err, "t.ixc: " + c.message + "\n");
        // The trace stops at the refused line.
        EXPECT_EQ(r.log.find("18 --> def expression bool"), std::string::npos) << c.message;
    }
}

TEST_F(ReaderTest, CountsBeyondTheFormatsTablesAreRefused)
{
    load_result r = load_text(module_text("", "equation_def: 32768\n"));
    EXPECT_EQ(r.module, nullptr);
    EXPECT_EQ(r.err, "t.ixc: line 4: equation_def: 32768 nodes announced, more than the format's 32767\n");

    const std::string head = module_text("", no_equations) + "data:\ntype:\n";
    std::string types, methods, constants;
    for (int i = 0; i <= 32767; ++i) {
        const std::string n = std::to_string(i);
        types += "t" + n + " ;\n";
        methods += "int f" + n + " ( ) ;\n";
        constants += "int c" + n + " ;\n";
    }
    r = load_text(head + types);
    EXPECT_EQ(r.module, nullptr);
    EXPECT_EQ(r.err, "t.ixc: line 32776: more than 32767 types in the data section\n");
    EXPECT_EQ(Compilation::getDataTypeTable()->size(), 32767);
    r = load_text(head + "method:\n" + methods);
    EXPECT_EQ(r.err, "t.ixc: line 32777: more than 32767 methods in the data section\n");
    r = load_text(head + "method:\nconstant:\n" + constants);
    EXPECT_EQ(r.err, "t.ixc: line 32778: more than 32767 constants in the data section\n");
    EXPECT_EQ(Compilation::getDataConstantTable()->getConstantList().size(), 32767u);

    // The full count of each is accepted.
    types.resize(types.rfind("t32767"));
    r = load_text(head + types + "method:\nend:\n");
    ASSERT_NE(r.module, nullptr) << r.err;
    EXPECT_EQ(r.module->getFileTypeIds().size(), 32767u);
    EXPECT_EQ(r.module->getFileTypeIds().back(), 32766);
}

TEST_F(ReaderTest, HugeNumbersAreReadAsTheCLibraryReadsThemIntoAnInt)
{
    // 2^32 + 2 reads as 2: a Boolean warning; the huge node index reads as
    // -1: skipped; 2^32 + 1 nodes reads as 1.
    load_result r = load_text(module_text("local: a b ;\nregister: b a 4294967298 ;\n",
                                          "equation_def: 4294967297\n"
                                          "99999999999999999999 : -1 : 0 : 0 , 1\n"
                                          "0 : -1 : 0 : 0 , 1\n"
                                          "expressions:\n0 0 0 : 0 , 1 , ( )\nend:\n"));
    ASSERT_NE(r.module, nullptr) << r.err;
    EXPECT_EQ(r.err, "Warning: Boolean value expected to initialize register value\n"
                     "detecting bad indice about parsed_nodes_table[]! skipping ...\n");
    EXPECT_EQ(r.module->getRegisterList()->front()->is_initialy_true(), 0);
}

TEST_F(ReaderTest, ALegalChainOfTheFormatsFullSizeBuildsWithoutExhaustingTheStack)
{
    // 16383 locals give variables 0 to 32765; node i decides on variable
    // 32766 - i above node i - 1, so node 32766 is the conjunction of them all.
    std::string locals = "local:";
    for (int i = 0; i < 16383; ++i)
        locals += " l" + std::to_string(i);
    std::string nodes = "0 : -1 : 0 : 0 , 1\n";
    for (int i = 1; i < 32767; ++i)
        nodes += std::to_string(i) + " : " + std::to_string(32766 - i) + " : " + std::to_string(i - 1)
            + " : 0 , -1\n";
    load_result r = load_text(module_text(locals + " ;\n", equations(32767, nodes, "0 0 32771 : 32766 , 1 , ( )\n")),
                              "", 0);
    ASSERT_NE(r.module, nullptr) << r.err;
    Module& m = *r.module;
    const bdd f = equation(m, 32771)->getBddExp();
    EXPECT_EQ(m.getBddWood()->getManager()->Bdd_size(f), 32767);
    EXPECT_EQ(equation(m, 32771)->getVarsDependance().size(), 32766u);
}

TEST_F(ReaderTest, FilesSharingDataNamesMapThemToTheFirstGlobalIds)
{
    const std::string body = module_text("", no_equations);
    load_result first = load_text(body + "data:\ntype: int ; float ;\nmethod: int f ( int ) ;\n"
                                         "constant: int k \"1\" ; int z ;\nend:\n");
    ASSERT_NE(first.module, nullptr) << first.err;
    load_result second = load_text(body + "data:\ntype: bool ; float ;\nmethod: bool g ( ) ; int f ( int ) ;\n"
                                          "constant: int z ; bool t \"true\" ; int k \"2\" ;\nend:\n");
    ASSERT_NE(second.module, nullptr) << second.err;
    EXPECT_EQ(first.module->getFileTypeIds(), (std::vector<int>{0, 1}));
    EXPECT_EQ(second.module->getFileTypeIds(), (std::vector<int>{2, 1}));
    EXPECT_EQ(second.module->getFileMethodIds(), (std::vector<int>{1, 0}));
    EXPECT_EQ(second.module->getFileConstantIds(), (std::vector<int>{1, 2, 0}));
    // The first declaration of a name holds.
    DataConstantTable* constants = Compilation::getDataConstantTable();
    EXPECT_EQ(dravik_test::debug_text(constants->getConstant("k")->getValue()), "1");
    EXPECT_EQ(constants->getConstant("t")->getConstantIndex(), 2);
    EXPECT_EQ(Compilation::getDataTypeTable()->getTypeById(2), "bool");
}

TEST_F(ReaderTest, DatesAreComputedOnlyWhenTheFileHasABindingSection)
{
    const std::string body = module_text("input: a ;\noutput: o ;\nlocal: l ;\n",
                                         equations(3, "0 : -1 : 0 : 0 , 1\n1 : 0 : 0 : 0 , -1\n2 : 4 : 0 : 0 , -1\n",
                                                   "0 0 4 : 1 , 1 , ( )\n0 0 2 : 2 , 1 , ( )\n"));
    load_result plain = load_text(body);
    ASSERT_NE(plain.module, nullptr) << plain.err;
    EXPECT_EQ(plain.module->getBddWood()->Nb_level(), 0);
    EXPECT_EQ(equation(*plain.module, 2)->getUserType(), Compilation::SOUTPUT);

    load_result bound = load_text(body + "binding: end: evaltable: end:\n");
    ASSERT_NE(bound.module, nullptr) << bound.err;
    Bddexpressionwood* w = bound.module->getBddWood();
    // a -> l -> o: dates rise along the chain.
    EXPECT_EQ(w->Nb_level(), 3);
    EXPECT_EQ(equation(*bound.module, 4)->getEarliestDate(), 1);
    EXPECT_EQ(equation(*bound.module, 2)->getEarliestDate(), 2);
    EXPECT_EQ(w->latest_date(4), 1);
    EXPECT_EQ(equation(*bound.module, 2)->getUserType(), Compilation::SOUTPUT);
}

// Gives its text, then fails as a disk does on a read error.
class failing_buffer : public std::streambuf {
public:
    explicit failing_buffer(std::string text) : text(std::move(text))
    {
        setg(this->text.data(), this->text.data(), this->text.data() + this->text.size());
    }

protected:
    int_type underflow() override { throw std::ios_base::failure("read error"); }

private:
    std::string text;
};

TEST_F(ReaderTest, TheFileEntryReportsMissingUnreadableAndRefusedFilesAndLoadsAfterAFailure)
{
    scratch_dir dir;
    std::string instance;
    const std::string absent = dir.file("absent.ixc");
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(parse_IXC(absent, instance), nullptr); }), "FILE NOT FOUND !\n");
    EXPECT_TRUE(quilp_test::file_exists(absent + ".log"));

    const std::string bad = dir.file("bad.ixc");
    write_file(bad, module_text("input: a ;\n", equations(1, "0 : -1 : 0 : 0 , 1\n", "0 0 1 : 4 , 1 , ( )\n")));
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(parse_IXC(bad, instance), nullptr); }),
              bad + ": line 8: expression line: node 4 is out of the table (1 nodes announced)\n"
                    "ERROR about loading file : " + bad + "\n");
    // The trace went as far as the refused line.
    const std::string log = read_file(bad + ".log");
    EXPECT_EQ(log.substr(log.rfind("17 -->")), "17 --> expression booleenne gen seule\n19 --> 0\n19 --> 0\n"
                                               "19 --> 1\n19 --> 4\n19 --> 1\n");
    EXPECT_EQ(plixc_parser, nullptr);

    const std::string good = dir.file("good.ixc");
    write_file(good, read_file(example_path("counter.ixc")));
    std::unique_ptr<Module> m;
    EXPECT_EQ(stderr_of([&] { m.reset(parse_IXC(good, instance)); }), "");
    ASSERT_NE(m, nullptr);
    EXPECT_EQ(m->getName(), "counter");
    EXPECT_EQ(plixc_parser, nullptr);

    // A directory is no file; a read error fails the load without ending the
    // process, and the chunk whose read failed is lost with it: the input
    // ends at once.
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(parse_IXC(dir.path(), instance), nullptr); }), "FILE NOT FOUND !\n");
    failing_buffer buffer("module: m\n0 0\n");
    std::istream in(&buffer);
    std::ostringstream trace;
    EXPECT_EQ(stderr_of([&] { EXPECT_EQ(parse_IXC_stream(in, trace, "t.ixc", instance), nullptr); }),
              "line 1: syntax error, unexpected $end, expecting TOKEN_MODULE\n");
}

TEST(ReaderDeathTest, TheTraceIsFlushedBeforeAFatalEnd)
{
    scratch_dir dir;
    const std::string name = dir.file("fatal.ixc");
    write_file(name, module_text("input: a ;\n", no_equations) + "binding: (99,1) : value: 0 ; end: evaltable: end:\n");
    std::string instance;
    EXPECT_EXIT(parse_IXC(name, instance), ExitedWithCode(1), HasSubstr("unknown data signal:99\n"));
    EXPECT_THAT(read_file(name + ".log"), testing::EndsWith("26,2 --> \n41 --> \n"));
}

TEST(IxcParser, TheActiveParserIsAlwaysALiveOne)
{
    auto first = std::make_unique<class_ixc_parser>();
    auto second = std::make_unique<class_ixc_parser>();
    EXPECT_EQ(plixc_parser, second.get());
    first.reset();
    EXPECT_EQ(plixc_parser, second.get());
    {
        // A read while another parser lives leaves that one active.
        load_result r = load_text("module: m\n0 0\nconnexion: a b c ;\n" + no_equations);
        EXPECT_NE(r.module, nullptr);
        EXPECT_EQ(plixc_parser, second.get());
    }
    second.reset();
    EXPECT_EQ(plixc_parser, nullptr);
}

// Every shipped example loads without a message: see quilp-ixc's JSON
// of them all (tests/data/ixc_listing/examples.json).
TEST_F(ReaderTest, CounterExampleComputesTheCounterLogic)
{
    load_result r = load_text(read_file(example_path("counter.ixc")));
    ASSERT_NE(r.module, nullptr) << r.err;
    EXPECT_EQ(r.err, "");
    Module& m = *r.module;
    const std::vector<std::string> names = variable_names(m);
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + 16),
              (std::vector<std::string>{"_s_tick", "_v_tick", "_s_b0", "_v_b0", "_s_b1", "_v_b1", "_s_carry",
                                        "_v_carry", "_s_r0", "_v_r0", "_s_r1", "_v_r1", "_s_n0", "_v_n0", "_s_n1",
                                        "_v_n1"}));
    Bddexpressionwood* w = m.getBddWood();
    bddpp_manager* man = w->getManager();
    const bdd tick = w->Bdd_var_by_index(0), r0 = w->Bdd_var_by_index(8), r1 = w->Bdd_var_by_index(10);
    EXPECT_EQ(equation(m, 12)->getBddExp(), man->Bdd_xor(tick, r0));
    EXPECT_EQ(equation(m, 14)->getBddExp(), man->Bdd_xor(r1, w->Bdd_and(tick, r0)));
    EXPECT_EQ(equation(m, 6)->getBddExp(), w->Bdd_and(tick, w->Bdd_and(r0, r1)));
    EXPECT_EQ(equation(m, 2)->getBddExp(), w->Bdd_var_by_index(12));
    // Registers: current and next values are both registers (and wires).
    const regclass* reg = m.getRegisterList()->front();
    EXPECT_EQ(reg->actual_var()->getOriginalName(), "r0");
    EXPECT_EQ(reg->next_var()->getOriginalName(), "n0");
    EXPECT_TRUE(reg->actual_var()->isRegister() && reg->next_var()->isRegister());
    EXPECT_EQ(equation(m, 12)->getUserType(), Compilation::SREG);
    EXPECT_EQ(equation(m, 2)->getUserType(), Compilation::SOUTPUT);
    EXPECT_EQ(equation(m, 2)->getEarliestDate(), 2);
    EXPECT_EQ(w->latest_date(12), 1);
}

TEST_F(ReaderTest, EdgesExampleComparesWithThePreviousInstant)
{
    load_result r = load_text(read_file(example_path("edges.ixc")));
    ASSERT_NE(r.module, nullptr) << r.err;
    EXPECT_EQ(r.err, "");
    Module& m = *r.module;
    Bddexpressionwood* w = m.getBddWood();
    Signal* pre_button = m.getPreSignal("pre_button");
    ASSERT_NE(pre_button, nullptr);
    const bdd button = m.getInputSignal("button")->getBddStatus(&m, w);
    const bdd before = pre_button->getBddStatus(&m, w);
    EXPECT_EQ(m.getOutputSignal("pressed")->getBddStatus(&m, w), w->Bdd_var_by_index(4));
    EXPECT_EQ(equation(m, 4)->getBddExp(), w->Bdd_and(button, w->Bdd_not(before)));
    EXPECT_EQ(equation(m, 6)->getBddExp(), w->Bdd_and(w->Bdd_not(button), before));
    EXPECT_EQ(m.getPreSignal("pre_level")->getValueType(&m), "int");
    EXPECT_EQ(m.getPreSignalList()->back()->initial_value(), "zero");
}

} // namespace
