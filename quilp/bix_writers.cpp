// The three writers of a project: the project file (".bix"), the main Ix
// module (".ix") and the Xfig drawing (".fig"). Output files are opened
// without checking, as the editor and batch mode expect; a name that points
// outside a table is written as the empty text.

#include "bix_norm.h"

#include "quilp_warn.h"

#include <cmath>
#include <fstream>
#include <iostream>
#include <locale>

namespace {

// Numbers are written with the classic formatting whatever the user's locale:
// the stream's own locale is set aside while a writer runs.
class classic_numbers {
public:
    explicit classic_numbers(std::ostream& os) : stream(os), saved(os.imbue(std::locale::classic())) {}
    ~classic_numbers() { stream.imbue(saved); }
    classic_numbers(const classic_numbers&) = delete;
    classic_numbers& operator=(const classic_numbers&) = delete;

private:
    std::ostream& stream;
    std::locale saved;
};

template <typename Writer>
void write_file(const std::string& file_name, Writer write)
{
    std::ofstream os(file_name, std::ios::out | std::ios::trunc);
    write(os);
}

}  // namespace

// ---------------------------------------------------------------------------
// Project file

void bix_declaration_variables::put_bix(std::ostream& os) const
{
    os << name << ": " << typevar;
}

std::ostream& operator<<(std::ostream& os, const bix_declaration_variables& v)
{
    return os << v.mon_nom() << " : " << v.mon_type();
}

namespace {

// "name : type" entries separated by "," and a line end, the last followed
// by ";" and a line end.
void put_port_list(std::ostream& os, const std::vector<bix_declaration_variables>& ports)
{
    for (std::size_t i = 0; i < ports.size(); ++i) {
        os << ports[i];
        if (i + 1 < ports.size())
            os << ",\n";
    }
    os << ";\n";
}

}  // namespace

void bix_declaration_ixcmodule::put_bix(std::ostream& os) const
{
    os << '"' << path << "\": " << filename << ": " << modulename << ": \n";
    os << "Input:\n";
    put_port_list(os, table_inputs);
    os << "Output:\n";
    put_port_list(os, table_outputs);
}

std::ostream& operator<<(std::ostream& os, const bix_declaration_ixcmodule& m)
{
    m.put_bix(os);
    return os;
}

void black_box::put_bix(std::ostream& os, const bix_tpen_fichier&) const
{
    os << '"' << nom << "\" " << xpos << ' ' << ypos << " : " << tpe << " : " << ident;
}

void bix_tpen_lien::put_bix(std::ostream& os) const
{
    os << "From: " << ident_ixcmodule_amont << ':' << ident_ixcmodule_amont_output
       << " To: " << ident_ixcmodule_aval << ':' << ident_ixcmodule_aval_input << " By:";
    for (std::size_t i = 0; i + 1 < positions.size(); i += 2)
        os << ' ' << positions[i] << ',' << positions[i + 1];
}

namespace {

// One section: its items, each followed by "," unless last and a line end.
template <typename T, typename Put>
void put_section(std::ostream& os, const char* header, const std::vector<T>& items, Put put)
{
    os << header << "\n";
    for (std::size_t i = 0; i < items.size(); ++i) {
        put(items[i]);
        if (i + 1 < items.size())
            os << ",";
        os << "\n";
    }
    os << ";\n";
}

}  // namespace

void bix_tpen_fichier::put_bix(const std::string& file_name, const std::string& module_name) const
{
    write_file(file_name, [&](std::ostream& os) { put_bix(os, module_name); });
}

void bix_tpen_fichier::put_bix(std::ostream& os, const std::string& module_name) const
{
    const classic_numbers guard(os);
    auto put_var = [&os](const bix_declaration_variables& v) { v.put_bix(os); };
    os << "Name: " << module_name << ";\n\n";
    put_section(os, "Type:", table_types, [&os](const std::string& t) { os << t; });
    os << "\n";
    put_section(os, "Input:", table_inputs, put_var);
    os << "\n";
    put_section(os, "Output:", table_outputs, put_var);
    os << "\n";
    put_section(os, "Local:", table_locals, put_var);
    os << "\n";
    put_section(os, "Run:", table_external_ixcmodules,
                [&os](const bix_declaration_ixcmodule& m) { m.put_bix(os); });
    os << "\n";
    put_section(os, "BlackBox:", table_bbox, [&](const black_box& b) { b.put_bix(os, *this); });
    os << "\n";
    put_section(os, "Link:", table_liens, [&os](const bix_tpen_lien& l) { l.put_bix(os); });
}

