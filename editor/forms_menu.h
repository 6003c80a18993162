#ifndef EDITOR_FORMS_MENU_H
#define EDITOR_FORMS_MENU_H

// Menus given as one string, items separated by "|" and a "/" making the
// text before it a submenu holding the text after it. Every label is kept as
// written, blanks included: no shortcut, divider or merging of equal labels,
// so item numbers are always the positions in the string (a submenu's title,
// its item and its end each take one).

#include <string>
#include <vector>

class Fl_Menu_;

// The labels of the flattened menu: a submenu title "A/b" gives "A" then "b"
// then an empty entry that ends the submenu.
struct forms_menu_entry {
    std::string label;
    bool submenu = false;  // title of a submenu
    bool end = false;      // end of a submenu
};
std::vector<forms_menu_entry> parse_forms_menu(const std::string& items);

// Replaces the items of `menu` with those of `items` (nothing for an empty
// string). The toolkit keeps pointers to the labels without copying them:
// they live in `labels`, which the caller keeps as long as the menu and
// passes again, untouched in between, for the next set.
void set_forms_menu(Fl_Menu_* menu, const std::string& items, std::vector<std::string>& labels);
// The same with one item per name, each label exactly the name ("|" and "/"
// included), so item n is always names[n - 1].
void set_menu_labels(Fl_Menu_* menu, const std::vector<std::string>& names, std::vector<std::string>& labels);

#endif
