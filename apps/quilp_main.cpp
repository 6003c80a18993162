// quilp: the editor with no argument, help and version with -h and -v, and
// batch generation of the drawing and the main module with a file and options.

#include "bix_norm.h"
#include "main_window.h"
#include "bix_parser.h"
#include "quilp_names.h"

#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>

namespace {

// The release number and the build suffix are kept apart and joined once.
const char* const release_number = "3.2.0";
const char* const build_suffix = "-8";
const char* const author_name = "the quilp developers";

void print_help(const std::string& version)
{
    std::cout << "\n"
              << "        QUILP: Linker Of Object Module\n"
              << "        author " << author_name << ", version " << version << "\n"
              << "\n"
              << "   syntax:\n"
              << "\n"
              << "         quilp <filename> [-xfig] [-ix] [-esterel]\n"
              << "\n"
              << "         or quilp -v\n"
              << "\n"
              << "         or quilp -h\n"
              << "\n"
              << "   options:\n"
              << "\n"
              << "      -h : this help\n"
              << "\n"
              << "      -v : version of the graphical linker\n"
              << "\n"
              << "      -xfig : generate a xfig file\n"
              << "      -ix : generate a main ix module\n"
              << "\n";
}

int run_batch(int argc, char** argv)
{
    bool xfig = false;
    bool ix = false;
    const std::string file_name = argv[1];
    // "-esterel", though the help shows it, is refused like any other word.
    for (int i = 2; i < argc; ++i) {
        const std::string option = argv[i];
        if (option == "-xfig") {
            xfig = true;
        } else if (option == "-ix") {
            ix = true;
        } else {
            // wording kept byte for byte: outputs are compared exactly
            std::cerr << "`" << option << "' unknown option: write quilp -h to known the valid list"
                      << "\n\n";
            std::exit(1);
        }
    }

    const batch_names names(file_name);
    const std::unique_ptr<bix_tpen_fichier> project(parse(names.project));
    if (!project)
        return 0;
    // The drawing always comes before the module.
    if (xfig) {
        project->put_xfig(names.drawing, project->mon_nom_module());
        std::cout << "generation of " << names.drawing << std::endl;
    }
    if (ix) {
        project->put_ix(names.module, project->mon_nom_module());
        std::cout << "generation of " << names.module << std::endl;
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv)
{
    const std::string version = std::string(release_number) + build_suffix;

    if (argc == 1) {
        OFD_editeur editor(argc, argv, version);
        editor.activation();
        return 0;
    }
    if (argc == 2) {
        const std::string arg = argv[1];
        if (arg == "-h") {
            print_help(version);
            std::exit(0);
        }
        if (arg == "-v") {
            std::cout << "  QUILP: Linker Of Object Module version " << version << "\n\n";
            return 0;
        }
        // A lone file name is not a request to open the editor.
        std::cout << "  No generation because no option ...\n\n";
        return 0;
    }
    return run_batch(argc, argv);
}
