#ifndef QUILP_TEST_EDITOR_SUPPORT_H
#define QUILP_TEST_EDITOR_SUPPORT_H

// Scripted dialogs for the editor's tests: answers are queued in advance,
// and every message box, alert and form opened is recorded. No window opens.

#include "bix_norm.h"
#include "ofl_dialogs.h"

#include <deque>
#include <string>
#include <vector>

namespace quilp_test {

class scripted_dialogs : public ofl_dialogs {
public:
    scripted_dialogs() { previous = set_editor_dialogs(this); }
    ~scripted_dialogs() override { set_editor_dialogs(previous); }
    scripted_dialogs(const scripted_dialogs&) = delete;
    scripted_dialogs& operator=(const scripted_dialogs&) = delete;

    // What was shown, in order: message boxes and alerts as their text,
    // forms as "form <index>", choosers as "chooser <title>".
    std::vector<std::string> shown;
    // Answers, taken in order; a form with no answer left is cancelled.
    std::deque<std::string> inputs;
    std::deque<std::string> files;  // an empty text cancels the chooser
    struct form_answer {
        int accepted;
        black_box box;
    };
    std::deque<form_answer> forms;

    void message(const std::string& text) override { shown.push_back(text); }
    void alert(const std::string& text) override { shown.push_back("alert " + text); }
    std::string input(const std::string& prompt, const std::string&) override
    {
        shown.push_back("input " + prompt);
        return take(inputs);
    }
    bool file_chooser(const std::string& title, const std::string&, const std::string&,
                      std::string* chosen) override
    {
        shown.push_back("chooser " + title);
        *chosen = take(files);
        return !chosen->empty();
    }
    int black_box_form(Fl_Window*, visu_net&, int index, black_box* result) override
    {
        shown.push_back("form " + std::to_string(index));
        if (forms.empty())
            return 0;
        const form_answer a = forms.front();
        forms.pop_front();
        if (a.accepted)
            *result = a.box;
        return a.accepted;
    }

private:
    ofl_dialogs* previous;

    static std::string take(std::deque<std::string>& q)
    {
        if (q.empty())
            return std::string();
        const std::string s = q.front();
        q.pop_front();
        return s;
    }
};

}  // namespace quilp_test

#endif
