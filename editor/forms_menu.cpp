#include "forms_menu.h"

#include <FL/Fl_Menu_.H>
#include <FL/Fl_Menu_Item.H>

#include <cstring>

std::vector<forms_menu_entry> parse_forms_menu(const std::string& items)
{
    std::vector<forms_menu_entry> entries;
    if (items.empty())
        return entries;
    std::string::size_type start = 0;
    while (true) {
        const std::string::size_type bar = items.find('|', start);
        const std::string item = items.substr(start, bar == std::string::npos ? std::string::npos : bar - start);
        const std::string::size_type slash = item.find('/');
        if (slash == std::string::npos) {
            entries.push_back({item, false, false});
        } else {
            entries.push_back({item.substr(0, slash), true, false});
            entries.push_back({item.substr(slash + 1), false, false});
            entries.push_back({std::string(), false, true});
        }
        if (bar == std::string::npos)
            break;
        start = bar + 1;
    }
    return entries;
}

namespace {

void set_menu_entries(Fl_Menu_* menu, const std::vector<forms_menu_entry>& entries, std::vector<std::string>& labels)
{
    // The old items go before their labels do.
    menu->clear();
    labels.clear();
    labels.reserve(entries.size());
    for (const forms_menu_entry& e : entries)
        labels.push_back(e.label);
    // copy() duplicates the array, not the texts it points to.
    std::vector<Fl_Menu_Item> array(entries.size() + 1);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        std::memset(&array[i], 0, sizeof(Fl_Menu_Item));
        if (entries[i].end)
            continue;
        array[i].text = labels[i].c_str();
        array[i].flags = entries[i].submenu ? FL_SUBMENU : 0;
    }
    std::memset(&array.back(), 0, sizeof(Fl_Menu_Item));
    if (!entries.empty())
        menu->copy(array.data());
}

}  // namespace

void set_forms_menu(Fl_Menu_* menu, const std::string& items, std::vector<std::string>& labels)
{
    set_menu_entries(menu, parse_forms_menu(items), labels);
}

void set_menu_labels(Fl_Menu_* menu, const std::vector<std::string>& names, std::vector<std::string>& labels)
{
    std::vector<forms_menu_entry> entries;
    for (const std::string& name : names)
        entries.push_back({name, false, false});
    set_menu_entries(menu, entries, labels);
}
