// The main of every test program: reads the data folders and the update
// flag from the command line, then runs GoogleTest with the rest.

#include "test_paths.h"

#include <gmock/gmock.h>

#include <cstring>
#include <iostream>

namespace {

std::string data;
std::string examples;
bool update = false;

}  // namespace

namespace quilp_test {

const std::string& data_dir() { return data; }
const std::string& examples_dir() { return examples; }
bool update_goldens() { return update; }

}  // namespace quilp_test

int main(int argc, char** argv)
{
    testing::InitGoogleMock(&argc, argv);
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--update") == 0) {
            update = true;
        } else if ((std::strcmp(argv[i], "--data") == 0 || std::strcmp(argv[i], "--examples") == 0) && i + 1 < argc) {
            (std::strcmp(argv[i], "--data") == 0 ? data : examples) = argv[i + 1];
            ++i;
        } else {
            std::cerr << argv[0] << ": unknown argument " << argv[i]
                      << " (usage: --data DIR --examples DIR [--update] [gtest options])" << std::endl;
            return 2;
        }
    }
    return RUN_ALL_TESTS();
}
