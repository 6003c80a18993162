#ifndef EDITOR_IO_FORM_H
#define EDITOR_IO_FORM_H

// The signal monitor: the modal form in which the user edits the project's
// inputs, outputs or locals.

#include "bix_norm.h"

#include <list>
#include <string>
#include <vector>

class Fl_Browser;
class Fl_Button;
class Fl_Choice;
class Fl_Input;
class Fl_Widget;
class Fl_Window;
class io_monitor_list;

class OFD_IO_form {
public:
    // Builds the form titled `title` over `table`; `caller` (may be null) is
    // disabled while it is open. New entries take one of "pure" and `types`.
    OFD_IO_form(Fl_Window* caller, const std::vector<bix_declaration_variables>& table,
                const std::string& title, const std::vector<std::string>& types);
    ~OFD_IO_form();
    OFD_IO_form(const OFD_IO_form&) = delete;
    OFD_IO_form& operator=(const OFD_IO_form&) = delete;

    // Runs the form; names in `in_use` cannot be deleted. 1 on "OK", 0 on
    // "cancel" or when the window is closed.
    int activation(const std::list<std::string>& in_use);
    // The edited table after "OK".
    const std::list<bix_declaration_variables>& value() const { return pliste_IO; }

private:
    Fl_Window* IO_form = nullptr;
    Fl_Window* caller_form = nullptr;
    Fl_Browser* browser_selection = nullptr;
    Fl_Button* add_button = nullptr;
    Fl_Button* del_button = nullptr;
    Fl_Input* input_signal = nullptr;
    Fl_Button* event_button = nullptr;
    Fl_Choice* type_button = nullptr;
    Fl_Button* ok_button = nullptr;
    Fl_Button* cancel_button = nullptr;
    void* vdata = nullptr;
    long ldata = 0;
    std::list<bix_declaration_variables> pliste_IO;

    // The toolkit keeps pointers to the title and the choice's labels.
    std::string title;
    std::vector<bix_declaration_variables> table;
    std::vector<std::string> type_names;
    std::vector<std::string> type_labels;

    void dispatch(io_monitor_list& list, Fl_Widget* w);
};

#endif
