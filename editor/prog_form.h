#ifndef EDITOR_PROG_FORM_H
#define EDITOR_PROG_FORM_H

// The runs monitor: the modal form in which the user declares the compiled
// modules the project runs, each by browsing to its ".ixc" file.

#include "bix_norm.h"

#include <list>
#include <string>
#include <vector>

class Fl_Browser;
class Fl_Button;
class Fl_Input;
class Fl_Widget;
class Fl_Window;
class prog_monitor_list;

class OFD_PROG_form {
public:
    // Builds the form over `table`; `caller` (may be null) is disabled while
    // it is open.
    OFD_PROG_form(Fl_Window* caller, const std::vector<bix_declaration_ixcmodule>& table);
    ~OFD_PROG_form();
    OFD_PROG_form(const OFD_PROG_form&) = delete;
    OFD_PROG_form& operator=(const OFD_PROG_form&) = delete;

    // Runs the form; runs whose module names are in `in_use` cannot be
    // deleted. 1 on "OK", 0 on "cancel" or when the window is closed.
    int activation(const std::list<std::string>& in_use);
    // The edited runs after "OK".
    const std::list<bix_declaration_ixcmodule>& value() const { return pliste_prog; }

private:
    Fl_Window* PROG_form = nullptr;
    Fl_Window* caller_form = nullptr;
    Fl_Browser* browser_selection = nullptr;
    Fl_Button* add_button = nullptr;
    Fl_Button* del_button = nullptr;
    Fl_Button* browse_button = nullptr;
    Fl_Input* prog_filename = nullptr;
    Fl_Input* prog_modulename = nullptr;
    Fl_Input* prog_path = nullptr;
    Fl_Button* ok_button = nullptr;
    Fl_Button* cancel_button = nullptr;
    void* vdata = nullptr;
    long ldata = 0;
    std::list<bix_declaration_ixcmodule> pliste_prog;

    std::vector<bix_declaration_ixcmodule> table;

    void dispatch(prog_monitor_list& list, Fl_Widget* w);
};

#endif
