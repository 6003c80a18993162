#include "black_box_form.h"

#include "forms_menu.h"
#include "visu_net.h"

#include <FL/Fl.H>
#include <FL/forms.H>

#include <unistd.h>

namespace {

const char* const constant_items = "Always Absent |Always Present";

}  // namespace

std::string forms_menu_items(const std::vector<std::string>& names)
{
    std::string items;
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (i > 0)
            items += " |";
        items += names[i];
    }
    return items;
}

OFD_black_box_form::OFD_black_box_form(Fl_Window* caller) : caller_form(caller)
{
    star_form = fl_bgn_form(FL_NO_BOX, 400, 540);
    fl_add_box(FL_UP_BOX, 0, 0, 400, 540, "");
    Fl_Widget* title = fl_add_text(FL_NORMAL_TEXT, 80, 25, 150, 20, "Black Box Selection");
    fl_set_object_lalign(title, FL_ALIGN_CENTER | FL_ALIGN_INSIDE);
    fl_set_object_lstyle(title, 1);
    select_label_instance = fl_add_input(FL_NORMAL_INPUT, 140, 70, 230, 30, "Instance label");
    fl_set_object_lstyle(select_label_instance, 1);
    CONSTI_button = fl_add_roundbutton(FL_RADIO_BUTTON, 20, 110, 70, 30, "Const.I");
    I_button = fl_add_roundbutton(FL_RADIO_BUTTON, 100, 110, 30, 30, "I");
    DCO_button = fl_add_roundbutton(FL_RADIO_BUTTON, 140, 110, 70, 30, "D.Care");
    O_button = fl_add_roundbutton(FL_RADIO_BUTTON, 220, 110, 30, 30, "O");
    IXC_button = fl_add_roundbutton(FL_RADIO_BUTTON, 260, 110, 110, 30, "IXC module");
    menu_ixc_possible = fl_add_menu(FL_TOUCH_MENU, 70, 150, 260, 30, "Select IXC module");
    accept_button = fl_add_button(FL_NORMAL_BUTTON, 40, 480, 50, 40, "Ok");
    cancel_button = fl_add_button(FL_NORMAL_BUTTON, 120, 480, 80, 40, "Cancel");
    for (Fl_Widget* w : {static_cast<Fl_Widget*>(CONSTI_button), static_cast<Fl_Widget*>(I_button),
                         static_cast<Fl_Widget*>(DCO_button), static_cast<Fl_Widget*>(O_button),
                         static_cast<Fl_Widget*>(IXC_button), static_cast<Fl_Widget*>(menu_ixc_possible),
                         static_cast<Fl_Widget*>(accept_button), static_cast<Fl_Widget*>(cancel_button)})
        fl_set_object_lstyle(w, FL_TIMES_STYLE);
    fl_end_form();
    fl_set_button(IXC_button, 1);
}

OFD_black_box_form::~OFD_black_box_form()
{
    // The menu goes with the form, before its labels do.
    delete star_form;
}

void OFD_black_box_form::show_items(const char* label, const std::string& items)
{
    fl_set_object_label(menu_ixc_possible, label);
    set_forms_menu(menu_ixc_possible, items, menu_labels);
}

int OFD_black_box_form::kind_down() const
{
    if (fl_get_button(CONSTI_button))
        return BBOX_CONSTANT;
    if (fl_get_button(I_button))
        return BBOX_INPUT;
    if (fl_get_button(DCO_button))
        return BBOX_DONTCARE;
    if (fl_get_button(O_button))
        return BBOX_OUTPUT;
    return BBOX_INSTANCE;
}

int OFD_black_box_form::result_of(int kind_tpe, int item, black_box* box)
{
    if (item < 1)
        return 0;
    box->change_ident(item - 1);
    box->change_tpe(kind_tpe);
    return 1;
}

int OFD_black_box_form::activation(visu_net& view, int index)
{
    std::vector<std::string> runs;
    for (const bix_declaration_ixcmodule& r : view.ma_table_external_ixcmodules())
        runs.push_back(r.nom_module());
    std::vector<std::string> inputs;
    for (const bix_declaration_variables& v : view.ma_table_inputs())
        inputs.push_back(v.mon_nom());
    std::vector<std::string> outputs;
    for (const bix_declaration_variables& v : view.ma_table_outputs())
        outputs.push_back(v.mon_nom());
    if (caller_form)
        fl_deactivate_form(caller_form);

    const std::string run_items = forms_menu_items(runs);
    const std::string input_items = forms_menu_items(inputs);
    const std::string output_items = forms_menu_items(outputs);
    show_items("Select IXC module", run_items);

    // The label shows the run of an existing instance box; it is not read
    // back (the box keeps its generated name).
    std::string label;
    const std::vector<black_box>& boxes = view.ma_table_bbox();
    if (index >= 0 && static_cast<std::size_t>(index) < boxes.size()) {
        const black_box& b = boxes[index];
        if (b.mon_tpe() == BBOX_INSTANCE && b.mon_ident() >= 0 &&
            static_cast<std::size_t>(b.mon_ident()) < runs.size())
            label = runs[b.mon_ident()];
    }
    fl_set_input(select_label_instance, label.c_str());
    // The chosen item is not reset when the kind changes: a pick made under
    // one kind is kept if the user switches kind before "Ok".
    int item = -1;

    fl_show_form(star_form, FL_PLACE_MOUSE, FL_TRANSIENT, "Black Box Selection");
    bool accepted = false;
    bool running = true;
    while (running) {
        Fl::check();
        Fl_Widget* w = Fl::readqueue();
        if (w == menu_ixc_possible)
            item = fl_get_menu(menu_ixc_possible);
        else if (w == CONSTI_button)
            show_items("Select const input", constant_items);
        else if (w == I_button)
            show_items("Select input", input_items);
        else if (w == DCO_button)
            show_items("", "");
        else if (w == O_button)
            show_items("Select output", output_items);
        else if (w == IXC_button)
            show_items("Select IXC module", run_items);
        else if (w == accept_button)
            accepted = true;
        if (w == accept_button || w == cancel_button || !star_form->shown())
            running = false;
        else
            usleep(1000);
    }
    fl_hide_form(star_form);

    const int result = accepted ? result_of(kind_down(), item, &star) : 0;
    if (caller_form)
        fl_activate_form(caller_form);
    return result;
}
