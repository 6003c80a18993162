#include "dravik_support.h"

#include <gmock/gmock.h>

#include <functional>

using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using namespace dravik_test;

namespace {

// A module "m" and its wood.
struct SignalTest : testing::Test {
    Module m{"m"};
    Bddexpressionwood* w = m.getBddWood();
};
using SignalDeathTest = SignalTest;

TEST_F(SignalTest, SignalsMadeInOrderGetStatusThenValueVariables)
{
    Signal* a = signal_of(m, "A");
    Signal* b = new Signal("B", "B_i", &m, w);
    EXPECT_EQ(variable_names(w), (std::vector<std::string>{"_s_A", "_v_A", "_s_B_i", "_v_B_i"}));
    EXPECT_EQ((std::vector<long>{a->getBddStatusId(&m, w), a->getBddValueId(&m, w), b->getBddStatusId(&m, w),
                                 b->getBddValueId(&m, w)}),
              (std::vector<long>{0, 1, 2, 3}));
    EXPECT_EQ(a->getBddValue(&m, w), w->Bdd_var_by_index(1));

    // Both ids of each reference lead back to it; anything else reads null.
    SignalManager* sm = m.getSignalManager();
    EXPECT_EQ(sm->getSignalRefById(1, w), sm->getSignalRefByName("A"));
    EXPECT_EQ(sm->getSignalRefById(2, w)->getOriginalName(), "B");
    for (long id : {4L, -1L, 1L << 40})
        EXPECT_EQ(sm->getSignalRefById(id, w), nullptr) << id;
    Bddexpressionwood other;
    EXPECT_EQ(sm->getSignalRefById(0, &other), nullptr);
    EXPECT_EQ(sm->getIdTable(w)->getSize(), 4);
}

TEST_F(SignalTest, ExistingVariablesAreReused)
{
    w->Index_new_var_last("_v_x");
    w->Index_new_var_last("other");
    Signal* x = signal_of(m, "x");
    EXPECT_EQ(variable_names(w), (std::vector<std::string>{"_v_x", "other", "_s_x"}));
    EXPECT_EQ(x->getBddStatusId(&m, w), 2);
    EXPECT_EQ(x->getBddValueId(&m, w), 0);
    EXPECT_EQ(m.getSignalManager()->getSignalRefById(0, w), m.getSignalManager()->getSignalRefById(2, w));
    EXPECT_EQ(m.getSignalManager()->getSignalRefById(1, w), nullptr);
}

TEST_F(SignalTest, TheTwoConstructorsTreatAnExistingNameDifferently)
{
    Signal* first = signal_of(m, "x");
    Signal* shared = signal_of(m, "x");
    Signal* second = new Signal("x", "x", &m, w);
    EXPECT_EQ(w->Nb_bdd_vars(), 2);
    EXPECT_EQ(shared->getBddStatus(&m, w), first->getBddStatus(&m, w));
    EXPECT_EQ(shared->getCurrentOccurrence(w), 0);
    EXPECT_FALSE(second->hasCurrentOccurrence(w));

    // The queries that never end the process still answer.
    long s = -7;
    long v = -7;
    EXPECT_FALSE(second->findBddIds(&m, w, s, v));
    EXPECT_EQ(s, -7);
    EXPECT_TRUE(shared->findBddIds(&m, w, s, v));
    EXPECT_EQ(std::make_pair(s, v), std::make_pair(0L, 1L));
    first->setValueType("int", &m);
    EXPECT_EQ(second->findValueType(&m), "int");
    EXPECT_EQ(shared->findValueType(&m), "int");
}

TEST_F(SignalDeathTest, ASecondDeclarationHasNoCurrentOccurrence)
{
    signal_of(m, "x");
    Signal* second = new Signal("x", "x", &m, w);
    EXPECT_EXIT(second->getCurrentOccurrence(w), ExitedWithCode(1),
                ::testing::AllOf(HasSubstr("Signal:getCurrentOccurrence: no current occurrence for the considered wood:"),
                                 HasSubstr("  for signal:x\n"), ::testing::Not(HasSubstr("Illegal operation"))));
    EXPECT_EXIT(second->getBddStatusId(&m, w), ExitedWithCode(1),
                HasSubstr("Error: Illegal operation!\nSignal::getBddStatusId: no current occurrence for this woodx\n"));
    // Its value type is read and set through its current occurrence too.
    for (auto query : std::vector<std::function<void()>>{[&] { second->getValueType(&m); },
                                                         [&] { second->isValued(&m); },
                                                         [&] { second->setValueType("int", &m); },
                                                         [&] { second->getName(&m); }})
        EXPECT_EXIT(query(), ExitedWithCode(1), HasSubstr("no current occurrence for the considered wood:"));
}

TEST_F(SignalTest, RolesSetTheirImpliedFlagsAndTheEquationTypesATypeMakesTheSignalValued)
{
    Signal* s = signal_of(m, "s");
    s->setInput();
    s->setOutput();
    EXPECT_EQ(s->computeStatusType(), Compilation::SOUTPUT);
    s->setLocal();
    EXPECT_FALSE(s->isInput() || s->isOutput());
    EXPECT_EQ(s->computeStatusType(), Compilation::STAT);
    EXPECT_EQ(s->computeValueType(), Compilation::VAL);
    s->setRegister();
    EXPECT_TRUE(s->isWire());
    EXPECT_EQ(s->computeStatusType(), Compilation::SREG);
    EXPECT_EQ(s->computeValueType(), Compilation::VREG);
    s->setClock();
    EXPECT_EQ(s->computeValueType(), Compilation::VCLOCK);

    Signal* wire = signal_of(m, "w");
    wire->setWire();
    EXPECT_EQ(wire->computeValueType(), Compilation::VWIRE);
    Signal* in = signal_of(m, "i");
    in->setInput();
    EXPECT_EQ(in->computeStatusType(), Compilation::SINPUT);
    EXPECT_EQ(in->computeValueType(), Compilation::VINPUT);

    // A type makes the signal valued.
    Signal* typed = new Signal("t", "t_1", &m, w);
    Signal* pure = signal_of(m, "p");
    typed->setValueType("int", &m);
    EXPECT_TRUE(typed->isValued(&m));
    EXPECT_EQ(typed->getValueType(&m), "int");
    EXPECT_FALSE(pure->isValued(&m));
    EXPECT_EQ(pure->getValueType(&m), "pure");
    // Without a module there is no reference: pure, and nothing breaks.
    EXPECT_EQ(typed->getValueType(nullptr), "pure");
    typed->setValueType("float", nullptr);
    EXPECT_EQ(typed->getName(&m), "t_1");
}

TEST_F(SignalTest, NewOccurrencesGetFreshVariablesAndAllIdsListThemInOrder)
{
    Signal* x = signal_of(m, "x");
    x->setLocal();
    x->setValueType("int", &m);
    signal_of(m, "y");
    EXPECT_EQ(x->getAllBddId(&m, w), (std::list<long>{0, 1}));
    SignalRef* one = x->newOccurrence(w, &m);
    ASSERT_NE(one, nullptr);
    EXPECT_EQ(one->getCurrentName(), "x_1");
    EXPECT_EQ(one->getType(), "int");
    x->newOccurrence(w, &m);
    EXPECT_EQ(x->getCurrentOccurrence(w), 2);
    EXPECT_EQ(x->getName(&m), "x_2");
    EXPECT_EQ(variable_names(w),
              (std::vector<std::string>{"_s_x", "_v_x", "_s_y", "_v_y", "_s_x_1", "_v_x_1", "_s_x_2", "_v_x_2"}));
    EXPECT_EQ(x->getAllBddId(&m, w), (std::list<long>{0, 1, 4, 5, 6, 7}));
    // Current and initial versions now differ.
    EXPECT_EQ(x->getBddStatusId(&m, w), 6);
    EXPECT_EQ(x->getInitialBddStatusId(&m, w), 0);
    EXPECT_EQ(x->getInitialBddValue(&m, w), w->Bdd_var_by_index(1));
    EXPECT_EQ(m.getSignalManager()->getAllSignalRef(x, w).size(), 3u);

    Signal* in = signal_of(m, "in");
    in->setInput();
    EXPECT_EQ(in->newOccurrence(w, &m), nullptr);
    EXPECT_EQ(in->getCurrentOccurrence(w), 0);
}

TEST_F(SignalTest, TheCurrentFormKeepsItsOccurrence)
{
    Signal* x = signal_of(m, "x");
    x->setOutput();
    Expression* frozen = x->buildCurrentExpression(nullptr, &m);
    x->newOccurrence(w, &m);
    EXPECT_NE(frozen, x);
    EXPECT_TRUE(frozen->isSignalExpr());
    EXPECT_EQ(frozen->getBddStatus(&m, w), w->Bdd_var_by_index(0));
    EXPECT_EQ(x->getBddStatus(&m, w), w->Bdd_var_by_index(2));
    EXPECT_EQ(x->duplicate(), x);
}

TEST_F(SignalDeathTest, MisuseAndANameOrASlotTakenTwiceInTheManagerEndWithTheirMessage)
{
    signal_of(m, "a");
    SignalManager* sm = m.getSignalManager();
    EXPECT_EXIT(sm->addSignalRef(sm->getSignalRefByName("a")), ExitedWithCode(1),
                HasSubstr("Exception in Hash Table: SignalManager::addSignalRef: a is already defined\n"));
    // A reference outside the module (no manager) whose ids collide with a's.
    SignalRef stray("b", "b", nullptr, nullptr);
    EXPECT_EXIT(sm->addSignalRefIdTable(0, 5, &stray, w), ExitedWithCode(1),
                HasSubstr("Error: Illegal operation!\naddSignalRef (excep1) b\n"));
    EXPECT_EXIT(sm->addSignalRefIdTable(5, 1, &stray, w), ExitedWithCode(1),
                HasSubstr("Error: Illegal operation!\naddSignalRef (excep2)b\n"));

    Signal* in = signal_of(m, "in");
    in->setInput();
    EXPECT_EXIT(in->getAllBddId(&m, w), ExitedWithCode(1), HasSubstr("Error: Illegal operation!\nSignal::getAllBddIdin\n"));

    Signal* x = signal_of(m, "x");
    x->setLocal();
    new Signal("x_1", &m, w); // takes the name of x's next occurrence
    EXPECT_EXIT(x->newOccurrence(w, &m), ExitedWithCode(1),
                HasSubstr("Signal::newOccurrence: signal ref already exits for the current woodx\n"));

    SignalRef* ref = sm->getSignalRefByName("x");
    Bddexpressionwood other;
    EXPECT_EXIT(ref->addBddIds(0, 1, w), ExitedWithCode(1),
                HasSubstr("Error: Illegal operation!\nSignalRef::addBddIds: wood already addedx\n"));
    EXPECT_EXIT(ref->getBddStatusId(&other), ExitedWithCode(1), HasSubstr("SignalRef::getBddStatusId:unknown woodx\n"));
    EXPECT_EXIT(ref->getBddValueId(&other), ExitedWithCode(1), HasSubstr("SignalRef::getBddValueId:unknown woodx\n"));
    EXPECT_EXIT(ref->setBddStatusId(3, &other), ExitedWithCode(1), HasSubstr("SignalRef::setBddStausId: wood not found\n"));
    EXPECT_EXIT(ref->setBddValueId(3, &other), ExitedWithCode(1), HasSubstr("SignalRef::setBddValueId: wood not found\n"));
    EXPECT_EXIT(x->getBddStatus(&m, &other), ExitedWithCode(1), HasSubstr("no current occurrence"));

    Module empty("e");
    EXPECT_EXIT(x->getBddValue(&empty, w), ExitedWithCode(1),
                HasSubstr("Error: Illegal operation!\nSignal::getBddStatus:no signal ref for signal x\n"));
    EXPECT_EXIT(x->getInitialBddValueId(&empty, w), ExitedWithCode(1),
                HasSubstr("Error: Illegal operation!\nSignal::getBddStatusId:no signal ref for signal\n"));
}

TEST_F(SignalTest, ManagerIdTablesGrowWithTheWoodAndFollowCopiesAndDeletions)
{
    SignalManager* sm = m.getSignalManager();
    for (int i = 0; i < 40; ++i)
        signal_of(m, "s" + std::to_string(i));
    EXPECT_EQ(sm->getIdTable(w)->getSize(), 80);
    EXPECT_EQ(sm->getSignalRefById(79, w)->getCurrentName(), "s39");

    // A second wood over the same manager gets a copy of the table.
    Bddexpressionwood twin(w->getManager());
    twin.setCommonBddManager(1);
    sm->duplicate(w, &twin);
    SignalRef* s7 = sm->getSignalRefByName("s7");
    EXPECT_EQ(sm->getSignalRefById(14, &twin), s7);
    EXPECT_EQ(s7->getBddValueId(&twin), 15);

    sm->deleteWood(&twin);
    EXPECT_EQ(sm->getIdTable(&twin), nullptr);
    EXPECT_FALSE(s7->isDefinedWood(&twin));
    EXPECT_TRUE(s7->isDefinedWood(w));

    // Variables in a further wood for one reference.
    Bddexpressionwood third;
    third.Index_new_var_last("unrelated");
    long status = SignalRef::computeId("_s_s7", &third);
    long value = SignalRef::computeId("_v_s7", &third);
    sm->extendSignalRef(status, value, s7, &third);
    EXPECT_EQ(s7->getBddStatusId(&third), 1);
    EXPECT_EQ(sm->getSignalRefById(2, &third), s7);
    EXPECT_EQ(sm->getSignalRefById(0, &third), nullptr);
    sm->deleteWood(&third);

    EXPECT_THAT(text_of([&](std::ostream& os) { sm->printSignalTableByName(os); }), HasSubstr("s39"));
    EXPECT_THAT(text_of([&](std::ostream& os) { sm->printSignalTableById(os); }), HasSubstr("79: s39"));
}

} // namespace