// ---------------------------------------------------------------------------
// Main Ix module

void bix_declaration_variables::put_ix(std::ostream& os) const
{
    os << name;
    if (typevar != "pure")
        os << ": " << typevar;
}

void bix_declaration_ixcmodule::put_ix(std::ostream& os) const
{
    os << '"' << path << "\": " << filename << ": " << modulename << "\n";
}

void bix_tpen_fichier::put_ix(const std::string& file_name, const std::string& module_name) const
{
    write_file(file_name, [&](std::ostream& os) { put_ix(os, module_name); });
}

namespace {

void put_ix_declarations(std::ostream& os, const char* header,
                         const std::vector<bix_declaration_variables>& vars)
{
    if (vars.empty())
        return;
    os << header << "\n";
    for (std::size_t i = 0; i < vars.size(); ++i) {
        vars[i].put_ix(os);
        if (i + 1 < vars.size())
            os << ",";
        os << "\n";
    }
    os << ";\n\n";
}

}  // namespace

void bix_tpen_fichier::put_ix(std::ostream& os, const std::string& module_name) const
{
    const classic_numbers guard(os);
    if (!table_types.empty() || nb_functions > 0 || nb_constants > 0) {
        os << "data:\n";
        if (!table_types.empty()) {
            os << "Type: ";
            for (std::size_t i = 0; i < table_types.size(); ++i)
                os << (i ? ", " : "") << table_types[i];
            os << ";\n";
        }
        os << "end data\n\n";
    }

    os << "module " << module_name << " : \n";
    put_ix_declarations(os, "Input:", table_inputs);
    put_ix_declarations(os, "Output:", table_outputs);

    if (!table_locals.empty() || !table_liens.empty()) {
        os << "Local: \n";
        bool first = true;
        for (const bix_declaration_variables& v : table_locals) {
            if (!first)
                os << ",\n";
            v.put_ix(os);
            first = false;
        }
        for (std::size_t k = 0; k < table_liens.size(); ++k) {
            if (!first)
                os << ",\n";
            os << "link" << k;
            first = false;
        }
        os << ";\n\n";
    }

    if (!table_external_ixcmodules.empty()) {
        os << "Run:\n";
        for (std::size_t i = 0; i < table_external_ixcmodules.size(); ++i) {
            table_external_ixcmodules[i].put_ix(os);
            if (i + 1 < table_external_ixcmodules.size())
                os << ";";
            os << "\n";
        }
        os << ";\n";
    }

    // The links of each box, in link order, gathered once so that the
    // instances are written in time linear in the size of the project.
    const std::size_t nb_boxes = table_bbox.size();
    std::vector<std::vector<std::size_t>> links_in(nb_boxes), links_out(nb_boxes);
    for (std::size_t k = 0; k < table_liens.size(); ++k) {
        const bix_tpen_lien& l = table_liens[k];
        if (box_or_null(l.mon_ident_ixcmodule_aval()))
            links_in[l.mon_ident_ixcmodule_aval()].push_back(k);
        if (box_or_null(l.mon_ident_ixcmodule_amont()))
            links_out[l.mon_ident_ixcmodule_amont()].push_back(k);
    }
    auto kind_of = [this](int box) {
        const black_box* b = box_or_null(box);
        return b ? b->mon_tpe() : BBOX_DEFAULT;
    };
    auto ident_of = [this](int box) {
        const black_box* b = box_or_null(box);
        return b ? b->mon_ident() : -1;
    };

    bool branch_written = false;
    for (std::size_t i = 0; i < nb_boxes; ++i) {
        const black_box& b = table_bbox[i];
        if (b.mon_tpe() != BBOX_INSTANCE || b.mon_ident() < 0)
            continue;
        if (branch_written)
            os << "||\n";
        branch_written = true;
        const bix_declaration_ixcmodule* run = run_or_null(b.mon_ident());
        os << "run " << (run ? run->nom_module() : std::string()) << "[";
        bool first = true;
        for (std::size_t k : links_in[i]) {
            const bix_tpen_lien& l = table_liens[k];
            os << (first ? "" : ", ");
            first = false;
            const int up = l.mon_ident_ixcmodule_amont();
            if (kind_of(up) == BBOX_INPUT)
                os << input_name_or_empty(ident_of(up));
            else
                os << "link" << k;
            os << " \\ ";
            const int port = l.mon_ident_ixcmodule_aval_input();
            if (run && port >= 0 && port < run->nb_entrees())
                os << run->ma_table_inputs()[port].mon_nom();
        }
        for (std::size_t k : links_out[i]) {
            const bix_tpen_lien& l = table_liens[k];
            os << (first ? "" : ", ");
            first = false;
            const int down = l.mon_ident_ixcmodule_aval();
            if (kind_of(down) == BBOX_OUTPUT)
                os << output_name_or_empty(ident_of(down));
            else
                os << "link" << k;
            os << " \\ ";
            const int port = l.mon_ident_ixcmodule_amont_output();
            if (run && port >= 0 && port < run->nb_sorties())
                os << run->ma_table_outputs()[port].mon_nom();
        }
        os << "]\n";
    }

    // Direct wiring of inputs to outputs and constant sources, in one loop.
    bool loop_needed = false;
    for (const bix_tpen_lien& l : table_liens) {
        const int up = kind_of(l.mon_ident_ixcmodule_amont());
        const int down = kind_of(l.mon_ident_ixcmodule_aval());
        if ((up == BBOX_INPUT && down == BBOX_OUTPUT) || up == BBOX_CONSTANT)
            loop_needed = true;
    }
    if (loop_needed) {
        if (branch_written)
            os << "||\n";
        os << "loop\n{\n";
        // One flag for both kinds of statement: ">>" separates every pair;
        // the separators' indentations differ and are kept.
        bool statement_written = false;
        for (std::size_t k = 0; k < table_liens.size(); ++k) {
            const bix_tpen_lien& l = table_liens[k];
            const int up = l.mon_ident_ixcmodule_amont();
            const int down = l.mon_ident_ixcmodule_aval();
            if (kind_of(up) == BBOX_INPUT && kind_of(down) == BBOX_OUTPUT) {
                if (statement_written)
                    os << "    >>\n";
                statement_written = true;
                const std::string in = input_name_or_empty(ident_of(up));
                os << "    present " << in << " { emit " << output_name_or_empty(ident_of(down));
                if (output_type_or_empty(ident_of(down)) != "pure")
                    os << " (#" << in << ")";
                os << "}\n";
            } else if (kind_of(up) == BBOX_CONSTANT) {
                if (statement_written)
                    os << "  >>\n";
                statement_written = true;
                const bool present = ident_of(up) != 0;
                if (kind_of(down) == BBOX_OUTPUT) {
                    const std::string out = output_name_or_empty(ident_of(down));
                    if (present) {
                        os << "  emit " << out;
                        if (output_type_or_empty(ident_of(down)) != "pure")
                            quilp_warn() << "generation output with a constante : to do ..." << std::endl;
                        os << "\n";
                    } else {
                        os << "  noemit " << out << "\n";
                    }
                } else if (kind_of(down) == BBOX_INSTANCE) {
                    os << (present ? "  emit link" : "  noemit link") << k << "\n";
                }
            }
        }
        os << "  >> pause\n}\n";
    }

    os << "end\n\n";
}

