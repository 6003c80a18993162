#include "quilp_names.h"

std::string supress_filename_extension(const std::string& name)
{
    const std::string::size_type slash = name.rfind('/');
    const std::string::size_type start = slash == std::string::npos ? 0 : slash + 1;
    const std::string component = name.substr(start);
    if (component.find_first_not_of('.') == std::string::npos)
        return name;
    const std::string::size_type dot = name.rfind('.');
    if (dot == std::string::npos || dot < start)
        return name;
    return name.substr(0, dot);
}

batch_names::batch_names(const std::string& argument)
    : base(supress_filename_extension(argument)), project(base + ".bix"), log(base + ".log"),
      drawing(base + ".fig"), module(base + ".ix")
{
}

namespace {

bool ends_with(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

std::string without_end(const std::string& text, const std::string& end)
{
    return ends_with(text, end) ? text.substr(0, text.size() - end.size()) : text;
}

bool ascii_letter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool ascii_digit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::string trim_blanks(const std::string& text)
{
    const char* const blanks = " \t\r\n";
    const std::string::size_type first = text.find_first_not_of(blanks);
    if (first == std::string::npos)
        return std::string();
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

bool checkvarname_with_pre_underscore(const std::string& name)
{
    if (name.empty())
        return false;
    if (!ascii_letter(name.front()) && name.front() != '_')
        return false;
    for (std::string::size_type i = 1; i + 1 < name.size(); ++i)
        if (!ascii_letter(name[i]) && !ascii_digit(name[i]) && name[i] != '_')
            return false;
    return ascii_letter(name.back()) || ascii_digit(name.back());
}

std::string sauve_file_name(const std::string& path)
{
    return ends_with(path, ".bix") ? path : path + ".bix";
}

std::string sauve_module_name(const std::string& name) { return without_end(name, ".bix"); }

std::string export_file_name(const std::string& path, const std::string& extension)
{
    const std::string base = without_end(path, ".bix");
    return ends_with(base, extension) ? base : base + extension;
}
