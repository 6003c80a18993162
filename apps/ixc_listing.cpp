#include "ixc_listing.h"

#include "Bddexpression.h"
#include "bddpp.h"
#include "data.h"
#include "expression.h"
#include "module.h"

#include <cstdio>
#include <functional>
#include <ostream>
#include <sstream>

namespace {

// Above this many one-paths a function is written as null: the output stays
// bounded whatever the module.
constexpr std::size_t max_one_paths = 100000;
// Nor may one function's text be longer than this (long names make a few
// paths enough for hundreds of megabytes); its length is measured first.
constexpr std::uint64_t max_function_text = 16000000;

// A small pretty-printing JSON writer: values go into the innermost open
// array or object, keys in the order they are written.
class json_writer {
public:
    json_writer(std::ostream& os, int indent) : out(os), depth(indent / 2) {}

    void begin_object() { open('{'); }
    void end_object() { close('}'); }
    void begin_array() { open('['); }
    void end_array() { close(']'); }

    json_writer& key(const std::string& k)
    {
        separate();
        out << json_string(k) << ": ";
        after_key = true;
        return *this;
    }

    void string(const std::string& s) { scalar(json_string(s)); }
    void null() { scalar("null"); }
    void boolean(bool b) { scalar(b ? "true" : "false"); }
    void number(long long n) { scalar(std::to_string(n)); }
    void string_or_null(const std::string* s) { s ? string(*s) : null(); }

    // An array of scalars written on one line.
    template <typename T, typename Put>
    void inline_array(const T& items, Put put)
    {
        separate();
        out << '[';
        bool first = true;
        for (const auto& item : items) {
            out << (first ? "" : ", ");
            first = false;
            put(item);
        }
        out << ']';
        mark_written();
    }

    std::ostream& raw() { return out; }

private:
    void open(char c)
    {
        separate();
        out << c;
        ++depth;
        fresh.push_back(true);
    }

    void close(char c)
    {
        --depth;
        const bool empty = fresh.back();
        fresh.pop_back();
        if (!empty)
            newline();
        out << c;
        mark_written();
    }

    void scalar(const std::string& text)
    {
        separate();
        out << text;
        mark_written();
    }

    // Before a value: nothing after a key; else a comma unless first, a line end
    // and the indentation.
    void separate()
    {
        if (after_key) {
            after_key = false;
            return;
        }
        if (!fresh.empty()) {
            if (!fresh.back())
                out << ',';
            newline();
        }
    }

    void mark_written()
    {
        if (!fresh.empty())
            fresh.back() = false;
    }

    void newline() { out << '\n' << std::string(static_cast<std::size_t>(2 * depth), ' '); }

