#include "dravik_support.h"
#include "equationtable.h"

#include <gmock/gmock.h>

using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using namespace dravik_test;

namespace {

struct table_fixture {
    Module m{"m"};
    Bddexpressionwood* w = m.getBddWood();
    EquationTable* table = m.getCompilation();
    Signal* a = signal_of(m, "a");
    Signal* b = signal_of(m, "b");

    Bddexpression* at(long index) { return w->exp_by_index(index); }
    bdd var(long index) { return w->Bdd_var_by_index(index); }
};

TEST(EquationTable, AWireValueIsTheNegationOfItsOwnStatus)
{
    table_fixture t;
    Signal* wire = signal_of(t.m, "w");
    wire->setWire();
    OrExpression e(t.a, t.b);
    t.table->createEquation(wire, &e, &t.m);
    long s = wire->getBddStatusId(&t.m, t.w);
    long v = wire->getBddValueId(&t.m, t.w);
    ASSERT_NE(t.at(s), nullptr);
    ASSERT_NE(t.at(v), nullptr);
    EXPECT_EQ(t.at(s)->getBddExp(), t.w->Bdd_or(t.var(0), t.var(2)));
    EXPECT_EQ(t.at(v)->getBddExp(), t.w->Bdd_not(t.var(s)));
    EXPECT_EQ(t.at(s)->getUserType(), Compilation::SWIRE);
    EXPECT_EQ(t.at(v)->getUserType(), Compilation::VWIRE);
    EXPECT_EQ(t.at(s)->getName(), "w");
    EXPECT_EQ(t.at(v)->getVarsDependance(), (std::set<std::int64_t>{s}));
}

TEST(EquationTable, AnInitialEquationDefinesTheInitialStatusButTheCurrentValue)
{
    table_fixture t;
    Signal* x = signal_of(t.m, "x");
    x->setOutput();
    x->newOccurrence(t.w, &t.m);
    t.a->setLocal();
    t.a->newOccurrence(t.w, &t.m);
    NotExpression e(t.a);
    t.table->createEquation(x, &e, &t.m, true);
    long initial_status = x->getInitialBddStatusId(&t.m, t.w);
    long current_value = x->getBddValueId(&t.m, t.w);
    ASSERT_NE(t.at(initial_status), nullptr);
    ASSERT_NE(t.at(current_value), nullptr);
    EXPECT_EQ(t.at(x->getBddStatusId(&t.m, t.w)), nullptr);
    EXPECT_EQ(t.at(x->getInitialBddValueId(&t.m, t.w)), nullptr);
    EXPECT_EQ(t.at(initial_status)->getBddExp(), t.a->getInitialBddValue(&t.m, t.w));
    EXPECT_EQ(t.at(current_value)->getBddExp(), t.a->getInitialBddStatus(&t.m, t.w));
    EXPECT_EQ(t.at(current_value)->getUserType(), Compilation::VOUTPUT);
}

TEST(EquationTable, MakeThenUnifyOrsBothRailsAndUnifyWithoutEquationsReports)
{
    table_fixture t;
    Signal* x = signal_of(t.m, "x");
    NotExpression first(t.a);
    AndExpression second(t.a, t.b);
    t.table->createEquation(x, &first, &t.m);
    t.table->createUnifyEquation(x, &second, &t.m, false);
    Bddexpression* status = t.at(x->getBddStatusId(&t.m, t.w));
    Bddexpression* value = t.at(x->getBddValueId(&t.m, t.w));
    EXPECT_EQ(status->getBddExp(), t.w->Bdd_or(first.getBddStatus(&t.m, t.w), second.getBddStatus(&t.m, t.w)));
    EXPECT_EQ(value->getBddExp(), t.w->Bdd_or(first.getBddValue(&t.m, t.w), second.getBddValue(&t.m, t.w)));
    // The wood's reader sets follow the new function.
    EXPECT_EQ(t.w->Readers(2), (std::set<std::int64_t>{x->getBddStatusId(&t.m, t.w)}));
    EXPECT_EQ(t.w->exp_number(), 2);

    // Unifying where there is no equation reports it and adds none.
    TrueExpression truth;
    EXPECT_EQ(stderr_of([&] { t.table->createUnifyEquation(t.b, &truth, &t.m, false); }),
              "internal error 1 in createUnifyEquation()! about sid=2\n"
              "internal error 2 in createUnifyEquation()! about vid=3\n");
    EXPECT_EQ(t.w->exp_number(), 2);
}

TEST(EquationTable, BottomEquationsOfTheCurrentOrAGivenOccurrence)
{
    table_fixture t;
    t.b->setLocal();
    t.b->newOccurrence(t.w, &t.m);
    t.table->createBottomEquation(t.b, &t.m);
    t.table->createBottomEquation(t.b, 0, &t.m);
    for (long index : t.b->getAllBddId(&t.m, t.w)) {
        ASSERT_NE(t.at(index), nullptr) << index;
        EXPECT_EQ(t.at(index)->getBddExp(), t.w->Bdd_zero());
    }
    EXPECT_EQ(t.at(2)->getUserType(), Compilation::STAT);
    EXPECT_EQ(t.at(3)->getUserType(), Compilation::VAL);
    EXPECT_EQ(stderr_of([&] { t.table->createBottomEquation(t.b, 5, &t.m); }),
              "createBottomEquation: no signalref\n");
    EXPECT_EQ(t.w->exp_number(), 4);
}

TEST(EquationTable, CallPertDatesAnAcyclicTable)
{
    table_fixture t;
    Signal* x = signal_of(t.m, "x");
    NotExpression e(t.a);
    t.table->createEquation(x, &e, &t.m);
    Signal* y = signal_of(t.m, "y");
    t.table->createEquation(y, x, &t.m);
    EXPECT_EQ(t.table->callPert(), 3);
    EXPECT_EQ(t.at(y->getBddStatusId(&t.m, t.w))->getEarliestDate(), 2);
}

TEST(EquationTableDeathTest, ADependencyCycleIsReportedWithTheVariablesNames)
{
    table_fixture t;
    t.table->createEquation(t.a, t.b, &t.m);
    t.table->createEquation(t.b, t.a, &t.m);
    // The wood catches the first cycle its dates run into (the status one).
    EXPECT_EXIT(t.table->callPert(), ExitedWithCode(1),
                HasSubstr("ERROR in Module `m': detecting variables in a dependance cycle:\n"
                          " _s_a\n _s_b\n\n\nwhen sorting equations: \n"));
    EXPECT_EXIT(t.table->callPert(), ExitedWithCode(1), HasSubstr("_s_a depends on: _s_b\n"));
}

TEST(EquationTable, AddAndLearnSignalBringVariablesIntoTheTablesWood)
{
    table_fixture t;
    Bddexpressionwood other;
    other.Index_new_var_last("first");
    EquationTable second("m", &other);
    second.learnSignal(t.b, &t.m);
    EXPECT_EQ(t.b->getBddStatusId(&t.m, &other), 1);
    EXPECT_EQ(t.b->getBddValueId(&t.m, &other), 2);
    EXPECT_EQ(t.m.getSignalManager()->getSignalRefById(2, &other)->getCurrentName(), "b");

    std::int64_t index = other.Index_new_var_last("_s_a");
    Bddexpression* e = new Bddexpression("_s_a", &other, other.Bdd_var_by_index(index), other.Bdd_one(), 0);
    second.add(e, &t.m);
    SignalRef* a = t.m.getSignalManager()->getSignalRefByName("a");
    ASSERT_TRUE(a->isDefinedWood(&other));
    EXPECT_EQ(a->getBddStatusId(&other), index);
    EXPECT_EQ(a->getBddValueId(&other), index + 1);

    Module unrelated("u");
    Signal* stranger = signal_of(unrelated, "z");
    EXPECT_EQ(stderr_of([&] { second.learnSignal(stranger, &t.m); }),
              "EquationTable:learSignal: signal not defined in module wood: z\n");
    Bddexpression* orphan = new Bddexpression("_s_q", &other, other.Bdd_var_by_index(0), other.Bdd_one(), 0);
    EXPECT_EQ(stderr_of([&] { second.add(orphan, &t.m); }), "EquationTable::add: no Signal ref _s_q\n");
}

} // namespace
