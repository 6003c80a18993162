#include "quilp_visu.h"

#include "bix_parser.h"

#include <iostream>
#include <memory>

visu_net::visu_net() = default;

visu_net::visu_net(const bix_tpen_fichier* project)
    : bix_tpen_fichier(*project), internal_mode(VISUNET_MODE_MOVE)
{
}

visu_net* parse_visu_net(const std::string& name)
{
    std::cerr << "ouverture de " << name << std::endl;
    const std::unique_ptr<bix_tpen_fichier> project(bix_read_file(name));
    return project ? new visu_net(project.get()) : nullptr;
}
