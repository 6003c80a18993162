// libFuzzer target: the project reader on any bytes, then everything that a
// read project reaches: the three writers, the geometry, routing, and the
// model's edits with whatever indexes the file holds.

#include "bix_norm.h"
#include "bix_parser.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <sstream>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
    std::ostringstream log;
    std::unique_ptr<bix_tpen_fichier> p(parse_bix_stream(in, log, 1));
    if (!p)
        return 0;
    std::ostringstream out;
    p->put_bix(out, p->mon_nom_module());
    p->put_ix(out, p->mon_nom_module());
    p->put_xfig(out, p->mon_nom_module());
    const int boxes = p->nbr_black_box();
    std::string message;
    for (int i = -1; i <= boxes; ++i) {
        p->bbox_largeur(i);
        p->bbox_hauteur(i);
        p->nom_black_box(i);
        p->correct_type_interconnection(i, i, boxes - i, -i, message);
    }
    for (bix_tpen_lien l : p->ma_table_liens()) {
        l.aligne_points(p.get());
        l.posxmax();
        l.posymin();
        l.modif_coords_dernier_point(1, 2);
    }
    if (p->nbr_transitions() > 0)
        p->replace_transition(0, p->ma_table_liens().back());
    p->sup_input(0);
    p->sup_output(p->nbr_outputs() - 1);
    p->sup_black_box(boxes / 2);
    p->sup_transition(0);
    p->put_ix(out, "after");
    p->put_xfig(out, "after");
    return 0;
}