    std::ostream& out;
    int depth;
    std::vector<bool> fresh;  // per open container: nothing written in it yet
    bool after_key = false;
};

const std::string* internal_name_of(const Signal* s)
{
    return s ? &s->getInternalName() : nullptr;
}

void write_signal(json_writer& w, Module& m, Signal* s)
{
    if (!s) {
        w.null();
        return;
    }
    Bddexpressionwood* wood = m.getBddWood();
    w.begin_object();
    w.key("name").string(s->getOriginalName());
    w.key("internal").string(s->getInternalName());
    w.key("type").string(s->findValueType(&m));
    std::vector<const char*> flags;
    if (s->isInput())
        flags.push_back("input");
    if (s->isOutput())
        flags.push_back("output");
    if (s->isLocal())
        flags.push_back("local");
    if (s->isWire())
        flags.push_back("wire");
    if (s->isRegister())
        flags.push_back("register");
    if (s->isClock())
        flags.push_back("clock");
    if (s->isValue())
        flags.push_back("value");
    if (s->isPre())
        flags.push_back("pre");
    w.key("flags").inline_array(flags, [&w](const char* f) { w.raw() << json_string(f); });
    long status = 0, value = 0;
    const bool known = wood && s->findBddIds(&m, wood, status, value);
    if (known) {
        w.key("status_var").number(status);
        w.key("value_var").number(value);
    } else {
        w.key("status_var").null();
        w.key("value_var").null();
    }
    w.end_object();
}

void write_signal_list(json_writer& w, Module& m, const char* key, const std::list<Signal*>* list)
{
    w.key(key).begin_array();
    if (list)
        for (Signal* s : *list)
            write_signal(w, m, s);
    w.end_array();
}

// The one-paths of f as a sum of products of variable names, or false when
// there are too many or their text would be too long.
bool sum_of_products(bddpp_manager& man, const bdd& f, std::string& text)
{
    const bddpp_manager::sop_size size = man.Bdd_sop_size(f);
    if (size.paths > max_one_paths || size.length > max_function_text)
        return false;
    std::vector<std::vector<bdd_literal>> paths;
    if (!man.Bdd_one_paths(f, max_one_paths, paths))
        return false;
    if (paths.empty()) {
        text = "0";
        return true;
    }
    if (paths.size() == 1 && paths.front().empty()) {
        text = "1";
        return true;
    }
    std::ostringstream os;
    for (std::size_t p = 0; p < paths.size(); ++p) {
        os << (p ? " + " : "");
        for (std::size_t l = 0; l < paths[p].size(); ++l)
            os << (l ? "*" : "") << (paths[p][l].positive ? "" : "!")
               << man.Name_var_by_id(paths[p][l].var_id);
    }
    text = os.str();
    return true;
}

void write_equations(json_writer& w, Bddexpressionwood* wood)
{
    w.key("equations").begin_array();
    if (wood) {
        bddpp_manager& man = *wood->getManager();
        for (std::int64_t k : wood->Exp_set()) {
            Bddexpression* e = wood->exp_by_index(k);
            if (!e)
                continue;
            w.begin_object();
            w.key("index").number(k);
            w.key("variable").string(man.Name_var_by_index(k));
            w.key("abstract").boolean(e->isAbstract());
            std::string sop;
            if (!e->isAbstract() && sum_of_products(man, e->getBddExp(), sop))
                w.key("function").string(sop);
            else
                w.key("function").null();
            w.key("depends").inline_array(e->getVarsDependance(), [&](std::int64_t j) {
                w.raw() << json_string(man.Name_var_by_index(j));
            });
            w.key("usertype").number(e->getUserType());
            w.key("earliest").number(e->getEarliestDate());
            w.key("latest").number(wood->latest_date(k));
            w.end_object();
        }
    }
    w.end_array();
}

void write_data_tables(json_writer& w)
{
    std::vector<std::string> types;
    if (const DataTypeTable* table = Compilation::GDataTypeTable)
        for (int id = 0; id < table->size(); ++id)
            types.push_back(table->getTypeById(id));
    w.key("types").inline_array(types, [&w](const std::string& t) { w.raw() << json_string(t); });

    w.key("methods").begin_array();
    if (const DataMethodTable* methods = Compilation::GDataMethodTable) {
        for (std::size_t i = 0; i < methods->getMethodList().size(); ++i) {
            const MethodDecl* m = methods->getMethodById(static_cast<int>(i));
            if (!m)
                continue;
            w.begin_object();
            w.key("index").number(m->getIndex());
            w.key("return").string(m->getReturnType());
            w.key("name").string(m->getName());
            const std::list<std::string> none;
            const std::list<std::string>& args = m->getArgTypeList() ? *m->getArgTypeList() : none;
            w.key("args").inline_array(args, [&w](const std::string& a) { w.raw() << json_string(a); });
            w.end_object();
        }
    }
    w.end_array();

    w.key("constants").begin_array();
    if (const DataConstantTable* constants = Compilation::GDataConstantTable) {
        for (ConstantDecl* c : constants->getConstantList()) {
            w.begin_object();
            w.key("index").number(c->getConstantIndex());
            w.key("type").string(c->getType());
            w.key("name").string(c->getName());
            if (c->getValue()) {
                std::ostringstream value;
                c->getValue()->print_debug(value);
                w.key("value").string(value.str());
            } else {
                w.key("value").null();
            }
            w.key("eval_index").number(c->getEvalIndex());
            w.end_object();
        }
    }
    w.end_array();
}

void write_ids(json_writer& w, const char* key, const std::vector<int>& ids)
{
    w.key(key).inline_array(ids, [&w](int id) { w.raw() << id; });
}

}  // namespace

std::string json_string(const std::string& text)
{
    std::string s = "\"";
    const std::size_t n = text.size();
    for (std::size_t i = 0; i < n; ++i) {
        const unsigned char c = static_cast<unsigned char>(text[i]);
        if (c == '"' || c == '\\') {
            s += '\\';
            s += static_cast<char>(c);
        } else if (c >= 0x20 && c < 0x7f) {
            s += static_cast<char>(c);
        } else {
            // A well-formed UTF-8 sequence passes; any other byte is escaped.
            std::size_t len = c >= 0xf0 && c < 0xf5 ? 4 : c >= 0xe0 ? 3 : c >= 0xc2 && c < 0xe0 ? 2 : 0;
            bool valid = len > 0 && i + len <= n;
            for (std::size_t k = 1; valid && k < len; ++k)
                valid = (static_cast<unsigned char>(text[i + k]) & 0xc0) == 0x80;
            if (valid) {
                s.append(text, i, len);
                i += len - 1;
            } else {
                char buf[8];
                std::snprintf(buf, sizeof buf, "\\u%04x", c);
                s += buf;
            }
        }
    }
    return s + "\"";
}

