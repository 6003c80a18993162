#include "visu_net.h"

#include "bix_parser.h"
#include "editor_warn.h"
#include "file_replace.h"
#include "ofl_dialogs.h"
#include "ofl_feuille.h"
#include "quilp_names.h"

#include <FL/Fl_Window.H>

#include <iostream>
#include <memory>

visu_net::visu_net() = default;

visu_net::visu_net(const bix_tpen_fichier* project)
    : bix_tpen_fichier(*project), internal_mode(VISUNET_MODE_MOVE)
{
}

visu_net::~visu_net() { fl_remove_visu_net(); }

void visu_net::reset_view_state()
{
    background_color = 49;
    scale = 30;
    hslide = 0;
    vslide = 0;
    type_object_select = VISUNET_NO_OBJ;
    first_type_object_select = VISUNET_NO_OBJ;
    num_object_select = 0;
    num_object2_select = 0;
    first_num_object_select = 0;
    first_num_object2_select = 0;
    first_x = 0;
    first_y = 0;
    internal_mode = VISUNET_MODE_INSERT;
    internal_num_bb_max = 0;
    press_opened_dialog = false;
}

void visu_net::clear()
{
    static_cast<bix_tpen_fichier&>(*this) = bix_tpen_fichier();
    reset_view_state();
}

OFL_feuille* visu_net::fl_add_visu_net(Fl_Window* form, int x, int y, int w, int h, int color, int s)
{
    fl_remove_visu_net();
    internal_ob = new OFL_feuille(x, y, w, h);
    vs.define(x, y, w, h, color);
    form->add(internal_ob);
    internal_ob->pg = this;
    associate_forms = form;
    scale = s;
    return internal_ob;
}

void visu_net::fl_remove_visu_net()
{
    if (!internal_ob)
        return;
    internal_ob->pg = nullptr;
    if (internal_ob->parent())
        internal_ob->parent()->remove(internal_ob);
    delete internal_ob;
    internal_ob = nullptr;
    if (associate_forms)
        associate_forms->redraw();
    associate_forms = nullptr;
}

sheet_view visu_net::vue() const
{
    sheet_view v;
    v.scale = scale;
    v.hslide = hslide;
    v.vslide = vslide;
    if (internal_ob) {
        v.wx = internal_ob->x();
        v.wy = internal_ob->y();
    }
    return v;
}

int visu_net::correct_initialisation()
{
    if (!mon_nom_module().empty())
        return 1;
    editor_dialogs().message("NAME THE PROJECT FIRST!");
    return 0;
}

bool visu_net::write_through(const std::string& file, const std::function<void(std::ostream&)>& write)
{
    std::string error;
    if (replace_file(file, write, &error))
        return true;
    editor_dialogs().message("ERROR about writing file : " + file + "\n" + error);
    return false;
}

bool visu_net::sauve(const std::string& path, const std::string& name)
{
    const std::string file = sauve_file_name(path);
    def_nom_module(sauve_module_name(name));
    const std::string module_name = mon_nom_module();
    return write_through(file, [&](std::ostream& os) { put_bix(os, module_name); });
}

bool visu_net::export_ix(const std::string& path, const std::string& name)
{
    return write_through(export_file_name(path, ".ix"), [&](std::ostream& os) { put_ix(os, name); });
}

bool visu_net::export_xfig(const std::string& path, const std::string& name)
{
    return write_through(export_file_name(path, ".fig"), [&](std::ostream& os) { put_xfig(os, name); });
}

visu_net* parse_visu_net(const std::string& name)
{
    editor_warn() << "ouverture de " << name << std::endl;
    const std::unique_ptr<bix_tpen_fichier> project(bix_read_file(name));
    return project ? new visu_net(project.get()) : nullptr;
}
