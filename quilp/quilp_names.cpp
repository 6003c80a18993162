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