// ---------------------------------------------------------------------------
// Xfig drawing

namespace {

// Model units to drawing units: times 1000, truncated towards zero. Values
// beyond the drawing's integer range are clamped rather than overflowing.
long long xfig_units(double v)
{
    const double t = std::trunc(v);
    if (std::isnan(t))
        return 0;
    if (t >= 9.0e18)
        return 9000000000000000000LL;
    if (t <= -9.0e18)
        return -9000000000000000000LL;
    return static_cast<long long>(t);
}

const char* const text_prefix = "4 1 0 50 -1 0 24 0.0000 4 135 780 ";

struct point {
    double x;
    double y;
};

}  // namespace

void black_box::put_xfig(std::ostream& os, const std::vector<bix_declaration_ixcmodule>& runs,
                         const std::string&) const
{
    const long long X = xfig_units(1000.0 * xpos);
    const long long Y = xfig_units(1000.0 * ypos);
    // the leading blank of the ellipse line is kept
    os << " 1 3 0 1 0 7 50 -1 -1 0.000 1 0.0000 " << X << ' ' << Y << " 500 1000 " << X << ' ' << Y
       << ' ' << xfig_units(500.0 + 1000.0 * xpos) << ' ' << Y << "\n";
    os << text_prefix << X << ' ' << xfig_units(1000.0 * ypos - 1000.0 - 80.0) << ' ' << nom
       << "\\001\n";
    // Written for every non-negative ident, terminals and constants included.
    if (ident >= 0) {
        const bool known = static_cast<std::size_t>(ident) < runs.size();
        os << text_prefix << X << ' ' << xfig_units((ypos + 0.1) * 1000.0) << ' '
           << (known ? runs[ident].nom_module() : std::string()) << "\\001\n";
    }
}

