#include "dravik_support.h"
#include "equationtable.h"

#include <gmock/gmock.h>

#include <cstdlib>

using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using namespace dravik_test;

namespace {

std::list<Signal*>* list_of(std::initializer_list<Signal*> signals)
{
    return new std::list<Signal*>(signals);
}

TEST(ModuleLookups, InterfaceSignalsByDeclaredNameInternalOnesByInstanceName)
{
    Module m("m");
    Bddexpressionwood* w = m.getBddWood();
    Signal* in = new Signal("in", "in_1", &m, w);
    Signal* out = new Signal("out", "out_1", &m, w);
    Signal* loc = new Signal("loc", "loc_1", &m, w);
    Signal* data = new Signal("d", "d_1", &m, w);
    Signal* pre = new Signal("p", "p_1", &m, w);
    m.setInputSignalList(list_of({in}));
    m.setOutputSignalList(list_of({out}));
    m.setLocalSignalList(list_of({loc}));
    m.setDataSignalList(list_of({data}));
    m.setPreSignalList(new std::list<memorizedSignal*>{new memorizedSignal(pre, loc, "")});

    EXPECT_EQ(m.getInputSignal("in"), in);
    EXPECT_EQ(m.getInputSignal("in_1"), nullptr);
    EXPECT_EQ(m.getOutputLocalSignal("out"), out);
    EXPECT_EQ(m.getOutputLocalSignal("loc_1"), loc);
    EXPECT_EQ(m.getOutputLocalSignal("loc"), nullptr);
    EXPECT_EQ(m.getDataSignal("d_1"), data);
    EXPECT_EQ(m.getPreSignal("p_1"), pre);
    EXPECT_EQ(m.getPreSignal("loc_1"), nullptr); // the actual signal's name does not match
    EXPECT_EQ(m.getSignal("p_1"), pre);
    EXPECT_EQ(m.getSignal("in_1"), nullptr);
    EXPECT_EQ(m.getSignalFromInternalName("in_1"), in);
    EXPECT_EQ(m.getSignalFromInternalName("out"), nullptr);

    // By variable: the reference's internal name goes through getSignal, so
    // an interface signal with an instance suffix is not found.
    EXPECT_EQ(m.getSignalById(loc->getBddValueId(&m, w), w), loc);
    EXPECT_EQ(m.getSignalById(in->getBddStatusId(&m, w), w), nullptr);
    EXPECT_EQ(m.getSignalById(99, w), nullptr);
    EXPECT_EQ(m.getSignalById(-2, w), nullptr);
}

TEST(ModuleLookups, FirstHitWinsAndListsAreNeverNull)
{
    Module m("m");
    EXPECT_TRUE(m.getOutputSignalList()->empty());
    EXPECT_TRUE(m.getPreSignalList()->empty());
    EXPECT_TRUE(m.getRegisterList()->empty());
    EXPECT_EQ(m.getSignal("a"), nullptr);
    Signal* input = signal_of(m, "a");
    Signal* local = signal_of(m, "a");
    m.setInputSignalList(list_of({input}));
    m.setLocalSignalList(list_of({local}));
    EXPECT_EQ(m.getSignal("a"), input);
    EXPECT_EQ(m.getLocalSignal("a"), local);
    m.setOutputSignalList(nullptr);
    ASSERT_NE(m.getOutputSignalList(), nullptr);
    EXPECT_TRUE(m.getOutputSignalList()->empty());
    EXPECT_EQ(m.getBddWood(), m.getCompilation()->getWood());
    EXPECT_EQ(m.getCompilation()->getModuleName(), "m");
}

struct binding_fixture {
    Module m{"m"};
    Bddexpressionwood* w = m.getBddWood();
    Signal* x = signal_of(m, "x");
    Signal* y = signal_of(m, "y");
    Signal* s = signal_of(m, "s");
    Signal* clock = signal_of(m, "clk");
    binding_fixture()
    {
        x->setValueType("int", &m);
        y->setValueType("int", &m);
        s->setValueType("int", &m);
    }
};

TEST(ModuleBindings, TheUnclockedFormAddsValueSignalEquations)
{
    binding_fixture t;
    auto* sum = new DataBinaryOp(DataExpr::Plus, new DataSignalValue(t.x), new DataSignalValue(t.y));
    t.m.addSignalBinding(sum, t.s);
    ASSERT_NE(t.m.getBinding("s"), nullptr);
    EXPECT_EQ(t.m.getBinding("s")->getValue(), sum);
    EXPECT_EQ(t.m.getBinding("s")->getClock(), nullptr);
    EXPECT_FALSE(t.s->isValue());
    for (long id : {t.s->getBddStatusId(&t.m, t.w), t.s->getBddValueId(&t.m, t.w)}) {
        Bddexpression* e = t.w->exp_by_index(id);
        ASSERT_NE(e, nullptr);
        EXPECT_TRUE(e->isAbstract());
        EXPECT_EQ(e->getExpDef(), "VALUE_SIGNAL");
        EXPECT_EQ(e->getVarsDependance(), (std::set<std::int64_t>{0, 1, 2, 3}));
        EXPECT_EQ(e->getEarliestDate(), 0);
    }
    EXPECT_EQ(t.w->exp_number(), 2);

    // Binding again replaces (and releases) the previous binding; a value
    // reading no signal adds no equation.
    t.m.addSignalBinding(new DataConstant(0), t.clock);
    EXPECT_EQ(t.w->exp_number(), 2);
    auto* again = new DataSignalValue(t.y);
    t.m.addSignalBinding(again, t.s);
    t.m.addSignalBinding(again, t.s);
    EXPECT_EQ(t.m.getBinding("s")->getValue(), again);
    EXPECT_EQ(t.w->exp_by_index(4)->getVarsDependance(), (std::set<std::int64_t>{2, 3}));
    EXPECT_EQ(t.m.getDataTable()->size(), 2u);
}

TEST(ModuleBindings, TheClockedFormMarksTheSignalsAndAddsNoEquation)
{
    binding_fixture t;
    EXPECT_EQ(t.m.getDataTable(), nullptr);
    t.m.addSignalBinding(new DataSignalValue(t.x), t.s, t.clock);
    t.m.addSignalBinding(new DataSignalValue(t.x), t.y, nullptr);
    EXPECT_EQ(t.w->exp_number(), 0);
    EXPECT_TRUE(t.s->isValue());
    EXPECT_TRUE(t.y->isValue());
    EXPECT_TRUE(t.clock->isClock());
    EXPECT_EQ(t.m.getSignalBindingByClock(t.clock), (std::list<Signal*>{t.s}));
    EXPECT_EQ(t.m.getSignalBindingByClock(nullptr), (std::list<Signal*>{t.y}));
    ASSERT_EQ(t.m.getDataBindingByClock(t.clock).size(), 1u);
    EXPECT_EQ(t.m.getDataBindingByClock(t.clock).front(), t.m.getBinding("s"));

    EXPECT_THAT(text_of([&](std::ostream& os) { t.m.debugPrintBinding(os); }), HasSubstr("s = x clock: clk\n"));
    EXPECT_TRUE(t.m.removeBinding("s"));
    EXPECT_FALSE(t.m.removeBinding("s"));
    EXPECT_EQ(t.m.getBinding("s"), nullptr);
    EXPECT_TRUE(t.m.getSignalBindingByClock(t.clock).empty());
}

// Every variable of the wood defined with user type 0.
void define_all(Module& m)
{
    Bddexpressionwood* w = m.getBddWood();
    for (std::int64_t i = 0; i < w->Nb_bdd_vars(); ++i)
        new Bddexpression("e", w, w->Bdd_var_by_index(i), w->Bdd_one(), 0);
}

TEST(ModuleUserTypes, EquationsAreMarkedByTheirSignalsRoles)
{
    Module m("m");
    Bddexpressionwood* w = m.getBddWood();
    Signal* in = signal_of(m, "in");   // 0, 1
    Signal* out = signal_of(m, "out"); // 2, 3
    Signal* reg = signal_of(m, "reg"); // 4, 5
    Signal* clk = signal_of(m, "clk"); // 6, 7
    Signal* used = signal_of(m, "l");  // 8, 9
    Signal* pre = signal_of(m, "p");   // 10, 11
    Signal* pre_out = signal_of(m, "q"); // 12, 13
    in->setInput();
    out->setOutput();
    for (Signal* s : {reg, clk, used}) // set before occurrences are made
        s->setLocal();
    reg->setRegister();
    clk->setClock();
    reg->newOccurrence(w, &m); // 14, 15
    Signal* twice = new Signal("l", "l", &m, w); // a second declaration, no occurrence, no role
    twice->setLocal();
    m.setInputSignalList(list_of({in}));
    m.setOutputSignalList(list_of({out}));
    m.setLocalSignalList(list_of({reg, clk, used, twice}));
    m.setPreSignalList(new std::list<memorizedSignal*>{new memorizedSignal(pre, used, "0"),
                                                       new memorizedSignal(pre_out, out, ""),
                                                       new memorizedSignal(pre, nullptr, "")});
    define_all(m);
    m.update_user_type();

    std::vector<int> types;
    for (std::int64_t i = 0; i < w->Nb_bdd_vars(); ++i)
        types.push_back(w->exp_by_index(i)->getUserType());
    using C = Compilation;
    EXPECT_EQ(types, (std::vector<int>{0, 0, C::SOUTPUT, C::VOUTPUT, C::SREG, C::VREG, C::SCLOCK, C::VCLOCK,
                                       C::SUSEDPRE, C::VUSEDPRE, 0, 0, 0, 0, C::SREG, C::VREG}));
}

// A second declaration of a name has no occurrence in the wood: marking it
// asks for one and ends the process, whatever role it was given.
TEST(ModuleUserTypesDeathTest, ASignalMarkedWithoutOccurrenceEndsTheProcess)
{
    const auto second = [](const char* role) {
        Module* m = new Module("m");
        Signal* first = signal_of(*m, "a");
        Signal* again = new Signal("a", "a", m, m->getBddWood());
        const std::string r = role;
        if (r == "output") {
            m->setOutputSignalList(list_of({first, again}));
        } else if (r == "pre") {
            Signal* pre = signal_of(*m, "p");
            m->setPreSignalList(new std::list<memorizedSignal*>{new memorizedSignal(pre, again, "")});
        } else {
            again->setLocal();
            r == "register" ? again->setRegister() : again->setClock();
            m->setLocalSignalList(list_of({first, again}));
        }
        m->update_user_type();
    };
    for (const char* role : {"output", "register", "clock", "pre"})
        EXPECT_EXIT(second(role), ExitedWithCode(1),
                    HasSubstr("Signal:getCurrentOccurrence: no current occurrence for the considered wood:"))
            << role;
}

TEST(ModuleUserTypes, MissingEquationsAreSkippedSilently)
{
    Module m("m");
    Signal* out = signal_of(m, "out");
    out->setOutput();
    m.setOutputSignalList(list_of({out}));
    EXPECT_EQ(stderr_of([&] { m.update_user_type(); }), "");
}

TEST(ModuleVariables, LeadingUnderscoresCanBeDropped)
{
    Module m("m");
    signal_of(m, "a");
    m.loose_first_underscore_in_name_variables();
    EXPECT_EQ(m.getBddWood()->getManager()->Name_var_by_index(0), "s_a");
    EXPECT_EQ(m.getBddWood()->Index_var_by_name("v_a"), 1);
}

// Meaningful under the sanitizer build: every record made for the module is
// released with it, once.
TEST(ModuleOwnership, AModuleReleasesWhatWasMadeForIt)
{
    auto* m = new Module("m");
    Bddexpressionwood* w = m->getBddWood();
    Signal* a = signal_of(*m, "a");
    Signal* b = signal_of(*m, "b");
    Signal* c = signal_of(*m, "c");
    signal_of(*m, "in_no_list");
    a->setLocal();
    m->setLocalSignalList(list_of({a}));
    auto* kept = new regclass(a, b, 1);
    m->setRegisterList(new std::list<regclass*>{kept, new regclass(b, a, 0)});
    m->setRegisterList(new std::list<regclass*>{kept, nullptr});
    EXPECT_EQ(m->getRegisterList()->front()->next_var(), b);
    m->setPreSignalList(new std::list<memorizedSignal*>{new memorizedSignal(c, a, "")});
    a->buildCurrentExpression(m->getCompilation(), m);
    m->addSignalBinding(new DataSignalValue(a), b);
    TrueExpression truth;
    m->getCompilation()->createEquation(c, &truth, m);
    EXPECT_EQ(w->exp_number(), 4);
    delete m;
}

TEST(ModuleTables, ModulesAndInterfaceSignalsAreFoundByName)
{
    Module a("a");
    Module b("b");
    ModuleTable table;
    EXPECT_TRUE(table.add(&a));
    EXPECT_TRUE(table.add(&b));
    EXPECT_FALSE(table.add(&a));
    EXPECT_EQ(table.get("b"), &b);
    EXPECT_EQ(table.get("c"), nullptr);

    Signal* in = new Signal("i", "i_1", &a, a.getBddWood());
    Signal* loc = signal_of(a, "l");
    Interface face;
    face.addInput("i_1", in);
    face.addLocal("l", loc);
    face.addData("l", loc);
    regclass reg(loc, loc, 0);
    face.addRegister(&reg);
    EXPECT_EQ(face.getInputSignal("i_1"), in);
    EXPECT_EQ(face.getSignal("l"), loc);
    EXPECT_EQ(face.getLocalSignal("i_1"), nullptr);
    EXPECT_EQ(face.getOriginalSignalName("i_1"), "i");
    EXPECT_EQ(face.getOriginalSignalName("none"), "");
    EXPECT_EQ(face.getRegisterList()->size(), 1u);
}

TEST(ModuleInterfaceDeathTest, DuplicatesAndMissingInterfaceSignalsAreFatal)
{
    Interface face;
    face.addInput("a", nullptr);
    face.addOutput("o", nullptr);
    face.addLocal("l", nullptr);
    face.addData("d", nullptr);
    EXPECT_EXIT(face.addInput("a", nullptr), ExitedWithCode(1), HasSubstr("Impossible to add Input Signal a...\n"));
    EXPECT_EXIT(face.addOutput("o", nullptr), ExitedWithCode(1),
                HasSubstr("Exception in Hash Table: Interface::addOutput: o is already defined\n"));
    EXPECT_EXIT(face.addLocal("l", nullptr), ExitedWithCode(1),
                HasSubstr("Exception in Hash Table: Interface::addLocal: l is already defined\n"));
    EXPECT_EXIT(face.addData("d", nullptr), ExitedWithCode(1),
                HasSubstr("Exception in Hash Table: Interface::addLocal: d is already defined\n"));
    EXPECT_EXIT(face.getInputSignal("z"), ExitedWithCode(1), HasSubstr("Input Signal: z not found!\n"));
    EXPECT_EXIT(face.getOutputSignal("z"), ExitedWithCode(1), HasSubstr("Output Signal: z not found!\n"));
}

// The directory is read once at start-up: a fresh process shows it.
TEST(ModuleSimulationDirDeathTest, ReadFromTheVariableNamedSlashTmp)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto show = [] {
        std::cerr << "[" << Module::SimulationDir << "]";
        std::exit(1);
    };
    ASSERT_EQ(setenv("/tmp", "/somewhere/sim/", 1), 0);
    EXPECT_EXIT(show(), ExitedWithCode(1), HasSubstr("[/somewhere/sim/]"));
    ASSERT_EQ(unsetenv("/tmp"), 0);
    EXPECT_EXIT(show(), ExitedWithCode(1), HasSubstr("[./]"));
    GTEST_FLAG_SET(death_test_style, "fast");
}

} // namespace