void write_module_json(std::ostream& os, const std::string& file, Module& m, const ixc_file_ids& ids,
                       int indent)
{
    json_writer w(os, indent);
    w.begin_object();
    w.key("file").string(file);
    w.key("module").string(m.getName());
    w.key("reincarnate").boolean(m.getReincarnate());
    w.key("finalised").boolean(m.getFinalised() != 0);
    write_signal_list(w, m, "inputs", m.getInputSignalList());
    write_signal_list(w, m, "outputs", m.getOutputSignalList());
    write_signal_list(w, m, "data_signals", m.getDataSignalList());
    write_signal_list(w, m, "locals", m.getLocalSignalList());

    w.key("memorized").begin_array();
    if (const std::list<memorizedSignal*>* pres = m.getPreSignalList()) {
        for (const memorizedSignal* p : *pres) {
            if (!p) {
                w.null();
                continue;
            }
            w.begin_object();
            w.key("pre").string_or_null(internal_name_of(p->pre()));
            w.key("actual").string_or_null(internal_name_of(p->actual()));
            w.key("initial").string(p->initial_value());
            w.end_object();
        }
    }
    w.end_array();

    w.key("registers").begin_array();
    if (const std::list<regclass*>* registers = m.getRegisterList()) {
        for (const regclass* r : *registers) {
            if (!r) {
                w.null();
                continue;
            }
            w.begin_object();
            w.key("actual").string_or_null(internal_name_of(r->actual_var()));
            w.key("next").string_or_null(internal_name_of(r->next_var()));
            w.key("initial").number(r->is_initialy_true());
            w.end_object();
        }
    }
    w.end_array();

    w.key("connexion").begin_object();
    w.key("set").string_or_null(internal_name_of(m.getSet()));
    w.key("reset").string_or_null(internal_name_of(m.getReset()));
    w.key("rtl").string_or_null(internal_name_of(m.getRtl()));
    w.end_object();

    Bddexpressionwood* wood = m.getBddWood();
    bddpp_manager* man = wood ? wood->getManager() : nullptr;
    const std::int64_t nb_vars = man ? man->Nb_bdd_vars() : 0;
    std::vector<std::int64_t> order;
    for (std::int64_t i = 0; i < nb_vars; ++i)
        order.push_back(i);
    w.key("variables").inline_array(order, [&](std::int64_t id) {
        w.raw() << json_string(man->Name_var_by_id(id));
    });
    w.key("order").inline_array(order, [&](std::int64_t index) { w.raw() << man->Id_var_by_index(index); });
    w.key("nb_level").number(wood ? wood->Nb_level() : 0);
    write_equations(w, wood);
    write_data_tables(w);
    write_ids(w, "type_ids", ids.types);
    write_ids(w, "method_ids", ids.methods);
    write_ids(w, "constant_ids", ids.constants);

    w.key("bindings").begin_array();
    if (const std::map<std::string, DataBinding*>* table = m.getDataTable()) {
        for (const auto& entry : *table) {
            const DataBinding* b = entry.second;
            if (!b)
                continue;
            w.begin_object();
            w.key("signal").string_or_null(internal_name_of(b->getSignal()));
            w.key("clock").string_or_null(internal_name_of(b->getClock()));
            std::ostringstream value;
            if (b->getValue())
                b->getValue()->print_debug(value);
            w.key("value").string(value.str());
            w.end_object();
        }
    }
    w.end_array();
    w.end_object();
}

void write_failure_json(std::ostream& os, const std::string& file, int indent)
{
    json_writer w(os, indent);
    w.begin_object();
    w.key("file").string(file);
    w.key("error").boolean(true);
    w.end_object();
}

void write_module_summary(std::ostream& os, const std::string& file, Module& m)
{
    os << "module " << m.getName() << " (" << file << ")\n";
    if (const std::list<Signal*>* inputs = m.getInputSignalList())
        for (Signal* s : *inputs)
            os << "input " << s->getOriginalName() << ": " << s->findValueType(&m) << "\n";
    if (const std::list<Signal*>* outputs = m.getOutputSignalList())
        for (Signal* s : *outputs)
            os << "output " << s->getOriginalName() << ": " << s->findValueType(&m) << "\n";
}
