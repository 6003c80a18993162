// Writes a large compiled module for the loading benchmark.
//   bench_gen_ixc SIGNALS NODES BINDINGS FILE
//
// The module has SIGNALS interface and local signals (a quarter inputs, a
// quarter outputs, half locals, every third one typed), a register per 16
// locals, NODES BDD nodes (at most 32767, the format's limit) in variable
// order (blocks of 16 nodes over 8 variables each), a status equation for
// every output and local over one block,
// an abstract value equation for every typed output and local, BINDINGS
// bindings over an evaluation table of signal values, constants, built-in
// operations and method calls, and a small data section.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace {

struct signal_decl {
    std::string name;
    bool typed;
};

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 5) {
        std::cerr << "usage: bench_gen_ixc SIGNALS NODES BINDINGS FILE\n";
        return 2;
    }
    const int nb_signals = std::max(4, std::atoi(argv[1]));
    const int nb_nodes = std::min(32767, std::max(2, std::atoi(argv[2])));
    const int nb_bindings = std::max(0, std::atoi(argv[3]));
    std::ofstream os(argv[4]);
    std::mt19937 rng(7);
    auto pick = [&rng](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };

    const int nb_inputs = nb_signals / 4;
    const int nb_outputs = nb_signals / 4;
    const int nb_locals = nb_signals - nb_inputs - nb_outputs;
    std::vector<signal_decl> inputs, outputs, locals;
    for (int i = 0; i < nb_inputs; ++i)
        inputs.push_back({"in" + std::to_string(i), i % 3 == 0});
    for (int i = 0; i < nb_outputs; ++i)
        outputs.push_back({"out" + std::to_string(i), i % 3 == 0});
    for (int i = 0; i < nb_locals; ++i)
        locals.push_back({"loc" + std::to_string(i), i % 3 == 0});

    // Signals take variables in creation order: status 2k, value 2k + 1.
    auto status_var = [](int k) { return 2 * k; };

    os << "// generated module for the loading benchmark\nmodule: big\n0 0\n";
    auto declare = [&os](const char* keyword, const std::vector<signal_decl>& list) {
        os << keyword << "\n";
        for (const signal_decl& s : list)
            os << "  " << s.name << (s.typed ? " : int" : "") << "\n";
        os << ";\n";
    };
    declare("input:", inputs);
    declare("output:", outputs);
    declare("local:", locals);
    if (nb_locals >= 32) {
        os << "register:\n";
        for (int i = 0; i + 1 < nb_locals; i += 16)
            os << "  " << locals[i + 1].name << " " << locals[i].name << " " << (i / 16) % 2 << " ;\n";
    }
    os << "connexion: set reset rtl ;\n";

    // Node 0 is the constant. The other nodes form blocks of 16, each block a
    // small function over 8 consecutive input variables: a node decides on a
    // variable above those of its children, which lie earlier in its block.
    // Each equation reads one block, as compiled equations read a few signals.
    os << "equation_def: " << nb_nodes << "\n";
    os << "0 : -1 : 0 : 0 , 1\n";
    const int block = 16;
    const int window = std::min(8, 2 * nb_inputs);
    std::vector<int> var_of(nb_nodes, -1);
    std::vector<int> block_tops;
    for (int first = 1; first < nb_nodes; first += block) {
        const int last = std::min(nb_nodes - 1, first + block - 1);
        const int base = pick(2 * nb_inputs - window + 1);
        for (int i = first; i <= last; ++i) {
            // variables decrease through the block: the last node is the root
            const int v = base + (window - 1) * (last - i) / std::max(1, last - first);
            var_of[i] = v;
            auto child = [&]() {
                for (int j = i - 1; j >= first && j >= i - 4; --j)
                    if (var_of[j] > v && pick(2))
                        return j;
                return 0;
            };
            os << i << " : " << v << " : " << child() << " : " << child() << " , "
               << (pick(2) ? 1 : -1) << "\n";
        }
        block_tops.push_back(last);
    }

    // Equations of the outputs and locals, whose signals follow the inputs.
    os << "expressions:\n";
    std::vector<int> valued;
    for (int k = nb_inputs; k < nb_signals; ++k) {
        const int date = pick(8);
        os << date << " " << date + pick(8) << " " << status_var(k) << " : "
           << block_tops[static_cast<std::size_t>(pick(static_cast<int>(block_tops.size())))]
           << " , " << (pick(2) ? 1 : -1) << " , ( )\n";
        const int o = k - nb_inputs;
        const bool typed = o < nb_outputs ? outputs[o].typed : locals[o - nb_outputs].typed;
        if (typed) {
            valued.push_back(k);
            os << date << " " << date << " " << status_var(k) + 1 << " : -3 , 1 , ( "
               << 2 * pick(nb_inputs) + 1 << " " << 2 * pick(nb_inputs) + 1 << " )\n";
        }
    }
    os << "end:\n";

    // Bindings: each valued signal (in turn) gets a value from an evaluation
    // node: the sum of an input's value and a constant, or a method call.
    if (nb_bindings > 0 && !valued.empty()) {
        os << "binding:\n";
        for (int b = 0; b < nb_bindings; ++b) {
            const int k = valued[b % valued.size()];
            os << "  (" << status_var(k) << "," << status_var(k) + 1 << ") : value: " << 4 * b + 3;
            if (b % 5 == 0)
                os << " clock: (" << status_var(pick(nb_inputs)) << "," << status_var(0) + 1 << ")";
            os << " ;\n";
        }
        os << "end:\nevaltable:\n";
        for (int b = 0; b < nb_bindings; ++b) {
            const int base = 4 * b;
            os << "  " << base << " : %% 14 ( " << 2 * (3 * pick((nb_inputs + 2) / 3)) + 1 << " , 0 ) ;\n";
            os << "  " << base + 1 << " : $ " << b % 2 << " ;\n";
            os << "  " << base + 2 << " : " << base + 1 << " ;\n";
            if (b % 2)
                os << "  " << base + 3 << " : % 0 ( " << base << " , " << base + 2 << " ) ;\n";
            else
                os << "  " << base + 3 << " : %% 0 ( " << base << " , " << base + 2 << " ) ;\n";
        }
        os << "end:\n";
    }
    os << "data:\ntype:\n  int ;\nmethod:\n  int add ( int , int ) ;\n"
       << "constant:\n  int zero \"0\" ;\n  int one \"1\" ;\nend:\n";
    return 0;
}
