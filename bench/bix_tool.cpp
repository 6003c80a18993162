// Benchmark helper for the project layer.
//   bench_bix gen BOXES LINKS FILE   writes a generated project
//   bench_bix read FILE              reads a project, prints the seconds taken
//
// A generated project has 20 runs of 1 to 4 ports each; its boxes are run
// instances and terminals on a grid, and each link joins an output to an
// input of nearby boxes through two bends.

#include "bix_norm.h"
#include "bix_parser.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <random>
#include <string>

namespace {

bix_tpen_fichier generate(int boxes, int links)
{
    std::mt19937 rng(42);
    auto pick = [&rng](int n) { return static_cast<int>(rng() % static_cast<unsigned>(n)); };
    const char* types[] = {"pure", "int", "speed", "bool"};
    std::list<bix_declaration_ixcmodule> runs;
    for (int r = 0; r < 20; ++r) {
        std::list<bix_declaration_variables> in, out;
        for (int i = pick(4) + 1; i > 0; --i)
            in.push_back(bix_declaration_variables("in" + std::to_string(i), types[pick(4)]));
        for (int i = pick(4) + 1; i > 0; --i)
            out.push_back(bix_declaration_variables("out" + std::to_string(i), types[pick(4)]));
        runs.push_back(bix_declaration_ixcmodule("/opt/ix/lib/", "mod" + std::to_string(r),
                                                 "mod" + std::to_string(r), in, out));
    }
    std::list<bix_declaration_variables> inputs, outputs;
    for (int i = 0; i < 50; ++i) {
        inputs.push_back(bix_declaration_variables("i" + std::to_string(i), types[pick(4)]));
        outputs.push_back(bix_declaration_variables("o" + std::to_string(i), types[pick(4)]));
    }
    bix_tpen_fichier p("bench", {"int", "speed", "bool"}, inputs, outputs, {}, runs);
    const int columns = 100;
    for (int b = 0; b < boxes; ++b) {
        const int kind = b % 10 == 0 ? 1 + pick(4) : 0;
        const int ident = kind == 0 ? pick(20) : (kind == 3 ? pick(2) : pick(50));
        p.add_fin_black_box(black_box("b" + std::to_string(b), 12.0 * (b % columns),
                                      8.0 * (b / columns), kind, ident));
    }
    for (int l = 0; l < links; ++l) {
        const int up = pick(boxes);
        const int down = std::min(boxes - 1, up + 1 + pick(3));
        bix_tpen_lien link(up, pick(2), down, pick(2));
        link.aligne_points(&p);
        p.add_fin_transition(link);
    }
    p.normalise_diametre_ixcmodules();
    return p;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string mode = argc > 1 ? argv[1] : "";
    if (mode == "gen" && argc == 5) {
        std::cerr.setstate(std::ios::failbit);  // routing messages of odd ports
        generate(std::atoi(argv[2]), std::atoi(argv[3])).put_bix(argv[4], "bench");
        return 0;
    }
    if (mode == "read" && argc == 3) {
        std::cerr.setstate(std::ios::failbit);  // the "creation d'un run" dumps
        const auto start = std::chrono::steady_clock::now();
        std::unique_ptr<bix_tpen_fichier> p(parse(argv[2]));
        const std::chrono::duration<double> d = std::chrono::steady_clock::now() - start;
        if (!p)
            return 1;
        std::printf("%.3f\n", d.count());
        return 0;
    }
    std::cerr << "usage: bench_bix gen BOXES LINKS FILE | bench_bix read FILE\n";
    return 2;
}
