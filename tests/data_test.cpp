#include "dravik_support.h"

#include <gmock/gmock.h>

using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using namespace dravik_test;

namespace {

using DataTables = DataTablesTest;
using DataTablesDeathTest = DataTablesTest;
using DataExprTypes = DataTablesTest;
using DataExprTypesDeathTest = DataTablesTest;
using DataExprWalks = DataTablesTest;

TEST_F(DataTables, TablesAreMadeOnFirstUseAndTypesKeepTheirFirstId)
{
    EXPECT_EQ(Compilation::GDataTypeTable, nullptr);
    DataTypeTable* types = Compilation::getDataTypeTable();
    EXPECT_EQ(Compilation::getDataTypeTable(), types);
    types->addType("int");
    types->addType("float");
    types->addType("int");
    EXPECT_EQ(types->getTypeTable().size(), 2u);
    EXPECT_EQ((std::vector<int>{types->getIndex("int"), types->getIndex("float"), types->getIndex("bool")}),
              (std::vector<int>{0, 1, -1}));
    EXPECT_EQ((std::vector<std::string>{types->getTypeById(1), types->getTypeById(2), types->getTypeById(-1)}),
              (std::vector<std::string>{"float", "undefined", "undefined"}));
    EXPECT_EQ(text_of([&](std::ostream& os) { types->print(os, true); }),
              "type:\n   0: int;\n   1: float;\n\n");
    EXPECT_EQ(text_of([&](std::ostream& os) { types->print(os, false); }), "type:\nint;\nfloat;\n\n");
}

TEST_F(DataTables, MethodsAreNumberedFromTheLastIndex)
{
    DataMethodTable* methods = Compilation::getDataMethodTable();
    std::list<std::string> args{"int", "float"};
    auto* f = new MethodDecl("int", "f", args);
    auto* g = new MethodDecl(nullptr, nullptr, nullptr);
    methods->addMethod(f);
    methods->addMethod(g);
    EXPECT_EQ(f->getIndex(), 0);
    EXPECT_EQ(g->getIndex(), 1);
    EXPECT_EQ(g->getArgTypeList(), nullptr);
    EXPECT_EQ(methods->getMethodIndex("f"), 0);
    EXPECT_EQ(methods->getMethodIndex("h"), -1);
    EXPECT_EQ(methods->getMethodById(1), g);
    EXPECT_EQ(methods->getMethodById(2), nullptr);
    g->setIndex(7);
    auto* h = new MethodDecl("bool", "h", {});
    methods->addMethod(h);
    EXPECT_EQ(h->getIndex(), 8);
    EXPECT_EQ(methods->getMethodById(7), g);
    EXPECT_EQ(methods->getMethodById(1), nullptr);
    g->setIndex(1);
    h->setIndex(2);
    EXPECT_EQ(text_of([&](std::ostream& os) { methods->print(os, true); }),
              "method:\n   0: int f(int, float);\n   1:  ();\n   2: bool h();\n\n");
}

TEST_F(DataTablesDeathTest, DuplicateMethodsAndConstantsAreFatal)
{
    Compilation::getDataMethodTable()->addMethod(new MethodDecl("int", "f", {}));
    EXPECT_EXIT(Compilation::getDataMethodTable()->addMethod(new MethodDecl("bool", "f", {"int"})),
                ExitedWithCode(1),
                HasSubstr("Error: Already defined : f: overloading_of_method_not_yet_implemented\n"));
    Compilation::getDataConstantTable()->addConstant(new ConstantDecl("int", "c"));
    EXPECT_EXIT(Compilation::getDataConstantTable()->addConstant(new ConstantDecl("float", "c")), ExitedWithCode(1),
                HasSubstr("Error: Already defined : c: constant\n"));
}

TEST_F(DataTables, ConstantIndicesFollowTheLargestSoFarUnlessTheValueIsComputedNodesKeepTheFirstEvalIndex)
{
    DataConstantTable* constants = Compilation::getDataConstantTable();
    auto* bare = new ConstantDecl("int", "bare");
    auto* literal = new ConstantDecl("int", "lit", new DataValue("3"));
    auto* computed = new ConstantDecl("int", "comp", new DataUnaryOp(DataExpr::Uminus, new DataConstant(0)));
    computed->setIndex(9);
    auto* after = new ConstantDecl("float", "after");
    constants->addConstant(bare);
    constants->addConstant(literal);
    constants->addConstant(computed);
    constants->addConstant(after);
    EXPECT_EQ((std::vector<int>{bare->getConstantIndex(), literal->getConstantIndex(), computed->getConstantIndex(),
                                after->getConstantIndex()}),
              (std::vector<int>{0, 1, 9, 10}));
    EXPECT_EQ(constants->getConstantIndex("lit"), 1);
    EXPECT_EQ(constants->getConstant("none"), nullptr);
    EXPECT_EQ(constants->getConstantById(10), after);
    // An index moved after registration counts from then on.
    computed->setIndex(2);
    auto* last = new ConstantDecl("float", "last");
    constants->addConstant(last);
    EXPECT_EQ(last->getConstantIndex(), 11);
    after->setIndex(3);
    last->setIndex(4);
    EXPECT_EQ(constants->getConstantById(2), computed);
    auto* next = new ConstantDecl("int", "next");
    constants->addConstant(next);
    EXPECT_EQ(next->getConstantIndex(), 5);
    EXPECT_EQ(text_of([&](std::ostream& os) { constants->print(os, false); }),
              "constant:\nint bare;\nint lit value: 3;\nint comp value: 4(C: 0);\nfloat after;\n"
              "float last;\nint next;\n\n");

    // A constant node records the first evaluation index given to it.
    DataConstant first(0);
    DataConstant second(0);
    first.setIndex(12);
    second.setIndex(30);
    EXPECT_EQ(bare->getEvalIndex(), 12);
}

TEST_F(DataExprTypes, TypesComeFromDeclarationsAndOperandsAgree)
{
    Compilation::getDataConstantTable()->addConstant(new ConstantDecl("int", "zero", new DataValue("0")));
    Compilation::getDataConstantTable()->addConstant(new ConstantDecl("float", "half", new DataValue("0.5")));
    Compilation::getDataMethodTable()->addMethod(new MethodDecl("bool", "test", {"int"}));
    Module m("m");
    Signal* x = signal_of(m, "x");
    x->setValueType("int", &m);

    DataBinaryOp compare(DataExpr::Inf, new DataConstant(0), new DataUnaryOp(DataExpr::Uminus, new DataSignalValue(x)));
    EXPECT_EQ(compare.getType(&m), "int");
    EXPECT_EQ(compare.getRightArg()->getType(), "int");
    DataMethodCall call(0, new std::list<DataExpr*>{new DataConstant(1), new DataValue("9")});
    EXPECT_EQ(call.getType(&m), "bool");
    // The stored type is returned as is; computeType recomputes it.
    DataConstant half(1);
    half.setType("forced");
    EXPECT_EQ(half.getType(&m), "forced");
    half.computeType(&m);
    EXPECT_EQ(half.getType(), "float");
}

TEST_F(DataExprTypesDeathTest, TypeErrorsAreFatal)
{
    Compilation::getDataConstantTable()->addConstant(new ConstantDecl("int", "zero"));
    Compilation::getDataConstantTable()->addConstant(new ConstantDecl("float", "half"));
    Module m("m");
    DataBinaryOp mixed(DataExpr::Plus, new DataConstant(0), new DataConstant(1));
    EXPECT_EXIT(mixed.computeType(&m), ExitedWithCode(1),
                HasSubstr("*** Type check error in binary operator: type: int differs from type: float\n"));
    DataValue bare("42");
    EXPECT_EXIT(bare.computeType(&m), ExitedWithCode(1), HasSubstr("Error: Undefined type: 42\n"));
    DataConstant missing(5);
    EXPECT_EXIT(missing.computeType(&m), ExitedWithCode(1), HasSubstr("Error: Undefined constant: constant: m\n"));
    EXPECT_EXIT(missing.setIndex(3), ExitedWithCode(1), HasSubstr("Error: Undefined constant: "));
    DataMethodCall unknown(0, nullptr);
    EXPECT_EXIT(unknown.computeType(&m), ExitedWithCode(1), HasSubstr("Error: Undefined method: method\n"));

    Signal* pure = signal_of(m, "p");
    DataSignalValue not_valued(pure);
    EXPECT_EXIT(not_valued.computeType(&m), ExitedWithCode(1),
                HasSubstr("signal not valued Error: Undefined type: p\n"));
    // In another module the signal has no occurrence until it is given one;
    // with one, that module's manager still has no reference of it.
    Module other("o");
    EXPECT_EXIT(not_valued.computeType(&other), ExitedWithCode(1),
                HasSubstr("Signal:getCurrentOccurrence: no current occurrence for the considered wood:"));
    pure->setCurrentOccurrence(other.getBddWood(), 0);
    EXPECT_EXIT(not_valued.computeType(&other), ExitedWithCode(1),
                HasSubstr("undefined signal Error: Undefined type: p\n"));
    DataUnaryOp empty(DataExpr::Not, nullptr);
    EXPECT_EXIT(empty.computeType(&m), ExitedWithCode(1), HasSubstr("Error: Undefined type: "));
}

TEST_F(DataExprWalks, CopiesAreDeepAndForgetTypesAndIndices)
{
    Compilation::getDataConstantTable()->addConstant(new ConstantDecl("int", "c"));
    Module m("m");
    Signal* x = signal_of(m, "x");
    x->setValueType("int", &m);
    auto* decl = new ConstantDecl("int", "k");
    DataValue literal("7", decl);
    DataBinaryOp tree(DataExpr::Plus, new DataConstant(0),
                      new DataMethodCall(3, new std::list<DataExpr*>{new DataSignalValue(x), literal.duplicate()}));
    tree.getRightArg()->setType("int");
    tree.setIndex(4);
    tree.setType("int");
    DataExpr* copy = tree.duplicate();
    ASSERT_TRUE(copy->isDataBinaryOp());
    auto* bin = static_cast<DataBinaryOp*>(copy);
    EXPECT_EQ(bin->getType(), "");
    EXPECT_EQ(bin->getIndex(), -1);
    EXPECT_NE(bin->getLeftArg(), tree.getLeftArg());
    EXPECT_EQ(bin->getRightArg()->getType(), "");
    auto* call = static_cast<DataMethodCall*>(bin->getRightArg());
    EXPECT_EQ(call->getMethodIndex(), 3);
    EXPECT_EQ(static_cast<DataSignalValue*>(call->getArgList()->front())->getSignal(), x);
    EXPECT_EQ(static_cast<DataValue*>(call->getArgList()->back())->getConstDecl(), decl);
    EXPECT_EQ(debug_text(copy), " 0(C: 0, 3(x, 7))");
    delete copy;
    delete decl;

    DataMethodCall no_list(2, nullptr);
    DataExpr* copy_no_list = no_list.duplicate();
    EXPECT_EQ(static_cast<DataMethodCall*>(copy_no_list)->getArgList(), nullptr);
    EXPECT_EQ(debug_text(copy_no_list), "2()");
    delete copy_no_list;
}

TEST_F(DataExprWalks, DependencySetsCollectTheSignalsRead)
{
    Module m("m");
    Signal* x = signal_of(m, "x");
    Signal* y = signal_of(m, "y");
    DataConstant constant(0);
    EXPECT_EQ(constant.computeDependencySet(), nullptr);
    EXPECT_EQ(DataValue("1").computeDependencySet(), nullptr);
    DataMethodCall call(0, new std::list<DataExpr*>{
                               new DataConstant(0),
                               new DataBinaryOp(DataExpr::Mult, new DataSignalValue(y), new DataValue("2")),
                               new DataUnaryOp(DataExpr::Not, new DataSignalValue(x)), new DataSignalValue(y)});
    auto reads = call.computeDependencySet();
    ASSERT_NE(reads, nullptr);
    EXPECT_EQ(*reads, (std::set<Signal*>{x, y}));
    DataBinaryOp no_signal(DataExpr::Plus, new DataConstant(0), new DataConstant(1));
    EXPECT_EQ(no_signal.computeDependencySet(), nullptr);
}

TEST_F(DataExprWalks, ChangeModuleRebindsByInternalName)
{
    Module from("from");
    Module to("to");
    Signal* local = new Signal("v", "v_1", &from, from.getBddWood());
    local->setLocal();
    from.setLocalSignalList(new std::list<Signal*>{local});
    Signal* other = new Signal("v", "v_1", &to, to.getBddWood());
    DataUnaryOp tree(DataExpr::Uminus, new DataSignalValue(other));
    DataExpr* moved = tree.changeModule(&from, &to);
    EXPECT_EQ(static_cast<DataSignalValue*>(static_cast<DataUnaryOp*>(moved)->getArg())->getSignal(), local);
    delete moved;

    Signal* unknown = signal_of(to, "w");
    DataUnaryOp lost(DataExpr::Uminus, new DataSignalValue(unknown));
    EXPECT_EXIT(lost.changeModule(&from, &to), ExitedWithCode(1),
                HasSubstr("DataSignalValue::changeModule: no signal in new module for:w\n"));

    std::map<std::string, Signal*> renaming{{"v_1", local}};
    DataExpr* instance = tree.instanciate(nullptr, &renaming, &to);
    EXPECT_EQ(instance->computeDependencySet()->count(local), 1u);
    instance->applyRenaming(nullptr, nullptr);
    EXPECT_EQ(instance->computeDependencySet()->count(local), 1u);
    std::map<std::string, Signal*> back{{"v_1", other}};
    instance->applyRenaming(&back, nullptr);
    EXPECT_EQ(*instance->computeDependencySet(), (std::set<Signal*>{other}));
    delete instance;
}

TEST_F(DataExprWalks, AHundredThousandDeepChainIsWalkedWithoutRecursion)
{
    Compilation::getDataConstantTable()->addConstant(new ConstantDecl("int", "c"));
    Module m("m");
    Signal* x = signal_of(m, "x");
    x->setValueType("int", &m);
    m.setLocalSignalList(new std::list<Signal*>{x});
    const int depth = 100000;
    DataExpr* chain = new DataBinaryOp(DataExpr::Plus, new DataSignalValue(x), new DataConstant(0));
    for (int i = 0; i < depth; ++i)
        chain = new DataUnaryOp(DataExpr::Uminus, chain);
    EXPECT_EQ(chain->getType(&m), "int");
    EXPECT_EQ(*chain->computeDependencySet(), (std::set<Signal*>{x}));
    DataExpr* copy = chain->duplicate();
    DataExpr* moved = chain->changeModule(&m, &m);
    std::string text = debug_text(copy);
    EXPECT_EQ(text.size(), depth * 3 + std::string(" 0(x, C: 0)").size());
    EXPECT_EQ(text.substr(0, 6), "4(4(4(");
    EXPECT_EQ(text, debug_text(moved));
    delete chain;
    delete copy;
    delete moved;
}

} // namespace