void bix_tpen_lien::put_xfig(std::ostream& os, const std::vector<black_box>& boxes) const
{
    auto centre = [&boxes](int i, point* p) {
        if (i < 0 || static_cast<std::size_t>(i) >= boxes.size())
            return false;
        *p = {boxes[i].ma_posx(), boxes[i].ma_posy()};
        return true;
    };
    point up_centre{}, down_centre{};
    const bool has_up = centre(ident_ixcmodule_amont, &up_centre);
    const bool has_down = centre(ident_ixcmodule_aval, &down_centre);

    // The polyline: the start, the listed points, the downstream centre.
    std::vector<point> line;
    line.reserve(positions.size() / 2 + 2);
    if (has_up)
        line.push_back(up_centre);
    for (std::size_t i = 0; i + 1 < positions.size(); i += 2)
        line.push_back({positions[i], positions[i + 1]});
    if (has_down)
        line.push_back(down_centre);
    if (line.empty())
        return;

    // Ends at a box centre are pulled back 0.5 units towards their neighbour.
    if (has_up && line.size() > 1)
        frontieres_corrections(line[1].x, line[1].y, 0.5, &line[0].x, &line[0].y);
    const std::size_t last = line.size() - 1;
    if (has_down && last > 0)
        frontieres_corrections(line[last - 1].x, line[last - 1].y, 0.5, &line[last].x,
                               &line[last].y);

    // A link with a box at one end only and no points is a single point: it
    // is written without the arrow, which drawing tools refuse on one point.
    if (line.size() == 1 && (has_up || has_down)) {
        os << "2 1 0 1 0 7 50 -1 -1 0.000 0 0 -1 0 0 1\n";
    } else {
        os << "2 1 0 1 0 7 50 -1 -1 0.000 0 0 -1 1 0 " << line.size() << "\n";
        os << "        1 1 1.00 120.00 240.00\n";
    }
    os << "         ";
    for (const point& p : line)
        os << xfig_units(1000.0 * p.x) << ' ' << xfig_units(1000.0 * p.y) << ' ';
    // polylines need no end-of-text mark; this one is kept all the same
    os << "\n\\001";
}

void bix_tpen_fichier::put_xfig(const std::string& file_name, const std::string& module_name) const
{
    write_file(file_name, [&](std::ostream& os) { put_xfig(os, module_name); });
}

void bix_tpen_fichier::put_xfig(std::ostream& os, const std::string& module_name) const
{
    const classic_numbers guard(os);
    os << "#FIG 3.2\nLandscape\nCenter\nInches\nLetter\n100.00\nSingle\n-2\n1200 2\n";
    for (const black_box& b : table_bbox) {
        b.put_xfig(os, table_external_ixcmodules, module_name);
        os << "\n";
    }
    for (const bix_tpen_lien& l : table_liens) {
        l.put_xfig(os, table_bbox);
        os << "\n";
    }
}
