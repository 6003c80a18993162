#ifndef EDITOR_BLACK_BOX_FORM_H
#define EDITOR_BLACK_BOX_FORM_H

// The modal form in which the user chooses what a black box stands for: an
// instance of a run, a project input or output, a constant input or a
// don't-care output, and which declaration it refers to.

#include "bix_norm.h"

#include <string>
#include <vector>

class Fl_Button;
class Fl_Input;
class Fl_Menu_Button;
class Fl_Widget;
class Fl_Window;
class visu_net;

class OFD_black_box_form {
public:
    // Builds the form; `caller` (may be null) is disabled while it is open.
    explicit OFD_black_box_form(Fl_Window* caller);
    ~OFD_black_box_form();
    OFD_black_box_form(const OFD_black_box_form&) = delete;
    OFD_black_box_form& operator=(const OFD_black_box_form&) = delete;

    // Runs the form for box `index` of `view` (-1 for a new box): 1 when the
    // user accepted a choice, else 0.
    int activation(visu_net& view, int index);
    // The box chosen.
    black_box value() const { return star; }

    // The box an accepted form gives, from the kind button down and the
    // 1-based menu item chosen last (under whatever kind): 1 and `star` set,
    // or 0 when no item was chosen.
    static int result_of(int kind_tpe, int item, black_box* star);

private:
    Fl_Window* star_form = nullptr;
    Fl_Window* caller_form = nullptr;
    Fl_Input* select_label_instance = nullptr;
    Fl_Button* CONSTI_button = nullptr;
    Fl_Button* I_button = nullptr;
    Fl_Button* DCO_button = nullptr;
    Fl_Button* O_button = nullptr;
    Fl_Button* IXC_button = nullptr;
    Fl_Menu_Button* menu_ixc_possible = nullptr;
    Fl_Button* accept_button = nullptr;
    Fl_Button* cancel_button = nullptr;
    void* vdata = nullptr;
    long ldata = 0;
    black_box star;

    // Labels of the menu's current items (the toolkit keeps pointers).
    std::vector<std::string> menu_labels;

    void show_items(const char* label, const std::string& items);
    int kind_down() const;
};

// Names joined with " |" between them: the item string of a menu.
std::string forms_menu_items(const std::vector<std::string>& names);

#endif
