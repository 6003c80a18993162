// The declaration monitors seen from the view: what each monitor is given,
// and how its result replaces a table of the project, the boxes that refer
// to an entry following it to its new index.

#include "visu_net.h"

#include "editor_warn.h"
#include "ofl_dialogs.h"

#include <algorithm>
#include <iostream>
#include <vector>

namespace {

// Where each old entry went in the new table: the first new entry equal to
// it that no earlier old entry took, or -1 when it is gone. Entries a monitor
// did not touch keep their relative order, so this follows them exactly,
// duplicates included.
template <class T>
std::vector<int> new_places(const std::vector<T>& old_table, const std::vector<T>& new_table)
{
    std::vector<int> places(old_table.size(), -1);
    std::vector<bool> taken(new_table.size(), false);
    for (std::size_t i = 0; i < old_table.size(); ++i) {
        for (std::size_t j = 0; j < new_table.size(); ++j) {
            if (!taken[j] && new_table[j] == old_table[i]) {
                taken[j] = true;
                places[i] = static_cast<int>(j);
                break;
            }
        }
    }
    return places;
}

// Boxes of kind `tpe` follow their entry to its new index.
void renumber_boxes(std::vector<black_box>& boxes, int tpe, const std::vector<int>& places)
{
    for (black_box& b : boxes) {
        const int id = b.mon_ident();
        if (b.mon_tpe() == tpe && id >= 0 && static_cast<std::size_t>(id) < places.size() && places[id] >= 0)
            b.change_ident(places[id]);
    }
}

}  // namespace

std::list<std::string> visu_net::names_in_use(int tpe) const
{
    std::list<std::string> names;
    for (const black_box& b : table_bbox) {
        if (b.mon_tpe() != tpe || b.mon_ident() < 0)
            continue;
        const std::size_t id = static_cast<std::size_t>(b.mon_ident());
        if (tpe == BBOX_INPUT && id < table_inputs.size())
            names.push_back(table_inputs[id].mon_nom());
        else if (tpe == BBOX_OUTPUT && id < table_outputs.size())
            names.push_back(table_outputs[id].mon_nom());
        else if (tpe == BBOX_INSTANCE && id < table_external_ixcmodules.size())
            names.push_back(table_external_ixcmodules[id].nom_module());
    }
    return names;
}

std::list<std::string> visu_net::types_in_use() const
{
    std::list<std::string> types;
    auto add = [&types](const std::vector<bix_declaration_variables>& table) {
        for (const bix_declaration_variables& v : table)
            types.push_back(v.mon_type());
    };
    add(table_inputs);
    add(table_outputs);
    add(table_locals);
    for (const bix_declaration_ixcmodule& run : table_external_ixcmodules) {
        add(run.ma_table_inputs());
        add(run.ma_table_outputs());
    }
    return types;
}

void visu_net::replace_signals(std::vector<bix_declaration_variables>& table, int tpe,
                               const std::list<bix_declaration_variables>& fresh)
{
    const std::vector<bix_declaration_variables> old_table = table;
    table.assign(fresh.begin(), fresh.end());
    // An entry that is gone is not removed again: the monitor only lets
    // unused entries go, and the removal would find nothing to remove.
    renumber_boxes(table_bbox, tpe, new_places(old_table, table));
}

void visu_net::apply_inputs(const std::list<bix_declaration_variables>& table)
{
    replace_signals(table_inputs, BBOX_INPUT, table);
}

void visu_net::apply_outputs(const std::list<bix_declaration_variables>& table)
{
    replace_signals(table_outputs, BBOX_OUTPUT, table);
}

void visu_net::apply_locals(const std::list<bix_declaration_variables>& table)
{
    // No box shows a local: nothing to renumber.
    table_locals.assign(table.begin(), table.end());
}

void visu_net::apply_types(const std::list<std::string>& table) { table_types.assign(table.begin(), table.end()); }

void visu_net::apply_progs(const std::list<bix_declaration_ixcmodule>& table)
{
    const std::vector<bix_declaration_ixcmodule> old_table = table_external_ixcmodules;
    table_external_ixcmodules.assign(table.begin(), table.end());
    renumber_boxes(table_bbox, BBOX_INSTANCE, new_places(old_table, table_external_ixcmodules));
}

void visu_net::signals_handling(const char* title, std::vector<bix_declaration_variables>& table, int tpe)
{
    std::list<bix_declaration_variables> result;
    if (editor_dialogs().io_monitor(associate_forms, title, table, table_types, names_in_use(tpe), &result) == 1) {
        replace_signals(table, tpe, result);
        redraw_all();
    }
}

void visu_net::inputs_handling() { signals_handling("INPUTS", table_inputs, BBOX_INPUT); }

void visu_net::outputs_handling() { signals_handling("OUTPUTS", table_outputs, BBOX_OUTPUT); }

void visu_net::locals_handling()
{
    std::list<bix_declaration_variables> result;
    if (editor_dialogs().io_monitor(associate_forms, "LOCALS", table_locals, table_types, {}, &result) == 1)
        apply_locals(result);
}

void visu_net::types_handling()
{
    std::list<std::string> result;
    if (editor_dialogs().type_monitor(associate_forms, table_types, types_in_use(), &result) == 1)
        apply_types(result);
}

void visu_net::progs_handling()
{
    std::list<bix_declaration_ixcmodule> result;
    if (editor_dialogs().prog_monitor(associate_forms, table_external_ixcmodules, names_in_use(BBOX_INSTANCE),
                                      &result) == 1) {
        apply_progs(result);
        redraw_all();
    }
}

void visu_net::variables_handling()
{
    editor_warn() << "visu_net::variables_handling(): to complete ..." << std::endl;
}

void visu_net::sensors_handling()
{
    editor_warn() << "visu_net::sensors_handling(): to complete ..." << std::endl;
}
