#include "dravik_support.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>

using ::testing::ExitedWithCode;
using ::testing::HasSubstr;
using namespace dravik_test;

namespace {

// The four values, as the pair of rails (status, value).
enum class four { T, F, B, E };
const four all_values[] = {four::T, four::F, four::B, four::E};

bool status_of(four x) { return x == four::T || x == four::E; }
bool value_of(four x) { return x == four::F || x == four::E; }

four from_rails(bool s, bool v)
{
    return s ? (v ? four::E : four::T) : (v ? four::F : four::B);
}

// Two signals a and b of a module: their four variables are the whole
// manager, so one minterm fixes every variable.
struct two_signals {
    Module m{"m"};
    Bddexpressionwood* w = m.getBddWood();
    Signal* a = signal_of(m, "a");
    Signal* b = signal_of(m, "b");

    bdd literal(long index, bool positive)
    {
        bdd v = w->Bdd_var_by_index(index);
        return positive ? v : w->Bdd_not(v);
    }
    bdd minterm(four x, four y)
    {
        bdd c = w->Bdd_and(literal(0, status_of(x)), literal(1, value_of(x)));
        c = w->Bdd_and(c, literal(2, status_of(y)));
        return w->Bdd_and(c, literal(3, value_of(y)));
    }
    bool holds(const bdd& f, four x, four y)
    {
        return !w->getManager()->Bdd_is_zero_tautologic(w->Bdd_and(f, minterm(x, y)));
    }
    // The value of e when a is x and b is y, read from its current rails.
    four evaluate(Expression* e, four x, four y)
    {
        return from_rails(holds(e->getBddStatus(&m, w), x, y), holds(e->getBddValue(&m, w), x, y));
    }
};

// Expected results, written as the logic's tables.
four belnap_or(four x, four y)
{
    if (x == four::T || y == four::T)
        return four::T;
    if (x == four::F)
        return y;
    if (y == four::F)
        return x;
    return x == y ? x : four::T; // bottom or error: together they are true
}

four belnap_and(four x, four y)
{
    if (x == four::F || y == four::F)
        return four::F;
    if (x == four::T)
        return y;
    if (y == four::T)
        return x;
    return x == y ? x : four::F;
}

four negation(four x)
{
    return x == four::T ? four::F : x == four::F ? four::T : x;
}

four np(four x)
{
    return x == four::T ? four::F : x == four::E ? four::E : four::T;
}

void check_table(const char* what, const std::function<Expression*(two_signals&)>& make,
                 const std::function<four(four, four)>& expected)
{
    two_signals t;
    Expression* e = make(t);
    for (four x : all_values)
        for (four y : all_values)
            EXPECT_EQ(t.evaluate(e, x, y), expected(x, y))
                << what << " with a=" << static_cast<int>(x) << " b=" << static_cast<int>(y);
    delete e;
}

TEST(ExpressionRails, EveryClassFollowsItsFourValuedTable)
{
    check_table("or", [](two_signals& t) { return new OrExpression(t.a, t.b); }, belnap_or);
    check_table("and", [](two_signals& t) { return new AndExpression(t.a, t.b); }, belnap_and);
    check_table("not", [](two_signals& t) { return new NotExpression(t.a); }, [](four x, four) { return negation(x); });
    check_table("np", [](two_signals& t) { return new NpExpression(t.a); }, [](four x, four) { return np(x); });
    check_table("then", [](two_signals& t) { return new ThenExpression(t.a, t.b); },
                [](four g, four y) { return g == four::T ? y : four::B; });
    check_table("else", [](two_signals& t) { return new ElseExpression(t.a, t.b); },
                [](four g, four y) { return g == four::T ? four::B : y; });
    check_table("cond", [](two_signals& t) { return new CondExpression(t.b, t.a); },
                [](four c, four y) { return c == four::T ? y : four::B; });
    check_table("true", [](two_signals&) { return new TrueExpression; }, [](four, four) { return four::T; });
    check_table("false", [](two_signals&) { return new FalseExpression; }, [](four, four) { return four::F; });
    check_table("bottom", [](two_signals&) { return new BottomExpression; }, [](four, four) { return four::B; });
    check_table("error", [](two_signals&) { return new ErrorExpression; }, [](four, four) { return four::E; });
    // Nested operators pass their operands' rails through.
    check_table("not not", [](two_signals& t) { return new NotExpression(new NotExpression(t.a)); },
                [](four x, four) { return x; });
    check_table("np of or", [](two_signals& t) { return new NpExpression(new OrExpression(t.a, t.b)); },
                [](four x, four y) { return np(belnap_or(x, y)); });
}

TEST(ExpressionRails, ConstantsUnderOperators)
{
    two_signals t;
    auto rails = [&](Expression* e) {
        std::pair<bdd, bdd> r{e->getBddStatus(&t.m, t.w), e->getBddValue(&t.m, t.w)};
        delete e;
        return r;
    };
    bdd one = t.w->Bdd_one();
    bdd zero = t.w->Bdd_zero();
    EXPECT_EQ(rails(new NpExpression(new BottomExpression)), std::make_pair(one, zero));
    EXPECT_EQ(rails(new NpExpression(new ErrorExpression)), std::make_pair(one, one));
    EXPECT_EQ(rails(new ThenExpression(new ErrorExpression, t.b)), std::make_pair(zero, zero));
    EXPECT_EQ(rails(new ElseExpression(new ErrorExpression, t.b)),
              std::make_pair(t.b->getBddStatus(&t.m, t.w), t.b->getBddValue(&t.m, t.w)));
    // A missing operand reads as not determined.
    EXPECT_EQ(rails(new OrExpression(nullptr, new FalseExpression)), std::make_pair(zero, zero));
}

// Signals whose first-instant variables differ from their current ones.
struct moved_signals {
    Module m{"m"};
    Bddexpressionwood* w = m.getBddWood();
    Signal* c = signal_of(m, "c");
    Signal* x = signal_of(m, "x");
    moved_signals()
    {
        c->setLocal();
        x->setLocal();
        c->newOccurrence(w, &m);
        x->newOccurrence(w, &m);
    }
    bdd s(Signal* e) { return e->getBddStatus(&m, w); }
    bdd v(Signal* e) { return e->getBddValue(&m, w); }
    bdd si(Signal* e) { return e->getInitialBddStatus(&m, w); }
    bdd vi(Signal* e) { return e->getInitialBddValue(&m, w); }
    bdd both(const bdd& f, const bdd& g) { return w->Bdd_and(f, g); }
    bdd no(const bdd& f) { return w->Bdd_not(f); }
};

TEST(ExpressionRails, InitialVersionsReadInitialVariablesExceptWhereCondMixesThem)
{
    moved_signals t;
    ASSERT_NE(t.s(t.c), t.si(t.c));

    CondExpression cond(t.x, t.c);
    bdd guard = t.both(t.si(t.c), t.no(t.v(t.c))); // initial status, current value
    EXPECT_EQ(cond.getInitialBddStatus(&t.m, t.w), t.both(guard, t.si(t.x)));
    EXPECT_EQ(cond.getInitialBddValue(&t.m, t.w), t.both(guard, t.v(t.x)));
    EXPECT_EQ(cond.getBddValue(&t.m, t.w), t.both(t.both(t.s(t.c), t.no(t.v(t.c))), t.v(t.x)));

    ThenExpression then(t.c, t.x);
    bdd initial_guard = t.both(t.si(t.c), t.no(t.vi(t.c)));
    EXPECT_EQ(then.getInitialBddStatus(&t.m, t.w), t.both(initial_guard, t.si(t.x)));
    EXPECT_EQ(then.getInitialBddValue(&t.m, t.w), t.both(initial_guard, t.vi(t.x)));
    ElseExpression otherwise(t.c, t.x);
    EXPECT_EQ(otherwise.getInitialBddValue(&t.m, t.w), t.both(t.no(initial_guard), t.vi(t.x)));

    OrExpression either(t.c, t.x);
    EXPECT_EQ(either.getInitialBddValue(&t.m, t.w), t.both(t.vi(t.c), t.vi(t.x)));
    NpExpression np_x(t.x);
    EXPECT_EQ(np_x.getInitialBddValue(&t.m, t.w), t.si(t.x));
    NotExpression not_x(t.x);
    EXPECT_EQ(not_x.getInitialBddStatus(&t.m, t.w), t.vi(t.x));
}

enum class kind { t, f, b, e, other };

Expression* make(kind k, Signal* other)
{
    switch (k) {
    case kind::t: return new TrueExpression;
    case kind::f: return new FalseExpression;
    case kind::b: return new BottomExpression;
    case kind::e: return new ErrorExpression;
    case kind::other: return new NotExpression(other);
    }
    return nullptr;
}

// What a cell of the tables yields.
enum class yields { receiver, operand, new_error, new_bottom, new_node };

struct cell {
    kind receiver;
    kind operand;
    yields plus;
    yields mult;
};

// Identity matters where the result is an existing object.
void check_cell(const cell& c, bool is_plus)
{
    Module m("m");
    Signal* s = signal_of(m, "s");
    Expression* x = make(c.receiver, s);
    Expression* e = make(c.operand, s);
    Expression* r = is_plus ? x->plus(e, &m) : x->mult(e, &m);
    yields expected = is_plus ? c.plus : c.mult;
    std::string where = std::string(is_plus ? "plus" : "mult") + " receiver " + std::to_string(int(c.receiver))
        + " operand " + std::to_string(int(c.operand));
    switch (expected) {
    case yields::receiver: EXPECT_EQ(r, x) << where; break;
    case yields::operand: EXPECT_EQ(r, e) << where; break;
    case yields::new_error: EXPECT_TRUE(r != x && r != e && r->isErrorExpr()) << where; break;
    case yields::new_bottom: EXPECT_TRUE(r != x && r != e && r->isBottomExpr()) << where; break;
    case yields::new_node: {
        auto* node = dynamic_cast<BinaryExpression*>(r);
        ASSERT_NE(node, nullptr) << where;
        EXPECT_EQ(node->getLeft(), x) << where;
        EXPECT_EQ(node->getRight(), e) << where;
        EXPECT_EQ(dynamic_cast<OrExpression*>(r) != nullptr, is_plus) << where;
        delete r; // owns both
        return;
    }
    }
    if (r != x && r != e)
        delete r;
    delete x;
    delete e;
}

TEST(ExpressionCombination, PlusAndMultFollowTheirTablesInOrder)
{
    using k = kind;
    using y = yields;
    const cell cells[] = {
        // any other expression
        {k::other, k::b, y::receiver, y::operand},
        {k::other, k::f, y::receiver, y::operand},
        {k::other, k::e, y::operand, y::receiver},
        {k::other, k::t, y::operand, y::receiver},
        {k::other, k::other, y::new_node, y::new_node},
        // true
        {k::t, k::e, y::operand, y::receiver},
        {k::t, k::f, y::new_error, y::new_bottom},
        {k::t, k::b, y::receiver, y::operand},
        {k::t, k::t, y::receiver, y::operand},
        {k::t, k::other, y::receiver, y::operand},
        // false
        {k::f, k::b, y::receiver, y::operand},
        {k::f, k::t, y::new_error, y::new_bottom},
        {k::f, k::e, y::operand, y::receiver},
        {k::f, k::f, y::operand, y::receiver},
        {k::f, k::other, y::operand, y::receiver},
        // bottom and error
        {k::b, k::t, y::operand, y::receiver},
        {k::b, k::other, y::operand, y::receiver},
        {k::e, k::f, y::receiver, y::operand},
        {k::e, k::other, y::receiver, y::operand},
    };
    for (const cell& c : cells) {
        check_cell(c, true);
        check_cell(c, false);
    }
}

TEST(ExpressionCopies, DuplicateCopiesNodesAndSharesSignals)
{
    two_signals t;
    Expression* tree = new OrExpression(new ThenExpression(new TrueExpression, t.a),
                                        new CondExpression(new NpExpression(t.b), t.a));
    Expression* copy = tree->duplicate();
    ASSERT_NE(copy, nullptr);
    EXPECT_NE(copy, tree);
    EXPECT_EQ(printed(copy), printed(tree));
    EXPECT_EQ(copy->getBddStatus(&t.m, t.w), tree->getBddStatus(&t.m, t.w));
    EXPECT_EQ(copy->getBddValue(&t.m, t.w), tree->getBddValue(&t.m, t.w));
    auto* left_copy = dynamic_cast<ThenExpression*>(static_cast<OrExpression*>(copy)->getLeft());
    auto* left = dynamic_cast<ThenExpression*>(static_cast<OrExpression*>(tree)->getLeft());
    ASSERT_NE(left_copy, nullptr);
    EXPECT_NE(left_copy->getBoolExpr(), left->getBoolExpr());
    EXPECT_EQ(left_copy->getIdentifier(), t.a);
    auto* cond_copy = dynamic_cast<CondExpression*>(static_cast<OrExpression*>(copy)->getRight());
    ASSERT_NE(cond_copy, nullptr);
    EXPECT_EQ(cond_copy->getCondition(), t.a);
    delete tree;
    // The copy stands on its own.
    EXPECT_EQ(printed(copy), "((SET_then( 1 , a)) + (Cond(np b, a)))");
    delete copy;

    Expression plain;
    Expression* none = nullptr;
    EXPECT_EQ(stderr_of([&] { none = plain.duplicate(); }), "abnormal use of expression::duplicate() ...\n");
    EXPECT_EQ(none, nullptr);
}

TEST(ExpressionCopies, CurrentFormRebuildsOperatorsOverCurrentOccurrences)
{
    moved_signals t;
    ThenExpression* guarded = new ThenExpression(new TrueExpression, t.c);
    Expression* tree = new AndExpression(new NotExpression(t.x), guarded);
    Expression* current = tree->buildCurrentExpression(nullptr, &t.m);
    EXPECT_EQ(guarded->buildCurrentExpression(nullptr, &t.m), guarded);
    bdd x_value_then = t.v(t.x);
    t.x->newOccurrence(t.w, &t.m);
    // The original follows x to its newest occurrence; the current form does not.
    EXPECT_EQ(tree->getBddStatus(&t.m, t.w), t.both(t.v(t.x), t.s(t.c)));
    EXPECT_EQ(current->getBddStatus(&t.m, t.w), t.both(x_value_then, t.s(t.c)));
    EXPECT_NE(x_value_then, t.v(t.x));
    EXPECT_EQ(printed(current), printed(tree));
    delete tree;
    delete current;
}

TEST(ExpressionPrinting, FormsOfEveryClassAndSumsOfProducts)
{
    two_signals t;
    Expression* tree = new AndExpression(
        new OrExpression(new NotExpression(t.a), new ElseExpression(new FalseExpression, new BottomExpression)),
        new OrExpression(new NpExpression(new ErrorExpression), new CondExpression(new TrueExpression, t.b)));
    EXPECT_EQ(printed(tree), "((~a + (SET_else( 0 ,  bottom ))) * (np  error  + (Cond( 1 , b))))");
    delete tree;

    OrExpression either(t.a, t.b);
    const std::string status = text_of([&](std::ostream& os) { either.printBddStatus(os, &t.m, t.w); });
    bdd a_or_b = t.w->Bdd_or(t.w->Bdd_var_by_index(0), t.w->Bdd_var_by_index(2));
    EXPECT_EQ(status, text_of([&](std::ostream& os) { t.w->getManager()->Bdd_print_sop(os, a_or_b); }));
    EXPECT_THAT(status, HasSubstr("_s_a"));
    NotExpression not_a(t.a);
    EXPECT_EQ(text_of([&](std::ostream& os) { not_a.printBddValue(os, &t.m, t.w); }), "_s_a");
    TrueExpression truth;
    EXPECT_EQ(text_of([&](std::ostream& os) { truth.printBddValue(os, &t.m, t.w); }), "0");
}

TEST(ExpressionDeathTest, APlainExpressionHasNoRails)
{
    Module m("m");
    Expression plain;
    Bddexpressionwood* w = m.getBddWood();
    EXPECT_EXIT(plain.getBddStatus(&m, w), ExitedWithCode(1), HasSubstr("Expression::getBddStatus()"));
    EXPECT_EXIT(plain.getBddValue(&m, w), ExitedWithCode(1), HasSubstr("Expression::getBddValue()"));
    EXPECT_EXIT(plain.getInitialBddStatus(&m, w), ExitedWithCode(1), HasSubstr("Expression::getInitialBddStatus()"));
    EXPECT_EXIT(plain.getInitialBddValue(&m, w), ExitedWithCode(1), HasSubstr("Expression::getInitialBddValue()"));
    NotExpression wrapped(new Expression);
    EXPECT_EXIT(wrapped.getBddStatus(&m, w), ExitedWithCode(1), HasSubstr("Expression::getBddValue()"));
}

} // namespace
