#ifndef EDITOR_TYPE_FORM_H
#define EDITOR_TYPE_FORM_H

// The types monitor: the modal form in which the user edits the project's
// data types.

#include <list>
#include <string>
#include <vector>

class Fl_Browser;
class Fl_Button;
class Fl_Input;
class Fl_Widget;
class Fl_Window;
class type_monitor_list;

class OFD_TYPE_form {
public:
    // Builds the form over `table`; `caller` (may be null) is disabled while
    // it is open.
    OFD_TYPE_form(Fl_Window* caller, const std::vector<std::string>& table);
    ~OFD_TYPE_form();
    OFD_TYPE_form(const OFD_TYPE_form&) = delete;
    OFD_TYPE_form& operator=(const OFD_TYPE_form&) = delete;

    // Runs the form; types in `in_use` cannot be deleted. 1 on "OK", 0 on
    // "cancel" or when the window is closed.
    int activation(const std::list<std::string>& in_use);
    // The edited types after "OK".
    const std::list<std::string>& value() const { return pliste_TYPE; }

private:
    Fl_Window* TYPE_form = nullptr;
    Fl_Window* caller_form = nullptr;
    Fl_Browser* browser_selection = nullptr;
    Fl_Button* add_button = nullptr;
    Fl_Button* del_button = nullptr;
    Fl_Input* input_signal = nullptr;
    Fl_Button* ok_button = nullptr;
    Fl_Button* cancel_button = nullptr;
    void* vdata = nullptr;
    long ldata = 0;
    std::list<std::string> pliste_TYPE;

    std::vector<std::string> table;

    void dispatch(type_monitor_list& list, Fl_Widget* w);
};

#endif
